// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Scenes that a view writes, read back. Each format by itself is in SceneExportTest.cxx.
#include "ExportFixture.h"

#include <vtkActor2D.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>

#include <string>

namespace {

using namespace morrow_test;

class WriteModelTest : public ViewTest
{
protected:
  TemporaryFolder mFolder;

  [[nodiscard]] std::string path() const { return mFolder.file("scene"); }

  [[nodiscard]] SceneFile written(GView& view, GView::ModelFileType type = GView::OBJ) const
  {
    EXPECT_TRUE(view.write_model(this->path().c_str(), type));
    return read_scene(this->path(), type);
  }
};

TEST_F(WriteModelTest, WritesPartsThatTheUpdateBrings)
{
  for (const auto type : kModelFileTypes) {
    ViewStage stage;
    stage.model.on_update = [&] {
      stage.model.add_part(quad(2, 3, 4, 5, 6), show_flat(kGreen));
      stage.model.add_label("label", BrantVector(0.0, 0.0, 0.0), BrantColor(255, 255, 0));
    };
    const FrameCounter frames(stage.window());
    const SceneFile scene = this->written(*stage.view, type);
    EXPECT_EQ(scene.num_triangles(), 2);
    EXPECT_TRUE(scene.has_point(4.0, 5.0, 6.0));
    EXPECT_EQ(stage.model.updates, 1);
    EXPECT_EQ(frames.starts(), 0);
    EXPECT_NE(stage.window()->GetNeverRendered(), 0);
    EXPECT_EQ(stage.window()->GetMapped(), 0);
  }
}

TEST_F(WriteModelTest, OtherTypesDoNothing)
{
  ViewStage stage;
  show(*stage.view, flat_square());
  const PrintCapture prints;
  for (const int type : {-1, 5, 10, 99, 104, 1000}) {
    EXPECT_FALSE(stage.view->write_model(this->path().c_str(), static_cast<GView::ModelFileType>(type)));
  }
  EXPECT_EQ(mFolder.num_files(), 0);
  EXPECT_EQ(stage.model.updates, 0);
  EXPECT_TRUE(prints.calls().empty());
}

TEST_F(WriteModelTest, AnIntNamesAType)
{
  const auto view = make_view();
  show(*view, flat_square());
  const int code = 103;
  EXPECT_TRUE(view->write_model(this->path().c_str(), static_cast<GView::ModelFileType>(code)));
  EXPECT_EQ(read_iv(this->path()).num_triangles(), 2);
}

TEST_F(WriteModelTest, NamesThatAreNoneDoNothing)
{
  ViewStage stage;
  EXPECT_FALSE(stage.view->write_model(nullptr, GView::VRML));
  EXPECT_FALSE(stage.view->write_model("", GView::OBJ));
  EXPECT_EQ(stage.model.updates, 0);
}

TEST_F(WriteModelTest, WithoutAWindowDoesNothing)
{
  ViewStage stage;
  show(*stage.view, flat_square());
  const vtkSmartPointer<vtkRenderWindow> window = stage.window();
  stage.view->set_render_window(nullptr);
  EXPECT_FALSE(stage.view->write_model(this->path().c_str(), GView::VRML));
  EXPECT_EQ(mFolder.num_files(), 0);
  EXPECT_EQ(stage.model.updates, 0);
  stage.view->set_render_window(window);
  EXPECT_EQ(this->written(*stage.view).num_triangles(), 2);
}

TEST_F(WriteModelTest, HasTheMainRenderersPropsOnly)
{
  const auto view = make_view();
  show(*view, flat_square());
  show(*view, vtkNew<vtkActor2D>());
  view->enable_overlay();
  view->get_overlay_renderer()->AddActor(flat_actor(sphere(), kGreen));
  const vtkNew<vtkRenderer> other;
  other->AddActor(flat_actor(sphere(), kGreen));
  view->get_render_window()->AddRenderer(other);
  EXPECT_EQ(this->written(*view).num_triangles(), 2);
}

TEST_F(WriteModelTest, HasTheMainRenderersPropsAlsoWhenItIsNotTheFirst)
{
  const vtkNew<vtkRenderWindow> window;
  const vtkNew<vtkRenderer> first;
  first->AddActor(flat_actor(sphere(), kGreen));
  window->AddRenderer(first);
  const auto view = make_view();
  show(*view, flat_square());
  view->set_render_window(window);
  EXPECT_EQ(this->written(*view).num_triangles(), 2);
}

TEST_F(WriteModelTest, HasSurfacesWhateverTheirStyle)
{
  const auto view = make_view();
  const auto actor = flat_square();
  actor->GetProperty()->SetRepresentationToWireframe();
  const vtkNew<vtkInformation> keys;
  keys->Set(MRUtil::RENDER_MODE(), MRUtil::RENDER_WIREFRAME);
  actor->SetPropertyKeys(keys);
  show(*view, actor);
  EXPECT_EQ(this->written(*view).num_triangles(), 2);
}

TEST_F(WriteModelTest, HasVertexPropsWhileVerticesAreVisible)
{
  const auto view = make_view();
  show(*view, flat_square());
  const auto points = flat_actor(vertices({0, 0, 0, 1, 1, 1}), kGreen);
  const vtkNew<vtkInformation> keys;
  keys->Set(MRUtil::VERTEX_VISIBILITY(), 1);
  points->SetPropertyKeys(keys);
  show(*view, points);
  EXPECT_EQ(this->written(*view).num_vertices, 0);
  view->set_vertex_visibility(true);
  EXPECT_EQ(this->written(*view).num_vertices, 2);
}

TEST_F(WriteModelTest, HasTheBackgroundOfTheView)
{
  const auto view = make_view();
  view->set_background(4); // green
  show(*view, flat_square());
  const SceneFile scene = this->written(*view, GView::VRML);
  EXPECT_EQ(count_text(scene.text, "skyColor [0.000000 1.000000 0.000000"), 1);
}

TEST_F(WriteModelTest, WhileRenderingIsOffHasWhatTheViewHas)
{
  ViewStage stage;
  show(*stage.view, flat_square());
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_SUSPENDED);
  EXPECT_EQ(this->written(*stage.view).num_triangles(), 2);
  EXPECT_EQ(stage.model.updates, 0);
}

