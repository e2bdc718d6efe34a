// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>
#include <system_error>

namespace morrow_test {

/// A folder of the test's own, empty at the start and gone with its files at the end. Its name ends in six
/// letters of mkdtemp()'s choice, so the same test may run in two builds at once.
class TemporaryFolder
{
public:
  TemporaryFolder() : mPath((std::filesystem::temp_directory_path() / "morrow-test-XXXXXX").string())
  {
    EXPECT_NE(mkdtemp(mPath.data()), nullptr) << "no folder " << mPath;
  }
  ~TemporaryFolder()
  {
    std::error_code ignored;
    std::filesystem::remove_all(mPath, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] std::string file(const std::string& name) const { return mPath + "/" + name; }
  [[nodiscard]] const std::string& path() const { return mPath; }
  [[nodiscard]] int num_files() const
  {
    const std::filesystem::directory_iterator all(mPath);
    return static_cast<int>(std::distance(begin(all), end(all)));
  }

private:
  std::string mPath;
};

} // namespace morrow_test
