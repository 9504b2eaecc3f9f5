#include "effects/emboss_filter.h"

#include <cmath>
#include <cstdint>
#include <cstring>

#include "effects/light_angles.h"
#include "effects/scratch_growth.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace lx {

namespace {
constexpr double kPixelScale = 255.9;

// The height of each pixel of a row: the sum of its colour bytes.
void RowHeights(const uint32_t* row, uint32_t* heights, size_t n) {
  size_t x = 0;
#if defined(__SSE2__)
  const __m128i low = _mm_set1_epi32(0xFF);
  for (; x + 4 <= n; x += 4) {
    const __m128i p = _mm_loadu_si128(reinterpret_cast<const __m128i*>(row + x));
    const __m128i sum =
        _mm_add_epi32(_mm_add_epi32(_mm_and_si128(p, low), _mm_and_si128(_mm_srli_epi32(p, 8), low)),
                      _mm_and_si128(_mm_srli_epi32(p, 16), low));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(heights + x), sum);
  }
#endif
  for (; x < n; ++x) heights[x] = (row[x] & 0xFF) + ((row[x] >> 8) & 0xFF) + ((row[x] >> 16) & 0xFF);
}

}  // namespace

void EmbossFilter::updateLight() {
  const double el = ElevationRadians(elevation_);
  lx_ = std::cos(azimuth_) * std::cos(el) * kPixelScale;
  ly_ = std::sin(azimuth_) * std::cos(el) * kPixelScale;
  lz_ = std::sin(el) * kPixelScale;
  // A depth of 0 acts as a depth of 1.
  nz_ = depth_ != 0 ? 1530.0 / depth_ : 1530.0;
  nz2_ = nz_ * nz_;
  nzlz_ = nz_ * lz_;
  background_ = lz_;
}

void EmbossFilter::shadeSlopes(const int32_t* nx, const int32_t* ny, const int32_t* lengths, int32_t count,
                               uint32_t* greys, [[maybe_unused]] bool wide) const {
  int32_t i = 0;
#if defined(__SSE2__)
  const int32_t wideCount = wide ? count : 0;  // otherwise the portable loop below takes every slope
  // Two slopes to a register, in the scalar steps' order: the same products, sums, truncations,
  // square roots and quotients.
  const __m128d lx = _mm_set1_pd(lx_), ly = _mm_set1_pd(ly_), nzlz = _mm_set1_pd(nzlz_),
                nz2 = _mm_set1_pd(nz2_);
  const __m128d background = _mm_set1_pd(background_);
  const __m128i zero = _mm_setzero_si128();
  for (; i + 2 <= wideCount; i += 2) {
    const __m128i x = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(nx + i));
    const __m128i y = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(ny + i));
    const __m128d dx = _mm_cvtepi32_pd(x), dy = _mm_cvtepi32_pd(y);
    const __m128i dot =
        _mm_cvttpd_epi32(_mm_add_pd(_mm_add_pd(_mm_mul_pd(dx, lx), _mm_mul_pd(dy, ly)), nzlz));
    const __m128d length =
        _mm_add_pd(_mm_cvtepi32_pd(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(lengths + i))), nz2);
    __m128d shade = _mm_div_pd(_mm_cvtepi32_pd(dot), _mm_sqrt_pd(length));
    // A slope facing away is black; a flat one takes the background.
    const __m128d dark =
        _mm_castsi128_pd(_mm_unpacklo_epi32(_mm_cmpgt_epi32(zero, dot), _mm_cmpgt_epi32(zero, dot)));
    shade = _mm_andnot_pd(dark, shade);
    const __m128i flatLanes = _mm_and_si128(_mm_cmpeq_epi32(x, zero), _mm_cmpeq_epi32(y, zero));
    const __m128d flat = _mm_castsi128_pd(_mm_unpacklo_epi32(flatLanes, flatLanes));
    shade = _mm_or_pd(_mm_and_pd(flat, background), _mm_andnot_pd(flat, shade));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(greys + i), _mm_cvttpd_epi32(shade));
  }
#endif
  for (; i < count; ++i) {
    double shade = background_;
    if (nx[i] != 0 || ny[i] != 0) {
      const int32_t nDotL = static_cast<int32_t>(nx[i] * lx_ + ny[i] * ly_ + nzlz_);
      shade = nDotL < 0 ? 0.0 : nDotL / std::sqrt(static_cast<double>(lengths[i]) + nz2_);
    }
    greys[i] = static_cast<uint32_t>(shade);
  }
}

