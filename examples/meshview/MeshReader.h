// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Mesh.h"
#include "MeshSurface.h" // ReadRequest

/// Thrown out of read_mesh() when AppUtil's interrupt flag is set.
class ReadInterrupted
{};

/// Reads a mesh file with the VTK reader of its format, checks it and extracts its surfaces. Shows progress
/// on a terminal. Throws MeshError when nothing of it can be shown; what VTK says about a file goes into the
/// reason and nowhere else.
[[nodiscard]] MeshFile read_mesh(const std::string& path, const ReadRequest& request);
