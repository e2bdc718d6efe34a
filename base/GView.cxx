// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GView.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <utility>

#include "BackgroundColor.h"
#include "BrantVector.h"
#include "GModelSet.h"
#include "GViewFlagScope.h"
#include "GViewRenderPass.h"
#include "Lighting.h"
#include "MRUtil.h"
#include "PropList.h"
#include "RenderGuard.h"
#include "TextWarmUp.h"
#include "TitleTemplate.h"
#include "VTKSeam.h"
#include "ViewCalls.h"
#include "ViewDecorations.h"
#include "WindowRestart.h"

#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkCommand.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkShaderProgram.h>

using morrow::call_each;
using morrow::exception_of;
using morrow::keep_first;
using morrow::registered_views;

namespace {

constexpr int DefaultBackground = 9;  // white
constexpr int DefaultBackground2 = 0; // black
constexpr double OcclusionRatio = 0.1;
constexpr int MaximumPeels = 40;
constexpr int NumLayers = 2;
constexpr int OverlayLayer = 1;

// Never destroyed, as the registry.
std::string& gCurrentTitle = *new std::string("Brant ##");

// What VTK does when it frames with a view up along the line of sight, less its warning.
void straighten_view_up(vtkCamera& camera)
{
  constexpr double nearly_parallel = 0.999;
  const BrantVector up(camera.GetViewUp());
  if (std::abs(up.dot(BrantVector(camera.GetViewPlaneNormal()))) > nearly_parallel) {
    camera.SetViewUp(-up.z(), up.x(), up.y());
  }
}

/// Takes renderers out of the window whose frame ends.
class LeaveAtEndOfFrame : public vtkCommand
{
public:
  static LeaveAtEndOfFrame* New() { return new LeaveAtEndOfFrame; }
  vtkTypeMacro(LeaveAtEndOfFrame, vtkCommand)
  LeaveAtEndOfFrame(const LeaveAtEndOfFrame&) = delete;
  void operator=(const LeaveAtEndOfFrame&) = delete;

  void Execute(vtkObject* caller, unsigned long /*event*/, void* /*call_data*/) override
  {
    auto* window = vtkRenderWindow::SafeDownCast(caller);
    window->RemoveObserver(this);
    for (const auto& renderer : renderers) {
      window->RemoveRenderer(renderer);
    }
    renderers.clear();
  }

  std::vector<vtkSmartPointer<vtkRenderer>> renderers;

private:
  LeaveAtEndOfFrame() = default;
};

} // namespace

// Never destroyed: views that are still registered when the process ends must not be taken apart among the
// ruins of other libraries, or inside a frame from which the host has called exit().
GView::Registry& GView::mAllViews = *new GView::Registry;
GView* GView::mCurrentView = nullptr;
int GView::mWindowPosition[4] = {0, 0, 500, 500};
int GView::mGlobalBackgroundColor = DefaultBackground;
int GView::mGlobalBackgroundColor2 = DefaultBackground2;
bool GView::mStereoMode = false;
bool GView::mUseOffscreen = false;

// ---------------------------------------------------------------------------------------------------------
// Life

GView::GView()
    : mBackground(mGlobalBackgroundColor), mBackground2(mGlobalBackgroundColor2),
      mHandle(std::make_shared<GView*>(this)), mException(std::make_shared<std::exception_ptr>())
{
  morrow::warm_up_text();
  mStereoMode = false; // deliberate: each new view does this, existing windows keep their stereo state
  this->make_observers();
  this->make_renderers();
  this->set_render_window(vtkSmartPointer<vtkRenderWindow>::New());
  this->set_title_bar(nullptr); // deliberate: the view has no id yet
  mId = get_available_id(-1);
  this->set_background(-1);
  this->set_background2(-1);
  this->make_lights();
  mDecorations->axes.make_triad();
}

GView::~GView()
{
  mDecorations->take_down();
  if (mModelSet != nullptr) {
    mModelSet->remove_view(this);
  }
  *mHandle = nullptr;
  this->leave_window_for_good();
  mViewportObserver->SetCallback(nullptr);
  mViewportObserver->SetClientData(nullptr);
  if (mCurrentView == this) {
    mCurrentView = nullptr;
  }
}

vtkSmartPointer<vtkCallbackCommand>
GView::make_command(void (*callback)(vtkObject*, unsigned long, void*, void*), GView* view)
{
  auto command = vtkSmartPointer<vtkCallbackCommand>::New();
  command->SetCallback(callback);
  command->SetClientData(view);
  return command;
}

