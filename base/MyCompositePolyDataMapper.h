// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "morrow_base_export.h"

#include <vtkCompositePolyDataMapper2.h> // superclass
#include <vtkSmartPointer.h>             // member

class vtkCallbackCommand;

/// Draws composite polygon data, and tells whoever observes it of every shader that is about to draw a block.
///
/// VTK draws the blocks with helper mappers of its own, one for all blocks that need the same shader, and it
/// is these that announce vtkCommand::UpdateShaderEvent. Here they pass the event on: an observer of this
/// mapper hears it with the vtkShaderProgram as call data, and can set uniforms. Some versions of VTK pass it
/// on by themselves as well; then each is heard twice.
class MORROW_BASE_EXPORT MyCompositePolyDataMapper : public vtkCompositePolyDataMapper2
{
public:
  static MyCompositePolyDataMapper* New();
  vtkTypeMacro(MyCompositePolyDataMapper, vtkCompositePolyDataMapper2)
  void PrintSelf(ostream& os, vtkIndent indent) override;

  /// Callback of the helpers' shader-update events: client_data is the composite mapper, which invokes
  /// vtkCommand::UpdateShaderEvent with the same call_data, whatever the event was. Null client_data does
  /// nothing.
  static void UpdateShadersFunc(vtkObject* caller, unsigned long event, void* client_data, void* call_data);

protected:
  MyCompositePolyDataMapper();
  ~MyCompositePolyDataMapper() override;

  /// A helper of the superclass whose shader-update events reach this mapper. The caller owns it. Its events
  /// go nowhere once this mapper is gone.
  vtkCompositeMapperHelper2* CreateHelper() override;

private:
  MyCompositePolyDataMapper(const MyCompositePolyDataMapper&) = delete;
  void operator=(const MyCompositePolyDataMapper&) = delete;

  vtkSmartPointer<vtkCallbackCommand> mShaderCommand;
};
