#include "effects/blur_filter.h"

#include <agg_renderer_base.h>  // agg_blur.h uses it without including it
#include <agg_blur.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>

namespace lx {

namespace {

using StackBlurTables = agg::stack_blur_tables<int>;

constexpr uint32_t kAlpha = 0xFF000000u;
constexpr uint32_t kColour = 0x00FFFFFFu;
// Columns are gathered sixteen at a time (one cache line of each row) so that the vertical pass walks
// memory row by row.
constexpr int32_t kColumnBlock = 16;

inline uint32_t Channel(uint32_t v, int c) {
  return (v >> (8 * c)) & 0xFFu;
}

// Every transparent pixel p takes the colour bytes of the last non-transparent pixel q with
// p - reach < q <= p + reach, which is what visiting the non-transparent pixels in order and painting
// each one's colour from `reach` before it to `reach - 1` after it leaves behind. One scan: `last` follows
// the look-ahead edge p + reach.
void BleedLine(uint32_t* line, ptrdiff_t n, ptrdiff_t reach) {
  ptrdiff_t last = -1;
  ptrdiff_t scanned = -1;
  for (ptrdiff_t p = 0; p < n; ++p) {
    const ptrdiff_t ahead = std::min(p + reach, n - 1);
    while (scanned < ahead) {
      ++scanned;
      if (line[scanned] & kAlpha) last = scanned;
    }
    if (!(line[p] & kAlpha) && last >= 0 && last > p - reach) line[p] = line[last] & kColour;
  }
}

// AGG's stack blur of src[0..n) with radius r (1..254), edge pixels repeated: each output is the sum of
// the window weighted 1, 2, ..., r + 1, ..., 2, 1, times the table multiplier, shifted by the table
// shift. Results go to dst[0], dst[step], ...; bytes outside writeMask keep src's value. The running
// sums read the window from src by clamped index, so the cost per pixel does not depend on r.
void BlurLine(const uint32_t* src, ptrdiff_t n, unsigned r, uint32_t* dst, ptrdiff_t step,
              uint32_t writeMask) {
  const uint32_t mul = StackBlurTables::g_stack_blur8_mul[r];
  const uint32_t shr = StackBlurTables::g_stack_blur8_shr[r];
  const ptrdiff_t last = n - 1;
  const ptrdiff_t radius = r;
  uint32_t sum[4], in[4], out[4];

  // The window at x = 0: the first pixel r + 1 times on the left (weights 1 .. r + 1), then
  // src[1 .. r] with weights r .. 1, those past the end being the last pixel again.
  const uint32_t leftWeight = (r + 1) * (r + 2) / 2;
  for (int c = 0; c < 4; ++c) {
    sum[c] = Channel(src[0], c) * leftWeight;
    out[c] = Channel(src[0], c) * (r + 1);
    in[c] = 0;
  }
  const ptrdiff_t direct = std::min(radius, last);
  for (ptrdiff_t k = 1; k <= direct; ++k) {
    const uint32_t weight = static_cast<uint32_t>(radius + 1 - k);
    for (int c = 0; c < 4; ++c) {
      sum[c] += Channel(src[k], c) * weight;
      in[c] += Channel(src[k], c);
    }
  }
  if (radius > direct) {
    const uint32_t tail = static_cast<uint32_t>(radius - direct);
    for (int c = 0; c < 4; ++c) {
      sum[c] += Channel(src[last], c) * (tail * (tail + 1) / 2);
      in[c] += Channel(src[last], c) * tail;
    }
  }

  for (ptrdiff_t x = 0;; ++x) {
    const uint32_t blurred = ((sum[0] * mul) >> shr) | (((sum[1] * mul) >> shr) << 8) |
                             (((sum[2] * mul) >> shr) << 16) | (((sum[3] * mul) >> shr) << 24);
    *dst = (blurred & writeMask) | (src[x] & ~writeMask);
    if (x == last) break;
    dst += step;

    const uint32_t leaving = src[std::max<ptrdiff_t>(x - radius, 0)];
    const uint32_t entering = src[std::min(x + radius + 1, last)];
    const uint32_t centre = src[x + 1];
    for (int c = 0; c < 4; ++c) {
      sum[c] -= out[c];
      out[c] -= Channel(leaving, c);
      in[c] += Channel(entering, c);
      sum[c] += in[c];
      out[c] += Channel(centre, c);
      in[c] -= Channel(centre, c);
    }
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

void BlurFilter::run(const PixelView& image, unsigned rx, unsigned ry, uint32_t writeMask, int repeat) {
  if (image.empty() || repeat < 1 || (rx == 0 && ry == 0)) return;
  rx = std::min(rx, kMaxRadius);
  ry = std::min(ry, kMaxRadius);

  const uint64_t width = static_cast<uint64_t>(image.width);
  const uint64_t height = static_cast<uint64_t>(image.height);
  const uint64_t block = std::min<uint64_t>(kColumnBlock, width);
  const uint64_t needed = std::max(rx != 0 ? width : 0, ry != 0 ? block * height : 0);
  if (needed > lines_.max_size()) return;
  if (lines_.size() < needed) {
    try {
      lines_.resize(static_cast<size_t>(needed));
    } catch (const std::bad_alloc&) {
      return;
    }
  }

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
    BlurLine(line, width, r, row, 1, writeMask);
  }
}

void BlurFilter::verticalPass(const PixelView& image, unsigned r, uint32_t writeMask) {
  const ptrdiff_t height = image.height;
  const ptrdiff_t rowStep = image.stride / 4;
  for (int32_t x0 = 0; x0 < image.width; x0 += kColumnBlock) {
    const int32_t count = std::min(kColumnBlock, image.width - x0);
    for (int32_t y = 0; y < image.height; ++y) {
      const uint32_t* row = image.row(y) + x0;
      for (int32_t k = 0; k < count; ++k) lines_[k * height + y] = row[k];
    }
    for (int32_t k = 0; k < count; ++k) {
      uint32_t* column = lines_.data() + k * height;
      BleedLine(column, height, 2 * static_cast<ptrdiff_t>(r));
      BlurLine(column, height, r, image.row(0) + x0 + k, rowStep, writeMask);
    }
  }
}

}  // namespace lx
