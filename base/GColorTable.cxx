// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GColorTable.h"

#include "BrantColorTable.h"
#include "BrantString.h"
#include "BrantVector.h"
#include "ChartNumbers.h"
#include "MRUtil.h"

namespace {

constexpr int Columns = 10;

/// The lower left corner of the square of an id.
BrantVector square_of(int id)
{
  const int row = id / Columns;
  return BrantVector(id % Columns / 10.0, (9 - row) / 10.0, 0.0);
}

BrantString name_of(int id)
{
  BrantString name;
  return BrantColorTable::color_id_to_string(id, name) ? name : BrantString("UNDEFINED");
}

} // namespace

GColorTable::GColorTable() = default;

GColorTable::~GColorTable() = default;

void GColorTable::initialize()
{
  const int count =
      morrow::sum_of_counts(BrantColorTable::num_fixed_colors(), BrantColorTable::num_variable_colors());
  for (int id = 0; id < count; ++id) {
    this->add_swatch(id);
  }
  this->update_parts();
}

void GColorTable::add_swatch(int id)
{
  const BrantVector square = square_of(id);
  const double x = square.x();
  const double y = square.y();
  const BrantVector corners[4] = {{x + 0.02, y + 0.02, 0.0},
                                  {x + 0.08, y + 0.02, 0.0},
                                  {x + 0.08, y + 0.08, 0.0},
                                  {x + 0.02, y + 0.08, 0.0}};
  this->add_quad(corners, BrantColorTable::lookup_color(id), MRUtil::DRAW_FILLED);
  this->add_quad(corners, BRANT_BLACK, MRUtil::DRAW_OUTLINE);
  this->add_label(BrantString::format("%i", id).c_str(), BrantVector(x + 0.045, y + 0.005, 0.0), BRANT_BLACK);
  this->add_label(name_of(id).c_str(), BrantVector(x + 0.02, y + 0.085, 0.0), BRANT_BLACK);
}
