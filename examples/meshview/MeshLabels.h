// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GModel.h"

#include <string>
#include <vector>

class GView;
class MeshModel;
enum class Labels;

/// Prepares the look of labels for what they name. Only labels that are added later have it.
void set_label_style(Labels what);

/// The same for charts and drawings: plain text of this height in pixels, centred on or right of its anchor,
/// and above it.
void set_chart_label_style(double pixels, bool is_centered);

/// Labels the points or cells of the blocks' surfaces with their ids; a cell on each of its faces.
void add_id_labels(MeshModel& model, Labels what);

/// The names of the blocks, each on a visible spot of its block.
///
/// Labels hide behind geometry, and the middle of a block is inside of it. So each label goes to a face that
/// is seen, with room around it, near the middle of what is seen of the block. That depends on the camera.
class BlockLabels
{
public:
  /// names: one for each block of the model. Both live longer than this.
  BlockLabels(MeshModel& model, std::vector<std::string> names);

  /// Puts the labels where they are seen in the view's last frame; they show in the next one. A block of
  /// which nothing is seen has its label on one of its faces, hidden like it.
  void place(GView& view);

private:
  void remove_all();

  MeshModel& mModel;
  std::vector<std::string> mNames;
  std::vector<GModel::LabelKey> mKeys;
};
