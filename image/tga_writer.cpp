#include <cstdio>

#include "image/caller_memory.h"
#include "image/pixel_ops.h"
#include "image/tga_codec.h"

namespace lx {

bool WriteTGA(const void* pixels, int32_t width, int32_t height, const char* fileName) {
  // The header holds each side in 16 bits.
  if (pixels == nullptr || width < 1 || height < 1 || width > 0xFFFF || height > 0xFFFF) return false;
  if (fileName == nullptr) return false;
  const uint64_t bytes = static_cast<uint64_t>(width) * static_cast<uint64_t>(height) * 4u;
  if (!ValidateCallerMemory(pixels, bytes, false)) return false;

  uint8_t header[kTgaHeaderSize];
  WriteTgaHeader32(static_cast<uint32_t>(width), static_cast<uint32_t>(height), header);

  std::FILE* file = std::fopen(fileName, "wb");
  if (file == nullptr) return false;
  bool ok = std::fwrite(header, 1, sizeof header, file) == sizeof header;
  ok = ok && std::fwrite(pixels, 1, static_cast<size_t>(bytes), file) == bytes;
  ok = (std::fclose(file) == 0) && ok;
  return ok;
}

}  // namespace lx
