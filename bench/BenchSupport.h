// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkCellArray.h>
#include <vtkNew.h>
#include <vtkSmartPointer.h>

#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <fstream>
#include <map>
#include <string>
#include <vector>

/// What benchmarks share.
namespace morrow_bench {

/// The processor time of the call in seconds, that of all threads: other programs slow it little.
template<typename Call>
double processor_seconds(Call&& call)
{
  const std::clock_t start = std::clock();
  call();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// Of an even number of times the larger of the two in the middle. There must be one at least.
inline double median(std::vector<double> times)
{
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

/// The median processor time of so many calls, in seconds.
template<typename Call>
double median_seconds(Call&& call, int runs)
{
  std::vector<double> times;
  for (int i = 0; i < runs; ++i) {
    times.push_back(processor_seconds(call));
  }
  return median(times);
}

/// What measure() gives for this size, measured the first time only: Google Benchmark calls each function
/// several times, which is once too often for a slow contender.
template<typename Measure>
double once_for(std::int64_t size, std::map<std::int64_t, double>& known, Measure&& measure)
{
  const auto found = known.find(size);
  return found != known.end() ? found->second : known.emplace(size, measure()).first->second;
}

/// A line of this process's status as the system keeps it, in KiB; 0 where there is none.
inline double status_kib(const std::string& name)
{
  std::ifstream status("/proc/self/status");
  std::string word;
  double value = 0.0;
  while (status >> word) {
    if (word == name + ":" && status >> value) {
      return value;
    }
  }
  return 0.0;
}

/// How far the call raises the memory of this process, in KiB; 0 where the system does not tell.
template<typename Call>
double peak_kib(Call&& call)
{
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5"; // the peak starts anew
  const double before = status_kib("VmRSS");
  call();
  return std::max(0.0, status_kib("VmHWM") - before);
}

/// Two triangles for each of these squares of a grid of side x side, whose (side + 1) x (side + 1) points are
/// numbered row by row.
inline vtkSmartPointer<vtkCellArray> grid_triangles(vtkIdType side, const std::vector<vtkIdType>& squares)
{
  auto cells = vtkSmartPointer<vtkCellArray>::New();
  for (const vtkIdType square : squares) {
    const vtkIdType a = square / side * (side + 1) + square % side;
    const vtkIdType lower[3] = {a, a + 1, a + side + 2};
    const vtkIdType upper[3] = {a, a + side + 2, a + side + 1};
    cells->InsertNextCell(3, lower);
    cells->InsertNextCell(3, upper);
  }
  return cells;
}

} // namespace morrow_bench
