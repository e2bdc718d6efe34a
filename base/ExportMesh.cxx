// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ExportMesh.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include <vtkCellArray.h>
#include <vtkDoubleArray.h>
#include <vtkIdList.h>
#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>

namespace morrow {

namespace {

using Vector = std::array<double, 3>;
using Ids = std::vector<vtkIdType>;

bool is_finite(const Vector& v)
{
  return std::all_of(v.begin(), v.end(), [](double each) { return std::isfinite(each); });
}

/// A matrix applied to points and to normals.
class Placement
{
public:
  explicit Placement(const vtkMatrix4x4& matrix) : mMatrix(matrix)
  {
    const auto column = [&matrix](int j) {
      return Vector{matrix.GetElement(0, j), matrix.GetElement(1, j), matrix.GetElement(2, j)};
    };
    const std::array<Vector, 3> columns = {column(0), column(1), column(2)};
    for (std::size_t i = 0; i < 3; ++i) {
      vtkMath::Cross(columns[(i + 1) % 3].data(), columns[(i + 2) % 3].data(), mCofactors[i].data());
    }
    mMirrors = vtkMath::Dot(columns[0].data(), mCofactors[0].data()) < 0.0;
  }

  [[nodiscard]] bool mirrors() const { return mMirrors; }

  [[nodiscard]] Vector point(const Vector& p) const
  {
    double w[4];
    for (int i = 0; i < 4; ++i) {
      w[i] = mMatrix.GetElement(i, 0) * p[0] + mMatrix.GetElement(i, 1) * p[1] +
             mMatrix.GetElement(i, 2) * p[2] + mMatrix.GetElement(i, 3);
    }
    return {w[0] / w[3], w[1] / w[3], w[2] / w[3]};
  }

  /// The cofactors are the inverse transpose up to a factor, and exist for singular matrices too.
  [[nodiscard]] Vector normal(const Vector& n) const
  {
    Vector out{};
    for (std::size_t i = 0; i < 3; ++i) {
      out[i] = mCofactors[0][i] * n[0] + mCofactors[1][i] * n[1] + mCofactors[2][i] * n[2];
      out[i] = mMirrors ? -out[i] : out[i];
    }
    vtkMath::Normalize(out.data());
    return is_finite(out) ? out : Vector{};
  }

private:
  const vtkMatrix4x4& mMatrix;
  std::array<Vector, 3> mCofactors{}; // column by column
  bool mMirrors = false;
};

/// An array of the mesh's points with enough components and a tuple for each point; otherwise null.
vtkDataArray* checked(vtkDataArray* array, vtkPolyData& mesh, int components)
{
  const bool fits = array != nullptr && array->GetNumberOfComponents() >= components &&
                    array->GetNumberOfTuples() >= mesh.GetNumberOfPoints();
  return fits ? array : nullptr;
}

/// Collects cells of one kind and the points that they use.
class PartBuilder
{
public:
  PartBuilder(vtkPolyData& mesh, const Placement& placement, const MeshColors& colors)
      : mMesh(mesh), mPlacement(placement), mColors(colors)
  {
    mPoints->SetDataTypeToDouble();
    if (colors.rgba != nullptr) {
      mNewColors = vtkSmartPointer<vtkUnsignedCharArray>::New();
      mNewColors->SetNumberOfComponents(4);
      mNewColors->SetName("Colors");
    }
  }

  void use_surface_attributes()
  {
    vtkPointData& data = *mMesh.GetPointData();
    if ((mNormals = checked(data.GetNormals(), mMesh, 3)) != nullptr) {
      mNewNormals->SetNumberOfComponents(3);
    }
    if ((mTCoords = checked(data.GetTCoords(), mMesh, 1)) != nullptr) {
      mNewTCoords->SetNumberOfComponents(2);
    }
  }

  [[nodiscard]] bool is_usable(vtkIdType id) const
  {
    return id >= 0 && id < mMesh.GetNumberOfPoints() && is_finite(this->place(id));
  }

