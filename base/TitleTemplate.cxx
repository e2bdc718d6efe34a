// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "TitleTemplate.h"

namespace morrow {

std::string expand_title(const std::string& title_template, int id)
{
  std::string title = title_template;
  const std::size_t place = title.find("##");
  if (place != std::string::npos) {
    title.replace(place, 2, "(" + std::to_string(id) + ")");
  }
  return title;
}

} // namespace morrow
