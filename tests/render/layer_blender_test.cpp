#include "effects/agg_pipeline.h"

#include <array>

#include <gtest/gtest.h>

namespace lx {
namespace {

// One destination pixel given as bytes (blue, green, red, alpha), one span colour, one coverage.
struct Case {
  uint8_t dst[4];
  LayerColour colour;
  uint8_t cover;
};

std::array<uint8_t, 4> Blend(const Case& c) {
  std::array<uint8_t, 4> px{c.dst[0], c.dst[1], c.dst[2], c.dst[3]};
  agg::rendering_buffer buf(px.data(), 1, 1, 4);
  LayerPixfmt pixf(buf);
  const agg::int8u cover = c.cover;
  pixf.blend_solid_hspan(0, 0, 1, c.colour, &cover);
  return px;
}

std::array<uint8_t, 4> Bytes(int b, int g, int r, int a) {
  return {uint8_t(b), uint8_t(g), uint8_t(r), uint8_t(a)};
}

TEST(LayerBlender, RedGreenBlueLandInBytesTwoOneZero) {
  EXPECT_EQ(Blend({{0, 0, 0, 0}, LayerColour(10, 20, 30, 255), 255}), Bytes(30, 20, 10, 255));
}

TEST(LayerBlender, TransparentDestinationIsOverwrittenWithUnscaledColour) {
  // Full coverage, half alpha: the colour bytes are copied as they are.
  EXPECT_EQ(Blend({{0, 0, 0, 0}, LayerColour(200, 100, 50, 128), 255}), Bytes(50, 100, 200, 128));
  // Partial coverage: a' = 128 * (64 + 1) >> 8 = 32, colours unscaled.
  EXPECT_EQ(Blend({{0, 0, 0, 0}, LayerColour(200, 100, 50, 128), 64}), Bytes(50, 100, 200, 32));
  // Opaque colour at partial coverage: a' = 255 * 101 >> 8 = 100.
  EXPECT_EQ(Blend({{9, 9, 9, 0}, LayerColour(255, 255, 255, 255), 100}), Bytes(255, 255, 255, 100));
}

TEST(LayerBlender, NothingChangesWhenTheEffectiveAlphaIsZero) {
  EXPECT_EQ(Blend({{1, 2, 3, 4}, LayerColour(200, 100, 50, 0), 255}), Bytes(1, 2, 3, 4));
  // 3 * (84 + 1) >> 8 = 0.
  EXPECT_EQ(Blend({{1, 2, 3, 4}, LayerColour(200, 100, 50, 3), 84}), Bytes(1, 2, 3, 4));
}

TEST(LayerBlender, OpaqueAtFullCoverageReplaces) {
  EXPECT_EQ(Blend({{1, 2, 3, 200}, LayerColour(7, 8, 9, 255), 255}), Bytes(9, 8, 7, 255));
}

TEST(LayerBlender, FullCoverageOverAnOccupiedDestination) {
  // D * (255 - a) >> 8 + s, alpha 255 - ((255 - A) * (255 - a) >> 8).
  const auto px = Blend({{100, 150, 200, 128}, LayerColour(40, 30, 20, 100), 255});
  EXPECT_EQ(px, Bytes((100 * 155 >> 8) + 20, (150 * 155 >> 8) + 30, (200 * 155 >> 8) + 40,
                      255 - ((127 * 155) >> 8)));
}

TEST(LayerBlender, PartialCoverageOverAnOccupiedDestination) {
  // a' = 200 * (128 + 1) >> 8 = 100; colour (D * (255 - a') + (k + 1) * s) >> 8.
  const auto px = Blend({{100, 150, 200, 255}, LayerColour(40, 30, 20, 200), 128});
  EXPECT_EQ(
      px, Bytes((100 * 155 + 129 * 20) >> 8, (150 * 155 + 129 * 30) >> 8, (200 * 155 + 129 * 40) >> 8, 255));
  const auto half = Blend({{0, 0, 0, 60}, LayerColour(255, 0, 0, 255), 127});
  // a' = 255 * 128 >> 8 = 127.
  EXPECT_EQ(half, Bytes(0, 0, (128 * 255) >> 8, 255 - ((195 * 128) >> 8)));
}

TEST(LayerBlender, ColourBrighterThanItsAlphaSaturates) {
  const auto px = Blend({{255, 255, 255, 255}, LayerColour(255, 255, 255, 128), 255});
  EXPECT_EQ(px, Bytes(255, 255, 255, 255));
}

TEST(LayerBlender, SolidLinesUseTheSameRule) {
  std::array<uint8_t, 8> px{100, 150, 200, 128, 0, 0, 0, 0};
  agg::rendering_buffer buf(px.data(), 2, 1, 8);
  LayerPixfmt pixf(buf);
  pixf.blend_hline(0, 0, 2, LayerColour(40, 30, 20, 100), 255);
  EXPECT_EQ(px[0], (100 * 155 >> 8) + 20);
  EXPECT_EQ(px[3], 255 - ((127 * 155) >> 8));
  EXPECT_EQ(px[4], 20);
  EXPECT_EQ(px[7], 100);
}

}  // namespace
}  // namespace lx
