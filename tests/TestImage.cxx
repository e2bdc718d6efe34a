// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "TestImage.h"

#include <gtest/gtest.h>

#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPNGReader.h>
#include <vtkPNGWriter.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <ostream>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace morrow_test {

void PrintTo(Rgb pixel, std::ostream* out)
{
  *out << '(' << int{pixel.r} << ", " << int{pixel.g} << ", " << int{pixel.b} << ')';
}

int channel_difference(Rgb a, Rgb b) noexcept
{
  const int red = std::abs(a.r - b.r);
  const int green = std::abs(a.g - b.g);
  const int blue = std::abs(a.b - b.b);
  return std::max({red, green, blue});
}

// --- Image ---------------------------------------------------------------------------------------

Image::Image(int width, int height, Rgb fill)
    : mWidth(std::max(width, 0)), mHeight(std::max(height, 0)),
      mPixels(static_cast<std::size_t>(mWidth) * static_cast<std::size_t>(mHeight), fill)
{}

std::size_t Image::index(int x, int y) const
{
  if (x < 0 || y < 0 || x >= mWidth || y >= mHeight) {
    throw std::out_of_range("pixel (" + std::to_string(x) + ", " + std::to_string(y) + ") of a picture of " +
                            std::to_string(mWidth) + " x " + std::to_string(mHeight));
  }
  return static_cast<std::size_t>(y) * static_cast<std::size_t>(mWidth) + static_cast<std::size_t>(x);
}

Rgb Image::at(int x, int y) const
{
  return mPixels[index(x, y)];
}

void Image::set(int x, int y, Rgb pixel)
{
  mPixels[index(x, y)] = pixel;
}

void Image::fill(int x0, int y0, int x1, int y1, Rgb pixel)
{
  for (int y = std::max(y0, 0); y <= std::min(y1, mHeight - 1); ++y) {
    for (int x = std::max(x0, 0); x <= std::min(x1, mWidth - 1); ++x) {
      set(x, y, pixel);
    }
  }
}

bool operator==(const Image& a, const Image& b) noexcept
{
  return a.width() == b.width() && a.height() == b.height() && a.pixels() == b.pixels();
}

bool operator!=(const Image& a, const Image& b) noexcept
{
  return !(a == b);
}

// --- Questions to one picture --------------------------------------------------------------------

PixelPredicate colour_is(Rgb colour, int tolerance)
{
  return [=](Rgb pixel) { return channel_difference(pixel, colour) <= tolerance; };
}

PixelPredicate colour_is_not(Rgb colour, int tolerance)
{
  return [=](Rgb pixel) { return channel_difference(pixel, colour) > tolerance; };
}

int count_pixels(const Image& image, const PixelPredicate& wanted)
{
  return static_cast<int>(std::count_if(image.pixels().begin(), image.pixels().end(), wanted));
}

namespace {

void include_pixel(PixelRegion& region, int x, int y)
{
  const bool first = region.count == 0;
  region.min_x = first ? x : std::min(region.min_x, x);
  region.max_x = first ? x : std::max(region.max_x, x);
  region.min_y = first ? y : std::min(region.min_y, y);
  region.max_y = first ? y : std::max(region.max_y, y);
  region.count += 1;
  region.centre_x += x + 0.5;
  region.centre_y += y + 0.5;
}

} // namespace

PixelRegion find_pixels(const Image& image, const PixelPredicate& wanted)
{
  PixelRegion region;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (wanted(image.at(x, y))) {
        include_pixel(region, x, y);
      }
    }
  }
  if (region.count > 0) {
    region.centre_x /= region.count;
    region.centre_y /= region.count;
  }
  return region;
}

Image crop(const Image& image, int x0, int y0, int x1, int y1)
{
  x0 = std::max(x0, 0);
  y0 = std::max(y0, 0);
  x1 = std::min(x1, image.width() - 1);
  y1 = std::min(y1, image.height() - 1);
  if (x1 < x0 || y1 < y0) {
    return {};
  }
  Image part(x1 - x0 + 1, y1 - y0 + 1);
  part.driver = image.driver;
  for (int y = y0; y <= y1; ++y) {
    for (int x = x0; x <= x1; ++x) {
      part.set(x - x0, y - y0, image.at(x, y));
    }
  }
  return part;
}

