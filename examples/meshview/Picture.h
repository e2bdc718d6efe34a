// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

class vtkRenderWindow;

/// Why no picture can be written to this path; empty when one can, as far as that can be told beforehand.
[[nodiscard]] std::string picture_problem(const std::string& path);

/// Writes what the window shows as a PNG file. The answer is why that failed; empty when it did not. A file
/// that could not be written to its end is removed.
[[nodiscard]] std::string write_picture(vtkRenderWindow& window, const std::string& path);
