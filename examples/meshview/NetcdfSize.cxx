// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "NetcdfSize.h"

#include "Mesh.h"

#include <algorithm>
#include <istream>
#include <vector>

// The header, all numbers big-endian and all strings padded to 4 bytes:
//   "CDF" version, number of records, list of dimensions (name, length), list of attributes, list of
//   variables (name, list of dimension numbers, list of attributes, type, size, position of the data).
// A list is a tag, a count and the elements. Counts have 8 bytes in version 5, positions in versions 2 and 5.
// A variable whose first dimension has the length 0 has one piece per record; the pieces of all such
// variables for one record follow each other, padded to 4 bytes each, except when there is but one such
// variable.

namespace {

struct Variable
{
  std::uint64_t begin = 0;
  std::uint64_t bytes = 0; ///< of the whole, or of one record
  bool has_records = false;
};

class Header
{
public:
  Header(std::istream& stream, std::uint64_t file_size) : mStream(stream), mFileSize(file_size) {}

  std::uint64_t required_size()
  {
    skip(3);
    mVersion = static_cast<int>(number(1));
    const std::uint64_t records = count();
    read_dimensions();
    skip_attributes();
    const std::vector<Variable> variables = read_variables();
    const bool is_streaming = records == (mVersion == 5 ? ~std::uint64_t(0) : 0xffffffffU);
    return end_of(variables, is_streaming ? 0 : records);
  }

private:
  [[noreturn]] static void fail() { throw MeshError("has a damaged header"); }

  /// Nothing that a sound header counts or measures is larger than the file, by far.
  std::uint64_t sane(std::uint64_t number) const
  {
    if (number > 1024 * mFileSize) {
      fail();
    }
    return number;
  }

  std::uint64_t number(int bytes)
  {
    std::uint64_t value = 0;
    for (int i = 0; i < bytes; ++i) {
      const int byte = mStream.get();
      if (byte < 0) {
        throw MeshError("is cut short in its header");
      }
      value = value * 256 + static_cast<std::uint64_t>(byte);
    }
    return value;
  }

  std::uint64_t count() { return number(mVersion == 5 ? 8 : 4); }

  void skip(std::uint64_t bytes) { mStream.ignore(static_cast<std::streamsize>(sane(bytes))); }

  static std::uint64_t padded(std::uint64_t bytes) { return (bytes + 3) / 4 * 4; }

  void skip_name() { skip(padded(sane(count()))); }

  static std::uint64_t size_of_type(std::uint64_t type)
  {
    static const int kSizes[] = {1, 1, 2, 4, 4, 8, 1, 2, 4, 8, 8}; // from type 1 on
    if (type < 1 || type > std::size(kSizes)) {
      fail();
    }
    return static_cast<std::uint64_t>(kSizes[type - 1]);
  }

  std::uint64_t start_list()
  {
    number(4); // the tag, 0 for an empty list
    return sane(count());
  }

  void read_dimensions()
  {
    for (std::uint64_t left = start_list(); left > 0; --left) {
      skip_name();
      mDimensions.push_back(count());
    }
  }

  void skip_attributes()
  {
    for (std::uint64_t left = start_list(); left > 0; --left) {
      skip_name();
      const std::uint64_t size = size_of_type(number(4));
      skip(padded(size * sane(count())));
    }
  }

  /// The dimensions multiplied; the record dimension, which may only come first, counts as 1.
  std::uint64_t read_shape(bool& has_records)
  {
    std::uint64_t product = 1;
    for (std::uint64_t left = sane(count()), i = 0; i < left; ++i) {
      const std::uint64_t dimension = count();
      if (dimension >= mDimensions.size()) {
        fail();
      }
      const std::uint64_t length = mDimensions[dimension];
      has_records = has_records || (i == 0 && length == 0);
      product = sane(product * (i == 0 && length == 0 ? 1 : sane(length)));
    }
    return product;
  }

  std::vector<Variable> read_variables()
  {
    std::vector<Variable> variables;
    for (std::uint64_t left = start_list(); left > 0; --left) {
      Variable variable;
      skip_name();
      const std::uint64_t values = read_shape(variable.has_records);
      skip_attributes();
      variable.bytes = values * size_of_type(number(4));
      count(); // the size, which says the same
      variable.begin = number(mVersion == 1 ? 4 : 8);
      variables.push_back(variable);
    }
    return variables;
  }

  static std::uint64_t record_size(const std::vector<Variable>& variables)
  {
    std::uint64_t sum = 0;
    std::uint64_t last = 0;
    int number_of_them = 0;
    for (const Variable& variable : variables) {
      if (variable.has_records) {
        ++number_of_them;
        last = variable.bytes;
        sum += padded(variable.bytes);
      }
    }
    return number_of_them == 1 ? last : sum;
  }

  std::uint64_t end_of(const std::vector<Variable>& variables, std::uint64_t records) const
  {
    const std::uint64_t step = sane(record_size(variables));
    std::uint64_t end = 0;
    for (const Variable& variable : variables) {
      const std::uint64_t pieces = variable.has_records ? sane(records) : 1;
      if (pieces > 0) {
        end = std::max(end, variable.begin + (pieces - 1) * step + variable.bytes);
      }
    }
    return end;
  }

  std::istream& mStream;
  std::uint64_t mFileSize;
  int mVersion = 1;
  std::vector<std::uint64_t> mDimensions;
};

} // namespace

std::uintmax_t netcdf_size(std::istream& stream, std::uintmax_t file_size)
{
  return Header(stream, file_size).required_size();
}
