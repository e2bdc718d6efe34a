// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GSilhouetteMapper.h"

#include <algorithm>

#include "SilhouetteFinder.h"
#include "SilhouetteProgram.h"

#include <vtkActor.h>
#include <vtkBoundingBox.h>
#include <vtkCamera.h>
#include <vtkCellData.h>
#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkDepthPeelingPass.h>
#include <vtkInformation.h>
#include <vtkInformationObjectBaseVectorKey.h>
#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkObjectFactory.h>
#include <vtkOpenGLCamera.h>
#include <vtkOpenGLRenderPass.h>
#include <vtkOpenGLRenderWindow.h>
#include <vtkOpenGLShaderCache.h>
#include <vtkOpenGLState.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>
#include <vtkWeakPointer.h>

vtkStandardNewMacro(GSilhouetteMapper)

namespace {

/// What one window's context holds. Contexts come and go while the window stays.
struct WindowProgram
{
  vtkWeakPointer<vtkOpenGLRenderWindow> window;
  const vtkWindow* key = nullptr; // the window too, also while it is being destroyed
  vtkMTimeType context = 0;       // when it was made
  morrow::SilhouetteProgram program;

  /// Whether the window still has the context. One that is being destroyed counts as gone.
  [[nodiscard]] bool is_alive() const
  {
    return window != nullptr && window->GetContextCreationTime() == context;
  }
  /// Whether the program is in the present context of this window. Another one may have its address.
  [[nodiscard]] bool is_of(vtkOpenGLRenderWindow& other) const
  {
    return key == &other && other.GetContextCreationTime() == context;
  }
};

/// Deletes what is in the window's context. A window that has been finalised has none.
void release_program(vtkOpenGLRenderWindow& window, morrow::SilhouetteProgram& program)
{
  if (window.GetNeverRendered() != 0) {
    return;
  }
  window.PushContext();
  if (window.IsCurrent()) {
    window.GetShaderCache()->ReleaseCurrentShader(); // else VTK takes its last one for the current one
    program.release();
  }
  window.PopContext();
}

/// Calls visit with each polygon data of the input.
template<typename Visit>
void for_each_poly_data(vtkDataObject* input, Visit&& visit)
{
  if (auto* data = vtkPolyData::SafeDownCast(input)) {
    visit(*data);
  } else if (auto* composite = vtkCompositeDataSet::SafeDownCast(input)) {
    const auto leaves = vtkSmartPointer<vtkCompositeDataIterator>::Take(composite->NewIterator());
    for (leaves->InitTraversal(); !leaves->IsDoneWithTraversal(); leaves->GoToNextItem()) {
      if (auto* leaf = vtkPolyData::SafeDownCast(leaves->GetCurrentDataObject())) {
        visit(*leaf);
      }
    }
  }
}

vtkUnsignedCharArray* color_bytes(vtkPolyData* data)
{
  if (data == nullptr) {
    return nullptr;
  }
  auto* bytes = vtkUnsignedCharArray::SafeDownCast(data->GetCellData()->GetScalars());
  if (bytes == nullptr) {
    bytes = vtkUnsignedCharArray::SafeDownCast(data->GetPointData()->GetScalars());
  }
  const bool has_tuple =
      bytes != nullptr && (bytes->GetNumberOfTuples() > 0 || bytes->GetNumberOfComponents() == 0);
  return has_tuple ? bytes : nullptr;
}

/// Missing components are dark, but not transparent.
void first_color(vtkUnsignedCharArray& bytes, float* rgba)
{
  constexpr int channels = 4;
  const int components = std::min(bytes.GetNumberOfComponents(), channels);
  unsigned char color[channels] = {0, 0, 0, static_cast<unsigned char>(components > 0 ? 255 : 0)};
  for (int i = 0; i < components; ++i) {
    color[i] = bytes.GetValue(i);
  }
  for (int i = 0; i < channels; ++i) {
    rgba[i] = static_cast<float>(color[i] / 255.0);
  }
}

morrow::SilhouetteLook look_of(vtkRenderer& renderer, vtkOpenGLCamera& camera, vtkActor& actor)
{
  morrow::SilhouetteLook look;
  vtkMatrix4x4* world_to_device = nullptr;
  vtkMatrix4x4* unused = nullptr;
  vtkMatrix3x3* unused_normals = nullptr;
  camera.GetKeyMatrices(&renderer, unused, unused_normals, unused, world_to_device);
  std::transform(world_to_device->GetData(), world_to_device->GetData() + 16, look.matrix,
                 [](double value) { return static_cast<float>(value); });
  const int* size = renderer.GetRenderWindow()->GetSize();
  look.viewport[0] = static_cast<float>(size[0]);
  look.viewport[1] = static_cast<float>(size[1]);
  look.stipple = actor.GetProperty()->GetLineStipplePattern();
  const float width = actor.GetProperty()->GetLineWidth();
  look.line_width = width > 0.0F ? width : 1.0F; // OpenGL refuses 0
  return look;
}

/// Whether VTK peels the actor off the picture layer by layer.
bool is_being_peeled(vtkActor& actor)
{
  vtkInformation* keys = actor.GetPropertyKeys();
  vtkInformationObjectBaseVectorKey* passes = vtkOpenGLRenderPass::RenderPasses();
  const int count = keys != nullptr && keys->Has(passes) != 0 ? passes->Length(keys) : 0;
  for (int i = 0; i < count; ++i) {
    if (vtkDepthPeelingPass::SafeDownCast(passes->Get(keys, i)) != nullptr) {
      return actor.IsRenderingTranslucentPolygonalGeometry();
    }
  }
  return false;
}

/// Whether VTK takes what is drawn for something else than colours: for depths, or for the numbers of props.
bool wants_no_colors(vtkRenderer& renderer, vtkActor& actor)
{
  return renderer.GetSelector() != nullptr || is_being_peeled(actor);
}

/// The program is current and lines have their width while this lives; then all is as VTK knows it.
class DrawingScope
{
public:
  DrawingScope(vtkOpenGLState& state, morrow::SilhouetteProgram& program, const morrow::SilhouetteLook& look)
      : mState(state), mProgram(program), mHasBegun(program.begin(look))
  {
    if (mHasBegun) {
      mLineWidth = morrow::SilhouetteProgram::line_width();
      mState.vtkglLineWidth(look.line_width);
    }
  }
  ~DrawingScope()
  {
    if (mHasBegun) {
      mState.vtkglLineWidth(mLineWidth);
      mProgram.end();
    }
  }
  DrawingScope(const DrawingScope&) = delete;
  DrawingScope& operator=(const DrawingScope&) = delete;

