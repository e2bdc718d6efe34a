// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "OptionValues.h"

#include "BrantColorTable.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <filesystem>
#include <limits>
#include <map>

namespace {

[[noreturn]] void refuse(const std::string& option, const std::string& text, const std::string& expected)
{
  throw CLI::ValidationError(option, "'" + text + "' is not " + expected);
}

/// The whole of text as a number from low to high, both included; none for NaN.
template<class Number>
std::optional<Number> parse_number(const std::string& text, Number low, Number high)
{
  Number value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  const bool is_number = error == std::errc() && stop == end && value >= low && value <= high;
  return is_number ? std::optional(value) : std::nullopt;
}

/// The parts of text between commas.
std::vector<std::string> split(const std::string& text)
{
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == ',') {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

} // namespace

namespace OptionValues {

void parse_size(const std::string& text, Options& options)
{
  const auto cross = text.find('x');
  const auto width = parse_number(text.substr(0, cross), 1, kLargestSide);
  const auto height = parse_number(cross == std::string::npos ? "" : text.substr(cross + 1), 1, kLargestSide);
  if (!width || !height) {
    refuse("--size", text, "WIDTHxHEIGHT with sides from 1 to " + std::to_string(kLargestSide));
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
  const auto bottom = parse_number(text.substr(0, comma), 0, last);
  const auto top = comma == std::string::npos ? bottom : parse_number(text.substr(comma + 1), 0, last);
  if (!bottom || !top) {
    refuse("--background", text, "ID or ID,ID with ids from 0 to " + std::to_string(last));
  }
  options.bottom_background = *bottom;
  options.top_background = *top;
}

/// The name is checked with the other things that keep a picture from being written.
void parse_image(const std::string& path, Options& options)
{
  options.outputs.push_back({path, GView::PNG});
}

void parse_save(const std::string& path, Options& options)
{
  const auto format = format_of(path);
  if (!format) {
    refuse("--save", path,
           "a file name that ends in one of " + image_extensions() + " (pictures) or " + scene_extensions() +
               " (scenes)");
  }
  options.outputs.push_back({path, *format});
}

void parse_spin(const std::string& text, Options& options)
{
  const auto count = parse_number(text, 1, kMostPictures);
  if (!count) {
    refuse("--spin", text, "a number of pictures from 1 to " + std::to_string(kMostPictures));
  }
  options.spin = *count;
}

void parse_group_limit(const std::string& text, Options& options)
{
  constexpr int kMost = std::numeric_limits<int>::max();
  options.group_limit = parse_number(text, 0, kMost);
  if (!options.group_limit) {
    refuse("--group-limit", text,
           "a number of entities from 1 to " + std::to_string(kMost) + ", or 0 for no limit");
  }
}

/// A word behind an option that needs none may be meant as a file.
void parse_axes(const std::string& text, Options& options)
{
  static const std::map<std::string, MRUtil::AxisType> kForms = {
      {"3d", MRUtil::AXIS_3D}, {"2d", MRUtil::AXIS_2D}, {"1d", MRUtil::AXIS_1D}};
  const auto form = kForms.find(text);
  std::error_code error;
  if (form == kForms.end()) {
    const bool is_file = std::filesystem::exists(text, error);
    refuse("--axes", text, is_file ? "1d, 2d or 3d; write '--axes 3d' before a file" : "1d, 2d or 3d");
  }
  options.decorations.axes = form->second;
}

void parse_title(const std::string& text, Options& options)
{
  if (text.size() > kLongestTitle) {
    refuse("--title", text.substr(0, 20) + "…", "at most " + std::to_string(kLongestTitle) + " bytes long");
  }
  options.decorations.title = text;
}

std::vector<int> parse_integers(const std::string& text)
{
  std::vector<int> numbers;
  for (const std::string& part : split(text)) {
    const auto number = parse_number(part, -kFarthestPixel, kFarthestPixel);
    if (!number) {
      return {};
    }
    numbers.push_back(*number);
  }
  return numbers;
}

Intensity parse_intensity(const std::string& option, const std::string& text)
{
  Intensity intensity = {};
  std::vector<std::string> parts = split(text);
  if (parts.size() == 1) {
    parts.resize(intensity.size(), parts.front());
  }
  for (std::size_t i = 0; i < intensity.size(); ++i) {
    const auto value = parts.size() == 3 ? parse_number(parts[i], 0.0F, 1.0F) : std::nullopt;
    if (!value) {
      refuse(option, text, "a number from 0 to 1, or R,G,B of three");
    }
    intensity[i] = *value;
  }
  return intensity;
}

} // namespace OptionValues
