// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CubeAxis.h"

#include "ScaleLabels.h"

#include <vtkActor2D.h>
#include <vtkCoordinate.h>
#include <vtkObjectFactory.h>
#include <vtkTextMapper.h>

#include <algorithm>
#include <cmath>

namespace morrow {

namespace {

// All in pixels.
constexpr double LeastLength = 60.0; // room for five numbers above each other
constexpr double Gap = 8.0;          // about a wide space
constexpr double PushStep = 2.0;
constexpr double LongestPush = 32.0; // beyond, nobody would know which tick a number belongs to

using Point = std::array<double, 2>;

Point end_of(vtkCoordinate* coordinate)
{
  const double* value = coordinate->GetValue();
  return {value[0], value[1]};
}

/// Calls visit with the axes and labels of each pair of labels of different axes that collide.
template<typename Visit>
bool visit_collisions(const std::vector<CubeAxis*>& axes, vtkViewport& viewport, Visit&& visit)
{
  bool found = false;
  for (std::size_t first = 0; first < axes.size(); ++first) {
    for (std::size_t second = first + 1; second < axes.size(); ++second) {
      const auto a = axes[first]->labels(viewport);
      const auto b = axes[second]->labels(viewport);
      for (std::size_t i = 0; i < a.size(); ++i) {
        for (std::size_t j = 0; j < b.size(); ++j) {
          if (collide(a[i], b[j])) {
            visit(*axes[first], static_cast<int>(i), *axes[second], static_cast<int>(j));
            found = true;
          }
        }
      }
    }
  }
  return found;
}

/// Hides each label that collides with an earlier one, of its own axis or another.
void hide_collisions(const std::vector<CubeAxis*>& axes, vtkViewport& viewport)
{
  std::vector<LabelBox> kept;
  for (CubeAxis* axis : axes) {
    const std::vector<LabelBox> boxes = axis->labels(viewport);
    for (std::size_t i = 0; i < boxes.size(); ++i) {
      if (std::any_of(kept.begin(), kept.end(),
                      [&](const LabelBox& each) { return collide(each, boxes[i]); })) {
        axis->hide(static_cast<int>(i));
      } else {
        kept.push_back(boxes[i]);
      }
    }
  }
}

} // namespace

bool collide(const LabelBox& a, const LabelBox& b)
{
  const auto near_along = [&](std::size_t axis) {
    return a.low[axis] < b.high[axis] + Gap && b.low[axis] < a.high[axis] + Gap;
  };
  return a.is_shown && b.is_shown && near_along(0) && near_along(1);
}

int label_step(const std::vector<LabelBox>& row)
{
  const auto count = row.size();
  std::size_t step = 1;
  const auto has_collision = [&] {
    for (std::size_t i = step; i < count; i += step) {
      if (collide(row[i - step], row[i])) {
        return true;
      }
    }
    return false;
  };
  while (step + 1 < count && has_collision()) {
    step *= 2;
  }
  return static_cast<int>(std::max<std::size_t>(std::min(step, count > 1 ? count - 1 : 1), 1));
}

vtkStandardNewMacro(CubeAxis)

void CubeAxis::SetRange(double first, double last)
{
  let_scale_meet_zero(first, last, this->NumberOfLabels);
  this->Superclass::SetRange(first, last);
}

void CubeAxis::SetLabelFormat(const char* /*format*/)
{
  const std::string own = scale_format(this->Range[0], this->Range[1], this->NumberOfLabels);
  this->Superclass::SetLabelFormat(own.c_str());
}

bool CubeAxis::has_room()
{
  const Point a = end_of(this->GetPositionCoordinate());
  const Point b = end_of(this->GetPosition2Coordinate());
  return std::hypot(b[0] - a[0], b[1] - a[1]) >= LeastLength &&
         is_scale(this->Range[0], this->Range[1], this->NumberOfLabels);
}

LabelBox CubeAxis::label(int i, vtkViewport& viewport) const
{
  const char* text = this->LabelMappers[i]->GetInput();
  if (text == nullptr || *text == '\0') {
    return {};
  }
  int size[2];
  this->LabelMappers[i]->GetSize(&viewport, size);
  const double* position = this->LabelActors[i]->GetPosition();
  return {{position[0], position[1]}, {position[0] + size[0], position[1] + size[1]}, true};
}

std::vector<LabelBox> CubeAxis::labels(vtkViewport& viewport) const
{
  std::vector<LabelBox> boxes;
  for (int i = 0; i < this->NumberOfLabelsBuilt; ++i) {
    boxes.push_back(this->label(i, viewport));
  }
  return boxes;
}

void CubeAxis::thin_out(vtkViewport& viewport)
{
  const std::vector<LabelBox> boxes = this->labels(viewport);
  const bool is_untouched =
      std::all_of(boxes.begin(), boxes.end(), [](const LabelBox& box) { return box.is_shown; });
  const int step = is_untouched ? label_step(boxes) : 1;
  for (int i = 0; i < this->NumberOfLabelsBuilt; ++i) {
    if (i % step != 0) {
      this->hide(i);
    }
  }
}

void CubeAxis::push(int label, double pixels, vtkViewport& viewport)
{
  const LabelBox box = this->label(label, viewport);
  const Point a = end_of(this->GetPositionCoordinate());
  const Point b = end_of(this->GetPosition2Coordinate());
  const double length = std::hypot(b[0] - a[0], b[1] - a[1]);
  if (!(length > 0.0)) {
    return;
  }
  Point away = {-(b[1] - a[1]) / length, (b[0] - a[0]) / length};
  const double middle[2] = {(box.low[0] + box.high[0]) / 2.0 - a[0], (box.low[1] + box.high[1]) / 2.0 - a[1]};
  const double side = middle[0] * away[0] + middle[1] * away[1] < 0.0 ? -pixels : pixels;
  this->LabelActors[label]->SetPosition(box.low[0] + side * away[0], box.low[1] + side * away[1]);
}

void CubeAxis::hide(int label)
{
  this->LabelMappers[label]->SetInput("");
}

void keep_labels_apart(const std::vector<CubeAxis*>& axes, vtkViewport& viewport)
{
  const auto push_both = [&](CubeAxis& a, int i, CubeAxis& b, int j) {
    a.push(i, PushStep, viewport);
    b.push(j, PushStep, viewport);
  };
  double pushed = 0.0;
  while (pushed < LongestPush && visit_collisions(axes, viewport, push_both)) {
    pushed += PushStep;
  }
  hide_collisions(axes, viewport);
}

} // namespace morrow
