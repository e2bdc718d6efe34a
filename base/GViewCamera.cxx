// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// The camera of a view: members of GView.
#include "GView.h"

#include <algorithm>
#include <cmath>

#include "BrantVector.h"
#include "CameraMotion.h"
#include "CameraRamp.h"
#include "ViewCalls.h"
#include "ZoomBoxGeometry.h"

#include <vtkCamera.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>
#include <vtkTransform.h>

using morrow::CameraMotion;

namespace {

constexpr double DefaultViewAngle = 30.0;

// Observers of the camera are host code: it may destroy the view while the camera changes.
vtkSmartPointer<vtkCamera> camera_of(vtkRenderer& renderer)
{
  return renderer.GetActiveCamera();
}

bool is_point(const double* p)
{
  return p != nullptr && BrantVector(p).is_finite();
}

void write_point(const BrantVector& from, double* to)
{
  std::copy_n(from.data(), 3, to);
}

// ---------------------------------------------------------------------------------------------------------
// Placement

struct CameraPoint
{
  BrantVector (*get)(vtkCamera& camera);
  void (*set)(vtkCamera& camera, const BrantVector& value);
};

constexpr CameraPoint At = {
    [](vtkCamera& camera) { return BrantVector(camera.GetFocalPoint()); },
    [](vtkCamera& camera, const BrantVector& value) { camera.SetFocalPoint(value.data()); }};
constexpr CameraPoint From = {
    [](vtkCamera& camera) { return BrantVector(camera.GetPosition()); },
    [](vtkCamera& camera, const BrantVector& value) { camera.SetPosition(value.data()); }};
constexpr CameraPoint Up = {
    [](vtkCamera& camera) { return BrantVector(camera.GetViewUp()); },
    [](vtkCamera& camera, const BrantVector& value) { camera.SetViewUp(value.data()); }};

void move_point(GView& view, const CameraPoint& point, const BrantVector& target, int steps, int smooth)
{
  CameraMotion motion(view);
  if (!motion.view_is_alive()) {
    return;
  }
  if (motion.steps(steps) < 2) {
    point.set(*motion.camera(), target);
    motion.show();
    return;
  }
  BrantVector value = point.get(*motion.camera());
  const BrantVector step = (target - value) / steps;
  if (!step.is_finite()) {
    return;
  }
  motion.play(morrow::PointRamp(steps, smooth), [&](vtkCamera& camera, double factor) {
    value += factor * step;
    point.set(camera, value);
  });
}

void get_point(vtkRenderer& renderer, const CameraPoint& point, double* p)
{
  if (p != nullptr) {
    write_point(point.get(*renderer.GetActiveCamera()), p);
  }
}

// ---------------------------------------------------------------------------------------------------------
// Rotation

// 0 to 2 for x to z; any other axis is an error and gives false.
bool read_axis(char axis, int& index)
{
  index = axis - 'x';
  if (index >= 0 && index <= 2) {
    return true;
  }
  MRUtil::print_error("Invalid Rotation Axis Specified");
  return false;
}

using Turn = void (*)(vtkCamera& camera, double degrees);

void elevate(vtkCamera& camera, double degrees)
{
  // Half a turn at once would leave the view up where it is.
  const int parts = degrees == 180.0 ? 2 : 1;
  for (int part = 0; part < parts; ++part) {
    camera.Elevation(degrees / parts);
    camera.OrthogonalizeViewUp();
  }
}

void pitch(vtkCamera& camera, double degrees)
{
  camera.Pitch(degrees);
  camera.OrthogonalizeViewUp();
}

constexpr Turn TurnsAboutTarget[] = {elevate,
                                     [](vtkCamera& camera, double degrees) { camera.Azimuth(degrees); },
                                     [](vtkCamera& camera, double degrees) { camera.Roll(degrees); }};
constexpr Turn TurnsAboutCamera[] = {pitch, [](vtkCamera& camera, double degrees) { camera.Yaw(degrees); },
                                     [](vtkCamera& camera, double degrees) { camera.Roll(degrees); }};

void turn_about_line(vtkCamera& camera, double degrees, const BrantVector& point, const BrantVector& axis)
{
  vtkNew<vtkTransform> transform;
  transform->Translate(point.data());
  transform->RotateWXYZ(degrees, axis.data());
  transform->Translate((-point).data());
  camera.ApplyTransform(transform);
}

// The turn gets the camera and the degrees of each frame.
template<typename Turning>
void rotate(GView& view, double angle, int steps, int smooth, Turning&& turn)
{
  if (!std::isfinite(angle)) {
    return;
  }
  CameraMotion motion(view);
  const morrow::TurnRamp ramp(motion.steps(steps), motion.smooth(smooth));
  const double part = ramp.part_of_angle(angle);
  motion.play(ramp, [&](vtkCamera& camera, double factor) { turn(camera, factor * part); });
}

// ---------------------------------------------------------------------------------------------------------
// Screen

// The world offset of a length along each of the window's sides.
BrantVector offset_of_lengths(vtkCamera& camera, double dx, double dy)
{
  const vtkMatrix4x4* view = camera.GetViewTransformMatrix();
  BrantVector offset;
  for (int axis = 0; axis < 3; ++axis) {
    offset[axis] = view->GetElement(0, axis) * dx + view->GetElement(1, axis) * dy;
  }
  return offset;
}

void convert_to_world(vtkRenderer& renderer, double x, double y, double z, double* world)
{
  renderer.SetDisplayPoint(x, y, z);
  renderer.DisplayToView();
  renderer.ViewToWorld();
  renderer.GetWorldPoint(world);
  if (world[3] != 0.0) {
    std::for_each(world, world + 3, [=](double& each) { each /= world[3]; });
    world[3] = 1.0;
  }
}

void convert_to_display(vtkRenderer& renderer, double x, double y, double z, double* display)
{
  renderer.SetWorldPoint(x, y, z, 1.0);
  renderer.WorldToView();
  renderer.ViewToDisplay();
  renderer.GetDisplayPoint(display);
}

// The world offset of pixels at the depth of the focal point.
BrantVector offset_of_pixels(vtkRenderer& renderer, double dx, double dy)
{
  const BrantVector focal = At.get(*renderer.GetActiveCamera());
  double display[3];
  convert_to_display(renderer, focal.x(), focal.y(), focal.z(), display);
  double start[4];
  double end[4];
  convert_to_world(renderer, 0.0, 0.0, display[2], start);
  convert_to_world(renderer, dx, dy, display[2], end);
  return BrantVector(end) - BrantVector(start);
}

void print_vector(const char* name, const BrantVector& value, const char* end)
{
  MRUtil::print_info("%s: <%10.6fi %10.6fj %10.6fk>%s", name, value.x(), value.y(), value.z(), end);
}

// Of an angle of view. A host can give a camera one that is not a number; it has no whole part.
int whole_degrees(double angle)
{
  return std::isnan(angle) ? 0 : static_cast<int>(angle);
}

BrantVector view_to_world(vtkRenderer& renderer, double x, double y, double z)
{
  renderer.ViewToWorld(x, y, z);
  return {x, y, z};
}

} // namespace

