#include "tools/lettrix_cli/texture_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/tools/tool_support.h"
#include "tools/lettrix_cli/tool_error.h"

namespace lxt {
namespace {

const std::vector<uint8_t> kPngStart = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};

Image OnePixelFromPng(const std::vector<uint8_t>&, const std::string&) {
  Image image(1, 1);
  image.pixels[0] = PackPixel(1, 2, 3, 4);
  return image;
}

std::string ErrorOf(const std::string& path, const std::string& openedAs, PngDecoder decodePng) {
  try {
    ReadTextureFile(path, openedAs, decodePng, "lettrix-demo");
  } catch (const ToolError& e) {
    return e.what();
  }
  return "";
}

TEST(ReadTextureFile, TgaComesOutTopRowFirstAsRgba) {
  testing::TempDir dir;
  // 1 x 2, 24 bits, first row stored at the bottom: blue below, red on top.
  const std::vector<uint8_t> bytes = {0, 0, 2, 0, 0,  0, 0,   0, 0, 0, 0, 0,
                                      1, 0, 2, 0, 24, 0, 255, 0, 0, 0, 0, 255};
  testing::WriteBytes(dir.path("t.tga"), bytes);
  const lx::compose::RgbaImage image = ReadTextureFile("t.tga", dir.path("t.tga"), nullptr, "lettrix-demo");
  ASSERT_EQ(image.width, 1);
  ASSERT_EQ(image.height, 2);
  EXPECT_EQ(image.pixels, (std::vector<uint8_t>{255, 0, 0, 255, 0, 0, 255, 255}));
}

TEST(ReadTextureFile, PngGoesToTheDecoderOrIsRefused) {
  testing::TempDir dir;
  testing::WriteBytes(dir.path("p.png"), kPngStart);
  const lx::compose::RgbaImage image =
      ReadTextureFile("p.png", dir.path("p.png"), OnePixelFromPng, "lettrix");
  EXPECT_EQ(image.pixels, (std::vector<uint8_t>{1, 2, 3, 4}));
  EXPECT_EQ(ErrorOf("p.png", dir.path("p.png"), nullptr),
            "'p.png' is a PNG file; lettrix-demo reads TGA textures only");
}

TEST(ReadTextureFile, MessagesNameThePathAsGiven) {
  testing::TempDir dir;
  // Shorter than PNG's signature: read as TGA, and too short for that.
  testing::WriteBytes(dir.path("short"), {0x89, 'P', 'N', 'G'});
  EXPECT_EQ(ErrorOf("short.tga", dir.path("short"), OnePixelFromPng),
            "cannot read TGA file 'short.tga': too short for a TGA header");
  EXPECT_NE(ErrorOf("gone.tga", dir.path("gone.tga"), nullptr).find("cannot open texture file"),
            std::string::npos);
}

}  // namespace
}  // namespace lxt
