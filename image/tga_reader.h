// Reading Truevision TGA files (true colour, uncompressed or run-length encoded, 24 or 32 bits per
// pixel) into a record whose pixels live in locked global memory. Nothing is printed: each failure
// leaves its text in the record's message.
#pragma once

#include <cstdint>
#include <cstdio>

#include "platform/platform.h"

namespace lx {

// Holds the longest loader message (67 characters) with room for a file name after it.
constexpr size_t kTgaMessageSize = 256;

// What a load fills in. Start from a value-initialised record; release it with ReleaseTGA.
struct TgaImage {
  uint8_t* pixels = nullptr;                // the locked block, or null
  uint32_t bitsPerPixel = 0;                // 24 or 32 after a good load
  uint32_t width = 0;                       // as the file says
  uint32_t height = 0;                      // as the file says
  uint32_t reserved = 0;                    // never touched by the loader: the caller's own use
  uint8_t descriptor = 0;                   // the file's image-descriptor byte, stored only (no flip is made)
  platform::MemoryHandle handle = nullptr;  // 0 or all ones: no block
  char message[kTgaMessageSize] = {};       // the last error, or empty after a successful LoadTGA
};

// What LoadTGA has read before it hands the open file to one of the two pixel readers.
struct TgaLoaderState {
  uint8_t header[12] = {};
  uint8_t info[6] = {};
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t bitsPerPixel = 0;
  uint32_t bytesPerPixel = 0;
  uint64_t imageSize = 0;  // width * height * bytesPerPixel
};

// Loads a type 2 or type 10 file. False for a null record or a refused or broken file, with the reason
// in image->message and no pixels left in the record; true with the message emptied otherwise. An
// uncompressed file whose info, size or pixel data is bad still counts as loaded (see
// LoadUncompressedTGA). A null file name fails as a file that cannot be opened. Pixel data larger
// than PixelBuffer::kMaxBytes counts as an allocation failure.
bool LoadTGA(TgaImage* image, const char* fileName);

// Reads the info bytes and the raw pixels of a type 2 file into a new block, bytes in the file's order
// (blue, green, red, alpha). False only for a null record or state; every other outcome, failures
// included, is true, with the failure's text left in the message.
bool LoadUncompressedTGA(TgaLoaderState* state, TgaImage* image, std::FILE* file);

// Reads the info bytes and decodes the packets of a type 10 file into a new block, exchanging bytes 0
// and 2 of every pixel (so the block holds red, green, blue, alpha). False, with the message set, on any
// read failure, a bad size or depth, a failed allocation, or more pixels than width * height.
bool LoadCompressedTGA(TgaLoaderState* state, TgaImage* image, std::FILE* file);

// Turns a 24-bit record with pixels into a 32-bit one: each pixel b0 b1 b2 becomes b0 b1 b2 FF in a new
// block that replaces the old; the record owns that block (its handle is kept, so ReleaseTGA frees it).
// True when it converted; false, leaving the record as it was, for any
// other record or a failed allocation.
bool ConvertTo32Bits(TgaImage* image);

// Unlocks and frees the record's block (if any); pixels and handle become 0.
void ReleaseTGA(TgaImage* image);

}  // namespace lx
