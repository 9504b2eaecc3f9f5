#include "image/pixel_buffer.h"

#include <gtest/gtest.h>

#include <vector>

namespace lx {
namespace {

TEST(PixelBuffer, AllocatesZeroedPixelsPlacedAtTheOrigin) {
  PixelBuffer buffer;
  ASSERT_TRUE(buffer.allocate(3, 2));
  EXPECT_TRUE(buffer.hasPixels());
  EXPECT_EQ(buffer.width(), 3);
  EXPECT_EQ(buffer.height(), 2);
  const PixelView view = buffer.view();
  EXPECT_EQ(view.stride, 12);
  EXPECT_EQ(view.pixels, buffer.pixels());
  for (int i = 0; i < 24; ++i) EXPECT_EQ(buffer.pixels()[i], 0) << i;
  const IntRect r = buffer.rect();
  EXPECT_EQ(r.left, 0);
  EXPECT_EQ(r.top, 0);
  EXPECT_EQ(r.right, 3);
  EXPECT_EQ(r.bottom, 2);
}

TEST(PixelBuffer, ReleaseClearsEverything) {
  PixelBuffer buffer;
  ASSERT_TRUE(buffer.allocate(4, 4));
  buffer.pixels()[0] = 1;
  buffer.release();
  EXPECT_FALSE(buffer.hasPixels());
  EXPECT_EQ(buffer.pixels(), nullptr);
  EXPECT_EQ(buffer.width(), 0);
  EXPECT_EQ(buffer.height(), 0);
  buffer.release();  // twice is harmless
  EXPECT_EQ(buffer.pixels(), nullptr);
}

TEST(PixelBuffer, ReallocatingReplacesTheOldBlock) {
  PixelBuffer buffer;
  ASSERT_TRUE(buffer.allocate(2, 2));
  buffer.placeAt(5, 6);
  ASSERT_TRUE(buffer.allocate(8, 1));
  EXPECT_EQ(buffer.width(), 8);
  EXPECT_EQ(buffer.rect().left, 0);
  EXPECT_EQ(buffer.rect().right, 8);
}

TEST(PixelBuffer, RefusesSizesBelowOneOrPastTheLimit) {
  const std::pair<int32_t, int32_t> refused[] = {
      {0, 1},
      {1, 0},
      {-1, 5},
      {5, -1},
      {INT32_MIN, INT32_MIN},
      {65536, 65536},  // 2^34 bytes: 0 when wrapped to 32 bits
      {32768, 32768},  // exactly 2^32 bytes
      {46341, 46341},  // the pixel count alone overflows a signed 32-bit product
      {16384, 8193},   // one row past 512 MiB
      {1, 134217729},  // one pixel past 512 MiB
      {INT32_MAX, INT32_MAX}};
  for (const auto& [w, h] : refused) {
    PixelBuffer buffer;
    EXPECT_FALSE(buffer.allocate(w, h)) << w << " x " << h;
    EXPECT_FALSE(buffer.hasPixels());
    EXPECT_EQ(buffer.pixels(), nullptr);
  }
}

TEST(PixelBuffer, ExactlyTheLimitIsAllowed) {
  PixelBuffer buffer;
  ASSERT_TRUE(buffer.allocate(16384, 8192));  // 512 MiB
  EXPECT_EQ(buffer.pixels()[PixelBuffer::kMaxBytes - 1], 0);
  buffer.release();
  EXPECT_FALSE(buffer.hasPixels());
}

TEST(PixelBuffer, FailedAllocationDropsThePreviousImage) {
  PixelBuffer buffer;
  ASSERT_TRUE(buffer.allocate(2, 2));
  EXPECT_FALSE(buffer.allocate(65536, 65536));
  EXPECT_FALSE(buffer.hasPixels());
  EXPECT_EQ(buffer.width(), 0);
}

TEST(PixelBuffer, WrapDescribesCallerMemoryWithoutOwningIt) {
  std::vector<uint32_t> pixels(6, 0xAABBCCDDu);
  {
    PixelBuffer buffer;
    buffer.wrap(pixels.data(), 3, 2);
    EXPECT_TRUE(buffer.hasPixels());
    EXPECT_EQ(buffer.pixels(), reinterpret_cast<uint8_t*>(pixels.data()));
    EXPECT_EQ(buffer.view().stride, 12);
    EXPECT_EQ(buffer.rect().bottom, 2);
  }  // destroying the wrapper must not free the vector's memory
  EXPECT_EQ(pixels[5], 0xAABBCCDDu);

  PixelBuffer bad;
  bad.wrap(pixels.data(), 0, 2);
  EXPECT_FALSE(bad.hasPixels());
  bad.wrap(pixels.data(), INT32_MAX, 1);  // a row the 32-bit stride cannot describe
  EXPECT_FALSE(bad.hasPixels());
}

TEST(PixelBuffer, PlacementMovesTheRectangle) {
  PixelBuffer buffer;
  ASSERT_TRUE(buffer.allocate(3, 2));
  buffer.placeAt(-4, 7);
  buffer.offset(1, -2);
  const PlacedView placed = buffer.placed();
  EXPECT_EQ(placed.rect.left, -3);
  EXPECT_EQ(placed.rect.top, 5);
  EXPECT_EQ(placed.rect.right, 0);
  EXPECT_EQ(placed.rect.bottom, 7);
  EXPECT_EQ(placed.view.width, 3);
}

}  // namespace
}  // namespace lx
