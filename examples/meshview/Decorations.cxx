// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Decorations.h"

#include "BrantBox.h"
#include "BrantColorTable.h"
#include "GAxis.h"
#include "GView.h"
#include "vtkLegendActor.h"

#include <vtkCubeAxesActor2D.h>
#include <vtkPolyData.h>
#include <vtkPropCollection.h>
#include <vtkProperty2D.h>
#include <vtkRenderer.h>
#include <vtkScalarBarActor.h>
#include <vtkScalarBarRepresentation.h>
#include <vtkScalarBarWidget.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

#include <algorithm>

namespace {

// What decorations take of the picture, found by looking: parts of its sides, or pixels.
constexpr double kFree = 0.04; // around everything
constexpr double kScalarBar = 0.14;
constexpr Margins kCubeAxes = {0.08, 0.05, 0.06, 0.02}; // for the numbers outside of the box
constexpr double kTriad = 0.14;                         // of the height, at the bottom
constexpr double kLegend = 36.0;                        // pixels
constexpr double kMost = 0.4;                           // on one side: something is left for the mesh
constexpr double kAxes = 0.055; // length of the axes at the origin, of the mesh's diagonal

/// Points for a text that is this part of the picture's height.
int text_size(double part, int height)
{
  return static_cast<int>(std::clamp(part * height, 8.0, 48.0));
}

/// So small that the title has room.
int title_size(const std::string& title, int width, int height)
{
  constexpr double kWidthOfLetter = 0.6; // of their height
  const double letters = static_cast<double>(std::max<std::size_t>(title.size(), 1));
  const double fitting = 0.95 * width / (kWidthOfLetter * letters);
  return std::max(6, std::min(text_size(0.035, height), static_cast<int>(fitting)));
}

void set_color(vtkTextProperty* property, const double* rgb)
{
  property->SetColor(rgb[0], rgb[1], rgb[2]);
}

/// Dark text needs no shadow, and light text has one that is dark.
void set_style(vtkTextProperty* property, const double* rgb)
{
  set_color(property, rgb);
  property->SetShadow(rgb[0] > 0.5 ? 1 : 0);
}

void make_prop_readable(vtkProp& prop, int color_id, const double* rgb)
{
  if (auto* axes = vtkCubeAxesActor2D::SafeDownCast(&prop)) {
    axes->GetProperty()->SetColor(rgb[0], rgb[1], rgb[2]);
    set_style(axes->GetAxisTitleTextProperty(), rgb);
    set_style(axes->GetAxisLabelTextProperty(), rgb);
  } else if (auto* legend = vtkLegendActor::SafeDownCast(&prop)) {
    set_style(legend->GetLegendLabelProperty(), rgb);
  } else if (auto* axis = GAxis::SafeDownCast(&prop)) {
    axis->set_label_color(BrantColorTable::lookup_color(color_id));
  }
}

BrantBox box_of(const std::vector<vtkPolyData*>& surfaces)
{
  BrantBox box;
  for (vtkPolyData* surface : surfaces) {
    const double* b = surface->GetBounds();
    box |= BrantVector(b[0], b[2], b[4]);
    box |= BrantVector(b[1], b[3], b[5]);
  }
  return box;
}

std::vector<BrantVector> corners_of(const BrantBox& box)
{
  const BrantVector ends[2] = {box.minimum(), box.maximum()};
  std::vector<BrantVector> corners;
  for (int i = 0; i < 8; ++i) {
    corners.emplace_back(ends[i & 1].x(), ends[(i >> 1) & 1].y(), ends[(i >> 2) & 1].z());
  }
  return corners;
}

/// Titles are centred in their window, of which the renderer may have a part.
void centre_title(vtkRenderer& renderer)
{
  const double* part = renderer.GetViewport();
  vtkPropCollection* props = renderer.GetViewProps();
  vtkCollectionSimpleIterator at = nullptr;
  props->InitTraversal(at);
  while (vtkProp* prop = props->GetNextProp(at)) {
    if (auto* title = vtkTextActor::SafeDownCast(prop)) {
      title->SetPosition((part[0] + part[2]) / 2.0, part[3] - 0.01);
    }
  }
}

/// Beside the room for the mesh, with text of one size whatever the numbers are.
void place_scalar_bar(vtkScalarBarWidget& widget, const std::string& title, const GView& view)
{
  int width = 0;
  int height = 0;
  drawn_size(view, width, height);
  widget.GetScalarBarRepresentation()->SetPosition(0.85, 0.18);
  widget.GetScalarBarRepresentation()->SetPosition2(0.13, 0.64);
  vtkScalarBarActor& bar = *widget.GetScalarBarActor();
  bar.SetTitle(title.c_str());
  bar.UnconstrainedFontSizeOn();
  bar.SetVerticalTitleSeparation(text_size(0.022, height)); // the uppermost number reaches above the bar
  for (vtkTextProperty* text : {bar.GetTitleTextProperty(), bar.GetLabelTextProperty()}) {
    text->SetFontSize(text_size(0.022, height));
    text->ItalicOff();
    text->ShadowOff();
  }
}

} // namespace

Decorations::Decorations(GView& view, const Options& options, const ColorScale& scale)
    : mView(view), mOptions(options.decorations), mIsParallel(options.parallel), mScale(scale)
{}

