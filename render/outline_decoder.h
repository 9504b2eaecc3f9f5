// Turns an outline block in the layout of GetGlyphOutline(GGO_NATIVE) into the path that the layers are
// drawn from, and measures it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixel_view.h"
#include "settings/outline_path.h"

namespace lx {

// Decodes the contours of `block` (size bytes; TTPOLYGONHEADER / TTPOLYCURVE records, 16.16 fixed
// coordinates, little-endian) and appends them to *path: per contour a move-to at the start point
// (rounded half up to whole units, its y negated when flipY), line-tos for line records, quadratic
// curves (control and end vertex) for spline records of either spline type, and a closing line-to back
// to the start unless the contour already ends there.
// Returns the whole-pixel rectangle around every vertex of *path (floor of the minimum, ceiling of the
// maximum). The block is only read, never past block + size. A malformed block (a contour header that
// does not fit, a cb below 16 or past the block, a type other than 24, a record header or point run
// that passes its contour's end) empties *path and returns the empty rectangle (0, 0, 0, 0), as do a
// null block or path and a size of 0.
IntRect DecodeOutlineBlock(const void* block, size_t size, bool flipY, OutlinePath* path);

}  // namespace lx
