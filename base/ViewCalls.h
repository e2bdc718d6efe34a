// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <exception>
#include <memory>
#include <utility>
#include <vector>

#include "GView.h" // its registry

/// Calls to several views, or to host code, whose exceptions wait until all is done.
namespace morrow {

/// A copy, which keeps the views alive while host code may change the registry.
inline std::vector<std::shared_ptr<GView>> registered_views()
{
  return {GView::all_views().begin(), GView::all_views().end()};
}

/// What the call throws; null when it throws nothing.
template<typename Call>
std::exception_ptr exception_of(Call&& call)
{
  try {
    call();
  } catch (...) {
    return std::current_exception();
  }
  return nullptr;
}

inline void keep_first(std::exception_ptr& first, std::exception_ptr next)
{
  if (first == nullptr) {
    first = std::move(next);
  }
}

/// Calls each view in turn; the first exception is passed on when all have been called.
template<typename Views, typename Call>
void call_each(const Views& views, Call&& call)
{
  std::exception_ptr first;
  for (const auto& view : views) {
    keep_first(first, exception_of([&] { call(view); }));
  }
  if (first != nullptr) {
    std::rethrow_exception(first);
  }
}

} // namespace morrow
