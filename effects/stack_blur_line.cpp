#include "effects/stack_blur_line.h"

#include <agg_renderer_base.h>  // agg_blur.h uses it without including it
#include <agg_blur.h>

#include <algorithm>

#include "effects/short_window.h"

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

// The running sums of the portable path. A Value is one pixel's bytes, or a sum of them, as the two
// words of EvenBytes and OddBytes.
struct ScalarSums {
  struct Value {
    uint64_t even = 0, odd = 0;
  };
  static Value Load(uint32_t p) { return {EvenBytes(p), OddBytes(p)}; }
  static Value Add(Value a, Value b) { return {a.even + b.even, a.odd + b.odd}; }
  static Value Scale(Value a, uint64_t k) { return {a.even * k, a.odd * k}; }

  Value sum, in, out;
  uint64_t mul;
  unsigned shr;

  ScalarSums(Value s, Value i, Value o, uint32_t m, unsigned sh) : sum(s), in(i), out(o), mul(m), shr(sh) {}

  // Moves the window one pixel on: `leaving` drops out on the left, `entering` comes in on the right,
  // and `centre` (the new centre) passes from the right half to the left.
  void step(uint32_t leaving, uint32_t entering, uint32_t centre) {
    sum.even -= out.even;
    sum.odd -= out.odd;
    out.even -= EvenBytes(leaving);
    out.odd -= OddBytes(leaving);
    in.even += EvenBytes(entering);
    in.odd += OddBytes(entering);
    sum.even += in.even;
    sum.odd += in.odd;
    out.even += EvenBytes(centre);
    out.odd += OddBytes(centre);
    in.even -= EvenBytes(centre);
    in.odd -= OddBytes(centre);
  }
  uint32_t output() const {
    const uint64_t even = sum.even * mul;
    const uint64_t odd = sum.odd * mul;
    return static_cast<uint32_t>(((even & 0xFFFFFFFFu) >> shr) | (((even >> 32) >> shr) << 16) |
                                 (((odd & 0xFFFFFFFFu) >> shr) << 8) | (((odd >> 32) >> shr) << 24));
  }
};

#if defined(__SSE2__)
// The same sums with the four bytes in the four 32-bit lanes of one register. The lanes wrap exactly as
// the scalar halves do (they never go below zero, and sum times multiplier stays below 2^32).
struct WideSums {
  using Value = __m128i;
  static __m128i Load(uint32_t p) {
    const __m128i zero = _mm_setzero_si128();
    return _mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(static_cast<int>(p)), zero), zero);
  }
  static __m128i Add(__m128i a, __m128i b) { return _mm_add_epi32(a, b); }
  static __m128i Scale(__m128i a, uint64_t k) {
    const __m128i m = _mm_set1_epi32(static_cast<int>(k));
    const __m128i even = _mm_mul_epu32(a, m);
    const __m128i odd = _mm_mul_epu32(_mm_srli_epi64(a, 32), m);
    return _mm_or_si128(_mm_srli_epi64(_mm_slli_epi64(even, 32), 32), _mm_slli_epi64(odd, 32));
  }

  __m128i sum, in, out, mul, shr;

  WideSums(__m128i s, __m128i i, __m128i o, uint32_t m, unsigned sh)
      : sum(s),
        in(i),
        out(o),
        mul(_mm_set1_epi32(static_cast<int>(m))),
        shr(_mm_cvtsi32_si128(static_cast<int>(sh))) {}

  void step(uint32_t leaving, uint32_t entering, uint32_t centre) {
    const __m128i c = Load(centre);
    sum = _mm_sub_epi32(sum, out);
    out = _mm_sub_epi32(out, Load(leaving));
    in = _mm_add_epi32(in, Load(entering));
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

// The first index in [from, to) whose pixel is not v; `to` if there is none.
inline ptrdiff_t FirstOther(const uint32_t* src, ptrdiff_t from, ptrdiff_t to, uint32_t v) {
#if defined(__SSE2__)
  const __m128i want = _mm_set1_epi32(static_cast<int>(v));
  for (; from + 4 <= to; from += 4) {
    const __m128i four = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + from));
    const int other = ~_mm_movemask_ps(_mm_castsi128_ps(_mm_cmpeq_epi32(four, want))) & 0xF;
    if (other != 0) return from + __builtin_ctz(static_cast<unsigned>(other));
  }
