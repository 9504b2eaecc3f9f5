#include "effects/short_column_blur.h"

#include <algorithm>
#include <cstddef>

#include "effects/short_window.h"
#include "effects/scratch_growth.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace lx {

namespace {

// A block of bled columns this size stays in the second-level cache between the two walks over it.
constexpr uint64_t kBlockPixels = uint64_t{1} << 16;
constexpr int32_t kNarrowestBlock = 16;

// One block of columns, x0 .. x0 + count - 1, on its way through the two walks: the bled pixels row by
// row (count to a row); for each column the first and last row with a non-zero bled pixel, which then
// become the first and last row the stack blur writes (first past last when it writes none); and the
// last opaque pixel read down each column, its row and colour bytes.
struct ColumnBlock {
  const PixelView* image;
  int32_t x0, count;
  int32_t radius, reach;
  uint32_t writeMask;
  uint32_t* bled;
  int32_t* first;
  int32_t* last;
  int32_t* opaqueRow;
  uint32_t* opaqueColour;

  uint32_t* imageRow(int32_t y) const { return image->row(y) + x0; }
  uint32_t* bledRow(int32_t y) const {
    return bled + static_cast<ptrdiff_t>(std::clamp(y, 0, image->height - 1)) * count;
  }
};

// Column k of row y after the bleed: a transparent pixel takes the colour bytes of the last opaque one
// from reach - 1 rows above to reach rows below it, if there is one.
uint32_t BledPixel(const ColumnBlock& b, int32_t k, int32_t y) {
  const uint32_t own = b.imageRow(y)[k];
  if (own & kAlpha) return own;
  uint32_t v = own;
  const int32_t from = std::max(y - b.reach + 1, 0);
  const int32_t to = std::min(y + b.reach, b.image->height - 1);
  for (int32_t row = from; row <= to; ++row) {
    const uint32_t p = b.imageRow(row)[k];
    if (p & kAlpha) v = p & kColour;
  }
  return v;
}

void NoteBled(const ColumnBlock& b, int32_t k, int32_t y, uint32_t v) {
  b.bledRow(y)[k] = v;
  if (v == 0) return;
  if (b.first[k] > b.last[k]) b.first[k] = y;
  b.last[k] = y;
}

// The stack blur's output for column k of row y, with the bytes outside the write mask from the bled
// pixel.
template <int kRadius>
uint32_t BlurredPixel(const ColumnBlock& b, int32_t k, int32_t y) {
  uint32_t window[2 * kRadius + 1];
  for (int32_t d = 0; d <= 2 * kRadius; ++d) window[d] = b.bledRow(y + d - kRadius)[k];
  return (ShortWindow<kRadius>(window) & b.writeMask) | (window[kRadius] & ~b.writeMask);
}

#if defined(__SSE2__)
inline __m128i Load(const void* p) {
  return _mm_loadu_si128(static_cast<const __m128i*>(p));
}
inline void Store(void* p, __m128i v) {
  _mm_storeu_si128(static_cast<__m128i*>(p), v);
}
inline __m128i Select(__m128i mask, __m128i yes, __m128i no) {
  return _mm_or_si128(_mm_and_si128(mask, yes), _mm_andnot_si128(mask, no));
}
inline __m128i Transparent(__m128i four) {
  return _mm_cmpeq_epi32(_mm_srli_epi32(four, 24), _mm_setzero_si128());
}

// BledPixel for columns k .. k + 3, walking reach rows ahead of y: the last opaque pixel read down a
// column is the one a transparent pixel takes, if it lies no more than reach - 1 rows above.
inline void BleedFour(const ColumnBlock& b, int32_t k, int32_t y, int32_t ahead) {
  __m128i row = Load(b.opaqueRow + k);
  __m128i colour = Load(b.opaqueColour + k);
  if (ahead < b.image->height) {
    const __m128i p = Load(b.imageRow(ahead) + k);
    const __m128i clear = Transparent(p);
    if (_mm_movemask_epi8(clear) != 0xFFFF) {
      row = Select(clear, row, _mm_set1_epi32(ahead));
      colour = Select(clear, colour, _mm_and_si128(p, _mm_set1_epi32(static_cast<int>(kColour))));
      Store(b.opaqueRow + k, row);
      Store(b.opaqueColour + k, colour);
    }
  }
  const __m128i own = Load(b.imageRow(y) + k);
  const __m128i takes = _mm_and_si128(Transparent(own), _mm_cmpgt_epi32(row, _mm_set1_epi32(y - b.reach)));
  Store(b.bledRow(y) + k, Select(takes, colour, own));
}

// NoteBled's first and last rows for columns k .. k + 3, found once the block is bled: walking in from
// the top and from the bottom stops at the rows where each column's first non-zero pixel is, which lie
// near the ends in a layer's margins.
inline void NoteFour(const ColumnBlock& b, int32_t k) {
  const int32_t height = b.image->height;
  const __m128i zero = _mm_setzero_si128();
  const auto walk = [&](int32_t from, int32_t step, int32_t* out) {
    __m128i found = zero, at = _mm_set1_epi32(step > 0 ? height : -1);
    for (int32_t y = from; y >= 0 && y < height && _mm_movemask_epi8(found) != 0xFFFF; y += step) {
      const __m128i set = _mm_cmpeq_epi32(_mm_cmpeq_epi32(Load(b.bledRow(y) + k), zero), zero);
      at = Select(_mm_andnot_si128(found, set), _mm_set1_epi32(y), at);
      found = _mm_or_si128(found, set);
    }
    Store(out + k, at);
  };
  walk(0, 1, b.first);
  walk(height - 1, -1, b.last);
}

// BlurredPixel for columns k .. k + 3, stored in the rows the stack blur writes.
template <int kRadius>
void BlurFour(const ColumnBlock& b, int32_t k, int32_t y, const uint32_t* const* window) {
  const __m128i here = _mm_set1_epi32(y);
  const __m128i outside =
      _mm_or_si128(_mm_cmpgt_epi32(Load(b.first + k), here), _mm_cmpgt_epi32(here, Load(b.last + k)));
  if (_mm_movemask_epi8(outside) == 0xFFFF) return;
  __m128i four[2 * kRadius + 1];
  for (int32_t d = 0; d <= 2 * kRadius; ++d) four[d] = Load(window[d] + k);
  const __m128i put = _mm_set1_epi32(static_cast<int>(b.writeMask));
  const __m128i out = Select(put, ShortWindowFour<kRadius>(four), four[kRadius]);
  uint32_t* at = b.imageRow(y) + k;
  Store(at, Select(outside, Load(at), out));
}
#endif

template <int kRadius>
void BlurBlock(const ColumnBlock& b, bool wide) {
  const int32_t height = b.image->height;
  std::fill(b.first, b.first + b.count, height);
  std::fill(b.last, b.last + b.count, -1);
  const int32_t wideCount = wide ? b.count & ~3 : 0;
  std::fill(b.opaqueRow, b.opaqueRow + wideCount, -b.reach - 1);  // none read yet
  std::fill(b.opaqueColour, b.opaqueColour + wideCount, 0u);
  for (int32_t ahead = 0; ahead < std::min(b.reach, height); ++ahead) {
    for (int32_t k = 0; k < wideCount; ++k) {
      const uint32_t p = b.imageRow(ahead)[k];
      if ((p & kAlpha) == 0) continue;
      b.opaqueRow[k] = ahead;
      b.opaqueColour[k] = p & kColour;
    }
  }
  // The block is read from the image whole before any of it is written back: the bleed of a row looks
  // at rows below it that the blur of earlier rows would otherwise have changed.
  for (int32_t y = 0; y < height; ++y) {
#if defined(__SSE2__)
    for (int32_t k = 0; k < wideCount; k += 4) BleedFour(b, k, y, y + b.reach);
#endif
    for (int32_t k = wideCount; k < b.count; ++k) NoteBled(b, k, y, BledPixel(b, k, y));
  }
#if defined(__SSE2__)
  for (int32_t k = 0; k < wideCount; k += 4) NoteFour(b, k);
#endif
  // The stack blur writes from r + 1 rows before a column's first non-zero pixel to r rows after its
  // last.
  for (int32_t k = 0; k < b.count; ++k) {
    if (b.first[k] > b.last[k]) continue;
    b.first[k] = std::max(b.first[k] - b.radius - 1, 0);
    b.last[k] = std::min(b.last[k] + b.radius, height - 1);
  }
  for (int32_t y = 0; y < height; ++y) {
#if defined(__SSE2__)
    if (wideCount > 0) {
      const uint32_t* window[2 * kRadius + 1];
      for (int32_t d = -kRadius; d <= kRadius; ++d) window[d + kRadius] = b.bledRow(y + d);
      for (int32_t k = 0; k < wideCount; k += 4) BlurFour<kRadius>(b, k, y, window);
    }
#endif
    for (int32_t k = wideCount; k < b.count; ++k) {
      if (y >= b.first[k] && y <= b.last[k]) b.imageRow(y)[k] = BlurredPixel<kRadius>(b, k, y);
    }
  }
}

}  // namespace

