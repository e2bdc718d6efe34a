// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <iosfwd>

/// Throws MeshError when a PLY file has no vertices or faces, a damaged header, or fewer bytes or lines than
/// its header promises at least. file_size in bytes.
void check_ply_size(std::istream& stream, std::uintmax_t file_size);
