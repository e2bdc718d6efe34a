// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "FileFormat.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace {

struct NamedFormat
{
  const char* extension;
  FileFormat format;
};

const NamedFormat kFormats[] = {{".png", GView::PNG},   {".jpg", GView::JPEG},  {".jpeg", GView::JPEG},
                                {".bmp", GView::BMP},   {".pnm", GView::PNM},   {".ppm", GView::PNM},
                                {".tif", GView::TIFF},  {".tiff", GView::TIFF}, {".ps", GView::POSTSCRIPT},
                                {".wrl", GView::VRML},  {".vrml", GView::VRML}, {".obj", GView::OBJ},
                                {".oogl", GView::OOGL}, {".iv", GView::IV}};

std::string extensions(bool of_images)
{
  std::string text;
  for (const NamedFormat& known : kFormats) {
    if (is_image(known.format) == of_images) {
      text += (text.empty() ? "" : " ") + std::string(known.extension);
    }
  }
  return text;
}

} // namespace

std::optional<FileFormat> format_of(const std::string& path)
{
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  const auto* found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                   [&](const NamedFormat& known) { return extension == known.extension; });
  return found == std::end(kFormats) ? std::nullopt : std::optional(found->format);
}

bool is_image(const FileFormat& format)
{
  return std::holds_alternative<GView::ImageFileType>(format);
}

std::string image_extensions()
{
  return extensions(true);
}

std::string scene_extensions()
{
  return extensions(false);
}
