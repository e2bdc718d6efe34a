// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <functional>

class GView;
struct Axis;

/// Turns the view's camera about the axis, in steps frames. The interrupt flag of AppUtil ends it between two
/// of them.
void turn(GView& view, const Axis& axis, double degrees, int steps);

/// Turns the camera once around in steps equal parts, and calls at_step with 1 to steps before each part: the
/// first call sees the camera where it is. False when at_step answers false or the interrupt flag is set:
/// then the turn ends there.
bool turn_around(GView& view, const Axis& axis, int steps, const std::function<bool(int)>& at_step);
