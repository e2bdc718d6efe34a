// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MyCompositePolyDataMapper.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtk_glew.h>

#include <vtkCallbackCommand.h>
#include <vtkCommand.h>
#include <vtkCompositeMapperHelper2.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkSmartPointer.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr unsigned long kUpdateShader = vtkCommand::UpdateShaderEvent;

/// Lets the tests make helpers, as rendering does.
class OpenMapper : public MyCompositePolyDataMapper
{
public:
  static OpenMapper* New();
  vtkTypeMacro(OpenMapper, MyCompositePolyDataMapper)
  OpenMapper(const OpenMapper&) = delete;
  void operator=(const OpenMapper&) = delete;

  vtkSmartPointer<vtkCompositeMapperHelper2> helper()
  {
    return vtkSmartPointer<vtkCompositeMapperHelper2>::Take(this->CreateHelper());
  }

protected:
  OpenMapper() = default;
  ~OpenMapper() override = default;
};

vtkStandardNewMacro(OpenMapper)

/// The shader-update events of an object, by their call data.
class Listener
{
public:
  explicit Listener(vtkObject* object)
  {
    mCommand->SetClientData(&heard);
    mCommand->SetCallback([](vtkObject*, unsigned long, void* calls, void* call_data) {
      static_cast<std::vector<void*>*>(calls)->push_back(call_data);
    });
    object->AddObserver(kUpdateShader, mCommand);
  }
  ~Listener() { mCommand->SetClientData(nullptr); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  std::vector<void*> heard;

private:
  vtkNew<vtkCallbackCommand> mCommand;
};

TEST(MyCompositePolyDataMapperTest, IsACompositeMapperOfVtk)
{
  const vtkNew<MyCompositePolyDataMapper> mapper;
  EXPECT_STREQ(mapper->GetClassName(), "MyCompositePolyDataMapper");
  EXPECT_TRUE(mapper->IsA("MyCompositePolyDataMapper"));
  EXPECT_TRUE(mapper->IsA("vtkCompositePolyDataMapper2"));
  EXPECT_TRUE(mapper->IsA("vtkOpenGLPolyDataMapper"));
  const auto another = vtkSmartPointer<MyCompositePolyDataMapper>::Take(mapper->NewInstance());
  EXPECT_STREQ(another->GetClassName(), "MyCompositePolyDataMapper");
  std::ostringstream text;
  mapper->Print(text);
  EXPECT_NE(text.str().find("MyCompositePolyDataMapper"), std::string::npos);
}

TEST(MyCompositePolyDataMapperTest, PassesOnTheEventsOfEveryHelper)
{
  const vtkNew<OpenMapper> mapper;
  const Listener listener(mapper);
  const auto first = mapper->helper();
  const auto second = mapper->helper();
  ASSERT_NE(first, second);
  EXPECT_TRUE(listener.heard.empty());
  int a = 0;
  int b = 0;
  first->InvokeEvent(kUpdateShader, &a);
  second->InvokeEvent(kUpdateShader, &b);
  first->InvokeEvent(kUpdateShader, nullptr);
  EXPECT_EQ(listener.heard, (std::vector<void*>{&a, &b, nullptr}));
}

TEST(MyCompositePolyDataMapperTest, PassesOnNoOtherEvents)
{
  const vtkNew<OpenMapper> mapper;
  const Listener listener(mapper);
  const auto helper = mapper->helper();
  helper->InvokeEvent(vtkCommand::StartEvent);
  helper->InvokeEvent(vtkCommand::ModifiedEvent);
  helper->InvokeEvent(kUpdateShader + 1);
  EXPECT_TRUE(listener.heard.empty());
}

TEST(MyCompositePolyDataMapperTest, CallbackTellsTheMapperThatIsItsClientData)
{
  const vtkNew<MyCompositePolyDataMapper> mapper;
  const Listener listener(mapper);
  int data = 0;
  MyCompositePolyDataMapper::UpdateShadersFunc(nullptr, kUpdateShader, mapper, &data);
  MyCompositePolyDataMapper::UpdateShadersFunc(nullptr, vtkCommand::NoEvent, mapper, nullptr);
  EXPECT_EQ(listener.heard, (std::vector<void*>{&data, nullptr}));
  MyCompositePolyDataMapper::UpdateShadersFunc(nullptr, kUpdateShader, nullptr, &data);
}

TEST(MyCompositePolyDataMapperTest, HelpersThatOutliveTheMapperTellNobody)
{
  vtkSmartPointer<vtkCompositeMapperHelper2> helper;
  {
    const vtkNew<OpenMapper> mapper;
    helper = mapper->helper();
  }
  auto* command = dynamic_cast<vtkCallbackCommand*>(helper->GetCommand(1)); // the first observer
  ASSERT_NE(command, nullptr);
  EXPECT_EQ(command->Callback, &MyCompositePolyDataMapper::UpdateShadersFunc);
  EXPECT_EQ(command->GetClientData(), nullptr);
  helper->InvokeEvent(kUpdateShader, nullptr);
}

TEST(MyCompositePolyDataMapperTest, OutlivesItsHelpers)
{
  const vtkNew<OpenMapper> mapper;
  const Listener listener(mapper);
  mapper->helper()->InvokeEvent(kUpdateShader, nullptr);
  EXPECT_EQ(listener.heard.size(), 1U);
  EXPECT_EQ(mapper->GetReferenceCount(), 1);
}

} // namespace
