// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

class vtkRenderer;

/// The names that look_from() knows: "iso", and "+x", "-x", … for the sides that face these axes.
[[nodiscard]] const std::vector<std::string>& view_names();

/// Places the camera on the named side and frames all that is visible, for a window of this size in pixels.
/// z points up, except in the views along z, where y does.
void look_from(const std::string& name, vtkRenderer& renderer, int width, int height);
