// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GLabelMapper.h"

#include "BrantVector.h"
#include "GModel.h"
#include "GModelSet.h"
#include "GView.h"
#include "LabelOracle.h"
#include "LabelRecorder.h"
#include "MRUtil.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkActor2D.h>
#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkCommand.h>
#include <vtkCoordinate.h>
#include <vtkCullerCollection.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkProp.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <vtkTextProperty.h>
#include <vtk_glew.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <numeric>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define MORROW_LEAKS_ARE_CHECKED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MORROW_LEAKS_ARE_CHECKED 1
#endif
#endif
#ifdef MORROW_LEAKS_ARE_CHECKED
#include <sanitizer/lsan_interface.h>
#endif

namespace {

using morrow_test::colour_is;
using morrow_test::count_pixels;
using morrow_test::DrawnLabel;
using morrow_test::flat_actor;
using morrow_test::Image;
using morrow_test::LabelRecorder;
using morrow_test::quad;
using morrow_test::Rgb;
using morrow_test::Scene;

constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kGreen{0, 255, 0};
constexpr Rgb kBlue{0, 0, 255};

/// A label's strokes are thin and fade into the background.
bool is_red(Rgb pixel)
{
  return pixel.r > 120 && pixel.g < 100 && pixel.b < 100;
}

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

using Texts = std::vector<std::string>;

class TestModel : public GModel
{
public:
  void update_parts() override {}
};

/// A prop that does what a test wants when overlays are drawn.
class OverlayHook : public vtkProp
{
public:
  static vtkSmartPointer<OverlayHook> make(std::function<void()> action)
  {
    auto* hook = new OverlayHook;
    hook->InitializeObjectBase();
    hook->action = std::move(action);
    return vtkSmartPointer<OverlayHook>::Take(hook);
  }
  OverlayHook(const OverlayHook&) = delete;
  OverlayHook& operator=(const OverlayHook&) = delete;

  std::function<void()> action;

  int RenderOverlay(vtkViewport* /*viewport*/) override
  {
    if (action) {
      action();
    }
    return 0;
  }

protected:
  OverlayHook() = default;
  ~OverlayHook() override = default;
};

/// Scope for an exception to pass through VTK, which frees nothing on such a way: what is allocated here may
/// leak.
class VtkMayLeak
{
#ifdef MORROW_LEAKS_ARE_CHECKED
  __lsan::ScopedDisabler mDisabler;
#endif
};

unsigned long depth_reads()
{
  return zBufferHelper::instance().depth_reads();
}

bool is_watched(vtkRenderWindow* window)
{
  return window->HasObserver(vtkCommand::EndEvent, &zBufferHelper::instance()) != 0;
}

/// How many textures there are in the window's context.
int num_textures(vtkRenderWindow* window)
{
  window->MakeCurrent();
  GLuint end = 0; // names count upwards
  glGenTextures(1, &end);
  glDeleteTextures(1, &end);
  int count = 0;
  for (GLuint name = 1; name < end; ++name) {
    count += glIsTexture(name) != GL_FALSE ? 1 : 0;
  }
  return count;
}

/// A mapper whose draws are written down and not made, without a model: all labels are drawn, and no display
/// is needed.
class GLabelMapperTest : public ::testing::Test
{
protected:
  GLabelMapperTest() : mWindow(morrow_test::make_window(100, 100)) { mWindow->AddRenderer(mRenderer); }

  long long add(const char* text, BrantColor color = BRANT_RED)
  {
    return mMapper->add_point({0.0, 0.0, 0.0}, text, color);
  }

  /// The texts that a draw draws.
  Texts draw()
  {
    mRecorder.clear();
    mMapper->RenderOverlay(mRenderer, mActor);
    return mRecorder.texts();
  }

  /// The look of the first label.
  vtkTextProperty& drawn_style()
  {
    draw();
    return *mRecorder.drawn().at(0).style;
  }

