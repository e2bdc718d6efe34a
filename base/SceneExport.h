// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class vtkRenderer;

namespace morrow {

/// Whether there is an exporter for the code: a GView::ModelFileType.
[[nodiscard]] bool is_model_file_type(int type);

/// Writes what the renderer shows, as a SceneCopy has it, to a file of this type; without a display. Props
/// with the MRUtil::VERTEX_VISIBILITY() key are written if so asked. For OBJ the file name is a prefix:
/// ".obj", ".mtl" and, for textures, ".png" come after it. Prints a warning for each kind of prop that has no
/// place in the file. An unknown type does nothing.
void write_scene(vtkRenderer& renderer, int type, const char* filename, bool with_vertex_props);

} // namespace morrow
