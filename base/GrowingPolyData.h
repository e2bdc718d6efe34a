// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GrowingArray.h" // members

#include <vtkPolyData.h>          // superclass
#include <vtkSmartPointer.h>      // members
#include <vtkTypeInt64Array.h>    // member
#include <vtkUnsignedCharArray.h> // member
#include <vtkWeakPointer.h>       // member

class BrantColor;
class BrantVector;
class vtkCellArray;
class vtkDataSetAttributes;
class vtkFloatArray;
class vtkPoints;

namespace morrow {

/// Whose colour it is.
enum class ColourBinding
{
  Cells,
  Points
};

/// Polygon data that grows by single cells at the speed of memory: it writes into its arrays, where VTK's own
/// operations check and look up each time. The result is theirs, the type of each cell included, and to
/// everybody else it is a vtkPolyData, by its class name too.
///
/// It has points and an array "Color" of 4 unsigned chars as the scalars of its cells or points. Should the
/// host replace its arrays, it goes on with what is there, through VTK's operations where it must, and makes
/// what is missing.
///
/// A change is one begin(), appends, and one mark_modified(). Nothing is checked: points must be there before
/// cells name them, and there must be a colour for each cell (point).
class GrowingPolyData : public vtkPolyData
{
public:
  [[nodiscard]] static vtkSmartPointer<GrowingPolyData> make(ColourBinding binding);
  GrowingPolyData(const GrowingPolyData&) = delete;
  GrowingPolyData& operator=(const GrowingPolyData&) = delete;

  /// Somebody shares cell arrays with this, as the output of a filter that passes them on. What it has made
  /// for access to its cells by number is dropped when they become more; VTK would read beyond it.
  void set_sharer(vtkPolyData* data);

  /// Finds the arrays. The next cells are of this type, one that vtkPolyData can hold. Returns the number
  /// that the next point will have.
  vtkIdType begin(int cell_type);

  void append_points(const BrantVector* points, vtkIdType count);

  /// A cell of the points first + ids[0], first + ids[1], ...
  void append_cell(vtkIdType first, const int* ids, vtkIdType count);
  void append_cell(vtkIdType first, const vtkIdType* ids, vtkIdType count);

  /// The same of first, first + 1, ...
  void append_sequence(vtkIdType first, vtkIdType count);

  /// Cells of one point each: first, first + 1, ...
  void append_vertices(vtkIdType first, vtkIdType count);

  void append_colours(const BrantColor& colour, vtkIdType count);

  /// All of it for one cell of new points.
  void append_one(int cell_type, const BrantVector* points, vtkIdType count, const BrantColor& colour);

  /// Marks the cells of the type, the colours, the points and the whole as modified. Whoever observes one of
  /// them may do what he likes, let this go included.
  void mark_modified();

  /// The same for the cells of every type.
  void mark_all_modified();

protected:
  explicit GrowingPolyData(ColourBinding binding);
  ~GrowingPolyData() override;

private:
  using Ids = GrowingArray<vtkTypeInt64Array>;

  /// A cell array, and its arrays where they can be written into; else null.
  struct Target
  {
    vtkSmartPointer<vtkCellArray>* place = nullptr; // the member of vtkPolyData that it was found in
    vtkSmartPointer<vtkCellArray> cells;
    Stamped<vtkCellArray>* own = nullptr;
    Ids* ids = nullptr;
    Ids* offsets = nullptr;
  };

  [[nodiscard]] vtkDataSetAttributes* coloured() const;
  [[nodiscard]] vtkSmartPointer<vtkCellArray>& cell_array();
  void find_points();
  void find_cells();
  void find_colours();
  void make_colours();
  [[nodiscard]] bool has_found(int cell_type) const;
  [[nodiscard]] bool is_implied(vtkIdType count) const;
  void note_cell(vtkIdType count);
  template<typename Count>
  void write_points(const BrantVector* points, Count count);
  template<typename Count, typename IdOf>
  void write_cell(Count count, IdOf&& id_of);
  template<typename Count>
  void write_new_cell(const BrantVector* points, Count count);
  [[nodiscard]] bool is_observed() const;
  void tell_observers();
  void append_foreign_points(const BrantVector* points, vtkIdType count);
  template<typename IdOf>
  void append_foreign_cell(vtkIdType count, IdOf&& id_of);
  template<typename IdOf>
  void append_cell_of(vtkIdType count, IdOf&& id_of);

  vtkWeakPointer<vtkPolyData> mSharer;
  ColourBinding mBinding;
  int mCellType = 0;

  // What begin() has found.
  vtkSmartPointer<vtkPoints> mPoints;
  Stamped<vtkPoints>* mOwnPoints = nullptr;            // null when they are somebody else's
  GrowingArray<vtkFloatArray>* mCoordinates = nullptr; // likewise
  Target mTarget;
  vtkSmartPointer<GrowingArray<vtkUnsignedCharArray>> mColours;
  vtkMTimeType mColouredTime = 0; // of the attributes that it is found in
};

} // namespace morrow
