// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

/// What the keys of the window do. The table in Keys.cxx is the one place that says which key does what: the
/// window looks keys up in it, and both the help text and the list that the window prints are made from it.

/// What a key asks for.
enum class Command
{
  ToggleTitle,
  ToggleTriad,
  NextAxes,
  ToggleCubeAxes,
  ToggleLegend,
  ToggleScalarBar,
  ToggleProjection,
  ChangeLight, ///< value: by how much, of intensities from 0 to 1
  NextSurface,
  NextWire,
  ToggleSilhouette,
  ToggleHiddenLines,
  SavePicture,
  SaveScene,
  SaveView,    ///< value: its number
  RestoreView, ///< value: its number
  Turn,        ///< about the upright axis of the window; value: degrees, to the right
  Tilt,        ///< about the level axis of the window; value: degrees, upwards
  Zoom,        ///< value: the factor, negative to go away
  ZoomToAll,
  LookFrom, ///< value: index into view_names()
  Frame,
  Spin,
  TogglePicking,
  NextKind,
  NextShape,
  ToggleVisibleOnly,
  NextCandidate,
  PreviousCandidate,
  DescribeCamera,
  ListKeys,
  Interrupt, ///< what moves; else clears what is picked
  Quit
};

/// A command with its value; 0 for commands that have none.
struct KeyAction
{
  Command command;
  double value = 0.0;
};

[[nodiscard]] constexpr bool operator==(const KeyAction& a, const KeyAction& b) noexcept
{
  return a.command == b.command && a.value == b.value;
}

/// What a key does; nothing for a key that is not in the table. symbol is X's name of the key's symbol as VTK
/// gives it ("a", "A", "plus", "Left"), null for none. Control tells keys apart, Shift does not: symbols do,
/// and where Shift is needed for a symbol differs from keyboard to keyboard.
[[nodiscard]] std::optional<KeyAction> action_of(const char* symbol, bool control);

/// All that the table has: the symbol, and whether Control goes with it.
using KeyStroke = std::pair<std::string, bool>;
[[nodiscard]] std::vector<KeyStroke> key_strokes();

/// The keys and what they do, a line for each group of them, without a line end at the end.
[[nodiscard]] std::string key_list();
