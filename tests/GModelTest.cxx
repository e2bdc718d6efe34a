// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GModel.h"

#include "BrantVector.h"
#include "GLabelMapper.h"
#include "GModelSet.h"
#include "GView.h"
#include "ModelFixture.h"

#include <gtest/gtest.h>

#include <vtkProperty.h>
#include <vtkTextProperty.h>

#include <limits>

namespace {

using namespace morrow_test;

/// The pixels of a text in one of these colours: small letters have soft edges everywhere.
PixelPredicate mostly(Rgb colour)
{
  return colour_is(colour, 180);
}

// --- Construction
// -----------------------------------------------------------------------------------------------

TEST(GModelTest, StartsHookedInFlatMode)
{
  ScriptedModel model;
  EXPECT_TRUE(model.is_hooked_to_views());
  EXPECT_EQ(model.get_render_mode(), 3);
}

TEST(GModelTest, StartsWithoutPartsAndLabels)
{
  ScriptedModel model;
  PlainView view;
  model.add_view(&view);
  ASSERT_EQ(shown(view).size(), 1U);
  ASSERT_EQ(label_actors(view).size(), 1U);
  EXPECT_EQ(GLabelMapper::SafeDownCast(label_actors(view)[0]->GetMapper())->size(), 0U);
}

TEST(GModelTest, IsAbstractAndCannotBeCopied)
{
  EXPECT_TRUE(std::is_abstract_v<GModel>);
  EXPECT_FALSE(std::is_copy_constructible_v<ScriptedModel>);
  EXPECT_FALSE(std::is_copy_assignable_v<ScriptedModel>);
}

TEST(GModelTest, ConstructorSwitchesNormalDirectedLightingOff)
{
  GModel::mNormalDirectedLighting = true;
  const ScriptedModel model;
  EXPECT_FALSE(GModel::mNormalDirectedLighting);
}

// It is the host's; only constructors write it.
TEST(GModelTest, LeavesNormalDirectedLightingAloneAfterConstruction)
{
  PlainView view;
  {
    ScriptedModel model;
    GModel::mNormalDirectedLighting = true;
    const auto data = sorted_data(1);
    model.add_view(&view);
    model.add_part(data[0], nothing());
    model.unhook_from_views();
    model.hook_to_views();
    model.clear();
  }
  EXPECT_TRUE(GModel::mNormalDirectedLighting);
  GModel::mNormalDirectedLighting = false;
}

TEST(GModelTest, InvalidLabelKeyIsMinusOne)
{
  EXPECT_EQ(GModel::InvalidLabelKey, -1);
  EXPECT_TRUE((std::is_same_v<GModel::LabelKey, int>));
}

// Libraries of hosts that were compiled earlier call through these slots. The destructor takes the first two.
TEST(GModelTest, KeepsTheOrderOfItsVirtualOperations)
{
  EXPECT_EQ(slot_of(&GModel::set_render_mode), 2U);
  EXPECT_EQ(slot_of(&GModel::get_render_mode), 3U);
  EXPECT_EQ(slot_of(&GModel::add_part), 4U);
  EXPECT_EQ(slot_of(&GModel::remove_part), 5U);
  EXPECT_EQ(slot_of(&GModel::update_parts), 6U);
  EXPECT_EQ(slot_of(&GModel::Render), 7U);
  EXPECT_EQ(slot_of(&GModel::unhook_from_views), 8U);
  EXPECT_EQ(slot_of(&GModel::hook_to_views), 9U);
  EXPECT_EQ(slot_of(&GModel::clear), 10U);
}

// --- Render mode
// ------------------------------------------------------------------------------------------------

TEST(GModelTest, KeepsAnyRenderMode)
{
  ScriptedModel model;
  for (int mode = 0; mode <= 7; ++mode) {
    model.set_render_mode(static_cast<MRUtil::RenderMode>(mode));
    EXPECT_EQ(model.get_render_mode(), mode);
  }
}

TEST(GModelTest, RenderModeTouchesNeitherPartsNorProperties)
{
  ScriptedModel model;
  PlainView view;
  Maker maker;
  const auto data = sorted_data(1);
  model.add_view(&view);
  model.add_part(data[0], maker.function());
  const PropPointers before = shown(view);
  const int representation = model.surface_normal_front_property()->GetRepresentation();
  model.set_render_mode(MRUtil::RENDER_WIREFRAME);
  EXPECT_EQ(shown(view), before);
  EXPECT_EQ(maker.calls.size(), 1U);
  EXPECT_EQ(model.surface_normal_front_property()->GetRepresentation(), representation);
}

// --- Properties
// -------------------------------------------------------------------------------------------------

void expect_colour(vtkProperty& property, double r, double g, double b)
{
  // SetColor stands for all three.
  for (const double* colour :
       {property.GetAmbientColor(), property.GetDiffuseColor(), property.GetSpecularColor()}) {
    EXPECT_EQ(colour[0], r);
    EXPECT_EQ(colour[1], g);
    EXPECT_EQ(colour[2], b);
  }
}

TEST(GModelPropertiesTest, SurfaceFrontIsFlatBlackAndFullyLit)
{
  const ScriptedModel model;
  vtkProperty* property = model.surface_normal_front_property();
  EXPECT_EQ(property->GetPointSize(), 6.0F);
  EXPECT_EQ(property->GetInterpolation(), VTK_FLAT);
  EXPECT_EQ(property->GetAmbient(), 1.0);
  EXPECT_EQ(property->GetDiffuse(), 1.0);
  EXPECT_EQ(property->GetSpecular(), 1.0);
  expect_colour(*property, 0.0, 0.0, 0.0);
}

TEST(GModelPropertiesTest, SurfaceBackIsRedInAmbientLightOnly)
{
  const ScriptedModel model;
  vtkProperty* property = model.surface_normal_back_property();
  EXPECT_EQ(property->GetPointSize(), 6.0F);
  EXPECT_EQ(property->GetInterpolation(), vtkNew<vtkProperty>()->GetInterpolation());
  EXPECT_EQ(property->GetAmbient(), 0.7);
  EXPECT_EQ(property->GetDiffuse(), 0.0);
  EXPECT_EQ(property->GetSpecular(), 0.0);
  expect_colour(*property, 1.0, 0.0, 0.0);
}

TEST(GModelPropertiesTest, CurveIsRedAndFullyLit)
{
  const ScriptedModel model;
  vtkProperty* property = model.curve_normal_property();
  EXPECT_EQ(property->GetPointSize(), 6.0F);
  EXPECT_EQ(property->GetInterpolation(), vtkNew<vtkProperty>()->GetInterpolation());
  EXPECT_EQ(property->GetAmbient(), 1.0);
  EXPECT_EQ(property->GetDiffuse(), 1.0);
  EXPECT_EQ(property->GetSpecular(), 1.0);
  expect_colour(*property, 1.0, 0.0, 0.0);
}

// Everything that is not set stays as VTK has it.
TEST(GModelPropertiesTest, LeaveTheRestToVtk)
{
  const ScriptedModel model;
  const vtkNew<vtkProperty> fresh;
  for (vtkProperty* property : {model.surface_normal_front_property(), model.surface_normal_back_property(),
                                model.curve_normal_property()}) {
    EXPECT_EQ(property->GetRepresentation(), fresh->GetRepresentation());
    EXPECT_EQ(property->GetOpacity(), fresh->GetOpacity());
    EXPECT_EQ(property->GetLineWidth(), fresh->GetLineWidth());
    EXPECT_EQ(property->GetEdgeVisibility(), fresh->GetEdgeVisibility());
    EXPECT_EQ(property->GetLighting(), fresh->GetLighting());
    EXPECT_EQ(property->GetSpecularPower(), fresh->GetSpecularPower());
  }
}

TEST(GModelPropertiesTest, BackColourReachesTheBackPropertyOnly)
{
  ScriptedModel model;
  model.surface_back_property_color(0.25, 0.5, 0.75);
  expect_colour(*model.surface_normal_back_property(), 0.25, 0.5, 0.75);
  expect_colour(*model.surface_normal_front_property(), 0.0, 0.0, 0.0);
  expect_colour(*model.curve_normal_property(), 1.0, 0.0, 0.0);
  EXPECT_EQ(model.surface_normal_back_property()->GetAmbient(), 0.7);
}

TEST(GModelPropertiesTest, BelongToOneModelEach)
{
  ScriptedModel one;
  const ScriptedModel other;
  one.surface_back_property_color(0.0, 1.0, 0.0);
  expect_colour(*other.surface_normal_back_property(), 1.0, 0.0, 0.0);
  EXPECT_NE(one.surface_normal_front_property(), other.surface_normal_front_property());
  EXPECT_NE(one.curve_normal_property(), other.curve_normal_property());
}

TEST(GModelPropertiesTest, GoWithTheModelUnlessTheHostKeepsThem)
{
  vtkWeakPointer<vtkProperty> back;
  vtkWeakPointer<vtkProperty> front;
  vtkSmartPointer<vtkProperty> kept;
  {
    const ScriptedModel model;
    front = model.surface_normal_front_property();
    back = model.surface_normal_back_property();
    kept = model.curve_normal_property();
  }
  EXPECT_EQ(front, nullptr);
  EXPECT_EQ(back, nullptr);
  EXPECT_EQ(kept->GetReferenceCount(), 1);
}

// --- The shared text property
// -----------------------------------------------------------------------------------

TEST(GModelTextTest, IsThereWhileAnyModelLives)
{
  EXPECT_EQ(GModel::text_property(), nullptr);
  auto first = std::make_unique<ScriptedModel>();
  const vtkTextProperty* property = GModel::text_property();
  EXPECT_NE(property, nullptr);
  auto second = std::make_unique<ScriptedModel>();
  first.reset();
  EXPECT_EQ(GModel::text_property(), property);
  second.reset();
  EXPECT_EQ(GModel::text_property(), nullptr);
}

TEST(GModelTextTest, IsPlainAndTwelvePixelsHigh)
{
  const ScriptedModel model;
  EXPECT_EQ(GModel::text_property()->GetFontSize(), 12);
  EXPECT_EQ(GModel::text_property()->GetBold(), 0);
  EXPECT_EQ(GModel::text_property()->GetShadow(), 0);
  EXPECT_EQ(GModel::get_font_size_factor(), 1.0);
}

TEST(GModelTextTest, IsTheOneOfEveryLabelMapper)
{
  ScriptedModel one;
  ScriptedModel other;
  const auto mapper = label_mapper(one);
  const auto other_mapper = label_mapper(other);
  ASSERT_NE(mapper, nullptr);
  ASSERT_NE(other_mapper, nullptr);
  EXPECT_NE(mapper, other_mapper);
  EXPECT_EQ(mapper->GetLabelTextProperty(), GModel::text_property());
  EXPECT_EQ(other_mapper->GetLabelTextProperty(), GModel::text_property());
}

TEST(GModelTextTest, FactorIsInUnitsOfTwelvePixels)
{
  const ScriptedModel model;
  GModel::set_font_size_factor(1.5);
  EXPECT_EQ(GModel::text_property()->GetFontSize(), 18);
  EXPECT_EQ(GModel::get_font_size_factor(), 1.5);
}

TEST(GModelTextTest, SizeIsTruncated)
{
  const ScriptedModel model;
  GModel::set_font_size_factor(1.99); // 23.88
  EXPECT_EQ(GModel::text_property()->GetFontSize(), 23);
  EXPECT_EQ(GModel::get_font_size_factor(), 23.0 / 12.0);
}

TEST(GModelTextTest, FactorBelowATwelfthGivesSizeZero)
{
  const ScriptedModel model;
  GModel::set_font_size_factor(1.0 / 12.0);
  EXPECT_EQ(GModel::text_property()->GetFontSize(), 1);
  GModel::set_font_size_factor(0.08);
  EXPECT_EQ(GModel::text_property()->GetFontSize(), 0);
  EXPECT_EQ(GModel::get_font_size_factor(), 0.0);
}

TEST(GModelTextTest, NegativeFactorGivesSizeZero)
{
  const ScriptedModel model;
  GModel::set_font_size_factor(-2.0);
  EXPECT_EQ(GModel::text_property()->GetFontSize(), 0);
}

// A cast of such a number to int is undefined.
TEST(GModelTextTest, FactorThatIsNoSizeChangesNothing)
{
  const ScriptedModel model;
  GModel::set_font_size_factor(2.0);
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double factor : {std::numeric_limits<double>::quiet_NaN(), infinity, -infinity, 1e9, -1e9, 1e308,
                              178956971.0 /* 12 times that is 5 above the largest int */}) {
    GModel::set_font_size_factor(factor);
    EXPECT_EQ(GModel::text_property()->GetFontSize(), 24) << factor;
  }
}

