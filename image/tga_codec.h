// The byte level of Truevision TGA files (true colour, uncompressed or run-length encoded, 24 or 32 bits
// per pixel): the header's fields, the least number of bytes a claimed size needs, the run-length
// decoder and the header of the one layout written. No files, no allocation and no policy: the library's
// file loader and the programs each keep their own rules (flips, channel order, messages) on top.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lx {

constexpr size_t kTgaHeaderSize = 18;
constexpr size_t kTgaInfoOffset = 12;  // width, height, depth and descriptor: the header's last six bytes
constexpr size_t kTgaInfoSize = 6;
constexpr uint8_t kTgaUncompressedTrueColour = 2;
constexpr uint8_t kTgaCompressedTrueColour = 10;
constexpr uint8_t kTgaTopOrigin = 0x20;  // descriptor bit: the first row stored is the picture's top row

// The six info bytes taken apart; nothing is checked.
struct TgaInfo {
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t bitsPerPixel = 0;
  uint8_t descriptor = 0;
};

// The whole header taken apart; nothing is checked.
struct TgaHeader {
  uint8_t idLength = 0;  // bytes between the header and the pixel data
  uint8_t colourMapType = 0;
  uint8_t imageType = 0;
  TgaInfo info;
};

// `info` holds kTgaInfoSize bytes.
TgaInfo ParseTgaInfo(const uint8_t* info);
// `bytes` holds kTgaHeaderSize bytes.
TgaHeader ParseTgaHeader(const uint8_t* bytes);

// The fewest bytes of pixel data that can describe `pixelCount` pixels: all of them raw, or, compressed,
// one full run of 128 pixels per packet. A file holding less cannot be whole, whatever its header says,
// so it can be refused before anything of the claimed size is allocated.
uint64_t TgaLeastPixelBytes(bool compressed, uint64_t pixelCount, uint32_t bytesPerPixel);

// The most bytes DecodeTgaRle ever looks at for `pixelCount` pixels: one raw packet per pixel, and the
// pixel past the last that shows a packet overshooting. Reading more of a file than this never changes
// the outcome.
uint64_t TgaMostRlePixelBytes(uint64_t pixelCount, uint32_t bytesPerPixel);

enum class TgaRleResult {
  kDone,
  kPacketHeaderMissing,  // the data ended before the next packet
  kRawPixelsShort,       // a raw packet ended before one of its pixels
  kRunPixelShort,        // a run packet has no whole pixel
  kTooManyPixels,        // a packet reaches past the image
};

// Decodes run-length packets from `data` (`size` bytes) into `out` (`pixelCount` * `bytesPerPixel`
// bytes), each pixel's bytes in the file's order. Stops at the first fault, leaving the pixels before it
// written; within a raw packet a pixel the data does not hold is found before one the image has no room
// for, as a reader going pixel by pixel finds them. `bytesPerPixel` is 3 or 4.
TgaRleResult DecodeTgaRle(const uint8_t* data, size_t size, size_t pixelCount, size_t bytesPerPixel,
                          uint8_t* out);

// The header of the one layout written: uncompressed, 32 bits, 8 alpha bits, first row on top. Each
// side is stored in 16 bits; larger ones are the caller's to refuse.
void WriteTgaHeader32(uint32_t width, uint32_t height, uint8_t* header);

}  // namespace lx
