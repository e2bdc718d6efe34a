// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantColorTable.h"
#include "BrantVector.h"
#include "GModel.h"
#include "GModelSet.h"
#include "GView.h"
#include "MRUtil.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkDataObject.h>
#include <vtkPolyData.h>
#include <vtkProp.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <vtkWeakPointer.h>

#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define MORROW_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MORROW_ADDRESS_SANITIZER
#endif
#endif
#if defined(MORROW_ADDRESS_SANITIZER)
#include <sanitizer/lsan_interface.h>
#endif

/// What the tests of views share.
namespace morrow_test {

inline constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Puts everything that all views of the process share back to how the process started.
inline void reset_what_views_share()
{
  while (!GView::all_views().empty()) {
    GView::remove_global_view(*GView::all_views().begin());
  }
  GView::set_current_view(nullptr);
  GView::set_all_background(-1);
  GView::set_all_background2(-1);
  GView::set_title_bars("Brant ##");
  GView::set_offscreen(false);
  GView::set_stereo_mode(false);
  GView::set_preferred_window_size(500, 500);
  GView::set_preferred_window_position(0, 0);
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_NORMAL);
  BrantColorTable::clear_variable_colors();
}

/// Base of the tests of views that never render: they need no display.
class ViewTest : public ::testing::Test
{
protected:
  void TearDown() override { reset_what_views_share(); }
};

/// Base of those that do.
class ViewRenderTest : public RenderTest
{
protected:
  void TearDown() override { reset_what_views_share(); }
};

/// A model whose update_parts() is written by the test.
class ScriptedModel : public GModel
{
public:
  std::function<void()> on_update;
  int updates = 0;

  void update_parts() override
  {
    ++updates;
    if (on_update) {
      const std::function<void()> running = on_update; // it may replace itself, or destroy the model
      running();
    }
  }
};

/// A view without its triad: it shows what the test puts there and nothing else.
class PlainView : public GView
{
public:
  PlainView() { this->set_triad_vis(false); }
};

/// A view of this window size, in black and without triad, that looks along -z onto the square from (-1, -1)
/// to (1, 1): the square fills the shorter side. Not registered, not rendered.
inline std::shared_ptr<GView> make_view(int width = 100, int height = 100)
{
  const std::shared_ptr<GView> view = std::make_shared<PlainView>();
  view->set_background(0);
  view->set_background2(0);
  view->get_render_window()->SetSize(width, height);
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->ParallelProjectionOn();
  camera->SetParallelScale(width < height ? static_cast<double>(height) / width : 1.0);
  camera->SetPosition(0.0, 0.0, 10.0);
  camera->SetFocalPoint(0.0, 0.0, 0.0);
  camera->SetViewUp(0.0, 1.0, 0.0);
  return view;
}

/// Renders the view and reads what its window shows.
inline Image picture(GView& view)
{
  view.render();
  return read_pixels(view.get_render_window());
}

/// The same for a window that the host renders by itself, as after an expose.
inline Image picture(vtkRenderWindow* window)
{
  window->Render();
  return read_pixels(window);
}

/// Observes an event of an object with a function while it lives; the object may die first.
class EventHook
{
public:
  EventHook(vtkObject* object, unsigned long event, std::function<void()> function, float priority = 0.0F)
      : mFunction(std::move(function)), mObject(object)
  {
    mCommand->SetClientData(this);
    mCommand->SetCallback(
        [](vtkObject*, unsigned long, void* self, void*) { static_cast<EventHook*>(self)->mFunction(); });
    object->AddObserver(event, mCommand, priority);
  }
  ~EventHook()
  {
    if (mObject != nullptr) {
      mObject->RemoveObserver(mCommand);
    }
    while (mCommand->GetReferenceCount() > 1) {
      mCommand->UnRegister(); // VTK forgets the reference that it holds while a function throws
    }
  }
  EventHook(const EventHook&) = delete;
  EventHook& operator=(const EventHook&) = delete;

private:
  std::function<void()> mFunction;
  vtkNew<vtkCallbackCommand> mCommand;
  vtkWeakPointer<vtkObject> mObject;
};

/// A prop function that shows polygon data in exactly this colour.
inline PartPropFunction show_flat(Rgb colour)
{
  return [colour](vtkDataObject* data, GView*) -> std::vector<vtkSmartPointer<vtkProp>> {
    return {flat_actor(vtkPolyData::SafeDownCast(data), colour)};
  };
}

