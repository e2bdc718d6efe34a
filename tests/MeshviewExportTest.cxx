// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// The files that the mesh viewer writes.
#include "MeshviewSupport.h"

#include <vtkBMPReader.h>
#include <vtkImageData.h>
#include <vtkImageReader2.h>
#include <vtkJPEGReader.h>
#include <vtkPNMReader.h>
#include <vtkTIFFReader.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

using namespace morrow_test;

Image read_with(vtkImageReader2& reader, const std::string& path)
{
  reader.SetFileName(path.c_str());
  reader.Update();
  vtkImageData* data = reader.GetOutput();
  const int* size = data->GetDimensions();
  Image image(size[0], size[1]);
  for (int y = 0; y < size[1]; ++y) {
    for (int x = 0; x < size[0]; ++x) {
      const auto* rgb = static_cast<unsigned char*>(data->GetScalarPointer(x, y, 0));
      image.set(x, y, {rgb[0], rgb[1], rgb[2]});
    }
  }
  return image;
}

template<class Reader>
Image read_with(const std::string& path)
{
  vtkNew<Reader> reader;
  return read_with(*reader, path);
}

/// VTK's reader gives the rows of files that begin at the top, as most do, upside down.
Image read_tiff(const std::string& path)
{
  const Image read = read_with<vtkTIFFReader>(path);
  Image image(read.width(), read.height());
  for (int y = 0; y < read.height(); ++y) {
    for (int x = 0; x < read.width(); ++x) {
      image.set(x, y, read.at(x, read.height() - 1 - y));
    }
  }
  return image;
}

std::size_t count_lines_with(const std::string& text, const std::string& start)
{
  std::size_t count = 0;
  for (auto at = text.find("\n" + start); at != std::string::npos; at = text.find("\n" + start, at + 1)) {
    ++count;
  }
  return count;
}

class MeshviewExportTest : public MeshviewTest
{
protected:
  /// Writes files of the cube, which must succeed.
  void save(const std::vector<std::string>& names, const std::vector<std::string>& more = {}) const
  {
    std::vector<std::string> arguments = {write_cube(), "--size", "120x90", "--color-by", "side"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    for (const std::string& name : names) {
      arguments.insert(arguments.end(), {"--save", in_folder(name)});
    }
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 0) << ::testing::PrintToString(outcome);
    EXPECT_EQ(outcome.err, "");
  }

  /// One line on standard error about the path, with the reason, and status 2.
  void expect_problem(const std::vector<std::string>& arguments, const std::string& path,
                      const std::string& reason) const
  {
    const Outcome outcome = run(arguments);
    SCOPED_TRACE(::testing::PrintToString(outcome));
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(count_lines(outcome.err), 1U);
    EXPECT_EQ(outcome.err.find("meshview: " + path + ": "), 0U);
    EXPECT_NE(outcome.err.find(reason), std::string::npos);
  }

  /// The hue in the middle of each picture of a turn of the cube, whose sides have the hues of their numbers;
  /// as number of the side.
  [[nodiscard]] std::vector<int> sides_shown(const std::string& stem, int count) const
  {
    std::vector<int> sides;
    for (int i = 1; i <= count; ++i) {
      const Image picture = read_png(in_folder(stem + "_000" + std::to_string(i) + ".png"));
      const double side = picture.empty() ? -1.0 : 5.0 * (1.0 - hue(picture.at(60, 45)) / 237.6);
      sides.push_back(static_cast<int>(side + 0.5));
    }
    return sides;
  }
};

// --- Pictures --------------------------------------------------------------------------------------------

