// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class vtkDataSet;

/// Throws MeshError when a mesh could make VTK read memory that is not its own, or a camera lose its way:
/// point numbers out of range, cells of unknown types or with a wrong number of points, coordinates that are
/// not finite or so large that single precision cannot square them. Removes the arrays that do not have a
/// value for each point or cell.
///
/// VTK believes what files say about all of these.
void check_mesh(vtkDataSet& mesh);