  LabelRecorder mRecorder{LabelRecorder::Drawing::None};
  vtkSmartPointer<vtkRenderWindow> mWindow;
  vtkNew<vtkRenderer> mRenderer;
  vtkSmartPointer<GLabelMapper> mMapper = vtkSmartPointer<GLabelMapper>::New();
  vtkNew<vtkActor2D> mActor;
};

// --- The class -------------------------------------------------------------------------------------------

TEST_F(GLabelMapperTest, IsAVtkMapper2D)
{
  EXPECT_STREQ(mMapper->GetClassName(), "GLabelMapper");
  for (const char* name : {"GLabelMapper", "vtkMapper2D", "vtkAbstractMapper", "vtkAlgorithm", "vtkObject"}) {
    EXPECT_TRUE(mMapper->IsA(name)) << name;
    EXPECT_TRUE(GLabelMapper::IsTypeOf(name)) << name;
  }
  EXPECT_FALSE(mMapper->IsA("vtkTextMapper"));
  EXPECT_EQ(GLabelMapper::SafeDownCast(mMapper), mMapper);
  EXPECT_EQ(GLabelMapper::SafeDownCast(mActor), nullptr);
  const auto another = vtkSmartPointer<GLabelMapper>::Take(mMapper->NewInstance());
  EXPECT_STREQ(another->GetClassName(), "GLabelMapper");
  EXPECT_EQ(another->size(), 0U);
}

TEST_F(GLabelMapperTest, PrintsItsTextPropertyIndented)
{
  std::ostringstream text;
  mMapper->PrintSelf(text, vtkIndent(4));
  // Behind what the superclass prints; the property's own lines stand two blanks further right.
  std::ostringstream expected;
  expected << "    Label Text Property:\n";
  mMapper->GetLabelTextProperty()->PrintSelf(expected, vtkIndent(6));
  const std::string& all = text.str();
  ASSERT_GT(all.size(), expected.str().size());
  EXPECT_EQ(all.substr(all.size() - expected.str().size()), expected.str());
  EXPECT_NE(all.find("    Reference Count: "), std::string::npos); // the superclass
}

TEST_F(GLabelMapperTest, PrintsThatThereIsNoTextProperty)
{
  mMapper->SetLabelTextProperty(nullptr);
  std::ostringstream text;
  mMapper->PrintSelf(text, vtkIndent(2));
  const std::string expected = "  Label Text Property: (none)\n";
  ASSERT_GT(text.str().size(), expected.size());
  EXPECT_EQ(text.str().substr(text.str().size() - expected.size()), expected);
}

// --- Keys ------------------------------------------------------------------------------------------------

TEST_F(GLabelMapperTest, KeysCountUpFromZero)
{
  EXPECT_EQ(mMapper->size(), 0U);
  EXPECT_EQ(add("a"), 0);
  EXPECT_EQ(add("b"), 1);
  EXPECT_EQ(add("c"), 2);
  EXPECT_EQ(mMapper->size(), 3U);
}

TEST_F(GLabelMapperTest, ReusesTheOldestFreedKeyFirst)
{
  add("a");
  add("b");
  add("c");
  mMapper->remove_point(1);
  mMapper->remove_point(0);
  EXPECT_EQ(mMapper->size(), 1U);
  EXPECT_EQ(add("d"), 1); // freed before 0
  EXPECT_EQ(add("e"), 0);
  EXPECT_EQ(add("f"), 3); // 0 to 2 are in use
}

TEST_F(GLabelMapperTest, RemovingAKeyThatIsNotThereChangesNothing)
{
  add("a");
  add("b");
  mMapper->remove_point(1);
  const long long low_half_is_zero = 1LL << 32; // cut to 32 bits it would be the live key 0
  for (const long long key : {-1LL, 1LL, 2LL, 1000LL, low_half_is_zero, -low_half_is_zero,
                              std::numeric_limits<long long>::min(), std::numeric_limits<long long>::max()}) {
    mMapper->remove_point(key);
    EXPECT_EQ(mMapper->size(), 1U) << key;
    EXPECT_EQ(draw(), (Texts{"a"})) << key;
  }
  EXPECT_EQ(add("c"), 1); // freed once, so it waits once
  EXPECT_EQ(add("d"), 2);
}

TEST_F(GLabelMapperTest, RemovesFromAnEmptyMapper)
{
  mMapper->remove_point(0);
  mMapper->remove_point(-1);
  EXPECT_EQ(mMapper->size(), 0U);
  EXPECT_EQ(add("a"), 0);
}

TEST_F(GLabelMapperTest, KeysRestartAtZeroAfterClear)
{
  add("a");
  add("b");
  add("c");
  mMapper->remove_point(1);
  mMapper->clear();
  EXPECT_EQ(mMapper->size(), 0U);
  EXPECT_EQ(draw(), Texts{});
  mMapper->remove_point(0); // forgotten
  EXPECT_EQ(add("d"), 0);   // not the freed 1
  EXPECT_EQ(add("e"), 1);
}

TEST_F(GLabelMapperTest, ClearsAnEmptyMapper)
{
  mMapper->clear();
  mMapper->clear();
  EXPECT_EQ(add("a"), 0);
}

TEST_F(GLabelMapperTest, DrawsInTheOrderOfAddition)
{
  add("a");
  add("b");
  add("c");
  EXPECT_EQ(draw(), (Texts{"a", "b", "c"}));
  mMapper->remove_point(0);
  EXPECT_EQ(draw(), (Texts{"b", "c"}));
  EXPECT_EQ(add("d"), 0); // the smallest key, but the youngest label
  EXPECT_EQ(draw(), (Texts{"b", "c", "d"}));
}

TEST_F(GLabelMapperTest, RandomAdditionsAndRemovalsKeepKeysAndOrder)
{
  std::mt19937 random(11);
  morrow_test::LiteralLabelKeys keys;
  Texts text_of_key;
  const auto expected_texts = [&] {
    Texts texts;
    for (const int key : keys.live_keys()) {
      texts.push_back(text_of_key[static_cast<std::size_t>(key)]);
    }
    return texts;
  };
  for (int call = 0; call < 3000; ++call) {
    if (random() % 2 == 0) {
      const std::string text = std::to_string(call);
      const long long key = add(text.c_str());
      ASSERT_EQ(key, keys.add()) << call;
      text_of_key.resize(std::max(text_of_key.size(), static_cast<std::size_t>(key) + 1));
      text_of_key[static_cast<std::size_t>(key)] = text;
    } else {
      const long long key = static_cast<long long>(random() % 80) - 2;
      mMapper->remove_point(key);
      keys.remove(key);
    }
    ASSERT_EQ(mMapper->size(), keys.size()) << call;
    if (call % 50 == 0) {
      ASSERT_EQ(draw(), expected_texts()) << call;
    }
  }
  EXPECT_EQ(draw(), expected_texts());
}

TEST_F(GLabelMapperTest, AHundredThousandLabelsComeAndGoInAnyOrder)
{
  constexpr int count = 100000;
  for (int i = 0; i < count; ++i) {
    ASSERT_EQ(add("x"), i);
  }
  std::vector<int> order(count);
  std::iota(order.begin(), order.end(), 0);
  std::shuffle(order.begin(), order.end(), std::mt19937(5));
  for (const int key : order) {
    mMapper->remove_point(key);
  }
  EXPECT_EQ(mMapper->size(), 0U);
  EXPECT_EQ(draw(), Texts{});
  for (const int key : order) { // in the order in which they were freed
    ASSERT_EQ(add("y"), key);
  }
  EXPECT_EQ(add("z"), count);
}

// --- Modified --------------------------------------------------------------------------------------------

class GLabelMapperModifiedTest : public GLabelMapperTest
{
protected:
  bool is_modified_by(const std::function<void()>& call)
  {
    const vtkMTimeType before = mMapper->GetMTime();
    call();
    return mMapper->GetMTime() > before;
  }
};

TEST_F(GLabelMapperModifiedTest, ByEachAddition)
{
  EXPECT_TRUE(is_modified_by([&] { add("a"); }));
  EXPECT_TRUE(is_modified_by([&] { add("a"); }));
}

TEST_F(GLabelMapperModifiedTest, ByARemovalThatRemoves)
{
  add("a");
  EXPECT_FALSE(is_modified_by([&] { mMapper->remove_point(1); }));
  EXPECT_FALSE(is_modified_by([&] { mMapper->remove_point(-1); }));
  EXPECT_TRUE(is_modified_by([&] { mMapper->remove_point(0); }));
  EXPECT_FALSE(is_modified_by([&] { mMapper->remove_point(0); }));
}

TEST_F(GLabelMapperModifiedTest, ByEachClear)
{
  add("a");
  EXPECT_TRUE(is_modified_by([&] { mMapper->clear(); }));
  EXPECT_TRUE(is_modified_by([&] { mMapper->clear(); }));
}

TEST_F(GLabelMapperModifiedTest, NotByTheModel)
{
  TestModel model;
  EXPECT_FALSE(is_modified_by([&] { mMapper->set_model(&model); }));
  EXPECT_FALSE(is_modified_by([&] { mMapper->set_model(nullptr); }));
}

TEST_F(GLabelMapperModifiedTest, ByAnotherTolerance)
{
  EXPECT_FALSE(is_modified_by([&] { mMapper->SetTolerance(0.001); }));
  EXPECT_TRUE(is_modified_by([&] { mMapper->SetTolerance(0.002); }));
  EXPECT_FALSE(is_modified_by([&] { mMapper->SetTolerance(0.002); }));
}

TEST_F(GLabelMapperModifiedTest, ByEveryTextPropertyButNull)
{
  const vtkNew<vtkTextProperty> property;
  EXPECT_TRUE(is_modified_by([&] { mMapper->SetLabelTextProperty(property); }));
  EXPECT_TRUE(is_modified_by([&] { mMapper->SetLabelTextProperty(property); }));
  EXPECT_FALSE(is_modified_by([&] { mMapper->SetLabelTextProperty(nullptr); }));
}

TEST_F(GLabelMapperModifiedTest, NotByADraw)
{
  add("a");
  EXPECT_FALSE(is_modified_by([&] { draw(); }));
}

// --- Tolerance -------------------------------------------------------------------------------------------

TEST_F(GLabelMapperTest, TheToleranceTakesAnyValue)
{
  EXPECT_EQ(mMapper->GetTolerance(), 0.001);
  for (const double tolerance : {0.0, -2.5, 1.0e300, kInfinity}) {
    mMapper->SetTolerance(tolerance);
    EXPECT_EQ(mMapper->GetTolerance(), tolerance);
  }
}

// --- The text property -----------------------------------------------------------------------------------

TEST_F(GLabelMapperTest, LabelsAreBoldItalicShadowedArialOf12PixelsAtFirst)
{
  vtkTextProperty* property = mMapper->GetLabelTextProperty();
  ASSERT_NE(property, nullptr);
  EXPECT_EQ(property->GetFontSize(), 12);
  EXPECT_EQ(property->GetBold(), 1);
  EXPECT_EQ(property->GetItalic(), 1);
  EXPECT_EQ(property->GetShadow(), 1);
  EXPECT_STREQ(property->GetFontFamilyAsString(), "Arial");
}

TEST_F(GLabelMapperTest, EachMapperHasItsOwnFirstTextProperty)
{
  const vtkNew<GLabelMapper> other;
  EXPECT_NE(other->GetLabelTextProperty(), mMapper->GetLabelTextProperty());
}

TEST_F(GLabelMapperTest, TheFirstTextPropertyBelongsToTheMapperAlone)
{
  EXPECT_EQ(mMapper->GetLabelTextProperty()->GetReferenceCount(), 1);
}

TEST_F(GLabelMapperTest, HoldsOneReferenceOnItsTextProperty)
{
  const vtkNew<vtkTextProperty> property;
  mMapper->SetLabelTextProperty(property);
  EXPECT_EQ(mMapper->GetLabelTextProperty(), property.Get());
  EXPECT_EQ(property->GetReferenceCount(), 2);
  add("a");
  draw();
  EXPECT_EQ(property->GetReferenceCount(), 2); // labels have copies
  mMapper = nullptr;
  EXPECT_EQ(property->GetReferenceCount(), 1);
}

TEST_F(GLabelMapperTest, LetsTheFormerTextPropertyGo)
{
  const vtkNew<vtkTextProperty> first;
  const vtkNew<vtkTextProperty> second;
  mMapper->SetLabelTextProperty(first);
  mMapper->SetLabelTextProperty(second);
  EXPECT_EQ(first->GetReferenceCount(), 1);
  EXPECT_EQ(second->GetReferenceCount(), 2);
}

TEST_F(GLabelMapperTest, SettingItsOwnTextPropertyAgainDoesNotDestroyIt)
{
  // The mapper holds the only reference: were it released before it is taken again, the object would be gone.
  vtkTextProperty* own = mMapper->GetLabelTextProperty();
  own->SetFontSize(23);
  mMapper->SetLabelTextProperty(own);
  EXPECT_EQ(mMapper->GetLabelTextProperty(), own);
  EXPECT_EQ(own->GetReferenceCount(), 1);
  EXPECT_EQ(own->GetFontSize(), 23);
}

TEST_F(GLabelMapperTest, NullLetsTheTextPropertyGoOnceAndForAll)
{
  const vtkNew<vtkTextProperty> property;
  mMapper->SetLabelTextProperty(property);
  mMapper->SetLabelTextProperty(nullptr);
  EXPECT_EQ(property->GetReferenceCount(), 1);
  mMapper->SetLabelTextProperty(nullptr);
  EXPECT_EQ(property->GetReferenceCount(), 1);
  mMapper = nullptr; // the destructor must not give back what was given back
  EXPECT_EQ(property->GetReferenceCount(), 1);
}

TEST_F(GLabelMapperTest, ASharedTextPropertySurvivesTheMappersThatLetItGo)
{
  // As the models of a process share theirs.
  const vtkNew<vtkTextProperty> shared;
  mMapper->SetLabelTextProperty(shared);
  {
    const vtkNew<GLabelMapper> other;
    other->SetLabelTextProperty(shared);
    EXPECT_EQ(shared->GetReferenceCount(), 3);
    other->SetLabelTextProperty(nullptr);
  }
  EXPECT_EQ(shared->GetReferenceCount(), 2);
  add("a");
  EXPECT_EQ(draw(), (Texts{"a"}));
}

TEST_F(GLabelMapperTest, LabelsTakeTheLookOfTheTextProperty)
{
  vtkTextProperty* property = mMapper->GetLabelTextProperty();
  property->SetFontSize(17);
  property->BoldOff();
  property->SetFontFamilyToCourier();
  property->SetJustificationToCentered();
  property->SetOpacity(0.75);
  add("a");
  vtkTextProperty& style = drawn_style();
  EXPECT_EQ(style.GetFontSize(), 17);
  EXPECT_EQ(style.GetBold(), 0);
  EXPECT_EQ(style.GetItalic(), 1);
  EXPECT_EQ(style.GetShadow(), 1);
  EXPECT_EQ(style.GetFontFamily(), VTK_COURIER);
  EXPECT_EQ(style.GetJustification(), VTK_TEXT_CENTERED);
  EXPECT_EQ(style.GetOpacity(), 0.75);
}

TEST_F(GLabelMapperTest, EachLabelHasItsOwnColour)
{
  mMapper->GetLabelTextProperty()->SetColor(0.1, 0.2, 0.3);
  add("a", {255, 0, 51});
  add("b", {1, 2, 3, 0}); // alpha counts for nothing
  draw();
  const double* first = mRecorder.drawn().at(0).style->GetColor();
  EXPECT_EQ(first[0], 1.0);
  EXPECT_EQ(first[1], 0.0);
  EXPECT_EQ(first[2], 51 / 255.0);
  const double* second = mRecorder.drawn().at(1).style->GetColor();
  EXPECT_EQ(second[0], 1 / 255.0);
  EXPECT_EQ(second[1], 2 / 255.0);
  EXPECT_EQ(second[2], 3 / 255.0);
  EXPECT_EQ(mRecorder.drawn().at(1).style->GetOpacity(), 1.0);
  EXPECT_EQ(mMapper->GetLabelTextProperty()->GetColor()[0], 0.1); // the template is left alone
}

/// A label from before the text property is replaced: drawn by then, or not.
class GLabelMapperRestyleTest : public GLabelMapperTest, public ::testing::WithParamInterface<bool>
{
protected:
  void add_label_of_before()
  {
    add("a", {51, 102, 153});
    if (GetParam()) {
      draw();
    }
  }

