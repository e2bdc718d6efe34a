// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The back-pointers of MRUtil.
#include "MRUtil.h"

#include <cstdint>
#include <cstring>
#include <unordered_set>

#include <vtkDataSet.h>
#include <vtkFieldData.h>
#include <vtkNew.h>
#include <vtkSmartPointer.h>
#include <vtkTypeUInt64Array.h>

namespace {

constexpr const char* ArrayName = "BackPointer";

// The arrays that the library made and still holds its reference on. Copies of a data set bring others of the
// same look, whose references are all theirs. Never destroyed: data sets may outlive the statics.
std::unordered_set<vtkTypeUInt64Array*>& held_arrays()
{
  static auto& arrays = *new std::unordered_set<vtkTypeUInt64Array*>;
  return arrays;
}

vtkTypeUInt64Array* find_array(vtkDataSet& data_set)
{
  vtkFieldData* fields = data_set.GetFieldData();
  if (fields == nullptr) {
    return nullptr;
  }
  int index = -1;
  return vtkTypeUInt64Array::SafeDownCast(fields->GetAbstractArray(ArrayName, index));
}

void write(vtkTypeUInt64Array& array, GDataGroupEntity* entity)
{
  if (array.GetNumberOfTuples() == 0) {
    array.SetNumberOfTuples(1); // emptied through a shallow copy, or brought along by a reader
  }
  array.SetValue(0, reinterpret_cast<std::uintptr_t>(entity));
}

void attach(vtkDataSet& data_set, GDataGroupEntity* entity)
{
  vtkNew<vtkTypeUInt64Array> array;
  array->SetName(ArrayName);
  write(*array, entity);
  if (data_set.GetFieldData() == nullptr) {
    data_set.SetFieldData(vtkNew<vtkFieldData>());
  }
  held_arrays().insert(array);
  array->Register(nullptr);
  data_set.GetFieldData()->AddArray(array);
}

void detach(vtkDataSet& data_set, vtkTypeUInt64Array& array)
{
  const vtkSmartPointer<vtkTypeUInt64Array> kept = &array;
  data_set.GetFieldData()->RemoveArray(ArrayName);
  array.Reset();
  if (held_arrays().erase(&array) != 0) {
    array.UnRegister(nullptr);
  }
}

} // namespace

void MRUtil::set_back_pointer(vtkDataSet* data_set, GDataGroupEntity* entity)
{
  vtkTypeUInt64Array* array = data_set != nullptr ? find_array(*data_set) : nullptr;
  if (array != nullptr && entity != nullptr) {
    write(*array, entity);
  } else if (array != nullptr) {
    detach(*data_set, *array);
  } else if (data_set != nullptr && entity != nullptr) {
    attach(*data_set, entity);
  }
}

GDataGroupEntity* MRUtil::get_back_pointer(vtkDataSet* data_set)
{
  vtkTypeUInt64Array* array = data_set != nullptr ? find_array(*data_set) : nullptr;
  if (array == nullptr || array->GetNumberOfTuples() == 0) {
    return nullptr;
  }
  const auto address = static_cast<std::uintptr_t>(array->GetValue(0));
  GDataGroupEntity* entity = nullptr;
  std::memcpy(&entity, &address, sizeof address);
  return entity;
}
