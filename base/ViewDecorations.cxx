// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ViewDecorations.h"

#include "BackgroundColor.h"
#include "BrantColorTable.h"

#include <vtkRenderer.h>

namespace morrow {

ViewDecorations::ViewDecorations(vtkRenderer& main_renderer)
    : renderer(&main_renderer), title(main_renderer), axes(main_renderer), cube_axes(main_renderer),
      legend(main_renderer), scalar_bar(main_renderer)
{}

void ViewDecorations::take_down()
{
  scalar_bar.set_widget(nullptr);
  axes.set_triad_visible(false);
  axes.set_axis_visible(false);
  legend.set_visible(false);
  cube_axes.set_visible(false);
  axes.delete_triad();
}

void ViewDecorations::follow_background(int background, int background2)
{
  const int at_bottom = label_color_id(background, background);
  double rgb[3];
  look_up_color(label_color_id(background2, background2), rgb);
  title.follow_background(rgb);
  look_up_color(label_color_id(background, background2), rgb);
  cube_axes.set_color(rgb);
  look_up_color(at_bottom, rgb);
  legend.set_color(rgb);
  axes.follow_background(BrantColorTable::lookup_color(at_bottom));
}

} // namespace morrow
