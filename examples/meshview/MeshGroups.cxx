// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshGroups.h"

#include "MRUtil.h"
#include "MeshFaces.h"
#include "MeshLines.h"
#include "MeshModel.h"
#include "PartProps.h"
#include "SurfacePieces.h"

#include <vtkActor.h>
#include <vtkCellData.h>
#include <vtkMapper.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>

namespace {

using Pieces = std::vector<vtkSmartPointer<vtkPolyData>>;

/// A piece of the surface for each face, and one for all that is in no face, as vertices and lines.
Pieces face_pieces(vtkPolyData& surface, const MeshFaces& faces)
{
  SurfacePieces maker(surface);
  Pieces pieces;
  for (vtkIdType face = 0; face < faces.number_of_faces(); ++face) {
    pieces.push_back(maker.cells(faces.cells_of(face)));
  }
  SurfacePieces::Ids others;
  for (vtkIdType cell = 0; cell < surface.GetNumberOfCells(); ++cell) {
    if (faces.face_of(cell) < 0) {
      others.push_back(cell);
    }
  }
  if (!others.empty()) {
    pieces.push_back(maker.cells(others));
  }
  return pieces;
}

/// A line for each edge.
Pieces edge_pieces(vtkPolyData& surface, const MeshFaces& faces)
{
  SurfacePieces maker(surface);
  Pieces pieces;
  for (vtkIdType edge = 0; edge < faces.number_of_edges(); ++edge) {
    pieces.push_back(maker.lines({&faces.edge(edge).points}));
  }
  return pieces;
}

constexpr const char* kColorArray = "meshview face colour";

/// Gives the piece a colour that mappers find in its cells.
void paint(vtkPolyData& piece, BrantColor color)
{
  vtkNew<vtkUnsignedCharArray> colors;
  colors->SetName(kColorArray);
  colors->SetNumberOfComponents(3);
  colors->SetNumberOfTuples(piece.GetNumberOfCells());
  colors->FillComponent(0, color.red());
  colors->FillComponent(1, color.green());
  colors->FillComponent(2, color.blue());
  piece.GetCellData()->AddArray(colors);
}

void use_painted_colors(vtkMapper& mapper)
{
  mapper.ScalarVisibilityOn();
  mapper.SetScalarModeToUseCellFieldData();
  mapper.SelectColorArray(kColorArray);
}

} // namespace

// --- Entities

GroupedEntity::~GroupedEntity()
{
  set_data(nullptr); // others may hold the data, which must not lead here any more
}

void GroupedEntity::set_data(vtkPolyData* data)
{
  if (mData != nullptr) {
    MRUtil::set_back_pointer(mData, nullptr);
  }
  mData = data;
  if (mData != nullptr) {
    MRUtil::set_back_pointer(mData, this);
  }
  modify_owning_groups();
}

vtkPolyData* GroupedEntity::data() const
{
  return mData;
}

// --- Groups

EntityGroup::EntityGroup(int limit) : mLimit(limit)
{
  set_number_per_group(limit);
  mutable_data_sets().push_back(vtkSmartPointer<vtkMultiBlockDataSet>::New());
}

GDataGroup* EntityGroup::new_group()
{
  return new EntityGroup(mLimit);
}

void EntityGroup::update_data()
{
  vtkMultiBlockDataSet* blocks = data_sets().front();
  blocks->SetNumberOfBlocks(static_cast<unsigned int>(entities().size()));
  unsigned int number = 0;
  for (GDataGroupEntity* entity : entities()) {
    blocks->SetBlock(number++, static_cast<GroupedEntity*>(entity)->data());
  }
  clear_modified();
}

// --- The model

/// The entities that are drawn alike, and their groups.
struct MeshGroups::Chain
{
  explicit Chain(int limit) : head(limit) {}

  void fill(const Pieces& pieces)
  {
    entities = std::vector<GroupedEntity>(pieces.size());
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      entities[i].set_data(pieces[i]);
      head.add_entity(&entities[i]); // says which data sets to show; here all are shown afterwards
    }
  }

  [[nodiscard]] std::size_t number_of_groups() const
  {
    return entities.empty() ? 0 : head.all_groups().size();
  }

  EntityGroup head;
  std::vector<GroupedEntity> entities;
};

struct MeshGroups::Block
{
  explicit Block(int limit) : faces(limit), edges(limit) {}

  /// Only those who want to see them wait for them to be made.
  void fill_edges(const PartStyle& style)
  {
    if (edges.entities.empty()) {
      edges.fill(edge_pieces(*style.surface, style.lines->faces()));
    }
  }

  Chain faces;
  Chain edges;
};

MeshGroups::MeshGroups(int limit, bool has_colors) : mLimit(limit), mHasColors(has_colors) {}

MeshGroups::~MeshGroups() = default;

void MeshGroups::show(const MeshModel& mesh)
{
  unhook_from_views(); // views take all props at once in less time than one after the other
  clear();
  for (std::size_t i = 0; i < mesh.blocks().size(); ++i) {
    const PartStyle style = mesh.part_style(i);
    if (i == mBlocks.size()) {
      add_block(style);
    }
    show(mBlocks[i]->faces, [style, has_colors = mHasColors](vtkDataObject* data, GView* view) {
      auto actor = make_surface_actor(data, style, *view);
      if (has_colors) {
        use_painted_colors(*actor->GetMapper());
      }
      return std::vector<vtkSmartPointer<vtkProp>>{actor};
    });
    if (style.draw.wire == Wire::Features) {
      mBlocks[i]->fill_edges(style);
      show(mBlocks[i]->edges, [style](vtkDataObject* data, GView* view) {
        return std::vector<vtkSmartPointer<vtkProp>>{make_wire_actor(data, style, *view)};
      });
    }
  }
  hook_to_views();
}

void MeshGroups::add_block(const PartStyle& style)
{
  Pieces pieces = face_pieces(*style.surface, style.lines->faces());
  if (mHasColors) {
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      paint(*pieces[i], palette_color(i));
    }
  }
  mBlocks.push_back(std::make_unique<Block>(mLimit));
  mBlocks.back()->faces.fill(pieces);
}

void MeshGroups::show(const Chain& chain, const PartPropFunction& make_props)
{
  for (const GDataGroup::DataSets& data_sets : chain.head.all_groups()) {
    for (const auto& data : data_sets) {
      add_part(data, make_props);
    }
  }
}

std::string MeshGroups::summary() const
{
  std::size_t faces = 0;
  std::size_t face_groups = 0;
  std::size_t edges = 0;
  std::size_t edge_groups = 0;
  for (const auto& block : mBlocks) {
    faces += block->faces.entities.size();
    face_groups += block->faces.number_of_groups();
    edges += block->edges.entities.size();
    edge_groups += block->edges.number_of_groups();
  }
  const std::string text = std::to_string(faces) + " faces in " + std::to_string(face_groups);
  return edges == 0 ? text : text + ", " + std::to_string(edges) + " edges in " + std::to_string(edge_groups);
}

void MeshGroups::update_parts()
{
  for (const auto& block : mBlocks) {
    block->faces.head.update_all(view_props());
    block->edges.head.update_all(view_props());
  }
}
