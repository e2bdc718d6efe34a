// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GPickerBase.h"

#include "MRUtil.h"
#include "ViewCalls.h" // exceptions that wait

#include <algorithm>
#include <cstring>
#include <string>

std::vector<GPickerBase::PickHandler>& GPickerBase::mPickers = *new std::vector<PickHandler>;
std::vector<bool>& GPickerBase::mFilterTypes = *new std::vector<bool>;
int GPickerBase::mCurrentPicker = -1;

int GPickerBase::find_type(const char* name)
{
  const auto found = std::find_if(mPickers.begin(), mPickers.end(), [name](const PickHandler& handler) {
    return name != nullptr && std::strcmp(handler.name, name) == 0;
  });
  return found != mPickers.end() ? static_cast<int>(found - mPickers.begin()) : -1;
}

void GPickerBase::clear_filters()
{
  std::fill(mFilterTypes.begin(), mFilterTypes.end(), false);
}

bool GPickerBase::register_picker(const char* name, GPicker* picker)
{
  if (name == nullptr) {
    return false;
  }
  const int index = find_type(name);
  if (index >= 0) {
    mPickers.begin()[index].picker = picker;
  } else {
    mPickers.push_back({name, picker});
    mFilterTypes.push_back(false);
  }
  return true;
}

bool GPickerBase::unregister_picker(const char* name, GPicker* picker)
{
  const int index = find_type(name);
  if (index < 0 || mPickers.begin()[index].picker != picker) {
    return false;
  }
  erase_type(index);
  return true;
}

void GPickerBase::erase_type(int index)
{
  if (mCurrentPicker == index) {
    mCurrentPicker = -1;
  } else if (mCurrentPicker > index) {
    --mCurrentPicker;
  }
  mPickers.erase(mPickers.begin() + index);
  mFilterTypes.erase(mFilterTypes.begin() + index);
  if (mPickers.empty()) {
    mPickers.shrink_to_fit();
    mFilterTypes.shrink_to_fit();
  }
}

void GPickerBase::forget_picker(const GPicker* picker)
{
  for (int i = get_number_pick_types() - 1; i >= 0; --i) {
    if (mPickers.begin()[i].picker == picker) {
      erase_type(i);
    }
  }
}

GPicker* GPickerBase::get_picker()
{
  return mCurrentPicker >= 0 ? mPickers.begin()[mCurrentPicker].picker : nullptr;
}

const char* GPickerBase::get_pick_type()
{
  return mCurrentPicker >= 0 ? mPickers.begin()[mCurrentPicker].name : nullptr;
}

int GPickerBase::get_number_pick_types()
{
  return static_cast<int>(mPickers.size());
}

void GPickerBase::get_pick_types(const char** names)
{
  if (names != nullptr) {
    std::transform(mPickers.begin(), mPickers.end(), names, [](const PickHandler& h) { return h.name; });
  }
}

// ---- Pick types and filters

void GPickerBase::set_pick_type(const char* name, bool quiet)
{
  clear_filters();
  if (find_type(name) < 0) {
    return;
  }
  const std::string held = name; // the print function is host code: it may take the type and its text away
  std::exception_ptr thrown;
  if (!quiet) {
    thrown = morrow::exception_of([&] { MRUtil::print_info("Now in %s picking mode.\n", held.c_str()); });
  }
  const int index = find_type(held.c_str());
  if (index >= 0) {
    mCurrentPicker = index;
    mFilterTypes.begin()[index] = true;
  }
  if (thrown != nullptr) {
    std::rethrow_exception(thrown);
  }
}

void GPickerBase::add_filter_type(const char* name)
{
  const int index = find_type(name);
  if (index < 0) {
    return;
  }
  if (mCurrentPicker < 0 || mPickers.begin()[index].picker != get_picker()) {
    if (mCurrentPicker >= 0) {
      clear_filters();
    }
    mCurrentPicker = index;
  }
  mFilterTypes.begin()[index] = true;
}

void GPickerBase::remove_filter_type(const char* name)
{
  const int index = find_type(name);
  if (index < 0) {
    return;
  }
  mFilterTypes.begin()[index] = false;
  const auto first = std::find(mFilterTypes.begin(), mFilterTypes.end(), true);
  mCurrentPicker = first != mFilterTypes.end() ? static_cast<int>(first - mFilterTypes.begin()) : -1;
}

void GPickerBase::set_filter_types(int count, const char** names)
{
  clear_filters();
  for (int i = 0; names != nullptr && i < count; ++i) {
    add_filter_type(names[i]);
  }
}

void GPickerBase::get_pick_filters(const char** names, int& count)
{
  count = 0;
  for (std::size_t i = 0; i < mPickers.size(); ++i) {
    if (mFilterTypes[i]) {
      if (names != nullptr) {
        names[count] = mPickers[i].name;
      }
      ++count;
    }
  }
}

bool GPickerBase::is_filtered(const char* name)
{
  const int index = find_type(name);
  return index >= 0 && mFilterTypes.begin()[index];
}
