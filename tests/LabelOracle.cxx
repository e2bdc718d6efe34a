// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "LabelOracle.h"

#include <vtkMatrix4x4.h>

namespace morrow_test {

long long LiteralLabelKeys::add()
{
  mLive += 1;
  const std::size_t n = mLive;
  const int slot = static_cast<int>(n - 1);
  if (mSlotToKey.size() == n - 1) {
    mSlotToKey.push_back(slot);
    mKeyToSlot.push_back(slot);
  } else {
    const int waiting_key = mSlotToKey[n - 1];
    mKeyToSlot[static_cast<std::size_t>(waiting_key)] = slot;
  }
  return mSlotToKey[n - 1];
}

void LiteralLabelKeys::remove(long long key)
{
  if (key < 0) {
    return;
  }
  if (key >= static_cast<long long>(mKeyToSlot.size())) {
    return;
  }
  const auto at = static_cast<std::size_t>(key);
  if (mKeyToSlot[at] == -1) {
    return;
  }
  const auto slot = static_cast<std::size_t>(mKeyToSlot[at]);
  mLive -= 1;

  for (std::size_t position = slot + 1; position < mSlotToKey.size(); ++position) {
    int& later_slot = mKeyToSlot[static_cast<std::size_t>(mSlotToKey[position])];
    if (later_slot != -1) {
      later_slot -= 1;
    }
  }

  const int removed_key = mSlotToKey[slot];
  for (std::size_t position = slot; position + 1 < mSlotToKey.size(); ++position) {
    mSlotToKey[position] = mSlotToKey[position + 1];
  }
  mSlotToKey[mSlotToKey.size() - 1] = removed_key;

  mKeyToSlot[at] = -1;
}

void LiteralLabelKeys::clear()
{
  mLive = 0;
  mSlotToKey.clear();
  mKeyToSlot.clear();
}

bool LiteralLabelKeys::is_live(long long key) const noexcept
{
  return slot_of(key) != -1;
}

int LiteralLabelKeys::slot_of(long long key) const noexcept
{
  if (key < 0 || key >= static_cast<long long>(mKeyToSlot.size())) {
    return -1;
  }
  return mKeyToSlot[static_cast<std::size_t>(key)];
}

std::vector<int> LiteralLabelKeys::live_keys() const
{
  return {mSlotToKey.begin(), mSlotToKey.begin() + static_cast<std::ptrdiff_t>(mLive)};
}

std::vector<int> LiteralLabelKeys::freed_keys() const
{
  return {mSlotToKey.begin() + static_cast<std::ptrdiff_t>(mLive), mSlotToKey.end()};
}

namespace {

/// Truncates toward zero; a number that no pixel has (too large, or not a number) becomes −1, which lies
/// outside.
int pixel_of(double position)
{
  if (!(position > -1.0 && position < 2147483648.0)) {
    return -1;
  }
  return static_cast<int>(position);
}

bool is_off_screen(const LabelFrame& frame, double dx, double dy, double d)
{
  if (dx > frame.width) {
    return true;
  }
  if (d < 0) {
    return true;
  }
  if (dy < 0) {
    return true;
  }
  if (dx < 0) {
    return true;
  }
  return dy > frame.height;
}

double depth_at(const LabelFrame& frame, double dx, double dy)
{
  const int ix = pixel_of(dx);
  const int iy = pixel_of(dy);
  if (ix >= 0 && iy >= 0 && ix < frame.width && iy < frame.height) {
    const auto row_length = static_cast<std::size_t>(frame.width) + 1;
    return static_cast<double>(
        frame.depth[row_length * static_cast<std::size_t>(iy) + static_cast<std::size_t>(ix)]);
  }
  return 1.0;
}

LabelVerdict judge_depth(double d, double z, double tolerance)
{
  if (!(d < 1.0)) {
    return LabelVerdict::BeyondFar;
  }
  return z + tolerance >= d ? LabelVerdict::Visible : LabelVerdict::Hidden;
}

} // namespace

LabelResult judge_label(const LabelFrame& frame, const double point[3])
{
  LabelResult result;
  const double world[4] = {point[0], point[1], point[2], 1.0};
  double projected[4];
  frame.matrix->MultiplyPoint(world, projected);
  const double px = projected[0];
  const double py = projected[1];
  const double pz = projected[2];
  const double pw = projected[3];
  if (pw == 0.0) {
    result.verdict = LabelVerdict::NoPerspective;
    return result;
  }

  const double W = frame.width;
  const double H = frame.height;
  const double x0 = frame.viewport[0];
  const double y0 = frame.viewport[1];
  const double x1 = frame.viewport[2];
  const double y1 = frame.viewport[3];
  result.x = x0 * W + (x1 - x0) * W * (px / pw + 1) * 0.5;
  result.y = y0 * H + (y1 - y0) * H * (py / pw + 1) * 0.5;
  result.depth = pz / pw;
  if (is_off_screen(frame, result.x, result.y, result.depth)) {
    result.verdict = LabelVerdict::OffScreen;
    return result;
  }

  result.asked_depth = true;
  result.buffer_depth = depth_at(frame, result.x, result.y);
  result.verdict = judge_depth(result.depth, result.buffer_depth, frame.tolerance);
  return result;
}

bool is_label_visible(const LabelFrame& frame, const double point[3])
{
  return judge_label(frame, point).visible();
}

} // namespace morrow_test
