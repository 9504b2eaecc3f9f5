#include "settings/texture_image.h"

#include <new>

namespace lx {

TextureImage::~TextureImage() {
  platform::ReleaseLockedBlock(handle);
  handle = nullptr;
  pixels = nullptr;
  width = 0;
  height = 0;
}

std::unique_ptr<TextureImage> TextureImage::CopyOpaque(const uint32_t* source, int32_t width,
                                                       int32_t height) noexcept {
  std::unique_ptr<TextureImage> image(new (std::nothrow) TextureImage);
  if (!image) return nullptr;
  image->bounds = {0, 0, width, height};
  image->width = width;
  image->height = height;

  // The caller has checked that this many bytes are addressable at `source`, so the count fits size_t.
  const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
  image->handle = platform::GlobalAlloc(platform::kGmemMoveableZeroInit, count * 4);
  if (platform::IsNoBlock(image->handle)) {
    // No pixel block: the record keeps its size but has nothing to copy into.
    image->handle = nullptr;
    return image;
  }
  image->pixels = static_cast<uint32_t*>(platform::GlobalLock(image->handle));
  if (image->pixels == nullptr) {
    platform::GlobalFree(image->handle);
    image->handle = nullptr;
    image->width = 0;
    image->height = 0;
    return image;
  }

  // Textures are always drawn opaque, whatever alpha the caller supplied.
  uint32_t* dst = image->pixels;
  for (size_t i = 0; i < count; ++i) dst[i] = source[i] | 0xFF000000u;
  return image;
}

}  // namespace lx
