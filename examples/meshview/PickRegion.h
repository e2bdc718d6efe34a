// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <vector>

enum class PickShape
{
  Point,
  Box,    ///< two opposite corners
  Circle, ///< the centre; and the radius
  Lasso   ///< its corners
};

/// Where is picked, in pixels of the window from its bottom left corner.
struct PickRegion
{
  PickShape shape = PickShape::Point;
  std::vector<std::array<int, 2>> points;
  double radius = 0.0;
};
