#include "effects/shadow_extrusion.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>

#include "effects/compositing.h"
#include "effects_test_image.h"
#include "platform/platform.h"

namespace lx {
namespace {

using namespace effects_test;

constexpr int32_t kMax = INT32_MAX, kMin = INT32_MIN;

// The extrusion taken literally: every point of the full LineDDA walk shifts the layer's rectangle and
// lays the untouched copy over it (BlendOver clips whatever does not overlap).
TestImage Reference(const TestImage& image, int32_t dx, int32_t dy) {
  TestImage copy = image, result = image;
  PlacedView walk[2] = {{copy.view(), {0, 0, copy.width, copy.height}}, {result.view(), {}}};
  const auto stamp = [](int x, int y, intptr_t data) {
    PlacedView* w = reinterpret_cast<PlacedView*>(data);
    w[1].rect = {x, y, x + w[1].view.width, y + w[1].view.height};
    BlendOver(w[0], w[1]);
  };
  platform::LineDDA(-dx, -dy, 0, 0, stamp, reinterpret_cast<intptr_t>(walk));
  return result;
}

TestImage Extruded(TestImage image, int32_t dx, int32_t dy) {
  Extrude(image.view(), dx, dy);
  return image;
}

// Lines longer than any the extrusion walks point by point: extents sharing a large divisor (walked from a
// later point of the same line) and extents sharing none (computed). On sparse translucent dots with an
// opaque dot in each corner, every stamp that reaches the layer leaves a mark of its own. Far beyond the
// layer only the last points, along an axis or a diagonal, reach it.
TEST(Extrude, LongLinesStampWhereTheFullWalkDoes) {
  TestImage image = RandomImage(30, 25, 77, 0.95);
  image.at(0, 0) = Pixel(255, 0, 0, 255), image.at(29, 0) = Pixel(0, 255, 0, 255);
  image.at(0, 24) = Pixel(0, 0, 255, 255), image.at(29, 24) = Grey(255);
  EXPECT_EQ(Extruded(image, 0, 0).pixels, image.pixels);
  Extrude(PixelView{}, 4, 4);
  for (const auto& [dx, dy] : {std::pair{12582912, 3145728},
                               {4194319, 2},
                               {-4194301, 2796203},
                               {3000017, -4194329},
                               {-5000011, -5000010}})
    EXPECT_EQ(Extruded(image, dx, dy).pixels, Reference(image, dx, dy).pixels) << dx << ", " << dy;
  const int32_t far[][4] = {
      {1000, 0, 29, 0}, {kMax, 0, 29, 0},         {0, kMin, 0, -24},      {kMax - 1, kMax - 1, 24, 24},
      {kMax, 1, 29, 0}, {kMax, kMax - 1, 29, 29}, {kMin, kMin, -24, -24}, {kMin, 3, -29, 0}};
  for (const auto& c : far)
    EXPECT_EQ(Extruded(image, c[0], c[1]).pixels, Extruded(image, c[2], c[3]).pixels) << c[0];
}

TEST(Extrude, NeverTouchesMemoryOutsideTheLayer) {
  // The layer is the middle of a larger image whose border must come through unchanged (and under
  // AddressSanitizer no read may leave the layer's rows).
  TestImage outer = RandomImage(30, 20, 13, 0.3);
  TestImage expected = outer;
  for (const auto& [dx, dy] : {std::pair{3, 4}, {-25, 2}, {kMax, kMin}, {19, -9}, {-20, -10}}) {
    Extrude(outer.view(5, 5, 20, 10), dx, dy);
    ExtrudeShadow(outer.view(5, 5, 20, 10), dx, dy, 0);
  }
  SoftenExtrusion(outer.view(), nullptr);
  outer.fillRect(5, 5, 25, 15, 0);
  expected.fillRect(5, 5, 25, 15, 0);
  EXPECT_EQ(outer.pixels, expected.pixels);
}

}  // namespace
}  // namespace lx
