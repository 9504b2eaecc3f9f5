#include "effects/agg_cell_sort.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace agg {

namespace {

// A scanline's keys live on the stack: each is the cell's x above the scanline's least, shifted past the
// cell's index, so that 32 bits hold both for up to kKeyed cells spread over fewer than kKeyedSpan
// pixels. Longer or wider scanlines are sorted through the pointers.
constexpr unsigned kIndexBits = 10;
constexpr unsigned kKeyed = 1u << kIndexBits;
constexpr uint32_t kKeyedSpan = 1u << (32 - kIndexBits);
// Up to this many cells, moving the pointers themselves costs less than making keys.
constexpr unsigned kInsertedUpTo = 8;
// From this many cells on, counting the x digits a byte at a time beats comparing.
constexpr unsigned kCountedFrom = 64;

// One stable counting pass over the byte of the keys at `shift`, whose values lie below `values`.
void CountingPass(const uint32_t* in, uint32_t* out, unsigned num, unsigned shift, unsigned values) {
  unsigned start[256];
  std::fill(start, start + values, 0u);
  for (unsigned i = 0; i < num; ++i) ++start[(in[i] >> shift) & 0xFFu];
  unsigned at = 0;
  for (unsigned v = 0; v < values; ++v) {
    const unsigned count = start[v];
    start[v] = at;
    at += count;
  }
  for (unsigned i = 0; i < num; ++i) out[start[(in[i] >> shift) & 0xFFu]++] = in[i];
}

}  // namespace

template <>
void qsort_cells<cell_aa>(cell_aa** start, unsigned num) {
  if (num < 2) return;
  if (num <= kInsertedUpTo) {
    for (unsigned i = 1; i < num; ++i) {
      cell_aa* const cell = start[i];
      unsigned j = i;
      for (; j > 0 && cell->x < start[j - 1]->x; --j) start[j] = start[j - 1];
      start[j] = cell;
    }
    return;
  }
  int least = start[0]->x, most = least;
  for (unsigned i = 1; i < num; ++i) {
    least = std::min(least, start[i]->x);
    most = std::max(most, start[i]->x);
  }
  const uint32_t span = static_cast<uint32_t>(most) - static_cast<uint32_t>(least);
  if (num > kKeyed || span >= kKeyedSpan) {
    std::sort(start, start + num, [](const cell_aa* a, const cell_aa* b) { return a->x < b->x; });
    return;
  }
  cell_aa* cells[kKeyed];
  uint32_t keys[kKeyed], spare[kKeyed];
  std::memcpy(cells, start, num * sizeof(cell_aa*));
  for (unsigned i = 0; i < num; ++i) {
    keys[i] = ((static_cast<uint32_t>(cells[i]->x) - static_cast<uint32_t>(least)) << kIndexBits) | i;
  }
  uint32_t* sorted = keys;
  if (num < kCountedFrom) {
    std::sort(keys, keys + num);
  } else {
    uint32_t* other = spare;
    for (unsigned shift = kIndexBits; shift < 32; shift += 8) {
      const uint32_t rest = span >> (shift - kIndexBits);  // the largest digit value from here up
      if (rest == 0) break;
      CountingPass(sorted, other, num, shift, rest < 0xFFu ? rest + 1 : 256u);
      std::swap(sorted, other);
    }
  }
  for (unsigned i = 0; i < num; ++i) start[i] = cells[sorted[i] & (kKeyed - 1)];
}

}  // namespace agg
