// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Many small entities in data groups.
//
// add_and_remove: entities join groups of 400 and leave them in random order, beside groups that walk their
// chain for each; the time of those grows with the square, so the largest size is without them. Needs no
// display.
//
// first_frame, frame, frame_after_change: squares of two triangles in one view, shown by data groups. Beside
// them, in this run and windows of one size, one actor for each, which stands in the place of the literal
// version, and one polydata for all, merged by hand; one entity changes before each frame_after_change. These
// need a display.
#include "BenchReport.h"
#include "BenchSupport.h"
#include "GDataGroup.h"
#include "GModel.h"
#include "GModelSet.h"
#include "GView.h"
#include "LiteralDataGroup.h"

#include <benchmark/benchmark.h>

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkMapper.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

using morrow_bench::median;
using morrow_bench::processor_seconds;

namespace {

constexpr std::int64_t LargestForPlain = 100'000;
constexpr int GroupSize = 400;

// ---------------------------------------------------------------------------------------------------------
// Adding and removing

std::vector<int> shuffled(std::int64_t count)
{
  std::vector<int> order(static_cast<std::size_t>(count));
  std::iota(order.begin(), order.end(), 0);
  std::shuffle(order.begin(), order.end(), std::mt19937(1));
  return order;
}

class EmptyGroup : public GDataGroup
{
public:
  GDataGroup* new_group() override { return new EmptyGroup; }
  void update_data() override {}
};

double time_ours(const std::vector<int>& order)
{
  EmptyGroup head;
  std::vector<std::unique_ptr<GDataGroupEntity>> entities(order.size());
  for (auto& entity : entities) {
    entity = std::make_unique<GDataGroupEntity>();
  }
  return processor_seconds([&] {
    for (const auto& entity : entities) {
      head.add_entity(entity.get());
    }
    for (const int leaving : order) {
      head.remove_entity(entities[static_cast<std::size_t>(leaving)].get());
    }
  });
}

double time_plain(const std::vector<int>& order)
{
  morrow_test::LiteralChain chain(GroupSize);
  return processor_seconds([&] {
    for (int entity = 0; entity < static_cast<int>(order.size()); ++entity) {
      chain.add(0, entity);
    }
    for (const int leaving : order) {
      chain.remove(0, leaving);
    }
  });
}

void add_and_remove(benchmark::State& state)
{
  static std::map<std::int64_t, double> plain_times;
  const std::vector<int> order = shuffled(state.range(0));
  std::vector<double> times;
  for (auto _ : state) {
    times.push_back(time_ours(order));
    state.SetIterationTime(times.back());
  }
  morrow_bench::Case row;
  row.name = "adding and removing entities of groups";
  row.ours = median(times);
  if (state.range(0) <= LargestForPlain) {
    row.literal = morrow_bench::once_for(state.range(0), plain_times, [&] { return time_plain(order); });
  }
  report(state, row);
}

// ---------------------------------------------------------------------------------------------------------
// Squares, and three ways to show them

struct Corner
{
  double x;
  double y;
};

/// The lower left corner of a square of a grid over the square from (-1, -1) to (1, 1).
Corner corner_of(std::int64_t square, std::int64_t count)
{
  const auto side = static_cast<std::int64_t>(std::ceil(std::sqrt(static_cast<double>(count))));
  const double step = 2.0 / static_cast<double>(side);
  return {static_cast<double>(square % side) * step - 1.0, static_cast<double>(square / side) * step - 1.0};
}

/// Places four points from this one on.
void place_square(vtkPoints& points, vtkIdType first, std::int64_t square, std::int64_t count, double z)
{
  const Corner low = corner_of(square, count);
  const double size = 1.6 / std::sqrt(static_cast<double>(count));
  points.SetPoint(first, low.x, low.y, z);
  points.SetPoint(first + 1, low.x + size, low.y, z);
  points.SetPoint(first + 2, low.x + size, low.y + size, z);
  points.SetPoint(first + 3, low.x, low.y + size, z);
  points.Modified();
}

/// Squares in one polydata.
vtkSmartPointer<vtkPolyData> make_squares(std::int64_t first, std::int64_t end, std::int64_t count)
{
  vtkNew<vtkPoints> points;
  points->SetNumberOfPoints(4 * (end - first));
  vtkNew<vtkCellArray> triangles;
  for (vtkIdType i = 0; i < end - first; ++i) {
    place_square(*points, 4 * i, first + i, count, 0.0);
    const vtkIdType lower[3] = {4 * i, 4 * i + 1, 4 * i + 2};
    const vtkIdType upper[3] = {4 * i, 4 * i + 2, 4 * i + 3};
    triangles->InsertNextCell(3, lower);
    triangles->InsertNextCell(3, upper);
  }
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetPolys(triangles);
  return data;
}

vtkSmartPointer<vtkProp> make_actor(vtkMapper* mapper)
{
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetMapper(mapper);
  return actor;
}

vtkSmartPointer<vtkProp> make_polydata_actor(vtkPolyData* data)
{
  vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputDataObject(data);
  return make_actor(mapper);
}

class Contender
{
public:
  Contender() = default;
  Contender(const Contender&) = delete;
  Contender& operator=(const Contender&) = delete;
  virtual ~Contender() = default;