  void expect_colour_of_label()
  {
    EXPECT_EQ(drawn_style().GetColor()[0], 51 / 255.0);
    EXPECT_EQ(drawn_style().GetColor()[1], 102 / 255.0);
    EXPECT_EQ(drawn_style().GetColor()[2], 153 / 255.0);
  }
};

TEST_P(GLabelMapperRestyleTest, AReplacedTextPropertyReachesTheLabelButNotItsColour)
{
  add_label_of_before();
  const vtkNew<vtkTextProperty> property;
  property->SetFontSize(33);
  property->ItalicOff();
  property->BoldOff();
  property->ShadowOff();
  property->SetFontFamilyToTimes();
  property->SetColor(1.0, 1.0, 1.0);
  mMapper->SetLabelTextProperty(property);
  EXPECT_EQ(drawn_style().GetFontSize(), 33);
  EXPECT_EQ(drawn_style().GetItalic(), 0);
  EXPECT_EQ(drawn_style().GetBold(), 0);
  EXPECT_EQ(drawn_style().GetShadow(), 0);
  EXPECT_EQ(drawn_style().GetFontFamily(), VTK_TIMES);
  expect_colour_of_label();
}

TEST_P(GLabelMapperRestyleTest, AChangeInsideTheTextPropertyReachesOnlyLaterLabels)
{
  add_label_of_before();
  mMapper->GetLabelTextProperty()->SetFontSize(44);
  add("b");
  draw();
  EXPECT_EQ(mRecorder.drawn().at(0).style->GetFontSize(), 12);
  EXPECT_EQ(mRecorder.drawn().at(1).style->GetFontSize(), 44);
  expect_colour_of_label();
}

TEST_P(GLabelMapperRestyleTest, SettingTheSamePropertyAgainBringsItsChangesToTheLabel)
{
  add_label_of_before();
  mMapper->GetLabelTextProperty()->SetFontSize(44);
  mMapper->SetLabelTextProperty(mMapper->GetLabelTextProperty());
  EXPECT_EQ(drawn_style().GetFontSize(), 44);
  expect_colour_of_label();
}

TEST_P(GLabelMapperRestyleTest, ANullTextPropertyLeavesTheLabelAsItIs)
{
  mMapper->GetLabelTextProperty()->SetFontSize(44);
  add_label_of_before();
  mMapper->SetLabelTextProperty(nullptr);
  EXPECT_EQ(mMapper->size(), 1U);
  const vtkNew<vtkTextProperty> property;
  property->SetFontSize(7);
  mMapper->SetLabelTextProperty(property);
  EXPECT_EQ(drawn_style().GetFontSize(), 7);
  expect_colour_of_label();
}

INSTANTIATE_TEST_SUITE_P(Label, GLabelMapperRestyleTest, ::testing::Bool(),
                         [](const auto& drawn) { return drawn.param ? "DrawnBefore" : "NotYetDrawn"; });

TEST_F(GLabelMapperTest, ALabelAddedWithoutATextPropertyTakesTheNextOne)
{
  mMapper->SetLabelTextProperty(nullptr);
  EXPECT_EQ(add("a"), 0);
  const vtkNew<vtkTextProperty> property;
  property->SetFontSize(33);
  mMapper->SetLabelTextProperty(property);
  EXPECT_EQ(drawn_style().GetFontSize(), 33);
  EXPECT_EQ(drawn_style().GetColor()[0], 1.0);
  EXPECT_EQ(drawn_style().GetColor()[1], 0.0);
}

// --- The error -------------------------------------------------------------------------------------------

class GLabelMapperErrorTest : public GLabelMapperTest
{
protected:
  GLabelMapperErrorTest()
  {
    add("a");
    mMapper->SetLabelTextProperty(nullptr);
    mObserver->SetClientData(&mEvents);
    mObserver->SetCallback([](vtkObject*, unsigned long, void* client_data, void* call_data) {
      static_cast<Texts*>(client_data)->push_back(static_cast<const char*>(call_data));
    });
  }

  /// The whole message, address included.
  std::string message() const
  {
    std::ostringstream text;
    text << "ERROR: In base/GLabelMapper, line 193\nGLabelMapper (" << static_cast<void*>(mMapper.Get())
         << "): Need text property to render labels\n\n";
    return text.str();
  }

  vtkNew<vtkCallbackCommand> mObserver;
  Texts mEvents;
};

TEST_F(GLabelMapperErrorTest, GoesToTheOutputWindowWhenNobodyObserves)
{
  const morrow_test::ExpectedVtkErrors expected({"Need text property to render labels"});
  EXPECT_EQ(draw(), Texts{});
  ASSERT_EQ(morrow_test::vtk_messages().size(), 1U);
  EXPECT_EQ(morrow_test::vtk_messages()[0].text, message());
  EXPECT_EQ(morrow_test::vtk_messages()[0].kind, morrow_test::MessageKind::Error);
}

TEST_F(GLabelMapperErrorTest, GoesToAnObserverInsteadWhenThereIsOne)
{
  mMapper->AddObserver(vtkCommand::ErrorEvent, mObserver);
  EXPECT_EQ(draw(), Texts{});
  EXPECT_EQ(mEvents, (Texts{message()}));
  EXPECT_TRUE(morrow_test::vtk_messages().empty());
}

TEST_F(GLabelMapperErrorTest, ComesAtEachDraw)
{
  mMapper->AddObserver(vtkCommand::ErrorEvent, mObserver);
  draw();
  draw();
  EXPECT_EQ(mEvents, (Texts{message(), message()}));
  mMapper->SetLabelTextProperty(vtkSmartPointer<vtkTextProperty>::New());
  EXPECT_EQ(draw(), (Texts{"a"}));
  EXPECT_EQ(mEvents.size(), 2U);
}

TEST_F(GLabelMapperErrorTest, ComesWithoutLabelsToo)
{
  mMapper->clear();
  mMapper->AddObserver(vtkCommand::ErrorEvent, mObserver);
  draw();
  EXPECT_EQ(mEvents, (Texts{message()}));
}

TEST_F(GLabelMapperErrorTest, IsSilentWhileTheWarningDisplayIsOff)
{
  mMapper->AddObserver(vtkCommand::ErrorEvent, mObserver);
  vtkObject::GlobalWarningDisplayOff(); // as the first model leaves it
  EXPECT_EQ(draw(), Texts{});
  vtkObject::GlobalWarningDisplayOn();
  EXPECT_EQ(mEvents, Texts{});
  EXPECT_TRUE(morrow_test::vtk_messages().empty());
}

TEST_F(GLabelMapperErrorTest, ComesAfterTheTestOfTheTime)
{
  mMapper->AddObserver(vtkCommand::ErrorEvent, mObserver);
  mActor->SetAllocatedRenderTime(-1.0, mRenderer); // less than no time
  draw();
  EXPECT_EQ(mEvents, Texts{});
}

TEST_F(GLabelMapperErrorTest, LeavesTheActorAlone)
{
  mMapper->AddObserver(vtkCommand::ErrorEvent, mObserver);
  const int before = mActor->GetPositionCoordinate()->GetCoordinateSystem();
  draw();
  EXPECT_EQ(mActor->GetPositionCoordinate()->GetCoordinateSystem(), before);
  EXPECT_EQ(mMapper->GetTimeToDraw(), 0.0);
}

// --- Draws without a depth test --------------------------------------------------------------------------

TEST_F(GLabelMapperTest, DrawsEveryLabelWithoutAModel)
{
  mMapper->add_point({1.0, 2.0, 3.0}, "a", BRANT_RED);
  mMapper->add_point({1.0e30, 0.0, 0.0}, "far", BRANT_RED);
  const unsigned long before = depth_reads();
  EXPECT_EQ(draw(), (Texts{"a", "far"}));
  EXPECT_EQ(depth_reads(), before);
  EXPECT_FALSE(is_watched(mWindow));
}

TEST_F(GLabelMapperTest, HandsEachLabelItsAnchorViewportAndActor)
{
  mMapper->add_point({1.0, 2.0, 3.0}, "a", BRANT_RED);
  mMapper->add_point({-4.5, 0.0, 1.0e-9}, "b", BRANT_RED);
  draw();
  ASSERT_EQ(mRecorder.drawn().size(), 2U);
  EXPECT_EQ(mRecorder.drawn()[0].anchor, BrantVector(1.0, 2.0, 3.0));
  EXPECT_EQ(mRecorder.drawn()[1].anchor, BrantVector(-4.5, 0.0, 1.0e-9));
  EXPECT_EQ(mRecorder.drawn()[1].viewport, mRenderer.Get());
  EXPECT_EQ(mRecorder.drawn()[1].actor, mActor.Get());
}

TEST_F(GLabelMapperTest, AnchorsAreWorldCoordinates)
{
  add("a");
  ASSERT_NE(mActor->GetPositionCoordinate()->GetCoordinateSystem(), VTK_WORLD);
  draw();
  EXPECT_EQ(mActor->GetPositionCoordinate()->GetCoordinateSystem(), VTK_WORLD);
}

TEST_F(GLabelMapperTest, WithoutLabelsTheActorIsLeftAlone)
{
  const int before = mActor->GetPositionCoordinate()->GetCoordinateSystem();
  draw();
  EXPECT_EQ(mActor->GetPositionCoordinate()->GetCoordinateSystem(), before);
  EXPECT_EQ(mMapper->GetTimeToDraw(), 0.0);
}

TEST_F(GLabelMapperTest, ATextIsCopied)
{
  std::string text = "before";
  add(text.c_str());
  text.replace(0, 6, "after!");
  EXPECT_EQ(draw(), (Texts{"before"}));
}

TEST_F(GLabelMapperTest, ANullTextIsEmpty)
{
  EXPECT_EQ(add(nullptr), 0);
  add("");
  EXPECT_EQ(draw(), (Texts{"", ""}));
}

TEST_F(GLabelMapperTest, NothingIsDrawnWithoutViewportActorOrWindow)
{
  add("a");
  const vtkNew<vtkRenderer> without_window;
  mMapper->RenderOverlay(nullptr, mActor);
  mMapper->RenderOverlay(mRenderer, nullptr);
  mMapper->RenderOverlay(nullptr, nullptr);
  mMapper->RenderOverlay(without_window, mActor);
  EXPECT_TRUE(mRecorder.drawn().empty());
}

TEST_F(GLabelMapperTest, ADestroyedMapperTakesItsLabelsAlong)
{
  add("a");
  draw();
  add("not drawn");
  mMapper = nullptr; // the leak checker watches
  EXPECT_EQ(mRecorder.drawn().size(), 1U);
}

// --- The time a draw may take ----------------------------------------------------------------------------

TEST_F(GLabelMapperTest, ADrawIsTimed)
{
  EXPECT_EQ(mMapper->GetTimeToDraw(), 0.0);
  add("a");
  draw();
  EXPECT_GT(mMapper->GetTimeToDraw(), 0.0);
  EXPECT_LT(mMapper->GetTimeToDraw(), 60.0);
}

TEST_F(GLabelMapperTest, ADrawTooShortToBeMeasuredCountsAsATenthOfAMillisecond)
{
  // A label outside the window is looked at in less than a tick of the timer.
  TestModel model;
  mMapper->set_model(&model);
  mMapper->add_point({1.0e9, 0.0, 0.0}, "outside", BRANT_RED);
  bool some_were_too_short = false;
  for (int i = 0; i < 10000; ++i) {
    draw();
    ASSERT_GT(mMapper->GetTimeToDraw(), 0.0) << i;
    some_were_too_short |= mMapper->GetTimeToDraw() == 0.0001;
  }
  EXPECT_TRUE(some_were_too_short);
  EXPECT_TRUE(mRecorder.drawn().empty());
  zBufferHelper::instance().forget();
}

TEST_F(GLabelMapperTest, DrawsNothingWhenTheLastDrawTookLongerThanAllowed)
{
  add("a");
  draw();
  const double last = mMapper->GetTimeToDraw();
  mActor->SetAllocatedRenderTime(last / 2.0, mRenderer);
  EXPECT_EQ(draw(), Texts{});
  EXPECT_EQ(mMapper->GetTimeToDraw(), last); // not drawn, not timed
  mActor->SetAllocatedRenderTime(last, mRenderer);
  EXPECT_EQ(draw(), (Texts{"a"})); // equal is allowed
}

TEST_F(GLabelMapperTest, TheFirstDrawNeedsNoAllowance)
{
  add("a");
  mActor->SetAllocatedRenderTime(0.0, mRenderer);
  EXPECT_EQ(draw(), (Texts{"a"})); // nothing has taken any time yet
  EXPECT_EQ(draw(), Texts{});
}

// --- Draws with the depth test ---------------------------------------------------------------------------

/// A window of 100 × 100 pixels that shows x and y from −1 to 1; depth 0 is at z = 5, depth 1 at z = −5, so
/// that depth = (5 − z) / 10.
class GLabelDrawingTest : public morrow_test::RenderTest
{
protected:
  void SetUp() override
  {
    RenderTest::SetUp();
    mScene.look_down(1.0);
    prepare(*mScene.renderer());
    mMapper = add_mapper(*mScene.renderer());
  }

