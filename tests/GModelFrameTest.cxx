// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// What the frames of a model show, and what its host may do in them.
#include "GModel.h"

#include "ModelFixture.h"

namespace {

using namespace morrow_test;

/// The pixels of a text in one of these colours: small letters have soft edges everywhere.
PixelPredicate mostly(Rgb colour)
{
  return colour_is(colour, 180);
}

// --- Frames
// -----------------------------------------------------------------------------------------------------

class GModelFrameTest : public ViewRenderTest
{
protected:
  ScriptedModel mModel;
  std::shared_ptr<GView> mView = make_view(200, 200); // a world unit is 100 pixels
};

TEST_F(GModelFrameTest, RenderDrawsEachConnectedViewOnce)
{
  const auto views = sorted_views(3);
  mModel.add_view(views[0].get());
  mModel.add_view(views[1].get());
  const FrameCounter first(views[0]->get_render_window());
  const FrameCounter second(views[1]->get_render_window());
  const FrameCounter stranger(views[2]->get_render_window());
  mModel.Render();
  EXPECT_EQ(first.ends(), 1);
  EXPECT_EQ(second.ends(), 1);
  EXPECT_EQ(stranger.ends(), 0);
}

void note_caller(vtkObject* caller, unsigned long /*event*/, void* order, void* /*data*/)
{
  static_cast<std::vector<vtkObject*>*>(order)->push_back(caller);
}

TEST_F(GModelFrameTest, RenderGoesThroughViewsInAscendingOrder)
{
  const auto views = sorted_views(3);
  for (const std::size_t i : {2U, 0U, 1U}) {
    mModel.add_view(views[i].get());
  }
  std::vector<vtkObject*> order;
  const vtkNew<vtkCallbackCommand> command;
  command->SetCallback(note_caller);
  command->SetClientData(&order);
  std::vector<vtkObject*> windows;
  for (const auto& view : views) {
    windows.push_back(view->get_render_window());
    windows.back()->AddObserver(vtkCommand::EndEvent, command);
  }
  mModel.Render();
  EXPECT_EQ(order, windows);
}

TEST_F(GModelFrameTest, RenderDoesNothingUnlessTheGraphicsStatusIsNormal)
{
  mModel.add_view(mView.get());
  const FrameCounter frames(mView->get_render_window());
  for (const auto status : {MRUtil::GRAPHICS_DISABLED, MRUtil::GRAPHICS_SUSPENDED}) {
    MRUtil::set_graphics_status(status);
    mModel.Render();
    EXPECT_EQ(frames.starts(), 0) << status;
  }
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_RESUME);
  mModel.Render();
  EXPECT_EQ(frames.ends(), 1);
}

TEST_F(GModelFrameTest, RenderPassesOverAViewWithoutAWindow)
{
  const auto views = sorted_views(2);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  views[0]->set_render_window(nullptr);
  const FrameCounter frames(views[1]->get_render_window());
  mModel.Render();
  EXPECT_EQ(frames.ends(), 1);
}

TEST_F(GModelFrameTest, RenderPassesOverADeadView)
{
  auto views = sorted_views(2);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  views[0].reset();
  const FrameCounter frames(views[1]->get_render_window());
  mModel.Render();
  EXPECT_EQ(frames.ends(), 1);
}

TEST_F(GModelFrameTest, UnhookedModelStillRendersItsViews)
{
  mModel.add_view(mView.get());
  mModel.unhook_from_views();
  const FrameCounter frames(mView->get_render_window());
  mModel.Render();
  EXPECT_EQ(frames.ends(), 1);
}

TEST_F(GModelFrameTest, PartIsSeenInEveryViewAndGoneWhenUnhooked)
{
  const auto views = sorted_views(2, 200);
  const auto data = quad(-0.5, -0.5, 0.5, 0.5);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  mModel.add_part(data, show_flat(kRed));
  for (const auto& view : views) {
    EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 100 * 100);
  }
  mModel.unhook_from_views();
  for (const auto& view : views) {
    EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 0);
  }
  mModel.hook_to_views();
  for (const auto& view : views) {
    EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 100 * 100);
  }
}

TEST_F(GModelFrameTest, ChangedDataIsSeenInTheNextFrame)
{
  mModel.add_view(mView.get());
  const auto data = quad(-0.5, -0.5, 0.5, 0.5);
  mModel.add_part(data, show_flat(kRed));
  EXPECT_EQ(count_pixels(picture(*mView), colour_is(kRed)), 100 * 100);
  data->DeepCopy(quad(-0.5, -0.5, 0.5, 0.0));
  EXPECT_EQ(count_pixels(picture(*mView), colour_is(kRed)), 100 * 50);
  data->Initialize(); // nothing at all is left of it
  EXPECT_EQ(count_pixels(picture(*mView), colour_is(kRed)), 0);
}

