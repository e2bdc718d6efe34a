// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "TupleGather.h"

#include <cstdint>
#include <cstring>

#include <vtkAbstractArray.h>
#include <vtkDataArray.h>
#include <vtkDataSetAttributes.h>

namespace morrow {

namespace {

/// Calls take(source tuple) for each tuple of the runs, in order.
template<typename Take>
void for_each_source(const std::vector<TupleRun>& runs, Take&& take)
{
  const auto walk = [&take](const auto* ids, vtkIdType count) {
    for (vtkIdType i = 0; i < count; ++i) {
      take(static_cast<vtkIdType>(ids[i]));
    }
  };
  for (const TupleRun& run : runs) {
    if (run.is_64_bit) {
      walk(static_cast<const std::int64_t*>(run.ids), run.count);
    } else {
      walk(static_cast<const std::int32_t*>(run.ids), run.count);
    }
  }
}

/// Size is that of a tuple in bytes, 0 when it is known only when the program runs: a constant lets the
/// compiler copy in registers.
template<std::size_t Size>
void copy_bytes(const char* from, vtkIdType available, char* to, std::size_t size,
                const std::vector<TupleRun>& runs)
{
  const std::size_t step = Size != 0 ? Size : size;
  for_each_source(runs, [&](vtkIdType source) {
    if (source < available) {
      std::memcpy(to, from + static_cast<std::size_t>(source) * step, step);
    } else {
      std::memset(to, 0, step);
    }
    to += step;
  });
}

void copy_memory(vtkDataArray& from, vtkDataArray& to, const std::vector<TupleRun>& runs)
{
  const auto size = static_cast<std::size_t>(from.GetDataTypeSize()) *
                    static_cast<std::size_t>(from.GetNumberOfComponents());
  const auto* source = static_cast<const char*>(from.GetVoidPointer(0));
  auto* target = static_cast<char*>(to.GetVoidPointer(0));
  const vtkIdType available = from.GetNumberOfTuples();
  switch (size) {
  case 1:
    copy_bytes<1>(source, available, target, size, runs);
    break;
  case 3:
    copy_bytes<3>(source, available, target, size, runs);
    break;
  case 4:
    copy_bytes<4>(source, available, target, size, runs);
    break;
  case 8:
    copy_bytes<8>(source, available, target, size, runs);
    break;
  case 12:
    copy_bytes<12>(source, available, target, size, runs);
    break;
  case 24:
    copy_bytes<24>(source, available, target, size, runs);
    break;
  default:
    copy_bytes<0>(source, available, target, size, runs);
    break;
  }
}

void copy_one_by_one(vtkAbstractArray& from, vtkAbstractArray& to, const std::vector<TupleRun>& runs)
{
  vtkIdType target = 0;
  for_each_source(runs, [&](vtkIdType source) {
    if (source < from.GetNumberOfTuples()) {
      to.SetTuple(target, source, &from);
    } else if (auto* numbers = vtkDataArray::SafeDownCast(&to)) {
      for (int i = 0; i < numbers->GetNumberOfComponents(); ++i) {
        numbers->SetComponent(target, i, 0.0);
      }
    }
    ++target;
  });
}

bool is_plain_memory(vtkAbstractArray& array)
{
  return vtkDataArray::SafeDownCast(&array) != nullptr && array.HasStandardMemoryLayout() &&
         array.GetDataType() != VTK_BIT;
}

void gather_array(vtkAbstractArray& from, vtkAbstractArray& to, const std::vector<TupleRun>& runs,
                  vtkIdType count)
{
  to.SetNumberOfTuples(count);
  if (count == 0) {
    return;
  }
  if (is_plain_memory(from) && is_plain_memory(to) && from.GetDataType() == to.GetDataType()) {
    copy_memory(*vtkDataArray::SafeDownCast(&from), *vtkDataArray::SafeDownCast(&to), runs);
  } else {
    copy_one_by_one(from, to, runs);
  }
}

/// The array of from, from number `first` on, that CopyAllocate() has made the copy of: it keeps their order
/// and their names.
int find_original(vtkDataSetAttributes& from, const vtkAbstractArray& copy, int first)
{
  const auto same_text = [](const char* a, const char* b) {
    return a == b || (a != nullptr && b != nullptr && std::strcmp(a, b) == 0);
  };
  auto& asked = const_cast<vtkAbstractArray&>(copy); // VTK's getter is not const
  int at = first;
  while (at < from.GetNumberOfArrays() && !same_text(from.GetAbstractArray(at)->GetName(), asked.GetName())) {
    ++at;
  }
  return at;
}

} // namespace

void gather_tuples(vtkDataSetAttributes& from, vtkDataSetAttributes& to, const std::vector<TupleRun>& runs)
{
  vtkIdType count = 0;
  for (const TupleRun& run : runs) {
    count += run.count;
  }
  to.CopyAllocate(&from, count);
  int at = 0;
  for (int i = 0; i < to.GetNumberOfArrays(); ++i, ++at) {
    vtkAbstractArray& copy = *to.GetAbstractArray(i);
    at = find_original(from, copy, at);
    if (at < from.GetNumberOfArrays()) {
      gather_array(*from.GetAbstractArray(at), copy, runs, count);
    }
  }
}

} // namespace morrow
