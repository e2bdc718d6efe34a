// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "LabelStore.h"

#include <algorithm>
#include <limits>

#include <vtkTextMapper.h>
#include <vtkTextProperty.h>

namespace morrow {

namespace {

constexpr std::size_t NoPlace = std::numeric_limits<std::size_t>::max();
constexpr int NoKey = -1;
constexpr std::size_t FewHoles = 64; // not worth a pass over the labels

} // namespace

LabelStore::LabelStore() = default;
LabelStore::~LabelStore() = default;

int LabelStore::add(const BrantVector& point, const char* text, BrantColor color, vtkTextProperty* style)
{
  const int key = take_key();
  mPlaceOfKey[static_cast<std::size_t>(key)] = mLabels.size();
  mLabels.push_back({point, text != nullptr ? text : "", color, style, {}, key});
  return key;
}

int LabelStore::take_key()
{
  if (mFreedKeys.empty()) {
    mPlaceOfKey.push_back(NoPlace);
    return static_cast<int>(mPlaceOfKey.size() - 1);
  }
  const int key = mFreedKeys.front();
  mFreedKeys.pop_front();
  return key;
}

bool LabelStore::remove(long long key)
{
  if (key < 0 || static_cast<unsigned long long>(key) >= mPlaceOfKey.size()) {
    return false;
  }
  std::size_t& place = mPlaceOfKey[static_cast<std::size_t>(key)];
  if (place == NoPlace) {
    return false;
  }
  mLabels[place] = {BrantVector(), std::string(), BrantColor(), nullptr, {}, NoKey};
  place = NoPlace;
  mFreedKeys.push_back(static_cast<int>(key));
  ++mHoles;
  if (mHoles > FewHoles && mHoles > mLabels.size() / 2) {
    close_holes();
  }
  return true;
}

void LabelStore::clear()
{
  mLabels.clear();
  mPlaceOfKey.clear();
  mFreedKeys.clear();
  mHoles = 0;
}

std::vector<Label>& LabelStore::in_order()
{
  close_holes();
  return mLabels;
}

void LabelStore::close_holes()
{
  if (mHoles == 0) {
    return;
  }
  mLabels.erase(std::remove_if(mLabels.begin(), mLabels.end(), [](const Label& l) { return l.key == NoKey; }),
                mLabels.end());
  for (std::size_t place = 0; place < mLabels.size(); ++place) {
    mPlaceOfKey[static_cast<std::size_t>(mLabels[place].key)] = place;
  }
  mHoles = 0;
}

} // namespace morrow
