// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshLegend.h"

#include <vtkCellType.h>
#include <vtkCellTypes.h>

#include <algorithm>
#include <iomanip>
#include <ostream>

namespace {

/// How wide the columns are, in characters.
struct Widths
{
  std::size_t name = 5; // "total"
  std::size_t points = 1;
  std::size_t cells = 1;
};

/// The names that people use; VTK's own without "vtk" for the rest.
std::string type_name(int type)
{
  static const std::map<int, std::string> kNames = {{VTK_VERTEX, "vertex"},
                                                    {VTK_POLY_VERTEX, "vertices"},
                                                    {VTK_LINE, "line"},
                                                    {VTK_POLY_LINE, "polyline"},
                                                    {VTK_TRIANGLE, "triangle"},
                                                    {VTK_TRIANGLE_STRIP, "triangle strip"},
                                                    {VTK_POLYGON, "polygon"},
                                                    {VTK_PIXEL, "pixel"},
                                                    {VTK_QUAD, "quadrilateral"},
                                                    {VTK_TETRA, "tetrahedron"},
                                                    {VTK_VOXEL, "voxel"},
                                                    {VTK_HEXAHEDRON, "hexahedron"},
                                                    {VTK_WEDGE, "wedge"},
                                                    {VTK_PYRAMID, "pyramid"},
                                                    {VTK_POLYHEDRON, "polyhedron"},
                                                    {VTK_EMPTY_CELL, "empty cell"},
                                                    {VTK_QUADRATIC_EDGE, "line 3"},
                                                    {VTK_QUADRATIC_TRIANGLE, "triangle 6"},
                                                    {VTK_QUADRATIC_QUAD, "quadrilateral 8"},
                                                    {VTK_QUADRATIC_TETRA, "tetrahedron 10"},
                                                    {VTK_QUADRATIC_HEXAHEDRON, "hexahedron 20"},
                                                    {VTK_QUADRATIC_WEDGE, "wedge 15"},
                                                    {VTK_QUADRATIC_PYRAMID, "pyramid 13"},
                                                    {VTK_BIQUADRATIC_QUAD, "quadrilateral 9"},
                                                    {VTK_TRIQUADRATIC_HEXAHEDRON, "hexahedron 27"}};
  const auto found = kNames.find(type);
  return found != kNames.end() ? found->second
                               : std::string(vtkCellTypes::GetClassNameFromTypeId(type)).substr(3);
}

std::string types_text(const std::map<int, vtkIdType>& cells_by_type)
{
  std::string text;
  for (const auto& [type, count] : cells_by_type) {
    text += (text.empty() ? "" : ", ") + type_name(type) + " " + std::to_string(count);
  }
  return text;
}

/// Characters of UTF-8 text, so that columns line up.
std::size_t length(const std::string& text)
{
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

MeshBlock total_of(const std::vector<MeshFile>& files)
{
  MeshBlock total;
  total.name = "total";
  for (const MeshFile& file : files) {
    for (const MeshBlock& block : file.blocks) {
      total.points += block.points;
      total.cells += block.cells;
      for (const auto& [type, count] : block.cells_by_type) {
        total.cells_by_type[type] += count;
      }
    }
  }
  return total;
}

Widths widths_for(const std::vector<MeshFile>& files, const MeshBlock& total)
{
  Widths widths;
  for (const MeshFile& file : files) {
    for (const MeshBlock& block : file.blocks) {
      widths.name = std::max(widths.name, length(block.name) + 2);
    }
  }
  widths.points = std::to_string(total.points).size();
  widths.cells = std::to_string(total.cells).size();
  return widths;
}

void write_block(std::ostream& out, const std::string& indent, const MeshBlock& block, const Widths& widths)
{
  const std::string name = indent + block.name;
  out << name << std::string(widths.name - std::min(widths.name, length(name)), ' ') << "  "
      << std::setw(static_cast<int>(widths.points)) << block.points << " points  "
      << std::setw(static_cast<int>(widths.cells)) << block.cells
      << " cells: " << types_text(block.cells_by_type) << '\n';
}

void write_arrays(std::ostream& out, const std::vector<std::string>& arrays)
{
  if (!arrays.empty()) {
    out << "  arrays: ";
    for (std::size_t i = 0; i < arrays.size(); ++i) {
      out << (i == 0 ? "" : ", ") << arrays[i];
    }
    out << '\n';
  }
}

} // namespace

void write_legend(std::ostream& out, const std::vector<MeshFile>& files)
{
  const MeshBlock total = total_of(files);
  const Widths widths = widths_for(files, total);
  for (const MeshFile& file : files) {
    out << file.path << '\n';
    for (const MeshBlock& block : file.blocks) {
      write_block(out, "  ", block, widths);
    }
    write_arrays(out, file.arrays);
  }
  write_block(out, "", total, widths);
  out.flush();
}
