// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// The mesh viewer as its users meet it: a program with arguments, an exit status, two streams and pictures.
#include "MeshviewSupport.h"

#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkExodusIIWriter.h>
#include <vtkInformation.h>
#include <vtkIntArray.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkOBJWriter.h>
#include <vtkPLYWriter.h>
#include <vtkPointData.h>
#include <vtkPolyDataWriter.h>
#include <vtkSTLWriter.h>
#include <vtkUnstructuredGridWriter.h>
#include <vtkXMLMultiBlockDataWriter.h>
#include <vtkXMLPolyDataWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <ostream>
#include <utility>

namespace fs = std::filesystem;

namespace {

using namespace morrow_test;

/// A .vtk file of one cell with these points of three.
std::string legacy_polygon(const std::string& cells)
{
  return "# vtk DataFile Version 3.0\nt\nASCII\nDATASET POLYDATA\nPOINTS 3 float\n0 0 0 1 0 0 0 1 0\n" +
         cells;
}

/// A binary .stl file of so many triangles side by side, which takes a while to read.
std::string write_large_stl(const std::string& path, std::uint32_t triangles)
{
  std::string bytes(84 + 50 * static_cast<std::size_t>(triangles), '\0');
  std::memcpy(&bytes[80], &triangles, 4);
  for (std::uint32_t i = 0; i < triangles; ++i) {
    const auto x = static_cast<float>(i % 1000);
    const auto y = static_cast<float>(i / 1000);
    const float facet[12] = {0, 0, 1, x, y, 0, x + 1, y, 0, x, y + 1, 0};
    std::memcpy(&bytes[84 + 50 * static_cast<std::size_t>(i)], facet, sizeof facet);
  }
  return write_text(path, bytes);
}

/// Much darker than a face: an edge.
std::function<bool(Rgb)> darker_than(Rgb face)
{
  return [face](Rgb pixel) { return 4 * pixel.g < 3 * face.g; };
}

bool is_reddish(Rgb pixel)
{
  return pixel.r > pixel.g + 40 && pixel.r > pixel.b + 40;
}

bool is_bluish(Rgb pixel)
{
  return pixel.b > pixel.r + 40 && pixel.b > pixel.g + 40;
}

// --- Command line ----------------------------------------------------------------------------------------

TEST_F(MeshviewTest, HelpNamesEveryOptionAndExitStatus)
{
  const Outcome outcome = run({"--help"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  for (const char* word : {"--image", "--size", "--background", "--view", "--labels", "--edges", "--color-by",
                           "--no-guard", "Exit status:", "130  interrupted", "9 white", ".exo", "pixels"}) {
    EXPECT_NE(outcome.out.find(word), std::string::npos) << word;
  }
}

TEST_F(MeshviewTest, VersionIsThatOfTheVtkThatIsLoaded)
{
  const Outcome outcome = run({"--version"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out.rfind("meshview, VTK 9.", 0), 0U) << outcome.out;
}

TEST_F(MeshviewTest, FaultyCommandLinesHaveStatus2AndDrawNothing)
{
  const std::string cube = write_cube();
  const std::vector<std::vector<std::string>> faulty = {{},
                                                        {cube, "--bogus"},
                                                        {cube, "--size", "0x10"},
                                                        {cube, "--size", "16385x10"},
                                                        {cube, "--size", "10"},
                                                        {cube, "--size", "10x"},
                                                        {cube, "--size", "10x10x10"},
                                                        {cube, "--size", "10 x10"},
                                                        {cube, "--background", "99"},
                                                        {cube, "--background", "-1"},
                                                        {cube, "--background", "1,2,3"},
                                                        {cube, "--view", "up"},
                                                        {cube, "--labels", "names"},
                                                        {cube, "--edges", "maybe"}};
  for (std::vector<std::string> arguments : faulty) {
    if (!arguments.empty()) {
      arguments.insert(arguments.end(), {"--image", mPicture});
    }
    expect_faulty(arguments);
  }
}

// --- Pictures --------------------------------------------------------------------------------------------

TEST_F(MeshviewTest, ThePictureHasTheSizeThatIsAskedFor)
{
  const std::string cube = write_cube();
  EXPECT_EQ(run({cube, "--image", mPicture, "--size", "321x123"}).status, 0);
  const Image picture = read_png(mPicture);
  EXPECT_EQ(picture.width(), 321);
  EXPECT_EQ(picture.height(), 123);
  EXPECT_EQ(run({cube, "--image", mPicture, "--size", "1x1"}).status, 0);
  EXPECT_EQ(read_png(mPicture).width(), 1);
}

TEST_F(MeshviewTest, BackgroundIdsAreThoseOfTheColourTableBottomFirst)
{
  const std::string cube = write_cube();
  ASSERT_EQ(run({cube, "--image", mPicture, "--size", "60x200", "--background", "3"}).status, 0);
  const Image red = read_png(mPicture);
  EXPECT_EQ(red.at(0, 0), (Rgb{255, 0, 0}));
  EXPECT_EQ(red.at(59, 199), (Rgb{255, 0, 0}));
  ASSERT_EQ(run({cube, "--image", mPicture, "--size", "60x200", "--background", "9,0"}).status, 0);
  const Image gradient = read_png(mPicture);
  EXPECT_LE(channel_difference(gradient.at(0, 0), {255, 255, 255}), 2);
  EXPECT_LE(channel_difference(gradient.at(0, 199), {0, 0, 0}), 2);
}

/// Framed: the mesh touches no side, is in the middle, and spans most of the picture in one direction.
void expect_framed(const Image& picture)
{
  const PixelRegion mesh = find_pixels(picture, [](Rgb pixel) { return !is_white(pixel); });
  const int width = picture.width();
  const int height = picture.height();
  EXPECT_GT(mesh.min_x, 0);
  EXPECT_GT(mesh.min_y, 0);
  EXPECT_LT(mesh.max_x, width - 1);
  EXPECT_LT(mesh.max_y, height - 1);
  EXPECT_TRUE(mesh.width() > 0.85 * width || mesh.height() > 0.85 * height)
      << mesh.width() << " x " << mesh.height();
  EXPECT_NEAR(mesh.min_x + mesh.max_x, width, 0.04 * width);
  EXPECT_NEAR(mesh.min_y + mesh.max_y, height, 0.04 * height);
}

TEST_F(MeshviewTest, EveryViewFramesTheMesh)
{
  for (const char* view : {"iso", "+x", "-x", "+y", "-y", "+z", "-z"}) {
    SCOPED_TRACE(view);
    expect_framed(draw({sample(), "--view", view}));
  }
}

TEST_F(MeshviewTest, WideAndTallPicturesAreFramedToo)
{
  for (const char* size : {"400x100", "100x400"}) {
    SCOPED_TRACE(size);
    ASSERT_EQ(run({sample(), "--image", mPicture, "--size", size, "--background", "9"}).status, 0);
    expect_framed(read_png(mPicture));
  }
}

// The side that a view shows has its number as its colour: hues go evenly from blue (240, a little less) for
// 0 to red for 5.
TEST_F(MeshviewTest, EachViewIsFromTheSideThatItNames)
{
  const std::string cube = write_cube();
  const std::vector<std::string> views = {"+x", "-x", "+y", "-y", "+z", "-z"};
  for (std::size_t side = 0; side < views.size(); ++side) {
    const Image picture = draw({cube, "--view", views[side], "--color-by", "side", "--edges", "off"});
    EXPECT_NEAR(hue(picture.at(100, 100)), 237.6 * (1.0 - static_cast<double>(side) / 5.0), 3.0)
        << views[side];
  }
}

TEST_F(MeshviewTest, UpIsZFromTheSides)
{
  const std::string cube = write_cube();
  for (const char* view : {"iso", "+x", "-x", "+y", "-y"}) {
    const Image picture = draw({cube, "--view", view, "--color-by", "corner", "--edges", "off"});
    EXPECT_LT(hue(picture.at(100, 175)), 60.0) << view; // red, high
    EXPECT_GT(hue(picture.at(100, 25)), 180.0) << view; // blue, low
  }
}

// Two hexahedra side by side: seen from -y their border is a vertical line in the middle of the picture.
TEST_F(MeshviewTest, EdgesAreThoseOfTheCellsAndCanBeSwitchedOff)
{
  const std::string pair =
      write_with<vtkXMLUnstructuredGridWriter>(in_folder("pair.vtu"), hexahedra({0, 1, 2}).Get());
  const auto count_dark = [](const Image& picture, int x0, int x1) {
    return count_pixels(crop(picture, x0, 60, x1, 140), darker_than(picture.at(50, 100)));
  };
  const Image with = draw({pair, "--view", "-y"});
  EXPECT_GE(count_dark(with, 97, 102), 80);
  EXPECT_EQ(count_dark(with, 20, 90), 0) << "an edge that is no edge of a cell";
  const Image without = draw({pair, "--view", "-y", "--edges", "off"});
  EXPECT_EQ(count_dark(without, 97, 102), 0);
}

// A face of a quadratic hexahedron is drawn as several triangles. Its edges are still four lines.
TEST_F(MeshviewTest, CurvedCellsHaveTheEdgesOfTheMesh)
{
  vtkNew<vtkUnstructuredGrid> grid;
  vtkNew<vtkPoints> points;
  const double corners[8][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
  const int edges[12][2] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6},
                            {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
  std::vector<vtkIdType> ids(20);
  for (int i = 0; i < 20; ++i) {
    ids[static_cast<std::size_t>(i)] = i;
    const double* a = corners[i < 8 ? i : edges[i - 8][0]];
    const double* b = corners[i < 8 ? i : edges[i - 8][1]];
    points->InsertNextPoint((a[0] + b[0]) / 2, (a[1] + b[1]) / 2, (a[2] + b[2]) / 2);
  }
  grid->SetPoints(points);
  grid->InsertNextCell(VTK_QUADRATIC_HEXAHEDRON, 20, ids.data());
  const std::string path = write_with<vtkXMLUnstructuredGridWriter>(in_folder("curved.vtu"), grid.Get());
  const Image picture = draw({path, "--view", "-y"});
  const PixelRegion face = find_pixels(picture, [](Rgb pixel) { return !is_white(pixel); });
  const auto is_edge = darker_than(picture.at(100, 100));
  const Image inside = crop(picture, face.min_x + 5, face.min_y + 5, face.max_x - 5, face.max_y - 5);
  EXPECT_EQ(count_pixels(inside, is_edge), 0);
  const Image left = crop(picture, face.min_x, face.min_y, face.min_x + 2, face.max_y);
  EXPECT_GE(count_pixels(left, is_edge), face.height() * 9 / 10) << "a line with gaps";
}

TEST_F(MeshviewTest, BlocksHaveColoursOfTheirOwn)
{
  const Image picture = draw({sample(), "--edges", "off"});
  // Base plate blue, wall sand, ribs green: the first colours of the palette.
  const auto count_hues = [&picture](double low, double high) {
    return count_pixels(picture, [low, high](Rgb pixel) {
      return channel_difference(pixel, {pixel.g, pixel.g, pixel.g}) > 20 && hue(pixel) > low &&
             hue(pixel) < high;
    });
  };
  EXPECT_GT(count_hues(200, 220), 1000);
  EXPECT_GT(count_hues(30, 45), 1000);
  EXPECT_GT(count_hues(110, 125), 500);
}

TEST_F(MeshviewTest, LabelsAreDrawnWhereTheySay)
{
  const std::string cube = write_cube();
  const Image plain = draw({cube, "--view", "+z"});
  const auto changed = [&](const char* what) {
    const Image labelled = draw({cube, "--view", "+z", "--labels", what});
    return find_pixels(difference_picture(plain, labelled), colour_is_not({0, 0, 0}, 40));
  };
  const PixelRegion cells = changed("cells"); // one number in the middle of the one face that is seen
  EXPECT_GT(cells.count, 10);
  EXPECT_NEAR(cells.centre_x, 100.0, 6.0);
  EXPECT_NEAR(cells.centre_y, 100.0, 6.0);
  const PixelRegion points = changed("points"); // at the four corners
  EXPECT_GT(points.count, 40);
  EXPECT_GT(points.width(), 150);
  EXPECT_GT(points.height(), 150);
  const PixelRegion blocks = changed("blocks"); // the file's name, on a light plate
  EXPECT_GT(blocks.count, 300);
  EXPECT_NEAR(blocks.centre_x, 100.0, 15.0);
  EXPECT_GT(blocks.width(), 2 * blocks.height());
}

// A block in a box: its own middle is hidden, but its label is where it looks out of the box.
TEST_F(MeshviewTest, NamesOfBlocksAreOnVisibleSpots)
{
  vtkNew<vtkMultiBlockDataSet> blocks;
  blocks->SetBlock(0, hexahedra({0, 1}));
  blocks->SetBlock(1, hexahedra({1, 8}));
  blocks->GetMetaData(0U)->Set(vtkCompositeDataSet::NAME(), "III");
  blocks->GetMetaData(1U)->Set(vtkCompositeDataSet::NAME(), "OOO");
  const std::string path = write_with<vtkXMLMultiBlockDataWriter>(in_folder("two.vtm"), blocks.Get());
  const Image plain = draw({path, "--view", "-y"});
  const Image labelled = draw({path, "--view", "-y", "--labels", "blocks"});
  const Image difference = difference_picture(plain, labelled);
  EXPECT_GT(count_pixels(crop(difference, 0, 0, 40, 199), colour_is_not({0, 0, 0}, 40)), 100);
  EXPECT_GT(count_pixels(crop(difference, 60, 0, 199, 199), colour_is_not({0, 0, 0}, 40)), 100);
}

// --- Colours by values -----------------------------------------------------------------------------------

TEST_F(MeshviewTest, ColorByGoesFromBlueToRedOverAllFiles)
{
  const auto write = [this](const std::string& name, double x, double value) {
    vtkSmartPointer<vtkPolyData> square = quad(x, 0, x + 1, 1);
    vtkNew<vtkDoubleArray> values;
    values->SetName("load");
    values->InsertNextValue(value);
    square->GetCellData()->AddArray(values);
    return write_with<vtkXMLPolyDataWriter>(in_folder(name), square.Get());
  };
  const std::string left = write("left.vtp", 0, -2.5);
  const std::string right = write("right.vtp", 1, 7.5);
  const Image picture = draw({left, right, "--view", "+z", "--color-by", "load"});
  EXPECT_PRED1(is_bluish, picture.at(50, 100));
  EXPECT_PRED1(is_reddish, picture.at(150, 100));
  const Outcome outcome = run({left, right, "--color-by", "load", "--image", mPicture});
  EXPECT_NE(outcome.out.find("load from -2.5 (blue) to 7.5 (red)"), std::string::npos) << outcome.out;
}

TEST_F(MeshviewTest, VectorsAreColouredByTheirLength)
{
  vtkSmartPointer<vtkPolyData> square = quad(0, 0, 1, 1);
  vtkNew<vtkDoubleArray> vectors;
  vectors->SetName("flow");
  vectors->SetNumberOfComponents(3);
  for (int i = 0; i < 4; ++i) {
    vectors->InsertNextTuple3(0, i < 2 ? -3 : 3, i < 2 ? 4 : 0); // lengths 5 and 3
  }
  square->GetPointData()->AddArray(vectors);
  const std::string path = write_with<vtkXMLPolyDataWriter>(in_folder("flow.vtp"), square.Get());
  const Outcome outcome = run({path, "--color-by", "flow", "--image", mPicture});
  EXPECT_NE(outcome.out.find("flow from 3 (blue) to 5 (red)"), std::string::npos) << outcome.out;
}

TEST_F(MeshviewTest, AnUnknownArrayIsRefusedWithTheNamesThatThereAre)
{
  const std::string cube = write_cube();
  const Outcome outcome = run({cube, "--color-by", "pressure", "--image", mPicture});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "meshview: no array 'pressure' to colour by; there are corner, side\n");
  EXPECT_FALSE(fs::exists(mPicture));
}

TEST_F(MeshviewTest, PartsWithoutTheArrayAreGrey)
{
  const std::string cube = write_cube();
  const std::string plain =
      write_with<vtkXMLPolyDataWriter>(in_folder("plain.vtp"), quad(5, -1, 7, 1, 1).Get());
  const Image picture = draw({cube, plain, "--view", "+z", "--color-by", "side", "--edges", "off"});
  const Rgb pixel = picture.at(170, 100);
  EXPECT_FALSE(is_white(pixel));
  EXPECT_LE(channel_difference(pixel, {pixel.g, pixel.g, pixel.g}), 12);
}

// The points 2 and 3 belong to no cell: they are neither counted nor framed.
TEST_F(MeshviewTest, PointsThatNoCellUsesAreLeftOut)
{
  const std::string path =
      write_text(in_folder("loose.obj"), "v 0 0 0\nv 1 0 0\nv 90 90 0\nv 0 -90 0\nv 0 1 0\nf 1 2 5\n");
  const Image picture = draw({path, "--view", "+z"});
  expect_framed(picture);
  EXPECT_NE(run({path, "--image", mPicture}).out.find("3 points  1 cells: triangle 1"), std::string::npos);
}

// --- Legend ----------------------------------------------------------------------------------------------

TEST_F(MeshviewTest, TheLegendOfTheSampleMeshIsExact)
{
  const Outcome outcome = run({sample(), "--image", mPicture});
  EXPECT_EQ(outcome.out, sample() + "\n"
                                    "  base plate  3793 points  14273 cells: tetrahedron 14273\n"
                                    "  wall        1278 points   4131 cells: tetrahedron 4131\n"
                                    "  ribs         606 points   1636 cells: tetrahedron 1636\n"
                                    "  arrays: BlockId, MeanRatio\n"
                                    "total         5677 points  20040 cells: tetrahedron 20040\n");
}

TEST_F(MeshviewTest, SeveralFilesAndTypesOfCellsAreCounted)
{
  vtkSmartPointer<vtkPolyData> mixed = quad(0, 0, 1, 1);
  const vtkIdType triangle[3] = {0, 1, 2};
  mixed->GetPolys()->InsertNextCell(3, triangle);
  const std::string surface = write_with<vtkXMLPolyDataWriter>(in_folder("mixed.vtp"), mixed.Get());
  const std::string solid =
      write_with<vtkXMLUnstructuredGridWriter>(in_folder("solid.vtu"), hexahedra({0, 1}).Get());
  const Outcome outcome = run({surface, solid, "--image", mPicture});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, surface + "\n  mixed   4 points  2 cells: triangle 1, quadrilateral 1\n" + solid +
                             "\n  solid   8 points  1 cells: hexahedron 1\n"
                             "total    12 points  3 cells: triangle 1, quadrilateral 1, hexahedron 1\n");
}

TEST_F(MeshviewTest, BlocksOfAMultiblockFileKeepTheirNames)
{
  vtkNew<vtkMultiBlockDataSet> blocks;
  blocks->SetBlock(0, hexahedra({0, 1}));
  blocks->SetBlock(2, one_triangle()); // 1 stays empty
  blocks->GetMetaData(0U)->Set(vtkCompositeDataSet::NAME(), "housing");
  const std::string path = write_with<vtkXMLMultiBlockDataWriter>(in_folder("set.vtm"), blocks.Get());
  const Outcome outcome = run({path, "--image", mPicture});
  EXPECT_EQ(outcome.status, 0) << ::testing::PrintToString(outcome);
  EXPECT_NE(outcome.out.find("  housing   8 points  1 cells: hexahedron 1\n"), std::string::npos)
      << outcome.out;
  EXPECT_NE(outcome.out.find("  block 2   3 points  1 cells: triangle 1\n"), std::string::npos)
      << outcome.out;
}

TEST_F(MeshviewTest, AnIntegerBlockArraySplitsAGrid)
{
  vtkSmartPointer<vtkUnstructuredGrid> grid = hexahedra({0, 1, 2, 3});
  vtkNew<vtkIntArray> ids;
  ids->SetName("material_id"); // spelling does not matter
  for (const int id : {7, 3, 7}) {
    ids->InsertNextValue(id);
  }
  grid->GetCellData()->AddArray(ids);
  const std::string path = write_with<vtkXMLUnstructuredGridWriter>(in_folder("three.vtu"), grid.Get());
  const Outcome outcome = run({path, "--image", mPicture});
  EXPECT_NE(outcome.out.find("  block 3   8 points  1 cells"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("  block 7  16 points  2 cells"), std::string::npos) << outcome.out;
}

// --- Formats ---------------------------------------------------------------------------------------------

struct Format
{
  const char* name; ///< of the file
  std::string (*write)(const std::string& path);
  const char* total;   ///< the last line of the legend
  bool cuts_are_found; ///< does any cut in the first nine tenths damage the file?
};

void PrintTo(const Format& format, std::ostream* out)
{
  *out << format.name;
}

template<class Writer>
std::string write_grid(const std::string& path)
{
  return write_with<Writer>(path, hexahedra({0, 1, 2}).Get());
}

template<class Writer>
std::string write_surface(const std::string& path)
{
  return write_with<Writer>(path, sphere(1.0, 8).Get());
}

template<class Writer>
std::string write_ascii_surface(const std::string& path)
{
  vtkNew<Writer> writer;
  writer->SetFileName(path.c_str());
  writer->SetInputData(sphere(1.0, 8));
  writer->SetFileTypeToASCII();
  writer->Write();
  return path;
}

std::string write_multiblock(const std::string& path)
{
  vtkNew<vtkMultiBlockDataSet> blocks;
  blocks->SetBlock(0, hexahedra({0, 1, 2}));
  return write_with<vtkXMLMultiBlockDataWriter>(path, blocks.Get());
}

constexpr const char* kTwoHexahedra = "total  12 points  2 cells: hexahedron 2\n";
constexpr const char* kSphere = "total     50 points  96 cells: triangle 96\n";

const Format kFormats[] = {
    {"grid.vtu", write_grid<vtkXMLUnstructuredGridWriter>, kTwoHexahedra, true},
    {"surface.vtp", write_surface<vtkXMLPolyDataWriter>, kSphere, true},
    {"blocks.vtm", write_multiblock, kTwoHexahedra, true},
    {"legacy.vtk", write_grid<vtkUnstructuredGridWriter>, kTwoHexahedra, true},
    {"poly.vtk", write_surface<vtkPolyDataWriter>, kSphere, false},
    {"binary.stl", write_surface<vtkSTLWriter>, kSphere, true},
    {"text.stl", write_ascii_surface<vtkSTLWriter>, kSphere, true},
    {"binary.ply", write_surface<vtkPLYWriter>, kSphere, true},
    {"text.ply", write_ascii_surface<vtkPLYWriter>, kSphere, true},
    {"surface.obj", write_surface<vtkOBJWriter>, kSphere, false}, // text, and every line stands for itself
    {"grid.e", write_grid<vtkExodusIIWriter>, kTwoHexahedra, true},
    {"grid.exo", write_grid<vtkExodusIIWriter>, kTwoHexahedra, true},
    {"GRID.EX2", write_grid<vtkExodusIIWriter>, kTwoHexahedra, true}};

class MeshviewFormatTest : public MeshviewTest, public ::testing::WithParamInterface<Format>
{};

TEST_P(MeshviewFormatTest, IsReadAndDrawn)
{
  const std::string path = GetParam().write(in_folder(GetParam().name));
  const Outcome outcome = run({path, "--image", mPicture, "--size", "120x100", "--background", "9"});
  EXPECT_EQ(outcome.status, 0) << ::testing::PrintToString(outcome);
  EXPECT_EQ(outcome.err, "");
  const std::string counts = GetParam().total;
  const auto last_line = outcome.out.rfind("total");
  ASSERT_NE(last_line, std::string::npos);
  // The columns are as wide as the block's name, which the formats choose.
  std::string total = outcome.out.substr(last_line);
  total.erase(std::unique(total.begin(), total.end(), [](char a, char b) { return a == ' ' && b == ' '; }),
              total.end());
  std::string wanted = counts;
  wanted.erase(std::unique(wanted.begin(), wanted.end(), [](char a, char b) { return a == ' ' && b == ' '; }),
               wanted.end());
  EXPECT_EQ(total, wanted);
  expect_framed(read_png(mPicture));
}

// Wherever a file is cut, the program ends by itself, with at most one line; what it cannot show it refuses.
TEST_P(MeshviewFormatTest, CutShortAnywhereIsRefusedInOneLine)
{
  const std::string whole = read_text(GetParam().write(in_folder(GetParam().name)));
  const std::string path = in_folder(std::string("cut-") + GetParam().name);
  const std::size_t pieces = 10;
  for (std::size_t i = 0; i < pieces; ++i) {
    const std::size_t length = 1 + whole.size() * i / pieces;
    write_text(path, whole.substr(0, length));
    const Outcome outcome = run({path, "--image", mPicture, "--size", "50x50"});
    SCOPED_TRACE("cut to " + std::to_string(length) + " of " + std::to_string(whole.size()) + " bytes\n" +
                 ::testing::PrintToString(outcome));
    EXPECT_TRUE(outcome.status == 2 || (outcome.status == 0 && !GetParam().cuts_are_found));
    EXPECT_EQ(count_lines(outcome.err), outcome.status == 2 ? 1U : 0U);
    EXPECT_EQ(outcome.err.empty() ? 0U : outcome.err.find("meshview: " + path + ": "), 0U);
  }
}

INSTANTIATE_TEST_SUITE_P(All, MeshviewFormatTest, ::testing::ValuesIn(kFormats), [](const auto& test) {
  std::string name = test.param.name;
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
});

// --- Bad files -------------------------------------------------------------------------------------------

TEST_F(MeshviewTest, FilesThatAreNoFilesAreRefused)
{
  expect_refused(in_folder("missing.vtu"), "No such file");
  fs::create_directory(in_folder("folder.vtu"));
  expect_refused(in_folder("folder.vtu"), "is a directory");
  ASSERT_EQ(mkfifo(in_folder("pipe.stl").c_str(), 0600), 0);
  expect_refused(in_folder("pipe.stl"), "not a regular file"); // and nobody waits for a writer
  expect_refused(write_text(in_folder("empty.ply"), ""), "is empty");
  expect_refused(write_text(in_folder("mesh"), "x"), "no extension");
  expect_refused(write_text(in_folder("mesh.step"), "x"), "'.step'");
}

TEST_F(MeshviewTest, AFileThatMayNotBeReadIsRefused)
{
  const std::string path = write_cube();
  fs::permissions(path, fs::perms::none);
  if (geteuid() == 0) { // who may read everything
    EXPECT_EQ(run({path, "--image", mPicture}).status, 0);
  } else {
    expect_refused(path, "Permission denied");
  }
}

TEST_F(MeshviewTest, ContentOfAnotherFormatIsRefused)
{
  const std::string xml = read_text(write_cube("good.vtp"));
  expect_refused(write_text(in_folder("a.vtu"), xml), "not of the type UnstructuredGrid");
  expect_refused(write_text(in_folder("a.vtk"), xml), "not a VTK file");
  expect_refused(write_text(in_folder("a.ply"), xml), "not a PLY file");
  expect_refused(write_text(in_folder("a.exo"), xml), "not an Exodus file");
  expect_refused(write_text(in_folder("a.stl"), xml), "solid");
  expect_refused(write_text(in_folder("a.obj"), std::string("v\0 1", 4)), "not an OBJ file");
  expect_refused(write_text(in_folder("b.vtp"), "<VTKFile type=\"PolyData\"><PolyData></Wrong>"), "XML");
}

TEST_F(MeshviewTest, MeshesThatCannotBeDrawnAreRefused)
{
  expect_refused(write_text(in_folder("none.stl"), "solid x\nendsolid x\n"), "no cells");
  expect_refused(write_text(in_folder("points.obj"), "v 0 0 0\nv 1 0 0\n"), "no cells");
  expect_refused(write_text(in_folder("nan.stl"),
                            "solid x\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\n"
                            "vertex nan 0 0\nvertex 0 1 0\nendloop\nendfacet\nendsolid x\n"),
                 "not a finite number");
  expect_refused(write_text(in_folder("far.obj"), "v 0 0 0\nv 1e30 0 0\nv 0 1 0\nf 1 2 3\n"), "beyond 1e18");
  expect_refused(write_text(in_folder("id.vtk"), legacy_polygon("POLYGONS 1 4\n3 0 1 7\n")), "point 7");
  expect_refused(write_text(in_folder("negative.vtk"), legacy_polygon("POLYGONS 1 4\n3 0 1 -2\n")),
                 "point -2");
  expect_refused(write_text(in_folder("small.vtk"), legacy_polygon("POLYGONS 1 3\n2 0 1\n")), "2 points");
  expect_refused(write_text(in_folder("huge.vtk"),
                            "# vtk DataFile Version 3.0\nt\nASCII\nDATASET STRUCTURED_POINTS\n"
                            "DIMENSIONS 90000 90000 90000\nORIGIN 0 0 0\nSPACING 1 1 1\n"),
                 "too many cells");
}

TEST_F(MeshviewTest, CellsWithTheWrongNumberOfPointsAreRefused)
{
  const auto grid = [](int type, int points) {
    std::string text = "# vtk DataFile Version 3.0\nt\nASCII\nDATASET UNSTRUCTURED_GRID\nPOINTS 3 float\n"
                       "0 0 0 1 0 0 0 1 0\nCELLS 1 " +
                       std::to_string(points + 1) + "\n" + std::to_string(points);
    for (int i = 0; i < points; ++i) {
      text += " " + std::to_string(i % 3);
    }
    return text + "\nCELL_TYPES 1\n" + std::to_string(type) + "\n";
  };
  expect_refused(write_text(in_folder("a.vtk"), grid(VTK_HEXAHEDRON, 3)), "which cannot be");
  expect_refused(write_text(in_folder("b.vtk"), grid(VTK_QUADRATIC_TETRA, 4)), "which cannot be");
  expect_refused(write_text(in_folder("c.vtk"), grid(VTK_LAGRANGE_TRIANGLE, 5)), "which cannot be");
  expect_refused(write_text(in_folder("d.vtk"), grid(99, 3)), "type 99");
  EXPECT_EQ(run({write_text(in_folder("e.vtk"), grid(VTK_TRIANGLE, 3)), "--image", mPicture}).status, 0);
}

// The first promises a polygon of 99,999,999 points, the second a texture coordinate that is not there. VTK's
// readers follow both out of their memory.
TEST_F(MeshviewTest, AFileThatCrashesItsReaderIsRefusedAndTheOthersAreShown)
{
  const std::string polygon =
      write_text(in_folder("crash.vtk"), legacy_polygon("POLYGONS 1 4\n99999999 0 1 2\n"));
  expect_refused(polygon, "its reader crashes");
  const std::string texture =
      write_text(in_folder("crash.obj"), "v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nf 1/1 2/999999999 3/1\n");
  const std::string good = write_cube();
  const Outcome outcome = run({polygon, good, in_folder("missing.stl"), texture, "--image", mPicture});
  SCOPED_TRACE(::testing::PrintToString(outcome));
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(count_lines(outcome.err), 3U); // each of them once, however often reading has started again
  EXPECT_NE(outcome.err.find(polygon), std::string::npos);
  EXPECT_NE(outcome.err.find(texture), std::string::npos);
  EXPECT_NE(outcome.err.find("missing.stl: No such file"), std::string::npos);
  EXPECT_EQ(outcome.out.rfind(good, 0), 0U);
  EXPECT_TRUE(fs::exists(mPicture));
}

TEST_F(MeshviewTest, WithoutTheGuardTheSamePictureIsDrawn)
{
  const std::string cube = write_cube();
  const Image guarded = draw({cube});
  EXPECT_EQ(draw({cube, "--no-guard"}), guarded);
  const std::string crash =
      write_text(in_folder("crash.vtk"), legacy_polygon("POLYGONS 1 4\n99999999 0 1 2\n"));
  EXPECT_EQ(run({crash, "--no-guard", "--image", mPicture}).err.find("reader crashes"), std::string::npos);
  const Outcome outcome = run({in_folder("missing.stl"), cube, "--no-guard", "--image", mPicture});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(count_lines(outcome.err), 1U) << outcome.err;
}

TEST_F(MeshviewTest, WhenSomeFilesFailTheRestIsShownWithStatus1)
{
  const std::string good = write_cube();
  const std::string bad = write_text(in_folder("bad.ply"), "ply\n");
  const Outcome outcome = run({bad, good, "--image", mPicture});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(count_lines(outcome.err), 1U) << outcome.err;
  EXPECT_NE(outcome.out.find("total"), std::string::npos);
  EXPECT_TRUE(fs::exists(mPicture));
}

TEST_F(MeshviewTest, ABlockThatIsMissingIsReportedAndTheRestIsShownWithStatus1)
{
  const std::string path = in_folder("set.vtm");
  vtkNew<vtkMultiBlockDataSet> blocks;
  blocks->SetBlock(0, hexahedra({0, 1}));
  blocks->SetBlock(1, one_triangle());
  write_with<vtkXMLMultiBlockDataWriter>(path, blocks.Get());
  fs::remove(in_folder("set/set_1.vtp"));
  const Outcome outcome = run({path, "--image", mPicture});
  SCOPED_TRACE(::testing::PrintToString(outcome));
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(count_lines(outcome.err), 1U);
  EXPECT_NE(outcome.out.find("hexahedron 1"), std::string::npos);
  EXPECT_TRUE(fs::exists(mPicture));
}

TEST_F(MeshviewTest, ControlCharactersOfANameDoNotBreakTheLine)
{
  const Outcome outcome = run({"two\nlines\033[2J.vtu", "--image", mPicture});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "meshview: two?lines?[2J.vtu: No such file or directory\n");
}

// --- Where the picture goes ------------------------------------------------------------------------------

TEST_F(MeshviewTest, PicturesThatCannotBeWrittenAreRefusedInOneLine)
{
  const std::string cube = write_cube();
  fs::create_directory(in_folder("folder.png"));
  fs::create_symlink("/dev/full", in_folder("full.png"));
  const std::pair<std::string, std::string> cases[] = {{in_folder("none/a.png"), "no folder"},
                                                       {in_folder("folder.png"), "is a directory"},
                                                       {in_folder("a.jpg"), "ends in .png"},
                                                       {in_folder("full.png"), "No space left"}};
  for (const auto& [path, reason] : cases) {
    const Outcome outcome = run({cube, "--image", path});
    SCOPED_TRACE(::testing::PrintToString(outcome));
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(count_lines(outcome.err), 1U);
    EXPECT_EQ(outcome.err.find("meshview: " + path + ": "), 0U);
    EXPECT_NE(outcome.err.find(reason), std::string::npos);
  }
  EXPECT_TRUE(fs::is_symlink(in_folder("full.png"))) << "not ours to remove";
}

TEST_F(MeshviewTest, WithoutADisplayThereIsOneLineAndStatus2)
{
  const std::string cube = write_cube();
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{cube}, std::vector<std::string>{cube, "--image", mPicture}}) {
    const Outcome outcome = Process(arguments, false, true).wait();
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "meshview: no display: DISPLAY is not set\n");
  }
}

