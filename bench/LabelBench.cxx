// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Adding labels to a label mapper and removing them in random order, beside two plain ways: vectors from
// which each removed label is erased, and a vtkTextMapper for each label. Needs no display.
#include "BenchReport.h"
#include "BenchSupport.h"
#include "BrantColor.h"
#include "BrantVector.h"
#include "GLabelMapper.h"

#include <benchmark/benchmark.h>

#include <vtkNew.h>
#include <vtkSmartPointer.h>
#include <vtkTextMapper.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <numeric>
#include <random>
#include <string>
#include <vector>

using morrow_bench::once_for;
using morrow_bench::processor_seconds;

namespace {

constexpr std::int64_t LargestForVectors = 10'000;     // the time grows with the square
constexpr std::int64_t LargestForTextMappers = 10'000; // each takes several kilobytes
constexpr const char* Text = "a label 123";

std::vector<long long> shuffled_keys(std::int64_t count)
{
  std::vector<long long> keys(static_cast<std::size_t>(count));
  std::iota(keys.begin(), keys.end(), 0);
  std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
  return keys;
}

// ---------------------------------------------------------------------------------------------------------
// The contenders

class Ours
{
public:
  long long add(const BrantVector& point, const char* text, BrantColor color)
  {
    return mMapper->add_point(point, text, color);
  }
  void remove(long long key) { mMapper->remove_point(key); }

private:
  vtkNew<GLabelMapper> mMapper;
};

/// One vector for each property of a label, in the order of addition, and the slot of each key. A removal
/// shifts all that lies behind.
class Vectors
{
public:
  long long add(const BrantVector& point, const char* text, BrantColor color)
  {
    const auto key = static_cast<long long>(mSlots.size());
    mSlots.push_back(static_cast<int>(mKeys.size()));
    mKeys.push_back(static_cast<int>(key));
    mPoints.push_back(point);
    mTexts.emplace_back(text);
    mColors.push_back(color);
    return key;
  }

  void remove(long long key)
  {
    const std::ptrdiff_t slot = mSlots[static_cast<std::size_t>(key)];
    mKeys.erase(mKeys.begin() + slot);
    mPoints.erase(mPoints.begin() + slot);
    mTexts.erase(mTexts.begin() + slot);
    mColors.erase(mColors.begin() + slot);
    for (auto later = mKeys.begin() + slot; later != mKeys.end(); ++later) {
      --mSlots[static_cast<std::size_t>(*later)];
    }
  }

private:
  std::vector<int> mSlots;
  std::vector<int> mKeys;
  std::vector<BrantVector> mPoints;
  std::vector<std::string> mTexts;
  std::vector<BrantColor> mColors;
};

/// A text mapper for each label, made when the label is added. Ours makes them when labels are first drawn,
/// so this shows what adding is spared; the drawing is not.
class TextMappers
{
public:
  long long add(const BrantVector& point, const char* text, BrantColor color)
  {
    auto mapper = vtkSmartPointer<vtkTextMapper>::New();
    mapper->SetInput(text);
    mapper->GetTextProperty()->ShallowCopy(mStyle);
    mapper->GetTextProperty()->SetColor(color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0);
    mPoints.push_back(point);
    mMappers.push_back(mapper);
    return static_cast<long long>(mMappers.size() - 1);
  }

private:
  vtkNew<vtkTextProperty> mStyle;
  std::vector<BrantVector> mPoints;
  std::vector<vtkSmartPointer<vtkTextMapper>> mMappers;
};

template<typename Contender>
void add_all(Contender& contender, std::int64_t count)
{
  for (std::int64_t i = 0; i < count; ++i) {
    contender.add(BrantVector(static_cast<double>(i), 0.0, 0.0), Text, BRANT_RED);
  }
}

template<typename Contender>
double time_adding(std::int64_t count)
{
  Contender contender;
  return processor_seconds([&] { add_all(contender, count); });
}

template<typename Contender>
double time_adding_and_removing(const std::vector<long long>& keys)
{
  Contender contender;
  return processor_seconds([&] {
    add_all(contender, static_cast<std::int64_t>(keys.size()));
    for (const long long key : keys) {
      contender.remove(key);
    }
  });
}

// ---------------------------------------------------------------------------------------------------------
// Benchmarks

template<typename Measure>
double median_time(benchmark::State& state, Measure&& measure)
{
  std::vector<double> times;
  for (auto _ : state) {
    times.push_back(measure());
    state.SetIterationTime(times.back());
  }
  return morrow_bench::median(times);
}

void add_labels(benchmark::State& state)
{
  static std::map<std::int64_t, double> known;
  const std::int64_t count = state.range(0);
  morrow_bench::Case row;
  row.name = "adding labels";
  row.ours = median_time(state, [count] { return time_adding<Ours>(count); });
  row.peer_name = "vtkTextMapper";
  if (count <= LargestForTextMappers) {
    row.peer = once_for(count, known, [count] { return time_adding<TextMappers>(count); });
  }
  report(state, row);
}

void add_and_remove_labels(benchmark::State& state)
{
  static std::map<std::int64_t, double> known;
  const std::vector<long long> keys = shuffled_keys(state.range(0));
  morrow_bench::Case row;
  row.name = "adding and removing labels";
  row.ours = median_time(state, [&] { return time_adding_and_removing<Ours>(keys); });
  if (state.range(0) <= LargestForVectors) {
    row.literal = once_for(state.range(0), known, [&] { return time_adding_and_removing<Vectors>(keys); });
  }
  report(state, row);
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
  benchmark->Arg(1'000)->Arg(10'000)->Arg(100'000)->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(add_labels)->Apply(sizes);
BENCHMARK(add_and_remove_labels)->Apply(sizes);

} // namespace

BENCHMARK_MAIN();