bool ShortColumnBlur(const PixelView& image, unsigned r, uint32_t writeMask, std::vector<uint32_t>& scratch,
                     KernelPath path) {
  if (r < 1 || r > 2) return false;
  if (image.empty()) return true;
  const uint64_t height = static_cast<uint64_t>(image.height);
  const uint64_t width = static_cast<uint64_t>(image.width);
  const uint64_t widest = std::max<uint64_t>(kBlockPixels / height, kNarrowestBlock) & ~uint64_t{3};
  const uint64_t blockWidth = std::min(width, widest);
  const uint64_t needed = blockWidth * (height + 4);
  if (!GrowScratch(scratch, needed)) return false;
  ColumnBlock b{};
  b.image = &image;
  b.radius = static_cast<int32_t>(r);
  b.reach = 2 * b.radius;
  b.writeMask = writeMask;
  b.bled = scratch.data();
  // Signed and unsigned forms of one type may share memory.
  b.first = reinterpret_cast<int32_t*>(scratch.data() + blockWidth * height);
  b.last = b.first + blockWidth;
  b.opaqueRow = b.last + blockWidth;
  b.opaqueColour = reinterpret_cast<uint32_t*>(b.opaqueRow + blockWidth);
  const bool wide = path == KernelPath::kWide && HasWideKernels();
  for (uint64_t x0 = 0; x0 < width; x0 += blockWidth) {
    b.x0 = static_cast<int32_t>(x0);
    b.count = static_cast<int32_t>(std::min(blockWidth, width - x0));
    if (r == 1) {
      BlurBlock<1>(b, wide);
    } else {
      BlurBlock<2>(b, wide);
    }
  }
  return true;
}

}  // namespace lx
