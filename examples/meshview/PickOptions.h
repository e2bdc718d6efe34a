// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "MeshEntity.h"
#include "PickRegion.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

/// What the command line says of picking.
struct PickOptions
{
  std::optional<PickRegion> region;
  EntityKind kind = EntityKind::Face;
  bool visible_only = false;
  bool partial = false; ///< a region takes what it touches
  std::string report;   ///< path of the file; empty for none
};

/// Declares the options; their values go to options.
void describe_picking(CLI::App& app, PickOptions& options);

/// Throws CLI::ValidationError for options that do not go together.
void check_picking(const PickOptions& options);
