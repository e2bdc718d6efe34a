// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class GView;
struct Options;

/// Gives the view, which is registered, a second light, and all lights the intensities of the options.
void light_mesh(GView& view, const Options& options);

/// Makes the lights of a view that light_mesh() has lit brighter by this, of intensities from 0 to 1, or
/// darker.
void change_light(GView& view, float by);
