#include "effects/agg_pipeline.h"

#include <array>
#include <vector>

#include <gtest/gtest.h>

namespace lx {
namespace {

using Bytes = std::array<int, 4>;  // blue, green, red, alpha as stored

// Red, green, blue land in bytes 2, 1, 0. The coverage scales the alpha as a' = a * (k + 1) >> 8; then
// D * (255 - a') + (k + 1) * s >> 8 per colour byte, saturating, and 255 - ((255 - A) * (255 - a') >> 8).
TEST(LayerBlender, SpansBlendByTheLayerRule) {
  const struct {
    Bytes dst;
    LayerColour colour;
    uint8_t cover;
    Bytes expected;
  } cases[] = {
      {{0, 0, 0, 0}, LayerColour(10, 20, 30, 255), 255, {30, 20, 10, 255}},
      {{0, 0, 0, 0}, LayerColour(200, 100, 50, 128), 255, {50, 100, 200, 128}},
      {{0, 0, 0, 0}, LayerColour(200, 100, 50, 128), 64, {50, 100, 200, 32}},
      {{9, 9, 9, 0}, LayerColour(255, 255, 255, 255), 100, {255, 255, 255, 100}},
      {{1, 2, 3, 4}, LayerColour(200, 100, 50, 0), 255, {1, 2, 3, 4}},
      {{1, 2, 3, 4}, LayerColour(200, 100, 50, 3), 84, {1, 2, 3, 4}},
      {{1, 2, 3, 200}, LayerColour(7, 8, 9, 255), 255, {9, 8, 7, 255}},
      {{100, 150, 200, 128}, LayerColour(40, 30, 20, 100), 255, {80, 120, 161, 179}},
      {{100, 150, 200, 255}, LayerColour(40, 30, 20, 200), 128, {70, 105, 141, 255}},
      {{0, 0, 0, 60}, LayerColour(255, 0, 0, 255), 127, {0, 0, 127, 158}},
      {{255, 255, 255, 255}, LayerColour(255, 255, 255, 128), 255, {255, 255, 255, 255}},
  };
  for (const auto& c : cases) {
    std::array<uint8_t, 4> px{uint8_t(c.dst[0]), uint8_t(c.dst[1]), uint8_t(c.dst[2]), uint8_t(c.dst[3])};
    agg::rendering_buffer buf(px.data(), 1, 1, 4);
    LayerPixfmt pixf(buf);
    const agg::int8u cover = c.cover;
    pixf.blend_solid_hspan(0, 0, 1, c.colour, &cover);
    EXPECT_EQ((Bytes{px[0], px[1], px[2], px[3]}), c.expected) << int{c.colour.a} << " at " << int{c.cover};
  }
  // Solid lines use the same rule.
  std::array<uint8_t, 8> px{100, 150, 200, 128, 0, 0, 0, 0};
  agg::rendering_buffer buf(px.data(), 2, 1, 8);
  LayerPixfmt(buf).blend_hline(0, 0, 2, LayerColour(40, 30, 20, 100), 255);
  EXPECT_EQ(std::vector<int>(px.begin(), px.end()), std::vector<int>({80, 120, 161, 179, 20, 30, 40, 100}));
}

}  // namespace
}  // namespace lx
