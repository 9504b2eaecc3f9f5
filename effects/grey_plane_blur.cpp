#include "effects/grey_plane_blur.h"

#include <algorithm>
#include <cstring>

#include "effects/short_window.h"
#include "effects/scratch_growth.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace lx {

namespace {

constexpr int32_t kRadius = static_cast<int32_t>(kGreyBlurRadius);
constexpr int32_t kReach = 2 * kRadius;  // the colour bleed's reach
// A padded row keeps kReach transparent pixels on each side, so the bleed's taps never leave it.
constexpr int32_t kPad = kReach;

uint32_t Multiplier() {
  return agg::stack_blur_tables<int>::g_stack_blur8_mul[kRadius];
}
unsigned Shift() {
  return agg::stack_blur_tables<int>::g_stack_blur8_shr[kRadius];
}

// The stack blur's output from taps[0 .. 2r], each `step` apart.
inline uint8_t Window(const uint8_t* taps, ptrdiff_t step) {
  uint32_t sum = 0;
  for (int32_t d = 0; d <= 2 * kRadius; ++d) sum += taps[d * step] * ShortWindowWeight<kRadius>(d);
  return static_cast<uint8_t>((sum * Multiplier()) >> Shift());
}

// What the bleed leaves at a pixel: its own grey when it is opaque, otherwise the grey of the last opaque
// pixel from kReach - 1 before to kReach after it, or its own when there is none. alpha and grey point
// at the pixel; taps from `from` to `to` (inclusive, relative to it) lie inside the line.
inline uint8_t Bled(const uint8_t* alpha, const uint8_t* grey, ptrdiff_t step, int32_t from, int32_t to) {
  if (alpha[0] != 0) return grey[0];
  uint8_t v = grey[0];
  for (int32_t d = from; d <= to; ++d) {
    if (alpha[d * step] != 0) v = grey[d * step];
  }
  return v;
}

#if defined(__SSE2__)
inline __m128i Load(const uint8_t* p) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

// Bled for sixteen pixels in a row whose taps from `from` to `to` lie inside the line: each opaque tap,
// taken in order, replaces what the ones before left; the pixel's own grey, when it is opaque, wins.
inline __m128i BledSixteen(const uint8_t* alpha, const uint8_t* grey, ptrdiff_t step,
                           int32_t from = -kReach + 1, int32_t to = kReach) {
  static_assert(kReach == 4, "the taps are spelled out for reach 4");
  const __m128i zero = _mm_setzero_si128();
  const __m128i own = Load(grey);
  __m128i v = own;
  const auto take = [&](int32_t d) {
    if (d < from || d > to) return;
    const __m128i clear = _mm_cmpeq_epi8(Load(alpha + d * step), zero);
    v = _mm_or_si128(_mm_and_si128(clear, v), _mm_andnot_si128(clear, Load(grey + d * step)));
  };
  take(-3);
  take(-2);
  take(-1);
  take(1);
  take(2);
  take(3);
  take(4);
  const __m128i ownClear = _mm_cmpeq_epi8(Load(alpha), zero);
  return _mm_or_si128(_mm_and_si128(ownClear, v), _mm_andnot_si128(ownClear, own));
}

// Window for sixteen pixels from five taps: weights 1, 2, 3, 2, 1. The byte sums stay below 255 * 9,
// and the multiplier moved up to a shift of 16 gives the same quotient as the high half of the product.
inline __m128i WindowSixteen(const uint8_t* const (&taps)[5], ptrdiff_t x, __m128i scale) {
  static_assert(kRadius == 2, "the weights are spelled out for radius 2");
  const __m128i zero = _mm_setzero_si128();
  const __m128i t0 = Load(taps[0] + x), t1 = Load(taps[1] + x), t2 = Load(taps[2] + x);
  const __m128i t3 = Load(taps[3] + x), t4 = Load(taps[4] + x);
  const auto half = [&](auto unpack) {
    const __m128i outer = _mm_add_epi16(unpack(t0, zero), unpack(t4, zero));
    const __m128i inner = _mm_add_epi16(unpack(t1, zero), unpack(t3, zero));
    const __m128i centre = unpack(t2, zero);
    const __m128i sum = _mm_add_epi16(_mm_add_epi16(outer, _mm_slli_epi16(inner, 1)),
                                      _mm_add_epi16(centre, _mm_slli_epi16(centre, 1)));
    return _mm_mulhi_epu16(sum, scale);
  };
  return _mm_packus_epi16(half([](__m128i a, __m128i b) { return _mm_unpacklo_epi8(a, b); }),
                          half([](__m128i a, __m128i b) { return _mm_unpackhi_epi8(a, b); }));
}

inline __m128i WindowScale() {
  return _mm_set1_epi16(static_cast<short>(Multiplier() << (16 - Shift())));
}

// Whether any of the sixteen bytes at p is set.
inline bool AnySet(const uint8_t* p) {
  return _mm_movemask_epi8(_mm_cmpeq_epi8(Load(p), _mm_setzero_si128())) != 0xFFFF;
}
#endif

// The wide path goes sixteen pixels at a time, the last sixteen overlapping the ones before (each pass
// reads one buffer and writes another, so a pixel worked twice comes out the same), and skips where no
// opaque pixel needs the result: the bleed where none lies within kRadius, the window where none is.
// Lines shorter than sixteen go the portable way.
#if defined(__SSE2__)
template <typename Work>
inline void Sixteens(int32_t n, Work work) {
  for (int32_t x = 0; x < n; x += 16) work(std::min(x, n - 16));
}
#endif

// Rows: each is copied between transparent margins, bled into a line with its end pixels repeated
// kRadius times beyond each end, and blurred back.
void BlurRows(const GreyPlanes& p, uint8_t* scratch, bool wide) {
  const int32_t n = p.width;
  uint8_t* alpha = scratch;
  uint8_t* grey = alpha + n + 2 * kPad;
  uint8_t* bled = grey + n + 2 * kPad;
  std::memset(alpha, 0, static_cast<size_t>(n) + 2 * kPad);
  std::memset(grey, 0, static_cast<size_t>(n) + 2 * kPad);
  const uint8_t* const taps[5] = {bled, bled + 1, bled + 2, bled + 3, bled + 4};
  for (int32_t y = 0; y < p.height; ++y) {
    std::memcpy(alpha + kPad, p.alphaRow(y), static_cast<size_t>(n));
    std::memcpy(grey + kPad, p.greyRow(y), static_cast<size_t>(n));
    uint8_t* out = p.greyRow(y);
#if defined(__SSE2__)
    if (wide) {
      Sixteens(n, [&](int32_t x) {
        const uint8_t* a = alpha + kPad + x;
        if (!AnySet(a - kRadius) && !AnySet(a + kRadius)) return;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(bled + kRadius + x), BledSixteen(a, grey + kPad + x, 1));
      });
      for (int32_t k = 0; k < kRadius; ++k) {
        bled[k] = bled[kRadius];
        bled[kRadius + n + k] = bled[kRadius + n - 1];
      }
      const __m128i scale = WindowScale();
      Sixteens(n, [&](int32_t x) {
        if (AnySet(alpha + kPad + x))
          _mm_storeu_si128(reinterpret_cast<__m128i*>(out + x), WindowSixteen(taps, x, scale));
      });
      continue;
    }
#endif
    for (int32_t x = 0; x < n; ++x)
      bled[kRadius + x] = Bled(alpha + kPad + x, grey + kPad + x, 1, -kReach + 1, kReach);
    for (int32_t k = 0; k < kRadius; ++k) {
      bled[k] = bled[kRadius];
      bled[kRadius + n + k] = bled[kRadius + n - 1];
    }
    for (int32_t x = 0; x < n; ++x) out[x] = Window(bled + x, 1);
  }
}

