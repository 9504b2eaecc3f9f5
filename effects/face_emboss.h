// The Face relief as the pipeline applies it to the Face layer, after its fill and before its blur.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "image/pixel_view.h"

namespace lx {

class ChannelTint;
class EmbossFilter;

// The memory FaceEmboss works in, kept by its caller from one call to the next.
struct FaceEmbossScratch {
  std::vector<int32_t> bleed;
  std::vector<uint32_t> relief;

  // Gives back what holds more than maxBytes.
  void trim(size_t maxBytes);
};

// In place on the Face layer: the square colour bleed over `bleedDistance` pixels (skipped unless it is
// above 0; the pipeline passes 2), the grey relief of `emboss`, then `tint`'s colouring unless its three
// factors are all 1.0. A null filter skips its own step; an empty view does nothing. The steps work in
// `scratch`, so one scratch must not serve two threads at once.
void FaceEmboss(const PixelView& image, int32_t bleedDistance, const EmbossFilter* emboss,
                const ChannelTint* tint, FaceEmbossScratch& scratch);

}  // namespace lx
