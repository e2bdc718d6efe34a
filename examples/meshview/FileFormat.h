// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GView.h" // the types

#include <optional>
#include <string>
#include <variant>

/// A kind of file that a view can be written to: a picture or a scene.
using FileFormat = std::variant<GView::ImageFileType, GView::ModelFileType>;

/// The format that a file's extension names, in lower or upper case; none for an unknown one.
[[nodiscard]] std::optional<FileFormat> format_of(const std::string& path);

[[nodiscard]] bool is_image(const FileFormat& format);

/// The known extensions, ".png .jpg …".
[[nodiscard]] std::string image_extensions();
[[nodiscard]] std::string scene_extensions();