TEST_F(GModelFrameTest, UpdatePartsIsCalledTwiceInAFrameOfTheView)
{
  GModelSet set;
  int updates = 0;
  mModel.on_update = [&] { ++updates; };
  set.add_model(&mModel);
  set.add_view(mView.get());
  EXPECT_EQ(updates, 0);
  mView->render();
  EXPECT_EQ(updates, 2); // by the view, and by the window's start event
  mView->get_render_window()->Render();
  EXPECT_EQ(updates, 3); // the window's alone
  mModel.Render();
  EXPECT_EQ(updates, 5);
}

TEST_F(GModelFrameTest, UpdatePartsOfADirectlyConnectedModelIsNotCalled)
{
  int updates = 0;
  mModel.on_update = [&] { ++updates; };
  mModel.add_view(mView.get());
  mView->render();
  EXPECT_EQ(updates, 0);
}

// Parts that come and go in the course of a frame, and die with it.
TEST_F(GModelFrameTest, UpdatePartsMayReplaceTheParts)
{
  GModelSet set;
  set.add_model(&mModel);
  set.add_view(mView.get());
  vtkWeakPointer<vtkPolyData> part;
  int updates = 0;
  mModel.on_update = [&] {
    ++updates;
    mModel.clear();
    const auto next = quad(-0.5, -0.5, 0.5, 0.5);
    part = next;
    mModel.add_part(next, show_flat(updates % 2 == 0 ? kGreen : kRed));
    mModel.add_label("x", BrantVector(-0.9, -0.9, 0.0), BRANT_BLUE);
  };
  for (int frame = 0; frame < 3; ++frame) {
    const Image image = picture(*mView);
    EXPECT_EQ(count_pixels(image, mostly(kGreen)), 100 * 100);
    EXPECT_EQ(count_pixels(image, colour_is(kRed)), 0);
  }
  EXPECT_EQ(updates, 6);
  EXPECT_NE(part, nullptr);
  EXPECT_EQ(num_part_props(*mView), 1);
}

TEST_F(GModelFrameTest, ExceptionOfUpdatePartsArrivesAfterTheFrame)
{
  GModelSet set;
  set.add_model(&mModel);
  set.add_view(mView.get());
  mModel.add_part(quad(-0.5, -0.5, 0.5, 0.5), show_flat(kRed));
  mModel.on_update = [] { throw HostError("host"); };
  const FrameCounter frames(mView->get_render_window());
  EXPECT_THROW(mModel.Render(), HostError);
  EXPECT_EQ(frames.ends(), 1);
  EXPECT_EQ(count_pixels(read_pixels(mView->get_render_window()), colour_is(kRed)), 100 * 100);
  mModel.on_update = nullptr;
  EXPECT_NO_THROW(mModel.Render());
  EXPECT_EQ(frames.ends(), 2);
}

TEST_F(GModelFrameTest, ExceptionOfOneViewDoesNotKeepOthersFromRendering)
{
  GModelSet set;
  set.add_model(&mModel);
  const auto views = sorted_views(2);
  for (const auto& view : views) {
    set.add_view(view.get());
  }
  mModel.on_update = [] { throw HostError("host"); };
  const FrameCounter first(views[0]->get_render_window());
  const FrameCounter second(views[1]->get_render_window());
  EXPECT_THROW(mModel.Render(), HostError);
  EXPECT_EQ(first.ends(), 1);
  EXPECT_EQ(second.ends(), 1);
}

TEST_F(GModelFrameTest, PropFunctionThatThrowsInAFrameLeavesAUsableView)
{
  GModelSet set;
  set.add_model(&mModel);
  set.add_view(mView.get());
  const auto data = quad(-0.5, -0.5, 0.5, 0.5);
  mModel.on_update = [&] { mModel.add_part(data, throwing()); };
  EXPECT_THROW(mView->render(), HostError);
  EXPECT_EQ(data->GetReferenceCount(), 1);
  mModel.on_update = [&] { mModel.add_part(data, show_flat(kRed)); };
  EXPECT_EQ(count_pixels(picture(*mView), colour_is(kRed)), 100 * 100);
}

TEST_F(GModelFrameTest, UpdatePartsMayDestroyTheModelThatRenders)
{
  const auto views = sorted_views(2);
  GModelSet set;
  auto dying = std::make_unique<ScriptedModel>();
  set.add_model(dying.get());
  for (const auto& view : views) {
    set.add_view(view.get());
  }
  dying->add_part(quad(-0.5, -0.5, 0.5, 0.5), show_flat(kRed));
  dying->on_update = [&] { dying.reset(); };
  const FrameCounter second(views[1]->get_render_window());
  dying->Render();
  EXPECT_EQ(dying, nullptr);
  EXPECT_EQ(count_pixels(read_pixels(views[0]->get_render_window()), colour_is(kRed)), 0);
  EXPECT_EQ(second.ends(), 1); // the views that it had are rendered to the last
}