void GView::make_observers()
{
  mStartRenderObserver = make_command(&GView::StartRender, this);
  mViewportObserver = make_command(&GView::SetViewportShaderUniform, this);
}

void GView::make_renderers()
{
  mOverlayRenderer = vtkSmartPointer<vtkRenderer>::New();
  mOverlayRenderer->SetLayer(OverlayLayer);
  mOverlayRenderer->InteractiveOff();

  mRenderer = vtkSmartPointer<vtkRenderer>::New();
  mRenderer->UseDepthPeelingOn();
  mRenderer->SetOcclusionRatio(OcclusionRatio);
  mRenderer->SetMaximumNumberOfPeels(MaximumPeels);
  mRenderPass = vtkSmartPointer<GViewRenderPass>::New();
  mRenderer->SetPass(mRenderPass);
  mPropList = std::make_unique<morrow::PropList>(*mRenderer);
  mDecorations = std::make_shared<morrow::ViewDecorations>(*mRenderer);
}

void GView::make_lights()
{
  const float* light = mLightIntensity;
  mRenderer->CreateLight();
  mRenderer->SetAmbient(mAmbientIntensity[0], mAmbientIntensity[1], mAmbientIntensity[2]);
  const double color[3] = {light[0], light[1], light[1]}; // deliberate: green twice, blue never
  morrow::set_lights(*mRenderer, color, morrow::mean_intensity(light));
}

std::shared_ptr<GView* const> GView::handle() const
{
  return mHandle;
}

// ---------------------------------------------------------------------------------------------------------
// Window and renderers

// VTK walks the window's renderers; it does not yet while the frame is being prepared.
bool GView::is_drawing() const
{
  return mRenderWindow != nullptr && mRenderWindow->CheckInRenderStatus() != 0 && !mIsPreparing;
}

void GView::set_render_window(vtkRenderWindow* window)
{
  const bool is_drawn_by_another =
      window != nullptr && window != mRenderWindow && window->CheckInRenderStatus() != 0;
  if (this->is_drawing() || is_drawn_by_another) {
    return;
  }
  const vtkSmartPointer<vtkRenderWindow> kept = window; // it may be the one to leave
  this->leave_window();
  if (window != nullptr) {
    this->enter_window(window);
  }
  const std::shared_ptr<morrow::ViewDecorations> decorations = mDecorations;
  decorations->scalar_bar.update(); // host code may destroy the view in it
}

void GView::leave_window()
{
  if (mRenderWindow == nullptr) {
    return;
  }
  this->disable_overlay();
  mRenderPass->forget_window(mRenderWindow);
  mRenderer->SetRenderWindow(nullptr);
  mRenderWindow->RemoveRenderer(mRenderer);
  mRenderWindow->RemoveObserver(mStartRenderObserver);
  mRenderWindow = nullptr;
}

// A window that is drawing still needs its renderers: they leave at the end of its frame.
void GView::leave_window_for_good()
{
  if (!this->is_drawing()) {
    this->leave_window();
    return;
  }
  mRenderWindow->RemoveObserver(mStartRenderObserver);
  vtkNew<LeaveAtEndOfFrame> command;
  command->renderers = {mRenderer, mOverlayRenderer};
  mRenderWindow->AddObserver(vtkCommand::EndEvent, command);
}

void GView::enter_window(vtkRenderWindow* window)
{
  mRenderWindow = window;
  const morrow::WindowRestart restart(*window);
  window->SetPosition(mWindowPosition[0], mWindowPosition[1]);
  window->SetSize(mWindowPosition[2], mWindowPosition[3]);
  window->AddObserver(vtkCommand::StartEvent, mStartRenderObserver);
  if (mStereoMode) {
    window->StereoCapableWindowOn();
    window->StereoRenderOn();
  }
  if (mUseOffscreen) {
    window->OffScreenRenderingOn();
  }
  window->SetNumberOfLayers(NumLayers);
  morrow::compute_aspect_afresh(*mOverlayRenderer, *window);
  mOverlayRenderer->SetRenderWindow(nullptr);
  morrow::compute_aspect_afresh(*mRenderer, *window);
  window->AddRenderer(mRenderer);
  window->AlphaBitPlanesOn();
  window->SetMultiSamples(0);
  window->DoubleBufferOn();
}

