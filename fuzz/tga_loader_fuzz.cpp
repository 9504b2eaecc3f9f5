// The library's TGA loader on any file. Its answer must match its record: a refusal leaves a message
// and no pixels; a load leaves no message; and whatever pixels it leaves fit in the block it holds,
// also after the conversion to 32 bits.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "image/tga_reader.h"

namespace {

// One file per fuzzing process, rewritten for every input.
const std::string& InputPath() {
  static const std::string path = "/tmp/lettrix_tga_fuzz_" + std::to_string(getpid()) + ".tga";
  return path;
}

// The block must hold the pixels the record describes (and touching its last byte proves it is there).
void ExpectPixelsFit(const lx::TgaImage& image) {
  if (image.pixels == nullptr) {
    if (image.handle != nullptr) std::abort();
    return;
  }
  const uint64_t bytes = uint64_t{image.width} * image.height * (image.bitsPerPixel / 8);
  const size_t blockSize = lx::platform::GlobalSize(image.handle);
  if (bytes == 0 || blockSize < bytes) std::abort();
  volatile uint8_t last = image.pixels[bytes - 1];
  (void)last;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::FILE* f = std::fopen(InputPath().c_str(), "wb");
  if (f == nullptr) return 0;
  const bool written = std::fwrite(data, 1, size, f) == size;
  if (std::fclose(f) != 0 || !written) return 0;

  lx::TgaImage image;
  const bool loaded = lx::LoadTGA(&image, InputPath().c_str());
  if (loaded) {
    if (image.message[0] != '\0') std::abort();
  } else if (image.message[0] == '\0' || image.pixels != nullptr || image.handle != nullptr) {
    std::abort();
  }
  ExpectPixelsFit(image);
  // Converting a large image costs a new block of 4 bytes per pixel; small ones show the same faults.
  if (image.pixels != nullptr && uint64_t{image.width} * image.height <= (1u << 20)) {
    const bool was24 = image.bitsPerPixel == 24;
    if (lx::ConvertTo32Bits(&image) != was24) std::abort();
    if (image.bitsPerPixel != 32) std::abort();
    ExpectPixelsFit(image);
  }
  lx::ReleaseTGA(&image);
  return 0;
}
