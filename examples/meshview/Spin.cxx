// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Spin.h"

#include "AppUtil.h"
#include "Camera.h"
#include "GView.h"

void turn(GView& view, const Axis& axis, double degrees, int steps)
{
  // Far from the world's origin a unit length would be lost in rounding.
  const BrantVector tip = axis.origin + axis.direction * (1.0 + axis.origin.length());
  const double from[3] = {axis.origin.x(), axis.origin.y(), axis.origin.z()};
  const double to[3] = {tip.x(), tip.y(), tip.z()};
  view.rotate_about_world(degrees, from, to, steps, 0);
}

bool turn_around(GView& view, const Axis& axis, int steps, const std::function<bool(int)>& at_step)
{
  for (int step = 1; step <= steps; ++step) {
    if (AppUtil::instance()->interrupt() || !at_step(step)) {
      return false;
    }
    if (step < steps) {
      turn(view, axis, 360.0 / steps, 1);
    }
  }
  return true;
}
