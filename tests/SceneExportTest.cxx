// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Every format is written without a display and read back.
#include "SceneExport.h"

#include "ExportFixture.h"

#include <vtkActor2D.h>
#include <vtkAssembly.h>
#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkMatrix4x4.h>
#include <vtkPointData.h>
#include <vtkPolyDataMapper.h>
#include <vtkPolyDataNormals.h>
#include <vtkSphereSource.h>
#include <vtkStripper.h>
#include <vtkTexture.h>
#include <vtkVolume.h>

#include <limits>
#include <malloc.h>

namespace {

using namespace morrow_test;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

class SceneExportTest : public ::testing::TestWithParam<GView::ModelFileType>
{
protected:
  vtkNew<vtkRenderer> mRenderer;
  TemporaryFolder mFolder;

  void show(vtkPolyData* data) { mRenderer->AddActor(flat_actor(data, kRed)); }

  [[nodiscard]] std::string path() const { return mFolder.file("scene"); }

  SceneFile written(bool with_vertex_props = false)
  {
    morrow::write_scene(*mRenderer, GetParam(), path().c_str(), with_vertex_props);
    return read_scene(path(), GetParam());
  }
};

std::string name_of(const ::testing::TestParamInfo<GView::ModelFileType>& info)
{
  switch (info.param) {
  case GView::VRML:
    return "Vrml";
  case GView::OOGL:
    return "Oogl";
  case GView::OBJ:
    return "Obj";
  default:
    return "Iv";
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, SceneExportTest, ::testing::ValuesIn(kModelFileTypes), name_of);

TEST_P(SceneExportTest, WritesTrianglesWithTheirCoordinates)
{
  show(one_triangle());
  show(quad(2.0, 3.0, 4.0, 5.0, 6.0));
  const SceneFile scene = this->written();
  EXPECT_EQ(scene.num_triangles(), 1 + 2);
  EXPECT_EQ(scene.points.size(), 3U + 4U);
  EXPECT_TRUE(scene.has_point(0.0, 1.0, 0.0));
  EXPECT_TRUE(scene.has_point(4.0, 5.0, 6.0));
  EXPECT_FALSE(scene.has_point(4.0, 5.0, 0.0));
}

TEST_P(SceneExportTest, WritesPositionScaleRotationAndUserMatrix)
{
  const auto actor = flat_actor(one_triangle(), kRed);
  actor->SetScale(2.0, 3.0, 1.0);
  actor->RotateZ(90.0);
  actor->SetPosition(10.0, 20.0, 30.0);
  const vtkNew<vtkMatrix4x4> shear;
  shear->SetElement(0, 1, 0.5);
  actor->SetUserMatrix(shear);
  mRenderer->AddActor(actor);
  const SceneFile scene = this->written();
  EXPECT_TRUE(scene.has_point(20.0, 20.0, 30.0)); // (0, 0, 0)
  EXPECT_TRUE(scene.has_point(21.0, 22.0, 30.0)); // (1, 0, 0): scaled to 2, turned to y, sheared
  EXPECT_TRUE(scene.has_point(17.0, 20.0, 30.0)); // (0, 1, 0): scaled to 3, turned to -x
}

TEST_P(SceneExportTest, TurnsMirroredFacesRound)
{
  const auto actor = flat_actor(one_triangle(), kRed);
  actor->SetScale(-1.0, 1.0, 1.0);
  mRenderer->AddActor(actor);
  EXPECT_GT(this->written().turn(0), 0.0);
}

TEST_P(SceneExportTest, WritesLines)
{
  show(polyline({0, 0, 0, 1, 0, 0, 1, 2, 3}));
  const SceneFile scene = this->written();
  ASSERT_EQ(scene.lines.size(), 1U);
  EXPECT_EQ(scene.lines[0].size(), 3U);
  EXPECT_TRUE(scene.has_point(1.0, 2.0, 3.0));
  EXPECT_EQ(scene.num_triangles(), 0);
}

TEST_P(SceneExportTest, WritesVertices)
{
  show(vertices({0, 0, 0, 1, 2, 3}));
  const SceneFile scene = this->written();
  if (GetParam() != GView::VRML) { // VTK's reader passes over points
    EXPECT_EQ(scene.num_vertices, 2);
    EXPECT_TRUE(scene.has_point(1.0, 2.0, 3.0));
  } else {
    EXPECT_EQ(count_text(scene.text, "PointSet"), 1);
    EXPECT_EQ(count_text(scene.text, "1 2 3,"), 1);
  }
}

TEST_P(SceneExportTest, WritesLinesAndFacesOfOneMesh)
{
  const auto mesh = quad(0, 0, 1, 1);
  const vtkNew<vtkCellArray> lines;
  lines->InsertNextCell({0, 1});
  lines->InsertNextCell({1, 2});
  mesh->SetLines(lines);
  show(mesh);
  const SceneFile scene = this->written();
  EXPECT_EQ(scene.lines.size(), 2U);
  EXPECT_EQ(scene.num_triangles(), 2);
}

TEST_P(SceneExportTest, WritesPolygonsOfManyCorners)
{
  const int corners = 25;
  const vtkNew<vtkPoints> points;
  const vtkNew<vtkCellArray> polys;
  polys->InsertNextCell(corners);
  for (int i = 0; i < corners; ++i) {
    points->InsertNextPoint(std::cos(6.28 * i / corners), std::sin(6.28 * i / corners), 0.0);
    polys->InsertCellPoint(i);
  }
  const vtkNew<vtkPolyData> mesh;
  mesh->SetPoints(points);
  mesh->SetPolys(polys);
  show(mesh);
  EXPECT_EQ(this->written().num_triangles(), corners - 2);
}

TEST_P(SceneExportTest, WritesStripsBesidePolygons)
{
  const vtkNew<vtkStripper> stripper;
  stripper->SetInputData(sphere(1.0, 8));
  stripper->Update();
  ASSERT_GT(stripper->GetOutput()->GetNumberOfStrips(), 0);
  const auto count = sphere(1.0, 8)->GetNumberOfPolys();
  const vtkNew<vtkPolyData> mesh;
  mesh->ShallowCopy(stripper->GetOutput());
  const vtkNew<vtkCellArray> polys;
  polys->InsertNextCell({0, 1, 2});
  mesh->SetPolys(polys);
  show(mesh);
  EXPECT_EQ(this->written().num_triangles(), count + 1);
}

TEST_P(SceneExportTest, WritesMeshesWithAndWithoutNormals)
{
  const auto plain = sphere();
  const vtkNew<vtkPolyDataNormals> normals;
  normals->SetInputData(plain);
  normals->SplittingOff();
  normals->Update();
  const vtkNew<vtkPolyData> bare;
  bare->SetPoints(plain->GetPoints());
  bare->SetPolys(plain->GetPolys());
  ASSERT_EQ(bare->GetPointData()->GetNormals(), nullptr);
  show(bare);
  show(normals->GetOutput());
  EXPECT_EQ(this->written().num_triangles(), 2 * plain->GetNumberOfPolys());
}

TEST_P(SceneExportTest, WritesColoursOfPoints)
{
  const auto mesh = one_triangle();
  const vtkNew<vtkUnsignedCharArray> colors;
  colors->SetNumberOfComponents(3);
  colors->InsertNextTuple3(255, 0, 0);
  colors->InsertNextTuple3(0, 255, 0);
  colors->InsertNextTuple3(0, 0, 255);
  mesh->GetPointData()->SetScalars(colors);
  show(mesh);
  const SceneFile scene = this->written();
  EXPECT_EQ(scene.num_triangles(), 1);
  if (GetParam() == GView::OOGL) {
    ASSERT_EQ(scene.colors.size(), 3U);
    EXPECT_EQ(scene.colors[1], (std::array<double, 4>{0.0, 1.0, 0.0, 1.0}));
  } else if (GetParam() == GView::VRML) {
    EXPECT_EQ(count_text(scene.text, "0 1 0,"), 2); // the point and its colour
  } else if (GetParam() == GView::IV) {
    EXPECT_EQ(count_text(scene.text, "0xff00ff00"), 1);
  }
}

TEST_P(SceneExportTest, WritesLinesAndVerticesWithScalars)
{
  for (const bool per_cell : {false, true}) {
    for (const auto& mesh : {polyline({0, 0, 0, 1, 0, 0, 1, 2, 3}), vertices({0, 0, 0, 1, 2, 3, 4, 5, 6})}) {
      const vtkNew<vtkDoubleArray> values;
      const auto count = per_cell ? mesh->GetNumberOfCells() : mesh->GetNumberOfPoints();
      for (vtkIdType i = 0; i < count; ++i) {
        values->InsertNextValue(static_cast<double>(i));
      }
      vtkDataSetAttributes* data = mesh->GetPointData();
      if (per_cell) {
        data = mesh->GetCellData();
      }
      data->SetScalars(values);
      show(mesh);
    }
  }
  const SceneFile scene = this->written();
  EXPECT_EQ(scene.lines.size(), 2U);
  EXPECT_TRUE(scene.has_point(1.0, 2.0, 3.0));
}

// VTK's exporters take them for colours of points, of which there are more.
TEST_P(SceneExportTest, WritesColoursOfCells)
{
  const auto mesh = sphere(1.0, 8);
  const vtkNew<vtkDoubleArray> values;
  for (vtkIdType i = 0; i < mesh->GetNumberOfCells(); ++i) {
    values->InsertNextValue(static_cast<double>(i));
  }
  mesh->GetCellData()->SetScalars(values);
  show(mesh);
  const SceneFile scene = this->written();
  EXPECT_EQ(scene.num_triangles(), mesh->GetNumberOfPolys());
  if (GetParam() == GView::OOGL) {
    EXPECT_EQ(scene.colors.size(), scene.points.size());
    EXPECT_EQ(static_cast<int>(scene.points.size()), 3 * scene.num_triangles());
  } else if (GetParam() == GView::OBJ) {
    EXPECT_EQ(static_cast<vtkIdType>(scene.points.size()), mesh->GetNumberOfPoints()); // has no such colours
  }
}

TEST_P(SceneExportTest, WritesOnlyFiniteNumbers)
{
  const auto mesh = sphere(1.0, 8);
  const auto count = mesh->GetNumberOfPolys();
  mesh->GetPoints()->SetPoint(0, NaN, 0.0, 0.0); // the pole, of eight triangles
  mesh->GetPoints()->SetPoint(1, 0.0, HUGE_VAL, 0.0);
  show(mesh);
  const SceneFile scene = this->written();
  EXPECT_EQ(scene.num_triangles(), count - 16);
  EXPECT_EQ(count_text(scene.text, "nan") + count_text(scene.text, "inf "), 0);
}

TEST_P(SceneExportTest, WritesIndicesThatExist)
{
  const auto mesh = one_triangle();
  const vtkNew<vtkCellArray> polys;
  polys->InsertNextCell({0, 1, 7});
  polys->InsertNextCell({0, 1, 2});
  polys->InsertNextCell({0, 1, -3});
  mesh->SetPolys(polys);
  show(mesh);
  EXPECT_EQ(this->written().num_triangles(), 1);
}

TEST_P(SceneExportTest, WritesCompositeData)
{
  mRenderer->AddActor(flat_composite_actor(
      multiblock({one_triangle(), nullptr, quad(5, 5, 6, 6), vtkNew<vtkPolyData>()}), kRed));
  const SceneFile scene = this->written();
  EXPECT_EQ(scene.num_triangles(), 3);
  EXPECT_TRUE(scene.has_point(6.0, 6.0, 0.0));
}

TEST_P(SceneExportTest, SurvivesEmptyAndInputLessProps)
{
  const PrintCapture prints;
  const vtkNew<vtkActor> without_input;
  without_input->SetMapper(vtkNew<vtkPolyDataMapper>());
  mRenderer->AddActor(without_input);
  mRenderer->AddActor(vtkNew<vtkActor>());
  mRenderer->AddActor(flat_actor(vtkNew<vtkPolyData>(), kRed));
  mRenderer->AddActor(flat_composite_actor(multiblock({}), kRed));
  mRenderer->AddActor(flat_composite_actor(multiblock({nullptr}), kRed));
  mRenderer->AddViewProp(vtkNew<vtkVolume>());
  mRenderer->AddViewProp(vtkNew<vtkActor2D>());
  show(one_triangle());
  EXPECT_EQ(this->written().num_triangles(), 1);
  EXPECT_EQ(prints.warnings(), "Model export leaves out actors without data: 2\n"
                               "Model export leaves out props of class vtkVolume: 1\n");
}

TEST_P(SceneExportTest, WritesAnEmptySceneOfActorsThatShowNothing)
{
  show(vtkNew<vtkPolyData>());
  morrow::write_scene(*mRenderer, GetParam(), this->path().c_str(), true);
  EXPECT_EQ(mFolder.num_files(), GetParam() == GView::OBJ ? 2 : 1);
}

TEST_P(SceneExportTest, ReportsASceneWithoutActorsAsVtkDoes)
{
  const ExpectedVtkErrors expected{"no actors found"};
  morrow::write_scene(*mRenderer, GetParam(), this->path().c_str(), true);
  EXPECT_EQ(mFolder.num_files(), 0);
}

TEST_P(SceneExportTest, ReportsAFileThatCannotBeWrittenAsVtkDoes)
{
  show(one_triangle());
  const ExpectedVtkErrors expected{"unable to open"};
  morrow::write_scene(*mRenderer, GetParam(), mFolder.file("absent/scene").c_str(), true);
  EXPECT_EQ(mFolder.num_files(), 0);
}

TEST_P(SceneExportTest, WritesTextures)
{
  const auto mesh = quad(0, 0, 1, 1);
  const vtkNew<vtkFloatArray> tcoords;
  tcoords->SetNumberOfComponents(2);
  for (const double each : {0.0, 0.0, 1.0, 0.0, 1.0, 1.0, 0.0, 1.0}) {
    tcoords->InsertNextValue(static_cast<float>(each));
  }
  mesh->GetPointData()->SetTCoords(tcoords);
  const vtkNew<vtkImageData> image;
  image->SetDimensions(2, 2, 1);
  image->AllocateScalars(VTK_UNSIGNED_CHAR, 3);
  image->GetPointData()->GetScalars()->Fill(0xab);
  const vtkNew<vtkTexture> texture;
  texture->SetInputData(image);
  const auto actor = flat_actor(mesh, kWhite);
  actor->SetTexture(texture);
  mRenderer->AddActor(actor);
  const SceneFile scene = this->written();
  EXPECT_EQ(scene.num_triangles(), 2);
  if (GetParam() == GView::OBJ) {
    EXPECT_EQ(count_text(read_text(this->path() + ".mtl"), "map_Kd scenetexture1.png"), 1);
    const Image picture = read_png(this->path() + "texture1.png");
    EXPECT_EQ(count_pixels(picture, colour_is({0xab, 0xab, 0xab})), 4);
  } else if (GetParam() != GView::OOGL) { // which has no textures
    EXPECT_EQ(count_text(scene.text, "ababab"), 4);
  }
}

// VTK's exporter of Inventor files leaves a buffer's end a little further with each texture that it refuses.
TEST_P(SceneExportTest, SurvivesManyTexturesWithoutPicture)
{
  const PrintCapture prints;
  for (int i = 0; i < 200; ++i) {
    const auto actor = flat_actor(one_triangle(), kWhite);
    actor->SetTexture(vtkNew<vtkTexture>());
    mRenderer->AddActor(actor);
  }
  EXPECT_EQ(this->written().num_triangles(), 200);
  EXPECT_EQ(prints.warnings(), "Model export leaves out textures: 200\n");
}

TEST_P(SceneExportTest, WritesFilesWithAnyName)
{
  show(one_triangle());
  for (const char* name : {"Z\xc3\xbcrich \xe6\xa8\xa1", "100%d %s", "a.b.c"}) {
    const std::string path = mFolder.file(name);
    morrow::write_scene(*mRenderer, GetParam(), path.c_str(), true);
    EXPECT_EQ(read_scene(path, GetParam()).num_triangles(), 1) << name;
  }
}

TEST_P(SceneExportTest, WritesNumbersAsTheFormatHasThemWhateverTheHostsLocale)
{
  mRenderer->GetActiveCamera()->SetPosition(1234.5, 0.25, 1234567.5);
  show(quad(1234.5, 0.25, 2345.5, 0.75, 0.5));
  {
    const CommaLocale host;
    morrow::write_scene(*mRenderer, GetParam(), this->path().c_str(), true);
    EXPECT_EQ(CommaLocale::streamed(), "1.234.567");
  }
  const SceneFile scene = read_scene(this->path(), GetParam()); // VTK's readers follow the locale too
  EXPECT_TRUE(scene.has_point(1234.5, 0.25, 0.5));
  EXPECT_TRUE(scene.has_point(2345.5, 0.75, 0.5));
  EXPECT_EQ(count_text(scene.text, "0,25"), 0);
}

TEST_P(SceneExportTest, WritesTheSameFileAgain)
{
  show(sphere());
  const std::string first = this->written().text;
  EXPECT_EQ(this->written().text, first);
}

TEST_P(SceneExportTest, TheExporterThatStaysKeepsNothingElseAlive)
{
  vtkWeakPointer<vtkPolyData> data;
  vtkWeakPointer<vtkActor> actor;
  vtkWeakPointer<vtkRenderer> renderer;
  {
    const vtkNew<vtkRenderer> scene;
    const auto mesh = one_triangle();
    const auto shown = flat_actor(mesh, kRed);
    scene->AddActor(shown);
    data = mesh;
    actor = shown;
    renderer = scene.Get();
    morrow::write_scene(*scene, GetParam(), this->path().c_str(), true);
  }
  EXPECT_EQ(data, nullptr);
  EXPECT_EQ(actor, nullptr);
  EXPECT_EQ(renderer, nullptr);
}

// Without the sanitizers, which have an allocator of their own and measure nothing here.
TEST_P(SceneExportTest, TheExporterThatStaysIsSmall)
{
  show(sphere());
  const std::string name = mFolder.file(std::string(200, 'n'));
  const auto write = [&] { morrow::write_scene(*mRenderer, GetParam(), name.c_str(), true); };
  for (int i = 0; i < 5; ++i) {
    write(); // what VTK keeps for later
  }
  const int calls = 100;
  const auto before = mallinfo2().uordblks;
  for (int i = 0; i < calls; ++i) {
    write();
  }
  const auto after = mallinfo2().uordblks;
  EXPECT_LT(after, before + 1000U * calls);
}

TEST_P(SceneExportTest, ThePipelineMayChangeTheScene)
{
  const vtkNew<vtkSphereSource> source;
  const vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputConnection(source->GetOutputPort());
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetMapper(mapper);
  auto assembly = vtkSmartPointer<vtkAssembly>::New();
  assembly->AddPart(actor);
  assembly->AddPart(flat_actor(one_triangle(), kRed));
  mRenderer->AddViewProp(assembly);
  const EventHook hook(source, vtkCommand::StartEvent, [&] {
    mRenderer->RemoveAllViewProps();
    if (assembly != nullptr) {
      assembly->RemovePart(actor);
    }
    assembly = nullptr;
    actor = nullptr;
  });
  EXPECT_EQ(this->written().num_triangles(), 96 + 1);
}

TEST(ObjExportTest, NamesItsFilesAfterThePrefix)
{
  const TemporaryFolder folder;
  const vtkNew<vtkRenderer> renderer;
  const auto actor = flat_actor(one_triangle(), kRed);
  actor->GetProperty()->SetDiffuse(1.0);
  actor->GetProperty()->SetDiffuseColor(0.25, 0.5, 0.75);
  renderer->AddActor(actor);
  morrow::write_scene(*renderer, GView::OBJ, folder.file("part.v2").c_str(), true);
  EXPECT_EQ(folder.num_files(), 2);
  EXPECT_EQ(count_text(read_text(folder.file("part.v2.obj")), "mtllib part.v2.mtl\n"), 1);
  EXPECT_EQ(count_text(read_text(folder.file("part.v2.obj")), "usemtl mtl1\n"), 1);
  const std::string material = read_text(folder.file("part.v2.mtl"));
  EXPECT_EQ(count_text(material, "newmtl mtl1\n"), 1);
  EXPECT_EQ(count_text(material, "Kd 0.25 0.5 0.75\n"), 1);
}

TEST(SceneExportTypesTest, AreFourWithTheirNumbers)
{
  for (int type = 0; type < 300; ++type) {
    EXPECT_EQ(morrow::is_model_file_type(type), type >= 100 && type <= 103) << type;
  }
  EXPECT_FALSE(morrow::is_model_file_type(-1));
  EXPECT_EQ(GView::VRML, 100);
  EXPECT_EQ(GView::OOGL, 101);
  EXPECT_EQ(GView::OBJ, 102);
  EXPECT_EQ(GView::IV, 103);
}

TEST(SceneExportTypesTest, HaveTheirOwnFileHeads)
{
  const TemporaryFolder folder;
  const vtkNew<vtkRenderer> renderer;
  renderer->AddActor(flat_actor(one_triangle(), kRed));
  const auto head = [&](int type, const char* ending) {
    morrow::write_scene(*renderer, type, folder.file("f").c_str(), true);
    const std::string text = read_text(folder.file(std::string("f") + ending));
    return text.substr(0, text.find('\n'));
  };
  EXPECT_EQ(head(GView::VRML, ""), "#VRML V2.0 utf8");
  EXPECT_EQ(head(GView::OOGL, "").rfind("# Geomview OOGL", 0), 0U);
  EXPECT_EQ(head(GView::IV, ""), "#Inventor V2.0 ascii");
  EXPECT_EQ(count_text(head(GView::OBJ, ".obj"), "wavefront obj"), 1);
}

TEST(SceneExportTypesTest, AnUnknownOneWritesNothing)
{
  const TemporaryFolder folder;
  const vtkNew<vtkRenderer> renderer;
  renderer->AddActor(flat_actor(one_triangle(), kRed));
  for (const int type : {-1, 5, 99, 104}) {
    morrow::write_scene(*renderer, type, folder.file("f").c_str(), true);
  }
  EXPECT_EQ(folder.num_files(), 0);
}

} // namespace
