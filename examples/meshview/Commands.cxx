// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Commands.h"

#include "AppUtil.h"
#include "Camera.h"
#include "Console.h"
#include "Display.h"
#include "GView.h"
#include "MeshLights.h"
#include "Output.h"
#include "PickMouse.h"
#include "Spin.h"
#include "Viewer.h"

#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>

#include <cstdio>
#include <filesystem>
#include <iostream>

namespace {

constexpr int kTurnSteps = 6;
constexpr int kTurnSmooth = 1;
constexpr int kZoomSteps = 6;
constexpr int kSpinSteps = 120;

/// The library's soft steps add up to a little more than the angle: with one of them at each end, to half a
/// step more. So that 24 turns of 15 degrees are a full one, the angle is less by that.
double soft_angle(double angle)
{
  return angle * kTurnSteps / (kTurnSteps + 0.5);
}

/// The next of an enumeration, after the last one the first.
template<class Choice>
Choice next(Choice choice, Choice last)
{
  return choice == last ? Choice{} : static_cast<Choice>(static_cast<int>(choice) + 1);
}

std::string view_name(const KeyAction& action)
{
  return "view " + std::to_string(static_cast<int>(action.value));
}

void tell(const std::string& text)
{
  std::cout << text << std::endl;
}

} // namespace

/// While it lives the library asks it between the frames of an animation whether to stop. It looks for events
/// of the window then, which would otherwise wait for the animation's end.
class Commands::Animation : public AppUtil
{
public:
  explicit Animation(vtkRenderWindowInteractor& interactor)
      : mInteractor(interactor), mBefore(set_instance(this))
  {}
  ~Animation() override { set_instance(mBefore); }

  [[nodiscard]] bool interrupt() const override
  {
    // Without an event VTK would wait for one, and when it is done it takes none.
    while (!mInteractor.GetDone() && has_events(*mInteractor.GetRenderWindow())) {
      mInteractor.ProcessEvents();
    }
    return AppUtil::interrupt() || mInteractor.GetDone();
  }

private:
  vtkRenderWindowInteractor& mInteractor;
  AppUtil* mBefore;
};

Commands::Commands(Viewer& viewer, PickMouse& mouse, vtkRenderWindowInteractor& interactor)
    : mViewer(viewer), mMouse(mouse), mInteractor(interactor)
{}

void Commands::animate(const std::function<void()>& motion)
{
  Animation animation(mInteractor);
  mAnimation = &animation;
  motion();
  mAnimation = nullptr;
}

void Commands::execute(const KeyAction& action)
{
  if (mAnimation != nullptr && action.command != Command::Interrupt && action.command != Command::Quit) {
    mWaiting.push_back(action);
    return;
  }
  execute_now(action);
  while (mAnimation == nullptr && !mWaiting.empty() && !mInteractor.GetDone()) {
    const KeyAction next = mWaiting.front();
    mWaiting.pop_front();
    execute_now(next);
  }
}

void Commands::end_loop()
{
  stop();
  mInteractor.Disable(); // events that still wait do nothing
  mInteractor.SetDone(true);
}

void Commands::stop()
{
  mWaiting.clear();
  if (mAnimation != nullptr) {
    mAnimation->set_interrupt(true);
  }
}

void Commands::execute_now(const KeyAction& action)
{
  switch (action.command) {
  case Command::Quit:
    end_loop();
    return;
  case Command::Interrupt:
    if (is_busy()) {
      stop();
    } else {
      clear_picks();
    }
    return;
  case Command::ListKeys:
    tell(key_list());
    return;
  case Command::DescribeCamera:
    mViewer.view().list_view();
    std::fflush(stdout); // where the library prints
    return;
  case Command::SavePicture:
    save(".png");
    return;
  case Command::SaveScene:
    save(".wrl");
    return;
  case Command::SaveView:
  case Command::RestoreView:
    handle_views(action);
    return;
  default:
    decorate(action.command);
    restyle(action.command);
    pick(action.command);
    move(action);
    mViewer.refresh();
  }
}

