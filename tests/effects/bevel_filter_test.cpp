#include "effects/bevel_filter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <vector>

#include "effects_test_image.h"

namespace lx {
namespace {

using namespace effects_test;
constexpr double kPi = 3.141592653589793;

BevelSettings Lit(double elevation, double depth, int32_t profile, int32_t highlight = 0) {
  BevelSettings s;
  s.elevation = elevation, s.depth = depth, s.profile = profile, s.highlightStrength = highlight;
  return s;
}

TEST(BevelFilter, ProfilesAndClampedSettings) {
  BevelFilter bevel;
  const auto profile = [&](int32_t selector) {
    bevel.configure(Lit(3, 1, selector));
    return std::vector<int>(bevel.profile(), bevel.profile() + 256);
  };
  std::vector<int> linear(256), round = profile(1), sCurve = profile(2);
  std::iota(linear.begin(), linear.end(), 0);
  for (int32_t selector : {0, 3, -1}) EXPECT_EQ(profile(selector), linear) << selector;
  EXPECT_EQ((std::vector<int>{round[1], round[2], round[4], round[255]}),
            (std::vector<int>{23, 32, 45, 255}));
  EXPECT_EQ((std::vector<int>{sCurve[7], sCurve[8], sCurve[128], sCurve[255]}),
            (std::vector<int>{0, 1, 128, 255}));

  const double nan = std::nan("");
  const struct {
    double azimuth, elevation, depth, heightOffset, highlight;
  } cases[][2] = {{{4.0, 0.0, 0.5, -4, 300}, {kPi, 3.0, 1.0, 0, 255}},
                  {{-5.0, nan, nan, 999, -1}, {-kPi, 3.0, 1.0, 255, 0}},
                  {{nan, 75.0, 100.0, 7, 9}, {0.0, 60.0, 60.0, 7, 9}}};
  for (const auto& [in, want] : cases) {
    BevelSettings s = Lit(in.elevation, in.depth, 0, int32_t(in.highlight));
    s.azimuth = in.azimuth, s.heightOffset = int32_t(in.heightOffset);
    bevel.configure(s);
    s = bevel.settings();
    EXPECT_EQ(
        (std::vector<double>{s.azimuth, s.elevation, s.depth, double(s.heightOffset),
                             double(s.highlightStrength)}),
        (std::vector<double>{want.azimuth, want.elevation, want.depth, want.heightOffset, want.highlight}));
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

TEST(BevelFilter, BorderPassesAndTinyImages) {
  // Elevation 45: flat shades 255 -> 254, so the grey is 254 and the colour rises by 127, held at 255.
  BevelFilter bevel;
  TestImage image(40, 30);
  image.fillRect(4, 6, 36, 24, Pixel(10, 200, 30, 255));
  const TestImage before = image;
  bevel.applyBorder(image.view(), 45.0, 0, 0.0, 2, nullptr);
  EXPECT_EQ(image.pixels, before.pixels);
  bevel.applyBorder(image.view(), 45.0, 1, 0.0, 2, nullptr);
  EXPECT_EQ((std::vector<uint32_t>{image.at(20, 15), image.at(2, 2)}),
            (std::vector<uint32_t>{Pixel(137, 255, 157, 255), 0}));
  // A lone pixel is its own neighbourhood: flat, 255 -> 254 -> 253 -> 252 over three passes.
  TestImage single(1, 1, Pixel(1, 2, 3, 255));
  bevel.applyBorder(single.view(), 45.0, 3, 0.0, 2, nullptr);
  EXPECT_EQ(single.at(0, 0), Pixel(126, 127, 128, 255));
}

}  // namespace
}  // namespace lx
