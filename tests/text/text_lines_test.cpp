// Lines: line feeds, alignment, line and letter spacing, and wrapping to a width.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "tests/text/text_fixture.h"

namespace lx::text::testing {
namespace {

TEST(TextLines, ThreeLinesAlignedEachWay) {
  struct Case {
    int align;
    double share;  // of the room beside a line that lies to its left
  };
  for (const Case& c :
       {Case{LETTRIX_ALIGN_LEFT, 0.0}, Case{LETTRIX_ALIGN_CENTRE, 0.5}, Case{LETTRIX_ALIGN_RIGHT, 1.0}}) {
    LettrixTextLayout layout = Layout(kSansBold, 40);
    layout.align = c.align;
    Laid laid("Top\nA much wider middle\nEnd", layout);
    ASSERT_TRUE(laid.ok());
    ASSERT_EQ(laid.r().line_count, 3u);
    const double widest = laid.r().width;
    EXPECT_DOUBLE_EQ(laid.line(1).right - laid.line(1).left, widest);
    for (size_t i = 0; i < 3; ++i) {
      const LettrixTextLine& line = laid.line(i);
      const double room = widest - (line.right - line.left);
      EXPECT_NEAR(line.left, room * c.share, 1e-9) << "line " << i << " align " << c.align;
    }
    // Each line's first glyph starts where its line does, on its line's baseline.
    for (size_t i = 0; i < laid.r().glyph_count; ++i) {
      const LettrixTextGlyph& g = laid.glyph(i);
      EXPECT_EQ(g.y, laid.line(g.line).baseline);
      if (i == 0 || laid.glyph(i - 1).line != g.line) {
        EXPECT_EQ(g.x, laid.line(g.line).left);
      }
    }
    EXPECT_EQ(laid.line(0).text_offset, 0u);
    EXPECT_EQ(laid.line(0).text_length, 3u);
    EXPECT_EQ(laid.line(2).text_offset, 24u);
    EXPECT_EQ(laid.line(2).text_length, 3u);
  }
}

TEST(TextLines, LineSpacingScalesTheStepAndEmptyLinesKeepTheirPlace) {
  LettrixTextLayout layout = Layout(kSansBold, 40);
  Laid single("a\n\nb\r\nc", layout);
  layout.line_spacing = 2.0;
  Laid twice("a\n\nb\r\nc", layout);
  ASSERT_TRUE(single.ok() && twice.ok());
  ASSERT_EQ(single.r().line_count, 4u);
  EXPECT_EQ(single.line(1).text_length, 0u);
  EXPECT_EQ(single.glyph(1).line, 2u);
  const double step = single.line(1).baseline - single.line(0).baseline;
  EXPECT_GT(step, 40.0);
  for (size_t i = 1; i < 3; ++i)
    EXPECT_NEAR(single.line(i + 1).baseline - single.line(i).baseline, step, 1e-9);
  EXPECT_NEAR(twice.line(1).baseline - twice.line(0).baseline, 2 * step, 1e-9);
  EXPECT_EQ(twice.line(0).baseline, single.line(0).baseline);
}

TEST(TextLines, LetterSpacingWidensEveryGap) {
  LettrixTextLayout layout = Layout(kSansBold, 40);
  Laid plain("abcd", layout);
  layout.letter_spacing = 10;
  Laid spaced("abcd", layout);
  ASSERT_TRUE(plain.ok() && spaced.ok());
  EXPECT_NEAR(spaced.r().width - plain.r().width, 30.0, 1e-9);  // three gaps
  for (size_t i = 0; i < 4; ++i) EXPECT_NEAR(spaced.glyph(i).x - plain.glyph(i).x, 10.0 * i, 1e-9);
}

TEST(TextLines, WrappingBreaksAtSpacesToFitTheWidth) {
  LettrixTextLayout layout = Layout(kSansBold, 40);
  Laid three("one two three", layout);
  ASSERT_TRUE(three.ok());
  struct Case {
    double wrap;
    size_t firstLength, secondOffset;
  };
  // Just wide enough for three words, and just too narrow for them.
  for (const Case& c : {Case{three.r().width + 0.5, 13, 14}, Case{three.r().width - 0.5, 7, 8}}) {
    layout.wrap_width = c.wrap;
    Laid wrapped("one two three four", layout);
    ASSERT_TRUE(wrapped.ok());
    ASSERT_EQ(wrapped.r().line_count, 2u) << c.wrap;
    EXPECT_EQ(wrapped.line(0).text_offset, 0u);
    EXPECT_EQ(wrapped.line(0).text_length, c.firstLength);  // without the space it breaks at
    EXPECT_EQ(wrapped.line(1).text_offset, c.secondOffset);
    EXPECT_EQ(wrapped.line(1).text_length, 18 - c.secondOffset);
    for (size_t i = 0; i < 2; ++i) EXPECT_LE(wrapped.line(i).right - wrapped.line(i).left, c.wrap);
    EXPECT_EQ(wrapped.r().glyph_count, 17u);  // the space at the break is not drawn
  }
}

TEST(TextLines, AWordWiderThanTheWidthIsBrokenInside) {
  LettrixTextLayout layout = Layout(kSansBold, 40);
  layout.wrap_width = 100;
  Laid laid("abcdefghijkl", layout);
  ASSERT_TRUE(laid.ok());
  ASSERT_GT(laid.r().line_count, 2u);
  size_t shown = 0;
  for (size_t i = 0; i < laid.r().line_count; ++i) {
    EXPECT_EQ(laid.line(i).text_offset, shown);
    EXPECT_GT(laid.line(i).text_length, 0u);
    EXPECT_LE(laid.line(i).right - laid.line(i).left, 100.0);
    shown += laid.line(i).text_length;
  }
  EXPECT_EQ(shown, 12u);
  EXPECT_EQ(laid.r().glyph_count, 12u);
  // A glyph wider than the width still gets its line.
  layout = Layout(kSansBold, 200);
  layout.wrap_width = 5;
  Laid wide("WW", layout);
  ASSERT_TRUE(wide.ok());
  EXPECT_EQ(wide.r().line_count, 2u);
  EXPECT_EQ(wide.r().glyph_count, 2u);
}

}  // namespace
}  // namespace lx::text::testing