// --- Comparing two pictures ----------------------------------------------------------------------

namespace {

constexpr int kWindow = 8;
constexpr int kTile = 32;
constexpr int kTileStep = kTile / 2; // half overlapping, so that a defect on a border is whole in some tile
constexpr int kSmall = 8;
constexpr int kLarge = 48;

std::array<int, 3> channels(Rgb pixel)
{
  return {pixel.r, pixel.g, pixel.b};
}

/// Image::at without its check: the comparison reads each pixel many times, also in unoptimised builds.
const Rgb* row_of(const Image& image, int y)
{
  return image.pixels().data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width());
}

/// Sums over a rectangle that has one corner at the origin; any other rectangle is made of four of them.
struct Sums
{
  std::int64_t a = 0, b = 0, aa = 0, bb = 0, ab = 0;

  Sums& operator+=(const Sums& other)
  {
    a += other.a;
    b += other.b;
    aa += other.aa;
    bb += other.bb;
    ab += other.ab;
    return *this;
  }
  Sums& operator-=(const Sums& other)
  {
    a -= other.a;
    b -= other.b;
    aa -= other.aa;
    bb -= other.bb;
    ab -= other.ab;
    return *this;
  }
};

/// Table of sums over the rectangles [0, x) × [0, y) of one channel of two pictures of one size.
class SumTable
{
public:
  SumTable(const Image& a, const Image& b, std::size_t channel)
      : mStride(static_cast<std::size_t>(a.width()) + 1),
        mSums(mStride * (static_cast<std::size_t>(a.height()) + 1))
  {
    for (int y = 0; y < a.height(); ++y) {
      Sums row;
      const Rgb* row_a = row_of(a, y);
      const Rgb* row_b = row_of(b, y);
      for (int x = 0; x < a.width(); ++x) {
        const std::int64_t va = channels(row_a[x])[channel];
        const std::int64_t vb = channels(row_b[x])[channel];
        row += {va, vb, va * va, vb * vb, va * vb};
        Sums& here = mSums[place(x + 1, y + 1)];
        here = mSums[place(x + 1, y)];
        here += row;
      }
    }
  }

  [[nodiscard]] Sums over(int x, int y, int width, int height) const
  {
    Sums sums = mSums[place(x + width, y + height)];
    sums -= mSums[place(x, y + height)];
    sums -= mSums[place(x + width, y)];
    sums += mSums[place(x, y)];
    return sums;
  }

private:
  [[nodiscard]] std::size_t place(int x, int y) const
  {
    return static_cast<std::size_t>(y) * mStride + static_cast<std::size_t>(x);
  }

  std::size_t mStride;
  std::vector<Sums> mSums;
};

double window_similarity(const Sums& sums, int pixels)
{
  constexpr double c1 = (0.01 * 255.0) * (0.01 * 255.0);
  constexpr double c2 = (0.03 * 255.0) * (0.03 * 255.0);
  const double n = pixels;
  const double mean_a = static_cast<double>(sums.a) / n;
  const double mean_b = static_cast<double>(sums.b) / n;
  const double var_a = static_cast<double>(sums.aa) / n - mean_a * mean_a;
  const double var_b = static_cast<double>(sums.bb) / n - mean_b * mean_b;
  const double covariance = static_cast<double>(sums.ab) / n - mean_a * mean_b;
  return (2.0 * mean_a * mean_b + c1) * (2.0 * covariance + c2) /
         ((mean_a * mean_a + mean_b * mean_b + c1) * (var_a + var_b + c2));
}

