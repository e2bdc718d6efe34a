// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// Meshes as engineers have them, each block a part of a model, shown in two views at once.
#include "GModel.h"
#include "GModelSet.h"
#include "GView.h"

#include "BrantVector.h"
#include "ModelFixture.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkBoundingBox.h>
#include <vtkCell.h>
#include <vtkCompositeDataIterator.h>
#include <vtkExodusIIReader.h>
#include <vtkGeometryFilter.h>
#include <vtkMath.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkSTLReader.h>
#include <vtkUnstructuredGrid.h>
#include <vtkUnstructuredGridReader.h>
#include <vtkXMLPolyDataReader.h>
#include <vtkXMLUnstructuredGridReader.h>

#include <algorithm>
#include <array>
#include <limits>
#include <ostream>
#include <set>
#include <string>

namespace {

using namespace morrow_test;

// --- Reading
// ---------------------------------------------------------------------------------------------------------

using Block = vtkSmartPointer<vtkPolyData>;
using Blocks = std::vector<Block>;

/// The outer faces of a block, without the fields on it.
Block surface_of(vtkDataSet* block)
{
  const vtkNew<vtkGeometryFilter> filter;
  filter->SetInputData(block);
  filter->Update();
  auto surface = Block::New();
  surface->CopyStructure(filter->GetOutput());
  return surface;
}

template<typename Reader>
Blocks read_one(const std::string& path)
{
  const vtkNew<Reader> reader;
  reader->SetFileName(path.c_str());
  reader->Update();
  return {surface_of(vtkDataSet::SafeDownCast(reader->GetOutputDataObject(0)))};
}

Blocks read_exodus(const std::string& path)
{
  const vtkNew<vtkExodusIIReader> reader;
  reader->SetFileName(path.c_str());
  reader->Update();
  auto* elements = vtkMultiBlockDataSet::SafeDownCast(reader->GetOutput()->GetBlock(0));
  Blocks blocks;
  const auto leaf = vtkSmartPointer<vtkCompositeDataIterator>::Take(elements->NewIterator());
  for (leaf->InitTraversal(); !leaf->IsDoneWithTraversal(); leaf->GoToNextItem()) {
    blocks.push_back(surface_of(vtkDataSet::SafeDownCast(leaf->GetCurrentDataObject())));
  }
  return blocks;
}

struct Mesh
{
  const char* name;
  const char* file;
  std::size_t num_blocks;
  Blocks (*read)(const std::string& path);
};

void PrintTo(const Mesh& mesh, std::ostream* out)
{
  *out << mesh.file;
}

constexpr Mesh kMeshes[] = {
    {"Mug", "mug.e", 2, read_exodus},
    {"Wedges", "mesh_fs8.exo", 3, read_exodus},
    {"Can", "can.vtu", 1, read_one<vtkXMLUnstructuredGridReader>},
    {"Hexahedra", "hexa.vtk", 1, read_one<vtkUnstructuredGridReader>},
    {"Cow", "cow.vtp", 1, read_one<vtkXMLPolyDataReader>},
    {"Case", "Vented_Rear_Case_With_Pi_Supports.vtp", 1, read_one<vtkXMLPolyDataReader>},
    {"Gears", "gears.stl", 1, read_one<vtkSTLReader>},
};

// --- Showing
// ---------------------------------------------------------------------------------------------------------

using Direction = std::array<double, 3>;

/// From the middle of things towards the camera. No axis and no diagonal: faces are seen at a slant.
Direction oblique()
{
  Direction direction{0.48, 0.36, 0.8};
  vtkMath::Normalize(direction.data());
  return direction;
}

Direction opposite(const Direction& direction)
{
  return {-direction[0], -direction[1], -direction[2]};
}

vtkBoundingBox bounds_of(const Blocks& blocks)
{
  vtkBoundingBox box;
  for (const Block& block : blocks) {
    box.AddBounds(block->GetBounds());
  }
  return box;
}

/// Looks from this direction onto everything in the box, in parallel projection.
void look_from(vtkRenderer* renderer, const Direction& direction, const vtkBoundingBox& box)
{
  const double diagonal = box.GetDiagonalLength();
  double centre[3];
  box.GetCenter(centre);
  vtkCamera* camera = renderer->GetActiveCamera();
  camera->ParallelProjectionOn();
  camera->SetParallelScale(0.52 * diagonal);
  camera->SetFocalPoint(centre);
  camera->SetPosition(centre[0] + 2.0 * diagonal * direction[0], centre[1] + 2.0 * diagonal * direction[1],
                      centre[2] + 2.0 * diagonal * direction[2]);
  camera->SetViewUp(0.0, 1.0, 0.0);
}

PixelPredicate drawn()
{
  return colour_is_not(kBlack);
}

/// Soft edges of small letters included, greys excluded.
PixelPredicate greenish()
{
  return [](Rgb pixel) { return pixel.g > pixel.r + 60 && pixel.g > pixel.b + 60; };
}
PixelPredicate reddish()
{
  return [](Rgb pixel) { return pixel.r > pixel.g + 60 && pixel.r > pixel.b + 60; };
}

/// A mesh in two views, seen from opposite sides.
class RealMeshTest : public ViewRenderTest, public ::testing::WithParamInterface<Mesh>
{
protected:
  void read(const std::string& path)
  {
    mBlocks = GetParam().read(path);
    ASSERT_EQ(mBlocks.size(), GetParam().num_blocks);
    mBox = bounds_of(mBlocks);
    look_from(mFront->get_renderer(), oblique(), mBox);
    look_from(mBack->get_renderer(), opposite(oblique()), mBox);
    mSet.add_model(&mModel);
    mSet.add_view(mFront.get());
    mSet.add_view(mBack.get());
    mModel.surface_normal_front_property()->SetColor(0.3, 0.3, 0.3);
    for (const Block& block : mBlocks) {
      mModel.add_part(block, [this](vtkDataObject* data, GView*) { return surface(data); });
    }
  }

