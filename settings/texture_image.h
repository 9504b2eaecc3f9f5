// The library's own opaque copy of a caller's texture.
#pragma once

#include <cstdint>
#include <memory>

#include "image/pixel_view.h"
#include "platform/platform.h"

namespace lx {

struct TextureImage {
  TextureImage() = default;
  ~TextureImage();
  TextureImage(const TextureImage&) = delete;
  TextureImage& operator=(const TextureImage&) = delete;

  // An opaque copy of width x height pixels (both >= 1, memory already checked): every pixel with its
  // top byte set to 0xFF. Null only when the record itself cannot be allocated. When the pixel block
  // cannot be allocated the record holds no pixels but keeps its size; when it cannot be locked, the
  // block is given back and the record holds no pixels and a size of 0 x 0.
  static std::unique_ptr<TextureImage> CopyOpaque(const uint32_t* source, int32_t width,
                                                  int32_t height) noexcept;

  platform::MemoryHandle handle = nullptr;
  IntRect bounds;              // (0, 0, width, height); moved while the texture is placed
  uint32_t* pixels = nullptr;  // locked for the record's whole life; null when allocation failed
  int32_t width = 0;
  int32_t height = 0;
};

}  // namespace lx
