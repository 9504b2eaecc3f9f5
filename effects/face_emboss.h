// The Face relief as the pipeline applies it to the Face layer, after its fill and before its blur.
#pragma once

#include <cstdint>

#include "image/pixel_view.h"

namespace lx {

class ChannelTint;
class EmbossFilter;

// In place on the Face layer: the square colour bleed over `bleedDistance` pixels (skipped unless it is
// above 0; the pipeline passes 2), the grey relief of `emboss`, then `tint`'s colouring unless its three
// factors are all 1.0. A null filter skips its own step; an empty view does nothing. The filters keep
// scratch rows, so one set must not serve two threads at once.
void FaceEmboss(const PixelView& image, int32_t bleedDistance, EmbossFilter* emboss, const ChannelTint* tint);

}  // namespace lx
