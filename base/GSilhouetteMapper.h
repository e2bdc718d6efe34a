// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <memory>
#include <vector>

#include "morrow_base_export.h"

#include <vtkMapper.h>    // superclass
#include <vtkTimeStamp.h> // member

class vtkMatrix4x4;
class vtkPolyData;
class vtkProperty;

/// Draws the silhouette of polygons as lines: the edges where polygons that face the eye meet polygons that
/// do not, found anew in every frame.
///
/// The input is a vtkPolyData, or a composite data set whose polygon data leaves are drawn in the order of
/// traversal; anything else draws nothing. Only polygons count, not strips, lines or vertices.
///
/// The lines are as wide as the actor's property says and show its line stipple pattern: 16 bits, read from
/// the lowest up along 16 pixels, starting anew with each edge; 0xFFFF draws solid lines, 0 nothing. The
/// whole polygon data has one colour, see get_color(). The actor's own transform is not applied: coordinates
/// are world coordinates. Depth is tested as for any other prop. Pickers that work by drawing do not see the
/// lines.
///
/// With an opacity below 1 a GView blends the lines over its opaque geometry. They cannot take part in VTK's
/// own ways of drawing translucent geometry: of plain renderers, those that peel leave them out, and others
/// draw them with the right opacity but in too bright a colour.
///
/// Each window that draws the mapper has an OpenGL program of its own, made in the first frame and kept until
/// ReleaseGraphicsResources(). Logs of a program that the driver refuses go to standard output; then nothing
/// is drawn in that window. The destructor does not touch OpenGL: take the actor out of its renderer first,
/// as a renderer's removal of a prop does it, to give the memory of the graphics card back.
class MORROW_BASE_EXPORT GSilhouetteMapper : public vtkMapper
{
public:
  static GSilhouetteMapper* New();
  vtkTypeMacro(GSilhouetteMapper, vtkMapper)
  void PrintSelf(ostream& os, vtkIndent indent) override;

  /// Finds and draws the silhouettes. Called by the actor. Draws nothing where there is no window, or with a
  /// camera that is not one of VTK's for OpenGL, as vtkCamera::New() makes them.
  void Render(vtkRenderer* ren, vtkActor* actor) override;

  /// Fills out with the silhouette edges of data as seen through matrix, which takes world to clip
  /// coordinates: 6 floats an edge, x, y, z of both ends in world coordinates, in the order in which the
  /// polygons bring them.
  ///
  /// A polygon faces the eye when its first three points turn counter-clockwise on the screen; one that is
  /// degenerate there does not. An edge is given when both its points also belong to earlier polygons, maybe
  /// two different ones, that face the other way. So the result depends on the order of the polygons, and
  /// long thin triangles that meet in a point can bring lines where there is no outline. Data in which each
  /// edge has two points of its own, shared by its polygons alone, has neither weakness; meshview makes such
  /// data. Polygons with fewer than three points, or with points that the data does not have, count as
  /// absent. Null gives no edges.
  void compute(vtkMatrix4x4* matrix, vtkPolyData* data, std::vector<float>& out);

  /// Writes the colour of data as 4 floats from 0 to 1: with ScalarVisibility the first tuple of the cell
  /// scalars, or else of the point scalars, if they are unsigned chars (missing blue and green are 0, missing
  /// alpha 255); otherwise the property's colour and opacity. Null data has no scalars, a null property is
  /// opaque white.
  void get_color(vtkProperty* prop, vtkPolyData* data, float* rgba);

  /// The bounds of the polygon data, or of all polygon data leaves; (1, -1, 1, -1, 1, -1) without an input.
  double* GetBounds() override;
  using vtkMapper::GetBounds;
  virtual void ComputeBounds();

  /// Deletes the window's OpenGL program and buffers, null those of all windows. The next frame makes them
  /// again.
  void ReleaseGraphicsResources(vtkWindow* window) override;

protected:
  GSilhouetteMapper();
  ~GSilhouetteMapper() override;

  int FillInputPortInformation(int port, vtkInformation* info) override;

private:
  GSilhouetteMapper(const GSilhouetteMapper&) = delete;
  void operator=(const GSilhouetteMapper&) = delete;

  class Insides;

  void update_input();

  vtkTimeStamp mBoundsTime;         // of a composite input
  std::vector<float> mLineVertices; // 3 floats a vertex, 2 vertices an edge
  std::unique_ptr<Insides> mInsides;
};
