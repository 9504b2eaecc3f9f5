// Scenes for image tests: a line of DejaVu Sans Bold as an outline block in global memory, the caller's
// buffer as an image, and probes that read pixels and find places in a drawing.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tools/text_outline/text_outline.h"

namespace lx::test {

// One line of text laid out by the text-to-outline library, copied into global memory as Render takes it.
class TextScene {
 public:
  // DejaVu Sans Bold at pixelSize, pen starting at (originX, baselineY). Fails the running test (and
  // holds no block) when the text cannot be laid out.
  TextScene(const std::string& text, int32_t pixelSize, double originX, double baselineY);
  // A block made elsewhere (written by another run, or built by hand).
  explicit TextScene(const std::vector<uint8_t>& bytes);

  void* block() const { return global_ ? global_->handle() : nullptr; }
  const std::vector<uint8_t>& bytes() const { return bytes_; }
  // The whole-pixel box Render measures for the block.
  const text::InkBox& ink() const { return ink_; }

 private:
  std::vector<uint8_t> bytes_;
  text::InkBox ink_;
  std::unique_ptr<text::GlobalBlock> global_;
};

// The outline records of `bytes` grown to `size` bytes by one more contour that adds nothing to the
// drawing: its start point is the first contour's and its body holds records of no points. Render then
// decodes the whole of a block larger than its outline, as a caller's spare room would be.
std::vector<uint8_t> PaddedOutlineBlock(const std::vector<uint8_t>& bytes, size_t size);

// A pixel's components as stored: blue lowest, alpha highest.
inline constexpr auto Blue = [](uint32_t p) { return static_cast<uint8_t>(p); };
inline constexpr auto Green = [](uint32_t p) { return static_cast<uint8_t>(p >> 8); };
inline constexpr auto Red = [](uint32_t p) { return static_cast<uint8_t>(p >> 16); };
inline constexpr auto Alpha = [](uint32_t p) { return static_cast<uint8_t>(p >> 24); };
// A pixel value from its components.
inline constexpr auto Pixel = [](uint8_t a, uint8_t r, uint8_t g, uint8_t b) {
  return uint32_t{a} << 24 | uint32_t{r} << 16 | uint32_t{g} << 8 | b;
};

struct Point {
  int32_t x, y;
  bool operator==(const Point& o) const { return x == o.x && y == o.y; }
};

// The caller's buffer: width x height pixels, rows without padding.
class Image {
 public:
  Image(int32_t width, int32_t height, uint32_t fill = 0);

  // Width and height as Render reads them, by address.
  const int32_t* width() const { return &width_; }
  const int32_t* height() const { return &height_; }
  int32_t w() const { return width_; }
  int32_t h() const { return height_; }
  void* data() { return pixels_.data(); }
  const std::vector<uint32_t>& pixels() const { return pixels_; }

  uint32_t at(int32_t x, int32_t y) const { return pixels_[static_cast<size_t>(y) * width_ + x]; }
  uint32_t at(Point p) const { return at(p.x, p.y); }
  void set(int32_t x, int32_t y, uint32_t v) { pixels_[static_cast<size_t>(y) * width_ + x] = v; }

  bool operator==(const Image& o) const {
    return width_ == o.width_ && height_ == o.height_ && pixels_ == o.pixels_;
  }
  bool operator!=(const Image& o) const { return !(*this == o); }
  // Pixels that differ from `fill` (the background the buffer was made with).
  size_t countOther(uint32_t fill) const;
  // The smallest box holding every pixel whose alpha is at least minAlpha; empty when there is none.
  text::InkBox alphaBounds(uint8_t minAlpha = 1) const;
  // The centre of mass of the pixels whose alpha is at least minAlpha (0, 0 when there is none).
  void alphaCentre(uint8_t minAlpha, double* x, double* y) const;

 private:
  int32_t width_;
  int32_t height_;
  std::vector<uint32_t> pixels_;
};

// Pixels of `mask` whose alpha is 255 together with every pixel within `inset` of them (a square): well
// inside the drawn shape, away from its anti-aliased edge.
std::vector<Point> DeepInside(const Image& mask, int32_t inset);
// Pixels of `mask` with alpha 0, as far as `inset` from any pixel with alpha above 0: well outside.
std::vector<Point> FarOutside(const Image& mask, int32_t inset);
// Points of `a` that are not in `b`, and points of `a` that are also in `b`.
std::vector<Point> Without(const std::vector<Point>& a, const std::vector<Point>& b);
std::vector<Point> Both(const std::vector<Point>& a, const std::vector<Point>& b);

}  // namespace lx::test
