// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "SilhouetteProgram.h"

#include "GSilhouetteMapper.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkCellArray.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <string>

namespace {

using morrow_test::colour_is;
using morrow_test::count_pixels;
using morrow_test::Image;
using morrow_test::kBlue;
using morrow_test::kRed;
using morrow_test::Rgb;
using morrow_test::Scene;

/// Puts the texts of the shaders back as they were.
class SilhouetteProgramTest : public morrow_test::RenderTest
{
protected:
  void TearDown() override { morrow::silhouette_shaders() = mTexts; }

  /// The red pixels of a frame with a silhouette of 100 pixels and a blue square; the square must be whole.
  int red_pixels()
  {
    const Image image = mScene.render();
    EXPECT_EQ(count_pixels(image, colour_is(kBlue)), 400);
    return count_pixels(image, colour_is(kRed));
  }

  /// What a frame writes to standard output.
  std::string output_of_a_frame(int expected_red_pixels)
  {
    testing::internal::CaptureStdout();
    const int found = red_pixels();
    const std::string output = testing::internal::GetCapturedStdout();
    EXPECT_EQ(found, expected_red_pixels);
    return output;
  }

  void SetUp() override
  {
    RenderTest::SetUp();
    mScene.look_down(1.0);
    vtkNew<vtkPoints> points;
    for (const auto& xy :
         {std::pair(-0.5, 0.005), std::pair(0.5, 0.005), std::pair(0.0, 0.5), std::pair(0.0, -0.5)}) {
      points->InsertNextPoint(xy.first, xy.second, 0.0);
    }
    vtkNew<vtkCellArray> polys;
    const vtkIdType front[3] = {0, 1, 2};
    const vtkIdType back[3] = {0, 1, 3};
    polys->InsertNextCell(3, front);
    polys->InsertNextCell(3, back);
    vtkNew<vtkPolyData> data;
    data->SetPoints(points);
    data->SetPolys(polys);
    mMapper->SetInputDataObject(data);
    mActor->SetMapper(mMapper);
    mActor->GetProperty()->SetColor(1.0, 0.0, 0.0);
    mScene.renderer()->AddActor(mActor);
    mScene.renderer()->AddActor(morrow_test::flat_actor(morrow_test::quad(0.6, 0.6, 0.8, 0.8), kBlue));
  }

  morrow::ShaderTexts mTexts = morrow::silhouette_shaders();
  Scene mScene;
  vtkNew<GSilhouetteMapper> mMapper;
  vtkNew<vtkActor> mActor;
};

} // namespace

TEST_F(SilhouetteProgramTest, AGoodProgramIsSilent)
{
  EXPECT_EQ(output_of_a_frame(100), "");
  EXPECT_EQ(output_of_a_frame(100), "");
}

TEST_F(SilhouetteProgramTest, TheTextsAreAsTheDriverIsToSeeThem)
{
  EXPECT_EQ(mTexts.vertex,
            "#version 150\n\nin vec4 vertexMC;\nuniform mat4 MCDCMatrix;\nvoid main()\n{\n gl_Position = "
            "MCDCMatrix * vertexMC;\n}\n\n");
  EXPECT_EQ(mTexts.geometry,
            "#version 150\n\nlayout(lines) in;\nlayout(line_strip, max_vertices=2) out;\n\nuniform vec2 "
            "ViewportSize;\nout float stippleCoord;\n\nvoid main()\n{\n  int i=0;\n  vec4 pos0 = "
            "gl_in[0].gl_Position;\n  vec2 p0 = pos0.xy / pos0.w * ViewportSize;\n  gl_Position = pos0;\n  "
            "stippleCoord = 0.0;\n  EmitVertex();\n\n  i=1;\n  vec4 pos1 = gl_in[i].gl_Position;\n  vec2 p1 "
            "= pos1.xy "
            "/ pos1.w * ViewportSize;\n  float len = length(p0.xy - p1.xy);\n  gl_Position = pos1;\n  "
            "stippleCoord = "
            "len / 32.0;\n  EmitVertex();\n}\n");
  EXPECT_EQ(
      mTexts.fragment,
      "#version 150\n\nout vec4 colorOut;\nuniform vec4 uniform_color;\nin float stippleCoord;\nuniform int "
      "StipplePattern;\n\nvoid main()\n{\n  int stip = 0x1 & (StipplePattern >> "
      "int(fract(stippleCoord)*16.0));\n  if (stip == 0)\n    discard;\n colorOut = uniform_color;\n}\n\n");
}

TEST_F(SilhouetteProgramTest, AProgramThatDoesNotCompileDrawsNothing)
{
  for (std::string morrow::ShaderTexts::*text :
       {&morrow::ShaderTexts::vertex, &morrow::ShaderTexts::geometry, &morrow::ShaderTexts::fragment}) {
    morrow::silhouette_shaders() = mTexts;
    morrow::silhouette_shaders().*text = "#version 150\nnonsense\n";
    mMapper->ReleaseGraphicsResources(mScene.window());
    const morrow_test::ExpectedGlErrors complaint({"syntax error"});
    const std::string log = output_of_a_frame(0);
    EXPECT_NE(log.find("syntax error"), std::string::npos) << log;
    EXPECT_EQ(log.back(), '\n');
    EXPECT_EQ(output_of_a_frame(0), "") << "built again";
  }
}

// Each part is right by itself, but one has no beginning.
TEST_F(SilhouetteProgramTest, AProgramThatDoesNotLinkDrawsNothing)
{
  morrow::silhouette_shaders().fragment = "#version 150\nvoid not_main()\n{\n}\n";
  EXPECT_NE(output_of_a_frame(0), "");
  EXPECT_EQ(output_of_a_frame(0), "");
}

TEST_F(SilhouetteProgramTest, ItIsNotBuiltAgainBeforeItIsReleased)
{
  const morrow_test::ExpectedGlErrors complaint({"syntax error"});
  morrow::silhouette_shaders().vertex = "nonsense";
  EXPECT_NE(output_of_a_frame(0), "");
  morrow::silhouette_shaders() = mTexts;
  EXPECT_EQ(output_of_a_frame(0), "");
  mMapper->ReleaseGraphicsResources(mScene.window());
  EXPECT_EQ(output_of_a_frame(100), "");
}

TEST_F(SilhouetteProgramTest, ABrokenProgramMayStayToTheEnd)
{
  const morrow_test::ExpectedGlErrors complaint({"syntax error"});
  morrow::silhouette_shaders() = {};
  testing::internal::CaptureStdout();
  EXPECT_EQ(red_pixels(), 0);
  mScene.window()->Finalize();
  EXPECT_EQ(red_pixels(), 0);
  static_cast<void>(testing::internal::GetCapturedStdout());
}
