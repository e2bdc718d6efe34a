// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshModel.h"

#include "MeshLines.h"
#include "PartProps.h"

#include <vtkActor.h>
#include <vtkPolyData.h>

namespace {

constexpr BrantColor kNoValueColor(208, 210, 214); // of parts without the array that others are coloured by

/// The lines of one part in one view.
std::vector<vtkSmartPointer<vtkProp>> make_lines(const PartStyle& style, GView& view)
{
  std::vector<vtkSmartPointer<vtkProp>> props;
  if (!has_polygons(style)) {
    return props;
  }
  if (vtkPolyData* lines = wire_lines(style)) {
    props.emplace_back(make_wire_actor(lines, style, view));
  }
  if (style.draw.silhouette) {
    props.emplace_back(make_outline_actor(style, view));
  }
  return props;
}

/// The props of one part in one view.
std::vector<vtkSmartPointer<vtkProp>> make_props(vtkDataObject* data, const PartStyle& style, GView& view)
{
  auto props = make_lines(style, view);
  props.insert(props.begin(), make_surface_actor(data, style, view));
  return props;
}

} // namespace

MeshModel::MeshModel(const DrawStyle& style, const ColorScale& scale, bool is_grouped)
    : mStyle(style), mScale(scale), mIsGrouped(is_grouped)
{}

MeshModel::~MeshModel() = default;

void MeshModel::add_block(const MeshBlock& block)
{
  mBlocks.push_back(block);
  mLines.push_back(std::make_shared<MeshLines>(block));
  show(mBlocks.size() - 1);
}

PartStyle MeshModel::part_style(std::size_t block) const
{
  PartStyle style;
  style.surface = mBlocks[block].surface;
  style.lines = mLines[block];
  style.color = mScale.is_empty() ? palette_color(block) : kNoValueColor;
  style.draw = mStyle;
  style.scale = mScale;
  return style;
}

void MeshModel::show(std::size_t block)
{
  PartStyle style = part_style(block);
  if (!mIsGrouped) {
    add_part(style.surface,
             [style](vtkDataObject* data, GView* view) { return make_props(data, style, *view); });
    return;
  }
  if (style.draw.wire == Wire::Features) {
    style.draw.wire = Wire::None; // the groups have them
  }
  add_part(style.surface, [style](vtkDataObject* /*data*/, GView* view) { return make_lines(style, *view); });
}

/// Each part goes and comes back with props in the new style; labels stay. Unhooked, this takes time in
/// proportion to the number of parts.
void MeshModel::set_style(const DrawStyle& style)
{
  mStyle = style;
  unhook_from_views();
  for (std::size_t i = 0; i < mBlocks.size(); ++i) {
    remove_part(mBlocks[i].surface);
    show(i);
  }
  hook_to_views();
}
