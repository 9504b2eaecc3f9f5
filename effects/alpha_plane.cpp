#include "effects/alpha_plane.h"

#include <algorithm>
#include <cstring>

#include "effects/short_window.h"
#include "effects/alpha_runs.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace lx {

namespace {

#if defined(__SSE2__)
inline __m128i Load(const void* p) {
  return _mm_loadu_si128(static_cast<const __m128i*>(p));
}
inline void Store(void* p, __m128i v) {
  _mm_storeu_si128(static_cast<__m128i*>(p), v);
}
#endif

// BlendOver's alpha: (256 - s) * d + 256 * s, shifted down by 8. A source of 0 gives the target, a
// source of 255 or a target of 0 the source, as BlendOver's shortcuts do.
inline uint8_t OverAlpha(uint32_t s, uint32_t d) {
  return static_cast<uint8_t>(((256u - s) * d + 256u * s) >> 8);
}

// The radius-one window 1, 2, 1 times the stack blur's multiplier for radius 1, shifted by its shift.
inline uint8_t WindowOne(uint32_t a, uint32_t b, uint32_t c) {
  const uint32_t mul = agg::stack_blur_tables<int>::g_stack_blur8_mul[1];
  const unsigned shr = agg::stack_blur_tables<int>::g_stack_blur8_shr[1];
  return static_cast<uint8_t>(((a + 2 * b + c) * mul) >> shr);
}

#if defined(__SSE2__)
// OverAlpha for sixteen pixels. The sum stays within 16 bits: at most 255 * 255 + 256 * 255.
inline __m128i OverAlphaSixteen(__m128i s, __m128i d) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i full = _mm_set1_epi16(256);
  const auto half = [&](__m128i s16, __m128i d16) {
    return _mm_srli_epi16(
        _mm_add_epi16(_mm_mullo_epi16(_mm_sub_epi16(full, s16), d16), _mm_slli_epi16(s16, 8)), 8);
  };
  return _mm_packus_epi16(half(_mm_unpacklo_epi8(s, zero), _mm_unpacklo_epi8(d, zero)),
                          half(_mm_unpackhi_epi8(s, zero), _mm_unpackhi_epi8(d, zero)));
}

// WindowOne for sixteen pixels; the multiplier moved up to a shift of 16 gives the same quotient as the
// high half of the product.
inline __m128i WindowOneSixteen(__m128i a, __m128i b, __m128i c) {
  const __m128i zero = _mm_setzero_si128();
  const uint32_t mul = agg::stack_blur_tables<int>::g_stack_blur8_mul[1];
  const unsigned shr = agg::stack_blur_tables<int>::g_stack_blur8_shr[1];
  const __m128i scale = _mm_set1_epi16(static_cast<short>(mul << (16 - shr)));
  const auto half = [&](__m128i a16, __m128i b16, __m128i c16) {
    return _mm_mulhi_epu16(_mm_add_epi16(_mm_add_epi16(a16, c16), _mm_slli_epi16(b16, 1)), scale);
  };
  return _mm_packus_epi16(
      half(_mm_unpacklo_epi8(a, zero), _mm_unpacklo_epi8(b, zero), _mm_unpacklo_epi8(c, zero)),
      half(_mm_unpackhi_epi8(a, zero), _mm_unpackhi_epi8(b, zero), _mm_unpackhi_epi8(c, zero)));
}
#endif

// One row in place from its copy in `line`, which has one more pixel repeated on each side.
void BlurRowOne(uint8_t* out, uint8_t* line, int32_t n, bool wide) {
  int32_t x = 0;
#if defined(__SSE2__)
  if (wide) {
    for (; x + 16 <= n; x += 16)
      Store(out + x, WindowOneSixteen(Load(line + x), Load(line + x + 1), Load(line + x + 2)));
  }
#endif
  for (; x < n; ++x) out[x] = WindowOne(line[x], line[x + 1], line[x + 2]);
}

}  // namespace

bool OneColour(const PixelView& image, uint32_t* colour) {
  bool found = false;
  uint32_t first = 0;
  for (int32_t y = 0; y < image.height; ++y) {
    const uint32_t* row = image.row(y);
    int32_t x = 0;
    if (!found) {
      x = static_cast<int32_t>(FindAlpha(row, 0, image.width, false));
      if (x == image.width) continue;
      found = true;
      first = row[x] & kColour;
    }
#if defined(__SSE2__)
    // A pixel fails when it has alpha and other colour bytes.
    const __m128i want = _mm_set1_epi32(static_cast<int>(first));
    const __m128i colourMask = _mm_set1_epi32(static_cast<int>(kColour));
    const __m128i zero = _mm_setzero_si128();
    for (; x + 4 <= image.width; x += 4) {
      const __m128i p = Load(row + x);
      const __m128i same = _mm_cmpeq_epi32(_mm_and_si128(p, colourMask), want);
      const __m128i clear = _mm_cmpeq_epi32(_mm_srli_epi32(p, 24), zero);
      if (_mm_movemask_epi8(_mm_or_si128(same, clear)) != 0xFFFF) return false;
    }
#endif
    for (; x < image.width; ++x) {
      if ((row[x] & kAlpha) != 0 && (row[x] & kColour) != first) return false;
    }
  }
  *colour = first;
  return true;
}

