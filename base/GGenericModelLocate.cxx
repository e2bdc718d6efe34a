// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The text markers of GGenericModel.
#include "GGenericModel.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "BrantColorTable.h"
#include "BrantVector.h"
#include "GView.h"

#include <vtkCaptionActor2D.h>
#include <vtkCharArray.h>
#include <vtkFieldData.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkTextProperty.h>

namespace {

constexpr char LabelName[] = "Label";
constexpr double CaptionOffset = 20.0; // pixels
constexpr double CaptionHeight = 0.03; // of the window
constexpr int CaptionFontSize = 12;

vtkSmartPointer<vtkPolyData> make_locate_data(const BrantVector& position, const char* text)
{
  const vtkNew<vtkPoints> points;
  points->InsertNextPoint(position.data());
  const vtkNew<vtkCharArray> label;
  label->SetName(LabelName);
  const auto size = static_cast<vtkIdType>(std::strlen(text)) + 1;
  std::copy_n(text, size, label->WritePointer(0, size));
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->GetFieldData()->AddArray(label);
  return data;
}

// Null when there is none; a host may have taken all field data away.
vtkCharArray* label_of(vtkPolyData& data)
{
  vtkFieldData* fields = data.GetFieldData();
  return fields != nullptr ? vtkCharArray::SafeDownCast(fields->GetAbstractArray(LabelName)) : nullptr;
}

// The terminating zero may be missing.
std::string text_of(vtkCharArray& label)
{
  const char* begin = label.GetPointer(0);
  return {begin, std::find(begin, begin + label.GetNumberOfValues(), '\0')};
}

void set_caption_style(vtkCaptionActor2D& caption, const GView* view)
{
  caption.BorderOff();
  caption.LeaderOff();
  caption.SetPadding(0);
  caption.SetPosition(CaptionOffset, CaptionOffset);
  caption.SetHeight(CaptionHeight);
  vtkTextProperty& text = *caption.GetCaptionTextProperty();
  text.SetFontSize(CaptionFontSize);
  text.BoldOff();
  text.ItalicOff();
  text.ShadowOff();
  double colour[3] = {1.0, 1.0, 1.0};
  if (view != nullptr) {
    BrantColorTable::color_id_to_rgb(view->get_label_color_from_background(), colour);
  }
  text.SetColor(colour);
}

} // namespace

void GGenericModel::add_locate(const BrantVector& position, const char* text)
{
  if (text == nullptr) {
    MRUtil::print_error("GGenericModel::add_locate: null text\n");
    return;
  }
  this->add_part(make_locate_data(position, text), &GGenericModel::create_locate_view);
}

std::vector<vtkSmartPointer<vtkProp>> GGenericModel::create_locate_view(vtkDataObject* data, GView* view)
{
  auto* place = vtkPolyData::SafeDownCast(data);
  vtkCharArray* label = place != nullptr ? label_of(*place) : nullptr;
  if (label == nullptr || place->GetNumberOfPoints() == 0) {
    MRUtil::print_error("GGenericModel::create_locate_view: no point, or no text \"%s\"\n", LabelName);
    return {};
  }
  auto caption = vtkSmartPointer<vtkCaptionActor2D>::New();
  caption->SetCaption(text_of(*label).c_str());
  caption->SetAttachmentPoint(place->GetPoint(0));
  set_caption_style(*caption, view);
  return {caption};
}
