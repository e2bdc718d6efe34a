// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GDataGroup.h"
#include "MRUtil.h"

#include <gtest/gtest.h>

#include <vtkDoubleArray.h>
#include <vtkFieldData.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkSmartPointer.h>
#include <vtkTypeUInt64Array.h>
#include <vtkUnsignedLongArray.h>
#include <vtkUnstructuredGrid.h>
#include <vtkWeakPointer.h>

#include <cstdint>

namespace {

using MRUtil::get_back_pointer;
using MRUtil::set_back_pointer;

vtkAbstractArray* array_of(vtkDataSet* data_set)
{
  return data_set->GetFieldData()->GetAbstractArray("BackPointer");
}

/// An array of the right name and type that somebody else has made.
vtkSmartPointer<vtkTypeUInt64Array> foreign_array(vtkIdType num_tuples, int num_components = 1)
{
  auto array = vtkSmartPointer<vtkTypeUInt64Array>::New();
  array->SetName("BackPointer");
  array->SetNumberOfComponents(num_components);
  array->SetNumberOfTuples(num_tuples);
  array->Fill(0.0);
  return array;
}

class BackPointer : public ::testing::Test
{
protected:
  vtkNew<vtkPolyData> data;
  GDataGroupEntity one;
  GDataGroupEntity two;

