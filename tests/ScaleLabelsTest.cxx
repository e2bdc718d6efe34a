// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ScaleLabels.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

// What VTK prints along such a scale.
std::vector<std::string> labels(double first, double last, int count = 5)
{
  morrow::let_scale_meet_zero(first, last, count);
  const std::string format = morrow::scale_format(first, last, count);
  const double interval = (last - first) / (count - 1);
  std::vector<std::string> texts;
  for (int i = 0; i < count; ++i) {
    char text[512];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::snprintf(text, sizeof text, format.c_str(), first + i * interval);
#pragma GCC diagnostic pop
    texts.emplace_back(text);
  }
  return texts;
}

using Texts = std::vector<std::string>;

TEST(ScaleLabelsTest, ShowsEveryDigitThatMattersAndNoOther)
{
  EXPECT_EQ(labels(0.0, 1.0), (Texts{"0.00", "0.25", "0.50", "0.75", "1.00"}));
  EXPECT_EQ(labels(0.0, 2.0), (Texts{"0.0", "0.5", "1.0", "1.5", "2.0"}));
  EXPECT_EQ(labels(0.0, 4.0), (Texts{"0", "1", "2", "3", "4"}));
  EXPECT_EQ(labels(0.0, 100.0), (Texts{"0", "25", "50", "75", "100"}));
  EXPECT_EQ(labels(0.0, 250.0), (Texts{"0.0", "62.5", "125.0", "187.5", "250.0"}));
  EXPECT_EQ(labels(-20.0, -10.0), (Texts{"-20.0", "-17.5", "-15.0", "-12.5", "-10.0"}));
}

TEST(ScaleLabelsTest, RunsDownwardsAsWell)
{
  EXPECT_EQ(labels(3.0, -1.0), (Texts{"3", "2", "1", "0", "-1"}));
}

TEST(ScaleLabelsTest, RoundsWhatHasNoEnd)
{
  EXPECT_EQ(labels(0.0, 1.0 / 3.0), (Texts{"0.000", "0.083", "0.167", "0.250", "0.333"}));
}

TEST(ScaleLabelsTest, ShowsTinyAndHugeNumbersWithExponents)
{
  EXPECT_EQ(labels(0.0, 1e-9), (Texts{"0", "2.5e-10", "5e-10", "7.5e-10", "1e-09"}));
  EXPECT_EQ(labels(-1e-9, 1e-9), (Texts{"-1e-09", "-5e-10", "0", "5e-10", "1e-09"}));
  EXPECT_EQ(labels(0.0, 1e12), (Texts{"0", "2.5e+11", "5e+11", "7.5e+11", "1e+12"}));
  EXPECT_EQ(labels(0.0, 9999999.0).back(), "9999999");
  EXPECT_EQ(labels(0.0, 1e7).back(), "1e+07");
  EXPECT_EQ(labels(0.0, 1e-4).back(), "0.000100");
}

// Where three digits, as VTK prints them, give the same text five times.
TEST(ScaleLabelsTest, TellsNumbersApartThatAreFarFromZero)
{
  EXPECT_EQ(labels(1000000.0, 1000001.0),
            (Texts{"1000000.00", "1000000.25", "1000000.50", "1000000.75", "1000001.00"}));
  EXPECT_EQ(labels(-1e12, -1e12 + 4.0),
            (Texts{"-1000000000000", "-999999999999", "-999999999998", "-999999999997", "-999999999996"}));
}

// The sums are 5.6e-17, -2.8e-17 and the like.
TEST(ScaleLabelsTest, ZeroIsZero)
{
  EXPECT_EQ(labels(-0.3, 0.1), (Texts{"-0.3", "-0.2", "-0.1", "0.0", "0.1"}));
  EXPECT_EQ(labels(0.1, -0.3), (Texts{"0.1", "0.0", "-0.1", "-0.2", "-0.3"}));
  EXPECT_EQ(labels(-0.1, 0.7, 9)[1], "0.0");
  EXPECT_EQ(labels(-1e-17, 1.0).front(), "0.00");
  EXPECT_EQ(labels(-1.0, -1e-17).back(), "0.00");
}

// Vertices are floats in most meshes: -0.3f is -0.300000012.
TEST(ScaleLabelsTest, ZeroIsZeroAlsoBetweenFloats)
{
  EXPECT_EQ(labels(-0.3F, 0.1F), (Texts{"-0.3", "-0.2", "-0.1", "0.0", "0.1"}));
  EXPECT_EQ(labels(-7.1F, 7.1F)[2], "0.00");
}

TEST(ScaleLabelsTest, NegativeNumbersAreNeverPrintedAsMinusZero)
{
  EXPECT_EQ(labels(-0.002, 1.0).front(), "-0.002");
  EXPECT_EQ(labels(-0.4, 1.2), (Texts{"-0.4", "0.0", "0.4", "0.8", "1.2"}));
}

