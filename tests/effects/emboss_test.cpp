#include <gtest/gtest.h>

#include <cmath>

#include "effects/colour_bleed.h"
#include "effects/emboss_filter.h"
#include "effects/face_emboss.h"
#include "effects_test_image.h"

namespace lx {
namespace {

using namespace effects_test;

std::vector<uint32_t> Row(const TestImage& image, int32_t y) {
  return {image.pixels.begin() + y * image.width, image.pixels.begin() + (y + 1) * image.width};
}

TEST(EmbossFilter, FlatAreasHolesAndTooFewRows) {
  // sin(60 degrees) * 255.9 = 221.6; the sheared neighbourhood of a flat area is flat however narrow.
  EmbossFilter emboss;
  for (int32_t width : {1, 2, 3}) {
    TestImage image(width, 5, Pixel(30, 90, 200, 77));
    emboss.apply(image.view());
    EXPECT_EQ(image.pixels, std::vector<uint32_t>(width * 5, Grey(221, 77))) << "width " << width;
  }
  // Transparent pixels become 0; heights come from the colour bytes alone, so their neighbours stay flat.
  TestImage holes(6, 6, Pixel(200, 100, 50, 255));
  holes.at(2, 3) = Pixel(200, 100, 50, 0);
  holes.at(5, 4) = Pixel(255, 255, 255, 0);
  emboss.apply(holes.view());
  EXPECT_EQ((std::vector<uint32_t>{holes.at(2, 3), holes.at(5, 4), holes.at(3, 3)}),
            (std::vector<uint32_t>{0u, 0u, Grey(221)}));
  TestImage low = RandomImage(20, 2, 4, 0.2);
  const TestImage before = low;
  emboss.apply(low.view());
  EXPECT_EQ(low.pixels, before.pixels);
  FaceEmboss(low.view(), 0, nullptr, nullptr);  // missing filters skip their steps
  EXPECT_EQ(low.pixels, before.pixels);
}

TEST(EmbossFilter, EdgeRowsAreShadedAroundTheRowsInsideThem) {
  EmbossFilter emboss;
  TestImage image = RandomImage(23, 3, 8, 0.0);
  for (uint32_t& p : image.pixels) p |= 0xFF000000u;
  for (int32_t x = 0; x < 23; ++x) image.at(x, 0) &= 0x00FFFFFFu;  // row 0 itself transparent
  const TestImage original = image;
  emboss.apply(image.view());
  // The top row takes its alpha and its neighbourhood from row 1 (rows 1, 1, 2); the bottom row is
  // shaded on rows 0, 1, 1.
  for (const auto& [rows, edge] :
       {std::pair{std::vector<int>{1, 1, 2}, 0}, std::pair{std::vector<int>{0, 1, 1}, 2}}) {
    TestImage stacked(23, 3);
    for (int i = 0; i < 3; ++i)
      for (int32_t x = 0; x < 23; ++x) stacked.at(x, i) = original.at(x, rows[i]);
    emboss.apply(stacked.view());
    EXPECT_EQ(Row(image, edge), Row(stacked, 1)) << edge;
  }
}

TEST(EmbossFilter, AzimuthThatIsNotANumberLightsAsZero) {
  TestImage ramp(12, 4);
  for (int32_t x = 0; x < 12; ++x) ramp.fillRect(x, 0, x + 1, 4, Grey(static_cast<uint8_t>(10 * x)));
  EmbossFilter emboss;
  emboss.setAzimuth(0.0);
  TestImage zero = ramp, nan = ramp;
  emboss.apply(zero.view());
  emboss.setAzimuth(std::nan(""));
  EXPECT_EQ(emboss.azimuth(), 0.0);
  emboss.apply(nan.view());
  EXPECT_EQ(nan.pixels, zero.pixels);
  EXPECT_EQ(zero.at(5, 2), Grey(157));
}

TEST(SquareColourBleed, NeedsRoom) {
  // No pixel lies 5 inside a 9-pixel image; distances below 1 bleed nothing.
  TestImage image = RandomImage(9, 9, 3, 0.5);
  const TestImage before = image;
  for (int32_t d : {0, -3, 5, 2147483647}) SquareColourBleed(image.view(), d);
  EXPECT_EQ(image.pixels, before.pixels);
}

}  // namespace
}  // namespace lx
