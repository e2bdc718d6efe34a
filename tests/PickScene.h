// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "PickBounds.h"

#include <vtkActor.h>
#include <vtkNew.h>
#include <vtkPointSet.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>

#include <memory>
#include <random>

/// Random scenes to pick in.
namespace morrow_test {

/// Numbers that are the same on all machines.
class Random
{
public:
  explicit Random(unsigned seed) : mEngine(seed) {}

  /// At least low and below high.
  double between(double low, double high)
  {
    constexpr double steps = 4294967296.0;
    return low + (high - low) * (static_cast<double>(mEngine()) / steps);
  }
  /// From 0 to count - 1.
  int below(int count) { return static_cast<int>(this->between(0.0, count)); }
  bool chance(double share) { return this->between(0.0, 1.0) < share; }

private:
  std::mt19937 mEngine;
};

enum class MeshKind
{
  Triangles,  ///< a surface, neighbours with neighbouring ids
  Scattered,  ///< the same in random order
  Soup,       ///< verts, lines, polygons of any shape and strips of polygon data
  Linear,     ///< one of each linear type in an unstructured grid, tetrahedra and hexahedra among them
  Curved,     ///< quadratic cells among linear ones
  Structured, ///< a curvilinear grid
  Hostile     ///< triangles with points that coincide, are not finite, or very far away
};
inline constexpr MeshKind kMeshKinds[] = {MeshKind::Triangles, MeshKind::Scattered, MeshKind::Soup,
                                          MeshKind::Linear,    MeshKind::Curved,    MeshKind::Structured,
                                          MeshKind::Hostile};

/// A mesh of about so many cells, between -1 and 1 along each axis. Points are floats or doubles, cell arrays
/// 32 or 64 bits wide, by chance.
[[nodiscard]] vtkSmartPointer<vtkPointSet> random_mesh(MeshKind kind, Random& random, int cells);

/// Gives the data set an array "Pointers" or takes it away.
void set_pointers(vtkPointSet& data, bool on);

/// A box, lasso or circle of any size around the middle of a window of 200 x 150 pixels; which goes through
/// the kinds.
[[nodiscard]] std::unique_ptr<PickBounds> random_region(Random& random, int which);

/// A window of 200 x 150 pixels, never shown, with a renderer that looks at the cube from -1 to 1 in random
/// perspective or in parallel projection; in one of four scenes from inside of it.
class PickScene
{
public:
  explicit PickScene(Random& random);

  /// Shows the data turned, scaled and mirrored a little.
  vtkActor* add(vtkPointSet* data);

  vtkNew<vtkRenderWindow> window;
  vtkNew<vtkRenderer> renderer;

private:
  Random& mRandom;
};

} // namespace morrow_test