// Columns: the whole bled plane is made first, since the bleed of a row reads rows below it that the
// blur of the rows above would otherwise have changed; then each row is blurred from the bled rows
// around it, the edge rows repeated.
void BlurColumns(const GreyPlanes& p, uint8_t* bled, bool wide) {
  const int32_t n = p.width, h = p.height;
  const ptrdiff_t s = p.stride;
  const auto bledRow = [&](int32_t y) { return bled + static_cast<ptrdiff_t>(std::clamp(y, 0, h - 1)) * n; };
  for (int32_t y = 0; y < h; ++y) {
    const int32_t from = std::max(-kReach + 1, -y);
    const int32_t to = std::min(kReach, h - 1 - y);
    const uint8_t* alpha = p.alphaRow(y);
    const uint8_t* grey = p.greyRow(y);
    uint8_t* out = bled + static_cast<ptrdiff_t>(y) * n;
#if defined(__SSE2__)
    if (wide) {
      const int32_t first = std::max(y - kRadius, 0), last = std::min(y + kRadius, h - 1);
      Sixteens(n, [&](int32_t x) {
        const uint8_t* a = alpha + x;
        bool needed = false;
        for (int32_t r = first; r <= last && !needed; ++r) needed = AnySet(p.alphaRow(r) + x);
        if (!needed) return;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + x), BledSixteen(a, grey + x, s, from, to));
      });
      continue;
    }
#endif
    for (int32_t x = 0; x < n; ++x) out[x] = Bled(alpha + x, grey + x, s, from, to);
  }
  for (int32_t y = 0; y < h; ++y) {
    uint8_t* out = p.greyRow(y);
    const uint8_t* const taps[5] = {bledRow(y - 2), bledRow(y - 1), bledRow(y), bledRow(y + 1),
                                    bledRow(y + 2)};
#if defined(__SSE2__)
    if (wide) {
      const __m128i scale = WindowScale();
      const uint8_t* alpha = p.alphaRow(y);
      Sixteens(n, [&](int32_t x) {
        if (AnySet(alpha + x))
          _mm_storeu_si128(reinterpret_cast<__m128i*>(out + x), WindowSixteen(taps, x, scale));
      });
      continue;
    }
#endif
    for (int32_t x = 0; x < n; ++x) {
      const uint8_t column[5] = {taps[0][x], taps[1][x], taps[2][x], taps[3][x], taps[4][x]};
      out[x] = Window(column, 1);
    }
  }
}

}  // namespace

bool BlurGreyPlanes(const GreyPlanes& planes, std::vector<uint8_t>& scratch, KernelPath path) {
  if (planes.empty()) return true;
  const uint64_t width = static_cast<uint64_t>(planes.width);
  const uint64_t needed = std::max(width * static_cast<uint64_t>(planes.height), 3 * (width + 2 * kPad));
  if (!GrowScratch(scratch, needed)) return false;
  const bool wide = path == KernelPath::kWide && HasWideKernels() && planes.width >= 16;
  BlurRows(planes, scratch.data(), wide);
  BlurColumns(planes, scratch.data(), wide);
  return true;
}

}  // namespace lx
