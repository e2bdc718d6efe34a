// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Picks of cells by ray and by region, beside the literal way and VTK's own classes: vtkCellPicker (which
// finds only the nearest cell) for rays, vtkExtractSelectedFrustum for boxes and vtkHardwareSelector for what
// is visible. Ours and the literal version are compared in each run. "bytes/cell" is the memory kept between
// picks. Only the picks of visible cells need a display.
#include "BenchReport.h"
#include "BenchSupport.h"
#include "LiteralMultiCellPicker.h"
#include "LiteralPickBounds.h"
#include "MultiCellPicker.h"
#include "PickBounds.h"

#include <benchmark/benchmark.h>

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkCellPicker.h>
#include <vtkDataSetMapper.h>
#include <vtkExtractSelectedFrustum.h>
#include <vtkFieldData.h>
#include <vtkHardwareSelector.h>
#include <vtkIdTypeArray.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSelection.h>
#include <vtkSelectionNode.h>
#include <vtkSmartPointer.h>
#include <vtkUnstructuredGrid.h>

#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

using morrow_bench::median;
using morrow_bench::median_seconds;
using morrow_bench::processor_seconds;
using morrow_bench::Targets;
using morrow_test::LiteralMultiCellPicker;

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kWidth = 1024;
constexpr int kHeight = 768;

// ---------------------------------------------------------------------------------------------------------
// Scenes

vtkSmartPointer<vtkPointSet> height_field(std::int64_t count, bool is_shuffled)
{
  const auto side = static_cast<vtkIdType>(std::sqrt(static_cast<double>(count) / 2.0));
  vtkNew<vtkPoints> points;
  for (vtkIdType i = 0; i < (side + 1) * (side + 1); ++i) {
    const double u = static_cast<double>(i % (side + 1)) / static_cast<double>(side);
    const double v = static_cast<double>(i / (side + 1)) / static_cast<double>(side);
    points->InsertNextPoint(2.0 * u - 1.0, 2.0 * v - 1.0, 0.05 * std::sin(90.0 * u) * std::cos(70.0 * v));
  }
  std::vector<vtkIdType> squares(static_cast<std::size_t>(side * side));
  std::iota(squares.begin(), squares.end(), 0);
  if (is_shuffled) {
    std::shuffle(squares.begin(), squares.end(), std::mt19937(7));
  }
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetPolys(morrow_bench::grid_triangles(side, squares));
  return data;
}

vtkSmartPointer<vtkPointSet> hexahedra(std::int64_t count)
{
  const auto side = std::max<vtkIdType>(1, std::llround(std::cbrt(static_cast<double>(count))));
  const vtkIdType row = side + 1;
  vtkNew<vtkPoints> points;
  for (vtkIdType i = 0; i < row * row * row; ++i) {
    points->InsertNextPoint(2.0 * static_cast<double>(i % row) / static_cast<double>(side) - 1.0,
                            2.0 * static_cast<double>(i / row % row) / static_cast<double>(side) - 1.0,
                            2.0 * static_cast<double>(i / row / row) / static_cast<double>(side) - 1.0);
  }
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(points);
  for (vtkIdType i = 0; i < side * side * side; ++i) {
    const vtkIdType a = i / (side * side) * row * row + i / side % side * row + i % side;
    const vtkIdType b = a + row * row;
    const vtkIdType ids[8] = {a, a + 1, a + row + 1, a + row, b, b + 1, b + row + 1, b + row};
    grid->InsertNextCell(VTK_HEXAHEDRON, 8, ids);
  }
  return grid;
}

/// A mesh at a slant that fills the window.
struct Stage
{
  explicit Stage(vtkPointSet* its_data) : data(its_data)
  {
    window->SetSize(kWidth, kHeight);
    window->SetMultiSamples(0);
    window->AddRenderer(renderer);
    mapper->SetInputDataObject(data);
    mapper->SetStatic(1);
    actor->SetMapper(mapper);
    renderer->AddActor(actor);
    vtkCamera* camera = renderer->GetActiveCamera();
    camera->SetPosition(0.0, -2.6, 1.8);
    camera->SetFocalPoint(0.0, -0.1, 0.0);
    camera->SetViewUp(0.0, 0.0, 1.0);
    camera->SetClippingRange(0.5, 8.0);
  }

  vtkSmartPointer<vtkPointSet> data;
  vtkNew<vtkRenderWindow> window;
  vtkNew<vtkRenderer> renderer;
  vtkNew<vtkDataSetMapper> mapper;
  vtkNew<vtkActor> actor;
};

