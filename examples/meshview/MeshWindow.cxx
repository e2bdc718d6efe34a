// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshWindow.h"

#include "Commands.h"
#include "GView.h"
#include "Keys.h"
#include "Viewer.h"

#include <vtkCommand.h>
#include <vtkInteractorStyleTrackballCamera.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>

namespace {

/// VTK's trackball without its keys, of which some would end the program or change props behind its back.
class KeyStyle : public vtkInteractorStyleTrackballCamera
{
public:
  static KeyStyle* New();
  vtkTypeMacro(KeyStyle, vtkInteractorStyleTrackballCamera)
  KeyStyle(const KeyStyle&) = delete;
  KeyStyle& operator=(const KeyStyle&) = delete;

  void set_commands(Commands* commands) { mCommands = commands; }

  void OnChar() override
  {
    const auto action = action_of(this->Interactor->GetKeySym(), this->Interactor->GetControlKey() != 0);
    if (mCommands != nullptr && action) {
      mCommands->execute(*action);
    }
  }

protected:
  KeyStyle() = default;
  ~KeyStyle() override = default;

private:
  Commands* mCommands = nullptr; // not owned
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
  Commands commands(viewer, *interactor);
  style->set_commands(&commands);
  if (viewer.options().labels == Labels::Blocks) {
    style->AddObserver(vtkCommand::EndInteractionEvent, &viewer, &Viewer::refresh);
  }
  interactor->Start();
  style->set_commands(nullptr);
  viewer.view().set_scalar_bar(nullptr); // it leaves the interactor, which goes before the view
}
