// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GViewRenderPass.h"

#include <utility>

#include "GSilhouetteMapper.h"
#include "MRUtil.h"
#include "StockActor.h"

#include <vtkActor.h>
#include <vtkDepthPeelingPass.h>
#include <vtkDualDepthPeelingPass.h>
#include <vtkHardwareSelector.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkObjectFactory.h>
#include <vtkOpenGLRenderWindow.h>
#include <vtkOpenGLRenderer.h>
#include <vtkOpenGLState.h>
#include <vtkProperty.h>
#include <vtkRenderState.h>
#include <vtkTranslucentPass.h>

vtkStandardNewMacro(GViewRenderPass)

namespace {

bool draws_no_surface(int mode)
{
  return mode == MRUtil::RENDER_WIREFRAME || mode == MRUtil::RENDER_NO_SURFACES;
}

bool fills_depth_only(int mode)
{
  return mode == MRUtil::RENDER_HIDDEN_LINE || mode == MRUtil::RENDER_HIDDEN_LINE_DASH;
}

/// The mapper of an actor that draws with an OpenGL program of its own: VTK cannot have it peeled.
GSilhouetteMapper* unpeelable_mapper(vtkActor* actor)
{
  return actor != nullptr ? GSilhouetteMapper::SafeDownCast(actor->GetMapper()) : nullptr;
}

/// No colour is written while it lives.
class ColorWritesOff
{
public:
  explicit ColorWritesOff(vtkOpenGLState* state) : mSaved(state) { state->vtkglColorMask(0, 0, 0, 0); }

private:
  vtkOpenGLState::ScopedglColorMask mSaved;
};

// Host code may have rendered another window; what follows belongs into this one. To ask takes a system call
// on some platforms.
void return_to_window(vtkRenderer& renderer)
{
  vtkRenderWindow* window = renderer.GetRenderWindow();
  if (window != nullptr && !window->IsCurrent()) {
    window->MakeCurrent();
  }
}

} // namespace

// Calls host code that asks for nothing to be drawn.
template<typename Ask>
void GViewRenderPass::caught(Ask&& ask)
{
  try {
    ask();
  } catch (...) {
    if (mException == nullptr) {
      mException = std::current_exception();
    }
  }
}

// Calls host code.
template<typename Draw>
void GViewRenderPass::guarded(vtkRenderer& renderer, Draw&& draw)
{
  this->caught(draw);
  return_to_window(renderer);
}

// Draws an item. Where no host code can be called, which is nearly always, there is no need to ask which
// window is current.
template<typename Draw>
void GViewRenderPass::guarded(vtkRenderer& renderer, const Item& item, Draw&& draw)
{
  if (item.is_stock && !morrow::may_call_host_code(*item.actor, renderer)) {
    this->caught(draw);
  } else {
    this->guarded(renderer, draw);
  }
}

/// Draws the translucent geometry of each prop for the peeling pass, which would not survive an exception
/// from one.
class GViewRenderPass::TranslucentStage : public vtkTranslucentPass
{
public:
  static TranslucentStage* New()
  {
    auto* stage = new TranslucentStage;
    stage->InitializeObjectBase();
    return stage;
  }
  vtkTypeMacro(TranslucentStage, vtkTranslucentPass)
  TranslucentStage(const TranslucentStage&) = delete;
  void operator=(const TranslucentStage&) = delete;

  GViewRenderPass* owner = nullptr;

protected:
  TranslucentStage() = default;

  void RenderFilteredTranslucentPolygonalGeometry(const vtkRenderState* state) override
  {
    vtkRenderer& renderer = *state->GetRenderer();
    vtkProp** props = state->GetPropArray();
    for (int i = 0; i < state->GetPropArrayCount(); ++i) {
      owner->guarded(renderer, owner->mItems[static_cast<std::size_t>(i)], [&] {
        this->NumberOfRenderedProps +=
            props[i]->RenderFilteredTranslucentPolygonalGeometry(&renderer, state->GetRequiredKeys());
      });
    }
  }
};

GViewRenderPass::GViewRenderPass() = default;
GViewRenderPass::~GViewRenderPass() = default;