#endif
  while (from < to && src[from] == v) ++from;
  return from;
}

// The last index in (downTo, from] whose pixel is not v; downTo if there is none.
inline ptrdiff_t LastOther(const uint32_t* src, ptrdiff_t from, ptrdiff_t downTo, uint32_t v) {
#if defined(__SSE2__)
  const __m128i want = _mm_set1_epi32(static_cast<int>(v));
  for (; from - 4 >= downTo; from -= 4) {
    const __m128i four = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + from - 3));
    const int other = ~_mm_movemask_ps(_mm_castsi128_ps(_mm_cmpeq_epi32(four, want))) & 0xF;
    if (other != 0) return from - 3 + (31 - __builtin_clz(static_cast<unsigned>(other)));
  }
#endif
  while (from > downTo && src[from] == v) --from;
  return from;
}

// StackBlurLine with the sums of one path. AGG's stack blur of src[0..n) with radius r (1..254), edge pixels
// repeated: each output is the sum of the window weighted 1, 2, ..., r + 1, ..., 2, 1, times the table
// multiplier, shifted by the table shift. Results go to dst[0], dst[step], ...; bytes outside writeMask keep
// src's value. The running sums read the window from src by clamped index, so the cost per pixel does not
// depend on r. Outputs whose window holds only zero pixels are zero, as their own pixel already is: the
// stretches before the first and after the last non-zero pixel are left as they are. kWholePixel says
// writeMask has every bit set, which spares the masking of every output.
template <class Sums, bool kWholePixel>
void BlurLineWith(const uint32_t* src, ptrdiff_t n, unsigned r, uint32_t* dst, ptrdiff_t step,
                  uint32_t writeMask) {
  using Value = typename Sums::Value;
  const ptrdiff_t first = FirstOther(src, 0, n, 0);
  if (first == n) return;
  const ptrdiff_t lastSet = LastOther(src, n - 1, first, 0);

  const ptrdiff_t last = n - 1;
  const ptrdiff_t radius = r;
  Value sum = Sums::Load(0), in = sum, out = sum;
  ptrdiff_t x = first - radius - 1;  // the first output whose window reaches a non-zero pixel
  if (x <= 0) {
    // The window at x = 0: the first pixel r + 1 times on the left (weights 1 .. r + 1), then
    // src[1 .. r] with weights r .. 1, those past the end being the last pixel again. The weights of
    // src[1 .. direct] are tail + direct .. tail + 1: a running total of running sums gives the
    // direct .. 1 part without a multiplication per pixel.
    x = 0;
    const ptrdiff_t direct = std::min(radius, last);
    const uint64_t tail = static_cast<uint64_t>(radius - direct);
    Value total = sum;
    for (ptrdiff_t k = 1; k <= direct; ++k) {
      in = Sums::Add(in, Sums::Load(src[k]));
      total = Sums::Add(total, in);
    }
    const Value head = Sums::Load(src[0]);
    const Value end = Sums::Load(src[last]);
    sum = Sums::Add(Sums::Add(Sums::Scale(head, (r + 1) * (r + 2) / 2), total),
                    Sums::Add(Sums::Scale(in, tail), Sums::Scale(end, tail * (tail + 1) / 2)));
    in = Sums::Add(in, Sums::Scale(end, tail));
    out = Sums::Scale(head, r + 1);
  }
  Sums sums(sum, in, out, StackBlurTables::g_stack_blur8_mul[r], StackBlurTables::g_stack_blur8_shr[r]);
  // Past lastSet + r every window holds only zero pixels again.
  const ptrdiff_t end = std::min(last, lastSet + radius);
  // Where the run of equal pixels that ends at the window's leading edge begins (looked for no further
  // back than the window reaches). Once the run fills the whole window, the sums stay as they are for as
  // long as the run goes on, and so does the output: flat areas are written without the arithmetic.
  ptrdiff_t lead = std::min(x + radius, last);
  ptrdiff_t runStart = LastOther(src, lead - 1, std::max<ptrdiff_t>(x - radius, 0) - 1, src[lead]) + 1;
  dst += x * step;
  for (;; ++x) {
    *dst = kWholePixel ? sums.output() : (sums.output() & writeMask) | (src[x] & ~writeMask);
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
      const ptrdiff_t runEnd = FirstOther(src, lead + 1, last + 1, v) - 1;
      const ptrdiff_t stop = runEnd == last ? end : std::min(runEnd - radius, end);
      const uint32_t flat = kWholePixel ? sums.output() : (sums.output() & writeMask) | (v & ~writeMask);
      for (ptrdiff_t p = x + 1; p < stop; ++p) {
        *dst = flat;
        dst += step;
      }
      x = stop - 1;
      lead = std::min(stop + radius, last);
    }
  }
}