  virtual void show_in(GView& view) = 0;
  /// Moves one square to this height.
  virtual void change(std::int64_t square, double z) = 0;
};

class OneActorEach : public Contender
{
public:
  explicit OneActorEach(std::int64_t count)
  {
    for (std::int64_t i = 0; i < count; ++i) {
      mSquares.push_back(make_squares(i, i + 1, count));
    }
  }
  void show_in(GView& view) override
  {
    GView::Props props;
    for (const auto& square : mSquares) {
      props.push_back(make_polydata_actor(square));
    }
    view.add_props(props);
  }
  void change(std::int64_t square, double z) override
  {
    vtkPolyData* data = mSquares[static_cast<std::size_t>(square)];
    place_square(*data->GetPoints(), 0, square, static_cast<std::int64_t>(mSquares.size()), z);
    data->Modified();
  }

private:
  std::vector<vtkSmartPointer<vtkPolyData>> mSquares;
};

class Merged : public Contender
{
public:
  explicit Merged(std::int64_t count) : mCount(count), mSquares(make_squares(0, count, count)) {}
  void show_in(GView& view) override { view.add_props({make_polydata_actor(mSquares)}); }
  void change(std::int64_t square, double z) override
  {
    place_square(*mSquares->GetPoints(), 4 * square, square, mCount, z);
    mSquares->Modified();
  }

private:
  std::int64_t mCount;
  vtkSmartPointer<vtkPolyData> mSquares;
};

struct SquareEntity : GDataGroupEntity
{
  vtkSmartPointer<vtkPolyData> data;
};

class SquareGroup : public GDataGroup
{
public:
  SquareGroup() { this->mutable_data_sets().push_back(vtkSmartPointer<vtkMultiBlockDataSet>::New()); }
  GDataGroup* new_group() override { return new SquareGroup; }
  void update_data() override
  {
    vtkMultiBlockDataSet* blocks = this->data_sets()[0];
    blocks->SetNumberOfBlocks(static_cast<unsigned int>(this->entities().size()));
    unsigned int block = 0;
    for (GDataGroupEntity* entity : this->entities()) {
      blocks->SetBlock(block++, static_cast<SquareEntity*>(entity)->data);
    }
    this->clear_modified();
  }
};

class SquareModel : public GModel
{
public:
  explicit SquareModel(std::int64_t count) : mEntities(static_cast<std::size_t>(count))
  {
    for (std::size_t i = 0; i < mEntities.size(); ++i) {
      mEntities[i] = std::make_unique<SquareEntity>();
      mEntities[i]->data =
          make_squares(static_cast<std::int64_t>(i), static_cast<std::int64_t>(i) + 1, count);
      for (vtkMultiBlockDataSet* data_set : mHead.add_entity(mEntities[i].get())) {
        this->add_part(data_set, [](vtkDataObject* data, GView* view) {
          return std::vector<vtkSmartPointer<vtkProp>>{make_actor(create_mapper(data, view))};
        });
      }
    }
  }
  void update_parts() override { mHead.update_all(this->view_props()); }
  [[nodiscard]] SquareEntity& entity(std::int64_t square)
  {
    return *mEntities[static_cast<std::size_t>(square)];
  }

private:
  SquareGroup mHead;
  std::vector<std::unique_ptr<SquareEntity>> mEntities;
};

class Groups : public Contender
{
public:
  explicit Groups(std::int64_t count) : mCount(count), mModel(count) { mSet.add_model(&mModel); }
  void show_in(GView& view) override { view.set_model_set(&mSet); }
  void change(std::int64_t square, double z) override
  {
    SquareEntity& entity = mModel.entity(square);
    place_square(*entity.data->GetPoints(), 0, square, mCount, z);
    entity.data->Modified();
    entity.modify_owning_groups();
  }

private:
  std::int64_t mCount;
  SquareModel mModel;
  GModelSet mSet;
};

// ---------------------------------------------------------------------------------------------------------
// Frames

struct FrameTimes
{
  double first;
  double frame;
  double after_change;
};

template<typename Kind>
FrameTimes measure(std::int64_t count)
{
  constexpr int NumFrames = 7;
  Kind contender(count);
  GView view;
  view.set_triad_vis(false);
  view.get_render_window()->SetSize(300, 300);
  view.render(); // the window and its first shaders are nobody's
  vtkCamera* camera = view.get_renderer()->GetActiveCamera();
  camera->ParallelProjectionOn();
  camera->SetParallelScale(1.0);
  const auto frame = [&] {
    return processor_seconds([&] {
      view.render();
      view.get_render_window()->WaitForCompletion();
    });
  };
  FrameTimes times{};
  times.first = processor_seconds([&] {
    contender.show_in(view);
    frame();
  });
  std::vector<double> plain;
  std::vector<double> changed;
  for (int i = 0; i < NumFrames; ++i) {
    plain.push_back(frame());
    changed.push_back(processor_seconds([&] {
      contender.change(count / 2, 0.001 * (i + 1));
      frame();
    }));
  }
  times.frame = median(plain);
  times.after_change = median(changed);
  view.set_model_set(nullptr);
  return times;
}

struct Column
{
  const char* name;
  double FrameTimes::*time;
};

void frames(benchmark::State& state, const Column& column)
{
  static std::map<std::int64_t, FrameTimes> actors;
  static std::map<std::int64_t, FrameTimes> merged;
  static std::map<std::int64_t, FrameTimes> groups;
  const std::int64_t count = state.range(0);
  if (groups.count(count) == 0) {
    actors[count] = measure<OneActorEach>(count);
    merged[count] = measure<Merged>(count);
    groups[count] = measure<Groups>(count);
  }
  morrow_bench::Case row;
  row.name = column.name;
  row.ours = groups[count].*column.time;
  row.literal = actors[count].*column.time;
  row.peer_name = "one vtkPolyData";
  row.peer = merged[count].*column.time;
  constexpr double nearly_merged = 0.77; // within 1.3 times
  row.targets = morrow_bench::from_size(state, 10'000, {{}, nearly_merged, {}});
  for (auto _ : state) {
    state.SetIterationTime(row.ours);
  }
  report(state, row);
}

void frame_sizes(benchmark::internal::Benchmark* benchmark)
{
  benchmark->Arg(1'000)->Arg(10'000)->Arg(50'000)->UseManualTime()->Iterations(1)->Unit(
      benchmark::kMillisecond);
}

BENCHMARK(add_and_remove)
    ->Arg(1'000)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(frames, first_frame, Column{"first frame of entities", &FrameTimes::first})
    ->Apply(frame_sizes);
BENCHMARK_CAPTURE(frames, frame, Column{"frame of entities", &FrameTimes::frame})->Apply(frame_sizes);
BENCHMARK_CAPTURE(frames, frame_after_change,
                  Column{"frame after one entity changed", &FrameTimes::after_change})
    ->Apply(frame_sizes);

} // namespace

BENCHMARK_MAIN();