vtkRenderWindow* GView::get_render_window() const
{
  return mRenderWindow;
}

vtkRenderer* GView::get_renderer() const
{
  return mRenderer;
}

vtkRenderer* GView::get_overlay_renderer() const
{
  return mOverlayRenderer;
}

void GView::enable_overlay()
{
  if (mRenderWindow != nullptr && !this->is_drawing()) {
    mRenderWindow->AddRenderer(mOverlayRenderer);
  }
}

void GView::disable_overlay()
{
  if (mRenderWindow != nullptr && !this->is_drawing()) {
    mRenderWindow->MakeCurrent(); // props let go of their graphics resources
    mOverlayRenderer->SetRenderWindow(nullptr);
    mRenderWindow->RemoveRenderer(mOverlayRenderer);
  }
}

void GView::get_size(int& width, int& height) const
{
  width = height = 0;
  if (mRenderWindow != nullptr) {
    const int* size = mRenderWindow->GetSize();
    width = size[0];
    height = size[1];
  }
}

void GView::set_title_bar(const char* text)
{
  if (mRenderWindow != nullptr) {
    const std::string title = text != nullptr ? text : gCurrentTitle;
    mRenderWindow->SetWindowName(morrow::expand_title(title, mId).c_str());
  }
}

void GView::set_title_bars(const char* text)
{
  if (text != nullptr) {
    gCurrentTitle = text;
  }
  for (const auto& view : registered_views()) {
    view->set_title_bar(text);
  }
}

// ---------------------------------------------------------------------------------------------------------
// Registry

int GView::get_available_id(int wanted)
{
  std::set<int> taken;
  for (const auto& view : mAllViews) {
    taken.insert(view->get_id());
  }
  int id = std::max(wanted, 1);
  while (taken.count(id) != 0) {
    id = id == INT_MAX ? 1 : id + 1;
  }
  return id;
}

const GView::Registry& GView::all_views()
{
  return mAllViews;
}

void GView::add_global_view(const std::shared_ptr<GView>& view)
{
  if (view != nullptr) {
    mAllViews.insert(view);
    mCurrentView = view.get();
  }
}

void GView::remove_global_view(const std::shared_ptr<GView>& view)
{
  if (view == nullptr) {
    return;
  }
  const std::shared_ptr<GView> kept = view; // the argument may be the registry's own entry
  mAllViews.erase(kept);
  if (mCurrentView == kept.get()) {
    mCurrentView = nullptr;
  }
}

GView* GView::find_view_by_name(const std::string& name)
{
  for (const auto& view : mAllViews) {
    if (view->get_name() == name) {
      return view.get();
    }
  }
  return nullptr;
}

std::shared_ptr<GView> GView::find_view_by_id(int id)
{
  for (const auto& view : mAllViews) {
    if (view->get_id() == id) {
      return view;
    }
  }
  return nullptr;
}

GView* GView::get_current_view()
{
  if (mCurrentView == nullptr && !mAllViews.empty()) {
    mCurrentView = mAllViews.begin()->get();
  }
  return mCurrentView;
}

void GView::set_current_view(GView* view)
{
  mCurrentView = view;
}

// ---------------------------------------------------------------------------------------------------------
// Models and props

void GView::set_model_set(GModelSet* set)
{
  if (set == mModelSet) {
    return;
  }
  if (mModelSet != nullptr) {
    mModelSet->remove_view(this);
  }
  mModelSet = set;
  if (set != nullptr) {
    set->add_view(this);
  }
}

void GView::forget_model_set(GModelSet* set)
{
  if (mModelSet == set) {
    mModelSet = nullptr;
  }
}

void GView::update_models()
{
  if (mModelSet != nullptr && !mIsUpdating && MRUtil::get_graphics_status() == MRUtil::GRAPHICS_NORMAL) {
    const FlagScope updating(*this, &GView::mIsUpdating);
    mModelSet->update_model_parts();
  }
}

void GView::add_props(const Props& props)
{
  mPropList->add(props);
}

void GView::remove_props(const Props& props)
{
  mPropList->remove(props);
}

// ---------------------------------------------------------------------------------------------------------
// Rendering

bool GView::is_in_frame() const
{
  return mIsRendering || mIsPreparing || this->is_drawing();
}

bool GView::can_render() const
{
  return mRenderWindow != nullptr && !this->is_in_frame() &&
         MRUtil::get_graphics_status() == MRUtil::GRAPHICS_NORMAL;
}

