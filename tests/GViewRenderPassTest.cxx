// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GViewRenderPass.h"

#include "RenderPassFixture.h"

#include <vtkAssembly.h>
#include <vtkDepthPeelingPass.h>
#include <vtkDualDepthPeelingPass.h>
#include <vtkTranslucentPass.h>

#include <climits>
#include <cstdlib>
#include <sstream>

namespace {

using namespace morrow_test;

constexpr int kNoKey = INT_MIN + 1; // stands for "the actor has no such key"

// --- The class -------------------------------------------------------------------------------------------

TEST(GViewRenderPassClassTest, IsAVtkRenderPass)
{
  const vtkNew<GViewRenderPass> pass;
  EXPECT_STREQ(pass->GetClassName(), "GViewRenderPass");
  EXPECT_TRUE(pass->IsA("GViewRenderPass"));
  EXPECT_TRUE(pass->IsA("vtkRenderPass"));
  EXPECT_FALSE(pass->IsA("vtkDepthPeelingPass"));
  EXPECT_EQ(GViewRenderPass::SafeDownCast(pass), pass.Get());
  EXPECT_EQ(GViewRenderPass::SafeDownCast(vtkSmartPointer<vtkTranslucentPass>::New()), nullptr);
  const auto another = vtkSmartPointer<GViewRenderPass>::Take(pass->NewInstance());
  EXPECT_STREQ(another->GetClassName(), "GViewRenderPass");
}

TEST(GViewRenderPassClassTest, NothingIsThereBeforeTheFirstFrame)
{
  const vtkNew<GViewRenderPass> pass;
  EXPECT_FALSE(pass->get_vertex_visibility());
  EXPECT_EQ(pass->depth_peeling_pass(), nullptr);
  EXPECT_EQ(pass->take_exception(), nullptr);
}

TEST(GViewRenderPassClassTest, VertexVisibilityIsStoredWithoutModified)
{
  const vtkNew<GViewRenderPass> pass;
  const vtkMTimeType before = pass->GetMTime();
  pass->set_vertex_visibility(true);
  EXPECT_TRUE(pass->get_vertex_visibility());
  pass->set_vertex_visibility(false);
  EXPECT_FALSE(pass->get_vertex_visibility());
  EXPECT_EQ(pass->GetMTime(), before);
}

TEST(GViewRenderPassClassTest, PrintsItsState)
{
  const vtkNew<GViewRenderPass> pass;
  std::ostringstream text;
  pass->Print(text);
  EXPECT_NE(text.str().find("Vertex Visibility: Off\n"), std::string::npos);
  EXPECT_NE(text.str().find("Depth Peeling Pass: (none)\n"), std::string::npos);
  pass->set_vertex_visibility(true);
  text.str("");
  pass->Print(text);
  EXPECT_NE(text.str().find("Vertex Visibility: On\n"), std::string::npos);
}

TEST(GViewRenderPassClassTest, ReleasesNothingBeforeTheFirstFrame)
{
  const vtkNew<GViewRenderPass> pass;
  pass->ReleaseGraphicsResources(nullptr);
  EXPECT_EQ(pass->depth_peeling_pass(), nullptr);
}

// --- The order of the stages -----------------------------------------------------------------------------

TEST_F(GViewRenderPassTest, DrawsSurfacesThenLinesThenOverlays)
{
  const auto wire = add_actor("wire", VTK_WIREFRAME);
  const auto surface = add_actor("surface");
  const auto other = add_prop("other");
  const auto points = add_actor("points", VTK_POINTS);
  const auto late = add_actor("late");
  EXPECT_EQ(frame(), (Log{"surface.opaque", "late.opaque",                              // 1
                          "wire.opaque", "other.opaque", "points.opaque",               // 2
                          "wire.asked", "surface.asked", "other.asked", "points.asked", // 3
                          "late.asked",                                                 //
                          "wire.overlay", "surface.overlay", "other.overlay",           // 4
                          "points.overlay", "late.overlay"}));
}

TEST_F(GViewRenderPassTest, TranslucentGeometryComesBeforeTheOverlays)
{
  const auto glass = add_actor("glass");
  const auto wire = add_actor("wire", VTK_WIREFRAME);
  glass->is_translucent = true;
  const Log log = frame();
  ASSERT_GE(log.size(), 6U);
  EXPECT_EQ(log[0], "glass.opaque");
  EXPECT_EQ(log[1], "wire.opaque");
  EXPECT_EQ(log[2], "glass.asked");
  EXPECT_EQ(log[log.size() - 2], "glass.overlay");
  EXPECT_EQ(log[log.size() - 1], "wire.overlay");
  EXPECT_FALSE(calls_of(log, "translucent").empty());
  EXPECT_EQ(calls_of(log, "overlay").size(), 2U);
}

TEST_F(GViewRenderPassTest, PropsAreDrawnForTheRendererOfTheState)
{
  const auto surface = add_actor("surface");
  const auto other = add_prop("other");
  frame();
  EXPECT_EQ(surface->viewport, mScene.renderer());
  EXPECT_EQ(other->viewport, mScene.renderer());
}

TEST_F(GViewRenderPassTest, AnEmptyRendererGivesTheBackground)
{
  mScene.renderer()->SetBackground(0.0, 0.0, 1.0);
  const Image picture = mScene.render();
  EXPECT_EQ(count_pixels(picture, colour_is(kBlue)), 100 * 100);
  EXPECT_EQ(mPass->depth_peeling_pass(), nullptr);
}

TEST_F(GViewRenderPassTest, TheNumberOfPropsMayChangeBetweenFrames)
{
  const auto first = add_actor("first", VTK_WIREFRAME);
  EXPECT_EQ(calls_of(frame(), "opaque"), (Log{"first.opaque"}));
  const auto second = add_actor("second");
  const auto third = add_prop("third");
  EXPECT_EQ(calls_of(frame(), "opaque"), (Log{"second.opaque", "first.opaque", "third.opaque"}));
  mScene.renderer()->RemoveViewProp(first);
  mScene.renderer()->RemoveViewProp(second);
  EXPECT_EQ(calls_of(frame(), "opaque"), (Log{"third.opaque"}));
  mScene.renderer()->RemoveAllViewProps();
  EXPECT_EQ(frame(), Log{});
}

TEST_F(GViewRenderPassTest, AChangeOfModeOrRepresentationCountsInTheNextFrame)
{
  const auto actor = add_actor("a");
  set_mode(*actor, MRUtil::RENDER_NO_SURFACES);
  EXPECT_EQ(calls_of(frame(), "opaque"), Log{});
  set_mode(*actor, MRUtil::RENDER_FLAT);
  EXPECT_EQ(calls_of(frame(), "opaque"), (Log{"a.opaque"}));
  set_mode(*actor, MRUtil::RENDER_HIDDEN_LINE);
  EXPECT_EQ(calls_of(frame(), "depth"), (Log{"a.depth"}));
  actor->GetProperty()->SetRepresentationToWireframe();
  EXPECT_EQ(calls_of(frame(), "opaque"), (Log{"a.opaque"}));
}

TEST_F(GViewRenderPassTest, InvisiblePropsAreLeftOut)
{
  const auto seen = add_actor("seen");
  const auto unseen = add_actor("unseen");
  unseen->VisibilityOff();
  EXPECT_EQ(calls_to(frame(), "unseen"), Log{});
}

TEST_F(GViewRenderPassTest, CountsWhatItsPropsSayTheyDrew)
{
  const auto surface = add_actor("surface"); // 1 opaque, 1 overlay
  const auto wire = add_actor("wire", VTK_WIREFRAME);
  wire->result = 0;
  frame();
  EXPECT_EQ(mPass->GetNumberOfRenderedProps(), 2);
  frame(); // counted for each frame anew
  EXPECT_EQ(mPass->GetNumberOfRenderedProps(), 2);
}

// --- Modes, representations and vertex visibility --------------------------------------------------------

TEST_F(GViewRenderPassTest, SurfacesOfModes0And7AreNotDrawnAtAll)
{
  for (const int mode : {MRUtil::RENDER_WIREFRAME, MRUtil::RENDER_NO_SURFACES}) {
    const auto actor = add_actor("a");
    set_mode(*actor, mode);
    EXPECT_EQ(frame(), (Log{"a.asked", "a.overlay"})) << mode;
    mScene.renderer()->RemoveViewProp(actor);
  }
}

TEST_F(GViewRenderPassTest, SurfacesOfModes1And2FillTheDepthOnly)
{
  for (const int mode : {MRUtil::RENDER_HIDDEN_LINE, MRUtil::RENDER_HIDDEN_LINE_DASH}) {
    const auto actor = add_actor("a");
    set_mode(*actor, mode);
    EXPECT_EQ(frame(), (Log{"a.depth", "a.asked", "a.overlay"})) << mode;
    mScene.renderer()->RemoveViewProp(actor);
  }
}

TEST_F(GViewRenderPassTest, SurfacesOfAnyOtherModeAreDrawn)
{
  for (const int mode : {3, 4, 5, 6, 8, 9, -1, 1000, INT_MAX, INT_MIN}) {
    const auto actor = add_actor("a");
    set_mode(*actor, mode);
    EXPECT_EQ(frame(), (Log{"a.opaque", "a.asked", "a.overlay"})) << mode;
    mScene.renderer()->RemoveViewProp(actor);
  }
}

TEST_F(GViewRenderPassTest, AnActorWithoutKeysIsDrawn)
{
  const auto bare = add_actor("bare");
  const auto keyed = add_actor("keyed");
  keys_of(*keyed); // property keys, but none of ours
  ASSERT_EQ(bare->GetPropertyKeys(), nullptr);
  ASSERT_NE(keyed->GetPropertyKeys(), nullptr);
  EXPECT_EQ(calls_of(frame(), "opaque"), (Log{"bare.opaque", "keyed.opaque"}));
}

TEST_F(GViewRenderPassTest, ColourIsWrittenAgainAfterADepthOnlySurface)
{
  const auto hidden = add_actor("hidden");
  set_mode(*hidden, MRUtil::RENDER_HIDDEN_LINE);
  const auto seen = add_actor("seen");
  const auto wire = add_actor("wire", VTK_WIREFRAME);
  const Log log = frame();
  EXPECT_EQ(Log(log.begin(), log.begin() + 3), (Log{"hidden.depth", "seen.opaque", "wire.opaque"}));
  EXPECT_TRUE(writes_colour());
}

TEST_F(GViewRenderPassTest, VertexActorsFollowTheVertexVisibility)
{
  const auto vertices = add_actor("vertices", VTK_POINTS);
  set_vertex_key(*vertices, 1);
  EXPECT_EQ(calls_of(frame(), "opaque"), Log{});
  mPass->set_vertex_visibility(true);
  EXPECT_EQ(calls_of(frame(), "opaque"), (Log{"vertices.opaque"}));
  mPass->set_vertex_visibility(false);
  EXPECT_EQ(calls_of(frame(), "opaque"), Log{});
}

TEST_F(GViewRenderPassTest, TheValueOfTheVertexKeyIsNotRead)
{
  for (const int value : {0, 1, -1, INT_MAX}) {
    for (const bool visible : {false, true}) {
      mPass->set_vertex_visibility(visible);
      const auto vertices = add_actor("v", VTK_POINTS);
      set_vertex_key(*vertices, value);
      EXPECT_EQ(calls_of(frame(), "opaque").size(), visible ? 1U : 0U) << value;
      mScene.renderer()->RemoveViewProp(vertices);
    }
  }
}

TEST_F(GViewRenderPassTest, WireframesWithoutTheKeyAreDrawnWhateverTheVertexVisibility)
{
  const auto wire = add_actor("wire", VTK_WIREFRAME);
  EXPECT_EQ(calls_of(frame(), "opaque"), (Log{"wire.opaque"}));
  mPass->set_vertex_visibility(true);
  EXPECT_EQ(calls_of(frame(), "opaque"), (Log{"wire.opaque"}));
}

TEST_F(GViewRenderPassTest, ASurfaceWithTheVertexKeyIsDrawnTwiceWhileVerticesAreVisible)
{
  const auto surface = add_actor("surface");
  const auto after = add_actor("after");
  set_vertex_key(*surface, 0);
  EXPECT_EQ(calls_of(frame(), "opaque"), (Log{"surface.opaque", "after.opaque"}));
  mPass->set_vertex_visibility(true);
  EXPECT_EQ(calls_of(frame(), "opaque"), (Log{"surface.opaque", "after.opaque", "surface.opaque"}));
}

TEST_F(GViewRenderPassTest, TheKeysOfOtherPropsAreNotRead)
{
  // Only actors have a mode: any other prop is drawn once, with the lines.
  const auto other = add_prop("other");
  set_mode(*other, MRUtil::RENDER_NO_SURFACES);
  set_vertex_key(*other, 0);
  const auto surface = add_actor("surface");
  for (const bool visible : {false, true}) {
    mPass->set_vertex_visibility(visible);
    EXPECT_EQ(calls_of(frame(), "opaque"), (Log{"surface.opaque", "other.opaque"}));
  }
}

/// What becomes of one actor: the table of the class comment.
Log expected_calls(int representation, int mode, bool has_vertex_key, bool vertices_visible)
{
  Log calls;
  if (representation == VTK_SURFACE && (mode == 1 || mode == 2)) {
    calls.push_back("a.depth");
  } else if (representation == VTK_SURFACE && mode != 0 && mode != 7) {
    calls.push_back("a.opaque");
  }
  if (has_vertex_key ? vertices_visible : representation != VTK_SURFACE) {
    calls.push_back("a.opaque");
  }
  calls.push_back("a.asked");
  calls.push_back("a.overlay");
  return calls;
}

/// One representation against all the rest.
class GViewRenderPassTableTest : public GViewRenderPassTest, public ::testing::WithParamInterface<int>
{
protected:
  void expect_calls_for(int mode, int vertex_key, bool vertices_visible)
  {
    const auto actor = add_actor("a", GetParam());
    if (mode != kNoKey) {
      set_mode(*actor, mode);
    }
    if (vertex_key != kNoKey) {
      set_vertex_key(*actor, vertex_key);
    }
    mPass->set_vertex_visibility(vertices_visible);
    EXPECT_EQ(frame(), expected_calls(GetParam(), mode, vertex_key != kNoKey, vertices_visible))
        << "mode " << mode << ", vertex key " << vertex_key << ", vertices " << vertices_visible;
    mScene.renderer()->RemoveViewProp(actor);
  }
};

TEST_P(GViewRenderPassTableTest, DrawsAnActorByModeVertexKeyAndVertexVisibility)
{
  for (const int mode : {kNoKey, INT_MIN, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, INT_MAX}) {
    for (const int vertex_key : {kNoKey, 0, 1}) {
      for (const bool vertices_visible : {false, true}) {
        expect_calls_for(mode, vertex_key, vertices_visible);
      }
    }
  }
}

std::string representation_name(const ::testing::TestParamInfo<int>& representation)
{
  const char* const names[] = {"Points", "Wireframe", "Surface"}; // VTK_POINTS is 0, and so on
  return names[representation.param];
}

INSTANTIATE_TEST_SUITE_P(Representations, GViewRenderPassTableTest,
                         ::testing::Values(VTK_POINTS, VTK_WIREFRAME, VTK_SURFACE), representation_name);

// --- What the modes look like ----------------------------------------------------------------------------

/// A red wireframe square behind a green surface that covers the whole picture.
class GViewRenderPassHidingTest : public GViewRenderPassTest
{
protected:
  void SetUp() override
  {
    GViewRenderPassTest::SetUp();
    if (HasFatalFailure()) {
      return;
    }
    // Added first: that it is drawn after the surface is the pass's doing.
    mWire = show(flat_actor(quad(-0.5, -0.5, 0.5, 0.5, 0.0), kRed));
    mWire->GetProperty()->SetRepresentationToWireframe();
    mSurface = show(flat_actor(quad(-1.0, -1.0, 1.0, 1.0, 1.0), kGreen));
  }

