// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GLabelMapper.h"

#include <algorithm>

#include "BrantVector.h"
#include "DepthProjection.h"
#include "GModel.h"
#include "LabelStore.h"
#include "VTKSeam.h"

#include <vtkActor2D.h>
#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkCoordinate.h>
#include <vtkFloatArray.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTextMapper.h>
#include <vtkTextProperty.h>
#include <vtkTimerLog.h>

vtkStandardNewMacro(GLabelMapper)

namespace {

// Part of the message that hosts have learnt to look for.
constexpr const char* ErrorFile = "base/GLabelMapper";
constexpr int ErrorLine = 193;

constexpr double ShortestDrawTime = 0.0001; // seconds; stands for a draw too short for the timer

void set_color(vtkTextProperty& property, BrantColor color)
{
  property.SetColor(color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0);
}

void apply_style(vtkTextProperty& property, vtkTextProperty& style)
{
  double color[3];
  property.GetColor(color);
  property.ShallowCopy(&style);
  property.SetColor(color);
}

vtkSmartPointer<vtkTextMapper> make_text_mapper(const morrow::Label& label)
{
  auto mapper = vtkSmartPointer<vtkTextMapper>::New();
  mapper->SetInput(label.text.c_str());
  mapper->GetTextProperty()->ShallowCopy(label.style);
  set_color(*mapper->GetTextProperty(), label.color);
  return mapper;
}

vtkSmartPointer<vtkTextProperty> make_default_style()
{
  auto style = vtkSmartPointer<vtkTextProperty>::New();
  style->SetFontSize(12);
  style->BoldOn();
  style->ItalicOn();
  style->ShadowOn();
  style->SetFontFamilyToArial();
  return style;
}

morrow::ScreenFrame screen_frame(vtkViewport& viewport, vtkWindow& window)
{
  morrow::ScreenFrame frame;
  viewport.GetViewport(frame.viewport);
  const int* size = window.GetSize();
  frame.width = size[0];
  frame.height = size[1];
  return frame;
}

} // namespace

// ---------------------------------------------------------------------------------------------------------
// Labels

GLabelMapper::GLabelMapper() : mLabels(std::make_unique<morrow::LabelStore>())
{
  this->SetLabelTextProperty(make_default_style());
}

GLabelMapper::~GLabelMapper()
{
  mLabels->clear();
  this->Modified();
  this->SetLabelTextProperty(nullptr);
}

long long GLabelMapper::add_point(const BrantVector& point, const char* label, BrantColor color)
{
  const long long key = mLabels->add(point, label, color, this->current_style());
  this->Modified();
  return key;
}

void GLabelMapper::remove_point(long long key)
{
  if (mLabels->remove(key)) {
    this->Modified();
  }
}

void GLabelMapper::clear()
{
  mLabels->clear();
  this->Modified();
}

std::size_t GLabelMapper::size() const
{
  return mLabels->size();
}

void GLabelMapper::set_model(GModel* model)
{
  mModel = model;
}

// A hundred thousand labels share one copy instead of owning one each.
vtkTextProperty* GLabelMapper::current_style()
{
  if (this->LabelTextProperty == nullptr) {
    mStyle = vtkSmartPointer<vtkTextProperty>::New();
    mStyleTime = 0;
  } else if (mStyle == nullptr || mStyleTime != this->LabelTextProperty->GetMTime()) {
    mStyle = vtkSmartPointer<vtkTextProperty>::New();
    mStyle->ShallowCopy(this->LabelTextProperty);
    mStyleTime = this->LabelTextProperty->GetMTime();
  }
  return mStyle;
}

void GLabelMapper::SetLabelTextProperty(vtkTextProperty* prop)
{
  this->LabelTextProperty = prop;
  mStyle = nullptr;
  if (prop == nullptr) {
    return;
  }
  vtkTextProperty* style = this->current_style();
  for (morrow::Label& label : mLabels->in_order()) {
    label.style = style;
    for (const auto& mapper : label.mappers) {
      if (mapper != nullptr) {
        apply_style(*mapper->GetTextProperty(), *style);
      }
    }
  }
  this->Modified();
}

vtkTextProperty* GLabelMapper::GetLabelTextProperty()
{
  return this->LabelTextProperty;
}

double GLabelMapper::GetTolerance()
{
  return this->Tolerance;
}

