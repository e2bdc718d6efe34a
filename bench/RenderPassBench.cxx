// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Frames drawn by the views' render pass beside those of VTK's default pipeline: the same renderer, window
// and props, one frame with the pass and one without in turn. The pictures are compared. Needs a display.
#include "BenchReport.h"
#include "BenchScene.h"
#include "BenchSupport.h"
#include "GViewRenderPass.h"

#include <benchmark/benchmark.h>

#include <vtkActor.h>
#include <vtkMapper.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPolyData.h>
#include <vtkPropCollection.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

using morrow_bench::PlainWindow;

namespace {

// ---------------------------------------------------------------------------------------------------------
// Scenes

using Actors = std::vector<vtkSmartPointer<vtkActor>>;

/// A height field of so many triangles with its wireframe a little above.
Actors surface_and_wireframe(std::int64_t num_triangles)
{
  const auto data = morrow_bench::triangles(num_triangles, morrow_bench::height_field);
  Actors actors = {morrow_bench::actor_of(data), morrow_bench::actor_of(data)};
  actors.back()->GetProperty()->SetRepresentationToWireframe();
  actors.back()->GetProperty()->SetColor(1.0, 0.0, 0.0);
  actors.back()->SetPosition(0.0, 0.0, 0.002);
  return actors;
}

/// So many small tiles of two triangles each, one beside the other, each with a mapper of its own.
Actors tiles(std::int64_t count)
{
  const auto side = static_cast<std::int64_t>(std::ceil(std::sqrt(static_cast<double>(count))));
  const double width = 2.0 / static_cast<double>(side);
  const auto tile = morrow_bench::triangles(2, morrow_bench::height_field);
  Actors actors;
  for (std::int64_t i = 0; i < count; ++i) {
    actors.push_back(morrow_bench::actor_of(tile));
    actors.back()->SetScale(0.4 * width);
    actors.back()->SetPosition((static_cast<double>(i % side) + 0.5) * width - 1.0,
                               (static_cast<double>(i / side) + 0.5) * width - 1.0, 0.0);
  }
  return actors;
}

/// It has bounds and nothing else.
class EmptyMapper : public vtkMapper
{
public:
  static EmptyMapper* New();
  vtkTypeMacro(EmptyMapper, vtkMapper)
  EmptyMapper(const EmptyMapper&) = delete;
  void operator=(const EmptyMapper&) = delete;

  using vtkMapper::GetBounds;
  double* GetBounds() override { return mBounds; }
  void Render(vtkRenderer* /*renderer*/, vtkActor* /*actor*/) override {}
  bool HasOpaqueGeometry() override { return true; }
  bool HasTranslucentPolygonalGeometry() override { return false; }

protected:
  EmptyMapper() = default;
  ~EmptyMapper() override = default;

private:
  double mBounds[6] = {-1.0, 1.0, -1.0, 1.0, -1.0, 1.0};
};

vtkStandardNewMacro(EmptyMapper)

Actors empty_actors(std::int64_t count)
{
  Actors actors(static_cast<std::size_t>(count));
  for (auto& actor : actors) {
    actor = vtkSmartPointer<vtkActor>::New();
    actor->SetMapper(vtkNew<EmptyMapper>());
  }
  return actors;
}

// ---------------------------------------------------------------------------------------------------------
// Measuring

/// One window that draws its frames either way.
class Contest
{
public:
  explicit Contest(const Actors& actors)
  {
    for (const auto& actor : actors) {
      mWindow.renderer().GetViewProps()->AddItem(actor);
      actor->AddConsumer(&mWindow.renderer());
    }
  }

  double time_ours() { return this->time_frame(mPass); }
  double time_vtks() { return this->time_frame(nullptr); }

  bool pictures_agree()
  {
    this->time_ours();
    const std::vector<unsigned char> ours = morrow_bench::pixels_of(mWindow.window());
    this->time_vtks();
    return morrow_bench::look_the_same(ours, morrow_bench::pixels_of(mWindow.window()));
  }

private:
  double time_frame(vtkRenderPass* pass)
  {
    mWindow.renderer().SetPass(pass);
    return morrow_bench::processor_seconds([this] { mWindow.render(); });
  }

  PlainWindow mWindow;
  vtkNew<GViewRenderPass> mPass;
};

void run(benchmark::State& state, morrow_bench::Case row, const Actors& actors)
{
  Contest contest(actors);
  if (!contest.pictures_agree()) {
    state.SkipWithError("the pictures differ");
    return;
  }
  std::vector<double> ours;
  std::vector<double> vtks;
  for (auto _ : state) {
    vtks.push_back(contest.time_vtks());
    ours.push_back(contest.time_ours());
    state.SetIterationTime(ours.back());
  }
  row.ours = morrow_bench::median(ours);
  row.peer_name = "vtkRenderer";
  row.peer = morrow_bench::median(vtks);
  report(state, row);
}

constexpr double NoSlower = 0.98;

void few_props(benchmark::State& state)
{
  morrow_bench::Case row;
  row.name = "frame of a surface and its wireframe";
  row.targets = morrow_bench::from_size(state, 20'000, {{}, NoSlower, {}});
  run(state, row, surface_and_wireframe(state.range(0)));
}

void many_props(benchmark::State& state)
{
  constexpr std::int64_t many = 10'000;
  constexpr double faster = 1.18;
  morrow_bench::Case row;
  row.name = "frame of small actors";
  row.targets = {{}, state.range(0) < many ? NoSlower : faster, {}};
  run(state, row, tiles(state.range(0)));
}

// What is left is the loops over the props.
void empty_props(benchmark::State& state)
{
  morrow_bench::Case row;
  row.name = "frame of actors that draw nothing";
  run(state, row, empty_actors(state.range(0)));
}

BENCHMARK(few_props)->Arg(1'000)->Arg(20'000)->Arg(1'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(many_props)->Arg(1'000)->Arg(2'000)->Arg(10'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(empty_props)->Arg(1'000)->Arg(10'000)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