TEST(ScaleLabelsTest, ScalesThatDoNotMeetZeroStayAsTheyAre)
{
  for (const auto& [first, last] : {std::pair(1.0, 2.0), {-1.0, 2.0}, {0.1, -0.7}, {1e6, 1e6 + 1}}) {
    double a = first;
    double b = last;
    morrow::let_scale_meet_zero(a, b, 5);
    EXPECT_EQ(a, first);
    EXPECT_EQ(b, last);
  }
}

TEST(ScaleLabelsTest, NumbersThatDoublesCannotTellApartAreNoScale)
{
  EXPECT_TRUE(morrow::is_scale(0.0, 1.0, 5));
  EXPECT_TRUE(morrow::is_scale(1.0, 0.0, 5));
  EXPECT_FALSE(morrow::is_scale(1.0, 1.0, 5));
  EXPECT_FALSE(morrow::is_scale(0.0, 0.0, 5));
  EXPECT_FALSE(morrow::is_scale(1e9, 1e9 + 4e-7, 5)); // three units in the last place
  EXPECT_TRUE(morrow::is_scale(1e9, 1e9 + 1e-5, 5));
  EXPECT_FALSE(morrow::is_scale(0.0, Nan, 5));
  EXPECT_FALSE(morrow::is_scale(-Inf, 0.0, 5));
  EXPECT_FALSE(morrow::is_scale(Inf, Inf, 5));
  EXPECT_FALSE(morrow::is_scale(-1.5e308, 1.5e308, 5)); // further apart than a double can say
  EXPECT_FALSE(morrow::is_scale(0.0, 5e-324, 5));
  for (const int count : {1, 0, -1}) {
    EXPECT_FALSE(morrow::is_scale(0.0, 1.0, count)) << count;
  }
}

TEST(ScaleLabelsTest, WhatIsNoScaleHasAFormatAllTheSame)
{
  for (const double last : {Nan, Inf, -Inf, 1.0}) {
    double a = 1.0;
    double b = last;
    EXPECT_EQ(morrow::scale_format(a, b, 5), "%.6g");
    morrow::let_scale_meet_zero(a, b, 5);
    EXPECT_EQ(a, 1.0);
  }
  EXPECT_EQ(morrow::scale_format(0.0, 1.0, 1), "%.6g");
}

// What a reader relies on, over forty orders of magnitude, near zero and far from it.
TEST(ScaleLabelsTest, AnyScaleReadsRight)
{
  std::mt19937 random(4711); // NOLINT(cert-msc51-cpp): the same each time
  std::uniform_real_distribution<double> exponent(-20.0, 20.0);
  std::uniform_real_distribution<double> offset(-7.0, 7.0);
  for (int run = 0; run < 3000; ++run) {
    const double extent = std::pow(10.0, exponent(random));
    const double first =
        offset(random) < 0.0 ? offset(random) * extent : extent * std::pow(10.0, std::abs(offset(random)));
    const double last = first + extent;
    const double distance = (last - first) / 4;
    const Texts texts = labels(first, last);
    for (int i = 0; i < 5; ++i) {
      const double read = std::stod(texts[static_cast<std::size_t>(i)]);
      ASSERT_NEAR(read, first + i * distance, 0.006 * distance) << first << " " << last;
    }
    ASSERT_TRUE(std::none_of(texts.begin(), texts.end(), [](const std::string& text) {
      return text[0] == '-' && std::stod(text) == 0.0;
    })) << first;
  }
}

// One digit less would be wrong: what is printed could not be shorter.
TEST(ScaleLabelsTest, OneDigitLessWouldBeWrong)
{
  std::mt19937 random(815); // NOLINT(cert-msc51-cpp)
  std::uniform_real_distribution<double> number(-1000.0, 1000.0);
  for (int run = 0; run < 500; ++run) {
    const double first = number(random);
    const double last = number(random);
    const std::string format = morrow::scale_format(first, last, 5);
    ASSERT_EQ(format.back(), 'f');
    const int decimals = std::stoi(format.substr(2));
    const double unit = std::pow(10.0, -(decimals - 1));
    const double distance = (last - first) / 4;
    bool is_coarse = decimals == 0;
    for (int i = 0; i < 5; ++i) {
      const double value = first + i * distance;
      const double rounded = std::round(value / unit) * unit;
      is_coarse = is_coarse || std::abs(rounded - value) > 0.0049 * std::abs(distance) || rounded == 0.0;
    }
    ASSERT_TRUE(is_coarse) << first << " " << last << " " << format;
  }
}

} // namespace
