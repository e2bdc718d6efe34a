// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "WindowDepth.h"

#include "RenderGuard.h"

#include <vtkCallbackCommand.h>
#include <vtkFloatArray.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkRendererCollection.h>
#include <vtkSmartPointer.h>

#include <algorithm>

namespace morrow {

namespace {

bool overlap(vtkRenderer& a, vtkRenderer& b)
{
  double u[4];
  double v[4];
  a.GetViewport(u);
  b.GetViewport(v);
  return u[0] < v[2] && v[0] < u[2] && u[1] < v[3] && v[1] < u[3];
}

/// Whether a renderer that is drawn later has cleared the depth of this one. Those of a layer are drawn in
/// the order in which the window has them.
bool is_drawn_over(vtkRenderer& renderer, vtkRenderWindow& window)
{
  bool is_behind = false; // in the window's list
  bool is_over = false;
  vtkCollectionSimpleIterator at;
  window.GetRenderers()->InitTraversal(at);
  while (vtkRenderer* other = window.GetRenderers()->GetNextRenderer(at)) {
    if (other == &renderer) {
      is_behind = true;
      continue;
    }
    const bool is_later =
        other->GetLayer() > renderer.GetLayer() || (other->GetLayer() == renderer.GetLayer() && is_behind);
    is_over =
        is_over || (is_later && other->GetDraw() != 0 && other->GetLayer() < window.GetNumberOfLayers() &&
                    other->GetPreserveDepthBuffer() == 0 && overlap(renderer, *other));
  }
  return is_over;
}

/// Observes the end of a renderer's part of the frame while it lives.
class RendererEnd
{
public:
  RendererEnd(vtkRenderer& renderer, vtkCallbackCommand& command)
      : mRenderer(&renderer), mTag(renderer.AddObserver(vtkCommand::EndEvent, &command))
  {}
  ~RendererEnd() { mRenderer->RemoveObserver(mTag); }
  RendererEnd(const RendererEnd&) = delete;
  RendererEnd& operator=(const RendererEnd&) = delete;

private:
  vtkSmartPointer<vtkRenderer> mRenderer;
  unsigned long mTag;
};

} // namespace

WindowDepth::WindowDepth() = default;
WindowDepth::~WindowDepth() = default;

bool WindowDepth::read(vtkRenderer& renderer)
{
  const vtkSmartPointer<vtkRenderWindow> window = renderer.GetRenderWindow();
  mBuffer = nullptr;
  const int* size = window->GetSize();
  mWidth = std::max(size[0], 0);
  mHeight = std::max(size[1], 0);
  // VTK has nothing to read from before a window's first frame, and does not look.
  if (window->GetNeverRendered() != 0 || mWidth == 0 || mHeight == 0) {
    return false;
  }
  const bool renders = is_drawn_over(renderer, *window);
  if (renders) {
    this->read_in_frame(renderer, *window);
  }
  if (mBuffer == nullptr) {
    this->read_buffer(*window);
  }
  return renders;
}

void WindowDepth::read_in_frame(vtkRenderer& renderer, vtkRenderWindow& window)
{
  vtkNew<vtkCallbackCommand> command;
  command->SetClientData(this);
  command->SetCallback([](vtkObject* caller, unsigned long, void* self, void*) {
    if (auto* window_of_caller = static_cast<vtkRenderer*>(caller)->GetRenderWindow()) {
      static_cast<WindowDepth*>(self)->read_buffer(*window_of_caller);
    }
  });
  const RendererEnd end(renderer, *command);
  render_guarded(window);
}

void WindowDepth::read_buffer(vtkRenderWindow& window)
{
  // The corners are inclusive: each row has one value more than the window has columns.
  window.GetZbufferData(0, 0, mWidth, mHeight, mArray);
  mRowLength = static_cast<long long>(mWidth) + 1;
  const vtkIdType expected = mRowLength * (static_cast<vtkIdType>(mHeight) + 1);
  mBuffer = mArray->GetNumberOfValues() >= expected ? mArray->GetPointer(0) : nullptr;
}

} // namespace morrow
