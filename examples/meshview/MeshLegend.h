// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Mesh.h"

#include <iosfwd>

/// Writes what was read: each file, under it its blocks with their points, cells and cell types, the names of
/// its arrays, and at the end the totals.
void write_legend(std::ostream& out, const std::vector<MeshFile>& files);
