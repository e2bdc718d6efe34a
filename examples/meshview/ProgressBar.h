// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

/// A progress bar on standard error, on a terminal only. It is wiped when this goes.
class ProgressBar
{
public:
  /// title tells what is done; its first 30 bytes are shown. An empty one makes no bar.
  explicit ProgressBar(const std::string& title);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// How much is done, 0 to 1; what is beyond is drawn as the nearest of them.
  void draw(double fraction);

private:
  std::string mTitle; // empty: no bar
  int mShownPercent = -1;
};