/// A red square with room before and behind it: views clip to what they show.
void add_square(GModel& model)
{
  model.add_part(quad(-0.5, -0.5, 0.5, 0.5), show_flat(kRed));
  model.add_part(quad(-1.0, -1.0, -0.9, -0.9, 0.5), show_flat(kRed));
  model.add_part(quad(-1.0, -1.0, -0.9, -0.9, -0.5), show_flat(kRed));
}

constexpr double kBefore = 0.2;
constexpr double kBehind = -0.2;

/// A green label in front of that square and a blue one behind it, both with their anchors over it.
void add_two_labels(GModel& model)
{
  model.add_label("##", BrantVector(-0.4, 0.1, kBefore), BRANT_GREEN);
  model.add_label("##", BrantVector(-0.4, -0.3, kBehind), BRANT_BLUE);
}

TEST_F(GModelFrameTest, LabelsHideBehindParts)
{
  mModel.add_view(mView.get());
  add_square(mModel);
  add_two_labels(mModel);
  for (int mode = 1; mode <= 7; ++mode) {
    mModel.set_render_mode(static_cast<MRUtil::RenderMode>(mode));
    const Image image = picture(*mView);
    EXPECT_GT(count_pixels(image, mostly(kGreen)), 0) << mode;
    EXPECT_EQ(count_pixels(image, mostly(kBlue)), 0) << mode;
  }
}

TEST_F(GModelFrameTest, LabelsShowThroughInWireframeMode)
{
  mModel.add_view(mView.get());
  add_square(mModel);
  add_two_labels(mModel);
  ASSERT_EQ(count_pixels(picture(*mView), mostly(kBlue)), 0);
  mModel.set_render_mode(MRUtil::RENDER_WIREFRAME); // a change shows in the next frame
  const Image image = picture(*mView);
  EXPECT_GT(count_pixels(image, mostly(kGreen)), 0);
  EXPECT_GT(count_pixels(image, mostly(kBlue)), 0);
}

TEST_F(GModelFrameTest, RenderModeOfOneModelDoesNotReachTheLabelsOfAnother)
{
  ScriptedModel seen_through;
  ScriptedModel hiding;
  seen_through.add_view(mView.get());
  hiding.add_view(mView.get());
  add_square(hiding);
  hiding.add_label("##", BrantVector(-0.4, -0.3, kBehind), BRANT_BLUE);
  seen_through.add_label("##", BrantVector(-0.4, 0.1, kBehind), BRANT_GREEN);
  seen_through.set_render_mode(MRUtil::RENDER_WIREFRAME);
  const Image image = picture(*mView);
  EXPECT_EQ(count_pixels(image, mostly(kBlue)), 0);
  EXPECT_GT(count_pixels(image, mostly(kGreen)), 0);
}

// The windows do not share OpenGL objects, the labels are the same.
TEST_F(GModelFrameTest, LabelsAreSeenInEveryView)
{
  const auto views = sorted_views(3);
  add_square(mModel);
  mModel.add_label("##", BrantVector(-0.4, 0.1, kBefore), BRANT_GREEN);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  const Image first = picture(*views[0]);
  ASSERT_GT(count_pixels(first, mostly(kGreen)), 0);
  for (int round = 0; round < 2; ++round) {
    for (const auto& view : views) {
      EXPECT_TRUE(picture(*view) == first) << round;
    }
  }
}

TEST_F(GModelFrameTest, OnePropIsSeenInEveryView)
{
  const auto views = sorted_views(3);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  mModel.add_part(sorted_data(1)[0], always(flat_square(kRed)));
  for (int round = 0; round < 2; ++round) {
    for (const auto& view : views) {
      EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 50 * 50);
    }
  }
}

TEST_F(GModelFrameTest, LabelStandsWithItsLowerLeftCornerAtItsAnchor)
{
  mModel.add_view(mView.get());
  mModel.add_part(quad(-1.0, -1.0, -0.9, -0.9), show_flat(kRed)); // something to fit the clipping range to
  mModel.add_label("HH", BrantVector(0.0, 0.25, 0.0), BRANT_GREEN);
  const auto text = find_pixels(picture(*mView), [](Rgb pixel) { return pixel.g > 60; });
  ASSERT_GT(text.count, 0);
  EXPECT_NEAR(text.min_x, 100, 2);
  EXPECT_NEAR(text.min_y, 125, 2);
  EXPECT_GT(text.max_x, 110);
  EXPECT_LT(text.max_y, 140);
}

