// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Primitives appended to a generic model one call at a time, beside the same data appended to VTK's own
// arrays: points to a vtkPoints, cells to a vtkCellArray, colours to a vtkUnsignedCharArray. The literal
// version is vtkPolyData::InsertNextCell() with the marks of modification after each primitive, which the
// model has made too. The best times of all runs are compared. "update ms" is update_parts() afterwards, most
// of it VTK's normals. The results are compared. Needs no display.
#include "BenchReport.h"
#include "BenchSupport.h"
#include "BrantColor.h"
#include "BrantVector.h"
#include "GGenericModel.h"

#include <benchmark/benchmark.h>

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

using morrow_bench::processor_seconds;

namespace {

/// A kind of primitive: how many points it has, its cell type and its slot.
struct Kind
{
  const char* plural;
  int num_points;
  int cell_type;
  MRUtil::DrawMode mode;
  int slot;
};

constexpr Kind kPoint = {"points", 1, VTK_VERTEX, MRUtil::DRAW_OUTLINE, 0};
constexpr Kind kLine = {"lines", 2, VTK_LINE, MRUtil::DRAW_OUTLINE, 1};
constexpr Kind kQuad = {"quads", 4, VTK_POLYGON, MRUtil::DRAW_FILLED, 2};

/// Corners of squares, four after four, made before anything is measured.
constexpr std::int64_t kNumSquares = 256;

std::vector<BrantVector> squares()
{
  std::vector<BrantVector> corners;
  for (int i = 0; i < kNumSquares; ++i) {
    for (int k = 0; k < 4; ++k) {
      corners.emplace_back(i % 16 + 0.9 * ((k + 1) / 2 % 2), i / 16 + 0.9 * (k / 2), 0.0);
    }
  }
  return corners;
}

const BrantVector* corners_of(std::int64_t i)
{
  static const std::vector<BrantVector> corners = squares();
  return &corners[static_cast<std::size_t>(4 * (i % kNumSquares))];
}

BrantColor colour_of(std::int64_t i)
{
  return {static_cast<int>(i % 256), 100, 200};
}

// ---------------------------------------------------------------------------------------------------------
// Contenders

void ours(GGenericModel& model, const Kind& kind, std::int64_t count)
{
  for (std::int64_t i = 0; i < count; ++i) {
    const BrantVector* points = corners_of(i);
    switch (kind.num_points) {
    case 1:
      model.add_points(1, points, colour_of(i), kind.mode);
      break;
    case 2:
      model.add_line(points[0], points[1], colour_of(i));
      break;
    default:
      model.add_quad(points, colour_of(i), kind.mode);
      break;
    }
  }
}

struct Arrays
{
  vtkNew<vtkPolyData> data;
  vtkNew<vtkPoints> points;
  vtkNew<vtkCellArray> cells;
  vtkNew<vtkUnsignedCharArray> colours;

  Arrays()
  {
    colours->SetNumberOfComponents(4);
    data->Allocate(1, 100);
    data->SetPoints(points);
  }

