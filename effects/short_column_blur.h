// The vertical pass of the layer blur at radius 1 or 2, worked across rows instead of down columns.
#pragma once

#include <cstdint>
#include <vector>

#include "effects/kernel_path.h"
#include "image/pixel_view.h"

namespace lx {

// What BleedLine with reach 2r followed by StackBlurLine with radius r gives down every column of the
// image, for r of 1 or 2: each transparent pixel first takes the colour bytes of the last opaque pixel
// from 2r - 1 rows above to 2r rows below it, then each pixel in the stretch StackBlurLine writes gets
// the window's weighted sum in the bytes of writeMask and its bled value in the others. At these radii
// a window is a handful of rows, so whole rows are summed at once and memory is walked row by row.
// scratch is grown to hold a block of bled columns (at most max(2^16, 16 * height) pixels, plus four
// numbers per column); false, with the image untouched, when that memory cannot be had or r is not 1
// or 2.
bool ShortColumnBlur(const PixelView& image, unsigned r, uint32_t writeMask, std::vector<uint32_t>& scratch,
                     KernelPath path);

}  // namespace lx
