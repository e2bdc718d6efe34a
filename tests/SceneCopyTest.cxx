// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "SceneCopy.h"

#include "ViewFixture.h"

#include <vtkActor2D.h>
#include <vtkActorCollection.h>
#include <vtkAssembly.h>
#include <vtkGlyph3DMapper.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkLight.h>
#include <vtkLightCollection.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkPolyDataMapper.h>
#include <vtkPropAssembly.h>
#include <vtkRendererCollection.h>
#include <vtkVolume.h>

#include <map>
#include <vector>

namespace {

using namespace morrow_test;
using morrow::SceneCopy;

using LeftOut = std::map<std::string, int>;

class SceneCopyTest : public ::testing::Test
{
protected:
  vtkNew<vtkRenderer> mOriginal;

  static vtkSmartPointer<vtkActor> square_at(double x)
  {
    auto actor = flat_actor(quad(x, 0.0, x + 1.0, 1.0), kRed);
    return actor;
  }

  static vtkRenderer* renderer_of(const SceneCopy& copy)
  {
    return copy.window()->GetRenderers()->GetFirstRenderer();
  }

  static std::vector<vtkActor*> actors_of(const SceneCopy& copy)
  {
    std::vector<vtkActor*> actors;
    vtkActorCollection* all = renderer_of(copy)->GetActors();
    all->InitTraversal();
    while (vtkActor* actor = all->GetNextActor()) {
      actors.push_back(actor);
    }
    return actors;
  }

  /// The smallest x of each copied actor.
  static std::vector<double> places(const SceneCopy& copy)
  {
    std::vector<double> x;
    for (vtkActor* actor : actors_of(copy)) {
      if (actor->GetMapper() != nullptr) {
        x.push_back(actor->GetBounds()[0]);
      }
    }
    return x;
  }

