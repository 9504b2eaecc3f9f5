// Global memory for callers on systems without kernel32, so that they can build outline blocks exactly
// as Windows callers do.

#include "lettrix/lettrix.h"
#include "platform/platform.h"

#if defined(LETTRIX_HAS_GLOBAL_MEMORY)

void* LETTRIX_CALL LettrixGlobalAlloc(unsigned flags, size_t bytes) {
  return lx::platform::GlobalAlloc(flags, bytes);
}

void* LETTRIX_CALL LettrixGlobalLock(void* handle) {
  return lx::platform::GlobalLock(handle);
}

int LETTRIX_CALL LettrixGlobalUnlock(void* handle) {
  return lx::platform::GlobalUnlock(handle);
}

void* LETTRIX_CALL LettrixGlobalFree(void* handle) {
  return lx::platform::GlobalFree(handle);
}

size_t LETTRIX_CALL LettrixGlobalSize(void* handle) {
  return lx::platform::GlobalSize(handle);
}

#endif
