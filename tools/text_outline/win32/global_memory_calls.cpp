#include "global_memory_calls.h"

#include <windows.h>

namespace lx::text::detail {

void* AllocateGlobal(size_t bytes) {
  return GlobalAlloc(GMEM_FIXED, bytes);
}
void FreeGlobal(void* handle) {
  GlobalFree(handle);
}

}  // namespace lx::text::detail