#if defined(__SSE2__)
// Radii 1 and 2 on the wide path, where the running sums cost more than the window itself: each output is
// summed straight from its window, four at a time where the window lies inside the line. Outputs go to
// dst[0 .. n), over the same stretch as BlurLineWith writes them.
template <int kRadius, bool kWholePixel>
void BlurShortLine(const uint32_t* src, ptrdiff_t n, uint32_t* dst, uint32_t writeMask) {
  const ptrdiff_t first = FirstOther(src, 0, n, 0);
  if (first == n) return;
  const ptrdiff_t lastSet = LastOther(src, n - 1, first, 0);
  const ptrdiff_t last = n - 1;
  const ptrdiff_t end = std::min(last, lastSet + kRadius);
  const auto single = [&](ptrdiff_t x) {
    uint32_t window[2 * kRadius + 1];
    for (int d = 0; d <= 2 * kRadius; ++d) window[d] = src[std::clamp<ptrdiff_t>(x + d - kRadius, 0, last)];
    const uint32_t out = ShortWindow<kRadius>(window);
    dst[x] = kWholePixel ? out : (out & writeMask) | (src[x] & ~writeMask);
  };
  const __m128i put = _mm_set1_epi32(static_cast<int>(writeMask));
  ptrdiff_t x = std::max<ptrdiff_t>(first - kRadius - 1, 0);
  for (; x < kRadius && x <= end; ++x) single(x);
  for (; x + 3 <= end && x + 3 + kRadius <= last; x += 4) {
    __m128i four[2 * kRadius + 1];
    for (int d = 0; d <= 2 * kRadius; ++d) {
      four[d] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + x + d - kRadius));
    }
    __m128i out = ShortWindowFour<kRadius>(four);
    if (!kWholePixel) out = _mm_or_si128(_mm_and_si128(out, put), _mm_andnot_si128(put, four[kRadius]));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + x), out);
  }
  for (; x <= end; ++x) single(x);
}

template <int kRadius>
void BlurShortLine(const uint32_t* src, ptrdiff_t n, uint32_t* dst, uint32_t writeMask) {
  if (writeMask == ~uint32_t{0}) {
    BlurShortLine<kRadius, true>(src, n, dst, writeMask);
  } else {
    BlurShortLine<kRadius, false>(src, n, dst, writeMask);
  }
}
#endif

template <class Sums>
void BlurLineWith(const uint32_t* src, ptrdiff_t n, unsigned r, uint32_t* dst, ptrdiff_t step,
                  uint32_t writeMask) {
  if (writeMask == ~uint32_t{0}) {
    BlurLineWith<Sums, true>(src, n, r, dst, step, writeMask);
  } else {
    BlurLineWith<Sums, false>(src, n, r, dst, step, writeMask);
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
    // Along rows only: written one by one down a column, the short kernel loses what skipping flat runs
    // saves.
    if (r == 1 && step == 1) {
      BlurShortLine<1>(src, n, dst, writeMask);
    } else if (r == 2 && step == 1) {
      BlurShortLine<2>(src, n, dst, writeMask);
    } else {
      BlurLineWith<WideSums>(src, n, r, dst, step, writeMask);
    }
    return;
  }
#endif
  (void)path;
  BlurLineWith<ScalarSums>(src, n, r, dst, step, writeMask);
}

}  // namespace lx
