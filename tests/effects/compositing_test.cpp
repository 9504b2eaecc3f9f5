#include "effects/compositing.h"

#include <gtest/gtest.h>

#include <vector>

namespace lx {
namespace {

uint32_t Pixel(uint32_t b, uint32_t g, uint32_t r, uint32_t a) {
  return b | g << 8 | r << 16 | a << 24;
}

// An image of width x height pixels placed with its top-left corner at (left, top).
struct Image {
  Image(int32_t w, int32_t h, uint32_t fill, int32_t left = 0, int32_t top = 0)
      : width(w), height(h), pixels(static_cast<size_t>(w) * h, fill), rect{left, top, left + w, top + h} {}
  PlacedView placed() {
    return {{reinterpret_cast<uint8_t*>(pixels.data()), width, height, width * 4}, rect};
  }
  uint32_t& at(int32_t x, int32_t y) { return pixels[static_cast<size_t>(y) * width + x]; }
  int32_t width, height;
  std::vector<uint32_t> pixels;
  IntRect rect;
};

uint32_t BlendOne(uint32_t source, uint32_t target) {
  Image s(1, 1, source), t(1, 1, target);
  BlendOver(s.placed(), t.placed());
  return t.pixels[0];
}

uint32_t ClampedOne(uint32_t source, uint32_t target, uint32_t colourA, uint32_t colourB) {
  Image s(1, 1, source), t(1, 1, target);
  BlendOverClamped(s.placed(), t.placed(), colourA, colourB);
  return t.pixels[0];
}

TEST(BlendOver, WeightedLawAndStraightCopies) {
  const struct {
    uint32_t source, target, result;
  } cases[] = {
      // A = 128 * 255 + 32768 = 65408; component 0 = (10*256*128 + 200*255*128) / 65408 = 104.
      {Pixel(10, 20, 30, 128), Pixel(200, 200, 200, 255), Pixel(104, 109, 114, 255)},
      // A = 192 * 100 + 64 * 256 = 35584, alpha 139.
      {Pixel(0, 128, 255, 64), Pixel(255, 0, 100, 100), Pixel(137, 58, 171, 139)},
      {Pixel(9, 9, 9, 0), Pixel(1, 2, 3, 200), Pixel(1, 2, 3, 200)},
      {Pixel(9, 9, 9, 0), 0u, 0u},
      {Pixel(10, 20, 30, 255), Pixel(200, 200, 200, 100), Pixel(10, 20, 30, 255)},
      {Pixel(10, 20, 30, 100), Pixel(200, 200, 200, 0), Pixel(10, 20, 30, 100)},
  };
  for (const auto& c : cases) EXPECT_EQ(BlendOne(c.source, c.target), c.result) << std::hex << c.source;
  // Components equal to the source's stay.
  EXPECT_EQ(BlendOne(Pixel(7, 200, 30, 90), Pixel(7, 10, 30, 77)) & 0x00FF00FFu, Pixel(7, 0, 30, 0));
  // The law tops out at (2 * 255 + 254 * 256) >> 8 = 255: an opaque target stays opaque, alpha never wraps.
  for (uint32_t sa = 1; sa < 255; ++sa) {
    EXPECT_EQ(BlendOne(Pixel(255, 0, 128, sa), Pixel(0, 255, 128, 255)) >> 24, 255u) << sa;
    EXPECT_EQ(BlendOne(Pixel(255, 0, 128, sa), Pixel(0, 255, 128, 1)) >> 24, sa) << sa;
  }
}

TEST(BlendOverClamped, SaturatingLawBetweenTheColoursAlphas) {
  const uint32_t a = Pixel(0, 128, 255, 0), b = Pixel(255, 0, 100, 0);
  const struct {
    uint32_t source, target, colourA, colourB, result, mask;
  } cases[] = {
      // A = 401 * 256 - 40000 = 62656: alpha 244.
      {a | 200u << 24, b | 200u << 24, 0u, 0xFF000000u, Pixel(45, 104, 226, 244), ~0u},
      // A = 65756 > 65280 saturates to 255.
      {a | 250u << 24, b | 250u << 24, 0u, 0xFF000000u, Pixel(5, 124, 250, 255), ~0u},
      // The upper bound is the larger alpha byte of the two colours, whatever their order and other bytes.
      {a | 250u << 24, b | 250u << 24, 0xC8123456u, 0x0A654321u, 200u << 24, 0xFF000000u},
      {a | 200u << 24, b | 200u << 24, 0xE0FFFFFFu, 0xF0000000u, 240u << 24, 0xFF000000u},
      {a | 200u << 24, b | 200u << 24, 0xFFFFFFFFu, 0xF0000000u, 244u << 24, 0xFF000000u},
      // A = 21 * 256 - 100 = 5276: alpha 20, raised to the smaller bound.
      {a | 10u << 24, b | 10u << 24, 0u, 0xFF000000u, Pixel(118, 62, 170, 20), ~0u},
      {a | 10u << 24, b | 10u << 24, 0x40000000u, 0xFF000000u, 64u << 24, 0xFF000000u},
      // Straight copies ignore the bounds.
      {Pixel(1, 2, 3, 255), Pixel(9, 9, 9, 100), 0x10000000u, 0x20000000u, Pixel(1, 2, 3, 255), ~0u},
      {Pixel(1, 2, 3, 30), Pixel(9, 9, 9, 0), 0x80000000u, 0xFF000000u, Pixel(1, 2, 3, 30), ~0u},
      {Pixel(1, 2, 3, 0), Pixel(9, 9, 9, 50), 0x80000000u, 0xFF000000u, Pixel(9, 9, 9, 50), ~0u},
  };
  for (const auto& c : cases)
    EXPECT_EQ(ClampedOne(c.source, c.target, c.colourA, c.colourB) & c.mask, c.result)
        << std::hex << c.source;
}

TEST(Compositing, SourceWhollyOutsideChangesNothing) {
  const uint32_t opaque = Pixel(1, 2, 3, 255);
  for (const auto& corner : {std::pair{4, 0}, std::pair{0, 4}, std::pair{5, 0}, std::pair{-3, 0},
                             std::pair{0, 5}, std::pair{0, -3}, std::pair{40, 40}}) {
    Image target(4, 4, Pixel(50, 50, 50, 255));
    const std::vector<uint32_t> before = target.pixels;
    Image source(3, 3, opaque, corner.first, corner.second);
    BlendOver(source.placed(), target.placed());
    BlendOverClamped(source.placed(), target.placed(), 0u, 0xFF000000u);
    EXPECT_EQ(target.pixels, before) << corner.first << "," << corner.second;
  }
}

TEST(Compositing, OnePixelCornerOverlapChangesExactlyThatPixel) {
  Image source(3, 3, 0u);
  for (int32_t y = 0; y < 3; ++y)
    for (int32_t x = 0; x < 3; ++x) source.at(x, y) = Pixel(x, y, 7, 255);

  Image target(4, 4, Pixel(50, 50, 50, 255));
  source.rect = {-2, -2, 1, 1};
  BlendOver(source.placed(), target.placed());
  source.rect = {3, 3, 6, 6};
  BlendOver(source.placed(), target.placed());
  for (int32_t y = 0; y < 4; ++y) {
    for (int32_t x = 0; x < 4; ++x) {
      uint32_t expected = Pixel(50, 50, 50, 255);
      if (x == 0 && y == 0) expected = Pixel(2, 2, 7, 255);
      if (x == 3 && y == 3) expected = Pixel(0, 0, 7, 255);
      EXPECT_EQ(target.at(x, y), expected) << x << "," << y;
    }
  }
}

TEST(Compositing, PlacementUsesTheDifferenceOfTheCornersIncludingNegativeOnes) {
  Image source(2, 2, 0u, -7, -5);
  source.at(0, 0) = Pixel(1, 0, 0, 255);
  source.at(1, 0) = Pixel(2, 0, 0, 255);
  source.at(0, 1) = Pixel(3, 0, 0, 255);
  source.at(1, 1) = Pixel(4, 0, 0, 255);
  Image target(3, 3, 0u, -8, -6);  // the source starts one column and one row in
  BlendOver(source.placed(), target.placed());
  EXPECT_EQ(target.pixels, (std::vector<uint32_t>{0, 0, 0, 0, Pixel(1, 0, 0, 255), Pixel(2, 0, 0, 255), 0,
                                                  Pixel(3, 0, 0, 255), Pixel(4, 0, 0, 255)}));

  // A source larger than the target on every side is cut to the target.
  Image big(6, 6, Pixel(9, 9, 9, 255), -10, -8);
  BlendOverClamped(big.placed(), target.placed(), 0u, 0xFF000000u);
  EXPECT_EQ(target.pixels, std::vector<uint32_t>(9, Pixel(9, 9, 9, 255)));
}

TEST(Compositing, HostileCornersAndMissingImagesChangeNothing) {
  Image target(4, 4, 0u, INT32_MIN, INT32_MIN);
  Image source(2, 2, Pixel(1, 1, 1, 255), INT32_MAX - 2, INT32_MAX - 2);
  BlendOver(source.placed(), target.placed());
  EXPECT_EQ(target.pixels, std::vector<uint32_t>(16, 0u));

  source.rect = {INT32_MIN, INT32_MIN, INT32_MIN + 2, INT32_MIN + 2};  // overlapping, but without pixels
  PlacedView noPixels = source.placed();
  noPixels.view.pixels = nullptr;
  BlendOver(noPixels, target.placed());
  PlacedView noRows = source.placed();
  noRows.view.height = 0;
  BlendOverClamped(noRows, target.placed(), 0u, 0xFF000000u);
  EXPECT_EQ(target.pixels, std::vector<uint32_t>(16, 0u));
}

TEST(Compositing, OverlapIsWalkedFromItsLastRowUp) {
  // Laying an image on itself one row lower shifts it down only when the last row goes first.
  Image image(1, 4, 0u);
  for (uint32_t y = 0; y < 4; ++y) image.pixels[y] = Pixel(y + 1, 0, 0, 255);
  PlacedView lower = image.placed();
  lower.rect = {0, 1, 1, 5};
  BlendOver(lower, image.placed());
  EXPECT_EQ(image.pixels, (std::vector<uint32_t>{Pixel(1, 0, 0, 255), Pixel(1, 0, 0, 255),
                                                 Pixel(2, 0, 0, 255), Pixel(3, 0, 0, 255)}));
}

}  // namespace
}  // namespace lx
