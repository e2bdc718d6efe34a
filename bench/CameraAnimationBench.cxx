// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// What a frame of an animated camera operation costs, beside a plain loop that turns the same camera, fits
// the clipping range and renders the same window. The window is small, so that the frames weigh little; in
// the second benchmark there is no window at all, and what is left is the animation itself. The size is the
// number of props. The first one needs a display.
#include "BenchReport.h"
#include "BenchScene.h"
#include "BenchSupport.h"
#include "GView.h"

#include <benchmark/benchmark.h>

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <cstdint>
#include <vector>

using morrow_bench::median;
using morrow_bench::processor_seconds;
using morrow_bench::ViewWindow;

namespace {

constexpr double Degrees = 1.0; // in each frame

GView::Props tiles(std::int64_t count)
{
  const auto tile = morrow_bench::triangles(2, morrow_bench::height_field);
  GView::Props props;
  for (std::int64_t i = 0; i < count; ++i) {
    props.emplace_back(morrow_bench::actor_of(tile));
  }
  return props;
}

void animate(GView& view, int frames)
{
  view.rotate_about_target(Degrees * frames, 'y', frames, 0);
}

template<typename Render>
void turn(vtkRenderer& renderer, int frames, Render&& render)
{
  for (int i = 0; i < frames; ++i) {
    renderer.GetActiveCamera()->Azimuth(Degrees);
    renderer.GetActiveCamera()->OrthogonalizeViewUp();
    renderer.ResetCameraClippingRange();
    render();
  }
}

/// Measures ours and a plain loop in turn, both of so many frames.
template<typename Ours, typename Plain>
void compare(benchmark::State& state, morrow_bench::Case row, int frames, Ours&& ours, Plain&& plain)
{
  std::vector<double> own;
  std::vector<double> vtks;
  for (auto _ : state) {
    const double time = processor_seconds(ours);
    state.SetIterationTime(time);
    own.push_back(time / frames);
    vtks.push_back(processor_seconds(plain) / frames);
  }
  row.ours = median(own);
  row.peer_name = "vtkCamera";
  row.peer = median(vtks);
  report(state, row);
}

void in_a_window(benchmark::State& state)
{
  constexpr int frames = 20;
  constexpr int pixels = 32;
  ViewWindow window(pixels, pixels);
  window.view().add_props(tiles(state.range(0)));
  window.render();
  morrow_bench::Case row;
  row.name = "animated frame, small window";
  row.targets.peer = 0.98;
  compare(
      state, row, frames, [&] { animate(window.view(), frames); },
      [&] { turn(window.renderer(), frames, [&] { window.window().Render(); }); });
}

void without_a_window(benchmark::State& state)
{
  constexpr int frames = 100;
  GView view;
  view.set_triad_vis(false);
  view.set_render_window(nullptr);
  view.add_props(tiles(state.range(0)));
  morrow_bench::Case row;
  row.name = "animated step, no window";
  compare(
      state, row, frames, [&] { animate(view, frames); }, [&] { turn(*view.get_renderer(), frames, [] {}); });
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
  benchmark->Arg(1)->Arg(1'000)->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(in_a_window)->Apply(sizes);
BENCHMARK(without_a_window)->Apply(sizes);

} // namespace

BENCHMARK_MAIN();
