// The one door to the Win32 calls the library makes: kernel32's global memory and pointer checks,
// user32's rectangle helpers, gdi32's LineDDA and the processor type. On Windows these are the real
// calls; elsewhere a portable implementation with the same observable behaviour stands in.
#pragma once

#include <cstddef>
#include <cstdint>

#ifdef _WIN32
#include "platform/win32/win32_calls.h"
#else
#include "platform/posix/posix_calls.h"
#endif

namespace lx::platform {

// GlobalAlloc flags (the Win32 names are macros on Windows, so ours carry a prefix).
constexpr unsigned kGmemFixed = 0x0000;
constexpr unsigned kGmemMoveable = 0x0002;
constexpr unsigned kGmemZeroInit = 0x0040;
constexpr unsigned kGmemMoveableZeroInit = kGmemMoveable | kGmemZeroInit;  // 0x42

// Handles of 0 and of all ones both mean "no block".
inline bool IsNoBlock(HGLOBAL h) {
  return h == nullptr || reinterpret_cast<uintptr_t>(h) == ~uintptr_t{0};
}

// The library's own blocks are movable, zero-filled and locked for their whole life. Allocates and locks
// `bytes`; on failure returns null and sets *handle to null (a block that cannot be locked is freed).
// A caller that overwrites every byte at once may pass kGmemMoveable alone and skip the zero fill.
inline void* AllocateLockedBlock(size_t bytes, HGLOBAL* handle, unsigned flags = kGmemMoveableZeroInit) {
  *handle = GlobalAlloc(flags, bytes);
  if (IsNoBlock(*handle)) {
    *handle = nullptr;
    return nullptr;
  }
  void* memory = GlobalLock(*handle);
  if (memory == nullptr) {
    GlobalFree(*handle);
    *handle = nullptr;
  }
  return memory;
}

// Unlocks, then frees, such a block; 0 and all ones are no block.
inline void ReleaseLockedBlock(HGLOBAL handle) {
  if (IsNoBlock(handle)) return;
  GlobalUnlock(handle);
  GlobalFree(handle);
}

// dwProcessorType as GetSystemInfo reports it (386, 486, 586, 8664, ...).
uint32_t ProcessorType();

// True when the processor has MMX: CPUID function 1, EDX bit 23, unless the processor type is 386 or
// 486. Computed once and cached; every thread computes the same value.
bool HasMMX();

}  // namespace lx::platform
