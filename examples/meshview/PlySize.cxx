// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PlySize.h"

#include "Mesh.h"

#include <istream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Element
{
  std::string name;
  std::uint64_t count = 0;
  std::uint64_t least_bytes = 0; ///< of one, in a binary file
  std::string properties;        ///< names with a blank before and after each
};

struct Header
{
  bool is_ascii = false;
  std::vector<Element> elements;
};

std::uint64_t size_of_type(const std::string& type)
{
  static const std::map<std::string, std::uint64_t> kSizes = {
      {"char", 1},  {"uchar", 1},  {"short", 2},  {"ushort", 2}, {"int", 4},     {"uint", 4},
      {"float", 4}, {"double", 8}, {"int8", 1},   {"uint8", 1},  {"int16", 2},   {"uint16", 2},
      {"int32", 4}, {"uint32", 4}, {"float32", 4}, {"float64", 8}};
  const auto found = kSizes.find(type);
  if (found == kSizes.end()) {
    throw MeshError("has a property of the unknown type '" + type + "'");
  }
  return found->second;
}

/// "property TYPE NAME" or "property list COUNT_TYPE TYPE NAME".
void add_property(Element& element, std::istringstream& words)
{
  std::string type;
  words >> type;
  const bool is_list = type == "list";
  std::string value_type = type;
  if (is_list) {
    words >> type >> value_type;
  }
  // A face has three corners at least; other lists may be empty.
  const std::uint64_t least_values = is_list ? (element.name == "face" ? 3 : 0) : 0;
  element.least_bytes += size_of_type(type) + least_values * size_of_type(value_type);
  std::string name;
  words >> name;
  element.properties += " " + name + " ";
}

void read_line(Header& header, const std::string& line)
{
  std::istringstream words(line);
  std::string keyword;
  words >> keyword;
  if (keyword == "format") {
    std::string format;
    words >> format;
    header.is_ascii = format == "ascii";
  } else if (keyword == "element") {
    Element element;
    words >> element.name >> element.count;
    if (!words) {
      throw MeshError("has a damaged header");
    }
    header.elements.push_back(element);
  } else if (keyword == "property" && !header.elements.empty()) {
    add_property(header.elements.back(), words);
  }
}

Header read_header(std::istream& stream)
{
  Header header;
  for (std::string line; std::getline(stream, line);) {
    if (line.rfind("end_header", 0) == 0) {
      return header;
    }
    read_line(header, line);
  }
  throw MeshError("is cut short in its header");
}

/// The reader takes the absence of what it needs badly.
void require(const Header& header, const std::string& element, const std::vector<std::string>& one_of)
{
  for (const Element& candidate : header.elements) {
    for (const std::string& property : one_of) {
      if (candidate.name == element && candidate.properties.find(" " + property + " ") != std::string::npos) {
        return;
      }
    }
  }
  throw MeshError("has no " + element + " with the property '" + one_of.front() + "'");
}

std::uint64_t count_lines(std::istream& stream)
{
  std::uint64_t lines = 0;
  for (std::string line; std::getline(stream, line);) {
    if (line.find_first_not_of(" \t\r") != std::string::npos) {
      ++lines;
    }
  }
  return lines;
}

void check_enough(std::uint64_t there, std::uint64_t wanted, const char* what)
{
  if (there < wanted) {
    throw MeshError("is cut short: " + std::to_string(there) + " of at least " + std::to_string(wanted) + " " +
                    what + " are there");
  }
}

} // namespace

void check_ply_size(std::istream& stream, std::uintmax_t file_size)
{
  const Header header = read_header(stream);
  for (const char* coordinate : {"x", "y", "z"}) {
    require(header, "vertex", {coordinate});
  }
  require(header, "face", {"vertex_indices", "vertex_index"});
  std::uint64_t lines = 0;
  std::uint64_t bytes = static_cast<std::uint64_t>(stream.tellg());
  for (const Element& element : header.elements) {
    // Checked one by one, the products cannot overflow unnoticed: a count has a byte or a line at least.
    check_enough(file_size, element.count, "bytes");
    lines += element.count;
    bytes += element.count * element.least_bytes;
  }
  if (header.is_ascii) {
    check_enough(count_lines(stream), lines, "lines");
  } else {
    check_enough(file_size, bytes, "bytes");
  }
}
