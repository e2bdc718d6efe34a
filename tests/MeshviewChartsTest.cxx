// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// The mesh viewer's colour table, drawing scripts and quality of elements.
#include "BrantVector.h"
#include "MeshviewSupport.h"

#include <vtkCellType.h>
#include <vtkPoints.h>
#include <vtkXMLPolyDataWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

namespace {

using namespace morrow_test;

class MeshviewChartsTest : public MeshviewTest
{
protected:
  [[nodiscard]] std::string write_script(const std::string& text, const std::string& name = "a.draw") const
  {
    return write_text(in_folder(name), text);
  }

  /// The picture of a drawing seen from above, in parallel projection.
  [[nodiscard]] Image draw_script(const std::string& text, const std::vector<std::string>& more = {}) const
  {
    std::vector<std::string> arguments = {"--debug-script", write_script(text), "--view", "+z", "--parallel"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return draw(arguments);
  }

  /// For what the program says, not for what it draws.
  [[nodiscard]] Outcome run_small(std::vector<std::string> arguments) const
  {
    arguments.insert(arguments.end(), {"--image", mPicture, "--size", "64x48"});
    return run(arguments);
  }
};

// --- Colour table ----------------------------------------------------------------------------------------

// 19 colours, meshview's own two among them, are two rows of ten swatches. A drawing goes onto them.
TEST_F(MeshviewChartsTest, TheColourTableShowsItsSwatchesInTheirVeryColours)
{
  const Image image = draw({"--color-table", "--debug-script",
                            write_script("line magenta 0 0.9 0.1 1 0.9 0.1\n"), "--size", "800x240"});
  const PixelRegion red = find_pixels(image, colour_is({255, 0, 0}, 2));
  const PixelRegion blue = find_pixels(image, colour_is({0, 0, 255}, 2));
  const PixelRegion coral = find_pixels(image, colour_is({255, 127, 80}, 2));
  EXPECT_GT(red.count, 1000);
  EXPECT_NEAR(red.width(), red.height(), 2);
  EXPECT_NEAR(blue.centre_y, red.centre_y, 1.0);                 // one row,
  const double column = (blue.centre_x - red.centre_x) / 5.0;    // from 3 to 8
  EXPECT_NEAR(coral.centre_x - red.centre_x, 2.0 * column, 1.5); // 15 stands below 5
  EXPECT_NEAR(red.centre_y - coral.centre_y, column, 1.5);
  EXPECT_NEAR(red.width(), 0.6 * column, 2.5);
  EXPECT_GT(red.min_x, 2 * column); // nothing is cut off on the left
  EXPECT_NEAR(find_pixels(image, colour_is({255, 0, 255}, 2)).width(), 10 * column, 2.5);
}

TEST_F(MeshviewChartsTest, ChartsThatDoNotGoTogetherAreRefused)
{
  expect_faulty({"--color-table", write_cube(), "--image", mPicture}); // it takes the place of a mesh
  expect_faulty({"--image", mPicture});
  expect_faulty({"--quality", "--debug-script", write_script("point red 0 0 0\n"), "--image", mPicture});
  expect_faulty({write_cube(), "--quality", "--color-by", "side", "--image", mPicture});
}

// --- Drawing scripts -------------------------------------------------------------------------------------

TEST_F(MeshviewChartsTest, AScriptDrawsWithoutAMesh)
{
  const std::string script = write_script("# a comment\n"
                                          "\n"
                                          "  line red -1 -1 0  1 -1 0 \r\n"
                                          "point 8 0 0 0\n"
                                          "\tpolyline 4 -1 1 0 0 1 0 1 1 0\n");
  const Outcome outcome = run({"--debug-script", script, "--image", mPicture, "--size", "200x200",
                               "--background", "9", "--view", "+z", "--parallel"});
  EXPECT_EQ(outcome.status, 0) << ::testing::PrintToString(outcome);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out, script + "\n  3 drawing calls\n");
  const Image image = read_png(mPicture);
  const PixelRegion red = find_pixels(image, colour_is({255, 0, 0}));
  const PixelRegion green = find_pixels(image, colour_is({0, 255, 0}));
  EXPECT_NEAR(red.width(), 184, 3); // all that the margins leave
  EXPECT_NEAR(green.centre_y - red.centre_y, 184, 3);
  EXPECT_NEAR(find_pixels(image, colour_is({0, 0, 255})).centre_x, 100, 1.5);
}

/// A call with its points, to be drawn elsewhere.
struct ScriptCall
{
  std::string head;
  std::vector<BrantVector> points;
  std::string tail;