std::exception_ptr GViewRenderPass::take_exception()
{
  return std::exchange(mException, nullptr);
}

vtkRenderPass* GViewRenderPass::depth_peeling_pass() const
{
  return mDepthPeelingPass;
}

void GViewRenderPass::Render(const vtkRenderState* state)
{
  vtkRenderer* renderer = state->GetRenderer();
  vtkRenderWindow* window = renderer->GetRenderWindow();
  // Setting up the camera clears the frame: an aborted render leaves the picture of the last one.
  if (window == nullptr || window->GetAbortRender() != 0) {
    return;
  }
  window->MakeCurrent();
  this->ClearLights(renderer);
  this->UpdateCamera(renderer);
  this->UpdateLightGeometry(renderer);
  this->UpdateLights(renderer);
  this->UpdateGeometry(state);
}

void GViewRenderPass::UpdateGeometry(const vtkRenderState* state)
{
  auto* opengl_renderer = vtkOpenGLRenderer::SafeDownCast(state->GetRenderer());
  if (opengl_renderer == nullptr) {
    return;
  }
  vtkOpenGLRenderer& renderer = *opengl_renderer;
  this->NumberOfRenderedProps = 0;
  this->classify_props(*state);
  if (renderer.GetSelector() != nullptr) {
    this->draw_for_selection(renderer);
    mItems.clear();
    return;
  }
  this->draw_surfaces(renderer);
  this->draw_lines_and_points(renderer);
  if (this->has_translucent_props(renderer)) {
    this->draw_translucent(*state, renderer);
  }
  this->draw_overlays(renderer);
  mItems.clear();
}

GViewRenderPass::Item GViewRenderPass::classify(vtkProp* prop)
{
  const bool is_stock = morrow::is_stock_actor(*prop);
  vtkActor* actor = is_stock ? static_cast<vtkActor*>(prop) : vtkActor::SafeDownCast(prop);
  Item item = {prop, actor, MRUtil::RENDER_DEFAULT, true, false, is_stock};
  if (item.actor == nullptr) {
    return item;
  }
  item.is_surface = item.actor->GetProperty()->GetRepresentation() == VTK_SURFACE;
  if (vtkInformation* keys = item.actor->GetPropertyKeys()) {
    if (keys->Has(MRUtil::RENDER_MODE())) {
      item.render_mode = keys->Get(MRUtil::RENDER_MODE());
    }
    item.is_vertex = keys->Has(MRUtil::VERTEX_VISIBILITY()) != 0;
  }
  return item;
}

void GViewRenderPass::classify_props(const vtkRenderState& state)
{
  vtkProp** props = state.GetPropArray();
  mItems.clear();
  for (int i = 0; i < state.GetPropArrayCount(); ++i) {
    mItems.push_back(classify(props[i]));
  }
}

void GViewRenderPass::draw_opaque(const Item& item, vtkRenderer& renderer)
{
  this->guarded(renderer, item,
                [&] { this->NumberOfRenderedProps += item.prop->RenderOpaqueGeometry(&renderer); });
}

void GViewRenderPass::draw_surfaces(vtkOpenGLRenderer& renderer)
{
  for (const Item& item : mItems) {
    if (item.actor != nullptr && item.is_surface && !draws_no_surface(item.render_mode)) {
      this->draw_surface(item, renderer);
    }
  }
}

void GViewRenderPass::draw_surface(const Item& item, vtkOpenGLRenderer& renderer)
{
  if (fills_depth_only(item.render_mode)) {
    const ColorWritesOff depth_only(renderer.GetState());
    this->draw_opaque(item, renderer);
  } else {
    this->draw_opaque(item, renderer);
  }
}

bool GViewRenderPass::draws_with_lines(const Item& item) const
{
  if (item.actor == nullptr) {
    return true;
  }
  return item.is_vertex ? mVertexVisibility : !item.is_surface;
}

void GViewRenderPass::draw_lines_and_points(vtkRenderer& renderer)
{
  for (const Item& item : mItems) {
    if (this->draws_with_lines(item)) {
      this->draw_opaque(item, renderer);
    }
  }
}

