// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Everything short of rendering works on a machine without a display, and with one the library leaves it
// alone until then.
#include "BrantVector.h"
#include "GLabelMapper.h"
#include "GModel.h"
#include "GModelSet.h"
#include "GView.h"
#include "GViewRenderPass.h"
#include "MRUtil.h"
#include "TemporaryFolder.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkActor2D.h>
#include <vtkCamera.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>
#include <vtkScalarBarWidget.h>
#include <vtkTextProperty.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

int gDisplaysAskedFor = 0;

} // namespace

// Xlib's, for every module of this process: programs are linked with exported symbols. There is no display,
// whoever asks, and asking is counted, from the loading of the libraries on.
extern "C" __attribute__((visibility("default"))) void* XOpenDisplay(const char* name);

extern "C" void* XOpenDisplay(const char* /*name*/)
{
  ++gDisplaysAskedFor;
  std::fputs("a display was asked for\n", stderr);
  return nullptr;
}

namespace {

class EmptyModel : public GModel
{
public:
  void update_parts() override { ++mUpdates; }

  int mUpdates = 0;
};

GView::Props some_actors(vtkDataObject* data, int count)
{
  GView::Props props;
  for (int i = 0; i < count; ++i) {
    props.emplace_back(morrow_test::flat_actor(vtkPolyData::SafeDownCast(data), {255, 0, 0}));
  }
  return props;
}

PartPropFunction actors(int count)
{
  return [=](vtkDataObject* data, GView*) { return some_actors(data, count); };
}

/// Besides the triad.
int num_shown(const GView& view)
{
  return view.get_renderer()->GetViewProps()->GetNumberOfItems() - (view.get_triad_vis() ? 1 : 0);
}

class NoDisplayTest : public ::testing::Test
{
protected:
  static void SetUpTestSuite() { unsetenv("DISPLAY"); }

