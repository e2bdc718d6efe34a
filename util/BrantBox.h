// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantVector.h"
#include "brant_util_export.h"

/// An axis-aligned box, closed on all sides: its faces, edges and corners belong to it. It may be flat, or a
/// single point, along any axis; the empty box holds nothing at all, not even a point.
///
/// Points with a NaN coordinate lie nowhere and are ignored by everything that builds or grows a box, so the
/// corners of a box never hold a NaN. Infinite coordinates are taken as they are.
class BRANT_UTIL_EXPORT BrantBox
{
public:
  /// The empty box.
  constexpr BrantBox() noexcept = default;

  /// As `reset(minimum, maximum)`.
  BrantBox(const BrantVector& minimum, const BrantVector& maximum) noexcept;

  /// Makes the box empty.
  void reset() noexcept;

  /// Makes the box that single point; a NaN makes it empty.
  void reset(const BrantVector& point) noexcept;

  /// Makes the box the smallest one that holds both corners. They may be any two opposite corners: where the
  /// minimum exceeds the maximum along an axis, the two change places. A corner with a NaN is ignored.
  void reset(const BrantVector& minimum, const BrantVector& maximum) noexcept;

  /// Grows the box until it holds the other one as well. An empty box adds nothing.
  BrantBox& operator|=(const BrantBox& other) noexcept;

  /// Grows the box until it holds the point as well. A point with a NaN adds nothing.
  BrantBox& operator|=(const BrantVector& point) noexcept;

  [[nodiscard]] constexpr bool is_empty() const noexcept { return mMinimum.x() > mMaximum.x(); }

  /// True when the boxes come within `tolerance` (world or pixel, the unit of the boxes) of each other along
  /// every axis. With 0, touching counts; below 0, they must overlap by more than a touch. False when either
  /// box is empty, whatever the tolerance, and for a tolerance that is NaN. Symmetric.
  [[nodiscard]] constexpr bool overlap(double tolerance, const BrantBox& other) const noexcept
  {
    return !is_empty() && !other.is_empty() && reaches(tolerance, other) && other.reaches(tolerance, *this);
  }

  /// The point of the box nearest to `point`, which is `point` itself when the box holds it. A NaN coordinate
  /// stays NaN. The empty box has no nearest point: the answer then lies infinitely far away, (∞, ∞, ∞), so
  /// that its distance from a finite point exceeds every radius.
  [[nodiscard]] BrantVector closest_point(const BrantVector& point) const noexcept;

  /// The corner with the smallest coordinates; (1, 1, 1) when the box is empty.
  [[nodiscard]] constexpr const BrantVector& minimum() const noexcept { return mMinimum; }

  /// The corner with the largest coordinates; (-1, -1, -1) when the box is empty. An empty box thus hands out
  /// inverted, but finite, corners: the way VTK marks bounds without a content.
  [[nodiscard]] constexpr const BrantVector& maximum() const noexcept { return mMaximum; }

private:
  constexpr bool reaches(double tolerance, const BrantBox& other) const noexcept
  {
    return mMinimum.x() - tolerance <= other.mMaximum.x() && mMinimum.y() - tolerance <= other.mMaximum.y() &&
           mMinimum.z() - tolerance <= other.mMaximum.z();
  }

  // Inverted along x in the empty box only.
  BrantVector mMinimum{1.0, 1.0, 1.0};
  BrantVector mMaximum{-1.0, -1.0, -1.0};
};
