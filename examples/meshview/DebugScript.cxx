// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "DebugScript.h"

#include "BrantBox.h"
#include "BrantColorTable.h"
#include "BrantString.h"
#include "Console.h"
#include "GfxDebug.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <numeric>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace {

constexpr double kLargest = 1e18;          // as in meshes
constexpr std::size_t kLongestLabel = 200; // bytes; what is drawn of it takes memory
constexpr std::size_t kMostReports = 10;   // of faulty lines
constexpr std::size_t kLargestFile = 64;   // MiB; some devices have no end

/// What is wrong with a line.
struct Fault : std::runtime_error
{
  using std::runtime_error::runtime_error;
};

/// What stands behind the name of a call.
struct Arguments
{
  int color = 0;
  std::vector<BrantVector> points;
  std::string text;

  [[nodiscard]] int count() const { return static_cast<int>(points.size()); }
  /// One run through all points.
  [[nodiscard]] std::vector<int> list() const
  {
    std::vector<int> list(points.size() + 1, count());
    std::iota(list.begin() + 1, list.end(), 0);
    return list;
  }
};

constexpr std::size_t kAny = 1'000'000; // points

/// One kind of line.
struct Rule
{
  const char* name;
  const char* arguments; ///< for people
  bool has_color;
  bool has_text;
  std::size_t least_points;
  std::size_t most_points;
  bool is_seen; ///< adds its points to the drawing
  void (*draw)(const Arguments&);
};

void draw_box(const Arguments& a)
{
  BrantBox box(a.points[0], a.points[1]);
  GfxDebug::draw_box(box, a.color);
}

void zoom(const Arguments& a)
{
  BrantBox box(a.points[0], a.points[1]);
  GfxDebug::zoom(box);
}

void draw_label(const Arguments& a)
{
  const BrantVector& p = a.points[0];
  GfxDebug::draw_label(a.text.c_str(), static_cast<float>(p.x()), static_cast<float>(p.y()),
                       static_cast<float>(p.z()), a.color);
}

const Rule kRules[] = {
    {"point", "COLOUR X Y Z", true, false, 1, 1, true,
     [](const Arguments& a) { GfxDebug::draw_point(a.points[0], a.color); }},
    {"line", "COLOUR X Y Z X Y Z", true, false, 2, 2, true,
     [](const Arguments& a) { GfxDebug::draw_line(a.points[0], a.points[1], a.color); }},
    {"vector", "COLOUR X Y Z X Y Z", true, false, 2, 2, true,
     [](const Arguments& a) { GfxDebug::draw_vector(a.points[0], a.points[1], a.color); }},
    {"box", "COLOUR X Y Z X Y Z", true, false, 2, 2, true, draw_box},
    {"polyline", "COLOUR X Y Z X Y Z …", true, false, 2, kAny, true,
     [](const Arguments& a) { GfxDebug::draw_polyline(a.points.data(), a.count(), a.color); }},
    {"polygon", "COLOUR X Y Z X Y Z X Y Z …", true, false, 3, kAny, true,
     [](const Arguments& a) { GfxDebug::draw_polygon(a.points.data(), a.count(), a.color, 0, false); }},
    {"filled-polygon", "COLOUR X Y Z X Y Z X Y Z …", true, false, 3, kAny, true,
     [](const Arguments& a) { GfxDebug::draw_polygon(a.points.data(), a.count(), a.color, 0, true); }},
    {"quad", "COLOUR and four points", true, false, 4, 4, true,
     [](const Arguments& a) { GfxDebug::draw_quad(a.points.data(), a.color); }},
    {"tri", "COLOUR and three points", true, false, 3, 3, true,
     [](const Arguments& a) { GfxDebug::draw_tri(a.points.data(), a.color); }},
    {"label", "COLOUR X Y Z TEXT", true, true, 1, 1, true, draw_label},
    {"highlight-points", "X Y Z …", false, false, 1, kAny, true,
     [](const Arguments& a) { GfxDebug::highlight_points(a.count(), a.points.data()); }},
    {"highlight-polyline", "X Y Z X Y Z …", false, false, 2, kAny, true,
     [](const Arguments& a) {
       GfxDebug::highlight_polylines(a.count(), a.points.data(), a.count() + 1, a.list().data());
     }},
    {"highlight-polygon", "X Y Z X Y Z X Y Z …", false, false, 3, kAny, true,
     [](const Arguments& a) {
       GfxDebug::highlight_polygons(a.count(), a.points.data(), a.count() + 1, a.list().data());
     }},
    {"zoom", "X Y Z X Y Z", false, false, 2, 2, false, zoom},
    {"clear", "", false, false, 0, 0, false, [](const Arguments&) { GfxDebug::clear(); }},
};