  Image picture(int mode)
  {
    set_mode(*mSurface, mode);
    return mScene.render();
  }

  vtkActor* mWire = nullptr;
  vtkActor* mSurface = nullptr;
};

TEST_F(GViewRenderPassHidingTest, ADepthOnlySurfaceIsNotSeenButHidesTheWireframe)
{
  for (const int mode : {1, 2}) {
    EXPECT_EQ(count_pixels(picture(mode), colour_is(kBlack)), 100 * 100) << mode;
  }
}

TEST_F(GViewRenderPassHidingTest, ADrawnSurfaceIsSeenAndHidesTheWireframe)
{
  for (const int mode : {3, 4, 5, 6, 8, -1}) {
    EXPECT_EQ(count_pixels(picture(mode), colour_is(kGreen)), 100 * 100) << mode;
  }
}

TEST_F(GViewRenderPassHidingTest, ASurfaceThatIsNotDrawnHidesNothing)
{
  for (const int mode : {0, 7}) {
    const Image seen = picture(mode);
    EXPECT_EQ(count_pixels(seen, colour_is(kGreen)), 0) << mode;
    EXPECT_GT(count_pixels(seen, colour_is(kRed)), 150) << mode; // four sides of 50 pixels
  }
}

TEST_F(GViewRenderPassHidingTest, AWireframeInFrontOfADepthOnlySurfaceIsSeen)
{
  mWire->SetPosition(0.0, 0.0, 2.0);
  const Image seen = picture(MRUtil::RENDER_HIDDEN_LINE);
  EXPECT_GT(count_pixels(seen, colour_is(kRed)), 150);
  EXPECT_EQ(count_pixels(seen, colour_is(kGreen)), 0);
}

TEST_F(GViewRenderPassHidingTest, ADepthOnlySurfaceHidesAnotherSurfaceBehindIt)
{
  const vtkSmartPointer<vtkActor> red = mWire;
  red->GetProperty()->SetRepresentationToSurface();
  mScene.renderer()->RemoveViewProp(red); // to be drawn after the green one
  mScene.renderer()->AddViewProp(red);
  EXPECT_EQ(count_pixels(picture(MRUtil::RENDER_HIDDEN_LINE), colour_is(kBlack)), 100 * 100);
}

TEST_F(GViewRenderPassTest, ASurfaceBehindADepthOnlyOneIsSeenWhenItWasDrawnBefore)
{
  // Depth-only surfaces take no colour away; surfaces are drawn in the renderer's order.
  show(flat_actor(quad(-0.5, -0.5, 0.5, 0.5, 0.0), kRed));
  set_mode(*show(flat_actor(quad(-1.0, -1.0, 1.0, 1.0, 1.0), kGreen)), MRUtil::RENDER_HIDDEN_LINE);
  EXPECT_EQ(count_pixels(mScene.render(), colour_is(kRed)), 50 * 50);
}

TEST_F(GViewRenderPassTest, A2DActorIsDrawnOverEverything)
{
  show(flat_actor(quad(-1.0, -1.0, 1.0, 1.0), kGreen));
  const auto square = flat_square(10, 20, 40, 60, kRed);
  mScene.renderer()->AddViewProp(square);
  const Image seen = mScene.render();
  EXPECT_EQ(seen.at(25, 40), kRed);
  EXPECT_EQ(count_pixels(seen, colour_is(kRed)) + count_pixels(seen, colour_is(kGreen)), 100 * 100);
  EXPECT_NEAR(count_pixels(seen, colour_is(kRed)), 30 * 40, 71); // a row and a column of rounding
}

TEST_F(GViewRenderPassTest, AnAssemblyIsDrawnWithTheLines)
{
  // An assembly is a prop but not an actor: its parts are drawn, over a depth-only surface in front of it
  // not.
  const vtkNew<vtkAssembly> assembly;
  assembly->AddPart(flat_actor(quad(-0.5, -0.5, 0.5, 0.5), kRed));
  mScene.renderer()->AddViewProp(assembly);
  EXPECT_EQ(count_pixels(mScene.render(), colour_is(kRed)), 50 * 50);
  set_mode(*show(flat_actor(quad(-1.0, -1.0, 0.0, 1.0, 1.0), kGreen)), MRUtil::RENDER_HIDDEN_LINE);
  EXPECT_EQ(count_pixels(mScene.render(), colour_is(kRed)), 25 * 50);
}

// --- Translucent geometry --------------------------------------------------------------------------------

TEST_F(GViewRenderPassTest, AsksForTranslucentGeometryUntilTheFirstYes)
{
  const auto first = add_actor("first");
  const auto second = add_prop("second");
  const auto third = add_actor("third");
  second->is_translucent = true;
  third->is_translucent = true;
  const Log log = frame();
  ASSERT_GE(log.size(), 6U);
  // After the opaque calls: two questions, and none to the third prop before the peeling draws.
  EXPECT_EQ(log[3], "first.asked");
  EXPECT_EQ(log[4], "second.asked");
  EXPECT_NE(log[5], "third.asked");
}

TEST_F(GViewRenderPassTest, AsksEveryPropWhenNoneIsTranslucent)
{
  const auto a = add_actor("a");
  const auto b = add_prop("b");
  const auto c = add_actor("c", VTK_POINTS);
  EXPECT_EQ(calls_of(frame(), "asked"), (Log{"a.asked", "b.asked", "c.asked"}));
  EXPECT_EQ(calls_of(mLog, "translucent"), Log{});
}

TEST_F(GViewRenderPassTest, AFrameWithoutTranslucentGeometryMakesNoPeelingPass)
{
  show(flat_actor(quad(-1, -1, 1, 1), kRed));
  frame();
  EXPECT_EQ(mPass->depth_peeling_pass(), nullptr);
  vtkActor* glass = show(flat_actor(quad(-1, -1, 1, 1, 1), kGreen));
  glass->GetProperty()->SetOpacity(0.5);
  glass->VisibilityOff();
  frame();
  EXPECT_EQ(mPass->depth_peeling_pass(), nullptr);
  glass->VisibilityOn();
  frame();
  EXPECT_NE(mPass->depth_peeling_pass(), nullptr);
}

TEST_F(GViewRenderPassTest, ThePeelingPassIsKeptAndUsedAgain)
{
  const auto glass = add_actor("glass");
  glass->is_translucent = true;
  frame();
  vtkRenderPass* const made = mPass->depth_peeling_pass();
  ASSERT_NE(made, nullptr);
  frame();
  EXPECT_EQ(mPass->depth_peeling_pass(), made);
  glass->is_translucent = false;
  frame();
  EXPECT_EQ(mPass->depth_peeling_pass(), made);
  EXPECT_EQ(made->GetReferenceCount(), 1); // the pass's own
}

TEST_F(GViewRenderPassTest, ThePrintoutTellsThatThePeelingPassIsMade)
{
  add_actor("glass")->is_translucent = true;
  frame();
  std::ostringstream text;
  mPass->Print(text);
  EXPECT_NE(text.str().find("Depth Peeling Pass: made\n"), std::string::npos);
}

TEST_F(GViewRenderPassTest, DualDepthPeelingWhereTheRendererSupportsIt)
{
  add_actor("glass")->is_translucent = true;
  frame();
  EXPECT_NE(vtkDualDepthPeelingPass::SafeDownCast(mPass->depth_peeling_pass()), nullptr);
  auto* peeling = vtkDepthPeelingPass::SafeDownCast(mPass->depth_peeling_pass());
  ASSERT_NE(peeling, nullptr);
  EXPECT_NE(vtkTranslucentPass::SafeDownCast(peeling->GetTranslucentPass()), nullptr);
}

/// VTK's own switch for drivers that cannot do better.
class SimpleDepthPeelingOnly
{
public:
  SimpleDepthPeelingOnly() { setenv("VTK_USE_LEGACY_DEPTH_PEELING", "1", 1); }
  ~SimpleDepthPeelingOnly() { unsetenv("VTK_USE_LEGACY_DEPTH_PEELING"); }
  SimpleDepthPeelingOnly(const SimpleDepthPeelingOnly&) = delete;
  SimpleDepthPeelingOnly& operator=(const SimpleDepthPeelingOnly&) = delete;
};

TEST_F(GViewRenderPassTest, SimpleDepthPeelingWhereItDoesNot)
{
  const SimpleDepthPeelingOnly old_driver;
  add_actor("glass")->is_translucent = true;
  frame();
  EXPECT_EQ(vtkDualDepthPeelingPass::SafeDownCast(mPass->depth_peeling_pass()), nullptr);
  auto* peeling = vtkDepthPeelingPass::SafeDownCast(mPass->depth_peeling_pass());
  ASSERT_NE(peeling, nullptr);
  EXPECT_NE(vtkTranslucentPass::SafeDownCast(peeling->GetTranslucentPass()), nullptr);
}

TEST_F(GViewRenderPassTest, PeelsAndOcclusionRatioAreCopiedEveryFrame)
{
  add_actor("glass")->is_translucent = true;
  mScene.renderer()->SetMaximumNumberOfPeels(7);
  mScene.renderer()->SetOcclusionRatio(0.25);
  frame();
  auto* peeling = vtkDepthPeelingPass::SafeDownCast(mPass->depth_peeling_pass());
  ASSERT_NE(peeling, nullptr);
  EXPECT_EQ(peeling->GetMaximumNumberOfPeels(), 7);
  EXPECT_EQ(peeling->GetOcclusionRatio(), 0.25);
  mScene.renderer()->SetMaximumNumberOfPeels(40);
  mScene.renderer()->SetOcclusionRatio(0.0);
  frame();
  EXPECT_EQ(peeling->GetMaximumNumberOfPeels(), 40);
  EXPECT_EQ(peeling->GetOcclusionRatio(), 0.0);
}

/// A translucent pass that counts releases.
class CountingPass : public vtkTranslucentPass
{
public:
  static vtkSmartPointer<CountingPass> make()
  {
    auto* pass = new CountingPass;
    pass->InitializeObjectBase();
    return vtkSmartPointer<CountingPass>::Take(pass);
  }
  CountingPass(const CountingPass&) = delete;
  CountingPass& operator=(const CountingPass&) = delete;