void set_pointers(vtkPointSet& data)
{
  vtkNew<vtkIdTypeArray> pointers;
  pointers->SetName("Pointers");
  data.GetFieldData()->AddArray(pointers);
}

std::unique_ptr<PickBounds> box(double share)
{
  const double half = 0.5 * std::sqrt(share);
  double corners[4] = {kWidth * (0.5 - half), kHeight * (0.5 - half), kWidth * (0.5 + half),
                       kHeight * (0.5 + half)};
  auto region = std::make_unique<PickBox>();
  region->set_box(corners);
  return region;
}

std::unique_ptr<PickBounds> lasso()
{
  double points[64][2];
  for (int i = 0; i < 64; ++i) {
    const double angle = 2.0 * kPi * i / 64;
    const double radius = 250.0 + 80.0 * std::sin(5.0 * angle);
    points[i][0] = std::round(512.0 + radius * std::cos(angle));
    points[i][1] = std::round(384.0 + radius * std::sin(angle));
  }
  auto region = std::make_unique<PickPolygon>();
  region->set_polygon(64, points);
  return region;
}

/// The same lasso without its grid, which asks all triangles and edges in turn; null for other regions.
std::unique_ptr<PickBounds> literal_lasso(const PickBounds& region)
{
  const auto* lasso = dynamic_cast<const PickPolygon*>(&region);
  return lasso != nullptr
             ? std::make_unique<morrow_test::LiteralPolygon>(lasso->points, lasso->triangles, lasso->edges)
             : nullptr;
}

std::unique_ptr<PickBounds> circle()
{
  const double center[2] = {500.0, 380.0};
  auto region = std::make_unique<PickCircle>();
  region->set_circle(center, 100.0);
  return region;
}

// ---------------------------------------------------------------------------------------------------------
// Measuring

