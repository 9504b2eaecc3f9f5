#include "effects/compositing.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace lx {
namespace {

uint32_t Pixel(uint32_t b, uint32_t g, uint32_t r, uint32_t a) {
  return b | g << 8 | r << 16 | a << 24;
}

// An image of width x height pixels placed with its top-left corner at (left, top), rows `stride` apart.
struct Image {
  Image(int32_t w, int32_t h, uint32_t fill, int32_t left = 0, int32_t top = 0, int32_t stride = 0)
      : width(w),
        height(h),
        stride(std::max(w, stride)),
        pixels(size_t(this->stride) * h, fill),
        rect{left, top, left + w, top + h} {}
  PlacedView placed() {
    return {{reinterpret_cast<uint8_t*>(pixels.data()), width, height, stride * 4}, rect};
  }
  int32_t width, height, stride;
  std::vector<uint32_t> pixels;
  IntRect rect;
};

// The law on one pixel: BlendOver, or with bounds the saturating law between their alpha bytes.
uint32_t One(uint32_t source, uint32_t target, const std::vector<uint32_t>& bounds = {}) {
  Image s(1, 1, source), t(1, 1, target);
  if (bounds.empty()) BlendOver(s.placed(), t.placed());
  if (!bounds.empty()) BlendOverClamped(s.placed(), t.placed(), bounds[0], bounds[1]);
  return t.pixels[0];
}

TEST(Compositing, WeightedAndSaturatingLawsAndStraightCopies) {
  const uint32_t a = Pixel(0, 128, 255, 0), b = Pixel(255, 0, 100, 0);
  const struct {
    uint32_t source, target;
    std::vector<uint32_t> bounds;
    uint32_t result, mask;
  } cases[] = {
      // A = 128 * 255 + 32768 = 65408; component 0 = (10*256*128 + 200*255*128) / 65408 = 104.
      {Pixel(10, 20, 30, 128), Pixel(200, 200, 200, 255), {}, Pixel(104, 109, 114, 255), ~0u},
      // A = 192 * 100 + 64 * 256 = 35584, alpha 139.
      {Pixel(0, 128, 255, 64), Pixel(255, 0, 100, 100), {}, Pixel(137, 58, 171, 139), ~0u},
      {Pixel(7, 200, 30, 90), Pixel(7, 10, 30, 77), {}, Pixel(7, 0, 30, 0), 0x00FF00FFu},  // equal bytes stay
      {Pixel(9, 9, 9, 0), Pixel(1, 2, 3, 200), {}, Pixel(1, 2, 3, 200), ~0u},
      {Pixel(10, 20, 30, 255), Pixel(200, 200, 200, 100), {}, Pixel(10, 20, 30, 255), ~0u},
      {Pixel(10, 20, 30, 100), Pixel(200, 200, 200, 0), {}, Pixel(10, 20, 30, 100), ~0u},
      // A = 401 * 256 - 40000 = 62656: alpha 244; A = 65756 > 65280 saturates to 255.
      {a | 200u << 24, b | 200u << 24, {0u, 0xFF000000u}, Pixel(45, 104, 226, 244), ~0u},
      {a | 250u << 24, b | 250u << 24, {0u, 0xFF000000u}, Pixel(5, 124, 250, 255), ~0u},
      // Held at the larger alpha byte of the two colours, whatever their order and other bytes.
      {a | 250u << 24, b | 250u << 24, {0xC8123456u, 0x0A654321u}, 200u << 24, 0xFF000000u},
      {a | 200u << 24, b | 200u << 24, {0xE0FFFFFFu, 0xF0000000u}, 240u << 24, 0xFF000000u},
      // A = 21 * 256 - 100 = 5276: alpha 20, raised to the smaller bound.
      {a | 10u << 24, b | 10u << 24, {0u, 0xFF000000u}, Pixel(118, 62, 170, 20), ~0u},
      {a | 10u << 24, b | 10u << 24, {0x40000000u, 0xFF000000u}, 64u << 24, 0xFF000000u},
      {Pixel(1, 2, 3, 255), Pixel(9, 9, 9, 100), {0x10000000u, 0x20000000u}, Pixel(1, 2, 3, 255), ~0u},
      {Pixel(1, 2, 3, 30), Pixel(9, 9, 9, 0), {0x80000000u, 0xFF000000u}, Pixel(1, 2, 3, 30), ~0u},
      {Pixel(1, 2, 3, 0), Pixel(9, 9, 9, 50), {0x80000000u, 0xFF000000u}, Pixel(9, 9, 9, 50), ~0u},
  };
  for (const auto& c : cases)
    EXPECT_EQ(One(c.source, c.target, c.bounds) & c.mask, c.result) << std::hex << c.source;
  // The law tops out at (2 * 255 + 254 * 256) >> 8 = 255: an opaque target stays opaque, alpha never wraps.
  for (uint32_t sa = 1; sa < 255; ++sa) {
    EXPECT_EQ(One(Pixel(255, 0, 128, sa), Pixel(0, 255, 128, 255)) >> 24, 255u) << sa;
    EXPECT_EQ(One(Pixel(255, 0, 128, sa), Pixel(0, 255, 128, 1)) >> 24, sa) << sa;
  }
}

TEST(Compositing, PlacementClipsToBothImages) {
  const uint32_t grey = Pixel(50, 50, 50, 255);
  Image source(2, 2, 0u, -7, -5);
  source.pixels = {Pixel(1, 0, 0, 255), Pixel(2, 0, 0, 255), Pixel(3, 0, 0, 255), Pixel(4, 0, 0, 255)};
  // Corners just outside, touching, one pixel in, negative, and at the ends of the integer range.
  const struct {
    IntRect source, target;
    std::vector<uint32_t> want;
  } cases[] = {
      {{-7, -5, -5, -3}, {-8, -6, -5, -3}, {grey, grey, grey, grey, 1, 2, grey, 3, 4}},
      {{-1, -1, 1, 1}, {0, 0, 3, 3}, {4, grey, grey, grey, grey, grey, grey, grey, grey}},
      {{2, 2, 4, 4}, {0, 0, 3, 3}, {grey, grey, grey, grey, grey, grey, grey, grey, 1}},
      {{3, 0, 5, 2}, {0, 0, 3, 3}, std::vector<uint32_t>(9, grey)},
      {{0, -2, 2, 0}, {0, 0, 3, 3}, std::vector<uint32_t>(9, grey)},
      {{INT32_MAX - 2, INT32_MAX - 2, INT32_MAX, INT32_MAX},
       {INT32_MIN, INT32_MIN, INT32_MIN + 3, INT32_MIN + 3},
       std::vector<uint32_t>(9, grey)},
  };
  for (const auto& c : cases) {
    for (bool clamped : {false, true}) {
      Image target(3, 3, grey);
      target.rect = c.target;
      source.rect = c.source;
      if (clamped) BlendOverClamped(source.placed(), target.placed(), 0u, 0xFF000000u);
      if (!clamped) BlendOver(source.placed(), target.placed());
      std::vector<uint32_t> want = c.want;
      for (uint32_t& p : want) p = p < 5 ? Pixel(p, 0, 0, 255) : p;
      EXPECT_EQ(target.pixels, want) << c.source.left << "," << c.source.top << (clamped ? " clamped" : "");
    }
  }
  // Missing pixels or rows: nothing happens.
  Image target(3, 3, grey);
  source.rect = target.rect;
  PlacedView broken = source.placed();
  broken.view.pixels = nullptr;
  BlendOver(broken, target.placed());
  broken = source.placed();
  broken.view.height = 0;
  BlendOverClamped(broken, target.placed(), 0u, 0xFF000000u);
  EXPECT_EQ(target.pixels, std::vector<uint32_t>(9, grey));

  // Laying an image on itself one row lower shifts it down only when the last row goes first.
  Image column(1, 4, 0u);
  column.pixels = {Pixel(1, 0, 0, 255), Pixel(2, 0, 0, 255), Pixel(3, 0, 0, 255), Pixel(4, 0, 0, 255)};
  PlacedView lower = column.placed();
  lower.rect = {0, 1, 1, 5};
  BlendOver(lower, column.placed());
  EXPECT_EQ(column.pixels, (std::vector<uint32_t>{Pixel(1, 0, 0, 255), Pixel(1, 0, 0, 255),
                                                  Pixel(2, 0, 0, 255), Pixel(3, 0, 0, 255)}));
}

// The four-pixel path against the pixel-by-pixel one: runs of transparent and opaque sources and of
// empty targets are where it takes shortcuts; a group needing arithmetic must fall back cleanly.
TEST(Compositing, WidePathMatchesScalarOnOddWidthsStridesAndPlacements) {
  std::mt19937 rng(1);
  const auto fill = [&](Image& image, int transparent, int opaque) {
    for (uint32_t& p : image.pixels) {
      const int pick = static_cast<int>(rng() % 100);
      const uint32_t alpha = pick < transparent            ? 0
                             : pick < transparent + opaque ? 255
                             : pick % 3                    ? rng() & 0xFF
                                                           : 254;
      p = pick % 17 == 0 ? 0 : (rng() & 0x00FFFFFFu) | alpha << 24;
    }
  };
  const struct {
    int32_t width, height, sourcePad, targetPad, shiftX, shiftY, transparent, opaque;
  } cases[] = {{1, 1, 0, 0, 0, 0, 50, 25},  {3, 5, 1, 2, 0, 0, 40, 40},     {5, 3, 3, 0, 1, 0, 10, 80},
               {7, 9, 0, 5, -2, 1, 60, 30}, {31, 17, 7, 3, -5, 4, 70, 20},  {64, 8, 0, 0, 0, 0, 95, 4},
               {65, 11, 1, 4, 2, 2, 0, 0},  {129, 5, 3, 3, -64, 1, 20, 70}, {37, 23, 0, 1, 36, 22, 50, 50}};
  for (const auto& c : cases) {
    Image source(c.width, c.height, 0, c.shiftX, c.shiftY, c.width + c.sourcePad);
    Image wide(c.width, c.height, 0, 0, 0, c.width + c.targetPad);
    fill(source, c.transparent, c.opaque);
    fill(wide, c.transparent, c.opaque);
    Image scalar = wide;
    const std::vector<uint32_t> before = wide.pixels;
    BlendOver(source.placed(), wide.placed(), KernelPath::kWide);
    BlendOver(source.placed(), scalar.placed(), KernelPath::kScalar);
    EXPECT_EQ(wide.pixels, scalar.pixels) << c.width << "x" << c.height;
    for (int32_t y = 0; y < c.height; ++y)  // the padding beyond each row's width is never touched
      for (int32_t x = c.width; x < wide.stride; ++x)
        ASSERT_EQ(wide.pixels[y * wide.stride + x], before[y * wide.stride + x]);
  }
}

}  // namespace
}  // namespace lx