double channel_similarity(const Image& a, const Image& b, std::size_t channel)
{
  const SumTable table(a, b, channel);
  const int width = std::min(kWindow, a.width());
  const int height = std::min(kWindow, a.height());
  double total = 0.0;
  for (int y = 0; y + height <= a.height(); ++y) {
    for (int x = 0; x + width <= a.width(); ++x) {
      total += window_similarity(table.over(x, y, width, height), width * height);
    }
  }
  const double windows = static_cast<double>(a.width() - width + 1) * (a.height() - height + 1);
  return total / windows;
}

double structural_similarity(const Image& a, const Image& b)
{
  if (a.empty()) {
    return 1.0;
  }
  return std::min({channel_similarity(a, b, 0), channel_similarity(a, b, 1), channel_similarity(a, b, 2)});
}

double peak_signal_to_noise(const Image& a, const Image& b)
{
  double squares = 0.0;
  for (std::size_t i = 0; i < a.pixels().size(); ++i) {
    const auto ca = channels(a.pixels()[i]);
    const auto cb = channels(b.pixels()[i]);
    for (std::size_t c = 0; c < 3; ++c) {
      squares += static_cast<double>((ca[c] - cb[c]) * (ca[c] - cb[c]));
    }
  }
  if (squares == 0.0) {
    return std::numeric_limits<double>::infinity();
  }
  const double mean = squares / (3.0 * static_cast<double>(a.pixels().size()));
  return 10.0 * std::log10(255.0 * 255.0 / mean);
}

int pixels_over(int limit, const Image& a, const Image& b, int x0, int y0, int x1, int y1)
{
  int count = 0;
  for (int y = y0; y < y1; ++y) {
    const Rgb* row_a = row_of(a, y);
    const Rgb* row_b = row_of(b, y);
    for (int x = x0; x < x1; ++x) {
      count += channel_difference(row_a[x], row_b[x]) > limit ? 1 : 0;
    }
  }
  return count;
}

int worst_tile_over(int limit, const Image& a, const Image& b)
{
  int worst = 0;
  for (int y = 0; y < a.height(); y += kTileStep) {
    for (int x = 0; x < a.width(); x += kTileStep) {
      const int right = std::min(x + kTile, a.width());
      const int top = std::min(y + kTile, a.height());
      worst = std::max(worst, pixels_over(limit, a, b, x, y, right, top));
    }
  }
  return worst;
}

int largest_difference(const Image& a, const Image& b)
{
  int largest = 0;
  for (std::size_t i = 0; i < a.pixels().size(); ++i) {
    largest = std::max(largest, channel_difference(a.pixels()[i], b.pixels()[i]));
  }
  return largest;
}

} // namespace

ImageDifference compare(const Image& actual, const Image& expected)
{
  ImageDifference difference;
  difference.same_size = actual.width() == expected.width() && actual.height() == expected.height();
  if (!difference.same_size) {
    return difference;
  }
  difference.max_channel = largest_difference(actual, expected);
  difference.pixels_over_8 = pixels_over(kSmall, actual, expected, 0, 0, actual.width(), actual.height());
  difference.worst_tile_over_8 = worst_tile_over(kSmall, actual, expected);
  difference.worst_tile_over_48 = worst_tile_over(kLarge, actual, expected);
  difference.psnr = peak_signal_to_noise(actual, expected);
  difference.ssim = structural_similarity(actual, expected);
  return difference;
}

bool accepts(Strictness strictness, const ImageDifference& difference) noexcept
{
  if (!difference.same_size) {
    return false;
  }
  if (strictness == Strictness::Exact) {
    return difference.max_channel == 0;
  }
  return difference.psnr >= kOtherDriverPsnr && difference.ssim >= kOtherDriverSsim &&
         difference.worst_tile_over_48 <= kOtherDriverTilePixels;
}

