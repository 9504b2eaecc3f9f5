// Laying layers over one another: the blend laws at their limits, placement, and the extrusion's stamps.
#include <gtest/gtest.h>
#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>
#include "effects/compositing.h"
#include "effects/shadow_extrusion.h"
#include "effects_test_image.h"
#include "platform/platform.h"

namespace lx {
namespace {
using namespace effects_test;
using V = std::vector<uint32_t>;
constexpr int32_t kMax = INT32_MAX, kMin = INT32_MIN;

// One pixel over another: BlendOver, or with bounds the saturating law between their alpha bytes.
uint32_t Blend(uint32_t source, uint32_t target, const V& bounds = {}) {
  TestImage s(1, 1, source), t(1, 1, target);
  const PlacedView from{s.view(), {0, 0, 1, 1}}, onto{t.view(), {0, 0, 1, 1}};
  bounds.empty() ? BlendOver(from, onto) : BlendOverClamped(from, onto, bounds[0], bounds[1]);
  return t.pixels[0];
}

TEST(Compositing, LawsAtTheEndsOfTheAlphaRange) {
  const uint32_t a = Pixel(0, 128, 255, 0), b = Pixel(255, 0, 100, 0), any = 0xFF000000u;
  // A = 401 * 256 - 40000 = 62656: alpha 244; A = 21 * 256 - 100 = 5276: alpha 20, raised to a bound of 64;
  // A = 65756 saturates, held at the larger bound's alpha byte whatever the order and other bytes.
  EXPECT_EQ(Blend(a | 200u << 24, b | 200u << 24, {0u, any}), Pixel(45, 104, 226, 244));
  EXPECT_EQ(Blend(a | 10u << 24, b | 10u << 24, {0u, any}), Pixel(118, 62, 170, 20));
  EXPECT_EQ(Blend(a | 10u << 24, b | 10u << 24, {0x40000000u, any}) >> 24, 64u);
  EXPECT_EQ(Blend(a | 250u << 24, b | 250u << 24, {0u, any}), Pixel(5, 124, 250, 255));
  EXPECT_EQ(Blend(a | 250u << 24, b | 250u << 24, {0xC8123456u, 0x0A654321u}) >> 24, 200u);
  EXPECT_EQ(Blend(a | 200u << 24, b | 200u << 24, {0xE0FFFFFFu, 0xF0000000u}) >> 24, 240u);
  // Where either side is clear the source is copied, whatever the bounds.
  EXPECT_EQ(Blend(Pixel(1, 2, 3, 255), Pixel(9, 9, 9, 100), {0x10000000u, 0x20000000u}), Pixel(1, 2, 3, 255));
  EXPECT_EQ(Blend(Pixel(1, 2, 3, 30), Pixel(9, 9, 9, 0), {0x80000000u, any}), Pixel(1, 2, 3, 30));
  EXPECT_EQ(Blend(Pixel(1, 2, 3, 0), Pixel(9, 9, 9, 50), {0x80000000u, any}), Pixel(9, 9, 9, 50));
  // BlendOver tops out at (2 * 255 + 254 * 256) >> 8 = 255: an opaque target stays opaque, alpha never wraps.
  for (uint32_t sa = 1; sa < 255; ++sa)
    EXPECT_EQ((V{Blend(Pixel(255, 0, 128, sa), Pixel(0, 255, 128, 255)) >> 24,
                 Blend(Pixel(255, 0, 128, sa), Pixel(0, 255, 128, 1)) >> 24}),
              (V{255, sa}));
}

// Each colour byte is the law's quotient, (s * 256 * sa + d * da * (256 - sa)) / A with A the law's own,
// for every pair of alphas that needs the arithmetic and source and target bytes at the ends and between.
TEST(Compositing, ColourBytesAreTheLawsQuotientForEveryPairOfAlphas) {
  const uint32_t bytes[][2] = {{0, 255}, {255, 0}, {1, 254}, {128, 127}, {37, 200}};
  for (bool clamped : {false, true}) {
    for (uint32_t sa = 1; sa < 255; ++sa) {
      for (uint32_t da = 1; da < 256; ++da) {
        const uint32_t a = clamped ? (sa + da + 1) * 256 - sa * da : (256 - sa) * da + sa * 256;
        const uint32_t source = Pixel(bytes[0][0], bytes[2][0], bytes[(sa + da) % 5][0], sa);
        const uint32_t target = Pixel(bytes[0][1], bytes[2][1], bytes[(sa + da) % 5][1], da);
        uint32_t want = 0;
        for (int k = 0; k < 3; ++k) {
          const uint32_t sv = source >> (8 * k) & 0xFF, dv = target >> (8 * k) & 0xFF;
          want |= (sv * 256 * sa + dv * da * (256 - sa)) / a << (8 * k);
        }
        // A group of four takes the wide path where the build has one; a single pixel the scalar one.
        for (int32_t n : {1, 4}) {
          TestImage from(n, 1, source), onto(n, 1, target);
          const PlacedView a{from.view(), {0, 0, n, 1}}, b{onto.view(), {0, 0, n, 1}};
          clamped ? BlendOverClamped(a, b, 0u, 0xFF000000u) : BlendOver(a, b);
          ASSERT_EQ(onto.pixels[0] & 0x00FFFFFFu, want)
              << sa << ", " << da << (clamped ? " clamped" : "") << n;
        }
      }
    }
  }
}

// Wide path = scalar path, for both laws, for every pair of alphas (a group of four shares its source
// alpha), over targets whose colour bytes equal the source's in all four pixels, none or three; each row's
// last three go singly.
TEST(Compositing, WidePathAgreesWithScalarPathForEveryPairOfAlphas) {
  TestImage source(256 * 4 + 3, 256 * 3), wide(256 * 4 + 3, 256 * 3);
  for (int32_t y = 0; y < source.height; ++y) {
    for (int32_t x = 0; x < source.width; ++x) {
      const uint8_t sa = static_cast<uint8_t>(x / 4), da = static_cast<uint8_t>(y / 3);
      const bool same = y % 3 == 0 || (y % 3 == 2 && x % 4 != 1);
      source.at(x, y) = Pixel(30, 60, 90, sa);
      wide.at(x, y) = same ? Pixel(30, 60, 90, da) : Pixel(200, 60, static_cast<uint8_t>(x), da);
    }
  }
  const IntRect place{0, 0, source.width, source.height};
  const TestImage target = wide;
  for (bool clamped : {false, true}) {
    TestImage scalar = target;
    wide = target;
    if (clamped) {
      BlendOverClamped({source.view(), place}, {wide.view(), place}, 0x50000000u, 0xC0000000u,
                       KernelPath::kWide);
      BlendOverClamped({source.view(), place}, {scalar.view(), place}, 0x50000000u, 0xC0000000u,
                       KernelPath::kScalar);
    } else {
      BlendOver({source.view(), place}, {wide.view(), place}, KernelPath::kWide);
      BlendOver({source.view(), place}, {scalar.view(), place}, KernelPath::kScalar);
    }
    EXPECT_EQ(wide.pixels, scalar.pixels) << (clamped ? "clamped" : "over");
  }
}

TEST(Compositing, PlacementClipsToBothImages) {
  const uint32_t g = Pixel(50, 50, 50, 255);
  const auto s = [](uint32_t i) { return Pixel(i, 0, 0, 255); };
  TestImage source(2, 2);
  source.pixels = {s(1), s(2), s(3), s(4)};
  // Corners one pixel in, negative, touching from outside, and at the ends of the integer range; the 3 x 3
  // target as a pattern of its pixels, '.' where it keeps its own.
  const struct {
    int32_t sourceLeft, sourceTop, targetLeft, targetTop;
    const char* want;
  } cases[] = {
      {-7, -5, -8, -6, "....12.34"}, {-1, -1, 0, 0, "4........"},
      {2, 2, 0, 0, "........1"},     {3, 0, 0, 0, "........."},
      {0, -2, 0, 0, "........."},    {INT32_MAX - 2, INT32_MAX - 2, INT32_MIN, INT32_MIN, "........."}};
  for (const auto& c : cases) {
    for (bool clamped : {false, true}) {
      TestImage target(3, 3, g);
      const PlacedView from{source.view(), {c.sourceLeft, c.sourceTop, c.sourceLeft + 2, c.sourceTop + 2}};
      const PlacedView onto{target.view(), {c.targetLeft, c.targetTop, c.targetLeft + 3, c.targetTop + 3}};
      clamped ? BlendOverClamped(from, onto, 0u, 0xFF000000u) : BlendOver(from, onto);
      V want;
      for (const char* p = c.want; *p; ++p) want.push_back(*p == '.' ? g : s(*p - '0'));
      EXPECT_EQ(target.pixels, want) << c.want << (clamped ? " clamped" : "");
    }
  }
}

// One walk through a middle layer gives the target what the two calls in a row give it, with the middle
// inside the target, over any of its sides or beside it, and with a source that lies elsewhere.
TEST(Compositing, ThroughAMiddleLayerEqualsTwoBlends) {
  const IntRect middlePlace{3, 2, 43, 32};
  const struct {
    IntRect source, target;
  } cases[] = {{middlePlace, {0, 0, 45, 35}},     {middlePlace, {10, 12, 55, 47}},
               {middlePlace, {-20, -20, 25, 15}}, {middlePlace, {43, 0, 88, 35}},
               {{4, 2, 44, 32}, {0, 0, 45, 35}},  {{-7, -4, 33, 26}, {10, 12, 55, 47}}};
  for (bool clamped : {false, true}) {
    for (const auto& c : cases) {
      TestImage source = RandomImage(40, 30, 3, 0.5), middle = RandomImage(40, 30, 4, 0.4);
      TestImage target = RandomImage(45, 35, 5, 0.3), expected = target, scratch = middle;
      // Runs of clear and opaque pixels, as layers have them, besides the random ones.
      for (int32_t y = 0; y < 30; y += 2)
        std::fill(&source.at(0, y), &source.at(20, y), y % 4 ? 0xFF336699u : 0u);
      const PlacedView from{source.view(), c.source}, onto{target.view(), c.target};
      const PlacedView through{middle.view(), middlePlace}, twoSteps{scratch.view(), middlePlace};
      const uint32_t a = 0x60000000u, b = 0xE0000000u;
      if (clamped) {
        BlendOverClamped(from, twoSteps, a, b);
        BlendOverClampedThrough(from, through, onto, a, b);
      } else {
        BlendOver(from, twoSteps);
        BlendOverThrough(from, through, onto);
      }
      BlendOver(twoSteps, {expected.view(), c.target});
      EXPECT_EQ(target.pixels, expected.pixels)
          << c.source.left << ", " << c.target.left << (clamped ? " clamped" : "");
    }
  }
}

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

// Lines longer than any walked point by point, with extents sharing a large divisor or none; every stamp
// leaves its own mark on sparse dots. Far beyond the layer only the last points reach it.
TEST(Extrude, LongLinesStampWhereTheFullWalkDoes) {
  TestImage image = RandomImage(30, 25, 77, 0.95);
  image.at(0, 0) = Pixel(255, 0, 0, 255), image.at(29, 0) = Pixel(0, 255, 0, 255);
  image.at(0, 24) = Pixel(0, 0, 255, 255), image.at(29, 24) = Pixel(255, 255, 255, 255);
  EXPECT_EQ(Extruded(image, 0, 0).pixels, image.pixels);
  Extrude(PixelView{}, 4, 4);
  TestImage shadow = image;  // the Shadow's own extrusion, along an axis (as no scene has it)
  ExtrudeShadow(shadow.view(), 29, 0, 1);
  EXPECT_EQ(shadow.pixels, Extruded(image, 29, 0).pixels);
  const int32_t lines[][2] = {
      {12582912, 3145728}, {4194319, 2}, {-4194301, 2796203}, {3000017, -4194329}, {-5000011, -5000010}};
  for (const auto& [dx, dy] : lines)
    EXPECT_EQ(Extruded(image, dx, dy).pixels, Reference(image, dx, dy).pixels) << dx << ", " << dy;
  const int32_t far[][4] = {
      {1000, 0, 29, 0}, {kMax, 0, 29, 0},         {0, kMin, 0, -24},      {kMax - 1, kMax - 1, 24, 24},
      {kMax, 1, 29, 0}, {kMax, kMax - 1, 29, 29}, {kMin, kMin, -24, -24}, {kMin, 3, -29, 0}};
  for (const auto& c : far)
    EXPECT_EQ(Extruded(image, c[0], c[1]).pixels, Extruded(image, c[2], c[3]).pixels) << c[0];
}

TEST(Extrude, NeverTouchesMemoryOutsideTheLayer) {
  // The layer is the middle of a larger image whose border must come through unchanged.
  TestImage outer = RandomImage(30, 20, 13, 0.3);
  TestImage expected = outer;
  for (const auto& [dx, dy] : {std::pair{3, 4}, {-25, 2}, {kMax, kMin}, {19, -9}, {-20, -10}}) {
    Extrude(outer.view(5, 5, 20, 10), dx, dy);
    ExtrudeShadow(outer.view(5, 5, 20, 10), dx, dy, 0);
  }
  SoftenExtrusion(outer.view(), nullptr);
  for (TestImage* image : {&outer, &expected})
    for (int32_t y = 5; y < 15; ++y) std::fill(&image->at(5, y), &image->at(25, y), 0u);
  EXPECT_EQ(outer.pixels, expected.pixels);
}
}  // namespace
}  // namespace lx
