// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

namespace morrow {

/// The window title made from a template: the first "#" that is directly followed by another "#" is replaced,
/// both characters, by the id in parentheses ("Brant ##" and 4 give "Brant (4)"). Everything else stays.
std::string expand_title(const std::string& title_template, int id);

} // namespace morrow
