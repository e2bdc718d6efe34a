// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "BrantColorTable.h"

#include "BrantString.h"

#include <iterator>
#include <vector>

namespace {

struct FixedColor
{
  const char* mName;
  BrantColor mColor;
};

constexpr FixedColor gFixedColors[] = {
    {"black", BRANT_BLACK},         {"grey", BRANT_GREY},
    {"orange", BRANT_ORANGE},       {"red", BRANT_RED},
    {"green", BRANT_GREEN},         {"yellow", BRANT_YELLOW},
    {"magenta", BRANT_MAGENTA},     {"cyan", BRANT_CYAN},
    {"blue", BRANT_BLUE},           {"white", BRANT_WHITE},
    {"brown", BRANT_BROWN},         {"gold", BRANT_GOLD},
    {"lightblue", BRANT_LIGHTBLUE}, {"lightgreen", BRANT_LIGHTGREEN},
    {"salmon", BRANT_SALMON},       {"coral", BRANT_CORAL},
    {"pink", BRANT_PINK},
};
constexpr int gFixedCount = static_cast<int>(std::size(gFixedColors));

struct VariableColor
{
  BrantString mName;
  BrantColor mColor;
};

std::vector<VariableColor>& variable_colors()
{
  // Never destroyed, so that static objects of the host may still look colours up in their destructors.
  static auto& colors = *new std::vector<VariableColor>;
  return colors;
}

const FixedColor* find_fixed(int id)
{
  return id >= 0 && id < gFixedCount ? &gFixedColors[id] : nullptr;
}

VariableColor* find_variable(int id)
{
  auto& colors = variable_colors();
  const int count = BrantColorTable::num_variable_colors();
  return id >= gFixedCount && id - gFixedCount < count ? colors.data() + (id - gFixedCount) : nullptr;
}

const BrantColor* find_color(int id)
{
  if (const FixedColor* fixed = find_fixed(id)) {
    return &fixed->mColor;
  }
  const VariableColor* variable = find_variable(id);
  return variable ? &variable->mColor : nullptr;
}

} // namespace

BrantColor BrantColorTable::lookup_color(int id)
{
  const BrantColor* color = find_color(id);
  return color ? *color : BRANT_DEFAULT_COLOR;
}

bool BrantColorTable::color_id_to_rgb(int id, double* rgb)
{
  const BrantColor* color = find_color(id);
  if (!color || !rgb) {
    return false;
  }
  rgb[0] = color->red() / 255.0;
  rgb[1] = color->green() / 255.0;
  rgb[2] = color->blue() / 255.0;
  return true;
}

bool BrantColorTable::color_id_to_string(int id, BrantString& name)
{
  if (const FixedColor* fixed = find_fixed(id)) {
    name = fixed->mName;
    return true;
  }
  const VariableColor* variable = find_variable(id);
  if (!variable || variable->mName.empty()) {
    return false;
  }
  name = variable->mName;
  return true;
}

int BrantColorTable::num_fixed_colors() noexcept
{
  return gFixedCount;
}

int BrantColorTable::num_variable_colors()
{
  return static_cast<int>(variable_colors().size());
}

int BrantColorTable::add_color(const char* name, BrantColor color)
{
  const int id = gFixedCount + num_variable_colors();
  variable_colors().push_back({name, color});
  return id;
}

bool BrantColorTable::set_color(int id, BrantColor color)
{
  VariableColor* variable = find_variable(id);
  if (!variable) {
    return false;
  }
  variable->mColor = color;
  return true;
}

void BrantColorTable::clear_variable_colors()
{
  variable_colors().clear();
}