std::string describe(Strictness strictness, const ImageDifference& difference)
{
  if (!difference.same_size) {
    return "the pictures differ in size\n";
  }
  const bool exact = strictness == Strictness::Exact;
  std::ostringstream text;
  text << "strictness: " << (exact ? "Exact" : "OtherDriver") << '\n'
       << "  largest channel difference: " << difference.max_channel << (exact ? " (allowed: 0)" : "") << '\n'
       << "  pixels that differ by more than " << kSmall << ": " << difference.pixels_over_8
       << ", in the worst tile: " << difference.worst_tile_over_8 << '\n'
       << "  PSNR: " << difference.psnr << " dB";
  if (!exact) {
    text << " (least: " << kOtherDriverPsnr << ')';
  }
  text << "\n  SSIM: " << difference.ssim;
  if (!exact) {
    text << " (least: " << kOtherDriverSsim << ')';
  }
  text << "\n  pixels of the worst tile that differ by more than " << kLarge << ": "
       << difference.worst_tile_over_48;
  if (!exact) {
    text << " (allowed: " << kOtherDriverTilePixels << ')';
  }
  text << '\n';
  return text.str();
}

namespace {

bool contains(const Image& image, int x, int y)
{
  return x < image.width() && y < image.height();
}

std::uint8_t stretched(int a, int b, int largest)
{
  return static_cast<std::uint8_t>(std::abs(a - b) * 255 / largest);
}

int largest_common_difference(const Image& a, const Image& b)
{
  int largest = 1; // not 0: it divides
  for (int y = 0; y < std::min(a.height(), b.height()); ++y) {
    for (int x = 0; x < std::min(a.width(), b.width()); ++x) {
      largest = std::max(largest, channel_difference(a.at(x, y), b.at(x, y)));
    }
  }
  return largest;
}

} // namespace

Image difference_picture(const Image& a, const Image& b)
{
  const int largest = largest_common_difference(a, b);
  Image picture(std::max(a.width(), b.width()), std::max(a.height(), b.height()));
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      if (contains(a, x, y) && contains(b, x, y)) {
        const Rgb pa = a.at(x, y);
        const Rgb pb = b.at(x, y);
        picture.set(
            x, y,
            {stretched(pa.r, pb.r, largest), stretched(pa.g, pb.g, largest), stretched(pa.b, pb.b, largest)});
      } else if (contains(a, x, y) || contains(b, x, y)) {
        picture.set(x, y, {255, 0, 255});
      }
    }
  }
  return picture;
}

// --- Files ---------------------------------------------------------------------------------------

namespace {

constexpr const char* kDriverKey = "Driver";

std::string driver_of(vtkPNGReader* reader)
{
  int range[2] = {0, 0};
  reader->GetTextChunks(kDriverKey, range);
  return range[1] > range[0] ? reader->GetTextValue(range[0]) : "";
}

Image image_of(vtkImageData* data)
{
  int size[3];
  data->GetDimensions(size);
  const int components = data->GetNumberOfScalarComponents();
  if (data->GetScalarType() != VTK_UNSIGNED_CHAR || components < 1) {
    return {};
  }
  const int green = components < 3 ? 0 : 1; // grey, with or without alpha, is spread over the channels
  const int blue = components < 3 ? 0 : 2;
  Image image(size[0], size[1]);
  for (int y = 0; y < size[1]; ++y) {
    for (int x = 0; x < size[0]; ++x) {
      const auto* value = static_cast<const unsigned char*>(data->GetScalarPointer(x, y, 0));
      image.set(x, y, {value[0], value[green], value[blue]});
    }
  }
  return image;
}

vtkSmartPointer<vtkImageData> data_of(const Image& image)
{
  auto data = vtkSmartPointer<vtkImageData>::New();
  data->SetDimensions(image.width(), image.height(), 1);
  data->AllocateScalars(VTK_UNSIGNED_CHAR, 3);
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      auto* value = static_cast<unsigned char*>(data->GetScalarPointer(x, y, 0));
      const Rgb pixel = image.at(x, y);
      value[0] = pixel.r;
      value[1] = pixel.g;
      value[2] = pixel.b;
    }
  }
  return data;
}

} // namespace

Image read_png(const std::string& path)
{
  std::error_code error;
  if (!fs::is_regular_file(path, error)) {
    return {};
  }
  const vtkNew<vtkPNGReader> reader;
  if (reader->CanReadFile(path.c_str()) == 0) {
    return {};
  }
  reader->SetFileName(path.c_str());
  reader->Update();
  if (reader->GetErrorCode() != 0) {
    return {};
  }
  Image image = image_of(reader->GetOutput());
  image.driver = driver_of(reader);
  return image;
}

