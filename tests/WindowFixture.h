// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ViewFixture.h"

#include <vtkRendererCollection.h>

/// What the tests of views and their windows share.
namespace morrow_test {

using WindowPointer = vtkSmartPointer<vtkRenderWindow>;

inline WindowPointer new_window()
{
  return WindowPointer::New();
}

inline int num_renderers(vtkRenderWindow* window)
{
  return window->GetRenderers()->GetNumberOfItems();
}

inline std::pair<int, int> size_of(const GView& view)
{
  int width = -1;
  int height = -1;
  view.get_size(width, height);
  return {width, height};
}

/// A stage with the picture that any window of 100 × 100 pixels must show of it.
struct PicturedStage : FullViewStage
{
  Image expected;

  PicturedStage()
  {
    GView::set_preferred_window_size(100, 100);
    expected = picture(*view);
  }
};

} // namespace morrow_test
