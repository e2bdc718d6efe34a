// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ColorScale.h"
#include "DrawStyle.h"
#include "GModel.h"
#include "Mesh.h"

class MeshLines;
struct PartStyle;

/// The model of a mesh viewer: each block is a part, shown as a surface and lines.
class MeshModel : public GModel
{
public:
  /// scale colours the parts that have its array. is_grouped: surfaces and features are left to MeshGroups.
  MeshModel(const DrawStyle& style, const ColorScale& scale, bool is_grouped);
  ~MeshModel() override;

  /// Adds the block as a part. Each one gets the next colour of a palette.
  void add_block(const MeshBlock& block);

  /// Draws all parts in another style, from the next frame on.
  void set_style(const DrawStyle& style);
  [[nodiscard]] const DrawStyle& style() const noexcept { return mStyle; }

  [[nodiscard]] const std::vector<MeshBlock>& blocks() const noexcept { return mBlocks; }

  /// Of the blocks, in the same order.
  [[nodiscard]] const std::vector<std::shared_ptr<MeshLines>>& lines() const noexcept { return mLines; }

  /// How a block is drawn. block: below the number of blocks.
  [[nodiscard]] PartStyle part_style(std::size_t block) const;

  /// Meshes are read once and do not change: there is nothing to bring up to date.
  void update_parts() override {}

private:
  void show(std::size_t block);

  DrawStyle mStyle;
  ColorScale mScale;
  bool mIsGrouped;
  std::vector<MeshBlock> mBlocks;
  std::vector<std::shared_ptr<MeshLines>> mLines;
};
