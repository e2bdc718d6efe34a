// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// The mesh viewer's faces and edges as entities of data groups: they look like one part per block.
#include "ColorScale.h"
#include "GView.h"
#include "MRUtil.h"
#include "MeshGroups.h"
#include "MeshModel.h"
#include "MeshviewSupport.h"
#include "PartProps.h"
#include "SurfacePieces.h"
#include "ViewFixture.h"

#include <vtkActor.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkPointData.h>
#include <vtkXMLPolyDataWriter.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace morrow_test;
using Arguments = std::vector<std::string>;

Arguments joined(Arguments first, const Arguments& second)
{
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

/// Sloping squares, so many on a side, each a face of its own, with a vertex and a line in front of them.
vtkSmartPointer<vtkPolyData> tiles(vtkIdType side)
{
  vtkNew<vtkPoints> points;
  vtkNew<vtkCellArray> squares;
  for (vtkIdType y = 0; y <= side; ++y) {
    for (vtkIdType x = 0; x <= side; ++x) {
      points->InsertNextPoint(static_cast<double>(x), static_cast<double>(y),
                              0.8 * static_cast<double>(x % 2 + y % 2));
      if (x > 0 && y > 0) {
        const vtkIdType last = y * (side + 1) + x;
        const vtkIdType corners[] = {last - side - 2, last - side - 1, last, last - 1};
        squares->InsertNextCell(4, corners);
      }
    }
  }
  const vtkIdType ends[] = {points->InsertNextPoint(0.0, 0.0, 2.0), points->InsertNextPoint(9.0, 9.0, 2.0)};
  vtkNew<vtkCellArray> line;
  line->InsertNextCell(2, ends);
  vtkNew<vtkCellArray> vertex;
  vertex->InsertNextCell(1, ends);
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetVerts(vertex);
  data->SetLines(line);
  data->SetPolys(squares);
  return data;
}

class MeshviewGroupsTest : public MeshviewTest
{
protected:
  /// Both ways to draw it look the same, but for pixels at common edges, of which either neighbour may be
  /// drawn last: one in a thousand.
  void expect_same_look(const Arguments& arguments, const std::string& limit) const
  {
    const Image expected = draw(arguments);
    const Image grouped = draw(joined(arguments, {"--group-limit", limit}));
    const ImageDifference difference = compare(grouped, expected);
    EXPECT_TRUE(difference.same_size);
    EXPECT_LE(difference.pixels_over_8, expected.width() * expected.height() / 1000)
        << ::testing::PrintToString(arguments) << " in groups of " << limit;
    EXPECT_GT(count_pixels(expected, [&](Rgb pixel) { return pixel != expected.at(0, 0); }), 500);
  }

  /// What the program says of its groups.
  [[nodiscard]] std::string summary(const Arguments& arguments) const
  {
    const std::string out = run(joined(arguments, {"--image", mPicture, "--size", "50x50"})).out;
    const auto start = out.find("groups: ");
    return start == std::string::npos ? "" : out.substr(start, out.find('\n', start) - start);
  }
};

// --- The look --------------------------------------------------------------------------------------------

class MeshviewGroupsStyleTest : public MeshviewGroupsTest, public ::testing::WithParamInterface<Arguments>
{};

TEST_P(MeshviewGroupsStyleTest, TheBracketLooksTheSame)
{
  expect_same_look(joined({sample(), "--size", "400x300"}, GetParam()), "7");
}

INSTANTIATE_TEST_SUITE_P(All, MeshviewGroupsStyleTest,
                         ::testing::Values(Arguments{}, Arguments{"--wire", "features", "--labels", "blocks"},
                                           Arguments{"--wire", "none", "--silhouette", "--surface", "flat"},
                                           Arguments{"--surface", "hidden", "--wire", "features", "--hidden",
                                                     "stipple"},
                                           Arguments{"--wire", "unique", "--color-by", "MeanRatio"}));

TEST_F(MeshviewGroupsTest, ValuesOnPointsAndCellsLookTheSame)
{
  expect_same_look({write_cube(), "--color-by", "side"}, "2");
  expect_same_look({write_cube(), "--color-by", "corner", "--light", "0.5", "--ambient", "0.3"}, "2");
}

struct DrawnMesh
{
  const char* name;
  const char* wire;
};

void PrintTo(const DrawnMesh& mesh, std::ostream* out)
{
  *out << mesh.name << " with --wire " << mesh.wire;
}

class MeshviewGroupsRealMeshTest : public MeshviewGroupsTest, public ::testing::WithParamInterface<DrawnMesh>
{};

TEST_P(MeshviewGroupsRealMeshTest, LooksTheSame)
{
  MORROW_REAL_MESH(path, GetParam().name);
  expect_same_look({path, "--size", "400x300", "--wire", GetParam().wire}, "100");
}

INSTANTIATE_TEST_SUITE_P(All, MeshviewGroupsRealMeshTest,
                         ::testing::Values(DrawnMesh{"Vented_Rear_Case_With_Pi_Supports.vtp", "features"},
                                           DrawnMesh{"can.vtu", "all"}, DrawnMesh{"cow.vtp", "all"},
                                           DrawnMesh{"gears.stl", "features"}, DrawnMesh{"hexa.vtk", "all"},
                                           DrawnMesh{"mesh_fs8.exo", "all"}, DrawnMesh{"mug.e", "features"}));

TEST_F(MeshviewGroupsTest, ManyEntitiesAndCellsOfNoFaceLookTheSame)
{
  const std::string path = write_with<vtkXMLPolyDataWriter>(in_folder("tiles.vtp"), tiles(40).Get());
  expect_same_look({path}, "30");
  expect_same_look({path, "--wire", "features"}, "3");
  EXPECT_EQ(summary({path, "--group-limit", "400"}), "groups: 1601 faces in 5") << "one for the loose cells";
}

TEST_F(MeshviewGroupsTest, MeshesWithoutFacesLookTheSame)
{
  auto data = tiles(1);
  data->SetPolys(nullptr);
  const std::string path = write_with<vtkXMLPolyDataWriter>(in_folder("line.vtp"), data.Get());
  expect_same_look({path, "--wire", "features", "--view", "+z"}, "1");
}

// --- The limit -------------------------------------------------------------------------------------------

TEST_F(MeshviewGroupsTest, GroupsHoldSoManyEntities)
{
  const std::string cube = write_cube();
  EXPECT_EQ(summary({cube}), "");
  EXPECT_EQ(summary({cube, "--group-limit", "0"}), "groups: 6 faces in 1");
  EXPECT_EQ(summary({cube, "--group-limit", "1"}), "groups: 6 faces in 6");
  EXPECT_EQ(summary({cube, "--group-limit", "4"}), "groups: 6 faces in 2");
  EXPECT_EQ(summary({cube, "--group-limit", "2147483647"}), "groups: 6 faces in 1");
  EXPECT_EQ(summary({cube, "--group-limit", "5", "--wire", "features"}),
            "groups: 6 faces in 2, 12 edges in 3");
}

TEST_F(MeshviewGroupsTest, FaultyLimitsAreRefused)
{
  const std::string cube = write_cube();
  for (const char* limit : {"", "-1", "1.5", "1e3", "many", "nan", "2147483648", "99999999999999999999"}) {
    expect_faulty({cube, "--image", mPicture, "--group-limit", limit});
  }
  const Outcome outcome = run({cube, "--group-limit", "-1"});
  EXPECT_NE(outcome.err.find("'-1' is not a number of entities from 1 to 2147483647, or 0 for no limit"),
            std::string::npos)
      << outcome.err;
}

// --- Colours of faces ------------------------------------------------------------------------------------

TEST_F(MeshviewGroupsTest, FacesMayHaveColoursOfTheirOwn)
{
  const Image picture = draw({write_cube(), "--group-limit", "2", "--color-faces", "--wire", "none"});
  std::set<int> hues;
  for (const Rgb pixel : picture.pixels()) {
    if (!is_white(pixel)) {
      hues.insert(static_cast<int>(hue(pixel) / 20.0));
    }
  }
  EXPECT_GE(hues.size(), 3U) << "three sides are seen";
}

TEST_F(MeshviewGroupsTest, ColoursOfFacesNeedGroupsAndNoOtherColours)
{
  const std::string cube = write_cube();
  expect_faulty({cube, "--image", mPicture, "--color-faces"});
  expect_faulty({cube, "--image", mPicture, "--color-faces", "--group-limit", "1", "--color-by", "side"});
  expect_faulty({cube, "--image", mPicture, "--color-faces", "--group-limit", "1", "--scalar-bar", "side"});
}

// --- Scenes ----------------------------------------------------------------------------------------------

TEST_F(MeshviewGroupsTest, ScenesHoldEachEntity)
{
  const std::string scene = in_folder("scene.obj");
  ASSERT_EQ(run({write_cube(), "--group-limit", "4", "--save", scene}).status, 0);
  const std::string text = read_text(scene);
  std::size_t faces = 0;
  for (std::size_t at = text.find("\nf "); at != std::string::npos; at = text.find("\nf ", at + 1)) {
    ++faces;
  }
  EXPECT_EQ(faces, 6U);
}

// --- The model -------------------------------------------------------------------------------------------

MeshBlock block_of(vtkSmartPointer<vtkPolyData> surface)
{
  MeshBlock block;
  block.surface = std::move(surface);
  return block;
}

/// Lets the test see what is shown.
class OpenGroups : public MeshGroups
{
public:
  using MeshGroups::MeshGroups;

  /// The blocks of all parts that are shown in the view.
  [[nodiscard]] std::vector<vtkSmartPointer<vtkPolyData>> shown(GView& view)
  {
    std::vector<vtkSmartPointer<vtkPolyData>> blocks;
    for (const auto& [data, props] : view_props()[&view]) {
      auto* parts = vtkMultiBlockDataSet::SafeDownCast(data);
      EXPECT_EQ(props.size(), 1U);
      for (unsigned int i = 0; i < parts->GetNumberOfBlocks(); ++i) {
        blocks.emplace_back(vtkPolyData::SafeDownCast(parts->GetBlock(i)));
      }
    }
    return blocks;
  }
};

/// The groups of a mesh model of one block, in a view.
struct ShownGroups
{
  ShownGroups(vtkSmartPointer<vtkPolyData> surface, const DrawStyle& style, int limit)
      : mesh(style, ColorScale(), true), groups(std::make_unique<OpenGroups>(limit, false))
  {
    mesh.add_block(block_of(std::move(surface)));
    groups->add_view(view.get());
    groups->show(mesh);
    groups->update_parts();
  }

  std::shared_ptr<GView> view = make_view(100, 100);
  MeshModel mesh;
  std::unique_ptr<OpenGroups> groups;
};

TEST_F(MeshviewGroupsTest, BlocksLeadBackToTheirEntities)
{
  ShownGroups shown(cube_sides(), {}, 4);
  const auto blocks = shown.groups->shown(*shown.view);
  ASSERT_EQ(blocks.size(), 6U);
  std::set<GDataGroupEntity*> entities;
  for (const auto& block : blocks) {
    auto* entity = static_cast<GroupedEntity*>(MRUtil::get_back_pointer(block));
    ASSERT_NE(entity, nullptr);
    EXPECT_EQ(entity->data(), block);
    entities.insert(entity);
  }
  EXPECT_EQ(entities.size(), 6U);
  shown.groups.reset();
  for (const auto& block : blocks) {
    EXPECT_EQ(MRUtil::get_back_pointer(block), nullptr) << "the entity is gone";
  }
}

TEST_F(MeshviewGroupsTest, AChangedEntityIsDrawnAnew)
{
  DrawStyle style;
  style.surface = Surface::Flat;
  style.wire = Wire(); // none, which X has a macro for
  ShownGroups shown(quad(0.0, 0.0, 1.0, 1.0), style, 4);
  shown.view->set_background(9); // white
  shown.view->set_background2(9);
  shown.view->reset_camera();
  shown.view->render();
  const auto is_drawn = [](Rgb pixel) { return !is_white(pixel); };
  const int before = count_pixels(read_pixels(shown.view->get_render_window()), is_drawn);
  const auto blocks = shown.groups->shown(*shown.view);
  ASSERT_EQ(blocks.size(), 1U);
  auto* entity = static_cast<GroupedEntity*>(MRUtil::get_back_pointer(blocks.front()));
  entity->set_data(quad(0.0, 0.0, 1.0, 0.5));
  shown.groups->update_parts();
  shown.view->render();
  const int after = count_pixels(read_pixels(shown.view->get_render_window()), is_drawn);
  EXPECT_GT(before, 100);
  EXPECT_NEAR(after, before / 2, before / 20);
  EXPECT_EQ(MRUtil::get_back_pointer(blocks.front()), nullptr);
  entity->set_data(nullptr);
  shown.groups->update_parts();
  shown.view->render();
  EXPECT_EQ(count_pixels(read_pixels(shown.view->get_render_window()), is_drawn), 0);
}

TEST_F(MeshviewGroupsTest, AnotherStyleShowsTheSameEntities)
{
  ShownGroups shown(cube_sides(), {}, 4);
  const auto faces = shown.groups->shown(*shown.view);
  DrawStyle style;
  style.wire = Wire::Features;
  shown.mesh.set_style(style);
  shown.groups->show(shown.mesh);
  shown.groups->update_parts();
  const auto both = shown.groups->shown(*shown.view);
  EXPECT_EQ(both.size(), 6U + 12U);
  EXPECT_EQ(shown.groups->summary(), "6 faces in 2, 12 edges in 3");
  shown.mesh.set_style({});
  shown.groups->show(shown.mesh);
  const auto back = shown.groups->shown(*shown.view);
  EXPECT_EQ(std::set<vtkPolyData*>(back.begin(), back.end()),
            std::set<vtkPolyData*>(faces.begin(), faces.end()));
}

// --- Pieces ----------------------------------------------------------------------------------------------

TEST(SurfacePiecesTest, PiecesHoldTheirPointsAndValues)
{
  const auto cube = cube_sides();
  SurfacePieces maker(*cube);
  for (const vtkIdType side : {5, 0, 5}) {
    const auto piece = maker.cells({side});
    ASSERT_EQ(piece->GetNumberOfCells(), 1);
    ASSERT_EQ(piece->GetNumberOfPoints(), 4);
    EXPECT_EQ(piece->GetCellData()->GetArray("side")->GetTuple1(0), static_cast<double>(side));
    for (vtkIdType i = 0; i < 4; ++i) {
      const double* corner = piece->GetPoint(i);
      EXPECT_EQ(piece->GetPointData()->GetArray("corner")->GetTuple1(i), corner[2]);
    }
  }
  const auto sides = maker.cells({0, 2});
  EXPECT_EQ(sides->GetNumberOfPoints(), 6) << "two of them are common";
  EXPECT_EQ(sides->GetNumberOfCells(), 2);
}

TEST(SurfacePiecesTest, CellsOfEveryKindKeepTheirOrder)
{
  auto data = tiles(1);
  vtkNew<vtkCellArray> strips;
  const vtkIdType strip[] = {0, 1, 2, 3};
  strips->InsertNextCell(4, strip);
  data->SetStrips(strips);
  SurfacePieces maker(*data);
  const auto all = maker.cells({0, 1, 2, 3});
  EXPECT_EQ(all->GetNumberOfVerts(), 1);
  EXPECT_EQ(all->GetNumberOfLines(), 1);
  EXPECT_EQ(all->GetNumberOfPolys(), 1);
  EXPECT_EQ(all->GetNumberOfStrips(), 1);
  EXPECT_EQ(all->GetNumberOfPoints(), 6);
  double end[3];
  all->GetPoint(1, end);
  EXPECT_EQ(end[0], 9.0) << "points are in the order of their use";
  const SurfacePieces::Ids round = {0, 1, 3, 2, 0};
  const auto lines = maker.lines({&round});
  EXPECT_EQ(lines->GetNumberOfPoints(), 4);
  EXPECT_EQ(lines->GetLines()->GetCellSize(0), 5);
  EXPECT_EQ(maker.cells({})->GetNumberOfPoints(), 0);
}

} // namespace
