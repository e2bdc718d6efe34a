// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "TestSupport.h"

#include "MRUtil.h"

#include <gtest/gtest.h>

#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkCommand.h>
#include <vtkCompositePolyDataMapper2.h>
#include <vtkPlaneSource.h>
#include <vtkPoints.h>
#include <vtkPolyDataMapper.h>
#include <vtkProp.h>
#include <vtkPropCollection.h>
#include <vtkProperty.h>
#include <vtkSphereSource.h>
#include <vtkUnsignedCharArray.h>
#include <vtkWeakPointer.h>
#include <vtk_glew.h>

#include <X11/Xlib.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sys/wait.h>

namespace fs = std::filesystem;

namespace morrow_test {

// --- Messages of the library ---------------------------------------------------------------------

namespace {

PrintCapture* gInnermostCapture = nullptr; // the print function has no client data

} // namespace

PrintCapture::PrintCapture() : mOuter(gInnermostCapture)
{
  MRUtil::get_print_function(mPreviousFunction);
  MRUtil::set_print_function(record);
  gInnermostCapture = this;
}

PrintCapture::~PrintCapture()
{
  MRUtil::set_print_function(mPreviousFunction);
  gInnermostCapture = mOuter;
}

void PrintCapture::record(const char* text, int kind, bool has_text)
{
  if (gInnermostCapture != nullptr) {
    gInnermostCapture->mCalls.push_back({text != nullptr ? text : "", text == nullptr, kind, has_text});
  }
}

std::string PrintCapture::text_of(int kind) const
{
  std::string all;
  for (const Printed& call : mCalls) {
    if (call.kind == kind) {
      all += call.text;
    }
  }
  return all;
}

// --- Display and windows -------------------------------------------------------------------------

bool has_display()
{
  Display* display = XOpenDisplay(nullptr);
  if (display == nullptr) {
    return false;
  }
  XCloseDisplay(display);
  return true;
}

void RenderTest::SetUp()
{
  // Asked first because VTK ends the process when it cannot open the display.
  if (!has_display()) {
    const char* name = std::getenv("DISPLAY");
    FAIL() << "no X display (DISPLAY is " << (name != nullptr ? name : "not set")
           << "); start one: Xvfb :1 -screen 0 1280x1024x24 -noreset";
  }
}

vtkSmartPointer<vtkRenderWindow> make_window(int width, int height)
{
  auto window = vtkSmartPointer<vtkRenderWindow>::New();
  window->SetMultiSamples(0);
  window->SetSize(width, height);
  return window;
}

Scene::Scene(int width, int height)
    : mWindow(make_window(width, height)), mRenderer(vtkSmartPointer<vtkRenderer>::New())
{
  mWindow->AddRenderer(mRenderer);
}

Scene::~Scene() = default;

vtkRenderWindow* Scene::window() const
{
  return mWindow;
}

vtkRenderer* Scene::renderer() const
{
  return mRenderer;
}

void Scene::look_down(double half_height)
{
  vtkCamera* camera = mRenderer->GetActiveCamera();
  camera->ParallelProjectionOn();
  camera->SetParallelScale(half_height);
  camera->SetFocalPoint(0.0, 0.0, 0.0);
  camera->SetPosition(0.0, 0.0, 10.0);
  camera->SetViewUp(0.0, 1.0, 0.0);
  camera->SetClippingRange(5.0, 15.0);
}

Image Scene::render()
{
  mWindow->Render();
  return read_pixels(mWindow);
}

namespace {

std::string gl_text(GLenum name)
{
  const auto* text = glGetString(name);
  return text != nullptr ? reinterpret_cast<const char*>(text) : "";
}

Image image_of(const vtkUnsignedCharArray& rgb, int width, int height)
{
  Image image(width, height);
  vtkIdType next = 0;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      image.set(x, y, {rgb.GetValue(next), rgb.GetValue(next + 1), rgb.GetValue(next + 2)});
      next += 3;
    }
  }
  return image;
}

} // namespace

