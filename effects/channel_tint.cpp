#include "effects/channel_tint.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace lx {

void ChannelTint::setFactors(double c0, double c1, double c2) {
  c_[0] = c0;
  c_[1] = c1;
  c_[2] = c2;
  for (int v = 0; v < 256; ++v) {
    a_[v] = static_cast<uint8_t>(static_cast<int>(0.11 * v));
    b_[v] = static_cast<uint8_t>(static_cast<int>(0.59 * v));
    c_lum_[v] = static_cast<uint8_t>(static_cast<int>(0.3 * v));
    t0_[v] = static_cast<uint8_t>(static_cast<int>(v * c2));
    t1_[v] = static_cast<uint8_t>(static_cast<int>(v * c1));
    t2_[v] = static_cast<uint8_t>(static_cast<int>(v * c0));
  }
}

void ChannelTint::apply(const PixelView& image) const {
  if (image.empty()) return;
  for (int32_t y = 0; y < image.height; ++y) {
    uint32_t* row = image.row(y);
    for (int32_t x = 0; x < image.width; ++x) {
#if defined(__SSE2__)
      // A zero pixel tints to zero (every table gives 0 for 0): groups of four are passed over.
      while ((x & 3) == 0 && x + 4 <= image.width &&
             _mm_movemask_epi8(_mm_cmpeq_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(row + x)),
                                               _mm_setzero_si128())) == 0xFFFF)
        x += 4;
      if (x >= image.width) break;
#endif
      uint8_t* p = reinterpret_cast<uint8_t*>(row + x);
      // Each truncated term is at most its weight times the byte, so lum stays below 256 for byte inputs.
      const unsigned lum = a_[p[0]] + b_[p[1]] + c_lum_[p[2]];
      if (lum < 256) {
        p[0] = t0_[lum];
        p[1] = t1_[lum];
        p[2] = t2_[lum];
      }
    }
  }
}

}  // namespace lx
