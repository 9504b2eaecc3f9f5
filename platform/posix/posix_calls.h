// Portable stand-ins for the Win32 calls, for systems without them. Types and results follow Win32.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/portable_linedda.h"
#include "platform/portable_rect.h"

#define LX_LINEDDA_CALLBACK

namespace lx::platform {

using HGLOBAL = void*;
using BOOL = int;
using UINT = unsigned;
using LPARAM = intptr_t;
using RECT = portable::Rect;
using LINEDDAPROC = portable::LineDDAProc;

// Global memory: the handle is the block's address (as for GMEM_FIXED blocks); unknown handles are
// refused (GlobalSize 0, GlobalLock null, GlobalUnlock 0, GlobalFree returns the handle) rather than
// dereferenced. A request for 0 bytes or for more than 2 GiB gives no block (null). Movable blocks count
// locks up to 255 (GlobalUnlock is nonzero while one remains); fixed blocks count none (GlobalUnlock 0).
// All five may be called from any thread.
HGLOBAL GlobalAlloc(UINT flags, size_t bytes);
void* GlobalLock(HGLOBAL h);
BOOL GlobalUnlock(HGLOBAL h);
HGLOBAL GlobalFree(HGLOBAL h);
size_t GlobalSize(HGLOBAL h);

// True when any byte of [p, p + n) cannot be read (written); n = 0 is never bad, a null p with n > 0 is,
// and so is a range that wraps past the top of the address space. Answered from the mapping list, without
// touching the memory; costs tens of microseconds whatever n is. Thread-safe.
BOOL IsBadReadPtr(const void* p, uintptr_t n);
BOOL IsBadWritePtr(void* p, uintptr_t n);

using portable::CopyRect;
using portable::InflateRect;
using portable::IsRectEmpty;
using portable::OffsetRect;
using portable::SetRect;
using portable::SetRectEmpty;

inline BOOL LineDDA(int x1, int y1, int x2, int y2, LINEDDAPROC proc, LPARAM data) {
  return portable::LineDDA(x1, y1, x2, y2, proc, data);
}

}  // namespace lx::platform
