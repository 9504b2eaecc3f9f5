#include "effects/blur_filter.h"

#include "effects/short_column_blur.h"
#include "effects/stack_blur_line.h"
#include "effects/scratch_growth.h"
#include "effects/alpha_runs.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace lx {

namespace {

// Columns are gathered sixteen at a time (one cache line of each row) so that the vertical pass walks
// memory row by row.
constexpr int32_t kColumnBlock = 16;

// Every transparent pixel p takes the colour bytes of the last non-transparent pixel q with
// p - reach < q <= p + reach, which is what visiting the non-transparent pixels in order and painting
// each one's colour from `reach` before it to `reach - 1` after it leaves behind. Works run by run: in a
// transparent run, the pixels whose look-ahead edge p + reach stays inside the run can only take the
// pixel before the run, the rest take the last non-transparent pixel up to their look-ahead edge, which
// `last` follows. `scanned` only moves forward, so the cost is linear in n at any reach.
void BleedLine(uint32_t* line, ptrdiff_t n, ptrdiff_t reach) {
  ptrdiff_t last = -1;
  ptrdiff_t scanned = -1;
  ptrdiff_t before = -1;  // the last non-transparent pixel before p
  ptrdiff_t p = 0;
  while (p < n) {
    if (line[p] & kAlpha) {
      p = FindAlpha(line, p, n, true);
      before = p - 1;
      continue;
    }
    const ptrdiff_t end = FindAlpha(line, p + 1, n, false);
    const ptrdiff_t inside = end == n ? n : std::max(p, end - reach);
    if (before >= 0) {
      const uint32_t colour = line[before] & kColour;
      const ptrdiff_t stop = std::min(inside, before + reach);
      for (ptrdiff_t q = p; q < stop; ++q) line[q] = colour;
    }
    if (inside < end) {
      if (scanned < end - 1) {
        scanned = end - 1;
        last = before;
      }
      for (ptrdiff_t q = inside; q < end; ++q) {
        const ptrdiff_t ahead = std::min(q + reach, n - 1);
        while (scanned < ahead) {
          ++scanned;
          if (line[scanned] & kAlpha) last = scanned;
        }
        line[q] = line[last] & kColour;
      }
    }
    p = end;
  }
}

// Copies columns x0 .. x0 + count - 1 of the image into out, each column as height consecutive pixels.
// Where the build has SSE2, blocks of four rows by four columns are turned over in registers, so each
// column gets one store per four rows instead of one per pixel.
void GatherColumns(const PixelView& image, int32_t x0, int32_t count, uint32_t* out) {
  const ptrdiff_t height = image.height;
  int32_t y = 0;
#if defined(__SSE2__)
  const int32_t wide = count & ~3;
  for (; y + 4 <= image.height; y += 4) {
    const uint32_t* rows[4] = {image.row(y) + x0, image.row(y + 1) + x0, image.row(y + 2) + x0,
                               image.row(y + 3) + x0};
    for (int32_t k = 0; k < wide; k += 4) {
      const __m128i r0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[0] + k));
      const __m128i r1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[1] + k));
      const __m128i r2 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[2] + k));
      const __m128i r3 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[3] + k));
      const __m128i low01 = _mm_unpacklo_epi32(r0, r1);
      const __m128i low23 = _mm_unpacklo_epi32(r2, r3);
      const __m128i high01 = _mm_unpackhi_epi32(r0, r1);
      const __m128i high23 = _mm_unpackhi_epi32(r2, r3);
      uint32_t* column = out + k * height + y;
      _mm_storeu_si128(reinterpret_cast<__m128i*>(column), _mm_unpacklo_epi64(low01, low23));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(column + height), _mm_unpackhi_epi64(low01, low23));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(column + 2 * height), _mm_unpacklo_epi64(high01, high23));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(column + 3 * height), _mm_unpackhi_epi64(high01, high23));
    }
    for (int32_t k = wide; k < count; ++k) {
      for (int32_t i = 0; i < 4; ++i) out[k * height + y + i] = rows[i][k];
    }
  }
#endif
  for (; y < image.height; ++y) {
    const uint32_t* row = image.row(y) + x0;
    for (int32_t k = 0; k < count; ++k) out[k * height + y] = row[k];
  }
}

}  // namespace

void BlurFilter::blur(const PixelView& image, unsigned rx, unsigned ry) {
  run(image, rx, ry, ~uint32_t{0}, 1);
}

void BlurFilter::blurChannels(const PixelView& image, unsigned rx, unsigned ry, const bool flags[4],
                              int repeat) {
  if (flags == nullptr) return;
  uint32_t mask = 0;
  for (int c = 0; c < 4; ++c) {
    if (flags[c]) mask |= uint32_t{0xFF} << (8 * c);
  }
  run(image, rx, ry, mask, repeat);
}

uint8_t* BlurFilter::byteScratch(size_t bytes) {
  return GrowScratch(bytes_, bytes) ? bytes_.data() : nullptr;
}

void BlurFilter::trimScratch(size_t maxBytes) {
  if (lines_.capacity() * sizeof(uint32_t) > maxBytes) std::vector<uint32_t>().swap(lines_);
  if (bytes_.capacity() > maxBytes) std::vector<uint8_t>().swap(bytes_);
}

void BlurFilter::run(const PixelView& image, unsigned rx, unsigned ry, uint32_t writeMask, int repeat) {
  if (image.empty() || repeat < 1 || (rx == 0 && ry == 0)) return;
  rx = std::min(rx, kMaxRadius);
  ry = std::min(ry, kMaxRadius);

  const uint64_t width = static_cast<uint64_t>(image.width);
  const uint64_t height = static_cast<uint64_t>(image.height);
  const uint64_t block = std::min<uint64_t>(kColumnBlock, width);
  const uint64_t needed = std::max(rx != 0 ? width : 0, ry != 0 ? block * height : 0);
  if (!GrowScratch(lines_, needed)) return;

  for (int i = 0; i < repeat; ++i) {
    if (rx != 0) horizontalPass(image, rx, writeMask);
    if (ry != 0) verticalPass(image, ry, writeMask);
  }
}

void BlurFilter::horizontalPass(const PixelView& image, unsigned r, uint32_t writeMask) {
  const ptrdiff_t width = image.width;
  uint32_t* line = lines_.data();
  for (int32_t y = 0; y < image.height; ++y) {
    uint32_t* row = image.row(y);
    std::memcpy(line, row, static_cast<size_t>(width) * 4);
    BleedLine(line, width, 2 * static_cast<ptrdiff_t>(r));
    StackBlurLine(line, width, r, row, 1, writeMask, KernelPath::kWide);
  }
}

void BlurFilter::verticalPass(const PixelView& image, unsigned r, uint32_t writeMask) {
  // A window of three or five rows costs less summed across whole rows than run down each column.
  if (r <= 2 && ShortColumnBlur(image, r, writeMask, lines_, KernelPath::kWide)) return;
  const ptrdiff_t height = image.height;
  const ptrdiff_t rowStep = image.stride / 4;
  for (int32_t x0 = 0; x0 < image.width; x0 += kColumnBlock) {
    const int32_t count = std::min(kColumnBlock, image.width - x0);
    GatherColumns(image, x0, count, lines_.data());
    for (int32_t k = 0; k < count; ++k) {
      uint32_t* column = lines_.data() + k * height;
      BleedLine(column, height, 2 * static_cast<ptrdiff_t>(r));
      StackBlurLine(column, height, r, image.row(0) + x0 + k, rowStep, writeMask, KernelPath::kWide);
    }
  }
}

}  // namespace lx