TEST(GModelTextTest, LargestSizeThatFitsIsTaken)
{
  const ScriptedModel model;
  GModel::set_font_size_factor(178956970.0);
  EXPECT_EQ(GModel::text_property()->GetFontSize(), 2147483640);
  GModel::set_font_size_factor(1.0); // nobody must draw with it
}

TEST(GModelTextTest, FactorWithoutModelsDoesNothing)
{
  GModel::set_font_size_factor(3.0);
  EXPECT_EQ(GModel::get_font_size_factor(), 1.0);
  const ScriptedModel model;
  EXPECT_EQ(GModel::get_font_size_factor(), 1.0);
}

TEST(GModelTextTest, FactorIsLostWithTheLastModelOnly)
{
  auto first = std::make_unique<ScriptedModel>();
  GModel::set_font_size_factor(2.0);
  auto second = std::make_unique<ScriptedModel>();
  EXPECT_EQ(GModel::get_font_size_factor(), 2.0);
  first.reset();
  EXPECT_EQ(GModel::get_font_size_factor(), 2.0);
  second.reset();
  const ScriptedModel third;
  EXPECT_EQ(GModel::get_font_size_factor(), 1.0);
  EXPECT_EQ(GModel::text_property()->GetFontSize(), 12);
}

TEST(GModelTextTest, IsReleasedWithTheLastModel)
{
  auto model = std::make_unique<ScriptedModel>();
  const vtkWeakPointer<vtkTextProperty> watched(GModel::text_property());
  model.reset();
  EXPECT_EQ(watched, nullptr);
}

