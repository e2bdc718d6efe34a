// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// What the mesh viewer shows besides the mesh.
#include "MeshviewSupport.h"

#include <vtkCellArray.h>
#include <vtkXMLPolyDataWriter.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

using namespace morrow_test;

constexpr int kSide = 400; // of the pictures, pixels

/// Colours of the axes: flat on the screen, shaded in space.
bool is_red(Rgb pixel)
{
  return pixel.r > 90 && pixel.g < 40 && pixel.b < 40;
}

bool is_green(Rgb pixel)
{
  return pixel.g > 90 && pixel.r < 40 && pixel.b < 40;
}

bool is_yellow(Rgb pixel)
{
  return pixel.r > 200 && pixel.g > 200 && pixel.b < 40;
}

/// The square, seen from above.
bool is_pale_blue(Rgb pixel)
{
  return pixel.b > 150 && pixel.r > 90 && pixel.r < 150 && pixel.g > pixel.r && pixel.g < pixel.b;
}

bool is_dark(Rgb pixel)
{
  return pixel.r < 60 && pixel.g < 60 && pixel.b < 60;
}

class MeshviewDecorationsTest : public MeshviewTest
{
protected:
  [[nodiscard]] Image draw_large(std::vector<std::string> arguments) const
  {
    if (std::find(arguments.begin(), arguments.end(), "--size") == arguments.end()) {
      arguments.insert(arguments.end(), {"--size", "400x400"});
    }
    return draw(arguments);
  }

  /// A cube without edges, so that what is dark is no mesh.
  [[nodiscard]] Image draw_cube(std::vector<std::string> arguments) const
  {
    arguments.insert(arguments.begin(), {write_cube(), "--edges", "off"});
    return draw_large(arguments);
  }

  /// A square beside the world's origin, seen from above.
  [[nodiscard]] Image draw_square(std::vector<std::string> arguments) const
  {
    const std::string path =
        write_with<vtkXMLPolyDataWriter>(in_folder("square.vtp"), quad(1, 1, 3, 3).Get());
    arguments.insert(arguments.begin(), {path, "--edges", "off", "--view", "+z"});
    return draw_large(arguments);
  }
};

// --- Command line ----------------------------------------------------------------------------------------

TEST_F(MeshviewDecorationsTest, HelpNamesEveryOptionAndKey)
{
  const std::string help = run({"--help"}).out;
  for (const char* word :
       {"--title", "--triad", "--axes", "{1d,2d,3d}", "--cube-axes", "--legend", "implies --parallel",
        "--scalar-bar", "--quality", "--debug-script", "highlight-polygon X Y Z", "--color-table",
        "--parallel", "--light", "--ambient", "turn once around", "Ctrl-1 to Ctrl-4"}) {
    EXPECT_NE(help.find(word), std::string::npos) << word;
  }
}

TEST_F(MeshviewDecorationsTest, FaultyValuesHaveStatus2AndDrawNothing)
{
  const std::string cube = write_cube();
  const std::vector<std::vector<std::string>> faulty = {{"--axes", "4d"},
                                                        {"--light", "1.01"},
                                                        {"--light", "-0.1"},
                                                        {"--light", "nan"},
                                                        {"--light", "1,1"},
                                                        {"--light", "1,1,1,1"},
                                                        {"--light", "1,1,2"},
                                                        {"--light", "bright"},
                                                        {"--light", ""},
                                                        {"--ambient", "2"},
                                                        {"--ambient", "0,0,inf"},
                                                        {"--title"},
                                                        {"--title", std::string(201, 'x')},
                                                        {"--scalar-bar", "side", "--color-by", "corner"},
                                                        {"--color-by", "corner", "--scalar-bar", "side"},
                                                        {"--scalar-bar", "pressure"}};
  for (std::vector<std::string> arguments : faulty) {
    arguments.insert(arguments.begin(), {cube, "--image", mPicture});
    expect_faulty(arguments);
  }
  const std::string error = run({"--axes", cube, "--image", mPicture}).err;
  EXPECT_NE(error.find("'" + cube + "' is not 1d, 2d or 3d; write '--axes 3d' before a file"),
            std::string::npos)
      << error;
}

// --- Decorations -----------------------------------------------------------------------------------------

