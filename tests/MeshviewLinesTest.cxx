// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// The lines of the mesh viewer: silhouettes, wires and hidden lines, and the surfaces below them.
#include "MeshviewSupport.h"

#include <vtkAppendPolyData.h>
#include <vtkCellArray.h>
#include <vtkCylinderSource.h>
#include <vtkStripper.h>
#include <vtkTriangleFilter.h>
#include <vtkXMLPolyDataWriter.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace fs = std::filesystem;

namespace {

using namespace morrow_test;

constexpr Rgb kDarkGrey = {64, 64, 64}; // of wires
constexpr Rgb kGrey = {135, 135, 135};  // of hidden lines

int count(const Image& picture, Rgb color)
{
  return count_pixels(picture, [color](Rgb pixel) { return pixel == color; });
}

int count_drawn(const Image& picture)
{
  return count_pixels(picture, [](Rgb pixel) { return !is_white(pixel); });
}

vtkSmartPointer<vtkPolyData> triangulated(vtkPolyData* data)
{
  vtkNew<vtkTriangleFilter> filter;
  filter->SetInputData(data);
  filter->Update();
  return filter->GetOutput();
}

/// Has no lines, but long triangles at both ends. VTK's has points of its own for the ends.
vtkSmartPointer<vtkPolyData> cylinder()
{
  vtkNew<vtkCylinderSource> source;
  source->SetResolution(64);
  source->SetHeight(0.5);
  source->Update();
  return source->GetOutput();
}

/// A square, and a smaller one 2 below it.
vtkSmartPointer<vtkPolyData> two_squares()
{
  vtkNew<vtkAppendPolyData> both;
  both->AddInputData(quad(-2, -2, 2, 2, 0.0));
  both->AddInputData(quad(-1, -1, 1, 1, -2.0));
  both->Update();
  return both->GetOutput();
}

class MeshviewLinesTest : public MeshviewTest
{
protected:
  [[nodiscard]] std::string write(vtkPolyData* data, const std::string& name = "mesh.vtp") const
  {
    return write_with<vtkXMLPolyDataWriter>(in_folder(name), data);
  }