  [[nodiscard]] std::string line(double x) const
  {
    std::string text = head;
    for (const BrantVector& point : points) {
      text += " " + std::to_string(point.x() + x) + " " + std::to_string(point.y()) + " " +
              std::to_string(point.z());
    }
    return text + " " + tail + "\n";
  }
};

// Side by side, 2 units apart.
TEST_F(MeshviewChartsTest, EveryCallDrawsSomething)
{
  const BrantVector a(0, 0, 0);
  const BrantVector b(1, 0, 0);
  const BrantVector c(1, 1, 0);
  const BrantVector d(0, 1, 0);
  const ScriptCall calls[] = {{"point red", {c}, ""},
                              {"line red", {a, c}, ""},
                              {"vector red", {a, b}, ""},
                              {"box red", {a, BrantVector(1, 1, 1)}, ""},
                              {"polyline red", {a, b, c}, ""},
                              {"polygon red", {a, b, c}, ""},
                              {"filled-polygon red", {a, b, c}, ""},
                              {"quad red", {a, b, c, d}, ""},
                              {"tri red", {a, b, c}, ""},
                              {"label red", {a}, "text"},
                              {"highlight-points", {a, b}, ""},
                              {"highlight-polyline", {a, b, c}, ""},
                              {"highlight-polygon", {a, b, c}, ""}};
  std::string text = "box white 0 -1 0 26 1 0\n"; // the frame
  double x = 0.5;
  for (const ScriptCall& call : calls) {
    text += call.line(x);
    x += 2.0;
  }
  const Image image = draw_script(text, {"--size", "1300x200"});
  const auto is_drawn = [](Rgb pixel) { return pixel.r > pixel.b + 50; };
  int left = 52; // the margin, 4 in a hundred
  for (const ScriptCall& call : calls) {
    EXPECT_GT(count_pixels(crop(image, left, 0, left + 91, 199), is_drawn), 20) << call.head;
    left += 92;
  }
}

TEST_F(MeshviewChartsTest, AScriptDrawsOntoAMesh)
{
  // A line across the upper face of the cube, whose surface steps back for it.
  const Image image = draw_script("line red -1 0 1 1 0 1\n", {write_cube(), "--edges", "off"});
  const PixelRegion red = find_pixels(image, colour_is({255, 0, 0}));
  EXPECT_NEAR(red.width(), 184, 3);
  EXPECT_GE(red.count, 180);
  EXPECT_GT(count_pixels(image, colour_is_not({255, 255, 255})), 30000); // the face is there
}

TEST_F(MeshviewChartsTest, ClearRemovesWhatWasDrawnAndItsFrame)
{
  const Image image = draw_script("line red -100 0 0 100 0 0\nclear\nline blue -1 0 0 1 0 0\n");
  EXPECT_EQ(count_pixels(image, colour_is({255, 0, 0}, 100)), 0);
  EXPECT_NEAR(find_pixels(image, colour_is({0, 0, 255})).width(), 184, 3);
}

// The zoom's sphere around the box has a radius of 0.55 diagonals of a cube.
TEST_F(MeshviewChartsTest, ZoomShowsTheBox)
{
  const Image image = draw_script("line red -1 0 0 1 0 0\nzoom -0.5 -0.5 -0.5 0.5 0.5 0.5\n");
  EXPECT_EQ(find_pixels(image, colour_is({255, 0, 0})).width(), 200); // 1.9 units of the 2
}

TEST_F(MeshviewChartsTest, FaultyLinesAreNamedAndTheOthersDrawn)
{
  const std::string script = write_script("line red 0 0 0 1 1 1\n"
                                          "blob red 0 0 0\n"
                                          "point mauve 0 0 0\n"
                                          "point 19 0 0 0\n"
                                          "point red 0 zero 0\n"
                                          "point red 0 nan 1e19\n"
                                          "line red 0 0 0 1 1\n"
                                          "line red 0 0 0\n"
                                          "point red 0 0 0 7\n"
                                          "label red 0 0 0\n"
                                          "label red 0 0 0 M\xc3\xbcnster\n"
                                          "label red 0 0 0 \xff\n"
                                          "label red 0 0 0 M\xc3\n"
                                          "label red 0 0 0 \xbcnster\n");
  const Outcome outcome = run_small({"--debug-script", script});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, script + "\n  2 drawing calls\n");
  const char* const expected[] = {
      ": line 2: 'blob' is not a drawing call\n",
      ": line 3: 'mauve' is not a colour: a name, or an id from 0 to 18; the call is: point COLOUR X Y Z\n",
      ": line 4: '19' is not a colour",
      ": line 5: 'zero' is not a coordinate; the call is: point COLOUR X Y Z\n",
      ": line 6: 'nan' is not a coordinate",
      ": line 7: the last point is not whole; the call is: line COLOUR X Y Z X Y Z\n",
      ": line 8: there are too few points; the call is",
      ": line 9: '7' is too much; the call is",
      ": line 10: its text must have 1 to 200 bytes; the call is: label COLOUR X Y Z TEXT\n",
      ": line 12: its text is not UTF-8; the call is",
      ": 2 more lines are faulty\n"}; // those of labels
  for (const char* message : expected) {
    EXPECT_NE(outcome.err.find("meshview: " + script + message), std::string::npos) << message << "\n"
                                                                                    << outcome.err;
  }
  EXPECT_EQ(count_lines(outcome.err), 11U);
  EXPECT_TRUE(fs::exists(mPicture));
}

