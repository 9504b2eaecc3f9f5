// Laying one finished layer onto another: straight-alpha blends on a 256 scale, placed by the images'
// rectangles and clipped to both.
#pragma once

#include <cstdint>

#include "effects/kernel_path.h"
#include "image/pixel_view.h"

namespace lx {

// Source over target where their rectangles overlap; the target's alpha never exceeds 255.
void BlendOver(const PlacedView& source, const PlacedView& target, KernelPath path = KernelPath::kWide);

// As BlendOver with the saturating alpha law; the result alpha is held between the alpha bytes
// (bits 24-31) of the two colours.
void BlendOverClamped(const PlacedView& source, const PlacedView& target, uint32_t colourA, uint32_t colourB,
                      KernelPath path = KernelPath::kWide);

// BlendOver of `source` onto `middle`, then of `middle` onto `target`: the target gets the pixels of the
// two calls one after the other, in one walk over the rows. `middle` holds the first step's result only
// where it meets `target`.
void BlendOverThrough(const PlacedView& source, const PlacedView& middle, const PlacedView& target);

// The same with BlendOverClamped's law, between the alpha bytes of the two colours, for the first step.
void BlendOverClampedThrough(const PlacedView& source, const PlacedView& middle, const PlacedView& target,
                             uint32_t colourA, uint32_t colourB);

}  // namespace lx