TEST_F(MeshviewDecorationsTest, WithoutOptionsThereIsOnlyTheMesh)
{
  const Image picture = draw_square({});
  const PixelRegion mesh = find_pixels(picture, [](Rgb pixel) { return !is_white(pixel); });
  EXPECT_EQ(mesh.count, mesh.width() * mesh.height());
  EXPECT_NEAR(mesh.width(), 368, 2) << "the mesh fills the picture but for its margins";
}

TEST_F(MeshviewDecorationsTest, TheTitleIsInTheMiddleOfTheTopAndTheMeshBelow)
{
  const Image picture = draw_cube({"--title", "Load case 7"});
  const PixelRegion title = find_pixels(crop(picture, 0, 370, kSide - 1, kSide - 1), is_dark);
  EXPECT_GT(title.count, 30);
  EXPECT_NEAR(title.centre_x, kSide / 2, 5);
  const PixelRegion mesh =
      find_pixels(picture, [](Rgb pixel) { return !is_white(pixel) && pixel.b > pixel.r + 20; });
  EXPECT_LT(mesh.max_y, 370 + title.min_y) << "the mesh is behind the title";
}

TEST_F(MeshviewDecorationsTest, ALongTitleIsMadeToFit)
{
  const Image picture =
      draw_cube({"--title", "A title of as many as sixty letters, which is rather lengthy"});
  const auto is_text = [](Rgb pixel) { return pixel.r < 200; };
  EXPECT_EQ(count_pixels(crop(picture, 0, 370, 1, kSide - 1), is_text), 0);
  EXPECT_EQ(count_pixels(crop(picture, kSide - 2, 370, kSide - 1, kSide - 1), is_text), 0);
  EXPECT_GT(count_pixels(crop(picture, 0, 370, kSide - 1, kSide - 1), is_text), 300);
}

// Seen from above, x points to the right and y up.
TEST_F(MeshviewDecorationsTest, TheTriadIsInTheBottomLeftCorner)
{
  const Image picture = draw_square({"--triad"});
  const PixelRegion x = find_pixels(picture, is_red);
  const PixelRegion y = find_pixels(picture, is_green);
  ASSERT_GT(x.count, 5);
  ASSERT_GT(y.count, 5);
  EXPECT_LT(x.max_x, 60);
  EXPECT_LT(y.max_y, 60);
  EXPECT_GT(x.width(), x.height());
  EXPECT_GT(y.height(), y.width());
  const PixelRegion mesh = find_pixels(picture, is_pale_blue);
  EXPECT_GT(mesh.min_y, y.max_y);
}

TEST_F(MeshviewDecorationsTest, AxesAreAtTheOriginWhichIsShown)
{
  const Image picture = draw_square({"--axes", "3d"});
  const PixelRegion x = find_pixels(picture, is_red);
  const PixelRegion y = find_pixels(picture, is_green);
  ASSERT_GT(x.count, 5);
  ASSERT_GT(y.count, 5);
  const PixelRegion mesh = find_pixels(picture, is_pale_blue);
  // The square goes from 1 to 3 on both axes, so the origin is half of its side away from it.
  EXPECT_NEAR(x.min_x, mesh.min_x - mesh.width() / 2.0, 4);
  EXPECT_NEAR(y.min_y, mesh.min_y - mesh.height() / 2.0, 4);
  EXPECT_EQ(draw_square({"--axes"}), picture) << "the form that needs no name";
}

TEST_F(MeshviewDecorationsTest, AxesHaveAFlatFormAndABall)
{
  const Image flat = draw_square({"--axes", "2d"});
  EXPECT_GT(count_pixels(crop(flat, 0, 0, 60, 60), is_red), 5);
  const Image ball = draw_square({"--axes", "1d"});
  EXPECT_GT(count_pixels(ball, is_yellow), 5);
  EXPECT_EQ(count_pixels(ball, is_red), 0);
}

TEST_F(MeshviewDecorationsTest, CubeAxesHaveDarkLinesAndNumbersOutsideOfTheMesh)
{
  const Image picture = draw_cube({"--cube-axes"});
  const PixelRegion axes = find_pixels(picture, is_dark);
  const PixelRegion mesh = find_pixels(picture, [](Rgb pixel) { return pixel.b > pixel.r + 20; });
  EXPECT_GT(axes.count, 200);
  EXPECT_LT(axes.min_x, mesh.min_x);
  EXPECT_LT(axes.min_y, mesh.min_y);
  EXPECT_GT(axes.min_x, 0) << "clipped";
  EXPECT_GT(axes.min_y, 0) << "clipped";
}