  static void prepare(vtkRenderer& renderer) { renderer.GetCullers()->RemoveAllItems(); }

  vtkSmartPointer<GLabelMapper> add_mapper(vtkRenderer& renderer)
  {
    auto mapper = vtkSmartPointer<GLabelMapper>::New();
    mapper->set_model(&mModel);
    const vtkNew<vtkActor2D> actor;
    actor->SetMapper(mapper);
    renderer.AddViewProp(actor);
    return mapper;
  }

  long long add(const char* text, double x, double y, double z, BrantColor color = BRANT_RED)
  {
    return mMapper->add_point({x, y, z}, text, color);
  }

  /// A green rectangle of this depth over the whole picture.
  vtkSmartPointer<vtkActor> add_wall(vtkRenderer& renderer, double z = 0.0)
  {
    auto wall = flat_actor(quad(-1.0, -1.0, 1.0, 1.0, z), kGreen);
    renderer.AddViewProp(wall);
    return wall;
  }
  vtkSmartPointer<vtkActor> add_wall(double z = 0.0) { return add_wall(*mScene.renderer(), z); }

  void add_hook(std::function<void()> action)
  {
    mScene.renderer()->AddViewProp(OverlayHook::make(std::move(action)));
  }

  /// The texts drawn in a frame.
  Texts frame() { return frame(mScene.window()); }
  Texts frame(vtkRenderWindow* window)
  {
    mRecorder.clear();
    window->Render();
    return mRecorder.texts();
  }

