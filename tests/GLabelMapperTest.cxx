// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GLabelMapper.h"

#include "LabelFixture.h"
#include "LabelOracle.h"

#include <vtkCoordinate.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <sstream>

namespace {

using namespace morrow_test;

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

} // namespace
