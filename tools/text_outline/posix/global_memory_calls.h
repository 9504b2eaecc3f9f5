// Global memory from the Lettrix library, which offers kernel32's calls under its own names here. Inline,
// so that the reference to the library is made by the program's own code, whichever library (static or
// shared) the program links.
#pragma once

#include <cstddef>

#include "lettrix/lettrix.h"

namespace lx::text::detail {

constexpr unsigned kFixedBlock = 0;  // GMEM_FIXED: the handle is the address

inline void* AllocateGlobal(size_t bytes) {
  return LettrixGlobalAlloc(kFixedBlock, bytes);
}
inline void FreeGlobal(void* handle) {
  LettrixGlobalFree(handle);
}

}  // namespace lx::text::detail
