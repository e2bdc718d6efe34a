// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "StockActor.h"

#include <typeinfo>

#include "VTKSeam.h"

#include <vtkActor.h>
#include <vtkCommand.h>
#include <vtkLookupTable.h>
#include <vtkMapper.h>
#include <vtkOpenGLActor.h>
#include <vtkOpenGLPolyDataMapper.h>
#include <vtkOpenGLProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

namespace morrow {

namespace {

/// Of exactly this class, and never observed.
template<typename Kind>
bool is_stock(const vtkObject* object)
{
  return object != nullptr && typeid(*object) == typeid(Kind) && !has_ever_been_observed(*object);
}

template<typename Kind>
bool is_stock_or_none(const vtkObject* object)
{
  return object == nullptr || is_stock<Kind>(object);
}

bool has_stock_mapper(vtkActor& actor)
{
  vtkMapper* mapper = actor.GetMapper();
  return is_stock<vtkOpenGLPolyDataMapper>(mapper) && mapper->GetStatic() != 0 &&
         mapper->GetClippingPlanes() == nullptr &&
         is_stock_or_none<vtkLookupTable>(given_lookup_table(*mapper));
}

bool has_stock_properties(vtkActor& actor)
{
  vtkProperty* property = actor.GetProperty();
  return is_stock<vtkOpenGLProperty>(property) && property->GetNumberOfTextures() == 0 &&
         is_stock_or_none<vtkOpenGLProperty>(actor.GetBackfaceProperty());
}

// VTK's mappers let the window's observers say whether to go on.
bool may_be_asked_to_abort(vtkRenderer& renderer)
{
  vtkRenderWindow* window = renderer.GetRenderWindow();
  return window == nullptr || window->HasObserver(vtkCommand::AbortCheckEvent) != 0;
}

} // namespace

bool is_stock_actor(const vtkProp& prop)
{
  return typeid(prop) == typeid(vtkOpenGLActor);
}

bool may_call_host_code(vtkActor& stock_actor, vtkRenderer& renderer)
{
  return has_ever_been_observed(stock_actor) || stock_actor.GetTexture() != nullptr ||
         stock_actor.GetUserTransform() != nullptr || !has_stock_mapper(stock_actor) ||
         !has_stock_properties(stock_actor) || may_be_asked_to_abort(renderer);
}

} // namespace morrow