void GLabelMapper::SetTolerance(double tolerance)
{
  if (this->Tolerance != tolerance) {
    this->Tolerance = tolerance;
    this->Modified();
  }
}

// ---------------------------------------------------------------------------------------------------------
// Drawing

void GLabelMapper::RenderOverlay(vtkViewport* viewport, vtkActor2D* actor)
{
  if (actor == nullptr || this->TimeToDraw > actor->GetAllocatedRenderTime()) {
    return;
  }
  if (this->LabelTextProperty == nullptr) {
    morrow::report_vtk_error(*this, ErrorFile, ErrorLine, "Need text property to render labels");
    return;
  }
  if (mLabels->size() == 0 || viewport == nullptr || viewport->GetVTKWindow() == nullptr) {
    return;
  }
  actor->GetPositionCoordinate()->SetCoordinateSystemToWorld();
  vtkNew<vtkTimerLog> timer;
  timer->StartTimer();
  this->draw_labels(viewport, actor);
  timer->StopTimer();
  const double seconds = timer->GetElapsedTime();
  this->TimeToDraw = seconds == 0.0 ? ShortestDrawTime : seconds;
}

bool GLabelMapper::hides_labels() const
{
  return mModel != nullptr && mModel->get_render_mode() != 0;
}

void GLabelMapper::draw_labels(vtkViewport* viewport, vtkActor2D* actor)
{
  auto* renderer = vtkRenderer::SafeDownCast(viewport);
  auto* window = vtkRenderWindow::SafeDownCast(viewport->GetVTKWindow());
  mWindowPlace = this->place_of_window(viewport->GetVTKWindow());
  if (renderer != nullptr && window != nullptr && this->hides_labels()) {
    this->draw_visible_labels(*renderer, *window, actor);
    return;
  }
  for (morrow::Label& label : mLabels->in_order()) {
    this->draw_label(label, viewport, actor);
  }
}

void GLabelMapper::draw_visible_labels(vtkRenderer& renderer, vtkRenderWindow& window, vtkActor2D* actor)
{
  zBufferHelper& frame_cache = zBufferHelper::instance();
  frame_cache.watch(window);
  const vtkMatrix4x4& projection = frame_cache.projection(renderer);
  const morrow::ScreenFrame frame = screen_frame(renderer, window);
  for (morrow::Label& label : mLabels->in_order()) {
    morrow::ScreenPoint anchor;
    if (!morrow::project_to_screen(projection, frame, label.point, anchor)) {
      continue;
    }
    int width = 0;
    int height = 0;
    const float* buffer = frame_cache.depth(width, height);
    const double nearest = morrow::depth_under(buffer, width, height, anchor);
    if (morrow::is_in_front(anchor.depth, nearest, this->Tolerance)) {
      this->draw_label(label, &renderer, actor);
    }
  }
}

void GLabelMapper::draw_label(morrow::Label& label, vtkViewport* viewport, vtkActor2D* actor)
{
  if (label.mappers.size() <= mWindowPlace) {
    label.mappers.resize(mWindowPlace + 1);
  }
  auto& mapper = label.mappers[mWindowPlace];
  if (mapper == nullptr) {
    mapper = make_text_mapper(label);
  }
  actor->GetPositionCoordinate()->SetValue(label.point.x(), label.point.y(), label.point.z());
  mapper->RenderOverlay(viewport, actor);
}

std::size_t GLabelMapper::place_of_window(vtkWindow* window)
{
  const auto known = std::find(mWindows.begin(), mWindows.end(), window);
  if (known != mWindows.end()) {
    return static_cast<std::size_t>(known - mWindows.begin());
  }
  const auto gone = std::find(mWindows.begin(), mWindows.end(), nullptr);
  const auto place = static_cast<std::size_t>(gone - mWindows.begin());
  if (gone == mWindows.end()) {
    mWindows.emplace_back(window);
    return place;
  }
  for (morrow::Label& label : mLabels->in_order()) {
    if (place < label.mappers.size()) {
      label.mappers[place] = nullptr;
    }
  }
  *gone = window;
  return place;
}