void EmbossFilter::apply(const PixelView& image, std::vector<uint32_t>& scratch, KernelPath path) const {
  if (image.empty() || image.height < 3) return;
  const size_t width = static_cast<size_t>(image.width);
  const size_t height = static_cast<size_t>(image.height);
  if (width > SIZE_MAX / 4 / (height + 9)) return;
  if (!GrowScratch(scratch, width * (height + 9))) return;
  // Every row's heights (the sum of its colour bytes), taken before any row is shaded; then three rows
  // for the first and last output rows, whose neighbourhoods are not three rows in order; then the
  // output row.
  uint32_t* plane = scratch.data();
  uint32_t* edgeRows = plane + width * height;
  uint32_t* output = edgeRows + 3 * width;
  // One row's pixels with alpha and slope: where they are, the two slopes, and the squared slope length.
  auto* shown = reinterpret_cast<int32_t*>(output + width);
  int32_t* slopesX = shown + width;
  int32_t* slopesY = slopesX + width;
  int32_t* lengths = slopesY + width;
  auto* greys = reinterpret_cast<uint32_t*>(lengths + width);
  for (size_t y = 0; y < height; ++y)
    RowHeights(image.row(static_cast<int32_t>(y)), plane + y * width, width);

  for (size_t y = 0; y < height; ++y) {
    // Output row 0 is shaded around row 1 (rows 1, 1, 2) and the last around the one before it
    // (rows H - 3, H - 2, H - 2). The neighbourhood's three rows lie one after another, and are read
    // through pointers W - 1 pixels apart, so the neighbourhood of column x is sheared: top x .. x + 2,
    // middle x - 1 .. x + 1, bottom x - 2 .. x, and the reads before a row or past it land in the
    // neighbouring row. The extremes, top[x + 2] at x = W - 1 and bottom[x] at x = 0, are pixels W + 1
    // and 2W - 2 of the three rows, inside the 3W for any W >= 1.
    const bool first = y == 0;
    const bool last = y == height - 1;
    const size_t source[3] = {first ? 1 : (last ? height - 3 : y - 1), first ? 1 : (last ? height - 2 : y),
                              first ? 2 : (last ? height - 2 : y + 1)};
    const uint32_t* rows = plane + source[0] * width;
    if (first || last) {
      for (int k = 0; k < 3; ++k) std::memcpy(edgeRows + k * width, plane + source[k] * width, width * 4);
      rows = edgeRows;
    }
    const uint32_t* top = rows;
    const uint32_t* middle = rows + (width - 1);
    const uint32_t* bottom = rows + 2 * (width - 1);
    // The centre row's alpha: rows shaded so far kept theirs.
    const uint32_t* centres = image.row(static_cast<int32_t>(source[1]));

    // Pixels with alpha are gathered and shaded together, then given their grey.
    int32_t count = 0;
    for (size_t x = 0; x < width; ++x) {
      output[x] = 0;
      if ((centres[x] >> 24) == 0) continue;
      const int32_t left = static_cast<int32_t>(top[x] + middle[x] + bottom[x]);
      const int32_t right = static_cast<int32_t>(top[x + 2] + middle[x + 2] + bottom[x + 2]);
      const int32_t above = static_cast<int32_t>(top[x] + top[x + 1] + top[x + 2]);
      const int32_t below = static_cast<int32_t>(bottom[x] + bottom[x + 1] + bottom[x + 2]);
      shown[count] = static_cast<int32_t>(x);
      slopesX[count] = left - right;
      slopesY[count] = below - above;
      lengths[count] = slopesX[count] * slopesX[count] + slopesY[count] * slopesY[count];
      ++count;
    }
    shadeSlopes(slopesX, slopesY, lengths, count, greys, path == KernelPath::kWide && HasWideKernels());
    for (int32_t i = 0; i < count; ++i) {
      const uint32_t grey = greys[i];
      output[shown[i]] = grey | grey << 8 | grey << 16 | (centres[shown[i]] & 0xFF000000u);
    }
    std::memcpy(image.row(static_cast<int32_t>(y)), output, width * 4);
  }
}

}  // namespace lx