void TakeAlpha(const PixelView& image, const AlphaPlane& plane, KernelPath path) {
  [[maybe_unused]] const bool wide = path == KernelPath::kWide && HasWideKernels();
  for (int32_t y = 0; y < image.height; ++y) {
    const uint32_t* row = image.row(y);
    uint8_t* alpha = plane.row(y);
    int32_t x = 0;
#if defined(__SSE2__)
    if (wide) {
      // Sixteen alpha bytes, moved down to the low byte of each lane, packed twice.
      for (; x + 16 <= image.width; x += 16) {
        const __m128i a0 = _mm_srli_epi32(Load(row + x), 24), a1 = _mm_srli_epi32(Load(row + x + 4), 24);
        const __m128i a2 = _mm_srli_epi32(Load(row + x + 8), 24), a3 = _mm_srli_epi32(Load(row + x + 12), 24);
        Store(alpha + x, _mm_packus_epi16(_mm_packs_epi32(a0, a1), _mm_packs_epi32(a2, a3)));
      }
    }
#endif
    for (; x < image.width; ++x) alpha[x] = static_cast<uint8_t>(row[x] >> 24);
  }
}

void PutAlpha(const AlphaPlane& plane, uint32_t colour, const PixelView& image, KernelPath path) {
  [[maybe_unused]] const bool wide = path == KernelPath::kWide && HasWideKernels();
  for (int32_t y = 0; y < image.height; ++y) {
    uint32_t* row = image.row(y);
    const uint8_t* alpha = plane.row(y);
    int32_t x = 0;
#if defined(__SSE2__)
    if (wide) {
      // Four alpha bytes at a time moved up to the top byte of each lane.
      const __m128i zero = _mm_setzero_si128();
      const __m128i fill = _mm_set1_epi32(static_cast<int>(colour));
      const __m128i colourMask = _mm_set1_epi32(static_cast<int>(kColour));
      for (; x + 4 <= image.width; x += 4) {
        uint32_t four;
        std::memcpy(&four, alpha + x, 4);
        const __m128i bytes = _mm_cvtsi32_si128(static_cast<int>(four));
        const __m128i a = _mm_slli_epi32(_mm_unpacklo_epi16(_mm_unpacklo_epi8(bytes, zero), zero), 24);
        const __m128i clear = _mm_cmpeq_epi32(a, zero);
        const __m128i kept = _mm_and_si128(Load(row + x), colourMask);
        Store(row + x,
              _mm_or_si128(_mm_and_si128(clear, kept), _mm_andnot_si128(clear, _mm_or_si128(fill, a))));
      }
    }
#endif
    for (; x < image.width; ++x)
      row[x] = alpha[x] != 0 ? colour | uint32_t{alpha[x]} << 24 : row[x] & kColour;
  }
}

void BlendAlphaOver(const AlphaPlane& source, const AlphaPlane& target, int32_t x, int32_t y,
                    KernelPath path) {
  const int64_t left = std::max<int64_t>(x, 0), top = std::max<int64_t>(y, 0);
  const int64_t right = std::min<int64_t>(int64_t{x} + source.width, target.width);
  const int64_t bottom = std::min<int64_t>(int64_t{y} + source.height, target.height);
  if (right <= left || bottom <= top) return;
  const int32_t n = static_cast<int32_t>(right - left);
  [[maybe_unused]] const bool wide = path == KernelPath::kWide && HasWideKernels();
  for (int64_t row = top; row < bottom; ++row) {
    const uint8_t* s = source.row(static_cast<int32_t>(row - y)) + (left - x);
    uint8_t* d = target.row(static_cast<int32_t>(row)) + left;
    int32_t k = 0;
#if defined(__SSE2__)
    if (wide) {
      for (; k + 16 <= n; k += 16) {
        const __m128i four = Load(s + k);
        if (_mm_movemask_epi8(_mm_cmpeq_epi8(four, _mm_setzero_si128())) == 0xFFFF) continue;
        Store(d + k, OverAlphaSixteen(four, Load(d + k)));
      }
    }
#endif
    for (; k < n; ++k) d[k] = OverAlpha(s[k], d[k]);
  }
}

void BlurAlphaRadiusOne(const AlphaPlane& plane, int repeat, uint8_t* rows, KernelPath path) {
  if (plane.empty()) return;
  const int32_t n = plane.width, h = plane.height;
  [[maybe_unused]] const bool wide = path == KernelPath::kWide && HasWideKernels();
  uint8_t* line = rows;           // a row with its ends repeated, n + 2 bytes
  uint8_t* above = rows + n + 2;  // the row above as it was before its blur, n bytes
  for (int i = 0; i < repeat; ++i) {
    for (int32_t y = 0; y < h; ++y) {
      uint8_t* row = plane.row(y);
      std::memcpy(line + 1, row, static_cast<size_t>(n));
      line[0] = row[0];
      line[n + 1] = row[n - 1];
      BlurRowOne(row, line, n, wide);
    }
    // Down the columns: each row from the one above as it was, itself, and the one below, which is not
    // yet blurred; `above` keeps the old row as the new one replaces it.
    std::memcpy(above, plane.row(0), static_cast<size_t>(n));
    for (int32_t y = 0; y < h; ++y) {
      uint8_t* row = plane.row(y);
      const uint8_t* below = plane.row(std::min(y + 1, h - 1));
      int32_t x = 0;
#if defined(__SSE2__)
      if (wide) {
        for (; x + 16 <= n; x += 16) {
          const __m128i own = Load(row + x);
          Store(row + x, WindowOneSixteen(Load(above + x), own, Load(below + x)));
          Store(above + x, own);
        }
      }
#endif
      for (; x < n; ++x) {
        const uint8_t own = row[x];
        row[x] = WindowOne(above[x], own, below[x]);
        above[x] = own;
      }
    }
  }
}

}  // namespace lx