  ~NoDisplayTest() override
  {
    EXPECT_EQ(gDisplaysAskedFor, 0);
    MRUtil::set_graphics_status(MRUtil::GRAPHICS_NORMAL);
  }
};

// VTK ends the process when it asks for a display in vain. Here it does, so the count below would tell.
TEST_F(NoDisplayTest, WhoeverAsksForADisplayIsCounted)
{
  EXPECT_EXIT(MRUtil::setup_preferred_window_size(), testing::KilledBySignal(SIGABRT),
              "a display was asked for");
  EXPECT_EXIT(GView().render(), testing::KilledBySignal(SIGABRT), "a display was asked for");
}

TEST_F(NoDisplayTest, LoadingTheLibraryAsksForNoDisplay)
{
  EXPECT_EQ(gDisplaysAskedFor, 0); // nothing but loading and other tests has happened yet
}

// ---------------------------------------------------------------------------------------------------------
// Views

TEST_F(NoDisplayTest, ViewsComeAndGo)
{
  GView first;
  {
    const GView second;
    EXPECT_NE(second.get_render_window(), nullptr);
    EXPECT_NE(second.get_render_window(), first.get_render_window());
  }
  EXPECT_STREQ(first.get_render_window()->GetWindowName(), "Brant (-1)");
  EXPECT_EQ(first.get_id(), 1);
}

TEST_F(NoDisplayTest, AViewIsConfigured)
{
  GView view;
  view.set_name("front");
  view.set_id(7);
  view.set_title_bar("Part ##");
  EXPECT_STREQ(view.get_render_window()->GetWindowName(), "Part (7)");
  view.set_background(2);
  view.set_background2(-1);
  view.set_vertex_visibility(true);
  view.enable_overlay();
  EXPECT_TRUE(view.get_render_window()->HasRenderer(view.get_overlay_renderer()));
  view.disable_overlay();
  EXPECT_FALSE(view.get_render_window()->HasRenderer(view.get_overlay_renderer()));
  int width = 0;
  int height = 0;
  view.get_size(width, height);
  EXPECT_EQ(width, 500);
  EXPECT_EQ(height, 500);
  EXPECT_NE(view.update_viewport_command(), nullptr);
  view.get_renderer()->ResetCamera();
  view.get_overlay_renderer()->ResetCamera();
}

TEST_F(NoDisplayTest, AViewIsDecorated)
{
  const double red[3] = {1.0, 0.0, 0.0};
  GView view;
  EXPECT_TRUE(view.get_triad_vis());
  EXPECT_FALSE(view.triad_clicked(-1, -1));
  view.set_triad_label_color(BRANT_RED);
  view.create_title();
  view.set_title("title");
  view.set_title_color(red);
  view.set_title_font_size(12);
  view.set_axis_vis(true);
  view.set_axis_type(MRUtil::AXIS_1D);
  view.set_cube_axes_vis(true);
  view.get_renderer()->GetActiveCamera()->ParallelProjectionOn();
  view.set_legend_vis(true);
  view.setup_scalar_bar(0.0, 1.0, false, {BRANT_RED, BRANT_BLUE});
  view.set_scalar_bar_label_color(red);
  EXPECT_EQ(num_shown(view), 5);
  view.set_render_window(nullptr);
  view.set_render_window(vtkNew<vtkRenderWindow>());
  view.set_cube_axes_vis(false);
  view.set_legend_vis(false);
  EXPECT_EQ(num_shown(view), 3); // the others go with the view
}

TEST_F(NoDisplayTest, ScalarBarsTakeWhateverInteractorThereIs)
{
  GView view;
  const vtkNew<vtkRenderWindowInteractor> interactor;
  interactor->SetRenderWindow(view.get_render_window());
  view.setup_scalar_bar(0.0, 1.0, false, {});
  EXPECT_EQ(view.get_scalar_bar()->GetInteractor(), interactor.Get());
  view.get_render_window()->SetInteractor(nullptr);
  view.set_scalar_bar(nullptr);
}

TEST_F(NoDisplayTest, LightIsChosen)
{
  const auto view = std::make_shared<GView>();
  GView::add_global_view(view);
  GView::set_light_intensity(1.0F, 0.5F, 0.0F);
  GView::set_ambient_light_intensity(0.0F, 0.5F, 1.0F);
  EXPECT_EQ(view->get_renderer()->GetAmbient()[2], 2.0);
  GView::reset_lighting();
  EXPECT_EQ(view->get_renderer()->GetAmbient()[2], 1.0);
  GView::remove_global_view(view);
}

TEST_F(NoDisplayTest, CamerasAreSavedUnderNames)
{
  GView first;
  GView second;
  first.get_renderer()->GetActiveCamera()->SetParallelScale(7.0);
  first.save_view("here");
  second.restore_view("here");
  second.restore_view("nowhere");
  first.save_view("here");
}

TEST_F(NoDisplayTest, AViewChangesItsWindow)
{
  GView view;
  const vtkNew<vtkRenderWindow> window;
  view.set_render_window(window);
  EXPECT_EQ(view.get_render_window(), window.Get());
  EXPECT_TRUE(window->HasRenderer(view.get_renderer()));
  view.set_render_window(nullptr);
  EXPECT_FALSE(window->HasRenderer(view.get_renderer()));
  view.set_render_window(window);
  view.set_render_window(window);
  EXPECT_TRUE(window->HasRenderer(view.get_renderer()));
}

TEST_F(NoDisplayTest, OffscreenWindowsAreBoundAsWell)
{
  GView::set_offscreen(true);
  {
    const GView view;
    EXPECT_TRUE(view.get_render_window()->GetOffScreenRendering());
  }
  GView::set_offscreen(false);
}

TEST_F(NoDisplayTest, ViewsAreRegisteredAndFound)
{
  const auto view = std::make_shared<GView>();
  view->set_name("front");
  GView::add_global_view(view);
  EXPECT_EQ(GView::find_view_by_name("front"), view.get());
  EXPECT_EQ(GView::find_view_by_id(view->get_id()), view);
  EXPECT_EQ(GView::get_current_view(), view.get());
  GView::set_title_bars("Mesh ##");
  EXPECT_STREQ(view->get_render_window()->GetWindowName(), "Mesh (1)");
  GView::set_title_bars("Brant ##");
  GView::set_all_background(3);
  EXPECT_EQ(view->get_background(), 3);
  GView::set_all_background(-1);
  GView::remove_global_view(view);
  EXPECT_EQ(GView::get_current_view(), nullptr);
}

TEST_F(NoDisplayTest, ACameraIsPlacedAndAsked)
{
  GView view;
  double p[4];
  view.get_at(p);
  view.get_from(p);
  view.get_up(p);
  EXPECT_TRUE(view.get_perspective());
  EXPECT_EQ(view.get_perspective_angle(), 30.0);
  view.set_perspective_angle(40.0);
  view.set_perspective(false);
  view.set_parallel_scale(2.0);
  EXPECT_EQ(view.get_parallel_scale(), 2.0);
  view.zoom_screen(2.0, 1, 0); // in parallel projection one step renders nothing
  EXPECT_EQ(view.get_parallel_scale(), 1.0);
  view.add_props(some_actors(morrow_test::quad(1.0, 1.0, 3.0, 3.0), 1));
  view.reset_camera();
  view.get_at(p);
  EXPECT_NEAR(p[0], 2.0, 1e-12);
  view.complete_reset_camera();
  view.set_2d_mode(0.0, 0.0, 4.0, 4.0);
  view.world_to_display(2.0, 2.0, 0.0, p);
  EXPECT_NEAR(p[0], 250.0, 1.0);
  view.display_to_world(p[0], p[1], p[2], p);
  EXPECT_NEAR(p[0], 2.0, 1e-6);
  double length = 0.0;
  view.pixel_to_model_length(10.0, length, nullptr);
  EXPECT_NEAR(length, 0.08, 1e-6);
  view.mouse_xforms();
  GView::set_stereo_separation(3.0);
  const morrow_test::PrintCapture printed;
  view.list_view();
  EXPECT_EQ(printed.calls().size(), 9U);
}

TEST_F(NoDisplayTest, ACameraMovesWhenNothingCanBeShown)
{
  GView view;
  const double p[3] = {1.0, 2.0, 3.0};
  const double box[6] = {0.0, 1.0, 0.0, 1.0, 0.0, 1.0};
  const auto move = [&] {
    view.set_at(p, 3, 1);
    view.set_from(p, 1, 0);
    view.set_up(p, 2, 0);
    view.rotate_about_target(30.0, 'y', 3, 1);
    view.rotate_about_camera(30.0, 'y', 3, 1);
    view.rotate_about_world(30.0, 'y', 3, 1);
    view.pan(0.1, 0.1, 3, 1, 1);
    view.zoom_screen(2.0, 3, 1);
    view.zoom_box(box, 3, 0, p);
  };
  double at[3];
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_DISABLED);
  move();
  view.get_at(at);
  EXPECT_NEAR(at[0], 0.5, 1e-12);
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_NORMAL);
  view.set_render_window(nullptr);
  move();
  view.get_at(at);
  EXPECT_NEAR(at[0], 0.5, 1e-12);
}

