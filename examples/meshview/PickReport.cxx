// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PickReport.h"

#include "FileCopy.h"
#include "MeshEntity.h"
#include "MeshModel.h"
#include "PickOptions.h"

#include <GPickerBase.h>

#include <nlohmann/json.hpp>

#include <fstream>

namespace {

using Json = nlohmann::ordered_json;

Json describe(const EntitySelection& selection, const MeshModel& model)
{
  const auto& entity = static_cast<const MeshEntity&>(*selection.entity());
  const std::string type = entity.type_name();
  const std::string name = entity.name();
  return {{"entity", name.empty() ? type + " " + std::to_string(entity.which().id) : name},
          {"type", type},
          {"id", entity.which().id},
          {"block", model.blocks()[entity.which().block].name},
          {"point", {selection.point()[0], selection.point()[1], selection.point()[2]}},
          {"distance", selection.distance()},
          {"direct", entity.hit().is_direct},
          {"visible", entity.hit().is_visible}};
}

Json describe(const PickRegion& region)
{
  static constexpr const char* kShapes[] = {"point", "box", "circle", "polygon"};
  Json json = {{"shape", kShapes[static_cast<int>(region.shape)]}, {"points", region.points}};
  if (region.shape == PickShape::Circle) {
    json["radius"] = region.radius;
  }
  return json;
}

} // namespace

std::string pick_report(const PickOptions& options, const MeshModel& model)
{
  const bool is_click = options.region->shape == PickShape::Point;
  const EntitySelection* list = nullptr;
  int count = 0;
  is_click ? GPickerBase::get_possible_selections(list, count) : GPickerBase::get_picked_list(list, count);
  Json entities = Json::array();
  for (int i = 0; i < count; ++i) {
    entities.push_back(describe(list[i], model));
  }
  const Json report = {{"pick", describe(*options.region)},
                       {"type", name_of(options.kind)},
                       {"visible_only", options.visible_only},
                       {"partial", options.partial},
                       {"entities", entities}};
  return report.dump(2, ' ', false, Json::error_handler_t::replace) + "\n"; // names may be no UTF-8
}

/// Made in a folder of ours, and copied by code that looks whether all of it was written.
std::string write_pick_report(const PickOptions& options, const MeshModel& model)
{
  const ScratchFolder folder;
  const std::string made = folder.path() + "/report.json";
  std::ofstream file(made);
  file << pick_report(options, model);
  file.close();
  return folder.path().empty() || !file ? "there is no place for temporary files"
                                        : copy_file(made, options.report);
}
