// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ProgressBar.h"

#include "Console.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>

namespace {

constexpr std::size_t kTitleLength = 30; // characters, so that the bar fits a line of 80
constexpr int kBarLength = 30;

void write_text(const std::string& text)
{
  [[maybe_unused]] const auto written = write(Console::error_descriptor(), text.data(), text.size());
}

} // namespace

ProgressBar::ProgressBar(const std::string& title)
    : mTitle(Console::has_terminal() ? title.substr(0, kTitleLength) : "")
{
  draw(0.0);
}

ProgressBar::~ProgressBar()
{
  if (!mTitle.empty()) {
    write_text(Console::wipe_line());
  }
}

void ProgressBar::draw(double fraction)
{
  const int percent = static_cast<int>(100.0 * std::clamp(fraction, 0.0, 1.0));
  if (mTitle.empty() || percent == mShownPercent) {
    return;
  }
  mShownPercent = percent;
  const auto full = static_cast<std::size_t>(percent * kBarLength / 100);
  const std::string bar = std::string(full, '#') + std::string(kBarLength - full, '-');
  write_text("\r" + mTitle + " [" + bar + "] " + std::to_string(percent) + " %");
}
