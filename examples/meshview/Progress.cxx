// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Progress.h"

#include "AppUtil.h"
#include "Console.h"

#include <vtkAlgorithm.h>
#include <vtkCommand.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>

namespace {

constexpr std::uintmax_t kLargeFile = 8'000'000; // bytes; smaller ones are read in the blink of an eye
constexpr std::size_t kTitleLength = 30;         // characters, so that the bar fits a line of 80
constexpr int kBarLength = 30;

bool is_large(const std::string& path)
{
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  return !error && size >= kLargeFile;
}

void write_text(const std::string& text)
{
  [[maybe_unused]] const auto written = write(Console::error_descriptor(), text.data(), text.size());
}

} // namespace

class Progress::Observer : public vtkCommand
{
public:
  static Observer* New() { return new Observer; }
  vtkTypeMacro(Observer, vtkCommand)

  void Execute(vtkObject* caller, unsigned long /*event*/, void* call_data) override
  {
    auto* algorithm = vtkAlgorithm::SafeDownCast(caller);
    if (mProgress != nullptr && algorithm != nullptr && call_data != nullptr) {
      mProgress->update(*algorithm, *static_cast<double*>(call_data));
    }
  }

  Progress* mProgress = nullptr;

protected:
  Observer() = default;
};

Progress::Progress(vtkAlgorithm& algorithm, const std::string& path) : mAlgorithm(algorithm)
{
  if (Console::has_terminal() && is_large(path)) {
    mTitle = std::filesystem::path(path).filename().string().substr(0, kTitleLength);
  }
  vtkNew<Observer> observer;
  observer->mProgress = this;
  mTag = algorithm.AddObserver(vtkCommand::ProgressEvent, observer);
  draw(0);
}

Progress::~Progress()
{
  mAlgorithm.RemoveObserver(mTag);
  wipe();
}

void Progress::update(vtkAlgorithm& algorithm, double fraction)
{
  if (AppUtil::instance()->interrupt()) {
    algorithm.SetAbortExecute(1);
  }
  draw(static_cast<int>(100.0 * std::clamp(fraction, 0.0, 1.0)));
}

void Progress::draw(int percent)
{
  if (mTitle.empty() || percent == mShownPercent) {
    return;
  }
  mShownPercent = percent;
  const auto full = static_cast<std::size_t>(percent * kBarLength / 100);
  const std::string bar = std::string(full, '#') + std::string(kBarLength - full, '-');
  write_text("\r" + mTitle + " [" + bar + "] " + std::to_string(percent) + " %");
}

void Progress::wipe() const
{
  if (!mTitle.empty()) {
    write_text(Console::wipe_line());
  }
}
