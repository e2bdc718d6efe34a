// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ColorScale.h"
#include "GModel.h"
#include "Mesh.h"

#include <BrantColor.h>

/// The model of a mesh viewer: each block is a part, shown as a shaded surface with its mesh edges.
class MeshModel : public GModel
{
public:
  /// edges: are mesh edges drawn? scale colours the parts that have its array.
  MeshModel(bool edges, const ColorScale& scale);

  /// Adds the block as a part. Each one gets the next colour of a palette.
  void add_block(const MeshBlock& block);

  [[nodiscard]] const std::vector<MeshBlock>& blocks() const noexcept { return mBlocks; }

  /// Meshes are read once and do not change: there is nothing to bring up to date.
  void update_parts() override {}

private:
  bool mEdges;
  ColorScale mScale;
  std::vector<MeshBlock> mBlocks;
};
