// Before the Face is embossed, transparent pixels near the glyphs take the glyphs' colour, so that the
// relief's neighbourhood sees no dark fringe around the shapes.
#pragma once

#include <cstdint>
#include <vector>

#include "image/pixel_view.h"

namespace lx {

// Square colour bleed over `distance` pixels. Every non-transparent pixel lying at least `distance`
// pixels inside every edge of the image gives its colour bytes (0, 1, 2) to each transparent pixel of
// the square from -distance to +distance rows and columns around it; a transparent pixel keeps alpha 0
// and, when several such pixels reach it, takes the colour of the last one in row order. Linear in
// the pixels whatever the distance. Does nothing for a distance, width or height below 1. The pixels are
// the library's own work image: nothing here checks them. scratch is grown to two numbers per column
// (when it cannot be, the image is left as it is).
void SquareColourBleed(const PixelView& image, int32_t distance, std::vector<int32_t>& scratch);

}  // namespace lx
