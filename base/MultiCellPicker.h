// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "morrow_base_export.h"

#include <cstdint>
#include <memory>
#include <vector>

#include <vtkPicker.h> // superclass

class PickBounds;
class vtkDataSet;
class vtkGenericCell;
class vtkMatrix4x4;
class vtkTransform;

namespace morrow {
class CellBlocksCache;
class WindowDepth;
} // namespace morrow

/// A picker that keeps every cell of every pickable data set that a ray or a region of the screen touches.
///
/// A ray pick is vtkPicker's own Pick(), Pick3DPoint() or Pick3DRay(); a region pick is PickByBounds(). Both
/// leave a list of records, one for each data set with a hit, in the order in which props, data sets and
/// cells are visited; get_cell_picks() reads it. It stands until the next pick, Initialize(), or the end of
/// the picker.
///
/// vtkPicker's own results stay empty, because no prop ever counts as its nearest: Pick() returns 0 whatever
/// was hit, GetProp3D(), GetMapper() and GetDataSet() are null, and there is no PickEvent. StartPickEvent and
/// EndPickEvent come once in each pick. Only GetProp3Ds() and GetPickedPositions() tell which props' bounds
/// the ray met.
///
/// Data sets are read as they are; nothing brings a pipeline up to date. What a host changes in a data set
/// counts from the moment that Modified() has been called on the data set, its points or its cells, or on one
/// of their arrays; until then, none of the ids that cells have may name a point that does not exist.
///
/// A cell's number has 32 bits: of a data set with more than 2³¹ cells only the first 2³¹ are looked at, and
/// a VTK warning says so, once in each pick. In a region pick of whole cells without "Pointers" such a data
/// set is never found.
///
/// In a region pick of touching cells, a triangle that is seen exactly edge-on, as a line, counts by its
/// sides and corners. When that line, made longer, goes exactly through a box's corner (xmin, ymin), a
/// lasso's first vertex or a circle's centre, it may count as a triangle around the region too, by the rule
/// of `MRPickUtil::is_point_in_triangle`, but not when all of it lies beyond one side of the region. A
/// triangle whose corners are one point of the data counts wherever it is, if the region's box meets that of
/// the data set.
///
/// Between picks the pickers keep bounds of runs of cells, less than one byte a cell, for the data sets they
/// have picked in; a data set takes its own along when it dies, and the last picker all of them. A host that
/// picks often therefore keeps its picker.
class MORROW_BASE_EXPORT MultiCellPicker : public vtkPicker
{
public:
  /// One cell that was hit: 20 bytes.
  struct SubCellPick
  {
    std::int32_t CellId; ///< in the data set
    float Point[3];      ///< world point where the ray meets the cell; 1e38 three times in a region pick
    bool Direct;         ///< hit at half the tolerance as well; always true in a region pick
    bool Visible; ///< false where a region pick of visible cells only has found a point of the cell hidden
  };

  /// One data set with hits. Neither prop nor data set is kept alive: read the record before they can die.
  struct CellPick
  {
    vtkProp3D* Prop = nullptr;         ///< the prop that was picked: the last one of its assembly path
    vtkTransform* Transform = nullptr; ///< data set to world; belongs to the record
    vtkDataSet* DataSet = nullptr;     ///< a vtkPointSet in a region pick
    float P1[3] = {0.0F, 0.0F, 0.0F};  ///< a ray pick's start, in coordinates of the data set
    float P2[3] = {0.0F, 0.0F, 0.0F};  ///< and its end
    double Tolerance = 0.0;            ///< of a ray pick, in units of the data set
    PickBounds* Region = nullptr;      ///< of a region pick, while it runs; null as soon as the pick is over
    std::int32_t RegionFlags = 0;      ///< of a region pick; always 0
    std::vector<SubCellPick> SubPicks; ///< in the order of the cells' ids, never empty
  };

  /// Whether region picks look at the depth buffer: a cell is Visible when all of its points are. Initially
  /// false. Process-wide, set by the host.
  static bool mSelectVisibleOnly;
  /// Whether region picks take cells that touch the region, instead of those that lie wholly inside it.
  /// Initially false. Process-wide, set by the host.
  static bool mBoxPickAcceptPartialCells;

  /// A picker with a tolerance of 0.01 (of the window's diagonal), as vtkPicker::SetTolerance() sets it.
  static MultiCellPicker* New();
  vtkTypeMacro(MultiCellPicker, vtkPicker)
  /// Adds a line "Prop: " with its address for each record.
  void PrintSelf(ostream& os, vtkIndent indent) override;

  /// The records of the last pick. They belong to the picker.
  [[nodiscard]] const std::vector<CellPick*>& get_cell_picks() const { return CellPicks; }

