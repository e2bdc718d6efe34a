// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshLabels.h"

#include "BrantColor.h"
#include "BrantVector.h"
#include "FramePoints.h"
#include "MeshBlocks.h"
#include "MeshModel.h"
#include "Options.h"

#include <vtkCellData.h>
#include <vtkIdList.h>
#include <vtkIdTypeArray.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr BrantColor kLabelColor(20, 24, 30);
constexpr vtkIdType kMostCandidates =
    4000; // faces that are asked for a place; more take time and show nothing

BrantVector point_of(vtkPolyData& surface, vtkIdType point)
{
  return BrantVector(surface.GetPoint(point));
}

BrantVector centre_of(vtkPolyData& surface, vtkIdType cell, vtkIdList& scratch)
{
  surface.GetCellPoints(cell, &scratch);
  BrantVector sum;
  for (const vtkIdType point : scratch) {
    sum += point_of(surface, point);
  }
  return sum / static_cast<double>(std::max<vtkIdType>(scratch.GetNumberOfIds(), 1));
}

// --- Ids

vtkIdType id_at(vtkDataSetAttributes& attributes, vtkIdType index)
{
  auto* ids = vtkIdTypeArray::SafeDownCast(attributes.GetArray(id_array_name()));
  return ids == nullptr ? -1 : ids->GetValue(index);
}

void add_label(GModel& model, vtkIdType id, const BrantVector& place)
{
  if (id >= 0) {
    model.add_label(std::to_string(id).c_str(), place, kLabelColor);
  }
}

void label_points(GModel& model, vtkPolyData& surface)
{
  for (vtkIdType i = 0; i < surface.GetNumberOfPoints(); ++i) {
    add_label(model, id_at(*surface.GetPointData(), i), point_of(surface, i));
  }
}

void label_cells(GModel& model, vtkPolyData& surface)
{
  vtkNew<vtkIdList> scratch;
  for (vtkIdType i = 0; i < surface.GetNumberOfCells(); ++i) {
    add_label(model, id_at(*surface.GetCellData(), i), centre_of(surface, i, *scratch));
  }
}

// --- Names of blocks

struct Candidate
{
  BrantVector world;
  BrantVector projected;
};

/// Centres of faces, spread evenly over the list of them.
std::vector<Candidate> list_candidates(vtkPolyData& surface, const FramePoints& frame)
{
  const vtkIdType cells = surface.GetNumberOfCells();
  const vtkIdType step = std::max<vtkIdType>(1, cells / kMostCandidates);
  std::vector<Candidate> candidates;
  vtkNew<vtkIdList> scratch;
  for (vtkIdType cell = 0; cell < cells; cell += step) {
    const BrantVector centre = centre_of(surface, cell, *scratch);
    candidates.push_back({centre, frame.project(centre)});
  }
  return candidates;
}

/// The visible ones; all if none is visible.
std::vector<Candidate> list_best_candidates(vtkPolyData& surface, const FramePoints& frame)
{
  const std::vector<Candidate> all = list_candidates(surface, frame);
  std::vector<Candidate> visible;
  std::copy_if(all.begin(), all.end(), std::back_inserter(visible),
               [&frame](const Candidate& candidate) { return frame.is_visible(candidate.projected); });
  return visible.empty() ? all : visible;
}

double distance_on_screen(const BrantVector& a, const BrantVector& b)
{
  return BrantVector(a.x() - b.x(), a.y() - b.y(), 0.0).length();
}

BrantVector mean_on_screen(const std::vector<Candidate>& candidates)
{
  BrantVector sum;
  for (const Candidate& candidate : candidates) {
    sum += candidate.projected;
  }
  return sum / static_cast<double>(candidates.size());
}

/// Which block is seen where, in coarse tiles of the picture.
class Tiles
{
public:
  explicit Tiles(const FramePoints& frame)
      : mColumns(frame.width() / kSize + 1), mRows(frame.height() / kSize + 1),
        mOwners(static_cast<std::size_t>(mColumns) * static_cast<std::size_t>(mRows), kNobody)
  {}

  void mark(int block, const std::vector<Candidate>& candidates)
  {
    for (const Candidate& candidate : candidates) {
      const int column = tile(candidate.projected.x());
      const int row = tile(candidate.projected.y());
      if (is_inside(column, row)) {
        int& owner = mOwners[index(column, row)];
        owner = owner == kNobody || owner == block ? block : kSeveral;
      }
    }
  }

