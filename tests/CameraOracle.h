// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantVector.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

/// The animated camera operations frame by frame, written out plainly: what the library's own ramps and
/// geometry are compared with.
namespace morrow_test::oracle {

inline double s(double t)
{
  return (1 - std::cos(t * 3.1415926535)) / 2;
}

struct Frame
{
  double factor;
  bool full;
};

/// Of a motion to a point and of a zoom by a factor.
inline std::vector<Frame> three_phases(int steps, int smooth)
{
  std::vector<Frame> frames;
  if (smooth >= 1 && steps >= smooth) {
    for (int k = 1; k <= smooth; ++k) {
      frames.push_back({s(double(k) / (smooth + 1)), false});
    }
    for (int k = 0; k < steps - smooth; ++k) {
      frames.push_back({1.0, true});
    }
    for (int k = 1; k <= smooth; ++k) {
      frames.push_back({s(1 - double(k) / (smooth + 1)), false});
    }
  } else {
    for (int k = 0; k < steps; ++k) {
      frames.push_back({1.0, true});
    }
  }
  return frames;
}

/// Of a rotation.
inline std::vector<double> turn(int steps, int smooth)
{
  const int n = steps > 1 ? steps : 1;
  const int r = n >= smooth ? smooth : 0;
  const int T = n + r;
  std::vector<double> factors;
  for (int i = 0; i < T; ++i) {
    if (i < r) {
      factors.push_back(s((i + 1.0) / (r + 1)));
    } else if (r <= i && i <= n) {
      factors.push_back(1.0);
    } else {
      factors.push_back(s(double(T - i) / (r + 1)));
    }
  }
  return factors;
}

/// Of a pan.
inline std::vector<double> pan(int steps, int smooth)
{
  int T = steps;
  if (steps > 1 && smooth != 0) {
    smooth = smooth < steps ? smooth : steps;
    T = steps + smooth;
  } else {
    smooth = 0;
  }
  std::vector<double> factors;
  for (int i = 1; i <= T; ++i) {
    if (i <= smooth) {
      factors.push_back(s(double(i) / (smooth + 1)));
    } else if (i > T - smooth) {
      factors.push_back(s((T - i + 1.0) / (smooth + 1)));
    } else {
      factors.push_back(1.0);
    }
  }
  return factors;
}

using Box = std::array<double, 6>;

/// The box that is framed, when something of these bounds is visible.
inline Box adjusted(Box box, const Box* visible)
{
  for (double& each : box) {
    if (each >= 1e37) {
      each = 1;
    } else if (each <= -1e37) {
      each = -1;
    }
  }
  if (visible != nullptr) {
    double own = 0;
    double whole = 0;
    for (std::size_t i = 0; i < 6; i += 2) {
      own += (box[i + 1] - box[i]) * (box[i + 1] - box[i]);
      whole += ((*visible)[i + 1] - (*visible)[i]) * ((*visible)[i + 1] - (*visible)[i]);
    }
    const double r = own / whole;
    const double t = r / 0.0001;
    for (std::size_t i = 0; i < 6; i += 2) {
      const double extent = box[i + 1] - box[i];
      const double visible_extent = (*visible)[i + 1] - (*visible)[i];
      const double middle = (box[i] + box[i + 1]) / 2;
      if (r < 1e-06) {
        box[i] = middle - 0.001 * visible_extent / 2;
        box[i + 1] = middle + 0.001 * visible_extent / 2;
      } else if (1e-06 <= r && r < 0.0001) {
        const double half = (1 - t) * 0.001 * visible_extent + t * extent;
        box[i] = middle - half;
        box[i + 1] = middle + half;
      }
    }
  }
  const double half = std::max({box[1] - box[0], box[3] - box[2], box[5] - box[4]}) / 2;
  for (std::size_t i = 0; i < 6; i += 2) {
    const double middle = (box[i] + box[i + 1]) / 2;
    box[i] = middle - half;
    box[i + 1] = middle + half;
  }
  return box;
}

inline BrantVector centre(const Box& box)
{
  return {(box[0] + box[1]) / 2, (box[2] + box[3]) / 2, (box[4] + box[5]) / 2};
}

inline double diagonal(const Box& box)
{
  return BrantVector(box[1] - box[0], box[3] - box[2], box[5] - box[4]).length();
}

} // namespace morrow_test::oracle
