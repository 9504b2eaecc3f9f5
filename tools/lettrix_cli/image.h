// A plain image of the programs: 32-bit pixels as the library draws them (blue, green, red, alpha in
// memory, straight alpha), rows top to bottom with no padding.
#pragma once

#include <cstdint>
#include <vector>

namespace lxt {

struct Image {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint32_t> pixels;  // 0xAARRGGBB values, so the bytes in memory are B, G, R, A

  Image() = default;
  Image(int32_t w, int32_t h, uint32_t fill = 0)
      : width(w), height(h), pixels(static_cast<size_t>(w) * static_cast<size_t>(h), fill) {}
  uint32_t& at(int32_t x, int32_t y) { return pixels[static_cast<size_t>(y) * width + x]; }
  uint32_t at(int32_t x, int32_t y) const { return pixels[static_cast<size_t>(y) * width + x]; }
};

inline uint32_t PackPixel(uint8_t r, uint8_t g, uint8_t b, uint8_t a) {
  return static_cast<uint32_t>(a) << 24 | static_cast<uint32_t>(r) << 16 | static_cast<uint32_t>(g) << 8 | b;
}

}  // namespace lxt
