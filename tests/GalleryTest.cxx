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

/// The same driver rounds a depth otherwise on another processor, and a model may draw its parts in another
/// order. Where two things have the same depth, at common edges of parts or along an edge seen from its end,
/// some pixels, a dash of a line or two, are of the one or the other: at most one pixel in a thousand.
constexpr int kUndecidedPixels = 640 * 480 / 1000;

void expect_same(const Image& picture, const Image& expected, const std::string& name)
{
  const ImageDifference difference = compare(picture, expected);
  EXPECT_TRUE(difference.same_size && difference.pixels_over_8 <= kUndecidedPixels)
      << name << " differs:\n"
      << describe(Strictness::Exact, difference) << "\nscripts/gallery.sh draws the gallery anew.";
}

class Gallery : public MeshviewTest
{};

TEST_F(Gallery, ShowsEveryPictureThereIsAndNoOther)
{
  EXPECT_EQ(find_all(page(), R"(\(images/gallery/([^)]+)\))"), pictures_in(root() / "docs/images/gallery"));
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