void GView::render()
{
  this->run_frame({&GView::update_models, &GView::draw_frame});
}

// The steps run host code: none of them stops for what another one has thrown, but all when the view is gone.
void GView::run_frame(std::initializer_list<void (GView::*)()> steps)
{
  if (!this->can_render()) {
    return;
  }
  const FlagScope rendering(*this, &GView::mIsRendering);
  // Both outlive a view that its own frame destroys.
  const vtkSmartPointer<GViewRenderPass> pass = mRenderPass;
  const std::shared_ptr<std::exception_ptr> first = mException;

  keep_first(*first, pass->take_exception()); // of a frame that somebody else has started
  for (const auto step : steps) {
    if (rendering.view_is_alive()) {
      const std::exception_ptr thrown = exception_of([&] { (this->*step)(); });
      keep_first(*first, pass->take_exception());
      keep_first(*first, thrown);
    }
  }
  if (*first != nullptr) {
    std::rethrow_exception(std::exchange(*first, nullptr));
  }
}

void GView::draw_frame()
{
  if (const vtkSmartPointer<vtkRenderWindow> window = mRenderWindow) {
    const vtkSmartPointer<vtkRenderer> renderer = mRenderer; // props that are asked for bounds are host code
    renderer->ResetCameraClippingRange();
    morrow::render_guarded(*window);
  }
}

// The camera's clipping range stays as it is.
void GView::draw_window()
{
  if (mRenderWindow != nullptr) {
    morrow::render_guarded(*mRenderWindow);
  }
}

void GView::render_all()
{
  call_each(registered_views(), [](const std::shared_ptr<GView>& view) { view->render(); });
}

void GView::render_views(const std::vector<GView*>& views)
{
  std::vector<std::shared_ptr<GView* const>> handles;
  handles.reserve(views.size());
  for (const GView* view : views) {
    handles.push_back(view->handle());
  }
  call_each(handles, [](const std::shared_ptr<GView* const>& handle) {
    if (*handle != nullptr) {
      (*handle)->render();
    }
  });
}

void GView::StartRender(vtkObject* caller, unsigned long /*event*/, void* client_data, void* /*call_data*/)
{
  auto* window = vtkRenderWindow::SafeDownCast(caller);
  if (window != nullptr && client_data != nullptr) {
    static_cast<GView*>(client_data)->prepare_frame(*window);
  }
}

void GView::prepare_frame(vtkRenderWindow& window)
{
  const std::shared_ptr<GView* const> view = mHandle;
  this->fit_view_angle(window);
  if (*view == nullptr) {
    return; // an observer of the camera is host code
  }
  const bool is_stopped = MRUtil::get_graphics_status() != MRUtil::GRAPHICS_NORMAL;
  this->hold_overlay(is_stopped);
  if (is_stopped) {
    window.SetAbortRender(1);
    return;
  }
  // What a host's models throw must not unwind VTK's render: the window would never render again.
  const FlagScope preparing(*this, &GView::mIsPreparing);
  const std::shared_ptr<std::exception_ptr> first = mException;
  keep_first(*first, exception_of([this] { this->update_models(); }));
  if (preparing.view_is_alive()) {
    keep_first(*first, exception_of([this] { this->prepare_decorations(); }));
  }
}

// The last two call host code, which may destroy the view.
void GView::prepare_decorations()
{
  const std::shared_ptr<morrow::ViewDecorations> decorations = mDecorations;
  decorations->follow_background(mBackground, mBackground2);
  decorations->title.fit();
  decorations->scalar_bar.update();
  decorations->cube_axes.fit();
}

// An aborted frame leaves the picture of the last one; the overlay would be drawn over itself.
void GView::hold_overlay(bool hold)
{
  if (hold && mOverlayRenderer->GetDraw() != 0) {
    mOverlayRenderer->DrawOff();
    mIsOverlayHeld = true;
  } else if (!hold && mIsOverlayHeld) {
    mOverlayRenderer->DrawOn();
    mIsOverlayHeld = false;
  }
}

// The view angle spans the shorter side of the window.
void GView::fit_view_angle(vtkRenderWindow& window)
{
  const int* size = window.GetSize();
  const bool is_upright = size[0] < size[1];
  // Observers of the cameras are host code, and those of the renderers, whose cameras may be made only now.
  const vtkSmartPointer<vtkRenderer> renderers[] = {mRenderer, mOverlayRenderer};
  for (const auto& renderer : renderers) {
    const vtkSmartPointer<vtkCamera> camera = renderer->GetActiveCamera();
    camera->SetUseHorizontalViewAngle(is_upright);
  }
}