TEST_F(NoDisplayTest, AViewWritesItsScene)
{
  const morrow_test::TemporaryFolder folder;
  GView view;
  view.add_props(some_actors(morrow_test::one_triangle(), 2));
  for (const auto type : {GView::VRML, GView::OOGL, GView::IV}) {
    const std::string path = folder.file(std::to_string(type));
    EXPECT_TRUE(view.write_model(path.c_str(), type));
    EXPECT_NE(std::filesystem::file_size(path), 0U) << type;
  }
  EXPECT_NE(view.get_render_window()->GetNeverRendered(), 0);
}

TEST_F(NoDisplayTest, PropsAreAddedAndRemoved)
{
  GView view;
  const auto data = morrow_test::one_triangle();
  for (const int count : {3, 100}) {
    const GView::Props props = some_actors(data, count);
    view.add_props(props);
    EXPECT_EQ(num_shown(view), count);
    view.remove_props(props);
    EXPECT_EQ(num_shown(view), 0);
  }
  view.add_props(some_actors(data, 30)); // go with the view
}

// ---------------------------------------------------------------------------------------------------------
// Models and sets

TEST_F(NoDisplayTest, ModelsShowTheirPartsInViews)
{
  GView view;
  EmptyModel model;
  const auto triangle = morrow_test::one_triangle();
  const auto square = morrow_test::quad(0.0, 0.0, 1.0, 1.0);
  model.add_part(triangle, actors(2));
  model.add_view(&view);
  model.add_part(square, actors(40));
  EXPECT_EQ(num_shown(view), 43); // with the actor of the labels
  model.unhook_from_views();
  EXPECT_EQ(num_shown(view), 0);
  model.hook_to_views();
  EXPECT_EQ(num_shown(view), 43);
  model.remove_part(square);
  EXPECT_EQ(num_shown(view), 3);
  model.clear();
  EXPECT_EQ(num_shown(view), 1);
  model.remove_view(&view);
  EXPECT_EQ(num_shown(view), 0);
}

TEST_F(NoDisplayTest, ModelsAreConfigured)
{
  EmptyModel model;
  model.set_render_mode(MRUtil::RENDER_WIREFRAME);
  model.surface_back_property_color(0.0, 1.0, 0.0);
  GModel::set_font_size_factor(1.5);
  EXPECT_EQ(GModel::text_property()->GetFontSize(), 18);
}

TEST_F(NoDisplayTest, LabelsAreAddedAndRemoved)
{
  GView view;
  EmptyModel model;
  model.add_view(&view);
  std::vector<GModel::LabelKey> keys;
  for (int i = 0; i < 200; ++i) {
    keys.push_back(model.add_label("a label", BrantVector(i, 0.0, 0.0), BRANT_RED));
  }
  for (const GModel::LabelKey key : keys) {
    model.remove_label(key);
  }
  EXPECT_EQ(model.add_label(nullptr, BrantVector(), BRANT_RED), 0);
}

