// Image files, safe writing and the generated textures.
#include <gtest/gtest.h>

#include <cstdlib>

#include "compose/generated_textures.h"
#include "tests/tools/tool_support.h"
#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/png_file.h"
#include "tools/lettrix_cli/tool_error.h"

namespace lxt {
namespace {

std::vector<uint8_t> Tga(uint8_t type, int width, int height, int bits, uint8_t descriptor,
                         std::vector<uint8_t> data = {}) {
  std::vector<uint8_t> h(18, 0);
  h[2] = type;
  h[12] = static_cast<uint8_t>(width);
  h[14] = static_cast<uint8_t>(height);
  h[16] = static_cast<uint8_t>(bits);
  h[17] = descriptor;
  h.insert(h.end(), data.begin(), data.end());
  return h;
}

TEST(ToolFiles, ImagesRoundTripEveryByte) {
  Image image(3, 2);
  image.pixels = {0xFF102030, 0x80FFFFFF, 0x00000000, 0x12345678, 0xFFFF0000, 0x7F00FF00};
  const std::vector<uint8_t> tga = EncodeTga(image);
  ASSERT_EQ(tga.size(), 18u + 6 * 4);
  EXPECT_EQ(std::vector<int>(tga.begin() + 16, tga.begin() + 19), (std::vector<int>{32, 0x28, 0x30}));
  EXPECT_EQ(tga[2], 2);
  EXPECT_EQ(DecodeTga(tga, "x.tga").pixels, image.pixels);
  EXPECT_EQ(DecodePng(EncodePng(image), "x.png").pixels, image.pixels);
  EXPECT_THROW(DecodePng({0x89, 'P', 'N', 'G', 0, 0}, "x.png"), ToolError);
}

TEST(ToolFiles, TgaBottomUpRleAnd24Bits) {
  // 2 x 2, bottom row first, run-length encoded: a run of two reds then two raw pixels.
  const Image image = DecodeTga(Tga(10, 2, 2, 24, 0, {0x81, 0, 0, 255, 0x01, 255, 0, 0, 0, 255, 0}), "x.tga");
  EXPECT_EQ(image.pixels, (std::vector<uint32_t>{0xFF0000FFu, 0xFF00FF00u, 0xFFFF0000u, 0xFFFF0000u}));
}

TEST(ToolFiles, DamagedTgaIsRefusedWithTheFileName) {
  std::vector<uint8_t> cut = Tga(2, 2, 2, 32, 0x20);
  cut.resize(cut.size() + 15);
  for (const auto& bytes : {std::vector<uint8_t>{1, 2, 3}, Tga(1, 2, 2, 32, 0x20), Tga(2, 2, 2, 16, 0x20),
                            Tga(2, 0, 2, 32, 0x20), cut, Tga(10, 1, 1, 32, 0x20, {0x81, 1, 2, 3, 4})}) {
    try {
      DecodeTga(bytes, "x.tga");
      ADD_FAILURE() << bytes.size();
    } catch (const ToolError& e) {
      EXPECT_EQ(e.exitCode(), kExitFailed);
      EXPECT_NE(std::string(e.what()).find("'x.tga'"), std::string::npos) << e.what();
    }
  }
}

TEST(ToolFiles, AtomicWriteReplacesWholeFilesAndLeavesNothingOnFailure) {
  testing::TempDir dir;
  const std::string target = dir.path("out.bin");
  WriteFileAtomically(target, {1, 2, 3, 4, 5});
  WriteFileAtomically(target, {9});
  EXPECT_EQ(testing::ReadText(target), std::string(1, '\x09'));
  EXPECT_THROW(WriteFileAtomically(dir.path("missing/out.bin"), {1}), ToolError);
  EXPECT_EQ(dir.files(), std::vector<std::string>{"out.bin"});
  try {
    ReadWholeFile(dir.path("absent.ttf"), "font file");
    ADD_FAILURE();
  } catch (const ToolError& e) {
    EXPECT_EQ(std::string(e.what()),
              "cannot open font file '" + dir.path("absent.ttf") + "': No such file or directory");
  }
}

TEST(ToolFiles, GeneratedTexturesAreOpaqueVariedAndTileSeamlessly) {
  for (const char* name : {"wood", "marble", "brushed", "granite", "checker"}) {
    ASSERT_TRUE(lx::compose::IsGeneratedTexture(name)) << name;
    const Image t = lx::compose::GenerateTexture(name);
    ASSERT_EQ(std::make_pair(t.width, t.height), std::make_pair(256, 256));
    int distinct = 0;
    for (uint32_t p : t.pixels) {
      EXPECT_EQ(p >> 24, 0xFFu);
      distinct += p != t.pixels[0];
    }
    EXPECT_GT(distinct, 256 * 256 / 10) << name;
    // Across the wrap-around seam the texture changes no more than between neighbours inside it.
    for (bool rows : {false, true}) {
      auto step = [&](int a, int b) {
        double sum = 0.0;
        for (int i = 0; i < 256; ++i) {
          const uint32_t p = rows ? t.at(i, a) : t.at(a, i), q = rows ? t.at(i, b) : t.at(b, i);
          sum += std::abs(int(p & 0xFF) - int(q & 0xFF)) + std::abs(int(p >> 8 & 0xFF) - int(q >> 8 & 0xFF));
        }
        return sum / 256.0;
      };
      double inner = 0.0;
      for (int i = 0; i < 255; ++i) inner = std::max(inner, step(i, i + 1));
      EXPECT_LE(step(255, 0), inner + 1.0) << name << (rows ? " top-bottom" : " left-right");
    }
  }
  EXPECT_FALSE(lx::compose::IsGeneratedTexture("plaid"));
  EXPECT_EQ(lx::compose::GenerateTexture("plaid").width, 0);
}

}  // namespace
}  // namespace lxt