  LabelRecorder mRecorder;
  TestModel mModel;
  morrow_test::WarningDisplayOn mWarnings; // which the model has switched off
  Scene mScene{100, 100};
  vtkSmartPointer<GLabelMapper> mMapper;
};

TEST_F(GLabelDrawingTest, GeometryHidesTheLabelsBehindIt)
{
  add_wall();
  add("behind", 0.0, 0.0, -1.0);
  add("before", 0.0, 0.5, 1.0);
  EXPECT_EQ(frame(), (Texts{"before"}));
}

TEST_F(GLabelDrawingTest, AHiddenLabelIsNotInThePicture)
{
  const auto wall = add_wall();
  add("###", -0.5, 0.0, -1.0);
  EXPECT_EQ(count_pixels(mScene.render(), colour_is(kGreen)), 100 * 100);
  wall->VisibilityOff();
  EXPECT_GT(count_pixels(mScene.render(), is_red), 20);
}

TEST_F(GLabelDrawingTest, ASeenLabelStandsAtItsAnchorInItsColour)
{
  const vtkNew<vtkTextProperty> plain;
  plain->SetFontSize(24);
  mMapper->SetLabelTextProperty(plain);
  add("HHH", -0.5, 0.0, 1.0, BRANT_BLUE);
  const Image seen = mScene.render();
  const auto text = morrow_test::find_pixels(seen, [](Rgb pixel) { return pixel.b > 120; });
  EXPECT_GT(text.count, 100);
  EXPECT_NEAR(text.min_x, 25, 4); // lower left corner at pixel (25, 50)
  EXPECT_NEAR(text.min_y, 50, 4);
  EXPECT_NEAR(text.height(), 17, 3);                   // capitals are about 0.7 of a font's height
  EXPECT_GT(count_pixels(seen, colour_is(kBlue)), 20); // in the middle of a stroke
}

TEST_F(GLabelDrawingTest, LabelsFollowTheGeometryOfEachFrame)
{
  const auto wall = add_wall();
  add("a", 0.0, 0.0, -1.0);
  EXPECT_EQ(frame(), Texts{});
  wall->VisibilityOff();
  EXPECT_EQ(frame(), (Texts{"a"}));
  wall->VisibilityOn();
  EXPECT_EQ(frame(), Texts{});
}

TEST_F(GLabelDrawingTest, LabelsFollowTheCameraOfEachFrame)
{
  add_wall();
  add("a", 0.0, 0.0, -1.0);
  EXPECT_EQ(frame(), Texts{});
  vtkCamera* camera = mScene.renderer()->GetActiveCamera();
  camera->SetPosition(0.0, 0.0, -10.0); // from behind, a stands before the wall
  EXPECT_EQ(frame(), (Texts{"a"}));
  camera->SetPosition(0.0, 0.0, 10.0);
  EXPECT_EQ(frame(), Texts{});
}

TEST_F(GLabelDrawingTest, LabelsFollowTheSizeOfTheWindow)
{
  add_wall();
  add("behind", 0.0, 0.0, -1.0);
  add("before", 0.0, 0.0, 1.0);
  add("beside", 1.5, 0.0, -1.0); // outside a square window, beside the wall in a wide one
  EXPECT_EQ(frame(), (Texts{"before"}));
  mScene.window()->SetSize(200, 100);
  EXPECT_EQ(frame(), (Texts{"before", "beside"}));
  mScene.window()->SetSize(40, 80);
  EXPECT_EQ(frame(), (Texts{"before"}));
}

TEST_F(GLabelDrawingTest, TheToleranceShowsLabelsAShortWayBehind)
{
  add_wall();                 // depth 0.5
  add("a", 0.0, 0.0, -0.005); // depth 0.5005
  add("b", 0.0, 0.5, -0.02);  // depth 0.502
  EXPECT_EQ(frame(), (Texts{"a"}));
  mMapper->SetTolerance(0.003);
  EXPECT_EQ(frame(), (Texts{"a", "b"}));
  mMapper->SetTolerance(0.0001);
  EXPECT_EQ(frame(), Texts{});
}

TEST_F(GLabelDrawingTest, ANegativeToleranceHidesLabelsAShortWayBefore)
{
  add_wall();
  add("a", 0.0, 0.0, 0.05); // depth 0.495
  add("b", 0.0, 0.5, 0.2);  // depth 0.48
  EXPECT_EQ(frame(), (Texts{"a", "b"}));
  mMapper->SetTolerance(-0.01);
  EXPECT_EQ(frame(), (Texts{"b"}));
}

TEST_F(GLabelDrawingTest, EachMapperHasItsOwnTolerance)
{
  add_wall();
  const auto other = add_mapper(*mScene.renderer());
  add("a", 0.0, 0.0, -0.02);
  other->add_point({0.0, 0.0, -0.02}, "b", BRANT_RED);
  other->SetTolerance(0.003);
  EXPECT_EQ(frame(), (Texts{"b"}));
}

TEST_F(GLabelDrawingTest, LabelsOutsideTheWindowAreNotDrawn)
{
  add("left", -1.01, 0.0, 0.0);
  add("right", 1.01, 0.0, 0.0);
  add("below", 0.0, -1.01, 0.0);
  add("above", 0.0, 1.01, 0.0);
  add("near", 0.0, 0.0, 5.01);
  add("far", 0.0, 0.0, -5.01);
  EXPECT_EQ(frame(), Texts{});
}

TEST_F(GLabelDrawingTest, TheEdgesOfTheWindowAreInside)
{
  add("left", -1.0, 0.0, 0.0);
  add("right", 1.0, 0.0, 0.0);
  add("below", 0.0, -1.0, 0.0);
  add("above", 0.0, 1.0, 0.0);
  EXPECT_EQ(frame(), (Texts{"left", "right", "below", "above"}));
}

TEST_F(GLabelDrawingTest, OnTheRightAndTopEdgeNothingHides)
{
  // Their pixels would be column 100 and row 100, which the window does not have: the far plane is there.
  add_wall(4.0);
  add("left", -1.0, 0.0, 0.0);
  add("right", 1.0, 0.0, 0.0);
  add("below", 0.0, -1.0, 0.0);
  add("above", 0.0, 1.0, 0.0);
  add("corner", 1.0, 1.0, -4.99);
  EXPECT_EQ(frame(), (Texts{"right", "above", "corner"}));
}

TEST_F(GLabelDrawingTest, TheNearPlaneIsInsideAndTheFarPlaneIsNot)
{
  add("near", 0.0, 0.0, 5.0);
  add("far", 0.0, 0.0, -5.0);
  add("almost", 0.0, 0.0, -4.999);
  EXPECT_EQ(frame(), (Texts{"near", "almost"}));
}

TEST_F(GLabelDrawingTest, APointInThePlaneOfTheEyeIsNotDrawn)
{
  mScene.renderer()->GetActiveCamera()->ParallelProjectionOff();
  add("eye", 0.0, 0.0, 10.0); // w = 0
  add("beside the eye", 3.0, -2.0, 10.0);
  const unsigned long before = depth_reads();
  EXPECT_EQ(frame(), Texts{});
  EXPECT_EQ(depth_reads(), before);
}

TEST_F(GLabelDrawingTest, APointBehindTheEyeIsNotDrawn)
{
  // It projects into the middle of the window, mirrored, but beyond the far plane.
  mScene.renderer()->GetActiveCamera()->ParallelProjectionOff();
  add("behind the eye", 0.0, 0.0, 20.0);
  EXPECT_EQ(frame(), Texts{});
}

TEST_F(GLabelDrawingTest, PointsThatAreNotFiniteAreNotDrawn)
{
  for (const double bad : {kNan, kInfinity, -kInfinity}) {
    add("x", bad, 0.0, 0.0);
    add("y", 0.0, bad, 0.0);
    add("z", 0.0, 0.0, bad);
    add("all", bad, bad, bad);
  }
  add("huge", 1.0e308, 1.0e308, 1.0e308);
  add("good", 0.0, 0.0, 0.0);
  EXPECT_EQ(frame(), (Texts{"good"}));
  mScene.renderer()->GetActiveCamera()->ParallelProjectionOff();
  EXPECT_EQ(frame(), (Texts{"good"}));
}

TEST_F(GLabelDrawingTest, LabelsAreTestedAgainstTheWindowAndNotTheViewport)
{
  const vtkNew<vtkRenderer> whole; // VTK clears no more than viewports
  mScene.window()->RemoveRenderer(mScene.renderer());
  mScene.window()->AddRenderer(whole);
  mScene.window()->AddRenderer(mScene.renderer());
  mScene.renderer()->SetViewport(0.25, 0.25, 0.75, 0.75); // a world unit is 25 pixels now
  add("inside", 0.0, 0.0, 0.0);
  add("beside the viewport", 1.5, 0.0, 0.0);
  add("beside the window", 2.1, 0.0, 0.0);
  EXPECT_EQ(frame(), (Texts{"inside", "beside the viewport"}));
}

TEST_F(GLabelDrawingTest, AViewportReadsTheDepthOfItsOwnPlace)
{
  mScene.renderer()->SetViewport(0.5, 0.0, 1.0, 1.0);
  const vtkNew<vtkRenderer> left; // nothing in it: depth 1 all over
  left->SetViewport(0.0, 0.0, 0.5, 1.0);
  mScene.window()->AddRenderer(left);
  add_wall();
  add("behind", 0.0, 0.0, -1.0);
  add("before", 0.0, 0.0, 1.0);
  EXPECT_EQ(frame(), (Texts{"before"}));
}

// --- Render modes ----------------------------------------------------------------------------------------

TEST_F(GLabelDrawingTest, InMode0EveryLabelIsDrawn)
{
  add_wall(4.0);
  add("behind", 0.0, 0.0, -1.0);
  add("outside", 3.0, 0.0, 0.0);
  add("behind the eye", 0.0, 0.0, 20.0);
  mModel.set_render_mode(MRUtil::RENDER_WIREFRAME);
  const unsigned long before = depth_reads();
  EXPECT_EQ(frame(), (Texts{"behind", "outside", "behind the eye"}));
  EXPECT_EQ(depth_reads(), before);
  EXPECT_FALSE(is_watched(mScene.window()));
}

TEST_F(GLabelDrawingTest, InMode0ALabelShowsThroughGeometry)
{
  add_wall();
  add("###", -0.5, 0.0, -1.0);
  mModel.set_render_mode(MRUtil::RENDER_WIREFRAME);
  EXPECT_GT(count_pixels(mScene.render(), is_red), 20);
}

TEST_F(GLabelDrawingTest, InAllOtherModesLabelsAreTested)
{
  add_wall();
  add("behind", 0.0, 0.0, -1.0);
  add("before", 0.0, 0.0, 1.0);
  for (const int mode : {1, 2, 3, 4, 5, 6, 7, 8, -1}) {
    mModel.set_render_mode(static_cast<MRUtil::RenderMode>(mode));
    EXPECT_EQ(frame(), (Texts{"before"})) << mode;
  }
}

TEST_F(GLabelDrawingTest, AChangeOfModeShowsInTheNextFrame)
{
  add_wall();
  add("behind", 0.0, 0.0, -1.0);
  EXPECT_EQ(frame(), Texts{});
  mModel.set_render_mode(MRUtil::RENDER_WIREFRAME);
  EXPECT_EQ(frame(), (Texts{"behind"}));
  mModel.set_render_mode(MRUtil::RENDER_SMOOTH);
  EXPECT_EQ(frame(), Texts{});
}

TEST_F(GLabelDrawingTest, WithoutAModelNothingIsHidden)
{
  add_wall();
  add("behind", 0.0, 0.0, -1.0);
  mMapper->set_model(nullptr);
  EXPECT_EQ(frame(), (Texts{"behind"}));
}

TEST_F(GLabelDrawingTest, InMode0PointsThatAreNotFiniteDoNoHarm)
{
  add("nan", kNan, kNan, kNan);
  add("infinite", kInfinity, 0.0, -kInfinity);
  add("huge", 1.0e300, -1.0e300, 1.0e300);
  add("###", -0.5, 0.0, 0.0);
  mModel.set_render_mode(MRUtil::RENDER_WIREFRAME);
  EXPECT_GT(count_pixels(mScene.render(), is_red), 20);
  EXPECT_EQ(mRecorder.drawn().size(), 4U);
}

// --- Texts -----------------------------------------------------------------------------------------------

TEST_F(GLabelDrawingTest, NullAndEmptyTextsDrawNothing)
{
  add(nullptr, 0.0, 0.0, 0.0);
  add("", 0.0, 0.0, 0.0);
  EXPECT_EQ(count_pixels(mScene.render(), colour_is(kBlack)), 100 * 100);
  EXPECT_EQ(mRecorder.drawn().size(), 2U);
}

TEST_F(GLabelDrawingTest, ATextThatIsNoUtf8IsReportedByVtkAndTheOthersAreDrawn)
{
  add("\xff\xfe", 0.0, -0.5, 0.0);
  add("###", -0.5, 0.0, 0.0);
  const morrow_test::ExpectedVtkErrors expected({"UTF-8", "No scalar values found for texture input"});
  EXPECT_GT(count_pixels(mScene.render(), is_red), 20);
}

TEST_F(GLabelDrawingTest, ALongTextIsDrawn)
{
  add(std::string(10000, '#').c_str(), -1.0, 0.0, 0.0);
  const auto text = morrow_test::find_pixels(mScene.render(), is_red);
  EXPECT_GT(text.count, 100);
  EXPECT_GE(text.max_x, 97); // to the right border
}

TEST_F(GLabelDrawingTest, ATextOfSeveralLinesIsDrawn)
{
  add("##", -0.5, 0.0, 0.0);
  const int one = morrow_test::find_pixels(mScene.render(), is_red).height();
  mMapper->clear();
  add("##\n##", -0.5, 0.0, 0.0);
  const int two = morrow_test::find_pixels(mScene.render(), is_red).height();
  EXPECT_GT(two, one + 8);
}

TEST_F(GLabelDrawingTest, LabelsLieOverEachOtherInTheOrderOfAddition)
{
  const vtkNew<vtkTextProperty> plain;
  plain->SetFontSize(20);
  mMapper->SetLabelTextProperty(plain);
  add("###", -0.5, 0.0, 4.0, BRANT_RED); // nearer, but drawn first
  EXPECT_GT(count_pixels(mScene.render(), is_red), 40);
  add("###", -0.5, 0.0, 0.0, BRANT_BLUE);
  const Image both = mScene.render();
  EXPECT_EQ(count_pixels(both, is_red), 0);
  EXPECT_GT(count_pixels(both, colour_is(kBlue)), 20);
}

TEST_F(GLabelDrawingTest, AHundredThousandHiddenLabelsCostLittle)
{
  add_wall(4.0);
  for (int i = 0; i < 100000; ++i) {
    add("hidden", (i % 100) / 50.0 - 0.99, 0.0, 0.0);
  }
  add("seen", 0.0, 0.0, 4.5);
  const unsigned long before = depth_reads();
  EXPECT_EQ(frame(), (Texts{"seen"}));
  EXPECT_EQ(frame(), (Texts{"seen"}));
  EXPECT_EQ(depth_reads(), before + 2);
}

// --- Reads of the depth ----------------------------------------------------------------------------------

TEST_F(GLabelDrawingTest, TheDepthIsReadOnceInAFrame)
{
  add_wall();
  for (int i = 0; i < 10; ++i) {
    add("a", 0.0, 0.0, i % 2 == 0 ? 1.0 : -1.0);
  }
  const unsigned long before = depth_reads();
  frame();
  EXPECT_EQ(depth_reads(), before + 1);
  frame();
  frame();
  EXPECT_EQ(depth_reads(), before + 3);
}

TEST_F(GLabelDrawingTest, MappersAndModelsShareTheRead)
{
  TestModel other_model;
  const auto second = add_mapper(*mScene.renderer());
  const auto third = add_mapper(*mScene.renderer());
  third->set_model(&other_model);
  const vtkNew<vtkRenderer> right;
  prepare(*right);
  right->SetViewport(0.5, 0.0, 1.0, 1.0);
  right->SetActiveCamera(mScene.renderer()->GetActiveCamera());
  mScene.window()->AddRenderer(right);
  const auto fourth = add_mapper(*right);
  add("a", -0.5, 0.0, 0.0);
  second->add_point({-0.5, 0.0, 0.0}, "b", BRANT_RED);
  third->add_point({-0.5, 0.0, 0.0}, "c", BRANT_RED);
  fourth->add_point({-0.5, 0.0, 0.0}, "d", BRANT_RED);
  const unsigned long before = depth_reads();
  EXPECT_EQ(frame(), (Texts{"a", "b", "c", "d"}));
  EXPECT_EQ(depth_reads(), before + 1);
}

TEST_F(GLabelDrawingTest, TheDepthIsNotReadWhenNoLabelIsOnTheScreen)
{
  add("right", 1.5, 0.0, 0.0);
  add("left", -1.5, 0.0, 0.0);
  add("below", 0.0, -1.5, 0.0);
  add("above", 0.0, 1.5, 0.0);
  add("near", 0.0, 0.0, 6.0);
  const unsigned long before = depth_reads();
  frame();
  EXPECT_EQ(depth_reads(), before);
  EXPECT_FALSE(is_watched(mScene.window())); // watched in the frame, and no longer
  mMapper->clear();
  frame();
  EXPECT_EQ(depth_reads(), before);
}

TEST_F(GLabelDrawingTest, BeyondTheFarPlaneTheDepthIsStillRead)
{
  add("far", 0.0, 0.0, -6.0); // the far plane is looked at after the buffer
  const unsigned long before = depth_reads();
  EXPECT_EQ(frame(), Texts{});
  EXPECT_EQ(depth_reads(), before + 1);
}

TEST_F(GLabelDrawingTest, TheFirstRendererThatDrawsLabelsGivesTheProjection)
{
  // A renderer over the right half looks from the other side. By its own projection its label would be
  // hidden, but that of the whole window has been there before.
  add_wall();
  const vtkNew<vtkRenderer> right;
  prepare(*right);
  right->SetViewport(0.5, 0.0, 1.0, 1.0);
  right->GetActiveCamera()->DeepCopy(mScene.renderer()->GetActiveCamera());
  right->GetActiveCamera()->SetPosition(0.0, 0.0, -10.0);
  mScene.window()->AddRenderer(right);
  add_wall(*right);
  const auto second = add_mapper(*right);
  add("a", 0.0, 0.0, 1.0);
  second->add_point({0.0, 0.0, 1.0}, "b", BRANT_RED);
  EXPECT_EQ(frame(), (Texts{"a", "b"}));
  mMapper->clear(); // now the right half comes first
  EXPECT_EQ(frame(), Texts{});
}

// --- The helper ------------------------------------------------------------------------------------------

TEST_F(GLabelDrawingTest, TheWindowIsWatchedOnlyWhileItsFrameLasts)
{
  add("a", 0.0, 0.0, 0.0);
  bool watched_before = true;
  bool watched_after = false;
  mScene.renderer()->RemoveAllViewProps();
  add_hook([&] { watched_before = is_watched(mScene.window()); });
  mMapper = add_mapper(*mScene.renderer());
  add("a", 0.0, 0.0, 0.0);
  add_hook([&] { watched_after = is_watched(mScene.window()); });
  frame();
  EXPECT_FALSE(watched_before);
  EXPECT_TRUE(watched_after);
  EXPECT_FALSE(is_watched(mScene.window()));
  // Nor is anything else left behind, frame after frame.
  EXPECT_FALSE(mScene.window()->HasObserver(vtkCommand::StartEvent));
  EXPECT_FALSE(mScene.window()->HasObserver(vtkCommand::EndEvent));
}

TEST_F(GLabelDrawingTest, NothingIsKeptBetweenFrames)
{
  add("a", 0.0, 0.0, 0.0);
  frame();
  int width = -1;
  int height = -1;
  EXPECT_EQ(zBufferHelper::instance().depth(width, height), nullptr);
  EXPECT_EQ(width, 0);
  EXPECT_EQ(height, 0);
}

TEST_F(GLabelDrawingTest, TheHelperActsOnEndEventsOnly)
{
  zBufferHelper& helper = zBufferHelper::instance();
  mScene.window()->Render();
  helper.watch(*mScene.window());
  for (const unsigned long event : {static_cast<unsigned long>(vtkCommand::StartEvent),
                                    static_cast<unsigned long>(vtkCommand::RenderEvent),
                                    static_cast<unsigned long>(vtkCommand::ModifiedEvent),
                                    static_cast<unsigned long>(vtkCommand::DeleteEvent), 0UL}) {
    helper.Execute(mScene.window(), event, nullptr);
    EXPECT_TRUE(is_watched(mScene.window())) << event;
  }
  helper.Execute(mScene.window(), vtkCommand::EndEvent, nullptr);
  EXPECT_FALSE(is_watched(mScene.window()));
}

TEST_F(GLabelDrawingTest, OneWindowIsWatchedAtATime)
{
  zBufferHelper& helper = zBufferHelper::instance();
  const auto other = morrow_test::make_window(10, 10);
  helper.watch(*mScene.window());
  helper.watch(*other);
  EXPECT_FALSE(is_watched(mScene.window()));
  EXPECT_TRUE(is_watched(other));
  helper.Execute(mScene.window(), vtkCommand::EndEvent, nullptr); // a late one of the other window
  EXPECT_TRUE(is_watched(other));
  helper.forget();
  EXPECT_FALSE(is_watched(other));
}

TEST_F(GLabelDrawingTest, TheHelperLivesThroughTheEndOfItsWindow)
{
  zBufferHelper& helper = zBufferHelper::instance();
  helper.watch(*morrow_test::make_window(10, 10)); // gone at once
  int width = -1;
  int height = -1;
  EXPECT_EQ(helper.depth(width, height), nullptr);
  EXPECT_EQ(width, 0);
  helper.forget();
  add("a", 0.0, 0.0, 0.0);
  EXPECT_EQ(frame(), (Texts{"a"}));
}

TEST_F(GLabelDrawingTest, AWindowThatWasNeverRenderedHasNoDepth)
{
  // VTK itself would end the process.
  zBufferHelper& helper = zBufferHelper::instance();
  helper.watch(*mScene.window());
  int width = -1;
  int height = -1;
  EXPECT_EQ(helper.depth(width, height), nullptr);
  EXPECT_EQ(width, 0);
  EXPECT_EQ(height, 0);
  helper.forget();
}

TEST_F(GLabelDrawingTest, TheDepthIsThatOfTheWindow)
{
  add_wall(); // depth 0.5
  const float* depth = nullptr;
  int width = 0;
  int height = 0;
  bool same_again = false;
  add_hook([&] {
    zBufferHelper& helper = zBufferHelper::instance();
    helper.watch(*mScene.window());
    depth = helper.depth(width, height);
    ASSERT_NE(depth, nullptr);
    EXPECT_NEAR(depth[0], 0.5, 1.0e-5);
    EXPECT_NEAR(depth[101 * 99 + 99], 0.5, 1.0e-5); // rows of 101 values
    same_again = helper.depth(width, height) == depth;
  });
  frame();
  EXPECT_EQ(width, 100);
  EXPECT_EQ(height, 100);
  EXPECT_TRUE(same_again);
}

TEST_F(GLabelDrawingTest, TheHelperIsACommand)
{
  EXPECT_STREQ(zBufferHelper::instance().GetClassName(), "zBufferHelper");
  EXPECT_TRUE(zBufferHelper::instance().IsA("vtkCommand"));
  EXPECT_EQ(&zBufferHelper::instance(), &zBufferHelper::instance());
}

// --- Windows that change in the middle of a frame --------------------------------------------------------

/// A second window, with its own labels and a wall, that is seen from the other side.
class GLabelTwoWindowsTest : public GLabelDrawingTest
{
protected:
  void SetUp() override
  {
    GLabelDrawingTest::SetUp();
    mOther.look_down(1.0);
    mOther.renderer()->GetActiveCamera()->SetPosition(0.0, 0.0, -10.0);
    prepare(*mOther.renderer());
    add_wall(*mOther.renderer());
    mOtherMapper = add_mapper(*mOther.renderer());
    mOtherMapper->add_point({0.0, 0.0, 1.0}, "other z=1", BRANT_RED);
    mOtherMapper->add_point({0.0, 0.0, -1.0}, "other z=-1", BRANT_RED);
    add_wall();
    add("z=1", 0.0, 0.0, 1.0);
    add("z=-1", 0.0, 0.0, -1.0);
  }