TEST_F(MeshviewExportTest, EveryImageFormatHoldsTheSamePicture)
{
  save({"a.png", "a.bmp", "a.pnm", "b.ppm", "a.tif", "b.TIFF", "a.jpg", "b.jpeg", "a.ps"},
       {"--image", mPicture});
  const Image picture = read_png(mPicture);
  ASSERT_EQ(picture.width(), 120);
  EXPECT_EQ(read_png(in_folder("a.png")), picture);
  EXPECT_EQ(read_with<vtkBMPReader>(in_folder("a.bmp")), picture);
  EXPECT_EQ(read_with<vtkPNMReader>(in_folder("a.pnm")), picture);
  EXPECT_EQ(read_with<vtkPNMReader>(in_folder("b.ppm")), picture);
  EXPECT_EQ(read_tiff(in_folder("a.tif")), picture);
  EXPECT_EQ(read_tiff(in_folder("b.TIFF")), picture);
  EXPECT_GT(compare(read_with<vtkJPEGReader>(in_folder("a.jpg")), picture).psnr, 28.0);
  EXPECT_EQ(read_text(in_folder("a.jpg")), read_text(in_folder("b.jpeg")));
  EXPECT_EQ(read_text(in_folder("a.ps")).find("%!PS"), 0U);
}

// --- Scenes ----------------------------------------------------------------------------------------------

TEST_F(MeshviewExportTest, EverySceneFormatIsWritten)
{
  save({"a.wrl", "b.vrml", "a.iv", "a.oogl"});
  EXPECT_EQ(read_text(in_folder("a.wrl")).find("#VRML V2.0 utf8"), 0U);
  EXPECT_EQ(read_text(in_folder("b.vrml")).find("#VRML V2.0 utf8"), 0U);
  EXPECT_EQ(read_text(in_folder("a.iv")).find("#Inventor V2.0 ascii"), 0U);
  const std::string oogl = read_text(in_folder("a.oogl"));
  EXPECT_EQ(oogl.find("# Geomview OOGL file"), 0U);
  EXPECT_NE(oogl.find("OFF"), std::string::npos);
}

// The cube has eight corners and six sides; VTK makes two triangles of each. The colours are in a file of
// their own, which the scene names.
TEST_F(MeshviewExportTest, AnObjSceneHasItsMaterialsBesideIt)
{
  save({"scene.obj"}, {"--edges", "off"});
  const std::string scene = read_text(in_folder("scene.obj"));
  EXPECT_NE(scene.find("\nmtllib scene.mtl\n"), std::string::npos) << scene;
  EXPECT_GE(count_lines_with(scene, "v "), 8U);
  EXPECT_GE(count_lines_with(scene, "f "), 6U);
  EXPECT_GE(count_lines_with(read_text(in_folder("scene.mtl")), "newmtl "), 1U);
  EXPECT_FALSE(fs::exists(in_folder("scene.obj.obj")));
}

TEST_F(MeshviewExportTest, NamesMayHaveCapitalsAndDots)
{
  save({"A.PNG", "B.c.OBJ", "D.WRL"}, {"--edges", "off"});
  EXPECT_FALSE(read_png(in_folder("A.PNG")).empty());
  EXPECT_GE(count_lines_with(read_text(in_folder("B.c.OBJ")), "f "), 6U);
  EXPECT_NE(read_text(in_folder("B.c.OBJ")).find("mtllib B.c.mtl\n"), std::string::npos);
  EXPECT_TRUE(fs::exists(in_folder("B.c.mtl")));
  EXPECT_TRUE(fs::exists(in_folder("D.WRL")));
}

// What was written can be read: meshview reads .obj itself.
TEST_F(MeshviewExportTest, AnObjSceneCanBeReadAgain)
{
  save({"again.obj"}, {"--edges", "off"});
  const Outcome outcome = run({in_folder("again.obj"), "--image", mPicture});
  EXPECT_EQ(outcome.status, 0) << ::testing::PrintToString(outcome);
  EXPECT_GT(count_pixels(read_png(mPicture), [](Rgb pixel) { return pixel.b > pixel.r + 20; }), 10000);
}

// --- Turns -----------------------------------------------------------------------------------------------