// The camera's direction stays as it is.
void GView::frame_visible()
{
  const vtkSmartPointer<vtkRenderer> renderer = mRenderer; // props that are asked for bounds are host code
  if (mRenderWindow != nullptr) {
    this->fit_view_angle(*mRenderWindow); // the window may be without a frame of its present size
  }
  straighten_view_up(*vtkSmartPointer<vtkCamera>(renderer->GetActiveCamera()));
  renderer->ResetCamera();
}

void GView::set_vertex_visibility(bool on)
{
  mRenderPass->set_vertex_visibility(on);
}

// ---------------------------------------------------------------------------------------------------------
// Backgrounds

void GView::set_background(int id)
{
  mBackground = id == -1 ? mGlobalBackgroundColor : id;
  double rgb[3];
  morrow::look_up_color(mBackground, rgb);
  mRenderer->SetBackground(rgb);
  mRenderer->SetGradientBackground(mBackground != mBackground2);
}

void GView::set_background2(int id)
{
  mBackground2 = id == -1 ? mGlobalBackgroundColor2 : id;
  double rgb[3];
  morrow::look_up_color(mBackground2, rgb);
  mRenderer->SetBackground2(rgb);
  mRenderer->SetGradientBackground(mBackground != mBackground2);
}

void GView::set_all_background(int id)
{
  mGlobalBackgroundColor = id == -1 ? DefaultBackground : id;
  for (const auto& view : registered_views()) {
    view->set_background(mGlobalBackgroundColor);
  }
}

void GView::set_all_background2(int id)
{
  mGlobalBackgroundColor2 = id == -1 ? DefaultBackground2 : id;
  for (const auto& view : registered_views()) {
    view->set_background2(mGlobalBackgroundColor2);
  }
}

int GView::get_all_background()
{
  return mGlobalBackgroundColor;
}

int GView::get_all_background2()
{
  return mGlobalBackgroundColor2;
}

// ---------------------------------------------------------------------------------------------------------
// Preferences

void GView::set_offscreen(bool on)
{
  mUseOffscreen = on;
}

bool GView::get_offscreen()
{
  return mUseOffscreen;
}

void GView::set_preferred_window_size(int width, int height)
{
  mWindowPosition[2] = width > 0 ? width : mWindowPosition[2];
  mWindowPosition[3] = height > 0 ? height : mWindowPosition[3];
}

void GView::get_preferred_window_size(int& width, int& height)
{
  width = mWindowPosition[2];
  height = mWindowPosition[3];
}

void GView::set_preferred_window_position(int x, int y)
{
  mWindowPosition[0] = x != -1 ? x : mWindowPosition[0];
  mWindowPosition[1] = y != -1 ? y : mWindowPosition[1];
}

void GView::set_stereo_mode(bool on)
{
  if (on == mStereoMode) {
    return;
  }
  mStereoMode = on;
  for (const auto& view : registered_views()) {
    view->switch_stereo(on);
  }
}

bool GView::get_stereo_mode()
{
  return mStereoMode;
}

void GView::switch_stereo(bool on)
{
  if (mRenderWindow == nullptr || this->is_drawing()) {
    return;
  }
  if (on) {
    const morrow::WindowRestart restart(*mRenderWindow);
    mRenderWindow->StereoCapableWindowOn();
  }
  mRenderWindow->SetStereoRender(on);
}

// ---------------------------------------------------------------------------------------------------------
// Shaders

vtkCallbackCommand* GView::update_viewport_command() const
{
  return mViewportObserver;
}

void GView::SetViewportShaderUniform(vtkObject* /*caller*/, unsigned long /*event*/, void* client_data,
                                     void* call_data)
{
  const auto* view = static_cast<const GView*>(client_data);
  auto* program = static_cast<vtkShaderProgram*>(call_data);
  if (view == nullptr || program == nullptr || !program->IsUniformUsed("ViewportSize")) {
    return;
  }
  int width = 0;
  int height = 0;
  view->get_size(width, height);
  const float size[2] = {static_cast<float>(width), static_cast<float>(height)};
  program->SetUniform2f("ViewportSize", size);
}
