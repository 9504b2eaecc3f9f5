// Bad requests get a clear message and no block.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

#include "tests/text/text_fixture.h"

namespace lx::text::testing {
namespace {

struct Refusal {
  const char* name;
  std::string text;
  void (*change)(LettrixTextLayout&);
  const char* message;  // a part of the message
};

void Nothing(LettrixTextLayout&) {}

class TextRefusals : public ::testing::TestWithParam<Refusal> {};

TEST_P(TextRefusals, GiveAMessageAndNoBlock) {
  const Refusal& c = GetParam();
  LettrixTextLayout layout = Layout(kSansBold, 40);
  c.change(layout);
  Laid laid(c.text, layout);
  EXPECT_FALSE(laid.ok());
  EXPECT_NE(laid.message().find(c.message), std::string::npos) << laid.message();
  EXPECT_EQ(laid.r().block, nullptr);
  EXPECT_EQ(laid.r().glyphs, nullptr);
  EXPECT_EQ(laid.r().lines, nullptr);
  EXPECT_EQ(laid.r().font_files, nullptr);
}

std::string Repeat(const std::string& s, int n) {
  std::string out;
  for (int i = 0; i < n; ++i) out += s;
  return out;
}

INSTANTIATE_TEST_SUITE_P(
    Requests, TextRefusals,
    ::testing::Values(
        Refusal{"BrokenUtf8", "ab\xC3(", Nothing, "not valid UTF-8 (at byte 2)"},
        Refusal{"Overlong", "\xC0\xAF", Nothing, "not valid UTF-8 (at byte 0)"},
        Refusal{"Surrogate", "a\xED\xA0\x80", Nothing, "not valid UTF-8 (at byte 1)"},
        Refusal{"CutShort", "abc\xE2\x82", Nothing, "not valid UTF-8 (at byte 3)"},
        Refusal{"NoFontFile", "a", [](LettrixTextLayout& l) { l.font_file = "/nonexistent/font.ttf"; },
                "cannot open font file '/nonexistent/font.ttf'"},
        Refusal{"NotAFont", "a", [](LettrixTextLayout& l) { l.font_file = "/etc/passwd"; },
                "not a font FreeType can read"},
        Refusal{"SizeZero", "a", [](LettrixTextLayout& l) { l.pixel_size = 0; },
                "pixel size 0 is out of range (1..2048)"},
        Refusal{"SizeHuge", "a", [](LettrixTextLayout& l) { l.pixel_size = 4096; }, "out of range (1..2048)"},
        Refusal{"SizeNaN", "a", [](LettrixTextLayout& l) { l.pixel_size = NAN; }, "out of range (1..2048)"},
        Refusal{"LineSpacing", "a", [](LettrixTextLayout& l) { l.line_spacing = 0; },
                "line spacing 0 is out of range"},
        Refusal{"LetterSpacing", "a", [](LettrixTextLayout& l) { l.letter_spacing = 5000; },
                "letter spacing"},
        Refusal{"Wrap", "a", [](LettrixTextLayout& l) { l.wrap_width = -3; },
                "wrap width -3 is out of range"},
        Refusal{"Align", "a", [](LettrixTextLayout& l) { l.align = 3; }, "alignment 3"},
        Refusal{"Direction", "a", [](LettrixTextLayout& l) { l.direction = -1; }, "direction -1"},
        Refusal{"Script", "a", [](LettrixTextLayout& l) { l.script = "Latin"; },
                "not an ISO 15924 script tag"},
        Refusal{"Language", "a", [](LettrixTextLayout& l) { l.language = "en US"; }, "not a language tag"},
        Refusal{"Feature", "a", [](LettrixTextLayout& l) { l.features = "liga=x"; },
                "not an OpenType feature"},
        Refusal{"LongLine", Repeat("W", 80), [](LettrixTextLayout& l) { l.pixel_size = 2048; },
                "16.16 coordinate range"},
        Refusal{"SpacedLine", Repeat("i", 40), [](LettrixTextLayout& l) { l.letter_spacing = 1000; },
                "16.16 coordinate range"},
        Refusal{"ManyLines", Repeat("a\n", 40), [](LettrixTextLayout& l) { l.pixel_size = 2000; },
                "16.16 coordinate range"},
        Refusal{"WrappedIntoManyLines", Repeat("word ", 200),
                [](LettrixTextLayout& l) {
                  l.pixel_size = 500;
                  l.wrap_width = 10;
                },
                "16.16 coordinate range"}),
    [](const ::testing::TestParamInfo<Refusal>& info) { return std::string(info.param.name); });

TEST(TextRefusal, NullArgumentsAreRefused) {
  LettrixTextLayout layout = Layout(kSansBold, 40);
  LettrixTextResult result{};
  char message[64] = "x";
  EXPECT_EQ(LettrixTextLayOut(nullptr, 1, &layout, &result, message, sizeof message), 0);
  EXPECT_STREQ(message, "no text or no layout given");
  EXPECT_EQ(LettrixTextLayOut("a", 1, nullptr, &result, message, sizeof message), 0);
  EXPECT_EQ(LettrixTextLayOut("a", 1, &layout, nullptr, message, sizeof message), 0);
  EXPECT_STREQ(message, "no result given");
  // A short message buffer gets as much of the message as fits.
  char tiny[8];
  EXPECT_EQ(LettrixTextLayOut(nullptr, 1, &layout, &result, tiny, sizeof tiny), 0);
  EXPECT_STREQ(tiny, "no text");
  LettrixTextRelease(&result);
  LettrixTextRelease(nullptr);
}

TEST(TextRefusal, SpacesAloneMakeNoBlockButALine) {
  Laid laid("   ", Layout(kSansBold, 40));
  ASSERT_TRUE(laid.ok());
  EXPECT_EQ(laid.r().block, nullptr);
  EXPECT_EQ(laid.r().line_count, 1u);
  EXPECT_GT(laid.r().width, 10.0);
}

TEST(TextRefusal, AFamilyIsFoundThroughFontconfig) {
  LettrixTextLayout layout = Layout(nullptr, 40);
  layout.font_family = "DejaVu Serif";
  Laid laid("a", layout);
  ASSERT_TRUE(laid.ok()) << laid.message();
  EXPECT_NE(std::string(laid.r().font_files[0]).find("DejaVuSerif"), std::string::npos)
      << laid.r().font_files[0];
  Laid fallback("a", Layout(nullptr, 40));
  ASSERT_TRUE(fallback.ok());
  EXPECT_STREQ(fallback.r().font_files[0], kSansBold);
}

}  // namespace
}  // namespace lx::text::testing

extern "C" int LettrixTextHeaderDefaultsHold(void);

TEST(TextHeader, CompilesAsCWithTheDocumentedDefaults) {
  EXPECT_EQ(LettrixTextHeaderDefaultsHold(), 1);
}
