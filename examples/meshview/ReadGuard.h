// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// How far the reading of each file has come. Kept in memory that processes share, so that it outlives the
/// one that reads.
class ReadLog
{
public:
  enum class State : unsigned char
  {
    Unread,
    Reading,
    Read,
    Failed ///< and the user has been told
  };

  explicit ReadLog(std::size_t number_of_files);
  ~ReadLog();
  ReadLog(const ReadLog&) = delete;
  ReadLog& operator=(const ReadLog&) = delete;

  [[nodiscard]] std::size_t size() const noexcept { return mSize; }
  [[nodiscard]] State get(std::size_t file) const noexcept { return mStates[file]; }
  void set(std::size_t file, State state) noexcept { mStates[file] = state; }

private:
  std::size_t mSize;
  volatile State* mStates; // shared memory: mSize elements
};

/// Runs work in a child process and returns its exit status. When the child dies while it reads a file, the
/// user is told, the file counts as failed, and work starts again without it.
///
/// VTK's readers trust their files: some damaged ones make them read or free memory that is not theirs. No
/// check made beforehand finds all of those without being a reader itself, and after such a crash the process
/// cannot go on.
int run_guarded(const std::vector<std::string>& files, const std::function<int(ReadLog&)>& work);

/// Runs work in this process.
int run_unguarded(const std::vector<std::string>& files, const std::function<int(ReadLog&)>& work);
