// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GViewRenderPass.h"

#include "MRUtil.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkActor2D.h>
#include <vtkAssembly.h>
#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkCullerCollection.h>
#include <vtkDepthPeelingPass.h>
#include <vtkDualDepthPeelingPass.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkLight.h>
#include <vtkMapper.h>
#include <vtkNew.h>
#include <vtkOpenGLRenderer.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkProperty.h>
#include <vtkProperty2D.h>
#include <vtkRenderState.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <vtkTranslucentPass.h>
#include <vtkWeakPointer.h>
#include <vtk_glew.h>

#include <climits>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using morrow_test::colour_is;
using morrow_test::count_pixels;
using morrow_test::flat_actor;
using morrow_test::Image;
using morrow_test::lit_actor;
using morrow_test::quad;
using morrow_test::Rgb;
using morrow_test::Scene;

constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kRed{255, 0, 0};
constexpr Rgb kGreen{0, 255, 0};
constexpr Rgb kBlue{0, 0, 255};

constexpr int kNoKey = INT_MIN + 1; // stands for "the actor has no such key"

using Log = std::vector<std::string>;

// --- Props that say what is asked of them ----------------------------------------------------------------

bool writes_colour()
{
  GLboolean mask[4] = {GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE};
  glGetBooleanv(GL_COLOR_WRITEMASK, mask);
  return mask[0] != GL_FALSE && mask[1] != GL_FALSE && mask[2] != GL_FALSE && mask[3] != GL_FALSE;
}

bool writes_no_colour()
{
  GLboolean mask[4] = {GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE};
  glGetBooleanv(GL_COLOR_WRITEMASK, mask);
  return mask[0] == GL_FALSE && mask[1] == GL_FALSE && mask[2] == GL_FALSE && mask[3] == GL_FALSE;
}

/// A prop that draws nothing and writes down "<name>.<call>"; an opaque call while no colour is written is
/// "<name>.depth", one while only some channels are is "<name>.mixed".
template<typename Base>
class Recording : public Base
{
public:
  static vtkSmartPointer<Recording> make(Log& log, const std::string& name)
  {
    auto* prop = new Recording(log, name);
    prop->InitializeObjectBase();
    return vtkSmartPointer<Recording>::Take(prop);
  }
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

  /// What happens in a call of this name, after it has been written down.
  std::function<void(const std::string& call)> on_call;
  bool is_translucent = false;
  int result = 1;
  vtkViewport* viewport = nullptr; // of the last call

  int RenderOpaqueGeometry(vtkViewport* seen_by) override
  {
    viewport = seen_by;
    note(writes_colour() ? "opaque" : writes_no_colour() ? "depth" : "mixed");
    return result;
  }
  vtkTypeBool HasTranslucentPolygonalGeometry() override
  {
    note("asked");
    return is_translucent;
  }
  int RenderTranslucentPolygonalGeometry(vtkViewport* seen_by) override
  {
    viewport = seen_by;
    note("translucent");
    return 0;
  }
  int RenderOverlay(vtkViewport* seen_by) override
  {
    viewport = seen_by;
    note("overlay");
    return result;
  }

protected:
  Recording(Log& log, const std::string& name) : mLog(log), mName(name) {}
  ~Recording() override = default;

private:
  void note(const std::string& call)
  {
    mLog.push_back(mName + "." + call);
    if (on_call) {
      on_call(call);
    }
  }

  Log& mLog;
  std::string mName;
};

using RecordingActor = Recording<vtkActor>;
using RecordingProp = Recording<vtkProp>;

/// Throws std::runtime_error in a call of this name.
template<typename Base>
void throw_in(Recording<Base>& prop, const std::string& where, const std::string& what)
{
  prop.on_call = [=](const std::string& call) {
    if (call == where) {
      throw std::runtime_error(what);
    }
  };
}

std::string message_of(const std::exception_ptr& exception)
{
  try {
    if (exception != nullptr) {
      std::rethrow_exception(exception);
    }
  } catch (const std::exception& caught) {
    return caught.what();
  } catch (...) {
    return "(not a std::exception)";
  }
  return "(none)";
}

