#include "effects/stack_blur_line.h"

#include <agg_renderer_base.h>  // agg_blur.h uses it without including it
#include <agg_blur.h>

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace lx {

namespace {

using StackBlurTables = agg::stack_blur_tables<int>;

// The four bytes of a pixel in two 64-bit words of two 32-bit lanes each: bytes 0 and 2, bytes 1 and 3.
// Every running sum stays below 2^32 in its lane (at most 255 * 255^2), none of the steps below ever
// takes a lane below zero, and the tables are such that sum times multiplier stays below 2^32 as well, so
// one 64-bit operation does the work of two 32-bit ones with the same results.
inline uint64_t EvenBytes(uint32_t v) {
  return (v & 0xFFu) | (uint64_t{v & 0xFF0000u} << 16);
}
inline uint64_t OddBytes(uint32_t v) {
  return ((v >> 8) & 0xFFu) | (uint64_t{v >> 24} << 32);
}

// The running sums of the portable path.
struct ScalarSums {
  uint64_t sumEven = 0, sumOdd = 0, inEven = 0, inOdd = 0, outEven = 0, outOdd = 0;
  uint64_t mul = 0;
  unsigned shr = 0;

  // Moves the window one pixel on: `leaving` drops out on the left, `entering` comes in on the right,
  // and `centre` (the new centre) passes from the right half to the left.
  void step(uint32_t leaving, uint32_t entering, uint32_t centre) {
    sumEven -= outEven;
    sumOdd -= outOdd;
    outEven -= EvenBytes(leaving);
    outOdd -= OddBytes(leaving);
    inEven += EvenBytes(entering);
    inOdd += OddBytes(entering);
    sumEven += inEven;
    sumOdd += inOdd;
    outEven += EvenBytes(centre);
    outOdd += OddBytes(centre);
    inEven -= EvenBytes(centre);
    inOdd -= OddBytes(centre);
  }
  uint32_t output() const {
    const uint64_t even = sumEven * mul;
    const uint64_t odd = sumOdd * mul;
    return static_cast<uint32_t>(((even & 0xFFFFFFFFu) >> shr) | (((even >> 32) >> shr) << 16) |
                                 (((odd & 0xFFFFFFFFu) >> shr) << 8) | (((odd >> 32) >> shr) << 24));
  }
};

#if defined(__SSE2__)
// The same sums with the four bytes in the four 32-bit lanes of one register. The lanes wrap exactly as
// the scalar halves do (they never go below zero, and sum times multiplier stays below 2^32).
struct WideSums {
  __m128i sum, in, out, mul, shr;

  explicit WideSums(const ScalarSums& s)
      : sum(Lanes(s.sumEven, s.sumOdd)),
        in(Lanes(s.inEven, s.inOdd)),
        out(Lanes(s.outEven, s.outOdd)),
        mul(_mm_set1_epi32(static_cast<int>(s.mul))),
        shr(_mm_cvtsi32_si128(static_cast<int>(s.shr))) {}

  static __m128i Lanes(uint64_t even, uint64_t odd) {
    return _mm_set_epi32(static_cast<int>(odd >> 32), static_cast<int>(even >> 32),
                         static_cast<int>(odd & 0xFFFFFFFFu), static_cast<int>(even & 0xFFFFFFFFu));
  }
  static __m128i Expand(uint32_t p) {
    const __m128i zero = _mm_setzero_si128();
    return _mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(static_cast<int>(p)), zero), zero);
  }
  void step(uint32_t leaving, uint32_t entering, uint32_t centre) {
    const __m128i c = Expand(centre);
    sum = _mm_sub_epi32(sum, out);
    out = _mm_sub_epi32(out, Expand(leaving));
    in = _mm_add_epi32(in, Expand(entering));
    sum = _mm_add_epi32(sum, in);
    out = _mm_add_epi32(out, c);
    in = _mm_sub_epi32(in, c);
  }
  uint32_t output() const {
    const __m128i even = _mm_srl_epi64(_mm_mul_epu32(sum, mul), shr);
    const __m128i odd = _mm_srl_epi64(_mm_mul_epu32(_mm_srli_epi64(sum, 32), mul), shr);
    const __m128i lanes = _mm_or_si128(even, _mm_slli_epi64(odd, 32));
    const __m128i words = _mm_packs_epi32(lanes, lanes);
    return static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_packus_epi16(words, words)));
  }
};
#endif

