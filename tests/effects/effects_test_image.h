// A small owned image for the effect tests: pixels as 32-bit values (byte 0 lowest), rows packed.
#pragma once

#include <cstdint>
#include <random>
#include <vector>
#include "image/pixel_view.h"

namespace lx::effects_test {
inline uint32_t Pixel(uint8_t b0, uint8_t b1, uint8_t b2, uint8_t alpha) {
  return uint32_t{b0} | uint32_t{b1} << 8 | uint32_t{b2} << 16 | uint32_t{alpha} << 24;
}

struct TestImage {
  TestImage(int32_t w, int32_t h, uint32_t fill = 0)
      : width(w), height(h), pixels(size_t(w) * size_t(h), fill) {}

  // The whole image, or the part from (left, top) on: rows further apart than the view's width.
  PixelView view(int32_t left = 0, int32_t top = 0, int32_t w = 0, int32_t h = 0) {
    return {reinterpret_cast<uint8_t*>(&at(left, top)), w ? w : width, h ? h : height, width * 4};
  }
  uint32_t& at(int32_t x, int32_t y) { return pixels[static_cast<size_t>(y) * width + x]; }

  int32_t width, height;
  std::vector<uint32_t> pixels;
};

// Random pixels; about `transparentShare` of them get alpha 0 (keeping their colour bytes).
inline TestImage RandomImage(int32_t w, int32_t h, unsigned seed, double transparentShare) {
  TestImage image(w, h);
  std::mt19937 rng(seed);
  std::uniform_real_distribution<double> share(0.0, 1.0);
  for (uint32_t& p : image.pixels) p = share(rng) < transparentShare ? rng() & 0x00FFFFFFu : rng();
  return image;
}
}  // namespace lx::effects_test
