// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GLabelMapper.h"
#include "LabelRecorder.h"
#include "ViewFixture.h"

#include <vtkActor2D.h>
#include <vtkCommand.h>
#include <vtkCullerCollection.h>
#include <vtkNew.h>
#include <vtk_glew.h>

/// What the tests of label mappers share.
namespace morrow_test {

using Texts = std::vector<std::string>;
using TestModel = ScriptedModel;
using VtkMayLeak = LeaksIgnored; ///< where an exception passes through VTK

/// A label's strokes are thin and fade into the background.
inline bool is_red(Rgb pixel)
{
  return pixel.r > 120 && pixel.g < 100 && pixel.b < 100;
}

/// A prop that does what a test wants when overlays are drawn.
inline vtkSmartPointer<CallingProp> overlay_hook(CallingProp::Function action)
{
  auto hook = CallingProp::make();
  hook->on_overlay = std::move(action);
  return hook;
}

inline unsigned long depth_reads()
{
  return zBufferHelper::instance().depth_reads();
}

inline bool is_watched(vtkRenderWindow* window)
{
  return window->HasObserver(vtkCommand::EndEvent, &zBufferHelper::instance()) != 0;
}

/// How many textures there are in the window's context.
inline int num_textures(vtkRenderWindow* window)
{
  window->MakeCurrent();
  GLuint end = 0; // names count upwards
  glGenTextures(1, &end);
  glDeleteTextures(1, &end);
  int count = 0;
  for (GLuint name = 1; name < end; ++name) {
    count += glIsTexture(name) != GL_FALSE ? 1 : 0;
  }
  return count;
}

/// A window of 100 × 100 pixels that shows x and y from −1 to 1; depth 0 is at z = 5, depth 1 at z = −5, so
/// that depth = (5 − z) / 10.
class GLabelDrawingTest : public RenderTest
{
protected:
  void SetUp() override
  {
    RenderTest::SetUp();
    mScene.look_down(1.0);
    prepare(*mScene.renderer());
    mMapper = add_mapper(*mScene.renderer());
  }

  static void prepare(vtkRenderer& renderer) { renderer.GetCullers()->RemoveAllItems(); }

  vtkSmartPointer<GLabelMapper> add_mapper(vtkRenderer& renderer)
  {
    auto mapper = vtkSmartPointer<GLabelMapper>::New();
    mapper->set_model(&mModel);
    const vtkNew<vtkActor2D> actor;
    actor->SetMapper(mapper);
    renderer.AddViewProp(actor);
    return mapper;
  }

  long long add(const char* text, double x, double y, double z, BrantColor color = BRANT_RED)
  {
    return mMapper->add_point({x, y, z}, text, color);
  }

  /// A green rectangle of this depth over the whole picture.
  vtkSmartPointer<vtkActor> add_wall(vtkRenderer& renderer, double z = 0.0)
  {
    auto wall = flat_actor(quad(-1.0, -1.0, 1.0, 1.0, z), kGreen);
    renderer.AddViewProp(wall);
    return wall;
  }
  vtkSmartPointer<vtkActor> add_wall(double z = 0.0) { return add_wall(*mScene.renderer(), z); }

  void add_hook(std::function<void()> action)
  {
    mScene.renderer()->AddViewProp(overlay_hook(std::move(action)));
  }

  /// The texts drawn in a frame.
  Texts frame() { return frame(mScene.window()); }
  Texts frame(vtkRenderWindow* window)
  {
    mRecorder.clear();
    window->Render();
    return mRecorder.texts();
  }

  LabelRecorder mRecorder;
  TestModel mModel;
  WarningDisplayOn mWarnings; // which the model has switched off
  Scene mScene{100, 100};
  vtkSmartPointer<GLabelMapper> mMapper;
};

} // namespace morrow_test
