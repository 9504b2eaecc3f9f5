#include "image/pixel_buffer.h"

#include <cstring>
#include <limits>

namespace lx {

bool PixelBuffer::allocate(int32_t width, int32_t height) {
  release();
  if (width < 1 || height < 1) return false;
  // 64-bit product: a 65536 x 65536 request must not wrap to a small 32-bit size.
  const uint64_t bytes = static_cast<uint64_t>(width) * static_cast<uint64_t>(height) * 4u;
  if (bytes > kMaxBytes || bytes > std::numeric_limits<size_t>::max()) return false;

  platform::HGLOBAL handle = nullptr;
  auto* pixels = static_cast<uint8_t*>(platform::AllocateLockedBlock(static_cast<size_t>(bytes), &handle));
  if (pixels == nullptr) return false;
  handle_ = handle;
  pixels_ = pixels;
  width_ = width;
  height_ = height;
  capacity_ = bytes;
  placeAt(0, 0);
  return true;
}

bool PixelBuffer::reuse(int32_t width, int32_t height) {
  if (handle_ == nullptr || width < 1 || height < 1) return allocate(width, height);
  const uint64_t bytes = static_cast<uint64_t>(width) * static_cast<uint64_t>(height) * 4u;
  if (bytes > capacity_) return allocate(width, height);
  std::memset(pixels_, 0, static_cast<size_t>(bytes));
  width_ = width;
  height_ = height;
  placeAt(0, 0);
  return true;
}

void PixelBuffer::wrap(void* pixels, int32_t width, int32_t height) {
  release();
  // A row that cannot be measured in a 32-bit stride cannot be described; hold nothing instead.
  if (pixels == nullptr || width < 1 || height < 1 || width > std::numeric_limits<int32_t>::max() / 4) return;
  pixels_ = static_cast<uint8_t*>(pixels);
  width_ = width;
  height_ = height;
  placeAt(0, 0);
}

void PixelBuffer::release() {
  platform::ReleaseLockedBlock(handle_);
  handle_ = nullptr;
  pixels_ = nullptr;
  width_ = 0;
  height_ = 0;
  capacity_ = 0;
  rect_ = IntRect{};
}

}  // namespace lx
