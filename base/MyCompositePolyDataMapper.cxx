// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MyCompositePolyDataMapper.h"

#include <vtk_glew.h> // VTK's header of the helper needs it before itself

#include <vtkCallbackCommand.h>
#include <vtkCommand.h>
#include <vtkCompositeMapperHelper2.h>
#include <vtkObjectFactory.h>

vtkStandardNewMacro(MyCompositePolyDataMapper)

MyCompositePolyDataMapper::MyCompositePolyDataMapper()
    : mShaderCommand(vtkSmartPointer<vtkCallbackCommand>::New())
{
  mShaderCommand->SetCallback(&MyCompositePolyDataMapper::UpdateShadersFunc);
  mShaderCommand->SetClientData(this);
}

MyCompositePolyDataMapper::~MyCompositePolyDataMapper()
{
  mShaderCommand->SetClientData(nullptr); // somebody may keep a helper
}

void MyCompositePolyDataMapper::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
}

vtkCompositeMapperHelper2* MyCompositePolyDataMapper::CreateHelper()
{
  vtkCompositeMapperHelper2* helper = this->Superclass::CreateHelper();
  helper->AddObserver(vtkCommand::UpdateShaderEvent, mShaderCommand, 0.0F);
  return helper;
}

void MyCompositePolyDataMapper::UpdateShadersFunc(vtkObject* /*caller*/, unsigned long /*event*/,
                                                  void* client_data, void* call_data)
{
  auto* mapper = static_cast<MyCompositePolyDataMapper*>(client_data);
  if (mapper != nullptr) {
    mapper->InvokeEvent(vtkCommand::UpdateShaderEvent, call_data);
  }
}
