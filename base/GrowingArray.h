// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <new>

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

  /// Whether somebody may observe it, who then hears of Modified() only.
  [[nodiscard]] bool is_observed() const { return this->SubjectHelper != nullptr; }

  /// Does what Modified() does when nobody observes; now must be a new time.
  void stamp(const vtkTimeStamp& now) { this->MTime = now; }

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

  /// As those of Stamped. Ranges that VTK keeps with the array are dropped.
  [[nodiscard]] bool is_observed() const { return this->SubjectHelper != nullptr; }
  void stamp(const vtkTimeStamp& now)
  {
    if (this->HasInformation()) {
      this->Modified();
    } else {
      this->MTime = now;
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
  }
};

} // namespace morrow