TEST_F(MeshviewChartsTest, OnlyTheFirstOfManyFaultyLinesAreNamed)
{
  std::string text;
  for (int i = 0; i < 500; ++i) {
    text += "\x01\x02 binary " + std::string(1000, 'x') + "\n";
  }
  const Outcome outcome = run_small({"--debug-script", write_script(text), write_cube()});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(count_lines(outcome.err), 11U);
  EXPECT_NE(outcome.err.find(": 490 more lines are faulty\n"), std::string::npos);
  EXPECT_LT(outcome.err.size(), 4000U);
}

TEST_F(MeshviewChartsTest, AScriptThatCannotBeReadOrDrawsNothingIsReported)
{
  const std::string absent = in_folder("absent.draw");
  const std::string empty = write_script("# nothing\n", "empty.draw");
  const std::string cleared = write_script("point red 0 0 0\nclear\n", "cleared.draw");
  const std::pair<std::string, std::string> cases[] = {{absent, "cannot be read"},
                                                       {mFolder.path(), "is a directory"},
                                                       {"/dev/zero", "is larger than 64 MiB"},
                                                       {empty, "draws nothing"},
                                                       {cleared, "draws nothing"}};
  for (const auto& [script, reason] : cases) {
    const Outcome outcome = run_small({"--debug-script", script});
    EXPECT_EQ(outcome.status, 2) << script;
    EXPECT_EQ(outcome.err, "meshview: " + script + ": " + reason + "\n");
    EXPECT_FALSE(fs::exists(mPicture));
  }
  // Beside a mesh an empty script is none, and one that cannot be read is a fault.
  EXPECT_EQ(run_small({"--debug-script", empty, write_cube()}).status, 0);
  EXPECT_EQ(run_small({"--debug-script", absent, write_cube()}).status, 1);
}

TEST_F(MeshviewChartsTest, ADrawingStaysWhenItsMeshFails)
{
  const Outcome outcome =
      run_small({in_folder("absent.vtu"), "--quality", "--debug-script", write_script("point red 0 0 0\n")});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(count_lines(outcome.err), 1U);
  EXPECT_TRUE(fs::exists(mPicture));
}

TEST_F(MeshviewChartsTest, ADrawingTurnsLikeAMesh)
{
  const Outcome outcome = run_small({"--debug-script", write_script("box red 0 0 0 1 1 1\n"), "--spin", "2"});
  EXPECT_EQ(outcome.status, 0) << ::testing::PrintToString(outcome);
  EXPECT_TRUE(fs::exists(in_folder("picture_0002.png")));
}

// --- Quality ---------------------------------------------------------------------------------------------

/// Three bricks of which two are cubes.
std::string write_bricks(const std::string& path)
{
  return write_with<vtkXMLUnstructuredGridWriter>(path, hexahedra({0.0, 1.0, 2.0, 2.5}).Get());
}

bool is_slate(Rgb pixel)
{
  return channel_difference(pixel, {36, 41, 48}) <= 1;
}