  /// False when there is nothing to draw with.
  [[nodiscard]] bool has_begun() const { return mHasBegun; }

private:
  vtkOpenGLState& mState;
  morrow::SilhouetteProgram& mProgram;
  bool mHasBegun;
  float mLineWidth = 1.0F; // before
};

} // namespace

class GSilhouetteMapper::Insides
{
public:
  morrow::SilhouetteFinder finder;

  /// The program of the window's present context, not built yet when it is new.
  morrow::SilhouetteProgram& program_of(vtkOpenGLRenderWindow& window)
  {
    this->forget_if([](const WindowProgram& each) { return !each.is_alive(); });
    const auto found = std::find_if(mPrograms.begin(), mPrograms.end(),
                                    [&](const WindowProgram& each) { return each.is_of(window); });
    if (found != mPrograms.end()) {
      return found->program;
    }
    mPrograms.push_back({&window, &window, window.GetContextCreationTime(), {}});
    return mPrograms.back().program;
  }

  void release(vtkOpenGLRenderWindow& window)
  {
    this->forget_if([&window](WindowProgram& each) {
      const bool wanted = each.is_of(window);
      if (wanted) {
        release_program(window, each.program);
      }
      return wanted;
    });
  }

  void release_all()
  {
    for (WindowProgram& each : mPrograms) {
      if (each.is_alive()) {
        release_program(*each.window, each.program);
      }
    }
    mPrograms.clear();
  }

private:
  template<typename Condition>
  void forget_if(Condition&& condition)
  {
    mPrograms.erase(std::remove_if(mPrograms.begin(), mPrograms.end(), condition), mPrograms.end());
  }

  std::vector<WindowProgram> mPrograms;
};

GSilhouetteMapper::GSilhouetteMapper() : mInsides(std::make_unique<Insides>()) {}

GSilhouetteMapper::~GSilhouetteMapper() = default;

void GSilhouetteMapper::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
}

