// A layer in one colour held as its alpha bytes alone. The Shadow's body is drawn in the Shadow colour
// only, and BlendOver keeps the colour bytes that source and target share, so its extrusion and
// softening change nothing but alpha: on a byte plane they move a quarter of the memory.
#pragma once

#include <cstddef>
#include <cstdint>

#include "effects/kernel_path.h"
#include "image/pixel_view.h"

namespace lx {

struct AlphaPlane {
  uint8_t* alpha = nullptr;
  int32_t width = 0;
  int32_t height = 0;
  ptrdiff_t stride = 0;  // bytes from one row to the next

  bool empty() const { return alpha == nullptr || width < 1 || height < 1; }
  uint8_t* row(int32_t y) const { return alpha + y * stride; }
};

// Whether every pixel of `image` with non-zero alpha holds the same colour bytes, which then go to
// *colour (0 when no pixel has alpha).
bool OneColour(const PixelView& image, uint32_t* colour);

// The alpha bytes of `image` into `plane`, which has its size.
void TakeAlpha(const PixelView& image, const AlphaPlane& plane, KernelPath path = KernelPath::kWide);

// The plane's alpha back into `image` (of its size): a pixel with non-zero alpha becomes `colour` with
// that alpha; one with alpha 0 keeps its colour bytes.
void PutAlpha(const AlphaPlane& plane, uint32_t colour, const PixelView& image,
              KernelPath path = KernelPath::kWide);

// BlendOver's alpha law where `source`, its corner laid at (x, y) of `target`, overlaps it: for two
// layers of one colour, the alpha BlendOver gives (their colour stays).
void BlendAlphaOver(const AlphaPlane& source, const AlphaPlane& target, int32_t x, int32_t y,
                    KernelPath path = KernelPath::kWide);

// The stack blur with radius 1 on the plane, along rows and then down columns, `repeat` times over, edge
// pixels repeated: what the layer blur gives the alpha byte. rows holds 2 * width bytes of scratch.
void BlurAlphaRadiusOne(const AlphaPlane& plane, int repeat, uint8_t* rows,
                        KernelPath path = KernelPath::kWide);

}  // namespace lx
