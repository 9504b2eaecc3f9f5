// The stack blur's output at radius 1 or 2 summed straight from its window, which costs less there than
// the running sums: the row kernel and the vertical pass across rows share it.
#pragma once

#include <agg_renderer_base.h>  // agg_blur.h uses it without including it
#include <agg_blur.h>

#include <cstddef>
#include <cstdint>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace lx {

// Weight of tap d (0 .. 2 * kRadius) of the window: 1, 2, ..., kRadius + 1, ..., 2, 1.
template <int kRadius>
constexpr uint32_t ShortWindowWeight(int d) {
  return static_cast<uint32_t>(d <= kRadius ? d + 1 : 2 * kRadius + 1 - d);
}

// Each byte of the window's pixels weighted and summed, times AGG's table multiplier for kRadius,
// shifted by its table shift.
template <int kRadius>
inline uint32_t ShortWindow(const uint32_t (&window)[2 * kRadius + 1]) {
  static_assert(kRadius == 1 || kRadius == 2, "only the short radii");
  const uint32_t mul = agg::stack_blur_tables<int>::g_stack_blur8_mul[kRadius];
  const unsigned shr = agg::stack_blur_tables<int>::g_stack_blur8_shr[kRadius];
  uint32_t out = 0;
  for (unsigned shift = 0; shift < 32; shift += 8) {
    uint32_t sum = 0;
    for (int d = 0; d <= 2 * kRadius; ++d)
      sum += ((window[d] >> shift) & 0xFFu) * ShortWindowWeight<kRadius>(d);
    out |= ((sum * mul) >> shr) << shift;
  }
  return out;
}

#if defined(__SSE2__)
// ShortWindow for four pixels at once, tap d of each in four[d]. A window's byte sums stay below
// 255 * 9, so they fit 16-bit lanes; the table multiplier moved up to a shift of 16 gives the same
// quotient as the high half of the product. The taps are spelled out (the compiler would loop over
// them, building each weight at run time).
template <int kRadius, size_t... kTap>
inline __m128i ShortWindowFour(const __m128i (&four)[2 * kRadius + 1], std::index_sequence<kTap...>) {
  const uint32_t mul = agg::stack_blur_tables<int>::g_stack_blur8_mul[kRadius];
  const unsigned shr = agg::stack_blur_tables<int>::g_stack_blur8_shr[kRadius];
  const __m128i zero = _mm_setzero_si128();
  const __m128i scale = _mm_set1_epi16(static_cast<short>(mul << (16 - shr)));
  __m128i low = zero, high = zero;
  const auto add = [&](const __m128i& taken, uint32_t weight) {
    const __m128i w = _mm_set1_epi16(static_cast<short>(weight));
    low = _mm_add_epi16(low, _mm_mullo_epi16(_mm_unpacklo_epi8(taken, zero), w));
    high = _mm_add_epi16(high, _mm_mullo_epi16(_mm_unpackhi_epi8(taken, zero), w));
  };
  (add(four[kTap], ShortWindowWeight<kRadius>(static_cast<int>(kTap))), ...);
  return _mm_packus_epi16(_mm_mulhi_epu16(low, scale), _mm_mulhi_epu16(high, scale));
}

template <int kRadius>
inline __m128i ShortWindowFour(const __m128i (&four)[2 * kRadius + 1]) {
  return ShortWindowFour<kRadius>(four, std::make_index_sequence<2 * kRadius + 1>());
}
#endif

}  // namespace lx
