// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "FrameHold.h"

#include <vtkCommand.h>
#include <vtkNew.h>
#include <vtkObject.h>
#include <vtkProp.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>

#include <utility>

namespace morrow {

namespace {

/// Holds one object until its window's frame ends.
class FrameHold : public vtkCommand
{
public:
  static FrameHold* New() { return new FrameHold; }
  vtkTypeMacro(FrameHold, vtkCommand)
  FrameHold(const FrameHold&) = delete;
  void operator=(const FrameHold&) = delete;

  void Execute(vtkObject* caller, unsigned long /*event*/, void* /*call_data*/) override
  {
    const vtkSmartPointer<vtkObject> object = std::move(held);
    auto* prop = vtkProp::SafeDownCast(object);
    if (prop != nullptr && prop->GetNumberOfConsumers() == 0) {
      prop->ReleaseGraphicsResources(vtkWindow::SafeDownCast(caller)); // it may have been drawn since
    }
    caller->RemoveObserver(this);
  }

  vtkSmartPointer<vtkObject> held;

private:
  FrameHold() = default;
};

} // namespace

void keep_through_frame(vtkRenderer& renderer, vtkObject* object)
{
  vtkRenderWindow* window = renderer.GetRenderWindow();
  if (object == nullptr || window == nullptr || window->CheckInRenderStatus() == 0) {
    return;
  }
  vtkNew<FrameHold> hold;
  hold->held = object;
  window->AddObserver(vtkCommand::EndEvent, hold);
}

void remove_prop(vtkRenderer& renderer, vtkProp* prop)
{
  if (prop != nullptr && renderer.HasViewProp(prop) != 0) {
    keep_through_frame(renderer, prop);
    renderer.RemoveViewProp(prop);
  }
}

} // namespace morrow
