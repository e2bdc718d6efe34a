// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <vector>

class vtkMatrix4x4;

/// Plain, slow versions of the label mapper's two algorithms, written to be compared with: the keys of
/// labels, and the decision which labels are hidden. Every step is its own line, nothing is clever.
namespace morrow_test {

/// The keys of labels as two lists. The first n entries of slot-to-key (n live labels) are the keys in
/// drawing order; the entries after them are freed keys, the oldest first. key-to-slot gives the slot of a
/// key, −1 for a freed one.
class LiteralLabelKeys
{
public:
  /// Appends a label and returns its key: the oldest freed key, or the next number when none waits.
  long long add();
  /// Removes the label of that key; a negative key, one never issued or one already removed changes nothing.
  void remove(long long key);
  /// Forgets all labels and all keys: they start again at 0.
  void clear();

  /// Live labels.
  [[nodiscard]] std::size_t size() const noexcept { return mLive; }
  /// Is there a label with that key? Any number may be asked for.
  [[nodiscard]] bool is_live(long long key) const noexcept;
  /// The slot (position in drawing order) of a live key, −1 for any other number.
  [[nodiscard]] int slot_of(long long key) const noexcept;
  /// The keys of the live labels in slot order: the order in which they are drawn.
  [[nodiscard]] std::vector<int> live_keys() const;
  /// The freed keys in the order in which they will be used again.
  [[nodiscard]] std::vector<int> freed_keys() const;

  /// The whole lists; both as long as the number of distinct keys issued since the start or the last `clear`.
  [[nodiscard]] const std::vector<int>& slot_to_key() const noexcept { return mSlotToKey; }
  [[nodiscard]] const std::vector<int>& key_to_slot() const noexcept { return mKeyToSlot; }

private:
  std::size_t mLive = 0;
  std::vector<int> mSlotToKey;
  std::vector<int> mKeyToSlot;
};

/// What the visibility of labels in one frame depends on. Nothing is owned; the pointers must live for the
/// call.
struct LabelFrame
{
  /// World to view volume, depth 0 at the near plane and 1 at the far plane:
  /// vtkCamera::GetCompositeProjectionTransformMatrix(renderer's tiled aspect, 0, 1).
  vtkMatrix4x4* matrix = nullptr;
  /// vtkViewport::GetViewport: x0, y0, x1, y1 as fractions of the window.
  double viewport[4] = {0.0, 0.0, 1.0, 1.0};
  /// Window size in pixels.
  int width = 0;
  int height = 0;
  /// (width + 1) × (height + 1) floats, row after row from the bottom, each row width + 1 long: the layout of
  /// vtkRenderWindow::GetZbufferData(0, 0, width, height). The last column and the last row are never read,
  /// as VTK leaves them uninitialised.
  const float* depth = nullptr;
  /// Slack added to the depth of the buffer.
  double tolerance = 0.001;
};

/// The step that decided on a label.
enum class LabelVerdict
{
  NoPerspective, ///< the homogeneous coordinate is exactly 0: not drawn
  OffScreen,     ///< left, right, below, above the window or in front of the near plane: not drawn
  BeyondFar,     ///< depth not below 1 (or not a number): not drawn, whatever the buffer says
  Hidden,        ///< behind what the depth buffer holds: not drawn
  Visible        ///< drawn
};

/// Where a label's anchor lies and what becomes of it.
struct LabelResult
{
  LabelVerdict verdict = LabelVerdict::Hidden;
  /// Display position in pixels and depth; valid unless NoPerspective. May be infinite or not a number.
  double x = 0.0, y = 0.0, depth = 0.0;
  /// Has the depth buffer been needed? False for NoPerspective and OffScreen only: such a label alone must
  /// not cause a read of the buffer.
  bool asked_depth = false;
  /// The depth of the buffer at the anchor, 1 outside the buffer; valid when `asked_depth`.
  double buffer_depth = 1.0;

  [[nodiscard]] bool visible() const noexcept { return verdict == LabelVerdict::Visible; }
};

/// Decides on one label. Any coordinates are allowed. A display position that is not a number lies outside no
/// edge and in no pixel: it is compared with depth 1, so that such a label is visible when its depth is a
/// number in [0, 1). With a point or a matrix that is not finite the depth is, as a rule, not a number
/// either, and the label is not drawn.
[[nodiscard]] LabelResult judge_label(const LabelFrame& frame, const double point[3]);

/// `judge_label(...).visible()`.
[[nodiscard]] bool is_label_visible(const LabelFrame& frame, const double point[3]);

} // namespace morrow_test
