// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DrawStyle.h"
#include "GModel.h"

class MeshModel;

/// The features of a mesh model's blocks where surfaces hide them, as stippled lines.
///
/// A model of its own, so that its lines are all drawn before those that are seen, which cross them. Its set
/// takes it before the mesh model.
class HiddenLines : public GModel
{
public:
  /// Shows the hidden lines of what mesh has now, if the style asks for them. The mesh's own props are put in
  /// their place behind these with MeshModel::set_style().
  void show(const MeshModel& mesh, const DrawStyle& style);

  void update_parts() override {}
};
