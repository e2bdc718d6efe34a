// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PlyCheck.h"

#include "Mesh.h"

#include <cstdlib>
#include <istream>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Property
{
  std::string name;
  int count_size = 0; ///< bytes of the length of a list; 0 for a single value
  int value_size = 0; ///< bytes of one value
};

struct Element
{
  std::string name;
  std::uint64_t count = 0;
  std::vector<Property> properties;
};

struct Header
{
  bool is_ascii = false;
  bool is_big_endian = false;
  std::vector<Element> elements;
};

// --- Header: "format FORMAT VERSION", "element NAME COUNT", "property TYPE NAME", "property list COUNT_TYPE
// TYPE NAME" and others, line by line until "end_header".

int size_of_type(const std::string& type)
{
  static const std::map<std::string, int> kSizes = {
      {"char", 1},  {"uchar", 1},  {"short", 2},   {"ushort", 2}, {"int", 4},   {"uint", 4},
      {"float", 4}, {"double", 8}, {"int8", 1},    {"uint8", 1},  {"int16", 2}, {"uint16", 2},
      {"int32", 4}, {"uint32", 4}, {"float32", 4}, {"float64", 8}};
  const auto found = kSizes.find(type);
  if (found == kSizes.end()) {
    throw MeshError("has a property of the unknown type '" + type + "'");
  }
  return found->second;
}

Property read_property(std::istringstream& words)
{
  Property property;
  std::string type;
  words >> type;
  if (type == "list") {
    words >> type;
    property.count_size = size_of_type(type);
    words >> type;
  }
  property.value_size = size_of_type(type);
  words >> property.name;
  return property;
}

Element read_element(std::istringstream& words)
{
  Element element;
  words >> element.name >> element.count;
  if (!words) {
    throw MeshError("has a damaged header");
  }
  return element;
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
    header.is_big_endian = format == "binary_big_endian";
  } else if (keyword == "element") {
    header.elements.push_back(read_element(words));
  } else if (keyword == "property" && !header.elements.empty()) {
    header.elements.back().properties.push_back(read_property(words));
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

const Element& find_element(const Header& header, const std::string& name)
{
  for (const Element& element : header.elements) {
    if (element.name == name) {
      return element;
    }
  }
  throw MeshError("has no element '" + name + "'");
}

bool is_corner_list(const Property& property)
{
  return property.count_size > 0 && (property.name == "vertex_indices" || property.name == "vertex_index");
}

bool has_coordinate(const Element& vertex, const std::string& name)
{
  for (const Property& property : vertex.properties) {
    if (property.name == name && property.count_size == 0) {
      return true;
    }
  }
  return false;
}

/// The reader takes the absence of what it needs badly.
void check_names(const Header& header)
{
  const Element& vertex = find_element(header, "vertex");
  for (const char* name : {"x", "y", "z"}) {
    if (!has_coordinate(vertex, name)) {
      throw MeshError(std::string("has vertices without the coordinate ") + name);
    }
  }
  bool has_corners = false;
  for (const Property& property : find_element(header, "face").properties) {
    has_corners = has_corners || is_corner_list(property);
  }
  if (!has_corners) {
    throw MeshError("has faces without a list of vertices");
  }
}

// --- Values: one element after the other

/// Hands out the numbers of a file in their order. What is not there is no number.
class Values
{
public:
  virtual ~Values() = default;
  virtual void start_element() = 0;

  /// The next number, which has so many bytes in a binary file.
  virtual std::optional<double> next(int size) = 0;
};

/// Each element is a line.
class TextValues : public Values
{
public:
  explicit TextValues(std::istream& stream) : mStream(stream) {}

  void start_element() override
  {
    mLine.clear();
    std::getline(mStream >> std::ws, mLine);
    mNext = mLine.c_str();
  }

  std::optional<double> next(int /*size*/) override
  {
    char* end = nullptr;
    const double value = std::strtod(mNext, &end);
    const bool is_number = end != mNext;
    mNext = end;
    return is_number ? std::make_optional(value) : std::nullopt;
  }

private:
  std::istream& mStream;
  std::string mLine;
  const char* mNext = nullptr;
};

/// Whole numbers only: the check does not look at others. Negative ones come out as very large ones.
class BinaryValues : public Values
{
public:
  BinaryValues(std::istream& stream, bool is_big_endian) : mStream(stream), mIsBigEndian(is_big_endian) {}

  void start_element() override {}

  std::optional<double> next(int size) override
  {
    char raw[8] = {};
    if (!mStream.read(raw, size)) {
      return std::nullopt;
    }
    std::uint64_t value = 0;
    for (int i = 0; i < size; ++i) {
      const int place = mIsBigEndian ? i : size - 1 - i;
      value = value * 256 + static_cast<unsigned char>(raw[place]);
    }
    return static_cast<double>(value);
  }

private:
  std::istream& mStream;
  bool mIsBigEndian;
};

/// Walks through all elements.
class Walk
{
public:
  Walk(Values& values, const Header& header)
      : mValues(values), mVertices(static_cast<double>(find_element(header, "vertex").count))
  {}

  void check(const Element& element)
  {
    for (std::uint64_t i = 0; i < element.count; ++i) {
      mValues.start_element();
      for (const Property& property : element.properties) {
        if (!check_property(element, property)) {
          throw MeshError("is cut short or damaged at " + element.name + " " + std::to_string(i) + " of " +
                          std::to_string(element.count));
        }
      }
    }
  }

private:
  /// False when the file does not hold it.
  bool check_property(const Element& element, const Property& property)
  {
    if (property.count_size == 0) {
      return mValues.next(property.value_size).has_value();
    }
    constexpr double kLongest = 255; // the reader keeps the length in a byte
    const auto length = mValues.next(property.count_size);
    if (!length || !(*length >= 0.0 && *length <= kLongest)) {
      return false;
    }
    for (int left = static_cast<int>(*length); left > 0; --left) {
      const auto value = mValues.next(property.value_size);
      if (!value || (element.name == "face" && is_corner_list(property) && !is_vertex(*value))) {
        return false;
      }
    }
    return true;
  }

  bool is_vertex(double number) const { return number >= 0.0 && number < mVertices; }

  Values& mValues;
  double mVertices;
};

} // namespace

void check_ply(std::istream& stream, std::uintmax_t file_size)
{
  const Header header = read_header(stream);
  check_names(header);
  for (const Element& element : header.elements) {
    if (element.count > file_size) { // each has a byte at least: said before the file is walked through
      throw MeshError("is cut short: it cannot hold " + std::to_string(element.count) + " " + element.name +
                      " elements");
    }
  }
  TextValues text(stream);
  BinaryValues binary(stream, header.is_big_endian);
  Walk walk(header.is_ascii ? static_cast<Values&>(text) : binary, header);
  for (const Element& element : header.elements) {
    walk.check(element);
  }
}