// Seen from -y, with z up, the sides of the cube come in the order of the turn.
TEST_F(MeshviewExportTest, ASpinShowsAllSides)
{
  save({"turn.png"}, {"--spin", "4", "--view", "-y", "--edges", "off"});
  const std::vector<int> sides = sides_shown("turn", 4);
  const std::vector<int> one_way = {3, 0, 2, 1};
  const std::vector<int> other_way = {3, 1, 2, 0};
  EXPECT_TRUE(sides == one_way || sides == other_way) << ::testing::PrintToString(sides);
  EXPECT_FALSE(fs::exists(in_folder("turn.png")));
  EXPECT_FALSE(fs::exists(in_folder("turn_0005.png")));
}

// Every other one of eight pictures shows a cube's sides straight, and the rest an edge in the middle, which
// makes it wider by the square root of 2.
TEST_F(MeshviewExportTest, PicturesOfASpinDifferByTheSameAngleAndAreFramed)
{
  save({"a.png", "a.wrl", "b.bmp"},
       {"--spin", "8", "--view", "-y", "--edges", "off", "--background", "9", "--parallel"});
  std::vector<Image> pictures;
  std::vector<int> widths;
  for (int i = 1; i <= 8; ++i) {
    const std::string number = "_000" + std::to_string(i);
    pictures.push_back(read_png(in_folder("a" + number + ".png")));
    EXPECT_EQ(read_with<vtkBMPReader>(in_folder("b" + number + ".bmp")), pictures.back());
    const PixelRegion mesh = find_pixels(pictures.back(), [](Rgb pixel) { return !is_white(pixel); });
    EXPECT_GT(mesh.min_x, 0);
    EXPECT_LT(mesh.max_x, 119);
    EXPECT_GT(mesh.height(), 50);
    widths.push_back(mesh.width());
    EXPECT_NEAR(mesh.width(), i % 2 == 1 ? widths.front() : 1.414 * widths.front(), 2.0) << i;
  }
  for (std::size_t i = 1; i < pictures.size(); ++i) {
    EXPECT_NE(pictures[i], pictures[i - 1]) << i;
  }
  EXPECT_TRUE(fs::exists(in_folder("a.wrl"))) << "scenes are written once";
  EXPECT_FALSE(fs::exists(in_folder("a_0001.wrl")));
}

TEST_F(MeshviewExportTest, ASpinOfOneIsOnePicture)
{
  save({"one.png"}, {"--spin", "1"});
  EXPECT_FALSE(read_png(in_folder("one_0001.png")).empty());
  EXPECT_FALSE(fs::exists(in_folder("one_0002.png")));
}

TEST_F(MeshviewExportTest, ASpinCanBeInterruptedAndLeavesWholePictures)
{
  Process process({write_cube(), "--image", mPicture, "--size", "100x100", "--spin", "9999"}, true);
  ASSERT_TRUE(process.wait_for_error_text("pictures ["));
  ASSERT_TRUE(process.wait_for_error_text(" 1 %")); // the hundredth
  process.send(SIGINT);
  const Outcome outcome = process.wait();
  EXPECT_EQ(outcome.status, 130) << ::testing::PrintToString(outcome);
  EXPECT_NE(outcome.err.find("meshview: interrupted"), std::string::npos);
  int count = 0;
  for (const auto& entry : fs::directory_iterator(mFolder.path())) {
    if (entry.path().extension() == ".png") {
      EXPECT_EQ(read_png(entry.path().string()).width(), 100) << entry.path();
      ++count;
    }
  }
  EXPECT_GE(count, 100);
  EXPECT_LT(count, 9999);
}

TEST_F(MeshviewExportTest, ASpinHasAProgressBarOnATerminalOnly)
{
  const std::vector<std::string> arguments = {write_cube(), "--image", mPicture, "--size",
                                              "20x20",      "--spin",  "4"};
  const Outcome terminal = Process(arguments, true).wait();
  EXPECT_NE(terminal.err.find("pictures [-"), std::string::npos) << terminal.err;
  EXPECT_NE(terminal.err.find("50 %"), std::string::npos) << terminal.err;
  EXPECT_EQ(run(arguments).err, "");
}

// --- What can go wrong -----------------------------------------------------------------------------------

