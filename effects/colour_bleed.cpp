#include "effects/colour_bleed.h"

#include <algorithm>
#include <new>
#include <vector>

#include "effects/alpha_runs.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace lx {

namespace {

// Column c of a row takes the colour of its giver when it is transparent and the giver's row is not
// above `oldest`.
inline void Take(const PixelView& image, uint32_t* row, const int32_t* giverRow, const int32_t* giverColumn,
                 int64_t c, int32_t oldest) {
  const int32_t r = giverRow[static_cast<size_t>(c)];
  if ((row[c] >> 24) == 0 && r >= 0 && r >= oldest) {
    row[c] = image.row(r)[giverColumn[static_cast<size_t>(c)]] & 0x00FFFFFFu;
  }
}

}  // namespace

void SquareColourBleed(const PixelView& image, int32_t distance, std::vector<int32_t>& scratch) {
  if (image.empty() || distance < 1) return;
  const int64_t width = image.width;
  const int64_t height = image.height;
  const int64_t d = distance;
  // Only pixels at least d inside every edge give colour; with none there is nothing to do.
  if (2 * d >= width || 2 * d >= height) return;

  // For every column c, the last giving pixel (in row order) of the rows scanned so far whose square
  // covers column c: its row and its column. A transparent pixel (c, y) is reached by the last giving
  // pixel in rows y - d .. y + d whose column lies in c - d .. c + d, that is by this one, once the
  // rows up to y + d are scanned, provided its row is not above y - d.
  try {
    scratch.assign(2 * static_cast<size_t>(width), -1);
  } catch (const std::bad_alloc&) {
    return;
  }
  int32_t* giverRow = scratch.data();
  int32_t* giverColumn = giverRow + width;

  const auto scanRow = [&](int64_t r) {
    if (r < d || r > height - d - 1) return;
    const uint32_t* row = image.row(static_cast<int32_t>(r));
    const int64_t end = width - d;  // givers lie in d .. width - d - 1
    int64_t last = -1;              // last giving column at or before the look-ahead edge c + d
    int64_t scanned = d - 1;
    for (int64_t c = 0; c < width;) {
      const int64_t ahead = std::min(c + d, end - 1);
      while (scanned < ahead) {
        ++scanned;
        if (row[scanned] >> 24) last = scanned;
      }
      if (last >= 0 && last >= c - d) {
        giverRow[static_cast<size_t>(c)] = static_cast<int32_t>(r);
        giverColumn[static_cast<size_t>(c)] = static_cast<int32_t>(last);
        ++c;
        continue;
      }
      // No giver reaches c: none reaches a column before the next giver's square either.
      const int64_t next = FindAlpha(row, scanned + 1, end, false);
      if (next == end) break;
      c = std::max(c + 1, next - d);
    }
  };

  int64_t scannedRows = -1;
  for (int64_t y = 0; y < height; ++y) {
    const int64_t ahead = std::min(y + d, height - 1);
    while (scannedRows < ahead) scanRow(++scannedRows);
    uint32_t* row = image.row(static_cast<int32_t>(y));
    const int32_t oldest =
        static_cast<int32_t>(std::max<int64_t>(y - d, 0));  // the oldest giver row that reaches
    int64_t c = 0;
#if defined(__SSE2__)
    // Four columns at a time are passed over when none is transparent with a giver that reaches it.
    const __m128i reached = _mm_set1_epi32(oldest - 1);
    for (; c + 4 <= width; c += 4) {
      const __m128i clear =
          _mm_cmpeq_epi32(_mm_srli_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(row + c)), 24),
                          _mm_setzero_si128());
      const __m128i given =
          _mm_cmpgt_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(giverRow + c)), reached);
      if (_mm_movemask_epi8(_mm_and_si128(clear, given)) == 0) continue;
      for (int64_t k = c; k < c + 4; ++k) Take(image, row, giverRow, giverColumn, k, oldest);
    }
#endif
    for (; c < width; ++c) Take(image, row, giverRow, giverColumn, c, oldest);
  }
}

}  // namespace lx
