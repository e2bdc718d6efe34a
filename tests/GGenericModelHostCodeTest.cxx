// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Life of a generic model among views, sets and host code that interferes.
#include "GGenericModel.h"

#include "GenericModelFixture.h"

#include <gtest/gtest.h>

#include <vtkCommand.h>
#include <vtkPropCollection.h>

#include <functional>
#include <memory>
#include <vector>

namespace {

using namespace morrow_test;

using GGenericModelHostCodeTest = ViewTest;

const std::vector<BrantVector> kPoints = some_points(4);

void fill(GGenericModel& model)
{
  for (const MRUtil::DrawMode mode : kAllModes) {
    model.add_points(4, kPoints.data(), BRANT_RED, mode);
    model.add_quad(kPoints.data(), BRANT_BLUE, mode);
    model.add_polydata(one_triangle(), BRANT_GREEN, mode);
  }
  model.add_vector(kPoints[0], kPoints[1], BRANT_RED, true);
  model.add_locate(kPoints[0], "here");
  model.add_label("label", kPoints[0], BRANT_RED);
}

void add_red_quad(GGenericModel& model)
{
  model.add_quad(kPoints.data(), BRANT_RED, MRUtil::DRAW_FILLED);
}

/// Calls the function whenever a prop is shown in the view, or taken away.
struct PropHook : EventHook
{
  PropHook(PlainView& view, std::function<void()> function)
      : EventHook(view.get_renderer()->GetViewProps(), vtkCommand::ModifiedEvent, std::move(function))
  {}
};

TEST_F(GGenericModelHostCodeTest, ModelViewsAndSetsGoInAnyOrder)
{
  enum Part
  {
    Model,
    View,
    OtherView,
    Set
  };
  std::vector<int> order = {Model, View, OtherView, Set};
  do {
    auto model = std::make_unique<GGenericModel>();
    auto view = std::make_shared<PlainView>();
    auto other = std::make_shared<PlainView>();
    auto set = std::make_unique<GModelSet>();
    fill(*model);
    set->add_model(model.get());
    set->add_view(view.get());
    set->add_view(other.get());
    fill(*model);
    set->update_model_parts();
    for (const int part : order) {
      switch (part) {
      case Model:
        model.reset();
        break;
      case View:
        view.reset();
        break;
      case OtherView:
        other.reset();
        break;
      default:
        set.reset();
        break;
      }
    }
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(GGenericModelHostCodeTest, NothingOutlivesTheModel)
{
  std::vector<vtkWeakPointer<vtkObjectBase>> weak;
  PlainView view;
  {
    GGenericModel model;
    model.add_view(&view);
    fill(model);
    model.update_parts();
    for (const MRUtil::DrawMode mode : kAllModes) {
      weak.emplace_back(model.initialize_cell_data(mode, kPolygons));
      weak.emplace_back(model.initialize_point_data(mode, kPolygons));
    }
    for (vtkActor* actor : actors_of(view)) {
      weak.emplace_back(actor);
      weak.emplace_back(actor->GetProperty());
      weak.emplace_back(actor->GetMapper()->GetInputDataObject(0, 0));
    }
    ASSERT_GT(weak.size(), 40U);
  }
  for (const auto& object : weak) {
    EXPECT_EQ(object, nullptr);
  }
  EXPECT_TRUE(shown(view).empty());
}

// Its property and its data are the prop's as well.
TEST_F(GGenericModelHostCodeTest, PropsThatSomebodyHoldsAreWholeWithoutTheModel)
{
  vtkSmartPointer<vtkActor> kept;
  PlainView view;
  {
    GGenericModel model;
    model.add_view(&view);
    model.add_quad(kPoints.data(), BRANT_BLUE, MRUtil::DRAW_FILLED);
    model.update_parts();
    kept = actors_of(view)[0];
  }
  EXPECT_TRUE(shown(view).empty());
  EXPECT_EQ(kept->GetProperty()->GetLineWidth(), 1.0F);
  EXPECT_EQ(vtkPolyData::SafeDownCast(kept->GetMapper()->GetInputDataObject(0, 0))->GetNumberOfCells(), 1);
  kept->GetMapper()->Update();
}

TEST_F(GGenericModelHostCodeTest, HostThatDestroysTheModelWhenItsFirstPropIsShown)
{
  const std::vector<std::function<void(GGenericModel&)>> calls = {
      [](GGenericModel& model) { model.add_points(1, kPoints.data(), BRANT_RED, MRUtil::DRAW_FILLED); },
      add_red_quad,
      [](GGenericModel& model) { model.add_polydata(one_triangle(), BRANT_RED, MRUtil::DRAW_FILLED); },
      [](GGenericModel& model) { model.add_vector(kPoints[0], kPoints[1], BRANT_RED, true); },
      [](GGenericModel& model) { model.add_vector(kPoints[0], kPoints[1], BRANT_RED, false); },
      [](GGenericModel& model) { model.add_cube(kPoints.data(), BRANT_RED, MRUtil::DRAW_FILLED); },
      [](GGenericModel& model) { model.add_locate(kPoints[0], "here"); },
      [](GGenericModel& model) {
        EXPECT_EQ(model.initialize_cell_data(MRUtil::DRAW_FILLED, kPolygons), nullptr);
      },
      [](GGenericModel& model) {
        EXPECT_EQ(model.initialize_point_data(MRUtil::DRAW_FILLED, kPolygons), nullptr);
      }};
  for (const auto& call : calls) {
    auto model = std::make_unique<GGenericModel>();
    PlainView view;
    model->add_view(&view);
    const PropHook hook(view, [&] { model.reset(); });
    call(*model);
    EXPECT_EQ(model, nullptr);
    EXPECT_TRUE(shown(view).empty());
  }
}

TEST_F(GGenericModelHostCodeTest, HostThatClearsTheModelWhenAPropIsShown)
{
  GGenericModel model;
  PlainView view;
  model.add_view(&view);
  {
    const PropHook hook(view, [&] { model.clear(); });
    EXPECT_EQ(model.initialize_cell_data(MRUtil::DRAW_FILLED, kPolygons), nullptr);
    add_red_quad(model);
    model.add_vector(kPoints[0], kPoints[1], BRANT_RED, true);
  }
  EXPECT_EQ(num_part_props(view), 0);
  add_red_quad(model);
  EXPECT_EQ(num_part_props(view), 1);
  EXPECT_EQ(slot(model, MRUtil::DRAW_FILLED, kPolygons).GetNumberOfCells(), 1);
}

TEST_F(GGenericModelHostCodeTest, HostThatThrowsWhenAPropIsShownLeavesNoSlot)
{
  GGenericModel model;
  PlainView view;
  model.add_view(&view);
  {
    const PropHook hook(view, [] { throw HostError("host"); });
    EXPECT_EQ(thrown_through_vtk_by([&] { add_red_quad(model); }), "host");
  }
  add_red_quad(model);
  EXPECT_EQ(num_parts(model), 1);
  EXPECT_EQ(slot(model, MRUtil::DRAW_FILLED, kPolygons).GetNumberOfCells(), 1);
}

TEST_F(GGenericModelHostCodeTest, HostThatAddsWhileTheModelAdds)
{
  GGenericModel model;
  PlainView view;
  model.add_view(&view);
  int depth = 0;
  const PropHook hook(view, [&] {
    if (++depth < 3) {
      model.add_quad(kPoints.data(), BRANT_BLUE, MRUtil::DRAW_FILLED);
    }
  });
  add_red_quad(model);
  vtkPolyData& data = slot(model, MRUtil::DRAW_FILLED, kPolygons);
  EXPECT_EQ(data.GetNumberOfCells(), 2);
  EXPECT_EQ(colours_of(data.GetCellData()), (std::vector<BrantColor>{BRANT_BLUE, BRANT_RED}));
  EXPECT_EQ(num_part_props(view), 1);
}

TEST_F(GGenericModelHostCodeTest, ObserverOfASlotMayAdd)
{
  GGenericModel model;
  vtkPolyData& data = slot(model, MRUtil::DRAW_OUTLINE, kLines);
  int calls = 0;
  const EventHook hook(data.GetLines(), vtkCommand::ModifiedEvent, [&] {
    if (++calls < 4) {
      model.add_line(kPoints[0], kPoints[1], BRANT_BLUE);
    }
  });
  model.add_line(kPoints[0], kPoints[1], BRANT_RED);
  EXPECT_EQ(data.GetNumberOfLines(), 4);
  EXPECT_EQ(colours_of(data.GetCellData()).size(), 4U);
  EXPECT_EQ(cells_of(data).back(), (Cell{VTK_LINE, {6, 7}}));
}

TEST_F(GGenericModelHostCodeTest, ObserverOfASlotMayClearOrDestroyTheModel)
{
  const std::function<void(GGenericModel&)> additions[] = {
      [](GGenericModel& model) { model.add_line(kPoints[0], kPoints[1], BRANT_RED); },
      [](GGenericModel& model) { model.add_cube(kPoints.data(), BRANT_RED, MRUtil::DRAW_FILLED); },
      [](GGenericModel& model) { model.add_points(4, kPoints.data(), BRANT_RED, MRUtil::DRAW_OUTLINE); },
      [](GGenericModel& model) { model.add_vector(kPoints[0], kPoints[1], BRANT_RED, true); },
      [](GGenericModel& model) { model.add_polydata(one_triangle(), BRANT_RED, MRUtil::DRAW_FILLED); }};
  for (const bool destroys : {false, true}) {
    for (int watched = 0; watched < 4; ++watched) {
      for (const auto& add : additions) {
        auto model = std::make_unique<GGenericModel>();
        fill(*model);
        std::vector<vtkSmartPointer<vtkPolyData>> slots = {
            &slot(*model, MRUtil::DRAW_OUTLINE, kLines), &slot(*model, MRUtil::DRAW_FILLED, kPolygons),
            &slot(*model, MRUtil::DRAW_OUTLINE, kVertices),
            model->initialize_point_data(MRUtil::DRAW_FILLED, 2)};
        int heard = 0;
        std::vector<std::unique_ptr<EventHook>> hooks;
        for (vtkPolyData* data : slots) {
          auto* colours =
              data == slots.back() ? data->GetPointData()->GetScalars() : data->GetCellData()->GetScalars();
          vtkObject* const objects[] = {data, data->GetPoints(), colours,
                                        data->GetNumberOfLines() > 0   ? data->GetLines()
                                        : data->GetNumberOfVerts() > 0 ? data->GetVerts()
                                                                       : data->GetPolys()};
          hooks.push_back(std::make_unique<EventHook>(objects[watched], vtkCommand::ModifiedEvent, [&] {
            ++heard;
            if (destroys) {
              model.reset();
            } else {
              model->clear();
            }
          }));
        }
        slots.clear();
        add(*model);
        EXPECT_GT(heard, 0);
      }
    }
  }
}

// Whoever adds to a model that is being cleared finds it empty afterwards, and working.
TEST_F(GGenericModelHostCodeTest, HostThatAddsWhileTheModelIsCleared)
{
  GGenericModel model;
  PlainView view;
  model.add_view(&view);
  add_red_quad(model);
  model.update_parts();
  bool added = false;
  vtkActor* actor = actors_of(view)[0];
  const EventHook hook(actor, vtkCommand::DeleteEvent, [&] {
    added = true;
    model.add_line(kPoints[0], kPoints[1], BRANT_RED);
    add_red_quad(model);
  });
  model.clear();
  EXPECT_TRUE(added);
  EXPECT_EQ(num_part_props(view), 0);
  add_red_quad(model);
  EXPECT_EQ(num_part_props(view), 1);
  EXPECT_EQ(slot(model, MRUtil::DRAW_FILLED, kPolygons).GetNumberOfCells(), 1);
}

TEST_F(GGenericModelHostCodeTest, HostThatDestroysTheModelWhileItIsCleared)
{
  auto model = std::make_unique<GGenericModel>();
  PlainView view;
  model->add_view(&view);
  fill(*model);
  bool done = false;
  const EventHook hook(actors_of(view)[0], vtkCommand::DeleteEvent, [&] {
    done = true;
    model.reset();
  });
  model->clear();
  EXPECT_TRUE(done);
  EXPECT_TRUE(shown(view).empty());
}

} // namespace
