// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MRUtil.h"
#include "PickFixture.h"

#include <stdexcept>
#include <type_traits>

namespace {

using namespace morrow_test;

class GPickerBaseTest : public PickTest
{
protected:
  void SetUp() override
  {
    GPickerBase::register_picker("node", &mNodes);
    GPickerBase::register_picker("edge", &mEdges);
    GPickerBase::register_picker("face", &mFaces);
    GPickerBase::register_picker("curve", &mEdges); // served by the same object
  }
  void TearDown() override
  {
    GPickerBase::unregister_picker("node", &mNodes);
    GPickerBase::unregister_picker("edge", &mEdges);
    GPickerBase::unregister_picker("face", &mFaces);
    GPickerBase::unregister_picker("curve", &mEdges);
    PickTest::TearDown();
  }

  static std::vector<std::string> types()
  {
    std::vector<const char*> names(static_cast<std::size_t>(GPickerBase::get_number_pick_types()));
    GPickerBase::get_pick_types(names.data());
    return {names.begin(), names.end()};
  }

  static std::vector<std::string> filters()
  {
    std::vector<const char*> names(static_cast<std::size_t>(GPickerBase::get_number_pick_types()));
    int count = -1;
    GPickerBase::get_pick_filters(names.data(), count);
    int only_counted = -1;
    GPickerBase::get_pick_filters(nullptr, only_counted);
    EXPECT_EQ(only_counted, count);
    return {names.begin(), names.begin() + count};
  }

  static std::string current()
  {
    const char* name = GPickerBase::get_pick_type();
    return name != nullptr ? name : "(none)";
  }

