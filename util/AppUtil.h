// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "brant_util_export.h"

#include <atomic>

/// The application's services to the library: today its interrupt flag, with which a user stops a long
/// operation. Animations read it once per frame, and stop at the frame they have reached when it is true.
///
/// The built-in instance holds a plain flag. A host with a flag of its own derives from this class, overrides
/// `interrupt()` and installs its object with `set_instance`.
class BRANT_UTIL_EXPORT AppUtil
{
public:
  AppUtil() noexcept = default;
  AppUtil(const AppUtil&) = delete;
  AppUtil& operator=(const AppUtil&) = delete;

  /// An installed object may be destroyed: the built-in one then takes its place.
  virtual ~AppUtil();

  /// The installed object, or the built-in one; never null. The built-in one lives until the process ends.
  [[nodiscard]] static AppUtil* instance();

  /// Installs the host's object and returns the one before, never null. Null puts the built-in one back, and
  /// so does giving back what the first call returned. The object is not owned; see the destructor.
  static AppUtil* set_instance(AppUtil* instance);

  /// True while the operation in progress should stop. Here: the value last given to `set_interrupt`, false
  /// at the start. Reading does not clear it; whoever starts the next operation sets it back to false. An
  /// override must not throw: it is called in the middle of an animation.
  [[nodiscard]] virtual bool interrupt() const;

  /// Sets the flag that `interrupt()` reads here. May be called from any thread, and from a signal handler
  /// through a pointer that was taken from `instance()` before.
  void set_interrupt(bool interrupt) noexcept;

private:
  std::atomic<bool> mInterrupt{false};
};
