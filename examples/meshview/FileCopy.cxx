// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "FileCopy.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>

namespace fs = std::filesystem;

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File open_file(const std::string& path, const char* mode)
{
  return {std::fopen(path.c_str(), mode), std::fclose};
}

/// 0, or the number of the error.
int error_of(bool is_done)
{
  return is_done ? 0 : (errno != 0 ? errno : EIO);
}

int copy_bytes(std::FILE& from, std::FILE& to)
{
  std::array<char, 1 << 16> buffer; // NOLINT: fread() fills it
  while (true) {
    const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), &from);
    if (count == 0) {
      return error_of(std::ferror(&from) == 0);
    }
    if (std::fwrite(buffer.data(), 1, count, &to) != count) {
      return error_of(false);
    }
  }
}

int copy_to(const std::string& from, const std::string& to)
{
  errno = 0;
  const File source = open_file(from, "rb");
  File target = source ? open_file(to, "wb") : File(nullptr, std::fclose);
  if (!target) {
    return error_of(false);
  }
  const int error = copy_bytes(*source, *target);
  const bool is_closed = std::fclose(target.release()) == 0; // what is buffered may fail only now
  return error != 0 ? error : error_of(is_closed);
}

} // namespace

std::string write_problem(const std::string& path)
{
  std::error_code error;
  const fs::path parent = fs::path(path).has_parent_path() ? fs::path(path).parent_path() : fs::path(".");
  if (!fs::is_directory(parent, error)) {
    return "there is no folder " + parent.string();
  }
  const bool exists = fs::exists(path, error);
  if (fs::is_directory(path, error)) {
    return "is a directory";
  }
  return access((exists ? path : parent.string()).c_str(), W_OK) == 0 ? "" : std::strerror(errno);
}

std::string copy_file(const std::string& from, const std::string& to)
{
  const int error = copy_to(from, to);
  std::error_code ignored;
  if (error != 0 && fs::is_regular_file(fs::symlink_status(to, ignored))) {
    fs::remove(to, ignored);
  }
  return error == 0 ? "" : std::strerror(error);
}

ScratchFolder::ScratchFolder()
{
  std::error_code error;
  std::string pattern = (fs::temp_directory_path(error) / "meshview-XXXXXX").string();
  if (!error && mkdtemp(pattern.data()) != nullptr) {
    mPath = pattern;
  }
}

ScratchFolder::~ScratchFolder()
{
  std::error_code ignored;
  if (!mPath.empty()) {
    fs::remove_all(mPath, ignored);
  }
}

bool ScratchFolder::is_full() const
{
  const std::string path = mPath + "/room";
  const std::array<char, 1 << 16> more = {};
  File file = open_file(path, "wb");
  const bool is_written = file && std::fwrite(more.data(), 1, more.size(), file.get()) == more.size();
  const bool is_closed = file && std::fclose(file.release()) == 0;
  std::error_code ignored;
  fs::remove(path, ignored);
  return !is_written || !is_closed;
}
