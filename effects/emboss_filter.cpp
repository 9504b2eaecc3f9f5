#include "effects/emboss_filter.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <new>

#include "effects/light_angles.h"

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

void EmbossFilter::apply(const PixelView& image, std::vector<uint32_t>& scratch) const {
  if (image.empty() || image.height < 3) return;
  const size_t width = static_cast<size_t>(image.width);
  const size_t height = static_cast<size_t>(image.height);
  if (width > SIZE_MAX / 4 / (height + 4)) return;
  try {
    if (scratch.size() < width * (height + 4)) scratch.resize(width * (height + 4));
  } catch (const std::bad_alloc&) {
    return;
  }
  // Every row's heights (the sum of its colour bytes), taken before any row is shaded; then three rows
  // for the first and last output rows, whose neighbourhoods are not three rows in order; then the
  // output row.
  uint32_t* plane = scratch.data();
  uint32_t* edgeRows = plane + width * height;
  uint32_t* output = edgeRows + 3 * width;
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

    for (size_t x = 0; x < width; ++x) {
      const uint32_t alpha = centres[x] >> 24;
      if (alpha == 0) {
        output[x] = 0;
        continue;
      }
      const int32_t left = static_cast<int32_t>(top[x] + middle[x] + bottom[x]);
      const int32_t right = static_cast<int32_t>(top[x + 2] + middle[x + 2] + bottom[x + 2]);
      const int32_t above = static_cast<int32_t>(top[x] + top[x + 1] + top[x + 2]);
      const int32_t below = static_cast<int32_t>(bottom[x] + bottom[x + 1] + bottom[x + 2]);
      const int32_t nx = left - right;
      const int32_t ny = below - above;
      double shade = background_;
      if (nx != 0 || ny != 0) {
        const int32_t nDotL = static_cast<int32_t>(nx * lx_ + ny * ly_ + nzlz_);
        shade = nDotL < 0 ? 0.0 : nDotL / std::sqrt(static_cast<double>(nx * nx + ny * ny) + nz2_);
      }
      const uint32_t grey = static_cast<uint32_t>(shade);
      output[x] = grey | grey << 8 | grey << 16 | alpha << 24;
    }
    std::memcpy(image.row(static_cast<int32_t>(y)), output, width * 4);
  }
}

}  // namespace lx
