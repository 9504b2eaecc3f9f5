#include "image/tga_codec.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace lx {
namespace {

using Bytes = std::vector<uint8_t>;

TEST(ParseTgaHeader, TakesEveryFieldApartLittleEndian) {
  const Bytes header = {7, 1, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x2C, 0x01, 0xFF, 0xFF, 24, 0x28};
  const TgaHeader parsed = ParseTgaHeader(header.data());
  EXPECT_EQ(parsed.idLength, 7);
  EXPECT_EQ(parsed.colourMapType, 1);
  EXPECT_EQ(parsed.imageType, 10);
  EXPECT_EQ(parsed.info.width, 300u);
  EXPECT_EQ(parsed.info.height, 65535u);
  EXPECT_EQ(parsed.info.bitsPerPixel, 24u);
  EXPECT_EQ(parsed.info.descriptor, 0x28);
}

TEST(TgaPixelBytes, LeastAndMostForAClaimedSize) {
  struct Case {
    bool compressed;
    uint64_t pixels;
    uint32_t bytesPerPixel;
    uint64_t least;
  };
  const Case cases[] = {
      {false, 1, 3, 3},  {false, uint64_t{65535} * 65535, 4, uint64_t{65535} * 65535 * 4},  // past 32 bits
      {true, 1, 4, 5},   {true, 128, 3, 4},
      {true, 129, 3, 8}, {true, 256, 4, 10},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(TgaLeastPixelBytes(c.compressed, c.pixels, c.bytesPerPixel), c.least) << c.pixels;
  }
  EXPECT_EQ(TgaMostRlePixelBytes(1, 3), 7u);
  EXPECT_EQ(TgaMostRlePixelBytes(10, 4), 54u);
}

TEST(DecodeTgaRle, UnpacksRunsAndRawPacketsInTheFilesByteOrder) {
  const Bytes data = {0x81, 1, 2, 3, 0x01, 4, 5, 6, 7, 8, 9};  // a run of 2, then 2 raw pixels
  Bytes out(4 * 3, 0xEE);
  EXPECT_EQ(DecodeTgaRle(data.data(), data.size(), 4, 3, out.data()), TgaRleResult::kDone);
  EXPECT_EQ(out, (Bytes{1, 2, 3, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST(DecodeTgaRle, IgnoresWhatFollowsTheLastPixel) {
  const Bytes data = {0x80, 1, 2, 3, 4, 0xFF, 0xFF};
  Bytes out(4, 0);
  EXPECT_EQ(DecodeTgaRle(data.data(), data.size(), 1, 4, out.data()), TgaRleResult::kDone);
  EXPECT_EQ(out, (Bytes{1, 2, 3, 4}));
}

TEST(DecodeTgaRle, NamesTheFirstFault) {
  struct Case {
    const char* name;
    Bytes data;
    size_t pixels;
    TgaRleResult result;
  };
  const Case cases[] = {
      {"no data", {}, 1, TgaRleResult::kPacketHeaderMissing},
      {"one pixel short of the image", {0x00, 1, 2, 3}, 2, TgaRleResult::kPacketHeaderMissing},
      {"raw packet cut inside a pixel", {0x01, 1, 2, 3, 4}, 2, TgaRleResult::kRawPixelsShort},
      {"run without a whole pixel", {0x81, 1, 2}, 2, TgaRleResult::kRunPixelShort},
      {"run past the image", {0x82, 1, 2, 3}, 2, TgaRleResult::kTooManyPixels},
      {"run past the image without its pixel", {0x82, 1}, 2, TgaRleResult::kRunPixelShort},
      {"raw packet past the image", {0x01, 1, 2, 3, 4, 5, 6}, 1, TgaRleResult::kTooManyPixels},
      // Read pixel by pixel, the data ends before the pixel that would not fit.
      {"raw packet past the image and cut short", {0x02, 1, 2, 3}, 2, TgaRleResult::kRawPixelsShort},
      {"raw packet cut at the pixel that does not fit",
       {0x02, 1, 2, 3, 4, 5, 6},
       2,
       TgaRleResult::kRawPixelsShort},
      {"second run past the image", {0x81, 1, 1, 1, 0xFF, 2, 2, 2}, 3, TgaRleResult::kTooManyPixels},
  };
  for (const Case& c : cases) {
    Bytes out(c.pixels * 3, 0);
    EXPECT_EQ(DecodeTgaRle(c.data.data(), c.data.size(), c.pixels, 3, out.data()), c.result) << c.name;
  }
}

TEST(WriteTgaHeader32, UncompressedTopDownWithEightAlphaBits) {
  Bytes header(kTgaHeaderSize, 0xEE);
  WriteTgaHeader32(0x1234, 0x00FF, header.data());
  EXPECT_EQ(header, (Bytes{0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x34, 0x12, 0xFF, 0x00, 32, 0x28}));
}

}  // namespace
}  // namespace lx
