// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Camera.h"

#include "BrantVector.h"

#include <vtkCamera.h>
#include <vtkMath.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kMargin = 0.9; // part of the window that the mesh may fill

struct NamedView
{
  const char* name;
  BrantVector towards_eye; // from the mesh
  BrantVector up;
};

const NamedView kViews[] = {{"iso", {1, -1, 0.8}, {0, 0, 1}}, {"+x", {1, 0, 0}, {0, 0, 1}},
                            {"-x", {-1, 0, 0}, {0, 0, 1}},  {"+y", {0, 1, 0}, {0, 0, 1}},
                            {"-y", {0, -1, 0}, {0, 0, 1}},  {"+z", {0, 0, 1}, {0, 1, 0}},
                            {"-z", {0, 0, -1}, {0, 1, 0}}};

const NamedView& find_view(const std::string& name)
{
  const auto* found = std::find_if(std::begin(kViews), std::end(kViews),
                                   [&name](const NamedView& view) { return view.name == name; });
  return found == std::end(kViews) ? kViews[0] : *found;
}

/// The distance from the centre of a box at which its eight corners are inside the picture. The view angle is
/// that of the picture's shorter side.
double framing_distance(const NamedView& view, const BrantVector& half_size, double view_angle, int width,
                        int height)
{
  const BrantVector back = view.towards_eye.normalized();
  const BrantVector right = view.up.cross(back).normalized();
  const BrantVector up = back.cross(right);
  const double tangent = kMargin * std::tan(vtkMath::RadiansFromDegrees(view_angle) / 2.0);
  const double shorter = std::min(width, height);
  double distance = 0.0;
  for (int corner = 0; corner < 8; ++corner) {
    const BrantVector point((corner & 1) != 0 ? half_size.x() : -half_size.x(),
                            (corner & 2) != 0 ? half_size.y() : -half_size.y(),
                            (corner & 4) != 0 ? half_size.z() : -half_size.z());
    const double aside = std::max(std::abs(point.dot(right)) * shorter / width,
                                  std::abs(point.dot(up)) * shorter / height);
    distance = std::max(distance, point.dot(back) + aside / tangent);
  }
  return distance > 0.0 ? distance : 1.0; // a mesh may be a single point
}

void place_camera(vtkCamera& camera, const BrantVector& centre, const BrantVector& eye, const BrantVector& up)
{
  camera.SetFocalPoint(centre.x(), centre.y(), centre.z());
  camera.SetPosition(eye.x(), eye.y(), eye.z());
  camera.SetViewUp(up.x(), up.y(), up.z());
}

} // namespace

const std::vector<std::string>& view_names()
{
  static const std::vector<std::string> kNames = [] {
    std::vector<std::string> names;
    for (const NamedView& view : kViews) {
      names.emplace_back(view.name);
    }
    return names;
  }();
  return kNames;
}

void look_from(const std::string& name, vtkRenderer& renderer, int width, int height)
{
  double bounds[6];
  renderer.ComputeVisiblePropBounds(bounds);
  const BrantVector low(bounds[0], bounds[2], bounds[4]);
  const BrantVector high(bounds[1], bounds[3], bounds[5]);
  const BrantVector centre = (low + high) * 0.5;
  const NamedView& view = find_view(name);
  vtkCamera& camera = *renderer.GetActiveCamera();
  const double distance =
      framing_distance(view, (high - low) * 0.5, camera.GetViewAngle(), width, height);
  place_camera(camera, centre, centre + view.towards_eye.normalized() * distance, view.up);
  renderer.ResetCameraClippingRange();
}
