// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Region picks of what is visible.
#include "GView.h"
#include "LiteralMultiCellPicker.h"
#include "MultiCellPicker.h"
#include "PickBounds.h"
#include "TestSupport.h"
#include "ViewFixture.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace {

using morrow_test::EventHook;
using morrow_test::flat_actor;
using morrow_test::FrameCounter;
using morrow_test::kBlue;
using morrow_test::kGreen;
using morrow_test::kRed;
using morrow_test::make_view;
using morrow_test::quad;
using morrow_test::show;

/// A view of 100 x 100 pixels onto the square from (-1, -1) to (1, 1). Blue in front covers the left half,
/// red behind is small and on the left, green behind on the right.
class MultiCellPickerDepthTest : public morrow_test::ViewRenderTest
{
protected:
  void SetUp() override
  {
    morrow_test::ViewRenderTest::SetUp();
    if (HasFatalFailure()) {
      return;
    }
    mView = make_view();
    show(*mView, mBlue);
    show(*mView, mRed);
    show(*mView, mGreen);
    MultiCellPicker::mSelectVisibleOnly = true;
  }
  void TearDown() override
  {
    MultiCellPicker::mSelectVisibleOnly = false;
    MultiCellPicker::mBoxPickAcceptPartialCells = false;
    mView = nullptr;
    morrow_test::ViewRenderTest::TearDown();
  }

  /// "b" for a visible cell of blue, "r" and "g" likewise, upper case for hidden ones.
  std::string pick(vtkRenderer* renderer)
  {
    double corners[4] = {0, 0, 100, 100};
    PickBox box;
    box.set_box(corners);
    mPicker->PickByBounds(&box, renderer);
    std::string found;
    for (const auto* record : mPicker->get_cell_picks()) {
      const char name = record->Prop == mBlue ? 'B' : record->Prop == mRed ? 'R' : 'G';
      for (const auto& cell : record->SubPicks) {
        found += static_cast<char>(cell.Visible ? name + ('a' - 'A') : name);
      }
    }
    return found;
  }
  std::string pick() { return this->pick(mView->get_renderer()); }

  vtkSmartPointer<vtkActor> mBlue = flat_actor(quad(-0.9, -0.9, -0.1, 0.9, 1.0), kBlue);
  vtkSmartPointer<vtkActor> mRed = flat_actor(quad(-0.7, -0.7, -0.3, 0.7, 0.0), kRed);
  vtkSmartPointer<vtkActor> mGreen = flat_actor(quad(0.2, -0.7, 0.8, 0.7, 0.0), kGreen);
  std::shared_ptr<GView> mView;
  vtkNew<MultiCellPicker> mPicker;
};

TEST_F(MultiCellPickerDepthTest, AHiddenCellIsRecordedAsNotVisible)
{
  mView->render();
  EXPECT_EQ("bRg", this->pick());
  MultiCellPicker::mBoxPickAcceptPartialCells = true;
  EXPECT_EQ("bRg", this->pick());
  MultiCellPicker::mSelectVisibleOnly = false;
  EXPECT_EQ("brg", this->pick());
}

TEST_F(MultiCellPickerDepthTest, WhatLiesLessThanAHundredthBehindIsVisible)
{
  mView->render();
  const auto pick_with_red_at = [this](double z) {
    mRed->SetPosition(0.0, 0.0, z);
    mView->get_renderer()->GetActiveCamera()->SetClippingRange(5.0, 15.0); // 0.1 of depth for a unit
    mView->get_render_window()->Render();
    return this->pick();
  };
  EXPECT_EQ("brg", pick_with_red_at(0.92)); // 0.008 of depth behind blue
  EXPECT_EQ("bRg", pick_with_red_at(0.85)); // 0.015
}

TEST_F(MultiCellPickerDepthTest, AgreesWithTheLiteralVersion)
{
  mView->render();
  vtkNew<morrow_test::LiteralMultiCellPicker> literal;
  literal->visible_only = true;
  show(*mView, flat_actor(morrow_test::sphere(0.5, 40), kRed));
  mView->render();
  int counts[2] = {0, 0}; // of hidden cells and visible ones
  for (const bool touching : {false, true}) {
    MultiCellPicker::mBoxPickAcceptPartialCells = literal->touching_cells = touching;
    for (const double size : {20.0, 45.0, 60.0}) {
      double corners[4] = {50 - size, 50 - size, 50 + size, 50 + size};
      PickBox box;
      box.set_box(corners);
      mPicker->PickByBounds(&box, mView->get_renderer());
      literal->pick_by_bounds(&box, mView->get_renderer());
      EXPECT_EQ("", difference(literal->records, mPicker->get_cell_picks())) << size << touching;
      for (const auto& record : literal->records) {
        for (const auto& cell : record.cells) {
          ++counts[cell.Visible ? 1 : 0];
        }
      }
    }
  }
  EXPECT_LT(100, counts[0]);
  EXPECT_LT(100, counts[1]);
}