/// A square over the middle quarter of the window of make_view().
inline vtkSmartPointer<vtkActor> flat_square(Rgb colour = kRed)
{
  return flat_actor(quad(-0.5, -0.5, 0.5, 0.5), colour);
}

/// Adds one prop to the view's main renderer.
inline void show(GView& view, vtkProp* prop)
{
  view.add_props({prop});
}

/// One view with one model in one set.
struct ViewStage
{
  GModelSet set;
  ScriptedModel model;
  std::shared_ptr<GView> view;

  explicit ViewStage(int width = 100, int height = 100) : view(make_view(width, height))
  {
    set.add_model(&model);
    view->set_model_set(&set);
  }
  ViewStage(const ViewStage&) = delete;
  ViewStage& operator=(const ViewStage&) = delete;
  ~ViewStage() = default;

  [[nodiscard]] vtkRenderWindow* window() const { return view->get_render_window(); }
};

/// One whose picture has everything that is drawn in a way of its own: opaque geometry of the host's and of a
/// part, translucent geometry, a label.
struct FullViewStage : ViewStage
{
  vtkSmartPointer<vtkActor> square = flat_square(kRed);
  vtkSmartPointer<vtkActor> veil = flat_actor(quad(0.2, 0.2, 0.9, 0.9, 0.5), kBlue);
  vtkSmartPointer<vtkPolyData> part = quad(-0.9, -0.9, -0.6, -0.6);

  FullViewStage()
  {
    model.add_part(part, show_flat(kGreen));
    model.add_label("label", BrantVector(-0.5, 0.6, 0.0), BrantColor(255, 255, 0));
    veil->GetProperty()->SetOpacity(0.5);
    view->add_props({square, veil});
  }
};

/// A prop that draws nothing; each thing that VTK wants of it calls a function of the test.
class CallingProp : public vtkProp
{
public:
  static vtkSmartPointer<CallingProp> make()
  {
    auto* prop = new CallingProp;
    prop->InitializeObjectBase();
    return vtkSmartPointer<CallingProp>::Take(prop);
  }
  CallingProp(const CallingProp&) = delete;
  CallingProp& operator=(const CallingProp&) = delete;

  using Function = std::function<void()>;
  Function on_opaque;
  Function on_ask; ///< whether it has translucent geometry
  Function on_translucent;
  Function on_overlay;
  Function on_bounds;
  Function on_release; ///< of its graphics resources
  bool is_translucent = false;

  int RenderOpaqueGeometry(vtkViewport* /*viewport*/) override { return call(on_opaque); }
  vtkTypeBool HasTranslucentPolygonalGeometry() override
  {
    call(on_ask);
    return is_translucent;
  }
  int RenderTranslucentPolygonalGeometry(vtkViewport* /*viewport*/) override { return call(on_translucent); }
  int RenderOverlay(vtkViewport* /*viewport*/) override { return call(on_overlay); }
  double* GetBounds() override
  {
    call(on_bounds);
    return nullptr;
  }
  void ReleaseGraphicsResources(vtkWindow* /*window*/) override { call(on_release); }

protected:
  CallingProp() = default;
  ~CallingProp() override = default;

private:
  static int call(const Function& function)
  {
    if (function) {
      const Function running = function; // it may replace itself
      running();
    }
    return 0;
  }
};

/// What is allocated while it lives is no leak, should it never be freed.
class LeaksIgnored
{
public:
#if defined(MORROW_ADDRESS_SANITIZER)
  LeaksIgnored()
  {
    __lsan_disable();
  }
  ~LeaksIgnored()
  {
    __lsan_enable();
  }
#else
  LeaksIgnored() {}
  ~LeaksIgnored() {}
#endif
  LeaksIgnored(const LeaksIgnored&) = delete;
  LeaksIgnored& operator=(const LeaksIgnored&) = delete;
};

/// The tests' own kind of exception, to be told from everything else.
struct HostError : std::runtime_error
{
  using std::runtime_error::runtime_error;
};

/// The text of the HostError that a call throws; empty when it throws nothing.
template<typename Call>
std::string thrown_by(Call&& call)
{
  try {
    call();
  } catch (const HostError& error) {
    return error.what();
  }
  return "";
}

/// The same for an exception that passes through VTK's own code, which forgets what it has allocated for the
/// frame.
template<typename Call>
std::string thrown_through_vtk_by(Call&& call)
{
  const LeaksIgnored ignored;
  return thrown_by(std::forward<Call>(call));
}

} // namespace morrow_test