std::vector<vtkProp*> props_of(vtkRenderer* renderer)
{
  std::vector<vtkProp*> props;
  vtkCollectionSimpleIterator cookie;
  renderer->GetViewProps()->InitTraversal(cookie);
  while (vtkProp* prop = renderer->GetViewProps()->GetNextProp(cookie)) {
    props.push_back(prop);
  }
  return props;
}

Image read_pixels(vtkRenderWindow* window)
{
  if (window->GetNeverRendered() != 0) {
    ADD_FAILURE() << "read_pixels: the window has not been rendered";
    return {};
  }
  const int width = window->GetSize()[0];
  const int height = window->GetSize()[1];
  const int front = 1;
  const vtkNew<vtkUnsignedCharArray> rgb;
  window->GetPixelData(0, 0, width - 1, height - 1, front, rgb);
  Image image = image_of(*rgb, width, height);
  image.driver = gl_driver(window);
  return image;
}

std::string gl_driver(vtkRenderWindow* window)
{
  window->MakeCurrent();
  return gl_text(GL_RENDERER) + " / " + gl_text(GL_VERSION);
}

class FrameCounter::Observer : public vtkCommand
{
public:
  static Observer* New() { return new Observer; }
  Observer(const Observer&) = delete;
  Observer& operator=(const Observer&) = delete;

  void watch(vtkObject* object)
  {
    mObject = object;
    object->AddObserver(vtkCommand::StartEvent, this);
    object->AddObserver(vtkCommand::EndEvent, this);
  }

  void stop()
  {
    if (mObject != nullptr) {
      mObject->RemoveObserver(this);
    }
  }

  void Execute(vtkObject* /*caller*/, unsigned long event, void* /*data*/) override
  {
    (event == vtkCommand::StartEvent ? starts : ends) += 1;
  }

  int starts = 0;
  int ends = 0;

private:
  Observer() = default;
  ~Observer() override = default;

  vtkWeakPointer<vtkObject> mObject;
};

FrameCounter::FrameCounter(vtkObject* object) : mObserver(vtkSmartPointer<Observer>::New())
{
  mObserver->watch(object);
}

FrameCounter::~FrameCounter()
{
  mObserver->stop();
}

int FrameCounter::starts() const noexcept
{
  return mObserver->starts;
}

int FrameCounter::ends() const noexcept
{
  return mObserver->ends;
}

void FrameCounter::reset() noexcept
{
  mObserver->starts = 0;
  mObserver->ends = 0;
}

// --- Small data ----------------------------------------------------------------------------------

namespace {

vtkSmartPointer<vtkPoints> points_of(const std::vector<double>& xyz)
{
  auto points = vtkSmartPointer<vtkPoints>::New();
  points->SetDataTypeToDouble();
  for (std::size_t i = 0; i + 2 < xyz.size(); i += 3) {
    points->InsertNextPoint(xyz[i], xyz[i + 1], xyz[i + 2]);
  }
  return points;
}

void append_all_points(vtkCellArray& cells, vtkIdType count)
{
  cells.InsertNextCell(static_cast<int>(count));
  for (vtkIdType i = 0; i < count; ++i) {
    cells.InsertCellPoint(i);
  }
}

vtkSmartPointer<vtkPolyData> polygon(const std::vector<double>& xyz)
{
  const auto points = points_of(xyz);
  const vtkNew<vtkCellArray> cells;
  append_all_points(*cells, points->GetNumberOfPoints());
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetPolys(cells);
  return data;
}

} // namespace

vtkSmartPointer<vtkPolyData> one_triangle()
{
  return polygon({0, 0, 0, 1, 0, 0, 0, 1, 0});
}

vtkSmartPointer<vtkPolyData> quad(double x0, double y0, double x1, double y1, double z)
{
  return polygon({x0, y0, z, x1, y0, z, x1, y1, z, x0, y1, z});
}

