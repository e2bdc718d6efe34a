// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// How the surfaces of a mesh are drawn.
enum class Surface
{
  Shaded,
  Flat,  ///< one colour without shading
  Hidden ///< not at all, but they hide what is behind them
};

/// Which edges of a mesh are drawn.
enum class Wire
{
  None,
  All,     ///< those of each cell, in a dark shade of the part's colour
  Unique,  ///< the same, but each edge once as a line, in dark grey
  Features ///< the unique ones where faces meet at an angle, and borders
};

/// How a mesh is drawn. Meshes of lines or vertices alone look the same in each style.
struct DrawStyle
{
  Surface surface = Surface::Shaded;
  Wire wire = Wire::All;
  bool silhouette = false;
  bool has_drawings = false; ///< surfaces step back for lines that are drawn on them
  bool hidden_lines = false; ///< features behind surfaces are stippled
};