  void append(const BrantVector* corners, int count, BrantColor colour, vtkIdType* ids) const
  {
    for (int k = 0; k < count; ++k) {
      ids[k] = points->InsertNextPoint(corners[k].data());
    }
    const unsigned char tuple[4] = {colour.red(), colour.green(), colour.blue(), colour.alpha()};
    colours->InsertNextTypedTuple(tuple);
  }
};

void vtks(Arrays& arrays, const Kind& kind, std::int64_t count)
{
  for (std::int64_t i = 0; i < count; ++i) {
    const BrantVector* points = corners_of(i);
    vtkIdType ids[4];
    arrays.append(points, kind.num_points, colour_of(i), ids);
    arrays.cells->InsertNextCell(kind.num_points, ids);
  }
}

void literal(Arrays& arrays, const Kind& kind, std::int64_t count)
{
  for (std::int64_t i = 0; i < count; ++i) {
    const BrantVector* points = corners_of(i);
    vtkIdType ids[4];
    arrays.append(points, kind.num_points, colour_of(i), ids);
    arrays.data->InsertNextCell(kind.cell_type, kind.num_points, ids);
    arrays.cells->Modified();
    arrays.colours->Modified();
    arrays.points->Modified();
    arrays.data->Modified();
  }
}

// ---------------------------------------------------------------------------------------------------------
// Measuring

template<typename T>
bool equal(vtkDataArray* a, vtkDataArray* b)
{
  const auto* x = static_cast<const T*>(a->GetVoidPointer(0));
  const auto* y = static_cast<const T*>(b->GetVoidPointer(0));
  return a->GetNumberOfValues() == b->GetNumberOfValues() && std::equal(x, x + a->GetNumberOfValues(), y);
}

vtkCellArray* cells_of(vtkPolyData& data, const Kind& kind)
{
  return kind.slot == 0 ? data.GetVerts() : kind.slot == 1 ? data.GetLines() : data.GetPolys();
}

bool agree(GGenericModel& model, const Kind& kind, std::int64_t count)
{
  Arrays arrays;
  vtks(arrays, kind, count);
  vtkPolyData& data = *model.initialize_cell_data(kind.mode, kind.slot);
  vtkCellArray& cells = *cells_of(data, kind);
  return equal<float>(data.GetPoints()->GetData(), arrays.points->GetData()) &&
         equal<vtkTypeInt64>(cells.GetConnectivityArray(), arrays.cells->GetConnectivityArray()) &&
         equal<vtkTypeInt64>(cells.GetOffsetsArray(), arrays.cells->GetOffsetsArray()) &&
         equal<unsigned char>(data.GetCellData()->GetScalars(), arrays.colours);
}

template<typename Call>
double time_on_new_arrays(Call&& call, const Kind& kind, std::int64_t count)
{
  Arrays arrays;
  return processor_seconds([&] { call(arrays, kind, count); });
}

/// What other programs on the machine disturb least.
double best(const std::vector<double>& times)
{
  return *std::min_element(times.begin(), times.end());
}

/// All in turn, so that they meet the same machine.
void run(benchmark::State& state, const Kind& kind, const morrow_bench::Targets& targets)
{
  const std::int64_t count = state.range(0);
  std::vector<double> own;
  std::vector<double> vtk;
  std::vector<double> plain;
  for (auto _ : state) {
    GGenericModel model;
    own.push_back(processor_seconds([&] { ours(model, kind, count); }));
    state.SetIterationTime(own.back());
    vtk.push_back(time_on_new_arrays(vtks, kind, count));
    plain.push_back(time_on_new_arrays(literal, kind, count));
  }
  GGenericModel model;
  ours(model, kind, count);
  if (!agree(model, kind, count)) {
    state.SkipWithError("the results differ");
    return;
  }
  morrow_bench::Case row;
  row.name = std::string("appending ") + kind.plural;
  row.ours = best(own);
  row.literal = best(plain);
  row.peer_name = "vtkCellArray";
  row.peer = best(vtk);
  constexpr std::int64_t many = 1'000'000;
  row.targets = morrow_bench::from_size(state, many, targets);
  report(state, row);
  state.counters["update ms"] = 1e3 * processor_seconds([&] { model.update_parts(); });
}

void Points(benchmark::State& state)
{
  run(state, kPoint, {});
}

void Lines(benchmark::State& state)
{
  run(state, kLine, {2.2, {}, {}});
}

void Quads(benchmark::State& state)
{
  run(state, kQuad, {1.7, {}, {}});
}

void sizes(benchmark::internal::Benchmark* bench)
{
  bench->Arg(1000)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK(Points)->Apply(sizes);
BENCHMARK(Lines)->Apply(sizes);
BENCHMARK(Quads)->Apply(sizes);

BENCHMARK_MAIN();