  void TearDown() override { set_back_pointer(data, nullptr); }
};

TEST_F(BackPointer, IsOneNumberInTheFieldData)
{
  EXPECT_EQ(get_back_pointer(data), nullptr);
  set_back_pointer(data, &one);
  EXPECT_EQ(get_back_pointer(data), &one);
  auto* array = vtkTypeUInt64Array::SafeDownCast(array_of(data));
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(array->GetNumberOfComponents(), 1);
  EXPECT_EQ(array->GetNumberOfTuples(), 1);
  EXPECT_EQ(array->GetValue(0), reinterpret_cast<std::uintptr_t>(&one));
  EXPECT_EQ(data->GetFieldData()->GetNumberOfArrays(), 1);
}

TEST_F(BackPointer, IsReplacedAndRemoved)
{
  set_back_pointer(data, &one);
  vtkAbstractArray* array = array_of(data);
  set_back_pointer(data, &two);
  EXPECT_EQ(array_of(data), array);
  EXPECT_EQ(get_back_pointer(data), &two);
  EXPECT_EQ(data->GetFieldData()->GetNumberOfArrays(), 1);
  set_back_pointer(data, nullptr);
  EXPECT_EQ(get_back_pointer(data), nullptr);
  EXPECT_EQ(data->GetFieldData()->GetNumberOfArrays(), 0);
  set_back_pointer(data, nullptr);
  set_back_pointer(data, &one); // once more from the start
  EXPECT_EQ(get_back_pointer(data), &one);
}

TEST_F(BackPointer, ANullDataSetIsTaken)
{
  set_back_pointer(nullptr, &one);
  set_back_pointer(nullptr, nullptr);
  EXPECT_EQ(get_back_pointer(nullptr), nullptr);
}

TEST_F(BackPointer, ADataSetWithoutFieldDataGetsSome)
{
  data->SetFieldData(nullptr);
  EXPECT_EQ(get_back_pointer(data), nullptr);
  set_back_pointer(data, nullptr);
  set_back_pointer(data, &one);
  EXPECT_EQ(get_back_pointer(data), &one);
}

TEST_F(BackPointer, WorksForEveryKindOfDataSet)
{
  vtkNew<vtkImageData> image;
  vtkNew<vtkUnstructuredGrid> grid;
  for (vtkDataSet* any : {static_cast<vtkDataSet*>(image), static_cast<vtkDataSet*>(grid)}) {
    set_back_pointer(any, &one);
    EXPECT_EQ(get_back_pointer(any), &one);
    set_back_pointer(any, nullptr);
    EXPECT_EQ(get_back_pointer(any), nullptr);
  }
}

TEST_F(BackPointer, LeavesOtherFieldDataAlone)
{
  vtkNew<vtkDoubleArray> other;
  other->SetName("Time");
  data->GetFieldData()->AddArray(other);
  set_back_pointer(data, &one);
  set_back_pointer(data, nullptr);
  EXPECT_EQ(data->GetFieldData()->GetAbstractArray(0), other);
  EXPECT_EQ(data->GetFieldData()->GetNumberOfArrays(), 1);
}

TEST_F(BackPointer, AnArrayOfAnotherTypeIsInvisibleAndReplaced)
{
  vtkNew<vtkDoubleArray> doubles;
  doubles->SetName("BackPointer");
  doubles->InsertNextValue(1.0);
  data->GetFieldData()->AddArray(doubles);
  EXPECT_EQ(get_back_pointer(data), nullptr);
  set_back_pointer(data, nullptr);
  EXPECT_EQ(array_of(data), doubles);
  set_back_pointer(data, &one);
  EXPECT_EQ(get_back_pointer(data), &one);
  EXPECT_EQ(data->GetFieldData()->GetNumberOfArrays(), 1);
  EXPECT_EQ(doubles->GetReferenceCount(), 1);
}

// Of the same numbers, but not of the same class.
TEST_F(BackPointer, AnArrayOfUnsignedLongsIsOfAnotherTypeToo)
{
  const vtkNew<vtkUnsignedLongArray> longs;
  ASSERT_EQ(longs->GetDataTypeSize(), 8);
  longs->SetName("BackPointer");
  longs->InsertNextValue(reinterpret_cast<std::uintptr_t>(&two));
  data->GetFieldData()->AddArray(longs);
  EXPECT_EQ(get_back_pointer(data), nullptr);
  set_back_pointer(data, nullptr);
  EXPECT_EQ(array_of(data), longs);
  set_back_pointer(data, &one);
  EXPECT_NE(array_of(data), longs);
  EXPECT_EQ(get_back_pointer(data), &one);
}

// ---------------------------------------------------------------------------------------------------------
// References

TEST_F(BackPointer, HoldsItsArrayUntilItIsRemoved)
{
  set_back_pointer(data, &one);
  const vtkWeakPointer<vtkAbstractArray> array(array_of(data));
  EXPECT_EQ(array->GetReferenceCount(), 2);
  set_back_pointer(data, &two);
  EXPECT_EQ(array->GetReferenceCount(), 2);
  set_back_pointer(data, nullptr);
  EXPECT_EQ(array, nullptr);
}

TEST_F(BackPointer, RemovalEmptiesAnArrayThatSomebodyElseHolds)
{
  set_back_pointer(data, &one);
  const vtkSmartPointer<vtkAbstractArray> array(array_of(data));
  set_back_pointer(data, nullptr);
  EXPECT_EQ(array->GetReferenceCount(), 1);
  EXPECT_EQ(array->GetNumberOfTuples(), 0);
}

TEST_F(BackPointer, ADataSetThatGoesLeavesOneReference)
{
  vtkSmartPointer<vtkAbstractArray> array;
  {
    vtkNew<vtkPolyData> going;
    set_back_pointer(going, &one);
    array = array_of(going);
    EXPECT_EQ(array->GetReferenceCount(), 3);
  }
  EXPECT_EQ(array->GetReferenceCount(), 2);
  data->GetFieldData()->AddArray(array); // it can still be given back, through any data set
  set_back_pointer(data, nullptr);
  EXPECT_EQ(array->GetReferenceCount(), 1);
}

TEST_F(BackPointer, AShallowCopySharesIt)
{
  set_back_pointer(data, &one);
  const vtkWeakPointer<vtkAbstractArray> array(array_of(data));
  for (const bool copy_goes_first : {true, false}) {
    set_back_pointer(data, &one);
    vtkNew<vtkPolyData> copy;
    copy->ShallowCopy(data);
    EXPECT_EQ(get_back_pointer(copy), &one);
    set_back_pointer(copy, &two);
    EXPECT_EQ(get_back_pointer(data), &two);
    vtkPolyData* first = copy_goes_first ? copy.Get() : data.Get();
    vtkPolyData* second = copy_goes_first ? data.Get() : copy.Get();
    set_back_pointer(first, nullptr);
    EXPECT_EQ(get_back_pointer(first), nullptr);
    EXPECT_EQ(get_back_pointer(second), nullptr); // it was emptied
    set_back_pointer(second, &one);
    EXPECT_EQ(get_back_pointer(second), &one);
    set_back_pointer(second, nullptr);
    EXPECT_EQ(get_back_pointer(second), nullptr);
    set_back_pointer(second, nullptr);
  }
  EXPECT_EQ(array, nullptr);
}

TEST_F(BackPointer, ADeepCopyHasItsOwn)
{
  for (const bool copy_goes_first : {true, false}) {
    set_back_pointer(data, &one);
    vtkNew<vtkPolyData> copy;
    copy->DeepCopy(data);
    EXPECT_EQ(get_back_pointer(copy), &one);
    const vtkSmartPointer<vtkAbstractArray> copied(array_of(copy));
    EXPECT_EQ(copied->GetReferenceCount(), 2); // the copy's and this one
    set_back_pointer(copy, &two);
    EXPECT_EQ(get_back_pointer(data), &one);
    vtkPolyData* first = copy_goes_first ? copy.Get() : data.Get();
    vtkPolyData* second = copy_goes_first ? data.Get() : copy.Get();
    set_back_pointer(first, nullptr);
    EXPECT_NE(get_back_pointer(second), nullptr);
    set_back_pointer(second, nullptr);
    EXPECT_EQ(copied->GetReferenceCount(), 1);
  }
}

TEST_F(BackPointer, ACopyOutlivesItsOriginal)
{
  vtkNew<vtkPolyData> deep;
  vtkNew<vtkPolyData> shallow;
  {
    vtkNew<vtkPolyData> original;
    set_back_pointer(original, &one);
    deep->DeepCopy(original);
    shallow->ShallowCopy(original);
  }
  EXPECT_EQ(get_back_pointer(deep), &one);
  EXPECT_EQ(get_back_pointer(shallow), &one);
  const vtkWeakPointer<vtkAbstractArray> shared(array_of(shallow));
  set_back_pointer(deep, nullptr);
  set_back_pointer(shallow, nullptr); // gives back what was held for the original
  EXPECT_EQ(shared, nullptr);
}

// An array of the right type that was not made here, such as a reader's.
TEST_F(BackPointer, AForeignArrayIsUsedButNotReleased)
{
  const auto array = foreign_array(1);
  data->GetFieldData()->AddArray(array);
  EXPECT_EQ(get_back_pointer(data), nullptr);
  set_back_pointer(data, &one);
  EXPECT_EQ(array_of(data), array);
  EXPECT_EQ(get_back_pointer(data), &one);
  EXPECT_EQ(array->GetReferenceCount(), 2);
  set_back_pointer(data, nullptr);
  EXPECT_EQ(array_of(data), nullptr);
  EXPECT_EQ(array->GetReferenceCount(), 1);
}

TEST_F(BackPointer, AnArrayWithoutTupleIsNoPointerAndTakesOne)
{
  for (const int num_components : {1, 3}) {
    const auto array = foreign_array(0, num_components);
    data->GetFieldData()->AddArray(array);
    EXPECT_EQ(get_back_pointer(data), nullptr);
    set_back_pointer(data, &one);
    EXPECT_EQ(get_back_pointer(data), &one);
    EXPECT_EQ(array->GetNumberOfTuples(), 1);
    set_back_pointer(data, nullptr);
    EXPECT_EQ(array->GetReferenceCount(), 1);
    data->GetFieldData()->AddArray(foreign_array(0, num_components));
    set_back_pointer(data, nullptr);
    EXPECT_EQ(array_of(data), nullptr);
  }
}

TEST_F(BackPointer, OnlyTheFirstOfSeveralValuesCounts)
{
  const auto array = foreign_array(2, 2);
  array->SetValue(0, reinterpret_cast<std::uintptr_t>(&two));
  array->SetValue(3, 5);
  data->GetFieldData()->AddArray(array);
  EXPECT_EQ(get_back_pointer(data), &two);
  set_back_pointer(data, &one);
  EXPECT_EQ(array->GetValue(0), reinterpret_cast<std::uintptr_t>(&one));
  EXPECT_EQ(array->GetValue(3), 5U);
  array->SetNumberOfValues(1); // less than a tuple
  EXPECT_EQ(get_back_pointer(data), nullptr);
  set_back_pointer(data, &two);
  EXPECT_EQ(get_back_pointer(data), &two);
}

} // namespace
