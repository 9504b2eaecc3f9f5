#include "image/tga_codec.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace lx {
namespace {

using Bytes = std::vector<uint8_t>;

TEST(TgaCodec, HeaderFieldsAndSizesLittleEndian) {
  const TgaHeader parsed =
      ParseTgaHeader(Bytes{7, 1, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x2C, 0x01, 0xFF, 0xFF, 24, 0x28}.data());
  EXPECT_EQ((std::vector<uint32_t>{parsed.idLength, parsed.colourMapType, parsed.imageType, parsed.info.width,
                                   parsed.info.height, parsed.info.bitsPerPixel, parsed.info.descriptor}),
            (std::vector<uint32_t>{7, 1, 10, 300, 65535, 24, 0x28}));
  Bytes header(kTgaHeaderSize, 0xEE);
  WriteTgaHeader32(0x1234, 0x00FF, header.data());
  EXPECT_EQ(header, (Bytes{0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x34, 0x12, 0xFF, 0x00, 32, 0x28}));

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
