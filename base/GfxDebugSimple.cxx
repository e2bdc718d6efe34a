// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GfxDebugSimple.h"

#include <limits>
#include <numeric>
#include <vector>

#include "BrantBox.h"
#include "BrantColorTable.h"
#include "BrantString.h"
#include "BrantVector.h"
#include "GGenericModel.h"
#include "GView.h"
#include "MRUtil.h"

#include <vtkCallbackCommand.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkSmartPointer.h>

namespace {

BrantColor color_of(int number)
{
  return BrantColorTable::lookup_color(number);
}

/// One run through all points: count, 0, 1, …, count - 1.
std::vector<int> run_of_all(int count)
{
  std::vector<int> list(static_cast<std::size_t>(count) + 1);
  list[0] = count;
  std::iota(list.begin() + 1, list.end(), 0);
  return list;
}

/// Lets an interactor render while this lives, and keeps it alive.
class RenderingAllowed
{
public:
  explicit RenderingAllowed(vtkRenderWindowInteractor* interactor)
      : mInteractor(interactor), mBefore(interactor->GetEnableRender())
  {
    mInteractor->SetEnableRender(true);
  }
  ~RenderingAllowed() { mInteractor->SetEnableRender(mBefore); }
  RenderingAllowed(const RenderingAllowed&) = delete;
  RenderingAllowed& operator=(const RenderingAllowed&) = delete;

private:
  vtkSmartPointer<vtkRenderWindowInteractor> mInteractor;
  bool mBefore;
};

/// While this lives, the 'q' key and the window's close button end the interactor's loop and nothing else. By
/// itself VTK closes the window first and takes the events that still wait after that; one by which the
/// pointer enters the closed window is an X error, which ends the process. A host that observes the exit
/// event decides by itself what happens.
class LoopExit
{
public:
  explicit LoopExit(vtkRenderWindowInteractor* interactor) : mInteractor(interactor)
  {
    if (mInteractor->HasObserver(vtkCommand::ExitEvent) == 0) {
      mObserver->SetClientData(interactor);
      mObserver->SetCallback([](vtkObject*, unsigned long, void* loop, void*) {
        static_cast<vtkRenderWindowInteractor*>(loop)->SetDone(true);
      });
      mInteractor->AddObserver(vtkCommand::ExitEvent, mObserver);
    }
  }
  ~LoopExit() { mInteractor->RemoveObserver(mObserver); }
  LoopExit(const LoopExit&) = delete;
  LoopExit& operator=(const LoopExit&) = delete;

private:
  vtkSmartPointer<vtkRenderWindowInteractor> mInteractor;
  vtkNew<vtkCallbackCommand> mObserver;
};

/// An interactor whose loop has ended would end the next one at once.
void make_ready(GView& view, vtkRenderWindowInteractor& interactor)
{
  if (interactor.GetDone()) {
    view.mouse_xforms();
    interactor.SetDone(false);
  }
}

vtkRenderWindowInteractor* interactor_of(const GView* view)
{
  vtkRenderWindow* window = view != nullptr ? view->get_render_window() : nullptr;
  return window != nullptr ? window->GetInteractor() : nullptr;
}

} // namespace

GfxDebugSimple::GfxDebugSimple(GGenericModel* model) : mModel(model) {}

GfxDebugSimple::~GfxDebugSimple() = default;

GView* GfxDebugSimple::get_first_view() const
{
  return mModel != nullptr ? mModel->first_view() : nullptr;
}

// ---------------------------------------------------------------------------------------------------------
// The whole drawing

void GfxDebugSimple::p_clear()
{
  if (mModel != nullptr) {
    mModel->clear();
  }
}

void GfxDebugSimple::p_display_all(bool /*first_flag*/, bool /*second_flag*/)
{
  if (mModel != nullptr) {
    mModel->clear();
    mModel->Render();
  }
}

void GfxDebugSimple::p_flush()
{
  if (mModel != nullptr) {
    mModel->Render();
  }
}

void GfxDebugSimple::p_clear_highlight() {}

void GfxDebugSimple::p_drawing_mode(int /*mode*/) {}

void GfxDebugSimple::p_draw_mref_entity_mesh(MRefEntity* /*entity*/, int /*color*/) {}

void GfxDebugSimple::p_draw_facet(BrantFacet* /*facet*/, int /*color*/, int /*option*/) {}

void GfxDebugSimple::p_draw_facet_edge(BrantFacetEdge* /*edge*/, int /*color*/) {}

// ---------------------------------------------------------------------------------------------------------
// Primitives

void GfxDebugSimple::p_draw_box(BrantBox& box, int color)
{
  if (mModel != nullptr && !box.is_empty()) {
    const BrantVector corners[2] = {box.minimum(), box.maximum()};
    mModel->add_cube(corners, color_of(color), MRUtil::DRAW_OUTLINE);
  }
}

void GfxDebugSimple::p_draw_point(const BrantVector& point, int color)
{
  if (mModel != nullptr) {
    mModel->add_points(1, &point, color_of(color), MRUtil::DRAW_OUTLINE);
  }
}

