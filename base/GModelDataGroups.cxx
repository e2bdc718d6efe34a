// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The data groups of GModel.
#include "GModel.h"

#include <cstddef>
#include <utility>

#include "GDataGroup.h"

#include <vtkMultiBlockDataSet.h>
#include <vtkProp.h>

void GModel::set_datagroup_attributes(GDataGroup* group, int index, ViewProps& views,
                                      std::function<void(std::vector<vtkSmartPointer<vtkProp>>&)> apply)
{
  const auto set_attribute = std::move(apply);
  std::vector<GView*> shown_in; // a copy to loop over: apply may connect and disconnect views
  for (const auto& [view, parts] : views) {
    shown_in.push_back(view);
  }
  for (const GDataGroup::DataSets& data_sets : GDataGroup::all_groups(group)) {
    if (index < 0 || static_cast<std::size_t>(index) >= data_sets.size()) {
      continue;
    }
    for (GView* view : shown_in) {
      const auto parts = views.find(view);
      if (parts == views.end()) {
        continue;
      }
      const auto props = parts->second.find(data_sets[static_cast<std::size_t>(index)]);
      if (props != parts->second.end()) {
        set_attribute(props->second);
      }
    }
  }
}
