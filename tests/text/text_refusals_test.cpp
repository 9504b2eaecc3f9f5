// Bad requests get a clear message and no block.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "tests/text/text_fixture.h"

namespace lx::text::testing {
namespace {

std::string Repeat(const std::string& s, int n) {
  std::string out;
  for (int i = 0; i < n; ++i) out += s;
  return out;
}

TEST(TextRefusals, GiveAMessageAndNoBlock) {
  struct Case {
    std::string text;
    void (*change)(LettrixTextLayout&);
    const char* message;  // a part of the message
  };
  const Case cases[] = {
      {"ab\xC3(", [](LettrixTextLayout&) {}, "not valid UTF-8 (at byte 2)"},
      {"\xC0\xAF", [](LettrixTextLayout&) {}, "not valid UTF-8 (at byte 0)"},       // overlong
      {"a\xED\xA0\x80", [](LettrixTextLayout&) {}, "not valid UTF-8 (at byte 1)"},  // surrogate
      {"abc\xE2\x82", [](LettrixTextLayout&) {}, "not valid UTF-8 (at byte 3)"},    // cut short
      {"a", [](LettrixTextLayout& l) { l.font_file = "/nonexistent/font.ttf"; },
       "cannot open font file '/nonexistent/font.ttf'"},
      {"a", [](LettrixTextLayout& l) { l.font_file = "/etc/passwd"; }, "not a font FreeType can read"},
      {"a", [](LettrixTextLayout& l) { l.pixel_size = 0; }, "pixel size 0 is out of range (1..2048)"},
      {"a", [](LettrixTextLayout& l) { l.pixel_size = 2048.01; }, "out of range (1..2048)"},
      {"a", [](LettrixTextLayout& l) { l.pixel_size = NAN; }, "out of range (1..2048)"},
      {"a", [](LettrixTextLayout& l) { l.line_spacing = 0; }, "line spacing 0 is out of range"},
      {"a", [](LettrixTextLayout& l) { l.letter_spacing = 5000; }, "letter spacing"},
      {"a", [](LettrixTextLayout& l) { l.wrap_width = -3; }, "wrap width -3 is out of range"},
      {"a", [](LettrixTextLayout& l) { l.align = 3; }, "alignment 3"},
      {"a", [](LettrixTextLayout& l) { l.direction = -1; }, "direction -1"},
      {"a", [](LettrixTextLayout& l) { l.script = "Latin"; }, "not an ISO 15924 script tag"},
      {"a", [](LettrixTextLayout& l) { l.language = "en US"; }, "not a language tag"},
      {"a", [](LettrixTextLayout& l) { l.features = "liga=x"; }, "not an OpenType feature"},
      {"a", [](LettrixTextLayout& l) { l.features = "li ga"; }, "not an OpenType feature"},
      {"a", [](LettrixTextLayout& l) { l.features = "kern,,liga"; }, "not an OpenType feature"},
      {Repeat("W", 80), [](LettrixTextLayout& l) { l.pixel_size = 2048; }, "16.16 coordinate range"},
      {Repeat("i", 40), [](LettrixTextLayout& l) { l.letter_spacing = 1000; }, "16.16 coordinate range"},
      {Repeat("a\n", 40), [](LettrixTextLayout& l) { l.pixel_size = 2000; }, "16.16 coordinate range"},
      {Repeat("word ", 200), [](LettrixTextLayout& l) { l.pixel_size = 500, l.wrap_width = 10; },
       "16.16 coordinate range"},
  };
  for (const Case& c : cases) {
    LettrixTextLayout layout = Layout(kSansBold, 40);
    c.change(layout);
    Laid laid(c.text, layout);
    EXPECT_FALSE(laid.ok()) << c.message;
    EXPECT_NE(laid.message().find(c.message), std::string::npos) << laid.message();
    EXPECT_TRUE(!laid.r().block && !laid.r().glyphs && !laid.r().lines && !laid.r().font_files) << c.message;
  }
}

TEST(TextRefusals, NullArgumentsAreRefused) {
  LettrixTextLayout layout = Layout(kSansBold, 40);
  LettrixTextResult result{};
  char message[64] = "x", tiny[8];
  EXPECT_EQ(LettrixTextLayOut(nullptr, 1, &layout, &result, message, sizeof message), 0);
  EXPECT_STREQ(message, "no text or no layout given");
  EXPECT_EQ(LettrixTextLayOut("a", 1, nullptr, &result, message, sizeof message), 0);
  EXPECT_EQ(LettrixTextLayOut("a", 1, &layout, nullptr, message, sizeof message), 0);
  EXPECT_STREQ(message, "no result given");
  // A short message buffer gets as much of the message as fits.
  EXPECT_EQ(LettrixTextLayOut(nullptr, 1, &layout, &result, tiny, sizeof tiny), 0);
  EXPECT_STREQ(tiny, "no text");
  LettrixTextRelease(&result);
  LettrixTextRelease(nullptr);
}

TEST(TextRefusals, SpacesAloneMakeNoBlockButALineAndFamiliesComeFromFontconfig) {
  Laid spaces("   ", Layout(kSansBold, 40));
  ASSERT_TRUE(spaces.ok());
  EXPECT_EQ(spaces.r().block, nullptr);
  EXPECT_EQ(spaces.r().line_count, 1u);
  EXPECT_GT(spaces.r().width, 10.0);
  LettrixTextLayout layout = Layout(nullptr, 40);
  layout.font_family = "DejaVu Serif";
  Laid serif("a", layout);
  ASSERT_TRUE(serif.ok()) << serif.message();
  EXPECT_NE(std::string(serif.r().font_files[0]).find("DejaVuSerif"), std::string::npos);
  Laid fallback("a", Layout(nullptr, 40));
  ASSERT_TRUE(fallback.ok());
  EXPECT_STREQ(fallback.r().font_files[0], kSansBold);
}

}  // namespace
}  // namespace lx::text::testing