TEST_F(WriteModelTest, ReportsAreVtksAndSilentAfterTheFirstModel)
{
  const auto view = make_view();
  {
    const WarningDisplayOn display;
    const ExpectedVtkErrors expected{"no actors found"};
    EXPECT_TRUE(view->write_model(this->path().c_str(), GView::VRML));
  }
  const ScriptedModel model;
  show(*view, flat_square());
  EXPECT_TRUE(view->write_model(mFolder.file("absent/scene").c_str(), GView::VRML));
  EXPECT_EQ(mFolder.num_files(), 0);
}

TEST_F(WriteModelTest, WarnsOnceForEachKindThatIsLeftOut)
{
  const auto view = make_view();
  show(*view, flat_square());
  show(*view, vtkNew<vtkActor>());
  show(*view, vtkNew<vtkActor>());
  const PrintCapture prints;
  EXPECT_EQ(this->written(*view).num_triangles(), 2);
  ASSERT_EQ(prints.calls().size(), 1U);
  EXPECT_EQ(prints.calls()[0].kind, 1);
  EXPECT_EQ(prints.warnings(), "Model export leaves out actors without data: 2\n");
}

TEST_F(WriteModelTest, AnExceptionOfAnUpdateComesOut)
{
  ViewStage stage;
  show(*stage.view, flat_square());
  stage.model.on_update = [] { throw HostError("update"); };
  EXPECT_EQ(thrown_by([&] { stage.view->write_model(this->path().c_str(), GView::VRML); }), "update");
  EXPECT_EQ(mFolder.num_files(), 0);
  stage.model.on_update = nullptr;
  EXPECT_EQ(this->written(*stage.view).num_triangles(), 2);
}

TEST_F(WriteModelTest, TheViewMayBeDestroyedInTheUpdate)
{
  GModelSet set;
  ScriptedModel model;
  set.add_model(&model);
  auto view = make_view();
  view->set_model_set(&set);
  show(*view, flat_square());
  model.on_update = [&] { view.reset(); };
  EXPECT_FALSE(view->write_model(this->path().c_str(), GView::VRML));
  EXPECT_EQ(view, nullptr);
  EXPECT_EQ(mFolder.num_files(), 0);
}

TEST_F(WriteModelTest, MayBeCalledInAnUpdateOutsideOfAFrame)
{
  ViewStage stage;
  show(*stage.view, flat_square());
  stage.model.on_update = [&] { EXPECT_EQ(this->written(*stage.view).num_triangles(), 2); };
  stage.view->update_models();
  EXPECT_EQ(stage.model.updates, 1);
}

TEST_F(WriteModelTest, NothingOfTheViewStaysAlive)
{
  vtkWeakPointer<vtkActor> actor;
  vtkWeakPointer<vtkRenderWindow> window;
  vtkWeakPointer<vtkRenderer> renderer;
  {
    const auto view = make_view();
    const auto square = flat_square();
    show(*view, square);
    actor = square;
    window = view->get_render_window();
    renderer = view->get_renderer();
    for (const auto type : kModelFileTypes) {
      EXPECT_TRUE(view->write_model(this->path().c_str(), type));
    }
  }
  EXPECT_EQ(actor, nullptr);
  EXPECT_EQ(window, nullptr);
  EXPECT_EQ(renderer, nullptr);
}

// --- Scenes of views that draw ---------------------------------------------------------------------------

using WriteModelRenderTest = ViewRenderTest;

TEST_F(WriteModelRenderTest, LeavesThePictureAsItWas)
{
  const TemporaryFolder folder;
  FullViewStage stage;
  const Image shown = picture(*stage.view);
  for (const auto type : kModelFileTypes) {
    EXPECT_TRUE(stage.view->write_model(folder.file("scene").c_str(), type));
    EXPECT_TRUE(read_pixels(stage.window()) == shown);
    EXPECT_TRUE(picture(*stage.view) == shown);
  }
}

} // namespace
