// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Cells under a ray and in each kind of region, whole, touched and visible; a picker of entities, the lists
// of what is picked, and an observer.
#include "GPicker.h"
#include "GPickerBase.h"
#include "GView.h"
#include "Memcheck.h"
#include "MultiCellPicker.h"
#include "PickBounds.h"

#include <vtkActor.h>
#include <vtkNew.h>
#include <vtkPolyDataMapper.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSphereSource.h>

using morrow_memcheck::expect;

namespace {

constexpr int kWidth = 64;
constexpr int kHeight = 48;

/// One cell of the sphere.
class CellEntity : public GPicked::PickedEntity
{
public:
  explicit CellEntity(std::int32_t cell) : mCell(cell) {}

  [[nodiscard]] void* host_object() const override { return nullptr; }
  [[nodiscard]] const char* type_name() const override { return "cell"; }
  [[nodiscard]] int id() const override { return mCell; }
  [[nodiscard]] int element() const override { return mCell; }
  [[nodiscard]] const char* name() const override { return ""; }
  [[nodiscard]] long long key() const override { return mCell; }

private:
  std::int32_t mCell;
};

class CellPicker : public GPicker
{
public:
  int compute_pick(vtkRenderer* renderer, int x, int y) override
  {
    mPicker->Pick(x, y, 0.0, renderer);
    return collect();
  }
  int compute_pick_by_ray(vtkRenderer* renderer, const double* from, const double* to) override
  {
    double ends[2][3] = {{from[0], from[1], from[2]}, {to[0], to[1], to[2]}};
    mPicker->Pick3DPoint(ends[0], ends[1], renderer);
    return collect();
  }
  int compute_pick_by_bounds(vtkRenderer* renderer, PickBounds* bounds) override
  {
    mPicker->PickByBounds(bounds, renderer);
    return collect();
  }

private:
  int collect()
  {
    int count = 0;
    for (const MultiCellPicker::CellPick* pick : mPicker->get_cell_picks()) {
      for (const MultiCellPicker::SubCellPick& cell : pick->SubPicks) {
        add_to_selection_buffer(new CellEntity(cell.CellId), cell.Point, 1.0F, cell.Direct);
        ++count;
      }
    }
    return count;
  }

  vtkNew<MultiCellPicker> mPicker;
};

class Listener : public GPicked::PickCallbackNow
{
public:
  void picked_list_changed(int count, const GPicked::PickedEntity* const* /*entities*/,
                           const float* const* /*points*/, bool /*added*/) override
  {
    mHeard += count;
  }
  void pre_selection_changed(GPicked::PickedEntity* /*entity*/, const float* /*point*/, bool /*on*/) override
  {
    ++mHeard;
  }

  [[nodiscard]] int heard() const { return mHeard; }

private:
  int mHeard = 0;
};

void drag_regions(CellPicker& picker, vtkRenderer* renderer)
{
  int corners[2][2] = {{0, 0}, {kWidth - 1, kHeight - 1}};
  int middle[2] = {kWidth / 2, kHeight / 2};
  int lasso[4][2] = {{2, 2}, {60, 4}, {58, 45}, {4, 40}};
  for (const bool takes_touched : {false, true}) {
    for (const bool sees : {false, true}) {
      MultiCellPicker::mBoxPickAcceptPartialCells = takes_touched;
      MultiCellPicker::mSelectVisibleOnly = sees;
      picker.begin_pick(false);
      expect(picker.compute_pick_by_box(renderer, corners[0], corners[1]) > 0, "a box picks");
      const int in_circle = picker.compute_pick_by_circle(renderer, middle, 12.0);
      expect((in_circle > 0) == takes_touched, "a small circle touches");
      expect(picker.compute_pick_by_polygon(renderer, 4, lasso) >= 0, "a lasso picks");
      picker.end_pick_box();
      expect(GPickerBase::current_selection_count() > 0, "cells are picked");
    }
  }
}

void click_and_hover(CellPicker& picker, vtkRenderer* renderer)
{
  picker.begin_pick(false);
  expect(picker.compute_pick(renderer, kWidth / 2 + 3, kHeight / 2 + 2) > 0, "a click picks");
  picker.end_pick();
  GPickerBase::step_next_possible_selection();
  GPickerBase::step_previous_possible_selection();
  const double from[3] = {0.1, 0.05, 2.0};
  const double to[3] = {0.1, 0.05, -2.0};
  picker.begin_pre_select();
  expect(picker.compute_pick_by_ray(renderer, from, to) > 0, "a ray picks");
  picker.end_pre_select();
  GPickerBase::set_pre_selection(EntitySelection());
}

void pick_all(GView& view)
{
  Listener listener;
  GPickerBase::add_pick_observer(&listener);
  GPickerBase::add_pre_selection_observer(&listener);
  {
    CellPicker picker;
    GPickerBase::register_picker("cell", &picker);
    GPickerBase::set_pick_type("cell", true);
    drag_regions(picker, view.get_renderer());
    click_and_hover(picker, view.get_renderer());
  }
  GPickerBase::clear_possible_selections();
  GPickerBase::clear_picked_list();
  expect(listener.heard() > 0, "the observer hears");
  GPickerBase::remove_pick_observer(&listener);
  GPickerBase::remove_pre_selection_observer(&listener);
}

} // namespace

int main()
{
  return morrow_memcheck::run([] {
    GView view;
    view.get_render_window()->SetSize(kWidth, kHeight);
    vtkNew<vtkSphereSource> sphere;
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputConnection(sphere->GetOutputPort());
    auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetMapper(mapper);
    view.add_props({actor});
    view.reset_camera();
    view.render();
    pick_all(view);
  });
}
