// The concrete AGG drawing pipeline of the layer renderers: the blend law with which a rasterised span
// lands on a layer image, the 32-bit blue-green-red-alpha pixel format over it, and the renderer,
// scanline, rasterizer and span allocator types that every drawing routine shares. This is the only
// place that names them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <agg_basics.h>
#include <agg_color_rgba.h>
#include <agg_pixfmt_rgba.h>
#include <agg_renderer_base.h>
#include <agg_renderer_scanline.h>
#include <agg_rendering_buffer.h>
#include <agg_scanline_u.h>
#include <agg_span_allocator.h>

#include "effects/layer_rasterizer.h"

namespace lx {

// How a span colour (r, g, b, a) with coverage k lands on a layer pixel. The span colour is added
// unscaled to the attenuated destination; a transparent destination is overwritten rather than blended,
// so a layer drawn on a cleared image keeps its colour bytes exactly whatever the coverage, and only the
// alpha carries the anti-aliasing. With the effective alpha a' = a * (k + 1) >> 8:
//   a' = 0: nothing changes;  a' = 255: the pixel becomes (r, g, b, 255);
//   destination alpha 0: the pixel becomes (r, g, b, a');
//   otherwise colour = (D * (255 - a') + (k + 1) * s) >> 8, alpha = 255 - ((255 - A) * (255 - a') >> 8).
// At full coverage this is colour = (D * (255 - a) >> 8) + s. A colour byte is held at 255 when a span
// colour brighter than its own alpha would carry it past.
struct LayerBlender : agg::conv_rgba_pre<agg::rgba8, agg::order_bgra> {
  typedef agg::rgba8 color_type;
  typedef agg::order_bgra order_type;
  typedef color_type::value_type value_type;
  typedef color_type::calc_type calc_type;
  typedef color_type::long_type long_type;

  static AGG_INLINE void blend_pix(value_type* p, unsigned cr, unsigned cg, unsigned cb, unsigned alpha,
                                   unsigned cover) {
    const unsigned k1 = cover + 1;
    const unsigned a = (alpha * k1) >> 8;
    if (a == 0) return;
    if (a == 255 || p[order_type::A] == 0) {
      p[order_type::R] = value_type(cr);
      p[order_type::G] = value_type(cg);
      p[order_type::B] = value_type(cb);
      p[order_type::A] = value_type(a);
      return;
    }
    const unsigned keep = 255 - a;
    p[order_type::R] = Saturate((p[order_type::R] * keep + k1 * cr) >> 8);
    p[order_type::G] = Saturate((p[order_type::G] * keep + k1 * cg) >> 8);
    p[order_type::B] = Saturate((p[order_type::B] * keep + k1 * cb) >> 8);
    p[order_type::A] = value_type(255 - (((255 - p[order_type::A]) * keep) >> 8));
  }

  // Full coverage: the rule above with k = 255, which it reproduces exactly.
  static AGG_INLINE void blend_pix(value_type* p, unsigned cr, unsigned cg, unsigned cb, unsigned alpha) {
    blend_pix(p, cr, cg, cb, alpha, 255);
  }

 private:
  static AGG_INLINE value_type Saturate(unsigned v) { return value_type(v > 255 ? 255 : v); }
};

using LayerColour = agg::rgba8;

// Lays one colour over len pixels (blue, green, red, alpha bytes) with the coverages given, by the rule
// of LayerBlender. Full coverage in an opaque colour, most of a large shape, stores the pixel whole.
// Where the build has SSE2, four pixels that are all transparent, as a fresh layer is, take the colour
// with the alpha each coverage gives (and keep their value where that alpha is 0) in one go.
inline void BlendSolidSpan(agg::int8u* p, int len, const LayerColour& c, const agg::int8u* covers) {
  const agg::int8u bytes[4] = {c.b, c.g, c.r, c.a};
  const bool opaque = c.a == 255;
  int i = 0;
#if defined(__SSE2__)
  const __m128i zero = _mm_setzero_si128();
  const __m128i colour =
      _mm_set1_epi32(static_cast<int>(uint32_t{c.b} | uint32_t{c.g} << 8 | uint32_t{c.r} << 16));
  const __m128i alpha = _mm_set1_epi32(c.a);
  for (; i + 4 <= len; i += 4) {
    const __m128i target = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 4 * i));
    if (_mm_movemask_epi8(_mm_cmpeq_epi32(_mm_srli_epi32(target, 24), zero)) != 0xFFFF) {
      for (int k = i; k < i + 4; ++k) LayerBlender::blend_pix(p + 4 * k, c.r, c.g, c.b, c.a, covers[k]);
      continue;
    }
    uint32_t four;
    std::memcpy(&four, covers + i, 4);
    const __m128i cover =
        _mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(static_cast<int>(four)), zero), zero);
    // (alpha * (cover + 1)) >> 8 in each lane: one 16-bit product, below 2^16.
    const __m128i a = _mm_srli_epi32(_mm_madd_epi16(_mm_add_epi32(cover, _mm_set1_epi32(1)), alpha), 8);
    const __m128i none = _mm_cmpeq_epi32(a, zero);
    const __m128i laid = _mm_or_si128(colour, _mm_slli_epi32(a, 24));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 4 * i),
                     _mm_or_si128(_mm_and_si128(none, target), _mm_andnot_si128(none, laid)));
  }
  p += 4 * i;