// --- Large files -----------------------------------------------------------------------------------------

TEST_F(MeshviewTest, AProgressBarIsShownOnATerminalOnly)
{
  const std::string large = write_large_stl(in_folder("large.stl"), 200'000);
  const std::vector<std::string> arguments = {large,   "--image", mPicture, "--size",
                                              "50x50", "--edges", "off"};
  const Outcome terminal = Process(arguments, true).wait();
  EXPECT_EQ(terminal.status, 0) << ::testing::PrintToString(terminal);
  EXPECT_NE(terminal.err.find("large.stl [------------------------------] 0 %"), std::string::npos)
      << terminal.err;
  EXPECT_NE(terminal.err.find("50 %"), std::string::npos) << terminal.err;
  const std::string wiped = "\r\033[K";
  ASSERT_GE(terminal.err.size(), wiped.size());
  EXPECT_EQ(terminal.err.substr(terminal.err.size() - wiped.size()), wiped);
  EXPECT_EQ(run(arguments).err, "");
}

TEST_F(MeshviewTest, SmallFilesHaveNoProgressBar)
{
  EXPECT_EQ(Process({write_cube(), "--image", mPicture}, true).wait().err, "");
}

// The bar says when reading has begun. 1,200,000 triangles take longer than a signal.
TEST_F(MeshviewTest, AnInterruptWhileReadingEndsTheProgramWithStatus130)
{
  const std::string large = write_large_stl(in_folder("large.stl"), 1'200'000);
  Process process({large, "--image", mPicture}, true);
  ASSERT_TRUE(process.wait_for_error_text("large.stl ["));
  const auto start = std::chrono::steady_clock::now();
  process.send(SIGINT);
  const Outcome outcome = process.wait();
  EXPECT_EQ(outcome.status, 130) << ::testing::PrintToString(outcome);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  EXPECT_EQ(outcome.out, "");
  const std::string last = "meshview: interrupted\r\n"; // a terminal's line end
  ASSERT_GE(outcome.err.size(), last.size());
  EXPECT_EQ(outcome.err.substr(outcome.err.size() - last.size()), last);
  EXPECT_EQ(count_lines(outcome.err), 1U);
  EXPECT_FALSE(fs::exists(mPicture));
}

// --- Real meshes -----------------------------------------------------------------------------------------

struct RealMesh
{
  const char* file;
  const char* total;
};

void PrintTo(const RealMesh& mesh, std::ostream* out)
{
  *out << mesh.file;
}

class MeshviewRealMeshTest : public MeshviewTest, public ::testing::WithParamInterface<RealMesh>
{};

TEST_P(MeshviewRealMeshTest, IsCountedAndDrawn)
{
  MORROW_REAL_MESH(path, GetParam().file);
  const Outcome outcome =
      run({path, "--image", mPicture, "--size", "320x240", "--background", "9", "--labels", "blocks"});
  EXPECT_EQ(outcome.status, 0) << ::testing::PrintToString(outcome);
  EXPECT_EQ(outcome.err, "");
  EXPECT_NE(outcome.out.find(GetParam().total), std::string::npos) << outcome.out;
  const Image picture = read_png(mPicture);
  EXPECT_GT(count_pixels(picture, [](Rgb pixel) { return !is_white(pixel); }), 320 * 240 / 10);
}

INSTANTIATE_TEST_SUITE_P(
    All, MeshviewRealMeshTest,
    ::testing::Values(RealMesh{"mug.e", "2476 cells: hexahedron 2476"},
                      RealMesh{"mesh_fs8.exo", "1344 cells: wedge 1344"},
                      RealMesh{"can.vtu", "4800 cells: hexahedron 4800"},
                      RealMesh{"hexa.vtk", "12167 points  10648 cells: hexahedron 10648"},
                      RealMesh{"cow.vtp", "3263 cells: triangle 734, polygon 10, quadrilateral 2519"},
                      RealMesh{"Vented_Rear_Case_With_Pi_Supports.vtp", "15446 cells: triangle 15446"},
                      RealMesh{"gears.stl", "19426 cells: triangle 19426"}),
    [](const auto& test) {
      std::string name = test.param.file;
      std::replace(name.begin(), name.end(), '.', '_');
      return name;
    });

} // namespace
