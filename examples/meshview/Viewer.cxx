// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Viewer.h"

#include "ColorChart.h"
#include "GView.h"
#include "MeshLights.h"

#include <vtkPoints.h>
#include <vtkPolyData.h>

#include <filesystem>

namespace {

constexpr double kDrawnText = 13.0; // pixels

/// Preferences of windows hold for those that views make afterwards, so they are set before the view is made.
/// Operations on all views, as that of the lights, reach those that are registered.
std::shared_ptr<GView> make_view(const Options& options)
{
  GView::set_offscreen(!options.opens_window());
  GView::set_preferred_window_size(options.width, options.height);
  auto view = std::make_shared<GView>();
  GView::add_global_view(view);
  return view;
}

/// Swatches of the colour table have the very colours in a light of 1.
void light(GView& view, const Options& options)
{
  constexpr float kOne = 1.0F / 3.0F; // as views count it
  if (options.color_table && !options.light) {
    GView::set_light_intensity(kOne, kOne, kOne);
  } else {
    light_mesh(view, options);
  }
}

/// The blocks' names; when several files are shown, after the file's. A block that is all of its file already
/// has its name.
std::vector<std::string> label_names(const std::vector<MeshFile>& files)
{
  std::vector<std::string> names;
  for (const MeshFile& file : files) {
    const std::string stem = std::filesystem::path(file.path).stem().string();
    for (const MeshBlock& block : file.blocks) {
      const bool is_alone = files.size() == 1 || block.name == stem;
      names.push_back(is_alone ? block.name : stem + ": " + block.name);
    }
  }
  return names;
}

} // namespace

std::string subject(const Options& options)
{
  if (!options.files.empty()) {
    return options.files.front();
  }
  return options.color_table ? "colours" : options.debug_script;
}

Viewer::Viewer(const Options& options, const Contents& contents)
    : mOptions(options), mContents(contents), mView(make_view(options)),
      mModel(options.style, contents.scale, options.group_limit.has_value()),
      mBlockLabels(mModel, label_names(contents.files)), mDecorations(*mView, options, contents.scale),
      mPicking(mModel, mModelSet, *mView)
{
  mModelSet.add_model(&mHiddenLines);
  mModelSet.add_model(&mModel);
  if (options.group_limit) {
    mGroups = std::make_unique<MeshGroups>(*options.group_limit, options.color_faces);
    mModelSet.add_model(mGroups.get());
  }
  mView->set_model_set(&mModelSet);
  mView->set_background(options.bottom_background);
  mView->set_background2(options.top_background);
  mView->set_title_bar(("meshview - " + subject(options)).c_str());
  light(*mView, options);
  add_extras();
  set_label_style(options.labels);
  add_blocks(contents.files);
  if (mGroups != nullptr || options.style.hidden_lines) {
    set_style(options.style);
  }
}

Viewer::~Viewer()
{
  GfxDebug::set_instance(nullptr);
  GView::remove_global_view(mView);
}

void Viewer::add_blocks(const std::vector<MeshFile>& files)
{
  for (const MeshFile& file : files) {
    for (const MeshBlock& block : file.blocks) {
      mModel.add_block(block);
    }
  }
  if (mOptions.labels == Labels::Points || mOptions.labels == Labels::Cells) {
    add_id_labels(mModel, mOptions.labels);
  }
}

/// Charts, and what is needed to frame them and the drawing.
void Viewer::add_extras()
{
  std::vector<BrantVector> points = mContents.script.points();
  if (!mContents.scale.is_empty() && mOptions.quality) {
    mQualityPanel = std::make_unique<QualityPanel>(*mView, mContents.files, mContents.scale);
  }
  if (mOptions.color_table) {
    fill_color_chart(mColorTable, *mView);
    const std::vector<BrantVector> corners = color_chart_corners();
    points.insert(points.end(), corners.begin(), corners.end());
  }
  vtkNew<vtkPoints> extra;
  extra->SetDataTypeToDouble();
  for (const BrantVector& point : points) {
    extra->InsertNextPoint(point.x(), point.y(), point.z());
  }
  mExtraPoints = vtkSmartPointer<vtkPolyData>::New();
  mExtraPoints->SetPoints(extra);
  mModelSet.add_model(&mColorTable);
  mModelSet.add_model(&mDrawing);
}

/// Anything that is linked with the host utility library can draw like this.
void Viewer::draw_script()
{
  GfxDebug::set_instance(&mDebug);
  set_chart_label_style(kDrawnText, false);
  mContents.script.run();
  set_label_style(mOptions.labels);
  refresh();
}

std::vector<vtkPolyData*> Viewer::surfaces() const
{
  std::vector<vtkPolyData*> surfaces;
  for (const MeshBlock& block : mModel.blocks()) {
    surfaces.push_back(block.surface);
  }
  if (mExtraPoints->GetNumberOfPoints() > 0) {
    surfaces.push_back(mExtraPoints);
  }
  return surfaces;
}

void Viewer::start()
{
  mDecorations.set_up();
  look_from_side(mOptions.view);
  if (mContents.script.size() > 0) {
    draw_script();
  }
  pick();
}

/// What the command line asks for.
void Viewer::pick()
{
  mPicking.set_kind(mOptions.pick.kind, true);
  MultiCellPicker::mSelectVisibleOnly = mOptions.pick.visible_only;
  MultiCellPicker::mBoxPickAcceptPartialCells = mOptions.pick.partial;
  if (mOptions.pick.region) {
    mPicking.pick(*mOptions.pick.region, false);
    refresh();
  }
}

void Viewer::look_from_side(const std::string& name)
{
  Framing framing;
  framing.surfaces = surfaces();
  framing.all_round = mOptions.spin > 0;
  mDecorations.make_room(framing);
  look_from(name, *mView, framing);
  if (mOptions.labels == Labels::Blocks) {
    refresh();
  }
}

void Viewer::set_style(const DrawStyle& style)
{
  mHiddenLines.show(mModel, style);
  mModel.set_style(style);
  if (mGroups != nullptr) {
    mGroups->show(mModel);
  }
}

Axis Viewer::turn_axis() const
{
  return ::turn_axis(mOptions.view, surfaces());
}

/// Labels of blocks go where the last frame shows the blocks.
void Viewer::refresh()
{
  if (mOptions.labels == Labels::Blocks) {
    mView->render();
    mBlockLabels.place(*mView);
  }
  mView->render();
}
