// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ScaleLabels.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace morrow {

namespace {

constexpr double Tolerance = 0.005;    // of the distance between two numbers
constexpr double Noise = 1e-4;         // of the same: more than sums of numbers that were floats are off
constexpr double LeastFixed = 9.99e-5; // fixed point from 0.0001, perhaps rounded, ...
constexpr double MostFixed = 1e7;      // ... to here, for the largest number,
constexpr double LongMantissa = 1e-6;  // and where exponents would make numbers longer: distance to number
constexpr int MostDigits = 17;         // that a double has
constexpr int MostDecimals = 21;       // MostDigits behind the zeros of LeastFixed
constexpr int SnapBits = 40;           // of 53; the others are room for a small factor
constexpr const char* Fallback = "%.6g";

double distance_of(double first, double last, int count)
{
  return (last - first) / (count - 1);
}

double largest_of(double first, double last)
{
  return std::max(std::abs(first), std::abs(last));
}

/// A printf format: so many decimals, or so many digits.
struct Format
{
  bool is_fixed;
  int digits;

  [[nodiscard]] std::string text() const { return "%." + std::to_string(digits) + (is_fixed ? "f" : "g"); }
};

bool prints_well(Format format, double value, double tolerance)
{
  char text[512];
  std::snprintf(text, sizeof text, format.is_fixed ? "%.*f" : "%.*g", format.digits, value);
  const double read = std::strtod(text, nullptr);
  return std::abs(read - value) <= tolerance && !(read == 0.0 && text[0] == '-');
}

bool prints_all_well(Format format, double first, double distance, int count)
{
  for (int i = 0; i < count; ++i) {
    if (!prints_well(format, first + i * distance, Tolerance * std::abs(distance))) {
      return false;
    }
  }
  return true;
}

// A double with only the first bits of value.
double rounded(double value)
{
  int exponent = 0;
  const double mantissa = std::frexp(value, &exponent);
  return std::ldexp(std::round(std::ldexp(mantissa, SnapBits)), exponent - SnapBits);
}

} // namespace

bool is_scale(double first, double last, int count)
{
  if (count < 2 || !std::isfinite(last - first)) {
    return false;
  }
  const double distance = std::abs(distance_of(first, last, count));
  const double largest = largest_of(first, last);
  const double next = std::nextafter(largest, HUGE_VAL) - largest;
  return distance >= std::max(8.0 * next, 1e-300); // each number is off by less than a unit or two
}

std::string scale_format(double first, double last, int count)
{
  if (!is_scale(first, last, count)) {
    return Fallback;
  }
  const double distance = distance_of(first, last, count);
  const double largest = largest_of(first, last);
  const bool is_fixed =
      largest >= LeastFixed && (largest < MostFixed || std::abs(distance) < LongMantissa * largest);
  const int most = is_fixed ? MostDecimals : MostDigits;
  for (Format format{is_fixed, is_fixed ? 0 : 1}; format.digits <= most; ++format.digits) {
    if (prints_all_well(format, first, distance, count)) {
      return format.text();
    }
  }
  return Fallback;
}

void let_scale_meet_zero(double& first, double& last, int count)
{
  if (!is_scale(first, last, count)) {
    return;
  }
  const double distance = distance_of(first, last, count);
  const double index = std::round(-first / distance); // of the number that is zero, or nearest to it
  const double zero = first + index * distance;
  const bool is_nearly_zero = zero != 0.0 && std::abs(zero) <= Noise * std::abs(distance);
  if (is_nearly_zero && index >= 0.0 && index < count) {
    const double exact = rounded(distance);
    first = index == 0.0 ? 0.0 : -index * exact;
    last = (count - 1 - index) * exact;
  }
}

} // namespace morrow
