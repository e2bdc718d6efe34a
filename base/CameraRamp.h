// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

/// How animated camera operations spread a motion over their frames.
///
/// Each ramp is made from the number of steps and of smooth frames that a caller asked for, any two ints, and
/// tells how many frames there are, which part of a step each of them makes, and before which of them the
/// interrupt flag is read. Frames count from 0; a frame outside of the ramp must not be asked for. A ramp
/// holds no table: its size does not depend on the number of frames.
///
/// The ramps of the operations differ in small ways. The differences are deliberate.
namespace morrow {

/// The easing curve s(t): from 0 at t = 0 to 1 at t = 1, level at both ends.
[[nodiscard]] double ease(double t);

/// Of a motion towards a point: smooth frames in, steps - smooth full ones, smooth frames out, which sum up
/// to steps. With smooth below 1 or above steps there are only full ones.
class PointRamp
{
public:
  PointRamp(int steps, int smooth);

  [[nodiscard]] std::int64_t frame_count() const { return mSteps + mSmooth; }
  [[nodiscard]] double factor(std::int64_t frame) const;
  [[nodiscard]] bool reads_interrupt(std::int64_t /*frame*/) const { return true; }

protected:
  [[nodiscard]] bool is_full(std::int64_t frame) const { return frame >= mSmooth && frame < mSteps; }

private:
  std::int64_t mSteps;
  std::int64_t mSmooth;
};

/// The same of a zoom by a factor, which can only be interrupted at full frames.
class ZoomRamp : public PointRamp
{
public:
  using PointRamp::PointRamp;

  [[nodiscard]] bool reads_interrupt(std::int64_t frame) const { return is_full(frame); }
};

/// Of a rotation: n = max(steps, 1) parts and r = smooth if n >= smooth, else 0, in n + r frames. The first r
/// ease in, the frames r to n are full, and r - 1 ease out: with r > 0 they sum up to a little more than n. A
/// smooth below 0 leaves that many frames out.
class TurnRamp
{
public:
  TurnRamp(int steps, int smooth);

  [[nodiscard]] std::int64_t frame_count() const { return mParts + mSmooth; }
  [[nodiscard]] double factor(std::int64_t frame) const;
  [[nodiscard]] bool reads_interrupt(std::int64_t /*frame*/) const { return true; }

  /// The n-th part of an angle, n in single precision.
  [[nodiscard]] double part_of_angle(double angle) const;
  /// The n-th part of a length.
  [[nodiscard]] double part_of_length(double length) const;

private:
  std::int64_t mParts;
  std::int64_t mSmooth;
};

/// The same of a zoom to a box, whose first frame is shown at once: the others wait, and can be interrupted.
class BoxRamp : public TurnRamp
{
public:
  using TurnRamp::TurnRamp;

  [[nodiscard]] bool waits(std::int64_t frame) const { return frame > 0; }
  [[nodiscard]] bool reads_interrupt(std::int64_t frame) const { return frame > 0; }
};

/// Of a pan: smooth, at most steps, frames in, steps - smooth full ones, smooth out, which sum up to steps.
/// One step is never softened; below one there are no frames. A smooth below 0 leaves that many frames out.
class PanRamp
{
public:
  PanRamp(int steps, int smooth);

  [[nodiscard]] std::int64_t frame_count() const { return mSteps + mSmooth; }
  [[nodiscard]] double factor(std::int64_t frame) const;
  [[nodiscard]] bool reads_interrupt(std::int64_t /*frame*/) const { return true; }

private:
  std::int64_t mSteps;
  std::int64_t mSmooth;
};

} // namespace morrow