  /// The points of a cell in the new numbering; empty when one of them cannot be written.
  [[nodiscard]] Ids take_points(const Ids& ids, vtkIdType cell)
  {
    if (!std::all_of(ids.begin(), ids.end(), [this](vtkIdType id) { return this->is_usable(id); })) {
      return {};
    }
    Ids taken;
    taken.reserve(ids.size());
    for (const vtkIdType id : ids) {
      taken.push_back(this->take_point(id, cell));
    }
    return taken;
  }

  void add_cell(const Ids& points)
  {
    mCells->InsertNextCell(static_cast<vtkIdType>(points.size()), points.data());
  }

  [[nodiscard]] vtkCellArray* cells() const { return mCells; }

  /// The data set without its cells; null when there are none.
  [[nodiscard]] vtkSmartPointer<vtkPolyData> finish() const
  {
    if (mCells->GetNumberOfCells() == 0) {
      return nullptr;
    }
    auto part = vtkSmartPointer<vtkPolyData>::New();
    part->SetPoints(mPoints);
    part->GetPointData()->SetScalars(mNewColors);
    part->GetPointData()->SetNormals(mNormals != nullptr ? mNewNormals.Get() : nullptr);
    part->GetPointData()->SetTCoords(mTCoords != nullptr ? mNewTCoords.Get() : nullptr);
    return part;
  }

private:
  [[nodiscard]] Vector place(vtkIdType id) const
  {
    Vector p{};
    mMesh.GetPoint(id, p.data());
    return mPlacement.point(p);
  }

  vtkIdType take_point(vtkIdType id, vtkIdType cell)
  {
    if (mColors.rgba != nullptr && mColors.per_cell) {
      return this->copy_point(id, cell);
    }
    if (mNewIds.empty()) {
      mNewIds.assign(static_cast<std::size_t>(mMesh.GetNumberOfPoints()), -1);
    }
    vtkIdType& taken = mNewIds[static_cast<std::size_t>(id)];
    if (taken < 0) {
      taken = this->copy_point(id, id);
    }
    return taken;
  }

  vtkIdType copy_point(vtkIdType id, vtkIdType color)
  {
    this->take_color(color);
    this->take_normal(id);
    this->take_tcoords(id);
    return mPoints->InsertNextPoint(this->place(id).data());
  }

  void take_color(vtkIdType from)
  {
    if (mColors.rgba == nullptr) {
      return;
    }
    unsigned char rgba[4] = {255, 255, 255, 255};
    if (from < mColors.rgba->GetNumberOfTuples()) {
      mColors.rgba->GetTypedTuple(from, rgba);
    }
    mNewColors->InsertNextTypedTuple(rgba);
  }

  void take_normal(vtkIdType id)
  {
    if (mNormals != nullptr) {
      const Vector n = {mNormals->GetComponent(id, 0), mNormals->GetComponent(id, 1),
                        mNormals->GetComponent(id, 2)};
      mNewNormals->InsertNextTuple(mPlacement.normal(n).data());
    }
  }

  void take_tcoords(vtkIdType id)
  {
    if (mTCoords == nullptr) {
      return;
    }
    double uv[2] = {0.0, 0.0};
    for (int i = 0; i < std::min(2, mTCoords->GetNumberOfComponents()); ++i) {
      const double value = mTCoords->GetComponent(id, i);
      uv[i] = std::isfinite(value) ? value : 0.0;
    }
    mNewTCoords->InsertNextTuple(uv);
  }

