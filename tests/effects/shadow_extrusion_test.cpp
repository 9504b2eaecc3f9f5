#include "effects/shadow_extrusion.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <utility>

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
  Extrude(image.view(), dx, dy);
  return image;
}

TEST(Extrude, StampsAtThePointsLineDDAReportsHoweverLongTheLine) {
  const TestImage image = Dots(30, 25, 77);
  EXPECT_EQ(Extruded(image, 0, 0).pixels, image.pixels);
  Extrude(PixelView{}, 4, 4);
  // Short lines are walked point by point; long ones whose extents share a large divisor from a later
  // point of the same line, and ones whose extents share none are computed.
  const std::pair<int32_t, int32_t> offsets[] = {{-3, 7},
                                                 {9, 4},
                                                 {0, -6},
                                                 {-29, 3},
                                                 {12582912, 3145728},
                                                 {4194319, 2},
                                                 {-4194301, 2796203},
                                                 {3000017, -4194329},
                                                 {-5000011, -5000010}};
  for (const auto& [dx, dy] : offsets)
    EXPECT_EQ(Extruded(image, dx, dy).pixels, ReferenceExtrusion(image, dx, dy).pixels) << dx << ", " << dy;
}

TEST(Extrude, OffsetsFarBeyondTheLayerOnlyStampWhereTheyReach) {
  // Along an axis or a diagonal only the last 9 (or 7) points reach a 10 x 8 layer; extents with no
  // common divisor still end along the axis or the diagonal.
  const TestImage image = Dots(10, 8, 5);
  const struct {
    int32_t dx, dy, nearX, nearY;
  } cases[] = {{1000, 0, 9, 0}, {kMax, 0, 9, 0},        {0, kMin, 0, -7},     {kMax - 1, kMax - 1, 7, 7},
               {kMax, 1, 9, 0}, {kMax, kMax - 1, 9, 9}, {kMin, kMin, -7, -7}, {kMin, 3, -9, 0}};
  for (const auto& c : cases)
    EXPECT_EQ(Extruded(image, c.dx, c.dy).pixels, Extruded(image, c.nearX, c.nearY).pixels)
        << c.dx << ", " << c.dy;
}

TEST(Extrude, NeverTouchesMemoryOutsideTheLayer) {
  // The layer is the middle of a larger image whose border must come through unchanged (and under
  // AddressSanitizer no read may leave the layer's rows).
  TestImage outer = RandomImage(30, 20, 13, 0.3);
  const TestImage before = outer;
  const std::pair<int32_t, int32_t> offsets[] = {{3, 4}, {-25, 2}, {kMax, kMin}, {19, -9}, {-20, -10}};
  for (const auto& [dx, dy] : offsets) {
    Extrude(Middle(outer, 5, 5, 20, 10), dx, dy);
    ExtrudeShadow(Middle(outer, 5, 5, 20, 10), dx, dy, 0);
  }
  EXPECT_TRUE(UnchangedOutside(outer, before, 5, 5, 25, 15));
  TestImage untouched = outer;
  SoftenExtrusion(untouched.view(), nullptr);
  EXPECT_EQ(untouched.pixels, outer.pixels);
}

}  // namespace
}  // namespace lx
