// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GAxis.h"
#include "MRUtil.h"

#include <vtkRenderer.h>
#include <vtkSmartPointer.h>

#include <ostream>

/// What the tests of the axis triad share.
namespace morrow_test {

inline constexpr auto NoType = static_cast<MRUtil::AxisType>(7);
inline constexpr MRUtil::AxisType Forms[] = {MRUtil::AXIS_3D, MRUtil::AXIS_2D, MRUtil::AXIS_1D};

using Triad = vtkSmartPointer<GAxis>;

inline Triad make_triad(MRUtil::AxisType type, vtkRenderer* renderer = nullptr)
{
  auto triad = Triad::New();
  triad->set_type(type);
  triad->set_renderer(renderer);
  return triad;
}

/// What the three passes return.
struct Drawn
{
  int opaque = -1;
  int translucent = -1;
  int overlay = -1;
};

inline bool operator==(const Drawn& a, const Drawn& b)
{
  return a.opaque == b.opaque && a.translucent == b.translucent && a.overlay == b.overlay;
}

inline std::ostream& operator<<(std::ostream& out, const Drawn& drawn)
{
  return out << "opaque " << drawn.opaque << ", translucent " << drawn.translucent << ", overlay "
             << drawn.overlay;
}

inline constexpr Drawn Nothing = {0, 0, 0};

} // namespace morrow_test