  /// The grey surface of a block. Some of the meshes have faces that are turned inside out: no back faces.
  Props surface(vtkDataObject* data)
  {
    const vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputDataObject(data);
    auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetMapper(mapper);
    actor->SetProperty(mModel.surface_normal_front_property());
    return {actor};
  }

  Blocks mBlocks;
  vtkBoundingBox mBox;
  ScriptedModel mModel;
  GModelSet mSet;
  std::shared_ptr<GView> mFront = make_view(200, 200);
  std::shared_ptr<GView> mBack = make_view(200, 200);
  const WarningDisplayOn mHearVtk; // the model has silenced it
};

INSTANTIATE_TEST_SUITE_P(, RealMeshTest, ::testing::ValuesIn(kMeshes),
                         [](const auto& each) { return std::string(each.param.name); });

/// The number of pixels that one picture draws and the other does not.
int mask_difference(const Image& a, const Image& b)
{
  int different = 0;
  for (std::size_t i = 0; i < a.pixels().size(); ++i) {
    different += drawn()(a.pixels()[i]) != drawn()(b.pixels()[i]) ? 1 : 0;
  }
  return different;
}

// VTK alone, with its own passes, is the judge of what a mesh covers.
TEST_P(RealMeshTest, CoversInBothViewsWhatVtkCovers)
{
  MORROW_REAL_MESH(path, GetParam().file);
  ASSERT_NO_FATAL_FAILURE(read(path));
  mSet.render();
  for (GView* view : mSet.views()) {
    const Image image = read_pixels(view->get_render_window());
    Scene plain(200, 200);
    for (const Block& block : mBlocks) {
      plain.renderer()->AddActor(flat_actor(block, kWhite));
    }
    plain.renderer()->GetActiveCamera()->DeepCopy(view->get_renderer()->GetActiveCamera());
    EXPECT_EQ(mask_difference(image, plain.render()), 0);
    const int count = count_pixels(image, drawn());
    EXPECT_GT(count, 200 * 200 / 20);
    EXPECT_LT(count, 200 * 200 * 3 / 4);
  }
}

/// What a view draws lies within its window and touches no edge of it.
PixelRegion expect_framed(GView& view)
{
  const Image image = picture(view);
  const PixelRegion region = find_pixels(image, drawn());
  EXPECT_GT(region.min_x, 0);
  EXPECT_GT(region.min_y, 0);
  EXPECT_LT(region.max_x, image.width() - 1);
  EXPECT_LT(region.max_y, image.height() - 1);
  return region;
}

// VTK fits the camera to the window; the view decides along which side its angle is measured when a frame
// starts.
TEST_P(RealMeshTest, IsFramedInWindowsOfAnyShape)
{
  MORROW_REAL_MESH(path, GetParam().file);
  ASSERT_NO_FATAL_FAILURE(read(path));
  constexpr int sizes[][2] = {{200, 200}, {300, 150}, {150, 300}};
  for (const auto& size : sizes) {
    const auto view = make_view(size[0], size[1]);
    mSet.add_view(view.get());
    look_from(view->get_renderer(), oblique(), mBox);
    view->get_renderer()->GetActiveCamera()->ParallelProjectionOff();
    view->get_renderer()->ResetCamera(); // before the first frame, as hosts do it
    EXPECT_GT(expect_framed(*view).count, 0);
    view->get_renderer()->ResetCamera();
    const PixelRegion region = expect_framed(*view);
    EXPECT_GT(std::max(region.width(), region.height()), 75); // half of the shorter side
  }
}

TEST_P(RealMeshTest, IsShaded)
{
  MORROW_REAL_MESH(path, GetParam().file);
  ASSERT_NO_FATAL_FAILURE(read(path));
  const Image image = picture(*mFront);
  std::set<int> levels;
  for (const Rgb pixel : image.pixels()) {
    levels.insert(pixel.g);
  }
  EXPECT_GT(levels.size(), 3U); // a box shows three faces
}

TEST_P(RealMeshTest, RemovedBlocksLeaveAndHookedOnesComeBack)
{
  MORROW_REAL_MESH(path, GetParam().file);
  ASSERT_NO_FATAL_FAILURE(read(path));
  const Image whole = picture(*mFront);
  mModel.unhook_from_views();
  EXPECT_EQ(count_pixels(picture(*mFront), drawn()), 0);
  mModel.hook_to_views();
  EXPECT_EQ(mask_difference(picture(*mFront), whole), 0);
  int count = count_pixels(whole, drawn());
  for (const Block& block : mBlocks) {
    mModel.remove_part(block);
    const int left = count_pixels(picture(*mFront), drawn());
    EXPECT_LE(left, count);
    count = left;
  }
  EXPECT_EQ(count, 0);
  EXPECT_EQ(count_pixels(picture(*mBack), drawn()), 0);
}

// --- Labels
// ----------------------------------------------------------------------------------------------------------

/// A point and how far it lies in a direction.
struct Spot
{
  std::array<double, 3> point{};
  double height = -std::numeric_limits<double>::max();
};

std::array<double, 3> centre_of(vtkCell& cell)
{
  double bounds[6];
  cell.GetBounds(bounds);
  return {(bounds[0] + bounds[1]) / 2.0, (bounds[2] + bounds[3]) / 2.0, (bounds[4] + bounds[5]) / 2.0};
}

/// The cell nearest to a camera in this direction: nothing hides it.
Spot nearest_cell(const Blocks& blocks, const Direction& direction)
{
  Spot nearest;
  for (const Block& block : blocks) {
    for (vtkIdType id = 0; id < block->GetNumberOfCells(); ++id) {
      const auto point = centre_of(*block->GetCell(id));
      const double height = vtkMath::Dot(point.data(), direction.data());
      if (height > nearest.height) {
        nearest = {point, height};
      }
    }
  }
  return nearest;
}

BrantVector along(const Spot& spot, const Direction& direction, double distance)
{
  return BrantVector(spot.point.data()) + BrantVector(direction.data()) * distance;
}

// One label stands before the nearest cell and one behind it on the same line of sight, so the cell hides
// each from one side. Where both show, the red one covers the beginning of the green one.
TEST_P(RealMeshTest, LabelsShowInFrontAndHideBehind)
{
  MORROW_REAL_MESH(path, GetParam().file);
  ASSERT_NO_FATAL_FAILURE(read(path));
  const Spot spot = nearest_cell(mBlocks, oblique());
  const double step = 0.02 * mBox.GetDiagonalLength();
  const double depth = spot.height + nearest_cell(mBlocks, opposite(oblique())).height;
  mModel.add_label("####", along(spot, oblique(), step), BRANT_GREEN);
  mModel.add_label("##", along(spot, oblique(), -depth - step), BRANT_RED);
  mSet.render();
  const Image front = read_pixels(mFront->get_render_window());
  const Image back = read_pixels(mBack->get_render_window());
  EXPECT_GT(count_pixels(front, greenish()), 10);
  EXPECT_EQ(count_pixels(front, reddish()), 0);
  EXPECT_EQ(count_pixels(back, greenish()), 0);
  EXPECT_GT(count_pixels(back, reddish()), 10);
  mModel.set_render_mode(MRUtil::RENDER_WIREFRAME); // which lets all labels through
  mSet.render();
  EXPECT_GT(count_pixels(read_pixels(mFront->get_render_window()), reddish()), 10);
  EXPECT_GT(count_pixels(read_pixels(mBack->get_render_window()), greenish()), 10);
}

} // namespace
