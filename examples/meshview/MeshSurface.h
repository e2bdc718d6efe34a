// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Mesh.h"

class vtkDataSet;

/// What is asked of a file beside its geometry.
struct ReadRequest
{
  std::string color_by; ///< array to keep; empty for none
  bool ids = false;     ///< keep the ids of points and cells for labels
  bool quality = false; ///< work out the quality of the elements, to be the array to keep
  bool edges = true;    ///< mesh edges will be drawn
};

/// Makes a block of a mesh that check_mesh() has passed: counts it and extracts its surface. The mesh's
/// arrays are shared, not copied, wherever the surface has the same points.
[[nodiscard]] MeshBlock make_block(const std::string& name, vtkDataSet& mesh, const ReadRequest& request);
