// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "MeshEntity.h"

#include <BrantColor.h>
#include <GModel.h>
#include <GPicked.h>

#include <functional>
#include <vector>

class PickTargets;
class vtkPolyData;

/// Shows entities in one colour on top of the mesh: a model of its own, brought up to date before each frame.
class HighlightModel : public GModel
{
public:
  using TargetsOf = std::function<const PickTargets&(EntityKind)>;

  HighlightModel(BrantColor color, TargetsOf targets_of);

  /// Highlights these entities and no others, from the next frame on.
  void show(std::vector<MeshEntity::Which> entities);

  void update_parts() override;

private:
  void add_highlight(vtkPolyData* data, bool has_edges);

  BrantColor mColor;
  TargetsOf mTargetsOf;
  std::vector<MeshEntity::Which> mEntities;
  bool mIsChanged = false;
};

/// Highlights what is picked and what is pre-selected: hears of both as long as it lives.
class PickHighlight : public GPicked::PickCallbackNow
{
public:
  explicit PickHighlight(const HighlightModel::TargetsOf& targets_of);
  ~PickHighlight() override;
  PickHighlight(const PickHighlight&) = delete;
  PickHighlight& operator=(const PickHighlight&) = delete;

  void picked_list_changed(int count, const GPicked::PickedEntity* const* entities,
                           const float* const* points, bool added) override;
  void pre_selection_changed(GPicked::PickedEntity* entity, const float* point, bool on) override;

  [[nodiscard]] HighlightModel& picked() noexcept { return mPicked; }
  [[nodiscard]] HighlightModel& pre_selected() noexcept { return mPreSelected; }

private:
  HighlightModel mPicked;
  HighlightModel mPreSelected;
};
