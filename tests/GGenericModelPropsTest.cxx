// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The props of a generic model and its settings.
#include "GGenericModel.h"

#include "GenericModelFixture.h"

#include <gtest/gtest.h>

#include <vtkCaptionActor2D.h>
#include <vtkCharArray.h>
#include <vtkFieldData.h>
#include <vtkImageData.h>
#include <vtkOpenGLPolyDataMapper.h>
#include <vtkPolyDataMapper.h>
#include <vtkTextProperty.h>

#include <limits>
#include <string>
#include <vector>

namespace {

using namespace morrow_test;

class GGenericModelPropsTest : public ViewTest
{
protected:
  /// The actor of a slot as the prop function makes it, with the model's property.
  vtkSmartPointer<vtkActor> actor(MRUtil::DrawMode mode, int kind = kLines)
  {
    const Props props = GGenericModel::create_data_view(one_triangle(), nullptr, &mModel, mode, kind);
    EXPECT_EQ(props.size(), 1U);
    return vtkActor::SafeDownCast(props.at(0));
  }
  vtkProperty* property(MRUtil::DrawMode mode) { return actor(mode)->GetProperty(); }

  GGenericModel mModel;
};

void expect_colour(vtkProperty& property, BrantColor colour)
{
  const double* c = property.GetColor();
  EXPECT_EQ(c[0], colour.red() / 255.0);
  EXPECT_EQ(c[1], colour.green() / 255.0);
  EXPECT_EQ(c[2], colour.blue() / 255.0);
}

// --- Properties

TEST_F(GGenericModelPropsTest, EachModeHasAPropertyOfItsOwn)
{
  std::set<vtkProperty*> properties;
  for (const MRUtil::DrawMode mode : kAllModes) {
    properties.insert(property(mode));
    EXPECT_EQ(property(mode), property(mode));
  }
  EXPECT_EQ(properties.size(), 5U);
}

// What is not said is VTK's default.
TEST_F(GGenericModelPropsTest, PropertiesStartAsDescribed)
{
  const vtkNew<vtkProperty> fresh;
  for (const MRUtil::DrawMode mode : kAllModes) {
    SCOPED_TRACE(mode);
    vtkProperty& p = *property(mode);
    const bool outline = mode == MRUtil::DRAW_OUTLINE;
    const bool highlight = mode == MRUtil::DRAW_HIGHLIGHT;
    EXPECT_EQ(p.GetLineWidth(), highlight ? 3.0F : 1.0F);
    EXPECT_EQ(p.GetPointSize(), 6.0F);
    EXPECT_EQ(p.GetAmbient(), outline ? 1.0 : fresh->GetAmbient());
    EXPECT_EQ(p.GetDiffuse(), outline ? 0.0 : fresh->GetDiffuse());
    EXPECT_EQ(p.GetSpecular(), outline ? 0.0 : fresh->GetSpecular());
    EXPECT_EQ(p.GetRepresentation(), outline ? VTK_WIREFRAME : VTK_SURFACE);
    EXPECT_EQ(p.GetOpacity(), mode == MRUtil::DRAW_OVERLAY ? 0.5 : 1.0);
    expect_colour(p, highlight ? BRANT_ORANGE : BRANT_WHITE);
  }
}

TEST_F(GGenericModelPropsTest, PointSizeIsSixTimesTheFactorButForHighlights)
{
  mModel.set_point_size(2.5F);
  for (const MRUtil::DrawMode mode : kAllModes) {
    EXPECT_EQ(property(mode)->GetPointSize(), mode == MRUtil::DRAW_HIGHLIGHT ? 6.0F : 15.0F);
  }
  mModel.set_point_size(1.0F);
  for (const MRUtil::DrawMode mode : kAllModes) {
    EXPECT_EQ(property(mode)->GetPointSize(), 6.0F);
  }
}

TEST_F(GGenericModelPropsTest, LineWidthsAreInPixels)
{
  mModel.set_line_width(2.0F);
  for (const MRUtil::DrawMode mode : kAllModes) {
    EXPECT_EQ(property(mode)->GetLineWidth(), mode == MRUtil::DRAW_HIGHLIGHT ? 3.0F : 2.0F);
  }
  mModel.set_highlight_line_width(5.0F);
  for (const MRUtil::DrawMode mode : kAllModes) {
    EXPECT_EQ(property(mode)->GetLineWidth(), mode == MRUtil::DRAW_HIGHLIGHT ? 5.0F : 2.0F);
  }
}

TEST_F(GGenericModelPropsTest, HighlightColourIsThatOfItsPropertyOnly)
{
  mModel.set_highlight_color(BrantColor(10, 20, 30, 40));
  for (const MRUtil::DrawMode mode : kAllModes) {
    expect_colour(*property(mode), mode == MRUtil::DRAW_HIGHLIGHT ? BrantColor(10, 20, 30) : BRANT_WHITE);
  }
  EXPECT_EQ(property(MRUtil::DRAW_HIGHLIGHT)->GetOpacity(), 1.0);
}

TEST_F(GGenericModelPropsTest, RenderModeIsTheRepresentationOfModeZero)
{
  for (int mode = 0; mode <= 7; ++mode) {
    mModel.set_render_mode(static_cast<MRUtil::RenderMode>(mode));
    EXPECT_EQ(mModel.get_render_mode(), mode);
    EXPECT_EQ(property(MRUtil::DRAW_DEFAULT)->GetRepresentation(), mode < 3 ? VTK_WIREFRAME : VTK_SURFACE);
    EXPECT_EQ(property(MRUtil::DRAW_OUTLINE)->GetRepresentation(), VTK_WIREFRAME);
    EXPECT_EQ(property(MRUtil::DRAW_FILLED)->GetRepresentation(), VTK_SURFACE);
  }
}

TEST_F(GGenericModelPropsTest, SettingsThatAreNotNumbersAreHarmless)
{
  for (const float bad : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                          -1.0F, 0.0F, std::numeric_limits<float>::max()}) {
    mModel.set_point_size(bad);
    mModel.set_line_width(bad);
    mModel.set_highlight_line_width(bad);
  }
  mModel.set_point_size(1.0F);
  EXPECT_EQ(property(MRUtil::DRAW_FILLED)->GetPointSize(), 6.0F);
}

