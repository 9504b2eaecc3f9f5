#include "image/pixel_ops.h"

#include <gtest/gtest.h>

#include <vector>

namespace lx {
namespace {

PlacedView Placed(std::vector<uint32_t>& pixels, int32_t width, int32_t height, int32_t left = 0,
                  int32_t top = 0) {
  return {{reinterpret_cast<uint8_t*>(pixels.data()), width, height, width * 4},
          {left, top, left + width, top + height}};
}

TEST(BlendPixel, ZeroSourceReturnsTheDestinationUnchanged) {
  EXPECT_EQ(BlendPixel(0u, 0u), 0u);
  EXPECT_EQ(BlendPixel(0u, 0x12345678u), 0x12345678u);
}

TEST(BlendPixel, ZeroDestinationBecomesMidGrey) {
  EXPECT_EQ(BlendPixel(0x00123456u, 0u), 0x00808080u);  // transparent but not 0
  EXPECT_EQ(BlendPixel(0x80FFFFFFu, 0u), 0x80C0C0C0u);  // 128 + 64 on every colour byte, alpha 128
  EXPECT_EQ(BlendPixel(0xFF102030u, 0u), 0xFF102030u);
}

TEST(BlendPixel, OpaqueSourceWinsAndTransparentSourceKeepsDestination) {
  EXPECT_EQ(BlendPixel(0xFF000001u, 0xFFFFFFFFu), 0xFF000001u);
  EXPECT_EQ(BlendPixel(0x00FFFFFFu, 0x7F010203u), 0x7F010203u);
}

TEST(BlendPixel, RoundedLaneArithmetic) {
  // Red (128 from 255 at a = 128) over blue (127 left of 255): alpha stays that of the opaque destination.
  EXPECT_EQ(BlendPixel(0x80FF0000u, 0xFF0000FFu), 0xFF80007Fu);
  // (1 * 1 + 128) >> 8 = 0 and (255 * 254 + 128) >> 8 = 253.
  EXPECT_EQ(BlendPixel(0x01010101u, 0xFFFFFFFFu), 0xFFFDFDFDu);
  // Lanes are independent: a full byte beside an empty one does not spill over.
  EXPECT_EQ(BlendPixel(0x40FF00FFu, 0x2000FF00u), 0x4040BE40u);
}

TEST(BlendPixel, AlphaIsTheLargerOfBoth) {
  EXPECT_EQ(BlendPixel(0x40000000u, 0x20000001u) >> 24, 0x40u);
  EXPECT_EQ(BlendPixel(0x40000000u, 0xF0000001u) >> 24, 0xF0u);
}

TEST(FlipVertically, SwapsRowsAndKeepsTheMiddleOfAnOddHeight) {
  std::vector<uint32_t> image = {1, 2, 3, 4, 5, 6};  // 2 x 3
  EXPECT_TRUE(FlipVertically(image.data(), 2, 3));
  EXPECT_EQ(image, (std::vector<uint32_t>{5, 6, 3, 4, 1, 2}));

  std::vector<uint32_t> even = {1, 2, 3, 4};  // 1 x 4
  EXPECT_TRUE(FlipVertically(even.data(), 1, 4));
  EXPECT_EQ(even, (std::vector<uint32_t>{4, 3, 2, 1}));
}

TEST(FlipVertically, HeightOneIsUnchanged) {
  std::vector<uint32_t> row = {1, 2, 3};
  EXPECT_TRUE(FlipVertically(row.data(), 3, 1));
  EXPECT_EQ(row, (std::vector<uint32_t>{1, 2, 3}));
}

TEST(FlipVertically, RefusesBadBlocks) {
  std::vector<uint32_t> image(4, 7u);
  EXPECT_FALSE(FlipVertically(nullptr, 2, 2));
  EXPECT_FALSE(FlipVertically(image.data(), 0, 2));
  EXPECT_FALSE(FlipVertically(image.data(), 2, -1));
}

TEST(CopyRectangle, CopyPlacesTheSourceAndClipsIt) {
  std::vector<uint32_t> source = {1, 2, 3, 4};  // 2 x 2
  std::vector<uint32_t> destination(9, 0u);     // 3 x 3
  EXPECT_TRUE(CopyRectangle(Placed(source, 2, 2, 2, 1), Placed(destination, 3, 3), CopyMode::kCopy));
  EXPECT_EQ(destination, (std::vector<uint32_t>{0, 0, 0, 0, 0, 1, 0, 0, 3}));

  std::fill(destination.begin(), destination.end(), 0u);
  EXPECT_TRUE(CopyRectangle(Placed(source, 2, 2, -1, -1), Placed(destination, 3, 3), CopyMode::kCopy));
  EXPECT_EQ(destination, (std::vector<uint32_t>{4, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(CopyRectangle, AlphaMaskSetsOnlyNonZeroAlphas) {
  std::vector<uint32_t> source = {0x00FFFFFFu, 0x80000000u, 0xFF123456u};
  std::vector<uint32_t> destination = {0x11223344u, 0x11223344u, 0x00ABCDEFu};
  EXPECT_TRUE(CopyRectangle(Placed(source, 3, 1), Placed(destination, 3, 1), CopyMode::kAlphaMask));
  EXPECT_EQ(destination, (std::vector<uint32_t>{0x11223344u, 0x80223344u, 0xFFABCDEFu}));
}

TEST(CopyRectangle, BlendUsesBlendPixel) {
  std::vector<uint32_t> source = {0x80FF0000u, 0u, 0x00123456u};
  std::vector<uint32_t> destination = {0xFF0000FFu, 0x55555555u, 0u};
  EXPECT_TRUE(CopyRectangle(Placed(source, 3, 1), Placed(destination, 3, 1), CopyMode::kBlend));
  EXPECT_EQ(destination, (std::vector<uint32_t>{0xFF80007Fu, 0x55555555u, 0x00808080u}));
}

TEST(CopyRectangle, OutsideOrEmptyCopiesNothing) {
  std::vector<uint32_t> source(4, 0xFFFFFFFFu);
  std::vector<uint32_t> destination(9, 0u);
  for (CopyMode mode : {CopyMode::kCopy, CopyMode::kAlphaMask, CopyMode::kBlend}) {
    EXPECT_FALSE(CopyRectangle(Placed(source, 2, 2, 4, 0), Placed(destination, 3, 3), mode));
    EXPECT_FALSE(CopyRectangle(Placed(source, 2, 2, 0, -3), Placed(destination, 3, 3), mode));
    EXPECT_FALSE(
        CopyRectangle(Placed(source, 2, 2, 3, 3), Placed(destination, 3, 3), mode));  // touching corner
    EXPECT_FALSE(CopyRectangle(Placed(source, 0, 2), Placed(destination, 3, 3), mode));
    EXPECT_FALSE(CopyRectangle(Placed(source, 2, 2), Placed(destination, 3, 0), mode));
  }
  EXPECT_EQ(destination, std::vector<uint32_t>(9, 0u));
}

TEST(CopyRectangle, WalksFromTheLastRowUp) {
  // Copying an image onto itself one row lower moves it down only when the last row goes first.
  std::vector<uint32_t> image = {1, 2, 3, 4};  // 1 x 4
  EXPECT_TRUE(CopyRectangle(Placed(image, 1, 4, 0, 1), Placed(image, 1, 4), CopyMode::kCopy));
  EXPECT_EQ(image, (std::vector<uint32_t>{1, 1, 2, 3}));
}

TEST(CopyPixels, WidePathGivesTheSameResultOnEveryCount) {
  for (size_t count : {size_t{1}, size_t{2}, size_t{3}, size_t{7}, size_t{1001}}) {
    std::vector<uint32_t> source(count + 1);
    for (size_t i = 0; i < source.size(); ++i) source[i] = static_cast<uint32_t>(i * 2654435761u);
    // The destination starts one pixel into its block so the wide stores see a 4-byte alignment too.
    std::vector<uint32_t> plain(count + 2, 0xDEADBEEFu), wide(count + 2, 0xDEADBEEFu);
    CopyPixels(plain.data() + 1, source.data(), count, false);
    CopyPixels(wide.data() + 1, source.data(), count, true);
    EXPECT_EQ(plain, wide) << count;
    EXPECT_TRUE(std::equal(source.begin(), source.begin() + count, wide.begin() + 1)) << count;
    EXPECT_EQ(wide.front(), 0xDEADBEEFu);
    EXPECT_EQ(wide.back(), 0xDEADBEEFu) << count;
  }
}

TEST(ClearPixels, WidePathGivesTheSameResultOnEveryCount) {
  for (size_t count : {size_t{1}, size_t{2}, size_t{5}, size_t{999}}) {
    std::vector<uint32_t> plain(count + 2, 0xDEADBEEFu), wide(count + 2, 0xDEADBEEFu);
    ClearPixels(plain.data() + 1, count, false);
    ClearPixels(wide.data() + 1, count, true);
    EXPECT_EQ(plain, wide) << count;
    EXPECT_TRUE(std::all_of(wide.begin() + 1, wide.end() - 1, [](uint32_t v) { return v == 0; })) << count;
    EXPECT_EQ(wide.back(), 0xDEADBEEFu) << count;
  }
}

}  // namespace
}  // namespace lx
