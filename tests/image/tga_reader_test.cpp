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

bool LoadBytes(OwnedTga* image, const Bytes& bytes) {
  const std::string path = WriteTempFile("reader.tga", bytes);
  const bool ok = LoadTGA(image, path.c_str());
  std::remove(path.c_str());
  return ok;
}

// Hands the file after its first 12 bytes to one of the pixel readers, as LoadTGA does.
template <typename Reader>
bool ReadAfterHeader(Reader reader, OwnedTga* image, const Bytes& bytes) {
  const std::string path = WriteTempFile("reader_part.tga", bytes);
  std::FILE* f = std::fopen(path.c_str(), "rb");
  TgaLoaderState state;
  EXPECT_EQ(std::fread(state.header, 1, 12, f), 12u);
  const bool ok = reader(&state, image, f);
  std::fclose(f);
  std::remove(path.c_str());
  return ok;
}

TEST(LoadTGA, DecodesBothTypesInTheFileRowOrder) {
  const Bytes rows = {1, 1, 1, 2, 2, 2};
  const struct {
    Bytes file, pixels;
  } cases[] = {
      {Concat(TgaHeader(2, 2, 1, 24), {1, 2, 3, 4, 5, 6}), {1, 2, 3, 4, 5, 6}},
      // Compressed: red and blue exchanged; a run of three, then three raw pixels.
      {Concat(TgaHeader(10, 3, 2, 32), {0x82, 10, 20, 30, 40, 0x02, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}),
       {30, 20, 10, 40, 30, 20, 10, 40, 30, 20, 10, 40, 3, 2, 1, 4, 7, 6, 5, 8, 11, 10, 9, 12}},
      {Concat(TgaHeader(10, 2, 2, 24), {0x00, 1, 2, 3, 0x82, 7, 8, 9}), {3, 2, 1, 9, 8, 7, 9, 8, 7, 9, 8, 7}},
      // Runs that end exactly on the pixel count.
      {Concat(TgaHeader(10, 3, 1, 24), {0x81, 1, 2, 3, 0x80, 4, 5, 6}), {3, 2, 1, 3, 2, 1, 6, 5, 4}},
      // Either origin: the rows as they are in the file.
      {Concat(TgaHeader(2, 1, 2, 24, 0x00), rows), rows},
      {Concat(TgaHeader(2, 1, 2, 24, 0x20), rows), rows},
      {Concat(TgaHeader(10, 1, 2, 24, 0x00), {0x00, 1, 1, 1, 0x80, 2, 2, 2}), rows},
      {Concat(TgaHeader(10, 1, 2, 24, 0x20), {0x00, 1, 1, 1, 0x80, 2, 2, 2}), rows},
      // Short uncompressed data still loads: what was read, then zero fill.
      {Concat(TgaHeader(2, 2, 1, 32), {9, 9, 9, 9, 9}), {9, 9, 9, 9, 9, 0, 0, 0}},
  };
  for (const auto& c : cases) {
    OwnedTga image;
    std::strcpy(image.message, "stale");
    ASSERT_TRUE(LoadBytes(&image, c.file));
    EXPECT_EQ(image.width, c.file[12]);
    EXPECT_EQ(image.bitsPerPixel, c.file[16]);
    EXPECT_EQ(image.descriptor, c.file[17]);
    EXPECT_STREQ(image.message, "");
    EXPECT_EQ(image.bytes(c.pixels.size()), c.pixels);
  }
}

TEST(LoadTGA, RoundTripsWhatWriteTGAWritesAndReloadsOverTheOldBlock) {
  const std::vector<uint32_t> pixels = {0x80112233u, 0xFF445566u, 0x00778899u,
                                        0x7FAABBCCu, 0x01DDEEFFu, 0xFE010203u};  // 3 x 2
  const std::string path = test::TempPath("reader_roundtrip.tga");
  ASSERT_TRUE(WriteTGA(pixels.data(), 3, 2, path.c_str()));
  OwnedTga image;
  image.reserved = 0xC0FFEEu;
  ASSERT_TRUE(LoadTGA(&image, path.c_str()));
  std::remove(path.c_str());
  EXPECT_EQ(image.height, 2u);
  EXPECT_EQ(image.descriptor, 0x28);
  EXPECT_EQ(image.reserved, 0xC0FFEEu);
  ASSERT_NE(image.pixels, nullptr);
  EXPECT_EQ(std::memcmp(image.pixels, pixels.data(), 24), 0);

  ASSERT_TRUE(LoadBytes(&image, Concat(TgaHeader(2, 2, 1, 24), {1, 2, 3, 4, 5, 6})));
  ASSERT_TRUE(ConvertTo32Bits(&image));
  EXPECT_EQ(image.bitsPerPixel, 32u);
  EXPECT_EQ(image.bytes(8), (Bytes{1, 2, 3, 0xFF, 4, 5, 6, 0xFF}));
  EXPECT_FALSE(ConvertTo32Bits(&image));  // already 32 bits
  EXPECT_EQ(image.bytes(8), (Bytes{1, 2, 3, 0xFF, 4, 5, 6, 0xFF}));
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
  const std::string longName = test::TempPath(std::string(400, 'n'));
  EXPECT_FALSE(LoadTGA(&image, longName.c_str()));
  EXPECT_EQ(std::strlen(image.message), kTgaMessageSize - 1);

  Bytes withId = Concat(TgaHeader(2, 1, 1, 32), {0, 0, 0, 0}), withMap = withId;
  withId[0] = 1;
  withMap[1] = 1;
  Bytes withOrigin = Concat(TgaHeader(10, 1, 1, 32), {0x80, 0, 0, 0, 0});
  withOrigin[8] = 1;
  for (const Bytes& bytes : {withId, withMap, withOrigin, Concat(TgaHeader(1, 1, 1, 8), {0})}) {
    EXPECT_FALSE(LoadBytes(&image, bytes));
    EXPECT_STREQ(image.message, "<LoadTGA> TGA file should be either type 2 or 10");
    EXPECT_EQ(image.pixels, nullptr);
  }
}

