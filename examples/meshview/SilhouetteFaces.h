// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkSmartPointer.h> // returned by value

class vtkPolyData;

/// What GSilhouetteMapper is to look at in place of polygons that share their points.
///
/// The mapper takes two points for an edge of the silhouette when both belong to polygons of either side. Of
/// long thin triangles, which CAD programs make, most edges run from one such point to another. Here each
/// edge has two points to itself and is in two polygons, which face what those do that meet there. So it is
/// given exactly when these face different sides, in whatever order and orientation the polygons come.
/// Edges between polygons in one plane are left out, and those that belong to one polygon, or to more than
/// two, are always given.
[[nodiscard]] vtkSmartPointer<vtkPolyData> silhouette_faces(vtkPolyData& polygons);
