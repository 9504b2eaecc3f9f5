#include "effects/agg_pipeline.h"

#include <array>

#include <gtest/gtest.h>

namespace lx {
namespace {

using Bytes = std::array<int, 4>;  // blue, green, red, alpha as stored

Bytes Blend(Bytes dst, const LayerColour& colour, uint8_t cover) {
  std::array<uint8_t, 4> px{uint8_t(dst[0]), uint8_t(dst[1]), uint8_t(dst[2]), uint8_t(dst[3])};
  agg::rendering_buffer buf(px.data(), 1, 1, 4);
  LayerPixfmt pixf(buf);
  const agg::int8u c = cover;
  pixf.blend_solid_hspan(0, 0, 1, colour, &c);
  return {px[0], px[1], px[2], px[3]};
}

TEST(LayerBlender, SpansBlendByTheLayerRule) {
  const struct {
    const char* what;
    Bytes dst;
    LayerColour colour;
    uint8_t cover;
    Bytes expected;
  } cases[] = {
      {"red, green, blue land in bytes 2, 1, 0",
       {0, 0, 0, 0},
       LayerColour(10, 20, 30, 255),
       255,
       {30, 20, 10, 255}},
      {"transparent destination: colour unscaled",
       {0, 0, 0, 0},
       LayerColour(200, 100, 50, 128),
       255,
       {50, 100, 200, 128}},
      {"a' = 128 * (64 + 1) >> 8", {0, 0, 0, 0}, LayerColour(200, 100, 50, 128), 64, {50, 100, 200, 32}},
      {"a' = 255 * 101 >> 8", {9, 9, 9, 0}, LayerColour(255, 255, 255, 255), 100, {255, 255, 255, 100}},
      {"alpha 0 changes nothing", {1, 2, 3, 4}, LayerColour(200, 100, 50, 0), 255, {1, 2, 3, 4}},
      {"3 * (84 + 1) >> 8 = 0 neither", {1, 2, 3, 4}, LayerColour(200, 100, 50, 3), 84, {1, 2, 3, 4}},
      {"opaque at full coverage replaces", {1, 2, 3, 200}, LayerColour(7, 8, 9, 255), 255, {9, 8, 7, 255}},
      {"D * (255 - a) >> 8 + s, alpha 255 - ((255 - A) * (255 - a) >> 8)",
       {100, 150, 200, 128},
       LayerColour(40, 30, 20, 100),
       255,
       {(100 * 155 >> 8) + 20, (150 * 155 >> 8) + 30, (200 * 155 >> 8) + 40, 255 - ((127 * 155) >> 8)}},
      {"a' = 100: (D * (255 - a') + (k + 1) * s) >> 8",
       {100, 150, 200, 255},
       LayerColour(40, 30, 20, 200),
       128,
       {(100 * 155 + 129 * 20) >> 8, (150 * 155 + 129 * 30) >> 8, (200 * 155 + 129 * 40) >> 8, 255}},
      {"a' = 255 * 128 >> 8 = 127",
       {0, 0, 0, 60},
       LayerColour(255, 0, 0, 255),
       127,
       {0, 0, (128 * 255) >> 8, 255 - ((195 * 128) >> 8)}},
      {"colour brighter than its alpha saturates",
       {255, 255, 255, 255},
       LayerColour(255, 255, 255, 128),
       255,
       {255, 255, 255, 255}},
  };
  for (const auto& c : cases) EXPECT_EQ(Blend(c.dst, c.colour, c.cover), c.expected) << c.what;
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
