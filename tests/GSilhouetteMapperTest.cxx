// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GSilhouetteMapper.h"

#include "LiteralSilhouette.h"
#include "SilhouetteFixture.h"

#include <vtkCellData.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkMatrix4x4.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkPointData.h>
#include <vtkSphereSource.h>

#include <array>
#include <sstream>

namespace {

using namespace morrow_test;

using Rgba = std::array<float, 4>;
using Bounds = std::array<double, 6>;

constexpr Bounds kNoBounds = {1, -1, 1, -1, 1, -1};

/// The colour that a mapper gives to data whose cell and point scalars are these.
Rgba color_of(vtkDataArray* cell_scalars, vtkDataArray* point_scalars, bool visible = true)
{
  const auto data = ridge(0, 1, 0);
  data->GetCellData()->SetScalars(cell_scalars);
  data->GetPointData()->SetScalars(point_scalars);
  vtkNew<vtkProperty> property;
  property->SetColor(0.25, 0.5, 0.75);
  property->SetOpacity(0.125);
  vtkNew<GSilhouetteMapper> mapper;
  mapper->SetScalarVisibility(visible);
  Rgba color = {-1, -1, -1, -1};
  mapper->get_color(property, data, color.data());
  return color;
}

constexpr Rgba kPropertyColor = {0.25F, 0.5F, 0.75F, 0.125F};

float part(int byte)
{
  return static_cast<float>(byte / 255.0);
}

Bounds bounds_of(vtkMapper* mapper)
{
  const double* bounds = mapper->GetBounds();
  return {bounds[0], bounds[1], bounds[2], bounds[3], bounds[4], bounds[5]};
}

TEST(GSilhouetteMapperTest, Names)
{
  vtkNew<GSilhouetteMapper> mapper;
  EXPECT_STREQ(mapper->GetClassName(), "GSilhouetteMapper");
  EXPECT_TRUE(mapper->IsA("GSilhouetteMapper"));
  EXPECT_TRUE(mapper->IsA("vtkMapper"));
  EXPECT_FALSE(mapper->IsA("vtkPolyDataMapper"));
  const auto another = vtkSmartPointer<vtkMapper>::Take(mapper->NewInstance());
  EXPECT_STREQ(another->GetClassName(), "GSilhouetteMapper");
  std::ostringstream text;
  mapper->Print(text);
  EXPECT_NE(text.str().find("GSilhouetteMapper"), std::string::npos);
}

TEST(GSilhouetteMapperTest, ComputesAsTheLiteralVersion)
{
  const auto data = ball();
  vtkNew<vtkCamera> camera;
  camera->SetPosition(1.0, 2.0, 3.0);
  vtkMatrix4x4* matrix = camera->GetCompositeProjectionTransformMatrix(1.0, 0.0, 1.0);
  std::vector<float> expected;
  morrow_test::LiteralSilhouette::run(matrix, data, expected);
  std::vector<float> edges = {1.0F};
  vtkNew<GSilhouetteMapper> mapper;
  mapper->compute(matrix, data, edges);
  EXPECT_FALSE(expected.empty());
  EXPECT_EQ(edges, expected);
}

TEST(GSilhouetteMapperTest, ComputesNothingOfNull)
{
  vtkNew<GSilhouetteMapper> mapper;
  vtkNew<vtkMatrix4x4> matrix;
  std::vector<float> edges = {1.0F};
  mapper->compute(nullptr, ridge(0, 1, 0), edges);
  EXPECT_TRUE(edges.empty());
  edges = {1.0F};
  mapper->compute(matrix, nullptr, edges);
  EXPECT_TRUE(edges.empty());
}

TEST(GSilhouetteMapperTest, TheColourIsThePropertysWithoutByteScalars)
{
  vtkNew<vtkFloatArray> floats;
  floats->InsertNextValue(1.0F);
  EXPECT_EQ(color_of(nullptr, nullptr), kPropertyColor);
  EXPECT_EQ(color_of(floats, nullptr), kPropertyColor);
  EXPECT_EQ(color_of(floats, floats), kPropertyColor);
}

TEST(GSilhouetteMapperTest, TheFirstCellsColourComesBeforeTheFirstPoints)
{
  const auto cells = bytes({10, 20, 30, 40});
  cells->InsertNextTypedTuple(std::array<unsigned char, 4>{1, 1, 1, 1}.data());
  const auto points = bytes({50, 60, 70, 80});
  const Rgba of_cell = {part(10), part(20), part(30), part(40)};
  const Rgba of_point = {part(50), part(60), part(70), part(80)};
  vtkNew<vtkFloatArray> floats;
  floats->InsertNextValue(1.0F);
  EXPECT_EQ(color_of(cells, points), of_cell);
  EXPECT_EQ(color_of(nullptr, points), of_point);
  EXPECT_EQ(color_of(floats, points), of_point);
}

TEST(GSilhouetteMapperTest, ScalarsThatAreNotVisibleGiveNoColour)
{
  EXPECT_EQ(color_of(bytes({10, 20, 30, 40}), bytes({50, 60, 70, 80}), false), kPropertyColor);
}

TEST(GSilhouetteMapperTest, MissingComponentsAreDarkAndOpaque)
{
  EXPECT_EQ(color_of(bytes({10}), nullptr), (Rgba{part(10), 0, 0, 1}));
  EXPECT_EQ(color_of(bytes({10, 20}), nullptr), (Rgba{part(10), part(20), 0, 1}));
  EXPECT_EQ(color_of(bytes({10, 20, 255}), nullptr), (Rgba{part(10), part(20), 1, 1}));
  EXPECT_EQ(color_of(bytes({10, 20, 30, 0}), nullptr), (Rgba{part(10), part(20), part(30), 0}));
}

TEST(GSilhouetteMapperTest, AFifthComponentDoesNotCount)
{
  EXPECT_EQ(color_of(bytes({10, 20, 30, 40, 50}), nullptr), (Rgba{part(10), part(20), part(30), part(40)}));
}

TEST(GSilhouetteMapperTest, ByteScalarsWithoutATupleGiveNoColour)
{
  EXPECT_EQ(color_of(bytes({10, 20, 30}, 0), nullptr), kPropertyColor);
}

TEST(GSilhouetteMapperTest, TheColourOfNull)
{
  vtkNew<GSilhouetteMapper> mapper;
  Rgba color = {};
  mapper->get_color(nullptr, nullptr, color.data());
  EXPECT_EQ(color, (Rgba{1, 1, 1, 1}));
  mapper->get_color(nullptr, nullptr, nullptr);
}

TEST(GSilhouetteMapperTest, BoundsOfNothing)
{
  vtkNew<GSilhouetteMapper> mapper;
  EXPECT_EQ(bounds_of(mapper), kNoBounds);
  mapper->SetInputDataObject(vtkNew<vtkPolyData>());
  EXPECT_EQ(bounds_of(mapper), kNoBounds);
  mapper->SetInputDataObject(vtkNew<vtkMultiBlockDataSet>());
  EXPECT_EQ(bounds_of(mapper), kNoBounds);
  mapper->SetInputDataObject(nullptr);
  EXPECT_EQ(bounds_of(mapper), kNoBounds);
}

TEST(GSilhouetteMapperTest, BoundsOfPolygonData)
{
  const auto data = quad(-1, -2, 3, 4, 5);
  vtkNew<GSilhouetteMapper> mapper;
  mapper->SetInputDataObject(data);
  EXPECT_EQ(bounds_of(mapper), (Bounds{-1, 3, -2, 4, 5, 5}));
  data->DeepCopy(quad(0, 0, 1, 1)); // found anew each time
  EXPECT_EQ(bounds_of(mapper), (Bounds{0, 1, 0, 1, 0, 0}));
  mapper->SetInputDataObject(nullptr);
  EXPECT_EQ(bounds_of(mapper), kNoBounds);
}

TEST(GSilhouetteMapperTest, BoundsOfAllLeaves)
{
  const auto inner = multiblock({quad(5, 5, 6, 6, 7), nullptr, vtkNew<vtkPolyData>()});
  const auto outer = multiblock({nullptr, quad(-1, -2, 3, 4)});
  outer->SetBlock(2, inner);
  outer->SetBlock(3, vtkNew<vtkImageData>()); // at the origin, but not polygons
  vtkNew<GSilhouetteMapper> mapper;
  mapper->SetInputDataObject(outer);
  EXPECT_EQ(bounds_of(mapper), (Bounds{-1, 6, -2, 6, 0, 7}));
}

TEST(GSilhouetteMapperTest, BoundsOfACompositeAreFoundAnewWhenItOrTheMapperChanges)
{
  const auto leaf = quad(0, 0, 1, 1);
  const auto blocks = multiblock({leaf});
  vtkNew<GSilhouetteMapper> mapper;
  mapper->SetInputDataObject(blocks);
  const Bounds before = bounds_of(mapper);
  const auto move = [leaf](double by) {
    leaf->GetPoints()->SetPoint(0, -by, 0, 0);
    leaf->GetPoints()->Modified();
  };
  move(1);
  EXPECT_EQ(bounds_of(mapper), before) << "a leaf says nothing";
  blocks->Modified();
  EXPECT_EQ(bounds_of(mapper)[0], -1.0);
  move(2);
  EXPECT_EQ(bounds_of(mapper)[0], -1.0);
  mapper->Modified();
  EXPECT_EQ(bounds_of(mapper)[0], -2.0);
}

TEST(GSilhouetteMapperTest, BoundsOfWhatItsSourceWillMake)
{
  vtkNew<vtkSphereSource> source;
  source->SetRadius(2.0);
  vtkNew<GSilhouetteMapper> mapper;
  mapper->SetInputConnection(source->GetOutputPort());
  EXPECT_EQ(bounds_of(mapper)[5], 2.0);
}

TEST(GSilhouetteMapperTest, BoundsOfOtherData)
{
  vtkNew<vtkImageData> image;
  image->SetDimensions(2, 2, 2);
  vtkNew<GSilhouetteMapper> mapper;
  mapper->SetInputDataObject(image);
  EXPECT_EQ(bounds_of(mapper), kNoBounds);
}

TEST(GSilhouetteMapperTest, NullDrawsNothing)
{
  vtkNew<GSilhouetteMapper> mapper;
  vtkNew<vtkRenderer> renderer;
  vtkNew<vtkActor> actor;
  mapper->Render(nullptr, nullptr);
  mapper->Render(nullptr, actor);
  mapper->Render(renderer, actor); // it has no window
  mapper->ReleaseGraphicsResources(nullptr);
}

} // namespace
