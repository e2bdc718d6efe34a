// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GViewRenderPass.h"

#include <utility>

#include "MRUtil.h"

#include <vtkActor.h>
#include <vtkDepthPeelingPass.h>
#include <vtkDualDepthPeelingPass.h>
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

/// No colour is written while it lives.
class ColorWritesOff
{
public:
  explicit ColorWritesOff(vtkOpenGLState* state) : mSaved(state) { state->vtkglColorMask(0, 0, 0, 0); }

private:
  vtkOpenGLState::ScopedglColorMask mSaved;
};

template<typename Visit>
void for_each_prop(const vtkRenderState& state, Visit&& visit)
{
  vtkProp** props = state.GetPropArray();
  const int count = state.GetPropArrayCount();
  for (int i = 0; i < count; ++i) {
    visit(i, props[i]);
  }
}

} // namespace

GViewRenderPass::GViewRenderPass() = default;
GViewRenderPass::~GViewRenderPass() = default;

template<typename Draw>
void GViewRenderPass::guarded(Draw&& draw)
{
  try {
    draw();
  } catch (...) {
    if (mException == nullptr) {
      mException = std::current_exception();
    }
  }
}

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
  if (window->GetAbortRender() != 0) {
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
  this->NumberOfRenderedProps = 0;
  this->classify_props(*state);
  this->draw_surfaces(*state);
  this->draw_lines_and_points(*state);
  if (this->has_translucent_props(*state)) {
    this->draw_translucent(*state);
  }
  this->draw_overlays(*state);
}

GViewRenderPass::Item GViewRenderPass::classify(vtkProp* prop)
{
  Item item = {vtkActor::SafeDownCast(prop), MRUtil::RENDER_DEFAULT, true, false};
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
  mItems.clear();
  for_each_prop(state, [this](int, vtkProp* prop) { mItems.push_back(classify(prop)); });
}

void GViewRenderPass::draw_opaque(vtkProp* prop, vtkRenderer* renderer)
{
  this->guarded([&] { this->NumberOfRenderedProps += prop->RenderOpaqueGeometry(renderer); });
}

void GViewRenderPass::draw_surfaces(const vtkRenderState& state)
{
  auto& renderer = *vtkOpenGLRenderer::SafeDownCast(state.GetRenderer());
  for_each_prop(state, [&](int i, vtkProp* prop) {
    const Item& item = mItems[static_cast<std::size_t>(i)];
    if (item.actor != nullptr && item.is_surface) {
      this->draw_surface(prop, renderer, item.render_mode);
    }
  });
}

void GViewRenderPass::draw_surface(vtkProp* prop, vtkOpenGLRenderer& renderer, int render_mode)
{
  if (draws_no_surface(render_mode)) {
    return;
  }
  if (fills_depth_only(render_mode)) {
    const ColorWritesOff depth_only(renderer.GetState());
    this->draw_opaque(prop, &renderer);
  } else {
    this->draw_opaque(prop, &renderer);
  }
}

bool GViewRenderPass::draws_with_lines(const Item& item) const
{
  if (item.actor == nullptr) {
    return true;
  }
  return item.is_vertex ? mVertexVisibility : !item.is_surface;
}

void GViewRenderPass::draw_lines_and_points(const vtkRenderState& state)
{
  for_each_prop(state, [&](int i, vtkProp* prop) {
    if (this->draws_with_lines(mItems[static_cast<std::size_t>(i)])) {
      this->draw_opaque(prop, state.GetRenderer());
    }
  });
}

bool GViewRenderPass::has_translucent_props(const vtkRenderState& state)
{
  vtkProp** props = state.GetPropArray();
  bool found = false;
  for (int i = 0; i < state.GetPropArrayCount() && !found; ++i) {
    this->guarded([&] { found = props[i]->HasTranslucentPolygonalGeometry() != 0; });
  }
  return found;
}

void GViewRenderPass::make_depth_peeling_pass(vtkOpenGLRenderer& renderer)
{
  vtkSmartPointer<vtkDepthPeelingPass> pass;
  if (renderer.IsDualDepthPeelingSupported()) {
    pass = vtkSmartPointer<vtkDualDepthPeelingPass>::New();
  } else {
    pass = vtkSmartPointer<vtkDepthPeelingPass>::New();
  }
  pass->SetTranslucentPass(vtkSmartPointer<vtkTranslucentPass>::New());
  mDepthPeelingPass = pass;
}

void GViewRenderPass::draw_translucent(const vtkRenderState& state)
{
  auto& renderer = *vtkOpenGLRenderer::SafeDownCast(state.GetRenderer());
  if (mDepthPeelingPass == nullptr) {
    this->make_depth_peeling_pass(renderer);
  }
  auto* pass = vtkDepthPeelingPass::SafeDownCast(mDepthPeelingPass);
  pass->SetMaximumNumberOfPeels(renderer.GetMaximumNumberOfPeels());
  pass->SetOcclusionRatio(renderer.GetOcclusionRatio());
  vtkRenderState peeling_state(&renderer);
  peeling_state.SetPropArrayAndCount(state.GetPropArray(), state.GetPropArrayCount());
  peeling_state.SetFrameBuffer(nullptr);
  this->guarded([&] { pass->Render(&peeling_state); });
  this->NumberOfRenderedProps += pass->GetNumberOfRenderedProps();
}

void GViewRenderPass::draw_overlays(const vtkRenderState& state)
{
  // A prop may have rendered another window in its turn; what follows belongs into this one.
  if (vtkRenderWindow* window = state.GetRenderer()->GetRenderWindow()) {
    window->MakeCurrent();
  }
  for_each_prop(state, [&](int, vtkProp* prop) {
    this->guarded([&] { this->NumberOfRenderedProps += prop->RenderOverlay(state.GetRenderer()); });
  });
}

void GViewRenderPass::ReleaseGraphicsResources(vtkWindow* w)
{
  this->Superclass::ReleaseGraphicsResources(w);
  if (mDepthPeelingPass != nullptr) {
    mDepthPeelingPass->ReleaseGraphicsResources(w);
  }
}

void GViewRenderPass::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
  os << indent << "Vertex Visibility: " << (mVertexVisibility ? "On" : "Off") << "\n";
  os << indent << "Depth Peeling Pass: " << (mDepthPeelingPass != nullptr ? "made" : "(none)") << "\n";
}