TEST_F(MeshviewExportTest, FaultyCommandLinesHaveStatus2)
{
  const std::string cube = write_cube();
  const std::vector<std::vector<std::string>> faulty = {{"--save", in_folder("a.gif")},
                                                        {"--save", in_folder("noextension")},
                                                        {"--save", ""},
                                                        {"--save"},
                                                        {"--spin", "4"},
                                                        {"--spin", "4", "--save", in_folder("a.wrl")},
                                                        {"--spin", "0", "--save", in_folder("a.png")},
                                                        {"--spin", "10000", "--save", in_folder("a.png")},
                                                        {"--spin", "-1", "--save", in_folder("a.png")},
                                                        {"--spin", "many", "--save", in_folder("a.png")},
                                                        {"--spin", "2.5", "--save", in_folder("a.png")}};
  for (std::vector<std::string> arguments : faulty) {
    arguments.insert(arguments.begin(), cube);
    expect_faulty(arguments);
  }
  const std::string known = run({cube, "--save", "a.gif"}).err;
  for (const char* extension : {".png", ".jpeg", ".jpg", ".bmp", ".pnm", ".ppm", ".tif", ".tiff", ".ps",
                                ".wrl", ".vrml", ".oogl", ".obj", ".iv"}) {
    EXPECT_NE(known.find(extension), std::string::npos) << extension;
  }
}

TEST_F(MeshviewExportTest, FilesThatCannotBeWrittenAreReportedBeforehand)
{
  const std::string cube = write_cube();
  fs::create_directory(in_folder("scene.mtl"));
  fs::create_directory(in_folder("turn_0007.png"));
  expect_problem({cube, "--save", in_folder("none/a.jpg")}, in_folder("none/a.jpg"), "no folder");
  expect_problem({cube, "--save", in_folder("scene.obj")}, in_folder("scene.mtl"), "is a directory");
  expect_problem({cube, "--save", in_folder("turn.png"), "--spin", "9"}, in_folder("turn_0007.png"),
                 "is a directory");
  EXPECT_FALSE(fs::exists(in_folder("turn_0001.png"))) << "nothing is drawn before all is known to go";
}

TEST_F(MeshviewExportTest, TwoOutputsToOneFileAreRefused)
{
  const std::string cube = write_cube();
  const std::string picture = in_folder("a.png");
  const std::string detour = in_folder("./a.png");
  expect_problem({cube, "--image", picture, "--save", detour}, detour, "is to be written twice");
  expect_problem({cube, "--save", picture, "--save", in_folder("b.png"), "--save", picture}, picture,
                 "twice");
  EXPECT_FALSE(fs::exists(picture));
  write_text(picture, "old");
  fs::create_symlink(picture, in_folder("c.png"));
  expect_problem({cube, "--save", picture, "--save", in_folder("c.png")}, in_folder("c.png"), "twice");
  EXPECT_EQ(read_text(picture), "old");
}

TEST_F(MeshviewExportTest, AFullDiskIsReportedForEveryFormat)
{
  const std::string cube = write_cube();
  for (const char* name :
       {"full.jpg", "full.bmp", "full.ps", "full.tif", "full.wrl", "full.iv", "full.obj"}) {
    const std::string path = in_folder(name);
    fs::create_symlink("/dev/full", path);
    expect_problem({cube, "--save", path, "--size", "100x100"}, path, "No space left");
    EXPECT_TRUE(fs::is_symlink(path)) << "not ours to remove";
  }
}

TEST_F(MeshviewExportTest, NoTemporaryFilesAreLeft)
{
  const std::string cube = write_cube();
  const std::string scratch = in_folder("scratch");
  fs::create_directory(scratch);
  setenv("TMPDIR", scratch.c_str(), 1);
  EXPECT_EQ(run({cube, "--save", in_folder("a.obj"), "--image", mPicture}).status, 0);
  EXPECT_TRUE(fs::is_empty(scratch));
  setenv("TMPDIR", in_folder("nowhere").c_str(), 1);
  expect_problem({cube, "--image", mPicture}, mPicture, "no place for temporary files");
  unsetenv("TMPDIR");
}

} // namespace
