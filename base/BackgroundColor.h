// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace morrow {

/// A colour of the host's table as VTK takes it: 3 doubles from 0 to 1 are written. Black for an id that the
/// table does not have.
void look_up_color(int id, double* rgb);

/// The id of a colour for text on a background of these two colour ids: black (0) when the mean of their six
/// channels is above 0.6, otherwise white (9).
int label_color_id(int background, int background2);

/// Whether these are 3 numbers; false for null.
bool is_color(const double* rgb);

} // namespace morrow
