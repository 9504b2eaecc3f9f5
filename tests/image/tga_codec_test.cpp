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

TEST(DecodeTgaRle, UnpacksPacketsOrNamesTheFirstFault) {
  const struct {
    const char* name;
    Bytes data;
    size_t pixels;
    TgaRleResult result;
    Bytes out;
  } cases[] = {
      {"run of 2, then 2 raw",
       {0x81, 1, 2, 3, 0x01, 4, 5, 6, 7, 8, 9},
       4,
       TgaRleResult::kDone,
       {1, 2, 3, 1, 2, 3, 4, 5, 6, 7, 8, 9}},
      {"bytes after the last pixel", {0x80, 1, 2, 3, 0xFF, 0xFF}, 1, TgaRleResult::kDone, {1, 2, 3}},
      {"no data", {}, 1, TgaRleResult::kPacketHeaderMissing, {}},
      {"one pixel short of the image", {0x00, 1, 2, 3}, 2, TgaRleResult::kPacketHeaderMissing, {}},
      {"raw packet cut inside a pixel", {0x01, 1, 2, 3, 4}, 2, TgaRleResult::kRawPixelsShort, {}},
      {"run without a whole pixel", {0x81, 1, 2}, 2, TgaRleResult::kRunPixelShort, {}},
      {"run past the image", {0x82, 1, 2, 3}, 2, TgaRleResult::kTooManyPixels, {}},
      {"run past the image without its pixel", {0x82, 1}, 2, TgaRleResult::kRunPixelShort, {}},
      {"raw packet past the image", {0x01, 1, 2, 3, 4, 5, 6}, 1, TgaRleResult::kTooManyPixels, {}},
      // Read pixel by pixel, the data ends before the pixel that would not fit.
      {"raw past the image and cut short", {0x02, 1, 2, 3}, 2, TgaRleResult::kRawPixelsShort, {}},
      {"raw cut at the pixel that does not fit",
       {0x02, 1, 2, 3, 4, 5, 6},
       2,
       TgaRleResult::kRawPixelsShort,
       {}},
      {"second run past the image", {0x81, 1, 1, 1, 0xFF, 2, 2, 2}, 3, TgaRleResult::kTooManyPixels, {}},
  };
  for (const auto& c : cases) {
    Bytes out(c.pixels * 3, 0xEE);
    EXPECT_EQ(DecodeTgaRle(c.data.data(), c.data.size(), c.pixels, 3, out.data()), c.result) << c.name;
    if (c.result == TgaRleResult::kDone) {
      EXPECT_EQ(out, c.out) << c.name;
    }
  }
}

}  // namespace
}  // namespace lx
