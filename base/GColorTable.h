// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GGenericModel.h"
#include "morrow_base_export.h"

/// A chart of BrantColorTable: one swatch per colour id with its number and its name, ten to a row, to be
/// connected to views like any other model.
///
///   GColorTable chart;
///   chart.initialize();
///   chart.add_view(&view);
///
/// It lies in the plane z = 0. Id i has the square of side 0.1 with its lower left corner at
/// (i mod 10 / 10, (9 - i / 10) / 10), i / 10 rounded down: a hundred colours fill the unit square from the
/// top left, rows of further ones go below it. The swatch, filled with the colour and outlined in black, is
/// 0.06 wide and high in the middle of its square. The number's lower left corner is 0.045 right of and 0.005
/// above the square's, the name's 0.02 right and 0.085 above; a colour without a name is "UNDEFINED". Text is
/// black, and has the size of all labels: GModel::set_font_size_factor().
class MORROW_BASE_EXPORT GColorTable : public GGenericModel
{
public:
  /// An empty chart.
  GColorTable();
  ~GColorTable() override;

  /// Adds the swatches and labels of the colours that there are now, and calls update_parts(). What is in the
  /// model stays, so that a second call adds everything once more: clear() it before. Nothing is added when
  /// the table is empty.
  void initialize();

private:
  void add_swatch(int id);
};
