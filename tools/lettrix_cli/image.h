// The programs' images are the composition layer's: 32-bit pixels as the library draws them (blue, green,
// red, alpha in memory, straight alpha), rows top to bottom with no padding.
#pragma once

#include "compose/pixel_image.h"

namespace lxt {

using lx::compose::Image;
using lx::compose::PackPixel;

}  // namespace lxt
