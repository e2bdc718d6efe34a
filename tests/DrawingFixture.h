// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantString.h"
#include "GGenericModel.h"
#include "LabelRecorder.h"
#include "ModelFixture.h"

#include <vtkCellData.h>
#include <vtkIdList.h>
#include <vtkUnsignedCharArray.h>

/// What the tests of those share that draw into a generic model.
namespace morrow_test {

using Lines = std::vector<std::string>;

[[nodiscard]] inline std::string text_of(const BrantVector& point)
{
  return BrantString::format("(%.5g %.5g %.5g)", point.x(), point.y(), point.z()).str();
}

[[nodiscard]] inline std::string hex_of(BrantColor color)
{
  return BrantString::format("#%02x%02x%02x", color.red(), color.green(), color.blue()).str();
}

/// One cell of a slot, as "MODE KIND (x y z)… #rrggbb".
[[nodiscard]] inline std::string cell_text(vtkPolyData& data, vtkIdType cell, int mode, int kind)
{
  static const char* const kKinds[3] = {"point", "line", "polygon"};
  const vtkNew<vtkIdList> points;
  data.GetCellPoints(cell, points);
  std::string text = std::to_string(mode) + " " + kKinds[kind];
  for (vtkIdType i = 0; i < points->GetNumberOfIds(); ++i) {
    text += " " + text_of(BrantVector(data.GetPoint(points->GetId(i))));
  }
  const unsigned char* rgba =
      vtkUnsignedCharArray::SafeDownCast(data.GetCellData()->GetScalars())->GetPointer(4 * cell);
  return text + " " + hex_of(BrantColor(rgba[0], rgba[1], rgba[2]));
}

/// The cells of one slot, in order.
[[nodiscard]] inline Lines cells_in(GGenericModel& model, int mode, int kind)
{
  Lines lines;
  vtkPolyData* data = model.initialize_cell_data(static_cast<MRUtil::DrawMode>(mode), kind);
  data->BuildCells();
  for (vtkIdType i = 0; i < data->GetNumberOfCells(); ++i) {
    lines.push_back(cell_text(*data, i, mode, kind));
  }
  return lines;
}

/// The cells of all slots, by draw mode and kind.
[[nodiscard]] inline Lines cells_in(GGenericModel& model)
{
  Lines lines;
  for (int slot = 0; slot < 15; ++slot) {
    const Lines more = cells_in(model, slot / 3, slot % 3);
    lines.insert(lines.end(), more.begin(), more.end());
  }
  return lines;
}

/// A chart that counts how often its parts are brought up to date, as its calls do at their end.
template<class Chart>
class Counting : public Chart
{
public:
  int updates = 0;
  std::size_t cells_at_update = 0;

  void update_parts() override
  {
    ++updates;
    cells_at_update = cells_in(*this).size();
    Chart::update_parts();
  }
};

/// The labels that are added to models while it lives, in order, as "TEXT (x y z) #rrggbb". Needs no display.
class LabelReader
{
public:
  [[nodiscard]] Lines labels_in(GModel& model)
  {
    const MRUtil::RenderMode before = model.get_render_mode();
    model.set_render_mode(MRUtil::RenderMode(0)); // all labels, also without a frame
    const vtkSmartPointer<vtkActor2D> actor = label_actor(model);
    mRecorder.clear();
    actor->GetMapper()->RenderOverlay(mScene.renderer(), actor);
    model.set_render_mode(before);
    Lines lines;
    for (const DrawnLabel& label : mRecorder.drawn()) {
      const double* rgb = label.style->GetColor();
      const BrantColor color(static_cast<int>(rgb[0] * 255 + 0.5), static_cast<int>(rgb[1] * 255 + 0.5),
                             static_cast<int>(rgb[2] * 255 + 0.5));
      lines.push_back(label.text + " " + text_of(label.anchor) + " " + hex_of(color));
    }
    return lines;
  }

private:
  Scene mScene; // never rendered
  LabelRecorder mRecorder{LabelRecorder::Drawing::None};
};

} // namespace morrow_test
