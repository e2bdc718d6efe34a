// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Adding props to a view and removing them, beside vtkRenderer::AddViewProp and RemoveViewProp on the same
// props in the same order. VTK's times grow with the square, so the largest size is without them. Needs no
// display.
#include "BenchReport.h"
#include "BenchSupport.h"
#include "GModel.h"
#include "GView.h"

#include <benchmark/benchmark.h>

#include <vtkActor.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkPropCollection.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

using morrow_bench::processor_seconds;

namespace {

using Props = GView::Props;

constexpr std::int64_t LargestForVtk = 10'000;

Props make_actors(std::int64_t count)
{
  Props props;
  for (std::int64_t i = 0; i < count; ++i) {
    props.emplace_back(vtkSmartPointer<vtkActor>::New());
  }
  return props;
}

// ---------------------------------------------------------------------------------------------------------
// Heap

enum class Heap
{
  Fresh,    // the elements of VTK's list lie one behind the other, as in a program that has just started
  Scattered // they lie anywhere, as in one that has been at work for hours
};

/// Leaves holes of the size of a list element all over the heap, in random order, for the elements to fall
/// into.
class HeapHoles
{
public:
  HeapHoles(Heap heap, std::int64_t count)
  {
    if (heap == Heap::Fresh) {
      return;
    }
    std::vector<std::unique_ptr<char[]>> holes;
    for (std::int64_t i = 0; i < 2 * count; ++i) {
      holes.push_back(std::make_unique<char[]>(2 * sizeof(void*)));
      mBetween.push_back(std::make_unique<char[]>(1000));
    }
    std::shuffle(holes.begin(), holes.end(), std::mt19937(1));
    while (!holes.empty()) {
      holes.pop_back();
    }
  }

private:
  std::vector<std::unique_ptr<char[]>> mBetween;
};

// ---------------------------------------------------------------------------------------------------------
// The two contenders

class ThroughView
{
public:
  void add(const Props& props) { mView.add_props(props); }
  void remove(const Props& props) { mView.remove_props(props); }
  void fill(const Props& props) { mView.add_props(props); }

private:
  GView mView;
};

class ThroughVtk
{
public:
  void add(const Props& props)
  {
    for (const auto& prop : props) {
      mRenderer->AddViewProp(prop);
    }
  }
  void remove(const Props& props)
  {
    for (const auto& prop : props) {
      mRenderer->RemoveViewProp(prop);
    }
  }
  // As add(), without its search: only the removal is to be timed.
  void fill(const Props& props)
  {
    for (const auto& prop : props) {
      mRenderer->GetViewProps()->AddItem(prop);
      prop->AddConsumer(mRenderer);
    }
  }

private:
  vtkNew<vtkRenderer> mRenderer;
};

enum class Order
{
  First, // the first of the list leaves first: VTK finds it at once
  Last,  // the last one leaves first: VTK's search is longest
  Any
};

Props in_order(Props props, Order order)
{
  if (order == Order::Last) {
    std::reverse(props.begin(), props.end());
  } else if (order == Order::Any) {
    std::shuffle(props.begin(), props.end(), std::mt19937(2));
  }
  return props;
}

template<typename Contender>
double time_adding(const Props& props)
{
  Contender contender;
  return processor_seconds([&] { contender.add(props); });
}

template<typename Contender>
double time_removing(const Props& props, const Props& leaving)
{
  Contender contender;
  contender.fill(props);
  return processor_seconds([&] { contender.remove(leaving); });
}

/// The times of VTK's way, of which a benchmark measures each once.
using Known = std::map<std::int64_t, double>;

template<typename Ours, typename Vtk>
void compare(benchmark::State& state, morrow_bench::Case row, Known& vtk_times, Ours&& ours, Vtk&& vtk)
{
  std::vector<double> times;
  for (auto _ : state) {
    const double time = ours();
    state.SetIterationTime(time);
    times.push_back(time);
  }
  row.ours = morrow_bench::median(times);
  row.peer_name = "vtkRenderer";
  if (state.range(0) <= LargestForVtk) {
    row.peer = morrow_bench::once_for(state.range(0), vtk_times, vtk);
  }
  report(state, row);
}

/// The gain grows with the number; the target is that of the largest one that VTK is measured with.
morrow_bench::Case named(const benchmark::State& state, const std::string& name, std::optional<double> target)
{
  morrow_bench::Case row;
  row.name = name;
  if (state.range(0) == LargestForVtk) {
    row.targets.peer = target;
  }
  return row;
}

// ---------------------------------------------------------------------------------------------------------
// Benchmarks

void add_props(benchmark::State& state, Heap heap)
{
  static std::map<Heap, Known> vtk_times;
  const Props props = make_actors(state.range(0));
  const HeapHoles holes(heap, state.range(0));
  const std::string name = heap == Heap::Scattered ? "adding props, scattered heap" : "adding props";
  compare(
      state, named(state, name, 50.0), vtk_times[heap], [&] { return time_adding<ThroughView>(props); },
      [&] { return time_adding<ThroughVtk>(props); });
}

struct Removal
{
  const char* name;
  Heap heap;
  Order order;
  std::optional<double> target;
};

void remove_props(benchmark::State& state, const Removal& removal)
{
  static std::map<std::string, Known> vtk_times;
  const Props props = make_actors(state.range(0));
  const Props leaving = in_order(props, removal.order);
  const HeapHoles holes(removal.heap, state.range(0));
  compare(
      state, named(state, removal.name, removal.target), vtk_times[removal.name],
      [&] { return time_removing<ThroughView>(props, leaving); },
      [&] { return time_removing<ThroughVtk>(props, leaving); });
}

Props one_actor(vtkDataObject* /*data*/, GView* /*view*/)
{
  return {vtkSmartPointer<vtkActor>::New()};
}

/// A model of parts with one actor each, shown in one view.
class ModelInView : public GModel
{
public:
  explicit ModelInView(std::int64_t num_parts)
  {
    this->add_view(&mView);
    for (std::int64_t i = 0; i < num_parts; ++i) {
      this->add_part(vtkNew<vtkPolyData>(), one_actor);
    }
  }
  ~ModelInView() override { this->remove_view(&mView); }

