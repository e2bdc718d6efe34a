// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ActorCopier.h"

#include "SceneCopy.h"
#include "ViewFixture.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCompositeDataDisplayAttributes.h>
#include <vtkCompositePolyDataMapper2.h>
#include <vtkDataSetMapper.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkLookupTable.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyDataMapper.h>
#include <vtkSphereSource.h>
#include <vtkTexture.h>
#include <vtkUnstructuredGrid.h>

#include <string>
#include <vector>

namespace {

using namespace morrow_test;
using morrow::ActorCopier;
using morrow::SceneContent;

using Actors = std::vector<vtkSmartPointer<vtkActor>>;

Actors copies_of(vtkActor* actor, const SceneContent& content = {})
{
  return ActorCopier(*actor, *vtkNew<vtkMatrix4x4>(), content).copy();
}

std::vector<std::string> left_out_of(vtkActor* actor)
{
  const SceneContent content;
  const vtkNew<vtkMatrix4x4> matrix;
  ActorCopier copier(*actor, *matrix, content);
  static_cast<void>(copier.copy());
  return copier.left_out();
}

vtkPolyData* data_of(vtkActor* actor)
{
  return vtkPolyData::SafeDownCast(actor->GetMapper()->GetInput());
}

std::vector<int> color_of(vtkActor* actor, vtkIdType point)
{
  vtkDataArray* scalars = data_of(actor)->GetPointData()->GetScalars();
  std::vector<int> rgba;
  for (int i = 0; scalars != nullptr && i < scalars->GetNumberOfComponents(); ++i) {
    rgba.push_back(static_cast<int>(scalars->GetComponent(point, i)));
  }
  return rgba;
}

using Bytes = std::vector<int>;

TEST(ActorCopierTest, CopiesTheProperty)
{
  const auto actor = flat_actor(one_triangle(), kRed);
  actor->GetProperty()->SetOpacity(0.25);
  actor->GetProperty()->SetLineWidth(3.0);
  const Actors copies = copies_of(actor);
  ASSERT_EQ(copies.size(), 1U);
  EXPECT_NE(copies[0]->GetProperty(), actor->GetProperty());
  EXPECT_EQ(copies[0]->GetProperty()->GetOpacity(), 0.25);
  EXPECT_EQ(copies[0]->GetProperty()->GetLineWidth(), 3.0);
  EXPECT_EQ(copies[0]->GetProperty()->GetColor()[0], 1.0);
  EXPECT_EQ(copies[0]->GetMapper()->GetScalarVisibility(), 0);
}

TEST(ActorCopierTest, BringsThePipelineUpToDate)
{
  const vtkNew<vtkSphereSource> source;
  const vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputConnection(source->GetOutputPort());
  const vtkNew<vtkActor> actor;
  actor->SetMapper(mapper);
  EXPECT_EQ(data_of(copies_of(actor).at(0))->GetNumberOfPolys(), 96);
}

TEST(ActorCopierTest, DoesNotUpdateThePipelineOfAStaticMapper)
{
  const vtkNew<vtkSphereSource> source;
  const vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputConnection(source->GetOutputPort());
  mapper->StaticOn();
  const vtkNew<vtkActor> actor;
  actor->SetMapper(mapper);
  EXPECT_TRUE(copies_of(actor).empty());
}

TEST(ActorCopierTest, TakesTheSurfaceOfADataSetMapper)
{
  const vtkNew<vtkUnstructuredGrid> grid;
  grid->SetPoints(quad(0, 0, 1, 1)->GetPoints());
  grid->GetPoints()->InsertNextPoint(0.0, 0.0, 1.0);
  const vtkIdType tetra[] = {0, 1, 2, 4};
  grid->InsertNextCell(VTK_TETRA, 4, tetra);
  const vtkNew<vtkDataSetMapper> mapper;
  mapper->SetInputData(grid);
  const vtkNew<vtkActor> actor;
  actor->SetMapper(mapper);
  EXPECT_EQ(data_of(copies_of(actor).at(0))->GetNumberOfPolys(), 4);
  mapper->SetInputData(one_triangle());
  EXPECT_EQ(data_of(copies_of(actor).at(0))->GetNumberOfPolys(), 1);
}

TEST(ActorCopierTest, CopiesVerticesAsLinesWhenWanted)
{
  const auto actor = flat_actor(vertices({0, 0, 0, 1, 1, 1}), kRed);
  const Actors as_vertices = copies_of(actor);
  EXPECT_EQ(data_of(as_vertices.at(0))->GetVerts()->GetNumberOfConnectivityIds(), 2);
  const Actors as_lines = copies_of(actor, {true, true, true});
  EXPECT_EQ(data_of(as_lines.at(0))->GetNumberOfVerts(), 0);
  EXPECT_EQ(data_of(as_lines.at(0))->GetNumberOfLines(), 2);
}

// --- Colours ---------------------------------------------------------------------------------------------

/// A triangle whose points have the scalars 0, 1 and 2, from red over green to blue.
vtkSmartPointer<vtkActor> coloured_triangle()
{
  const auto data = one_triangle();
  const vtkNew<vtkDoubleArray> scalars;
  scalars->SetName("heat");
  const vtkNew<vtkLookupTable> table;
  table->SetNumberOfTableValues(3);
  for (int i = 0; i < 3; ++i) {
    scalars->InsertNextValue(i);
    table->SetTableValue(i, i == 0, i == 1, i == 2);
  }
  data->GetPointData()->SetScalars(scalars);
  auto actor = flat_actor(data, kWhite);
  actor->GetMapper()->ScalarVisibilityOn();
  actor->GetMapper()->SetLookupTable(table);
  actor->GetMapper()->SetScalarRange(0.0, 2.0);
  return actor;
}

TEST(ActorCopierTest, MapsScalarsAsTheMapperDoes)
{
  const Actors copies = copies_of(coloured_triangle());
  EXPECT_NE(copies.at(0)->GetMapper()->GetScalarVisibility(), 0);
  EXPECT_EQ(color_of(copies[0], 0), (Bytes{255, 0, 0, 255}));
  EXPECT_EQ(color_of(copies[0], 1), (Bytes{0, 255, 0, 255}));
  EXPECT_EQ(color_of(copies[0], 2), (Bytes{0, 0, 255, 255}));
}

TEST(ActorCopierTest, MapsScalarsThatTheMapperInterpolates)
{
  const auto actor = coloured_triangle();
  actor->GetMapper()->InterpolateScalarsBeforeMappingOn();
  EXPECT_EQ(color_of(copies_of(actor).at(0), 1), (Bytes{0, 255, 0, 255}));
}

TEST(ActorCopierTest, MapsTheArrayThatTheMapperNames)
{
  const auto actor = coloured_triangle();
  data_of(actor)->GetPointData()->SetActiveScalars(nullptr);
  EXPECT_TRUE(color_of(copies_of(actor).at(0), 0).empty());
  actor->GetMapper()->SetScalarModeToUsePointFieldData();
  actor->GetMapper()->SelectColorArray("heat");
  EXPECT_EQ(color_of(copies_of(actor).at(0), 1), (Bytes{0, 255, 0, 255}));
}

TEST(ActorCopierTest, PutsTheOpacityIntoMappedColours)
{
  const auto actor = coloured_triangle();
  actor->GetProperty()->SetOpacity(0.2);
  EXPECT_EQ(color_of(copies_of(actor).at(0), 0), (Bytes{255, 0, 0, 51}));
}

TEST(ActorCopierTest, MapsScalarsOfCells)
{
  const auto actor = coloured_triangle();
  vtkPolyData* data = data_of(actor);
  data->GetPointData()->SetScalars(nullptr);
  const vtkNew<vtkDoubleArray> scalars;
  scalars->InsertNextValue(2.0);
  data->GetCellData()->SetScalars(scalars);
  const Actors copies = copies_of(actor);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(color_of(copies.at(0), i), (Bytes{0, 0, 255, 255}));
  }
}