  vtkPolyData& mMesh;
  const Placement& mPlacement;
  MeshColors mColors;
  vtkDataArray* mNormals = nullptr;
  vtkDataArray* mTCoords = nullptr;
  Ids mNewIds; // by the mesh's numbering, -1 for a point that is not taken; unused with colours per cell
  vtkNew<vtkPoints> mPoints;
  vtkNew<vtkCellArray> mCells;
  vtkSmartPointer<vtkUnsignedCharArray> mNewColors;
  vtkNew<vtkDoubleArray> mNewNormals;
  vtkNew<vtkDoubleArray> mNewTCoords;
};

/// Calls use(ids, cell) for each cell; the first one has the given number. Returns the number after the last.
template<typename Use>
vtkIdType for_each_cell(vtkCellArray& cells, vtkIdType first, Use&& use)
{
  const vtkNew<vtkIdList> list;
  const vtkIdType count = cells.GetNumberOfCells();
  for (vtkIdType i = 0; i < count; ++i) {
    cells.GetCellAtId(i, list);
    use(Ids(list->begin(), list->end()), first + i);
  }
  return first + count;
}

class MeshBuilder
{
public:
  MeshBuilder(vtkPolyData& mesh, const Placement& placement, const MeshColors& colors)
      : mMesh(mesh), mPlacement(placement), mFaces(mesh, placement, colors), mLines(mesh, placement, colors),
        mVertices(mesh, placement, {})
  {
    mFaces.use_surface_attributes();
  }

  [[nodiscard]] ExportMesh build()
  {
    vtkIdType cell = this->add_vertices(0);
    cell = for_each_cell(*mMesh.GetLines(), cell, [this](const Ids& ids, vtkIdType c) { add_line(ids, c); });
    cell = for_each_cell(*mMesh.GetPolys(), cell, [this](const Ids& ids, vtkIdType c) { add_face(ids, c); });
    for_each_cell(*mMesh.GetStrips(), cell, [this](const Ids& ids, vtkIdType c) { add_strip(ids, c); });
    ExportMesh out{mFaces.finish(), mLines.finish(), mVertices.finish()};
    if (out.faces != nullptr) {
      out.faces->SetPolys(mFaces.cells());
    }
    if (out.lines != nullptr) {
      out.lines->SetLines(mLines.cells());
    }
    if (out.vertices != nullptr) {
      out.vertices->SetVerts(mVertices.cells());
    }
    return out;
  }

private:
  vtkIdType add_vertices(vtkIdType first)
  {
    Ids all;
    const vtkIdType end = for_each_cell(*mMesh.GetVerts(), first, [&](const Ids& ids, vtkIdType cell) {
      for (const vtkIdType id : ids) {
        const Ids taken = mVertices.take_points({id}, cell);
        all.insert(all.end(), taken.begin(), taken.end());
      }
    });
    if (!all.empty()) {
      mVertices.add_cell(all);
    }
    return end;
  }

  /// A point that cannot be written interrupts the line.
  void add_line(const Ids& ids, vtkIdType cell)
  {
    auto begin = ids.begin();
    while (begin != ids.end()) {
      const auto end = std::find_if(begin, ids.end(), [this](vtkIdType id) { return !mLines.is_usable(id); });
      if (end - begin >= 2) {
        mLines.add_cell(mLines.take_points(Ids(begin, end), cell));
      }
      begin = end == ids.end() ? end : end + 1;
    }
  }

  void add_face(const Ids& ids, vtkIdType cell)
  {
    if (ids.size() < 3) {
      return;
    }
    Ids taken = mFaces.take_points(ids, cell);
    if (mPlacement.mirrors()) {
      std::reverse(taken.begin(), taken.end());
    }
    if (!taken.empty()) {
      mFaces.add_cell(taken);
    }
  }

  void add_strip(const Ids& ids, vtkIdType cell)
  {
    for (std::size_t i = 2; i < ids.size(); ++i) {
      const std::size_t turn = i % 2; // every second triangle of a strip runs the other way
      this->add_face({ids[i - 2 + turn], ids[i - 1 - turn], ids[i]}, cell);
    }
  }

  vtkPolyData& mMesh;
  const Placement& mPlacement;
  PartBuilder mFaces;
  PartBuilder mLines;
  PartBuilder mVertices;
};

} // namespace

ExportMesh make_export_mesh(vtkPolyData& mesh, const vtkMatrix4x4& placement, const MeshColors& colors)
{
  const Placement place(placement);
  return MeshBuilder(mesh, place, colors).build();
}

} // namespace morrow
