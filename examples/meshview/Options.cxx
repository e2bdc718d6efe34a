// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Options.h"

#include "BrantColorTable.h"
#include "BrantString.h"
#include "Camera.h"
#include "MRUtil.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <map>

namespace {

constexpr int kLargestSide = 16384; // pixels; what current drivers can draw at once

/// The whole of text as a number from low to high.
std::optional<int> parse_int(const std::string& text, int low, int high)
{
  int value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end || value < low || value > high) {
    return std::nullopt;
  }
  return value;
}

void parse_size(const std::string& text, Options& options)
{
  const auto cross = text.find('x');
  const auto width = parse_int(text.substr(0, cross), 1, kLargestSide);
  const auto height = parse_int(cross == std::string::npos ? "" : text.substr(cross + 1), 1, kLargestSide);
  if (!width || !height) {
    throw CLI::ValidationError("--size", "'" + text + "' is not WIDTHxHEIGHT with sides from 1 to " +
                                             std::to_string(kLargestSide));
  }
  options.width = *width;
  options.height = *height;
}

int number_of_colors()
{
  return BrantColorTable::num_fixed_colors() + BrantColorTable::num_variable_colors();
}

void parse_background(const std::string& text, Options& options)
{
  const auto comma = text.find(',');
  const int last = number_of_colors() - 1;
  const auto bottom = parse_int(text.substr(0, comma), 0, last);
  const auto top = comma == std::string::npos ? bottom : parse_int(text.substr(comma + 1), 0, last);
  if (!bottom || !top) {
    throw CLI::ValidationError("--background", "'" + text + "' is not ID or ID,ID with ids from 0 to " +
                                                   std::to_string(last));
  }
  options.bottom_background = *bottom;
  options.top_background = *top;
}

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
  for (int id = 0; id < number_of_colors(); ++id) {
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

Colours by an array go from blue for its least value in all files to red for its
greatest. Vectors have the colour of their length, parts without the array are
grey.

In the window: the left button rotates, the middle one pans, the right one and
the wheel zoom, r frames, q quits. Ctrl-C stops reading.

Colour ids of the background, bottom and top:
)" + color_names() +
         R"(

Exit status:
  0    all files are shown
  1    some files could not be read, the rest is shown
  2    nothing is shown, or the command line is faulty
  130  interrupted by Ctrl-C)";
}

void describe_picture(CLI::App& app, Options& options)
{
  app.add_option("--image", options.image, "Write a PNG picture to this file; without it a window opens")
      ->type_name("OUT.png");
  app.add_option_function<std::string>(
         "--size", [&options](const std::string& text) { parse_size(text, options); },
         "Width and height of picture or window in pixels, 1 to " + std::to_string(kLargestSide))
      ->type_name("WxH")
      ->default_str(std::to_string(options.width) + "x" + std::to_string(options.height));
  app.add_option_function<std::string>(
         "--background", [&options](const std::string& text) { parse_background(text, options); },
         "Background of these colours (see below); a single one is plain")
      ->type_name("ID[,ID]")
      ->default_str(std::to_string(options.bottom_background) + "," + std::to_string(options.top_background));
  app.add_option("--view", options.view, "The side from which the mesh is seen")
      ->type_name("NAME")
      ->check(CLI::IsMember(view_names()))
      ->capture_default_str();
}

/// Adds an option whose value is one of a few words.
template<class Value>
CLI::Option* add_choice(CLI::App& app, const std::string& name, const std::map<std::string, Value>& choices,
                        Value& chosen, const std::string& description)
{
  const auto choose = [&choices, &chosen](const std::string& word) { chosen = choices.at(word); };
  std::vector<std::string> words(choices.size());
  std::transform(choices.begin(), choices.end(), words.begin(),
                 [](const auto& choice) { return choice.first; });
  return app.add_option_function<std::string>(name, choose, description)->check(CLI::IsMember(words));
}

void describe_mesh(CLI::App& app, Options& options)
{
  static const std::map<std::string, Labels> kLabels = {
      {"blocks", Labels::Blocks}, {"points", Labels::Points}, {"cells", Labels::Cells}};
  static const std::map<std::string, bool> kSwitch = {{"on", true}, {"off", false}};
  add_choice(app, "--labels", kLabels, options.labels,
             "Label blocks with their names, or points or cells with their ids")
      ->type_name("WHAT");
  add_choice(app, "--edges", kSwitch, options.edges, "Draw the edges of the mesh")
      ->type_name("SWITCH")
      ->default_str("on");
  app.add_option("--color-by", options.color_by, "Colour by the values of this point or cell array")
      ->type_name("ARRAY");
}

} // namespace

std::optional<int> parse_options(int argc, char** argv, Options& options)
{
  add_own_backgrounds(options);
  CLI::App app("Shows finite-element and surface meshes, in a window or as a picture.", "meshview");
  app.footer(footer());
  app.set_version_flag("--version", "meshview, VTK " + MRUtil::get_vtk_version());
  app.add_option("FILE", options.files, "Mesh files; several are shown together")->required();
  describe_picture(app, options);
  describe_mesh(app, options);
  app.add_flag_callback(
      "--no-guard", [&options] { options.guard = false; },
      "Read in this process, which a damaged file may crash (for debuggers)");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? EXIT_ALL_SHOWN : EXIT_NOTHING_SHOWN;
  }
  return std::nullopt;
}
