// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GModel.h"
#include "ViewFixture.h"

#include <vtkObjectFactory.h>
#include <vtkOpenGLPolyDataMapper.h>

#include <cstddef>

/// What the tests of those operations of GModel share that make and prepare mappers.
namespace morrow_test {

using GModelMapperTest = ViewTest;
using GModelMapperRenderTest = ViewRenderTest;

/// Keeps the shader texts that it is given.
class RecordingMapper : public vtkOpenGLPolyDataMapper
{
public:
  static RecordingMapper* New() { VTK_STANDARD_NEW_BODY(RecordingMapper); }
  vtkTypeMacro(RecordingMapper, vtkOpenGLPolyDataMapper)
  RecordingMapper(const RecordingMapper&) = delete;
  void operator=(const RecordingMapper&) = delete;

  void SetFragmentShaderCode(const char* code) override { fragment.emplace_back(code); }
  void SetGeometryShaderCode(const char* code) override { geometry.emplace_back(code); }
  void SetVertexShaderCode(const char* code) override { vertex.emplace_back(code); }

  std::vector<std::string> fragment;
  std::vector<std::string> geometry;
  std::vector<std::string> vertex;

  [[nodiscard]] bool is_untouched() const { return fragment.empty() && geometry.empty() && vertex.empty(); }

protected:
  RecordingMapper() = default;
  ~RecordingMapper() override = default;
};

inline bool contains(const std::string& text, const std::string& part)
{
  return text.find(part) != std::string::npos;
}

inline vtkSmartPointer<vtkActor> actor_of(vtkMapper* mapper, Rgb colour)
{
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetMapper(mapper);
  actor->GetProperty()->LightingOff();
  actor->GetProperty()->SetColor(colour.r / 255.0, colour.g / 255.0, colour.b / 255.0);
  return actor;
}

/// Fails when VTK or OpenGL has a complaint in its scope, VTK's display of them being on.
class NoComplaints
{
public:
  ~NoComplaints()
  {
    EXPECT_EQ(vtk_messages().size(), mVtk);
    EXPECT_EQ(gl_messages().size(), mGl);
  }
  NoComplaints() = default;
  NoComplaints(const NoComplaints&) = delete;
  NoComplaints& operator=(const NoComplaints&) = delete;

private:
  WarningDisplayOn mOn;
  std::size_t mVtk = vtk_messages().size();
  std::size_t mGl = gl_messages().size();
};

} // namespace morrow_test
