// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Views, models, sets, windows and what they hand out end in every order, and leave nothing behind.
#include "GModel.h"
#include "GModelSet.h"
#include "LifetimeFixture.h"

#include <vtkMapper.h>
#include <vtkRenderPass.h>
#include <vtkRendererCollection.h>
#include <vtkTextActor.h>

#include <algorithm>
#include <filesystem>
#include <malloc.h>
#include <numeric>

#if defined(MORROW_ADDRESS_SANITIZER)
// The sanitizer's own; its header does not come with every compiler.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace {

using namespace morrow_test;

// --- Orders of destruction
// -----------------------------------------------------------------------------------------------

/// Two views, two models with parts and labels, one set, the window of one of the views: everything is shown.
class World
{
public:
  static constexpr int NumMembers = 6;

  World()
  {
    mModelA = make_model(-0.9);
    mModelB = make_model(0.5);
    for (const auto& view : {mViewA, mViewB}) {
      view->set_model_set(mSet.get());
    }
    mSet->add_model(mModelA.get());
    mSet->add_model(mModelB.get());
    mWindow = mViewA->get_render_window();
    mViewA->enable_overlay();
  }

  void release(int member)
  {
    switch (member) {
    case 0:
      mViewA.reset();
      break;
    case 1:
      mViewB.reset();
      break;
    case 2:
      mModelA.reset();
      break;
    case 3:
      mModelB.reset();
      break;
    case 4:
      mSet.reset();
      break;
    default:
      mWindow = nullptr;
    }
  }

  /// Every operation of what is left that touches what may be gone.
  void use() const
  {
    for (const auto& view : {mViewA, mViewB}) {
      if (view != nullptr) {
        EXPECT_EQ(view->get_model_set(), mSet.get());
        view->update_models();
      }
    }
    for (const auto& model : {mModelA, mModelB}) {
      if (model != nullptr) {
        model->unhook_from_views();
        model->hook_to_views();
        model->remove_label(model->add_label("x", BrantVector(), BrantColor()));
      }
    }
    if (mSet != nullptr) {
      EXPECT_EQ(mSet->views().size(), static_cast<std::size_t>((mViewA != nullptr) + (mViewB != nullptr)));
      EXPECT_EQ(mSet->models().size(), static_cast<std::size_t>((mModelA != nullptr) + (mModelB != nullptr)));
      mSet->update_model_parts();
    }
    expect_props(mViewA);
    expect_props(mViewB);
  }

  /// Renders all that can render.
  void render() const
  {
    for (const auto& view : {mViewA, mViewB}) {
      if (view != nullptr) {
        view->render();
        EXPECT_EQ(count_pixels(read_pixels(view->get_render_window()), colour_is(kGreen)),
                  num_shown_models() * 20 * 20);
      }
    }
    if (mWindow != nullptr) {
      mWindow->Render();
    }
    if (mSet != nullptr) {
      mSet->render();
    }
  }

private:
  static std::shared_ptr<ScriptedModel> make_model(double x)
  {
    auto model = std::make_shared<ScriptedModel>();
    const auto data = quad(x, -0.2, x + 0.4, 0.2); // 20 × 20 pixels
    model->add_part(data, show_flat(kGreen));
    model->add_label("label", BrantVector(x, 0.5, 0.0), BrantColor(255, 0, 0));
    return model;
  }

  [[nodiscard]] int num_shown_models() const
  {
    return mSet != nullptr ? (mModelA != nullptr) + (mModelB != nullptr) : 0;
  }

  // Part and labels of each model that is still connected.
  void expect_props(const ViewPointer& view) const
  {
    if (view != nullptr) {
      EXPECT_EQ(view->get_renderer()->GetViewProps()->GetNumberOfItems(), 2 * num_shown_models());
    }
  }

  ViewPointer mViewA = make_view();
  ViewPointer mViewB = make_view();
  std::shared_ptr<ScriptedModel> mModelA;
  std::shared_ptr<ScriptedModel> mModelB;
  std::shared_ptr<GModelSet> mSet = std::make_shared<GModelSet>();
  WindowPointer mWindow;
};

template<typename Visit>
void for_each_order(int count, Visit&& visit)
{
  std::vector<int> order(static_cast<std::size_t>(count));
  std::iota(order.begin(), order.end(), 0);
  do {
    visit(order);
  } while (std::next_permutation(order.begin(), order.end()));
}

