// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

/// The formats that meshview reads. The name's extension decides.
enum class MeshFormat
{
  XmlUnstructuredGrid,
  XmlPolyData,
  XmlMultiBlock,
  LegacyVtk,
  Stl,
  Ply,
  Obj,
  Exodus
};

/// The format of a file that can be read and that looks whole. Throws MeshError for one that is missing,
/// empty or no regular file, has an unknown extension or the content of another format, or is shorter than it
/// says itself.
///
/// This finds what VTK's readers do not notice, or notice too late: several take a file that was cut short
/// for a smaller mesh, or for one with all coordinates 0.
[[nodiscard]] MeshFormat check_file(const std::string& path);
