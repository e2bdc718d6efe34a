// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Pick regions that are asked for all points, edges and triangles of a mesh that fills a window of 1000 x
// 1000 pixels, beside the literal regions, which try every triangle and edge in turn. The answers are
// compared. The passes go over the mesh as a picker does, without fetching cells: one look at each point,
// then the triangles that this does not decide. Needs no display.
#include "BenchReport.h"
#include "BenchSupport.h"
#include "LassoInputs.h"
#include "PickBounds.h"
#include "PolygonGrid.h"
#include "RegionFilter.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <optional>
#include <vector>

using morrow_bench::median;
using morrow_bench::processor_seconds;

namespace {

// ---------------------------------------------------------------------------------------------------------
// Data

struct Mesh
{
  std::vector<double> points; // x, y, 0
  std::vector<std::uint32_t> triangles;

  [[nodiscard]] const double* point(std::size_t triangle, std::size_t corner) const
  {
    return &points[std::size_t{3} * triangles[3 * triangle + corner]];
  }
  [[nodiscard]] std::size_t size() const { return triangles.size() / 3; }
};

/// About so many triangles over the window, on a lattice that is a little turned and bent.
Mesh mesh_of(std::int64_t count)
{
  const auto side = static_cast<std::uint32_t>(std::sqrt(static_cast<double>(count) / 2.0));
  Mesh mesh;
  for (std::uint32_t row = 0; row <= side; ++row) {
    for (std::uint32_t column = 0; column <= side; ++column) {
      const double u = static_cast<double>(column) / side;
      const double v = static_cast<double>(row) / side;
      const double bend = 8.0 * std::sin(9.0 * u + 7.0 * v);
      mesh.points.insert(mesh.points.end(),
                         {1000.0 * u + 31.0 * v - 15.0, 1000.0 * v - 29.0 * u + bend, 0.0});
    }
  }
  for (std::uint32_t row = 0; row < side; ++row) {
    for (std::uint32_t column = 0; column < side; ++column) {
      const std::uint32_t a = row * (side + 1) + column;
      const std::uint32_t b = a + side + 1;
      mesh.triangles.insert(mesh.triangles.end(), {a, a + 1, b + 1, a, b + 1, b});
    }
  }
  return mesh;
}

morrow_test::Ring lasso_ring(std::int64_t count)
{
  return morrow_test::moved(morrow_test::hand_drawn(static_cast<std::size_t>(count)), 2.0, -100.0, 0.0);
}

PickPolygon lasso(const morrow_test::Ring& ring)
{
  PickPolygon polygon;
  polygon.set_polygon(static_cast<int>(ring.size()), reinterpret_cast<const double(*)[2]>(ring.data()));
  return polygon;
}

// ---------------------------------------------------------------------------------------------------------
// Questions: each counts the answers that are true

std::size_t count_points(const PickBounds& region, const Mesh& mesh)
{
  std::size_t count = 0;
  for (std::size_t i = 0; i < mesh.size(); ++i) {
    count += region.intersects_with_point(mesh.point(i, 0)) ? 1u : 0u;
  }
  return count;
}

std::size_t count_segments(const PickBounds& region, const Mesh& mesh)
{
  std::size_t count = 0;
  for (std::size_t i = 0; i < mesh.size(); ++i) {
    count += region.intersects_with_line(mesh.point(i, 0), mesh.point(i, 1)) ? 1u : 0u;
  }
  return count;
}

std::size_t count_triangles(const PickBounds& region, const Mesh& mesh)
{
  std::size_t count = 0;
  for (std::size_t i = 0; i < mesh.size(); ++i) {
    count += region.intersects_with_triangle(mesh.point(i, 0), mesh.point(i, 1), mesh.point(i, 2)) ? 1u : 0u;
  }
  return count;
}

std::size_t count_whole(const PickBounds& region, const Mesh& mesh)
{
  std::size_t count = 0;
  for (std::size_t i = 0; i < mesh.size(); ++i) {
    int inside = 0;
    for (std::size_t corner = 0; corner < 3; ++corner) {
      inside += region.intersects_with_point(mesh.point(i, corner)) ? 1 : 0;
    }
    count += inside == 3 ? 1u : 0u;
  }
  return count;
}

std::vector<unsigned char> classified(const morrow::RegionFilter& filter, const Mesh& mesh)
{
  std::vector<unsigned char> bits(mesh.points.size() / 3);
  for (std::size_t i = 0; i < bits.size(); ++i) {
    bits[i] = filter.classify(&mesh.points[3 * i]);
  }
  return bits;
}

std::size_t pass_whole(const PickBounds& region, const Mesh& mesh)
{
  const morrow::RegionFilter filter(region);
  const std::vector<unsigned char> bits = classified(filter, mesh);
  std::size_t count = 0;
  for (std::size_t i = 0; i < mesh.triangles.size(); i += 3) {
    const unsigned all = bits[mesh.triangles[i]] & bits[mesh.triangles[i + 1]] & bits[mesh.triangles[i + 2]];
    count += (all & morrow::RegionFilter::Inside) != 0 ? 1u : 0u;
  }
  return count;
}

std::size_t pass_touched(const PickBounds& region, const Mesh& mesh)
{
  const morrow::RegionFilter filter(region);
  const std::vector<unsigned char> bits = classified(filter, mesh);
  std::size_t count = 0;
  for (std::size_t i = 0; i < mesh.size(); ++i) {
    const unsigned char bits_a = bits[mesh.triangles[3 * i]];
    const unsigned char bits_b = bits[mesh.triangles[3 * i + 1]];
    const unsigned char bits_c = bits[mesh.triangles[3 * i + 2]];
    const double* a = mesh.point(i, 0);
    const double* b = mesh.point(i, 1);
    const double* c = mesh.point(i, 2);
    if (((bits_a | bits_b | bits_c) & morrow::RegionFilter::Inside) != 0) {
      ++count; // a point inside counts in every case
    } else if ((bits_a & bits_b & bits_c) == 0 && filter.may_touch_triangle(a, b, c)) {
      count += filter.touches_triangle_between(a, b, c) ? 1u : 0u;
    }
  }
  return count;
}

/// What the pass stands for: the triangle, or any point of it.
std::size_t count_touched(const PickBounds& region, const Mesh& mesh)
{
  std::size_t count = 0;
  for (std::size_t i = 0; i < mesh.size(); ++i) {
    const double* a = mesh.point(i, 0);
    const double* b = mesh.point(i, 1);
    const double* c = mesh.point(i, 2);
    count += region.intersects_with_triangle(a, b, c) || region.intersects_with_point(b) ||
                     region.intersects_with_point(c)
                 ? 1u
                 : 0u;
  }
  return count;
}

// ---------------------------------------------------------------------------------------------------------
// Measuring

using Count = std::size_t (*)(const PickBounds&, const Mesh&);

/// The polygon is made anew for each run, so that its grid is within the time, and the triangulation is not.
void run(benchmark::State& state, const char* name, Count ours, Count literally, std::optional<double> target)
{
  const Mesh mesh = mesh_of(state.range(0));
  const morrow_test::Ring ring = lasso_ring(64);
  const morrow_test::LiteralPolygon literal = morrow_test::Triangulation(ring).literal();
  if (ours(lasso(ring), mesh) != literally(literal, mesh)) {
    state.SkipWithError("the results differ");
    return;
  }
  std::vector<double> times;
  for (auto _ : state) {
    const PickPolygon polygon = lasso(ring);
    const double time = processor_seconds([&] { benchmark::DoNotOptimize(ours(polygon, mesh)); });
    state.SetIterationTime(time);
    times.push_back(time);
  }
  morrow_bench::Case row;
  row.name = name;
  row.ours = median(times);
  row.literal = processor_seconds([&] { benchmark::DoNotOptimize(literally(literal, mesh)); });
  constexpr std::int64_t many = 1'000'000;
  row.targets = morrow_bench::from_size(state, many, {target, {}, {}});
  report(state, row);
}

void LassoPoints(benchmark::State& state)
{
  run(state, "points in a lasso", count_points, count_points, {});
}

void LassoSegments(benchmark::State& state)
{
  run(state, "segments in a lasso", count_segments, count_segments, {});
}

void LassoTriangles(benchmark::State& state)
{
  run(state, "triangles in a lasso", count_triangles, count_triangles, {});
}

void LassoPassWhole(benchmark::State& state)
{
  run(state, "pass: whole triangles in a lasso", pass_whole, count_whole, 50.0);
}

void LassoPassTouched(benchmark::State& state)
{
  run(state, "pass: triangles touched by a lasso", pass_touched, count_touched, 100.0);
}

void run_grid(benchmark::State& state, const char* name, const morrow_test::Ring& ring)
{
  const morrow_test::Triangulation polygon(ring);
  std::vector<double> times;
  for (auto _ : state) {
    times.push_back(processor_seconds([&] {
      benchmark::DoNotOptimize(morrow::PolygonGrid(polygon.points, polygon.triangles, polygon.edges));
    }));
    state.SetIterationTime(times.back());
  }
  morrow_bench::Case row;
  row.name = name;
  row.ours = median(times);
  report(state, row);
  state.counters["triangles"] = static_cast<double>(polygon.triangles.size()) / 3.0;
}

/// The grid alone. The argument is the number of vertices.
void LassoGrid(benchmark::State& state)
{
  run_grid(state, "grid of a lasso", lasso_ring(state.range(0)));
}

/// The same for vertices at random, whose crossings make some 115 000 triangles for 1000 vertices.
void ScribbleGrid(benchmark::State& state)
{
  morrow_test::PickInputs inputs(1);
  run_grid(state, "grid of a scribble",
           morrow_test::random_ring(static_cast<std::size_t>(state.range(0)), inputs));
}

} // namespace

BENCHMARK(LassoPoints)->Arg(1000)->Arg(1'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(LassoSegments)->Arg(1000)->Arg(1'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(LassoTriangles)->Arg(1000)->Arg(1'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(LassoPassWhole)->Arg(1000)->Arg(1'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(LassoPassTouched)->Arg(1000)->Arg(1'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(LassoGrid)->Arg(64)->Arg(1000)->Arg(10'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ScribbleGrid)->Arg(100)->Arg(400)->UseManualTime()->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
