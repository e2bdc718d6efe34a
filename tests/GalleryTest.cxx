// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// The pictures of docs/gallery.md are those that the commands beside them draw.
#include "MeshviewSupport.h"

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#ifndef MESHVIEW_PROGRAM
#error "MESHVIEW_PROGRAM is the path of the program under test"
#endif

namespace fs = std::filesystem;

namespace {

using namespace morrow_test;

using Names = std::set<std::string>;

fs::path root()
{
  return fs::weakly_canonical(baseline_folder() + "/../..");
}

std::string page()
{
  return read_text((root() / "docs/gallery.md").string());
}

Names pictures_in(const fs::path& folder)
{
  Names names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

/// What the pattern's group matches, wherever it does in the text.
Names find_all(const std::string& text, const std::string& pattern)
{
  const std::regex regex(pattern);
  Names found;
  for (std::sregex_iterator at(text.begin(), text.end(), regex); at != std::sregex_iterator(); ++at) {
    found.insert((*at)[1]);
  }
  return found;
}

/// A model draws its parts in the order of their addresses, which changes from run to run. Where two parts
/// have the same depth, at their common edges, a few pixels are of the one or the other.
constexpr int kUndecidedPixels = 4;

/// The same driver on another processor rounds otherwise: along a line that runs exactly through one of the
/// four samples of its pixels, that sample falls to the other side. A pixel changes by a quarter, and no more
/// than one in a thousand does.
constexpr int kOneSample = 256 / 4 + 8;
constexpr int kUndecidedSamples = 640 * 480 / 1000;

int count_pixels_over(int limit, const Image& a, const Image& b)
{
  int count = 0;
  for (std::size_t i = 0; i < a.pixels().size(); ++i) {
    count += channel_difference(a.pixels()[i], b.pixels()[i]) > limit ? 1 : 0;
  }
  return count;
}

void expect_same(const Image& picture, const Image& expected, const std::string& name)
{
  const ImageDifference difference = compare(picture, expected);
  const std::string what = name + " differs:\n" + describe(Strictness::Exact, difference) +
                           "\nscripts/gallery.sh draws the gallery anew.";
  ASSERT_TRUE(difference.same_size) << what;
  EXPECT_LE(difference.pixels_over_8, kUndecidedSamples) << what;
  EXPECT_LE(count_pixels_over(kOneSample, picture, expected), kUndecidedPixels) << what;
}

class Gallery : public MeshviewTest
{};

TEST_F(Gallery, ShowsEveryPictureThereIsAndNoOther)
{
  EXPECT_EQ(find_all(page(), R"(\(images/gallery/([^)]+)\))"), pictures_in(root() / "docs/images/gallery"));
}

// Those that draw nothing else are left out.
TEST_F(Gallery, HasACommandWithEachOptionThatDraws)
{
  std::string commands;
  std::istringstream lines(page());
  for (std::string line; std::getline(lines, line);) {
    commands += line.rfind("meshview ", 0) == 0 ? line + '\n' : "";
  }
  Names shown = find_all(commands, " (--[a-z-]+)");
  shown.merge(Names{"--help", "--version", "--save", "--report", "--no-guard"});
  EXPECT_EQ(find_all(run({"--help"}).out, "\n  (?:-h,)?(--[a-z-]+)"), shown);
}

TEST_F(Gallery, PicturesAreSmallFiles)
{
  for (const auto& entry : fs::directory_iterator(root() / "docs/images/gallery")) {
    EXPECT_LT(fs::file_size(entry.path()), 60'000U) << entry.path();
  }
}

// Another driver draws other pixels: then it must only draw.
TEST_F(Gallery, IsUpToDate)
{
  const std::string made = in_folder("made");
  const std::string command = "'" + (root() / "scripts/gallery.sh").string() + "' --program '" +
                              MESHVIEW_PROGRAM + "' --into '" + made + "' >/dev/null";
  const int status = std::system(command.c_str());
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << command;
  const Names names = pictures_in(made);
  EXPECT_EQ(names, pictures_in(root() / "docs/images/gallery"));
  const Names recorded = find_all(page(), "\nDrawn by: ([^\n]+)");
  ASSERT_EQ(recorded.size(), 1U) << "gallery.md tells who has drawn it";
  vtkNew<vtkRenderWindow> window;
  window->OffScreenRenderingOn();
  window->Render();
  const std::string driver = gl_driver(window);
  const bool is_same_driver = strictness_for(driver, *recorded.begin()) == Strictness::Exact;
  if (!is_same_driver) {
    std::cout << "not compared: drawn by " << driver << " here, by " << *recorded.begin()
              << " in the gallery\n";
  }
  for (const std::string& name : names) {
    const Image picture = read_png(made + "/" + name);
    EXPECT_FALSE(picture.empty()) << name;
    if (is_same_driver) {
      expect_same(picture, read_png((root() / "docs/images/gallery" / name).string()), name);
    }
  }
}

} // namespace
