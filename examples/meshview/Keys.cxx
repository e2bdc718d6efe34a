// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Keys.h"

namespace {

struct Key
{
  const char* symbol;
  KeyAction action;
  bool control = false;
};

/// Keys that are described together.
struct KeyGroup
{
  const char* names; ///< for people
  const char* text;
  std::vector<Key> keys;
};

constexpr double kTurn = 15.0; // degrees
constexpr double kZoom = 1.25;
constexpr double kLight = 0.1;

const std::vector<KeyGroup>& groups()
{
  using C = Command;
  static const std::vector<KeyGroup> kGroups = {
      {"n", "title", {{"n", {C::ToggleTitle}}}},
      {"t", "axis triad", {{"t", {C::ToggleTriad}}}},
      {"a", "axes: off, 3d, 2d, 1d in turn", {{"a", {C::NextAxes}}}},
      {"c", "cube axes", {{"c", {C::ToggleCubeAxes}}}},
      {"l", "legend; makes the projection parallel", {{"l", {C::ToggleLegend}}}},
      {"b", "scalar bar", {{"b", {C::ToggleScalarBar}}}},
      {"p", "parallel or perspective projection", {{"p", {C::ToggleProjection}}}},
      {"k K", "darker, brighter light", {{"k", {C::ChangeLight, -kLight}}, {"K", {C::ChangeLight, kLight}}}},
      {"f", "surfaces: shaded, flat, hidden in turn", {{"f", {C::NextSurface}}}},
      {"w", "wire: all, unique, features, none in turn", {{"w", {C::NextWire}}}},
      {"o", "outline: the silhouette", {{"o", {C::ToggleSilhouette}}}},
      {"d", "features behind surfaces, dashed", {{"d", {C::ToggleHiddenLines}}}},
      {"s", "save a picture in the current folder", {{"s", {C::SavePicture}}}},
      {"S", "save the scene (.wrl) in the current folder", {{"S", {C::SaveScene}}}},
      {"Ctrl-1 to Ctrl-4",
       "save the view",
       {{"1", {C::SaveView, 1}, true},
        {"2", {C::SaveView, 2}, true},
        {"3", {C::SaveView, 3}, true},
        {"4", {C::SaveView, 4}, true}}},
      {"1 to 4",
       "restore the saved view",
       {{"1", {C::RestoreView, 1}},
        {"2", {C::RestoreView, 2}},
        {"3", {C::RestoreView, 3}},
        {"4", {C::RestoreView, 4}}}},
      {"arrow keys",
       "turn by 15 degrees",
       {{"Left", {C::Turn, -kTurn}},
        {"Right", {C::Turn, kTurn}},
        {"Up", {C::Tilt, kTurn}},
        {"Down", {C::Tilt, -kTurn}}}},
      {"+ -",
       "zoom",
       {{"plus", {C::Zoom, kZoom}},
        {"equal", {C::Zoom, kZoom}}, // plus without Shift
        {"KP_Add", {C::Zoom, kZoom}},
        {"minus", {C::Zoom, -kZoom}},
        {"KP_Subtract", {C::Zoom, -kZoom}}}},
      {"z", "zoom to all", {{"z", {C::ZoomToAll}}}},
      {"i x X y Y u U",
       "look from iso, +x, -x, +y, -y, above, below",
       {{"i", {C::LookFrom, 0}},
        {"x", {C::LookFrom, 1}},
        {"X", {C::LookFrom, 2}},
        {"y", {C::LookFrom, 3}},
        {"Y", {C::LookFrom, 4}},
        {"u", {C::LookFrom, 5}},
        {"U", {C::LookFrom, 6}}}},
      {"r", "frame the mesh from where you look", {{"r", {C::Frame}}}},
      {"space", "turn once around", {{"space", {C::Spin}}}},
      {"P", "the left button picks, or rotates", {{"P", {C::TogglePicking}}}},
      {"T", "pick faces, edges, elements, nodes, blocks in turn", {{"T", {C::NextKind}}}},
      {"D", "drags draw a box, a circle, a lasso in turn", {{"D", {C::NextShape}}}},
      {"H", "pick what surfaces hide, or not", {{"H", {C::ToggleVisibleOnly}}}},
      {"Tab Shift-Tab",
       "next, previous of what is below the click",
       {{"Tab", {C::NextCandidate}}, {"ISO_Left_Tab", {C::PreviousCandidate}}}},
      {"Escape", "stop what moves, or clear what is picked", {{"Escape", {C::Interrupt}}}},
      {"v", "print the camera", {{"v", {C::DescribeCamera}}}},
      {"h ?", "print this list", {{"h", {C::ListKeys}}, {"question", {C::ListKeys}}}},
      {"q e", "quit", {{"q", {C::Quit}}, {"e", {C::Quit}}}}};
  return kGroups;
}

constexpr std::size_t kNamesWidth = 18; // characters

} // namespace

std::optional<KeyAction> action_of(const char* symbol, bool control)
{
  for (const KeyGroup& group : groups()) {
    for (const Key& key : group.keys) {
      if (symbol != nullptr && std::string(symbol) == key.symbol && control == key.control) {
        return key.action;
      }
    }
  }
  return std::nullopt;
}

std::vector<KeyStroke> key_strokes()
{
  std::vector<KeyStroke> all;
  for (const KeyGroup& group : groups()) {
    for (const Key& key : group.keys) {
      all.emplace_back(key.symbol, key.control);
    }
  }
  return all;
}

std::string key_list()
{
  std::string list;
  for (const KeyGroup& group : groups()) {
    std::string names = group.names;
    names.resize(kNamesWidth, ' ');
    list += (list.empty() ? "  " : "\n  ") + names + group.text;
  }
  return list;
}
