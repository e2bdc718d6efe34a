// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Progress.h"

#include "AppUtil.h"

#include <vtkAlgorithm.h>
#include <vtkCommand.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>

#include <cstdint>
#include <filesystem>
#include <string>

namespace {

constexpr std::uintmax_t kLargeFile = 8'000'000; // bytes; smaller ones are read in the blink of an eye

bool is_large(const std::string& path)
{
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  return !error && size >= kLargeFile;
}

/// What the bar says; nothing for a small file, which needs none.
std::string title_of(const std::string& path)
{
  return is_large(path) ? std::filesystem::path(path).filename().string() : "";
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

Progress::Progress(vtkAlgorithm& algorithm, const std::string& path)
    : mAlgorithm(algorithm), mBar(title_of(path))
{
  vtkNew<Observer> observer;
  observer->mProgress = this;
  mTag = algorithm.AddObserver(vtkCommand::ProgressEvent, observer);
}

Progress::~Progress()
{
  mAlgorithm.RemoveObserver(mTag);
}

void Progress::update(vtkAlgorithm& algorithm, double fraction)
{
  if (AppUtil::instance()->interrupt()) {
    algorithm.SetAbortExecute(1);
  }
  mBar.draw(fraction);
}
