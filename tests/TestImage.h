// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

/// Pictures in tests: reading, writing, counting and comparing them.
///
/// Prefer data assertions; a picture is for what only a picture shows. Then prefer asking the picture a
/// question (`count_pixels`, `find_pixels`) to comparing it with a stored one (`expect_matches_baseline`).
namespace morrow_test {

/// One pixel, 0 to 255 per channel.
struct Rgb
{
  std::uint8_t r = 0;
  std::uint8_t g = 0;
  std::uint8_t b = 0;
};

[[nodiscard]] constexpr bool operator==(Rgb a, Rgb b) noexcept
{
  return a.r == b.r && a.g == b.g && a.b == b.b;
}
[[nodiscard]] constexpr bool operator!=(Rgb a, Rgb b) noexcept
{
  return !(a == b);
}

inline constexpr Rgb kBlack{0, 0, 0};
inline constexpr Rgb kWhite{255, 255, 255};
inline constexpr Rgb kRed{255, 0, 0};
inline constexpr Rgb kGreen{0, 255, 0};
inline constexpr Rgb kBlue{0, 0, 255};
inline constexpr Rgb kYellow{255, 255, 0};

/// "(255, 128, 0)": what GoogleTest prints for a pixel.
void PrintTo(Rgb pixel, std::ostream* out);

/// The largest difference of any channel of two pixels, 0 to 255.
[[nodiscard]] int channel_difference(Rgb a, Rgb b) noexcept;

/// A picture of 8-bit RGB pixels. The origin is the bottom left pixel, as in OpenGL and VTK; rows run
/// upwards.
class Image
{
public:
  /// The empty picture, 0 × 0.
  Image() = default;
  /// A picture of one colour. Sizes in pixels; a negative size counts as 0.
  Image(int width, int height, Rgb fill = {});

  [[nodiscard]] int width() const noexcept { return mWidth; }
  [[nodiscard]] int height() const noexcept { return mHeight; }
  [[nodiscard]] bool empty() const noexcept { return mPixels.empty(); }

  /// The pixel at column `x` (0 is left) and row `y` (0 is the bottom). Throws std::out_of_range off the
  /// picture.
  [[nodiscard]] Rgb at(int x, int y) const;
  /// Sets one pixel. Throws std::out_of_range off the picture.
  void set(int x, int y, Rgb pixel);
  /// Sets the pixels of a rectangle, both corners included; the part off the picture is left out.
  void fill(int x0, int y0, int x1, int y1, Rgb pixel);

  /// width × height pixels, row after row from the bottom.
  [[nodiscard]] const std::vector<Rgb>& pixels() const noexcept { return mPixels; }

  /// The OpenGL driver that drew the picture ("llvmpipe (LLVM 15.0.6, 256 bits) / 4.5 (Core Profile)
  /// Mesa 22.3.6"), empty when it was not read from a window. Decides how strictly baselines are compared.
  std::string driver;

private:
  [[nodiscard]] std::size_t index(int x, int y) const;

  int mWidth = 0;
  int mHeight = 0;
  std::vector<Rgb> mPixels;
};

/// Same size and the same pixels; the driver does not count.
[[nodiscard]] bool operator==(const Image& a, const Image& b) noexcept;
[[nodiscard]] bool operator!=(const Image& a, const Image& b) noexcept;

// --- Questions to one picture --------------------------------------------------------------------

using PixelPredicate = std::function<bool(Rgb)>;

/// Pixels of exactly this colour, or whose channels differ from it by at most `tolerance`.
[[nodiscard]] PixelPredicate colour_is(Rgb colour, int tolerance = 0);
/// Pixels with a channel that differs from this colour by more than `tolerance`: "not background".
[[nodiscard]] PixelPredicate colour_is_not(Rgb colour, int tolerance = 0);

/// How many pixels satisfy the predicate.
[[nodiscard]] int count_pixels(const Image& image, const PixelPredicate& wanted);

/// Where the pixels of one kind are.
struct PixelRegion
{
  int count = 0;              ///< number of pixels; when 0 the rest is as initialised here
  int min_x = 0, min_y = 0;   ///< bottom left corner of the bounding box, inclusive
  int max_x = -1, max_y = -1; ///< top right corner of the bounding box, inclusive
  double centre_x = 0.0;      ///< mean column of the pixels' centres: pixel 0 has its centre at 0.5
  double centre_y = 0.0;      ///< mean row, likewise