int GSilhouetteMapper::FillInputPortInformation(int /*port*/, vtkInformation* info)
{
  info->Set(vtkAlgorithm::INPUT_REQUIRED_DATA_TYPE(), "vtkDataObject");
  info->Set(vtkAlgorithm::INPUT_IS_OPTIONAL(), 1);
  return 1;
}

void GSilhouetteMapper::update_input()
{
  if (this->GetNumberOfInputConnections(0) > 0 && this->Static == 0) {
    this->GetInputAlgorithm()->Update();
  }
}

void GSilhouetteMapper::Render(vtkRenderer* ren, vtkActor* actor)
{
  auto* window = ren != nullptr ? vtkOpenGLRenderWindow::SafeDownCast(ren->GetRenderWindow()) : nullptr;
  if (window == nullptr || actor == nullptr || wants_no_colors(*ren, *actor)) {
    return;
  }
  auto* camera = vtkOpenGLCamera::SafeDownCast(ren->GetActiveCamera());
  if (camera == nullptr) {
    return; // one of another kind of graphics, as a host may set it
  }
  this->update_input();
  window->GetShaderCache()->ReleaseCurrentShader(); // what follows is not VTK's
  morrow::SilhouetteProgram& program = mInsides->program_of(*window);
  if (!program.is_built()) {
    program.build();
  }
  const DrawingScope drawing(*window->GetState(), program, look_of(*ren, *camera, *actor));
  if (!drawing.has_begun()) {
    return;
  }
  vtkMatrix4x4* matrix = camera->GetCompositeProjectionTransformMatrix(ren->GetTiledAspectRatio(), 0.0, 1.0);
  for_each_poly_data(this->GetInputDataObject(0, 0), [&](vtkPolyData& data) {
    this->compute(matrix, &data, mLineVertices);
    if (!mLineVertices.empty()) {
      float rgba[4];
      this->get_color(actor->GetProperty(), &data, rgba);
      program.draw(mLineVertices, rgba);
    }
  });
}

void GSilhouetteMapper::compute(vtkMatrix4x4* matrix, vtkPolyData* data, std::vector<float>& out)
{
  out.clear();
  if (matrix != nullptr && data != nullptr) {
    mInsides->finder.find(*matrix, *data, out);
  }
}

void GSilhouetteMapper::get_color(vtkProperty* prop, vtkPolyData* data, float* rgba)
{
  if (rgba == nullptr) {
    return;
  }
  vtkUnsignedCharArray* bytes = this->GetScalarVisibility() != 0 ? color_bytes(data) : nullptr;
  if (bytes != nullptr) {
    first_color(*bytes, rgba);
    return;
  }
  std::fill_n(rgba, 4, 1.0F);
  if (prop != nullptr) {
    std::transform(prop->GetColor(), prop->GetColor() + 3, rgba,
                   [](double channel) { return static_cast<float>(channel); });
    rgba[3] = static_cast<float>(prop->GetOpacity());
  }
}

double* GSilhouetteMapper::GetBounds()
{
  if (this->GetNumberOfInputConnections(0) == 0) {
    vtkMath::UninitializeBounds(this->Bounds);
  } else {
    this->update_input();
    this->ComputeBounds();
  }
  return this->Bounds;
}

void GSilhouetteMapper::ComputeBounds()
{
  vtkDataObject* input = this->GetInputDataObject(0, 0);
  if (auto* data = vtkPolyData::SafeDownCast(input)) {
    data->GetBounds(this->Bounds);
    return;
  }
  if (input == nullptr) {
    vtkMath::UninitializeBounds(this->Bounds);
    mBoundsTime = vtkTimeStamp();
    return;
  }
  if (mBoundsTime.GetMTime() >= std::max(input->GetMTime(), this->GetMTime())) {
    return;
  }
  vtkBoundingBox box;
  for_each_poly_data(input, [&box](vtkPolyData& data) { box.AddBounds(data.GetBounds()); });
  vtkMath::UninitializeBounds(this->Bounds);
  if (box.IsValid() != 0) {
    box.GetBounds(this->Bounds);
  }
  mBoundsTime.Modified();
}

void GSilhouetteMapper::ReleaseGraphicsResources(vtkWindow* window)
{
  if (window == nullptr) {
    mInsides->release_all();
  } else if (auto* opengl = vtkOpenGLRenderWindow::SafeDownCast(window)) {
    mInsides->release(*opengl);
  }
}
