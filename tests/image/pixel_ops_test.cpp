#include "image/pixel_ops.h"
#include <gtest/gtest.h>
#include <vector>

namespace lx {
namespace {
using Pixels = std::vector<uint32_t>;

PlacedView Placed(Pixels& pixels, int32_t width, int32_t height, int32_t left = 0, int32_t top = 0) {
  return {{reinterpret_cast<uint8_t*>(pixels.data()), width, height, width * 4},
          {left, top, left + width, top + height}};
}

TEST(BlendPixel, Law) {
  const uint32_t cases[][3] = {
      // source, destination, result
      {0u, 0x12345678u, 0x12345678u},
      {0x00123456u, 0u, 0x00808080u},  // a zero destination becomes mid grey
      {0x80FFFFFFu, 0u, 0x80C0C0C0u},
      {0xFF102030u, 0u, 0xFF102030u},
      {0xFF000001u, 0xFFFFFFFFu, 0xFF000001u},
      {0x80FF0000u, 0xFF0000FFu, 0xFF80007Fu},
      {0x01010101u, 0xFFFFFFFFu, 0xFFFDFDFDu},  // (1 + 128) >> 8 = 0, (255 * 254 + 128) >> 8 = 253
      {0x40FF00FFu, 0x2000FF00u, 0x4040BE40u},  // lanes do not spill; alpha is the larger
      {0x40000000u, 0xF0000001u, 0xF0000001u},
  };
  for (const auto& c : cases) EXPECT_EQ(BlendPixel(c[0], c[1]), c[2]) << std::hex << c[0] << " " << c[1];
}

TEST(CopyRectangle, ModesPlaceAndClipTheSourceAndOutsideCopiesNothing) {
  Pixels source = {1, 2, 3, 4}, destination(9, 0u);
  EXPECT_TRUE(CopyRectangle(Placed(source, 2, 2, 2, 1), Placed(destination, 3, 3), CopyMode::kCopy));
  EXPECT_EQ(destination, (Pixels{0, 0, 0, 0, 0, 1, 0, 0, 3}));
  EXPECT_TRUE(CopyRectangle(Placed(source, 2, 2, -1, -1), Placed(destination, 3, 3), CopyMode::kCopy));
  EXPECT_EQ(destination, (Pixels{4, 0, 0, 0, 0, 1, 0, 0, 3}));
  Pixels mask = {0x00FFFFFFu, 0x80000000u, 0xFF123456u}, masked = {0x11223344u, 0x11223344u, 0x00ABCDEFu};
  EXPECT_TRUE(CopyRectangle(Placed(mask, 3, 1), Placed(masked, 3, 1), CopyMode::kAlphaMask));
  EXPECT_EQ(masked, (Pixels{0x11223344u, 0x80223344u, 0xFFABCDEFu}));
  Pixels over = {0x80FF0000u, 0u, 0x00123456u}, under = {0xFF0000FFu, 0x55555555u, 0u};
  EXPECT_TRUE(CopyRectangle(Placed(over, 3, 1), Placed(under, 3, 1), CopyMode::kBlend));
  EXPECT_EQ(under, (Pixels{0xFF80007Fu, 0x55555555u, 0x00808080u}));
  // Copying an image onto itself one row lower moves it down only when the last row goes first.
  Pixels image = {1, 2, 3, 4};
  EXPECT_TRUE(CopyRectangle(Placed(image, 1, 4, 0, 1), Placed(image, 1, 4), CopyMode::kCopy));
  EXPECT_EQ(image, (Pixels{1, 1, 2, 3}));

  Pixels full(4, 0xFFFFFFFFu), untouched(9, 0u);
  for (CopyMode mode : {CopyMode::kCopy, CopyMode::kAlphaMask, CopyMode::kBlend}) {
    EXPECT_FALSE(CopyRectangle(Placed(full, 2, 2, 3, 0), Placed(untouched, 3, 3), mode));
    EXPECT_FALSE(CopyRectangle(Placed(full, 2, 2, 0, -2), Placed(untouched, 3, 3), mode));
    EXPECT_FALSE(CopyRectangle(Placed(full, 2, 2, 3, 3), Placed(untouched, 3, 3), mode));
    EXPECT_FALSE(CopyRectangle(Placed(full, 0, 2), Placed(untouched, 3, 3), mode));
    EXPECT_FALSE(CopyRectangle(Placed(full, 2, 2), Placed(untouched, 3, 0), mode));
  }
  EXPECT_EQ(untouched, Pixels(9, 0u));
}
}  // namespace
}  // namespace lx
