// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ColorScale.h"
#include "GHistogram.h"
#include "GModelSet.h"
#include "Mesh.h"

#include <memory>
#include <vector>

class GView;

/// The number of elements of each quality as a histogram in the colours of the mesh: a second view, which
/// shares the mesh view's window.
class QualityPanel
{
public:
  /// Gives the mesh view one part of its window and takes the other one: the right one of a wide window, the
  /// lower one of a high window. The labels' style is changed.
  QualityPanel(GView& mesh_view, const std::vector<MeshFile>& files, const ColorScale& scale);
  ~QualityPanel();
  QualityPanel(const QualityPanel&) = delete;
  QualityPanel& operator=(const QualityPanel&) = delete;

private:
  void split_window(GView& mesh_view);
  void look_at_chart(double width);

  std::shared_ptr<GView> mView;
  GModelSet mModels;
  GHistogram mHistogram;
};
