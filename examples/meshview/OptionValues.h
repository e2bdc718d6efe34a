// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Options.h"

/// Values of the command line, taken from their text. Faulty ones throw CLI::ValidationError with the
/// option's name and what it takes.
namespace OptionValues {

void parse_size(const std::string& text, Options& options);
void parse_background(const std::string& text, Options& options);
void parse_image(const std::string& path, Options& options);
void parse_save(const std::string& path, Options& options);
void parse_spin(const std::string& text, Options& options);
void parse_group_limit(const std::string& text, Options& options);
void parse_axes(const std::string& text, Options& options);
void parse_title(const std::string& text, Options& options);

/// One number for all three components, or three with commas between them.
[[nodiscard]] Intensity parse_intensity(const std::string& option, const std::string& text);

/// Numbers between commas, from -kFarthestPixel to kFarthestPixel; none when one of them is none.
[[nodiscard]] std::vector<int> parse_integers(const std::string& text);

// Limits.
inline constexpr int kFarthestPixel = 1'000'000;
inline constexpr int kLargestSide = 16384;        // what current drivers can draw at once
inline constexpr std::size_t kLongestTitle = 200; // bytes; what is drawn of it takes memory
inline constexpr int kMostPictures = 9999;        // four digits in their names

/// How many colours the colour table has.
[[nodiscard]] int number_of_colors();

} // namespace OptionValues
