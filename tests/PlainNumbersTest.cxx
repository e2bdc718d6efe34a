// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PlainNumbers.h"

#include "ExportFixture.h"

namespace {

using namespace morrow_test;
using morrow::PlainNumbers;

TEST(PlainNumbersTest, GiveADecimalPointAndNoGroupingWhileTheyLive)
{
  const CommaLocale host;
  const PlainNumbers numbers;
  EXPECT_EQ(CommaLocale::printed(), "1.5");
  EXPECT_EQ(CommaLocale::streamed(), "1234567");
}

TEST(PlainNumbersTest, LeaveTheHostsLocaleAsItWas)
{
  const CommaLocale host;
  const std::string printed = CommaLocale::printed();
  const std::string process = std::setlocale(LC_ALL, nullptr);
  const std::locale streams;
  {
    const PlainNumbers numbers;
  }
  EXPECT_EQ(CommaLocale::printed(), printed);
  EXPECT_EQ(CommaLocale::streamed(), "1.234.567");
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), process);
  EXPECT_EQ(std::locale(), streams);
}

TEST(PlainNumbersTest, LeaveTheThreadsOwnLocaleAsItWas)
{
  const locale_t own = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
  const locale_t before = uselocale(own);
  {
    const PlainNumbers numbers;
  }
  EXPECT_EQ(uselocale(before), own);
  freelocale(own);
}

TEST(PlainNumbersTest, Nest)
{
  const CommaLocale host;
  {
    const PlainNumbers outer;
    {
      const PlainNumbers inner;
    }
    EXPECT_EQ(CommaLocale::printed(), "1.5");
    EXPECT_EQ(CommaLocale::streamed(), "1234567");
  }
  EXPECT_EQ(CommaLocale::streamed(), "1.234.567");
}

TEST(PlainNumbersTest, ChangeNothingForAPlainHost)
{
  const std::string process = std::setlocale(LC_ALL, nullptr);
  {
    const PlainNumbers numbers;
    EXPECT_EQ(CommaLocale::printed(), "1.5");
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), process);
  }
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), process);
  EXPECT_EQ(std::locale(), std::locale::classic());
}

} // namespace
