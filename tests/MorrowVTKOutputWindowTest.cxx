// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MorrowVTKOutputWindow.h"

#include "MRUtil.h"
#include "OutputFixture.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkNew.h>
#include <vtkSmartPointer.h>
#include <vtkStringOutputWindow.h>

#include <sstream>
#include <string>

namespace {

using morrow_test::PrintCapture;
using morrow_test::written_by;

/// Puts VTK's output window back.
class MorrowVTKOutputWindowTest : public ::testing::Test
{
protected:
  ~MorrowVTKOutputWindowTest() override { vtkOutputWindow::SetInstance(mBefore); }

private:
  vtkSmartPointer<vtkOutputWindow> mBefore = vtkOutputWindow::GetInstance();
};

TEST_F(MorrowVTKOutputWindowTest, KnowsItsTypes)
{
  const vtkNew<MorrowVTKOutputWindow> window;
  EXPECT_STREQ(window->GetClassName(), "MorrowVTKOutputWindow");
  EXPECT_TRUE(window->IsA("MorrowVTKOutputWindow"));
  EXPECT_TRUE(window->IsA("vtkOutputWindow"));
  EXPECT_TRUE(window->IsA("vtkObject"));
  EXPECT_TRUE(window->IsA("vtkObjectBase"));
  EXPECT_FALSE(window->IsA("vtkStringOutputWindow"));
  EXPECT_TRUE(MorrowVTKOutputWindow::IsTypeOf("vtkOutputWindow"));
  EXPECT_FALSE(MorrowVTKOutputWindow::IsTypeOf("vtkProp"));
}

TEST_F(MorrowVTKOutputWindowTest, MakesNewInstancesOfItsOwnClass)
{
  const vtkNew<MorrowVTKOutputWindow> window;
  const vtkOutputWindow* as_superclass = window;
  const auto other = vtkSmartPointer<vtkOutputWindow>::Take(as_superclass->NewInstance());
  EXPECT_STREQ(other->GetClassName(), "MorrowVTKOutputWindow");
  EXPECT_NE(other.Get(), as_superclass);
  EXPECT_EQ(other->GetReferenceCount(), 1);
}

TEST_F(MorrowVTKOutputWindowTest, CastsOnlyItsOwnKind)
{
  const vtkNew<MorrowVTKOutputWindow> window;
  const vtkNew<vtkStringOutputWindow> other;
  EXPECT_EQ(MorrowVTKOutputWindow::SafeDownCast(window), window.Get());
  EXPECT_EQ(MorrowVTKOutputWindow::SafeDownCast(other), nullptr);
  EXPECT_EQ(MorrowVTKOutputWindow::SafeDownCast(nullptr), nullptr);
}

TEST_F(MorrowVTKOutputWindowTest, PrintsItselfAsItsSuperclass)
{
  const vtkNew<MorrowVTKOutputWindow> window;
  std::ostringstream text;
  window->Print(text);
  EXPECT_EQ(text.str().rfind("MorrowVTKOutputWindow (", 0), 0U);
  EXPECT_NE(text.str().find("Prompt User"), std::string::npos);
}

using Display = void (vtkOutputWindow::*)(const char*);

constexpr Display gDisplays[] = {&vtkOutputWindow::DisplayText, &vtkOutputWindow::DisplayErrorText,
                                 &vtkOutputWindow::DisplayWarningText,
                                 &vtkOutputWindow::DisplayGenericWarningText,
                                 // the superclass hands it to DisplayText
                                 &vtkOutputWindow::DisplayDebugText};

TEST_F(MorrowVTKOutputWindowTest, WritesEveryTextUnchanged)
{
  const vtkNew<MorrowVTKOutputWindow> window;
  for (const Display display : gDisplays) {
    for (const char* text : {"", "no line end", "two\nlines\n", "100%s%n"}) {
      EXPECT_EQ(written_by([&] { (window->*display)(text); }), text);
    }
  }
}

TEST_F(MorrowVTKOutputWindowTest, WritesLongTextsWhole)
{
  const vtkNew<MorrowVTKOutputWindow> window;
  const std::string text(100000, 'x');
  for (const Display display : gDisplays) {
    EXPECT_EQ(written_by([&] { (window->*display)(text.c_str()); }), text);
  }
}

TEST_F(MorrowVTKOutputWindowTest, ANullTextWritesNothing)
{
  const vtkNew<MorrowVTKOutputWindow> window;
  for (const Display display : gDisplays) {
    EXPECT_EQ(written_by([&] { (window->*display)(nullptr); }), "");
  }
}

TEST_F(MorrowVTKOutputWindowTest, GoesPastThePrintFunction)
{
  const PrintCapture capture;
  const vtkNew<MorrowVTKOutputWindow> window;
  EXPECT_EQ(written_by([&] { window->DisplayErrorText("lost\n"); }), "lost\n");
  EXPECT_TRUE(capture.calls().empty());
}

TEST_F(MorrowVTKOutputWindowTest, OnceInstalledBelongsToVtkAlone)
{
  MRUtil::setup_vtk_output_window_to_stdout();
  vtkOutputWindow* installed = vtkOutputWindow::GetInstance();
  EXPECT_STREQ(installed->GetClassName(), "MorrowVTKOutputWindow");
  EXPECT_EQ(installed->GetReferenceCount(), 1);
}

TEST_F(MorrowVTKOutputWindowTest, InstallingItAgainLetsTheFirstOneGo)
{
  MRUtil::setup_vtk_output_window_to_stdout();
  const vtkSmartPointer<vtkOutputWindow> first = vtkOutputWindow::GetInstance();
  MRUtil::setup_vtk_output_window_to_stdout();
  EXPECT_EQ(first->GetReferenceCount(), 1); // ours
  EXPECT_NE(vtkOutputWindow::GetInstance(), first.Get());
  EXPECT_EQ(vtkOutputWindow::GetInstance()->GetReferenceCount(), 1);
}

TEST_F(MorrowVTKOutputWindowTest, OnceInstalledReceivesWhatVtkReports)
{
  const morrow_test::WarningDisplayOn on;
  MRUtil::setup_vtk_output_window_to_stdout();
  const vtkNew<vtkActor> object;
  const std::string written = written_by([&] {
    vtkErrorWithObjectMacro(object, "broken");
    vtkWarningWithObjectMacro(object, "odd");
    vtkGenericWarningMacro("strange");
    vtkOutputWindowDisplayText("plain\n");
  });
  // VTK's own form: "ERROR: In <file>, line <line>\n<class> (<address>): broken\n\n".
  EXPECT_EQ(written.rfind("ERROR: In ", 0), 0U) << written;
  EXPECT_NE(written.find("): broken\n\nWarning: In "), std::string::npos) << written;
  EXPECT_NE(written.find("): odd\n\nGeneric Warning: In "), std::string::npos) << written;
  const std::string end = "\nstrange\n\nplain\n";
  ASSERT_GE(written.size(), end.size());
  EXPECT_EQ(written.substr(written.size() - end.size()), end);
}

} // namespace
