// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Unique edges of a mesh, beside the literal way (VTK's edge table, cell by cell) and vtkExtractEdges with
// all points kept, on the same mesh, with the peak memory of a run. The results are compared. Needs no
// display.
#include "BenchReport.h"
#include "BenchSupport.h"
#include "GExtractEdges.h"
#include "LiteralExtractEdges.h"

#include <benchmark/benchmark.h>

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkExtractEdges.h>
#include <vtkIntArray.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <random>
#include <string>
#include <vector>

using morrow_bench::median;
using morrow_bench::median_seconds;
using morrow_bench::peak_kib;
using morrow_bench::processor_seconds;
using morrow_bench::Targets;

namespace {

// ---------------------------------------------------------------------------------------------------------
// Meshes

enum class Order
{
  OfTheMesh,
  Random
};

void add_numbers(vtkDataSet& data)
{
  vtkNew<vtkIntArray> numbers;
  numbers->SetName("number");
  numbers->SetNumberOfTuples(data.GetNumberOfCells());
  std::iota(numbers->GetPointer(0), numbers->GetPointer(0) + data.GetNumberOfCells(), 0);
  data.GetCellData()->AddArray(numbers);
}

/// About so many triangles, two in each square of a height field.
vtkSmartPointer<vtkPolyData> triangles(std::int64_t count, Order order)
{
  const auto side = static_cast<vtkIdType>(std::sqrt(static_cast<double>(count) / 2.0));
  vtkNew<vtkPoints> points;
  for (vtkIdType y = 0; y <= side; ++y) {
    for (vtkIdType x = 0; x <= side; ++x) {
      points->InsertNextPoint(static_cast<double>(x), static_cast<double>(y),
                              std::sin(0.1 * static_cast<double>(x + y)));
    }
  }
  std::vector<vtkIdType> squares(static_cast<std::size_t>(side * side));
  std::iota(squares.begin(), squares.end(), 0);
  if (order == Order::Random) {
    std::shuffle(squares.begin(), squares.end(), std::mt19937(1));
  }
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetPolys(morrow_bench::grid_triangles(side, squares));
  add_numbers(*data);
  return data;
}

vtkSmartPointer<vtkUnstructuredGrid> hexahedra(std::int64_t count)
{
  const auto side = static_cast<vtkIdType>(std::cbrt(static_cast<double>(count)));
  const vtkIdType row = side + 1;
  vtkNew<vtkPoints> points;
  for (vtkIdType i = 0; i < row * row * row; ++i) {
    points->InsertNextPoint(static_cast<double>(i % row), static_cast<double>(i / row % row),
                            static_cast<double>(i / row / row));
  }
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(points);
  grid->Allocate(side * side * side);
  for (vtkIdType i = 0; i < side * side * side; ++i) {
    const vtkIdType a = i % side + i / side % side * row + i / side / side * row * row;
    const vtkIdType b = a + row * row;
    const vtkIdType ids[8] = {a, a + 1, a + row + 1, a + row, b, b + 1, b + row + 1, b + row};
    grid->InsertNextCell(VTK_HEXAHEDRON, 8, ids);
  }
  add_numbers(*grid);
  return grid;
}

// ---------------------------------------------------------------------------------------------------------
// Contenders

vtkSmartPointer<vtkPolyData> ours(vtkPointSet* input)
{
  vtkNew<GExtractEdges> filter;
  filter->SetInputDataObject(input);
  filter->Update();
  return filter->GetOutput();
}

vtkSmartPointer<vtkPolyData> literal(vtkPointSet* input)
{
  auto output = vtkSmartPointer<vtkPolyData>::New();
  morrow_test::LiteralExtractEdges::run(input, output);
  return output;
}

vtkSmartPointer<vtkPolyData> vtks(vtkPointSet* input)
{
  vtkNew<vtkExtractEdges> filter;
  filter->UseAllPointsOn();
  filter->SetInputDataObject(input);
  filter->Update();
  return filter->GetOutput();
}

bool are_equal(vtkPolyData& a, vtkPolyData& b)
{
  const vtkIdType count = a.GetNumberOfLines();
  if (count != b.GetNumberOfLines()) {
    return false;
  }
  const auto same = [](vtkDataArray* x, vtkDataArray* y) {
    const auto bytes = x->GetNumberOfValues() * x->GetDataTypeSize();
    const auto* begin = static_cast<const char*>(x->GetVoidPointer(0));
    return x->GetNumberOfValues() == y->GetNumberOfValues() && x->GetDataType() == y->GetDataType() &&
           std::equal(begin, begin + bytes, static_cast<const char*>(y->GetVoidPointer(0)));
  };
  return same(a.GetLines()->GetConnectivityArray(), b.GetLines()->GetConnectivityArray()) &&
         same(a.GetLines()->GetOffsetsArray(), b.GetLines()->GetOffsetsArray()) &&
         same(a.GetCellData()->GetArray("number"), b.GetCellData()->GetArray("number"));
}

// ---------------------------------------------------------------------------------------------------------
// Measuring

void run(benchmark::State& state, const char* name, vtkPointSet* input, const Targets& targets)
{
  if (!are_equal(*ours(input), *literal(input))) {
    state.SkipWithError("the results differ");
    return;
  }
  std::vector<double> times;
  for (auto _ : state) {
    const double time = processor_seconds([&] { ours(input); });
    state.SetIterationTime(time);
    times.push_back(time);
  }
  constexpr int runs = 5;
  morrow_bench::Case row;
  row.name = name;
  row.ours = median(times);
  row.literal = median_seconds([&] { literal(input); }, runs);
  row.peer_name = "vtkExtractEdges";
  row.peer = median_seconds([&] { vtks(input); }, runs);
  row.peak = peak_kib([&] { ours(input); });
  row.literal_peak = peak_kib([&] { literal(input); });
  row.targets = targets;
  report(state, row);
}

Targets targets_of(const benchmark::State& state, double literal, double peer)
{
  constexpr std::int64_t smallest = 200'000;
  constexpr double memory = 0.75;
  return morrow_bench::from_size(state, smallest, {literal, peer, memory});
}

void Triangles(benchmark::State& state)
{
  run(state, "edges of triangles", triangles(state.range(0), Order::OfTheMesh),
      targets_of(state, 20.0, 15.0));
}

void TrianglesInRandomOrder(benchmark::State& state)
{
  run(state, "edges of triangles in random order", triangles(state.range(0), Order::Random),
      targets_of(state, 12.0, 12.0));
}

void Hexahedra(benchmark::State& state)
{
  run(state, "edges of hexahedra", hexahedra(state.range(0)), targets_of(state, 12.0, 12.0));
}

} // namespace

BENCHMARK(Triangles)->Arg(1000)->Arg(200'000)->Arg(1'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(TrianglesInRandomOrder)
    ->Arg(1000)
    ->Arg(200'000)
    ->Arg(1'000'000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Hexahedra)->Arg(1000)->Arg(200'000)->UseManualTime()->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
