// The outline helper's edge cases; its blocks for ordinary text are drawn, pixel-exact, by every scene the
// library's tests render.
#include <gtest/gtest.h>

#include <cstring>

#include "tools/text_outline/block_writer.h"
#include "tools/text_outline/text_outline.h"

namespace lx::text {
namespace {

constexpr int32_t F = 65536;  // one pixel in 16.16

TEST(AppendContour, ConicRunsBecomeSplinesWithTheClosingEdgeImpliedAndCubicsAreRefused) {
  const auto on = [](int x, int y) { return detail::ContourPoint{x * F, y * F, detail::PointKind::kOn}; };
  const auto conic = [](int x, int y) {
    return detail::ContourPoint{x * F, y * F, detail::PointKind::kConic};
  };
  // Starting on a conic point, the walk begins at the first on-curve point and wraps round; all conic, the
  // start lies between the last and the first points. (Size, type 24, start; then records: type | count
  // << 16.)
  const std::pair<std::vector<detail::ContourPoint>, std::vector<int32_t>> cases[] = {
      {{conic(0, 0), on(10, 0), on(10, 10), conic(5, 20), conic(0, 20)},
       {64, 24, 10 * F, 0, 1 | 1 << 16, 10 * F, 10 * F, 2 | 4 << 16, 5 * F, 20 * F, 0, 20 * F, 0, 0, 10 * F,
        0}},
      {{conic(0, 0), conic(10, 0), conic(10, 10), conic(0, 10)},
       {60, 24, 0, 5 * F, 2 | 5 << 16, 0, 0, 10 * F, 0, 10 * F, 10 * F, 0, 10 * F, 0, 5 * F}},
  };
  for (const auto& [points, words] : cases) {
    std::vector<uint8_t> block;
    ASSERT_TRUE(detail::AppendContour(points, &block));
    std::vector<int32_t> got(block.size() / 4);
    std::memcpy(got.data(), block.data(), got.size() * 4);
    EXPECT_EQ(got, words);
  }
  std::vector<uint8_t> block;
  EXPECT_FALSE(detail::AppendContour({on(0, 0), {F, F, detail::PointKind::kCubic}, on(3, 0)}, &block));
  EXPECT_TRUE(detail::AppendContour({on(4, 4)}, &block) && block.empty());  // a single point makes no contour
}

TEST(BuildOutlineBlock, RefusesBadLinesAndFontsWithAMessageAndNoBlock) {
  OutlineBlock out;
  ASSERT_TRUE(BuildOutlineBlock(TextLine{kDefaultFontPath, "H", 64, 10, 100}, &out, nullptr));
  for (const TextLine& bad :
       {TextLine{kDefaultFontPath, "ok", 0}, TextLine{kDefaultFontPath, "\xFF", 32},
        TextLine{"/nonexistent/font.ttf", "ok", 32}, TextLine{kDefaultFontPath, "ok", 32, 32760}}) {
    std::string error;
    EXPECT_FALSE(BuildOutlineBlock(bad, &out, &error) || error.empty()) << bad.text << " " << bad.pixelSize;
  }
  EXPECT_TRUE(out.bytes.empty());
}

}  // namespace
}  // namespace lx::text
