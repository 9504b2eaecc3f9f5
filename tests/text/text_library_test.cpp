// The text library through its C interface, on the fonts tools/install-deps.sh installs: lines, shaping
// and visual order with exact results, fallback fonts, refusals, and the outline block it writes.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "lettrix/lettrix_text.h"
#include "text/outline_block_writer.h"
#include "tools/text_outline/text_outline.h"

namespace lx::text {
namespace {

constexpr const char* kSansBold = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf";
constexpr const char* kSans = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
constexpr const char* kSerifOtf = "/usr/share/fonts/opentype/freefont/FreeSerif.otf";
constexpr const char* kDevanagari = "/usr/share/fonts/truetype/lohit-devanagari/Lohit-Devanagari.ttf";
const std::string kHebrew = "\xD7\x90\xD7\x91\xD7\x92";
using Change = std::function<void(LettrixTextLayout&)>;

// One layout of `text` in `font` at `size`, changed by `change`; its result is released with the object.
struct Laid {
  Laid(const std::string& text, const char* font, double size, const Change& change = nullptr) {
    LettrixTextLayout layout;
    LettrixTextDefaults(&layout);
    layout.font_file = font;
    layout.pixel_size = size;
    if (change) change(layout);
    char text_message[512] = "";
    ok = LettrixTextLayOut(text.data(), text.size(), &layout, &r, text_message, sizeof text_message) == 1;
    message = text_message;
  }
  ~Laid() { LettrixTextRelease(&r); }
  const LettrixTextGlyph& glyph(size_t i) const { return r.glyphs[i]; }
  const LettrixTextLine& line(size_t i) const { return r.lines[i]; }
  // Offset and length in the text of each line; the cluster of each glyph, left to right.
  std::vector<size_t> spans() const {
    std::vector<size_t> s;
    for (size_t i = 0; i < r.line_count; ++i) s.insert(s.end(), {line(i).text_offset, line(i).text_length});
    return s;
  }
  std::vector<size_t> clusters() const {
    std::vector<size_t> c;
    for (size_t i = 0; i < r.glyph_count; ++i) c.push_back(glyph(i).cluster);
    EXPECT_TRUE(
        std::is_sorted(r.glyphs, r.glyphs + r.glyph_count, [](auto& a, auto& b) { return a.x < b.x; }));
    return c;
  }
  LettrixTextResult r{};
  bool ok = false;
  std::string message;
};

// The glyph `text` shapes to on its own in `font`: a letter's isolated form.
uint32_t GlyphOf(const char* font, const std::string& text) {
  return Laid(text, font, 64).glyph(0).glyph;
}

TEST(TextLines, AlignmentSpacingAndWrappingPlaceEachLineExactly) {
  for (const auto& [align, share] :
       {std::make_pair(LETTRIX_ALIGN_LEFT, 0.0), std::make_pair(LETTRIX_ALIGN_CENTRE, 0.5),
        std::make_pair(LETTRIX_ALIGN_RIGHT, 1.0)}) {
    Laid laid("Top\nA much wider middle\nEnd", kSansBold, 40, [&](auto& l) { l.align = align; });
    EXPECT_EQ(laid.spans(), (std::vector<size_t>{0, 3, 4, 19, 24, 3}));
    EXPECT_DOUBLE_EQ(laid.line(1).right - laid.line(1).left, laid.r.width);
    for (size_t i = 0; i < 3; ++i) {
      EXPECT_NEAR(laid.line(i).left, (laid.r.width - (laid.line(i).right - laid.line(i).left)) * share, 1e-9);
      const LettrixTextGlyph& first = laid.glyph(std::vector<size_t>{0, 3, 22}[i]);  // the line's first
      EXPECT_EQ(std::make_pair(first.x, first.y), std::make_pair(laid.line(i).left, laid.line(i).baseline));
    }
  }
  // An empty line keeps its place; the line spacing scales the step; letter spacing widens every gap.
  Laid single("a\n\nb\r\nc", kSansBold, 40),
      twice("a\n\nb\r\nc", kSansBold, 40, [](auto&l) { l.line_spacing = 2; });
  EXPECT_EQ(single.spans(), (std::vector<size_t>{0, 1, 2, 0, 3, 1, 6, 1}));
  const double step = single.line(1).baseline - single.line(0).baseline;
  EXPECT_GT(step, 40.0);
  EXPECT_NEAR(single.line(3).baseline - single.line(0).baseline, 3 * step, 1e-9);
  EXPECT_EQ(twice.line(0).baseline, single.line(0).baseline);
  EXPECT_NEAR(twice.line(1).baseline - twice.line(0).baseline, 2 * step, 1e-9);
  Laid plain("abcd", kSansBold, 40), spaced("abcd", kSansBold, 40, [](auto&l) { l.letter_spacing = 10; });
  EXPECT_NEAR(spaced.r.width - plain.r.width, 30.0, 1e-9);  // three gaps
  for (size_t i = 0; i < 4; ++i) EXPECT_NEAR(spaced.glyph(i).x - plain.glyph(i).x, 10.0 * i, 1e-9);
  // Just wide enough for three words, and just too narrow: the space at the break is not drawn.
  const double three = Laid("one two three", kSansBold, 40).r.width;
  for (const auto& [wrap, spans] : {std::make_pair(three + 0.5, std::vector<size_t>{0, 13, 14, 4}),
                                    std::make_pair(three - 0.5, std::vector<size_t>{0, 7, 8, 10})}) {
    Laid wrapped("one two three four", kSansBold, 40, [&](auto& l) { l.wrap_width = wrap; });
    EXPECT_EQ(wrapped.spans(), spans) << wrap;
    EXPECT_EQ(wrapped.r.glyph_count, 17u);
    EXPECT_LE(
        std::max(wrapped.line(0).right - wrapped.line(0).left, wrapped.line(1).right - wrapped.line(1).left),
        wrap);
  }
  // A word wider than the width is broken inside; a glyph wider than the width still gets its line.
  EXPECT_EQ(Laid("abcdefghijkl", kSansBold, 40, [](auto& l) { l.wrap_width = 100; }).spans(),
            (std::vector<size_t>{0, 3, 3, 3, 6, 4, 10, 2}));
  Laid wide("WW", kSansBold, 200, [](auto& l) { l.wrap_width = 5; });
  EXPECT_EQ(wide.r.line_count + wide.r.glyph_count, 4u);
}

TEST(TextShaping, FeaturesScriptsAndDirectionsGiveTheGlyphsInVisualOrder) {
  // Kerning and ligatures follow the feature switch: (font, text, switch, glyphs with it on, and off).
  for (const auto& [font, text, off, on, offGlyphs] :
       {std::make_tuple(kSans, "AV", "kern=0", 2u, 2u), std::make_tuple(kSans, "To", "kern=0", 2u, 2u),
        std::make_tuple(kSerifOtf, "fi", "liga=0", 1u, 2u),
        std::make_tuple(kSerifOtf, "office", "liga=0", 4u, 6u)}) {
    Laid with(text, font, 64), without(text, font, 64, [&](auto&l) { l.features = off; });
    EXPECT_EQ(std::make_pair(with.r.glyph_count, without.r.glyph_count),
              std::make_pair(size_t{on}, size_t{offGlyphs}));
    if (on == offGlyphs) {
      EXPECT_LT(with.r.width, without.r.width - 1.0) << text;  // kerned
    }
  }
  EXPECT_NE(Laid("fi", kSerifOtf, 64).glyph(0).glyph, GlyphOf(kSerifOtf, "f"));
  // Arabic runs right to left and joins: no letter keeps its isolated form unless non-joiners keep it apart.
  Laid joined("\xD8\xA8\xD9\x8A\xD8\xAA\xD9\x83", kSans, 64),
      apart("\xD8\xA8\xE2\x80\x8C\xD9\x8A\xE2\x80\x8C\xD8\xAA\xE2\x80\x8C\xD9\x83", kSans, 64);
  EXPECT_EQ(joined.clusters(), (std::vector<size_t>{6, 4, 2, 0}));
  EXPECT_NE(joined.glyph(3).glyph, GlyphOf(kSans, "\xD8\xA8"));
  EXPECT_NE(joined.glyph(0).glyph, GlyphOf(kSans, "\xD9\x83"));
  EXPECT_EQ(apart.glyph(apart.r.glyph_count - 1).glyph, GlyphOf(kSans, "\xD8\xA8"));
  EXPECT_GT(apart.r.width, joined.r.width);
  // क + ि: the vowel sign follows in the text and precedes on paper.
  Laid ki("\xE0\xA4\x95\xE0\xA4\xBF", kDevanagari, 64);
  EXPECT_EQ(ki.clusters(), (std::vector<size_t>{0, 0}));
  EXPECT_TRUE(ki.glyph(1).glyph == GlyphOf(kDevanagari, "\xE0\xA4\x95") &&
              ki.glyph(0).glyph != ki.glyph(1).glyph);
  // "abc אבג def": the Hebrew word reversed inside the Latin line; with a right-to-left base the Latin
  // words swap places too.
  const std::tuple<int, std::string, std::vector<size_t>> cases[] = {
      {LETTRIX_DIRECTION_AUTO, "abc " + kHebrew + " def", {0, 1, 2, 3, 8, 6, 4, 10, 11, 12, 13}},
      {LETTRIX_DIRECTION_RTL, "abc " + kHebrew + " def", {11, 12, 13, 10, 8, 6, 4, 3, 0, 1, 2}},
      {LETTRIX_DIRECTION_AUTO, kHebrew + " abc", {7, 8, 9, 6, 4, 2, 0}},
      {LETTRIX_DIRECTION_LTR, kHebrew + " abc", {4, 2, 0, 6, 7, 8, 9}},
  };
  for (const auto& [direction, text, order] : cases)
    EXPECT_EQ(Laid(text, kSans, 32, [&](auto& l) { l.direction = direction; }).clusters(), order)
        << direction;
}

TEST(TextShaping, MissingCharactersComeFromAFallbackFont) {
  const std::string ka = "a\xE0\xA4\x95";  // a, then क, which DejaVu lacks
  Laid laid(ka, kSansBold, 40), alone(ka, kSansBold, 40, [](auto&l) { l.fallback = 0; });
  ASSERT_EQ(laid.r.glyph_count + laid.r.font_count, 4u);
  EXPECT_EQ(std::make_tuple(laid.glyph(0).font, laid.glyph(1).font, laid.r.missing_count, alone.r.font_count,
                            alone.r.missing_count),
            std::make_tuple(0u, 1u, size_t{0}, size_t{1}, size_t{1}));
  EXPECT_EQ(GlyphOf(laid.r.font_files[1], "\xE0\xA4\x95"), laid.glyph(1).glyph);
  EXPECT_GT(laid.r.ink_right, int32_t(laid.glyph(1).x) + 10);
  // Spaces alone make a line and no block; a family comes from fontconfig.
  Laid spaces("   ", kSansBold, 40), serif("a", nullptr, 40, [](auto&l) { l.font_family = "DejaVu Serif"; });
  EXPECT_TRUE(spaces.ok && !spaces.r.block && spaces.r.line_count == 1 && spaces.r.width > 10.0);
  EXPECT_NE(std::string(serif.r.font_files[0]).find("DejaVuSerif"), std::string::npos);
}

// Each option's range at both ends is checked through the Python package's outline_block.
TEST(TextRefusals, GiveAMessageAndNoBlockAndTheWritersRangeEndsAt16Dot16) {
  const std::tuple<std::string, Change, const char*> cases[] = {
      {"ab\xC3(", nullptr, "not valid UTF-8 (at byte 2)"},
      {"a\xED\xA0\x80", nullptr, "not valid UTF-8 (at byte 1)"},  // surrogate
      {"a", [](auto& l) { l.font_file = "/nonexistent/font.ttf"; },
       "cannot open font file '/nonexistent/font.ttf'"},
      {"a", [](auto& l) { l.font_file = "/etc/passwd"; }, "not a font FreeType can read"},
      {"a", [](auto& l) { l.pixel_size = NAN; }, "out of range (1..2048)"},
      {std::string(80, 'W'), [](auto& l) { l.pixel_size = 2048; }, "16.16 coordinate range"},
      {std::string(40, 'i'), [](auto& l) { l.letter_spacing = 1000; }, "16.16 coordinate range"},
      {std::string(40, '\n') + "a", [](auto& l) { l.pixel_size = 2000; }, "16.16 coordinate range"},
  };
  for (const auto& [text, change, message] : cases) {
    Laid laid(text, kSansBold, 40, change);
    EXPECT_NE(laid.message.find(message), std::string::npos) << laid.message;
    EXPECT_TRUE(!laid.ok && !laid.r.block && !laid.r.glyphs && !laid.r.lines && !laid.r.font_files)
        << message;
  }
  // Missing arguments; a short message buffer gets as much of the message as fits.
  LettrixTextLayout layout;
  LettrixTextDefaults(&layout);
  LettrixTextResult result{};
  char message[64] = "x", other[64] = "x", tiny[8];
  EXPECT_EQ(LettrixTextLayOut("a", 1, nullptr, &result, message, sizeof message) +
                LettrixTextLayOut("a", 1, &layout, nullptr, other, sizeof other) +
                LettrixTextLayOut(nullptr, 1, &layout, &result, tiny, sizeof tiny),
            0);
  EXPECT_EQ(std::string(message) + "/" + other + "/" + tiny,
            "no text or no layout given/no result given/no text");
  LettrixTextRelease(&result);
  LettrixTextRelease(nullptr);
  // The block writer's coordinates end where 16.16 ends; past it, the block is spoilt and refused as above.
  const std::pair<Point, bool> ends[] = {
      {{32768, 0}, false}, {{0, -32769}, false}, {{NAN, 0}, false}, {{32767.99, -32768}, true}};
  for (const auto& [far, inRange] : ends) {
    OutlineBlockWriter writer;
    writer.MoveTo({0, 0}), writer.LineTo(far), writer.LineTo({1, 1}), writer.EndContour();
    EXPECT_EQ(writer.inRange(), inRange) << far.x << "," << far.y;
  }
}

}  // namespace
}  // namespace lx::text