TEST_F(MultiCellPickerDepthTest, TheOverlayHidesNothingAndIsStillThere)
{
  mView->enable_overlay();
  mView->get_overlay_renderer()->AddActor(flat_actor(quad(-0.1, -0.1, 0.1, 0.1), kRed));
  mView->render();
  const morrow_test::Image before = morrow_test::read_pixels(mView->get_render_window());
  const FrameCounter frames(mView->get_render_window());
  EXPECT_EQ("bRg", this->pick());
  EXPECT_EQ(1, frames.ends()); // once more, to see the depth below the overlay
  const morrow_test::Image after = morrow_test::read_pixels(mView->get_render_window());
  EXPECT_EQ(morrow_test::count_pixels(before, morrow_test::colour_is(kRed)),
            morrow_test::count_pixels(after, morrow_test::colour_is(kRed)));
  mView->disable_overlay();
  mView->render();
  const FrameCounter more(mView->get_render_window());
  EXPECT_EQ("bRg", this->pick());
  EXPECT_EQ(0, more.starts()); // the last frame has it
}

TEST_F(MultiCellPickerDepthTest, EachRendererOfAWindowHasItsOwnDepth)
{
  // A second one beside, and a third in front of a part of it.
  vtkRenderWindow* window = mView->get_render_window();
  window->SetSize(200, 100);
  vtkRenderer* left = mView->get_renderer();
  left->SetViewport(0.0, 0.0, 0.5, 1.0);
  vtkNew<vtkRenderer> right;
  right->SetViewport(0.5, 0.0, 1.0, 1.0);
  right->SetActiveCamera(left->GetActiveCamera());
  right->AddActor(mRed);
  window->AddRenderer(right);
  mView->render();
  const FrameCounter frames(window);
  EXPECT_EQ("bRg", this->pick(left));
  EXPECT_EQ(0, frames.starts());
  double corners[4] = {100, 0, 200, 100};
  PickBox box;
  box.set_box(corners);
  EXPECT_EQ(1, mPicker->PickByBounds(&box, right));
  EXPECT_TRUE(mPicker->get_cell_picks().at(0)->SubPicks[0].Visible);
  right->SetViewport(0.0, 0.0, 1.0, 1.0); // now over the left one
  mView->render();
  EXPECT_EQ("bRg", this->pick(left));
  EXPECT_LT(0, frames.starts());
}

TEST_F(MultiCellPickerDepthTest, WindowsWithoutInteractorOrFrameAreFine)
{
  EXPECT_EQ(nullptr, mView->get_render_window()->GetInteractor());
  EXPECT_EQ("brg", this->pick()); // nothing has been drawn that could hide anything
  mView->render();
  EXPECT_EQ("bRg", this->pick());
}

TEST_F(MultiCellPickerDepthTest, AClosedWindowIsHarmless)
{
  mView->render();
  vtkRenderer* renderer = mView->get_renderer();
  EXPECT_EQ("bRg", pick(renderer));
  renderer->GetRenderWindow()->Finalize();
  EXPECT_EQ(3U, pick(renderer).size()); // what of them is visible cannot be told
}

TEST_F(MultiCellPickerDepthTest, ExceptionsOfTheExtraFrameReachTheCaller)
{
  mView->enable_overlay();
  mView->render();
  {
    const EventHook hook(mView->get_render_window(), vtkCommand::StartEvent,
                         [] { throw std::runtime_error("host"); });
    EXPECT_THROW(this->pick(), std::runtime_error);
  }
  EXPECT_EQ("bRg", this->pick());
}

TEST_F(MultiCellPickerDepthTest, APickInsideAFrameReadsWhatIsThere)
{
  mView->enable_overlay();
  mView->render();
  std::string found;
  const EventHook hook(mView->get_render_window(), vtkCommand::EndEvent, [&] { found = this->pick(); });
  mView->render();
  EXPECT_EQ(3U, found.size()); // which of them are visible cannot be told
}

} // namespace
