// Hostile TGA files: truncated, overflowing their pixel count, claiming huge sizes, or bent byte by byte.
// Each must load cleanly or be refused with a message and no pixels, never touching memory outside the
// block (run under the sanitizers to see that).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "image/tga_reader.h"
#include "tests/image/tga_test_files.h"

namespace lx {
namespace {

using test::Bytes;
using test::OwnedTga;
using test::TgaHeader;

// Loads the file; a refused load must leave its reason and nothing to free, a loaded one no message.
bool LoadConsistently(const Bytes& bytes, OwnedTga* image) {
  const bool loaded = LoadBytes(image, bytes);
  EXPECT_EQ(image->message[0] == '\0', loaded);
  EXPECT_TRUE(loaded || (image->pixels == nullptr && image->handle == nullptr));
  EXPECT_TRUE(!loaded || image->pixels == nullptr || image->bitsPerPixel != 24 || ConvertTo32Bits(image));
  return loaded;
}

TEST(TgaCrashers, TruncatedBentOverflowingAndHugeFiles) {
  // 4 x 3: runs and raw packets mixed, ending exactly on the count.
  const Bytes rle =
      TgaHeader(10, 4, 3, 32, 0, {0x83, 1, 2, 3, 4, 0x01, 5, 6, 7, 8, 9, 10, 11, 12, 0x85, 13, 14, 15, 16});
  const Bytes raw = TgaHeader(2, 2, 2, 24, 0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
  for (size_t length = 0; length <= rle.size(); ++length) {
    OwnedTga image;
    EXPECT_EQ(LoadConsistently(Bytes(rle.begin(), rle.begin() + length), &image), length == rle.size())
        << length;
  }
  // Past the 12 type bytes the uncompressed reader accepts whatever it gets.
  for (size_t length = 0; length <= raw.size(); ++length) {
    OwnedTga image;
    EXPECT_EQ(LoadConsistently(Bytes(raw.begin(), raw.begin() + length), &image), length >= 12) << length;
  }
  for (size_t at = 0; at < rle.size(); ++at) {
    for (uint8_t value : {0x00, 0x02, 0x0A, 0x7F, 0x80, 0xFF}) {
      SCOPED_TRACE(testing::Message() << "byte " << at << " = " << int{value});
      Bytes bent = rle;
      bent[at] = value;
      OwnedTga image;
      LoadConsistently(bent, &image);
    }
  }
  Bytes rawPacketOf128 = {0x7F}, runThenRawPacket = {0x80, 1, 1, 1, 1, 0x7F};
  rawPacketOf128.resize(1 + 128 * 3, 0xAB);
  runThenRawPacket.resize(6 + 128 * 4, 0xCD);
  const struct {
    Bytes file;
    const char* message;  // or nullptr: either answer, as long as the record is consistent
  } files[] = {
      {TgaHeader(10, 1, 1, 32, 0, {0xFF, 1, 2, 3, 4}), "<LoadCompressedTGA> Too many pixels read for file!"},
      {TgaHeader(10, 1, 1, 24, 0, rawPacketOf128), "<LoadCompressedTGA> Too many pixels read for file!"},
      {TgaHeader(10, 3, 1, 24, 0, {0x81, 1, 1, 1, 0xFF, 2, 2, 2}),
       "<LoadCompressedTGA> Too many pixels read for file!"},
      {TgaHeader(10, 2, 2, 32, 0, runThenRawPacket), "<LoadCompressedTGA> Too many pixels read for file!"},
      {TgaHeader(10, 65535, 65535, 32, 0, {0xFF, 1, 2, 3, 4}), ""},
      {TgaHeader(10, 65535, 65535, 24), ""},
      {TgaHeader(10, 65535, 2048, 32, 0, {0xFF, 1, 2, 3, 4}), ""},  // just under the size limit, data missing
      {TgaHeader(2, 65535, 65535, 32, 0, {1, 2, 3, 4}), nullptr},
  };
  for (const auto& f : files) {
    OwnedTga image;
    const bool loaded = LoadConsistently(f.file, &image);
    EXPECT_TRUE(f.message == nullptr || !loaded);
    if (f.message != nullptr && *f.message != '\0') {
      EXPECT_STREQ(image.message, f.message);
    }
  }
}

}  // namespace
}  // namespace lx
