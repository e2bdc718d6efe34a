// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class vtkActor;
class vtkProp;
class vtkRenderer;

namespace morrow {

/// Whether the prop is an actor of exactly the class that vtkActor::New() makes, of which a view has most.
/// Such a one draws no overlay.
[[nodiscard]] bool is_stock_actor(const vtkProp& prop);

/// Whether drawing a stock actor in this renderer may call code of the host, which may do anything, such as
/// render another window: through an observer, a pipeline to update, or an object of a class of the host's.
/// Says yes when in doubt. Looks at the actor, its property, colour table and mapper, which has to be
/// vtkPolyDataMapper's with static input, and at the renderer's window; not at the camera and the lights,
/// which all props share.
[[nodiscard]] bool may_call_host_code(vtkActor& stock_actor, vtkRenderer& renderer);

} // namespace morrow