  TestPicker mNodes;
  TestPicker mEdges;
  TestPicker mFaces;
};

using Texts = std::vector<std::string>;

TEST_F(GPickerBaseTest, ObjectsCarryNoState)
{
  static_assert(std::is_empty_v<GPickerBase>);
  [[maybe_unused]] const GPickerBase object;
  EXPECT_EQ(types(), Texts({"node", "edge", "face", "curve"}));
}

TEST_F(GPickerBaseTest, StartsWithoutACurrentType)
{
  EXPECT_EQ(GPickerBase::get_picker(), nullptr);
  EXPECT_EQ(GPickerBase::get_pick_type(), nullptr);
  EXPECT_EQ(filters(), Texts());
}

TEST_F(GPickerBaseTest, ATypeIsTheCallersText)
{
  const std::string face = "face";
  GPickerBase::set_pick_type(face.c_str(), true); // compared as text
  EXPECT_EQ(GPickerBase::get_picker(), &mFaces);
  EXPECT_NE(GPickerBase::get_pick_type(), face.c_str());

  auto name = std::make_unique<std::string>("a name of the heap, longer than what fits into a string itself");
  TestPicker picker;
  GPickerBase::register_picker(name->c_str(), &picker);
  GPickerBase::set_pick_type(name->c_str(), true);
  EXPECT_EQ(GPickerBase::get_pick_type(), name->c_str()); // the pointer
  EXPECT_TRUE(GPickerBase::unregister_picker(name->c_str(), &picker));
  name.reset();
  EXPECT_EQ(types(), Texts({"node", "edge", "face", "curve"})); // nothing looks at it any more
  EXPECT_FALSE(GPickerBase::is_filtered("x"));
}

TEST_F(GPickerBaseTest, RegisteringANameTwiceReplacesThePicker)
{
  TestPicker other;
  GPickerBase::set_pick_type("edge", true);
  EXPECT_TRUE(GPickerBase::register_picker("edge", &other));
  EXPECT_EQ(types(), Texts({"node", "edge", "face", "curve"}));
  EXPECT_EQ(GPickerBase::get_picker(), &other);
  EXPECT_TRUE(GPickerBase::is_filtered("edge"));
  EXPECT_FALSE(GPickerBase::unregister_picker("edge", &mEdges));
  EXPECT_TRUE(GPickerBase::register_picker("edge", &mEdges));
}

TEST_F(GPickerBaseTest, UnregisteringNeedsNameAndPicker)
{
  EXPECT_FALSE(GPickerBase::unregister_picker("edge", &mFaces));
  EXPECT_FALSE(GPickerBase::unregister_picker("volume", &mFaces));
  EXPECT_FALSE(GPickerBase::unregister_picker(nullptr, &mFaces));
  EXPECT_FALSE(GPickerBase::unregister_picker("edge", nullptr));
  EXPECT_EQ(types(), Texts({"node", "edge", "face", "curve"}));
}

TEST_F(GPickerBaseTest, UnregisteringKeepsTheCurrentTypeUnlessItIsTheOne)
{
  GPickerBase::set_pick_type("edge", true);
  EXPECT_TRUE(GPickerBase::unregister_picker("node", &mNodes)); // before
  EXPECT_EQ(current(), "edge");
  EXPECT_EQ(filters(), Texts({"edge"}));
  EXPECT_TRUE(GPickerBase::unregister_picker("face", &mFaces)); // behind
  EXPECT_EQ(current(), "edge");
  EXPECT_EQ(filters(), Texts({"edge"}));
  EXPECT_TRUE(GPickerBase::unregister_picker("edge", &mEdges));
  EXPECT_EQ(current(), "(none)");
  EXPECT_EQ(GPickerBase::get_picker(), nullptr);
  EXPECT_EQ(filters(), Texts());
}

TEST_F(GPickerBaseTest, APickerThatIsDestroyedTakesItsTypesAlong)
{
  auto picker = std::make_unique<TestPicker>();
  GPickerBase::register_picker("block", picker.get());
  GPickerBase::register_picker("node", picker.get());
  GPickerBase::set_pick_type("block", true);
  picker.reset();
  EXPECT_EQ(types(), Texts({"edge", "face", "curve"}));
  EXPECT_EQ(GPickerBase::get_picker(), nullptr);
  EXPECT_EQ(current(), "(none)");
}

TEST_F(GPickerBaseTest, NullsAreLeftOut)
{
  EXPECT_FALSE(GPickerBase::register_picker(nullptr, &mFaces));
  EXPECT_EQ(GPickerBase::get_number_pick_types(), 4);
  GPickerBase::get_pick_types(nullptr);
  GPickerBase::set_pick_type("face", true);
  GPickerBase::add_filter_type(nullptr);
  GPickerBase::remove_filter_type(nullptr);
  EXPECT_EQ(filters(), Texts({"face"}));
  EXPECT_FALSE(GPickerBase::is_filtered(nullptr));
  GPickerBase::set_pick_type(nullptr, false);
  EXPECT_EQ(current(), "face");
  EXPECT_EQ(filters(), Texts());
  GPickerBase::set_pick_type("face", true);
  GPickerBase::set_filter_types(3, nullptr);
  EXPECT_EQ(filters(), Texts());
  const char* names[] = {nullptr, "edge", nullptr};
  GPickerBase::set_filter_types(3, names);
  EXPECT_EQ(filters(), Texts({"edge"}));
  GPickerBase::set_filter_types(-1, names);
  EXPECT_EQ(filters(), Texts());

  EXPECT_TRUE(GPickerBase::register_picker("nobody", nullptr)); // a type without picker
  GPickerBase::set_pick_type("nobody", true);
  EXPECT_EQ(GPickerBase::get_picker(), nullptr);
  EXPECT_EQ(current(), "nobody");
  EXPECT_TRUE(GPickerBase::unregister_picker("nobody", nullptr));
}

TEST_F(GPickerBaseTest, SettingATypeSaysSoUnlessQuiet)
{
  const PrintCapture printed;
  GPickerBase::set_pick_type("face", false);
  EXPECT_EQ(printed.info(), "Now in face picking mode.\n");
  EXPECT_EQ(current(), "face");
  EXPECT_EQ(filters(), Texts({"face"}));
  GPickerBase::set_pick_type("edge", true);
  EXPECT_EQ(printed.calls().size(), 1U);
  EXPECT_EQ(current(), "edge");
  EXPECT_EQ(filters(), Texts({"edge"}));
  GPickerBase::set_pick_type("volume", false);
  EXPECT_EQ(printed.calls().size(), 1U);
  EXPECT_EQ(current(), "edge"); // stays, but the filters are gone
  EXPECT_EQ(filters(), Texts());
  EXPECT_FALSE(GPickerBase::is_filtered("edge"));
}

GPicker* gUnregistered = nullptr;

TEST_F(GPickerBaseTest, ThePrintFunctionMayTakeTheTypeAway)
{
  gUnregistered = &mFaces;
  MRUtil::PrintFunction before = nullptr;
  MRUtil::get_print_function(before);
  MRUtil::set_print_function(
      [](const char*, int, bool) { GPickerBase::unregister_picker("face", gUnregistered); });
  GPickerBase::set_pick_type("face", false);
  MRUtil::set_print_function(before);
  EXPECT_EQ(current(), "(none)");
  EXPECT_EQ(types(), Texts({"node", "edge", "curve"}));
}

std::unique_ptr<std::string> gTypeName;

TEST_F(GPickerBaseTest, ThePrintFunctionMayFreeTheNameOrThrow)
{
  gTypeName = std::make_unique<std::string>("a name of the heap, longer than what fits into a string itself");
  GPickerBase::register_picker(gTypeName->c_str(), &mNodes);
  gUnregistered = &mNodes;
  MRUtil::PrintFunction before = nullptr;
  MRUtil::get_print_function(before);
  MRUtil::set_print_function([](const char*, int, bool) {
    GPickerBase::unregister_picker(gTypeName->c_str(), gUnregistered);
    gTypeName.reset();
  });
  GPickerBase::set_pick_type(gTypeName->c_str(), false);
  EXPECT_EQ(current(), "(none)");
  MRUtil::set_print_function([](const char*, int, bool) { throw std::runtime_error("host"); });
  EXPECT_THROW(GPickerBase::set_pick_type("face", false), std::runtime_error);
  MRUtil::set_print_function(before);
  EXPECT_EQ(current(), "face");
  EXPECT_EQ(filters(), Texts({"face"}));
}

TEST_F(GPickerBaseTest, TypesOfOnePickerAreFilteredTogether)
{
  GPickerBase::add_filter_type("edge"); // none is current yet
  EXPECT_EQ(current(), "edge");
  GPickerBase::add_filter_type("curve");
  EXPECT_EQ(current(), "edge");
  EXPECT_EQ(filters(), Texts({"edge", "curve"}));
  GPickerBase::add_filter_type("face"); // another object
  EXPECT_EQ(current(), "face");
  EXPECT_EQ(filters(), Texts({"face"}));
  GPickerBase::add_filter_type("volume");
  EXPECT_EQ(filters(), Texts({"face"}));
}

TEST_F(GPickerBaseTest, AFilterThatIsAddedWithoutACurrentTypeClearsNothing)
{
  GPickerBase::set_pick_type("face", true);
  GPickerBase::remove_filter_type("face");
  EXPECT_EQ(current(), "(none)");
  GPickerBase::add_filter_type("node");
  GPickerBase::add_filter_type("node");
  EXPECT_EQ(current(), "node");
  EXPECT_EQ(filters(), Texts({"node"}));
}

TEST_F(GPickerBaseTest, RemovingAFilterMakesTheFirstOneLeftCurrent)
{
  const char* names[] = {"curve", "edge"};
  GPickerBase::set_filter_types(2, names);
  EXPECT_EQ(current(), "curve");
  EXPECT_EQ(filters(), Texts({"edge", "curve"})); // in the order of registration
  GPickerBase::remove_filter_type("curve");
  EXPECT_EQ(current(), "edge");
  GPickerBase::remove_filter_type("volume");
  EXPECT_EQ(current(), "edge");
  GPickerBase::remove_filter_type("edge");
  EXPECT_EQ(current(), "(none)");
  GPickerBase::set_pick_type("face", true);
  GPickerBase::remove_filter_type("node"); // was not filtered
  EXPECT_EQ(current(), "face");
}

TEST_F(GPickerBaseTest, SettingFiltersAddsThemOneByOne)
{
  GPickerBase::set_pick_type("face", true);
  const char* names[] = {"edge", "node"};
  GPickerBase::set_filter_types(2, names);
  EXPECT_EQ(current(), "node"); // another picker than that of "edge"
  EXPECT_EQ(filters(), Texts({"node"}));
  GPickerBase::set_filter_types(0, names);
  EXPECT_EQ(current(), "node");
  EXPECT_EQ(filters(), Texts());
}

} // namespace
