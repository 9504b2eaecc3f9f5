#include "effects/colour_bleed.h"

#include <algorithm>
#include <new>
#include <vector>

namespace lx {

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
    int64_t last = -1;  // last giving column at or before the look-ahead edge c + d
    int64_t scanned = d - 1;
    for (int64_t c = 0; c < width; ++c) {
      const int64_t ahead = std::min(c + d, width - d - 1);
      while (scanned < ahead) {
        ++scanned;
        if (row[scanned] >> 24) last = scanned;
      }
      if (last >= 0 && last >= c - d) {
        giverRow[static_cast<size_t>(c)] = static_cast<int32_t>(r);
        giverColumn[static_cast<size_t>(c)] = static_cast<int32_t>(last);
      }
    }
  };

  int64_t scannedRows = -1;
  for (int64_t y = 0; y < height; ++y) {
    const int64_t ahead = std::min(y + d, height - 1);
    while (scannedRows < ahead) scanRow(++scannedRows);
    uint32_t* row = image.row(static_cast<int32_t>(y));
    for (int64_t c = 0; c < width; ++c) {
      const int32_t r = giverRow[static_cast<size_t>(c)];
      if ((row[c] >> 24) == 0 && r >= 0 && r >= y - d) {
        row[c] = image.row(r)[giverColumn[static_cast<size_t>(c)]] & 0x00FFFFFFu;
      }
    }
  }
}

}  // namespace lx
