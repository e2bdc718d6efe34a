// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

namespace morrow_test {

/// Numbers for the comparisons of pick geometry: a sequence that depends on its seed only.
class PickInputs
{
public:
  /// What the numbers of one comparison are made of.
  enum Kind
  {
    Plain,   ///< in [-10, 10]
    Lattice, ///< integers from 0 to 3: exact ties, collinear and equal points
    Halves,  ///< multiples of 0.5 from -2 to 2, some of them a rounding error away
    Scales,  ///< anything from 1e-160 to 1e160, both signs
    Hostile, ///< a lattice in which one number of six is NaN, infinite, the largest, the smallest, or -0
    NumberOfKinds
  };

  explicit PickInputs(std::uint64_t seed) : mState(seed) {}

  [[nodiscard]] std::uint32_t next()
  {
    mState = mState * 6364136223846793005u + 1442695040888963407u;
    return static_cast<std::uint32_t>(mState >> 33);
  }
  [[nodiscard]] std::uint32_t below(std::uint32_t end) { return next() % end; }
  /// In [0, 1).
  [[nodiscard]] double fraction() { return static_cast<double>(next()) / 2147483648.0; }
  [[nodiscard]] double between(double low, double high) { return low + (high - low) * fraction(); }

  [[nodiscard]] double number(Kind kind)
  {
    switch (kind) {
    case Lattice:
      return below(4);
    case Halves:
      return (0.5 * below(9) - 2.0) * (below(4) == 0 ? 1.0 + 0x1p-52 : 1.0);
    case Scales:
      return scale() * between(-1.0, 1.0);
    case Hostile:
      return below(6) == 0 ? oddity() : below(4);
    default:
      return between(-10.0, 10.0);
    }
  }

  void fill(Kind kind, double* numbers, std::size_t count)
  {
    for (std::size_t i = 0; i < count; ++i) {
      numbers[i] = number(kind);
    }
  }

private:
  double scale()
  {
    double power = 1.0;
    const std::uint32_t steps = below(6);
    for (std::uint32_t i = 0; i < steps; ++i) {
      power *= below(2) == 0 ? 1e-32 : 1e32;
    }
    return power;
  }
  double oddity()
  {
    using Limits = std::numeric_limits<double>;
    const double odd[] = {Limits::quiet_NaN(),
                          Limits::infinity(),
                          -Limits::infinity(),
                          Limits::max(),
                          Limits::min(),
                          Limits::denorm_min(),
                          -0.0,
                          1e-9};
    return odd[below(8)];
  }

  std::uint64_t mState;
};

} // namespace morrow_test
