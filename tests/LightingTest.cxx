// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Lighting.h"
#include "ViewFixture.h"

#include <vtkLight.h>
#include <vtkLightCollection.h>

#include <array>
#include <limits>

namespace {

using namespace morrow_test;

using Triple = std::array<double, 3>;

constexpr float Nan = std::numeric_limits<float>::quiet_NaN();
constexpr float Inf = std::numeric_limits<float>::infinity();
constexpr const char* AmbientWarning = "Ambient light intensity must be between 0 and 1\n";
constexpr const char* LightWarning = "Light intensity must be between 0 and 1\n";

Triple light_intensity()
{
  float r = 0.0F;
  float g = 0.0F;
  float b = 0.0F;
  GView::get_light_intensity(r, g, b);
  return {r, g, b};
}

Triple ambient_intensity()
{
  float r = 0.0F;
  float g = 0.0F;
  float b = 0.0F;
  GView::get_ambient_light_intensity(r, g, b);
  return {r, g, b};
}

vtkLight* first_light(const GView& view)
{
  return vtkLight::SafeDownCast(view.get_renderer()->GetLights()->GetItemAsObject(0));
}

Triple color_of(vtkLight* light)
{
  Triple rgb{};
  light->GetDiffuseColor(rgb.data());
  return rgb;
}

Triple ambient_of(const GView& view)
{
  Triple rgb{};
  view.get_renderer()->GetAmbient(rgb.data());
  return rgb;
}

void expect_near(const Triple& actual, const Triple& expected)
{
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(actual.at(i), expected.at(i), 1e-6) << i;
  }
}

/// Needs no display.
class LightingTest : public ViewTest
{
protected:
  void TearDown() override
  {
    GView::reset_lighting();
    ViewTest::TearDown();
  }

  static std::shared_ptr<GView> registered_view()
  {
    auto view = std::make_shared<GView>();
    GView::add_global_view(view);
    return view;
  }
};

TEST_F(LightingTest, TheHostsRangeIsMappedToTheRenderers)
{
  EXPECT_EQ(morrow::light_for_renderer(0.0F), 0.5F);
  EXPECT_EQ(morrow::light_for_renderer(1.0F), 2.0F);
  EXPECT_FLOAT_EQ(morrow::light_for_renderer(0.3F), 0.95F);
  EXPECT_EQ(morrow::light_for_host(0.5F), 0.0F);
  EXPECT_EQ(morrow::light_for_host(2.0F), 1.0F);
  for (int i = 0; i <= 100; ++i) {
    const float value = static_cast<float>(i) / 100.0F;
    EXPECT_NEAR(morrow::light_for_host(morrow::light_for_renderer(value)), value, 1e-7) << i;
  }
}

TEST_F(LightingTest, TheDefaultsAreThoseOfANewProcess)
{
  expect_near(light_intensity(), {0.3, 0.3, 0.3});
  expect_near(ambient_intensity(), {1.0 / 3, 1.0 / 3, 1.0 / 3});
}

TEST_F(LightingTest, TheDefaultIntensityAskedForIsTheDefault)
{
  const auto view = registered_view();
  GView::set_light_intensity(0.3F, 0.3F, 0.3F);
  expect_near(color_of(first_light(*view)), {0.95, 0.95, 0.95});
  EXPECT_NEAR(first_light(*view)->GetIntensity(), 0.95, 1e-6);
  EXPECT_FLOAT_EQ(static_cast<float>(light_intensity()[0]), 0.3F);
}

TEST_F(LightingTest, LightsGetTheColourAndItsMeanAsIntensity)
{
  const auto view = registered_view();
  GView::set_light_intensity(0.0F, 0.5F, 1.0F);
  expect_near(color_of(first_light(*view)), {0.5, 1.25, 2.0});
  EXPECT_NEAR(first_light(*view)->GetIntensity(), 1.25, 1e-6);
  expect_near(light_intensity(), {0.0, 0.5, 1.0});
}

