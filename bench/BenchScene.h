// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BenchSupport.h"
#include "GView.h"

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <numeric>
#include <vector>

/// Meshes and windows for benchmarks.
namespace morrow_bench {

// ---------------------------------------------------------------------------------------------------------
// Meshes

using Surface = std::function<void(double u, double v, double* point)>; // u and v from 0 to 1

inline void height_field(double u, double v, double* point)
{
  point[0] = 2.0 * u - 1.0;
  point[1] = 2.0 * v - 1.0;
  point[2] = 0.05 * std::sin(90.0 * u) * std::cos(70.0 * v);
}

/// About so many triangles, two in each square of a grid over the surface.
inline vtkSmartPointer<vtkPolyData> triangles(std::int64_t count, const Surface& surface)
{
  const auto side = static_cast<vtkIdType>(std::sqrt(static_cast<double>(count) / 2.0));
  vtkNew<vtkPoints> points;
  for (vtkIdType i = 0; i < (side + 1) * (side + 1); ++i) {
    double point[3];
    surface(static_cast<double>(i % (side + 1)) / static_cast<double>(side),
            static_cast<double>(i / (side + 1)) / static_cast<double>(side), point);
    points->InsertNextPoint(point);
  }
  std::vector<vtkIdType> squares(static_cast<std::size_t>(side * side));
  std::iota(squares.begin(), squares.end(), 0);
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetPolys(grid_triangles(side, squares));
  return data;
}

inline vtkSmartPointer<vtkActor> actor_of(vtkPolyData* data)
{
  vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputData(data);
  mapper->SetStatic(1);
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetMapper(mapper);
  return actor;
}

// ---------------------------------------------------------------------------------------------------------
// Windows

constexpr int WindowWidth = 1000;
constexpr int WindowHeight = 800;

/// Looks at the surfaces from above, at a slant.
inline void look_down(vtkRenderer& renderer)
{
  vtkCamera* camera = renderer.GetActiveCamera();
  camera->SetPosition(0.0, -2.2, 1.6);
  camera->SetFocalPoint(0.0, 0.0, 0.0);
  camera->SetViewUp(0.0, 0.0, 1.0);
}

/// A window that nobody sees, with one renderer of VTK's.
class PlainWindow
{
public:
  explicit PlainWindow(int width = WindowWidth, int height = WindowHeight)
  {
    mWindow->SetShowWindow(false);
    mWindow->SetUseOffScreenBuffers(true);
    mWindow->SetMultiSamples(0);
    mWindow->SetSize(width, height);
    mWindow->AddRenderer(mRenderer);
    look_down(*mRenderer);
  }

  [[nodiscard]] vtkRenderWindow& window() const { return *mWindow; }
  [[nodiscard]] vtkRenderer& renderer() const { return *mRenderer; }

  /// Like GView::render(). Returns when the picture is complete.
  void render() const
  {
    mRenderer->ResetCameraClippingRange();
    mWindow->Render();
    mWindow->WaitForCompletion();
  }

private:
  vtkNew<vtkRenderWindow> mWindow;
  vtkNew<vtkRenderer> mRenderer;
};

/// A view whose window nobody sees, black and without triad: it shows the same as a PlainWindow.
class ViewWindow
{
public:
  explicit ViewWindow(int width = WindowWidth, int height = WindowHeight)
  {
    mView.set_triad_vis(false);
    mView.set_background(0);
    mView.set_background2(0);
    this->window().SetMultiSamples(0);
    this->window().SetSize(width, height);
    look_down(this->renderer());
  }

  [[nodiscard]] GView& view() { return mView; }
  [[nodiscard]] vtkRenderWindow& window() const { return *mView.get_render_window(); }
  [[nodiscard]] vtkRenderer& renderer() const { return *mView.get_renderer(); }

  void render()
  {
    mView.render();
    this->window().WaitForCompletion();
  }

private:
  /// The view asks for it when it makes its window.
  struct OffScreen
  {
    OffScreen() { GView::set_offscreen(true); }
  };

  OffScreen mOffScreen;
  GView mView;
};

/// The picture in a window's back buffer: red, green and blue of each pixel.
inline std::vector<unsigned char> pixels_of(vtkRenderWindow& window)
{
  vtkNew<vtkUnsignedCharArray> pixels;
  window.GetPixelData(0, 0, window.GetSize()[0] - 1, window.GetSize()[1] - 1, 1, pixels);
  return {pixels->GetPointer(0), pixels->GetPointer(0) + pixels->GetNumberOfValues()};
}

/// Whether two pictures are of one size and differ visibly in no more than a pixel in a thousand.
inline bool look_the_same(const std::vector<unsigned char>& a, const std::vector<unsigned char>& b)
{
  constexpr int visible = 8; // of 255
  if (a.size() != b.size()) {
    return false;
  }
  std::size_t different = 0;
  for (std::size_t i = 0; i < a.size(); i += 3) {
    const auto differ = [](unsigned char x, unsigned char y) { return std::abs(x - y) > visible; };
    different += std::equal(&a[i], &a[i] + 3, &b[i], std::not_fn(differ)) ? 0U : 1U;
  }
  return different <= a.size() / 3 / 1000;
}

} // namespace morrow_bench
