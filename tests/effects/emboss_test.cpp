#include <gtest/gtest.h>

#include <cmath>

#include "effects/channel_tint.h"
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

// Three rows stacked into one image.
TestImage Stack(const std::vector<uint32_t>& a, const std::vector<uint32_t>& b,
                const std::vector<uint32_t>& c) {
  TestImage image(static_cast<int32_t>(a.size()), 3);
  for (size_t x = 0; x < a.size(); ++x) {
    image.pixels[x] = a[x];
    image.pixels[a.size() + x] = b[x];
    image.pixels[2 * a.size() + x] = c[x];
  }
  return image;
}

TEST(EmbossFilter, FlatAreaShadesToTheBackgroundAtAnyWidthAndHolesBecomeZero) {
  // sin(60 degrees) * 255.9 = 221.6; the sheared neighbourhood of a flat area is flat however narrow.
  EmbossFilter emboss;
  for (int32_t width : {1, 2, 3, 17}) {
    TestImage image(width, 5, Pixel(30, 90, 200, 255));
    emboss.apply(image.view());
    for (uint32_t p : image.pixels) ASSERT_EQ(p, Grey(221)) << "width " << width;
  }
  TestImage translucent(8, 4, Pixel(1, 2, 3, 77));
  emboss.apply(translucent.view());
  for (uint32_t p : translucent.pixels) EXPECT_EQ(p, Grey(221, 77));
  // Transparent pixels become 0; heights come from the colour bytes alone, so their neighbours stay flat.
  TestImage holes(6, 6, Pixel(200, 100, 50, 255));
  holes.at(2, 3) = Pixel(200, 100, 50, 0);
  holes.at(5, 4) = Pixel(255, 255, 255, 0);
  emboss.apply(holes.view());
  EXPECT_EQ(holes.at(2, 3), 0u);
  EXPECT_EQ(holes.at(5, 4), 0u);
  EXPECT_EQ(holes.at(3, 3), Grey(221));
  // Fewer than three rows: left alone.
  TestImage low = RandomImage(20, 2, 4, 0.2);
  const TestImage before = low;
  emboss.apply(low.view());
  EXPECT_EQ(low.pixels, before.pixels);
}

TEST(EmbossFilter, EdgeRowsAreShadedAroundTheRowsInsideThem) {
  EmbossFilter emboss;
  TestImage image = RandomImage(23, 3, 8, 0.0);
  for (uint32_t& p : image.pixels) p |= 0xFF000000u;
  for (int32_t x = 0; x < 23; ++x) image.at(x, 0) &= 0x00FFFFFFu;  // row 0 itself transparent
  const std::vector<uint32_t> r0 = Row(image, 0), r1 = Row(image, 1), r2 = Row(image, 2);

  emboss.apply(image.view());
  // The top row takes its alpha and its neighbourhood from row 1: rows 1, 1, 2.
  TestImage top = Stack(r1, r1, r2);
  emboss.apply(top.view());
  EXPECT_EQ(Row(image, 0), Row(top, 1));
  // The bottom row is shaded on rows 0, 1, 1.
  TestImage bottom = Stack(r0, r1, r1);
  emboss.apply(bottom.view());
  EXPECT_EQ(Row(image, 2), Row(bottom, 1));
  for (uint32_t p : Row(image, 0)) EXPECT_EQ(Byte(p, 3), 255);
}

TEST(EmbossFilter, SlopesAreLitFromTheAzimuth) {
  // Columns of grey 10x: every height difference in the sheared 3x3 neighbourhood gives Nx = Ny = -180.
  // With depth 3 (Nz = 510) and elevation 60: light from azimuth 0 gives
  // trunc(-180 * 127.95 + 510 * 221.6) / sqrt(2 * 180^2 + 510^2) = 89993 / 570 -> 157, from pi 238.
  TestImage ramp(12, 4);
  for (int32_t y = 0; y < 4; ++y)
    for (int32_t x = 0; x < 12; ++x) ramp.at(x, y) = Grey(static_cast<uint8_t>(10 * x));

  EmbossFilter emboss;
  emboss.setAzimuth(0.0);
  TestImage fromRight = ramp;
  emboss.apply(fromRight.view());
  // An azimuth that is not a number lights from 0 (the fuzzer found it shading through an undefined
  // conversion).
  emboss.setAzimuth(std::nan(""));
  EXPECT_EQ(emboss.azimuth(), 0.0);
  TestImage fromNowhere = ramp;
  emboss.apply(fromNowhere.view());
  emboss.setAzimuth(3.141592653589793);
  TestImage fromLeft = ramp;
  emboss.apply(fromLeft.view());
  for (int32_t y = 0; y < 4; ++y) {
    for (int32_t x = 2; x < 10; ++x) {
      EXPECT_EQ(fromRight.at(x, y), Grey(157)) << x << ", " << y;
      EXPECT_EQ(fromLeft.at(x, y), Grey(238)) << x << ", " << y;
      EXPECT_EQ(fromNowhere.at(x, y), Grey(157)) << x << ", " << y;
    }
  }

  // A cliff facing away from the light gets no light at all.
  TestImage cliff(10, 3, Grey(0));
  cliff.fillRect(0, 0, 5, 3, Grey(255));
  emboss.apply(cliff.view());
  EXPECT_EQ(cliff.at(4, 1), Grey(0));
}

