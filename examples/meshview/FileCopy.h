// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

/// Why no file can be written to this path; empty when one can, as far as that can be told beforehand.
[[nodiscard]] std::string write_problem(const std::string& path);

/// Copies a file. The answer is why that failed; empty when it did not. A target that could not be written to
/// its end is removed, unless it is no regular file.
[[nodiscard]] std::string copy_file(const std::string& from, const std::string& to);

/// A new, empty folder for temporary files. It and what is in it go when this does.
class ScratchFolder
{
public:
  /// Without a place for it, path() is empty.
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::string& path() const noexcept { return mPath; }

  /// Is there no room for more? Then what was written to the folder may not be whole.
  [[nodiscard]] bool is_full() const;

private:
  std::string mPath;
};
