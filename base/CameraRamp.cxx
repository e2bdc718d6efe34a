// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CameraRamp.h"

#include <algorithm>
#include <cmath>

namespace morrow {

namespace {

// Ten decimals, deliberately.
constexpr double EasingPi = 3.1415926535;

double ease_part(std::int64_t part, std::int64_t whole)
{
  return ease(static_cast<double>(part) / static_cast<double>(whole));
}

} // namespace

double ease(double t)
{
  return (1.0 - std::cos(t * EasingPi)) / 2.0;
}

PointRamp::PointRamp(int steps, int smooth)
    : mSteps(std::max(steps, 0)), mSmooth(smooth >= 1 && steps >= smooth ? smooth : 0)
{}

double PointRamp::factor(std::int64_t frame) const
{
  if (is_full(frame)) {
    return 1.0;
  }
  const double whole = static_cast<double>(mSmooth) + 1.0;
  if (frame < mSmooth) {
    return ease(static_cast<double>(frame + 1) / whole);
  }
  return ease(1.0 - static_cast<double>(frame - mSteps + 1) / whole);
}

TurnRamp::TurnRamp(int steps, int smooth) : mParts(std::max(steps, 1)), mSmooth(mParts >= smooth ? smooth : 0)
{}

double TurnRamp::factor(std::int64_t frame) const
{
  if (frame < mSmooth) {
    return ease_part(frame + 1, mSmooth + 1);
  }
  return frame <= mParts ? 1.0 : ease_part(frame_count() - frame, mSmooth + 1);
}

double TurnRamp::part_of_angle(double angle) const
{
  return angle / static_cast<double>(static_cast<float>(mParts));
}

double TurnRamp::part_of_length(double length) const
{
  return length / static_cast<double>(mParts);
}

PanRamp::PanRamp(int steps, int smooth) : mSteps(steps), mSmooth(steps > 1 ? std::min(smooth, steps) : 0) {}

double PanRamp::factor(std::int64_t frame) const
{
  if (frame < mSmooth) {
    return ease_part(frame + 1, mSmooth + 1);
  }
  return frame < mSteps ? 1.0 : ease_part(frame_count() - frame, mSmooth + 1);
}

} // namespace morrow
