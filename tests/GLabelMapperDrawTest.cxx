// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Labels in the picture: what hides them, how they look, when the depth is read.
#include "GLabelMapper.h"

#include "LabelFixture.h"

#include <vtkTextProperty.h>

namespace {

using namespace morrow_test;

// --- Draws with the depth test ---------------------------------------------------------------------------

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

} // namespace
