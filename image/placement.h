// Where two placed images meet: the clipping shared by the rectangle copy and the layer blends.
#pragma once

#include <cstdint>

#include "image/pixel_view.h"

namespace lx {

// The overlap of a source laid on a target, in each image's own pixel coordinates.
struct Overlap {
  int32_t sourceX = 0, sourceY = 0;
  int32_t targetX = 0, targetY = 0;
  int32_t width = 0, height = 0;
};

// False, leaving *overlap alone, when either image is missing, the source's rectangle lies wholly
// beside the target's, or nothing of the source falls inside the target's width and height. The
// offsets come from the rectangles' corners; the extents from the views.
bool ClipPlacement(const PlacedView& source, const PlacedView& target, Overlap* overlap);

}  // namespace lx
