// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Silhouette edges of a mesh as the camera goes round it, beside the literal way and vtkPolyDataSilhouette.
// The times are those of one view; "allocations" is how many pieces of memory ours asks for in one. VTK's
// first view, for which it finds the neighbours of all cells, does not count. Ours and the literal version
// are compared view by view, bit for bit. Needs no display.
#include "BenchReport.h"
#include "BenchScene.h"
#include "BenchSupport.h"
#include "CountedAllocations.h"
#include "GSilhouetteMapper.h"
#include "LiteralSilhouette.h"

#include <benchmark/benchmark.h>

#include <vtkCamera.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkPolyDataSilhouette.h>
#include <vtkSmartPointer.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

using morrow_bench::height_field;
using morrow_bench::median;
using morrow_bench::processor_seconds;
using morrow_bench::triangles;

namespace {

// ---------------------------------------------------------------------------------------------------------
// Meshes

void sphere(double u, double v, double* point)
{
  constexpr double pi = 3.14159265358979323846;
  point[0] = std::cos(2.0 * pi * u) * std::sin(pi * v);
  point[1] = std::sin(2.0 * pi * u) * std::sin(pi * v);
  point[2] = -std::cos(pi * v);
}

// ---------------------------------------------------------------------------------------------------------
// Measuring

/// Goes round the mesh, a little at a time.
class Journey
{
public:
  Journey()
  {
    mCamera->SetPosition(4.0, 0.0, 1.5);
    mCamera->SetViewUp(0.0, 0.0, 1.0);
  }

  void go_on()
  {
    mCamera->Azimuth(7.0);
    mMatrix->DeepCopy(mCamera->GetCompositeProjectionTransformMatrix(1.25, 0.0, 1.0));
  }

  [[nodiscard]] vtkCamera* camera() const { return mCamera; }
  [[nodiscard]] vtkMatrix4x4* matrix() const { return mMatrix; }

private:
  vtkNew<vtkCamera> mCamera;
  vtkNew<vtkMatrix4x4> mMatrix;
};

template<typename Call>
double median_seconds_on(Journey& journey, Call&& call)
{
  constexpr int views = 11;
  std::vector<double> times;
  for (int i = 0; i < views; ++i) {
    journey.go_on();
    times.push_back(processor_seconds(call));
  }
  return median(times);
}

bool are_same(const std::vector<float>& a, const std::vector<float>& b)
{
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

void run(benchmark::State& state, const char* name, vtkPolyData* data)
{
  Journey journey;
  vtkNew<GSilhouetteMapper> mapper;
  std::vector<float> edges;
  std::vector<float> expected;
  const std::uint64_t before_all = morrow_test::gAllocations;
  journey.go_on();
  mapper->compute(journey.matrix(), data, edges);
  if (morrow_test::gAllocations == before_all) {
    state.SkipWithError("allocations are not counted");
    return;
  }
  constexpr int full_circle = 52;
  for (int i = 0; i < full_circle; ++i) {
    journey.go_on();
    mapper->compute(journey.matrix(), data, edges);
    if (i % 13 == 0) {
      morrow_test::LiteralSilhouette::run(journey.matrix(), data, expected);
      if (edges.empty() || !are_same(edges, expected)) {
        state.SkipWithError("the results differ");
        return;
      }
    }
  }
  vtkNew<vtkPolyDataSilhouette> vtks;
  vtks->SetInputData(data);
  vtks->SetCamera(journey.camera());
  vtks->Update();
  std::vector<double> times;
  std::uint64_t allocations = 0;
  for (auto _ : state) {
    journey.go_on();
    const std::uint64_t before = morrow_test::gAllocations;
    const double time = processor_seconds([&] { mapper->compute(journey.matrix(), data, edges); });
    allocations += morrow_test::gAllocations - before;
    state.SetIterationTime(time);
    times.push_back(time);
  }
  morrow_bench::Case row;
  row.name = name;
  row.ours = median(times);
  row.literal = median_seconds_on(
      journey, [&] { morrow_test::LiteralSilhouette::run(journey.matrix(), data, expected); });
  row.peer_name = "vtkPolyDataSilhouette";
  row.peer = median_seconds_on(journey, [&] { vtks->Update(); });
  constexpr std::int64_t large = 1'000'000;
  row.targets = morrow_bench::from_size(state, large, {3.3, 8.0, {}});
  report(state, row);
  state.counters["allocations"] =
      benchmark::Counter(static_cast<double>(allocations), benchmark::Counter::kAvgIterations);
  state.counters["edges"] = static_cast<double>(edges.size()) / 6.0;
}

void Sphere(benchmark::State& state)
{
  run(state, "silhouette of a sphere", triangles(state.range(0), sphere));
}

void HeightField(benchmark::State& state)
{
  run(state, "silhouette of a height field", triangles(state.range(0), height_field));
}

} // namespace

BENCHMARK(Sphere)->Arg(1000)->Arg(200'000)->Arg(1'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(HeightField)
    ->Arg(1000)
    ->Arg(200'000)
    ->Arg(1'000'000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