  /// How many tiles of room a label of this block has around the point before it covers another block.
  [[nodiscard]] int room(int block, const BrantVector& projected) const
  {
    int distance = 0;
    while (distance < kEnough && is_free(block, tile(projected.x()), tile(projected.y()), distance)) {
      ++distance;
    }
    return distance;
  }

private:
  static constexpr int kSize = 20;   // pixels: the height of a label
  static constexpr int kEnough = 3;  // tiles: half the length of a label
  static constexpr int kNobody = -1; // faces may be larger than tiles, so this says nothing
  static constexpr int kSeveral = -2;

  /// Pixels far off the picture must not overflow the number of a tile.
  static int tile(double pixel) { return static_cast<int>(std::clamp(pixel / kSize, -1.0, 1e6)); }
  bool is_inside(int column, int row) const
  {
    return column >= 0 && column < mColumns && row >= 0 && row < mRows;
  }
  std::size_t index(int column, int row) const
  {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(mColumns) +
           static_cast<std::size_t>(column);
  }

  bool is_free(int block, int column, int row, int distance) const
  {
    for (int y = row - distance; y <= row + distance; ++y) {
      for (int x = column - distance; x <= column + distance; ++x) {
        const int owner = is_inside(x, y) ? mOwners[index(x, y)] : kSeveral;
        if (owner != block && owner != kNobody) {
          return false;
        }
      }
    }
    return true;
  }

  int mColumns;
  int mRows;
  std::vector<int> mOwners; // by tile
};

/// The candidate with most room, and of those the one nearest to the middle of what is seen.
BrantVector choose_place(int block, const std::vector<Candidate>& candidates, const Tiles& tiles)
{
  const BrantVector mean = mean_on_screen(candidates);
  const auto rank = [&](const Candidate& candidate) {
    return std::make_pair(-tiles.room(block, candidate.projected),
                          distance_on_screen(candidate.projected, mean));
  };
  return std::min_element(candidates.begin(), candidates.end(),
                          [&rank](const Candidate& a, const Candidate& b) { return rank(a) < rank(b); })
      ->world;
}

} // namespace

void set_label_style(Labels what)
{
  GModel::set_font_size_factor(what == Labels::Blocks ? 1.5 : 0.85);
  vtkTextProperty& style = *GModel::text_property();
  style.SetBold(what == Labels::Blocks);
  style.SetJustificationToCentered();
  style.SetVerticalJustificationToCentered();
  style.SetShadow(what != Labels::Blocks);
  style.SetBackgroundColor(1.0, 1.0, 1.0);
  style.SetBackgroundOpacity(what == Labels::Blocks ? 0.75 : 0.0);
}

void set_chart_label_style(double pixels, bool is_centered)
{
  GModel::set_font_size_factor(pixels / 12.0);
  vtkTextProperty& style = *GModel::text_property();
  style.BoldOff();
  style.ShadowOff();
  style.SetBackgroundOpacity(0.0);
  style.SetJustification(is_centered ? VTK_TEXT_CENTERED : VTK_TEXT_LEFT);
  style.SetVerticalJustificationToBottom();
}

void add_id_labels(MeshModel& model, Labels what)
{
  for (const MeshBlock& block : model.blocks()) {
    if (what == Labels::Points) {
      label_points(model, *block.surface);
    } else {
      label_cells(model, *block.surface);
    }
  }
}

BlockLabels::BlockLabels(MeshModel& model, std::vector<std::string> names)
    : mModel(model), mNames(std::move(names))
{}

void BlockLabels::place(GView& view)
{
  const FramePoints frame(view);
  Tiles tiles(frame);
  std::vector<std::vector<Candidate>> candidates;
  for (const MeshBlock& block : mModel.blocks()) {
    candidates.push_back(list_best_candidates(*block.surface, frame));
    tiles.mark(static_cast<int>(candidates.size()) - 1, candidates.back());
  }
  remove_all();
  for (std::size_t i = 0; i < mNames.size(); ++i) {
    const BrantVector place = choose_place(static_cast<int>(i), candidates[i], tiles);
    mKeys.push_back(mModel.add_label(mNames[i].c_str(), place, kLabelColor));
  }
}

void BlockLabels::remove_all()
{
  for (const GModel::LabelKey key : mKeys) {
    mModel.remove_label(key);
  }
  mKeys.clear();
}
