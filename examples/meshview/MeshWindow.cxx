// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshWindow.h"

#include "Commands.h"
#include "GView.h"
#include "Keys.h"
#include "PickMouse.h"
#include "Viewer.h"

#include <vtkCallbackCommand.h>
#include <vtkCommand.h>
#include <vtkInteractorStyleTrackballCamera.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>

namespace {

/// VTK's trackball without its keys, of which some would end the program or change props behind its back. In
/// pick mode the left button picks, and rotates with Ctrl.
class KeyStyle : public vtkInteractorStyleTrackballCamera
{
public:
  static KeyStyle* New();
  vtkTypeMacro(KeyStyle, vtkInteractorStyleTrackballCamera)
  KeyStyle(const KeyStyle&) = delete;
  KeyStyle& operator=(const KeyStyle&) = delete;

  void set_commands(Commands* commands, PickMouse* mouse)
  {
    mCommands = commands;
    mMouse = mouse;
  }

  void OnChar() override
  {
    const auto action = action_of(this->Interactor->GetKeySym(), this->Interactor->GetControlKey() != 0);
    if (mCommands != nullptr && action) {
      mCommands->execute(*action);
    }
  }

  void OnLeftButtonDown() override
  {
    const int* at = this->Interactor->GetEventPosition();
    if (!may_pick()) {
      this->Superclass::OnLeftButtonDown();
    } else if (this->Interactor->GetControlKey() != 0) {
      this->FindPokedRenderer(at[0], at[1]);
      this->GrabFocus(this->EventCallbackCommand);
      this->StartRotate();
    } else {
      mMouse->press(at[0], at[1], this->Interactor->GetShiftKey() != 0);
    }
  }

  void OnLeftButtonUp() override
  {
    if (mMouse == nullptr || !mMouse->release()) {
      this->Superclass::OnLeftButtonUp();
    }
  }

  void OnMouseMove() override
  {
    const int* at = this->Interactor->GetEventPosition();
    if (!may_pick() || !mMouse->move(at[0], at[1])) {
      this->Superclass::OnMouseMove();
    }
  }

  void OnLeave() override
  {
    if (mMouse != nullptr && !mCommands->is_busy()) {
      mMouse->leave();
    }
    this->Superclass::OnLeave();
  }

protected:
  KeyStyle() = default;
  ~KeyStyle() override = default;

private:
  /// Not while the camera moves.
  [[nodiscard]] bool may_pick() const
  {
    return mMouse != nullptr && mMouse->is_on() && this->State == VTKIS_NONE && !mCommands->is_busy();
  }

  Commands* mCommands = nullptr; // neither is owned
  PickMouse* mMouse = nullptr;
};

vtkStandardNewMacro(KeyStyle)

} // namespace

void run_window(Viewer& viewer)
{
  vtkNew<vtkRenderWindowInteractor> interactor;
  vtkNew<KeyStyle> style;
  interactor->SetRenderWindow(viewer.view().get_render_window());
  interactor->SetInteractorStyle(style);
  interactor->Initialize();
  viewer.start();
  PickMouse mouse(viewer);
  Commands commands(viewer, mouse, *interactor);
  style->set_commands(&commands, &mouse);
  const auto exit = interactor->AddObserver(vtkCommand::ExitEvent, &commands, &Commands::end_loop);
  if (viewer.options().labels == Labels::Blocks) {
    style->AddObserver(vtkCommand::EndInteractionEvent, &viewer, &Viewer::refresh);
  }
  interactor->Start();
  interactor->RemoveObserver(exit);
  style->set_commands(nullptr, nullptr);
  viewer.view().set_scalar_bar(nullptr); // it leaves the interactor, which goes before the view
}