TEST(GModelTextTest, HostMayKeepItBeyondTheLastModel)
{
  auto model = std::make_unique<ScriptedModel>();
  const vtkSmartPointer<vtkTextProperty> kept = GModel::text_property();
  model.reset();
  EXPECT_EQ(kept->GetReferenceCount(), 1);
  const ScriptedModel next;
  EXPECT_NE(GModel::text_property(), kept);
}

TEST(GModelTextTest, HostMayKeepALabelMapperBeyondTheLastModel)
{
  auto model = std::make_unique<ScriptedModel>();
  model->add_label("kept", BrantVector(0, 0, 0), BRANT_RED);
  const vtkSmartPointer<GLabelMapper> mapper = label_mapper(*model);
  model.reset();
  EXPECT_EQ(mapper->GetReferenceCount(), 1);
  EXPECT_EQ(mapper->GetLabelTextProperty()->GetFontSize(), 12);
  mapper->SetLabelTextProperty(nullptr); // lets go of the last reference, once
}

// --- VTK's warning display
// --------------------------------------------------------------------------------------

TEST(GModelWarningsTest, FirstModelSwitchesThemOff)
{
  const WarningDisplayOn restore;
  const ScriptedModel first;
  EXPECT_EQ(vtkObject::GetGlobalWarningDisplay(), 0);
}

