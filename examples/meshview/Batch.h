// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class Viewer;

/// Draws without a window and writes all files that the viewer's options ask for; tells the user of those
/// that could not be written. The answer is the exit status. Ctrl-C ends it between two files, with a
/// message.
[[nodiscard]] int write_outputs(Viewer& viewer);
