// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

class vtkCamera;
class vtkPolyData;

/// The names that look_from() knows: "iso", and "+x", "-x", … for the sides that face these axes.
[[nodiscard]] const std::vector<std::string>& view_names();

/// Places the camera on the named side of the surfaces, as near as all of their points are in a picture of
/// this size in pixels, with a margin. z points up, except in the views along z, where y does.
void look_from(const std::string& name, vtkCamera& camera, const std::vector<vtkPolyData*>& surfaces,
               int width, int height);