TEST(GModelWarningsTest, LaterModelsLeaveTheHostsChoice)
{
  const WarningDisplayOn restore;
  const ScriptedModel first;
  vtkObject::GlobalWarningDisplayOn();
  {
    const ScriptedModel second;
    EXPECT_EQ(vtkObject::GetGlobalWarningDisplay(), 1);
  }
  EXPECT_EQ(vtkObject::GetGlobalWarningDisplay(), 1);
}

TEST(GModelWarningsTest, LastModelDoesNotSwitchThemOn)
{
  const WarningDisplayOn restore;
  {
    const ScriptedModel model;
  }
  EXPECT_EQ(vtkObject::GetGlobalWarningDisplay(), 0);
}

TEST(GModelWarningsTest, NextFirstModelSwitchesThemOffAgain)
{
  const WarningDisplayOn restore;
  {
    const ScriptedModel model;
  }
  vtkObject::GlobalWarningDisplayOn();
  const ScriptedModel next;
  EXPECT_EQ(vtkObject::GetGlobalWarningDisplay(), 0);
}

// The switch is VTK's for warnings and errors alike: what must reach the user has to be printed.
TEST(GModelWarningsTest, ErrorsOfVtkAreSilentToo)
{
  const WarningDisplayOn restore;
  const ScriptedModel model;
  const vtkNew<vtkPolyData> object;
  vtkErrorWithObjectMacro(object, << "nobody hears this");
  EXPECT_TRUE(vtk_messages().empty());
}

TEST(GModelWarningsTest, NoOperationPrints)
{
  const PrintCapture prints;
  PlainView view;
  ScriptedModel model;
  const auto data = sorted_data(1);
  model.add_part(data[0], nothing());
  model.add_part(data[0], nothing());
  model.add_view(&view);
  model.add_view(&view);
  model.remove_label(GModel::InvalidLabelKey);
  model.hook_to_views();
  model.unhook_from_views();
  model.unhook_from_views();
  model.remove_part(data[0]);
  model.remove_part(data[0]);
  model.remove_view(&view);
  model.remove_view(&view);
  EXPECT_TRUE(prints.calls().empty());
}

// --- Parts and views
// --------------------------------------------------------------------------------------------

class GModelPartsTest : public ModelTest
{};

TEST_F(GModelPartsTest, AddPartMakesPropsForEachViewInAscendingOrder)
{
  const auto views = sorted_views(3);
  for (const std::size_t i : {1U, 2U, 0U}) {
    mModel.add_view(views[i].get());
  }
  mModel.add_part(mData[0], mMaker.function());
  const std::vector<Call> expected = {
      {mData[0], views[0].get()}, {mData[0], views[1].get()}, {mData[0], views[2].get()}};
  EXPECT_EQ(mMaker.calls, expected);
}

TEST_F(GModelPartsTest, AddViewMakesPropsOfEachPartInAscendingOrder)
{
  for (const std::size_t i : {2U, 0U, 1U}) {
    mModel.add_part(mData[i], mMaker.function());
  }
  EXPECT_TRUE(mMaker.calls.empty()); // no view, nothing to make props for
  mModel.add_view(&mView);
  const std::vector<Call> expected = {{mData[0], &mView}, {mData[1], &mView}, {mData[2], &mView}};
  EXPECT_EQ(mMaker.calls, expected);
}

TEST_F(GModelPartsTest, AddViewShowsPartsInOrderAndThenLabels)
{
  const vtkNew<vtkActor> a0;
  const vtkNew<vtkActor> a1;
  const vtkNew<vtkActor> b0;
  mModel.add_part(mData[1], always(b0));
  mModel.add_part(mData[0], [&](vtkDataObject*, GView*) { return Props{a1.Get(), a0.Get()}; });
  mModel.add_view(&mView);
  const PropPointers all = shown(mView);
  ASSERT_EQ(all.size(), 4U);
  EXPECT_EQ(PropPointers(all.begin(), all.begin() + 3),
            (PropPointers{a1, a0, b0})); // vector order within a part
  EXPECT_TRUE(is_label_actor(all[3]));
}

TEST_F(GModelPartsTest, LaterPartsAreAppended)
{
  const vtkNew<vtkActor> first;
  const vtkNew<vtkActor> second;
  mModel.add_view(&mView);
  mModel.add_part(mData[1], always(first));
  mModel.add_part(mData[0], always(second));
  const PropPointers all = shown(mView);
  ASSERT_EQ(all.size(), 3U);
  EXPECT_TRUE(is_label_actor(all[0]));
  EXPECT_EQ(all[1], first);
  EXPECT_EQ(all[2], second);
}

