// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GModel.h"

#include "GLabelMapper.h"
#include "ModelFixture.h"

#include <vtkTextProperty.h>

#include <limits>

namespace {

using namespace morrow_test;

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

} // namespace
