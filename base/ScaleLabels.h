// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

/// The numbers along a scale, which are equidistant from its first value to its last, both included. VTK
/// prints the i-th of them as first + i × ((last - first) / (count - 1)), with one printf format for all.
namespace morrow {

/// The printf format for one double that prints the numbers of a scale with the least digits that do: each
/// text is within half a hundredth of the distance between two numbers, so all are different, and none is
/// "-0". Fixed point where the largest number is from 0.0001 to 10 millions, or needs so many digits that
/// exponents would make it longer; otherwise exponents as %g has them. Where the distance is too small for
/// doubles, or nothing, "%.6g".
std::string scale_format(double first, double last, int count);

/// Moves the ends of a scale that has a number which is zero but for rounding, by less than a thousandth of
/// the distance between two numbers, so that VTK's arithmetic meets zero exactly: from -0.3 to 0.1 it
/// otherwise prints 5.55112e-17. Other scales stay as they are.
void let_scale_meet_zero(double& first, double& last, int count);

/// Whether the numbers of a scale can be told apart: its ends are finite and not too close for doubles.
bool is_scale(double first, double last, int count);

} // namespace morrow
