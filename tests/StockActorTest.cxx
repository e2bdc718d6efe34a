// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "StockActor.h"

#include "GViewRenderPass.h"
#include "TestSupport.h"
#include "VTKSeam.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkActor2D.h>
#include <vtkCallbackCommand.h>
#include <vtkLookupTable.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkOpenGLActor.h>
#include <vtkOpenGLPolyDataMapper.h>
#include <vtkOpenGLProperty.h>
#include <vtkPlane.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTexture.h>
#include <vtkTransform.h>

#include <functional>
#include <string>
#include <vector>

namespace {

using morrow_test::colour_is;
using morrow_test::count_pixels;
using morrow_test::flat_actor;
using morrow_test::Image;
using morrow_test::kBlue;
using morrow_test::kGreen;
using morrow_test::quad;
using morrow_test::Rgb;
using morrow_test::Scene;

// --- Classes that a host may derive ----------------------------------------------------------------------

class HostActor : public vtkOpenGLActor
{
public:
  static HostActor* New();
  vtkTypeMacro(HostActor, vtkOpenGLActor)
};
vtkStandardNewMacro(HostActor)

class HostMapper : public vtkOpenGLPolyDataMapper
{
public:
  static HostMapper* New();
  vtkTypeMacro(HostMapper, vtkOpenGLPolyDataMapper)

  void RenderPiece(vtkRenderer* renderer, vtkActor* actor) override
  {
    this->Superclass::RenderPiece(renderer, actor);
    if (on_drawn) {
      on_drawn();
    }
  }

  std::function<void()> on_drawn;
};
vtkStandardNewMacro(HostMapper)

class HostProperty : public vtkOpenGLProperty
{
public:
  static HostProperty* New();
  vtkTypeMacro(HostProperty, vtkOpenGLProperty)

  void PostRender(vtkActor* actor, vtkRenderer* renderer) override
  {
    this->Superclass::PostRender(actor, renderer);
    if (on_drawn) {
      on_drawn();
    }
  }

  std::function<void()> on_drawn;
};
vtkStandardNewMacro(HostProperty)

class HostColors : public vtkLookupTable
{
public:
  static HostColors* New();
  vtkTypeMacro(HostColors, vtkLookupTable)
};
vtkStandardNewMacro(HostColors)

// --- The actor -------------------------------------------------------------------------------------------

/// An actor as create_mapper() and most hosts make it, in a renderer with a window.
struct Stock
{
  Stock()
  {
    mapper->SetStatic(1);
    actor->SetMapper(mapper);
    window->AddRenderer(renderer);
  }
  [[nodiscard]] bool may_call() const { return morrow::may_call_host_code(*actor, *renderer); }

