// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "FileCheck.h"

#include "Mesh.h"
#include "NetcdfSize.h"
#include "PlyCheck.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>

namespace {

constexpr std::size_t kHeadLength = 5000; // bytes

/// What the checks look at.
struct File
{
  std::string path;
  std::uintmax_t size = 0;
  std::string head; ///< the first bytes
};

MeshFormat format_of(const std::string& path)
{
  static const std::map<std::string, MeshFormat> kFormats = {{".vtu", MeshFormat::XmlUnstructuredGrid},
                                                             {".vtp", MeshFormat::XmlPolyData},
                                                             {".vtm", MeshFormat::XmlMultiBlock},
                                                             {".vtk", MeshFormat::LegacyVtk},
                                                             {".stl", MeshFormat::Stl},
                                                             {".ply", MeshFormat::Ply},
                                                             {".obj", MeshFormat::Obj},
                                                             {".e", MeshFormat::Exodus},
                                                             {".exo", MeshFormat::Exodus},
                                                             {".ex2", MeshFormat::Exodus}};
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  const auto found = kFormats.find(extension);
  if (found == kFormats.end()) {
    throw MeshError(extension.empty() ? "has no extension that names its format"
                                      : "unknown format '" + extension + "'");
  }
  return found->second;
}

[[noreturn]] void throw_errno()
{
  throw MeshError(std::strerror(errno));
}

/// Opening a pipe or a device could wait for ever, so the kind is asked first.
std::uintmax_t size_of_regular_file(const std::string& path)
{
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) {
    throw_errno();
  }
  if (S_ISDIR(status.st_mode)) {
    throw MeshError("is a directory");
  }
  if (!S_ISREG(status.st_mode)) {
    throw MeshError("is not a regular file");
  }
  if (access(path.c_str(), R_OK) != 0) {
    throw_errno();
  }
  if (status.st_size == 0) {
    throw MeshError("is empty");
  }
  return static_cast<std::uintmax_t>(status.st_size);
}

File look_at(const std::string& path)
{
  File file;
  file.path = path;
  file.size = size_of_regular_file(path);
  std::ifstream stream(path, std::ios::binary);
  file.head.resize(kHeadLength);
  stream.read(file.head.data(), static_cast<std::streamsize>(kHeadLength));
  file.head.resize(static_cast<std::size_t>(stream.gcount()));
  if (file.head.empty()) {
    throw MeshError("cannot be read");
  }
  return file;
}

bool starts_with(const File& file, const std::string& text)
{
  return file.head.compare(0, text.size(), text) == 0;
}

/// The reader's own rule for STL files.
bool looks_like_text(const File& file)
{
  return std::all_of(file.head.begin(), file.head.end(), [](char c) { return c > 0; });
}

bool has_zero_byte(const File& file)
{
  return file.head.find('\0') != std::string::npos;
}

void require(bool condition, const char* reason)
{
  if (!condition) {
    throw MeshError(reason);
  }
}

void check_length(const File& file, std::uintmax_t wanted)
{
  if (file.size < wanted) {
    throw MeshError("is cut short: " + std::to_string(file.size) + " of " + std::to_string(wanted) +
                    " bytes are there");
  }
}

/// A VTK XML file of this type. That it is whole the parser finds out.
void check_xml(const File& file, const std::string& type)
{
  const auto tag = file.head.find("<VTKFile");
  require(tag != std::string::npos, "is not a VTK XML file");
  const std::string attributes = file.head.substr(tag, file.head.find('>', tag) - tag);
  const auto has_type = [&attributes](char quote, const std::string& name) {
    return attributes.find("type=" + (quote + name) + quote) != std::string::npos;
  };
  if (!has_type('"', type) && !has_type('\'', type)) {
    throw MeshError("is a VTK XML file, but not of the type " + type);
  }
}

/// A binary file is a header of 80 bytes, the number of triangles and 50 bytes for each. Too small a number
/// is common, and then the file's length counts.
void check_stl(const File& file)
{
  if (looks_like_text(file)) {
    return; // the parser finds out
  }
  require(file.size >= 84, "is cut short in its header");
  std::uintmax_t triangles = 0;
  for (std::size_t i = 84; i-- > 80;) {
    triangles = triangles * 256 + static_cast<unsigned char>(file.head[i]);
  }
  check_length(file, 84 + 50 * triangles);
}

void check_exodus(const File& file)
{
  static const std::string kHdf5 = "\x89HDF\r\n\x1a\n"; // the library below knows whether one is whole
  require(starts_with(file, "CDF") || starts_with(file, kHdf5), "is not an Exodus file");
  if (starts_with(file, "CDF")) {
    std::ifstream stream(file.path, std::ios::binary);
    check_length(file, netcdf_size(stream, file.size));
  }
}

void check_ply_file(const File& file)
{
  require(starts_with(file, "ply"), "is not a PLY file");
  std::ifstream stream(file.path, std::ios::binary);
  check_ply(stream, file.size);
}

void check_content(const File& file, MeshFormat format)
{
  switch (format) {
  case MeshFormat::XmlUnstructuredGrid:
    return check_xml(file, "UnstructuredGrid");
  case MeshFormat::XmlPolyData:
    return check_xml(file, "PolyData");
  case MeshFormat::XmlMultiBlock:
    return check_xml(file, "vtkMultiBlockDataSet");
  case MeshFormat::LegacyVtk:
    return require(starts_with(file, "# vtk DataFile"), "is not a VTK file");
  case MeshFormat::Stl:
    return check_stl(file);
  case MeshFormat::Ply:
    return check_ply_file(file);
  case MeshFormat::Obj:
    return require(!has_zero_byte(file), "is not an OBJ file");
  case MeshFormat::Exodus:
    return check_exodus(file);
  }
}

} // namespace

MeshFormat check_file(const std::string& path)
{
  const MeshFormat format = format_of(path);
  check_content(look_at(path), format);
  return format;
}
