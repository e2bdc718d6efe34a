// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <GPicked.h>

#include <cstddef>
#include <string>

/// What can be picked in a mesh: the pick types.
enum class EntityKind
{
  Block,
  Face, ///< see MeshFaces
  Edge, ///< likewise
  Element,
  Node
};

inline constexpr EntityKind kEntityKinds[] = {EntityKind::Block, EntityKind::Face, EntityKind::Edge,
                                              EntityKind::Element, EntityKind::Node};

/// "block", "face", "edge", "element" or "node". Lives as long as the program, as names of pick types must.
[[nodiscard]] const char* name_of(EntityKind kind);

/// One of them, as a pick has found it: what a host of the library writes for its own entities.
class MeshEntity : public GPicked::PickedEntity
{
public:
  /// Which entity it is. Ids count from 0; that of a block is its own number.
  struct Which
  {
    EntityKind kind;
    std::size_t block;
    long long id;
  };
  /// How a pick has found it.
  struct Hit
  {
    bool is_direct; ///< near the middle of what a click reaches
    bool is_visible;
  };

  /// name: for people; empty when type and id say it all.
  MeshEntity(const Which& which, const std::string& name, const Hit& hit)
      : mWhich(which), mName(name), mHit(hit)
  {}

  [[nodiscard]] const Which& which() const noexcept { return mWhich; }
  [[nodiscard]] const Hit& hit() const noexcept { return mHit; }

  [[nodiscard]] void* host_object() const override { return nullptr; }
  [[nodiscard]] const char* type_name() const override { return name_of(mWhich.kind); }
  [[nodiscard]] int id() const override { return static_cast<int>(mWhich.id); }
  [[nodiscard]] int element() const override { return mWhich.kind == EntityKind::Element ? id() : -1; }
  [[nodiscard]] const char* name() const override { return mName.c_str(); }

  /// By kind, block and id. There are fewer than 2^20 blocks, and 2^40 ids in each.
  [[nodiscard]] long long key() const override
  {
    return static_cast<long long>(mWhich.kind) << 60 | static_cast<long long>(mWhich.block) << 40 | mWhich.id;
  }

private:
  Which mWhich;
  std::string mName;
  Hit mHit;
};
