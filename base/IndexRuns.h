// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace morrow {

/// Reads a list of runs, each a count n and n point numbers, and passes over broken ones. See
/// GGenericModel for what is broken.
class IndexRuns
{
public:
  enum class Fault
  {
    None,
    NumberOutOfRange,
    TooFewPoints,
    NegativeCount, ///< ends the reading, as the next does
    BeyondTheEnd
  };

  /// The list is not copied. Lengths of zero or below make it empty. A run of fewer than smallest points is
  /// broken.
  IndexRuns(const int* list, int length, int num_points, int smallest)
      : mList(list), mLength(length), mNumPoints(num_points), mSmallest(smallest)
  {}

  /// Goes on to the next run that is not broken; false when there is none. Runs of the list count from 0.
  [[nodiscard]] bool next()
  {
    while (mAt < mLength) {
      const Fault fault = this->read();
      if (fault == Fault::None) {
        return true;
      }
      this->note(fault);
    }
    return false;
  }

  /// What next() has found: which run of the list, broken ones counted, and its point numbers.
  [[nodiscard]] int number() const { return mNumber; }
  [[nodiscard]] const int* ids() const { return mIds; }
  [[nodiscard]] int count() const { return mCount; }

  /// How many were broken so far; what the first of them had, and its number.
  [[nodiscard]] int num_broken() const { return mNumBroken; }
  [[nodiscard]] Fault first_fault() const { return mFirstFault; }
  [[nodiscard]] int first_broken() const { return mFirstBroken; }

private:
  [[nodiscard]] Fault read()
  {
    mCount = mList[mAt++];
    ++mNumber;
    if (mCount < 0 || mCount > mLength - mAt) {
      mAt = mLength;
      return mCount < 0 ? Fault::NegativeCount : Fault::BeyondTheEnd;
    }
    mIds = mList + mAt;
    mAt += mCount;
    if (mCount < mSmallest) {
      return Fault::TooFewPoints;
    }
    return this->are_in_range() ? Fault::None : Fault::NumberOutOfRange;
  }

  [[nodiscard]] bool are_in_range() const
  {
    for (int i = 0; i < mCount; ++i) {
      if (mIds[i] < 0 || mIds[i] >= mNumPoints) {
        return false;
      }
    }
    return true;
  }

  void note(Fault fault)
  {
    if (mNumBroken++ == 0) {
      mFirstFault = fault;
      mFirstBroken = mNumber;
    }
  }

  const int* mList;
  int mLength;
  int mNumPoints;
  int mSmallest;
  int mAt = 0;
  int mNumber = -1;
  const int* mIds = nullptr;
  int mCount = 0;
  int mNumBroken = 0;
  Fault mFirstFault = Fault::None;
  int mFirstBroken = -1;
};

/// What is wrong, for a message: "a negative count".
[[nodiscard]] const char* description(IndexRuns::Fault fault);

} // namespace morrow