TEST_F(GModelPartsTest, PropsAreAddedBehindThoseOfTheHost)
{
  const vtkNew<vtkActor> of_host;
  const vtkNew<vtkActor> of_part;
  mView.get_renderer()->AddViewProp(of_host);
  mModel.add_part(mData[0], always(of_part));
  mModel.add_view(&mView);
  EXPECT_EQ(shown(mView).front(), of_host);
  mModel.remove_view(&mView);
  EXPECT_EQ(shown(mView), PropPointers{of_host});
}

TEST_F(GModelPartsTest, PartIsMadeOnceForEachView)
{
  const auto views = sorted_views(2);
  mModel.add_view(views[0].get());
  mModel.add_part(mData[0], mMaker.function());
  mModel.add_view(views[1].get());
  mModel.add_part(mData[1], mMaker.function());
  mModel.add_view(views[0].get());
  mModel.unhook_from_views();
  mModel.hook_to_views();
  EXPECT_EQ(mMaker.calls.size(), 4U);
  for (const std::size_t i : {0U, 1U}) {
    for (const auto& view : views) {
      EXPECT_EQ(std::count(mMaker.calls.begin(), mMaker.calls.end(), Call{mData[i], view.get()}), 1);
    }
  }
}

TEST_F(GModelPartsTest, AddPartTwiceKeepsTheFirstFunction)
{
  PlainView before;
  PlainView after;
  Maker first;
  Maker second;
  mModel.add_view(&before);
  mModel.add_part(mData[0], first.function());
  mModel.add_part(mData[0], second.function());
  mModel.add_view(&after);
  EXPECT_EQ(first.calls.size(), 2U);
  EXPECT_TRUE(second.calls.empty());
  EXPECT_EQ(num_part_props(before), 1);
}

TEST_F(GModelPartsTest, AddPartTwiceTakesOneReference)
{
  mModel.add_part(mData[0], nothing());
  mModel.add_part(mData[0], nothing());
  EXPECT_EQ(mData[0]->GetReferenceCount(), 2);
}

TEST_F(GModelPartsTest, KeepsACopyOfTheFunction)
{
  {
    PartPropFunction function = mMaker.function();
    mModel.add_part(mData[0], function);
    function = nullptr;
  }
  mModel.add_view(&mView);
  EXPECT_EQ(mMaker.calls.size(), 1U);
}

TEST_F(GModelPartsTest, AddViewTwiceDoesNothing)
{
  mModel.add_part(mData[0], mMaker.function());
  mModel.add_view(&mView);
  const PropPointers before = shown(mView);
  mModel.add_view(&mView);
  EXPECT_EQ(mMaker.calls.size(), 1U);
  EXPECT_EQ(shown(mView), before);
}

TEST_F(GModelPartsTest, PartKeepsItsDataAlive)
{
  auto data = vtkSmartPointer<vtkPolyData>::New();
  const vtkWeakPointer<vtkPolyData> watched(data);
  mModel.add_part(data, nothing());
  data = nullptr;
  ASSERT_NE(watched, nullptr);
  EXPECT_EQ(watched->GetReferenceCount(), 1);
  mModel.remove_part(watched);
  EXPECT_EQ(watched, nullptr);
}

TEST_F(GModelPartsTest, RemovePartGivesTheReferenceBack)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], nothing());
  mModel.remove_part(mData[0]);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
}

TEST_F(GModelPartsTest, RemovePartLetsPropsGoInEveryView)
{
  const auto views = sorted_views(2);
  Maker leaving(2);
  Maker staying(1);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  mModel.add_part(mData[0], leaving.function());
  mModel.add_part(mData[1], staying.function());
  mModel.remove_part(mData[0]);
  for (const auto& prop : leaving.made) {
    EXPECT_EQ(prop, nullptr);
  }
  ASSERT_EQ(staying.made.size(), 2U);
  EXPECT_TRUE(shows(*views[0], staying.made[0]));
  EXPECT_TRUE(shows(*views[1], staying.made[1]));
  EXPECT_EQ(num_part_props(*views[0]), 1);
  EXPECT_EQ(num_part_props(*views[1]), 1);
}

TEST_F(GModelPartsTest, RemovePartLetsTheFunctionGo)
{
  const auto held = std::make_shared<int>(0);
  mModel.add_part(mData[0], [held](vtkDataObject*, GView*) { return Props(); });
  EXPECT_EQ(held.use_count(), 2);
  mModel.remove_part(mData[0]);
  EXPECT_EQ(held.use_count(), 1);
}

// Only what was taken may be given back.
TEST_F(GModelPartsTest, RemovingAnAbsentPartLeavesItsReferences)
{
  mModel.add_part(mData[0], nothing());
  mModel.remove_part(mData[1]);
  EXPECT_EQ(mData[1]->GetReferenceCount(), 1);
  mModel.remove_part(mData[0]);
  mModel.remove_part(mData[0]);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
}

TEST_F(GModelPartsTest, PartMayComeBackWithAnotherFunction)
{
  mModel.add_view(&mView);
  const vtkNew<vtkActor> before;
  const vtkNew<vtkActor> after;
  mModel.add_part(mData[0], always(before));
  mModel.remove_part(mData[0]);
  mModel.add_part(mData[0], always(after));
  EXPECT_FALSE(shows(mView, before));
  EXPECT_TRUE(shows(mView, after));
}