// --- Props of slots

TEST_F(GGenericModelPropsTest, SlotIsOneActorWithAMapperThatIsNotStatic)
{
  const auto data = one_triangle();
  for (const MRUtil::DrawMode mode : kAllModes) {
    for (int kind = 0; kind < 3; ++kind) {
      const Props props = GGenericModel::create_data_view(data, nullptr, &mModel, mode, kind);
      ASSERT_EQ(props.size(), 1U);
      auto* made = vtkActor::SafeDownCast(props[0]);
      ASSERT_NE(made, nullptr);
      vtkMapper* mapper = made->GetMapper();
      EXPECT_NE(vtkPolyDataMapper::SafeDownCast(mapper), nullptr);
      EXPECT_EQ(mapper->GetInputDataObject(0, 0), data);
      EXPECT_EQ(mapper->GetStatic(), 0);
      EXPECT_EQ(mapper->GetScalarVisibility(), mode == MRUtil::DRAW_HIGHLIGHT ? 0 : 1);
    }
  }
}

#pragma GCC diagnostic push // VTK's newer way does not tell of texts that were given to mappers
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
TEST_F(GGenericModelPropsTest, PolygonsOnlyAreMovedBack)
{
  const auto shader = [&](MRUtil::DrawMode mode, int kind) -> std::string {
    const auto made = actor(mode, kind);
    const char* text = vtkOpenGLPolyDataMapper::SafeDownCast(made->GetMapper())->GetFragmentShaderCode();
    return text != nullptr ? text : "";
  };
  for (const MRUtil::DrawMode mode : kAllModes) {
    SCOPED_TRACE(mode);
    EXPECT_EQ(shader(mode, kVertices), "");
    EXPECT_EQ(shader(mode, kLines), "");
    EXPECT_NE(shader(mode, kPolygons).find("2.000000*brant_c_scale + 0.000016*2.000000"), std::string::npos);
  }
}
#pragma GCC diagnostic pop