  Scene mOther{60, 80};
  vtkSmartPointer<GLabelMapper> mOtherMapper;
};

TEST_F(GLabelTwoWindowsTest, WindowsInTurnHaveTheirOwnDepthAndProjection)
{
  for (int turn = 0; turn < 3; ++turn) {
    EXPECT_EQ(frame(), (Texts{"z=1"}));
    EXPECT_EQ(frame(mOther.window()), (Texts{"other z=-1"}));
  }
}

TEST_F(GLabelTwoWindowsTest, AWindowRenderedInAnothersFrameHasItsOwnDepthAndProjection)
{
  add_hook([&] { mOther.window()->Render(); });
  const auto late = add_mapper(*mScene.renderer()); // drawn after the other window's frame
  late->add_point({0.5, 0.5, 1.0}, "late z=1", BRANT_RED);
  late->add_point({0.5, -0.5, -1.0}, "late z=-1", BRANT_RED);
  const unsigned long before = depth_reads();
  EXPECT_EQ(frame(), (Texts{"z=1", "other z=-1", "late z=1"}));
  EXPECT_EQ(depth_reads(), before + 3); // the first window's again: what was kept of it has been dropped
  EXPECT_FALSE(is_watched(mScene.window()));
  EXPECT_FALSE(is_watched(mOther.window()));
  EXPECT_EQ(frame(), (Texts{"z=1", "other z=-1", "late z=1"}));
}

TEST_F(GLabelTwoWindowsTest, AWindowRenderedBeforeTheFirstLabelOfAFrameDisturbsNothing)
{
  mScene.renderer()->RemoveAllViewProps();
  add_wall();
  add_hook([&] { mOther.window()->Render(); });
  mMapper = add_mapper(*mScene.renderer());
  add("z=1", 0.0, 0.0, 1.0);
  add("z=-1", 0.0, 0.0, -1.0);
  EXPECT_EQ(frame(), (Texts{"other z=-1", "z=1"}));
}

TEST_F(GLabelTwoWindowsTest, AWindowDestroyedAfterItsFrameLeavesNothingBehind)
{
  auto brief = std::make_unique<Scene>(100, 100);
  brief->look_down(1.0);
  const auto mapper = add_mapper(*brief->renderer());
  mapper->add_point({0.0, 0.0, 0.0}, "brief", BRANT_RED);
  EXPECT_EQ(frame(brief->window()), (Texts{"brief"}));
  brief.reset();
  EXPECT_EQ(frame(), (Texts{"z=1"}));
}

TEST_F(GLabelTwoWindowsTest, AWindowDestroyedWhileItIsWatchedIsForgotten)
{
  // Drawn outside of a frame, so no end of a frame lets the helper go. A new window may well stand at the
  // address of the old one, and must not be taken for it.
  for (int turn = 0; turn < 5; ++turn) {
    Scene brief(100, 100);
    brief.look_down(1.0);
    brief.renderer()->ResetCameraClippingRange(-1.0, 1.0, -1.0, 1.0, -5.0, 5.0);
    if (turn % 2 == 0) {
      add_wall(*brief.renderer());
    }
    brief.window()->Render();
    const vtkNew<GLabelMapper> mapper;
    mapper->set_model(&mModel);
    mapper->add_point({0.0, 0.0, -1.0}, "brief", BRANT_RED);
    const vtkNew<vtkActor2D> actor;
    mRecorder.clear();
    mapper->RenderOverlay(brief.renderer(), actor);
    EXPECT_EQ(mRecorder.drawn().size(), turn % 2 == 0 ? 0U : 1U) << turn;
  }
  zBufferHelper::instance().forget();
}

TEST_F(GLabelDrawingTest, AWindowResizedInTheMiddleOfAFrameDoesNoHarm)
{
  add_wall();
  add("before", 0.0, 0.0, 1.0);
  add_hook([&] {
    const int size = mScene.window()->GetSize()[0] == 100 ? 300 : 100;
    mScene.window()->SetSize(size, size);
  });
  const auto late = add_mapper(*mScene.renderer());
  for (int i = 0; i < 100; ++i) { // in every part of the window
    late->add_point({i % 10 / 5.0 - 1.0, i / 10 / 5.0 - 1.0, -1.0}, "late", BRANT_RED);
  }
  for (int turn = 0; turn < 4; ++turn) {
    const Texts texts = frame();
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(texts[0], "before");
  }
}

TEST_F(GLabelDrawingTest, LabelsAreRightInTheFrameAfterAResizeInTheMiddleOfOne)
{
  add_wall();
  add("before", 0.0, 0.0, 1.0);
  add("behind", 0.0, 0.0, -1.0);
  bool resize = true;
  add_hook([&] {
    if (resize) {
      mScene.window()->SetSize(300, 300);
    }
  });
  frame();
  resize = false;
  EXPECT_EQ(frame(), (Texts{"before"}));
}

TEST_F(GLabelDrawingTest, AFrameThatAnExceptionEndedLeavesNoDepthBehind)
{
  const auto wall = add_wall();
  add("a", 0.0, 0.0, -1.0);
  bool fail = true;
  add_hook([&] {
    if (fail) {
      throw std::runtime_error("in the middle of the frame");
    }
  });
  {
    [[maybe_unused]] const VtkMayLeak scope;
    EXPECT_THROW(mScene.window()->Render(), std::runtime_error);
  }
  fail = false;
  mScene.window()->ClearInRenderStatus(); // what a host must do: VTK has been left in the middle of a frame
  wall->VisibilityOff();
  EXPECT_EQ(frame(), (Texts{"a"}));
}

// --- Graphics resources ----------------------------------------------------------------------------------

TEST_F(GLabelDrawingTest, LabelsAreDrawnAgainAfterTheirResourcesWereReleased)
{
  add("###", -0.5, 0.0, 0.0);
  const Image before = mScene.render();
  mMapper->ReleaseGraphicsResources(mScene.window());
  EXPECT_TRUE(before == mScene.render());
}

TEST_F(GLabelDrawingTest, ReleasesTheTexturesOfItsLabels)
{
  frame(); // the window's own textures
  const int before = num_textures(mScene.window());
  add("###", -0.5, 0.0, 0.0);
  add("HHH", -0.5, 0.5, 0.0);
  frame();
  EXPECT_EQ(num_textures(mScene.window()), before + 2);
  mMapper->ReleaseGraphicsResources(mScene.window());
  EXPECT_EQ(num_textures(mScene.window()), before);
  frame();
  EXPECT_EQ(num_textures(mScene.window()), before + 2);
  mMapper->clear();
  EXPECT_EQ(num_textures(mScene.window()), before);
}

TEST_F(GLabelDrawingTest, ResourcesOfLabelsThatWereNeverDrawnCanBeReleased)
{
  add("outside", 5.0, 0.0, 0.0);
  mMapper->ReleaseGraphicsResources(mScene.window());
  mMapper->ReleaseGraphicsResources(nullptr);
  EXPECT_EQ(frame(), Texts{});
}

TEST_F(GLabelDrawingTest, LabelsMoveToAnotherWindowWithTheirRenderer)
{
  add_wall();
  add("###", -0.5, 0.0, 1.0);
  add("hidden", 0.0, 0.0, -1.0);
  const Image before = mScene.render();
  EXPECT_EQ(mRecorder.texts(), (Texts{"###"}));
  const vtkSmartPointer<vtkRenderer> renderer = mScene.renderer();
  mScene.window()->RemoveRenderer(renderer);
  const auto other = morrow_test::make_window(100, 100);
  other->AddRenderer(renderer);
  EXPECT_EQ(frame(other), (Texts{"###"}));
  EXPECT_TRUE(before == morrow_test::read_pixels(other));
  other->RemoveRenderer(renderer);
  mScene.window()->AddRenderer(renderer);
  EXPECT_TRUE(before == mScene.render());
}

TEST_F(GLabelDrawingTest, LabelsSurviveTheEndOfTheContext)
{
  add("###", -0.5, 0.0, 1.0);
  const Image before = mScene.render();
  mScene.window()->Finalize();
  mScene.window()->Start();
  EXPECT_TRUE(before == mScene.render());
}

TEST_F(GLabelDrawingTest, LabelsComeAndGoBetweenFrames)
{
  add("a", 0.0, 0.0, 0.0);
  const long long second = add("b", 0.0, 0.5, 0.0);
  EXPECT_EQ(frame(), (Texts{"a", "b"}));
  mMapper->remove_point(second); // with its textures
  EXPECT_EQ(frame(), (Texts{"a"}));
  add("c", 0.0, -0.5, 0.0);
  EXPECT_EQ(frame(), (Texts{"a", "c"}));
  mMapper->clear();
  EXPECT_EQ(frame(), Texts{});
}

// --- In a view -------------------------------------------------------------------------------------------

/// A model in a view of 100 × 100 pixels with a wall at z = 0; the camera is that of the other tests.
class GLabelViewTest : public morrow_test::RenderTest
{
protected:
  void SetUp() override
  {
    RenderTest::SetUp();
    prepare(mView);
    mModel.add_view(&mView);
    mWall = flat_actor(quad(-1.0, -1.0, 1.0, 1.0), kGreen);
    mView.add_props({mWall});
  }

