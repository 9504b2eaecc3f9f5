#include "effects/compositing.h"

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

// One pixel. `mix` handles only the pixels that need arithmetic: a transparent source is skipped after
// one test, and an opaque source or a transparent target takes the source word as it is.
template <typename Mix>
inline void CompositePixel(const uint32_t* from, uint32_t* to, int32_t x, Mix& mix) {
  const uint32_t s = from[x];
  if (s < 0x01000000u) return;
  const uint32_t d = to[x];
  if (s >= 0xFF000000u || d < 0x01000000u) {
    to[x] = s;
    return;
  }
  to[x] = mix(s, d);
}

#if defined(__SSE2__)
// BlendOver of four pixels whose colour bytes equal the target's, which MixColour keeps: only the
// alpha (A = (256 - sa) * da + sa * 256) >> 8 is new. A stays below 2^16, so 16-bit lanes hold it. A
// source alpha of 0 or 255, or a target alpha of 0, gives what the shortcuts of CompositePixel give.
inline __m128i SameColourOver(__m128i d, __m128i sa, __m128i da) {
  const __m128i a =
      _mm_add_epi16(_mm_mullo_epi16(_mm_sub_epi16(_mm_set1_epi32(256), sa), da), _mm_slli_epi32(sa, 8));
  const __m128i alpha = _mm_slli_epi32(_mm_srli_epi32(_mm_and_si128(a, _mm_set1_epi32(0xFFFF)), 8), 24);
  return _mm_or_si128(_mm_and_si128(d, _mm_set1_epi32(0x00FFFFFF)), alpha);
}

// BlendOver's law worked out for four pixels: alpha (A = (256 - sa) * da + sa * 256) >> 8 and each
// colour byte (s * 256 * sa + d * da * (256 - sa)) / A, the quotient taken in doubles. The numerator
// and A are whole numbers below 2^25 and 2^16, exact as doubles; the correctly rounded quotient is
// whole when the true one is, and otherwise stays at least 1 / A from the next whole number, which no
// rounding of a number below 256 reaches, so truncation gives the integer quotient. Bytes that source
// and target share come out unchanged, as MixColour keeps them. For lanes with 0 < sa < 255 and da > 0
// only.
inline __m128i OverFour(__m128i s, __m128i d) {
  const __m128i low = _mm_set1_epi32(0xFF);
  const __m128i sa = _mm_srli_epi32(s, 24), da = _mm_srli_epi32(d, 24);
  const __m128i rest = _mm_sub_epi32(_mm_set1_epi32(256), sa);
  // Lanes hold values below 2^15 in their low half: one 16-bit product each.
  const __m128i a = _mm_add_epi32(_mm_madd_epi16(rest, da), _mm_slli_epi32(sa, 8));
  const __m128d aLow = _mm_cvtepi32_pd(a), aHigh = _mm_cvtepi32_pd(_mm_srli_si128(a, 8));
  const __m128d restLow = _mm_cvtepi32_pd(rest), restHigh = _mm_cvtepi32_pd(_mm_srli_si128(rest, 8));
  __m128i out = _mm_slli_epi32(_mm_srli_epi32(a, 8), 24);
  for (int shift = 0; shift < 24; shift += 8) {
    const __m128i sc = _mm_and_si128(_mm_srli_epi32(s, shift), low);
    const __m128i dc = _mm_and_si128(_mm_srli_epi32(d, shift), low);
    const __m128i first = _mm_slli_epi32(_mm_madd_epi16(sc, sa), 8);  // s * 256 * sa
    const __m128i dd = _mm_madd_epi16(dc, da);                        // d * da
    const auto half = [](__m128i f, __m128i g, __m128d r, __m128d av) {
      const __m128d n = _mm_add_pd(_mm_cvtepi32_pd(f), _mm_mul_pd(_mm_cvtepi32_pd(g), r));
      return _mm_cvttpd_epi32(_mm_div_pd(n, av));
    };
    const __m128i q =
        _mm_unpacklo_epi64(half(first, dd, restLow, aLow),
                           half(_mm_srli_si128(first, 8), _mm_srli_si128(dd, 8), restHigh, aHigh));
    out = _mm_or_si128(out, _mm_slli_epi32(q, shift));
  }
  return out;
}