TEST_F(NoDisplayTest, SetsConnectViewsAndModels)
{
  GModelSet set;
  GView first;
  GView second;
  EmptyModel model;
  EmptyModel unhooked;
  unhooked.unhook_from_views();
  const auto data = morrow_test::one_triangle();
  model.add_part(data, actors(1));
  set.add_model(&model);
  set.add_model(&unhooked);
  set.add_view(&first);
  second.set_model_set(&set);
  EXPECT_EQ(num_shown(first), 2);
  EXPECT_EQ(num_shown(second), 2);
  first.update_models();
  EXPECT_EQ(model.mUpdates, 1);
  EXPECT_EQ(unhooked.mUpdates, 0);
  set.remove_model(&model);
  EXPECT_EQ(num_shown(second), 0);
  second.set_model_set(nullptr);
  EXPECT_EQ(set.views(), std::vector<GView*>{&first});
}

TEST_F(NoDisplayTest, ViewsModelsAndSetsDieInAnyOrder)
{
  const auto data = morrow_test::one_triangle();
  const int before = data->GetReferenceCount();
  std::vector<int> order = {0, 1, 2};
  do {
    auto set = std::make_unique<GModelSet>();
    auto view = std::make_unique<GView>();
    auto model = std::make_unique<EmptyModel>();
    set->add_view(view.get());
    set->add_model(model.get());
    model->add_part(data, actors(30));
    model->add_label("a label", BrantVector(), BRANT_RED);
    EXPECT_EQ(num_shown(*view), 31);
    for (const int victim : order) {
      victim == 0 ? set.reset() : victim == 1 ? view.reset() : model.reset();
    }
    EXPECT_EQ(data->GetReferenceCount(), before);
  } while (std::next_permutation(order.begin(), order.end()));
}

// ---------------------------------------------------------------------------------------------------------
// Rendering that does not take place

TEST_F(NoDisplayTest, NothingRendersWhileGraphicsAreOff)
{
  const auto view = std::make_shared<GView>();
  GView::add_global_view(view);
  GModelSet set;
  EmptyModel model;
  set.add_view(view.get());
  set.add_model(&model);
  for (const auto status : {MRUtil::GRAPHICS_DISABLED, MRUtil::GRAPHICS_SUSPENDED}) {
    MRUtil::set_graphics_status(status);
    view->render();
    view->update_models();
    set.render();
    model.Render();
    GView::render_all();
  }
  EXPECT_EQ(model.mUpdates, 0);
  GView::remove_global_view(view);
}

TEST_F(NoDisplayTest, WithoutAWindowThereIsNothingToRender)
{
  GView view;
  GModelSet set;
  EmptyModel model;
  set.add_view(&view);
  set.add_model(&model);
  view.set_render_window(nullptr);
  view.render();
  view.set_title_bar("nowhere");
  view.enable_overlay();
  view.disable_overlay();
  int width = -1;
  int height = -1;
  view.get_size(width, height);
  EXPECT_EQ(width, 0);
  EXPECT_EQ(height, 0);
  set.render();
  model.Render();
  GModelSet().render();
}

TEST_F(NoDisplayTest, AMapperWithoutAWindowDrawsNothing)
{
  const vtkNew<GLabelMapper> mapper;
  const vtkNew<vtkActor2D> actor;
  const vtkNew<vtkRenderer> renderer;
  actor->SetMapper(mapper);
  mapper->add_point(BrantVector(), "a label", BRANT_RED);
  mapper->RenderOverlay(renderer, actor);
  mapper->ReleaseGraphicsResources(nullptr);
  zBufferHelper::instance().forget();
  EXPECT_EQ(zBufferHelper::instance().depth_reads(), 0U);
}

TEST_F(NoDisplayTest, EveryObjectPrintsItself)
{
  std::ostringstream text;
  vtkNew<GLabelMapper>()->Print(text);
  vtkNew<GViewRenderPass>()->Print(text);
  EXPECT_NE(text.str().find("GLabelMapper"), std::string::npos);
  EXPECT_NE(text.str().find("GViewRenderPass"), std::string::npos);
}

TEST_F(NoDisplayTest, QueriesAreAnswered)
{
  EXPECT_EQ(MRUtil::get_gl_info(), "Displaying using:\n");
  EXPECT_FALSE(MRUtil::get_vtk_version().empty());
  EXPECT_NE(MRUtil::RENDER_MODE(), nullptr);
}

} // namespace
