// The one door to the Win32 calls the library makes: kernel32's global memory and pointer checks,
// gdi32's LineDDA and the processor type, in the library's own types. On Windows these forward to the
// real calls; elsewhere a portable implementation with the same observable behaviour stands in.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lx::platform {

// A global-memory handle (HGLOBAL).
using MemoryHandle = void*;

// Global memory: on systems without kernel32 the handle is the block's address (as for GMEM_FIXED
// blocks); unknown handles are refused (GlobalSize 0, GlobalLock null, GlobalUnlock 0, GlobalFree returns
// the handle) rather than dereferenced. A request for 0 bytes or for more than 2 GiB gives no block
// (null). Movable blocks count locks up to 255 (GlobalUnlock is nonzero while one remains); fixed blocks
// count none (GlobalUnlock 0). All five may be called from any thread.
MemoryHandle GlobalAlloc(unsigned flags, size_t bytes);
void* GlobalLock(MemoryHandle h);
int GlobalUnlock(MemoryHandle h);
MemoryHandle GlobalFree(MemoryHandle h);
size_t GlobalSize(MemoryHandle h);

// Nonzero when any byte of [p, p + n) cannot be read (written); n = 0 is never bad, a null p with n > 0
// is, and so is a range that wraps past the top of the address space. They see unmapped and protected
// memory only: a range inside a mapped but too small heap block passes. Thread-safe.
int IsBadReadPtr(const void* p, uintptr_t n);
int IsBadWritePtr(void* p, uintptr_t n);

// Called for every point LineDDA reports, with the caller's data.
using LineDDAProc = void (*)(int x, int y, intptr_t data);
// Reports every point of the line from (x1, y1) up to, but not including, (x2, y2), as gdi32 does.
int LineDDA(int x1, int y1, int x2, int y2, LineDDAProc proc, intptr_t data);

// GlobalAlloc flags (the Win32 names are macros on Windows, so ours carry a prefix).
constexpr unsigned kGmemFixed = 0x0000;
constexpr unsigned kGmemMoveable = 0x0002;
constexpr unsigned kGmemZeroInit = 0x0040;
constexpr unsigned kGmemMoveableZeroInit = kGmemMoveable | kGmemZeroInit;  // 0x42

// Handles of 0 and of all ones both mean "no block".
inline bool IsNoBlock(MemoryHandle h) {
  return h == nullptr || reinterpret_cast<uintptr_t>(h) == ~uintptr_t{0};
}

// The library's own blocks are movable, zero-filled and locked for their whole life. Allocates and locks
// `bytes`; on failure returns null and sets *handle to null (a block that cannot be locked is freed).
// A caller that overwrites every byte at once may pass kGmemMoveable alone and skip the zero fill.
inline void* AllocateLockedBlock(size_t bytes, MemoryHandle* handle, unsigned flags = kGmemMoveableZeroInit) {
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
inline void ReleaseLockedBlock(MemoryHandle handle) {
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
