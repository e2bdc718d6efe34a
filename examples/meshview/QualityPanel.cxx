// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "QualityPanel.h"

#include "BrantColorTable.h"
#include "Camera.h"
#include "GView.h"
#include "MeshLabels.h"
#include "MeshQuality.h"
#include "QualityCounts.h"

#include <vtkCamera.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <string>

namespace {

constexpr double kReadable = 320.0; // pixels along the window's longer side that the panel should have
constexpr int kBins = 25;           // an odd number: the middle one, whose colour the text has, is bright
constexpr BrantColor kSlate(36, 41, 48);

/// The panel's, of the window's longer side.
double share_of(int longer_side)
{
  return std::clamp(kReadable / std::max(longer_side, 1), 0.4, 0.5);
}

/// So small that the numbers have room beside the axis, in a tenth of the width, and the texts at the top in
/// all of it.
double text_size(const GView& view, long long largest, std::size_t longest_text)
{
  int width = 0;
  int height = 0;
  drawn_size(view, width, height);
  constexpr double kWidthOfDigit = 0.58; // of their height
  constexpr double kWidthOfLetter = 0.6;
  const double digits = static_cast<double>(std::to_string(largest).size());
  const double beside_axis = 0.09 * width / (kWidthOfDigit * digits);
  const double at_top = 0.9 * width / (kWidthOfLetter * static_cast<double>(longest_text));
  return std::clamp(std::min({beside_axis, at_top, 0.04 * height}), 7.0, 20.0);
}

std::vector<BrantColor> bin_colors(const ColorScale& scale)
{
  const std::vector<BrantColor> all = scale.colors();
  std::vector<BrantColor> colors;
  for (std::size_t i = 0; i < kBins; ++i) {
    colors.push_back(all[(2 * i + 1) * all.size() / (2 * kBins)]);
  }
  return colors;
}

} // namespace

QualityPanel::QualityPanel(GView& mesh_view, const std::vector<MeshFile>& files, const ColorScale& scale)
    : mView(std::make_shared<GView>())
{
  split_window(mesh_view);
  const QualityCounts counts(files, scale.range(), kBins);
  const std::string measure = MeshQuality::measure_name();
  const std::string elements = counts.text();
  int width = 0;
  int height = 0;
  drawn_size(*mView, width, height);
  const double ratio = static_cast<double>(width) / std::max(height, 1);
  set_chart_label_style(text_size(*mView, counts.total(), std::max(measure.size(), elements.size())), true);
  mHistogram.set_render_mode(MRUtil::RenderMode(0)); // no label of it is behind anything
  mHistogram.add_histogram(counts.bins().data(), kBins, scale.range().low, scale.range().high,
                           measure.c_str(), elements.c_str(), 0.0, ratio, 0.0, 1.0, bin_colors(scale).data());
  look_at_chart(ratio);
  mModels.add_model(&mHistogram);
  mView->set_model_set(&mModels);
}

QualityPanel::~QualityPanel()
{
  GView::remove_global_view(mView);
}

/// The window is not on the screen yet. Its renderers share it, and each view draws with its own.
void QualityPanel::split_window(GView& mesh_view)
{
  int width = 0;
  int height = 0;
  mesh_view.get_size(width, height);
  mView->set_render_window(mesh_view.get_render_window());
  GView::add_global_view(mView); // whatever is done to the lights of all views
  mView->set_triad_vis(false);
  const int slate = BrantColorTable::add_color("slate", kSlate);
  mView->set_background(slate);
  mView->set_background2(slate);
  mView->get_renderer()->InteractiveOff();
  const double share = share_of(std::max(width, height));
  if (width >= height) {
    mesh_view.get_renderer()->SetViewport(0.0, 0.0, 1.0 - share, 1.0);
    mView->get_renderer()->SetViewport(1.0 - share, 0.0, 1.0, 1.0);
  } else {
    mesh_view.get_renderer()->SetViewport(0.0, share, 1.0, 1.0);
    mView->get_renderer()->SetViewport(0.0, 0.0, 1.0, share);
  }
}

/// The chart is as high as 1 and fills the panel.
void QualityPanel::look_at_chart(double width)
{
  vtkCamera& camera = *mView->get_renderer()->GetActiveCamera();
  camera.ParallelProjectionOn();
  camera.SetParallelScale(0.5);
  camera.SetFocalPoint(width / 2.0, 0.5, 0.0);
  camera.SetPosition(width / 2.0, 0.5, 1.0);
  camera.SetViewUp(0.0, 1.0, 0.0);
}
