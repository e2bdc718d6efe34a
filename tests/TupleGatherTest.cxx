// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "TupleGather.h"

#include <gtest/gtest.h>

#include <vtkCellData.h>
#include <vtkIdTypeArray.h>
#include <vtkIntArray.h>
#include <vtkNew.h>

#include <cstdint>
#include <vector>

namespace {

vtkSmartPointer<vtkIntArray> numbers(const char* name, const std::vector<int>& values)
{
  auto array = vtkSmartPointer<vtkIntArray>::New();
  array->SetName(name);
  for (const int value : values) {
    array->InsertNextValue(value);
  }
  return array;
}

std::vector<double> values_of(vtkDataArray* array)
{
  std::vector<double> values;
  for (vtkIdType i = 0; i < array->GetNumberOfTuples(); ++i) {
    values.push_back(array->GetTuple1(i));
  }
  return values;
}

const std::vector<std::int64_t> kWide = {2, 0};
const std::vector<std::int32_t> kNarrow = {1, 1, 2};
const std::vector<morrow::TupleRun> kRuns = {{kWide.data(), true, 2}, {kNarrow.data(), false, 3}};

} // namespace

TEST(TupleGatherTest, RunsOfBothWidthsFollowEachOther)
{
  vtkNew<vtkCellData> from;
  from->AddArray(numbers("a", {10, 20, 30}));
  vtkNew<vtkCellData> to;
  morrow::gather_tuples(*from, *to, kRuns);
  EXPECT_EQ(values_of(to->GetArray("a")), (std::vector<double>{30, 10, 20, 20, 30}));
}

// Sizes in bytes that are copied in registers, and others.
TEST(TupleGatherTest, TuplesOfEverySizeArriveWhole)
{
  const auto make = [](vtkDataArray* array, int components) {
    array->SetName("a");
    array->SetNumberOfComponents(components);
    array->SetNumberOfTuples(3);
    for (vtkIdType i = 0; i < 3; ++i) {
      for (int k = 0; k < components; ++k) {
        array->SetComponent(i, k, static_cast<double>(10 * i + k));
      }
    }
  };
  for (const int type : {VTK_UNSIGNED_CHAR, VTK_FLOAT, VTK_DOUBLE}) {
    for (const int components : {1, 2, 3, 4, 9}) {
      const auto array = vtkSmartPointer<vtkDataArray>::Take(vtkDataArray::CreateDataArray(type));
      make(array, components);
      vtkNew<vtkCellData> from;
      from->AddArray(array);
      vtkNew<vtkCellData> to;
      morrow::gather_tuples(*from, *to, kRuns);
      vtkDataArray* copy = to->GetArray("a");
      ASSERT_EQ(copy->GetNumberOfTuples(), 5);
      const vtkIdType sources[] = {2, 0, 1, 1, 2};
      for (vtkIdType i = 0; i < 5; ++i) {
        for (int k = 0; k < components; ++k) {
          EXPECT_EQ(copy->GetComponent(i, k), static_cast<double>(10 * sources[i] + k)) << type << components;
        }
      }
    }
  }
}

TEST(TupleGatherTest, LeavesOutWhatCopyAllocateLeavesOut)
{
  vtkNew<vtkCellData> from;
  from->AddArray(numbers("a", {1, 2, 3}));
  from->SetScalars(numbers("scalars", {4, 5, 6}));
  from->AddArray(numbers("b", {7, 8, 9}));
  vtkNew<vtkCellData> to;
  to->CopyScalarsOff();
  to->CopyFieldOff("a");
  morrow::gather_tuples(*from, *to, kRuns);
  ASSERT_EQ(to->GetNumberOfArrays(), 1);
  EXPECT_EQ(values_of(to->GetArray("b")), (std::vector<double>{9, 7, 8, 8, 9}));
}

// As arrays have it that are renamed after they have been added. The copy is that of the last one.
TEST(TupleGatherTest, OfArraysWithOneNameTheLastIsCopied)
{
  vtkNew<vtkCellData> from;
  vtkNew<vtkIntArray> wide;
  wide->SetName("a");
  wide->SetNumberOfComponents(9);
  wide->SetNumberOfTuples(3);
  wide->FillValue(-1);
  const auto last = numbers("b", {4, 5, 6});
  from->AddArray(wide);
  from->AddArray(numbers("c", {1, 2, 3}));
  from->AddArray(last);
  last->SetName("a");
  vtkNew<vtkCellData> to;
  morrow::gather_tuples(*from, *to, kRuns);
  ASSERT_EQ(to->GetNumberOfArrays(), 2);
  EXPECT_EQ(values_of(to->GetArray("a")), (std::vector<double>{6, 4, 5, 5, 6}));
  EXPECT_EQ(values_of(to->GetArray("c")), (std::vector<double>{3, 1, 2, 2, 3}));
}

// CopyAllocate() leaves global ids out.
TEST(TupleGatherTest, ArraysWithoutANameAreNotTakenForEachOther)
{
  vtkNew<vtkCellData> from;
  from->SetGlobalIds(numbers(nullptr, {1, 2, 3}));
  from->AddArray(numbers(nullptr, {4, 5, 6}));
  from->AddArray(numbers("a", {0, 0, 0}));
  from->AddArray(numbers(nullptr, {7, 8, 9}));
  vtkNew<vtkCellData> to;
  morrow::gather_tuples(*from, *to, kRuns);
  ASSERT_EQ(to->GetNumberOfArrays(), 3);
  EXPECT_EQ(values_of(to->GetArray(0)), (std::vector<double>{6, 4, 5, 5, 6}));
  EXPECT_EQ(values_of(to->GetArray(2)), (std::vector<double>{9, 7, 8, 8, 9}));
}

TEST(TupleGatherTest, NothingFromNothing)
{
  vtkNew<vtkCellData> from;
  from->AddArray(numbers("a", {1}));
  vtkNew<vtkCellData> to;
  morrow::gather_tuples(*from, *to, {});
  EXPECT_EQ(to->GetArray("a")->GetNumberOfTuples(), 0);
}
