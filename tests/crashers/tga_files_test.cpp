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
using test::Concat;
using test::OwnedTga;
using test::TgaHeader;

bool Load(OwnedTga* image, const Bytes& bytes) {
  const std::string path = test::WriteTempFile("crasher.tga", bytes);
  const bool ok = LoadTGA(image, path.c_str());
  std::remove(path.c_str());
  return ok;
}

// A refused load leaves its reason and nothing to free; a loaded one leaves no message.
void ExpectConsistent(const OwnedTga& image, bool loaded, const std::string& what) {
  if (loaded) {
    EXPECT_STREQ(image.message, "") << what;
  } else {
    EXPECT_NE(image.message[0], '\0') << what;
    EXPECT_EQ(image.pixels, nullptr) << what;
    EXPECT_EQ(image.handle, nullptr) << what;
  }
}

const Bytes& ValidRle32() {
  // 4 x 3: runs and raw packets mixed, ending exactly on the count.
  static const Bytes file = Concat(TgaHeader(10, 4, 3, 32),
                                   {0x83, 1, 2, 3, 4, 0x01, 5, 6, 7, 8, 9, 10, 11, 12, 0x85, 13, 14, 15, 16});
  return file;
}

TEST(TgaCrashers, EveryTruncationOfACompressedFileIsRefused) {
  const Bytes& full = ValidRle32();
  for (size_t length = 0; length < full.size(); ++length) {
    OwnedTga image;
    const bool loaded = Load(&image, Bytes(full.begin(), full.begin() + length));
    EXPECT_FALSE(loaded) << length;
    ExpectConsistent(image, loaded, "length " + std::to_string(length));
  }
  OwnedTga image;
  EXPECT_TRUE(Load(&image, full));
}

TEST(TgaCrashers, EveryTruncationOfAnUncompressedFileLeavesAConsistentRecord) {
  const Bytes full = Concat(TgaHeader(2, 2, 2, 24), {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
  for (size_t length = 0; length <= full.size(); ++length) {
    OwnedTga image;
    const bool loaded = Load(&image, Bytes(full.begin(), full.begin() + length));
    // Past the 12 type bytes the uncompressed reader accepts whatever it gets.
    EXPECT_EQ(loaded, length >= 12) << length;
    ExpectConsistent(image, loaded, "length " + std::to_string(length));
  }
}

TEST(TgaCrashers, PacketsPastThePixelCountStopAtTheFirstExtraPixel) {
  const Bytes runs[] = {
      Concat(TgaHeader(10, 1, 1, 32), {0xFF, 1, 2, 3, 4}),                    // a run of 128 into one pixel
      Concat(TgaHeader(10, 1, 1, 24), Concat({0x7F}, Bytes(128 * 3, 0xAB))),  // a raw packet of 128
      Concat(TgaHeader(10, 3, 1, 24), {0x81, 1, 1, 1, 0xFF, 2, 2, 2}),        // the second run overshoots
      Concat(TgaHeader(10, 2, 2, 32), Concat({0x80, 1, 1, 1, 1, 0x7F}, Bytes(128 * 4, 0xCD))),
  };
  for (const Bytes& bytes : runs) {
    OwnedTga image;
    EXPECT_FALSE(Load(&image, bytes));
    EXPECT_STREQ(image.message, "<LoadCompressedTGA> Too many pixels read for file!");
    EXPECT_EQ(image.pixels, nullptr);
  }
}

TEST(TgaCrashers, HugeClaimedSizesFailWithoutExhaustingMemory) {
  const Bytes files[] = {
      Concat(TgaHeader(10, 65535, 65535, 32), {0xFF, 1, 2, 3, 4}),
      Concat(TgaHeader(10, 65535, 65535, 24), {}),
      Concat(TgaHeader(10, 65535, 2048, 32), {0xFF, 1, 2, 3, 4}),  // just under the size limit, data missing
      Concat(TgaHeader(2, 65535, 65535, 32), {1, 2, 3, 4}),
  };
  for (const Bytes& bytes : files) {
    OwnedTga image;
    const bool loaded = Load(&image, bytes);
    ExpectConsistent(image, loaded, "type " + std::to_string(bytes[2]));
    if (bytes[2] == 10) {
      EXPECT_FALSE(loaded);
    }
  }
}

TEST(TgaCrashers, BentBytesNeverBreakTheRecord) {
  const Bytes& original = ValidRle32();
  for (size_t at = 0; at < original.size(); ++at) {
    for (uint8_t value :
         {uint8_t{0x00}, uint8_t{0x02}, uint8_t{0x0A}, uint8_t{0x7F}, uint8_t{0x80}, uint8_t{0xFF}}) {
      Bytes bent = original;
      bent[at] = value;
      OwnedTga image;
      const bool loaded = Load(&image, bent);
      ExpectConsistent(image, loaded, "byte " + std::to_string(at) + " = " + std::to_string(value));
      if (loaded && image.pixels != nullptr && image.bitsPerPixel == 24) {
        EXPECT_TRUE(ConvertTo32Bits(&image));
      }
    }
  }
}

}  // namespace
}  // namespace lx