  using vtkPicker::Pick;
  using vtkPicker::Pick3DPoint;
  /// vtkPicker's ray picks. They return 0: get_cell_picks() has what was hit. A pick that an observer asks
  /// for inside another pick of the same picker does nothing and returns 0.
  int Pick(double x, double y, double z, vtkRenderer* renderer) override;
  int Pick3DPoint(double point[3], vtkRenderer* renderer) override;
  int Pick3DPoint(double p1[3], double p2[3], vtkRenderer* renderer) override;
  int Pick3DRay(double point[3], double orientation[4], vtkRenderer* renderer) override;

  /// Picks what lies in a region of the screen, in pixels of the window with the origin at its lower left
  /// corner. Visits the pickable and visible props of the renderer, or of the pick list when picking from
  /// that, as a ray pick does: actors, levels of detail and parts of assemblies, with an opacity above 0.
  /// Fires StartPickEvent before and EndPickEvent after. Returns 1 when there are records, else 0.
  ///
  /// In whole-cell mode (mBoxPickAcceptPartialCells off) a cell is accepted when all of its points lie in the
  /// region, and a data set has a record only when all of its cells are accepted, unless it has an array
  /// named "Pointers" in its field data: that one holds several entities, and every cell with a point inside
  /// is recorded as soon as one cell is accepted. In touch mode vertices, lines, triangles, quadrilaterals
  /// and polygons are accepted when their shape meets the region, and any cell with a point inside.
  ///
  /// A point is projected by dividing by its homogeneous coordinate, whatever its sign: what lies behind the
  /// eye appears mirrored on the screen and may be found there. mSelectVisibleOnly tells the two apart, as
  /// such a point has a depth beyond the far plane. A point without a projection lies in no box and circle.
  ///
  /// With mSelectVisibleOnly the depth is that of the renderer's last frame. Where another renderer of the
  /// window has drawn over it since, the window is rendered once more to see it; a window that has never been
  /// rendered hides nothing.
  ///
  /// The region must live for the call; null, and a renderer without a window, find nothing. Without a
  /// renderer VTK's error "Must specify renderer!" is reported, nothing is collected and 0 is returned.
  int PickByBounds(PickBounds* region, vtkRenderer* renderer);

  /// Deletes the records. Every pick begins with it.
  void Initialize() override;

  /// What a ray pick does with one prop: p1 and p2 in the coordinates of its data, tol likewise. Appends the
  /// records; returns 1e38 (single precision) when the mapper is no vtkMapper and 2.0 otherwise.
  double IntersectWithLine(const double p1[3], const double p2[3], double tol, vtkAssemblyPath* path,
                           vtkProp3D* prop, vtkAbstractMapper3D* mapper) override;

  /// What a region pick does with one prop; matrix takes the coordinates of its data to normalised view
  /// coordinates with a depth from 0 to 1. Returns as IntersectWithLine(); null for region, matrix or
  /// renderer, and a renderer without a window, find nothing. Records made by a call from outside of a pick
  /// keep their Region.
  double IntersectWithBounds(PickBounds* region, vtkMatrix4x4* matrix, vtkAssemblyPath* path, vtkProp3D* prop,
                             vtkAbstractMapper3D* mapper, vtkRenderer* renderer);

  /// Whether point x (3 doubles) lies on the segment from p1 to p2 (3 floats each), to within tol along each
  /// axis by itself. t is the parameter of the nearest point of the line, closest (3 floats) becomes x when
  /// it is a hit. pcoords (2 floats at least): the first is 0 for a hit, -10 for a miss, the second 0. subId
  /// becomes 0. A segment without length returns 0 and leaves t, closest and pcoords[0] as they are. Null
  /// returns 0.
  int intersect_point_with_line(double* x, const float* p1, const float* p2, float tol, float& t,
                                float* closest, float* pcoords, int& subId);

protected:
  MultiCellPicker();
  ~MultiCellPicker() override;

  vtkGenericCell* Cell; // scratch
  std::vector<CellPick*> CellPicks;

private:
  MultiCellPicker(const MultiCellPicker&) = delete;
  void operator=(const MultiCellPicker&) = delete;

  class Turn;

  void delete_records();
  void warn_of_cells_beyond(vtkDataSet& data);
  void visit_props(PickBounds& region, vtkRenderer& renderer, vtkMatrix4x4& projection);
  CellPick& add_record(vtkProp3D* prop, vtkDataSet* data, std::vector<SubCellPick>&& hits);

  std::shared_ptr<morrow::CellBlocksCache> mBlocks;
  std::unique_ptr<morrow::WindowDepth> mDepth; // during a region pick of visible cells
  std::vector<SubCellPick> mSpare;             // memory of the last pick, for the one that runs
  bool mIsPicking = false;
  bool mHasWarned = false; // since Initialize()
};
