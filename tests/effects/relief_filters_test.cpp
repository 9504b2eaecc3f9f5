// The Face's emboss at its limits, and the colour bleed before it.
#include <gtest/gtest.h>

#include <vector>

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

TEST(SquareColourBleed, EveryGiverInRowOrderPaintsItsSquare) {
  for (int32_t d : {1, 3}) {
    TestImage image = RandomImage(41, 29, d, 0.9), expected = image;
    for (int32_t y = d; y < 29 - d; ++y)
      for (int32_t x = d; x < 41 - d; ++x)
        for (int32_t v = y - d; (expected.at(x, y) >> 24) && v <= y + d; ++v)
          for (int32_t u = x - d; u <= x + d; ++u)
            if ((expected.at(u, v) >> 24) == 0) expected.at(u, v) = expected.at(x, y) & 0x00FFFFFFu;
    SquareColourBleed(image.view(), d);
    EXPECT_EQ(image.pixels, expected.pixels) << d;
  }
}

}  // namespace
}  // namespace lx
