// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ProgressBar.h"

class vtkAlgorithm;

/// Watches an algorithm while it works: shows a progress bar on standard error and lets Ctrl-C abort it.
///
/// The bar appears for large files, on a terminal only, and is wiped when this goes. An algorithm that does
/// not report progress has a bar that stays empty.
class Progress
{
public:
  /// path names the file that is read; its size decides whether there is a bar.
  Progress(vtkAlgorithm& algorithm, const std::string& path);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

private:
  class Observer;
  void update(vtkAlgorithm& algorithm, double fraction);

  vtkAlgorithm& mAlgorithm;
  unsigned long mTag;
  ProgressBar mBar;
};
