#include "effects/shadow_extrusion.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <utility>

#include "effects/blur_filter.h"
#include "effects/compositing.h"
#include "effects_test_image.h"
#include "platform/platform.h"

namespace lx {
namespace {

using namespace effects_test;

constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
constexpr int32_t kMin = std::numeric_limits<int32_t>::min();

struct Walk {
  PlacedView copy;
  PlacedView layer;
};

// The extrusion taken literally: every point of the full LineDDA walk shifts the layer's rectangle and
// lays the copy over it (BlendOver clips whatever does not overlap).
void StampLiterally(int x, int y, intptr_t data) {
  Walk& walk = *reinterpret_cast<Walk*>(data);
  walk.layer.rect = {x, y, x + walk.layer.view.width, y + walk.layer.view.height};
  BlendOver(walk.copy, walk.layer);
}

TestImage ReferenceExtrusion(const TestImage& image, int32_t dx, int32_t dy) {
  TestImage copy = image;
  TestImage result = image;
  Walk walk;
  walk.copy = {copy.view(), {0, 0, copy.width, copy.height}};
  walk.layer = {result.view(), {}};
  platform::LineDDA(-dx, -dy, 0, 0, StampLiterally, reinterpret_cast<intptr_t>(&walk));
  return result;
}

// Sparse translucent dots, and an opaque dot in each corner: a stamp shifted by (x, y) puts a corner's
// dot at (-x, -y) from it, so every stamp that reaches the layer leaves a mark of its own.
TestImage Dots(int32_t w, int32_t h, unsigned seed) {
  TestImage image = RandomImage(w, h, seed, 0.95);
  image.at(0, 0) = Pixel(255, 0, 0, 255);
  image.at(w - 1, 0) = Pixel(0, 255, 0, 255);
  image.at(0, h - 1) = Pixel(0, 0, 255, 255);
  image.at(w - 1, h - 1) = Pixel(255, 255, 255, 255);
  return image;
}

TestImage Extruded(TestImage image, int32_t dx, int32_t dy) {
  Extrude(image.view(), dx, dy, true);
  return image;
}

TEST(Extrude, NoOffsetOrNoImageChangesNothing) {
  TestImage image = RandomImage(12, 9, 1, 0.5);
  EXPECT_EQ(Extruded(image, 0, 0).pixels, image.pixels);
  Extrude(PixelView{}, 4, 4, false);
  PixelView flat = image.view();
  flat.width = 0;
  Extrude(flat, 4, 4, false);
}

TEST(Extrude, HorizontalOffsetStampsAtEachStepBackToTheGlyphs) {
  // Two opaque pixels A B; stamps at 5, 4, 3, 2, 1 pixels to the right, each over the ones before, so
  // B of the nearer stamp covers A of the farther one.
  const uint32_t a = Pixel(10, 20, 30, 255);
  const uint32_t b = Pixel(200, 100, 50, 255);
  TestImage image(16, 3);
  image.at(2, 1) = a;
  image.at(3, 1) = b;
  const TestImage result = Extruded(image, 5, 0);
  TestImage expected(16, 3);
  expected.at(2, 1) = a;
  expected.at(3, 1) = a;
  for (int32_t x = 4; x <= 8; ++x) expected.at(x, 1) = b;
  EXPECT_EQ(result.pixels, expected.pixels);

  // Every stamp lays the untouched copy: a translucent pixel gains density only where copies overlap.
  TestImage dot(12, 1);
  dot.at(1, 0) = Pixel(40, 40, 40, 100);
  const TestImage trail = Extruded(dot, 5, 0);
  for (int32_t x = 1; x <= 6; ++x) EXPECT_EQ(trail.at(x, 0), Pixel(40, 40, 40, 100)) << x;
  EXPECT_EQ(trail.at(7, 0), 0u);
  EXPECT_EQ(trail.at(0, 0), 0u);
}

TEST(Extrude, StampsAtThePointsLineDDAReports) {
  const TestImage image = Dots(30, 25, 77);
  for (auto offset : {std::make_pair(-3, 7), std::make_pair(9, 4), std::make_pair(-12, -12),
                      std::make_pair(0, -6), std::make_pair(2, 17), std::make_pair(-29, 3)}) {
    EXPECT_EQ(Extruded(image, offset.first, offset.second).pixels,
              ReferenceExtrusion(image, offset.first, offset.second).pixels)
        << offset.first << ", " << offset.second;
  }
}

TEST(Extrude, OffsetsFarBeyondTheLayerOnlyStampWhereTheyReach) {
  const TestImage image = Dots(10, 8, 5);
  // Along an axis or a diagonal only the last 9 (or 7) points reach a 10 x 8 layer.
  const TestImage horizontal = Extruded(image, 9, 0);
  const TestImage vertical = Extruded(image, 0, -7);
  const TestImage diagonal = Extruded(image, 7, 7);
  EXPECT_EQ(Extruded(image, 1000, 0).pixels, horizontal.pixels);
  EXPECT_EQ(Extruded(image, kMax, 0).pixels, horizontal.pixels);
  EXPECT_EQ(Extruded(image, 0, kMin).pixels, vertical.pixels);
  EXPECT_EQ(Extruded(image, kMax - 1, kMax - 1).pixels, diagonal.pixels);
  // Extents with no common divisor: the line's last points still run along the axis or the diagonal.
  EXPECT_EQ(Extruded(image, kMax, 1).pixels, horizontal.pixels);
  EXPECT_EQ(Extruded(image, kMax, kMax - 1).pixels, Extruded(image, 9, 9).pixels);
  EXPECT_EQ(Extruded(image, kMin, kMin).pixels, Extruded(image, -7, -7).pixels);
  EXPECT_EQ(Extruded(image, kMin, 3).pixels, Extruded(image, -9, 0).pixels);
}

TEST(Extrude, LongLinesGiveWhatTheFullWalkGives) {
  // Longer than any walk the extrusion makes point by point: one whose extents share a large divisor
  // (walked from a later point of the same line) and ones whose extents share none (computed).
  const TestImage image = Dots(40, 30, 9);
  const std::pair<int32_t, int32_t> offsets[] = {
      {12582912, 3145728}, {4194319, 2}, {-4194301, 2796203}, {3000017, -4194329}, {-5000011, -5000010}};
  for (const auto& offset : offsets) {
    EXPECT_EQ(Extruded(image, offset.first, offset.second).pixels,
              ReferenceExtrusion(image, offset.first, offset.second).pixels)
        << offset.first << ", " << offset.second;
  }
}

TEST(Extrude, NeverTouchesMemoryOutsideTheLayer) {
  // The layer is the middle of a larger image whose border must come through unchanged (and under
  // AddressSanitizer no read may leave the layer's rows).
  TestImage outer = RandomImage(30, 20, 13, 0.3);
  const TestImage before = outer;
  for (auto offset : {std::make_pair(3, 4), std::make_pair(-25, 2), std::make_pair(kMax, kMin),
                      std::make_pair(19, -9), std::make_pair(-20, -10)}) {
    Extrude(Middle(outer, 5, 5, 20, 10), offset.first, offset.second, false);
  }
  EXPECT_TRUE(UnchangedOutside(outer, before, 5, 5, 25, 15));
}

TEST(ExtrudeShadow, DefaultColouringBuildsUpAndTheOtherKeepsTheShadowAlpha) {
  TestImage shape(24, 6);
  shape.fillRect(2, 1, 6, 5, Pixel(30, 30, 30, 140));
  shape.at(6, 2) = Pixel(30, 30, 30, 70);  // an antialiased edge pixel

  TestImage layered = shape;
  ExtrudeShadow(layered.view(), 8, 0, false, 1);
  EXPECT_EQ(layered.pixels, Extruded(shape, 8, 0).pixels);
  // Where stamps overlap, a translucent block builds up towards the glyphs.
  EXPECT_GT(Byte(layered.at(9, 2), 3), 140);
  EXPECT_GT(Byte(layered.at(9, 2), 3), Byte(layered.at(13, 2), 3));

  TestImage solid = shape;
  ExtrudeShadow(solid.view(), 8, 0, false, 0);
  for (int32_t y = 0; y < 6; ++y) {
    for (int32_t x = 0; x < 24; ++x) {
      const uint32_t built = layered.at(x, y);
      const uint32_t expected = Byte(built, 3) > 140 ? (built & 0x00FFFFFFu) | 0x8C000000u : built;
      ASSERT_EQ(solid.at(x, y), expected) << x << ", " << y;
    }
  }
  EXPECT_EQ(solid.at(9, 2), Pixel(30, 30, 30, 140));
  EXPECT_EQ(solid.at(14, 2), Pixel(30, 30, 30, 70));  // the far end's edge stays antialiased
}

TEST(SoftenExtrusion, KeepsTheBodyAsItWasAndTheOutlineInPlace) {
  BlurFilter blur;
  const uint32_t colour = Pixel(20, 60, 90, 255);
  TestImage image(24, 12);
  image.fillRect(0, 0, 10, 12, colour);
  SoftenExtrusion(image.view(), &blur);
  for (int32_t y = 0; y < 12; ++y) {
    for (int32_t x = 0; x <= 8; ++x) ASSERT_EQ(image.at(x, y), colour) << x << ", " << y;
    EXPECT_GT(Byte(image.at(9, y), 3), 128);
    EXPECT_LT(Byte(image.at(9, y), 3), 255);
    EXPECT_GT(Byte(image.at(10, y), 3), 0);
    EXPECT_LT(Byte(image.at(10, y), 3), 128);
    // What the smoothing makes visible carries the body's colour, not the field's black.
    EXPECT_EQ(image.at(10, y) & 0x00FFFFFFu, colour & 0x00FFFFFFu);
    for (int32_t x = 11; x < 24; ++x) ASSERT_EQ(Byte(image.at(x, y), 3), 0) << x << ", " << y;
  }
  // A translucent body keeps its alpha; without a blur object nothing happens.
  TestImage translucent(20, 20);
  translucent.fillRect(4, 4, 16, 16, Pixel(9, 9, 9, 140));
  SoftenExtrusion(translucent.view(), &blur);
  for (uint32_t p : translucent.pixels) ASSERT_LE(Byte(p, 3), 140);
  EXPECT_EQ(translucent.at(10, 10), Pixel(9, 9, 9, 140));
  EXPECT_EQ(translucent.at(0, 0), 0u);
  TestImage untouched = translucent;
  SoftenExtrusion(untouched.view(), nullptr);
  EXPECT_EQ(untouched.pixels, translucent.pixels);
}

TEST(SoftenExtrusion, RoundsOffStairSteps) {
  // A staircase of whole pixels (opaque where x + y < 20): afterwards both sides of each step carry
  // partial coverage, as an antialiased diagonal does.
  BlurFilter blur;
  TestImage image(24, 24);
  for (int32_t y = 0; y < 24; ++y)
    for (int32_t x = 0; x < 24; ++x)
      if (x + y < 20) image.at(x, y) = Pixel(5, 5, 5, 255);
  SoftenExtrusion(image.view(), &blur);
  for (int32_t y = 4; y < 16; ++y) {
    const int inside = Byte(image.at(19 - y, y), 3);
    const int outside = Byte(image.at(20 - y, y), 3);
    EXPECT_GT(inside, 128) << y;
    EXPECT_LT(inside, 255) << y;
    EXPECT_GT(outside, 0) << y;
    EXPECT_LT(outside, 128) << y;
    EXPECT_EQ(Byte(image.at(17 - y, y), 3), 255) << y;
    EXPECT_EQ(Byte(image.at(22 - y, y), 3), 0) << y;
  }
}

}  // namespace
}  // namespace lx
