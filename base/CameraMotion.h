// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "GViewFlagScope.h" // a member

#include <vtkSmartPointer.h>

class vtkCamera;
class vtkRenderer;

namespace morrow {

/// One camera operation of a view, from bringing the models up to date to its last frame.
///
/// Host code runs in each of its steps: updates of models, the interrupt flag, observers of the camera, the
/// frames. It may destroy the view, so whatever is done with the view must ask view_is_alive() first. What it
/// throws passes through and ends the operation where it is.
///
/// Host code may also begin another operation of the same view. Such a nested one, and one that begins inside
/// a frame, is made in a single step, without a frame and without reading the interrupt flag: it neither
/// recurses nor takes time.
class CameraMotion
{
public:
  /// Brings the models up to date, unless a frame does that just now.
  explicit CameraMotion(GView& view);
  ~CameraMotion();
  CameraMotion(const CameraMotion&) = delete;
  CameraMotion& operator=(const CameraMotion&) = delete;

  [[nodiscard]] bool view_is_alive() const { return *mView != nullptr; }

  /// What the caller has asked for, or a single step.
  [[nodiscard]] int steps(int wanted) const { return mIsNested ? 1 : wanted; }
  [[nodiscard]] int smooth(int wanted) const { return mIsNested ? 0 : wanted; }

  /// Whether a frame would be shown now.
  [[nodiscard]] bool can_render() const;

  /// The view's main renderer, and the camera that it has now. They live as long as this object, and the
  /// pointer.
  [[nodiscard]] vtkRenderer& renderer() const { return *mRenderer; }
  [[nodiscard]] vtkSmartPointer<vtkCamera> camera() const;

  void update_models();

  /// Whether the next step may be made: the view is there and the host does not interrupt, which it is asked
  /// when reads_interrupt is true.
  [[nodiscard]] bool may_step(bool reads_interrupt) const;

  /// Fits the camera's clipping range to what is visible and renders a frame, if one can be.
  void show();
  /// The same with models that are brought up to date again; nothing when there can be no frame.
  void show_updated();
  /// The same without fitting the clipping range.
  void show_unclipped();

  /// Plays a ramp: step(camera, factor) moves the camera for each frame.
  template<typename Ramp, typename Step>
  void play(const Ramp& ramp, Step&& step, void (CameraMotion::*show_frame)() = &CameraMotion::show)
  {
    for (std::int64_t frame = 0; frame < ramp.frame_count(); ++frame) {
      if (!this->may_step(ramp.reads_interrupt(frame))) {
        return;
      }
      const vtkSmartPointer<vtkCamera> moved = this->camera();
      step(*moved, ramp.factor(frame));
      (this->*show_frame)();
    }
  }

private:
  std::shared_ptr<GView* const> mView;
  vtkSmartPointer<vtkRenderer> mRenderer;
  bool mIsNested;
  std::optional<GView::FlagScope> mMoving;
};

} // namespace morrow