void GfxDebugSimple::p_draw_point(float x, float y, float z, int color)
{
  this->p_draw_point(BrantVector(x, y, z), color);
}

void GfxDebugSimple::p_draw_line(const BrantVector& from, const BrantVector& to, int color)
{
  if (mModel != nullptr) {
    mModel->add_line(from, to, color_of(color));
  }
}

void GfxDebugSimple::p_draw_line(float x1, float y1, float z1, float x2, float y2, float z2, int color)
{
  this->p_draw_line(BrantVector(x1, y1, z1), BrantVector(x2, y2, z2), color);
}

void GfxDebugSimple::p_draw_polyline(const BrantVector* points, int count, int color)
{
  // The length of the list is an int as well.
  if (mModel == nullptr || count <= 0 || count == std::numeric_limits<int>::max()) {
    return;
  }
  // A list for points that are not there, of which the model tells, would only take memory.
  const std::vector<int> list = run_of_all(points != nullptr ? count : 0);
  mModel->add_polylines(count, points, static_cast<int>(list.size()), list.data(), color_of(color),
                        MRUtil::DRAW_OUTLINE);
}

void GfxDebugSimple::p_draw_polygon(const BrantVector* points, int count, int color, int /*option*/,
                                    bool filled)
{
  if (mModel != nullptr) {
    mModel->add_polygon(count, points, color_of(color), filled ? MRUtil::DRAW_FILLED : MRUtil::DRAW_OUTLINE);
  }
}

void GfxDebugSimple::p_draw_quad(const BrantVector* points, int color)
{
  if (mModel != nullptr) {
    mModel->add_quad(points, color_of(color), MRUtil::DRAW_OUTLINE);
  }
}

void GfxDebugSimple::p_draw_tri(const BrantVector* points, int color)
{
  if (mModel != nullptr) {
    mModel->add_tri(points, color_of(color), MRUtil::DRAW_OUTLINE);
  }
}

void GfxDebugSimple::p_draw_vector(const BrantVector& tail, const BrantVector& head, int color)
{
  if (mModel != nullptr) {
    mModel->add_vector(tail, head, color_of(color), true);
  }
}

void GfxDebugSimple::p_draw_shell(int num_points, const BrantVector* points, int face_list_length,
                                  const int* face_list, int color)
{
  if (mModel != nullptr) {
    mModel->add_polygons(num_points, points, face_list_length, face_list, color_of(color),
                         MRUtil::DRAW_OUTLINE);
  }
}

void GfxDebugSimple::p_draw_shell(int num_points, const BrantVector* points, int face_list_length,
                                  const int* face_list, const BrantColor* colors)
{
  if (mModel != nullptr) {
    mModel->add_polygons(num_points, points, face_list_length, face_list, colors, MRUtil::DRAW_OUTLINE);
  }
}

void GfxDebugSimple::p_draw_label(const char* text, float x, float y, float z, int color)
{
  if (mModel != nullptr && text != nullptr) {
    mModel->add_label(text, BrantVector(x, y, z), color_of(color));
  }
}

void GfxDebugSimple::p_draw_label(int number, float x, float y, float z, int color)
{
  if (mModel != nullptr) {
    mModel->add_label(BrantString::number(number).c_str(), BrantVector(x, y, z), color_of(color));
  }
}

void GfxDebugSimple::p_highlight_points(int count, const BrantVector* points)
{
  if (mModel != nullptr) {
    mModel->add_points_highlight(count, points);
  }
}

void GfxDebugSimple::p_highlight_polylines(int num_points, const BrantVector* points, int list_length,
                                           const int* list)
{
  if (mModel != nullptr) {
    mModel->add_polylines_highlight(num_points, points, list_length, list);
  }
}

void GfxDebugSimple::p_highlight_polygons(int num_points, const BrantVector* points, int list_length,
                                          const int* list)
{
  if (mModel != nullptr) {
    mModel->add_polygons_highlight(num_points, points, list_length, list);
  }
}

// ---------------------------------------------------------------------------------------------------------
// The first view

void GfxDebugSimple::p_zoom(BrantBox& box)
{
  GView* view = this->get_first_view();
  if (view == nullptr || box.is_empty()) {
    return;
  }
  const BrantVector& low = box.minimum();
  const BrantVector& high = box.maximum();
  const double bounds[6] = {low.x(), high.x(), low.y(), high.y(), low.z(), high.z()};
  view->zoom_box(bounds, 1, 0, nullptr);
}

void GfxDebugSimple::p_display_to_world_length(double pixels, double& length)
{
  length = 1.0;
  if (const GView* view = this->get_first_view()) {
    GView::pixel_to_model_length(view->get_renderer(), pixels, length, nullptr);
  }
}

void GfxDebugSimple::p_mouse_xforms()
{
  MRUtil::print_info("Entering mouse mode.  Press 'q' in graphics window to exit mouse mode\n");
  GView* view = this->get_first_view();
  if (vtkRenderWindowInteractor* interactor = interactor_of(view)) {
    const RenderingAllowed allowed(interactor);
    make_ready(*view, *interactor);
    const LoopExit exit(interactor);
    interactor->Start();
  }
}
