// An image the library draws into: pixels in locked, movable, zero-filled global memory that the buffer
// owns, or a caller's memory that it only wraps.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixel_view.h"
#include "platform/platform.h"

namespace lx {

class PixelBuffer {
 public:
  // Work images larger than this count as an allocation failure, so that a hostile outline can neither
  // exhaust memory nor overflow a size.
  static constexpr uint64_t kMaxBytes = uint64_t{512} << 20;

  PixelBuffer() = default;
  ~PixelBuffer() { release(); }
  PixelBuffer(const PixelBuffer&) = delete;
  PixelBuffer& operator=(const PixelBuffer&) = delete;

  // Allocates width x height zero pixels (GlobalAlloc 0x42, then GlobalLock) placed at (0, 0). Returns
  // false, holding no pixels, for a size below 1, above kMaxBytes, or an allocation that failed.
  bool allocate(int32_t width, int32_t height);
  // The same, in the block this buffer already owns when that is large enough (its pixels zeroed again):
  // a render process keeps its work images from one call to the next this way.
  bool reuse(int32_t width, int32_t height);
  // The bytes of the owned block (0 when the buffer owns none).
  uint64_t ownedBytes() const { return handle_ != nullptr ? capacity_ : 0; }
  // Describes the caller's pixels without owning them, placed at (0, 0).
  void wrap(void* pixels, int32_t width, int32_t height);
  // Unlocks and frees owned memory (GlobalUnlock, then GlobalFree); handle and pixels become 0.
  void release();

  bool hasPixels() const { return pixels_ != nullptr && width_ > 0 && height_ > 0; }
  int32_t width() const { return width_; }
  int32_t height() const { return height_; }
  uint8_t* pixels() const { return pixels_; }
  PixelView view() const { return {pixels_, width_, height_, width_ * 4}; }
  PlacedView placed() const { return {view(), rect_}; }

  const IntRect& rect() const { return rect_; }
  void placeAt(int32_t left, int32_t top) { rect_ = {left, top, left + width_, top + height_}; }
  void offset(int32_t dx, int32_t dy) {
    rect_.left += dx;
    rect_.right += dx;
    rect_.top += dy;
    rect_.bottom += dy;
  }

 private:
  IntRect rect_;
  platform::HGLOBAL handle_ = nullptr;
  uint8_t* pixels_ = nullptr;
  int32_t width_ = 0;
  int32_t height_ = 0;
  uint64_t capacity_ = 0;
};

}  // namespace lx
