// The two pixel layouts of the composition layer: the library's own (32-bit values 0xAARRGGBB, so blue,
// green, red, alpha in memory), in which textures are handed over and pictures drawn, and plain RGBA
// bytes, in which callers receive pictures and give texture files. Both hold straight (not
// premultiplied) alpha, rows top to bottom with no padding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lx::compose {

struct Image {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint32_t> pixels;  // 0xAARRGGBB values

  Image() = default;
  Image(int32_t w, int32_t h, uint32_t fill = 0)
      : width(w), height(h), pixels(static_cast<size_t>(w) * static_cast<size_t>(h), fill) {}
  uint32_t& at(int32_t x, int32_t y) { return pixels[static_cast<size_t>(y) * width + x]; }
  uint32_t at(int32_t x, int32_t y) const { return pixels[static_cast<size_t>(y) * width + x]; }
};

inline uint32_t PackPixel(uint8_t r, uint8_t g, uint8_t b, uint8_t a) {
  return static_cast<uint32_t>(a) << 24 | static_cast<uint32_t>(r) << 16 | static_cast<uint32_t>(g) << 8 | b;
}

// Pixels as bytes: red, green, blue, alpha each; pixels.size() == width * height * 4.
struct RgbaImage {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint8_t> pixels;
};

inline RgbaImage ToRgba(const Image& image) {
  RgbaImage out{image.width, image.height, std::vector<uint8_t>(image.pixels.size() * 4)};
  for (size_t i = 0; i < image.pixels.size(); ++i) {
    const uint32_t p = image.pixels[i];
    out.pixels[4 * i] = static_cast<uint8_t>(p >> 16);
    out.pixels[4 * i + 1] = static_cast<uint8_t>(p >> 8);
    out.pixels[4 * i + 2] = static_cast<uint8_t>(p);
    out.pixels[4 * i + 3] = static_cast<uint8_t>(p >> 24);
  }
  return out;
}

// An image of the size given whose pixel bytes are missing or too few comes back empty.
inline Image FromRgba(const RgbaImage& rgba) {
  if (rgba.width < 1 || rgba.height < 1 ||
      rgba.pixels.size() / 4 / static_cast<size_t>(rgba.width) < static_cast<size_t>(rgba.height)) {
    return Image();
  }
  Image out(rgba.width, rgba.height);
  for (size_t i = 0; i < out.pixels.size(); ++i) {
    const uint8_t* p = &rgba.pixels[4 * i];
    out.pixels[i] = PackPixel(p[0], p[1], p[2], p[3]);
  }
  return out;
}

}  // namespace lx::compose
