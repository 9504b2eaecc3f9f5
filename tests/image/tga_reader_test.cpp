#include "image/tga_reader.h"
#include <gtest/gtest.h>
#include <cstring>
#include <string>
#include <vector>
#include "image/pixel_ops.h"
#include "tests/image/tga_test_files.h"
#include "tests/support/guard_pages.h"

namespace lx::test {
namespace {

TEST(LoadTGA, DecodesBothTypesInTheFileRowOrder) {
  const Bytes rows = {1, 1, 1, 2, 2, 2};
  const struct {
    Bytes file, pixels;
  } cases[] = {
      {TgaHeader(2, 2, 1, 24, 0, {1, 2, 3, 4, 5, 6}), {1, 2, 3, 4, 5, 6}},
      // Compressed: red and blue exchanged; a run of three, then three raw pixels.
      {TgaHeader(10, 3, 2, 32, 0, {0x82, 10, 20, 30, 40, 0x02, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}),
       {30, 20, 10, 40, 30, 20, 10, 40, 30, 20, 10, 40, 3, 2, 1, 4, 7, 6, 5, 8, 11, 10, 9, 12}},
      {TgaHeader(10, 3, 1, 24, 0, {0x81, 1, 2, 3, 0x80, 4, 5, 6}), {3, 2, 1, 3, 2, 1, 6, 5, 4}},
      {TgaHeader(10, 1, 1, 24, 0, {0x80, 1, 2, 3, 0xFF, 0xFF}), {3, 2, 1}},  // what follows is ignored
      // Either origin: the rows as they are in the file.
      {TgaHeader(2, 1, 2, 24, 0x20, rows), rows},
      {TgaHeader(10, 1, 2, 24, 0x00, {0x00, 1, 1, 1, 0x80, 2, 2, 2}), rows},
      // Short uncompressed data still loads: what was read, then zero fill.
      {TgaHeader(2, 2, 1, 32, 0, {9, 9, 9, 9, 9}), {9, 9, 9, 9, 9, 0, 0, 0}},
  };
  for (const auto& c : cases) {
    OwnedTga image;
    std::strcpy(image.message, "stale");
    ASSERT_TRUE(LoadBytes(&image, c.file));
    EXPECT_EQ((std::vector<uint32_t>{image.width, image.bitsPerPixel, image.descriptor}),
              (std::vector<uint32_t>{c.file[12], c.file[16], c.file[17]}));
    EXPECT_STREQ(image.message, "");
    EXPECT_EQ(image.bytes(c.pixels.size()), c.pixels);
  }
}

TEST(WriteTGA, RefusesBadArgumentsBeforeMakingTheFile) {
  std::vector<uint32_t> pixels(4, 0u), wide(65536u, 0u);
  GuardedPages pages({GuardedPages::Access::kReadWrite, GuardedPages::Access::kNone});
  const auto perPage = static_cast<int32_t>(pages.pageSize() / 4);
  const std::string path = TempPath("writer_refused.tga"), noFolder = TempPath("no_such/x.tga");
  // The header holds each side in 16 bits; the last row must be readable.
  const struct {
    const void* pixels;
    int32_t w, h;
    const char* path;
  } refused[] = {{nullptr, 2, 2, path.c_str()},         {pixels.data(), 0, 2, path.c_str()},
                 {pixels.data(), 2, 0, path.c_str()},   {pixels.data(), -2, 2, path.c_str()},
                 {pixels.data(), 2, 2, nullptr},        {pixels.data(), 2, 2, noFolder.c_str()},
                 {wide.data(), 65536, 1, path.c_str()}, {pages.page(0), perPage, 2, path.c_str()}};
  for (const auto& c : refused) EXPECT_FALSE(WriteTGA(c.pixels, c.w, c.h, c.path)) << c.w << " x " << c.h;
  EXPECT_EQ(std::fopen(path.c_str(), "rb"), nullptr);
  EXPECT_TRUE(WriteTGA(pages.page(0), perPage, 1, path.c_str()));
  std::remove(path.c_str());
}

TEST(LoadTGA, RoundTripsWhatWriteTGAWritesAndConvertsTo32BitsOnce) {
  const std::vector<uint32_t> pixels = {0x80112233u, 0xFF445566u, 0x00778899u,
                                        0x7FAABBCCu, 0x01DDEEFFu, 0xFE010203u};  // 3 x 2
  const std::string path = TempPath("reader_roundtrip.tga");
  ASSERT_TRUE(WriteTGA(pixels.data(), 3, 2, path.c_str()));
  OwnedTga image;
  image.reserved = 0xC0FFEEu;
  ASSERT_TRUE(LoadTGA(&image, path.c_str()));
  std::remove(path.c_str());
  EXPECT_EQ((std::vector<uint32_t>{image.height, image.descriptor, image.reserved}),
            (std::vector<uint32_t>{2, 0x28, 0xC0FFEEu}));
  ASSERT_NE(image.pixels, nullptr);
  EXPECT_EQ(std::memcmp(image.pixels, pixels.data(), 24), 0);
  // Reloaded over the old block.
  ASSERT_TRUE(LoadBytes(&image, TgaHeader(2, 2, 1, 24, 0, {1, 2, 3, 4, 5, 6})));
  for (bool first : {true, false}) {
    EXPECT_EQ(ConvertTo32Bits(&image), first);
    EXPECT_EQ(image.bitsPerPixel, 32u);
    EXPECT_EQ(image.bytes(8), (Bytes{1, 2, 3, 0xFF, 4, 5, 6, 0xFF}));
  }
  OwnedTga empty, zeroSized;
  empty.bitsPerPixel = 24;
  ASSERT_TRUE(LoadBytes(&zeroSized, TgaHeader(2, 1, 1, 24, 0, {1, 2, 3})));
  zeroSized.height = 0;
  EXPECT_FALSE(ConvertTo32Bits(nullptr) || ConvertTo32Bits(&empty) || ConvertTo32Bits(&zeroSized));
  EXPECT_EQ(zeroSized.bitsPerPixel, 24u);
}

TEST(LoadTGA, RefusalsLeaveTheirMessageAndNoPixels) {
  OwnedTga image;
  EXPECT_FALSE(LoadTGA(nullptr, "x.tga"));
  const std::string missing = TempPath("reader_missing.tga");
  const std::string kOpen = "<LoadTGA> Could not open texture file: ";
  EXPECT_FALSE(LoadTGA(&image, missing.c_str()));
  EXPECT_EQ(image.message, kOpen + missing);
  EXPECT_FALSE(LoadTGA(&image, nullptr));
  EXPECT_EQ(image.message, kOpen + "NULL");
  EXPECT_FALSE(LoadTGA(&image, TempPath(std::string(400, 'n')).c_str()));
  EXPECT_EQ(std::strlen(image.message), kTgaMessageSize - 1);

  const char* kType = "<LoadTGA> TGA file should be either type 2 or 10";
  const char* kDepth = "<LoadCompressedTGA> BitPerPixel has to be either 24-bit or 32-bit";
  const char* kRle = "<LoadCompressedTGA> Could not read RLE header!";
  const char* kTooMany = "<LoadCompressedTGA> Too many pixels read for file!";
  Bytes withId = TgaHeader(2, 1, 1, 32, 0, {0, 0, 0, 0}), withMap = withId, withOrigin = withId;
  withId[0] = 1, withMap[1] = 1, withOrigin[8] = 1, withOrigin[2] = 10;
  const struct {
    Bytes bytes;
    std::string message;
  } cases[] = {
      {{0, 0, 2, 0, 0}, "<LoadTGA> Could not read header of " + TempPath("load.tga")},
      {withId, kType},
      {withMap, kType},
      {withOrigin, kType},
      {TgaHeader(1, 1, 1, 8, 0, {0}), kType},
      {{0, 0, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0}, "<LoadCompressedTGA> Could not read info header!"},
      {TgaHeader(10, 1, 1, 16, 0, {0x80, 0, 0}), kDepth},
      {TgaHeader(10, 0, 1, 32), kDepth},
      {TgaHeader(10, 1, 0, 32), kDepth},
      {TgaHeader(10, 2, 1, 24), kRle},
      {TgaHeader(10, 2, 1, 24, 0, {0x00, 1, 2, 3}), kRle},
      {TgaHeader(10, 2, 1, 24, 0, {0x01, 1, 2, 3, 4}), "<LoadCompressedTGA> Could not read image data!"},
      {TgaHeader(10, 2, 1, 32, 0, {0x81, 1, 2, 3}), "<LoadCompressedTGA> Could not read from file!"},
      {TgaHeader(10, 2, 1, 24, 0, {0x82, 1, 2, 3}), kTooMany},
      {TgaHeader(10, 1, 1, 24, 0, {0x01, 1, 2, 3, 4, 5, 6}), kTooMany},
      {TgaHeader(10, 65535, 65535, 32, 0, {0xFF, 1, 2, 3, 4}),
       "<LoadCompressedTGA> Could not allocate memory for image!"},
  };
  for (const auto& c : cases) {
    OwnedTga refused;
    EXPECT_FALSE(LoadBytes(&refused, c.bytes)) << c.message;
    EXPECT_EQ(refused.message, c.message);
    EXPECT_EQ(refused.pixels, nullptr) << c.message;
    EXPECT_EQ(refused.handle, nullptr) << c.message;
  }
}

// The pixel readers LoadTGA hands the file to after its first 12 bytes. The uncompressed one answers true
// and leaves each failure in the message; LoadTGA then empties it and reports success.
TEST(LoadTGA, UncompressedReaderAnswersTrueAndLeavesEachFailureInTheMessage) {
  const char* kDepth = "<LoadUncompressedTGA> BitPerPixel has to be either 24-bit or 32-bit";
  const struct {
    bool (*reader)(TgaLoaderState*, TgaImage*, std::FILE*);
    Bytes bytes;
    const char* message;
  } cases[] = {
      {LoadUncompressedTGA,
       {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 1},
       "<LoadUncompressedTGA> Could not read info header!"},
      {LoadUncompressedTGA, TgaHeader(2, 1, 1, 16, 0, {0, 0}), kDepth},
      {LoadUncompressedTGA, TgaHeader(2, 0, 4, 24), kDepth},
      {LoadUncompressedTGA, TgaHeader(2, 2, 2, 24, 0, {1, 2, 3}),
       "<LoadUncompressedTGA> Could not read image data!"},
      {LoadUncompressedTGA, TgaHeader(2, 65535, 65535, 32),
       "<LoadUncompressedTGA> Could not allocate memory for image!"},
      {LoadUncompressedTGA, TgaHeader(2, 1, 1, 24, 0, {1, 2, 3}), "kept"},   // success leaves the message
      {LoadCompressedTGA, TgaHeader(10, 1, 1, 24, 0, {0x80, 1, 2, 3}), ""},  // which this one empties itself
  };
  for (const auto& c : cases) {
    OwnedTga image, loaded;
    std::strcpy(image.message, "kept");
    const std::string path = WriteTempFile("reader_part.tga", c.bytes);
    std::FILE* f = std::fopen(path.c_str(), "rb");
    TgaLoaderState state;
    EXPECT_EQ(std::fread(state.header, 1, 12, f), 12u);
    EXPECT_TRUE(c.reader(&state, &image, f)) << c.message;
    std::fclose(f);
    std::remove(path.c_str());
    EXPECT_STREQ(image.message, c.message);
    EXPECT_TRUE(LoadBytes(&loaded, c.bytes)) << c.message;
    EXPECT_STREQ(loaded.message, "");
  }
}
}  // namespace
}  // namespace lx::test
