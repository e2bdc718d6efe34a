// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// The zooms of a view: members of GView.
#include "GView.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <optional>

#include "BrantVector.h"
#include "CameraMotion.h"
#include "CameraRamp.h"
#include "ZoomBoxGeometry.h"

#include <vtkCamera.h>
#include <vtkMath.h>
#include <vtkNew.h>
#include <vtkRenderer.h>
#include <vtkTransform.h>

using morrow::BoxBounds;
using morrow::CameraMotion;

namespace {

// Between two frames of an animated zoom to a box: 50 ms.
const timespec gAnimateStepTime = {0, 50000000};

// ---------------------------------------------------------------------------------------------------------
// By a factor

constexpr double SmallestDistance = 1e-20; // VTK takes no smaller one
constexpr double SameDirectionCosine = 1.0 - 1e-6;

// A camera so near to its focal point, or so far from it, that rounding loses its direction never gets it
// back.
bool keeps_direction(const BrantVector& position, const BrantVector& focal, const BrantVector& direction)
{
  const BrantVector sight = focal - position;
  const double distance = std::sqrt(sight.length_squared());
  return std::isfinite(distance) && distance >= SmallestDistance &&
         sight.dot(direction) >= SameDirectionCosine * distance;
}

void come_nearer(CameraMotion& motion, double factor, int steps, int smooth)
{
  const vtkSmartPointer<vtkCamera> camera = motion.camera();
  const BrantVector focal(camera->GetFocalPoint());
  const BrantVector direction(camera->GetDirectionOfProjection());
  BrantVector position(camera->GetPosition());
  const BrantVector target = focal - camera->GetDistance() / factor * direction;
  const BrantVector step = (target - position) / steps;
  if (!step.is_finite() || !keeps_direction(target, focal, direction)) {
    return;
  }
  const auto move = [&](vtkCamera& moved, double part) {
    position += part * step;
    moved.SetPosition(position.data());
  };
  motion.play(morrow::ZoomRamp(steps, smooth), move, &CameraMotion::show_updated);
}

float part_of_factor(double factor, int parts)
{
  return static_cast<float>(factor >= 1.0 ? (factor - 1.0) / parts + 1.0 : 1.0 - (1.0 - factor) / parts);
}

// The scale stays above 0 and finite: no zoom leads back from anything else.
void zoom(vtkCamera& camera, double factor)
{
  const double scale = camera.GetParallelScale() / factor;
  if (std::isfinite(scale) && scale > 0.0) {
    camera.Zoom(factor);
  }
}

// The eased frames multiply the scale by a part of the factor; deliberate.
void enlarge(CameraMotion& motion, double factor, int steps, int smooth)
{
  const double step = static_cast<double>(part_of_factor(factor, steps));
  if (steps < 2) {
    zoom(*motion.camera(), step);
    return;
  }
  motion.play(
      morrow::ZoomRamp(steps, smooth), [=](vtkCamera& camera, double part) { zoom(camera, part * step); },
      &CameraMotion::show_unclipped);
}

// ---------------------------------------------------------------------------------------------------------
// To a box

/// Counts how deep calls are nested, while it lives.
class DepthScope
{
public:
  explicit DepthScope(int& depth) : mDepth(depth), mIsOutermost(depth == 0) { ++mDepth; }
  ~DepthScope() { --mDepth; }
  DepthScope(const DepthScope&) = delete;
  DepthScope& operator=(const DepthScope&) = delete;

