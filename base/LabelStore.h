// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "BrantColor.h"
#include "BrantVector.h"

#include <vtkSmartPointer.h>

class vtkTextMapper;
class vtkTextProperty;

namespace morrow {

/// One text anchored at a point in space.
struct Label
{
  BrantVector point; ///< world coordinates
  std::string text;
  BrantColor color;
  vtkSmartPointer<vtkTextProperty> style; ///< shared by many labels, so never changed in place
  /// By window, each made when the label is drawn there for the first time.
  std::vector<vtkSmartPointer<vtkTextMapper>> mappers;
  int key; ///< negative once the label is removed
};

/// The labels of one mapper in the order of their addition, found by key.
///
/// Keys are small integers, handed out densely from 0. A freed key is used again, the one freed first before
/// the others. Adding and removing take constant time on average: a removed label leaves a hole, and the
/// holes are closed together when there are more of them than labels, or when the labels are asked for.
class LabelStore
{
public:
  LabelStore();
  ~LabelStore();
  LabelStore(const LabelStore&) = delete;
  LabelStore& operator=(const LabelStore&) = delete;

  /// Appends a label and returns its key. A null text is an empty one.
  int add(const BrantVector& point, const char* text, BrantColor color, vtkTextProperty* style);

  /// Removes the label of that key; false when there is none, whatever the key's value.
  bool remove(long long key);

  /// Removes all labels and forgets all keys: the next one is 0 again.
  void clear();

  [[nodiscard]] std::size_t size() const { return mLabels.size() - mHoles; }

  /// The labels in the order of their addition. Valid until the next change.
  [[nodiscard]] std::vector<Label>& in_order();

private:
  int take_key();
  void close_holes();

  std::vector<Label> mLabels;           // holes included
  std::vector<std::size_t> mPlaceOfKey; // where in mLabels; NoPlace for a freed key
  std::deque<int> mFreedKeys;           // the oldest first
  std::size_t mHoles = 0;
};

} // namespace morrow