vtkSmartPointer<vtkPolyData> sphere(double radius, int resolution)
{
  const vtkNew<vtkSphereSource> source;
  source->SetRadius(radius);
  source->SetThetaResolution(resolution);
  source->SetPhiResolution(resolution);
  source->Update();
  return source->GetOutput();
}

vtkSmartPointer<vtkPolyData> polyline(const std::vector<double>& xyz)
{
  const auto points = points_of(xyz);
  const vtkNew<vtkCellArray> lines;
  if (points->GetNumberOfPoints() >= 2) {
    append_all_points(*lines, points->GetNumberOfPoints());
  }
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetLines(lines);
  return data;
}

vtkSmartPointer<vtkPolyData> vertices(const std::vector<double>& xyz)
{
  const auto points = points_of(xyz);
  const vtkNew<vtkCellArray> cells;
  for (vtkIdType i = 0; i < points->GetNumberOfPoints(); ++i) {
    cells->InsertNextCell(1, &i);
  }
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetVerts(cells);
  return data;
}

vtkSmartPointer<vtkMultiBlockDataSet> multiblock(const std::vector<vtkPolyData*>& blocks)
{
  auto data = vtkSmartPointer<vtkMultiBlockDataSet>::New();
  data->SetNumberOfBlocks(static_cast<unsigned int>(blocks.size()));
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    data->SetBlock(static_cast<unsigned int>(i), blocks[i]);
  }
  return data;
}

namespace {

vtkSmartPointer<vtkActor> actor_of(vtkMapper* mapper, Rgb colour, bool lit)
{
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetMapper(mapper);
  actor->GetProperty()->SetColor(colour.r / 255.0, colour.g / 255.0, colour.b / 255.0);
  actor->GetProperty()->SetLighting(lit);
  return actor;
}

vtkSmartPointer<vtkPolyDataMapper> mapper_of(vtkPolyData* data)
{
  auto mapper = vtkSmartPointer<vtkPolyDataMapper>::New();
  mapper->SetInputData(data);
  return mapper;
}

} // namespace

vtkSmartPointer<vtkActor> flat_actor(vtkPolyData* data, Rgb colour)
{
  return actor_of(mapper_of(data), colour, false);
}

vtkSmartPointer<vtkActor> lit_actor(vtkPolyData* data, Rgb colour)
{
  return actor_of(mapper_of(data), colour, true);
}

vtkSmartPointer<vtkActor> flat_composite_actor(vtkMultiBlockDataSet* data, Rgb colour)
{
  const vtkNew<vtkCompositePolyDataMapper2> mapper;
  mapper->SetInputDataObject(data);
  return actor_of(mapper, colour, false);
}

// --- Other programs ------------------------------------------------------------------------------

ChildResult run_command(const std::string& command)
{
  ChildResult result;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) {
    return result;
  }
  std::array<char, 4096> buffer{};
  while (fgets(buffer.data(), static_cast<int>(buffer.size()), pipe) != nullptr) {
    result.output += buffer.data();
  }
  const int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

// --- Real meshes ---------------------------------------------------------------------------------

namespace {

const char* promised_folder()
{
  const char* folder = std::getenv("MORROW_TEST_DATA");
  return folder != nullptr && *folder != '\0' ? folder : nullptr;
}

} // namespace

bool real_meshes_promised()
{
  return promised_folder() != nullptr;
}

std::string real_mesh(const std::string& name)
{
  const char* promised = promised_folder();
  const fs::path folder =
      promised != nullptr ? fs::path(promised) : fs::path(MORROW_SOURCE_DIR) / ".." / "shared" / "data";
  std::error_code error;
  const fs::path path = folder / name;
  return fs::is_regular_file(path, error) ? path.lexically_normal().string() : "";
}

} // namespace morrow_test
