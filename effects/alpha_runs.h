// Finding where a line of pixels turns transparent or shown: the layers' effects walk runs of each.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixel_view.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace lx {

// The first index in [p, n) whose pixel is transparent, or not transparent, as `transparent` asks; n if
// there is none. Four pixels at a time where the build has SSE2: long runs are the common case.
inline ptrdiff_t FindAlpha(const uint32_t* line, ptrdiff_t p, ptrdiff_t n, bool transparent) {
#if defined(__SSE2__)
  const __m128i zero = _mm_setzero_si128();
  const int flip = transparent ? 0 : 0xF;  // turns the mask of transparent pixels into the one sought
  for (; p + 4 <= n; p += 4) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(line + p));
    const int hit = _mm_movemask_ps(_mm_castsi128_ps(_mm_cmpeq_epi32(_mm_srli_epi32(v, 24), zero))) ^ flip;
    if (hit != 0) return p + __builtin_ctz(static_cast<unsigned>(hit));
  }
#endif
  while (p < n && ((line[p] & kAlpha) == 0) != transparent) ++p;
  return p;
}

}  // namespace lx