// Four pixels at a time for the two cases that fill most of a layer: a transparent source, which
// leaves the target, and an opaque source or transparent target, which takes the source. With
// kOverLaw, a group whose colour bytes all equal the target's (the stamps of an extrusion) gets
// BlendOver's alpha in one go, and any other group the whole law in one go, each lane that a shortcut
// decides taking that instead. Other groups of the clamped law go through CompositePixel one by one.
template <bool kOverLaw, typename Mix>
void CompositeRowWide(const uint32_t* from, uint32_t* to, int32_t width, Mix& mix) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i opaque = _mm_set1_epi32(0xFF);
  const __m128i colour = _mm_set1_epi32(0x00FFFFFF);
  int32_t x = 0;
  for (; x + 4 <= width; x += 4) {
    const __m128i s = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + x));
    const __m128i sourceAlpha = _mm_srli_epi32(s, 24);
    const __m128i skip = _mm_cmpeq_epi32(sourceAlpha, zero);
    if (_mm_movemask_epi8(skip) == 0xFFFF) continue;
    const __m128i d = _mm_loadu_si128(reinterpret_cast<const __m128i*>(to + x));
    const __m128i targetAlpha = _mm_srli_epi32(d, 24);
    const __m128i take =
        _mm_or_si128(_mm_cmpeq_epi32(sourceAlpha, opaque), _mm_cmpeq_epi32(targetAlpha, zero));
    if (_mm_movemask_epi8(_mm_or_si128(skip, take)) == 0xFFFF) {
      const __m128i kept = _mm_or_si128(_mm_and_si128(skip, d), _mm_andnot_si128(skip, s));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(to + x), kept);
      continue;
    }
    const bool sameColour =
        _mm_movemask_epi8(_mm_cmpeq_epi32(_mm_and_si128(_mm_xor_si128(s, d), colour), zero)) == 0xFFFF;
    if (!sameColour && !kOverLaw) {
      for (int32_t k = x; k < x + 4; ++k) CompositePixel(from, to, k, mix);
      continue;
    }
    const __m128i mixed = sameColour ? mix.sameColourFour(d, sourceAlpha, targetAlpha) : OverFour(s, d);
    const __m128i kept = _mm_or_si128(_mm_and_si128(skip, d), _mm_andnot_si128(skip, s));
    const __m128i shortcut = _mm_or_si128(skip, take);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + x),
                     _mm_or_si128(_mm_and_si128(shortcut, kept), _mm_andnot_si128(shortcut, mixed)));
  }
  for (; x < width; ++x) CompositePixel(from, to, x, mix);
}
#endif

// BlendOver's law for one pixel that needs arithmetic; for four whose colour bytes equal the target's.
struct OverMix {
  uint32_t operator()(uint32_t s, uint32_t d) const {
    const uint32_t sa = s >> 24;
    const uint32_t da = d >> 24;
    // With 0 < sa < 255 and da > 0, A lies in [256, 65534]: never 0, and A >> 8 never above 255.
    const uint32_t a = (256u - sa) * da + sa * 256u;
    return ((a >> 8) << 24) | MixColour(s, d, sa, da, a);
  }
#if defined(__SSE2__)
  __m128i sameColourFour(__m128i d, __m128i sa, __m128i da) const {
    return SameColourOver(d, sa, da);
  }
#endif
};

// BlendOverClamped's law, the result alpha held between `lo` and `hi`.
struct ClampedMix {
  uint32_t operator()(uint32_t s, uint32_t d) const {
    const uint32_t sa = s >> 24;
    const uint32_t da = d >> 24;
    // The alphas add with one extra unit; with both alphas above 0, A is at least 512.
    const uint32_t a = (sa + da + 1u) * 256u - sa * da;
    uint32_t alpha = a > 65280u ? 255u : a >> 8;
    if (alpha < lo) alpha = lo;
    if (alpha > hi) alpha = hi;
    return (alpha << 24) | MixColour(s, d, sa, da, a);
  }
#if defined(__SSE2__)
  // Four pixels whose colour bytes equal the target's keep them: only the alpha is worked out, as above
  // (A >> 8 reaches 256 only where A passes 65280, so the first limit is a minimum with 255).
  __m128i sameColourFour(__m128i d, __m128i sa, __m128i da) const {
    const __m128i a = _mm_sub_epi32(
        _mm_slli_epi32(_mm_add_epi32(_mm_add_epi32(sa, da), _mm_set1_epi32(1)), 8), _mm_madd_epi16(sa, da));
    __m128i alpha = _mm_min_epi16(_mm_srli_epi32(a, 8), _mm_set1_epi32(255));
    alpha = _mm_min_epi16(_mm_max_epi16(alpha, _mm_set1_epi32(static_cast<int>(lo))),
                          _mm_set1_epi32(static_cast<int>(hi)));
    return _mm_or_si128(_mm_and_si128(d, _mm_set1_epi32(0x00FFFFFF)), _mm_slli_epi32(alpha, 24));
  }
#endif
  uint32_t hi, lo;
};

