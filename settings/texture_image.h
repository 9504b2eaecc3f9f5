// The library's own opaque copy of a caller's texture.
#pragma once

#include <cstdint>

#include "platform/platform.h"

namespace lx {

struct TextureImage {
  TextureImage() = default;
  ~TextureImage();
  TextureImage(const TextureImage&) = delete;
  TextureImage& operator=(const TextureImage&) = delete;

  platform::HGLOBAL handle = nullptr;
  platform::RECT bounds{0, 0, 0, 0};  // (0, 0, width, height); moved while the texture is placed
  uint32_t* pixels = nullptr;         // locked for the record's whole life; null when allocation failed
  int32_t width = 0;
  int32_t height = 0;
};

}  // namespace lx
