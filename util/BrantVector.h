// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <cassert>
#include <cmath>
#include <type_traits>

/// A point or a direction in three dimensions: three doubles x, y, z, in whatever unit and frame its owner
/// says.
///
/// A plain value without padding: an array of n vectors is an array of 3 × n doubles, x y z x y z …, and
/// `data()` may be handed to code that takes `const double[3]`. All arithmetic is that of double: nothing is
/// checked, an overflow or a division by zero gives infinities or NaN by the IEEE rules, and never a trap.
class BrantVector
{
public:
  /// The zero vector.
  constexpr BrantVector() noexcept = default;

  constexpr BrantVector(double x, double y, double z) noexcept : mData{x, y, z} {}

  /// Copies 3 doubles, x y z, from `xyz`, which is not kept. Null gives the zero vector.
  explicit constexpr BrantVector(const double* xyz) noexcept
      : mData{xyz ? xyz[0] : 0.0, xyz ? xyz[1] : 0.0, xyz ? xyz[2] : 0.0}
  {}

  [[nodiscard]] constexpr double x() const noexcept { return mData[0]; }
  [[nodiscard]] constexpr double y() const noexcept { return mData[1]; }
  [[nodiscard]] constexpr double z() const noexcept { return mData[2]; }

  /// Component `axis`: 0 is x, 1 is y, 2 is z. Another index is a programming error, as for a plain array: it
  /// is undefined, and a build with assertions stops on it.
  [[nodiscard]] constexpr double operator[](int axis) const noexcept
  {
    assert(axis >= 0 && axis < 3);
    return mData[axis];
  }
  /// The same component, to be written.
  [[nodiscard]] constexpr double& operator[](int axis) noexcept
  {
    assert(axis >= 0 && axis < 3);
    return mData[axis];
  }

  /// The 3 doubles x y z in place; valid as long as this vector lives.
  [[nodiscard]] constexpr const double* data() const noexcept { return mData; }

  constexpr BrantVector& operator+=(const BrantVector& other) noexcept
  {
    return *this = {x() + other.x(), y() + other.y(), z() + other.z()};
  }
  constexpr BrantVector& operator-=(const BrantVector& other) noexcept
  {
    return *this = {x() - other.x(), y() - other.y(), z() - other.z()};
  }
  constexpr BrantVector& operator*=(double factor) noexcept
  {
    return *this = {x() * factor, y() * factor, z() * factor};
  }
  /// Divides each component; a divisor of 0 gives infinities, or NaN where the component is 0.
  constexpr BrantVector& operator/=(double divisor) noexcept
  {
    return *this = {x() / divisor, y() / divisor, z() / divisor};
  }

  [[nodiscard]] constexpr BrantVector operator-() const noexcept { return {-x(), -y(), -z()}; }

  [[nodiscard]] friend constexpr BrantVector operator+(BrantVector a, const BrantVector& b) noexcept
  {
    return a += b;
  }
  [[nodiscard]] friend constexpr BrantVector operator-(BrantVector a, const BrantVector& b) noexcept
  {
    return a -= b;
  }
  [[nodiscard]] friend constexpr BrantVector operator*(BrantVector a, double factor) noexcept
  {
    return a *= factor;
  }
  [[nodiscard]] friend constexpr BrantVector operator*(double factor, BrantVector a) noexcept
  {
    return a *= factor;
  }
  [[nodiscard]] friend constexpr BrantVector operator/(BrantVector a, double divisor) noexcept
  {
    return a /= divisor;
  }

  /// Exact comparison of the three components, without a tolerance: 0 equals -0, and NaN equals nothing, so a
  /// vector that holds a NaN differs from itself.
  [[nodiscard]] friend constexpr bool operator==(const BrantVector& a, const BrantVector& b) noexcept
  {
    return a.x() == b.x() && a.y() == b.y() && a.z() == b.z();
  }
  [[nodiscard]] friend constexpr bool operator!=(const BrantVector& a, const BrantVector& b) noexcept
  {
    return !(a == b);
  }

  /// The scalar product.
  [[nodiscard]] constexpr double dot(const BrantVector& other) const noexcept
  {
    return x() * other.x() + y() * other.y() + z() * other.z();
  }

  /// The vector product `this` × `other`, right-handed: x × y is z.
  [[nodiscard]] constexpr BrantVector cross(const BrantVector& other) const noexcept
  {
    return {y() * other.z() - z() * other.y(), z() * other.x() - x() * other.z(),
            x() * other.y() - y() * other.x()};
  }

  [[nodiscard]] constexpr double length_squared() const noexcept { return dot(*this); }

  /// The Euclidean length, the root of `length_squared()`: exact where the root is (3, 4, 0 gives 5),
  /// infinite for components above 1e154, 0 for components below 1e-162.
  [[nodiscard]] double length() const noexcept { return std::sqrt(length_squared()); }

  /// The vector of length 1 in the same direction, for every finite length, however large or small. A vector
  /// without a direction, that is the zero vector or one with a component that is not finite, gives the zero
  /// vector; the answer never holds a NaN.
  [[nodiscard]] BrantVector normalized() const noexcept
  {
    const double largest = std::max({std::abs(x()), std::abs(y()), std::abs(z())});
    if (!is_finite() || largest == 0.0) {
      return {};
    }
    // Brought to the size of 1 first, so that the squares neither overflow nor vanish.
    const BrantVector scaled = *this / largest;
    return scaled / scaled.length();
  }

  /// The true distance (not squared) between this point and `other`.
  [[nodiscard]] double distance_between(const BrantVector& other) const noexcept
  {
    return (*this - other).length();
  }

  /// True when no component is infinite or NaN.
  [[nodiscard]] bool is_finite() const noexcept
  {
    return std::isfinite(x()) && std::isfinite(y()) && std::isfinite(z());
  }

private:
  double mData[3] = {0.0, 0.0, 0.0};
};

static_assert(sizeof(BrantVector) == 24, "arrays of vectors are read as arrays of doubles");
static_assert(std::is_standard_layout_v<BrantVector> && std::is_trivially_copyable_v<BrantVector>);
