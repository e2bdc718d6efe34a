// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class vtkRenderWindow;

namespace morrow {

/// Renders the window. When an exception of host code (an observer, a prop of a renderer that is not ours)
/// leaves VTK's render, it passes through, but the window can render again and no depth of the broken frame
/// is kept.
void render_guarded(vtkRenderWindow& window);

} // namespace morrow
