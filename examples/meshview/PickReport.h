// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

class MeshModel;
struct PickOptions;

/// What is picked as JSON: the candidates of a click, or what a region has found, in the order in which they
/// are offered. The last character is a line end.
[[nodiscard]] std::string pick_report(const PickOptions& options, const MeshModel& model);

/// Writes it to the file that the options name. The answer is why that failed; empty when it did not.
[[nodiscard]] std::string write_pick_report(const PickOptions& options, const MeshModel& model);