// The legend's bar is from a third to two thirds of the width, in rows 10 to 20, in four blocks.
TEST_F(MeshviewDecorationsTest, TheLegendMakesTheProjectionParallel)
{
  const Image picture = draw_cube({"--legend", "--background", "12"});
  const int block = kSide / 12;
  for (int i = 0; i < 4; ++i) {
    const Rgb expected = i % 2 == 0 ? Rgb{0, 0, 0} : Rgb{255, 255, 255};
    EXPECT_EQ(picture.at(kSide / 3 + i * block + block / 2, 15), expected) << i;
  }
  EXPECT_EQ(draw_cube({"--legend", "--parallel", "--background", "12"}), picture);
  EXPECT_NE(draw_cube({"--parallel", "--background", "12"}), picture);
}

// Two squares of one size, one of them farther away.
TEST_F(MeshviewDecorationsTest, ParallelProjectionShowsTrueSizes)
{
  auto squares = quad(0, 0, 1, 1);
  for (const double corner : {2.0, 3.0}) {
    squares->GetPoints()->InsertNextPoint(corner, corner - 2.0, -4.0);
    squares->GetPoints()->InsertNextPoint(5.0 - corner, corner - 2.0, -4.0);
  }
  const vtkIdType far_one[4] = {4, 5, 6, 7};
  squares->GetPolys()->InsertNextCell(4, far_one);
  const std::string path = write_with<vtkXMLPolyDataWriter>(in_folder("squares.vtp"), squares.Get());
  const auto widths = [&](const std::vector<std::string>& more) {
    std::vector<std::string> arguments = {path, "--view", "+z", "--edges", "off"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const Image picture = draw_large(arguments);
    const auto is_mesh = [](Rgb pixel) { return !is_white(pixel); };
    const PixelRegion all = find_pixels(picture, is_mesh);
    const int middle = (all.min_x + all.max_x) / 2;
    return std::pair(find_pixels(crop(picture, 0, 0, middle, kSide - 1), is_mesh).width(),
                     find_pixels(crop(picture, middle, 0, kSide - 1, kSide - 1), is_mesh).width());
  };
  const auto parallel = widths({"--parallel"});
  EXPECT_NEAR(parallel.first, parallel.second, 1);
  EXPECT_NEAR(parallel.first, 368 / 3, 2);
  const auto perspective = widths({});
  EXPECT_GT(perspective.first, perspective.second + 10);
}

TEST_F(MeshviewDecorationsTest, TheScalarBarHasTheColoursOfTheMesh)
{
  const Image picture = draw_cube({"--scalar-bar", "side", "--view", "+x", "--size", "400x300"});
  ASSERT_EQ(picture.width(), 400);
  const Image right = crop(picture, 336, 0, 399, 299);
  const auto has_hue = [](double low, double high) {
    return [low, high](Rgb pixel) {
      return channel_difference(pixel, {pixel.g, pixel.g, pixel.g}) > 60 && hue(pixel) >= low &&
             hue(pixel) <= high;
    };
  };
  const PixelRegion blue = find_pixels(right, has_hue(225, 245));
  const PixelRegion green = find_pixels(right, has_hue(110, 130));
  const PixelRegion red = find_pixels(right, has_hue(0, 10));
  ASSERT_GT(blue.count, 20);
  ASSERT_GT(green.count, 20);
  ASSERT_GT(red.count, 20);
  EXPECT_LT(blue.centre_y, green.centre_y);
  EXPECT_LT(green.centre_y, red.centre_y);
  EXPECT_GT(count_pixels(right, is_dark), 50) << "numbers";
  EXPECT_EQ(count_pixels(crop(picture, 398, 0, 399, 299), is_dark), 0) << "clipped";
  const Rgb mesh = picture.at(150, 150);
  EXPECT_NEAR(hue(mesh), 237.6, 3.0) << "side 0 is towards +x";
  EXPECT_EQ(draw_cube({"--scalar-bar", "side", "--color-by", "side", "--view", "+x", "--size", "400x300"}),
            picture);
}

// --- Light -----------------------------------------------------------------------------------------------

TEST_F(MeshviewDecorationsTest, LightsAreBrighterColouredOrTheLibrarysOwn)
{
  const auto middle = [this](const std::vector<std::string>& arguments) {
    return draw_square(arguments).at(kSide / 2, kSide / 2);
  };
  const Rgb own = middle({});
  EXPECT_EQ(middle({"--ambient", "0.333333333"}), own) << "the default, as the library documents it";
  const Rgb dim = middle({"--light", "0"});
  const Rgb bright = middle({"--light", "0.3"});
  EXPECT_LT(dim.g, own.g - 20);
  EXPECT_GT(bright.g, dim.g + 20);
  EXPECT_EQ(middle({"--light", "0,0,0"}), dim);
  EXPECT_LT(middle({"--ambient", "0"}).g, own.g - 5);
  const Rgb red = middle({"--light", "0.3,0,0"});
  EXPECT_LT(red.g, bright.g - 20);
  EXPECT_GT(static_cast<double>(red.r) / red.g, static_cast<double>(bright.r) / bright.g);
}

// --- All together ----------------------------------------------------------------------------------------

TEST_F(MeshviewDecorationsTest, AllTogetherFitAnyPicture)
{
  for (const char* size : {"640x480", "100x400", "400x100", "1x1", "2x2"}) {
    const Outcome outcome = run({sample(), "--image", mPicture, "--size", size, "--title", "All", "--triad",
                                 "--axes", "3d", "--cube-axes", "--legend", "--scalar-bar", "MeanRatio",
                                 "--labels", "blocks", "--background", "9"});
    EXPECT_EQ(outcome.status, 0) << size << ::testing::PrintToString(outcome);
    EXPECT_EQ(outcome.err, "") << size;
    EXPECT_FALSE(read_png(mPicture).empty()) << size;
  }
}

// What has no size gives no scale to anything; what is far from the origin must not be lost in rounding.
TEST_F(MeshviewDecorationsTest, PointsAndMeshesFarAwayAreDrawnToo)
{
  const std::string point = write_text(in_folder("point.obj"), "v 5 6 7\np 1\n");
  const std::string far_away = write_text(
      in_folder("far.obj"), "v 1000000 0 0\nv 1000001 0 0\nv 1000001 1 0\nv 1000000 1 0\nf 1 2 3 4\n");
  for (const std::string& path : {point, far_away}) {
    for (const char* axes : {"--axes", "--triad"}) {
      const Outcome outcome = run({path, "--image", mPicture, "--size", "200x150", "--title", "All",
                                   "--cube-axes", "--legend", "--background", "9", "--spin", "2", axes});
      EXPECT_EQ(outcome.status, 0) << ::testing::PrintToString(outcome);
      EXPECT_EQ(outcome.err, "");
      for (const char* name : {"picture_0001.png", "picture_0002.png"}) {
        EXPECT_GT(count_pixels(read_png(in_folder(name)), [](Rgb pixel) { return !is_white(pixel); }), 20)
            << name;
      }
    }
  }
}

// --- Real meshes -----------------------------------------------------------------------------------------

class MeshviewDecoratedRealMeshTest : public MeshviewDecorationsTest,
                                      public ::testing::WithParamInterface<const char*>
{};

// Nothing is cut off at the sides: the outermost pixels are background, but for the legend's numbers.
TEST_P(MeshviewDecoratedRealMeshTest, IsDrawnWithAllDecorationsInThePicture)
{
  MORROW_REAL_MESH(path, GetParam());
  const Outcome outcome = run({path, "--image", mPicture, "--size", "640x480", "--background", "9", "--title",
                               GetParam(), "--triad", "--axes", "--cube-axes", "--legend"});
  ASSERT_EQ(outcome.status, 0) << ::testing::PrintToString(outcome);
  const Image picture = read_png(mPicture);
  const auto is_drawn = [](Rgb pixel) { return !is_white(pixel); };
  EXPECT_EQ(count_pixels(crop(picture, 0, 0, 1, 479), is_drawn), 0) << "left";
  EXPECT_EQ(count_pixels(crop(picture, 638, 0, 639, 479), is_drawn), 0) << "right";
  EXPECT_EQ(count_pixels(crop(picture, 0, 478, 639, 479), is_drawn), 0) << "top";
  EXPECT_GT(count_pixels(picture, is_drawn), 640 * 480 / 40);
}

INSTANTIATE_TEST_SUITE_P(All, MeshviewDecoratedRealMeshTest,
                         ::testing::Values("mug.e", "mesh_fs8.exo", "can.vtu", "hexa.vtk", "cow.vtp",
                                           "Vented_Rear_Case_With_Pi_Supports.vtp", "gears.stl"),
                         [](const auto& test) {
                           std::string name = test.param;
                           std::replace(name.begin(), name.end(), '.', '_');
                           return name;
                         });

} // namespace
