// What shaping must do to real fonts: kerning, ligatures switched per call, joined Arabic that runs right
// to left, Devanagari reordered, mixed directions in visual order, and fallback fonts.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "tests/text/text_fixture.h"

namespace lx::text::testing {
namespace {

TEST(TextShaping, KerningAndLigaturesFollowTheFeatureSwitch) {
  struct Case {
    const char *font, *text, *off;
    size_t glyphs, glyphsOff;
  };
  for (const Case& c : {Case{kSans, "AV", "kern=0", 2, 2}, Case{kSans, "To", "kern=0", 2, 2},
                        Case{kSans, "Ty", "kern=0", 2, 2}, Case{kSerifOtf, "fi", "liga=0", 1, 2},
                        Case{kSerifOtf, "fl", "liga=0", 1, 2}, Case{kSerifOtf, "office", "liga=0", 4, 6}}) {
    LettrixTextLayout layout = Layout(c.font, 64);
    Laid on(c.text, layout);
    layout.features = c.off;
    Laid off(c.text, layout);
    ASSERT_TRUE(on.ok() && off.ok()) << on.message() << off.message();
    EXPECT_EQ(on.r().glyph_count, c.glyphs) << c.text;
    EXPECT_EQ(off.r().glyph_count, c.glyphsOff) << c.text;
    if (c.glyphs == c.glyphsOff) {
      EXPECT_LT(on.r().width, off.r().width - 1.0) << c.text;  // kerned
    }
  }
  Laid fi("fi", Layout(kSerifOtf, 64));
  EXPECT_NE(fi.glyph(0).glyph, GlyphOf(kSerifOtf, 'f'));
}

TEST(TextShaping, ArabicIsJoinedAndRunsRightToLeft) {
  const LettrixTextLayout layout = Layout(kSans, 64);
  const std::string word = "\xD8\xA8\xD9\x8A\xD8\xAA\xD9\x83";  // بيتك: every letter joins the next
  Laid joined(word, layout);
  ASSERT_TRUE(joined.ok()) << joined.message();
  // Right to left: the first letter is drawn rightmost, and the clusters fall from left to right.
  ASSERT_EQ(joined.r().glyph_count, 4u);
  for (size_t i = 1; i < 4; ++i) {
    EXPECT_GT(joined.glyph(i).x, joined.glyph(i - 1).x);
    EXPECT_LT(joined.glyph(i).cluster, joined.glyph(i - 1).cluster);
  }
  // Contextual forms: no letter keeps the glyph of its isolated form.
  EXPECT_NE(joined.glyph(3).glyph, GlyphOf(kSans, 0x0628));
  EXPECT_NE(joined.glyph(0).glyph, GlyphOf(kSans, 0x0643));

  // Kept apart by zero-width non-joiners, the same letters keep their isolated forms and take more room.
  Laid apart("\xD8\xA8\xE2\x80\x8C\xD9\x8A\xE2\x80\x8C\xD8\xAA\xE2\x80\x8C\xD9\x83", layout);
  ASSERT_TRUE(apart.ok());
  EXPECT_EQ(apart.glyph(apart.r().glyph_count - 1).glyph, GlyphOf(kSans, 0x0628));
  EXPECT_GT(apart.r().width, joined.r().width);
}

TEST(TextShaping, DevanagariVowelSignIsDrawnBeforeItsConsonant) {
  const LettrixTextLayout layout = Layout(kDevanagari, 64);
  Laid ki("\xE0\xA4\x95\xE0\xA4\xBF", layout);  // क + ि: the sign follows in the text, precedes on paper
  ASSERT_TRUE(ki.ok()) << ki.message();
  ASSERT_EQ(ki.r().glyph_count, 2u);
  EXPECT_EQ(ki.glyph(1).glyph, GlyphOf(kDevanagari, 0x0915));
  EXPECT_NE(ki.glyph(0).glyph, GlyphOf(kDevanagari, 0x0915));
  EXPECT_LT(ki.glyph(0).x, ki.glyph(1).x);
}

TEST(TextShaping, MixedDirectionsComeInVisualOrder) {
  struct Case {
    int direction;
    std::string text;
    std::vector<size_t> clusters;  // glyph clusters from left to right
  };
  // "abc אבג def": the Hebrew word reversed inside the Latin line; with a right-to-left base the
  // Latin words swap places too.
  const std::string hebrew = "\xD7\x90\xD7\x91\xD7\x92";
  const std::vector<Case> cases = {
      {LETTRIX_DIRECTION_AUTO, "abc " + hebrew + " def", {0, 1, 2, 3, 8, 6, 4, 10, 11, 12, 13}},
      {LETTRIX_DIRECTION_RTL, "abc " + hebrew + " def", {11, 12, 13, 10, 8, 6, 4, 3, 0, 1, 2}},
      {LETTRIX_DIRECTION_AUTO, hebrew + " abc", {7, 8, 9, 6, 4, 2, 0}},
      {LETTRIX_DIRECTION_LTR, hebrew + " abc", {4, 2, 0, 6, 7, 8, 9}},
  };
  for (const Case& c : cases) {
    LettrixTextLayout layout = Layout(kSans, 32);
    layout.direction = c.direction;
    Laid laid(c.text, layout);
    ASSERT_TRUE(laid.ok());
    std::vector<size_t> clusters;
    double lastX = -1;
    for (size_t i = 0; i < laid.r().glyph_count; ++i) {
      clusters.push_back(laid.glyph(i).cluster);
      EXPECT_GT(laid.glyph(i).x, lastX);
      lastX = laid.glyph(i).x;
    }
    EXPECT_EQ(clusters, c.clusters) << c.text << " direction " << c.direction;
  }
}

TEST(TextShaping, MissingCharactersComeFromAFallbackFont) {
  LettrixTextLayout layout = Layout(kSansBold, 40);
  Laid laid("a\xE0\xA4\x95", layout);  // a, then क, which DejaVu lacks
  ASSERT_TRUE(laid.ok());
  ASSERT_EQ(laid.r().glyph_count, 2u);
  EXPECT_EQ(laid.glyph(0).font, 0u);
  ASSERT_EQ(laid.glyph(1).font, 1u);
  ASSERT_EQ(laid.r().font_count, 2u);
  EXPECT_EQ(GlyphOf(laid.r().font_files[1], 0x0915), laid.glyph(1).glyph);
  EXPECT_EQ(laid.r().missing_count, 0u);
  EXPECT_GT(laid.r().ink_right, static_cast<int32_t>(laid.glyph(1).x) + 10);

  layout.fallback = 0;
  Laid alone("a\xE0\xA4\x95", layout);
  ASSERT_TRUE(alone.ok());
  EXPECT_EQ(alone.r().font_count, 1u);
  EXPECT_EQ(alone.r().missing_count, 1u);
}

TEST(TextShaping, ACharacterNoFontHasIsAMissingGlyphBox) {
  const LettrixTextLayout layout = Layout(kSansBold, 40);
  Laid laid(
      "a\xF4\x8F\xBF\xBD"
      "b",
      layout);  // U+10FFFD, private use: no font draws it
  ASSERT_TRUE(laid.ok());
  ASSERT_EQ(laid.r().glyph_count, 3u);
  const LettrixTextGlyph& box = laid.glyph(1);
  EXPECT_EQ(box.missing, 1);
  EXPECT_EQ(box.glyph, 0u);
  EXPECT_EQ(laid.r().missing_count, 1u);
  EXPECT_GT(box.advance, 10.0);
  // Ink inside the box's own advance: no silent gap.
  const int width = laid.r().ink_right + 2, height = laid.r().ink_bottom + 2;
  const std::vector<uint8_t> alpha = DrawAlpha(laid.r(), width, height);
  int inked = 0;
  for (int y = 0; y < height; ++y) {
    for (int x = static_cast<int>(box.x) + 2; x < static_cast<int>(box.x + box.advance) - 2; ++x) {
      inked += alpha[static_cast<size_t>(y) * width + x] > 128;
    }
  }
  EXPECT_GT(inked, 50);
}

}  // namespace
}  // namespace lx::text::testing
