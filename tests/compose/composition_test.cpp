// Text in, picture out: the composition layer draws what the settings say, refuses what it cannot do
// with the command line's messages, and may be called from several threads at once.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "compose/composition.h"

namespace lx::compose {
namespace {

TEST(Composition, DrawsStraightAlphaRgbaOnTheBackground) {
  Settings s;
  SetOption(s, "background", "#102030");
  SetOption(s, "face-color", "#FF8000");
  SetOption(s, "size", "48");
  SetOption(s, "padding", "10");
  const RgbaImage image = Compose(s, "Hi");
  ASSERT_GT(image.width, 40);
  ASSERT_EQ(image.pixels.size(), static_cast<size_t>(image.width) * image.height * 4);
  int page = 0, orange = 0;
  for (size_t i = 0; i < image.pixels.size(); i += 4) {
    const uint32_t p = uint32_t(image.pixels[i]) << 24 | image.pixels[i + 1] << 16 |
                       image.pixels[i + 2] << 8 | image.pixels[i + 3];
    page += p == 0x102030FFu;
    orange += p == 0xFF8000FFu;
  }
  EXPECT_EQ(std::vector<uint8_t>(image.pixels.begin(), image.pixels.begin() + 4),
            (std::vector<uint8_t>{0x10, 0x20, 0x30, 255}));
  EXPECT_GT(orange, 200);
  EXPECT_GT(page, orange);
}

TEST(Composition, FailuresCarryTheCommandLinesMessages) {
  struct Case {
    const char* option;
    const char* value;
    std::string text;
    ErrorKind kind;
    const char* message;
  };
  const Case cases[] = {
      {"font", "/nonexistent.ttf", "a", ErrorKind::kJob, "cannot open font file '/nonexistent.ttf'"},
      {"family", "Nonexistent Typeface Sans", "a", ErrorKind::kJob, "no installed font of family"},
      {"size", "40", "ab\xff", ErrorKind::kJob, "not valid UTF-8"},
      {"size", "40", "   ", ErrorKind::kJob, "nothing to draw"},
      {"face-texture", "gen:plaid", "a", ErrorKind::kSetting, "no generated texture named 'plaid'"},
      {"face-texture", "wood.tga", "a", ErrorKind::kJob, "cannot read texture file 'wood.tga'"},
      {"letter-spacing", "1000", std::string(40, 'i'), ErrorKind::kJob, "16.16 coordinate range"},
  };
  for (const Case& c : cases) {
    Settings s;
    SetOption(s, c.option, c.value);
    try {
      Compose(s, c.text);
      ADD_FAILURE() << c.message;
    } catch (const Error& e) {
      EXPECT_EQ(e.kind(), c.kind) << e.what();
      EXPECT_NE(std::string(e.what()).find(c.message), std::string::npos) << e.what();
    }
  }
}

TEST(Composition, TexturesComeThroughTheCallersReader) {
  Settings s;
  SetOption(s, "size", "40");
  SetOption(s, "face-texture", "red.png");
  std::string asked;
  const RgbaImage image = Compose(s, "H", [&](const std::string& path) {
    asked = path;
    return RgbaImage{2, 2, std::vector<uint8_t>(16, 0)};
  });
  EXPECT_EQ(asked, "red.png");
  EXPECT_GT(image.width, 0);
  try {
    Compose(s, "H", [](const std::string&) { return RgbaImage{4, 4, std::vector<uint8_t>(8, 0)}; });
    ADD_FAILURE();
  } catch (const Error& e) {
    EXPECT_NE(std::string(e.what()).find("fewer than its size"), std::string::npos) << e.what();
  }
}

TEST(Composition, SeparateCallsOnSeparateThreadsDrawAlike) {
  Settings s;
  ApplyPreset(s, "neon");
  SetOption(s, "size", "40");
  const std::string text =
      "Tag \xD8\xA8\xD9\x8A\xD8\xAA \xE0\xA4\x95\xE0\xA4\xBF";  // Latin, Arabic, Devanagari
  const RgbaImage alone = Compose(s, text);
  std::vector<RgbaImage> results(4);
  std::vector<std::thread> threads;
  for (RgbaImage& r : results) {
    threads.emplace_back([&s, &text, &r] { r = Compose(s, text); });
  }
  for (std::thread& t : threads) t.join();
  for (const RgbaImage& r : results) {
    EXPECT_EQ(r.width, alone.width);
    EXPECT_EQ(r.pixels, alone.pixels);
  }
}

}  // namespace
}  // namespace lx::compose