TEST_F(GModelPartsTest, RemoveViewLetsItsPropsGoAndNoOthers)
{
  const auto views = sorted_views(2);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  mModel.add_part(mData[0], mMaker.function());
  mModel.remove_view(views[0].get());
  ASSERT_EQ(mMaker.made.size(), 2U);
  EXPECT_EQ(mMaker.made[0], nullptr);
  EXPECT_TRUE(shown(*views[0]).empty());
  EXPECT_TRUE(shows(*views[1], mMaker.made[1]));
  EXPECT_EQ(label_actors(*views[1]).size(), 1U);
}

TEST_F(GModelPartsTest, RemovedViewGetsNothingMore)
{
  mModel.add_view(&mView);
  mModel.remove_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  mModel.unhook_from_views();
  mModel.hook_to_views();
  EXPECT_TRUE(mMaker.calls.empty());
  EXPECT_TRUE(shown(mView).empty());
}

TEST_F(GModelPartsTest, ViewThatComesBackGetsNewProps)
{
  mModel.add_part(mData[0], mMaker.function());
  mModel.add_view(&mView);
  mModel.remove_view(&mView);
  mModel.add_view(&mView);
  EXPECT_EQ(mMaker.calls.size(), 2U);
  EXPECT_EQ(num_part_props(mView), 1);
  EXPECT_EQ(label_actors(mView).size(), 1U);
}

TEST_F(GModelPartsTest, RemovingAnAbsentViewDoesNothing)
{
  PlainView connected;
  PlainView stranger;
  const vtkNew<vtkActor> prop;
  mModel.add_part(mData[0], always(prop));
  mModel.add_view(&connected);
  stranger.add_props({prop.Get()});
  mModel.remove_view(&stranger);
  EXPECT_TRUE(shows(stranger, prop));
  EXPECT_TRUE(shows(connected, prop));
}

TEST_F(GModelPartsTest, NullArgumentsDoNothing)
{
  mModel.add_view(&mView);
  mModel.add_part(nullptr, mMaker.function());
  mModel.remove_part(nullptr);
  mModel.add_view(nullptr);
  mModel.remove_view(nullptr);
  EXPECT_TRUE(mMaker.calls.empty());
  EXPECT_EQ(shown(mView).size(), 1U);
  EXPECT_EQ(mModel.add_label(nullptr, BrantVector(0, 0, 0), BRANT_RED), 0); // an empty text
}

TEST_F(GModelPartsTest, ModelsOfOneViewDoNotTouchEachOther)
{
  ScriptedModel one;
  ScriptedModel other;
  Maker of_one;
  Maker of_other;
  for (ScriptedModel* model : {&one, &other}) {
    model->add_view(&mView);
  }
  one.add_part(mData[0], of_one.function());
  other.add_part(mData[0], of_other.function());
  EXPECT_EQ(mData[0]->GetReferenceCount(), 3);
  one.clear();
  EXPECT_EQ(mData[0]->GetReferenceCount(), 2);
  EXPECT_EQ(of_one.made[0], nullptr);
  EXPECT_TRUE(shows(mView, of_other.made[0]));
  EXPECT_EQ(label_actors(mView).size(), 2U);
  one.remove_view(&mView);
  EXPECT_EQ(label_actors(mView).size(), 1U);
  EXPECT_TRUE(shows(mView, of_other.made[0]));
}

// --- Odd props
// --------------------------------------------------------------------------------------------------

class GModelPropsTest : public ModelTest
{};

TEST_F(GModelPropsTest, PartWithoutPropsIsStillAPart)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], nothing());
  EXPECT_EQ(mData[0]->GetReferenceCount(), 2);
  EXPECT_EQ(num_part_props(mView), 0);
}

TEST_F(GModelPropsTest, NullPropsArePassedOver)
{
  const vtkNew<vtkActor> prop;
  mModel.add_part(mData[0], [&](vtkDataObject*, GView*) { return Props{nullptr, prop.Get(), nullptr}; });
  mModel.add_view(&mView);
  EXPECT_EQ(num_part_props(mView), 1);
  EXPECT_TRUE(shows(mView, prop));
  mModel.unhook_from_views();
  mModel.hook_to_views();
  EXPECT_TRUE(shows(mView, prop));
  mModel.remove_part(mData[0]);
  EXPECT_EQ(num_part_props(mView), 0);
}

// A renderer holds a prop once.
TEST_F(GModelPropsTest, RepeatedPropIsPropPointersOnce)
{
  const vtkNew<vtkActor> prop;
  mModel.add_part(mData[0], [&](vtkDataObject*, GView*) { return Props{prop.Get(), prop.Get()}; });
  mModel.add_view(&mView);
  EXPECT_EQ(num_part_props(mView), 1);
  mModel.remove_part(mData[0]);
  EXPECT_EQ(num_part_props(mView), 0);
  EXPECT_EQ(prop->GetReferenceCount(), 1);
}

