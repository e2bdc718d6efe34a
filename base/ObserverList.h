// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <exception>
#include <utility>
#include <vector>

namespace morrow {

/// Observers and what they have still to hear.
///
/// Host code that is told of one change may make the next: that one waits until all have heard of the first,
/// so that every observer hears of all changes in the order in which they were made. An observer hears of a
/// change once, if it was in the list when the change was made and still is when its turn comes.
template<typename Observer, typename Change>
class ObserverList
{
public:
  /// At the end; nothing for null or one that is there already.
  void add(Observer observer)
  {
    if (observer != nullptr && find(observer) == mEntries.end()) {
      mEntries.push_back({observer, mNextSerial++});
    }
  }

  void remove(Observer observer)
  {
    const auto found = find(observer);
    if (found != mEntries.end()) {
      mEntries.erase(found);
    }
  }

  /// Calls tell(observer, change) for each observer, and returns the first exception when all have been
  /// called. From inside of such a call the change only joins the queue.
  template<typename Tell>
  std::exception_ptr tell_all(Change change, const Tell& tell)
  {
    if (mEntries.empty()) {
      return nullptr;
    }
    mQueue.push_back({std::move(change), mNextSerial});
    std::exception_ptr first;
    if (!mIsTelling) {
      mIsTelling = true;
      while (!mQueue.empty()) {
        const Pending pending = std::move(mQueue.front());
        mQueue.pop_front();
        tell_each(pending, tell, first);
      }
      mIsTelling = false;
    }
    return first;
  }

private:
  struct Entry
  {
    Observer observer;
    std::uint64_t serial; // ascending; one that is added anew gets a new one
  };
  struct Pending
  {
    Change change;
    std::uint64_t end; // the serials of the observers of then lie below
  };

  typename std::vector<Entry>::iterator find(Observer observer)
  {
    return std::find_if(mEntries.begin(), mEntries.end(),
                        [&](const Entry& entry) { return entry.observer == observer; });
  }

  template<typename Tell>
  void tell_each(const Pending& pending, const Tell& tell, std::exception_ptr& first)
  {
    std::uint64_t serial = 0;
    for (;;) {
      const auto next =
          std::lower_bound(mEntries.begin(), mEntries.end(), serial,
                           [](const Entry& entry, std::uint64_t wanted) { return entry.serial < wanted; });
      if (next == mEntries.end() || next->serial >= pending.end) {
        return;
      }
      serial = next->serial + 1;
      try {
        tell(next->observer, pending.change);
      } catch (...) {
        if (first == nullptr) {
          first = std::current_exception();
        }
      }
    }
  }

  std::vector<Entry> mEntries;
  std::deque<Pending> mQueue;
  std::uint64_t mNextSerial = 0;
  bool mIsTelling = false;
};

} // namespace morrow