TEST_F(MeshviewChartsTest, QualityIsColoursBesideAHistogram)
{
  const Outcome outcome =
      run({write_bricks(in_folder("bricks.vtu")), "--quality", "--edges", "off", "--title",
           "HHHHHHHHHHHHHHHH", "--background", "9", "--size", "500x300", "--image", mPicture});
  EXPECT_EQ(outcome.status, 0) << ::testing::PrintToString(outcome);
  EXPECT_NE(outcome.out.find("colours: element shape from 0 (blue) to 1 (red)\nquality: shape (mean ratio) "
                             "of 3 elements from 0.83"),
            std::string::npos)
      << outcome.out;
  EXPECT_NE(outcome.out.find(" to 1\n"), std::string::npos) << outcome.out;
  const Image image = read_png(mPicture);
  const Image mesh = crop(image, 0, 0, 249, 299);
  const Image chart = crop(image, 250, 0, 499, 299);
  EXPECT_EQ(count_pixels(mesh, is_slate), 0);
  EXPECT_GT(count_pixels(chart, is_slate), 30000);
  const auto is_best = [](Rgb pixel) { return pixel.r > 90 && pixel.b < pixel.r / 2 && hue(pixel) < 12.0; };
  const auto is_lower = [](Rgb pixel) {
    return pixel.r > 90 && pixel.b < pixel.r / 2 && hue(pixel) > 20.0 && hue(pixel) < 60.0;
  };
  // Two thirds of the elements are cubes, one third has a quality of 0.84.
  const PixelRegion best = find_pixels(chart, is_best);
  const PixelRegion lower = find_pixels(chart, is_lower);
  EXPECT_NEAR(best.height(), 0.7125 * 300 * 2 / 3, 3.0);
  EXPECT_NEAR(lower.height(), 0.7125 * 300 / 3, 3.0);
  EXPECT_NEAR(best.centre_x, 250 * (0.1 + 0.8 * 24.5 / 25), 1.5); // the last of 25 bins
  EXPECT_NEAR(lower.centre_x, 250 * (0.1 + 0.8 * 20.5 / 25), 1.5);
  EXPECT_GT(count_pixels(mesh, is_best), count_pixels(mesh, is_lower));
  EXPECT_GT(count_pixels(mesh, is_lower), 500);
  // The text has the colour of the middle: the two lines at the top.
  const auto is_text = [](Rgb pixel) { return pixel.g > 120 && pixel.g > pixel.r + 60; };
  EXPECT_GT(count_pixels(crop(chart, 15, 260, 249, 299), is_text), 30);
  // The title is centred above the mesh.
  const PixelRegion title = find_pixels(crop(image, 0, 280, 249, 299), colour_is({0, 0, 0}, 60));
  EXPECT_GT(title.width(), 60);
  EXPECT_NEAR((title.min_x + title.max_x) / 2.0, 125.0, 3.0);
}

TEST_F(MeshviewChartsTest, AHighWindowHasTheHistogramBelow)
{
  const Image image = draw({write_bricks(in_folder("bricks.vtu")), "--quality", "--size", "200x500"});
  EXPECT_GT(count_pixels(crop(image, 0, 0, 199, 249), is_slate), 20000);
  EXPECT_EQ(count_pixels(crop(image, 0, 250, 199, 499), is_slate), 0);
}

TEST_F(MeshviewChartsTest, TheMeshIsFramedInItsPartOfTheWindow)
{
  const std::string bricks = write_bricks(in_folder("bricks.vtu"));
  for (const char* projection : {"--parallel", "--triad"}) {
    const Image image =
        draw({bricks, "--quality", "--edges", "off", "--view=-y", projection, "--size", "500x300"});
    const auto is_mesh = [](Rgb pixel) { return !is_white(pixel); };
    const PixelRegion mesh = find_pixels(crop(image, 0, 50, 249, 299), is_mesh);
    EXPECT_GE(mesh.min_x, 8) << projection;
    EXPECT_LE(mesh.max_x, 241) << projection;
    EXPECT_GT(mesh.width(), 205) << projection;
  }
}

TEST_F(MeshviewChartsTest, QualityNeedsElementsThatHaveIt)
{
  const std::string lines =
      write_with<vtkXMLPolyDataWriter>(in_folder("lines.vtp"), polyline({0, 0, 0, 1, 0, 0}).Get());
  const Outcome outcome = run_small({lines, "--quality"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "meshview: no cell is of a type that has a quality\n");
  EXPECT_FALSE(fs::exists(mPicture));
}

// --- Windows ---------------------------------------------------------------------------------------------

class MeshviewChartsWindowTest : public MeshviewWindowTest
{
protected:
  /// Opens a window, presses these keys until the last one ends the program.
  void expect_works(const std::vector<std::string>& arguments, const std::string& title) const
  {
    Process process(arguments);
    const Window window = wait_for_window("meshview - " + title);
    ASSERT_NE(window, 0U);
    std::atomic<bool> has_ended = false;
    std::thread typist([&] {
      while (!has_ended) {
        for (const int key : {XK_Left, XK_p, XK_l, XK_i, XK_b, XK_f, XK_w, XK_K, XK_q}) {
          press_key(window, static_cast<KeySym>(key));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
      }
    });
    const Outcome outcome = process.wait();
    has_ended = true;
    typist.join();
    EXPECT_EQ(outcome.status, 0) << ::testing::PrintToString(outcome);
    EXPECT_EQ(outcome.err, "");
  }
};

TEST_F(MeshviewChartsWindowTest, TheColourTableHasAWindow)
{
  expect_works({"--color-table", "--size", "160x120"}, "colours");
}

TEST_F(MeshviewChartsWindowTest, ADrawingHasAWindow)
{
  const std::string script = write_text(in_folder("a.draw"), "box red 0 0 0 1 1 1\n");
  expect_works({"--debug-script", script, "--size", "160x120"}, script);
}

TEST_F(MeshviewChartsWindowTest, QualityHasOneWindowForBothViews)
{
  const std::string cube = write_cube();
  expect_works({cube, "--quality", "--size", "160x120", "--labels", "blocks"}, cube);
}

} // namespace
