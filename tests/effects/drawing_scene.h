// A render process with a zeroed surface of its own and a rectangle (or square) path to draw.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "effects/layer_drawing.h"
#include "render/outline_decoder.h"
#include "render/render_process.h"
#include "tests/support/contour_records.h"

namespace lx::test {

// Packed colour setting (red in the low byte), and the pixel value (blue in the low byte) it becomes.
inline uint32_t Packed(uint8_t r, uint8_t g, uint8_t b, uint8_t a) {
  return uint32_t{r} | uint32_t{g} << 8 | uint32_t{b} << 16 | uint32_t{a} << 24;
}
inline uint32_t PixelOf(uint32_t packed) {
  return (packed & 0xFF00FF00u) | ((packed & 0xFFu) << 16) | ((packed >> 16) & 0xFFu);
}

class DrawingScene {
 public:
  DrawingScene(int32_t width, int32_t height, double x1, double y1, double x2, double y2)
      : pixels(static_cast<size_t>(width) * height, 0u) {
    surface = {reinterpret_cast<uint8_t*>(pixels.data()), width, height, width * 4};
    process.strokeWidth = 0.0;
    ContourRecords r;
    r.begin(Pt(x1, y1)).line({Pt(x2, y1), Pt(x2, y2), Pt(x1, y2), Pt(x1, y1)}).end();
    DecodeOutlineBlock(r.bytes().data(), r.bytes().size(), false, &process.path);
  }

  // Draws afresh and checks the pixels named by (x, y, pixel) triples.
  void expectDraws(int32_t mode, const std::vector<uint32_t>& probes,
                   const LayerAreas& areas = LayerAreas{}) {
    std::fill(pixels.begin(), pixels.end(), 0u);
    DrawLayer(surface, process.path, process.glyphMatrix, process.face, process.outline, process.strokeWidth,
              mode, areas);
    std::vector<uint32_t> got, want;
    for (size_t i = 0; i + 2 < probes.size(); i += 3) {
      got.push_back(pixels[probes[i + 1] * static_cast<size_t>(surface.width) + probes[i]]);
      want.push_back(probes[i + 2]);
    }
    EXPECT_EQ(got, want);
  }

  // Gives a layer a texture that wraps test-owned pixels (no global memory to release).
  void setTexture(FillSettings* layer, const std::vector<uint32_t>& texels, int32_t w, int32_t h) {
    texturePixels_.push_back(std::make_unique<std::vector<uint32_t>>(texels));
    auto t = std::make_unique<TextureImage>();
    t->pixels = texturePixels_.back()->data();
    t->width = w;
    t->height = h;
    t->bounds = {0, 0, w, h};
    layer->texture = std::move(t);
    layer->fillType = 1;
  }

  RenderProcess process;
  PixelView surface;
  std::vector<uint32_t> pixels;

 private:
  std::vector<std::unique_ptr<std::vector<uint32_t>>> texturePixels_;
};

}  // namespace lx::test