vtkInformation& keys_of(vtkProp& prop)
{
  if (prop.GetPropertyKeys() == nullptr) {
    prop.SetPropertyKeys(vtkSmartPointer<vtkInformation>::New());
  }
  return *prop.GetPropertyKeys();
}

void set_mode(vtkProp& prop, int mode)
{
  keys_of(prop).Set(MRUtil::RENDER_MODE(), mode);
}

void set_vertex_key(vtkProp& prop, int value)
{
  keys_of(prop).Set(MRUtil::VERTEX_VISIBILITY(), value);
}

/// The entries that end in ".<call>".
Log calls_of(const Log& log, const std::string& call)
{
  Log found;
  for (const std::string& entry : log) {
    if (entry.size() > call.size() && entry.substr(entry.size() - call.size() - 1) == "." + call) {
      found.push_back(entry);
    }
  }
  return found;
}

/// The entries of one prop, without its name.
Log calls_to(const Log& log, const std::string& name)
{
  Log found;
  for (const std::string& entry : log) {
    if (entry.rfind(name + ".", 0) == 0) {
      found.push_back(entry.substr(name.size() + 1));
    }
  }
  return found;
}

/// A 2-D actor: a rectangle in pixels, drawn as overlay.
vtkSmartPointer<vtkActor2D> flat_square(int x0, int y0, int x1, int y1, Rgb colour)
{
  const vtkNew<vtkPolyDataMapper2D> mapper;
  mapper->SetInputData(quad(x0, y0, x1, y1));
  auto square = vtkSmartPointer<vtkActor2D>::New();
  square->SetMapper(mapper);
  square->GetProperty()->SetColor(colour.r / 255.0, colour.g / 255.0, colour.b / 255.0);
  return square;
}

/// A window whose only renderer draws through the pass.
class GViewRenderPassTest : public morrow_test::RenderTest
{
protected:
  void SetUp() override
  {
    RenderTest::SetUp();
    if (HasFatalFailure()) {
      return;
    }
    mScene.look_down(1.0);
    mScene.renderer()->SetPass(mPass);
    mScene.renderer()->GetCullers()->RemoveAllItems(); // props without bounds are drawn too
  }

  vtkSmartPointer<RecordingActor> add_actor(const std::string& name, int representation = VTK_SURFACE)
  {
    auto actor = RecordingActor::make(mLog, name);
    actor->GetProperty()->SetRepresentation(representation);
    mScene.renderer()->AddViewProp(actor);
    return actor;
  }

  vtkSmartPointer<RecordingProp> add_prop(const std::string& name)
  {
    auto prop = RecordingProp::make(mLog, name);
    mScene.renderer()->AddViewProp(prop);
    return prop;
  }

  /// A real actor.
  vtkActor* show(const vtkSmartPointer<vtkActor>& actor)
  {
    mScene.renderer()->AddViewProp(actor);
    return actor;
  }

  Log frame()
  {
    mLog.clear();
    mScene.window()->Render();
    return mLog;
  }

  std::string thrown() { return message_of(mPass->take_exception()); }

  Scene mScene{100, 100};
  vtkNew<GViewRenderPass> mPass;
  Log mLog;
};

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

// --- Camera and lights -----------------------------------------------------------------------------------

TEST_F(GViewRenderPassTest, OpaqueSurfacesLookAsVtkDrawsThem)
{
  vtkActor* ball = show(lit_actor(morrow_test::sphere(0.8, 24), {200, 120, 40}));
  ball->GetProperty()->SetSpecular(0.5);
  const vtkNew<vtkLight> light;
  light->SetPosition(3.0, 2.0, 4.0);
  light->SetColor(1.0, 0.5, 0.5);
  mScene.renderer()->AddLight(light);
  mScene.renderer()->SetBackground(0.1, 0.2, 0.3);
  const Image ours = mScene.render();
  mScene.renderer()->SetPass(nullptr);
  EXPECT_TRUE(ours == mScene.render());
  EXPECT_GT(count_pixels(ours, morrow_test::colour_is_not({26, 51, 77}, 1)), 4000);
}

