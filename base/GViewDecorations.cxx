// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// What a view shows besides the models: members of GView.
#include "GView.h"

// A view has no triad yet.
bool GView::get_triad_vis() const
{
  return false;
}