bool write_png(const Image& image, const std::string& path)
{
  if (image.empty()) {
    return false;
  }
  const vtkNew<vtkPNGWriter> writer;
  writer->SetInputData(data_of(image));
  // Through memory: an unwritable path is then our answer and not an error of VTK.
  writer->WriteToMemoryOn();
  if (!image.driver.empty()) {
    writer->AddText(kDriverKey, image.driver.c_str());
  }
  writer->Write();

  std::error_code error;
  fs::create_directories(fs::path(path).parent_path(), error);
  std::ofstream file(path, std::ios::binary);
  const vtkUnsignedCharArray* bytes = writer->GetResult();
  for (vtkIdType i = 0; i < bytes->GetNumberOfValues(); ++i) {
    file.put(static_cast<char>(bytes->GetValue(i)));
  }
  file.close();
  return file.good();
}

namespace {

/// What decides the pixels that llvmpipe draws: its own version and that of the compiler behind it. Empty for
/// others.
std::string llvmpipe_version(const std::string& driver)
{
  const std::regex wanted(R"(llvmpipe \(LLVM ([0-9.]+).*Mesa ([0-9.]+))");
  std::smatch found;
  return std::regex_search(driver, found, wanted) ? found.str(1) + '/' + found.str(2) : "";
}

} // namespace

Strictness strictness_for(const std::string& actual_driver, const std::string& baseline_driver)
{
  const std::string actual = llvmpipe_version(actual_driver);
  return !actual.empty() && actual == llvmpipe_version(baseline_driver) ? Strictness::Exact
                                                                        : Strictness::OtherDriver;
}

namespace {

std::string written(const Image& image, const fs::path& path)
{
  return (write_png(image, path.string()) ? "written: " : "could not be written: ") + path.string() + '\n';
}

} // namespace

BaselineResult compare_with_baseline(const Image& image, const std::string& name,
                                     const std::string& baseline_folder, const std::string& output_folder)
{
  const fs::path baseline_path = fs::path(baseline_folder) / (name + ".png");
  const fs::path picture_path = fs::path(output_folder) / (name + ".png");
  const Image baseline = read_png(baseline_path.string());
  if (baseline.empty()) {
    return {false, "no readable baseline " + baseline_path.string() + "\npicture " +
                       written(image, picture_path) + "Look at it; if it is right, copy it there.\n"};
  }

  const Strictness strictness = strictness_for(image.driver, baseline.driver);
  const ImageDifference difference = compare(image, baseline);
  std::string report = describe(strictness, difference);
  if (accepts(strictness, difference)) {
    return {true, report};
  }
  const fs::path difference_path = fs::path(output_folder) / (name + ".difference.png");
  report += "drawn by:    " + image.driver + "\nbaseline by: " + baseline.driver +
            "\nbaseline: " + baseline_path.string() + "\npicture " + written(image, picture_path) +
            "difference " + written(difference_picture(image, baseline), difference_path);
  return {false, report};
}

void expect_matches_baseline(const Image& image, const std::string& name)
{
  const BaselineResult result =
      compare_with_baseline(image, name, baseline_folder(), picture_output_folder());
  EXPECT_TRUE(result.passed) << name << ": " << result.report;
}

std::string baseline_folder()
{
  return (fs::path(MORROW_SOURCE_DIR) / "tests" / "baselines").string();
}

std::string picture_output_folder()
{
  if (const char* named = std::getenv("MORROW_TEST_OUTPUT"); named != nullptr && *named != '\0') {
    return named;
  }
#ifdef MORROW_BINARY_DIR
  return (fs::path(MORROW_BINARY_DIR) / "test_pictures").string();
#else
  // ctest runs the programs in the build folder.
  return (fs::current_path() / "test_pictures").string();
#endif
}

} // namespace morrow_test
