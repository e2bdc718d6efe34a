// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkSmartPointer.h>

class vtkTexture;

namespace morrow {

/// A copy of the texture in the form that every exporter can write: a flat picture of 1 to 4 bytes per pixel.
/// Other scalars are mapped to colours. Null when the texture has no such picture: no input, none or too few
/// pixels, a volume. The original is brought up to date and else not changed.
[[nodiscard]] vtkSmartPointer<vtkTexture> copy_texture_for_export(vtkTexture& texture);

} // namespace morrow