  std::vector<vtkWindow*> released;

  void ReleaseGraphicsResources(vtkWindow* window) override { released.push_back(window); }

protected:
  CountingPass() = default;
  ~CountingPass() override = default;
};

TEST_F(GViewRenderPassTest, ReleasesTheGraphicsResourcesOfThePeelingPass)
{
  const SimpleDepthPeelingOnly old_driver; // its pass hands the call on to its translucent pass
  add_actor("glass")->is_translucent = true;
  frame();
  const auto counting = CountingPass::make();
  vtkDepthPeelingPass::SafeDownCast(mPass->depth_peeling_pass())->SetTranslucentPass(counting);
  mPass->ReleaseGraphicsResources(mScene.window());
  EXPECT_EQ(counting->released, (std::vector<vtkWindow*>{mScene.window()}));
}

TEST_F(GViewRenderPassTest, TranslucentGeometryLooksAsVtkPeelsIt)
{
  show_panes(*mScene.renderer());
  mScene.renderer()->UseDepthPeelingOn();
  mScene.renderer()->SetMaximumNumberOfPeels(40);
  mScene.renderer()->SetOcclusionRatio(0.0);
  const Image ours = mScene.render();
  mScene.renderer()->SetPass(nullptr);
  EXPECT_TRUE(ours == mScene.render());
  // In depth order from the front: green over red over blue, 0.4 each, where all three lie over each other.
  const Rgb all_three = ours.at(60, 20);
  EXPECT_NEAR(all_three.g, 255 * 0.4, 2);
  EXPECT_NEAR(all_three.r, 255 * 0.6 * 0.4, 2);
  EXPECT_NEAR(all_three.b, 255 * 0.6 * 0.6 * 0.4, 2);
}

TEST_F(GViewRenderPassTest, SimplePeelingShowsTheSameColours)
{
  const SimpleDepthPeelingOnly old_driver;
  show_panes(*mScene.renderer());
  mScene.renderer()->SetMaximumNumberOfPeels(40);
  mScene.renderer()->SetOcclusionRatio(0.0);
  const Rgb all_three = mScene.render().at(60, 20);
  EXPECT_NEAR(all_three.g, 255 * 0.4, 3);
  EXPECT_NEAR(all_three.r, 255 * 0.6 * 0.4, 3);
  EXPECT_NEAR(all_three.b, 255 * 0.6 * 0.6 * 0.4, 3);
}

TEST_F(GViewRenderPassTest, ThePictureIsTheSameAfterTheResourcesWereReleased)
{
  show_panes(*mScene.renderer());
  const Image before = mScene.render();
  mPass->ReleaseGraphicsResources(mScene.window());
  EXPECT_TRUE(before == mScene.render());
}

TEST_F(GViewRenderPassTest, TwoWindowsInTurnDoNotDisturbEachOther)
{
  Scene other(120, 80);
  other.look_down(2.0);
  const vtkNew<GViewRenderPass> other_pass;
  other.renderer()->SetPass(other_pass);
  show_panes(*mScene.renderer());
  show_panes(*other.renderer());
  const Image first = mScene.render();
  const Image second = other.render();
  for (int turn = 0; turn < 3; ++turn) {
    EXPECT_TRUE(first == mScene.render()) << turn;
    EXPECT_TRUE(second == other.render()) << turn;
  }
  EXPECT_NE(mPass->depth_peeling_pass(), other_pass->depth_peeling_pass());
}

TEST_F(GViewRenderPassTest, FollowsTheSizeOfTheWindow)
{
  show_panes(*mScene.renderer());
  const Image before = mScene.render();
  mScene.window()->SetSize(160, 120);
  const Image larger = mScene.render();
  EXPECT_EQ(larger.width(), 160);
  EXPECT_EQ(larger.height(), 120);
  mScene.window()->SetSize(100, 100);
  EXPECT_TRUE(before == mScene.render());
}

} // namespace