  [[nodiscard]] bool is_outermost() const { return mIsOutermost; }

private:
  int& mDepth;
  bool mIsOutermost;
};

std::optional<BoxBounds> visible_bounds(vtkRenderer& renderer)
{
  double bounds[6];
  renderer.ComputeVisiblePropBounds(bounds);
  if (vtkMath::AreBoundsInitialized(bounds) == 0) {
    return std::nullopt;
  }
  return morrow::bounds_from(bounds);
}

// From the direction that the camera has.
void frame_box(vtkCamera& camera, const BoxBounds& box)
{
  const BrantVector centre = morrow::centre_of(box);
  const BrantVector normal(camera.GetViewPlaneNormal());
  const double radius = morrow::framing_radius(box);
  double distance = camera.GetDistance();
  if (camera.GetParallelProjection() != 0) {
    camera.SetParallelScale(radius);
  } else {
    distance = morrow::framing_distance(radius, camera.GetViewAngle());
  }
  camera.SetFocalPoint(centre.data());
  camera.SetPosition((centre + normal * distance).data());
}

// Makes the view up perpendicular to the direction of projection, which was another one before.
void straighten_up(vtkCamera& camera, const BrantVector& before)
{
  const BrantVector direction(camera.GetDirectionOfProjection());
  camera.SetViewUp(morrow::up_for(direction, before, BrantVector(camera.GetViewUp())).data());
  camera.OrthogonalizeViewUp();
}

void look_along(vtkCamera& camera, const BrantVector& direction)
{
  const BrantVector before(camera.GetDirectionOfProjection());
  const BrantVector focal(camera.GetFocalPoint());
  camera.SetPosition((focal - direction * camera.GetDistance()).data());
  straighten_up(camera, before);
}

void turn_about_focal_point(vtkCamera& camera, const morrow::ViewTurn& turn, double degrees)
{
  const BrantVector focal(camera.GetFocalPoint());
  vtkNew<vtkTransform> transform;
  transform->Translate(focal.data());
  transform->RotateWXYZ(degrees, turn.axis.data());
  transform->Translate((-focal).data());
  camera.ApplyTransform(transform);
}

// What turns the camera into the direction, if there is one, after the view up has been made fit for it.
morrow::ViewTurn prepare_turn(vtkCamera& camera, const BrantVector& direction)
{
  if (direction == BrantVector()) {
    return {};
  }
  const BrantVector before(camera.GetDirectionOfProjection());
  straighten_up(camera, before);
  return morrow::turn_between(before, direction, BrantVector(camera.GetViewUp()));
}

void show_box(CameraMotion& motion, const BoxBounds& box, const BrantVector& direction)
{
  const vtkSmartPointer<vtkCamera> camera = motion.camera();
  frame_box(*camera, box);
  if (direction != BrantVector()) {
    look_along(*camera, direction);
  }
  motion.show();
}

void animate_to_box(CameraMotion& motion, const BoxBounds& start, const BoxBounds& end,
                    const BrantVector& direction, const morrow::BoxRamp& ramp)
{
  const morrow::ViewTurn turn = prepare_turn(*motion.camera(), direction);
  double fraction = 0.0;
  for (std::int64_t frame = 0; frame < ramp.frame_count(); ++frame) {
    if (ramp.waits(frame) && motion.can_render()) {
      nanosleep(&gAnimateStepTime, nullptr);
    }
    if (!motion.may_step(ramp.reads_interrupt(frame))) {
      return;
    }
    motion.update_models();
    if (!motion.view_is_alive()) {
      return;
    }
    if (turn.angle != 0.0) {
      turn_about_focal_point(*motion.camera(), turn, turn.angle / static_cast<double>(ramp.frame_count()));
    }
    fraction += ramp.part_of_length(ramp.factor(frame));
    show_box(motion, morrow::between(start, end, fraction), BrantVector());
  }
}

} // namespace

void GView::zoom_screen(double factor, int steps, int smooth)
{
  const double enlargement = factor < 0.0 ? -1.0 / factor : factor;
  if (factor == 0.0 || factor == 1.0 || !std::isfinite(factor) || !std::isfinite(enlargement)) {
    return;
  }
  CameraMotion motion(*this);
  if (!motion.view_is_alive()) {
    return;
  }
  mIsAutoCenterOff = true;
  const int parts = std::max(motion.steps(steps), 1);
  if (this->get_perspective()) {
    come_nearer(motion, enlargement, parts, motion.smooth(smooth));
  } else {
    enlarge(motion, enlargement, parts, motion.smooth(smooth));
  }
}

void GView::zoom_box(const double* box, int steps, int smooth, const double* direction)
{
  static int depth = 0;
  const BrantVector along(direction);
  if (box == nullptr || !along.is_finite()) {
    return;
  }
  const BoxBounds asked = morrow::bounds_from(box);
  const DepthScope scope(depth);
  CameraMotion motion(*this);
  if (!motion.view_is_alive() || morrow::has_nan(asked)) {
    return;
  }
  const std::optional<BoxBounds> visible = visible_bounds(motion.renderer());
  const BoxBounds framed =
      scope.is_outermost() ? morrow::adjusted_for_zoom(asked, visible ? &*visible : nullptr) : asked;
  if (!morrow::is_finite(framed)) {
    return;
  }
  if (motion.steps(steps) == 1) {
    show_box(motion, framed, along.normalized());
  } else {
    const BoxBounds start = visible && morrow::is_finite(*visible) ? *visible : framed;
    animate_to_box(motion, start, framed, along.normalized(), morrow::BoxRamp(steps, smooth));
  }
}