  [[nodiscard]] int width() const noexcept { return max_x - min_x + 1; }
  [[nodiscard]] int height() const noexcept { return max_y - min_y + 1; }
};

/// Bounding box and centroid of the pixels that satisfy the predicate.
[[nodiscard]] PixelRegion find_pixels(const Image& image, const PixelPredicate& wanted);

/// The part of a picture with both corners included; the part of the rectangle off the picture is left out.
[[nodiscard]] Image crop(const Image& image, int x0, int y0, int x1, int y1);

// --- Comparing two pictures ----------------------------------------------------------------------

/// Numbers of a comparison of two pictures of one size.
struct ImageDifference
{
  bool same_size = false; ///< when false, nothing below is meaningful and every strictness refuses
  int max_channel = 0;    ///< largest difference of any channel of any pixel, 0 to 255
  int pixels_over_8 = 0;  ///< pixels with a channel that differs by more than 8
  /// The same within the worst tile of 32 × 32 pixels: finds a small defect in a large picture.
  int worst_tile_over_8 = 0;
  /// Pixels of the worst tile with a channel that differs by more than 48.
  int worst_tile_over_48 = 0;
  double psnr = 0.0; ///< peak signal-to-noise ratio over all channels, dB; infinity for equal pictures
  double ssim = 0.0; ///< structural similarity, at most 1; see `compare`
};

/// Compares two pictures. The structural similarity is that of Wang et al. (K1 = 0.01, K2 = 0.03, range 255)
/// over all windows of 8 × 8 pixels, equally weighted, one-pixel steps, for each channel by itself; the value
/// given is that of the worst channel, so a shift of one colour is seen. A picture smaller than a window is
/// one window in that direction. Two empty pictures are equal.
[[nodiscard]] ImageDifference compare(const Image& actual, const Image& expected);

/// How much of a difference is accepted.
enum class Strictness
{
  /// No difference at all. Mesa's llvmpipe draws bit-identical pictures, whatever the number of threads.
  Exact,
  /// The pictures of another OpenGL driver: PSNR ≥ 45 dB, SSIM ≥ 0.998 and no tile with more than a few
  /// pixels that are far off (see the constants). Measured between softpipe and llvmpipe, 300² to 1000²
  /// pixels of shaded balls, mesh edges, peeled translucency and text: PSNR ≥ 66 dB, SSIM ≥ 0.9998, no pixel
  /// far off. Refuses a moved label, a changed digit, a changed colour, facets of another size. Two limits:
  /// lines of OpenGL (not the mesh edges of a surface) fall on other pixels with each driver and are refused;
  /// a smooth outline that moves by a fraction of a pixel is accepted.
  OtherDriver
};

inline constexpr double kOtherDriverPsnr = 45.0;
inline constexpr double kOtherDriverSsim = 0.998;
/// Pixels of one tile that may differ by more than 48. A changed digit of 12 points changes 36 of them,
/// another driver 0 to 2.
inline constexpr int kOtherDriverTilePixels = 12;

[[nodiscard]] bool accepts(Strictness strictness, const ImageDifference& difference) noexcept;
/// All numbers beside the thresholds of the strictness, one per line.
[[nodiscard]] std::string describe(Strictness strictness, const ImageDifference& difference);

/// The difference made visible: each channel |a − b|, stretched so that the largest is white; black where
/// equal. The picture covers both; where only one of them has a pixel it is magenta.
[[nodiscard]] Image difference_picture(const Image& a, const Image& b);

// --- Files ---------------------------------------------------------------------------------------

/// Reads a PNG file of 8-bit channels (alpha is dropped, grey is spread). The driver comes from the text
/// chunk that `write_png` made. An unreadable file gives the empty picture.
[[nodiscard]] Image read_png(const std::string& path);
/// Writes a PNG file, the driver as its text chunk "Driver"; makes the folder. False when the file was not
/// written.
bool write_png(const Image& image, const std::string& path);

/// Exact when both were drawn by llvmpipe of the same Mesa and LLVM versions, else OtherDriver. The vector
/// width in the driver's name ("256 bits") does not count: it does not change the picture.
[[nodiscard]] Strictness strictness_for(const std::string& actual_driver, const std::string& baseline_driver);

/// What came of a comparison with a baseline; `report` says everything a reader of a failed run needs.
struct BaselineResult
{
  bool passed = false;
  std::string report;
};

/// Compares with `<baseline_folder>/<name>.png`. A missing or unreadable baseline fails and writes the
/// picture to `<output_folder>/<name>.png`, ready to be looked at and copied. A difference fails and writes
/// `<name>.png` and `<name>.difference.png` there; the report gives numbers, thresholds and all paths. A pass
/// writes nothing.
[[nodiscard]] BaselineResult compare_with_baseline(const Image& image, const std::string& name,
                                                   const std::string& baseline_folder,
                                                   const std::string& output_folder);

/// The same with the folders of this project: baselines in `tests/baselines`, output in
/// `picture_output_folder()`; a difference is a non-fatal failure of the running test.
void expect_matches_baseline(const Image& image, const std::string& name);

/// `tests/baselines` of the source tree.
[[nodiscard]] std::string baseline_folder();
/// Where failing pictures go: environment variable MORROW_TEST_OUTPUT, else `test_pictures` in the build
/// folder.
[[nodiscard]] std::string picture_output_folder();

} // namespace morrow_test