TEST_F(GViewRenderPassTest, CameraAndLightsAreBroughtUpToDateEveryFrame)
{
  show(lit_actor(morrow_test::sphere(0.8, 24)));
  const Image before = mScene.render();
  mScene.renderer()->GetActiveCamera()->SetFocalPoint(0.5, 0.0, 0.0);
  mScene.renderer()->GetActiveCamera()->SetPosition(0.5, 0.0, 10.0);
  const auto centre = [](const Image& image) {
    return morrow_test::find_pixels(image, morrow_test::colour_is_not(kBlack, 8)).centre_x;
  };
  const Image moved = mScene.render();
  EXPECT_LT(centre(moved), centre(before) - 20.0); // half a unit is 25 pixels; the border cuts some off
  mScene.renderer()->RemoveAllLights();
  const vtkNew<vtkLight> light;
  light->SetLightTypeToHeadlight();
  light->SetColor(1.0, 0.0, 0.0);
  mScene.renderer()->AddLight(light);
  const Image red = mScene.render();
  EXPECT_EQ(count_pixels(red, [](Rgb p) { return p.g != 0 || p.b != 0; }), 0);
  EXPECT_GT(count_pixels(red, [](Rgb p) { return p.r > 100; }), 1000);
}

/// A renderer that writes down what is asked of it before its props are drawn.
class RecordingRenderer : public vtkOpenGLRenderer
{
public:
  static vtkSmartPointer<RecordingRenderer> make(Log& log)
  {
    auto* renderer = new RecordingRenderer(log);
    renderer->InitializeObjectBase();
    return vtkSmartPointer<RecordingRenderer>::Take(renderer);
  }
  RecordingRenderer(const RecordingRenderer&) = delete;
  RecordingRenderer& operator=(const RecordingRenderer&) = delete;

  void ClearLights() override
  {
    mLog.emplace_back("clear lights");
    vtkOpenGLRenderer::ClearLights();
  }
  int UpdateCamera() override
  {
    mLog.emplace_back("camera");
    return vtkOpenGLRenderer::UpdateCamera();
  }
  vtkTypeBool UpdateLightsGeometryToFollowCamera() override
  {
    mLog.emplace_back("light geometry");
    return vtkOpenGLRenderer::UpdateLightsGeometryToFollowCamera();
  }
  int UpdateLights() override
  {
    mLog.emplace_back("lights");
    return vtkOpenGLRenderer::UpdateLights();
  }

protected:
  explicit RecordingRenderer(Log& log) : mLog(log) {}
  ~RecordingRenderer() override = default;

private:
  Log& mLog;
};

TEST_F(GViewRenderPassTest, PreparesLightsAndCameraBeforeTheFirstProp)
{
  const auto renderer = RecordingRenderer::make(mLog);
  const auto window = morrow_test::make_window(50, 50);
  window->AddRenderer(renderer);
  window->Render(); // without the pass: the window is ready now
  const auto surface = RecordingActor::make(mLog, "surface");
  vtkProp* props[] = {surface};
  vtkRenderState state(renderer);
  state.SetPropArrayAndCount(props, 1);
  mLog.clear();
  mPass->Render(&state);
  EXPECT_EQ(mLog, (Log{"clear lights", "camera", "light geometry", "lights", "surface.opaque",
                       "surface.asked", "surface.overlay"}));
}

TEST_F(GViewRenderPassTest, MakesItsWindowCurrentBeforeTheFirstProp)
{
  mScene.window()->Render();
  Scene other(50, 50);
  other.window()->Render();
  ASSERT_FALSE(mScene.window()->IsCurrent());
  const auto surface = RecordingActor::make(mLog, "surface");
  bool current = false;
  surface->on_call = [&](const std::string& call) {
    current |= call == "opaque" && mScene.window()->IsCurrent();
  };
  vtkProp* props[] = {surface};
  vtkRenderState state(mScene.renderer());
  state.SetPropArrayAndCount(props, 1);
  mPass->Render(&state);
  EXPECT_TRUE(current);
}

