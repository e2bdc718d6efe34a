// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <memory>
#include <vector>

#include "morrow_base_export.h"

class GModel;
class GView;

/// Keeps a set of views and a set of models fully connected: every model of the set is shown in every view of
/// it.
///
/// The set owns neither. A view is in at most one set, the one that GView::get_model_set() names; whichever
/// side is called, link and list agree. A model may be in several sets. Views and models leave their sets by
/// themselves when they are destroyed, in any order. Null arguments do nothing.
///
/// When a prop function throws while something is added, that view or model is taken out again and the
/// exception passes on to the caller.
class MORROW_BASE_EXPORT GModelSet
{
public:
  GModelSet();
  GModelSet(const GModelSet&) = delete;
  GModelSet& operator=(const GModelSet&) = delete;

  /// Clears the link of each view to the set, then takes out views and models. They stay alive.
  virtual ~GModelSet();

  /// Calls update_parts() of each model that is hooked to its views, in the order of their addition. Views
  /// call it before they render. An exception from one model is passed on when all have been called.
  virtual void update_model_parts();

  /// Adds the view at the end of the list and shows every model in it, in list order. A view that is in
  /// another set leaves that one first. Nothing happens when it is in the list.
  void add_view(GView* view);

  /// Adds the model at the end of the list and shows it in every view, in list order. Nothing happens when it
  /// is in the list.
  void add_model(GModel* model);

  /// Takes every model out of the view, then the view out of the list. Nothing happens when it is absent.
  void remove_view(GView* view);

  /// Takes the model out of every view, then out of the list. Nothing happens when it is absent.
  void remove_model(GModel* model);

  /// The models and the views, in the order of their addition.
  [[nodiscard]] const std::vector<GModel*>& models() const { return mModels; }
  [[nodiscard]] const std::vector<GView*>& views() const { return mViews; }

  /// Renders each view once, in list order; nothing while the graphics status is disabled or suspended. An
  /// exception from one view's frame is passed on when all have rendered.
  void render();

private:
  friend class GModel;
  void forget_model(GModel* model);
  [[nodiscard]] bool has(const GView* view) const;
  [[nodiscard]] bool has(const GModel* model) const;
  void connect(GView* view);
  void connect(GModel* model);

  std::vector<GView*> mViews;
  std::vector<GModel*> mModels;
  std::shared_ptr<bool> mIsAlive; // false once destroyed: host code may destroy the set that calls it
};