// The square bleed as its definition reads: every giving pixel, in row order, paints its square.
void NaiveSquareBleed(TestImage& image, int32_t d) {
  for (int32_t y = d; y < image.height - d; ++y) {
    for (int32_t x = d; x < image.width - d; ++x) {
      const uint32_t giver = image.at(x, y);
      if (Byte(giver, 3) == 0) continue;
      for (int32_t v = y - d; v <= y + d; ++v)
        for (int32_t u = x - d; u <= x + d; ++u)
          if (Byte(image.at(u, v), 3) == 0) image.at(u, v) = giver & 0x00FFFFFFu;
    }
  }
}

TEST(SquareColourBleed, MatchesThePixelByPixelDefinitionAndNeedsRoom) {
  for (int32_t d : {1, 2, 3, 7}) {
    for (double share : {0.5, 0.97}) {
      TestImage image = RandomImage(41, 29, static_cast<unsigned>(d * 100 + share * 10), share);
      TestImage expected = image;
      NaiveSquareBleed(expected, d);
      SquareColourBleed(image.view(), d);
      EXPECT_EQ(image.pixels, expected.pixels) << "distance " << d << " share " << share;
    }
  }
  // Without room (no pixel lies 5 inside a 9-pixel image) nothing changes.
  TestImage image = RandomImage(9, 9, 3, 0.5);
  const TestImage before = image;
  SquareColourBleed(image.view(), 0);
  SquareColourBleed(image.view(), -3);
  SquareColourBleed(image.view(), 5);
  SquareColourBleed(image.view(), 2147483647);
  EXPECT_EQ(image.pixels, before.pixels);
}

TEST(FaceEmboss, BleedKeepsTheShapeEdgesFlatAndTintColoursTheGrey) {
  EmbossFilter emboss;
  ChannelTint tint;
  TestImage shape(20, 20);
  shape.fillRect(5, 5, 15, 15, Pixel(90, 90, 90, 255));

  // With the bleed the field around the square has the square's colour, so the whole square is flat.
  TestImage bled = shape;
  FaceEmboss(bled.view(), 2, &emboss, &tint);
  for (int32_t y = 0; y < 20; ++y) {
    for (int32_t x = 0; x < 20; ++x) {
      const bool inside = x >= 5 && x < 15 && y >= 5 && y < 15;
      ASSERT_EQ(bled.at(x, y), inside ? Grey(221) : 0u) << x << ", " << y;
    }
  }
  // Without it the border sees the dark field.
  TestImage plain = shape;
  FaceEmboss(plain.view(), 0, &emboss, &tint);
  EXPECT_NE(plain.at(5, 9), Grey(221));

  // Tint (255, 0, 0): the first factor scales byte 2; luminance of grey 221 is 24 + 130 + 66 = 220.
  tint.setFactors(1.0, 0.0, 0.0);
  TestImage tinted = shape;
  FaceEmboss(tinted.view(), 2, &emboss, &tint);
  EXPECT_EQ(tinted.at(10, 10), Pixel(0, 0, 220, 255));
  EXPECT_EQ(tinted.at(0, 0), 0u);

  // Missing filters skip their steps.
  TestImage untouched = shape;
  FaceEmboss(untouched.view(), 0, nullptr, nullptr);
  EXPECT_EQ(untouched.pixels, shape.pixels);
}

TEST(ChannelTint, ScalesTheLuminanceIntoEachByte) {
  ChannelTint tint;
  EXPECT_TRUE(tint.isIdentity());
  tint.setFactors(0.2, 0.5, 1.0);
  EXPECT_FALSE(tint.isIdentity());
  TestImage image(2, 1);
  image.at(0, 0) = Pixel(255, 255, 255, 9);
  image.at(1, 0) = Pixel(100, 0, 0, 255);
  tint.apply(image.view());
  // lum(255, 255, 255) = 28 + 150 + 76 = 254; byte 0 by c2, byte 1 by c1, byte 2 by c0.
  EXPECT_EQ(image.at(0, 0), Pixel(254, 127, 50, 9));
  // lum(byte 0 = 100) = trunc(0.11 * 100) = 11.
  EXPECT_EQ(image.at(1, 0), Pixel(11, 5, 2, 255));
}

}  // namespace
}  // namespace lx
