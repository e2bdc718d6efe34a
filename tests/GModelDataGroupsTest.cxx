// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "DataGroupFixture.h"
#include "ModelFixture.h"

#include <climits>
#include <functional>

namespace {

using namespace morrow_test;
using Apply = std::function<void(Props&)>;

/// A model that shows a chain of groups.
class GroupModel : public ScriptedModel
{
public:
  using GModel::view_props;

  explicit GroupModel(GDataGroup& head) : mHead(head)
  {
    on_update = [this] { mHead.update_all(this->view_props()); };
  }

  void add(GDataGroupEntity& entity)
  {
    for (vtkMultiBlockDataSet* data_set : mHead.add_entity(&entity)) {
      this->add_part(data_set, [this](vtkDataObject* data, GView*) -> Props {
        ++num_made;
        return {flat_composite_actor(vtkMultiBlockDataSet::SafeDownCast(data), kRed)};
      });
    }
  }

  void remove(GDataGroupEntity& entity)
  {
    for (vtkMultiBlockDataSet* data_set : mHead.remove_entity(&entity)) {
      this->remove_part(data_set);
    }
  }

  int num_made = 0; ///< calls of the prop function

private:
  GDataGroup& mHead;
};

class GModelDataGroups : public ViewTest
{
protected:
  Group head{1, 2};
  std::vector<std::unique_ptr<Entity>> entities = make_entities(3);
  std::vector<std::shared_ptr<GView>> views = sorted_views(2);
  GroupModel model{head};

  void connect_and_fill()
  {
    for (const auto& view : views) {
      model.add_view(view.get());
    }
    for (const auto& entity : entities) {
      model.add(*entity);
    }
  }

  void TearDown() override
  {
    model.clear();
    ViewTest::TearDown();
  }
};

TEST_F(GModelDataGroups, ViewPropsAreThoseOfEachPartInEachView)
{
  this->connect_and_fill();
  EXPECT_EQ(model.num_made, 2 * 6);
  ASSERT_EQ(model.view_props().size(), 2U);
  for (const auto& [view, parts] : model.view_props()) {
    EXPECT_EQ(parts.size(), 6U);
    EXPECT_EQ(parts.count(head.next()->data_sets()[1]), 1U);
  }
  model.remove(*entities[1]);
  EXPECT_EQ(model.view_props()[views[0].get()].size(), 4U);
  views.pop_back();
  EXPECT_EQ(model.view_props().size(), 1U);
}

TEST_F(GModelDataGroups, AppliesToOneKindOfDrawingInAllGroupsAndViews)
{
  this->connect_and_fill();
  PropPointers expected;
  for (GDataGroup* group : chain_of(head)) {
    for (const auto& view : views) {
      expected.push_back(model.view_props()[view.get()][group->data_sets()[1]].at(0));
    }
  }
  PropPointers seen;
  GModel::set_datagroup_attributes(&head, 1, model.view_props(), [&](Props& props) {
    ASSERT_EQ(props.size(), 1U);
    seen.push_back(props[0]);
    props[0]->VisibilityOff();
  });
  EXPECT_EQ(seen, expected);
  EXPECT_FALSE(model.view_props()[views[1].get()][head.data_sets()[1]].at(0)->GetVisibility());
  EXPECT_TRUE(model.view_props()[views[1].get()][head.data_sets()[0]].at(0)->GetVisibility());
}

TEST_F(GModelDataGroups, StartsAtTheGroupGivenAndKnowsOnlyWhatTheMapHolds)
{
  this->connect_and_fill();
  int calls = 0;
  const Apply count = [&](Props&) { ++calls; };
  GModel::set_datagroup_attributes(head.next(), 0, model.view_props(), count);
  EXPECT_EQ(calls, 4);
  GModel::ViewProps one_part;
  one_part[views[0].get()][head.data_sets()[0]] = {};
  GModel::set_datagroup_attributes(&head, 0, one_part, count);
  EXPECT_EQ(calls, 5);
  GModel::ViewProps none;
  GModel::set_datagroup_attributes(&head, 0, none, Apply()); // never needed
}

TEST_F(GModelDataGroups, AnIndexWithoutDataSetAndANullGroupDoNothing)
{
  this->connect_and_fill();
  head.next()->next()->modified();
  group_at(head, 1).mutable_data_sets().pop_back(); // one group with fewer
  int calls = 0;
  const Apply count = [&](Props&) { ++calls; };
  for (const int index : {2, -1, INT_MAX, INT_MIN}) {
    GModel::set_datagroup_attributes(&head, index, model.view_props(), count);
  }
  GModel::set_datagroup_attributes(nullptr, 0, model.view_props(), count);
  EXPECT_EQ(calls, 0);
  GModel::set_datagroup_attributes(&head, 1, model.view_props(), count);
  EXPECT_EQ(calls, 4);
}

TEST_F(GModelDataGroups, AnEmptyFunctionThrowsWhenItIsNeeded)
{
  GModel::set_datagroup_attributes(&head, 0, model.view_props(), Apply());
  this->connect_and_fill();
  EXPECT_THROW(GModel::set_datagroup_attributes(&head, 0, model.view_props(), Apply()),
               std::bad_function_call);
}

TEST_F(GModelDataGroups, TheFunctionMayChangeTheModelAndTheChain)
{
  this->connect_and_fill();
  int calls = 0;
  GModel::set_datagroup_attributes(&head, 0, model.view_props(), [&](Props&) {
    ++calls;
    model.remove_view(views[1].get());
    model.remove(*entities[1]);
    model.remove(*entities[2]);
  });
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(model.view_props().size(), 1U);
  EXPECT_EQ(sizes(head), std::vector<std::size_t>{1});
}

// ---------------------------------------------------------------------------------------------------------
// Pictures

/// A group that draws one square for each entity.
class SquareEntity : public Entity
{
public:
  explicit SquareEntity(double place) : x(place) {}
  double x;
};

class SquareGroup : public Group
{
public:
  using Group::Group;
  GDataGroup* new_group() override { return new SquareGroup(1); }
  void update_data() override
  {
    this->data_sets()[0]->SetNumberOfBlocks(0);
    unsigned int block = 0;
    for (GDataGroupEntity* entity : this->entities()) {
      const double x = static_cast<SquareEntity*>(entity)->x;
      this->data_sets()[0]->SetBlock(block++, quad(x, -0.5, x + 0.4, 0.5));
    }
    this->clear_modified();
  }
};

class GModelDataGroupsRender : public ViewRenderTest
{};

TEST_F(GModelDataGroupsRender, AChangedEntityIsSeenInTheNextFrame)
{
  SquareGroup head(1);
  SquareEntity left(-0.8);
  SquareEntity right(0.2);
  GroupModel model(head);
  GModelSet set;
  set.add_model(&model);
  const auto view = make_view(100, 100);
  view->set_model_set(&set);
  model.add(left);
  model.add(right);
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 2 * 20 * 50);
  right.x = -0.2;
  right.modify_owning_groups();
  const Image moved = picture(*view);
  EXPECT_EQ(count_pixels(moved, colour_is(kRed)), 2 * 20 * 50);
  EXPECT_EQ(moved.at(45, 50), kRed);
  EXPECT_EQ(moved.at(70, 50), kBlack);
  model.remove(right);
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 20 * 50);
  view->set_render_window(nullptr); // the props have been drawn, and have no window now
  left.modify_owning_groups();
  head.update_all(model.view_props());
  EXPECT_FALSE(head.is_modified());
}

} // namespace