// StackBlurLine with the sums of one path. AGG's stack blur of src[0..n) with radius r (1..254), edge pixels
// repeated: each output is the sum of the window weighted 1, 2, ..., r + 1, ..., 2, 1, times the table
// multiplier, shifted by the table shift. Results go to dst[0], dst[step], ...; bytes outside writeMask keep
// src's value. The running sums read the window from src by clamped index, so the cost per pixel does not
// depend on r. Outputs whose window holds only zero pixels are zero, as their own pixel already is: the
// stretches before the first and after the last non-zero pixel are left as they are.
template <class Sums>
void BlurLineWith(const uint32_t* src, ptrdiff_t n, unsigned r, uint32_t* dst, ptrdiff_t step,
                  uint32_t writeMask) {
  ptrdiff_t first = 0;
  while (first < n && src[first] == 0) ++first;
  if (first == n) return;
  ptrdiff_t lastSet = n - 1;
  while (src[lastSet] == 0) --lastSet;

  ScalarSums start;
  start.mul = StackBlurTables::g_stack_blur8_mul[r];
  start.shr = StackBlurTables::g_stack_blur8_shr[r];
  uint64_t &sumEven = start.sumEven, &sumOdd = start.sumOdd, &inEven = start.inEven, &inOdd = start.inOdd;
  uint64_t &outEven = start.outEven, &outOdd = start.outOdd;
  const ptrdiff_t last = n - 1;
  const ptrdiff_t radius = r;

  ptrdiff_t x = first - radius - 1;  // the first output whose window reaches a non-zero pixel
  if (x <= 0) {
    // The window at x = 0: the first pixel r + 1 times on the left (weights 1 .. r + 1), then
    // src[1 .. r] with weights r .. 1, those past the end being the last pixel again.
    x = 0;
    const uint64_t leftWeight = (r + 1) * (r + 2) / 2;
    sumEven = EvenBytes(src[0]) * leftWeight;
    sumOdd = OddBytes(src[0]) * leftWeight;
    outEven = EvenBytes(src[0]) * (r + 1);
    outOdd = OddBytes(src[0]) * (r + 1);
    const ptrdiff_t direct = std::min(radius, last);
    for (ptrdiff_t k = 1; k <= direct; ++k) {
      const uint64_t weight = static_cast<uint64_t>(radius + 1 - k);
      sumEven += EvenBytes(src[k]) * weight;
      sumOdd += OddBytes(src[k]) * weight;
      inEven += EvenBytes(src[k]);
      inOdd += OddBytes(src[k]);
    }
    if (radius > direct) {
      const uint64_t tail = static_cast<uint64_t>(radius - direct);
      sumEven += EvenBytes(src[last]) * (tail * (tail + 1) / 2);
      sumOdd += OddBytes(src[last]) * (tail * (tail + 1) / 2);
      inEven += EvenBytes(src[last]) * tail;
      inOdd += OddBytes(src[last]) * tail;
    }
  }
  // Past lastSet + r every window holds only zero pixels again.
  const ptrdiff_t end = std::min(last, lastSet + radius);
  Sums sums(start);
  // Where the run of equal pixels that ends at the window's leading edge begins (looked for no further
  // back than the window reaches). Once the run fills the whole window, the sums stay as they are for as
  // long as the run goes on, and so does the output: flat areas are written without the arithmetic.
  ptrdiff_t lead = std::min(x + radius, last);
  ptrdiff_t runStart = lead;
  while (runStart > std::max<ptrdiff_t>(x - radius, 0) && src[runStart - 1] == src[lead]) --runStart;
  dst += x * step;
  for (;; ++x) {
    *dst = (sums.output() & writeMask) | (src[x] & ~writeMask);
    if (x == end) break;
    dst += step;

    sums.step(src[std::max<ptrdiff_t>(x - radius, 0)], src[std::min(x + radius + 1, last)], src[x + 1]);
    if (x + radius + 1 <= last) {
      lead = x + radius + 1;
      if (src[lead] != src[lead - 1]) runStart = lead;
    }
    if (runStart <= std::max<ptrdiff_t>(x + 1 - radius, 0)) {
      // The window of x + 1 is flat, and so is every later one that ends inside the run.
      const uint32_t v = src[lead];
      ptrdiff_t runEnd = lead;
      while (runEnd < last && src[runEnd + 1] == v) ++runEnd;
      const ptrdiff_t stop = runEnd == last ? end : std::min(runEnd - radius, end);
      const uint32_t flat = (sums.output() & writeMask) | (v & ~writeMask);
      for (ptrdiff_t p = x + 1; p < stop; ++p) {
        *dst = flat;
        dst += step;
      }
      x = stop - 1;
      lead = std::min(stop + radius, last);
    }
  }
}

}  // namespace

bool HasWideKernels() {
#if defined(__SSE2__)
  return true;
#else
  return false;
#endif
}

void StackBlurLine(const uint32_t* src, ptrdiff_t n, unsigned r, uint32_t* dst, ptrdiff_t step,
                   uint32_t writeMask, KernelPath path) {
#if defined(__SSE2__)
  if (path == KernelPath::kWide) {
    BlurLineWith<WideSums>(src, n, r, dst, step, writeMask);
    return;
  }
#endif
  (void)path;
  BlurLineWith<ScalarSums>(src, n, r, dst, step, writeMask);
}

}  // namespace lx
