// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <cstddef>
#include <new>

#include "LargePages.h"

#include <vtkSmartPointer.h>
#include <vtkTimeStamp.h>

namespace morrow {

/// A VTK object whose mark of modification can be a time that others have too: taking a new one each costs
/// more than appending a line. It has no type macro, deliberately: it is seen as the Base that it is, by its
/// class name too.
template<typename Base>
class Stamped : public Base
{
public:
  [[nodiscard]] static vtkSmartPointer<Stamped> make()
  {
    auto* object = new Stamped;
    object->InitializeObjectBase();
    return vtkSmartPointer<Stamped>::Take(object);
  }
  Stamped(const Stamped&) = delete;
  Stamped& operator=(const Stamped&) = delete;

  /// Does what Modified() does; now must be a new time.
  void stamp(const vtkTimeStamp& now)
  {
    if (this->SubjectHelper == nullptr) { // nobody observes it
      this->MTime = now;
    } else {
      this->Modified();
    }
  }

protected:
  Stamped() = default;
  ~Stamped() override = default;
};

/// A VTK array of contiguous values, Base, that grows by single tuples at the speed of memory: inline, and
/// nothing is looked up.
template<typename Base>
class GrowingArray : public Base
{
public:
  using Value = typename Base::ValueType;

  [[nodiscard]] static vtkSmartPointer<GrowingArray> make(int num_components)
  {
    auto* array = new GrowingArray;
    array->InitializeObjectBase();
    array->SetNumberOfComponents(num_components);
    return vtkSmartPointer<GrowingArray>::Take(array);
  }
  GrowingArray(const GrowingArray&) = delete;
  GrowingArray& operator=(const GrowingArray&) = delete;

  /// Appends so many values, whole tuples, and returns the first, to be written. Throws std::bad_alloc.
  [[nodiscard]] Value* extend(vtkIdType count)
  {
    const vtkIdType begin = this->MaxId + 1;
    if (count > this->Size - begin) {
      this->grow(begin + count);
    }
    this->MaxId += count;
    return this->Buffer->GetBuffer() + begin;
  }

  void push(Value value) { *this->extend(1) = value; }

  [[nodiscard]] vtkIdType num_values() const { return this->MaxId + 1; }

  /// As Stamped::stamp(). Ranges that VTK keeps with the array are dropped.
  void stamp(const vtkTimeStamp& now)
  {
    if (this->SubjectHelper == nullptr && !this->HasInformation()) {
      this->MTime = now;
    } else {
      this->Modified();
    }
  }

protected:
  GrowingArray() = default;
  ~GrowingArray() override = default;

private:
  [[gnu::noinline]] void grow(vtkIdType size)
  {
    constexpr vtkIdType smallest = 1024;
    constexpr vtkIdType small = vtkIdType{1} << 18; // copying costs more here than memory that is not used
    const int num_components = this->GetNumberOfComponents();
    const vtkIdType wanted = std::max(smallest, size) / num_components + 1;
    const vtkIdType present = this->Size / num_components;
    const vtkIdType more = (this->Size < small ? 3 : 1) * present + 1;
    if (this->Resize(std::max(wanted - present, more)) == 0) { // VTK adds what is there
      throw std::bad_alloc();
    }
    advise_large_pages(this->Buffer->GetBuffer(), static_cast<std::size_t>(this->Size) * sizeof(Value));
  }
};

} // namespace morrow