TEST(LoadTGA, CompressedRefusals) {
  const char* kDepth = "<LoadCompressedTGA> BitPerPixel has to be either 24-bit or 32-bit";
  const char* kRle = "<LoadCompressedTGA> Could not read RLE header!";
  const char* kTooMany = "<LoadCompressedTGA> Too many pixels read for file!";
  const struct {
    Bytes bytes;
    const char* message;
  } cases[] = {
      {{0, 0, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0}, "<LoadCompressedTGA> Could not read info header!"},
      {Concat(TgaHeader(10, 1, 1, 16), {0x80, 0, 0}), kDepth},
      {Concat(TgaHeader(10, 1, 1, 8), {0x80, 0}), kDepth},
      {TgaHeader(10, 0, 1, 32), kDepth},
      {TgaHeader(10, 1, 0, 32), kDepth},
      {TgaHeader(10, 2, 1, 24), kRle},
      {Concat(TgaHeader(10, 2, 1, 24), {0x00, 1, 2, 3}), kRle},
      {Concat(TgaHeader(10, 2, 1, 24), {0x01, 1, 2, 3, 4}), "<LoadCompressedTGA> Could not read image data!"},
      {Concat(TgaHeader(10, 2, 1, 32), {0x81, 1, 2, 3}), "<LoadCompressedTGA> Could not read from file!"},
      {Concat(TgaHeader(10, 2, 1, 24), {0x82, 1, 2, 3}), kTooMany},
      {Concat(TgaHeader(10, 1, 1, 24), {0x01, 1, 2, 3, 4, 5, 6}), kTooMany},
      {Concat(TgaHeader(10, 65535, 65535, 32), {0xFF, 1, 2, 3, 4}),
       "<LoadCompressedTGA> Could not allocate memory for image!"},
  };
  for (const auto& c : cases) {
    OwnedTga image;
    EXPECT_FALSE(LoadBytes(&image, c.bytes)) << c.message;
    EXPECT_STREQ(image.message, c.message);
    EXPECT_EQ(image.pixels, nullptr) << c.message;
    EXPECT_EQ(image.handle, nullptr) << c.message;
  }
}

TEST(LoadTGA, UncompressedReaderAnswersTrueAndLeavesEachFailureInTheMessage) {
  const char* kDepth = "<LoadUncompressedTGA> BitPerPixel has to be either 24-bit or 32-bit";
  const struct {
    Bytes bytes;
    const char* message;
  } cases[] = {
      {{0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 1}, "<LoadUncompressedTGA> Could not read info header!"},
      {Concat(TgaHeader(2, 1, 1, 16), {0, 0}), kDepth},
      {TgaHeader(2, 0, 4, 24), kDepth},
      {Concat(TgaHeader(2, 2, 2, 24), {1, 2, 3}), "<LoadUncompressedTGA> Could not read image data!"},
      {TgaHeader(2, 65535, 65535, 32), "<LoadUncompressedTGA> Could not allocate memory for image!"},
  };
  for (const auto& c : cases) {
    OwnedTga image;
    EXPECT_TRUE(ReadAfterHeader(LoadUncompressedTGA, &image, c.bytes)) << c.message;
    EXPECT_STREQ(image.message, c.message);
    // LoadTGA then empties the message and reports success.
    OwnedTga loaded;
    EXPECT_TRUE(LoadBytes(&loaded, c.bytes)) << c.message;
    EXPECT_STREQ(loaded.message, "");
  }
  OwnedTga fine;
  std::strcpy(fine.message, "kept");
  EXPECT_TRUE(ReadAfterHeader(LoadUncompressedTGA, &fine, Concat(TgaHeader(2, 1, 1, 24), {1, 2, 3})));
  EXPECT_STREQ(fine.message, "kept");  // only LoadTGA empties it
  EXPECT_FALSE(LoadUncompressedTGA(nullptr, &fine, nullptr));
  TgaLoaderState state;
  EXPECT_FALSE(LoadUncompressedTGA(&state, nullptr, nullptr));

  OwnedTga compressed;
  std::strcpy(compressed.message, "stale");
  EXPECT_TRUE(
      ReadAfterHeader(LoadCompressedTGA, &compressed, Concat(TgaHeader(10, 1, 1, 24), {0x80, 1, 2, 3})));
  EXPECT_STREQ(compressed.message, "");  // the compressed reader empties it itself
  EXPECT_FALSE(LoadCompressedTGA(nullptr, &compressed, nullptr));
}

TEST(ConvertTo32Bits, LeavesOtherRecordsAlone) {
  EXPECT_FALSE(ConvertTo32Bits(nullptr));
  OwnedTga empty;
  empty.bitsPerPixel = 24;
  EXPECT_FALSE(ConvertTo32Bits(&empty));
  OwnedTga zeroSized;
  ASSERT_TRUE(LoadBytes(&zeroSized, Concat(TgaHeader(2, 1, 1, 24), {1, 2, 3})));
  zeroSized.height = 0;
  EXPECT_FALSE(ConvertTo32Bits(&zeroSized));
  EXPECT_EQ(zeroSized.bitsPerPixel, 24u);
  EXPECT_EQ(zeroSized.bytes(3), (Bytes{1, 2, 3}));
}

}  // namespace
}  // namespace lx
