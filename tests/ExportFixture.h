// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TemporaryFolder.h"
#include "ViewFixture.h"

#include <vtkActorCollection.h>
#include <vtkCellArray.h>
#include <vtkIdList.h>
#include <vtkMapper.h>
#include <vtkNew.h>
#include <vtkOBJReader.h>
#include <vtkVRMLImporter.h>

#include <array>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

/// What the tests of exports share: what reads scene files back.
namespace morrow_test {

inline std::string read_text(const std::string& path)
{
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline int count_text(const std::string& text, const std::string& part)
{
  int count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

using Point = std::array<double, 3>;

/// What a scene file holds, all its objects together.
struct SceneFile
{
  std::vector<Point> points;
  std::vector<std::vector<int>> faces; ///< indices of points, as lines and vertices
  std::vector<std::vector<int>> lines;
  int num_vertices = 0;
  std::vector<std::array<double, 4>> colors; ///< of the points of faces, where the format has such
  std::string text;

  [[nodiscard]] int num_triangles() const
  {
    int count = 0;
    for (const auto& face : faces) {
      count += static_cast<int>(face.size()) - 2;
    }
    return count;
  }

  /// Is there a point at this place, within the digits that all formats have?
  [[nodiscard]] bool has_point(double x, double y, double z) const
  {
    for (const Point& p : points) {
      if (std::abs(p[0] - x) < 1e-5 && std::abs(p[1] - y) < 1e-5 && std::abs(p[2] - z) < 1e-5) {
        return true;
      }
    }
    return false;
  }

  /// The z component of a face's normal, its length twice the area of its first triangle.
  [[nodiscard]] double turn(std::size_t face) const
  {
    const auto at = [&](int i) {
      return points[static_cast<std::size_t>(faces[face][static_cast<std::size_t>(i)])];
    };
    const Point a = at(0);
    const Point b = at(1);
    const Point c = at(2);
    return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
  }
};

namespace scene_file {

inline void add_cells(vtkCellArray& cells, int first, std::vector<std::vector<int>>& to)
{
  const vtkNew<vtkIdList> ids;
  for (vtkIdType i = 0; i < cells.GetNumberOfCells(); ++i) {
    cells.GetCellAtId(i, ids);
    to.emplace_back();
    for (const vtkIdType id : *ids) {
      to.back().push_back(first + static_cast<int>(id));
    }
  }
}

inline void add_data(vtkPolyData& data, SceneFile& to)
{
  const int first = static_cast<int>(to.points.size());
  for (vtkIdType i = 0; i < data.GetNumberOfPoints(); ++i) {
    to.points.emplace_back();
    data.GetPoint(i, to.points.back().data());
  }
  add_cells(*data.GetPolys(), first, to.faces);
  add_cells(*data.GetLines(), first, to.lines);
  to.num_vertices += static_cast<int>(data.GetVerts()->GetNumberOfConnectivityIds());
}

inline std::vector<std::string> words_of(const std::string& text)
{
  std::istringstream in(text);
  in.imbue(std::locale::classic());
  return {std::istream_iterator<std::string>(in), std::istream_iterator<std::string>()};
}

/// A number of the file; anything else, "nan" and a comma included, fails the test.
inline double number(std::string word)
{
  if (!word.empty() && word.back() == ',') {
    word.pop_back();
  }
  std::istringstream in(word);
  in.imbue(std::locale::classic());
  double value = 0.0;
  in >> value;
  EXPECT_TRUE(!in.fail() && in.eof()) << "not a number: " << word;
  return value;
}

} // namespace scene_file

inline SceneFile read_vrml(const std::string& path)
{
  SceneFile scene;
  scene.text = read_text(path);
  const LeaksIgnored ignored; // VTK's reader keeps what it has parsed
  const vtkNew<vtkVRMLImporter> importer;
  const vtkNew<vtkRenderWindow> window;
  importer->SetRenderWindow(window);
  importer->SetFileName(path.c_str());
  importer->Read();
  if (importer->GetRenderer() == nullptr) {
    ADD_FAILURE() << "not a VRML file: " << path;
    return scene;
  }
  vtkActorCollection* actors = importer->GetRenderer()->GetActors();
  actors->InitTraversal();
  while (vtkActor* actor = actors->GetNextActor()) {
    actor->GetMapper()->Update();
    scene_file::add_data(*vtkPolyData::SafeDownCast(actor->GetMapper()->GetInput()), scene);
  }
  return scene;
}

inline SceneFile read_obj(const std::string& prefix)
{
  SceneFile scene;
  const std::string path = prefix + ".obj";
  scene.text = read_text(path);
  const vtkNew<vtkOBJReader> reader;
  reader->SetFileName(path.c_str());
  reader->Update();
  scene_file::add_data(*reader->GetOutput(), scene);
  return scene;
}

/// Reads the numbers of VTK's OOGL files one after the other.
class OoglReader
{
public:
  explicit OoglReader(const std::string& path)
  {
    mScene.text = read_text(path);
    mWords = scene_file::words_of(mScene.text);
  }

  SceneFile read()
  {
    EXPECT_EQ(mScene.text.rfind("# Geomview OOGL file", 0), 0U);
    while (mNext < mWords.size()) {
      const std::string word = mWords[mNext++];
      if (word == "OFF" || word == "COFF") {
        this->read_off(word == "COFF");
      } else if (word == "VECT") {
        this->read_vect();
      }
    }
    return mScene;
  }

private:
  double next()
  {
    if (mNext >= mWords.size()) {
      ADD_FAILURE() << "the file ends too early";
      return 0.0;
    }
    return scene_file::number(mWords[mNext++]);
  }
  int next_int() { return static_cast<int>(this->next()); }
  Point next_point()
  {
    const double x = this->next();
    const double y = this->next();
    return {x, y, this->next()};
  }

  void read_off(bool has_colors)
  {
    const int first = static_cast<int>(mScene.points.size());
    const int num_points = this->next_int();
    const int num_faces = this->next_int();
    this->next();
    for (int i = 0; i < num_points; ++i) {
      mScene.points.push_back(this->next_point());
      if (has_colors) {
        const Point rgb = this->next_point();
        mScene.colors.push_back({rgb[0], rgb[1], rgb[2], this->next()});
      }
    }
    for (int i = 0; i < num_faces; ++i) {
      mScene.faces.emplace_back();
      for (int n = this->next_int(); n > 0; --n) {
        mScene.faces.back().push_back(first + this->next_int());
      }
    }
  }

  void read_vect()
  {
    const int num_lines = this->next_int();
    this->next();
    this->next();
    std::vector<int> sizes;
    for (int i = 0; i < num_lines; ++i) {
      sizes.push_back(this->next_int());
    }
    mNext += sizes.size(); // numbers of colours
    for (const int size : sizes) {
      std::vector<int> line;
      for (int i = 0; i < size; ++i) {
        line.push_back(static_cast<int>(mScene.points.size()));
        mScene.points.push_back(this->next_point());
      }
      if (size == 1) {
        ++mScene.num_vertices;
      } else {
        mScene.lines.push_back(line);
      }
    }
  }

  SceneFile mScene;
  std::vector<std::string> mWords;
  std::size_t mNext = 0;
};

inline SceneFile read_oogl(const std::string& path)
{
  return OoglReader(path).read();
}

/// Reads the lists of VTK's Open Inventor files.
class IvReader
{
public:
  explicit IvReader(const std::string& path)
  {
    mScene.text = read_text(path);
    mWords = scene_file::words_of(mScene.text);
  }

  SceneFile read()
  {
    EXPECT_EQ(mScene.text.rfind("#Inventor V2.0 ascii", 0), 0U);
    std::string node;
    std::size_t before = 0; // points of the objects before
    for (std::size_t i = 0; i < mWords.size(); ++i) {
      const std::string& word = mWords[i];
      if (word == "{") {
        node = mWords[i - 1];
      } else if (word == "point" && node == "Coordinate3") {
        before = mScene.points.size();
        this->read_points(i + 1);
      } else if (word.rfind("coordIndex", 0) == 0) {
        this->read_cells(i + 1, static_cast<int>(before),
                         node == "IndexedFaceSet" ? mScene.faces : mScene.lines);
      } else if (word == "numPoints") {
        mScene.num_vertices += static_cast<int>(mScene.points.size() - before);
      }
    }
    EXPECT_EQ(count_text(mScene.text, "{"), count_text(mScene.text, "}"));
    return mScene;
  }

private:
  // From "[" to "]".
  std::vector<double> list(std::size_t i) const
  {
    std::vector<double> numbers;
    EXPECT_EQ(mWords.at(i).front(), '[');
    if (mWords[i].size() > 1) {
      numbers.push_back(scene_file::number(mWords[i].substr(1)));
    }
    for (++i; i < mWords.size() && mWords[i] != "]"; ++i) {
      numbers.push_back(scene_file::number(mWords[i]));
    }
    return numbers;
  }

  void read_points(std::size_t i)
  {
    const std::vector<double> numbers = this->list(i);
    for (std::size_t k = 0; k + 2 < numbers.size(); k += 3) {
      mScene.points.push_back({numbers[k], numbers[k + 1], numbers[k + 2]});
    }
  }

  void read_cells(std::size_t i, int first, std::vector<std::vector<int>>& to) const
  {
    std::vector<int> cell;
    for (const double each : this->list(i)) {
      if (each >= 0) {
        cell.push_back(first + static_cast<int>(each));
      } else {
        to.push_back(cell);
        cell.clear();
      }
    }
    EXPECT_TRUE(cell.empty());
  }

  SceneFile mScene;
  std::vector<std::string> mWords;
};

inline SceneFile read_iv(const std::string& path)
{
  return IvReader(path).read();
}

inline SceneFile read_scene(const std::string& path, int type)
{
  switch (type) {
  case GView::VRML:
    return read_vrml(path);
  case GView::OOGL:
    return read_oogl(path);
  case GView::OBJ:
    return read_obj(path);
  default:
    return read_iv(path);
  }
}

inline constexpr GView::ModelFileType kModelFileTypes[] = {GView::VRML, GView::OOGL, GView::OBJ, GView::IV};

/// A host whose numbers have a decimal comma and grouping: in printf and in streams, as far as the machine
/// can. Everything is as before at the end.
class CommaLocale
{
public:
  CommaLocale() : mProcess(std::setlocale(LC_ALL, nullptr))
  {
    std::locale::global(std::locale(std::locale::classic(), new Comma));
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "it_IT.UTF-8"}) {
      if (std::setlocale(LC_ALL, name) != nullptr) {
        return;
      }
    }
    make_one();
  }
  ~CommaLocale()
  {
    std::locale::global(mStreams);
    std::setlocale(LC_ALL, mProcess.c_str());
    unsetenv("LOCPATH");
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;

  /// What printf makes of 1.5: "1,5", unless this machine has no such locale and cannot make one.
  [[nodiscard]] static std::string printed()
  {
    char text[16];
    std::snprintf(text, sizeof text, "%.1f", 1.5);
    return text;
  }
  /// What a new stream makes of 1234567: "1.234.567".
  [[nodiscard]] static std::string streamed()
  {
    std::ostringstream text;
    text << 1234567;
    return text.str();
  }

private:
  class Comma : public std::numpunct<char>
  {
  protected:
    [[nodiscard]] char do_decimal_point() const override { return ','; }
    [[nodiscard]] char do_thousands_sep() const override { return '.'; }
    [[nodiscard]] std::string do_grouping() const override { return "\3"; }
  };

  // Takes seconds, so once for all of a process.
  static const std::string& folder_with_one()
  {
    static const TemporaryFolder folder;
    static const std::string made = [] {
      const std::string command =
          "localedef -i de_DE -f UTF-8 " + folder.file("de_DE.UTF-8") + " >/dev/null 2>&1";
      return std::system(command.c_str()) == 0 ? folder.path() : std::string();
    }();
    return made;
  }

  static void make_one()
  {
    if (!folder_with_one().empty()) {
      setenv("LOCPATH", folder_with_one().c_str(), 1);
      std::setlocale(LC_ALL, "de_DE.UTF-8");
    }
  }

  std::locale mStreams;
  std::string mProcess;
};

} // namespace morrow_test
