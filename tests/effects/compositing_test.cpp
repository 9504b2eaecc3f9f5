#include "effects/compositing.h"

#include <gtest/gtest.h>

#include <vector>

namespace lx {
namespace {

using V = std::vector<uint32_t>;

const auto Pixel = [](uint32_t b, uint32_t g, uint32_t r, uint32_t a) {
  return b | g << 8 | r << 16 | a << 24;
};

// Pixels of one colour, placed with their top-left corner at (0, 0) until the rectangle is moved.
struct Image {
  Image(int32_t w, int32_t h, uint32_t f) : w(w), h(h), pixels(size_t(w) * h, f), rect{0, 0, w, h} {}
  PlacedView placed() { return {{reinterpret_cast<uint8_t*>(pixels.data()), w, h, w * 4}, rect}; }
  int32_t w, h;
  V pixels;
  IntRect rect;
};

// One pixel over another: BlendOver, or with bounds the saturating law between their alpha bytes.
uint32_t Blend(uint32_t source, uint32_t target, const V& bounds = {}) {
  Image s(1, 1, source), t(1, 1, target);
  if (bounds.empty()) BlendOver(s.placed(), t.placed());
  if (!bounds.empty()) BlendOverClamped(s.placed(), t.placed(), bounds[0], bounds[1]);
  return t.pixels[0];
}

TEST(Compositing, LawsAtTheEndsOfTheAlphaRange) {
  const uint32_t a = Pixel(0, 128, 255, 0), b = Pixel(255, 0, 100, 0), any = 0xFF000000u;
  // A = 401 * 256 - 40000 = 62656: alpha 244; A = 21 * 256 - 100 = 5276: alpha 20, raised to a bound of 64;
  // A = 65756 saturates, held at the larger bound's alpha byte whatever the order and other bytes.
  EXPECT_EQ(Blend(a | 200u << 24, b | 200u << 24, {0u, any}), Pixel(45, 104, 226, 244));
  EXPECT_EQ(Blend(a | 10u << 24, b | 10u << 24, {0u, any}), Pixel(118, 62, 170, 20));
  EXPECT_EQ(Blend(a | 10u << 24, b | 10u << 24, {0x40000000u, any}) >> 24, 64u);
  EXPECT_EQ(Blend(a | 250u << 24, b | 250u << 24, {0u, any}), Pixel(5, 124, 250, 255));
  EXPECT_EQ(Blend(a | 250u << 24, b | 250u << 24, {0xC8123456u, 0x0A654321u}) >> 24, 200u);
  EXPECT_EQ(Blend(a | 200u << 24, b | 200u << 24, {0xE0FFFFFFu, 0xF0000000u}) >> 24, 240u);
  // Where either side is clear the source is copied, whatever the bounds.
  EXPECT_EQ(Blend(Pixel(1, 2, 3, 255), Pixel(9, 9, 9, 100), {0x10000000u, 0x20000000u}), Pixel(1, 2, 3, 255));
  EXPECT_EQ(Blend(Pixel(1, 2, 3, 30), Pixel(9, 9, 9, 0), {0x80000000u, any}), Pixel(1, 2, 3, 30));
  EXPECT_EQ(Blend(Pixel(1, 2, 3, 0), Pixel(9, 9, 9, 50), {0x80000000u, any}), Pixel(9, 9, 9, 50));
  // BlendOver tops out at (2 * 255 + 254 * 256) >> 8 = 255: an opaque target stays opaque, alpha never wraps.
  for (uint32_t sa = 1; sa < 255; ++sa)
    EXPECT_EQ((V{Blend(Pixel(255, 0, 128, sa), Pixel(0, 255, 128, 255)) >> 24,
                 Blend(Pixel(255, 0, 128, sa), Pixel(0, 255, 128, 1)) >> 24}),
              (V{255, sa}));
}

TEST(Compositing, PlacementClipsToBothImages) {
  const uint32_t g = Pixel(50, 50, 50, 255);
  const auto s = [](uint32_t i) { return Pixel(i, 0, 0, 255); };
  Image source(2, 2, 0u);
  source.pixels = {s(1), s(2), s(3), s(4)};
  // Corners one pixel in, negative, touching from outside, and at the ends of the integer range; the 3 x 3
  // target as a pattern of its pixels, '.' where it keeps its own.
  const struct {
    int32_t sourceLeft, sourceTop, targetLeft, targetTop;
    const char* want;
  } cases[] = {
      {-7, -5, -8, -6, "....12.34"}, {-1, -1, 0, 0, "4........"},
      {2, 2, 0, 0, "........1"},     {3, 0, 0, 0, "........."},
      {0, -2, 0, 0, "........."},    {INT32_MAX - 2, INT32_MAX - 2, INT32_MIN, INT32_MIN, "........."}};
  for (const auto& c : cases) {
    for (bool clamped : {false, true}) {
      Image target(3, 3, g);
      target.rect = {c.targetLeft, c.targetTop, c.targetLeft + 3, c.targetTop + 3};
      source.rect = {c.sourceLeft, c.sourceTop, c.sourceLeft + 2, c.sourceTop + 2};
      if (clamped) BlendOverClamped(source.placed(), target.placed(), 0u, 0xFF000000u);
      if (!clamped) BlendOver(source.placed(), target.placed());
      V want;
      for (const char* p = c.want; *p; ++p) want.push_back(*p == '.' ? g : s(*p - '0'));
      EXPECT_EQ(target.pixels, want) << c.want << (clamped ? " clamped" : "");
    }
  }
  // Missing pixels: nothing happens.
  Image target(3, 3, g);
  source.rect = target.rect;
  PlacedView broken = source.placed();
  broken.view.pixels = nullptr;
  BlendOver(broken, target.placed());
  EXPECT_EQ(target.pixels, V(9, g));

  // Laying an image on itself one row lower shifts it down only when the last row goes first.
  Image column(1, 4, 0u);
  column.pixels = {s(1), s(2), s(3), s(4)};
  PlacedView lower = column.placed();
  lower.rect = {0, 1, 1, 5};
  BlendOver(lower, column.placed());
  EXPECT_EQ(column.pixels, (V{s(1), s(1), s(2), s(3)}));
}

}  // namespace
}  // namespace lx
