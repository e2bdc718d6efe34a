// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class GView;
struct Options;

/// Gives the view, which is registered, a second light, and all lights the intensities of the options.
void light_mesh(GView& view, const Options& options);
