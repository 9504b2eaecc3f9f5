#include "image/pixel_buffer.h"
#include <gtest/gtest.h>
#include <vector>

namespace lx {
namespace {
TEST(PixelBuffer, RefusesSizesBelowOneOrPastTheLimit) {
  // 2^34 bytes (0 when wrapped to 32 bits), exactly 2^32, a pixel count that overflows a signed 32-bit
  // product, one row and one pixel past 512 MiB.
  const std::pair<int32_t, int32_t> refused[] = {
      {0, 1},         {1, 0},         {-1, 5},       {5, -1},        {INT32_MIN, INT32_MIN}, {65536, 65536},
      {32768, 32768}, {46341, 46341}, {16384, 8193}, {1, 134217729}, {INT32_MAX, INT32_MAX}};
  PixelBuffer buffer;
  for (const auto& [w, h] : refused) {
    ASSERT_TRUE(buffer.allocate(2, 2));
    EXPECT_FALSE(buffer.allocate(w, h)) << w << " x " << h;
    EXPECT_FALSE(buffer.hasPixels());  // the previous image is gone too
    EXPECT_EQ(buffer.width(), 0);
  }
  ASSERT_TRUE(buffer.allocate(16384, 8192));  // exactly 512 MiB
  EXPECT_EQ(buffer.pixels()[PixelBuffer::kMaxBytes - 1], 0);
}

TEST(PixelBuffer, WrapDescribesCallerMemoryWithoutOwningIt) {
  std::vector<uint32_t> pixels(6, 0xAABBCCDDu);
  {
    PixelBuffer buffer;
    buffer.wrap(pixels.data(), 3, 2);
    EXPECT_EQ(buffer.pixels(), reinterpret_cast<uint8_t*>(pixels.data()));
    EXPECT_EQ(buffer.view().stride, 12);
    const IntRect r = buffer.rect();
    EXPECT_EQ((std::vector<int32_t>{r.left, r.top, r.right, r.bottom}), (std::vector<int32_t>{0, 0, 3, 2}));
  }
  EXPECT_EQ(pixels, std::vector<uint32_t>(6, 0xAABBCCDDu));
  PixelBuffer bad;
  bad.wrap(pixels.data(), 0, 2);
  EXPECT_FALSE(bad.hasPixels());
  bad.wrap(pixels.data(), INT32_MAX, 1);  // a row the 32-bit stride cannot describe
  EXPECT_FALSE(bad.hasPixels());
}
}  // namespace
}  // namespace lx
