// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "OptionGroups.h"

#include "Camera.h"
#include "OptionValues.h"
#include "Options.h"

namespace {

using OptionValues::kLargestSide;

/// An option with a value that is read by one of the functions of OptionValues.
CLI::Option* add_parsed(CLI::App& app, Options& options, const std::string& name,
                        void (*parse)(const std::string&, Options&), const std::string& description)
{
  return app.add_option_function<std::string>(
      name, [&options, parse](const std::string& text) { parse(text, options); }, description);
}

/// An option that may be given several times, each time with one value.
CLI::Option* add_repeated(CLI::App& app, Options& options, const std::string& name,
                          void (*parse)(const std::string&, Options&), const std::string& description)
{
  return app
      .add_option_function<std::vector<std::string>>(
          name,
          [&options, parse](const std::vector<std::string>& texts) {
            for (const std::string& text : texts) {
              parse(text, options);
            }
          },
          description)
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void add_intensity(CLI::App& app, const std::string& name, std::optional<Intensity>& intensity,
                   const std::string& description)
{
  app.add_option_function<std::string>(
         name,
         [name, &intensity](const std::string& text) {
           intensity = OptionValues::parse_intensity(name, text);
         },
         description)
      ->type_name("R,G,B");
}

/// Colours by the array and shows the bar of its colours.
void choose_scalar_bar(const std::string& array, Options& options)
{
  if (!options.color_by.empty() && options.color_by != array) {
    throw CLI::ValidationError("--scalar-bar",
                               "'" + array + "' is not the array of --color-by, '" + options.color_by + "'");
  }
  options.color_by = array;
  options.decorations.scalar_bar = true;
}

} // namespace

void describe_output(CLI::App& app, Options& options)
{
  add_parsed(app, options, "--image", OptionValues::parse_image,
             "Write a PNG picture to this file; without --image, --save and --report a window opens")
      ->type_name("OUT.png");
  add_repeated(app, options, "--save", OptionValues::parse_save,
               "Write a picture (" + image_extensions() + ") or the scene (" + scene_extensions() +
                   ", and .mtl beside .obj); may be repeated")
      ->type_name("FILE");
  add_parsed(app, options, "--spin", OptionValues::parse_spin,
             "Write each picture N times, from all sides of a turn: OUT_0001.png, …")
      ->type_name("N");
  add_parsed(app, options, "--size", OptionValues::parse_size,
             "Width and height of picture or window in pixels, 1 to " + std::to_string(kLargestSide))
      ->type_name("WxH")
      ->default_str(std::to_string(options.width) + "x" + std::to_string(options.height));
  add_parsed(app, options, "--background", OptionValues::parse_background,
             "Background of these colours (see below); a single one is plain")
      ->type_name("ID[,ID]")
      ->default_str(std::to_string(options.bottom_background) + "," + std::to_string(options.top_background));
  app.add_option("--view", options.view, "The side from which the mesh is seen")
      ->type_name("NAME")
      ->check(CLI::IsMember(view_names()))
      ->capture_default_str();
  app.add_flag("--parallel", options.parallel, "Parallel projection instead of perspective");
}

void describe_mesh(CLI::App& app, Options& options)
{
  static const std::map<std::string, Labels> kLabels = {
      {"blocks", Labels::Blocks}, {"points", Labels::Points}, {"cells", Labels::Cells}};
  add_choice(app, "--labels", kLabels, options.labels,
             "Label blocks with their names, or points or cells with their ids")
      ->type_name("WHAT");
  app.add_option("--color-by", options.color_by, "Colour by the values of this point or cell array")
      ->type_name("ARRAY");
}

void describe_style(CLI::App& app, Options& options)
{
  static const std::map<std::string, Surface> kSurfaces = {
      {"shaded", Surface::Shaded}, {"flat", Surface::Flat}, {"hidden", Surface::Hidden}};
  static const std::map<std::string, bool> kSwitch = {{"on", true}, {"off", false}};
  static const std::map<std::string, bool> kHidden = {{"none", false}, {"stipple", true}};
  static const std::map<std::string, Wire> kWires = {
      {"none", Wire::None}, {"all", Wire::All}, {"unique", Wire::Unique}, {"features", Wire::Features}};
  add_choice(app, "--surface", kSurfaces, options.style.surface,
             "Shade surfaces, draw them in flat colours, or not at all but as what hides lines")
      ->type_name("HOW")
      ->default_str("shaded");
  add_choice(app, "--edges", kSwitch, options.edges,
             "Draw the edges of the mesh: on is --wire all, off is --wire none")
      ->type_name("SWITCH")
      ->default_str("on");
  add_choice(app, "--wire", kWires, options.wire,
             "Draw the edges of each cell, each edge once in dark grey, of these features (borders and edges "
             "over 30 degrees), or none")
      ->type_name("WHICH")
      ->default_str("all");
  add_parsed(app, options, "--group-limit", OptionValues::parse_group_limit,
             "Draw each face of the surface, and of the features each edge, as an entity of data groups that "
             "hold N of them; 0 for no limit")
      ->type_name("N");
  app.add_flag("--color-faces", options.color_faces,
               "Give each face a colour of its own; needs --group-limit");
  app.add_flag("--silhouette", options.style.silhouette, "Draw the outline of the mesh");
  add_choice(app, "--hidden", kHidden, options.style.hidden_lines,
             "Draw features where surfaces hide them: not at all, or stippled")
      ->type_name("HOW")
      ->default_str("none");
}

void describe_decorations(CLI::App& app, Options& options)
{
  DecorationOptions& decorations = options.decorations;
  add_parsed(app, options, "--title", OptionValues::parse_title, "Title at the top")->type_name("TEXT");
  app.add_flag("--triad", decorations.triad, "Axis triad in the bottom left corner");
  add_parsed(app, options, "--axes", OptionValues::parse_axes,
             "Axes at the origin (3d, also without a FORM), in the corner (2d), or a ball at the origin (1d)")
      ->type_name("FORM:{1d,2d,3d}")
      ->expected(0, 1)
      ->default_str("3d");
  app.add_flag("--cube-axes", decorations.cube_axes, "Axes with numbers along the edges of the mesh's box");
  app.add_flag("--legend", decorations.legend, "Scale of lengths at the bottom; implies --parallel");
  add_parsed(app, options, "--scalar-bar", choose_scalar_bar,
             "Colour by this array, as --color-by, and show its colours and values in a bar")
      ->type_name("ARRAY");
  add_intensity(app, "--light", options.light, "Intensity of the lights: 0 to 1, or three for the colours");
  add_intensity(app, "--ambient", options.ambient, "The same for light that comes from everywhere");
}

void describe_charts(CLI::App& app, Options& options)
{
  app.add_flag("--quality", options.quality,
               "Colour elements by their quality (see below), beside a histogram of it");
  app.add_option("--debug-script", options.debug_script,
                 "Draw what the lines of this file say (see below); no mesh is needed")
      ->type_name("FILE");
  app.add_flag("--color-table", options.color_table, "Show the table of colours in the place of a mesh");
}

namespace {

void check_charts(const Options& options)
{
  if (options.files.empty() && !options.color_table && options.debug_script.empty()) {
    throw CLI::RequiredError("FILE");
  }
  if (options.color_table && !options.files.empty()) {
    throw CLI::ValidationError("--color-table", "is shown in the place of a mesh: leave out the files");
  }
  if (options.quality && options.files.empty()) {
    throw CLI::ValidationError("--quality", "needs the file of a mesh");
  }
  if (options.quality && !options.color_by.empty()) {
    throw CLI::ValidationError("--quality", "does not go together with the colours of an array");
  }
}

} // namespace

void check_together(const Options& options)
{
  check_charts(options);
  if (options.color_faces && !options.group_limit) {
    throw CLI::ValidationError("--color-faces", "needs --group-limit");
  }
  if (options.color_faces && !options.color_by.empty()) {
    throw CLI::ValidationError("--color-faces",
                               "does not go together with colours by '" + options.color_by + "'");
  }
  const bool has_picture = std::any_of(options.outputs.begin(), options.outputs.end(),
                                       [](const Output& output) { return is_image(output.format); });
  if (options.spin > 0 && !has_picture) {
    throw CLI::ValidationError("--spin", "needs --image, or --save with a picture");
  }
  if (options.edges && options.wire && *options.edges == (*options.wire == Wire::None)) {
    throw CLI::ValidationError("--wire", std::string("does not go together with --edges ") +
                                             (*options.edges ? "on" : "off"));
  }
}
