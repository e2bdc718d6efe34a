// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

/// Why nothing can be drawn on the X display; empty when it can. Without a display VTK would end the process
/// at the first frame, so a host asks before.
[[nodiscard]] std::string display_problem();

class vtkRenderWindow;

/// Are there events that the window's interactor has not yet seen?
[[nodiscard]] bool has_events(vtkRenderWindow& window);
