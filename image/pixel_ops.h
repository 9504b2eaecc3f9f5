// Small helpers on 32-bit pixels and whole images.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixel_view.h"

namespace lx {

// Straight-alpha blend of one pixel (see the implementation for the exact law).
uint32_t BlendPixel(uint32_t source, uint32_t destination);

// Exchanges bytes 0 and 2: a packed colour (red low) becomes a pixel (blue low) and back.
inline uint32_t SwapRedBlue(uint32_t v) {
  return (v & 0xFF00FF00u) | ((v & 0xFFu) << 16) | ((v >> 16) & 0xFFu);
}

// Swaps row k with row height - 1 - k of a block of width x height pixels, which must be readable and
// writable; false for a null block or a size below 1.
bool FlipVertically(void* pixels, int32_t width, int32_t height);

enum class CopyMode { kCopy, kAlphaMask, kBlend };
// Copies the overlap of a placed source into destination (placed at its rect); false when nothing overlaps.
bool CopyRectangle(const PlacedView& source, const PlacedView& destination, CopyMode mode);

// Whole-image copy of `count` pixels (the blocks must not overlap); the widest moves the processor has.
// Null pointers or a zero count do nothing.
void CopyPixels(uint32_t* destination, const uint32_t* source, size_t count);

// Writes an uncompressed 32-bit top-left-origin TGA of the pixels as they are in memory.
bool WriteTGA(const void* pixels, int32_t width, int32_t height, const char* fileName);

}  // namespace lx