/// What a camera must show to show the points; the points themselves but for boxes.
std::vector<BrantVector> extent_of(const Rule& rule, const std::vector<BrantVector>& points)
{
  if (rule.draw != draw_box) {
    return points;
  }
  std::vector<BrantVector> corners;
  for (std::size_t i = 0; i < 8; ++i) {
    corners.emplace_back(points[i & 1].x(), points[(i >> 1) & 1].y(), points[(i >> 2) & 1].z());
  }
  return corners;
}

std::string usage(const Rule& rule)
{
  return std::string(rule.name) + (*rule.arguments != 0 ? " " : "") + rule.arguments;
}

/// The words of a line, one after the other.
class Words
{
public:
  explicit Words(std::string_view line) : mRest(line) { skip_blanks(); }

  [[nodiscard]] bool is_empty() const { return mRest.empty(); }
  [[nodiscard]] std::string rest() const { return std::string(mRest); }

  std::string next()
  {
    const std::size_t end = std::min(mRest.find_first_of(kBlanks), mRest.size());
    std::string word(mRest.substr(0, end));
    mRest.remove_prefix(end);
    skip_blanks();
    return word;
  }

private:
  static constexpr const char* kBlanks = " \t\r";

  void skip_blanks()
  {
    mRest.remove_prefix(std::min(mRest.find_first_not_of(kBlanks), mRest.size()));
    const std::size_t last = mRest.find_last_not_of(kBlanks);
    mRest = mRest.substr(0, last == std::string_view::npos ? 0 : last + 1);
  }

  std::string_view mRest;
};

/// As much of a word as a message should have.
std::string quoted(const std::string& word)
{
  constexpr std::size_t kMost = 40;
  return "'" + (word.size() > kMost ? word.substr(0, kMost) + "…" : word) + "'";
}

template<class Number>
std::optional<Number> number_in(const std::string& word)
{
  Number value = 0;
  const char* end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, value);
  return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

/// By id or name.
int color_in(const std::string& word)
{
  const int count = BrantColorTable::num_fixed_colors() + BrantColorTable::num_variable_colors();
  const auto given = number_in<int>(word);
  for (int id = 0; id < count; ++id) {
    BrantString name;
    if (given == id || (BrantColorTable::color_id_to_string(id, name) && name.str() == word)) {
      return id;
    }
  }
  throw Fault(quoted(word) + " is not a colour: a name, or an id from 0 to " + std::to_string(count - 1));
}

double coordinate_in(const std::string& word)
{
  const auto value = number_in<double>(word);
  if (!value || !(std::abs(*value) <= kLargest)) { // this way round NaN is none
    throw Fault(quoted(word) + " is not a coordinate");
  }
  return *value;
}

BrantVector point_in(Words& words)
{
  double xyz[3];
  for (double& coordinate : xyz) {
    if (words.is_empty()) {
      throw Fault("the last point is not whole");
    }
    coordinate = coordinate_in(words.next());
  }
  return BrantVector(xyz);
}

/// How many bytes of UTF-8 follow one that begins a character; none for a byte that cannot.
std::optional<int> following_bytes(unsigned char first)
{
  if (first < 0x80) {
    return first != 0 ? std::optional(0) : std::nullopt;
  }
  if (first < 0xc2 || first > 0xf4) {
    return std::nullopt;
  }
  return first < 0xe0 ? 1 : first < 0xf0 ? 2 : 3;
}