TEST_F(GModelFrameTest, LabelsGoAndComeWithTheHook)
{
  mModel.add_view(mView.get());
  add_square(mModel);
  const int key = mModel.add_label("##", BrantVector(-0.4, 0.1, kBefore), BRANT_GREEN);
  const int lit = count_pixels(picture(*mView), mostly(kGreen));
  EXPECT_GT(lit, 0);
  mModel.unhook_from_views();
  EXPECT_EQ(count_pixels(picture(*mView), mostly(kGreen)), 0);
  mModel.hook_to_views();
  EXPECT_EQ(count_pixels(picture(*mView), mostly(kGreen)), lit);
  mModel.remove_label(key);
  EXPECT_EQ(count_pixels(picture(*mView), mostly(kGreen)), 0);
}

TEST_F(GModelFrameTest, FontSizeReachesNewLabelsOfEveryModel)
{
  ScriptedModel one;
  ScriptedModel other;
  for (ScriptedModel* model : {&one, &other}) {
    model->add_view(mView.get());
    model->set_render_mode(MRUtil::RENDER_WIREFRAME);
  }
  const auto height_of = [&](Rgb colour) { return find_pixels(picture(*mView), mostly(colour)).height(); };
  one.add_label("H", BrantVector(-0.9, 0.0, 0.0), BRANT_RED);
  const int plain = height_of(kRed);
  GModel::set_font_size_factor(3.0);
  one.add_label("H", BrantVector(-0.3, 0.0, 0.0), BRANT_GREEN);
  other.add_label("H", BrantVector(0.4, 0.0, 0.0), BRANT_BLUE);
  EXPECT_EQ(height_of(kRed), plain); // it was added before
  EXPECT_NEAR(height_of(kGreen), 3 * plain, 3);
  EXPECT_EQ(height_of(kBlue), height_of(kGreen));
}

TEST_F(GModelFrameTest, FontSizeZeroDrawsNothingAndHurtsNobody)
{
  mModel.add_view(mView.get());
  mModel.set_render_mode(MRUtil::RENDER_WIREFRAME);
  GModel::set_font_size_factor(0.0);
  mModel.add_label("H", BrantVector(0.0, 0.0, 0.0), BRANT_GREEN);
  GModel::set_font_size_factor(1.0);
  mModel.add_label("H", BrantVector(0.5, 0.0, 0.0), BRANT_GREEN);
  EXPECT_GT(find_pixels(picture(*mView), mostly(kGreen)).min_x, 148); // the second alone
}

// The host may put the actor into a renderer of its own, and keep it there. Its labels go with the model, and
// its mapper must not ask the dead model for the render mode.
TEST_F(GModelFrameTest, LabelActorOutlivesItsModelInARendererOfTheHost)
{
  const Scene scene;
  vtkSmartPointer<GLabelMapper> mapper;
  {
    ScriptedModel model;
    model.add_label("##", BrantVector(0.0, 0.0, 0.0), BRANT_GREEN);
    const auto actor = label_actor(model);
    scene.renderer()->AddViewProp(actor);
    mapper = GLabelMapper::SafeDownCast(actor->GetMapper());
  }
  scene.window()->Render();
  EXPECT_EQ(count_pixels(read_pixels(scene.window()), mostly(kGreen)), 0);
  mapper->add_point(BrantVector(0.0, 0.0, 0.0), "##", BRANT_GREEN);
  scene.window()->Render();
  EXPECT_GT(count_pixels(read_pixels(scene.window()), mostly(kGreen)), 0);
}

TEST_F(GModelFrameTest, ViewAndModelMayDieAfterAFrameInAnyOrder)
{
  for (const bool view_first : {true, false}) {
    auto model = std::make_unique<ScriptedModel>();
    auto view = std::make_unique<PlainView>();
    model->add_view(view.get());
    model->add_part(quad(-0.5, -0.5, 0.5, 0.5), show_flat(kRed));
    model->add_label("x", BrantVector(0.0, 0.0, 0.0), BRANT_GREEN);
    view->render();
    if (view_first) {
      view.reset();
      model->clear();
    } else {
      model.reset();
      view->render();
    }
  }
}

TEST_F(GModelFrameTest, PropFunctionMayRender)
{
  mModel.add_view(mView.get());
  mModel.add_part(quad(-0.5, -0.5, 0.5, 0.5), show_flat(kRed));
  int red = -1;
  mModel.add_part(sorted_data(1)[0], acting_once([&](vtkDataObject*, GView* where) {
                    mModel.Render();
                    red = count_pixels(read_pixels(where->get_render_window()), colour_is(kRed));
                  }));
  EXPECT_EQ(red, 100 * 100);
}

} // namespace
