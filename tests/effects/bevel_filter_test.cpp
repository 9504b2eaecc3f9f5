#include "effects/bevel_filter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "effects/blur_filter.h"
#include "effects/light_angles.h"
#include "effects_test_image.h"

namespace lx {
namespace {

using effects_test::Byte;
using effects_test::Pixel;
using effects_test::RandomImage;
using effects_test::TestImage;

constexpr double kPi = 3.141592653589793;

uint32_t Grey(uint8_t v, uint8_t alpha = 255) {
  return Pixel(v, v, v, alpha);
}

TEST(BevelFilter, ProfilesStartAndEndAsTheyShould) {
  BevelFilter bevel;
  BevelSettings settings;
  settings.profile = 1;
  bevel.configure(settings);
  const uint8_t round[] = {0, 23, 32, 39, 45};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(bevel.profile()[i], round[i]) << i;
  EXPECT_EQ(bevel.profile()[255], 255);

  settings.profile = 2;
  bevel.configure(settings);
  const uint8_t sCurve[] = {0, 0, 0, 0, 0, 0, 0, 0, 1};
  for (int i = 0; i < 9; ++i) EXPECT_EQ(bevel.profile()[i], sCurve[i]) << i;
  EXPECT_EQ(bevel.profile()[128], 128);
  EXPECT_EQ(bevel.profile()[255], 255);

  for (int32_t selector : {0, 3, -1}) {
    settings.profile = selector;
    bevel.configure(settings);
    for (int i = 0; i < 256; ++i) ASSERT_EQ(bevel.profile()[i], i) << selector;
  }
  // Every profile rises from 0 to 255 without stepping back.
  for (int32_t selector : {1, 2}) {
    settings.profile = selector;
    bevel.configure(settings);
    for (int i = 1; i < 256; ++i) ASSERT_GE(bevel.profile()[i], bevel.profile()[i - 1]) << selector;
  }
}

TEST(BevelFilter, SettingsAreClamped) {
  BevelFilter bevel;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  BevelSettings in;
  in.azimuth = 4.0;
  in.elevation = 0.0;
  in.depth = 0.5;
  in.heightOffset = -4;
  in.highlightStrength = 300;
  bevel.configure(in);
  EXPECT_EQ(bevel.settings().azimuth, kPi);
  EXPECT_EQ(bevel.settings().elevation, 3.0);
  EXPECT_EQ(bevel.settings().depth, 1.0);
  EXPECT_EQ(bevel.settings().heightOffset, 0);
  EXPECT_EQ(bevel.settings().highlightStrength, 255);

  in.azimuth = -5.0;
  in.elevation = nan;
  in.depth = nan;
  in.heightOffset = 999;
  in.highlightStrength = -1;
  bevel.configure(in);
  EXPECT_EQ(bevel.settings().azimuth, -kPi);
  EXPECT_EQ(bevel.settings().elevation, 3.0);
  EXPECT_EQ(bevel.settings().depth, 1.0);
  EXPECT_EQ(bevel.settings().heightOffset, 255);
  EXPECT_EQ(bevel.settings().highlightStrength, 0);

  in.elevation = 75.0;
  in.depth = 100.0;
  bevel.configure(in);
  EXPECT_EQ(bevel.settings().elevation, 60.0);
  EXPECT_EQ(bevel.settings().depth, 60.0);
}

// A white step: black (height 0) left of column 5, white (height 255) from it on, rows alike.
TestImage Step(bool whiteOnRight) {
  TestImage image(10, 4, Grey(whiteOnRight ? 0 : 255));
  image.fillRect(whiteOnRight ? 5 : 0, 0, whiteOnRight ? 10 : 5, 4, Grey(whiteOnRight ? 255 : 0));
  return image;
}

TEST(BevelFilter, SlopesFacingAwayTakeTheUnlitShade) {
  // Elevation 3, depth 60, linear profile: sine 0.0523, Lx = Lz = 13, Nz = 25, F = 13.35. At the step
  // Nx = -765 and N.L < 0, so the shade is trunc(strength * sine): 0 without highlight, 10 with 200.
  BevelFilter bevel;
  BevelSettings settings;
  settings.elevation = 3.0;
  settings.depth = 60.0;
  settings.profile = 0;
  bevel.configure(settings);
  TestImage dark = Step(true);
  bevel.shade(dark.view());
  EXPECT_EQ(dark.at(5, 2), Grey(0));
  EXPECT_EQ(dark.at(8, 2), Grey(248));  // flat: 255 * 13 / 13.35

  settings.highlightStrength = 200;
  bevel.configure(settings);
  TestImage dim = Step(true);
  bevel.shade(dim.view());
  EXPECT_EQ(dim.at(5, 2), Grey(191));  // 255 * 10 / 13.35
}

TEST(BevelFilter, HighlightLiftsLitSlopesTowardsFullLight) {
  // Elevation 30, depth 1 (Nz = 1530), linear profile; heights 100 | 133 give Nx = -99:
  // N.L = 127 * -99 + 1530 * 127 = 181737, shade = trunc(181737 / 1533.19) = 118 of F = 127.5.
  // Strength 255 adds trunc(127.5 - 118) = 9.
  BevelSettings settings;
  settings.elevation = 30.0;
  settings.depth = 1.0;
  settings.profile = 0;
  TestImage base(10, 3, Grey(100));
  base.fillRect(5, 0, 10, 3, Grey(133));

  BevelFilter bevel;
  bevel.configure(settings);
  TestImage plain = base;
  bevel.shade(plain.view());
  EXPECT_EQ(plain.at(4, 1), Grey(92));   // 100 * 118 / 127.5
  EXPECT_EQ(plain.at(5, 1), Grey(123));  // 133 * 118 / 127.5

  settings.highlightStrength = 255;
  bevel.configure(settings);
  TestImage lifted = base;
  bevel.shade(lifted.view());
  EXPECT_EQ(lifted.at(4, 1), Grey(99));  // 100 * 127 / 127.5
  EXPECT_EQ(lifted.at(5, 1), Grey(132));
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

  // Flat: shade Lz = 180 of F = 180.31.
  EXPECT_EQ(clamped.at(0, 3), Grey(254));
  EXPECT_NE(wrapped.at(0, 3), Grey(254));
  EXPECT_EQ(wrapped.at(3, 3), Grey(254));
  // Column 6 sees the black column on its right in both modes.
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
  for (int32_t y = 0; y < 9; ++y) {
    for (int32_t x = 0; x < 12; ++x) {
      if (x < 9 && y >= 2) continue;
      for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(Byte(image.at(x, y), i), static_cast<int>(Byte(base.at(x, y), i) * f)) << x << ", " << y;
      }
    }
  }
}

// An opaque band of one colour across a transparent field, as an Outline stroke looks.
TestImage Band(uint32_t colour) {
  TestImage image(40, 30);
  image.fillRect(4, 6, 36, 24, colour);
  return image;
}

TEST(BevelFilter, BorderLiftsFlatStrokeByHalfTheScale) {
  // Elevation 45: a flat stretch shades to 180 / 180.31, so the whitened 255 becomes 254, the grey g is
  // 254 and the colour rises by 127, clamped at 255. Alpha and the transparent field stay.
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
}

TEST(BevelFilter, BorderLightsTheSideFacingTheAzimuth) {
  BevelFilter bevel;
  BlurFilter blur;
  const uint32_t colour = Pixel(120, 120, 120, 255);
  // Light from azimuth 0 falls on the slopes whose height drops towards +x: the band's right edge.
  TestImage fromRight = Band(colour);
  bevel.applyBorder(fromRight.view(), 30.0, 2, 0.0, 2, &blur);
  EXPECT_GT(Byte(fromRight.at(35, 15), 1), Byte(fromRight.at(20, 15), 1));
  EXPECT_LT(Byte(fromRight.at(4, 15), 1), Byte(fromRight.at(20, 15), 1));

  TestImage fromLeft = Band(colour);
  bevel.applyBorder(fromLeft.view(), 30.0, 2, kPi, 2, &blur);
  EXPECT_LT(Byte(fromLeft.at(35, 15), 1), Byte(fromLeft.at(20, 15), 1));
  EXPECT_GT(Byte(fromLeft.at(4, 15), 1), Byte(fromLeft.at(20, 15), 1));
}

TEST(BevelFilter, BorderNeedsPassesAndRunsWithoutBlur) {
  BevelFilter bevel;
  TestImage image = Band(Pixel(10, 200, 30, 255));
  const TestImage before = image;
  bevel.applyBorder(image.view(), 45.0, 0, 0.0, 2, nullptr);
  EXPECT_EQ(image.pixels, before.pixels);

  // Without a blur object the shading still runs: flat parts lift by 127 all the same.
  bevel.applyBorder(image.view(), 45.0, 1, 0.0, 2, nullptr);
  EXPECT_EQ(image.at(20, 15), Pixel(137, 255, 157, 255));
  // Sizes change between calls: the rows follow.
  TestImage small(3, 2, Pixel(1, 2, 3, 255));
  bevel.applyBorder(small.view(), 45.0, 3, 0.0, 2, nullptr);
  TestImage single(1, 1, Pixel(1, 2, 3, 255));
  bevel.applyBorder(single.view(), 45.0, 3, 0.0, 2, nullptr);
  // A lone pixel is its own neighbourhood: flat, 255 -> 254 -> 253 -> 252 over three passes, so g = 252.
  EXPECT_EQ(single.at(0, 0), Pixel(126, 127, 128, 255));
}

}  // namespace
}  // namespace lx
