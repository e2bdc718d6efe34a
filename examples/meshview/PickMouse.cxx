// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PickMouse.h"

#include "Viewer.h"

#include <MultiCellPicker.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr int kClick = 4; // pixels that the mouse may move in a click
constexpr int kStep = 2;  // from one corner of a lasso to the next, at least
constexpr int kCircleCorners = 64;
constexpr double kPi = 3.14159265358979323846;

int distance(const std::array<int, 2>& a, const std::array<int, 2>& b)
{
  return std::max(std::abs(a[0] - b[0]), std::abs(a[1] - b[1]));
}

/// What is drawn for a region.
std::vector<std::array<double, 2>> outline(const PickRegion& region)
{
  const auto& points = region.points;
  std::vector<std::array<double, 2>> corners;
  if (region.shape == PickShape::Circle) {
    for (int i = 0; i < kCircleCorners; ++i) {
      const double angle = 2.0 * kPi * i / kCircleCorners;
      corners.push_back(
          {points[0][0] + region.radius * std::cos(angle), points[0][1] + region.radius * std::sin(angle)});
    }
  } else if (region.shape == PickShape::Box) {
    const double x[2] = {static_cast<double>(points[0][0]), static_cast<double>(points[1][0])};
    const double y[2] = {static_cast<double>(points[0][1]), static_cast<double>(points[1][1])};
    corners = {{x[0], y[0]}, {x[1], y[0]}, {x[1], y[1]}, {x[0], y[1]}};
  } else {
    for (const auto& point : points) {
      corners.push_back({static_cast<double>(point[0]), static_cast<double>(point[1])});
    }
  }
  return corners;
}

/// For one pick; the command line's choice comes back.
class TouchedScope
{
public:
  explicit TouchedScope(bool takes_touched) : mBefore(MultiCellPicker::mBoxPickAcceptPartialCells)
  {
    MultiCellPicker::mBoxPickAcceptPartialCells = takes_touched;
  }
  ~TouchedScope() { MultiCellPicker::mBoxPickAcceptPartialCells = mBefore; }
  TouchedScope(const TouchedScope&) = delete;
  TouchedScope& operator=(const TouchedScope&) = delete;

private:
  bool mBefore;
};

} // namespace

PickMouse::PickMouse(Viewer& viewer) : mViewer(viewer), mBand(viewer.view()) {}

void PickMouse::toggle()
{
  cancel();
  mIsOn = !mIsOn;
}

void PickMouse::next_shape()
{
  cancel();
  mShape = mShape == PickShape::Box      ? PickShape::Circle
           : mShape == PickShape::Circle ? PickShape::Lasso
                                         : PickShape::Box;
}

void PickMouse::cancel()
{
  mPath.clear();
  mBand.hide();
  mViewer.picking().end_hover();
}

bool PickMouse::press(int x, int y, bool add)
{
  if (mIsOn) {
    mPath = {{x, y}};
    mIsAdding = add;
  }
  return mIsOn;
}

bool PickMouse::move(int x, int y)
{
  if (!mIsOn) {
    return false;
  }
  if (mPath.empty()) {
    if (mViewer.picking().hover(x, y)) {
      mViewer.refresh();
    }
  } else if (mShape == PickShape::Lasso) {
    if (distance(mPath.back(), {x, y}) >= kStep) {
      mPath.push_back({x, y});
      draw();
    }
  } else {
    mPath = {mPath.front(), {x, y}};
    draw();
  }
  return true;
}

bool PickMouse::release()
{
  if (mPath.empty()) {
    return false;
  }
  const PickRegion picked = region();
  const TouchedScope touched(takes_touched());
  mPath.clear();
  mBand.hide();
  mViewer.picking().pick(picked, mIsAdding);
  mViewer.refresh();
  return true;
}

void PickMouse::leave()
{
  if (mPath.empty() && mViewer.picking().end_hover()) {
    mViewer.refresh();
  }
}

bool PickMouse::is_drag() const
{
  return std::any_of(mPath.begin(), mPath.end(),
                     [this](const Place& place) { return distance(place, mPath.front()) >= kClick; });
}

bool PickMouse::takes_touched() const
{
  const int start = mPath.front()[0];
  if (mShape != PickShape::Lasso) {
    return mPath.back()[0] < start;
  }
  const auto first = std::find_if(mPath.begin(), mPath.end(), [start](const Place& place) {
    return std::abs(place[0] - start) >= kClick;
  });
  return first != mPath.end() && (*first)[0] < start;
}

PickRegion PickMouse::region() const
{
  PickRegion region;
  region.points = {mPath.front()};
  if (is_drag()) {
    region.shape = mShape;
    region.points = mPath;
    region.radius = std::hypot(mPath.back()[0] - mPath.front()[0], mPath.back()[1] - mPath.front()[1]);
  }
  return region;
}

void PickMouse::draw()
{
  if (is_drag()) {
    mBand.show(outline(region()), takes_touched());
    mViewer.refresh();
  }
}
