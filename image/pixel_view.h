// A plain view of 32-bit pixels (blue, green, red, alpha in memory) that the pixel kernels work on.
// It owns nothing and knows nothing of handles or the operating system.
#pragma once

#include <cstdint>

namespace lx {

// The alpha byte of a pixel, and its three colour bytes.
constexpr uint32_t kAlpha = 0xFF000000u;
constexpr uint32_t kColour = 0x00FFFFFFu;

struct PixelView {
  uint8_t* pixels = nullptr;
  int32_t width = 0;
  int32_t height = 0;
  int32_t stride = 0;  // bytes from one row to the next

  bool empty() const { return pixels == nullptr || width < 1 || height < 1; }
  uint32_t* row(int32_t y) const {
    return reinterpret_cast<uint32_t*>(pixels + static_cast<intptr_t>(y) * stride);
  }
};

// A rectangle in whole pixels: left and top inside, right and bottom outside.
// Empty when it holds no pixel (right <= left or bottom <= top), as user32's IsRectEmpty says.
struct IntRect {
  int32_t left = 0, top = 0, right = 0, bottom = 0;

  bool empty() const { return right <= left || bottom <= top; }
};

// A view with the place where it lies in a common coordinate space (its top-left corner there).
struct PlacedView {
  PixelView view;
  IntRect rect;  // where the view lies; normally (left, top, left + width, top + height)
};

}  // namespace lx
