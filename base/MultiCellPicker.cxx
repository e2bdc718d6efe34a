// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MultiCellPicker.h"

#include "CellBlocksCache.h"
#include "PickBounds.h"
#include "PickableProps.h"
#include "RayPick.h"
#include "RayTube.h"
#include "RegionPick.h"
#include "VTKSeam.h"
#include "WindowDepth.h"

#include <vtkCamera.h>
#include <vtkCommand.h>
#include <vtkGenericCell.h>
#include <vtkMapper.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkPointSet.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <vtkTransform.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

vtkStandardNewMacro(MultiCellPicker)

bool MultiCellPicker::mSelectVisibleOnly = false;
bool MultiCellPicker::mBoxPickAcceptPartialCells = false;

namespace {

// Part of the message that hosts have learnt to look for.
constexpr const char* ErrorFile = "base/MultiCellPicker";

constexpr double NoPick = 1.0e38F; // without a mapper that can be picked
constexpr double NotNearest = 2.0; // no parameter of a point between the ray's ends

void copy_point(const double (&from)[3], float (&to)[3])
{
  std::transform(from, from + 3, to, [](double value) { return static_cast<float>(value); });
}

// World to view, with depth from 0 to 1.
void copy_projection(vtkRenderer& renderer, vtkMatrix4x4& matrix)
{
  matrix.DeepCopy(renderer.GetActiveCamera()->GetCompositeProjectionTransformMatrix(
      renderer.GetTiledAspectRatio(), 0.0, 1.0));
}

} // namespace

/// One pick. Keeps alive what observers could destroy, and other picks of the same picker away.
class MultiCellPicker::Turn
{
public:
  Turn(MultiCellPicker& picker, vtkRenderer* renderer)
      : mPicker(&picker), mRenderer(renderer), mIsMine(!std::exchange(picker.mIsPicking, true))
  {}
  ~Turn()
  {
    if (!mIsMine) {
      return;
    }
    for (CellPick* record : mPicker->CellPicks) {
      record->Region = nullptr;
    }
    mPicker->mDepth = nullptr;
    mPicker->mSpare = {};
    mPicker->mIsPicking = false;
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

  [[nodiscard]] bool is_mine() const { return mIsMine; }

private:
  vtkSmartPointer<MultiCellPicker> mPicker;
  vtkSmartPointer<vtkRenderer> mRenderer;
  bool mIsMine;
};

MultiCellPicker::MultiCellPicker() : Cell(vtkGenericCell::New()), mBlocks(morrow::CellBlocksCache::shared())
{
  this->SetTolerance(0.01F);
}

MultiCellPicker::~MultiCellPicker()
{
  this->delete_records();
  this->Cell->Delete();
}

void MultiCellPicker::Initialize()
{
  this->delete_records();
  mHasWarned = false;
  this->Superclass::Initialize();
}

void MultiCellPicker::delete_records()
{
  for (CellPick* record : std::exchange(this->CellPicks, {})) {
    if (mIsPicking && record->SubPicks.capacity() > mSpare.capacity()) {
      mSpare.swap(record->SubPicks);
    }
    record->Transform->Delete();
    delete record;
  }
}

MultiCellPicker::CellPick& MultiCellPicker::add_record(vtkProp3D* prop, vtkDataSet* data,
                                                       std::vector<SubCellPick>&& hits)
{
  auto record = std::make_unique<CellPick>();
  record->Prop = prop;
  record->DataSet = data;
  record->SubPicks = std::move(hits);
  this->CellPicks.push_back(record.get());
  record->Transform = vtkTransform::New();
  record->Transform->DeepCopy(this->Transform);
  return *record.release();
}

void MultiCellPicker::warn_of_cells_beyond(vtkDataSet& data)
{
  constexpr vtkIdType most = vtkIdType{std::numeric_limits<std::int32_t>::max()} + 1;
  if (data.GetNumberOfCells() > most && !std::exchange(mHasWarned, true)) {
    vtkWarningMacro("Only the first " << most << " cells of a data set can be picked.");
  }
}

void MultiCellPicker::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
  for (const CellPick* record : this->CellPicks) {
    os << "Prop: " << static_cast<const void*>(record->Prop) << "\n";
  }
}

// ---------------------------------------------------------------------------------------------------------
// Ray

int MultiCellPicker::Pick(double x, double y, double z, vtkRenderer* renderer)
{
  const Turn turn(*this, renderer);
  return turn.is_mine() ? this->Superclass::Pick(x, y, z, renderer) : 0;
}

int MultiCellPicker::Pick3DPoint(double point[3], vtkRenderer* renderer)
{
  const Turn turn(*this, renderer);
  return turn.is_mine() ? this->Superclass::Pick3DPoint(point, renderer) : 0;
}

int MultiCellPicker::Pick3DPoint(double p1[3], double p2[3], vtkRenderer* renderer)
{
  const Turn turn(*this, renderer);
  return turn.is_mine() ? this->Superclass::Pick3DPoint(p1, p2, renderer) : 0;
}

int MultiCellPicker::Pick3DRay(double point[3], double orientation[4], vtkRenderer* renderer)
{
  const Turn turn(*this, renderer);
  return turn.is_mine() ? this->Superclass::Pick3DRay(point, orientation, renderer) : 0;
}