/// Nothing is drawn of other text.
bool is_utf8(const std::string& text)
{
  int missing = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool follows = (byte & 0xc0U) == 0x80;
    const auto following = following_bytes(byte);
    if (follows != (missing > 0) || (!follows && !following)) {
      return false;
    }
    missing = follows ? missing - 1 : *following;
  }
  return missing == 0;
}

std::string text_in(const Words& words)
{
  std::string text = words.rest();
  if (text.empty() || text.size() > kLongestLabel) {
    throw Fault("its text must have 1 to " + std::to_string(kLongestLabel) + " bytes");
  }
  if (!is_utf8(text)) {
    throw Fault("its text is not UTF-8");
  }
  return text;
}

Arguments arguments_in(Words& words, const Rule& rule)
{
  Arguments arguments;
  if (rule.has_color) {
    arguments.color = color_in(words.next());
  }
  const std::size_t most = rule.has_text ? rule.least_points : rule.most_points;
  while (!words.is_empty() && arguments.points.size() < most) {
    arguments.points.push_back(point_in(words));
  }
  if (rule.has_text) {
    arguments.text = text_in(words);
  } else if (!words.is_empty() || arguments.points.size() < rule.least_points) {
    throw Fault(words.is_empty() ? "there are too few points" : quoted(words.next()) + " is too much");
  }
  return arguments;
}

const Rule& rule_for(const std::string& name)
{
  const auto* found = std::find_if(std::begin(kRules), std::end(kRules),
                                   [&name](const Rule& rule) { return rule.name == name; });
  if (found == std::end(kRules)) {
    throw Fault(quoted(name) + " is not a drawing call");
  }
  return *found;
}

/// The whole file, which may be a pipe.
std::string text_of(const std::string& path)
{
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) {
    throw Fault("is a directory");
  }
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw Fault("cannot be read");
  }
  std::string text;
  std::array<char, 65536> some;
  while (file.read(some.data(), some.size()) || file.gcount() > 0) {
    text.append(some.data(), static_cast<std::size_t>(file.gcount()));
    if (text.size() > kLargestFile << 20U) {
      throw Fault("is larger than " + std::to_string(kLargestFile) + " MiB");
    }
  }
  return text;
}

} // namespace

DebugScript::DebugScript(const std::string& path)
{
  try {
    read(path, text_of(path));
  } catch (const Fault& fault) {
    Console::complain(path, fault.what());
    ++mFaults;
  }
}

void DebugScript::read(const std::string& path, const std::string& text)
{
  std::istringstream lines(text);
  std::string line;
  for (std::size_t number = 1; std::getline(lines, line); ++number) {
    try {
      read_line(line);
    } catch (const Fault& fault) {
      report(path, number, fault.what());
    }
  }
  if (mFaults > kMostReports) {
    Console::complain(path, std::to_string(mFaults - kMostReports) + " more lines are faulty");
  }
}

void DebugScript::read_line(const std::string& line)
{
  Words words(line);
  if (words.is_empty() || words.rest().front() == '#') {
    return;
  }
  const Rule& rule = rule_for(words.next());
  Arguments arguments;
  try {
    arguments = arguments_in(words, rule);
  } catch (const Fault& fault) {
    throw Fault(std::string(fault.what()) + "; the call is: " + usage(rule));
  }
  if (rule.name == std::string_view("clear")) {
    mPoints.clear();
  }
  if (rule.is_seen) {
    const std::vector<BrantVector> extent = extent_of(rule, arguments.points);
    mPoints.insert(mPoints.end(), extent.begin(), extent.end());
  }
  mCalls.emplace_back([draw = rule.draw, arguments = std::move(arguments)] { draw(arguments); });
}

void DebugScript::report(const std::string& path, std::size_t number, const std::string& problem)
{
  if (++mFaults <= kMostReports) {
    Console::complain(path, "line " + std::to_string(number) + ": " + problem);
  }
}

void DebugScript::run() const
{
  for (const auto& call : mCalls) {
    call();
  }
}

std::string debug_script_help()
{
  std::string help;
  for (const Rule& rule : kRules) {
    help += "  " + usage(rule) + "\n";
  }
  return help;
}