TEST_F(LightingTest, EveryLightOfEveryRegisteredViewChanges)
{
  const auto first = registered_view();
  const auto second = registered_view();
  const auto loose = std::make_shared<GView>();
  const vtkNew<vtkLight> more;
  second->get_renderer()->AddLight(more);
  GView::set_light_intensity(1.0F, 1.0F, 1.0F);
  GView::set_ambient_light_intensity(1.0F, 0.0F, 0.5F);
  for (vtkLight* light : {first_light(*first), first_light(*second), more.Get()}) {
    expect_near(color_of(light), {2.0, 2.0, 2.0});
    EXPECT_EQ(light->GetIntensity(), 2.0);
  }
  expect_near(ambient_of(*first), {2.0, 0.5, 1.25});
  expect_near(ambient_of(*second), {2.0, 0.5, 1.25});
  EXPECT_NEAR(first_light(*loose)->GetIntensity(), 0.95, 1e-6);
  expect_near(ambient_of(*loose), {1.0, 1.0, 1.0});
}

// The second component twice and the third never: deliberate, in a new view only.
TEST_F(LightingTest, NewViewsTakeTheIntensities)
{
  GView::set_light_intensity(0.0F, 0.5F, 1.0F);
  GView::set_ambient_light_intensity(0.0F, 0.5F, 1.0F);
  const GView view;
  expect_near(color_of(first_light(view)), {0.5, 1.25, 1.25});
  EXPECT_NEAR(first_light(view)->GetIntensity(), 1.25, 1e-6);
  expect_near(ambient_of(view), {0.5, 1.25, 2.0});
}

TEST_F(LightingTest, WithoutViewsTheIntensitiesAreKept)
{
  GView::set_light_intensity(0.1F, 0.2F, 0.4F);
  GView::set_ambient_light_intensity(0.0F, 0.0F, 0.0F);
  expect_near(light_intensity(), {0.1, 0.2, 0.4});
  expect_near(ambient_intensity(), {0.0, 0.0, 0.0});
}

TEST_F(LightingTest, ViewsWithoutLightsAreNoTrouble)
{
  const auto view = registered_view();
  view->get_renderer()->RemoveAllLights();
  GView::set_light_intensity(1.0F, 1.0F, 1.0F);
  GView::reset_lighting();
  EXPECT_EQ(view->get_renderer()->GetLights()->GetNumberOfItems(), 0);
}

TEST_F(LightingTest, BothEndsOfTheRangeAreAccepted)
{
  const PrintCapture printed;
  GView::set_ambient_light_intensity(0.0F, 0.0F, 0.0F);
  GView::set_light_intensity(1.0F, 0.0F, 1.0F);
  EXPECT_TRUE(printed.calls().empty());
  expect_near(ambient_intensity(), {0.0, 0.0, 0.0});
}

// One bad component of three, each in its turn; no number is in no range.
TEST_F(LightingTest, IntensitiesOutOfRangeAreRefused)
{
  const auto view = registered_view();
  for (const float bad : {1.1F, -0.1F, 1.0000001F, -1e-30F, Nan, Inf, -Inf}) {
    for (std::size_t i = 0; i < 3; ++i) {
      std::array<float, 3> rgb = {0.0F, 0.0F, 0.0F};
      rgb.at(i) = bad;
      PrintCapture printed;
      GView::set_ambient_light_intensity(rgb[0], rgb[1], rgb[2]);
      EXPECT_EQ(printed.warnings(), AmbientWarning) << bad;
      printed.clear();
      GView::set_light_intensity(rgb[0], rgb[1], rgb[2]);
      EXPECT_EQ(printed.warnings(), LightWarning) << bad;
      EXPECT_EQ(printed.calls().size(), 1U);
    }
  }
  expect_near(light_intensity(), {0.3, 0.3, 0.3});
  expect_near(ambient_intensity(), {1.0 / 3, 1.0 / 3, 1.0 / 3});
  EXPECT_NEAR(first_light(*view)->GetIntensity(), 0.95, 1e-6);
  expect_near(ambient_of(*view), {1.0, 1.0, 1.0});
}

TEST_F(LightingTest, AResetBringsTheDefaultsBack)
{
  const auto view = registered_view();
  GView::set_light_intensity(1.0F, 0.0F, 1.0F);
  GView::set_ambient_light_intensity(0.0F, 1.0F, 0.0F);
  GView::reset_lighting();
  EXPECT_EQ(color_of(first_light(*view)), (Triple{0.95, 0.95, 0.95}));
  EXPECT_EQ(first_light(*view)->GetIntensity(), 0.95);
  EXPECT_EQ(ambient_of(*view), (Triple{1.0, 1.0, 1.0}));
  expect_near(light_intensity(), {0.3, 0.3, 0.3});
  expect_near(ambient_intensity(), {1.0 / 3, 1.0 / 3, 1.0 / 3});
}

} // namespace