TEST_F(GModelPropsTest, OnePropMayStandInTwoViews)
{
  const auto views = sorted_views(2);
  const vtkNew<vtkActor> prop;
  mModel.add_view(views[0].get());
  mModel.add_view(views[1].get());
  mModel.add_part(mData[0], always(prop));
  mModel.remove_view(views[0].get());
  EXPECT_FALSE(shows(*views[0], prop));
  EXPECT_TRUE(shows(*views[1], prop));
  mModel.clear();
  EXPECT_EQ(prop->GetReferenceCount(), 1);
}

// As with the renderer's own calls: it knows the prop once and forgets it at the first removal.
TEST_F(GModelPropsTest, PropOfTwoPartsLeavesWithTheFirstOfThem)
{
  const vtkNew<vtkActor> prop;
  mModel.add_view(&mView);
  mModel.add_part(mData[0], always(prop));
  mModel.add_part(mData[1], always(prop));
  EXPECT_EQ(num_part_props(mView), 1);
  mModel.remove_part(mData[0]);
  EXPECT_EQ(num_part_props(mView), 0);
  mModel.unhook_from_views();
  mModel.hook_to_views(); // the other part still has it
  EXPECT_TRUE(shows(mView, prop));
}

TEST_F(GModelPropsTest, HostMayTakeAPropOutOfTheRenderer)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  mView.get_renderer()->RemoveViewProp(mMaker.made[0]);
  EXPECT_NE(mMaker.made[0], nullptr); // the model still keeps it
  mModel.remove_part(mData[0]);
  EXPECT_EQ(mMaker.made[0], nullptr);
}

TEST_F(GModelPropsTest, AreHeldByModelAndRendererOnly)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  EXPECT_EQ(mMaker.made[0]->GetReferenceCount(), 2);
  mModel.unhook_from_views();
  EXPECT_EQ(mMaker.made[0]->GetReferenceCount(), 1);
  EXPECT_FALSE(mMaker.made[0]->IsConsumer(mView.get_renderer()));
  mModel.hook_to_views();
  EXPECT_EQ(mMaker.made[0]->GetReferenceCount(), 2);
  EXPECT_TRUE(mMaker.made[0]->IsConsumer(mView.get_renderer()));
}

// --- Hooking
// ----------------------------------------------------------------------------------------------------

class GModelHookingTest : public ModelTest
{};

TEST_F(GModelHookingTest, UnhookTakesPropsAndLabelsOutAndKeepsThem)
{
  const auto views = sorted_views(2);
  Maker maker(2);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  for (const auto& each : mData) {
    mModel.add_part(each, maker.function());
  }
  mModel.unhook_from_views();
  EXPECT_FALSE(mModel.is_hooked_to_views());
  EXPECT_TRUE(shown(*views[0]).empty());
  EXPECT_TRUE(shown(*views[1]).empty());
  for (const auto& prop : maker.made) {
    EXPECT_NE(prop, nullptr);
  }
}

TEST_F(GModelHookingTest, HookPutsTheSamePropsBackInOrder)
{
  Maker maker(2);
  mModel.add_view(&mView);
  mModel.add_part(mData[1], maker.function());
  mModel.add_part(mData[0], maker.function());
  mModel.unhook_from_views();
  mModel.hook_to_views();
  EXPECT_TRUE(mModel.is_hooked_to_views());
  const PropPointers all = shown(mView);
  ASSERT_EQ(all.size(), 5U);
  // By part in ascending order, whatever the order of their adding, and then the labels.
  EXPECT_EQ(PropPointers(all.begin(), all.begin() + 4),
            (PropPointers{maker.made[2], maker.made[3], maker.made[0], maker.made[1]}));
  EXPECT_TRUE(is_label_actor(all[4]));
  EXPECT_EQ(maker.calls.size(), 2U);
}

TEST_F(GModelHookingTest, UnhookTwiceIsUnhookOnce)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  mModel.unhook_from_views();
  mView.add_props({mMaker.made[0].Get()}); // by the host, behind the model's back
  mModel.unhook_from_views();
  EXPECT_TRUE(shows(mView, mMaker.made[0]));
}

TEST_F(GModelHookingTest, HookTwiceIsHookOnce)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  mView.remove_props({mMaker.made[0].Get()}); // by the host, behind the model's back
  mModel.hook_to_views();
  EXPECT_FALSE(shows(mView, mMaker.made[0]));
  EXPECT_EQ(label_actors(mView).size(), 1U);
}

TEST_F(GModelHookingTest, ViewAddedWhileUnhookedGetsNothing)
{
  mModel.add_part(mData[0], mMaker.function());
  mModel.unhook_from_views();
  mModel.add_view(&mView);
  EXPECT_TRUE(mMaker.calls.empty());
  EXPECT_TRUE(shown(mView).empty());
}

TEST_F(GModelHookingTest, HookDoesNotMakeWhatWasNeverMade)
{
  mModel.add_part(mData[0], mMaker.function());
  mModel.unhook_from_views();
  mModel.add_view(&mView);
  mModel.hook_to_views();
  EXPECT_TRUE(mMaker.calls.empty());
  EXPECT_EQ(num_part_props(mView), 0);
  EXPECT_EQ(label_actors(mView).size(), 1U);
}

