// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "SceneExport.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include "GView.h"
#include "MRUtil.h"
#include "PlainNumbers.h"
#include "SceneCopy.h"

#include <vtkIVExporter.h>
#include <vtkOBJExporter.h>
#include <vtkOOGLExporter.h>
#include <vtkRenderWindow.h>
#include <vtkVRMLExporter.h>

namespace morrow {

namespace {

template<typename Exporter>
void set_file(Exporter& exporter, const char* filename)
{
  exporter.SetFileName(filename);
}

void set_file(vtkOBJExporter& exporter, const char* filename)
{
  exporter.SetFilePrefix(filename);
}

// Lets an exporter go of everything but itself.
template<typename Exporter>
struct Emptied
{
  void operator()(Exporter* exporter) const
  {
    exporter->SetRenderWindow(nullptr);
    set_file(*exporter, nullptr);
  }
};

// Deliberate: the exporter is not released afterwards.
template<typename Exporter>
void write_with(vtkRenderWindow& window, const char* filename)
{
  const std::unique_ptr<Exporter, Emptied<Exporter>> exporter(Exporter::New());
  set_file(*exporter, filename);
  exporter->SetRenderWindow(&window);
  exporter->Write();
}

struct SceneFormat
{
  int type;
  bool has_colors;            // of points
  bool has_vertices_as_lines; // because the exporter skips vertices
  void (*write)(vtkRenderWindow&, const char*);
};

constexpr SceneFormat Formats[] = {
    {GView::VRML, true, false, &write_with<vtkVRMLExporter>},
    {GView::OOGL, true, true, &write_with<vtkOOGLExporter>},
    {GView::OBJ, false, false, &write_with<vtkOBJExporter>},
    {GView::IV, true, false, &write_with<vtkIVExporter>},
};

const SceneFormat* find_format(int type)
{
  const auto* format = std::find_if(std::begin(Formats), std::end(Formats),
                                    [type](const SceneFormat& each) { return each.type == type; });
  return format != std::end(Formats) ? format : nullptr;
}

// The leak check knows the exporters that stay by the name of this function.
void write_and_keep_exporter(const SceneFormat& format, vtkRenderWindow& window, const char* filename)
{
  const PlainNumbers numbers;
  format.write(window, filename);
}

} // namespace

bool is_model_file_type(int type)
{
  return find_format(type) != nullptr;
}

void write_scene(vtkRenderer& renderer, int type, const char* filename, bool with_vertex_props)
{
  const SceneFormat* format = find_format(type);
  if (format == nullptr) {
    return;
  }
  const SceneCopy scene(renderer, {format->has_colors, with_vertex_props, format->has_vertices_as_lines});
  write_and_keep_exporter(*format, *scene.window(), filename);
  for (const auto& [kind, count] : scene.left_out()) {
    MRUtil::print_warning("Model export leaves out %s: %d\n", kind.c_str(), count);
  }
}

} // namespace morrow
