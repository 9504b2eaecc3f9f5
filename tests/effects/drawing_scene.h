// A render process with a zeroed surface of its own and a path decoded from hand-made contours.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include "effects/layer_drawing.h"
#include "render/outline_decoder.h"
#include "render/render_process.h"
#include "tests/support/contour_records.h"

namespace lx::test {

// Packed colour setting, red in the low byte.
inline uint32_t Packed(uint8_t r, uint8_t g, uint8_t b, uint8_t a) {
  return uint32_t{r} | uint32_t{g} << 8 | uint32_t{b} << 16 | uint32_t{a} << 24;
}
// The pixel value (blue in the low byte) that a packed colour becomes.
inline uint32_t PixelOf(uint32_t packed) {
  return (packed & 0xFF00FF00u) | ((packed & 0xFFu) << 16) | ((packed >> 16) & 0xFFu);
}
inline int Channel(uint32_t pixel, int shift) {
  return static_cast<int>((pixel >> shift) & 0xFF);
}

class DrawingScene {
 public:
  DrawingScene(int32_t width, int32_t height) : pixels_(static_cast<size_t>(width) * height, 0u) {
    surface = {reinterpret_cast<uint8_t*>(pixels_.data()), width, height, width * 4};
    process.strokeWidth = 0.0;
  }

  void setPath(const ContourRecords& records) {
    process.path.clear();
    DecodeOutlineBlock(records.bytes().data(), records.bytes().size(), false, &process.path);
  }
  void draw(int32_t mode, const LayerAreas& areas = LayerAreas{}) {
    DrawLayer(surface, process.path, process.glyphMatrix, process.face, process.outline, process.strokeWidth,
              mode, areas);
  }
  void clear() { std::fill(pixels_.begin(), pixels_.end(), 0u); }

  // Gives a layer a texture that wraps test-owned pixels (no global memory to release).
  void setTexture(FillSettings* layer, const std::vector<uint32_t>& pixels, int32_t w, int32_t h) {
    texturePixels_.push_back(std::make_unique<std::vector<uint32_t>>(pixels));
    auto t = std::make_unique<TextureImage>();
    t->pixels = texturePixels_.back()->data();
    t->width = w;
    t->height = h;
    t->bounds = {0, 0, w, h};
    layer->texture = std::move(t);
    layer->fillType = 1;
  }

  uint32_t at(int x, int y) const { return pixels_[static_cast<size_t>(y) * surface.width + x]; }
  int width() const { return surface.width; }
  int height() const { return surface.height; }
  // The covered area in pixels: the sum of alpha / 255.
  double coverage() const {
    double sum = 0;
    for (uint32_t p : pixels_) sum += (p >> 24) / 255.0;
    return sum;
  }
  const std::vector<uint32_t>& pixels() const { return pixels_; }

  RenderProcess process;
  PixelView surface;

 private:
  std::vector<uint32_t> pixels_;
  std::vector<std::unique_ptr<std::vector<uint32_t>>> texturePixels_;
};

}  // namespace lx::test
