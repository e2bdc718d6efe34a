// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ImageExport.h"

#include "ViewFixture.h"

#include <vtkImageWriter.h>
#include <vtkNew.h>

#include <memory>

namespace {

using namespace morrow_test;
using morrow::OffScreenBuffers;

TEST(ImageWriterTest, IsTheOneOfTheType)
{
  const std::pair<int, const char*> writers[] = {
      {5, "vtkJPEGWriter"}, {6, "vtkPNGWriter"},  {7, "vtkBMPWriter"},
      {8, "vtkPNMWriter"},  {9, "vtkTIFFWriter"}, {10, "vtkPostScriptWriter"},
  };
  for (const auto& [type, name] : writers) {
    const auto writer = morrow::make_image_writer(type);
    ASSERT_NE(writer, nullptr) << name;
    EXPECT_STREQ(writer->GetClassName(), name);
  }
}

TEST(ImageWriterTest, IsNoneForAnyOtherCode)
{
  for (const int type : {-1, 0, 4, 11, 100, 103}) {
    EXPECT_EQ(morrow::make_image_writer(type), nullptr) << type;
  }
}

TEST(OffScreenBuffersTest, AreOnWhileTheyLive)
{
  const vtkNew<vtkRenderWindow> window;
  {
    const OffScreenBuffers buffers(*window);
    EXPECT_TRUE(window->GetUseOffScreenBuffers());
    EXPECT_TRUE(window->GetShowWindow());
  }
  EXPECT_FALSE(window->GetUseOffScreenBuffers());
}

TEST(OffScreenBuffersTest, GoOffAlsoWhenTheyWereOn)
{
  const vtkNew<vtkRenderWindow> window;
  window->UseOffScreenBuffersOn();
  {
    const OffScreenBuffers buffers(*window);
  }
  EXPECT_FALSE(window->GetUseOffScreenBuffers());
}

TEST(OffScreenBuffersTest, LeaveAWindowThatIsNeverShownOffTheScreen)
{
  const vtkNew<vtkRenderWindow> window;
  window->OffScreenRenderingOn();
  {
    const OffScreenBuffers buffers(*window);
  }
  EXPECT_FALSE(window->GetUseOffScreenBuffers());
  EXPECT_NE(window->GetOffScreenRendering(), 0);
}

TEST(OffScreenBuffersTest, GoOffWhenSomethingThrows)
{
  const vtkNew<vtkRenderWindow> window;
  const auto throws = [&] {
    const OffScreenBuffers buffers(*window);
    throw HostError("in between");
  };
  EXPECT_EQ(thrown_by(throws), "in between");
  EXPECT_FALSE(window->GetUseOffScreenBuffers());
}

TEST(OffScreenBuffersTest, KeepTheWindowAlive)
{
  vtkSmartPointer<vtkRenderWindow> window = vtkSmartPointer<vtkRenderWindow>::New();
  const vtkWeakPointer<vtkRenderWindow> watched = window.Get();
  {
    const OffScreenBuffers buffers(*window);
    window = nullptr;
    EXPECT_NE(watched, nullptr);
  }
  EXPECT_EQ(watched, nullptr);
}

} // namespace