// ---------------------------------------------------------------------------------------------------------
// Placement

void GView::set_at(const double* p, int steps, int smooth)
{
  if (is_point(p)) {
    mIsAutoCenterOff = true;
    move_point(*this, At, BrantVector(p), steps, smooth);
  }
}

void GView::set_from(const double* p, int steps, int smooth)
{
  if (is_point(p)) {
    mIsAutoCenterOff = true;
    move_point(*this, From, BrantVector(p), steps, smooth);
  }
}

void GView::set_up(const double* p, int steps, int smooth)
{
  if (is_point(p)) {
    mIsAutoCenterOff = true;
    move_point(*this, Up, BrantVector(p), steps, smooth);
  }
}

void GView::get_at(double* p) const
{
  get_point(*mRenderer, At, p);
}

void GView::get_from(double* p) const
{
  get_point(*mRenderer, From, p);
}

void GView::get_up(double* p) const
{
  get_point(*mRenderer, Up, p);
}

void GView::set_parallel_scale(double scale)
{
  if (std::isfinite(scale) && scale > 0.0) {
    camera_of(*mRenderer)->SetParallelScale(scale);
  }
}

double GView::get_parallel_scale() const
{
  return mRenderer->GetActiveCamera()->GetParallelScale();
}

void GView::set_perspective(bool on)
{
  const CameraMotion motion(*this);
  if (motion.view_is_alive() && !on) {
    this->frame_visible();
  }
  if (motion.view_is_alive()) {
    motion.camera()->SetParallelProjection(!on);
  }
}

bool GView::get_perspective() const
{
  return mRenderer->GetActiveCamera()->GetParallelProjection() == 0;
}

