// The outline helper: contours to block records, the box a block measures, one line of text placed on its
// baseline. (Font names are checked by the Windows demo's comparison, which selects its font by them.)
#include <gtest/gtest.h>

#include <cstring>

#include "tools/text_outline/block_writer.h"
#include "tools/text_outline/text_outline.h"

namespace lx::text {
namespace {

using detail::ContourPoint;
using detail::PointKind;

constexpr int32_t F = 65536;  // one pixel in 16.16
const auto On = [](int x, int y) { return ContourPoint{x * F, y * F, PointKind::kOn}; };
const auto Conic = [](int x, int y) { return ContourPoint{x * F, y * F, PointKind::kConic}; };

// The block of one contour as 32-bit words (a record's type and count make one word).
std::vector<int32_t> Words(const std::vector<ContourPoint>& points) {
  std::vector<uint8_t> b;
  EXPECT_TRUE(detail::AppendContour(points, &b));
  std::vector<int32_t> words(b.size() / 4);
  std::memcpy(words.data(), b.data(), words.size() * 4);
  return words;
}

TEST(AppendContour, LinesAndConicRunsBecomeRecordsWithTheClosingEdgeImplied) {
  // Size, type 24, start; one line record of three points.
  EXPECT_EQ(Words({On(0, 0), On(10, 0), On(10, 10), On(0, 10)}),
            (std::vector<int32_t>{44, 24, 0, 0, 1 | 3 << 16, 10 * F, 0, 10 * F, 10 * F, 0, 10 * F}));
  // Starting on a conic point, the walk begins at the first on-curve point and wraps round.
  EXPECT_EQ(Words({Conic(0, 0), On(10, 0), On(10, 10), Conic(5, 20), Conic(0, 20)}),
            (std::vector<int32_t>{64, 24, 10 * F, 0, 1 | 1 << 16, 10 * F, 10 * F, 2 | 4 << 16, 5 * F, 20 * F,
                                  0, 20 * F, 0, 0, 10 * F, 0}));
  // All conic: the start lies between the last and the first points.
  EXPECT_EQ(Words({Conic(0, 0), Conic(10, 0), Conic(10, 10), Conic(0, 10)}),
            (std::vector<int32_t>{60, 24, 0, 5 * F, 2 | 5 << 16, 0, 0, 10 * F, 0, 10 * F, 10 * F, 0, 10 * F,
                                  0, 5 * F}));
  // Cubic points are refused; a single point or none makes no contour.
  std::vector<uint8_t> block;
  EXPECT_FALSE(detail::AppendContour({On(0, 0), {F, F, PointKind::kCubic}, On(3, 0)}, &block));
  EXPECT_TRUE(detail::AppendContour({On(4, 4)}, &block) && detail::AppendContour({}, &block) &&
              block.empty());
}

TEST(MeasureOutlineBlock, RoundsTheStartHalfUpBoxesTheRestOutwardAndRefusesMalformedBlocks) {
  std::vector<uint8_t> block;
  // Start at (10.5, 3), which enters as 11; a line point at (0.2, 9.7).
  ASSERT_TRUE(detail::AppendContour(
      {{10 * F + F / 2, 3 * F, PointKind::kOn}, {F / 5, 9 * F + 7 * F / 10, PointKind::kOn}, On(4, 5)},
      &block));
  const InkBox box = MeasureOutlineBlock(block.data(), block.size());
  EXPECT_EQ(std::vector<int>({box.left, box.top, box.right, box.bottom}), std::vector<int>({0, 3, 11, 10}));
  EXPECT_TRUE(MeasureOutlineBlock(block.data(), block.size() - 1).empty());  // the size runs past the end
  EXPECT_TRUE(MeasureOutlineBlock(nullptr, block.size()).empty());
  // Not TT_POLYGON_TYPE; a record claiming nine points; a size of 0, which would never advance.
  for (const auto& [at, value] : {std::make_pair(4, 25), std::make_pair(18, 9), std::make_pair(0, 0)}) {
    std::vector<uint8_t> bad = block;
    bad[at] = uint8_t(value);
    EXPECT_TRUE(MeasureOutlineBlock(bad.data(), bad.size()).empty()) << at;
  }
}

TEST(BuildOutlineBlock, PlacesGlyphsOnTheBaselineWithKerningAndRefusesBadLinesAndFonts) {
  const auto build = [](const std::string& text, double x) {
    OutlineBlock block;
    std::string error;
    EXPECT_TRUE(BuildOutlineBlock(TextLine{kDefaultFontPath, text, 64, x, 100}, &block, &error)) << error;
    return block;
  };
  // DejaVu Sans Bold: capital height 0.729 em above the baseline, advance 1714 of 2048 units.
  const OutlineBlock h = build("H", 10);
  EXPECT_EQ(std::make_tuple(h.ink.top, h.ink.bottom, h.ink.left > 10, h.ink.right < 10 + h.advance),
            std::make_tuple(53, 100, true, true));
  EXPECT_NEAR(h.advance, 1714.0 / 2048 * 64, 1.0);
  EXPECT_EQ(std::make_pair(build("H", 17).ink.left, build("HH", 10).advance),
            std::make_pair(h.ink.left + 7, 2 * h.advance));
  EXPECT_LT(build("AV", 0).advance, build("A", 0).advance + build("V", 0).advance - 2.0);
  OutlineBlock out = h;
  for (const TextLine& bad : {TextLine{kDefaultFontPath, "ok", 0}, TextLine{kDefaultFontPath, "\xFF", 32},
                              TextLine{"/nonexistent/font.ttf", "ok", 32}}) {
    std::string error;
    EXPECT_FALSE(BuildOutlineBlock(bad, &out, &error) || error.empty()) << bad.text << " " << bad.pixelSize;
  }
  EXPECT_FALSE(BuildOutlineBlock(TextLine{kDefaultFontPath, "ok", 32, 32760}, &out, nullptr));  // past 32767
  EXPECT_TRUE(out.bytes.empty());
}

}  // namespace
}  // namespace lx::text
