#include "effects/bevel_filter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "effects/blur_filter.h"
#include "effects/light_angles.h"
#include "effects_test_image.h"

namespace lx {
namespace {

using namespace effects_test;

BevelSettings Lit(double elevation, double depth, int32_t profile, int32_t highlight = 0) {
  BevelSettings s;
  s.elevation = elevation;
  s.depth = depth;
  s.profile = profile;
  s.highlightStrength = highlight;
  return s;
}

TEST(BevelFilter, ProfilesRiseFromZeroTo255) {
  BevelFilter bevel;
  const auto WithProfile = [](int32_t profile) {
    BevelSettings s;
    s.profile = profile;
    return s;
  };
  bevel.configure(WithProfile(1));
  const uint8_t round[] = {0, 23, 32, 39, 45};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(bevel.profile()[i], round[i]) << i;
  EXPECT_EQ(bevel.profile()[255], 255);
  bevel.configure(WithProfile(2));
  const uint8_t sCurve[] = {0, 0, 0, 0, 0, 0, 0, 0, 1};
  for (int i = 0; i < 9; ++i) EXPECT_EQ(bevel.profile()[i], sCurve[i]) << i;
  EXPECT_EQ(bevel.profile()[128], 128);
  EXPECT_EQ(bevel.profile()[255], 255);
  for (int32_t selector : {0, 3, -1}) {
    bevel.configure(WithProfile(selector));
    for (int i = 0; i < 256; ++i) ASSERT_EQ(bevel.profile()[i], i) << selector;
  }
  for (int32_t selector : {1, 2}) {
    bevel.configure(WithProfile(selector));
    for (int i = 1; i < 256; ++i) ASSERT_GE(bevel.profile()[i], bevel.profile()[i - 1]) << selector;
  }
}

TEST(BevelFilter, SettingsAreClamped) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const struct {
    double azimuth, elevation, depth;
    int32_t heightOffset, highlight;
    double wantAzimuth, wantElevation, wantDepth;
    int32_t wantOffset, wantHighlight;
  } cases[] = {{4.0, 0.0, 0.5, -4, 300, kPi, 3.0, 1.0, 0, 255},
               {-5.0, nan, nan, 999, -1, -kPi, 3.0, 1.0, 255, 0},
               {0.5, 75.0, 100.0, 7, 9, 0.5, 60.0, 60.0, 7, 9}};
  BevelFilter bevel;
  for (const auto& c : cases) {
    BevelSettings in = Lit(c.elevation, c.depth, 0, c.highlight);
    in.azimuth = c.azimuth;
    in.heightOffset = c.heightOffset;
    bevel.configure(in);
    EXPECT_EQ(bevel.settings().azimuth, c.wantAzimuth);
    EXPECT_EQ(bevel.settings().elevation, c.wantElevation);
    EXPECT_EQ(bevel.settings().depth, c.wantDepth);
    EXPECT_EQ(bevel.settings().heightOffset, c.wantOffset);
    EXPECT_EQ(bevel.settings().highlightStrength, c.wantHighlight);
  }
}

TEST(BevelFilter, ShadeAndHighlightOfExactSlopes) {
  // Elevation 3, depth 60: sine 0.0523, Lx = Lz = 13, Nz = 25, F = 13.35. At the black-to-white step
  // N.L < 0, so the shade is trunc(strength * sine): 0 without highlight, 10 with 200; flat is 13 / 13.35.
  // Elevation 30, depth 1 (Nz = 1530), heights 100 | 133 give Nx = -99: the shade is
  // trunc(181737 / 1533.19) = 118 of F = 127.5; strength 255 adds trunc(127.5 - 118) = 9.
  const struct {
    BevelSettings settings;
    uint8_t left, right;
    int32_t x;
    uint8_t want;
  } cases[] = {{Lit(3, 60, 0), 0, 255, 5, 0},         {Lit(3, 60, 0), 0, 255, 8, 248},
               {Lit(3, 60, 0, 200), 0, 255, 5, 191},  {Lit(30, 1, 0), 100, 133, 4, 92},
               {Lit(30, 1, 0), 100, 133, 5, 123},     {Lit(30, 1, 0, 255), 100, 133, 4, 99},
               {Lit(30, 1, 0, 255), 100, 133, 5, 132}};
  BevelFilter bevel;
  for (const auto& c : cases) {
    TestImage image(10, 4, Grey(c.left));
    image.fillRect(5, 0, 10, 4, Grey(c.right));
    bevel.configure(c.settings);
    bevel.shade(image.view());
    EXPECT_EQ(image.at(c.x, 2), Grey(c.want)) << c.settings.elevation << " at " << c.x;
  }
}

TEST(BevelFilter, WrapModeTakesNeighboursFromTheOtherSide) {
  TestImage base(8, 6, Grey(255));
  for (int32_t y = 0; y < 6; ++y) base.at(7, y) = Grey(0);
  BevelSettings settings;
  settings.elevation = 45.0;
  settings.profile = 0;
  BevelFilter bevel;
  bevel.configure(settings);
  TestImage clamped = base;
  bevel.shade(clamped.view());
  settings.wrap = 1;
  bevel.configure(settings);
  TestImage wrapped = base;
  bevel.shade(wrapped.view());
  EXPECT_EQ(clamped.at(0, 3), Grey(254));  // flat: 180 / 180.31
  EXPECT_NE(wrapped.at(0, 3), Grey(254));
  EXPECT_EQ(wrapped.at(3, 3), Grey(254));
  EXPECT_EQ(wrapped.at(6, 3), clamped.at(6, 3));
}

TEST(BevelFilter, OffsetsOutsideTheImageGiveTheFlatShade) {
  TestImage base = RandomImage(12, 9, 31, 0.0);
  for (uint32_t& p : base.pixels) p |= 0xFF000000u;
  BevelSettings settings;
  settings.elevation = 45.0;
  settings.offsetX = 3;
  settings.offsetY = -2;
  BevelFilter bevel;
  bevel.configure(settings);
  TestImage image = base;
  bevel.shade(image.view());
  const double f = 180 / (std::sin(ElevationRadians(45.0)) * 255);
  for (int32_t y = 0; y < 9; ++y)
    for (int32_t x = 0; x < 12; ++x)
      for (int i = 0; i < 3 && (x >= 9 || y < 2); ++i)
        ASSERT_EQ(Byte(image.at(x, y), i), static_cast<int>(Byte(base.at(x, y), i) * f)) << x << ", " << y;
}

// An opaque band of one colour across a transparent field, as an Outline stroke looks.
TestImage Band(uint32_t colour) {
  TestImage image(40, 30);
  image.fillRect(4, 6, 36, 24, colour);
  return image;
}

TEST(BevelFilter, BorderLiftsFlatStrokeByHalfTheScaleAndLightsTheAzimuthSide) {
  // Elevation 45: flat shades to 180 / 180.31, so the whitened 255 becomes 254, the grey g is 254 and the
  // colour rises by 127, clamped at 255. Alpha and the transparent field stay.
  BevelFilter bevel;
  BlurFilter blur;
  TestImage image = Band(Pixel(100, 50, 200, 255));
  image.at(0, 0) = Pixel(9, 9, 9, 0);
  bevel.applyBorder(image.view(), 45.0, 1, 0.0, 2, &blur);
  for (int32_t y = 12; y < 18; ++y)
    for (int32_t x = 10; x < 30; ++x) ASSERT_EQ(image.at(x, y), Pixel(227, 177, 255, 255)) << x << ", " << y;
  EXPECT_EQ(image.at(0, 0), Pixel(9, 9, 9, 0));
  EXPECT_EQ(image.at(2, 2), 0u);
  for (int32_t y = 6; y < 24; ++y) EXPECT_EQ(Byte(image.at(4, y), 3), 255);

  // Light from azimuth 0 falls on the slopes whose height drops towards +x: the band's right edge.
  for (double azimuth : {0.0, kPi}) {
    TestImage lit = Band(Pixel(120, 120, 120, 255));
    bevel.applyBorder(lit.view(), 30.0, 2, azimuth, 2, &blur);
    const int middle = Byte(lit.at(20, 15), 1), right = Byte(lit.at(35, 15), 1),
              left = Byte(lit.at(4, 15), 1);
    EXPECT_EQ(right > middle, azimuth == 0.0);
    EXPECT_EQ(left < middle, azimuth == 0.0);
    EXPECT_NE(right, middle);
    EXPECT_NE(left, middle);
  }
}

TEST(BevelFilter, BorderNeedsPassesAndRunsWithoutBlur) {
  BevelFilter bevel;
  TestImage image = Band(Pixel(10, 200, 30, 255));
  const TestImage before = image;
  bevel.applyBorder(image.view(), 45.0, 0, 0.0, 2, nullptr);
  EXPECT_EQ(image.pixels, before.pixels);
  bevel.applyBorder(image.view(), 45.0, 1, 0.0, 2, nullptr);
  EXPECT_EQ(image.at(20, 15), Pixel(137, 255, 157, 255));
  // Sizes change between calls. A lone pixel is its own neighbourhood: flat, 255 -> 254 -> 253 -> 252
  // over three passes, so g = 252.
  TestImage small(3, 2, Pixel(1, 2, 3, 255)), single(1, 1, Pixel(1, 2, 3, 255));
  bevel.applyBorder(small.view(), 45.0, 3, 0.0, 2, nullptr);
  bevel.applyBorder(single.view(), 45.0, 3, 0.0, 2, nullptr);
  EXPECT_EQ(single.at(0, 0), Pixel(126, 127, 128, 255));
}

}  // namespace
}  // namespace lx