  static void prepare(GView& view)
  {
    view.get_render_window()->SetSize(100, 100);
    view.set_background(0);
    view.set_background2(0);
    view.set_triad_vis(false); // its labels would be recorded, too
    vtkCamera* camera = view.get_renderer()->GetActiveCamera();
    camera->ParallelProjectionOn();
    camera->SetParallelScale(1.0);
    camera->SetPosition(0.0, 0.0, 10.0);
    camera->SetFocalPoint(0.0, 0.0, 0.0);
    // The view fits the clipping range to its props: room for labels from z = -2 to 2.
    view.add_props({flat_actor(morrow_test::vertices({0.9, 0.9, -2, 0.9, 0.9, 2}), kBlue)});
  }

  /// The texts drawn in a frame of the view.
  Texts frame() { return frame(mView); }
  Texts frame(GView& view)
  {
    mRecorder.clear();
    view.render();
    return mRecorder.texts();
  }

  void set_wall_mode(int mode)
  {
    const vtkNew<vtkInformation> keys;
    keys->Set(MRUtil::RENDER_MODE(), mode);
    mWall->SetPropertyKeys(keys);
  }

  LabelRecorder mRecorder;
  GView mView;
  TestModel mModel;
  morrow_test::WarningDisplayOn mWarnings;
  vtkSmartPointer<vtkActor> mWall;
};

TEST_F(GLabelViewTest, LabelsOfAModelHideBehindGeometry)
{
  mModel.add_label("behind", {0.0, 0.0, -1.0}, BRANT_RED);
  mModel.add_label("before", {0.0, 0.0, 1.0}, BRANT_RED);
  EXPECT_EQ(frame(), (Texts{"before"}));
  mModel.set_render_mode(MRUtil::RENDER_WIREFRAME);
  EXPECT_EQ(frame(), (Texts{"behind", "before"}));
}

TEST_F(GLabelViewTest, SurfacesThatAreNotSeenHideLabelsByTheirMode)
{
  mModel.add_label("behind", {0.0, 0.0, -1.0}, BRANT_RED);
  set_wall_mode(MRUtil::RENDER_HIDDEN_LINE);
  EXPECT_EQ(frame(), Texts{}); // no colour, but depth
  set_wall_mode(MRUtil::RENDER_NO_SURFACES);
  EXPECT_EQ(frame(), (Texts{"behind"}));
}

TEST_F(GLabelViewTest, TwoModelsInAViewShareOneReadOfTheDepth)
{
  TestModel second;
  second.add_view(&mView);
  mModel.add_label("a", {0.0, 0.0, 0.0}, BRANT_RED);
  second.add_label("b", {0.0, 0.0, 0.0}, BRANT_RED);
  const unsigned long before = depth_reads();
  frame();
  EXPECT_EQ(depth_reads(), before + 1);
}

TEST_F(GLabelViewTest, AnEnabledOverlayDoesNotDisturbTheDepth)
{
  mModel.add_label("behind", {0.0, 0.0, -1.0}, BRANT_RED);
  mModel.add_label("before", {0.0, 0.0, 1.0}, BRANT_RED);
  mView.enable_overlay(); // clears the depth when it is drawn, after the main renderer
  EXPECT_EQ(frame(), (Texts{"before"}));
  EXPECT_EQ(frame(), (Texts{"before"}));
}

TEST_F(GLabelViewTest, OpaqueGeometryHidesLabelsBehindGlassToo)
{
  // Depth peeling leaves the depth of the opaque geometry.
  const auto glass = flat_actor(quad(-1.0, -1.0, 1.0, 1.0, 1.5), kBlue);
  glass->GetProperty()->SetOpacity(0.5);
  mView.add_props({glass});
  mModel.add_label("behind both", {0.0, 0.0, -1.0}, BRANT_RED);
  mModel.add_label("between", {0.0, 0.0, 1.0}, BRANT_RED);
  mModel.add_label("before both", {0.0, 0.0, 1.9}, BRANT_RED);
  EXPECT_EQ(frame(), (Texts{"between", "before both"}));
}

TEST_F(GLabelViewTest, TheFrameAfterAnExceptionOfAPropIsRight)
{
  mModel.add_label("behind", {0.0, 0.0, -1.0}, BRANT_RED);
  const auto hook = OverlayHook::make([] { throw std::runtime_error("a prop"); });
  mView.add_props({hook});
  mRecorder.clear();
  EXPECT_THROW(mView.render(), std::runtime_error);
  EXPECT_EQ(mRecorder.texts(), Texts{});
  mView.remove_props({hook, mWall});
  EXPECT_EQ(frame(), (Texts{"behind"}));
}

TEST_F(GLabelViewTest, TheFrameAfterAnExceptionOfAnObserverIsRight)
{
  mModel.add_label("behind", {0.0, 0.0, -1.0}, BRANT_RED);
  {
    [[maybe_unused]] const VtkMayLeak scope;
    const vtkNew<vtkCallbackCommand> observer;
    observer->SetCallback(
        [](vtkObject*, unsigned long, void*, void*) { throw std::runtime_error("observer"); });
    // The end of the renderer's part: labels are drawn, the window's end event is still to come.
    mView.get_renderer()->AddObserver(vtkCommand::EndEvent, observer);
    EXPECT_THROW(mView.render(), std::runtime_error);
    mView.get_renderer()->RemoveObserver(observer);
  }
  EXPECT_FALSE(is_watched(mView.get_render_window()));
  mView.remove_props({mWall});
  EXPECT_EQ(frame(), (Texts{"behind"}));
}

TEST_F(GLabelViewTest, LabelsMoveWithAViewThatIsGivenAnotherWindow)
{
  mModel.add_label("###", {-0.5, 0.0, 1.0}, BRANT_RED);
  EXPECT_EQ(frame(), (Texts{"###"}));
  const Image before = morrow_test::read_pixels(mView.get_render_window());
  const auto window = morrow_test::make_window(100, 100);
  window->Render(); // mapped
  mView.set_render_window(window);
  window->SetSize(100, 100);
  EXPECT_EQ(frame(), (Texts{"###"}));
  EXPECT_TRUE(before == morrow_test::read_pixels(window));
}

TEST_F(GLabelViewTest, VtksErrorsAboutALabelAreSilentAsTheFirstModelWantsThem)
{
  vtkObject::GlobalWarningDisplayOff(); // the tests' own switch had put it on again
  mModel.add_label("\xff\xfe", {0.0, 0.0, 1.0}, BRANT_RED);
  frame();
  EXPECT_TRUE(morrow_test::vtk_messages().empty());
  vtkObject::GlobalWarningDisplayOn();
}

// --- In two views ----------------------------------------------------------------------------------------

/// A second view, without a wall.
class GLabelTwoViewsTest : public GLabelViewTest
{
protected:
  void SetUp() override
  {
    GLabelViewTest::SetUp();
    prepare(mOther);
  }

