// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshEntity.h"

const char* name_of(EntityKind kind)
{
  static constexpr const char* kNames[] = {"block", "face", "edge", "element", "node"};
  return kNames[static_cast<int>(kind)];
}
