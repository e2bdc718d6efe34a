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

/// Whether CopyAllocate() may have made copy of the original: it keeps names, types and numbers of
/// components.
bool may_be_copy(vtkAbstractArray& original, vtkAbstractArray& copy)
{
  const char* const a = original.GetName();
  const char* const b = copy.GetName();
  const bool has_same_name = a == b || (a != nullptr && b != nullptr && std::strcmp(a, b) == 0);
  return has_same_name && original.GetDataType() == copy.GetDataType() &&
         original.GetNumberOfComponents() == copy.GetNumberOfComponents();
}

/// Whether array number i is an attribute of a kind that CopyAllocate() leaves out.
bool is_left_out(vtkDataSetAttributes& from, vtkDataSetAttributes& to, int i)
{
  const int attribute = from.IsArrayAnAttribute(i);
  return attribute >= 0 && to.GetCopyAttribute(attribute, vtkDataSetAttributes::COPYTUPLE) == 0;
}

/// The number of the array of from that CopyAllocate() has made the copy of, -1 for none. Of several with one
/// name it keeps the last; those without a name it keeps all, in their order, which begin at first.
int find_original(vtkDataSetAttributes& from, vtkDataSetAttributes& to, vtkAbstractArray& copy, int first)
{
  const bool has_name = copy.GetName() != nullptr;
  int found = -1;
  for (int i = has_name ? 0 : first; i < from.GetNumberOfArrays() && (has_name || found < 0); ++i) {
    if (may_be_copy(*from.GetAbstractArray(i), copy) && !is_left_out(from, to, i)) {
      found = i;
    }
  }
  return found;
}

} // namespace

void gather_tuples(vtkDataSetAttributes& from, vtkDataSetAttributes& to, const std::vector<TupleRun>& runs)
{
  vtkIdType count = 0;
  for (const TupleRun& run : runs) {
    count += run.count;
  }
  to.CopyAllocate(&from, count);
  int nameless = 0; // where the search for the next one begins
  for (int i = 0; i < to.GetNumberOfArrays(); ++i) {
    vtkAbstractArray& copy = *to.GetAbstractArray(i);
    const int at = find_original(from, to, copy, nameless);
    if (at >= 0) {
      gather_array(*from.GetAbstractArray(at), copy, runs, count);
      nameless = copy.GetName() == nullptr ? at + 1 : nameless;
    }
  }
}

} // namespace morrow