std::size_t memory_in_use()
{
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

/// The targets hold for meshes from this size on.
morrow_bench::Case row_of(const benchmark::State& state, const char* name, const Targets& targets,
                          std::int64_t smallest = 1'000'000)
{
  morrow_bench::Case row;
  row.name = name;
  row.targets = morrow_bench::from_size(state, smallest, targets);
  return row;
}

/// What is measured: ours and what it is measured against. prepare runs before each of ours, untimed.
struct Race
{
  morrow_bench::Case row; // name and targets
  std::function<void()> prepare = [] {};
  std::function<void()> ours;
  std::function<void()> literal;
  std::function<void()> vtk; // null: none
};

/// The row of a race whose own time is known; the others run three times, and no more for large meshes, where
/// they take seconds.
morrow_bench::Case measured(const benchmark::State& state, const Race& race, double own)
{
  constexpr std::int64_t large = 1'000'000;
  const int runs = state.range(0) < large ? 3 : 1;
  morrow_bench::Case row = race.row;
  row.ours = own;
  row.literal = median_seconds(race.literal, runs);
  if (race.vtk != nullptr) {
    row.peer = median_seconds(race.vtk, runs);
  }
  return row;
}

void run(benchmark::State& state, MultiCellPicker& picker, LiteralMultiCellPicker& literal, vtkPointSet* data,
         const Race& race)
{
  const std::size_t before = memory_in_use();
  race.prepare();
  race.ours();
  picker.Initialize();
  const std::size_t after = memory_in_use();
  std::vector<double> times;
  for (auto _ : state) {
    race.prepare();
    const double time = processor_seconds(race.ours);
    state.SetIterationTime(time);
    times.push_back(time);
  }
  const double own = std::max(median(times), 1.0e-6); // the clock's step
  const morrow_bench::Case row = measured(state, race, own);
  const std::string different = morrow_test::difference(literal.records, picker.get_cell_picks());
  if (!different.empty()) {
    state.SkipWithError(("the results differ: " + different).c_str());
  }
  report(state, row);
  std::size_t cells = 0;
  for (const auto* record : picker.get_cell_picks()) {
    cells += record->SubPicks.size();
  }
  state.counters["found"] = static_cast<double>(cells);
  state.counters["bytes/cell"] = (static_cast<double>(after) - static_cast<double>(before)) /
                                 static_cast<double>(data->GetNumberOfCells());
}

void race_rays(benchmark::State& state, const morrow_bench::Case& row, vtkPointSet* data, double tolerance,
               bool is_first)
{
  Stage stage(data);
  vtkNew<MultiCellPicker> picker;
  vtkNew<LiteralMultiCellPicker> literal;
  vtkNew<vtkCellPicker> vtks;
  picker->SetTolerance(tolerance);
  literal->SetTolerance(tolerance);
  vtks->SetTolerance(tolerance);
  Race race;
  race.row = row;
  race.row.peer_name = "vtkCellPicker";
  if (is_first) {
    race.prepare = [data] {
      data->Modified();
      data->GetBounds();
    };
  }
  race.ours = [&] { picker->Pick(500.0, 400.0, 0.0, stage.renderer); };
  race.literal = [&] { literal->Pick(500.0, 400.0, 0.0, stage.renderer); };
  race.vtk = [&] { vtks->Pick(500.0, 400.0, 0.0, stage.renderer); };
  run(state, *picker, *literal, data, race);
}

void RayWarm(benchmark::State& state)
{
  race_rays(state, row_of(state, "ray pick", {300.0, {}, {}}), height_field(state.range(0), false), 0.01,
            false);
}

void RayThin(benchmark::State& state)
{
  race_rays(state, row_of(state, "ray pick, thin ray", {}), height_field(state.range(0), false), 1.0e-6,
            false);
}

void RayAfterAChange(benchmark::State& state)
{
  race_rays(state, row_of(state, "ray pick after a change", {20.0, {}, {}}),
            height_field(state.range(0), false), 0.01, true);
}

void RayRandomOrder(benchmark::State& state)
{
  race_rays(state, row_of(state, "ray pick, cells in random order", {35.0, {}, {}}),
            height_field(state.range(0), true), 0.01, false);
}

void RayHexahedra(benchmark::State& state)
{
  race_rays(state, row_of(state, "ray pick, hexahedra", {60.0, {}, {}}, 200'000), hexahedra(state.range(0)),
            0.01, false);
}

void race_regions(benchmark::State& state, const morrow_bench::Case& row, PickBounds& region, bool touching,
                  bool has_pointers, bool visible_only, bool is_first = false)
{
  const vtkSmartPointer<vtkPointSet> data = height_field(state.range(0), false);
  if (has_pointers) {
    set_pointers(*data);
  }
  Stage stage(data);
  vtkNew<MultiCellPicker> picker;
  vtkNew<LiteralMultiCellPicker> literal;
  literal->touching_cells = MultiCellPicker::mBoxPickAcceptPartialCells = touching;
  literal->visible_only = MultiCellPicker::mSelectVisibleOnly = visible_only;
  Race race;
  race.row = row;
  if (is_first) {
    race.prepare = [&data] {
      data->Modified();
      data->GetBounds();
    };
  }
  race.ours = [&] { picker->PickByBounds(&region, stage.renderer); };
  const std::unique_ptr<PickBounds> asked_in_turn = literal_lasso(region);
  PickBounds* for_literal = asked_in_turn != nullptr ? asked_in_turn.get() : &region;
  race.literal = [&, for_literal] { literal->pick_by_bounds(for_literal, stage.renderer); };
  vtkNew<vtkHardwareSelector> selector;
  vtkNew<vtkExtractSelectedFrustum> frustum;
  const auto* as_box = dynamic_cast<const PickBox*>(&region);
  if (visible_only) {
    stage.window->Render();
    selector->SetRenderer(stage.renderer);
    selector->SetFieldAssociation(vtkDataObject::FIELD_ASSOCIATION_CELLS);
    selector->SetArea(0, 0, kWidth - 1, kHeight - 1);
    race.row.peer_name = "vtkHardwareSelector";
    race.vtk = [&] { vtkSmartPointer<vtkSelection>::Take(selector->Select()); };
  } else if (as_box != nullptr) {
    double corners[32];
    for (int i = 0; i < 8; ++i) {
      stage.renderer->SetDisplayPoint((i & 4) != 0 ? as_box->xmax : as_box->xmin,
                                      (i & 2) != 0 ? as_box->ymax : as_box->ymin, (i & 1) != 0 ? 1.0 : 0.0);
      stage.renderer->DisplayToWorld();
      stage.renderer->GetWorldPoint(corners + 4 * i);
      for (int axis = 0; axis < 4; ++axis) {
        corners[4 * i + axis] /= corners[4 * i + 3] == 0.0 || axis == 3 ? 1.0 : corners[4 * i + 3];
      }
    }
    frustum->CreateFrustum(corners);
    frustum->SetInputData(data);
    frustum->PreserveTopologyOn();
    frustum->SetFieldType(vtkSelectionNode::CELL);
    race.row.peer_name = "vtkExtractSelectedFrustum";
    race.vtk = [&] {
      frustum->Modified();
      frustum->Update();
    };
  }
  run(state, *picker, *literal, data, race);
  MultiCellPicker::mBoxPickAcceptPartialCells = MultiCellPicker::mSelectVisibleOnly = false;
}

/// Which of the cells: whole ones of a part with several entities, touching ones, or all of one entity.
enum class Cells
{
  Whole,
  Touching,
  OneEntity
};

void region_race(benchmark::State& state, const morrow_bench::Case& row,
                 const std::unique_ptr<PickBounds>& region, Cells cells, bool visible_only = false)
{
  race_regions(state, row, *region, cells == Cells::Touching, cells == Cells::Whole, visible_only);
}

void BoxWhole10(benchmark::State& state)
{
  region_race(state, row_of(state, "box pick, a tenth", {50.0, 80.0, {}}), box(0.1), Cells::Whole);
}

void BoxWhole50(benchmark::State& state)
{
  region_race(state, row_of(state, "box pick, half", {50.0, 80.0, {}}), box(0.5), Cells::Whole);
}

void BoxTouching50(benchmark::State& state)
{
  region_race(state, row_of(state, "box pick, half, touching", {50.0, 80.0, {}}), box(0.5), Cells::Touching);
}

void BoxAll(benchmark::State& state)
{
  region_race(state, row_of(state, "box pick, one entity, all", {50.0, 80.0, {}}), box(4.0),
              Cells::OneEntity);
}

void BoxPartlyCovered(benchmark::State& state)
{
  region_race(state, row_of(state, "box pick, one entity, partly", {1000.0, {}, {}}), box(0.5),
              Cells::OneEntity);
}

void CircleWhole(benchmark::State& state)
{
  region_race(state, row_of(state, "circle pick", {50.0, {}, {}}), circle(), Cells::Whole);
}

void CircleTouching(benchmark::State& state)
{
  region_race(state, row_of(state, "circle pick, touching", {50.0, {}, {}}), circle(), Cells::Touching);
}

void LassoWhole(benchmark::State& state)
{
  region_race(state, row_of(state, "lasso pick", {50.0, {}, {}}), lasso(), Cells::Whole);
}

void LassoTouching(benchmark::State& state)
{
  region_race(state, row_of(state, "lasso pick, touching", {100.0, {}, {}}), lasso(), Cells::Touching);
}

void LassoPartlyCovered(benchmark::State& state)
{
  region_race(state, row_of(state, "lasso pick, one entity, partly", {}), lasso(), Cells::OneEntity);
}

void VisibleBox10(benchmark::State& state)
{
  region_race(state, row_of(state, "box pick, a tenth, visible", {20.0, {}, {}}), box(0.1), Cells::Whole,
              true);
}

void VisibleBoxMost(benchmark::State& state)
{
  region_race(state, row_of(state, "box pick, most, visible", {6.0, {}, {}}), box(0.9), Cells::Whole, true);
}

void VisibleLassoTouching(benchmark::State& state)
{
  region_race(state, row_of(state, "lasso pick, touching, visible", {85.0, {}, {}}), lasso(), Cells::Touching,
              true);
}

} // namespace

#define PICK_BENCHMARK(name)                                                                                 \
  BENCHMARK(name)                                                                                            \
      ->Arg(1000)                                                                                            \
      ->Arg(20'000)                                                                                          \
      ->Arg(200'000)                                                                                         \
      ->Arg(1'000'000)                                                                                       \
      ->Arg(5'000'000)                                                                                       \
      ->UseManualTime()                                                                                      \
      ->Unit(benchmark::kMillisecond)

PICK_BENCHMARK(RayWarm);
PICK_BENCHMARK(RayThin);
PICK_BENCHMARK(RayAfterAChange);
PICK_BENCHMARK(RayRandomOrder);
BENCHMARK(RayHexahedra)->Arg(1000)->Arg(200'000)->UseManualTime()->Unit(benchmark::kMillisecond);
PICK_BENCHMARK(BoxWhole10);
PICK_BENCHMARK(BoxWhole50);
PICK_BENCHMARK(BoxTouching50);
PICK_BENCHMARK(BoxAll);
PICK_BENCHMARK(BoxPartlyCovered);
PICK_BENCHMARK(CircleWhole);
PICK_BENCHMARK(CircleTouching);
PICK_BENCHMARK(LassoWhole);
PICK_BENCHMARK(LassoTouching);
PICK_BENCHMARK(LassoPartlyCovered);
PICK_BENCHMARK(VisibleBox10);
PICK_BENCHMARK(VisibleBoxMost);
PICK_BENCHMARK(VisibleLassoTouching);

BENCHMARK_MAIN();
