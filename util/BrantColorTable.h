// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantColor.h"
#include "brant_util_export.h"

class BrantString;

/// The colour table of the process: colours by small integer ids.
///
/// The ids 0 to 16 are the fixed colours, the named constants of BrantColor.h in their order: 0 is black, 9
/// is white, 16 is pink. The variable colours of the host follow, in the order in which they were added: 17,
/// 18, …. Every other id, -1 among them, is out of range.
///
/// For one thread, the one that draws. The table can be used while the process starts and until it ends, also
/// from the constructors and destructors of static objects.
class BRANT_UTIL_EXPORT BrantColorTable
{
public:
  BrantColorTable() = delete;

  /// The colour of the id; BRANT_DEFAULT_COLOR when the id is out of range.
  [[nodiscard]] static BrantColor lookup_color(int id);

  /// Writes the colour of the id to `rgb` (3 doubles: red, green, blue, each a fraction in [0, 1]; alpha is
  /// left out) and returns true. Returns false and writes nothing when the id is out of range or `rgb` is
  /// null.
  static bool color_id_to_rgb(int id, double* rgb);

  /// Stores the name of the colour in `name` and returns true. The fixed colours have the names of their
  /// constants in lower case and without the prefix: "black", "grey", …, "lightblue", …. Returns false and
  /// leaves `name` alone when the id is out of range, or is that of a variable colour without a name.
  static bool color_id_to_string(int id, BrantString& name);

  /// The number of fixed colours, 17, which is also the id of the first variable colour.
  [[nodiscard]] static int num_fixed_colors() noexcept;

  /// The number of variable colours, 0 at the start.
  [[nodiscard]] static int num_variable_colors();

  /// Adds a variable colour and returns its id, the smallest unused one. The name is copied; null stands for
  /// no name. Names are for people to read, not keys: two colours may share one.
  static int add_color(const char* name, BrantColor color);

  /// Changes a variable colour, keeping its name, and returns true. A fixed colour never changes: for its id,
  /// and for one out of range, nothing happens and the answer is false.
  static bool set_color(int id, BrantColor color);

  /// Removes all variable colours; their ids are out of range until they are handed out again, from 17 on.
  static void clear_variable_colors();
};