TEST(ActorCopierTest, HasNoColoursWithoutScalarsWithoutVisibilityAndWhenNotWanted)
{
  const auto actor = coloured_triangle();
  EXPECT_TRUE(color_of(copies_of(actor, {false, true, false}).at(0), 0).empty());
  actor->GetMapper()->ScalarVisibilityOff();
  EXPECT_TRUE(color_of(copies_of(actor).at(0), 0).empty());
  EXPECT_TRUE(color_of(copies_of(flat_actor(one_triangle(), kRed)).at(0), 0).empty());
}

TEST(ActorCopierTest, LeavesTheMapperAsItWas)
{
  const auto actor = coloured_triangle();
  static_cast<void>(copies_of(actor)); // the lookup table is built, as a frame would do
  const auto before = actor->GetMapper()->GetMTime();
  static_cast<void>(copies_of(actor));
  EXPECT_EQ(actor->GetMapper()->GetMTime(), before);
}

// --- Composite data --------------------------------------------------------------------------------------

/// Two squares in a group of their own, then one beside it.
struct Blocks
{
  vtkSmartPointer<vtkPolyData> a = quad(0, 0, 1, 1);
  vtkSmartPointer<vtkPolyData> b = quad(1, 0, 2, 1);
  vtkSmartPointer<vtkPolyData> c = quad(2, 0, 3, 1);
  vtkSmartPointer<vtkMultiBlockDataSet> group = multiblock({a, nullptr, b});
  vtkSmartPointer<vtkMultiBlockDataSet> all = vtkSmartPointer<vtkMultiBlockDataSet>::New();
  vtkSmartPointer<vtkActor> actor;
  vtkNew<vtkCompositeDataDisplayAttributes> attributes;

