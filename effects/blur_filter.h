// Stack blur of 32-bit layers with a colour bleed into transparent pixels before each pass, so that
// shape edges do not darken. Keeps its scratch between calls.
#pragma once

#include <cstdint>
#include <vector>

#include "effects/effect_object.h"
#include "image/pixel_view.h"

namespace lx {

class BlurFilter : public EffectObject {
 public:
  // Blurs all four bytes; rx, ry are radii in pixels, clamped to 254; a radius of 0 skips its pass.
  void blur(const PixelView& image, unsigned rx, unsigned ry);
  // Blurs only the bytes whose flag is set (flags[i] for byte i), `repeat` times.
  void blurChannels(const PixelView& image, unsigned rx, unsigned ry, const bool flags[4], int repeat);

 private:
  std::vector<uint32_t> stack_;
  std::vector<uint32_t> line_;
};

}  // namespace lx