void Commands::decorate(Command command)
{
  Decorations& decorations = mViewer.decorations();
  switch (command) {
  case Command::ToggleTitle:
    if (!decorations.toggle_title()) {
      tell("there is no title without --title");
    }
    break;
  case Command::ToggleTriad:
    decorations.toggle_triad();
    break;
  case Command::NextAxes:
    decorations.next_axes();
    break;
  case Command::ToggleCubeAxes:
    decorations.toggle_cube_axes();
    break;
  case Command::ToggleLegend:
    decorations.toggle_legend();
    break;
  case Command::ToggleScalarBar:
    if (!decorations.toggle_scalar_bar()) {
      tell("there is no scalar bar without --color-by");
    }
    break;
  case Command::ToggleProjection:
    decorations.toggle_projection();
    break;
  default:
    break;
  }
}

void Commands::restyle(Command command)
{
  DrawStyle style = mViewer.style();
  switch (command) {
  case Command::NextSurface:
    style.surface = next(style.surface, Surface::Hidden);
    break;
  case Command::NextWire: // none is the first of them
    style.wire = next(style.wire, Wire::Features);
    break;
  case Command::ToggleSilhouette:
    style.silhouette = !style.silhouette;
    break;
  case Command::ToggleHiddenLines:
    style.hidden_lines = !style.hidden_lines;
    break;
  default:
    return;
  }
  mViewer.set_style(style);
}

void Commands::pick(Command command)
{
  Picking& picking = mViewer.picking();
  switch (command) {
  case Command::TogglePicking:
    mMouse.toggle();
    tell(mMouse.is_on() ? std::string("the left button picks: ") + name_of(picking.kind())
                        : "the left button rotates");
    break;
  case Command::NextKind:
    picking.set_kind(next(picking.kind(), EntityKind::Node), false);
    break;
  case Command::NextShape:
    mMouse.next_shape();
    tell(mMouse.shape() == PickShape::Box      ? "drags draw a box"
         : mMouse.shape() == PickShape::Circle ? "drags draw a circle"
                                               : "drags draw a lasso");
    break;
  case Command::ToggleVisibleOnly:
    MultiCellPicker::mSelectVisibleOnly = !MultiCellPicker::mSelectVisibleOnly;
    tell(MultiCellPicker::mSelectVisibleOnly ? "what surfaces hide is not picked"
                                             : "what surfaces hide is picked too");
    break;
  case Command::NextCandidate:
  case Command::PreviousCandidate:
    picking.step(command == Command::NextCandidate);
    break;
  default:
    break;
  }
}

void Commands::clear_picks()
{
  mMouse.cancel();
  mViewer.picking().clear();
  mViewer.refresh();
}

void Commands::move(const KeyAction& action)
{
  GView& view = mViewer.view();
  switch (action.command) {
  case Command::Turn: // the camera goes to the other side
    animate([&] { view.rotate_about_target(-soft_angle(action.value), 'y', kTurnSteps, kTurnSmooth); });
    break;
  case Command::Tilt:
    animate([&] { view.rotate_about_target(-soft_angle(action.value), 'x', kTurnSteps, kTurnSmooth); });
    break;
  case Command::Zoom:
    animate([&] { view.zoom_screen(action.value, kZoomSteps, 0); });
    break;
  case Command::ZoomToAll: {
    double bounds[6];
    view.get_renderer()->ComputeVisiblePropBounds(bounds);
    view.zoom_box(bounds, 1, 0, nullptr);
    break;
  }
  case Command::LookFrom:
    mViewer.look_from_side(view_names().at(static_cast<std::size_t>(action.value)));
    break;
  case Command::Frame:
    view.reset_camera();
    break;
  case Command::ChangeLight:
    change_light(view, static_cast<float>(action.value));
    break;
  case Command::Spin:
    animate([&] { turn(view, mViewer.turn_axis(), 360.0, kSpinSteps); });
    break;
  default:
    break;
  }
}

void Commands::handle_views(const KeyAction& action)
{
  const std::string name = view_name(action);
  if (action.command == Command::SaveView) {
    mViewer.view().save_view(name);
    tell("saved " + name);
  } else {
    mViewer.view().restore_view(name);
    mViewer.refresh();
  }
}

void Commands::save(const std::string& extension)
{
  const std::string name = std::filesystem::path(subject(mViewer.options())).stem().string();
  const auto output = new_output((name.empty() ? "meshview" : name) + extension);
  const std::string problem = output ? write_output(mViewer.view(), *output) : "all numbers are taken";
  if (!problem.empty()) {
    Console::complain(output ? output->path : name, problem);
  } else {
    tell("saved " + output->path);
  }
  mViewer.refresh();
}