ClampedMix ClampedBetween(uint32_t colourA, uint32_t colourB) {
  const uint32_t alphaA = colourA >> 24;
  const uint32_t alphaB = colourB >> 24;
  return {std::max(alphaA, alphaB), std::min(alphaA, alphaB)};
}

// A law's last pair of pixels and its result. Layers lie in runs of one colour over runs of one colour,
// and every pair worked out costs up to three divisions. (The pair of two zero pixels never reaches a
// law, so it stands for none.)
template <typename Mix>
struct RememberedMix {
  Mix& mix;
  uint32_t source = 0, target = 0, result = 0;

  uint32_t operator()(uint32_t s, uint32_t d) {
    if (s != source || d != target) {
      source = s;
      target = d;
      result = mix(s, d);
    }
    return result;
  }
#if defined(__SSE2__)
  __m128i sameColourFour(__m128i d, __m128i sa, __m128i da) const {
    return mix.sameColourFour(d, sa, da);
  }
#endif
};

template <bool kOverLaw, typename Mix>
void CompositeRow(const uint32_t* from, uint32_t* to, int32_t width, KernelPath path, Mix& mix) {
  RememberedMix<Mix> remembered{mix};
#if defined(__SSE2__)
  if (path == KernelPath::kWide) {
    CompositeRowWide<kOverLaw>(from, to, width, remembered);
    return;
  }
#else
  (void)path;
#endif
  for (int32_t x = 0; x < width; ++x) CompositePixel(from, to, x, remembered);
}

// Walks the overlap from its last row up, each row left to right.
template <bool kOverLaw, typename Mix>
void Composite(const PlacedView& source, const PlacedView& target, KernelPath path, Mix mix) {
  Overlap o;
  if (!ClipPlacement(source, target, &o)) return;
  for (int32_t y = o.height - 1; y >= 0; --y) {
    const uint32_t* from = source.view.row(o.sourceY + y) + o.sourceX;
    uint32_t* to = target.view.row(o.targetY + y) + o.targetX;
    CompositeRow<kOverLaw>(from, to, o.width, path, mix);
  }
}

// Composite of `source` onto `middle`, then BlendOver of `middle` onto `target`, one row of both steps
// at a time, so that the row of `middle` is still in the cache when it is read again. Only the part of
// `middle` that meets `target` takes the first step, which is all the second one reads. A source that
// does not lie exactly on `middle` takes the two steps one after the other.
template <bool kOverLaw, typename Mix>
void CompositeThrough(const PlacedView& source, const PlacedView& middle, const PlacedView& target, Mix mix) {
  const IntRect& s = source.rect;
  const IntRect& m = middle.rect;
  const bool aligned = s.left == m.left && s.top == m.top && s.right == m.right && s.bottom == m.bottom &&
                       source.view.width == middle.view.width && source.view.height == middle.view.height;
  if (!aligned) {
    Composite<kOverLaw>(source, middle, KernelPath::kWide, mix);
    Composite<true>(middle, target, KernelPath::kWide, OverMix{});
    return;
  }
  Overlap o;
  if (!ClipPlacement(middle, target, &o)) return;
  OverMix over;
  for (int32_t y = o.height - 1; y >= 0; --y) {
    const uint32_t* from = source.view.row(o.sourceY + y) + o.sourceX;
    uint32_t* through = middle.view.row(o.sourceY + y) + o.sourceX;
    uint32_t* to = target.view.row(o.targetY + y) + o.targetX;
    CompositeRow<kOverLaw>(from, through, o.width, KernelPath::kWide, mix);
    CompositeRow<true>(through, to, o.width, KernelPath::kWide, over);
  }
}

}  // namespace

void BlendOver(const PlacedView& source, const PlacedView& target, KernelPath path) {
  Composite<true>(source, target, path, OverMix{});
}

void BlendOverClamped(const PlacedView& source, const PlacedView& target, uint32_t colourA, uint32_t colourB,
                      KernelPath path) {
  Composite<false>(source, target, path, ClampedBetween(colourA, colourB));
}

void BlendOverThrough(const PlacedView& source, const PlacedView& middle, const PlacedView& target) {
  CompositeThrough<true>(source, middle, target, OverMix{});
}

void BlendOverClampedThrough(const PlacedView& source, const PlacedView& middle, const PlacedView& target,
                             uint32_t colourA, uint32_t colourB) {
  CompositeThrough<false>(source, middle, target, ClampedBetween(colourA, colourB));
}

}  // namespace lx