#endif
  for (; i < len; ++i, p += 4) {
    if (opaque && covers[i] == agg::cover_full) {
      std::memcpy(p, bytes, 4);
    } else {
      LayerBlender::blend_pix(p, c.r, c.g, c.b, c.a, covers[i]);
    }
  }
}

using LayerPixfmt = agg::pixfmt_alpha_blend_rgba<LayerBlender, agg::rendering_buffer>;
using LayerScanline = agg::scanline_u8;
using LayerSpanAllocator = agg::span_allocator<LayerColour>;

// The renderer the scanline renderers write through. A layer image may hold only part of the area a
// shape is laid out in (the part that can reach the caller's buffer): spans arrive in the area's
// coordinates and are moved by the image's place in it, then clipped to the image. Shapes, gradients
// and textures are thus computed exactly as over the whole area, and only the pixels kept are written.
class LayerRendererBase {
 public:
  typedef LayerColour color_type;

  // `left`, `top`: where the image's first pixel lies in the area.
  LayerRendererBase(LayerPixfmt& pixels, int32_t left, int32_t top) : base_(pixels), left_(left), top_(top) {}

  int32_t firstRow() const { return top_; }
  int32_t endRow() const { return top_ + static_cast<int32_t>(base_.height()); }

  // Clipped to the image as renderer_base clips, then laid by BlendSolidSpan.
  void blend_solid_hspan(int x, int y, int len, const color_type& c, const agg::int8u* covers) {
    x -= left_;
    y -= top_;
    if (c.a == 0 || y < 0 || y >= static_cast<int>(base_.height())) return;
    if (x < 0) {
      len += x;
      if (len <= 0) return;
      covers -= x;
      x = 0;
    }
    len = std::min(len, static_cast<int>(base_.width()) - x);
    if (len <= 0) return;
    BlendSolidSpan(base_.ren().pix_ptr(x, y), len, c, covers);
  }
  void blend_hline(int x1, int y, int x2, const color_type& c, agg::int8u cover) {
    base_.blend_hline(x1 - left_, y - top_, x2 - left_, c, cover);
  }
  void blend_color_hspan(int x, int y, int len, const color_type* colors, const agg::int8u* covers,
                         agg::int8u cover = agg::cover_full) {
    base_.blend_color_hspan(x - left_, y - top_, len, colors, covers, cover);
  }

 private:
  agg::renderer_base<LayerPixfmt> base_;
  int32_t left_, top_;
};

// Sweeps only the rasterizer's scanlines that fall on the renderer's rows, calling render(scanline) for
// each. Scanlines are independent of one another, so skipping the others changes nothing in these.
template <class RenderLine>
void SweepLayerScanlines(LayerRasterizer& ras, const LayerRendererBase& ren, RenderLine render) {
  if (!ras.rewind_scanlines()) return;
  const int first = std::max(ren.firstRow(), ras.min_y());
  const int end = std::min(ren.endRow(), ras.max_y() + 1);
  if (first >= end || !ras.navigate_scanline(first)) return;
  LayerScanline sl;
  sl.reset(ras.min_x(), ras.max_x());
  while (ras.sweep_scanline(sl) && sl.y() < end) render(sl);
}

// Paints the rasterised shape with the spans of `spans`.
template <class SpanGenerator>
void RenderLayerSpans(LayerRasterizer& ras, LayerRendererBase& ren, SpanGenerator& spans) {
  LayerSpanAllocator allocator;
  spans.prepare();
  SweepLayerScanlines(ras, ren,
                      [&](const LayerScanline& sl) { agg::render_scanline_aa(sl, ren, allocator, spans); });
}

// Paints the rasterised shape in one colour.
inline void RenderLayerSolid(LayerRasterizer& ras, LayerRendererBase& ren, const LayerColour& colour) {
  SweepLayerScanlines(ras, ren,
                      [&](const LayerScanline& sl) { agg::render_scanline_aa_solid(sl, ren, colour); });
}

}  // namespace lx
