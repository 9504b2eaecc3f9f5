// Text in, picture out: the composition layer draws what the settings say, refuses what it cannot do
// with the command line's messages, and may be called from several threads at once.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "compose/composition.h"

namespace lx::compose {
namespace {

constexpr const char* kSerifOtf = "/usr/share/fonts/opentype/freefont/FreeSerif.otf";

struct Rgb {
  int r, g, b, a;
};

Rgb At(const RgbaImage& image, int x, int y) {
  const uint8_t* p = &image.pixels[(static_cast<size_t>(y) * image.width + x) * 4];
  return {p[0], p[1], p[2], p[3]};
}

// Rows holding some pixel that differs from the background.
std::vector<bool> InkedRows(const RgbaImage& image) {
  const Rgb page = At(image, 0, 0);
  std::vector<bool> rows(image.height, false);
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      const Rgb p = At(image, x, y);
      rows[y] = rows[y] || p.r != page.r || p.g != page.g || p.b != page.b || p.a != page.a;
    }
  }
  return rows;
}

int Bands(const std::vector<bool>& rows) {
  int bands = 0;
  for (size_t i = 0; i < rows.size(); ++i) bands += rows[i] && (i == 0 || !rows[i - 1]);
  return bands;
}

TEST(Composition, DrawsStraightAlphaRgbaOnTheBackground) {
  Settings s;
  SetOption(s, "background", "#102030");
  SetOption(s, "face-color", "#FF8000");
  SetOption(s, "size", "48");
  SetOption(s, "padding", "10");
  const RgbaImage image = Compose(s, "Hi");
  ASSERT_GT(image.width, 40);
  ASSERT_EQ(image.pixels.size(), static_cast<size_t>(image.width) * image.height * 4);
  const Rgb corner = At(image, 0, 0);
  EXPECT_EQ(corner.r, 0x10);
  EXPECT_EQ(corner.g, 0x20);
  EXPECT_EQ(corner.b, 0x30);
  EXPECT_EQ(corner.a, 255);
  int orange = 0;
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      const Rgb p = At(image, x, y);
      orange += p.r == 255 && p.g == 128 && p.b == 0;
    }
  }
  EXPECT_GT(orange, 200);
}

TEST(Composition, LineFeedsMakeLinesAndWrappingMakesMore) {
  Settings s;
  SetOption(s, "size", "40");
  SetOption(s, "background", "white");
  SetOption(s, "face-color", "black");
  EXPECT_EQ(Bands(InkedRows(Compose(s, "one\ntwo\nsea"))), 3);
  EXPECT_EQ(Bands(InkedRows(Compose(s, "one two sea"))), 1);
  SetOption(s, "wrap", "120");
  EXPECT_EQ(Bands(InkedRows(Compose(s, "one two sea"))), 3);
}

TEST(Composition, LayoutSettingsReachTheBlock) {
  Settings s;
  const std::vector<uint8_t> plain = LayOutText(s, "office");
  SetOption(s, "font", kSerifOtf);
  const std::vector<uint8_t> ligated = LayOutText(s, "office");
  SetOption(s, "features", "liga=0");
  const std::vector<uint8_t> separate = LayOutText(s, "office");
  EXPECT_NE(ligated, separate);
  EXPECT_NE(plain, ligated);
  SetOption(s, "letter-spacing", "5");
  EXPECT_NE(LayOutText(s, "office"), separate);
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
