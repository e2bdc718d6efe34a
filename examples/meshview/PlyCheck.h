// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <iosfwd>

/// Throws MeshError when a PLY file has no vertices or faces, a damaged header, fewer values than its header
/// and its lists promise, or a face with a corner that is no vertex. file_size in bytes.
///
/// The reader checks none of this. What it makes of such a file is a matter of luck.
void check_ply(std::istream& stream, std::uintmax_t file_size);
