// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PickTargets.h"

#include "MeshBlocks.h"
#include "MeshFaces.h"
#include "MeshLines.h"
#include "MeshModel.h"
#include "SurfacePieces.h"

#include <vtkActor.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCompositePolyDataMapper2.h>
#include <vtkFieldData.h>
#include <vtkIdList.h>
#include <vtkIdTypeArray.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>

#include <algorithm>
#include <numeric>
#include <unordered_map>

namespace {

/// The ids that the mesh has given its points or cells, or their numbers.
std::vector<long long> ids_of(vtkDataSetAttributes& attributes, vtkIdType count)
{
  std::vector<long long> ids(static_cast<std::size_t>(count));
  auto* given = vtkIdTypeArray::SafeDownCast(attributes.GetArray(id_array_name()));
  if (given != nullptr && given->GetNumberOfValues() == count) {
    std::copy_n(given->GetPointer(0), count, ids.begin());
  } else {
    std::iota(ids.begin(), ids.end(), 0);
  }
  return ids;
}

vtkSmartPointer<vtkPolyData> with_a_vertex_at_each_point(vtkPolyData& surface)
{
  vtkNew<vtkCellArray> vertices;
  for (vtkIdType i = 0; i < surface.GetNumberOfPoints(); ++i) {
    vertices->InsertNextCell({i});
  }
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(surface.GetPoints());
  data->SetVerts(vertices);
  return data;
}

/// Copies points as they are first asked for.
class PointCopier
{
public:
  explicit PointCopier(vtkPolyData& from) : mFrom(from) {}

  [[nodiscard]] vtkIdType copy(vtkIdType point)
  {
    const auto [entry, is_new] = mCopies.emplace(point, mTo->GetNumberOfPoints());
    if (is_new) {
      mTo->InsertNextPoint(mFrom.GetPoint(point));
    }
    return entry->second;
  }
  [[nodiscard]] vtkPoints* points() { return mTo; }

private:
  vtkPolyData& mFrom;
  vtkNew<vtkPoints> mTo;
  std::unordered_map<vtkIdType, vtkIdType> mCopies;
};

/// Lines from point to point, with points of their own.
vtkSmartPointer<vtkPolyData> extract_edge(vtkPolyData& surface, const std::vector<vtkIdType>& points)
{
  PointCopier copier(surface);
  vtkNew<vtkCellArray> lines;
  for (std::size_t i = 1; i < points.size(); ++i) {
    lines->InsertNextCell({copier.copy(points[i - 1]), copier.copy(points[i])});
  }
  auto edge = vtkSmartPointer<vtkPolyData>::New();
  edge->SetPoints(copier.points());
  edge->SetLines(lines);
  return edge;
}

/// Tells MultiCellPicker that the data set holds several entities.
void add_pointers(vtkPolyData& data)
{
  vtkNew<vtkIdTypeArray> pointers;
  pointers->SetName("Pointers");
  data.GetFieldData()->AddArray(pointers);
}

} // namespace

PickTargets::PickTargets(EntityKind kind, const MeshModel& model) : mKind(kind)
{
  for (std::size_t block = 0; block < model.blocks().size(); ++block) {
    vtkPolyData& surface = *model.blocks()[block].surface;
    mFirstOfBlock.push_back(mData.size());
    if (kind == EntityKind::Block) {
      add(block, &surface);
    } else if (kind == EntityKind::Face || kind == EntityKind::Edge) {
      add_shapes(block, surface, *model.lines()[block]);
    } else {
      add_shared(block, surface);
    }
  }
  make_actor();
}

void PickTargets::add(std::size_t block, vtkPolyData* data)
{
  const std::size_t number = mKind == EntityKind::Block ? block : mData.size() - mFirstOfBlock.back();
  mPlaces[data] = mData.size();
  mData.push_back(data);
  mEntities.push_back({mKind, block, static_cast<long long>(number)});
}

void PickTargets::add_shapes(std::size_t block, vtkPolyData& surface, MeshLines& lines)
{
  const MeshFaces& faces = lines.faces();
  SurfacePieces pieces(surface);
  const bool is_face = mKind == EntityKind::Face;
  for (vtkIdType i = 0; i < (is_face ? faces.number_of_faces() : faces.number_of_edges()); ++i) {
    add(block, is_face ? pieces.cells(faces.cells_of(i)) : extract_edge(surface, faces.edge(i).points));
  }
}

void PickTargets::add_shared(std::size_t block, vtkPolyData& surface)
{
  vtkSmartPointer<vtkPolyData> data;
  if (mKind == EntityKind::Node) {
    data = with_a_vertex_at_each_point(surface);
    mIds.push_back(ids_of(*surface.GetPointData(), surface.GetNumberOfPoints()));
  } else {
    data = vtkSmartPointer<vtkPolyData>::New();
    data->CopyStructure(&surface);
    mIds.push_back(ids_of(*surface.GetCellData(), surface.GetNumberOfCells()));
  }
  add_pointers(*data);
  CellsById cells;
  for (std::size_t i = 0; i < mIds.back().size(); ++i) {
    cells.emplace_back(mIds.back()[i], static_cast<vtkIdType>(i));
  }
  std::sort(cells.begin(), cells.end());
  mCells.push_back(std::move(cells));
  add(block, data);
}

void PickTargets::make_actor()
{
  vtkNew<vtkMultiBlockDataSet> all;
  for (std::size_t i = 0; i < mData.size(); ++i) {
    all->SetBlock(static_cast<unsigned int>(i), mData[i]);
  }
  vtkNew<vtkCompositePolyDataMapper2> mapper;
  mapper->SetInputDataObject(all);
  mActor = vtkSmartPointer<vtkActor>::New();
  mActor->SetMapper(mapper);
}

MeshEntity::Which PickTargets::entity_of(vtkDataSet* data, vtkIdType cell) const
{
  const std::size_t place = mPlaces.at(data);
  MeshEntity::Which entity = mEntities[place];
  if (!is_whole()) {
    entity.id = mIds[place][static_cast<std::size_t>(cell)];
  }
  return entity;
}

bool PickTargets::has_lines_or_vertices() const
{
  return std::any_of(mData.begin(), mData.end(), [](const auto& data) {
    return data->GetNumberOfLines() > 0 || data->GetNumberOfVerts() > 0;
  });
}

vtkPolyData* PickTargets::data_of(const MeshEntity::Which& entity) const
{
  const bool is_one_of_block = mKind == EntityKind::Face || mKind == EntityKind::Edge;
  return mData[mFirstOfBlock[entity.block] + (is_one_of_block ? static_cast<std::size_t>(entity.id) : 0)];
}

std::vector<vtkIdType> PickTargets::cells_of(const MeshEntity::Which& entity) const
{
  std::vector<vtkIdType> cells;
  if (is_whole()) {
    cells.resize(static_cast<std::size_t>(data_of(entity)->GetNumberOfCells()));
    std::iota(cells.begin(), cells.end(), vtkIdType(0));
    return cells;
  }
  const CellsById& all = mCells[entity.block];
  auto found = std::lower_bound(all.begin(), all.end(), std::make_pair(entity.id, vtkIdType(0)));
  for (; found != all.end() && found->first == entity.id; ++found) {
    cells.push_back(found->second);
  }
  return cells;
}
