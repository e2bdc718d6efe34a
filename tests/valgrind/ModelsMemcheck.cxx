// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Models in a set: labels, mappers of all kinds, and data groups that change.
#include "BrantVector.h"
#include "GDataGroup.h"
#include "GModel.h"
#include "GModelSet.h"
#include "GView.h"
#include "Memcheck.h"

#include <vtkActor.h>
#include <vtkCallbackCommand.h>
#include <vtkLineSource.h>
#include <vtkMapper.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPlaneSource.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>

#include <memory>
#include <vector>

using morrow_memcheck::expect;

namespace {

struct Square : GDataGroupEntity
{
  double x = 0.0;
};

class Group : public GDataGroup
{
public:
  Group()
  {
    this->set_number_per_group(2);
    this->mutable_data_sets().push_back(vtkSmartPointer<vtkMultiBlockDataSet>::New());
  }
  GDataGroup* new_group() override { return new Group; }
  void update_data() override
  {
    this->data_sets()[0]->SetNumberOfBlocks(0);
    unsigned int block = 0;
    for (GDataGroupEntity* entity : this->entities()) {
      vtkNew<vtkPlaneSource> plane;
      plane->SetCenter(static_cast<Square*>(entity)->x, 0.0, 0.0);
      plane->Update();
      this->data_sets()[0]->SetBlock(block++, plane->GetOutput());
    }
    this->clear_modified();
  }
};

class Model : public GModel
{
public:
  void update_parts() override { mHead.update_all(this->view_props()); }

  void add(Square& square)
  {
    for (vtkMultiBlockDataSet* data_set : mHead.add_entity(&square)) {
      this->add_part(data_set, [](vtkDataObject* data, GView* view) {
        const auto mapper = create_mapper(data, view);
        set_polygon_offset(mapper, 1.0, 1.0);
        return actors(mapper, nullptr);
      });
    }
  }

  void remove(Square& square)
  {
    for (vtkMultiBlockDataSet* data_set : mHead.remove_entity(&square)) {
      this->remove_part(data_set);
    }
  }

  void add_stippled_line()
  {
    vtkNew<vtkLineSource> line;
    line->Update();
    mPattern->SetLineStipplePattern(0xF0F0);
    mCommand->SetCallback(SetStippleShaderUniform);
    mCommand->SetClientData(mPattern);
    this->add_part(line->GetOutput(), [this](vtkDataObject* data, GView* view) {
      const auto mapper = create_mapper(data, view);
      setup_stippled_line_mapper(mapper, view, mCommand);
      return actors(mapper, mPattern);
    });
  }

  void set_line_width(float width)
  {
    set_datagroup_attributes(&mHead, 0, this->view_props(),
                             [&](std::vector<vtkSmartPointer<vtkProp>>& props) {
                               vtkActor::SafeDownCast(props[0])->GetProperty()->SetLineWidth(width);
                               ++num_set;
                             });
  }

  int num_set = 0; ///< how many groups got a line width

private:
  static std::vector<vtkSmartPointer<vtkProp>> actors(vtkMapper* mapper, vtkProperty* property)
  {
    vtkNew<vtkActor> actor;
    actor->SetMapper(mapper);
    if (property != nullptr) {
      actor->SetProperty(property);
    }
    return {actor.Get()};
  }

  Group mHead;
  vtkNew<vtkProperty> mPattern;
  vtkNew<vtkCallbackCommand> mCommand;
};

void play(Model& model, GView& view)
{
  const auto squares = std::make_unique<Square[]>(3);
  for (int i = 0; i < 3; ++i) {
    squares[static_cast<std::size_t>(i)].x = i;
    model.add(squares[static_cast<std::size_t>(i)]);
  }
  model.add_stippled_line();
  model.set_line_width(2.0F);
  expect(model.num_set == 2, "three squares are two groups");
  const GModel::LabelKey key = model.add_label("label", BrantVector(0.0, 0.0, 0.5), BrantColor());
  view.reset_camera();
  view.render();
  squares[1].x = 5.0;
  squares[1].modify_owning_groups();
  model.remove(squares[2]);
  model.remove_label(key);
  view.render();
}

} // namespace

int main()
{
  return morrow_memcheck::run([] {
    GView view;
    view.set_triad_vis(false);
    view.get_render_window()->SetSize(64, 48);
    GModelSet set;
    Model model;
    set.add_model(&model);
    view.set_model_set(&set);
    play(model, view);
  });
}
