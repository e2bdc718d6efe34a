// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// While it lives, Ctrl-C (SIGINT) sets the interrupt flag of AppUtil instead of ending the program. One at a
/// time.
///
/// Who does long work asks AppUtil::instance()->interrupt() now and then, as the library's animations do.
class InterruptScope
{
public:
  enum class Patience
  {
    Short, ///< see the constructor
    Endless
  };

  /// Some of VTK's readers have no moment to ask: with short patience, when the program is not done a second
  /// after Ctrl-C it says so and ends there, with status 130. So nothing that would be left half done may
  /// happen while such a scope lives.
  explicit InterruptScope(Patience patience);
  ~InterruptScope();
  InterruptScope(const InterruptScope&) = delete;
  InterruptScope& operator=(const InterruptScope&) = delete;
};
