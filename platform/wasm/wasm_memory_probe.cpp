// IsBadReadPtr and IsBadWritePtr for WebAssembly. Linear memory has no protected pages: every address
// below its current size can be read and written, and nothing above it can, so the size decides. Address
// 0 is refused as Windows refuses it, although WebAssembly would let it be read.

#include "platform/platform.h"

namespace lx::platform {

namespace {

constexpr uintptr_t kWasmPageBytes = 65536;

int IsOutsideLinearMemory(const void* p, uintptr_t n) {
  if (n == 0) return 0;
  if (p == nullptr) return 1;
  const uintptr_t first = reinterpret_cast<uintptr_t>(p);
  const uintptr_t size = static_cast<uintptr_t>(__builtin_wasm_memory_size(0)) * kWasmPageBytes;
  return first < size && n <= size - first ? 0 : 1;
}

}  // namespace

int IsBadReadPtr(const void* p, uintptr_t n) {
  return IsOutsideLinearMemory(p, n);
}
int IsBadWritePtr(void* p, uintptr_t n) {
  return IsOutsideLinearMemory(p, n);
}

}  // namespace lx::platform