TEST_F(GGenericModelPropsTest, EachViewHasActorsOfItsOwnWithTheModelsProperty)
{
  PlainView views[2];
  for (PlainView& view : views) {
    mModel.add_view(&view);
  }
  mModel.add_line({0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, BRANT_RED);
  vtkActor* first = actors_of(views[0]).at(0);
  vtkActor* second = actors_of(views[1]).at(0);
  EXPECT_NE(first, second);
  EXPECT_NE(first->GetMapper(), second->GetMapper());
  EXPECT_EQ(first->GetProperty(), second->GetProperty());
  EXPECT_EQ(first->GetProperty(), property(MRUtil::DRAW_OUTLINE));
  EXPECT_EQ(part_of(views[0]), part_of(views[1]));
}

TEST_F(GGenericModelPropsTest, PropFunctionRefusesWhatDoesNotExist)
{
  const PrintCapture capture;
  const auto data = one_triangle();
  EXPECT_TRUE(GGenericModel::create_data_view(data, nullptr, nullptr, MRUtil::DRAW_FILLED, 0).empty());
  for (const int mode : {-1, 5, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    EXPECT_TRUE(
        GGenericModel::create_data_view(data, nullptr, &mModel, static_cast<MRUtil::DrawMode>(mode), 0)
            .empty());
  }
  EXPECT_EQ(capture.calls().size(), 5U);
  EXPECT_EQ(capture.calls()[1].text, "GGenericModel::create_data_view: no model, or no draw mode -1\n");
  EXPECT_EQ(capture.calls()[1].kind, 2);
  const Props props = GGenericModel::create_data_view(nullptr, nullptr, &mModel, MRUtil::DRAW_FILLED, 99);
  ASSERT_EQ(props.size(), 1U); // an actor without data
  EXPECT_EQ(vtkActor::SafeDownCast(props[0])->GetMapper()->GetNumberOfInputConnections(0), 0);
}

// --- Text markers

vtkSmartPointer<vtkCaptionActor2D> caption_of(const Props& props)
{
  return props.size() == 1 ? vtkCaptionActor2D::SafeDownCast(props[0]) : nullptr;
}

/// A point with a "Label" of these bytes.
vtkSmartPointer<vtkPolyData> locate_data(const std::string& bytes)
{
  auto data = vertices({1.0, 2.0, 3.0, 4.0, 5.0, 6.0});
  const vtkNew<vtkCharArray> label;
  label->SetName("Label");
  for (const char c : bytes) {
    label->InsertNextValue(c);
  }
  data->GetFieldData()->AddArray(label);
  return data;
}

TEST_F(GGenericModelPropsTest, MarkerIsACaptionAtItsPlace)
{
  PlainView view;
  mModel.add_view(&view);
  const std::string text = "place \xc3\xa4 %s";
  {
    const std::string copied = text; // gone when it is shown
    mModel.add_locate({1.0, 2.0, 3.0}, copied.c_str());
  }
  ASSERT_EQ(num_part_props(view), 1);
  auto* caption =
      vtkCaptionActor2D::SafeDownCast(is_label_actor(shown(view)[0]) ? shown(view)[1] : shown(view)[0]);
  ASSERT_NE(caption, nullptr);
  EXPECT_EQ(caption->GetCaption(), text);
  const double* place = caption->GetAttachmentPoint();
  EXPECT_EQ(BrantVector(place), BrantVector(1.0, 2.0, 3.0));
  EXPECT_EQ(caption->GetBorder(), 0);
  EXPECT_EQ(caption->GetLeader(), 0);
  EXPECT_EQ(caption->GetPadding(), 0);
  EXPECT_EQ(caption->GetPosition()[0], 20.0);
  EXPECT_EQ(caption->GetPosition()[1], 20.0);
  EXPECT_EQ(caption->GetHeight(), 0.03);
  vtkTextProperty* style = caption->GetCaptionTextProperty();
  EXPECT_EQ(style->GetFontSize(), 12);
  EXPECT_EQ(style->GetBold(), 0);
  EXPECT_EQ(style->GetItalic(), 0);
  EXPECT_EQ(style->GetShadow(), 0);
}

TEST_F(GGenericModelPropsTest, MarkersAreAPartEach)
{
  mModel.add_locate({1.0, 2.0, 3.0}, "one");
  mModel.add_locate({1.0, 2.0, 3.0}, "one");
  mModel.add_locate({0.0, 0.0, 0.0}, "");
  EXPECT_EQ(num_parts(mModel), 3);
  mModel.clear();
  EXPECT_EQ(num_parts(mModel), 0);
}

TEST_F(GGenericModelPropsTest, MarkerKeepsItsTextWithTheTerminatingZero)
{
  class PartKeeper : public GGenericModel
  {
  public:
    void add_part(vtkDataObject* data, const PartPropFunction& make_props) override
    {
      kept = data;
      GGenericModel::add_part(data, make_props);
    }
    vtkSmartPointer<vtkDataObject> kept;
  };
  PartKeeper model;
  model.add_locate({1.0, 2.0, 3.0}, "abc");
  auto* data = vtkPolyData::SafeDownCast(model.kept);
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->GetNumberOfPoints(), 1);
  auto* label = vtkCharArray::SafeDownCast(data->GetFieldData()->GetAbstractArray("Label"));
  ASSERT_NE(label, nullptr);
  ASSERT_EQ(label->GetNumberOfValues(), 4);
  EXPECT_STREQ(label->GetPointer(0), "abc");
}

TEST_F(GGenericModelPropsTest, MarkerWithoutATextIsAnError)
{
  const PrintCapture capture;
  mModel.add_locate({1.0, 2.0, 3.0}, nullptr);
  EXPECT_EQ(capture.errors(), "GGenericModel::add_locate: null text\n");
  EXPECT_EQ(num_parts(mModel), 0);
}

// Black where the background is light: white would not be seen.
TEST_F(GGenericModelPropsTest, MarkerCanBeReadOnTheBackground)
{
  const auto data = locate_data("text");
  const auto red_of = [&](GView* view) {
    return caption_of(GGenericModel::create_locate_view(data, view))->GetCaptionTextProperty()->GetColor()[0];
  };
  EXPECT_EQ(red_of(nullptr), 1.0);
  PlainView view;
  view.set_background(9);
  view.set_background2(9);
  EXPECT_EQ(red_of(&view), 0.0);
  view.set_background(0);
  view.set_background2(0);
  EXPECT_EQ(red_of(&view), 1.0);
}

TEST_F(GGenericModelPropsTest, LabelsEndAtTheirFirstZeroOrWithTheirArray)
{
  const auto text_of = [](const std::string& bytes) -> std::string {
    return caption_of(GGenericModel::create_locate_view(locate_data(bytes), nullptr))->GetCaption();
  };
  EXPECT_EQ(text_of("abc"), "abc");
  EXPECT_EQ(text_of(std::string("ab\0c\0", 5)), "ab");
  EXPECT_EQ(text_of(std::string("\0", 1)), "");
  EXPECT_EQ(text_of(""), "");
}

TEST_F(GGenericModelPropsTest, DataWithoutAPlaceOrATextAreAnErrorAndNoProp)
{
  const vtkNew<vtkImageData> image;
  const auto no_points = locate_data("text");
  no_points->SetPoints(nullptr);
  const auto other_type = vertices({0.0, 0.0, 0.0});
  const vtkNew<vtkUnsignedCharArray> bytes;
  bytes->SetName("Label");
  other_type->GetFieldData()->AddArray(bytes);
  const auto no_text = vertices({0.0, 0.0, 0.0});
  const auto no_field_data = locate_data("text");
  no_field_data->SetFieldData(nullptr);
  const std::vector<vtkDataObject*> all = {nullptr, image, no_text, no_points, other_type, no_field_data};
  for (vtkDataObject* data : all) {
    const PrintCapture capture;
    EXPECT_TRUE(GGenericModel::create_locate_view(data, nullptr).empty());
    EXPECT_EQ(capture.errors(), "GGenericModel::create_locate_view: no point, or no text \"Label\"\n");
  }
}

} // namespace
