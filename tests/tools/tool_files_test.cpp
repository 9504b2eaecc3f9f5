// Image files, safe writing and the generated textures.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/tools/tool_support.h"
#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/png_file.h"
#include "compose/generated_textures.h"
#include "tools/lettrix_cli/tool_error.h"

namespace lxt {
namespace {

using lx::compose::GenerateTexture;
using lx::compose::IsGeneratedTexture;

using testing::TempDir;

Image Sample() {
  Image image(3, 2);
  image.pixels = {0xFF102030, 0x80FFFFFF, 0x00000000, 0x12345678, 0xFFFF0000, 0x7F00FF00};
  return image;
}

std::vector<uint8_t> TgaHeader(uint8_t type, int width, int height, int bits, uint8_t descriptor) {
  std::vector<uint8_t> h(18, 0);
  h[2] = type;
  h[12] = static_cast<uint8_t>(width);
  h[14] = static_cast<uint8_t>(height);
  h[16] = static_cast<uint8_t>(bits);
  h[17] = descriptor;
  return h;
}

int JobErrorCode(const std::vector<uint8_t>& bytes) {
  try {
    DecodeTga(bytes, "x.tga");
  } catch (const ToolError& e) {
    EXPECT_NE(std::string(e.what()).find("'x.tga'"), std::string::npos) << e.what();
    return e.exitCode();
  }
  return 0;
}

TEST(ToolFiles, TgaRoundTripKeepsEveryByte) {
  const Image image = Sample();
  const std::vector<uint8_t> bytes = EncodeTga(image);
  ASSERT_EQ(bytes.size(), 18u + 6 * 4);
  EXPECT_EQ(bytes[2], 2);
  EXPECT_EQ(bytes[16], 32);
  EXPECT_EQ(bytes[17], 0x28);
  EXPECT_EQ(bytes[18], 0x30);  // blue of the first pixel comes first
  EXPECT_EQ(DecodeTga(bytes, "x.tga").pixels, image.pixels);
}

TEST(ToolFiles, TgaBottomUpRleAnd24Bits) {
  // 2 x 2, 24 bits, bottom-left origin, run-length encoded: a run of two reds then two raw pixels.
  std::vector<uint8_t> bytes = TgaHeader(10, 2, 2, 24, 0);
  const std::vector<uint8_t> data = {0x81, 0, 0, 255, 0x01, 255, 0, 0, 0, 255, 0};
  bytes.insert(bytes.end(), data.begin(), data.end());
  const Image image = DecodeTga(bytes, "x.tga");
  ASSERT_EQ(image.width, 2);
  // The file's first row is the bottom one.
  EXPECT_EQ(image.at(0, 0), 0xFF0000FFu);
  EXPECT_EQ(image.at(1, 0), 0xFF00FF00u);
  EXPECT_EQ(image.at(0, 1), 0xFFFF0000u);
  EXPECT_EQ(image.at(1, 1), 0xFFFF0000u);
}

TEST(ToolFiles, DamagedTgaIsRefusedWithTheFileName) {
  EXPECT_EQ(JobErrorCode({1, 2, 3}), kExitFailed);
  EXPECT_EQ(JobErrorCode(TgaHeader(1, 2, 2, 32, 0x20)), kExitFailed);  // colour-mapped
  EXPECT_EQ(JobErrorCode(TgaHeader(2, 2, 2, 16, 0x20)), kExitFailed);  // 16 bits
  EXPECT_EQ(JobErrorCode(TgaHeader(2, 0, 2, 32, 0x20)), kExitFailed);  // empty
  std::vector<uint8_t> cut = TgaHeader(2, 2, 2, 32, 0x20);
  cut.resize(cut.size() + 15);
  EXPECT_EQ(JobErrorCode(cut), kExitFailed);
  std::vector<uint8_t> overrun = TgaHeader(10, 1, 1, 32, 0x20);
  overrun.insert(overrun.end(), {0x81, 1, 2, 3, 4});  // a run of two pixels in a one-pixel image
  EXPECT_EQ(JobErrorCode(overrun), kExitFailed);
}

TEST(ToolFiles, PngRoundTripKeepsStraightAlpha) {
  const Image image = Sample();
  const Image back = DecodePng(EncodePng(image), "x.png");
  EXPECT_EQ(back.pixels, image.pixels);
  EXPECT_THROW(DecodePng({0x89, 'P', 'N', 'G', 0, 0}, "x.png"), ToolError);
}

TEST(ToolFiles, AtomicWriteReplacesWholeFilesAndLeavesNothingOnFailure) {
  TempDir dir;
  const std::string target = dir.path("out.bin");
  WriteFileAtomically(target, {1, 2, 3, 4, 5});
  WriteFileAtomically(target, {9});
  EXPECT_EQ(testing::ReadText(target), std::string(1, '\x09'));
  EXPECT_EQ(dir.files(), std::vector<std::string>{"out.bin"});
  EXPECT_THROW(WriteFileAtomically(dir.path("missing/out.bin"), {1}), ToolError);
  EXPECT_EQ(dir.files(), std::vector<std::string>{"out.bin"});
  try {
    ReadWholeFile(dir.path("absent.ttf"), "font file");
    ADD_FAILURE() << "no error";
  } catch (const ToolError& e) {
    EXPECT_EQ(std::string(e.what()),
              "cannot open font file '" + dir.path("absent.ttf") + "': No such file or directory");
  }
}

TEST(ToolFiles, GeneratedTexturesAreOpaqueVariedAndTileSeamlessly) {
  for (const char* name : {"wood", "marble", "brushed", "granite", "checker"}) {
    ASSERT_TRUE(IsGeneratedTexture(name)) << name;
    const Image t = GenerateTexture(name);
    ASSERT_EQ(t.width, 256);
    ASSERT_EQ(t.height, 256);
    int distinct = 0;
    for (uint32_t p : t.pixels) {
      EXPECT_EQ(p >> 24, 0xFFu);
      distinct += p != t.pixels[0];
    }
    EXPECT_GT(distinct, 256 * 256 / 10) << name;
    // Across the wrap-around seam the texture changes no more than between neighbours inside it.
    auto step = [&](int x0, int x1, int y0, int y1) {
      double sum = 0.0;
      for (int i = 0; i < 256; ++i) {
        const uint32_t a = x0 < 0 ? t.at(i, y0) : t.at(x0, i), b = x0 < 0 ? t.at(i, y1) : t.at(x1, i);
        sum += std::abs(int(a & 0xFF) - int(b & 0xFF)) + std::abs(int(a >> 8 & 0xFF) - int(b >> 8 & 0xFF));
      }
      return sum / 256.0;
    };
    double inner = 0.0;
    for (int x = 0; x < 255; ++x) inner = std::max(inner, step(x, x + 1, 0, 0));
    EXPECT_LE(step(255, 0, 0, 0), inner + 1.0) << name << " left-right seam";
    double innerRows = 0.0;
    for (int y = 0; y < 255; ++y) innerRows = std::max(innerRows, step(-1, -1, y, y + 1));
    EXPECT_LE(step(-1, -1, 255, 0), innerRows + 1.0) << name << " top-bottom seam";
  }
  EXPECT_FALSE(IsGeneratedTexture("plaid"));
  EXPECT_EQ(GenerateTexture("plaid").width, 0);
}

}  // namespace
}  // namespace lxt