// What a hardware selection draws is not a picture but numbers, and it knows itself which props take part.
void GViewRenderPass::draw_for_selection(vtkOpenGLRenderer& renderer)
{
  std::vector<vtkProp*> shown;
  for (const Item& item : mItems) {
    const bool has_surface = item.actor != nullptr && item.is_surface && !draws_no_surface(item.render_mode);
    if (has_surface || this->draws_with_lines(item)) {
      shown.push_back(item.prop);
    }
  }
  this->guarded(renderer, [&] {
    this->NumberOfRenderedProps =
        renderer.GetSelector()->Render(&renderer, shown.data(), static_cast<int>(shown.size()));
  });
}

bool GViewRenderPass::has_translucent_props(vtkRenderer& renderer)
{
  bool found = false;
  for (const Item& item : mItems) {
    this->caught([&] { found = item.prop->HasTranslucentPolygonalGeometry() != 0; });
    if (found) {
      break;
    }
  }
  return_to_window(renderer);
  return found;
}

// Translucent silhouettes are blended over what is opaque, and hide what is translucent behind them.
void GViewRenderPass::draw_unpeelable(vtkOpenGLRenderer& renderer)
{
  renderer.GetState()->vtkglDepthMask(1);
  for (const Item& item : mItems) {
    if (const vtkSmartPointer<GSilhouetteMapper> mapper = unpeelable_mapper(item.actor)) {
      this->guarded(renderer, [&] {
        if (item.actor->HasTranslucentPolygonalGeometry() != 0) {
          mapper->Render(&renderer, item.actor);
        }
      });
    }
  }
}

void GViewRenderPass::make_depth_peeling_pass(vtkOpenGLRenderer& renderer)
{
  if (renderer.IsDualDepthPeelingSupported()) {
    mDepthPeelingPass = vtkSmartPointer<vtkDualDepthPeelingPass>::New();
  } else {
    mDepthPeelingPass = vtkSmartPointer<vtkDepthPeelingPass>::New();
  }
  const auto stage = vtkSmartPointer<TranslucentStage>::New();
  stage->owner = this;
  mDepthPeelingPass->SetTranslucentPass(stage);
}

void GViewRenderPass::draw_translucent(const vtkRenderState& state, vtkOpenGLRenderer& renderer)
{
  this->draw_unpeelable(renderer);
  if (mDepthPeelingPass == nullptr) {
    this->make_depth_peeling_pass(renderer);
  }
  mDepthPeelingPass->SetMaximumNumberOfPeels(renderer.GetMaximumNumberOfPeels());
  mDepthPeelingPass->SetOcclusionRatio(renderer.GetOcclusionRatio());
  vtkRenderState peeling_state(&renderer);
  peeling_state.SetPropArrayAndCount(state.GetPropArray(), state.GetPropArrayCount());
  peeling_state.SetFrameBuffer(nullptr);
  mDepthPeelingPass->Render(&peeling_state);
  this->NumberOfRenderedProps += mDepthPeelingPass->GetNumberOfRenderedProps();
}

void GViewRenderPass::draw_overlays(vtkRenderer& renderer)
{
  for (const Item& item : mItems) {
    if (!item.is_stock) {
      this->guarded(renderer, [&] { this->NumberOfRenderedProps += item.prop->RenderOverlay(&renderer); });
    }
  }
}

void GViewRenderPass::ReleaseGraphicsResources(vtkWindow* w)
{
  this->Superclass::ReleaseGraphicsResources(w);
  if (mDepthPeelingPass != nullptr) {
    mDepthPeelingPass->ReleaseGraphicsResources(w);
  }
}

void GViewRenderPass::forget_window(vtkWindow* w)
{
  this->ReleaseGraphicsResources(w);
  mDepthPeelingPass = nullptr;
}

void GViewRenderPass::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
  os << indent << "Vertex Visibility: " << (mVertexVisibility ? "On" : "Off") << "\n";
  os << indent << "Depth Peeling Pass: " << (mDepthPeelingPass != nullptr ? "made" : "(none)") << "\n";
}
