#include <gtest/gtest.h>

#include <cmath>

#include "effects/colour_bleed.h"
#include "effects/emboss_filter.h"
#include "effects/face_emboss.h"
#include "effects_test_image.h"

namespace lx {
namespace {

using namespace effects_test;
using V = std::vector<uint32_t>;

TEST(EmbossFilter, NarrowFlatAreasAndTooFewRows) {
  // sin(60 degrees) * 255.9 = 221.6; the sheared neighbourhood of a flat area is flat however narrow.
  EmbossFilter emboss;
  for (int32_t width : {1, 2, 3}) {
    TestImage image(width, 5, Pixel(30, 90, 200, 77));
    emboss.apply(image.view());
    EXPECT_EQ(image.pixels, V(width * 5, Grey(221, 77))) << "width " << width;
  }
  TestImage low = RandomImage(20, 2, 4, 0.2);
  const TestImage before = low;
  emboss.apply(low.view());
  FaceEmboss(low.view(), 0, nullptr, nullptr);  // missing filters skip their steps
  EXPECT_EQ(low.pixels, before.pixels);
  // Without room (no pixel lies 5 inside 9 x 2 pixels), or below 1, the bleed does nothing.
  for (int32_t d : {0, -3, 5, 2147483647}) SquareColourBleed(low.view(0, 0, 9, 2), d);
  EXPECT_EQ(low.pixels, before.pixels);
}

TEST(EmbossFilter, EdgeRowsAreShadedAroundTheRowsInsideThem) {
  // The top row takes its alpha and its neighbourhood from row 1 (rows 1, 1, 2); the bottom row is
  // shaded on rows 0, 1, 1.
  EmbossFilter emboss;
  TestImage image = RandomImage(23, 3, 8, 0.0);
  for (int32_t x = 0; x < 23; ++x) image.at(x, 0) &= 0x00FFFFFFu;  // row 0 itself transparent
  TestImage original = image;
  emboss.apply(image.view());
  for (const auto& [rows, edge] : {std::pair{V{1, 1, 2}, 0}, {V{0, 1, 1}, 2}}) {
    TestImage stacked(23, 3);
    for (int32_t i = 0; i < 3 * 23; ++i) stacked.pixels[i] = original.at(i % 23, rows[i / 23]);
    emboss.apply(stacked.view());
    EXPECT_EQ(V(&image.at(0, edge), &image.at(0, edge) + 23), V(&stacked.at(0, 1), &stacked.at(0, 1) + 23))
        << edge;
  }
}

TEST(EmbossFilter, AzimuthThatIsNotANumberLightsAsZero) {
  TestImage zero(12, 4), nan(12, 4);
  for (int32_t x = 0; x < 12; ++x) zero.fillRect(x, 0, x + 1, 4, Grey(static_cast<uint8_t>(10 * x)));
  nan = zero;
  EmbossFilter emboss;
  emboss.setAzimuth(0.0);
  emboss.apply(zero.view());
  emboss.setAzimuth(std::nan(""));
  EXPECT_EQ(emboss.azimuth(), 0.0);
  emboss.apply(nan.view());
  EXPECT_EQ(nan.pixels, zero.pixels);
  EXPECT_EQ(zero.at(5, 2), Grey(157));
}

}  // namespace
}  // namespace lx
