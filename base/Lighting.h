// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class vtkRenderer;

/// The host names intensities from 0 to 1; VTK gets 0.5 to 2.
namespace morrow {

/// value × 1.5 + 0.5, and back.
float light_for_renderer(float value);
float light_for_host(float stored);

/// Whether the three are intensities that a host may ask for: from 0 to 1, and numbers.
bool are_intensities(float r, float g, float b);

/// The mean of 3 components.
double mean_intensity(const float* rgb);

/// Gives every light of the renderer a colour (3 doubles) and an intensity.
void set_lights(vtkRenderer& renderer, const double* rgb, double intensity);

} // namespace morrow
