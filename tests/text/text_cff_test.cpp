// CFF (OpenType) fonts: their cubic curves reach the block as quadratic ones, drawn within a pixel or so
// of the exact glyphs.
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <vector>

#include "tests/text/text_fixture.h"
#include "text/cubic_split.h"
#include "text/outline_block_writer.h"
#include "tools/text_outline/text_outline.h"

namespace lx::text::testing {
namespace {

// The glyphs of `laid` drawn by FreeType's own rasterizer from the exact cubic outlines, as alpha.
std::vector<uint8_t> ExactAlpha(const Laid& laid, const char* font, double size, int width, int height) {
  std::vector<uint8_t> alpha(static_cast<size_t>(width) * height, 0);
  FT_Library library;
  FT_Face face;
  EXPECT_EQ(FT_Init_FreeType(&library), 0);
  EXPECT_EQ(FT_New_Face(library, font, 0, &face), 0);
  const FT_F26Dot6 em = static_cast<FT_F26Dot6>(std::lround(size * 64));
  FT_Set_Char_Size(face, em, em, 72, 72);
  for (size_t i = 0; i < laid.r().glyph_count; ++i) {
    const LettrixTextGlyph& g = laid.glyph(i);
    EXPECT_EQ(FT_Load_Glyph(face, g.glyph, FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP), 0);
    std::vector<uint8_t> one(alpha.size(), 0);
    FT_Bitmap bitmap{};
    bitmap.rows = static_cast<unsigned>(height);
    bitmap.width = static_cast<unsigned>(width);
    bitmap.pitch = width;
    bitmap.buffer = one.data();
    bitmap.num_grays = 256;
    bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
    // The bitmap's y grows upwards from its bottom row.
    FT_Outline_Translate(&face->glyph->outline, std::lround(g.x * 64), std::lround((height - g.y) * 64));
    EXPECT_EQ(FT_Outline_Get_Bitmap(library, &face->glyph->outline, &bitmap), 0);
    for (size_t p = 0; p < alpha.size(); ++p) alpha[p] = std::max(alpha[p], one[p]);
  }
  FT_Done_Face(face);
  FT_Done_FreeType(library);
  return alpha;
}

// Whether every clearly inked pixel of `a` has a pixel at least half inked in `b` within `reach` pixels.
bool WithinReach(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b, int width, int height,
                 int reach) {
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      if (a[static_cast<size_t>(y) * width + x] < 192) continue;
      bool near = false;
      for (int dy = -reach; dy <= reach && !near; ++dy) {
        for (int dx = -reach; dx <= reach && !near; ++dx) {
          const int u = x + dx, v = y + dy;
          near = u >= 0 && v >= 0 && u < width && v < height && b[static_cast<size_t>(v) * width + u] >= 128;
        }
      }
      if (!near) return false;
    }
  }
  return true;
}

TEST(TextCff, OpenTypeGlyphsDrawWithinAPixelOfTheExactOnes) {
  for (double size : {24.0, 96.0, 300.0}) {
    const LettrixTextLayout layout = Layout(kSerifOtf, size);
    Laid laid("Sg@&", layout);
    ASSERT_TRUE(laid.ok()) << laid.message();
    const int width = laid.r().ink_right + 4, height = laid.r().ink_bottom + 4;
    const std::vector<uint8_t> drawn = DrawAlpha(laid.r(), width, height);
    const std::vector<uint8_t> exact = ExactAlpha(laid, kSerifOtf, size, width, height);
    EXPECT_TRUE(WithinReach(drawn, exact, width, height, 1)) << size;
    EXPECT_TRUE(WithinReach(exact, drawn, width, height, 1)) << size;
    long inked = 0, differ = 0;
    for (size_t p = 0; p < drawn.size(); ++p) {
      inked += exact[p] >= 128;
      differ += std::abs(drawn[p] - exact[p]) > 96;
    }
    EXPECT_GT(inked, 100);
    EXPECT_LT(differ * 50, inked) << size;  // under 2 % of the ink differs by more than a third
  }
}

Point CubicAt(const Point (&p)[4], double t) {
  const double u = 1 - t;
  return {u * u * u * p[0].x + 3 * u * u * t * p[1].x + 3 * u * t * t * p[2].x + t * t * t * p[3].x,
          u * u * u * p[0].y + 3 * u * u * t * p[1].y + 3 * u * t * t * p[2].y + t * t * t * p[3].y};
}

TEST(TextCff, CubicPiecesStayWithinASixteenthOfAPixel) {
  const Point cubics[][4] = {
      {{0, 0}, {0, 100}, {100, 100}, {100, 0}},         // an arch
      {{0, 0}, {300, 200}, {-200, 200}, {100, 0}},      // a loop
      {{0, 0}, {10, 0}, {20, 0}, {30, 0}},              // a straight line
      {{5, 5}, {2000, -900}, {-1500, 2500}, {40, 40}},  // a wild one, far beyond a glyph's size
      {{0, 0}, {0.1, 0.2}, {0.2, 0.1}, {0.3, 0.3}},     // tiny
  };
  for (const auto& c : cubics) {
    std::vector<QuadraticPiece> pieces;
    SplitCubic(c[0], c[1], c[2], c[3], 1.0 / 16, &pieces);
    ASSERT_FALSE(pieces.empty());
    EXPECT_LE(pieces.size(), 1024u);
    EXPECT_TRUE(&c != &cubics[2] || pieces.size() == 1u);  // a flat cubic needs one piece
    EXPECT_TRUE(&c != &cubics[3] || pieces.size() > 20u);  // a large curved one many
    EXPECT_EQ(pieces.back().end.x, c[3].x);
    EXPECT_EQ(pieces.back().end.y, c[3].y);
    // Equal parameter steps: piece k covers t in [k/n, (k+1)/n]; compare point by point.
    const double n = static_cast<double>(pieces.size());
    Point start = c[0];
    double worst = 0;
    for (size_t k = 0; k < pieces.size(); ++k) {
      const QuadraticPiece& q = pieces[k];
      for (int s = 0; s <= 32; ++s) {
        const double t = s / 32.0, u = 1 - t;
        const Point onQuad{u * u * start.x + 2 * u * t * q.control.x + t * t * q.end.x,
                           u * u * start.y + 2 * u * t * q.control.y + t * t * q.end.y};
        const Point onCubic = CubicAt(c, (static_cast<double>(k) + t) / n);
        worst = std::max(worst, std::hypot(onQuad.x - onCubic.x, onQuad.y - onCubic.y));
      }
      start = q.end;
    }
    EXPECT_LE(worst, 1.0 / 16) << c[1].x;
  }
}

