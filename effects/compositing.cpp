#include "effects/compositing.h"

#include <algorithm>

#include "image/placement.h"

namespace lx {

namespace {

// Both laws share the numerator s*256*sa + d*da*(256 - sa), written so that it is never negative.
// For 8-bit inputs it stays below 2^25 and never exceeds 255 * A for either law's A, so each
// quotient is again a byte.
inline uint32_t MixComponent(uint32_t s, uint32_t d, uint32_t sa, uint32_t da, uint32_t a) {
  return (s * 256u * sa + d * da * (256u - sa)) / a;
}

// Replaces each colour byte of `target` that differs from the source's; equal bytes keep their value
// without a division.
inline uint32_t MixColour(uint32_t source, uint32_t target, uint32_t sa, uint32_t da, uint32_t a) {
  uint32_t result = 0;
  for (int shift = 0; shift < 24; shift += 8) {
    const uint32_t s = (source >> shift) & 0xFFu;
    const uint32_t d = (target >> shift) & 0xFFu;
    result |= (s == d ? d : MixComponent(s, d, sa, da, a)) << shift;
  }
  return result;
}

// Walks the overlap from its last row up, each row left to right. `mix` handles only the pixels that
// need arithmetic: a transparent source is skipped after one test, and an opaque source or a
// transparent target takes the source word as it is.
template <typename Mix>
void Composite(const PlacedView& source, const PlacedView& target, Mix mix) {
  Overlap o;
  if (!ClipPlacement(source, target, &o)) return;
  for (int32_t y = o.height - 1; y >= 0; --y) {
    const uint32_t* from = source.view.row(o.sourceY + y) + o.sourceX;
    uint32_t* to = target.view.row(o.targetY + y) + o.targetX;
    for (int32_t x = 0; x < o.width; ++x) {
      const uint32_t s = from[x];
      if (s < 0x01000000u) continue;
      const uint32_t d = to[x];
      if (s >= 0xFF000000u || d < 0x01000000u) {
        to[x] = s;
        continue;
      }
      to[x] = mix(s, d);
    }
  }
}

}  // namespace

void BlendOver(const PlacedView& source, const PlacedView& target) {
  Composite(source, target, [](uint32_t s, uint32_t d) {
    const uint32_t sa = s >> 24;
    const uint32_t da = d >> 24;
    // With 0 < sa < 255 and da > 0, A lies in [256, 65534]: never 0, and A >> 8 never above 255.
    const uint32_t a = (256u - sa) * da + sa * 256u;
    return ((a >> 8) << 24) | MixColour(s, d, sa, da, a);
  });
}

void BlendOverClamped(const PlacedView& source, const PlacedView& target, uint32_t colourA,
                      uint32_t colourB) {
  const uint32_t alphaA = colourA >> 24;
  const uint32_t alphaB = colourB >> 24;
  const uint32_t hi = std::max(alphaA, alphaB);
  const uint32_t lo = std::min(alphaA, alphaB);
  Composite(source, target, [hi, lo](uint32_t s, uint32_t d) {
    const uint32_t sa = s >> 24;
    const uint32_t da = d >> 24;
    // The alphas add with one extra unit; with both alphas above 0, A is at least 512.
    const uint32_t a = (sa + da + 1u) * 256u - sa * da;
    uint32_t alpha = a > 65280u ? 255u : a >> 8;
    if (alpha < lo) alpha = lo;
    if (alpha > hi) alpha = hi;
    return (alpha << 24) | MixColour(s, d, sa, da, a);
  });
}

}  // namespace lx
