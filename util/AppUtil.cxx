// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "AppUtil.h"

static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may set the interrupt flag");

namespace {

// Not owned; null stands for the built-in object.
AppUtil* gInstalled = nullptr;

AppUtil* built_in()
{
  // Never destroyed, so that static objects of the host may still ask for it in their destructors.
  static AppUtil& object = *new AppUtil;
  return &object;
}

} // namespace

AppUtil::~AppUtil()
{
  if (gInstalled == this) {
    gInstalled = nullptr;
  }
}

AppUtil* AppUtil::instance()
{
  return gInstalled ? gInstalled : built_in();
}

AppUtil* AppUtil::set_instance(AppUtil* instance)
{
  AppUtil* before = AppUtil::instance();
  gInstalled = instance;
  return before;
}

bool AppUtil::interrupt() const
{
  return mInterrupt;
}

void AppUtil::set_interrupt(bool interrupt) noexcept
{
  mInterrupt = interrupt;
}
