// Scratch vectors that effects keep between calls only ever grow, and a failed growth must leave the
// call's image untouched rather than throw.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

namespace lx {

// Grows `scratch` to at least `needed` elements (new ones value-initialised); false, with it left as it
// was, when that is more than a vector can hold or the memory cannot be had.
template <typename T>
bool GrowScratch(std::vector<T>& scratch, uint64_t needed) {
  if (needed > scratch.max_size()) return false;
  if (scratch.size() >= needed) return true;
  try {
    scratch.resize(static_cast<size_t>(needed));
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

}  // namespace lx