TEST_F(GModelHookingTest, PartAddedWhileUnhookedIsMadeButNotPropPointers)
{
  mModel.unhook_from_views();
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  EXPECT_EQ(mMaker.calls.size(), 1U);
  EXPECT_TRUE(shown(mView).empty());
  mModel.hook_to_views();
  EXPECT_EQ(mMaker.calls.size(), 1U);
  EXPECT_EQ(num_part_props(mView), 1);
  EXPECT_TRUE(shows(mView, mMaker.made[0]));
  EXPECT_EQ(label_actors(mView).size(), 1U);
}

TEST_F(GModelHookingTest, ViewAddedWhileUnhookedGetsLaterPartsOnly)
{
  Maker before;
  Maker after;
  mModel.add_part(mData[0], before.function());
  mModel.unhook_from_views();
  mModel.add_view(&mView);
  mModel.add_part(mData[1], after.function());
  mModel.hook_to_views();
  EXPECT_TRUE(before.calls.empty());
  EXPECT_EQ(num_part_props(mView), 1);
  EXPECT_TRUE(shows(mView, after.made[0]));
}

TEST_F(GModelHookingTest, PartRemovedWhileUnhookedDoesNotComeBack)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  mModel.unhook_from_views();
  mModel.remove_part(mData[0]);
  EXPECT_EQ(mMaker.made[0], nullptr);
  mModel.hook_to_views();
  EXPECT_EQ(num_part_props(mView), 0);
}

// What the host has put into the renderer meanwhile is not the model's to take out.
TEST_F(GModelHookingTest, RemovalWhileUnhookedLeavesTheRendererAlone)
{
  const vtkNew<vtkActor> prop;
  mModel.add_view(&mView);
  mModel.add_part(mData[0], always(prop));
  mModel.add_part(mData[1], always(prop));
  mModel.unhook_from_views();
  mView.add_props({prop.Get()});
  mModel.remove_part(mData[0]);
  EXPECT_TRUE(shows(mView, prop));
  mModel.remove_view(&mView);
  EXPECT_TRUE(shows(mView, prop));
}

TEST_F(GModelHookingTest, ViewRemovedWhileUnhookedDoesNotComeBack)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  mModel.unhook_from_views();
  mModel.remove_view(&mView);
  mModel.hook_to_views();
  EXPECT_TRUE(shown(mView).empty());
  EXPECT_EQ(mMaker.made[0], nullptr);
}

TEST_F(GModelHookingTest, WithoutViewsOnlyTheFlagChanges)
{
  mModel.unhook_from_views();
  EXPECT_FALSE(mModel.is_hooked_to_views());
  mModel.hook_to_views();
  EXPECT_TRUE(mModel.is_hooked_to_views());
}

// --- Labels
// -----------------------------------------------------------------------------------------------------

class GModelLabelsTest : public ModelTest
{};

TEST_F(GModelLabelsTest, KeysCountFromZeroAndTheOldestFreedOneComesBackFirst)
{
  const auto add = [&] { return mModel.add_label("x", BrantVector(0, 0, 0), BRANT_RED); };
  EXPECT_EQ(add(), 0);
  EXPECT_EQ(add(), 1);
  EXPECT_EQ(add(), 2);
  mModel.remove_label(1);
  mModel.remove_label(0);
  EXPECT_EQ(add(), 1);
  EXPECT_EQ(add(), 0);
  EXPECT_EQ(add(), 3);
}

TEST_F(GModelLabelsTest, RemovingWhatIsNotThereDoesNothing)
{
  mModel.add_label("x", BrantVector(0, 0, 0), BRANT_RED);
  for (const int key :
       {GModel::InvalidLabelKey, 1, -2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    mModel.remove_label(key);
  }
  EXPECT_EQ(label_mapper(mModel)->size(), 1U);
  mModel.remove_label(0);
  mModel.remove_label(0);
  EXPECT_EQ(label_mapper(mModel)->size(), 0U);
}

TEST_F(GModelLabelsTest, RemovedKeysAreNotThoseOfOtherModels)
{
  ScriptedModel other;
  const int key = mModel.add_label("x", BrantVector(0, 0, 0), BRANT_RED);
  other.remove_label(key);
  EXPECT_EQ(label_mapper(mModel)->size(), 1U);
}

TEST_F(GModelLabelsTest, BelongToOneModel)
{
  ScriptedModel one;
  ScriptedModel other;
  EXPECT_EQ(one.add_label("x", BrantVector(0, 0, 0), BRANT_RED), 0);
  EXPECT_EQ(other.add_label("x", BrantVector(0, 0, 0), BRANT_RED), 0);
  one.clear();
  EXPECT_EQ(label_mapper(other)->size(), 1U);
}

TEST_F(GModelLabelsTest, OneActorServesAllViews)
{
  const auto views = sorted_views(2);
  mModel.add_view(views[0].get());
  mModel.add_view(views[1].get());
  ASSERT_EQ(label_actors(*views[0]).size(), 1U);
  EXPECT_EQ(label_actors(*views[0]), label_actors(*views[1]));
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