TEST_F(GViewRenderPassTest, DrawsThePropsOfTheStateAndNoOthers)
{
  mScene.window()->Render();
  const auto in_renderer = add_actor("in the renderer");
  const auto first = RecordingActor::make(mLog, "first");
  const auto second = RecordingActor::make(mLog, "second");
  vtkProp* props[] = {second, first};
  vtkRenderState state(mScene.renderer());
  state.SetPropArrayAndCount(props, 2);
  mPass->UpdateGeometry(&state);
  EXPECT_EQ(mLog, (Log{"second.opaque", "first.opaque", "second.asked", "first.asked", "second.overlay",
                       "first.overlay"}));
}

TEST_F(GViewRenderPassTest, DrawsIntoItsViewportOnly)
{
  mScene.renderer()->SetViewport(0.5, 0.0, 1.0, 0.5);
  show(flat_actor(quad(-5.0, -5.0, 5.0, 5.0), kGreen));
  const Image seen = mScene.render();
  const auto region = morrow_test::find_pixels(seen, colour_is(kGreen));
  EXPECT_EQ(region.count, 50 * 50);
  EXPECT_EQ(region.min_x, 50);
  EXPECT_EQ(region.max_y, 49);
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

/// Three panes of glass before each other and a solid ball between them, not in depth order.
void show_panes(vtkRenderer& renderer)
{
  const struct
  {
    double z;
    Rgb colour;
  } panes[] = {{0.0, kRed}, {2.0, kGreen}, {-2.0, kBlue}};
  double left = -0.9;
  for (const auto& pane : panes) {
    const auto actor = flat_actor(quad(left, -0.7, left + 1.2, 0.7, pane.z), pane.colour);
    actor->GetProperty()->SetOpacity(0.4);
    renderer.AddViewProp(actor);
    left += 0.3;
  }
  const auto ball = lit_actor(morrow_test::sphere(0.5, 24));
  ball->SetPosition(0.2, 0.3, 1.0);
  renderer.AddViewProp(ball);
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

// --- Exceptions ------------------------------------------------------------------------------------------

class GViewRenderPassThrowTest : public GViewRenderPassTest, public ::testing::WithParamInterface<const char*>
{};

TEST_P(GViewRenderPassThrowTest, TheFrameIsFinishedAndTheExceptionHandedOut)
{
  const std::string where = GetParam();
  const auto bad = add_actor("bad");
  const auto good = add_actor("good");
  bad->is_translucent = where == "translucent"; // else there is no such call
  throw_in(*bad, where, "prop");
  EXPECT_NO_THROW(frame());
  EXPECT_EQ(calls_to(mLog, "good").front(), "opaque");
  EXPECT_EQ(calls_to(mLog, "good").back(), "overlay");
  EXPECT_EQ(calls_to(mLog, "bad").back(), "overlay");
  EXPECT_EQ(thrown(), "prop");
  EXPECT_EQ(thrown(), "(none)");
  EXPECT_TRUE(writes_colour());
}

INSTANTIATE_TEST_SUITE_P(Calls, GViewRenderPassThrowTest,
                         ::testing::Values("opaque", "asked", "translucent", "overlay"),
                         [](const auto& call) { return std::string(call.param); });

TEST_F(GViewRenderPassTest, TheFirstExceptionIsKept)
{
  const auto first = add_actor("first", VTK_WIREFRAME);
  const auto second = add_actor("second"); // drawn before the wireframe
  throw_in(*first, "opaque", "first in the list");
  throw_in(*second, "opaque", "first in the frame");
  frame();
  EXPECT_EQ(thrown(), "first in the frame");
  frame();
  frame(); // not taken meanwhile: the older one stays
  second->on_call = nullptr;
  frame();
  EXPECT_EQ(thrown(), "first in the frame");
  frame();
  EXPECT_EQ(thrown(), "first in the list");
}

TEST_F(GViewRenderPassTest, AnyTypeOfExceptionIsContained)
{
  const auto bad = add_actor("bad");
  bad->on_call = [](const std::string& call) {
    if (call == "opaque") {
      throw 42;
    }
  };
  EXPECT_NO_THROW(frame());
  EXPECT_EQ(thrown(), "(not a std::exception)");
}

TEST_F(GViewRenderPassTest, ColourIsWrittenAgainAfterAnExceptionInADepthOnlySurface)
{
  const auto bad = add_actor("bad");
  set_mode(*bad, MRUtil::RENDER_HIDDEN_LINE);
  throw_in(*bad, "depth", "in the dark");
  const auto good = add_actor("good");
  EXPECT_EQ(calls_of(frame(), "opaque"), (Log{"good.opaque"}));
  EXPECT_EQ(thrown(), "in the dark");
  EXPECT_TRUE(writes_colour());
}

TEST_F(GViewRenderPassTest, AnExceptionInTheQuestionCountsAsNo)
{
  const auto bad = add_actor("bad");
  throw_in(*bad, "asked", "no answer");
  const auto opaque = add_actor("opaque");
  frame();
  EXPECT_EQ(calls_of(mLog, "asked"), (Log{"bad.asked", "opaque.asked"}));
  EXPECT_EQ(mPass->depth_peeling_pass(), nullptr);
  opaque->is_translucent = true;
  frame();
  EXPECT_NE(mPass->depth_peeling_pass(), nullptr);
}

TEST_F(GViewRenderPassTest, TheWindowRendersAgainAfterAnException)
{
  show(flat_actor(quad(-1, -1, 1, 1), kGreen));
  const auto bad = add_actor("bad");
  throw_in(*bad, "overlay", "once");
  frame();
  EXPECT_EQ(mScene.window()->CheckInRenderStatus(), 0);
  bad->on_call = nullptr;
  mScene.renderer()->SetBackground(0.0, 0.0, 1.0);
  EXPECT_EQ(count_pixels(mScene.render(), colour_is(kGreen)), 100 * 100);
}

TEST_F(GViewRenderPassTest, AnExceptionInTheTranslucentStageLeavesTheRestOfTheFrameIntact)
{
  // The peeling draws into framebuffers of its own: an exception must not leave one of them bound, in which
  // the overlays and everything after would be lost.
  show(flat_actor(quad(-1, -1, 1, 1), kGreen));
  const auto bad = add_actor("bad");
  bad->is_translucent = true;
  throw_in(*bad, "translucent", "half peeled");
  const auto square = flat_square(10, 20, 40, 60, kRed);
  mScene.renderer()->AddViewProp(square);
  for (int turn = 0; turn < 2; ++turn) {
    const Image seen = mScene.render();
    EXPECT_EQ(thrown(), "half peeled");
    EXPECT_EQ(seen.at(25, 40), kRed) << turn;
    EXPECT_EQ(seen.at(80, 80), kGreen) << turn;
  }
}

TEST_F(GViewRenderPassTest, TheFrameAfterATranslucentExceptionIsAsIfNothingHadBeen)
{
  show_panes(*mScene.renderer());
  const auto bad = add_actor("bad");
  const Image before = mScene.render();
  bad->is_translucent = true;
  throw_in(*bad, "translucent", "half peeled");
  frame();
  EXPECT_EQ(thrown(), "half peeled");
  bad->on_call = nullptr;
  bad->is_translucent = false;
  EXPECT_TRUE(before == mScene.render());
}

// --- Props that render another window --------------------------------------------------------------------

class GViewRenderPassNestedTest : public GViewRenderPassTest,
                                  public ::testing::WithParamInterface<const char*>
{};

TEST_P(GViewRenderPassNestedTest, WhatFollowsIsDrawnIntoTheRightWindow)
{
  // Each window has its own graphics context, and the other one's is current after its frame.
  const std::string where = GetParam();
  Scene other(60, 80);
  other.look_down(1.0);
  other.renderer()->AddViewProp(flat_actor(quad(-1, -1, 1, 1), kBlue));
  const auto hook = add_actor("hook");
  hook->is_translucent = where == "translucent";
  show(flat_actor(quad(-0.5, -0.5, 0.5, 0.5), kGreen));
  vtkActor* pane = show(flat_actor(quad(-0.8, -0.8, 0.8, 0.0, 1.0), kRed));
  pane->GetProperty()->SetOpacity(0.5);
  const auto square = flat_square(10, 20, 40, 60, kRed);
  mScene.renderer()->AddViewProp(square);
  const Image alone = mScene.render();
  hook->on_call = [&](const std::string& call) {
    if (call == where) {
      other.window()->Render();
    }
  };
  for (int turn = 0; turn < 2; ++turn) {
    EXPECT_TRUE(alone == mScene.render()) << turn;
    EXPECT_EQ(count_pixels(morrow_test::read_pixels(other.window()), colour_is(kBlue)), 60 * 80);
  }
}

INSTANTIATE_TEST_SUITE_P(Calls, GViewRenderPassNestedTest,
                         ::testing::Values("opaque", "asked", "translucent", "overlay"),
                         [](const auto& call) { return std::string(call.param); });

// --- Props that remove others ----------------------------------------------------------------------------

class GViewRenderPassRemovalTest : public GViewRenderPassTest,
                                   public ::testing::WithParamInterface<const char*>
{};

TEST_P(GViewRenderPassRemovalTest, ARemovedPropIsDrawnToTheEndOfTheFrame)
{
  // The renderer holds the only references: what it lets go of must still be there for the rest of the frame.
  const std::string where = GetParam();
  const auto remover = add_actor("remover");
  remover->is_translucent = where == "translucent";
  add_prop("first");
  add_actor("second");
  add_actor("third", VTK_WIREFRAME);
  remover->on_call = [&](const std::string& call) {
    if (call == where) {
      mScene.renderer()->RemoveAllViewProps();
    }
  };
  frame();
  for (const char* name : {"first", "second", "third"}) {
    ASSERT_FALSE(calls_to(mLog, name).empty()) << name;
    EXPECT_EQ(calls_to(mLog, name).front(), "opaque") << name;
    EXPECT_EQ(calls_to(mLog, name).back(), "overlay") << name;
  }
  EXPECT_EQ(frame(), Log{});
}

TEST_F(GViewRenderPassTest, HoldsNoPropBetweenFrames)
{
  vtkWeakPointer<vtkProp> prop = add_actor("a").Get();
  frame();
  EXPECT_NE(prop, nullptr);
  mScene.renderer()->RemoveAllViewProps();
  EXPECT_EQ(prop, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Calls, GViewRenderPassRemovalTest,
                         ::testing::Values("opaque", "asked", "translucent", "overlay"),
                         [](const auto& call) { return std::string(call.param); });

// --- Aborted frames --------------------------------------------------------------------------------------

/// Aborts each frame of the window while it lives.
class FrameAborter
{
public:
  explicit FrameAborter(vtkRenderWindow* window) : mWindow(window)
  {
    mCommand->SetCallback([](vtkObject* caller, unsigned long, void*, void*) {
      static_cast<vtkRenderWindow*>(caller)->SetAbortRender(1);
    });
    mWindow->AddObserver(vtkCommand::StartEvent, mCommand);
  }
  ~FrameAborter() { mWindow->RemoveObserver(mCommand); }
  FrameAborter(const FrameAborter&) = delete;
  FrameAborter& operator=(const FrameAborter&) = delete;

private:
  vtkRenderWindow* mWindow;
  vtkNew<vtkCallbackCommand> mCommand;
};

TEST_F(GViewRenderPassTest, AnAbortedFrameDrawsNothingAndKeepsThePicture)
{
  const auto actor = add_actor("actor");
  show(flat_actor(quad(-0.5, -0.5, 0.5, 0.5), kGreen));
  const Image before = mScene.render();
  EXPECT_EQ(count_pixels(before, colour_is(kGreen)), 50 * 50);
  mScene.renderer()->SetBackground(0.0, 0.0, 1.0);
  show(flat_actor(quad(-1, -1, 0, 0, 1), kRed));
  {
    const FrameAborter aborter(mScene.window());
    EXPECT_EQ(frame(), Log{});
    EXPECT_TRUE(before == morrow_test::read_pixels(mScene.window()));
    EXPECT_EQ(frame(), Log{}); // nor in the second buffer
    EXPECT_TRUE(before == morrow_test::read_pixels(mScene.window()));
  }
  const Image after = mScene.render();
  EXPECT_EQ(count_pixels(after, colour_is(kRed)), 50 * 50);
  EXPECT_EQ(count_pixels(after, colour_is(kGreen)), 75 * 25 + 25 * 25 - 25 * 25);
}

} // namespace
