// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class vtkObject;
class vtkProp;
class vtkRenderer;

/// While a window draws, VTK walks plain pointers to the props of its renderers: one that goes away in the
/// middle of a frame must not be freed before the frame's end.
namespace morrow {

/// Keeps an object alive until the end of the frame that the renderer's window draws now. Nothing when it
/// draws none, or when object is null.
void keep_through_frame(vtkRenderer& renderer, vtkObject* object);

/// Takes the prop out of the renderer, also while its window draws. Nothing for null or an absent prop.
void remove_prop(vtkRenderer& renderer, vtkProp* prop);

} // namespace morrow