  vtkNew<vtkRenderWindow> window;
  vtkNew<vtkRenderer> renderer;
  vtkNew<vtkPolyDataMapper> mapper;
  vtkNew<vtkActor> actor;
};

void observe(vtkObject* object, unsigned long event = vtkCommand::ModifiedEvent)
{
  object->AddObserver(event, vtkNew<vtkCallbackCommand>());
}

struct Route
{
  const char* name;
  std::function<void(Stock&)> open;
};

const std::vector<Route>& routes()
{
  static const std::vector<Route> all = {
      {"actor observed", [](Stock& s) { observe(s.actor); }},
      {"no mapper", [](Stock& s) { s.actor->SetMapper(nullptr); }},
      {"mapper observed", [](Stock& s) { observe(s.mapper, vtkCommand::UpdateShaderEvent); }},
      {"mapper of the host's", [](Stock& s) { s.actor->SetMapper(vtkNew<HostMapper>()); }},
      {"pipeline to update", [](Stock& s) { s.mapper->SetStatic(0); }},
      {"clipping plane", [](Stock& s) { s.mapper->AddClippingPlane(vtkNew<vtkPlane>()); }},
      {"colours of the host's", [](Stock& s) { s.mapper->SetLookupTable(vtkNew<HostColors>()); }},
      {"colours observed", [](Stock& s) { observe(s.mapper->GetLookupTable()); }},
      {"property observed", [](Stock& s) { observe(s.actor->GetProperty()); }},
      {"property of the host's", [](Stock& s) { s.actor->SetProperty(vtkNew<HostProperty>()); }},
      {"texture of the property",
       [](Stock& s) { s.actor->GetProperty()->SetTexture("a", vtkNew<vtkTexture>()); }},
      {"backface of the host's", [](Stock& s) { s.actor->SetBackfaceProperty(vtkNew<HostProperty>()); }},
      {"texture", [](Stock& s) { s.actor->SetTexture(vtkNew<vtkTexture>()); }},
      {"transform", [](Stock& s) { s.actor->SetUserTransform(vtkNew<vtkTransform>()); }},
      {"window asked to abort", [](Stock& s) { observe(s.window, vtkCommand::AbortCheckEvent); }},
      {"any event of the window", [](Stock& s) { observe(s.window, vtkCommand::AnyEvent); }},
      {"no window", [](Stock& s) { s.window->RemoveRenderer(s.renderer); }},
  };
  return all;
}

TEST(StockActorTest, IsExactlyVtksActor)
{
  EXPECT_TRUE(morrow::is_stock_actor(*vtkNew<vtkActor>()));
  EXPECT_FALSE(morrow::is_stock_actor(*vtkNew<HostActor>()));
  EXPECT_FALSE(morrow::is_stock_actor(*vtkNew<vtkActor2D>()));
}

TEST(StockActorTest, CallsNoHostCodeAsItIsMade)
{
  Stock stock;
  EXPECT_FALSE(stock.may_call());
  stock.mapper->SetLookupTable(vtkNew<vtkLookupTable>());
  stock.actor->SetBackfaceProperty(vtkNew<vtkProperty>());
  observe(stock.window, vtkCommand::StartEvent); // not raised while actors are drawn
  EXPECT_FALSE(stock.may_call());
}

TEST(StockActorTest, MayCallHostCodeByAnyOfItsParts)
{
  for (const Route& route : routes()) {
    Stock stock;
    route.open(stock);
    EXPECT_TRUE(stock.may_call()) << route.name;
  }
}

TEST(StockActorTest, ToBeAskedMakesNoColourTable)
{
  const Stock stock;
  static_cast<void>(stock.may_call());
  EXPECT_EQ(morrow::given_lookup_table(*stock.mapper), nullptr);
}

// --- In the render pass ----------------------------------------------------------------------------------

/// Two stock actors side by side but for their mappers and properties, which call on_drawn after the first.
class StockActorRenderTest : public ::testing::TestWithParam<double>
{
protected:
  StockActorRenderTest()
  {
    mScene.renderer()->SetPass(mPass);
    mScene.look_down(1.0);
    mOther.look_down(1.0);
    mOther.renderer()->AddViewProp(flat_actor(quad(-1, -1, 1, 1), kBlue));
    for (const auto& actor : {mFirst, mSecond}) {
      actor->GetMapper()->SetStatic(1);
      actor->GetProperty()->SetOpacity(GetParam());
      mScene.renderer()->AddViewProp(actor);
    }
  }

  /// The frames are complete and in their windows while the other one is rendered in the middle.
  void expect_the_same_pictures(std::function<void()>& on_drawn)
  {
    const Image alone = mScene.render();
    int calls = 0;
    on_drawn = [&] {
      ++calls;
      mOther.window()->Render();
    };
    for (int turn = 0; turn < 2; ++turn) {
      EXPECT_TRUE(alone == mScene.render()) << turn;
      EXPECT_EQ(count_pixels(morrow_test::read_pixels(mOther.window()), colour_is(kBlue)), 60 * 80);
    }
    EXPECT_GE(calls, 2);
    on_drawn = nullptr;
  }

  Scene mScene{100, 100};
  Scene mOther{60, 80}; // with a graphics context of its own
  vtkNew<GViewRenderPass> mPass;
  vtkSmartPointer<vtkActor> mFirst = flat_actor(quad(-0.5, -0.5, 0.0, 0.5), kGreen);
  vtkSmartPointer<vtkActor> mSecond = flat_actor(quad(0.0, -0.5, 0.5, 0.5), kGreen);
};

TEST_P(StockActorRenderTest, AMapperMayRenderAnotherWindow)
{
  vtkNew<HostMapper> mapper;
  mapper->SetInputDataObject(mFirst->GetMapper()->GetInputDataObject(0, 0));
  mapper->SetStatic(1);
  mFirst->SetMapper(mapper);
  expect_the_same_pictures(mapper->on_drawn);
}

TEST_P(StockActorRenderTest, APropertyMayRenderAnotherWindow)
{
  vtkNew<HostProperty> property;
  property->DeepCopy(mFirst->GetProperty());
  mFirst->SetProperty(property);
  expect_the_same_pictures(property->on_drawn);
}

INSTANTIATE_TEST_SUITE_P(Opacities, StockActorRenderTest, ::testing::Values(1.0, 0.5),
                         [](const auto& opacity) { return opacity.param < 1.0 ? "peeled" : "opaque"; });

} // namespace
