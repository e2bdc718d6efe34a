// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PickOptions.h"

#include "OptionGroups.h"
#include "OptionValues.h"

namespace {

/// One of the options that say where to pick.
struct Place
{
  const char* option;
  const char* values; ///< for people
  const char* description;
  PickShape shape;
};

constexpr Place kPlaces[] = {
    {"--pick", "X,Y", "Pick what is seen at this pixel, counted from the bottom left corner",
     PickShape::Point},
    {"--pick-box", "X0,Y0,X1,Y1", "Pick what lies in the box between these corners", PickShape::Box},
    {"--pick-circle", "X,Y,R", "Pick what lies in the circle of this middle and radius", PickShape::Circle},
    {"--pick-polygon", "X0,Y0,X1,Y1,X2,Y2,…", "Pick what lies in the polygon of these corners, 3 at least",
     PickShape::Lasso}};

bool is_right_count(PickShape shape, std::size_t count)
{
  switch (shape) {
  case PickShape::Point:
    return count == 2;
  case PickShape::Box:
    return count == 4;
  case PickShape::Circle:
    return count == 3;
  default:
    return count >= 6 && count % 2 == 0;
  }
}

PickRegion parse_place(const Place& place, const std::string& text)
{
  std::vector<int> numbers = OptionValues::parse_integers(text);
  const bool is_circle = place.shape == PickShape::Circle;
  if (!is_right_count(place.shape, numbers.size()) || (is_circle && numbers[2] < 0)) {
    throw CLI::ValidationError(place.option, "'" + text + "' is not " + place.values + " in whole pixels");
  }
  PickRegion region;
  region.shape = place.shape;
  if (is_circle) {
    region.radius = numbers.back();
    numbers.pop_back();
  }
  for (std::size_t i = 0; i < numbers.size(); i += 2) {
    region.points.push_back({numbers[i], numbers[i + 1]});
  }
  return region;
}

void choose_place(const Place& place, const std::string& text, PickOptions& options)
{
  if (options.region) {
    throw CLI::ValidationError(place.option,
                               "there is one place to pick in, and another option names it already");
  }
  options.region = parse_place(place, text);
}

} // namespace

void describe_picking(CLI::App& app, PickOptions& options)
{
  static const std::map<std::string, EntityKind> kKinds = {{"block", EntityKind::Block},
                                                           {"face", EntityKind::Face},
                                                           {"edge", EntityKind::Edge},
                                                           {"element", EntityKind::Element},
                                                           {"node", EntityKind::Node}};
  for (const Place& place : kPlaces) {
    app.add_option_function<std::string>(
           place.option, [&place, &options](const std::string& text) { choose_place(place, text, options); },
           place.description)
        ->type_name(place.values);
  }
  add_choice(app, "--pick-type", kKinds, options.kind, "What is picked: a block, face, edge, element or node")
      ->type_name("NAME")
      ->default_str("face");
  app.add_flag("--visible-only", options.visible_only, "Pick nothing that surfaces hide");
  app.add_flag("--partial", options.partial, "Boxes, circles and polygons pick what they touch as well");
  app.add_option("--report", options.report, "Write what was picked to this file, as JSON")
      ->type_name("OUT.json");
}

void check_picking(const PickOptions& options)
{
  if (!options.report.empty() && !options.region) {
    throw CLI::ValidationError("--report",
                               "needs one of --pick, --pick-box, --pick-circle and --pick-polygon");
  }
}
