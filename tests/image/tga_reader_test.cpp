#include "image/tga_reader.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "image/pixel_ops.h"
#include "tests/image/tga_test_files.h"

namespace lx {
namespace {

using test::Bytes;
using test::Concat;
using test::OwnedTga;
using test::TgaHeader;
using test::WriteTempFile;

// Loads `bytes` from a file of that name; the file is removed afterwards.
bool LoadBytes(OwnedTga* image, const std::string& name, const Bytes& bytes) {
  const std::string path = WriteTempFile(name, bytes);
  const bool ok = LoadTGA(image, path.c_str());
  std::remove(path.c_str());
  return ok;
}

// Hands the file after its first 12 bytes to one of the pixel readers, as LoadTGA does.
template <typename Reader>
bool ReadAfterHeader(Reader reader, OwnedTga* image, const std::string& name, const Bytes& bytes) {
  const std::string path = WriteTempFile(name, bytes);
  std::FILE* f = std::fopen(path.c_str(), "rb");
  EXPECT_NE(f, nullptr);
  TgaLoaderState state;
  EXPECT_EQ(std::fread(state.header, 1, 12, f), 12u);
  const bool ok = reader(&state, image, f);
  std::fclose(f);
  std::remove(path.c_str());
  return ok;
}

TEST(LoadTGA, RoundTripsWhatWriteTGAWrites) {
  const std::vector<uint32_t> pixels = {0x80112233u, 0xFF445566u, 0x00778899u,
                                        0x7FAABBCCu, 0x01DDEEFFu, 0xFE010203u};  // 3 x 2
  const std::string path = test::TempPath("reader_roundtrip.tga");
  ASSERT_TRUE(WriteTGA(pixels.data(), 3, 2, path.c_str()));
  OwnedTga image;
  std::strcpy(image.message, "stale");
  image.reserved = 0xC0FFEEu;
  ASSERT_TRUE(LoadTGA(&image, path.c_str()));
  std::remove(path.c_str());

  EXPECT_EQ(image.width, 3u);
  EXPECT_EQ(image.height, 2u);
  EXPECT_EQ(image.bitsPerPixel, 32u);
  EXPECT_EQ(image.descriptor, 0x28);
  EXPECT_EQ(image.reserved, 0xC0FFEEu);
  EXPECT_STREQ(image.message, "");
  ASSERT_NE(image.pixels, nullptr);
  EXPECT_EQ(std::memcmp(image.pixels, pixels.data(), 24), 0);
}

TEST(LoadTGA, Uncompressed24BitKeepsTheFileOrderAndConvertsWithOpaqueAlpha) {
  const Bytes data = {1, 2, 3, 4, 5, 6};  // 2 x 1, blue green red
  OwnedTga image;
  ASSERT_TRUE(LoadBytes(&image, "reader_u24.tga", Concat(TgaHeader(2, 2, 1, 24), data)));
  EXPECT_EQ(image.bitsPerPixel, 24u);
  EXPECT_EQ(image.bytes(6), data);

  ASSERT_TRUE(ConvertTo32Bits(&image));
  EXPECT_EQ(image.bitsPerPixel, 32u);
  EXPECT_EQ(image.bytes(8), (Bytes{1, 2, 3, 0xFF, 4, 5, 6, 0xFF}));
  EXPECT_FALSE(ConvertTo32Bits(&image));  // already 32 bits: left alone
  EXPECT_EQ(image.bytes(8), (Bytes{1, 2, 3, 0xFF, 4, 5, 6, 0xFF}));
}

TEST(LoadTGA, CompressedPacketsDecodeWithRedAndBlueExchanged) {
  // 3 x 2 at 32 bits: a run of three, then three raw pixels.
  const Bytes data = {0x82, 10, 20, 30, 40, 0x02, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  OwnedTga image;
  std::strcpy(image.message, "stale");
  ASSERT_TRUE(LoadBytes(&image, "reader_c32.tga", Concat(TgaHeader(10, 3, 2, 32), data)));
  EXPECT_EQ(image.bitsPerPixel, 32u);
  EXPECT_STREQ(image.message, "");
  EXPECT_EQ(image.bytes(24), (Bytes{30, 20, 10, 40, 30, 20, 10, 40, 30, 20, 10, 40,  //
                                    3,  2,  1,  4,  7,  6,  5,  8,  11, 10, 9,  12}));

  // 2 x 2 at 24 bits: raw one, run of three.
  const Bytes data24 = {0x00, 1, 2, 3, 0x82, 7, 8, 9};
  OwnedTga image24;
  ASSERT_TRUE(LoadBytes(&image24, "reader_c24.tga", Concat(TgaHeader(10, 2, 2, 24), data24)));
  EXPECT_EQ(image24.bitsPerPixel, 24u);
  EXPECT_EQ(image24.bytes(12), (Bytes{3, 2, 1, 9, 8, 7, 9, 8, 7, 9, 8, 7}));
}

TEST(LoadTGA, BothOriginsLoadTheSameRowOrder) {
  const Bytes rows = {1, 1, 1, 2, 2, 2};  // 1 x 2 at 24 bits
  OwnedTga bottomLeft, topLeft;
  ASSERT_TRUE(LoadBytes(&bottomLeft, "reader_bl.tga", Concat(TgaHeader(2, 1, 2, 24, 0x00), rows)));
  ASSERT_TRUE(LoadBytes(&topLeft, "reader_tl.tga", Concat(TgaHeader(2, 1, 2, 24, 0x20), rows)));
  EXPECT_EQ(bottomLeft.descriptor, 0x00);
  EXPECT_EQ(topLeft.descriptor, 0x20);
  EXPECT_EQ(bottomLeft.bytes(6), rows);
  EXPECT_EQ(topLeft.bytes(6), rows);

  const Bytes packets = {0x00, 1, 1, 1, 0x80, 2, 2, 2};
  OwnedTga rleBottom, rleTop;
  ASSERT_TRUE(LoadBytes(&rleBottom, "reader_rbl.tga", Concat(TgaHeader(10, 1, 2, 24, 0x00), packets)));
  ASSERT_TRUE(LoadBytes(&rleTop, "reader_rtl.tga", Concat(TgaHeader(10, 1, 2, 24, 0x20), packets)));
  EXPECT_EQ(rleBottom.bytes(6), rows);
  EXPECT_EQ(rleTop.bytes(6), rows);
}

TEST(LoadTGA, ReloadingReplacesTheOldBlock) {
  OwnedTga image;
  ASSERT_TRUE(LoadBytes(&image, "reader_first.tga", Concat(TgaHeader(2, 1, 1, 32), {1, 2, 3, 4})));
  ASSERT_TRUE(LoadBytes(&image, "reader_second.tga", Concat(TgaHeader(10, 2, 1, 24), {0x81, 5, 6, 7})));
  EXPECT_EQ(image.width, 2u);
  EXPECT_EQ(image.bytes(6), (Bytes{7, 6, 5, 7, 6, 5}));
}

TEST(LoadTGA, RefusalsLeaveTheirMessageAndNoPixels) {
  OwnedTga image;
  EXPECT_FALSE(LoadTGA(nullptr, "x.tga"));

  const std::string missing = test::TempPath("reader_missing.tga");
  EXPECT_FALSE(LoadTGA(&image, missing.c_str()));
  EXPECT_EQ(std::string(image.message), "<LoadTGA> Could not open texture file: " + missing);
  EXPECT_FALSE(LoadTGA(&image, nullptr));
  EXPECT_STREQ(image.message, "<LoadTGA> Could not open texture file: NULL");

  const std::string shortPath = WriteTempFile("reader_short.tga", {0, 0, 2, 0, 0});
  EXPECT_FALSE(LoadTGA(&image, shortPath.c_str()));
  EXPECT_EQ(std::string(image.message), "<LoadTGA> Could not read header of " + shortPath);
  std::remove(shortPath.c_str());

  Bytes withId = Concat(TgaHeader(2, 1, 1, 32), {0, 0, 0, 0});
  withId[0] = 1;
  Bytes withMap = Concat(TgaHeader(2, 1, 1, 32), {0, 0, 0, 0});
  withMap[1] = 1;
  Bytes withOrigin = Concat(TgaHeader(10, 1, 1, 32), {0x80, 0, 0, 0, 0});
  withOrigin[8] = 1;
  for (const Bytes& bytes : {withId, withMap, withOrigin, Concat(TgaHeader(1, 1, 1, 8), {0})}) {
    EXPECT_FALSE(LoadBytes(&image, "reader_type.tga", bytes));
    EXPECT_STREQ(image.message, "<LoadTGA> TGA file should be either type 2 or 10");
    EXPECT_EQ(image.pixels, nullptr);
  }
}

TEST(LoadTGA, CompressedRefusals) {
  struct Case {
    Bytes bytes;
    const char* message;
  };
  const Case cases[] = {
      {{0, 0, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0}, "<LoadCompressedTGA> Could not read info header!"},
      {Concat(TgaHeader(10, 1, 1, 16), {0x80, 0, 0}),
       "<LoadCompressedTGA> BitPerPixel has to be either 24-bit or 32-bit"},
      {Concat(TgaHeader(10, 1, 1, 8), {0x80, 0}),
       "<LoadCompressedTGA> BitPerPixel has to be either 24-bit or 32-bit"},
      {Concat(TgaHeader(10, 0, 1, 32), {}),
       "<LoadCompressedTGA> BitPerPixel has to be either 24-bit or 32-bit"},
      {Concat(TgaHeader(10, 1, 0, 32), {}),
       "<LoadCompressedTGA> BitPerPixel has to be either 24-bit or 32-bit"},
      {TgaHeader(10, 2, 1, 24), "<LoadCompressedTGA> Could not read RLE header!"},
      {Concat(TgaHeader(10, 2, 1, 24), {0x00, 1, 2, 3}), "<LoadCompressedTGA> Could not read RLE header!"},
      {Concat(TgaHeader(10, 2, 1, 24), {0x01, 1, 2, 3, 4}), "<LoadCompressedTGA> Could not read image data!"},
      {Concat(TgaHeader(10, 2, 1, 32), {0x81, 1, 2, 3}), "<LoadCompressedTGA> Could not read from file!"},
      {Concat(TgaHeader(10, 2, 1, 24), {0x82, 1, 2, 3}),
       "<LoadCompressedTGA> Too many pixels read for file!"},
      {Concat(TgaHeader(10, 1, 1, 24), {0x01, 1, 2, 3, 4, 5, 6}),
       "<LoadCompressedTGA> Too many pixels read for file!"},
      {Concat(TgaHeader(10, 65535, 65535, 32), {0xFF, 1, 2, 3, 4}),
       "<LoadCompressedTGA> Could not allocate memory for image!"},
  };
  for (const Case& c : cases) {
    OwnedTga image;
    EXPECT_FALSE(LoadBytes(&image, "reader_rle_refused.tga", c.bytes)) << c.message;
    EXPECT_STREQ(image.message, c.message);
    EXPECT_EQ(image.pixels, nullptr) << c.message;
    EXPECT_EQ(image.handle, nullptr) << c.message;
  }
}

TEST(LoadTGA, ExactlyTheLastPixelIsNotTooMany) {
  OwnedTga image;
  // Two runs that end exactly on the pixel count.
  ASSERT_TRUE(
      LoadBytes(&image, "reader_exact.tga", Concat(TgaHeader(10, 3, 1, 24), {0x81, 1, 2, 3, 0x80, 4, 5, 6})));
  EXPECT_EQ(image.bytes(9), (Bytes{3, 2, 1, 3, 2, 1, 6, 5, 4}));
}

TEST(LoadTGA, BrokenUncompressedFilesStillLoad) {
  // The uncompressed reader reports success whatever happens; LoadTGA then empties the message.
  OwnedTga depth;
  EXPECT_TRUE(LoadBytes(&depth, "reader_u16.tga", Concat(TgaHeader(2, 1, 1, 16), {0, 0})));
  EXPECT_STREQ(depth.message, "");
  EXPECT_EQ(depth.pixels, nullptr);
  EXPECT_EQ(depth.bitsPerPixel, 16u);

  OwnedTga shortData;
  EXPECT_TRUE(LoadBytes(&shortData, "reader_ushort.tga", Concat(TgaHeader(2, 2, 1, 32), {9, 9, 9, 9, 9})));
  EXPECT_STREQ(shortData.message, "");
  EXPECT_EQ(shortData.bytes(8), (Bytes{9, 9, 9, 9, 9, 0, 0, 0}));  // what was read, then zero fill

  OwnedTga noInfo;
  EXPECT_TRUE(LoadBytes(&noInfo, "reader_uinfo.tga", {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}));
  EXPECT_STREQ(noInfo.message, "");
  EXPECT_EQ(noInfo.pixels, nullptr);
}

TEST(LoadUncompressedTGA, LeavesEachFailureInTheMessageAndAnswersTrue) {
  struct Case {
    Bytes bytes;
    const char* message;
  };
  const Case cases[] = {
      {{0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 1}, "<LoadUncompressedTGA> Could not read info header!"},
      {Concat(TgaHeader(2, 1, 1, 16), {0, 0}),
       "<LoadUncompressedTGA> BitPerPixel has to be either 24-bit or 32-bit"},
      {Concat(TgaHeader(2, 0, 4, 24), {}),
       "<LoadUncompressedTGA> BitPerPixel has to be either 24-bit or 32-bit"},
      {Concat(TgaHeader(2, 2, 2, 24), {1, 2, 3}), "<LoadUncompressedTGA> Could not read image data!"},
      {Concat(TgaHeader(2, 65535, 65535, 32), {}),
       "<LoadUncompressedTGA> Could not allocate memory for image!"},
  };
  for (const Case& c : cases) {
    OwnedTga image;
    EXPECT_TRUE(ReadAfterHeader(LoadUncompressedTGA, &image, "reader_unc.tga", c.bytes)) << c.message;
    EXPECT_STREQ(image.message, c.message);
  }
  OwnedTga fine;
  std::strcpy(fine.message, "kept");
  EXPECT_TRUE(ReadAfterHeader(LoadUncompressedTGA, &fine, "reader_unc_ok.tga",
                              Concat(TgaHeader(2, 1, 1, 24), {1, 2, 3})));
  EXPECT_STREQ(fine.message, "kept");  // only LoadTGA empties it
  EXPECT_FALSE(LoadUncompressedTGA(nullptr, &fine, nullptr));
  TgaLoaderState state;
  EXPECT_FALSE(LoadUncompressedTGA(&state, nullptr, nullptr));
}

TEST(LoadCompressedTGA, EmptiesTheMessageItself) {
  OwnedTga image;
  std::strcpy(image.message, "stale");
  EXPECT_TRUE(ReadAfterHeader(LoadCompressedTGA, &image, "reader_comp.tga",
                              Concat(TgaHeader(10, 1, 1, 24), {0x80, 1, 2, 3})));
  EXPECT_STREQ(image.message, "");
  EXPECT_FALSE(LoadCompressedTGA(nullptr, &image, nullptr));
}

TEST(LoadTGA, LongFileNamesAreCutToTheMessageBuffer) {
  const std::string name = test::TempPath(std::string(400, 'n'));
  OwnedTga image;
  EXPECT_FALSE(LoadTGA(&image, name.c_str()));
  EXPECT_EQ(std::strlen(image.message), kTgaMessageSize - 1);
  EXPECT_EQ(std::string(image.message).rfind("<LoadTGA> Could not open texture file: ", 0), 0u);
}

TEST(ConvertTo32Bits, LeavesOtherRecordsAlone) {
  EXPECT_FALSE(ConvertTo32Bits(nullptr));
  OwnedTga empty;
  empty.bitsPerPixel = 24;
  EXPECT_FALSE(ConvertTo32Bits(&empty));

  OwnedTga zeroSized;
  ASSERT_TRUE(LoadBytes(&zeroSized, "convert_src.tga", Concat(TgaHeader(2, 1, 1, 24), {1, 2, 3})));
  zeroSized.height = 0;
  EXPECT_FALSE(ConvertTo32Bits(&zeroSized));
  EXPECT_EQ(zeroSized.bitsPerPixel, 24u);
  EXPECT_EQ(zeroSized.bytes(3), (Bytes{1, 2, 3}));
}

}  // namespace
}  // namespace lx
