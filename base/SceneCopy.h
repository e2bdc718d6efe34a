// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <map>
#include <string>
#include <vector>

#include <vtkSmartPointer.h>

class vtkActor;
class vtkMatrix4x4;
class vtkProp;
class vtkRenderWindow;
class vtkRenderer;

namespace morrow {

/// What of a scene is wanted.
struct SceneContent
{
  bool has_colors = true;             ///< colours of points and cells
  bool has_vertex_props = true;       ///< props with the MRUtil::VERTEX_VISIBILITY() key
  bool has_vertices_as_lines = false; ///< a vertex is written as a polyline of one point
};

/// A copy of what a renderer shows, in a window of its own that is never rendered: plain actors with plain
/// polygonal data in world coordinates, which every exporter of VTK can take.
///
/// Camera, lights and background are copied; the original is not changed. Of the props, visible actors are
/// copied, also those in assemblies; their composite data block by block, with the blocks' own visibility,
/// colour and opacity. Props that have no place in a scene of actors (2-D ones and other kinds of vtkProp)
/// and such with empty data are left out silently. What else cannot be copied is left out and counted.
class SceneCopy
{
public:
  SceneCopy(vtkRenderer& original, const SceneContent& content);
  ~SceneCopy();
  SceneCopy(const SceneCopy&) = delete;
  SceneCopy& operator=(const SceneCopy&) = delete;

  /// The window with the only renderer; owned by the copy.
  [[nodiscard]] vtkRenderWindow* window() const;

  /// How many things of each kind have been left out ("actors without data").
  [[nodiscard]] const std::map<std::string, int>& left_out() const { return mLeftOut; }

private:
  struct PlacedProp
  {
    vtkSmartPointer<vtkProp> prop;
    vtkSmartPointer<vtkMatrix4x4> placement; // null for the prop's own
  };

  static std::vector<PlacedProp> visible_props(vtkRenderer& renderer);
  void copy_stage(vtkRenderer& original);
  void copy_prop(const PlacedProp& placed);
  void copy_actor(vtkActor& actor, vtkMatrix4x4& placement);
  void leave_out(const std::string& kind) { ++mLeftOut[kind]; }

  SceneContent mContent;
  vtkSmartPointer<vtkRenderer> mRenderer;
  vtkSmartPointer<vtkRenderWindow> mWindow;
  std::map<std::string, int> mLeftOut;
};

} // namespace morrow