  static int red_pixels(GView& view)
  {
    return count_pixels(morrow_test::read_pixels(view.get_render_window()), is_red);
  }

  GView mOther;
};

TEST_F(GLabelTwoViewsTest, AModelsLabelsAreJudgedInEachViewByItself)
{
  mModel.add_view(&mOther);
  mModel.add_label("behind", {0.0, 0.0, -1.0}, BRANT_RED);
  EXPECT_EQ(frame(), Texts{});
  EXPECT_EQ(frame(mOther), (Texts{"behind"}));
}

/// With and without the depth test, whose read makes a view's context current.
class GLabelSharedModelTest : public GLabelTwoViewsTest,
                              public ::testing::WithParamInterface<MRUtil::RenderMode>
{
protected:
  void SetUp() override
  {
    GLabelTwoViewsTest::SetUp();
    mModel.set_render_mode(GetParam());
    mModel.add_view(&mOther);
    mModel.add_label("###", {-0.5, 0.0, 1.0}, BRANT_RED);
    mModel.add_label("HHH", {-0.5, 0.5, 1.0}, BRANT_RED);
  }
};

TEST_P(GLabelSharedModelTest, LabelsAreDrawnInBothViewsFrameAfterFrame)
{
  // Each window has its own graphics context; what a label keeps in one of them must not be used, nor
  // deleted, in the other.
  mView.render();
  mOther.render();
  const Image first = morrow_test::read_pixels(mView.get_render_window());
  const Image second = morrow_test::read_pixels(mOther.get_render_window());
  EXPECT_GT(count_pixels(first, is_red), 40);
  EXPECT_GT(count_pixels(second, is_red), 40);
  for (int turn = 0; turn < 3; ++turn) {
    mView.render();
    mOther.render();
    EXPECT_TRUE(first == morrow_test::read_pixels(mView.get_render_window())) << turn;
    EXPECT_TRUE(second == morrow_test::read_pixels(mOther.get_render_window())) << turn;
  }
}

TEST_P(GLabelSharedModelTest, FramesInTurnLeaveNoTexturesBehind)
{
  const auto render_in_turn = [&](int turns) {
    for (int turn = 0; turn < turns; ++turn) {
      mView.render();
      mOther.render();
    }
  };
  render_in_turn(2);
  const int first = num_textures(mView.get_render_window());
  const int second = num_textures(mOther.get_render_window());
  render_in_turn(10);
  EXPECT_EQ(num_textures(mView.get_render_window()), first);
  EXPECT_EQ(num_textures(mOther.get_render_window()), second);
}

TEST_P(GLabelSharedModelTest, LabelsAreDrawnInAViewAfterTheOtherWasRenderedInItsFrame)
{
  // The labels of the outer frame come after those of the inner one.
  mModel.remove_view(&mView);
  mView.add_props({OverlayHook::make([&] { mOther.render(); })});
  mModel.add_view(&mView);
  for (int turn = 0; turn < 2; ++turn) {
    mView.render();
    EXPECT_GT(red_pixels(mView), 40) << turn;
    EXPECT_GT(red_pixels(mOther), 40) << turn;
  }
}

INSTANTIATE_TEST_SUITE_P(Modes, GLabelSharedModelTest,
                         ::testing::Values(MRUtil::RENDER_WIREFRAME, MRUtil::RENDER_FLAT),
                         [](const auto& mode) { return "Mode" + std::to_string(mode.param); });

TEST_F(GLabelTwoViewsTest, AViewThatLeavesTakesNothingFromTheOther)
{
  // Whichever was rendered last, and whichever leaves: its resources are its own.
  for (const bool other_was_last : {false, true}) {
    TestModel model;
    model.add_label("###", {-0.5, 0.0, 1.0}, BRANT_RED);
    model.add_label("HHH", {-0.5, 0.5, 1.0}, BRANT_RED);
    model.add_view(&mOther);
    auto brief = std::make_unique<GView>();
    prepare(*brief);
    model.add_view(brief.get());
    mOther.render();
    const Image before = morrow_test::read_pixels(mOther.get_render_window());
    EXPECT_GT(count_pixels(before, is_red), 40);
    brief->render();
    if (other_was_last) {
      mOther.render();
    }
    model.remove_view(brief.get());
    mOther.render();
    EXPECT_TRUE(before == morrow_test::read_pixels(mOther.get_render_window())) << other_was_last;
    brief.reset();
    mOther.render();
    EXPECT_TRUE(before == morrow_test::read_pixels(mOther.get_render_window())) << other_was_last;
  }
}

TEST_F(GLabelTwoViewsTest, ViewsThatComeAndGoTakeNothingFromTheOther)
{
  mModel.add_label("###", {-0.5, 0.0, 1.0}, BRANT_RED);
  mModel.add_label("HHH", {-0.5, 0.5, 1.0}, BRANT_RED);
  mView.render();
  const Image before = morrow_test::read_pixels(mView.get_render_window());
  for (int turn = 0; turn < 4; ++turn) {
    {
      GView brief; // its window may well stand where the one before did
      prepare(brief);
      mModel.add_view(&brief);
      brief.render();
      EXPECT_GT(red_pixels(brief), 40) << turn;
    }
    mView.render();
    EXPECT_TRUE(before == morrow_test::read_pixels(mView.get_render_window())) << turn;
  }
}

TEST_F(GLabelTwoViewsTest, AReplacedTextPropertyReachesTheLabelInBothWindows)
{
  // Through a mapper of its own: the model's is not to be had.
  const vtkNew<GLabelMapper> mapper;
  mapper->set_model(&mModel);
  mapper->add_point({-0.5, 0.0, 1.0}, "###", BRANT_RED);
  const auto actor = vtkSmartPointer<vtkActor2D>::New();
  actor->SetMapper(mapper);
  mView.add_props({actor});
  mOther.add_props({actor});
  frame(mView);
  frame(mOther);
  const vtkNew<vtkTextProperty> large;
  large->SetFontSize(40);
  mapper->SetLabelTextProperty(large);
  for (GView* view : {&mView, &mOther}) {
    frame(*view);
    ASSERT_EQ(mRecorder.drawn().size(), 1U);
    EXPECT_EQ(mRecorder.drawn()[0].style->GetFontSize(), 40);
    EXPECT_EQ(mRecorder.drawn()[0].style->GetColor()[0], 1.0);
    EXPECT_EQ(mRecorder.drawn()[0].style->GetColor()[1], 0.0);
  }
}

TEST_F(GLabelTwoViewsTest, ALabelIsRemovedFromItsOwnViewWhicheverIsCurrent)
{
  // Its texture has the same name in one context as another one has in the other.
  TestModel other_model;
  other_model.add_view(&mOther);
  other_model.add_label("###", {-0.5, 0.0, 1.0}, BRANT_RED);
  const GModel::LabelKey key = mModel.add_label("###", {-0.5, 0.0, 1.0}, BRANT_RED);
  mView.render();
  mOther.render();
  const Image before = morrow_test::read_pixels(mOther.get_render_window());
  const int own = num_textures(mView.get_render_window());
  const int others = num_textures(mOther.get_render_window()); // whose context is current now
  mModel.remove_label(key);
  EXPECT_EQ(num_textures(mView.get_render_window()), own - 1);
  EXPECT_EQ(num_textures(mOther.get_render_window()), others);
  mOther.render();
  EXPECT_TRUE(before == morrow_test::read_pixels(mOther.get_render_window()));
  mView.render();
  EXPECT_EQ(red_pixels(mView), 0);
}

TEST_F(GLabelTwoViewsTest, AViewRenderedInTheFrameOfAnotherHasItsOwnDepth)
{
  mView.add_props({OverlayHook::make([&] { mOther.render(); })});
  TestModel other_model;
  other_model.add_view(&mOther);
  TestModel late; // drawn after the other view's frame
  late.add_view(&mView);
  mModel.add_label("behind", {0.0, -0.5, -1.0}, BRANT_RED);
  other_model.add_label("###", {-0.5, 0.0, -1.0}, BRANT_RED);
  late.add_label("late behind", {0.0, 0.5, -1.0}, BRANT_RED);
  late.add_label("late before", {0.0, 0.5, 1.0}, BRANT_RED);
  EXPECT_EQ(frame(), (Texts{"###", "late before"}));
  EXPECT_GT(red_pixels(mOther), 20);
  EXPECT_GT(red_pixels(mView), 20);
}

TEST_F(GLabelTwoViewsTest, LabelsWithoutADepthTestAreDrawnIntoTheirOwnViewAfterTheOtherWasRendered)
{
  // No read of the depth makes the view's context current again.
  mView.add_props({OverlayHook::make([&] { mOther.render(); })});
  TestModel late;
  late.add_view(&mView);
  late.set_render_mode(MRUtil::RENDER_WIREFRAME);
  late.add_label("###", {-0.5, 0.0, 1.0}, BRANT_RED);
  for (int turn = 0; turn < 2; ++turn) {
    mView.render();
    EXPECT_GT(red_pixels(mView), 20) << turn;
    EXPECT_EQ(red_pixels(mOther), 0) << turn;
  }
}

} // namespace