// One contour from `start`: a line to each end point, or a curve where a control point is given.
OutlineBlockWriter Contour(Point start, const std::vector<std::pair<Point, Point>>& edges) {
  OutlineBlockWriter writer;
  writer.MoveTo(start);
  for (const auto& [control, end] : edges)
    std::isnan(control.x) ? writer.LineTo(end) : writer.QuadraticTo(control, end);
  writer.EndContour();
  return writer;
}

TEST(TextCff, ContoursBecomeLineAndCurveRecordsInRange) {
  const Point line{NAN, 0};
  const OutlineBlockWriter writer =
      Contour({10.25, 20.75}, {{line, {30, 20.75}}, {line, {30, 30}}, {{30, 40}, {10.25, 40}}});
  const std::vector<uint8_t>& b = writer.bytes();
  auto u32 = [&](size_t at) {
    return static_cast<uint32_t>(b[at] | b[at + 1] << 8 | b[at + 2] << 16 |
                                 static_cast<uint32_t>(b[at + 3]) << 24);
  };
  auto u16 = [&](size_t at) { return static_cast<uint32_t>(b[at] | b[at + 1] << 8); };
  // Header (size, type, start 10.25 and 20.75), one line record for both lines, the curve's control and end.
  ASSERT_EQ(b.size(), 16u + 4 + 16 + 4 + 16);
  EXPECT_EQ(
      std::vector<uint32_t>({u32(0), u32(4), u32(8), u32(12), u16(16), u16(18), u32(20), u32(32), u16(36),
                             u16(38), u32(48), u32(52)}),
      std::vector<uint32_t>({56, 24, 0xA4000, 0x14C000, 1, 2, 30 << 16, 30 << 16, 2, 2, 0xA4000, 40 << 16}));
  // The box has the start where the reader rounds it: 20.75 becomes 21, and 10.25 becomes 10.
  EXPECT_EQ(std::vector<int>({writer.inkLeft(), writer.inkTop(), writer.inkRight(), writer.inkBottom()}),
            std::vector<int>({10, 20, 30, 40}));
  const OutlineBlockWriter high = Contour({5.75, 5.75}, {{line, {9, 9}}, {line, {9, 8}}});
  EXPECT_EQ(std::make_pair(high.inkLeft(), high.inkTop()), std::make_pair(6, 6));
  // The last edge ends where the reader puts the start, its rounded point: a line back to the start is
  // left to the reader's closing edge; a curve ends on the rounded start itself.
  const OutlineBlockWriter lines =
      Contour({1.75, 2.25}, {{line, {9, 2.25}}, {line, {9, 9}}, {line, {1.75, 2.25}}});
  ASSERT_EQ(lines.bytes().size(), 16u + 4 + 16);
  EXPECT_EQ(lines.bytes()[18], 2);
  const OutlineBlockWriter curve = Contour({1.75, 2.25}, {{line, {9, 2.25}}, {{9, 9}, {1.75, 2.25}}});
  const std::vector<uint8_t>& c = curve.bytes();
  ASSERT_EQ(c.size(), 16u + 4 + 8 + 4 + 16);
  EXPECT_EQ(std::vector<uint8_t>(c.end() - 8, c.end()), (std::vector<uint8_t>{0, 0, 2, 0, 0, 0, 2, 0}));
  // Points beyond the 16.16 range spoil the block.
  for (const Point far : {Point{32768, 0}, Point{0, -32769}, Point{NAN, 0}})
    EXPECT_FALSE(Contour({0, 0}, {{line, far}, {line, {1, 1}}}).inRange()) << far.x << "," << far.y;
  EXPECT_TRUE(Contour({-32768, 0}, {{line, {32767.99, 10}}, {line, {0, 10}}}).inRange());
}

TEST(TextCff, TheReportedInkBoxIsTheOneTheRendererMeasures) {
  for (const char* font : {kSerifOtf, kSans}) {
    for (double size : {11.3, 40.0, 97.5}) {
      LettrixTextLayout layout = Layout(font, size);
      layout.letter_spacing = 0.37;
      Laid laid("Quiet\nwaves", layout);
      ASSERT_TRUE(laid.ok());
      const InkBox measured =
          MeasureOutlineBlock(static_cast<const uint8_t*>(laid.r().block), laid.r().block_size);
      EXPECT_EQ(std::vector<int32_t>(
                    {laid.r().ink_left, laid.r().ink_top, laid.r().ink_right, laid.r().ink_bottom}),
                std::vector<int32_t>({measured.left, measured.top, measured.right, measured.bottom}))
          << font << " " << size;
    }
  }
}

}  // namespace
}  // namespace lx::text::testing
