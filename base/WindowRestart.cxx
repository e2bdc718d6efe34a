// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "WindowRestart.h"

#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>

namespace morrow {

namespace {

// It holds on to the native window and the connection of before, which are gone.
void prepare_again(vtkRenderWindowInteractor* interactor)
{
  if (interactor == nullptr || interactor->GetInitialized() == 0) {
    return;
  }
  const bool was_enabled = interactor->GetEnabled() != 0;
  interactor->ReInitialize();
  if (!was_enabled) {
    interactor->Disable();
  }
}

} // namespace

WindowRestart::WindowRestart(vtkRenderWindow& window) : mWindow(window), mWasMapped(window.GetMapped() != 0)
{
  if (mWasMapped) {
    window.Finalize();
  }
}

WindowRestart::~WindowRestart()
{
  if (mWasMapped) {
    mWindow.Start();
    prepare_again(mWindow.GetInteractor());
  }
}

} // namespace morrow
