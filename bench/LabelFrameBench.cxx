// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Frames of a model's labels on a surface that hides some of them, beside the literal way (a vtkTextMapper
// for each label, and one read of the depth buffer) and a vtkTextActor for each label, which hides none. The
// camera moves from frame to frame. Each frame's time is that of the whole frame; the surface takes the same
// part of all three. Ours and the literal version are compared as pictures. Needs a display.
#include "BenchReport.h"
#include "BenchScene.h"
#include "BenchSupport.h"
#include "BrantColor.h"
#include "BrantVector.h"
#include "GModel.h"
#include "GModelSet.h"
#include "LabelOracle.h"

#include <benchmark/benchmark.h>

#include <vtkActor.h>
#include <vtkActor2D.h>
#include <vtkCamera.h>
#include <vtkCoordinate.h>
#include <vtkFloatArray.h>
#include <vtkMapper2D.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPolyData.h>
#include <vtkPropCollection.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <vtkTextActor.h>
#include <vtkTextMapper.h>
#include <vtkTextProperty.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

using morrow_bench::median;
using morrow_bench::PlainWindow;
using morrow_bench::processor_seconds;
using morrow_bench::ViewWindow;

namespace {

/// The labels and the surface that they stand on.
struct Scene
{
  vtkSmartPointer<vtkPolyData> surface = morrow_bench::triangles(20'000, morrow_bench::height_field);
  std::vector<BrantVector> points;
  std::vector<std::string> texts;

  explicit Scene(std::int64_t count)
  {
    for (std::int64_t i = 0; i < count; ++i) {
      const double golden = 0.6180339887498949 * static_cast<double>(i);
      double point[3];
      morrow_bench::height_field(static_cast<double>(i) / static_cast<double>(count),
                                 golden - std::floor(golden), point);
      points.emplace_back(point);
      texts.push_back("label " + std::to_string(10'000 + i)); // eleven characters
    }
  }
};

/// Unlit: a view has lights of its own.
vtkSmartPointer<vtkActor> surface_of(const Scene& scene)
{
  auto actor = morrow_bench::actor_of(scene.surface);
  actor->GetProperty()->LightingOff();
  return actor;
}

// ---------------------------------------------------------------------------------------------------------
// Contenders

class OurLabels
{
public:
  explicit OurLabels(const Scene& scene) : mScene(scene)
  {
    mSet.add_view(&mWindow.view());
    mSet.add_model(&mModel);
    mWindow.view().add_props({surface_of(scene)});
  }

  void add_labels()
  {
    for (std::size_t i = 0; i < mScene.points.size(); ++i) {
      mModel.add_label(mScene.texts[i].c_str(), mScene.points[i], BRANT_RED);
    }
  }

  [[nodiscard]] ViewWindow& window() { return mWindow; }

private:
  class Model : public GModel
  {
  public:
    void update_parts() override {}
  };

  const Scene& mScene;
  ViewWindow mWindow;
  GModelSet mSet;
  Model mModel;
};

void set_look(vtkTextProperty& property)
{
  property.ShallowCopy(GModel::text_property());
  property.SetColor(1.0, 0.0, 0.0);
}

/// A text mapper for each label; what is not hidden is drawn, one after the other.
class LiteralMapper : public vtkMapper2D
{
public:
  static LiteralMapper* New();
  vtkTypeMacro(LiteralMapper, vtkMapper2D)
  LiteralMapper(const LiteralMapper&) = delete;
  void operator=(const LiteralMapper&) = delete;

  void add(const BrantVector& point, const std::string& text)
  {
    mPoints.push_back(point);
    mMappers.push_back(vtkSmartPointer<vtkTextMapper>::New());
    mMappers.back()->SetInput(text.c_str());
    set_look(*mMappers.back()->GetTextProperty());
  }

  void RenderOverlay(vtkViewport* viewport, vtkActor2D* actor) override
  {
    auto* renderer = vtkRenderer::SafeDownCast(viewport);
    vtkRenderWindow* window = renderer->GetRenderWindow();
    morrow_test::LabelFrame frame;
    frame.matrix = renderer->GetActiveCamera()->GetCompositeProjectionTransformMatrix(
        renderer->GetTiledAspectRatio(), 0.0, 1.0);
    frame.width = window->GetSize()[0];
    frame.height = window->GetSize()[1];
    vtkNew<vtkFloatArray> depth;
    window->GetZbufferData(0, 0, frame.width, frame.height, depth);
    frame.depth = depth->GetPointer(0);
    actor->GetPositionCoordinate()->SetCoordinateSystemToWorld();
    for (std::size_t i = 0; i < mPoints.size(); ++i) {
      const double point[3] = {mPoints[i].x(), mPoints[i].y(), mPoints[i].z()};
      if (morrow_test::is_label_visible(frame, point)) {
        actor->GetPositionCoordinate()->SetValue(point[0], point[1], point[2]);
        mMappers[i]->RenderOverlay(viewport, actor);
      }
    }
  }

  void ReleaseGraphicsResources(vtkWindow* window) override
  {
    for (const auto& mapper : mMappers) {
      mapper->ReleaseGraphicsResources(window);
    }
  }

protected:
  LiteralMapper() = default;
  ~LiteralMapper() override = default;

private:
  std::vector<BrantVector> mPoints;
  std::vector<vtkSmartPointer<vtkTextMapper>> mMappers;
};

vtkStandardNewMacro(LiteralMapper)

class LiteralLabels
{
public:
  explicit LiteralLabels(const Scene& scene) : mScene(scene)
  {
    mWindow.renderer().AddViewProp(surface_of(scene));
  }

  void add_labels()
  {
    vtkNew<LiteralMapper> mapper;
    for (std::size_t i = 0; i < mScene.points.size(); ++i) {
      mapper->add(mScene.points[i], mScene.texts[i]);
    }
    vtkNew<vtkActor2D> actor;
    actor->SetMapper(mapper);
    mWindow.renderer().AddViewProp(actor);
  }

  [[nodiscard]] PlainWindow& window() { return mWindow; }

private:
  const Scene& mScene;
  PlainWindow mWindow;
};

class TextActors
{
public:
  explicit TextActors(const Scene& scene) : mScene(scene)
  {
    mWindow.renderer().AddViewProp(surface_of(scene));
  }

  // As AddViewProp(), without its search, which takes longer than all else.
  void add_labels()
  {
    for (std::size_t i = 0; i < mScene.points.size(); ++i) {
      vtkNew<vtkTextActor> actor;
      actor->SetInput(mScene.texts[i].c_str());
      set_look(*actor->GetTextProperty());
      const BrantVector& point = mScene.points[i];
      actor->GetPositionCoordinate()->SetCoordinateSystemToWorld();
      actor->GetPositionCoordinate()->SetValue(point.x(), point.y(), point.z());
      mWindow.renderer().GetViewProps()->AddItem(actor);
      actor->AddConsumer(&mWindow.renderer());
    }
  }

  [[nodiscard]] PlainWindow& window() { return mWindow; }

private:
  const Scene& mScene;
  PlainWindow mWindow;
};

// ---------------------------------------------------------------------------------------------------------
// Measuring

/// The labels have just been added to a window that has shown the surface.
template<typename Labels>
double time_first_frame(Labels& labels)
{
  labels.window().render();
  labels.add_labels();
  return processor_seconds([&] { labels.window().render(); });
}

template<typename Labels>
double time_frame(Labels& labels)
{
  labels.window().renderer().GetActiveCamera()->Azimuth(1.0);
  return processor_seconds([&] { labels.window().render(); });
}

std::vector<unsigned char> without_labels(const Scene& scene)
{
  PlainWindow bare;
  bare.renderer().AddViewProp(surface_of(scene));
  bare.render();
  return morrow_bench::pixels_of(bare.window());
}

/// Whether both show the same, and labels.
bool pictures_agree(OurLabels& ours, LiteralLabels& literal, const Scene& scene)
{
  const std::vector<unsigned char> picture = morrow_bench::pixels_of(ours.window().window());
  return morrow_bench::look_the_same(picture, morrow_bench::pixels_of(literal.window().window())) &&
         !morrow_bench::look_the_same(picture, without_labels(scene));
}

struct Times
{
  std::vector<double> ours;
  std::vector<double> literal;
  std::vector<double> actors;
};

morrow_bench::Case row_of(const char* name, const Times& times)
{
  morrow_bench::Case row;
  row.name = name;
  row.ours = median(times.ours);
  row.literal = median(times.literal);
  row.peer_name = "vtkTextActor";
  row.peer = median(times.actors);
  return row;
}

void first_frame(benchmark::State& state)
{
  const Scene scene(state.range(0));
  Times times;
  for (auto _ : state) {
    OurLabels ours(scene);
    times.ours.push_back(time_first_frame(ours));
    state.SetIterationTime(times.ours.back());
    LiteralLabels literal(scene);
    times.literal.push_back(time_first_frame(literal));
    TextActors actors(scene);
    times.actors.push_back(time_first_frame(actors));
    if (!pictures_agree(ours, literal, scene)) {
      state.SkipWithError("the pictures differ");
      return;
    }
  }
  morrow_bench::Case row = row_of("first frame with labels", times);
  row.targets = morrow_bench::from_size(state, 10'000, {2.4, 1.0, {}});
  report(state, row);
}

// All in turn, so that they meet the same machine.
void frame(benchmark::State& state)
{
  const Scene scene(state.range(0));
  OurLabels ours(scene);
  time_first_frame(ours);
  LiteralLabels literal(scene);
  time_first_frame(literal);
  TextActors actors(scene);
  time_first_frame(actors);
  if (!pictures_agree(ours, literal, scene)) {
    state.SkipWithError("the pictures differ");
    return;
  }
  Times times;
  for (auto _ : state) {
    times.ours.push_back(time_frame(ours));
    state.SetIterationTime(times.ours.back());
    times.literal.push_back(time_frame(literal));
    times.actors.push_back(time_frame(actors));
  }
  morrow_bench::Case row = row_of("frame with labels, camera moved", times);
  row.targets = morrow_bench::from_size(state, 10'000, {4.5, 1.0, {}});
  report(state, row);
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
  benchmark->Arg(1'000)->Arg(10'000)->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(first_frame)->Apply(sizes);
BENCHMARK(frame)->Apply(sizes);

} // namespace

BENCHMARK_MAIN();