void Decorations::set_up()
{
  mView.set_perspective(!mIsParallel);
  mView.set_triad_vis(mOptions.triad);
  if (mOptions.axes) {
    mView.set_axis_type(*mOptions.axes);
    mView.set_axis_vis(true);
  }
  mView.set_cube_axes_vis(mOptions.cube_axes);
  mView.set_legend_vis(mOptions.legend);
  show_title();
  if (mOptions.scalar_bar) {
    show_scalar_bar();
  }
  make_readable();
}

/// As it is shown now: empty for none.
std::string Decorations::title() const
{
  return mHasTitle ? mOptions.title : "";
}

void Decorations::show_title()
{
  int width = 0;
  int height = 0;
  drawn_size(mView, width, height);
  mView.set_title_font_size(title_size(title(), width, height));
  mView.set_title(title().c_str());
  centre_title(*mView.get_renderer());
}

/// In the very colours of the mesh.
void Decorations::show_scalar_bar()
{
  mView.setup_scalar_bar(mScale.range().low, mScale.range().high, false, mScale.colors());
  vtkScalarBarWidget& widget = *mView.get_scalar_bar();
  widget.KeyPressActivationOff(); // the keys are ours
  place_scalar_bar(widget, mScale.array(), mView);
}

bool Decorations::has_scalar_bar() const
{
  return mView.get_scalar_bar() != nullptr && mView.get_scalar_bar()->GetEnabled() != 0;
}

bool Decorations::toggle_title()
{
  mHasTitle = !mHasTitle;
  show_title();
  return !mOptions.title.empty();
}

void Decorations::toggle_triad()
{
  mView.set_triad_vis(!mView.get_triad_vis());
}

void Decorations::next_axes()
{
  const bool is_last = mView.get_axis_vis() && mView.get_axis_type() == MRUtil::AXIS_1D;
  const int next = mView.get_axis_vis() ? mView.get_axis_type() + 1 : MRUtil::AXIS_3D;
  if (!is_last) {
    mView.set_axis_type(static_cast<MRUtil::AxisType>(next));
  }
  mView.set_axis_vis(!is_last);
  make_readable();
}

void Decorations::toggle_cube_axes()
{
  mView.set_cube_axes_vis(!mView.get_cube_axes_vis());
  make_readable();
}

void Decorations::toggle_legend()
{
  if (mView.get_perspective()) {
    mView.set_perspective(false);
  }
  mView.set_legend_vis(!mView.get_legend_vis());
  make_readable();
}

void Decorations::toggle_projection()
{
  mView.set_perspective(!mView.get_perspective());
  if (mView.get_perspective()) {
    mView.set_legend_vis(false); // lengths have no one scale there
  }
}

bool Decorations::toggle_scalar_bar()
{
  if (mScale.is_empty()) {
    return false;
  }
  if (has_scalar_bar()) {
    mView.get_scalar_bar()->EnabledOff();
  } else if (mView.get_scalar_bar() != nullptr) {
    mView.get_scalar_bar()->EnabledOn();
  } else {
    show_scalar_bar();
  }
  return true;
}

/// The view chooses the colour of its scalar bar by itself. What it makes anew, as an axis of another form,
/// has colours of its own until then.
void Decorations::make_readable()
{
  const int id = mView.get_label_color_from_background();
  double rgb[3] = {0.0, 0.0, 0.0};
  BrantColorTable::color_id_to_rgb(id, rgb);
  mView.set_triad_label_color(BrantColorTable::lookup_color(id));
  mView.set_title_color(rgb);
  vtkPropCollection* props = mView.get_renderer()->GetViewProps();
  vtkCollectionSimpleIterator at = nullptr;
  props->InitTraversal(at);
  while (vtkProp* prop = props->GetNextProp(at)) {
    make_prop_readable(*prop, id, rgb);
  }
}

Margins Decorations::margins() const
{
  int width = 0;
  int height = 0;
  drawn_size(mView, width, height);
  Margins margins{kFree, kFree, kFree, kFree};
  if (!title().empty()) {
    margins.top += 0.01 + 1.4 * title_size(title(), width, height) / height;
  }
  if (mView.get_triad_vis() || (mView.get_axis_vis() && mView.get_axis_type() == MRUtil::AXIS_2D)) {
    margins.bottom = std::max(margins.bottom, kTriad);
  }
  if (mView.get_legend_vis()) {
    margins.bottom = std::max(margins.bottom, kLegend / height + 0.02);
  }
  if (has_scalar_bar()) {
    margins.right += kScalarBar;
  }
  if (mView.get_cube_axes_vis()) {
    margins.left += kCubeAxes.left;
    margins.right += kCubeAxes.right;
    margins.bottom += kCubeAxes.bottom;
    margins.top += kCubeAxes.top;
  }
  for (double* side : {&margins.left, &margins.right, &margins.bottom, &margins.top}) {
    *side = std::min(*side, kMost);
  }
  return margins;
}

void Decorations::make_room(Framing& framing) const
{
  framing.margins = margins();
  BrantBox box = box_of(framing.surfaces);
  if (mView.get_axis_vis() && mView.get_axis_type() != MRUtil::AXIS_2D) {
    const double length = kAxes * box.minimum().distance_between(box.maximum());
    const BrantVector reach(length, length, length);
    framing.points = corners_of(BrantBox(-reach, reach));
    box |= -reach;
    box |= reach;
  }
  if (mView.get_cube_axes_vis()) {
    framing.points = corners_of(box);
  }
}
