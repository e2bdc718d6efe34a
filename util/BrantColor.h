// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <type_traits>

/// A colour of four 8-bit channels, 0 to 255: red, green, blue and alpha (0 transparent, 255 opaque), four
/// bytes in that order. Divide a channel by 255.0 for a fraction in [0, 1].
class BrantColor
{
public:
  /// Opaque black.
  constexpr BrantColor() noexcept = default;

  /// Each channel is clamped to 0 … 255, so -1 is 0 and 300 is 255.
  constexpr BrantColor(int r, int g, int b, int a = 255) noexcept
      : mRed(clamped(r)), mGreen(clamped(g)), mBlue(clamped(b)), mAlpha(clamped(a))
  {}

  [[nodiscard]] constexpr unsigned char red() const noexcept { return mRed; }
  [[nodiscard]] constexpr unsigned char green() const noexcept { return mGreen; }
  [[nodiscard]] constexpr unsigned char blue() const noexcept { return mBlue; }
  [[nodiscard]] constexpr unsigned char alpha() const noexcept { return mAlpha; }

  /// Equal when all four channels are, alpha included.
  [[nodiscard]] friend constexpr bool operator==(const BrantColor& a, const BrantColor& b) noexcept
  {
    return a.mRed == b.mRed && a.mGreen == b.mGreen && a.mBlue == b.mBlue && a.mAlpha == b.mAlpha;
  }
  [[nodiscard]] friend constexpr bool operator!=(const BrantColor& a, const BrantColor& b) noexcept
  {
    return !(a == b);
  }

private:
  static constexpr unsigned char clamped(int channel) noexcept
  {
    return static_cast<unsigned char>(channel < 0 ? 0 : channel > 255 ? 255 : channel);
  }

  unsigned char mRed = 0;
  unsigned char mGreen = 0;
  unsigned char mBlue = 0;
  unsigned char mAlpha = 255;
};

static_assert(sizeof(BrantColor) == 4, "arrays of colours are read as arrays of bytes");
static_assert(std::is_standard_layout_v<BrantColor> && std::is_trivially_copyable_v<BrantColor>);

// The fixed colours. Their order is that of their ids in BrantColorTable.
inline constexpr BrantColor BRANT_BLACK{0, 0, 0};
inline constexpr BrantColor BRANT_GREY{127, 127, 127};
inline constexpr BrantColor BRANT_ORANGE{255, 165, 0};
inline constexpr BrantColor BRANT_RED{255, 0, 0};
inline constexpr BrantColor BRANT_GREEN{0, 255, 0};
inline constexpr BrantColor BRANT_YELLOW{255, 255, 0};
inline constexpr BrantColor BRANT_MAGENTA{255, 0, 255};
inline constexpr BrantColor BRANT_CYAN{0, 255, 255};
inline constexpr BrantColor BRANT_BLUE{0, 0, 255};
inline constexpr BrantColor BRANT_WHITE{255, 255, 255};
inline constexpr BrantColor BRANT_BROWN{165, 42, 42};
inline constexpr BrantColor BRANT_GOLD{255, 215, 0};
inline constexpr BrantColor BRANT_LIGHTBLUE{173, 216, 230};
inline constexpr BrantColor BRANT_LIGHTGREEN{0, 204, 0};
inline constexpr BrantColor BRANT_SALMON{250, 128, 114};
inline constexpr BrantColor BRANT_CORAL{255, 127, 80};
inline constexpr BrantColor BRANT_PINK{255, 192, 203};

/// The colour of whatever was given none: opaque black.
inline constexpr BrantColor BRANT_DEFAULT_COLOR{};
