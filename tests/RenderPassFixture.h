// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GViewRenderPass.h"
#include "ViewFixture.h"

#include <vtkActor2D.h>
#include <vtkCullerCollection.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkNew.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkProperty2D.h>
#include <vtk_glew.h>

/// What the tests of the views' render pass share.
namespace morrow_test {

using Log = std::vector<std::string>;

// --- Props that say what is asked of them ----------------------------------------------------------------

inline bool writes_colour()
{
  GLboolean mask[4] = {GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE};
  glGetBooleanv(GL_COLOR_WRITEMASK, mask);
  return mask[0] != GL_FALSE && mask[1] != GL_FALSE && mask[2] != GL_FALSE && mask[3] != GL_FALSE;
}

inline bool writes_no_colour()
{
  GLboolean mask[4] = {GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE};
  glGetBooleanv(GL_COLOR_WRITEMASK, mask);
  return mask[0] == GL_FALSE && mask[1] == GL_FALSE && mask[2] == GL_FALSE && mask[3] == GL_FALSE;
}

/// A prop that draws nothing and writes down "<name>.<call>"; an opaque call while no colour is written is
/// "<name>.depth", one while only some channels are is "<name>.mixed".
template<typename Base>
class Recording : public Base
{
public:
  static vtkSmartPointer<Recording> make(Log& log, const std::string& name)
  {
    auto* prop = new Recording(log, name);
    prop->InitializeObjectBase();
    return vtkSmartPointer<Recording>::Take(prop);
  }
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

  /// What happens in a call of this name, after it has been written down.
  std::function<void(const std::string& call)> on_call;
  bool is_translucent = false;
  int result = 1;
  vtkViewport* viewport = nullptr; // of the last call

  int RenderOpaqueGeometry(vtkViewport* seen_by) override
  {
    viewport = seen_by;
    note(writes_colour() ? "opaque" : writes_no_colour() ? "depth" : "mixed");
    return result;
  }
  vtkTypeBool HasTranslucentPolygonalGeometry() override
  {
    note("asked");
    return is_translucent;
  }
  int RenderTranslucentPolygonalGeometry(vtkViewport* seen_by) override
  {
    viewport = seen_by;
    note("translucent");
    return 0;
  }
  int RenderOverlay(vtkViewport* seen_by) override
  {
    viewport = seen_by;
    note("overlay");
    return result;
  }

protected:
  Recording(Log& log, const std::string& name) : mLog(log), mName(name) {}
  ~Recording() override = default;

private:
  void note(const std::string& call)
  {
    mLog.push_back(mName + "." + call);
    if (on_call) {
      on_call(call);
    }
  }

  Log& mLog;
  std::string mName;
};

using RecordingActor = Recording<vtkActor>;
using RecordingProp = Recording<vtkProp>;

/// Throws std::runtime_error in a call of this name.
template<typename Base>
void throw_in(Recording<Base>& prop, const std::string& where, const std::string& what)
{
  prop.on_call = [=](const std::string& call) {
    if (call == where) {
      throw std::runtime_error(what);
    }
  };
}

inline std::string message_of(const std::exception_ptr& exception)
{
  try {
    if (exception != nullptr) {
      std::rethrow_exception(exception);
    }
  } catch (const std::exception& caught) {
    return caught.what();
  } catch (...) {
    return "(not a std::exception)";
  }
  return "(none)";
}

inline vtkInformation& keys_of(vtkProp& prop)
{
  if (prop.GetPropertyKeys() == nullptr) {
    prop.SetPropertyKeys(vtkSmartPointer<vtkInformation>::New());
  }
  return *prop.GetPropertyKeys();
}

inline void set_mode(vtkProp& prop, int mode)
{
  keys_of(prop).Set(MRUtil::RENDER_MODE(), mode);
}

inline void set_vertex_key(vtkProp& prop, int value)
{
  keys_of(prop).Set(MRUtil::VERTEX_VISIBILITY(), value);
}

/// The entries that end in ".<call>".
inline Log calls_of(const Log& log, const std::string& call)
{
  Log found;
  for (const std::string& entry : log) {
    if (entry.size() > call.size() && entry.substr(entry.size() - call.size() - 1) == "." + call) {
      found.push_back(entry);
    }
  }
  return found;
}

/// The entries of one prop, without its name.
inline Log calls_to(const Log& log, const std::string& name)
{
  Log found;
  for (const std::string& entry : log) {
    if (entry.rfind(name + ".", 0) == 0) {
      found.push_back(entry.substr(name.size() + 1));
    }
  }
  return found;
}

/// A 2-D actor: a rectangle in pixels, drawn as overlay.
inline vtkSmartPointer<vtkActor2D> flat_square(int x0, int y0, int x1, int y1, Rgb colour)
{
  const vtkNew<vtkPolyDataMapper2D> mapper;
  mapper->SetInputData(quad(x0, y0, x1, y1));
  auto square = vtkSmartPointer<vtkActor2D>::New();
  square->SetMapper(mapper);
  square->GetProperty()->SetColor(colour.r / 255.0, colour.g / 255.0, colour.b / 255.0);
  return square;
}

/// Three panes of glass before each other and a solid ball between them, not in depth order.
inline void show_panes(vtkRenderer& renderer)
{
  const struct
  {
    double z;
    Rgb colour;
  } panes[] = {{0.0, kRed}, {2.0, kGreen}, {-2.0, kBlue}};
  double left = -0.9;
  for (const auto& pane : panes) {
    const auto actor = flat_actor(quad(left, -0.7, left + 1.2, 0.7, pane.z), pane.colour);
    actor->GetProperty()->SetOpacity(0.4);
    renderer.AddViewProp(actor);
    left += 0.3;
  }
  const auto ball = lit_actor(sphere(0.5, 24));
  ball->SetPosition(0.2, 0.3, 1.0);
  renderer.AddViewProp(ball);
}

/// A window whose only renderer draws through the pass.
class GViewRenderPassTest : public RenderTest
{
protected:
  void SetUp() override
  {
    RenderTest::SetUp();
    if (HasFatalFailure()) {
      return;
    }
    mScene.look_down(1.0);
    mScene.renderer()->SetPass(mPass);
    mScene.renderer()->GetCullers()->RemoveAllItems(); // props without bounds are drawn too
  }

  vtkSmartPointer<RecordingActor> add_actor(const std::string& name, int representation = VTK_SURFACE)
  {
    auto actor = RecordingActor::make(mLog, name);
    actor->GetProperty()->SetRepresentation(representation);
    mScene.renderer()->AddViewProp(actor);
    return actor;
  }

  vtkSmartPointer<RecordingProp> add_prop(const std::string& name)
  {
    auto prop = RecordingProp::make(mLog, name);
    mScene.renderer()->AddViewProp(prop);
    return prop;
  }

  /// A real actor.
  vtkActor* show(const vtkSmartPointer<vtkActor>& actor)
  {
    mScene.renderer()->AddViewProp(actor);
    return actor;
  }

  Log frame()
  {
    mLog.clear();
    mScene.window()->Render();
    return mLog;
  }

  std::string thrown() { return message_of(mPass->take_exception()); }

  Scene mScene{100, 100};
  vtkNew<GViewRenderPass> mPass;
  Log mLog;
};

} // namespace morrow_test