  void update_parts() override {}

private:
  GView mView;
};

/// The plain way to keep the same: the props by part, and VTK's call for each as its part goes.
class PlainModel
{
public:
  explicit PlainModel(std::int64_t num_parts)
  {
    for (std::int64_t i = 0; i < num_parts; ++i) {
      const auto props = one_actor(nullptr, nullptr);
      mRenderer.fill(props);
      mParts.emplace(vtkSmartPointer<vtkPolyData>::New(), props);
    }
  }

  void clear()
  {
    while (!mParts.empty()) {
      mRenderer.remove(mParts.begin()->second);
      mParts.erase(mParts.begin());
    }
  }

private:
  ThroughVtk mRenderer;
  std::map<vtkSmartPointer<vtkPolyData>, Props> mParts;
};

template<typename Model>
double time_clearing(std::int64_t num_parts)
{
  Model model(num_parts);
  return processor_seconds([&] { model.clear(); });
}

void clear_model(benchmark::State& state)
{
  static Known vtk_times;
  compare(
      state, named(state, "clearing a model with one prop a part", {}), vtk_times,
      [&] { return time_clearing<ModelInView>(state.range(0)); },
      [&] { return time_clearing<PlainModel>(state.range(0)); });
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
  benchmark->Arg(1'000)->Arg(10'000)->Arg(50'000)->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(add_props, fresh_heap, Heap::Fresh)->Apply(sizes);
BENCHMARK_CAPTURE(add_props, scattered_heap, Heap::Scattered)->Apply(sizes);
BENCHMARK_CAPTURE(remove_props, first_to_last,
                  Removal{"removing props, first to last", Heap::Fresh, Order::First, {}})
    ->Apply(sizes);
BENCHMARK_CAPTURE(remove_props, last_to_first,
                  Removal{"removing props, last to first", Heap::Fresh, Order::Last, 50.0})
    ->Apply(sizes);
BENCHMARK_CAPTURE(remove_props, any_order,
                  Removal{"removing props, any order", Heap::Fresh, Order::Any, 50.0})
    ->Apply(sizes);
BENCHMARK_CAPTURE(remove_props, any_order_scattered_heap,
                  Removal{"removing props, any order, scattered heap", Heap::Scattered, Order::Any, 50.0})
    ->Apply(sizes);
BENCHMARK(clear_model)->Apply(sizes);

} // namespace

BENCHMARK_MAIN();
