// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class Viewer;

/// Opens the viewer's window and returns when the user closes it. Keys do what the table of Keys.cxx says.
void run_window(Viewer& viewer);