double MultiCellPicker::IntersectWithLine(const double p1[3], const double p2[3], double tol,
                                          vtkAssemblyPath* /*path*/, vtkProp3D* prop,
                                          vtkAbstractMapper3D* mapper)
{
  if (vtkMapper::SafeDownCast(mapper) == nullptr) {
    return NoPick;
  }
  const morrow::PickRay ray = {{p1[0], p1[1], p1[2]}, {p2[0], p2[1], p2[2]}, tol};
  this->Transform->Update();
  for (const auto& data : morrow::data_sets_of(mapper)) {
    this->warn_of_cells_beyond(*data);
    std::vector<SubCellPick> hits = morrow::cells_on_ray(ray, *data, *this->Transform, *this->Cell, *mBlocks);
    if (!hits.empty()) {
      CellPick& record = this->add_record(prop, data, std::move(hits));
      copy_point(ray.p1, record.P1);
      copy_point(ray.p2, record.P2);
      record.Tolerance = tol;
    }
  }
  return NotNearest;
}

int MultiCellPicker::intersect_point_with_line(double* x, const float* p1, const float* p2, float tol,
                                               float& t, float* closest, float* pcoords, int& subId)
{
  subId = 0;
  if (x == nullptr || p1 == nullptr || p2 == nullptr || closest == nullptr || pcoords == nullptr) {
    return 0;
  }
  pcoords[1] = 0.0F;
  double d[3];
  double along = 0.0;
  double squared_length = 0.0;
  for (int i = 0; i < 3; ++i) {
    d[i] = static_cast<double>(p2[i]) - static_cast<double>(p1[i]);
    along += (x[i] - static_cast<double>(p1[i])) * d[i];
    squared_length += d[i] * d[i];
  }
  if (squared_length == 0.0) {
    return 0;
  }
  t = static_cast<float>(along / squared_length);
  pcoords[0] = -10.0F;
  if (t < 0.0F || t > 1.0F) {
    return 0;
  }
  for (int i = 0; i < 3; ++i) {
    const double on_line = static_cast<double>(p1[i]) + static_cast<double>(t) * d[i];
    if (std::abs(x[i] - on_line) > static_cast<double>(tol)) {
      return 0;
    }
  }
  pcoords[0] = 0.0F;
  std::transform(x, x + 3, closest, [](double value) { return static_cast<float>(value); });
  return 1;
}

// ---------------------------------------------------------------------------------------------------------
// Region

int MultiCellPicker::PickByBounds(PickBounds* region, vtkRenderer* renderer)
{
  const Turn turn(*this, renderer);
  if (!turn.is_mine()) {
    return 0;
  }
  this->Initialize();
  if (renderer == nullptr) {
    morrow::report_vtk_error(*this, ErrorFile, __LINE__, "Must specify renderer!");
    return 0;
  }
  this->Renderer = renderer;
  vtkNew<vtkMatrix4x4> projection;
  if (renderer->GetRenderWindow() != nullptr) {
    copy_projection(*renderer, *projection);
  }
  this->InvokeEvent(vtkCommand::StartPickEvent, nullptr);
  if (region != nullptr && renderer->GetRenderWindow() != nullptr) {
    this->visit_props(*region, *renderer, *projection);
  }
  this->InvokeEvent(vtkCommand::EndPickEvent, nullptr);
  return this->CellPicks.empty() ? 0 : 1;
}

void MultiCellPicker::visit_props(PickBounds& region, vtkRenderer& renderer, vtkMatrix4x4& projection)
{
  if (mSelectVisibleOnly) {
    // Before the props are listed: it may render, which can change them, and how deep the camera sees.
    mDepth = std::make_unique<morrow::WindowDepth>();
    if (mDepth->read(renderer)) {
      copy_projection(renderer, projection);
    }
  }
  vtkPropCollection* props = this->PickFromList != 0 ? this->GetPickList() : renderer.GetViewProps();
  this->Transform->PostMultiply();
  vtkNew<vtkMatrix4x4> combined;
  for (const morrow::PickableProp& found : morrow::pickable_props(*props)) {
    this->Transform->SetMatrix(found.matrix);
    vtkMatrix4x4::Multiply4x4(&projection, found.matrix, combined);
    this->IntersectWithBounds(&region, combined, found.path, found.prop, found.mapper, &renderer);
  }
}

double MultiCellPicker::IntersectWithBounds(PickBounds* region, vtkMatrix4x4* matrix,
                                            vtkAssemblyPath* /*path*/, vtkProp3D* prop,
                                            vtkAbstractMapper3D* mapper, vtkRenderer* renderer)
{
  if (vtkMapper::SafeDownCast(mapper) == nullptr) {
    return NoPick;
  }
  if (region == nullptr || matrix == nullptr || renderer == nullptr ||
      renderer->GetRenderWindow() == nullptr) {
    return NotNearest;
  }
  morrow::RegionQuestion question(*region, *matrix, *renderer);
  question.takes_touching_cells = mBoxPickAcceptPartialCells;
  question.spare = &mSpare;
  std::unique_ptr<morrow::WindowDepth> own_depth;
  if (mSelectVisibleOnly && mDepth == nullptr) {
    own_depth = std::make_unique<morrow::WindowDepth>();
    own_depth->read(*renderer);
  }
  if (mSelectVisibleOnly) {
    question.depth = own_depth != nullptr ? own_depth.get() : mDepth.get();
  }
  for (const auto& data : morrow::data_sets_of(mapper)) {
    auto* points = vtkPointSet::SafeDownCast(data);
    if (points == nullptr) {
      continue;
    }
    this->warn_of_cells_beyond(*points);
    std::vector<SubCellPick> hits = morrow::cells_in_region(question, *points, *mBlocks);
    if (!hits.empty()) {
      this->add_record(prop, points, std::move(hits)).Region = region;
    }
  }
  return NotNearest;
}
