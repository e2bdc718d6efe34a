// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <gtest/gtest.h>

#include <string>

/// What the tests of output share.
namespace morrow_test {

/// What a call writes to standard output.
template<typename Call>
std::string written_by(Call&& call)
{
  testing::internal::CaptureStdout();
  call();
  return testing::internal::GetCapturedStdout();
}

} // namespace morrow_test
