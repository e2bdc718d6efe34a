// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ScalarBar.h"

#include "FrameHold.h"
#include "ScaleLabels.h"

#include <vtkLookupTable.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>
#include <vtkScalarBarActor.h>
#include <vtkScalarBarWidget.h>
#include <vtkTextProperty.h>
#include <vtkWidgetRepresentation.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace morrow {

namespace {

constexpr double ActorWidth = 0.003;        // required; a shown widget's place is that of its representation
constexpr int LabelSize = 14;               // in points
constexpr double Blue = 0.6666666666666666; // hues
constexpr double Red = 0.0;

vtkRenderWindowInteractor* interactor_of(vtkRenderer& renderer)
{
  vtkRenderWindow* window = renderer.GetRenderWindow();
  return window != nullptr ? window->GetInteractor() : nullptr;
}

void set_colors(vtkLookupTable& table, const std::vector<BrantColor>& colors)
{
  table.SetNumberOfTableValues(static_cast<vtkIdType>(colors.size()));
  vtkIdType index = 0;
  for (const BrantColor color : colors) {
    table.SetTableValue(index++, color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0,
                        color.alpha() / 255.0);
  }
}

} // namespace

vtkSmartPointer<vtkLookupTable> make_lookup_table(const ScalarBarScale& scale)
{
  auto table = vtkSmartPointer<vtkLookupTable>::New();
  table->SetTableRange(std::min(scale.minimum, scale.maximum), std::max(scale.minimum, scale.maximum));
  if (!scale.keeps_hues) {
    table->SetHueRange(Blue, Red);
  }
  if (!scale.colors.empty()) {
    set_colors(*table, scale.colors);
  }
  table->Build();
  return table;
}

ScalarBar::ScalarBar(vtkRenderer& renderer) : mRenderer(renderer) {}

ScalarBar::~ScalarBar()
{
  this->let_go();
}

vtkScalarBarWidget* ScalarBar::widget() const
{
  return mWidget;
}

bool ScalarBar::is_owner() const
{
  return mWidget != nullptr && mWidget->GetDefaultRenderer() == &mRenderer;
}

// Switching a widget off calls its observers, which may give this another widget, or this one to another
// view.
void ScalarBar::let_go()
{
  this->show_without_interactor(false);
  const bool was_owner = this->is_owner();
  const vtkSmartPointer<vtkScalarBarWidget> widget = std::move(mWidget);
  mWidget = nullptr;
  mIsShown = false;
  if (!was_owner) {
    return;
  }
  keep_through_frame(mRenderer, widget);
  widget->SetEnabled(0);
  if (mWidget != widget && widget->GetDefaultRenderer() == &mRenderer) {
    widget->SetInteractor(nullptr);
    widget->SetDefaultRenderer(nullptr);
    widget->SetCurrentRenderer(nullptr);
    widget->GetRepresentation()->SetRenderer(nullptr);
  }
}

void ScalarBar::set_widget(vtkScalarBarWidget* widget)
{
  if (widget == mWidget && (widget == nullptr || this->is_owner())) {
    return;
  }
  const vtkSmartPointer<vtkScalarBarWidget> kept = widget;
  const bool is_shown = widget != nullptr && widget->GetEnabled() != 0;
  if (is_shown) {
    widget->SetEnabled(0); // in whatever renderer that was
  }
  while (mWidget != nullptr) {
    this->let_go();
  }
  mWidget = kept;
  if (mWidget == nullptr) {
    return;
  }
  mIsShown = is_shown;
  mWidget->SetDefaultRenderer(&mRenderer);
  this->color_text();
  this->attach(interactor_of(mRenderer));
}

bool ScalarBar::set_up(const ScalarBarScale& scale)
{
  if (!std::isfinite(scale.maximum - scale.minimum)) {
    return false;
  }
  const vtkNew<vtkScalarBarWidget> widget;
  vtkScalarBarActor* actor = widget->GetScalarBarActor();
  actor->SetWidth(ActorWidth);
  this->set_widget(widget);
  const vtkSmartPointer<vtkLookupTable> table = make_lookup_table(scale);
  actor->UnconstrainedFontSizeOn(); // else VTK fills the place with text: shorter numbers are larger
  actor->GetLabelTextProperty()->SetFontSize(LabelSize);
  actor->GetLabelTextProperty()->ShadowOn();
  actor->SetLookupTable(table);
  const double* range = table->GetTableRange();
  actor->SetLabelFormat(scale_format(range[0], range[1], actor->GetNumberOfLabels()).c_str());
  mIsShown = true;
  this->attach(interactor_of(mRenderer));
  return true;
}

void ScalarBar::set_label_color(const double* rgb)
{
  std::copy_n(rgb, 3, mLabelColor);
  this->color_text();
}

void ScalarBar::color_text()
{
  vtkScalarBarActor* actor = mWidget != nullptr ? mWidget->GetScalarBarActor() : nullptr;
  if (actor != nullptr) {
    for (vtkTextProperty* text :
         {actor->GetLabelTextProperty(), actor->GetTitleTextProperty(), actor->GetAnnotationTextProperty()}) {
      if (text != nullptr) {
        text->SetColor(mLabelColor);
      }
    }
  }
}

void ScalarBar::update()
{
  if (this->is_owner()) {
    this->note_whether_shown();
    this->attach(interactor_of(mRenderer));
  } else {
    this->show_without_interactor(false);
  }
}

// A widget that has lost its interactor is off by no wish of anybody.
void ScalarBar::note_whether_shown()
{
  if (mWidget->GetInteractor() != nullptr) {
    mIsShown = mWidget->GetEnabled() != 0;
  }
}

void ScalarBar::attach(vtkRenderWindowInteractor* interactor)
{
  const vtkSmartPointer<vtkRenderWindowInteractor> kept = interactor;
  const vtkSmartPointer<vtkScalarBarWidget> widget = mWidget;
  if (widget->GetInteractor() != interactor) {
    keep_through_frame(mRenderer, widget);
    this->show_without_interactor(false);
    widget->SetEnabled(0); // takes the bar out of the renderer, and calls the widget's observers
    if (widget != mWidget || !this->is_owner()) {
      return;
    }
    widget->SetInteractor(interactor);
  }
  if (interactor == nullptr) {
    this->show_without_interactor(mIsShown);
  } else if (mIsShown && widget->GetEnabled() == 0) {
    widget->SetCurrentRenderer(&mRenderer);
    widget->SetEnabled(1);
  }
}

void ScalarBar::show_without_interactor(bool on)
{
  vtkWidgetRepresentation* bar = on ? mWidget->GetRepresentation() : nullptr;
  if (mPlainProp == bar) {
    return;
  }
  remove_prop(mRenderer, mPlainProp);
  mPlainProp = bar;
  if (bar != nullptr) {
    bar->SetRenderer(&mRenderer);
    mRenderer.AddViewProp(bar);
  }
}

} // namespace morrow