std::string text_of(const std::vector<int>& order)
{
  std::string text = "order";
  for (const int member : order) {
    text += " " + std::to_string(member);
  }
  return text;
}

TEST_F(LifetimeTest, AllOrdersOfDestructionAreSound)
{
  for_each_order(World::NumMembers, [](const std::vector<int>& order) {
    SCOPED_TRACE(text_of(order));
    World world;
    world.use();
    for (const int member : order) {
      world.release(member);
      world.use();
    }
  });
}

class RenderedOrderTest : public LifetimeTest, public ::testing::WithParamInterface<int>
{};

// Each of the six goes first once, the others in both directions: with graphics resources alive.
TEST_P(RenderedOrderTest, IsSoundWithFramesInBetween)
{
  for (const int step : {1, World::NumMembers - 1}) {
    World world;
    world.render();
    for (int i = 0; i < World::NumMembers; ++i) {
      const int member = (GetParam() + i * step) % World::NumMembers;
      SCOPED_TRACE("first " + std::to_string(GetParam()) + ", now " + std::to_string(member));
      world.release(member);
      world.render();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(First, RenderedOrderTest, ::testing::Range(0, World::NumMembers));

TEST_F(LifetimeTest, EverythingEndsWithItsLastHolder)
{
  ViewStage stage;
  auto part = quad(-0.5, -0.5, 0.5, 0.5);
  stage.model.add_part(part, show_flat(kGreen));
  stage.view->render();
  const vtkWeakPointer<vtkPolyData> watched_part = part.Get();
  const vtkWeakPointer<vtkRenderWindow> window = stage.window();
  const vtkWeakPointer<vtkRenderer> renderer = stage.view->get_renderer();
  const vtkWeakPointer<vtkRenderer> overlay = stage.view->get_overlay_renderer();
  const vtkWeakPointer<vtkRenderPass> pass = stage.view->get_renderer()->GetPass();
  const vtkSmartPointer<vtkCallbackCommand> command = stage.view->update_viewport_command();
  const vtkWeakPointer<vtkCamera> camera = stage.view->get_renderer()->GetActiveCamera();
  part = nullptr;
  EXPECT_NE(watched_part, nullptr);
  stage.view.reset();
  EXPECT_EQ(window, nullptr);
  EXPECT_EQ(renderer, nullptr);
  EXPECT_EQ(overlay, nullptr);
  EXPECT_EQ(pass, nullptr);
  EXPECT_EQ(command->GetReferenceCount(), 1); // VTK tells no weak pointer of a command's end
  EXPECT_EQ(camera, nullptr);
  EXPECT_NE(watched_part, nullptr); // the model's
  stage.model.clear();
  EXPECT_EQ(watched_part, nullptr);
}

// --- What a view has handed out
// ---------------------------------------------------------------------------------------

TEST_F(LifetimeTest, AWindowRendersWithoutItsView)
{
  for (const bool overlay : {false, true}) {
    FullViewStage stage;
    if (overlay) {
      stage.view->enable_overlay();
      stage.view->get_overlay_renderer()->AddActor(flat_square(kWhite));
    }
    stage.view->render();
    const WindowPointer window = stage.window();
    stage.model.updates = 0;
    stage.view.reset();
    EXPECT_EQ(window->GetRenderers()->GetNumberOfItems(), 0);
    EXPECT_EQ(window->HasObserver(vtkCommand::StartEvent), 0);
    const FrameCounter frames(window);
    window->Render();
    window->SetSize(60, 30);
    window->Render();
    EXPECT_EQ(frames.ends(), 2);
    EXPECT_EQ(stage.model.updates, 0);
  }
}

TEST_F(LifetimeTest, AWindowCanBeUsedForAnotherScene)
{
  FullViewStage stage;
  stage.view->render();
  const WindowPointer window = stage.window();
  stage.view.reset();
  const auto second = make_view();
  GView::set_preferred_window_size(100, 100);
  second->set_render_window(window);
  show(*second, flat_square(kGreen));
  EXPECT_EQ(count_pixels(picture(*second), colour_is(kGreen)), 50 * 50);
}

TEST_F(LifetimeTest, ARendererMayOutliveItsView)
{
  auto view = make_view();
  show(*view, flat_square(kRed));
  const Image before = picture(*view);
  const vtkSmartPointer<vtkRenderer> renderer = view->get_renderer();
  const vtkSmartPointer<vtkRenderer> overlay = view->get_overlay_renderer();
  view->enable_overlay();
  view->render();
  view.reset();
  EXPECT_EQ(renderer->GetRenderWindow(), nullptr);
  EXPECT_EQ(overlay->GetRenderWindow(), nullptr);
  const WindowPointer window = make_window(100, 100);
  window->SetNumberOfLayers(2);
  window->AddRenderer(renderer); // the host's now, with the render pass of the view
  window->AddRenderer(overlay);
  EXPECT_TRUE(picture(window) == before);
  renderer->RemoveAllViewProps();
  EXPECT_EQ(count_pixels(picture(window), colour_is(kRed)), 0);
}

TEST_F(LifetimeTest, ARendererMayOutliveItsViewAndTheModelsItShows)
{
  const vtkSmartPointer<vtkRenderer> renderer = [] {
    FullViewStage stage;
    stage.view->render();
    return vtkSmartPointer<vtkRenderer>(stage.view->get_renderer());
  }();
  const WindowPointer window = make_window(100, 100);
  window->AddRenderer(renderer);
  const Image image = picture(window);
  EXPECT_EQ(count_pixels(image, colour_is(kGreen)), 0); // the model has taken its props out
  EXPECT_GT(count_pixels(image, colour_is(kRed)), 100); // the host's are there
}

TEST_F(LifetimeTest, ALabelActorThatTheHostKeepsOutlivesItsModel)
{
  const auto view = make_view();
  vtkSmartPointer<vtkProp> labels;
  {
    ScriptedModel model;
    model.add_label("label", BrantVector(-0.5, 0.0, 0.0), BrantColor(255, 0, 0));
    model.add_view(view.get());
    labels = view->get_renderer()->GetViewProps()->GetLastProp();
    view->render();
  }
  EXPECT_EQ(view->get_renderer()->GetViewProps()->GetNumberOfItems(), 0);
  show(*view, labels);
  view->render();
  EXPECT_EQ(labels->GetReferenceCount(), 2);
}

TEST_F(LifetimeTest, AViewportCommandMayOutliveItsView)
{
  auto view = make_view();
  const auto square = flat_square(kRed);
  square->GetMapper()->AddObserver(vtkCommand::UpdateShaderEvent, view->update_viewport_command());
  show(*view, square);
  const Image before = picture(*view);
  const vtkSmartPointer<vtkCallbackCommand> command = view->update_viewport_command();
  view.reset();
  EXPECT_EQ(command->GetClientData(), nullptr);
  EXPECT_EQ(command->Callback, nullptr);
  command->Execute(nullptr, vtkCommand::UpdateShaderEvent, nullptr);
  const auto other = make_view();
  show(*other, square);
  EXPECT_TRUE(picture(*other) == before);
}

TEST_F(LifetimeTest, AnActorMayOutliveItsViewAndBeShownInAnother)
{
  for (const bool overlap : {false, true}) {
    auto view = make_view();
    const auto square = flat_square(kRed);
    show(*view, square);
    const Image before = picture(*view);
    const auto other = make_view();
    if (overlap) {
      show(*other, square); // in both at once for a moment
      view.reset();
    } else {
      view.reset();
      show(*other, square);
    }
    EXPECT_TRUE(picture(*other) == before) << overlap;
  }
}

TEST_F(LifetimeTest, AHandleTellsOfTheEnd)
{
  std::shared_ptr<GView* const> handle;
  {
    const GView view;
    handle = view.handle();
    EXPECT_EQ(*handle, &view);
  }
  EXPECT_EQ(*handle, nullptr);
}

// --- The library is unloaded
// ---------------------------------------------------------------------------------------------

/// Has a host that is not linked with the library load it, render with it and unload it, so many times.
ChildResult run_unload_host(int times)
{
  const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  // What the OpenGL driver keeps when it is unloaded itself is not ours.
  return run_command("ASAN_OPTIONS=detect_leaks=0 timeout 50 '" + (folder / "UnloadHost").string() + "' '" +
                     (folder / "libUnloadPlugin.so").string() + "' " + std::to_string(times) + " 2>&1");
}

TEST_F(LifetimeTest, TheLibraryMayBeUnloadedWithAWindowsFrameBehindIt)
{
  const ChildResult result = run_unload_host(1);
  EXPECT_EQ(result.status, 0) << result.output;
  EXPECT_EQ(result.output, "gone\n");
}

TEST_F(LifetimeTest, TheLibraryMayBeLoadedAndUnloadedAgain)
{
  const ChildResult result = run_unload_host(3);
  EXPECT_EQ(result.status, 0) << result.output;
  EXPECT_EQ(result.output, "gone\n");
}

// --- Memory
// ---------------------------------------------------------------------------------------------------------

/// Bytes that are allocated and not freed, in the whole process.
std::size_t live_bytes()
{
#if defined(MORROW_ADDRESS_SANITIZER)
  return __sanitizer_get_current_allocated_bytes();
#else
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
#endif
}

/// Bytes that a call leaves behind on average, after some calls to warm up.
template<typename Call>
double growth_per_call(int warm_up, int calls, Call&& call)
{
  for (int i = 0; i < warm_up; ++i) {
    call();
  }
  const auto before = static_cast<double>(live_bytes());
  for (int i = 0; i < calls; ++i) {
    call();
  }
  return (static_cast<double>(live_bytes()) - before) / calls;
}

// The same content as that of FullViewStage.
void show_a_plain_window()
{
  Scene scene(60, 60);
  scene.window()->SetNumberOfLayers(2);
  const vtkNew<vtkRenderer> overlay;
  overlay->SetLayer(1);
  scene.window()->AddRenderer(overlay);
  scene.look_down(1.0);
  scene.renderer()->UseDepthPeelingOn();
  const auto veil = flat_actor(quad(0.2, 0.2, 0.9, 0.9, 0.5), kBlue);
  veil->GetProperty()->SetOpacity(0.5);
  scene.renderer()->AddActor(flat_square());
  scene.renderer()->AddActor(flat_actor(quad(-0.9, -0.9, -0.6, -0.6), kGreen));
  scene.renderer()->AddActor(veil);
  const vtkNew<vtkTextActor> text;
  text->SetInput("label");
  scene.renderer()->AddActor(text);
  scene.window()->Render();
}

void show_a_view()
{
  GView::set_preferred_window_size(60, 60);
  FullViewStage stage;
  GView::add_global_view(stage.view);
  stage.view->enable_overlay();
  stage.view->render();
  GView::remove_global_view(stage.view);
}

/// The same for two calls in turn, since what the OpenGL driver keeps gets less and less in the course of a
/// process.
struct Growth
{
  double plain = 0.0;
  double ours = 0.0;
};

template<typename Plain, typename Ours>
Growth compare_growth(Plain&& plain, Ours&& ours)
{
  constexpr int warm_up = 6;
  constexpr int rounds = 4;
  constexpr int calls = 3;
  growth_per_call(0, warm_up, plain);
  growth_per_call(0, warm_up, ours);
  Growth growth;
  for (int round = 0; round < rounds; ++round) {
    growth.plain += growth_per_call(0, calls, plain) / rounds;
    growth.ours += growth_per_call(0, calls, ours) / rounds;
  }
  return growth;
}

constexpr double kNoise = 4096.0; // bytes per window

// VTK's windows leave some bytes behind, each of them; views must not leave more.
TEST_F(LifetimeTest, ViewsLeaveNoMoreMemoryBehindThanPlainWindows)
{
  const Growth growth = compare_growth(show_a_plain_window, show_a_view);
  EXPECT_LT(growth.ours, growth.plain + kNoise);
}

// The framebuffers of one such window are some hundred thousand bytes, and the noise of starting it again is
// some ten thousand.
TEST_F(LifetimeTest, BindingAWindowAgainLeavesNoFramebuffersBehind)
{
  GView::set_preferred_window_size(200, 200);
  FullViewStage stage;
  const WindowPointer window = stage.window();
  const double bytes = growth_per_call(6, 15, [&] {
    stage.view->set_render_window(window);
    stage.view->render();
  });
  EXPECT_LT(bytes, 100000.0);
}

TEST_F(LifetimeTest, FramesLeaveNoMemoryBehind)
{
  FullViewStage stage;
  stage.view->enable_overlay();
  EXPECT_LT(growth_per_call(20, 50, [&] { stage.view->render(); }), 200.0);
}

// A view alone is thousands of bytes; the heap's own lists of freed blocks grow for the first thousand views.
TEST_F(LifetimeTest, ViewsThatAreNeverRenderedLeaveNoMemoryBehind)
{
  const double bytes = growth_per_call(1200, 300, [] {
    World world;
    world.use();
  });
  EXPECT_LT(bytes, 100.0);
}

} // namespace
