// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ViewFixture.h"

#include <X11/Xlib.h>

/// What the tests of the ends of things share.
namespace morrow_test {

using WindowPointer = vtkSmartPointer<vtkRenderWindow>;
using ViewPointer = std::shared_ptr<GView>;

/// Counts X errors while it lives, instead of Xlib ending the program.
class XErrorCounter
{
public:
  XErrorCounter() : mBefore(XSetErrorHandler(count_error)) { gCount = 0; }
  ~XErrorCounter() { XSetErrorHandler(mBefore); }
  XErrorCounter(const XErrorCounter&) = delete;
  XErrorCounter& operator=(const XErrorCounter&) = delete;

  [[nodiscard]] static int count() { return gCount; }

private:
  static int count_error(Display* /*display*/, XErrorEvent* /*error*/)
  {
    ++gCount;
    return 0;
  }

  inline static int gCount = 0;
  XErrorHandler mBefore;
};

/// Fails when one of its frames brings an X error.
class LifetimeTest : public ViewRenderTest
{
protected:
  void TearDown() override
  {
    ViewRenderTest::TearDown();
    EXPECT_EQ(mErrors.count(), 0) << "X errors";
  }

private:
  XErrorCounter mErrors;
};

} // namespace morrow_test