  [[nodiscard]] std::vector<double> copied_places() const { return places(SceneCopy(*mOriginal, {})); }
  [[nodiscard]] LeftOut left_out() const { return SceneCopy(*mOriginal, {}).left_out(); }
};

using Places = std::vector<double>;

TEST_F(SceneCopyTest, HasOneRendererInAWindowThatIsNeverRendered)
{
  const SceneCopy copy(*mOriginal, {});
  EXPECT_EQ(copy.window()->GetRenderers()->GetNumberOfItems(), 1);
  EXPECT_NE(renderer_of(copy), mOriginal.Get());
  EXPECT_NE(copy.window()->GetNeverRendered(), 0);
  EXPECT_EQ(copy.window()->GetMapped(), 0);
}

TEST_F(SceneCopyTest, OfAnEmptySceneIsEmpty)
{
  EXPECT_TRUE(actors_of(SceneCopy(*mOriginal, {})).empty());
  EXPECT_TRUE(left_out().empty());
}

// Exporters refuse a scene without actors and leave the file of before.
TEST_F(SceneCopyTest, OfActorsThatShowNothingHasOneWithoutMapper)
{
  mOriginal->AddActor(flat_actor(vtkNew<vtkPolyData>(), kRed));
  const SceneCopy copy(*mOriginal, {});
  ASSERT_EQ(actors_of(copy).size(), 1U);
  EXPECT_EQ(actors_of(copy)[0]->GetMapper(), nullptr);
  EXPECT_TRUE(copy.left_out().empty());
}

TEST_F(SceneCopyTest, HasTheVisibleActorsInOrder)
{
  const auto hidden = square_at(2.0);
  hidden->VisibilityOff();
  for (const auto& actor : {square_at(3.0), hidden, square_at(1.0)}) {
    mOriginal->AddActor(actor);
  }
  EXPECT_EQ(copied_places(), (Places{3.0, 1.0}));
}

TEST_F(SceneCopyTest, PlacesActorsByPositionScaleAndUserMatrix)
{
  const auto actor = square_at(1.0);
  actor->SetScale(2.0);
  actor->SetPosition(10.0, 0.0, 0.0);
  const vtkNew<vtkMatrix4x4> user;
  user->SetElement(0, 3, 100.0);
  actor->SetUserMatrix(user);
  mOriginal->AddActor(actor);
  EXPECT_EQ(copied_places(), (Places{112.0}));
}

TEST_F(SceneCopyTest, FollowsAssembliesOfBothKinds)
{
  const vtkNew<vtkAssembly> inner;
  const vtkNew<vtkAssembly> outer;
  const vtkNew<vtkPropAssembly> group;
  const auto square = square_at(1.0);
  square->SetPosition(10.0, 0.0, 0.0);
  inner->AddPart(square);
  inner->SetPosition(100.0, 0.0, 0.0);
  outer->AddPart(inner);
  outer->SetScale(2.0);
  group->AddPart(outer);
  group->AddPart(square_at(5.0));
  mOriginal->AddViewProp(group);
  EXPECT_EQ(copied_places(), (Places{222.0, 5.0}));
}

TEST_F(SceneCopyTest, FollowsAPartInTwoPlaces)
{
  const auto square = square_at(0.0);
  for (const double x : {1.0, 2.0}) {
    const vtkNew<vtkAssembly> assembly;
    assembly->AddPart(square);
    assembly->SetPosition(x, 0.0, 0.0);
    mOriginal->AddViewProp(assembly);
  }
  EXPECT_EQ(copied_places(), (Places{1.0, 2.0}));
}

TEST_F(SceneCopyTest, AHiddenGroupHidesWhatIsInIt)
{
  const vtkNew<vtkAssembly> inner;
  const vtkNew<vtkAssembly> outer;
  inner->AddPart(square_at(1.0));
  inner->VisibilityOff();
  outer->AddPart(inner);
  outer->AddPart(square_at(2.0));
  mOriginal->AddViewProp(outer);
  EXPECT_EQ(copied_places(), (Places{2.0}));
}

TEST_F(SceneCopyTest, SurvivesAnEmptyAssembly)
{
  mOriginal->AddViewProp(vtkNew<vtkAssembly>());
  mOriginal->AddViewProp(vtkNew<vtkPropAssembly>());
  EXPECT_TRUE(copied_places().empty());
}

TEST_F(SceneCopyTest, HasVertexPropsOnlyWhenWanted)
{
  const auto actor = square_at(1.0);
  const vtkNew<vtkInformation> keys;
  keys->Set(MRUtil::VERTEX_VISIBILITY(), 0);
  actor->SetPropertyKeys(keys);
  mOriginal->AddActor(actor);
  EXPECT_EQ(places(SceneCopy(*mOriginal, {true, true, false})), (Places{1.0}));
  EXPECT_TRUE(places(SceneCopy(*mOriginal, {true, false, false})).empty());
}

TEST_F(SceneCopyTest, LeavesOutWhatIsNoPartOfASceneSilently)
{
  mOriginal->AddActor(square_at(1.0));
  mOriginal->AddViewProp(vtkNew<vtkActor2D>());
  mOriginal->AddViewProp(CallingProp::make());
  EXPECT_EQ(copied_places(), (Places{1.0}));
  EXPECT_TRUE(left_out().empty());
}

TEST_F(SceneCopyTest, CountsWhatItCannotCopy)
{
  const vtkNew<vtkActor> without_input;
  without_input->SetMapper(vtkNew<vtkPolyDataMapper>());
  const vtkNew<vtkActor> glyphs;
  glyphs->SetMapper(vtkNew<vtkGlyph3DMapper>());
  mOriginal->AddActor(without_input);
  mOriginal->AddActor(vtkNew<vtkActor>());
  mOriginal->AddActor(glyphs);
  mOriginal->AddViewProp(vtkNew<vtkVolume>());
  const auto hidden = vtkSmartPointer<vtkActor>::New();
  hidden->VisibilityOff();
  mOriginal->AddActor(hidden);
  LeftOut expected{{"actors without data", 2}, {"props of class vtkVolume", 1}};
  expected[std::string("actors with a mapper of class ") + glyphs->GetMapper()->GetClassName()] = 1;
  EXPECT_EQ(left_out(), expected);
}

TEST_F(SceneCopyTest, HasCopiesOfCameraAndLights)
{
  vtkCamera* camera = mOriginal->GetActiveCamera();
  camera->SetPosition(0.0, 0.0, 20.0);
  camera->SetClippingRange(1.0, 2.0);
  const vtkNew<vtkLight> headlight;
  headlight->SetLightTypeToHeadlight();
  headlight->SetColor(0.5, 0.25, 0.125);
  mOriginal->AddLight(headlight);
  mOriginal->AddActor(square_at(0.0));
  const SceneCopy copy(*mOriginal, {});
  vtkCamera* copied = renderer_of(copy)->GetActiveCamera();
  EXPECT_NE(copied, camera);
  EXPECT_EQ(copied->GetPosition()[2], 20.0);
  EXPECT_GE(copied->GetClippingRange()[1], 20.0); // fits the scene
  EXPECT_EQ(camera->GetClippingRange()[1], 2.0);
  ASSERT_EQ(renderer_of(copy)->GetLights()->GetNumberOfItems(), 1);
  auto* light = vtkLight::SafeDownCast(renderer_of(copy)->GetLights()->GetItemAsObject(0));
  EXPECT_NE(light, headlight.Get());
  EXPECT_EQ(light->GetDiffuseColor()[1], 0.25);
  EXPECT_EQ(light->GetPosition()[2], 20.0); // goes with the camera
  EXPECT_EQ(headlight->GetPosition()[2], 1.0);
}

TEST_F(SceneCopyTest, HasTheBackgroundAndTheAmbientLight)
{
  mOriginal->SetBackground(0.1, 0.2, 0.3);
  mOriginal->SetAmbient(0.4, 0.5, 0.6);
  const SceneCopy copy(*mOriginal, {});
  EXPECT_EQ(renderer_of(copy)->GetBackground()[1], 0.2);
  EXPECT_EQ(renderer_of(copy)->GetAmbient()[1], 0.5);
}

TEST_F(SceneCopyTest, LeavesTheOriginalAsItWas)
{
  const auto actor = square_at(1.0);
  mOriginal->AddActor(actor);
  static_cast<void>(mOriginal->GetActiveCamera());
  const auto before = mOriginal->GetMTime();
  const auto references = actor->GetReferenceCount();
  const auto actor_time = actor->GetMTime();
  {
    const SceneCopy copy(*mOriginal, {});
  }
  EXPECT_EQ(mOriginal->GetMTime(), before);
  EXPECT_EQ(actor->GetMTime(), actor_time);
  EXPECT_EQ(actor->GetReferenceCount(), references);
}

} // namespace
