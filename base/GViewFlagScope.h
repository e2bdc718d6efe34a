// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <memory>

#include "GView.h"

/// Holds one of a view's flags up; the view may be gone when it ends.
class GView::FlagScope
{
public:
  FlagScope(GView& view, bool GView::*flag) : mView(view.mHandle), mFlag(flag) { view.*flag = true; }
  ~FlagScope()
  {
    if (*mView != nullptr) {
      (*mView)->*mFlag = false;
    }
  }
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;

  [[nodiscard]] bool view_is_alive() const { return *mView != nullptr; }

private:
  std::shared_ptr<GView*> mView;
  bool GView::*mFlag;
};
