// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantVector.h"

#include <vector>

class GColorTable;
class GView;

/// Corners of the room that the chart of the colour table takes with its text.
[[nodiscard]] std::vector<BrantVector> color_chart_corners();

/// Fills the chart, with text of a size that suits it when the view shows just these corners from +z. The
/// labels' style is changed.
void fill_color_chart(GColorTable& chart, const GView& view);