  Blocks()
  {
    all->SetBlock(0, group);
    all->SetBlock(1, c);
    actor = flat_composite_actor(all, kRed);
    vtkCompositePolyDataMapper2::SafeDownCast(actor->GetMapper())
        ->SetCompositeDataDisplayAttributes(attributes);
  }

  [[nodiscard]] std::vector<double> places() const
  {
    std::vector<double> x;
    for (const auto& copy : copies_of(actor)) {
      x.push_back(copy->GetBounds()[0]);
    }
    return x;
  }
};

TEST(ActorCopierTest, CopiesCompositeDataBlockByBlock)
{
  const Blocks blocks;
  EXPECT_EQ(blocks.places(), (std::vector<double>{0.0, 1.0, 2.0}));
  EXPECT_TRUE(left_out_of(blocks.actor).empty());
}

TEST(ActorCopierTest, SurvivesEmptyCompositeData)
{
  for (const auto& data :
       {multiblock({}), multiblock({nullptr, nullptr}), multiblock({vtkNew<vtkPolyData>()})}) {
    EXPECT_TRUE(copies_of(flat_composite_actor(data, kRed)).empty());
  }
}

TEST(ActorCopierTest, BlocksThatAreHiddenAreLeftOut)
{
  const Blocks blocks;
  blocks.attributes->SetBlockVisibility(blocks.group, false);
  EXPECT_EQ(blocks.places(), (std::vector<double>{2.0}));
  blocks.attributes->SetBlockVisibility(blocks.b, true); // says otherwise than its group
  EXPECT_EQ(blocks.places(), (std::vector<double>{1.0, 2.0}));
}

TEST(ActorCopierTest, BlocksHaveTheirOwnColourAndOpacity)
{
  const Blocks blocks;
  const double green[] = {0.0, 1.0, 0.0};
  blocks.attributes->SetBlockColor(blocks.group, green);
  blocks.attributes->SetBlockOpacity(blocks.b, 0.5);
  const Actors copies = copies_of(blocks.actor);
  ASSERT_EQ(copies.size(), 3U);
  EXPECT_EQ(copies[0]->GetProperty()->GetDiffuseColor()[1], 1.0);
  EXPECT_EQ(copies[0]->GetProperty()->GetDiffuseColor()[0], 0.0);
  EXPECT_EQ(copies[0]->GetProperty()->GetOpacity(), 1.0);
  EXPECT_EQ(copies[1]->GetProperty()->GetOpacity(), 0.5);
  EXPECT_EQ(copies[2]->GetProperty()->GetDiffuseColor()[0], 1.0);
  EXPECT_EQ(blocks.actor->GetProperty()->GetDiffuseColor()[0], 1.0);
}

// The composite mapper does not draw them either.
TEST(ActorCopierTest, BlocksThatAreNotPolygonalAreLeftOut)
{
  const Blocks blocks;
  blocks.all->SetBlock(2, vtkNew<vtkImageData>());
  EXPECT_EQ(blocks.places().size(), 3U);
}

// --- Textures --------------------------------------------------------------------------------------------

vtkSmartPointer<vtkActor> textured_square(bool has_tcoords)
{
  const auto data = quad(0, 0, 1, 1);
  if (has_tcoords) {
    const vtkNew<vtkFloatArray> tcoords;
    tcoords->SetNumberOfComponents(2);
    tcoords->SetNumberOfTuples(4);
    tcoords->Fill(0.5);
    data->GetPointData()->SetTCoords(tcoords);
  }
  const vtkNew<vtkImageData> image;
  image->SetDimensions(2, 2, 1);
  image->AllocateScalars(VTK_UNSIGNED_CHAR, 3);
  image->GetPointData()->GetScalars()->Fill(9.0);
  const vtkNew<vtkTexture> texture;
  texture->SetInputData(image);
  auto actor = flat_actor(data, kWhite);
  actor->SetTexture(texture);
  return actor;
}

TEST(ActorCopierTest, CopiesTexturesOfMeshesWithTextureCoordinates)
{
  EXPECT_NE(copies_of(textured_square(true)).at(0)->GetTexture(), nullptr);
  EXPECT_EQ(copies_of(textured_square(false)).at(0)->GetTexture(), nullptr);
}

TEST(ActorCopierTest, CountsTexturesThatItCannotCopy)
{
  const auto actor = textured_square(true);
  EXPECT_TRUE(left_out_of(actor).empty());
  actor->SetTexture(vtkNew<vtkTexture>());
  EXPECT_EQ(left_out_of(actor), (std::vector<std::string>{"textures"}));
  EXPECT_EQ(copies_of(actor).at(0)->GetTexture(), nullptr);
}

} // namespace