void GView::set_perspective_angle(double degrees)
{
  if (std::isfinite(degrees)) {
    camera_of(*mRenderer)->SetViewAngle(degrees);
  }
}

double GView::get_perspective_angle() const
{
  return mRenderer->GetActiveCamera()->GetViewAngle();
}

void GView::reset_camera()
{
  const CameraMotion motion(*this);
  if (motion.view_is_alive()) {
    mIsAutoCenterOff = false;
    motion.camera()->SetViewAngle(DefaultViewAngle);
  }
  if (motion.view_is_alive()) {
    this->frame_visible();
  }
}

void GView::reset_camera_all()
{
  morrow::call_each(morrow::registered_views(), [](const auto& view) { view->reset_camera(); });
}

void GView::complete_reset_camera()
{
  const CameraMotion motion(*this);
  if (!motion.view_is_alive()) {
    return;
  }
  mIsAutoCenterOff = false;
  const vtkSmartPointer<vtkCamera> camera = motion.camera();
  camera->SetPosition(0.0, 0.0, 1.0);
  camera->SetFocalPoint(0.0, 0.0, 0.0);
  camera->SetViewUp(0.0, 1.0, 0.0);
  camera->SetViewAngle(DefaultViewAngle);
  if (motion.view_is_alive()) {
    this->frame_visible();
  }
}

void GView::complete_reset_camera_all()
{
  morrow::call_each(morrow::registered_views(), [](const auto& view) { view->complete_reset_camera(); });
}

// ---------------------------------------------------------------------------------------------------------
// Motion

void GView::pan(double dx, double dy, int steps, int smooth, int mode)
{
  CameraMotion motion(*this);
  if (!motion.view_is_alive() || (mode != 1 && mode != 2) || steps < 1) {
    return;
  }
  const vtkSmartPointer<vtkCamera> camera = motion.camera();
  int width = 0;
  int height = 0;
  this->get_size(width, height);
  const BrantVector offset = mode == 1 ? offset_of_pixels(motion.renderer(), width * dx, height * dy)
                                       : offset_of_lengths(*camera, dx, dy);
  const BrantVector step = offset / motion.steps(steps);
  if (!step.is_finite()) {
    return;
  }
  const BrantVector focal = At.get(*camera);
  const BrantVector position = From.get(*camera);
  double sum = 0.0;
  const morrow::PanRamp ramp(motion.steps(steps), motion.smooth(smooth));
  motion.play(ramp, [&](vtkCamera& moved, double factor) {
    sum += factor;
    At.set(moved, focal - sum * step);
    From.set(moved, position - sum * step);
  });
}

void GView::rotate_about_target(double angle, char axis, int steps, int smooth)
{
  int index = 0;
  if (read_axis(axis, index)) {
    rotate(*this, angle, steps, smooth, TurnsAboutTarget[index]);
  }
}

void GView::rotate_about_camera(double angle, char axis, int steps, int smooth)
{
  int index = 0;
  if (read_axis(axis, index)) {
    rotate(*this, angle, steps, smooth, TurnsAboutCamera[index]);
  }
}

void GView::rotate_about_world(double angle, char axis, int steps, int smooth)
{
  int index = 0;
  if (read_axis(axis, index)) {
    BrantVector direction;
    direction[index] = 1.0;
    rotate(*this, angle, steps, smooth, [&](vtkCamera& camera, double degrees) {
      turn_about_line(camera, degrees, BrantVector(), direction);
    });
  }
}

void GView::rotate_about_world(double angle, const double* p1, const double* p2, int steps, int smooth)
{
  if (!is_point(p1) || !is_point(p2)) {
    return;
  }
  const BrantVector point(p1);
  const BrantVector direction = (BrantVector(p2) - point).normalized();
  if (direction != BrantVector()) {
    rotate(*this, angle, steps, smooth,
           [&](vtkCamera& camera, double degrees) { turn_about_line(camera, degrees, point, direction); });
  }
}

// ---------------------------------------------------------------------------------------------------------
// Conversions

void GView::display_to_world(double x, double y, double z, double* world) const
{
  if (world != nullptr) {
    const vtkSmartPointer<vtkRenderer> renderer = mRenderer; // its observers are host code
    convert_to_world(*renderer, x, y, z, world);
  }
}

void GView::world_to_display(double x, double y, double z, double* display) const
{
  if (display != nullptr) {
    const vtkSmartPointer<vtkRenderer> renderer = mRenderer; // its observers are host code
    convert_to_display(*renderer, x, y, z, display);
  }
}

