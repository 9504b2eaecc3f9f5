// The four-pixel path of BlendOver against the pixel-by-pixel one: runs of transparent and opaque
// sources and of transparent targets are where the wide path takes its shortcuts, and a group with any
// pixel that needs arithmetic must fall back without disturbing its neighbours.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "effects/compositing.h"

namespace lx {
namespace {

// Pixels whose alpha is drawn from a few runs-friendly choices: mostly the shortcut values (0 and
// 255), sometimes one just beside them or anything at all.
std::vector<uint32_t> Pixels(size_t count, unsigned seed, int transparentPercent, int opaquePercent) {
  std::mt19937 rng(seed);
  std::vector<uint32_t> pixels(count);
  for (uint32_t& p : pixels) {
    const uint32_t colour = rng() & 0x00FFFFFFu;
    const int pick = static_cast<int>(rng() % 100);
    uint32_t alpha = rng() & 0xFFu;
    if (pick < transparentPercent) {
      alpha = 0;
    } else if (pick < transparentPercent + opaquePercent) {
      alpha = 255;
    } else if (pick % 3 == 0) {
      alpha = pick % 2 == 0 ? 1 : 254;
    }
    p = colour | alpha << 24;
    if (pick % 17 == 0) p = 0;  // wholly zero words, which the target law treats as empty
  }
  return pixels;
}

TEST(BlendOverWide, MatchesThePixelByPixelPathOnOddWidthsStridesAndPlacements) {
  struct Case {
    int32_t width, height, sourcePad, targetPad, shiftX, shiftY;
    int transparent, opaque;
  };
  const Case cases[] = {
      {1, 1, 0, 0, 0, 0, 50, 25},     {3, 5, 1, 2, 0, 0, 40, 40},     {4, 4, 0, 0, 0, 0, 90, 5},
      {5, 3, 3, 0, 1, 0, 10, 80},     {7, 9, 0, 5, -2, 1, 60, 30},    {13, 6, 2, 1, 3, -2, 30, 30},
      {31, 17, 7, 3, -5, 4, 70, 20},  {64, 8, 0, 0, 0, 0, 95, 4},     {65, 11, 1, 4, 2, 2, 0, 0},
      {129, 5, 3, 3, -64, 1, 20, 70}, {37, 23, 0, 1, 36, 22, 50, 50},
  };
  unsigned seed = 1;
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.width << "x" << c.height << " shift " << c.shiftX << ","
                                    << c.shiftY);
    const int32_t sourceStride = c.width + c.sourcePad, targetStride = c.width + c.targetPad;
    std::vector<uint32_t> source =
        Pixels(static_cast<size_t>(sourceStride) * c.height, seed++, c.transparent, c.opaque);
    const std::vector<uint32_t> target =
        Pixels(static_cast<size_t>(targetStride) * c.height, seed++, c.transparent, c.opaque);
    std::vector<uint32_t> wide = target, scalar = target;
    const PlacedView from{{reinterpret_cast<uint8_t*>(source.data()), c.width, c.height, sourceStride * 4},
                          {c.shiftX, c.shiftY, c.shiftX + c.width, c.shiftY + c.height}};
    auto onto = [&](std::vector<uint32_t>& pixels) {
      return PlacedView{{reinterpret_cast<uint8_t*>(pixels.data()), c.width, c.height, targetStride * 4},
                        {0, 0, c.width, c.height}};
    };
    BlendOver(from, onto(wide), KernelPath::kWide);
    BlendOver(from, onto(scalar), KernelPath::kScalar);
    EXPECT_EQ(wide, scalar);
    // The padding beyond each row's width is never touched.
    for (int32_t y = 0; y < c.height; ++y) {
      for (int32_t x = c.width; x < targetStride; ++x) {
        const size_t i = static_cast<size_t>(y) * targetStride + x;
        EXPECT_EQ(wide[i], target[i]) << x << "," << y;
      }
    }
  }
}

}  // namespace
}  // namespace lx
