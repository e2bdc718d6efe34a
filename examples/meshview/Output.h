// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Options.h"

/// A file that cannot be written.
struct OutputProblem
{
  std::string path;
  std::string reason;
};

/// What keeps one of the files that the options ask for from being written, as far as that can be told
/// beforehand.
[[nodiscard]] std::optional<OutputProblem> output_problem(const Options& options);

/// Renders the view and writes it. The answer is why that failed; empty when it did not. A file that could
/// not be written to its end is removed.
[[nodiscard]] std::string write_output(GView& view, const Output& output);

/// The file of one picture of a turn: "OUT_0001.png" for 1.
[[nodiscard]] Output numbered(const Output& output, int number);

/// A new file in the current folder: for the name "NAME.png" it is "NAME_0001.png", or has the first number
/// that is free; nothing when all are taken. The name ends in a known extension.
[[nodiscard]] std::optional<Output> new_output(const std::string& name);