void GLabelMapper::ReleaseGraphicsResources(vtkWindow* window)
{
  this->Superclass::ReleaseGraphicsResources(window);
  const auto known = std::find(mWindows.begin(), mWindows.end(), window);
  if (window == nullptr || known == mWindows.end()) {
    return;
  }
  const auto place = static_cast<std::size_t>(known - mWindows.begin());
  for (morrow::Label& label : mLabels->in_order()) {
    if (place < label.mappers.size() && label.mappers[place] != nullptr) {
      label.mappers[place]->ReleaseGraphicsResources(window);
    }
  }
}

void GLabelMapper::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
  if (this->LabelTextProperty != nullptr) {
    os << indent << "Label Text Property:\n";
    this->LabelTextProperty->PrintSelf(os, indent.GetNextIndent());
  } else {
    os << indent << "Label Text Property: (none)\n";
  }
}

// ---------------------------------------------------------------------------------------------------------
// Depth and projection of the current frame

/// Deletes the helper when the library is unloaded, so that no window calls into code that is gone.
class zBufferHelperHolder
{
public:
  zBufferHelperHolder() : mHelper(zBufferHelper::New()) {}
  ~zBufferHelperHolder()
  {
    mHelper->forget();
    mHelper->Delete();
  }
  zBufferHelperHolder(const zBufferHelperHolder&) = delete;
  zBufferHelperHolder& operator=(const zBufferHelperHolder&) = delete;

  zBufferHelper& helper() { return *mHelper; }

private:
  zBufferHelper* mHelper;
};

zBufferHelper::zBufferHelper() : mFrameStart(vtkSmartPointer<vtkCallbackCommand>::New())
{
  mFrameStart->SetClientData(this);
  mFrameStart->SetCallback(
      [](vtkObject*, unsigned long, void* helper, void*) { static_cast<zBufferHelper*>(helper)->forget(); });
}

zBufferHelper::~zBufferHelper() = default;

zBufferHelper* zBufferHelper::New()
{
  return new zBufferHelper;
}

zBufferHelper& zBufferHelper::instance()
{
  static zBufferHelperHolder holder;
  return holder.helper();
}

void zBufferHelper::Execute(vtkObject* caller, unsigned long event, void* /*call_data*/)
{
  if (event != vtkCommand::EndEvent) {
    return;
  }
  if (caller != nullptr && caller != mWindow.Get()) {
    caller->RemoveObserver(this); // left over from a frame that another window interrupted
    return;
  }
  this->forget();
}

void zBufferHelper::watch(vtkRenderWindow& window)
{
  if (mWindow == &window) {
    return;
  }
  this->forget();
  mWindow = &window;
  window.AddObserver(vtkCommand::EndEvent, this);
  window.AddObserver(vtkCommand::StartEvent, mFrameStart);
}

void zBufferHelper::forget()
{
  mDepth = nullptr;
  mProjection = nullptr;
  if (mWindow != nullptr) {
    mWindow->RemoveObserver(this);
    mWindow->RemoveObserver(mFrameStart);
  }
  mWindow = nullptr;
}

const vtkMatrix4x4& zBufferHelper::projection(vtkRenderer& renderer)
{
  if (mProjection == nullptr) {
    mProjection = vtkSmartPointer<vtkMatrix4x4>::New();
    mProjection->DeepCopy(renderer.GetActiveCamera()->GetCompositeProjectionTransformMatrix(
        renderer.GetTiledAspectRatio(), 0.0, 1.0));
  }
  return *mProjection;
}

const float* zBufferHelper::depth(int& width, int& height)
{
  // VTK has nothing to read from before a window's first frame, and does not look.
  if (mDepth == nullptr && mWindow != nullptr && mWindow->GetNeverRendered() == 0) {
    mDepth = vtkSmartPointer<vtkFloatArray>::New();
    const int* size = mWindow->GetSize();
    mDepthSize[0] = size[0];
    mDepthSize[1] = size[1];
    // The corners are inclusive: each row has one value more than the window has columns.
    mWindow->GetZbufferData(0, 0, size[0], size[1], mDepth);
    ++mDepthReads;
  }
  width = mDepthSize[0];
  height = mDepthSize[1];
  const vtkIdType expected = (static_cast<vtkIdType>(width) + 1) * (static_cast<vtkIdType>(height) + 1);
  if (mDepth == nullptr || mDepth->GetNumberOfValues() < expected) {
    width = height = 0;
    return nullptr;
  }
  return mDepth->GetPointer(0);
}
