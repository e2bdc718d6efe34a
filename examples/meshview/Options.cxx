// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Options.h"

#include "BrantColorTable.h"
#include "BrantString.h"
#include "DebugScript.h"
#include "Keys.h"
#include "MRUtil.h"
#include "MeshQuality.h"
#include "OptionGroups.h"
#include "OptionValues.h"

namespace {

/// A light sky: bright enough for dark edges, and grey enough for pale blocks.
void add_own_backgrounds(Options& options)
{
  options.bottom_background = BrantColorTable::add_color("haze", BrantColor(238, 241, 245));
  options.top_background = BrantColorTable::add_color("sky", BrantColor(168, 184, 204));
}

/// A few lines of "ID NAME".
std::string color_names()
{
  constexpr int kPerLine = 10;
  std::string names;
  for (int id = 0; id < OptionValues::number_of_colors(); ++id) {
    BrantString name;
    BrantColorTable::color_id_to_string(id, name);
    names += (id == 0 ? "" : id % kPerLine == 0 ? ",\n" : ", ") + std::to_string(id) + " " + name.str();
  }
  return names;
}

std::string footer()
{
  return R"(
Files: .vtu .vtp .vtk .vtm .stl .ply .obj .e .exo .ex2. Each element block
becomes a part with a colour of its own: the blocks of a .vtm or of an Exodus
file (undeformed, with the values of the last time step; no side or node sets),
and the values of an integer or text cell array "BlockId", "MaterialId" or
"CellEntityIds" of an unstructured grid, which the field array "BlockNames" may
name in ascending order. Any other file is one part.

Standard output lists files and blocks with their points, cells and cell types,
and the arrays that there are to colour by.

Ids of labels count from 0 in each file or block of a .vtm; those of cells of an
Exodus file in each block.

With --group-limit, faces end where polygons meet at an angle of 30 degrees or
more, or more than two of them meet; edges are the lines between faces.
"groups:" on standard output tells how many there are, and in how many groups.

Colours by an array go from blue for its least value in all files to red for its
greatest. Vectors have the colour of their length, parts without the array are
grey.

The quality of elements is their mean ratio, which does not depend on their
size: 1 for equilateral triangles and tetrahedra, squares, cubes and the like,
towards 0 the more an element is flattened or distorted, and 0 for one that is
inside out. Its colours go from blue for 0 to red for 1. There is one for
triangles, quadrilaterals, tetrahedra, hexahedra, wedges and pyramids, of curved
ones for their corners. Other cells are grey and not counted.

The lines of a drawing script; one that begins with # is a comment. Colours are
names or ids, and coordinates are numbers with blanks between them:
)" + debug_script_help() +
         R"(
Pictures are as large as the window would be. With --spin the mesh turns about
the upright axis through its middle, by 360/N degrees from picture to picture;
Ctrl-C stops it. Scenes are written once.

Picks take place in the picture or window as it is first drawn, in its pixels
with the origin at the bottom left corner. Faces and edges are found by an angle
of 30 degrees. The report has what is under the cursor from front to back, or
all that is in a region, with ids as those of labels; faces and edges are
counted from 0 in each block.

In the window: the left button rotates, the middle one pans, the right one and
the wheel zoom. After P the left button picks, and with Ctrl it rotates: a click
takes one entity, with Shift one more, and what lies below the cursor is shown
before. A drag takes all that lies wholly in a box or circle that is drawn to
the right, or touches one that is drawn to the left; of a lasso its first step
to a side counts, whichever way round it goes. Ctrl-C stops reading. The keys:
)" + key_list() +
         R"(

Colours of backgrounds, bottom and top, and of drawing scripts:
)" + color_names() +
         R"(

Exit status:
  0    all files are shown
  1    some files could not be read, the rest is shown
  2    nothing is shown, a file could not be written, or the command line is
       faulty
  130  interrupted by Ctrl-C)";
}

} // namespace

std::optional<int> parse_options(int argc, char** argv, Options& options)
{
  add_own_backgrounds(options);
  CLI::App app("Shows finite-element and surface meshes, in a window or as a picture.", "meshview");
  app.footer(footer());
  app.set_version_flag("--version", "meshview, VTK " + MRUtil::get_vtk_version());
  app.add_option("FILE", options.files, "Mesh files; several are shown together");
  describe_output(app, options);
  describe_mesh(app, options);
  describe_style(app, options);
  describe_decorations(app, options);
  describe_charts(app, options);
  describe_picking(app, options.pick);
  app.add_flag_callback(
      "--no-guard", [&options] { options.guard = false; },
      "Read in this process, which a damaged file may crash (for debuggers)");
  try {
    app.parse(argc, argv);
    check_together(options);
    check_picking(options.pick);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? EXIT_ALL_SHOWN : EXIT_NOTHING_SHOWN;
  }
  options.style.wire = options.wire.value_or(options.edges.value_or(true) ? Wire::All : Wire::None);
  options.parallel = options.parallel || options.decorations.legend || options.color_table;
  if (options.color_table && app.count("--view") == 0) {
    options.view = "+z"; // the chart is flat
  }
  if (options.quality) {
    options.color_by = MeshQuality::array_name();
  }
  return std::nullopt;
}
