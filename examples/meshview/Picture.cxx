// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Picture.h"

#include <vtkNew.h>
#include <vtkPNGWriter.h>
#include <vtkRenderWindow.h>
#include <vtkUnsignedCharArray.h>
#include <vtkWindowToImageFilter.h>

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

/// VTK's writer to a file does not tell when the disk is full.
vtkSmartPointer<vtkUnsignedCharArray> encode(vtkRenderWindow& window)
{
  vtkNew<vtkWindowToImageFilter> grabber;
  grabber->SetInput(&window);
  grabber->ReadFrontBufferOff();
  grabber->ShouldRerenderOff();
  vtkNew<vtkPNGWriter> writer;
  writer->SetInputConnection(grabber->GetOutputPort());
  writer->WriteToMemoryOn();
  writer->Write();
  return writer->GetResult();
}

/// 0, or the number of the error.
int write_file(const std::string& path, const vtkUnsignedCharArray& bytes)
{
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) {
    return errno;
  }
  auto& data = const_cast<vtkUnsignedCharArray&>(bytes);
  const auto size = static_cast<std::size_t>(data.GetNumberOfValues());
  errno = 0;
  const bool is_written = std::fwrite(data.GetPointer(0), 1, size, file) == size;
  const int write_error = errno;
  const bool is_closed = std::fclose(file) == 0; // what is buffered may fail only now
  return is_written && is_closed ? 0 : (is_written ? errno : write_error);
}

} // namespace

std::string picture_problem(const std::string& path)
{
  std::error_code error;
  const fs::path parent = fs::path(path).has_parent_path() ? fs::path(path).parent_path() : fs::path(".");
  if (fs::path(path).extension() != ".png") {
    return "the name of a picture ends in .png";
  }
  if (!fs::is_directory(parent, error)) {
    return "there is no folder " + parent.string();
  }
  const bool exists = fs::exists(path, error);
  if (fs::is_directory(path, error)) {
    return "is a directory";
  }
  return access((exists ? path : parent.string()).c_str(), W_OK) == 0 ? "" : std::strerror(errno);
}

std::string write_picture(vtkRenderWindow& window, const std::string& path)
{
  const auto bytes = encode(window);
  if (bytes == nullptr || bytes->GetNumberOfValues() == 0) {
    return "the picture could not be made";
  }
  const int error = write_file(path, *bytes);
  std::error_code ignored;
  if (error != 0 && fs::is_regular_file(fs::symlink_status(path, ignored))) {
    fs::remove(path, ignored);
  }
  return error == 0 ? "" : std::strerror(error);
}
