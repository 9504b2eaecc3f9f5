// Stack blur of 32-bit layers with a colour bleed into transparent pixels before each pass, so that
// shape edges do not darken. Keeps its scratch between calls.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "effects/effect_object.h"
#include "image/pixel_view.h"

namespace lx {

class BlurFilter : public EffectObject {
 public:
  // Largest radius of the stack-blur tables; larger radii act as this one.
  static constexpr unsigned kMaxRadius = 254;

  // Blurs all four bytes of every pixel in place. rx and ry are the horizontal and vertical radii in
  // pixels (clamped to 254); a radius of 0 skips its pass. Before each pass, every transparent pixel
  // (alpha 0) lying from 2r before to 2r - 1 after an opaque one along the pass takes the colour bytes
  // of the last such pixel, so that blurred edges keep the shape's colour. The view's stride must be a
  // multiple of 4. An empty view, both radii 0, or scratch memory that cannot be had make the call do
  // nothing. Time is linear in the pixels at any radius; the scratch is kept for the next call, so one
  // object must not blur on two threads at once.
  void blur(const PixelView& image, unsigned rx, unsigned ry);

  // The same passes, `repeat` times over, storing the blurred value only into byte i of each pixel
  // when flags[i] is true (flags[3] is the alpha). The colour bleed of each pass still gives transparent
  // pixels the colour of their opaque neighbours, whatever the flags. repeat < 1 or a null flags
  // pointer does nothing.
  void blurChannels(const PixelView& image, unsigned rx, unsigned ry, const bool flags[4], int repeat);

  // At least `bytes` bytes of scratch for work done beside the blur, kept for the next call (and then
  // overwritten); null when the memory cannot be had.
  uint8_t* byteScratch(size_t bytes);

  // Gives back the scratch when it holds more than maxBytes.
  void trimScratch(size_t maxBytes);

 private:
  void run(const PixelView& image, unsigned rx, unsigned ry, uint32_t writeMask, int repeat);
  void horizontalPass(const PixelView& image, unsigned r, uint32_t writeMask);
  void verticalPass(const PixelView& image, unsigned r, uint32_t writeMask);

  // One row, a block of gathered columns, or a block of bled columns of the image being blurred.
  std::vector<uint32_t> lines_;
  std::vector<uint8_t> bytes_;
};

}  // namespace lx
