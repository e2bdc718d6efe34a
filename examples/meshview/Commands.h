// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Keys.h"

#include <deque>
#include <functional>

class PickMouse;
class Viewer;
class vtkRenderWindowInteractor;

/// Does in the window what keys ask for.
class Commands
{
public:
  /// All of them live longer than this.
  Commands(Viewer& viewer, PickMouse& mouse, vtkRenderWindowInteractor& interactor);

  /// While something moves, the action waits for its end; Interrupt and Quit end it, and drop what waits.
  void execute(const KeyAction& action);

  /// Ends the window's loop, as its close button asks for. By itself VTK would close the window first and
  /// take the events that still wait after that; one by which the pointer enters the closed window is an X
  /// error, which ends the process.
  void end_loop();

  /// Does something move?
  [[nodiscard]] bool is_busy() const noexcept { return mAnimation != nullptr; }

private:
  class Animation;

  void stop();
  void execute_now(const KeyAction& action);
  void animate(const std::function<void()>& motion);
  void decorate(Command command);
  void restyle(Command command);
  void pick(Command command);
  void clear_picks();
  void move(const KeyAction& action);
  void handle_views(const KeyAction& action);
  void save(const std::string& extension); // a new file in the current folder

  Viewer& mViewer;
  PickMouse& mMouse;
  vtkRenderWindowInteractor& mInteractor;
  Animation* mAnimation = nullptr; // the one that runs
  std::deque<KeyAction> mWaiting;
};