void GView::pixel_to_model_length(vtkRenderer* renderer, double pixels, double& length, const double* point)
{
  if (renderer == nullptr || renderer->IsActiveCameraCreated() == 0) {
    return;
  }
  const int* size = renderer->GetSize();
  const int shorter = std::min(size[0], size[1]);
  if (shorter <= 0) {
    return;
  }
  double reference[3] = {0.0, 0.0, 0.0};
  if (point != nullptr) {
    std::copy_n(point, 3, reference);
  }
  renderer->WorldToView(reference[0], reference[1], reference[2]);
  const double depth = reference[2];
  const BrantVector start = view_to_world(*renderer, 0.0, 0.0, depth);
  const BrantVector end = view_to_world(*renderer, 2.0 * pixels / shorter, 0.0, depth);
  length = start.distance_between(end);
}

void GView::pixel_to_model_length(double pixels, double& length, const double* point) const
{
  pixel_to_model_length(mRenderer, pixels, length, point);
}

// ---------------------------------------------------------------------------------------------------------
// Modes and report

void GView::mouse_xforms()
{
  if (mRenderWindow == nullptr || this->is_in_frame()) {
    return;
  }
  // Its observers are host code: they may destroy the view, and with it the window.
  const vtkSmartPointer<vtkRenderWindowInteractor> interactor = mRenderWindow->GetInteractor();
  if (interactor == nullptr) {
    return;
  }
  const bool was_enabled = interactor->GetEnabled() != 0;
  interactor->Enable();
  interactor->ReInitialize();
  if (!was_enabled) {
    interactor->Disable();
  }
}

void GView::set_2d_mode(double xmin, double ymin, double xmax, double ymax)
{
  const BrantVector centre((xmin + xmax) / 2.0, (ymin + ymax) / 2.0, 0.0);
  const double scale = std::max(xmax - xmin, ymax - ymin) / 2.0;
  if (!centre.is_finite() || !std::isfinite(scale)) {
    return;
  }
  mIsAutoCenterOff = true;
  mIs2dMode = true;
  const vtkSmartPointer<vtkCamera> camera = camera_of(*mRenderer);
  camera->ParallelProjectionOn();
  camera->SetFocalPoint(centre.data());
  camera->SetPosition(centre.x(), centre.y(), 1.0);
  const BrantVector down(0.0, 0.0, -1.0);
  camera->SetViewUp(morrow::up_for(down, down, Up.get(*camera)).data());
  if (scale > 0.0) {
    camera->SetParallelScale(scale);
  }
}

bool GView::get_2d_mode() const
{
  return mIs2dMode;
}

void GView::set_stereo_separation(double degrees)
{
  if (std::isfinite(degrees)) {
    morrow::call_each(morrow::registered_views(), [degrees](const std::shared_ptr<GView>& view) {
      camera_of(*view->mRenderer)->SetEyeAngle(degrees);
    });
  }
}

void GView::list_view() const
{
  const vtkSmartPointer<vtkCamera> camera = camera_of(*mRenderer);
  const BrantVector from = From.get(*camera);
  const BrantVector at = At.get(*camera);
  const BrantVector up = Up.get(*camera);
  const bool is_parallel = camera->GetParallelProjection() != 0;
  const double angle = camera->GetViewAngle();
  int width = 0;
  int height = 0;
  this->get_size(width, height);
  const bool is_auto_center_off = mIsAutoCenterOff;
  const bool has_triad = this->get_triad_vis();
  // The print function is host code and may destroy the view: nothing of it is read from here on.
  MRUtil::print_info("...Current View Parameters\n");
  print_vector(" From", from, "\n");
  print_vector("   At", at, "\n");
  print_vector("   Up", up, "\n");
  print_vector(" View", (at - from).normalized(), " (From to At, normalized)\n\n");
  MRUtil::print_info(" Distance from 'from' to 'at' is %f.\n", from.distance_between(at));
  MRUtil::print_info(" Displayed view size is %d horizontal by %d vertical.\n\n", width, height);
  if (is_parallel) {
    MRUtil::print_info(" Perspective is not enabled.\n");
  } else {
    MRUtil::print_info(" Perspective Angle is %d degrees.\n", whole_degrees(angle));
  }
  MRUtil::print_info(" AutoCenter %s, Triad %s \n", is_auto_center_off ? "OFF" : "ON",
                     has_triad ? "ON" : "OFF");
}
