#include "image/tga_codec.h"
#include <gtest/gtest.h>
#include <cstdint>
#include <vector>

namespace lx {
namespace {
using Bytes = std::vector<uint8_t>;

// The fewest bytes a file must hold for its pixels, and the most an RLE packet stream can take.
TEST(TgaCodec, LeastAndMostPixelBytes) {
  const struct {
    bool compressed;
    uint64_t pixels;
    uint32_t bytesPerPixel;
    uint64_t least;
  } cases[] = {{false, 1, 3, 3},  {false, uint64_t{65535} * 65535, 4, uint64_t{65535} * 65535 * 4},
               {true, 1, 4, 5},   {true, 128, 3, 4},
               {true, 129, 3, 8}, {true, 256, 4, 10}};
  for (const auto& c : cases)
    EXPECT_EQ(TgaLeastPixelBytes(c.compressed, c.pixels, c.bytesPerPixel), c.least) << c.pixels;
  EXPECT_EQ(TgaMostRlePixelBytes(1, 3), 7u);
  EXPECT_EQ(TgaMostRlePixelBytes(10, 4), 54u);
}
}  // namespace
}  // namespace lx