  [[nodiscard]] Image draw_mesh(vtkPolyData* data, std::vector<std::string> arguments) const
  {
    arguments.insert(arguments.begin(), write(data));
    return draw(arguments);
  }
};

// --- Command line ----------------------------------------------------------------------------------------

TEST_F(MeshviewLinesTest, HelpNamesEveryOptionAndKey)
{
  const std::string help = run({"--help"}).out;
  for (const char* word : {"--surface", "{flat,hidden,shaded}", "--wire", "{all,features,none,unique}",
                           "--silhouette", "--hidden", "{none,stipple}", "--edges",
                           "surfaces: shaded, flat, hidden", "outline: the silhouette"}) {
    EXPECT_NE(help.find(word), std::string::npos) << word;
  }
}

TEST_F(MeshviewLinesTest, FaultyValuesHaveStatus2AndDrawNothing)
{
  const std::string cube = write_cube();
  const std::vector<std::vector<std::string>> faulty = {{"--surface", "round"},
                                                        {"--surface"},
                                                        {"--wire", "on"},
                                                        {"--wire", ""},
                                                        {"--wire"},
                                                        {"--hidden", "dashed"},
                                                        {"--silhouette=wide"},
                                                        {"--edges", "on", "--wire", "none"},
                                                        {"--edges", "off", "--wire", "all"},
                                                        {"--wire", "unique", "--edges", "off"}};
  for (std::vector<std::string> arguments : faulty) {
    arguments.insert(arguments.begin(), {cube, "--image", mPicture});
    expect_faulty(arguments);
  }
}

TEST_F(MeshviewLinesTest, EdgesIsWireInShort)
{
  const std::string cube = write_cube();
  EXPECT_EQ(draw({cube, "--wire", "all"}), draw({cube}));
  EXPECT_EQ(draw({cube, "--wire", "none"}), draw({cube, "--edges", "off"}));
  EXPECT_EQ(draw({cube, "--wire", "unique", "--edges", "on"}), draw({cube, "--wire", "unique"}));
}

// --- Silhouette ------------------------------------------------------------------------------------------

// From above the cube is a square, whose outline is two pixels wide.
TEST_F(MeshviewLinesTest, TheSilhouetteOfACubeIsASquare)
{
  const std::string cube = write_cube();
  const std::vector<std::string> arguments = {cube, "--edges", "off", "--parallel", "--view", "+z"};
  const Image plain = draw(arguments);
  EXPECT_EQ(count(plain, kBlack), 0);
  const PixelRegion square = find_pixels(plain, [](Rgb pixel) { return !is_white(pixel); });
  std::vector<std::string> with = arguments;
  with.emplace_back("--silhouette");
  const Image picture = draw(with);
  const PixelRegion outline = find_pixels(picture, [](Rgb pixel) { return pixel == kBlack; });
  EXPECT_NEAR(outline.width(), square.width(), 2);
  EXPECT_NEAR(outline.height(), square.height(), 2);
  EXPECT_NEAR(outline.count, 4 * 2 * square.width(), 24);
}

// Points that are apart only in the file do not make borders of the edges between the sides.
TEST_F(MeshviewLinesTest, TheSilhouetteIsThatOfTheSolidWhateverPointsAreShared)
{
  const Image shared = draw({write_cube(), "--edges", "off", "--silhouette"});
  EXPECT_GT(count(shared, kBlack), 300);
  EXPECT_EQ(count(crop(shared, 60, 60, 140, 140), kBlack), 0) << "three edges in front, none of the outline";
  vtkNew<vtkAppendPolyData> sides; // each with points of its own
  const auto cube = cube_sides();
  for (vtkIdType i = 0; i < cube->GetNumberOfCells(); ++i) {
    vtkNew<vtkPolyData> side;
    vtkNew<vtkCellArray> polygon;
    vtkNew<vtkIdList> corners;
    cube->GetCellPoints(i, corners);
    polygon->InsertNextCell(corners);
    side->SetPoints(cube->GetPoints());
    side->SetPolys(polygon);
    sides->AddInputData(side);
  }
  sides->Update();
  EXPECT_EQ(draw_mesh(sides->GetOutput(), {"--edges", "off", "--silhouette"}), shared);
}

TEST_F(MeshviewLinesTest, LongTrianglesAndStripsHaveTheSilhouetteOfTheirPolygons)
{
  const std::vector<std::string> arguments = {"--edges", "off", "--silhouette", "--view", "iso"};
  const int expected = count(draw_mesh(cylinder(), arguments), kBlack);
  EXPECT_GT(expected, 300);
  const auto triangles = triangulated(cylinder());
  EXPECT_NEAR(count(draw_mesh(triangles, arguments), kBlack), expected, 5);
  vtkNew<vtkStripper> stripper;
  stripper->SetInputData(triangles);
  stripper->Update();
  ASSERT_GT(stripper->GetOutput()->GetNumberOfStrips(), 0);
  EXPECT_NEAR(count(draw_mesh(stripper->GetOutput(), arguments), kBlack), expected, 5);
}

TEST_F(MeshviewLinesTest, TheSilhouetteCanBeReadOnADarkBackground)
{
  const Image picture = draw({write_cube(), "--edges", "off", "--silhouette", "--background", "0"});
  EXPECT_GT(count_pixels(picture, [](Rgb pixel) { return is_white(pixel); }), 300);
}

// The order of faces, and with it the direction of lines, is not left to threads.
TEST_F(MeshviewLinesTest, EachRunDrawsTheSamePicture)
{
  const std::vector<std::string> arguments = {sample(),       "--size",   "640x480", "--surface", "hidden",
                                              "--silhouette", "--hidden", "stipple", "--wire",    "features"};
  const Image first = draw(arguments);
  EXPECT_EQ(draw(arguments), first);
  EXPECT_EQ(draw(arguments), first);
}

// --- Wire ------------------------------------------------------------------------------------------------

// The border and the diagonal of a square that is two triangles, from above.
TEST_F(MeshviewLinesTest, UniqueEdgesAreDarkGreyLines)
{
  const auto square = triangulated(quad(-1, -1, 1, 1));
  const std::vector<std::string> above = {"--parallel", "--view", "+z", "--wire"};
  const auto with = [&](const char* wire) {
    std::vector<std::string> arguments = above;
    arguments.emplace_back(wire);
    return draw_mesh(square, arguments);
  };
  const Image unique = with("unique");
  const int width = find_pixels(unique, [](Rgb pixel) { return !is_white(pixel); }).width();
  EXPECT_NEAR(count(unique, kDarkGrey), 5 * width, 10) << "the diagonal has a pixel in each row";
  const Image features = with("features");
  EXPECT_NEAR(count(features, kDarkGrey), 4 * width, 10) << "two triangles in one plane have no edge there";
  EXPECT_EQ(count(with("all"), kDarkGrey), 0) << "a dark shade of the part";
  EXPECT_EQ(count(with("none"), kDarkGrey), 0);
}

TEST_F(MeshviewLinesTest, FeaturesOfACubeAreItsEdges)
{
  const auto cube = triangulated(cube_sides());
  const Image features = draw_mesh(cube, {"--wire", "features"});
  const Image unique = draw_mesh(cube, {"--wire", "unique"});
  EXPECT_GT(count(features, kDarkGrey), 500);
  EXPECT_GT(count(unique, kDarkGrey), count(features, kDarkGrey) + 200) << "three diagonals";
}

// --- Surface ---------------------------------------------------------------------------------------------

TEST_F(MeshviewLinesTest, FlatSurfacesHaveOneColour)
{
  const auto number_of_colors = [this](const char* surface) {
    const Image picture = draw({write_cube(), "--edges", "off", "--surface", surface});
    std::set<std::tuple<int, int, int>> colors;
    for (int y = 0; y < 200; ++y) {
      for (int x = 0; x < 200; ++x) {
        const Rgb pixel = picture.at(x, y);
        colors.insert({pixel.r, pixel.g, pixel.b});
      }
    }
    return colors.size();
  };
  EXPECT_EQ(number_of_colors("flat"), 2U) << "and the background's";
  EXPECT_EQ(number_of_colors("shaded"), 4U) << "three sides are seen";
  EXPECT_EQ(number_of_colors("hidden"), 1U);
}

// From above one square hides the other, whose lines are half there when they are stippled.
TEST_F(MeshviewLinesTest, HiddenSurfacesHideLinesOrHaveThemStippled)
{
  const std::vector<std::string> arguments = {"--parallel", "--view", "+z", "--surface", "hidden", "--wire"};
  const auto with = [&](std::vector<std::string> more) {
    more.insert(more.begin(), arguments.begin(), arguments.end());
    return draw_mesh(two_squares(), more);
  };
  const Image upper = with({"features"});
  const int width = find_pixels(upper, [](Rgb pixel) { return !is_white(pixel); }).width();
  EXPECT_NEAR(count(upper, kDarkGrey), 4 * width, 10);
  EXPECT_EQ(count_drawn(upper), count(upper, kDarkGrey)) << "nothing else is seen";
  const Image both = with({"features", "--hidden", "stipple"});
  EXPECT_EQ(count(both, kDarkGrey), count(upper, kDarkGrey));
  EXPECT_NEAR(count(both, kGrey), 4 * (width / 2) / 2, 12);
  EXPECT_EQ(with({"features", "--hidden", "none"}), upper);
  EXPECT_EQ(count(with({"none", "--hidden", "stipple"}), kGrey), count(both, kGrey));
  EXPECT_EQ(count_drawn(with({"none"})), 0);
}

TEST_F(MeshviewLinesTest, AllEdgesAreSeenOnHiddenSurfacesToo)
{
  const Image picture = draw({write_cube(), "--surface", "hidden"});
  EXPECT_GT(count_drawn(picture), 500);
  EXPECT_LT(count_drawn(picture), 2500);
}

// They have nothing else to be seen by.
TEST_F(MeshviewLinesTest, LinesAreSeenWithoutSurfaces)
{
  const auto line = polyline({-1, -1, 0, 1, 1, 0});
  const Image picture = draw_mesh(line, {"--view", "+z"});
  EXPECT_GT(count_drawn(picture), 300);
  EXPECT_EQ(draw_mesh(line, {"--view", "+z", "--surface", "hidden", "--wire", "unique", "--silhouette",
                             "--hidden", "stipple"}),
            picture);
}

// Scenes have no way to show these, but are written.
TEST_F(MeshviewLinesTest, ScenesAreWrittenInEachStyle)
{
  const std::string scene = in_folder("cube.obj");
  const Outcome outcome = run({write_cube(), "--save", scene, "--silhouette", "--wire", "unique", "--hidden",
                               "stipple", "--surface", "flat"});
  EXPECT_EQ(outcome.status, 0) << ::testing::PrintToString(outcome);
  EXPECT_NE(read_text(scene).find("\nf "), std::string::npos);
}

} // namespace
