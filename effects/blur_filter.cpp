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

// AGG's stack blur of src[0..n) with radius r (1..254), edge pixels repeated: each output is the sum of
// the window weighted 1, 2, ..., r + 1, ..., 2, 1, times the table multiplier, shifted by the table
// shift. Results go to dst[0], dst[step], ...; bytes outside writeMask keep src's value. The running
// sums read the window from src by clamped index, so the cost per pixel does not depend on r. Outputs
// whose window holds only zero pixels are zero, as their own pixel already is: the stretches before the
// first and after the last non-zero pixel are left as they are.
void BlurLine(const uint32_t* src, ptrdiff_t n, unsigned r, uint32_t* dst, ptrdiff_t step,
              uint32_t writeMask) {
  ptrdiff_t first = 0;
  while (first < n && src[first] == 0) ++first;
  if (first == n) return;
  ptrdiff_t lastSet = n - 1;
  while (src[lastSet] == 0) --lastSet;

  const uint64_t mul = StackBlurTables::g_stack_blur8_mul[r];
  const unsigned shr = StackBlurTables::g_stack_blur8_shr[r];
  const ptrdiff_t last = n - 1;
  const ptrdiff_t radius = r;
  uint64_t sumEven = 0, sumOdd = 0, inEven = 0, inOdd = 0, outEven = 0, outOdd = 0;

  ptrdiff_t x = first - radius - 1;  // the first output whose window reaches a non-zero pixel
  if (x <= 0) {
    // The window at x = 0: the first pixel r + 1 times on the left (weights 1 .. r + 1), then
    // src[1 .. r] with weights r .. 1, those past the end being the last pixel again.
    x = 0;
    const uint64_t leftWeight = (r + 1) * (r + 2) / 2;
    sumEven = EvenBytes(src[0]) * leftWeight;
    sumOdd = OddBytes(src[0]) * leftWeight;
    outEven = EvenBytes(src[0]) * (r + 1);
    outOdd = OddBytes(src[0]) * (r + 1);
    const ptrdiff_t direct = std::min(radius, last);
    for (ptrdiff_t k = 1; k <= direct; ++k) {
      const uint64_t weight = static_cast<uint64_t>(radius + 1 - k);
      sumEven += EvenBytes(src[k]) * weight;
      sumOdd += OddBytes(src[k]) * weight;
      inEven += EvenBytes(src[k]);
      inOdd += OddBytes(src[k]);
    }
    if (radius > direct) {
      const uint64_t tail = static_cast<uint64_t>(radius - direct);
      sumEven += EvenBytes(src[last]) * (tail * (tail + 1) / 2);
      sumOdd += OddBytes(src[last]) * (tail * (tail + 1) / 2);
      inEven += EvenBytes(src[last]) * tail;
      inOdd += OddBytes(src[last]) * tail;
    }
  }
  // Past lastSet + r every window holds only zero pixels again.
  const ptrdiff_t end = std::min(last, lastSet + radius);
  const auto blurred = [&]() {
    const uint64_t even = sumEven * mul;
    const uint64_t odd = sumOdd * mul;
    return static_cast<uint32_t>(((even & 0xFFFFFFFFu) >> shr) | (((even >> 32) >> shr) << 16) |
                                 (((odd & 0xFFFFFFFFu) >> shr) << 8) | (((odd >> 32) >> shr) << 24));
  };
  // Where the run of equal pixels that ends at the window's leading edge begins (looked for no further
  // back than the window reaches). Once the run fills the whole window, the sums stay as they are for as
  // long as the run goes on, and so does the output: flat areas are written without the arithmetic.
  ptrdiff_t lead = std::min(x + radius, last);
  ptrdiff_t runStart = lead;
  while (runStart > std::max<ptrdiff_t>(x - radius, 0) && src[runStart - 1] == src[lead]) --runStart;
  dst += x * step;
  for (;; ++x) {
    *dst = (blurred() & writeMask) | (src[x] & ~writeMask);
    if (x == end) break;
    dst += step;

    const uint32_t leaving = src[std::max<ptrdiff_t>(x - radius, 0)];
    const uint32_t entering = src[std::min(x + radius + 1, last)];
    const uint32_t centre = src[x + 1];
    sumEven -= outEven;
    sumOdd -= outOdd;
    outEven -= EvenBytes(leaving);
    outOdd -= OddBytes(leaving);
    inEven += EvenBytes(entering);
    inOdd += OddBytes(entering);
    sumEven += inEven;
    sumOdd += inOdd;
    outEven += EvenBytes(centre);
    outOdd += OddBytes(centre);
    inEven -= EvenBytes(centre);
    inOdd -= OddBytes(centre);
    if (x + radius + 1 <= last) {
      lead = x + radius + 1;
      if (src[lead] != src[lead - 1]) runStart = lead;
    }
    if (runStart <= std::max<ptrdiff_t>(x + 1 - radius, 0)) {
      // The window of x + 1 is flat, and so is every later one that ends inside the run.
      const uint32_t v = src[lead];
      ptrdiff_t runEnd = lead;
      while (runEnd < last && src[runEnd + 1] == v) ++runEnd;
      const ptrdiff_t stop = runEnd == last ? end : std::min(runEnd - radius, end);
      const uint32_t flat = (blurred() & writeMask) | (v & ~writeMask);
      for (ptrdiff_t p = x + 1; p < stop; ++p) {
        *dst = flat;
        dst += step;
      }
      x = stop - 1;
      lead = std::min(stop + radius, last);
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

void BlurFilter::trimScratch(size_t maxBytes) {
  if (lines_.capacity() * sizeof(uint32_t) > maxBytes) std::vector<uint32_t>().swap(lines_);
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
