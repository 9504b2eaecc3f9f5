// The real Win32 calls.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#define LX_LINEDDA_CALLBACK CALLBACK

namespace lx::platform {

using ::BOOL;
using ::HGLOBAL;
using ::LINEDDAPROC;
using ::LPARAM;
using ::RECT;
using ::UINT;

using ::GlobalAlloc;
using ::GlobalFree;
using ::GlobalLock;
using ::GlobalSize;
using ::GlobalUnlock;

using ::IsBadReadPtr;
using ::IsBadWritePtr;

using ::CopyRect;
using ::InflateRect;
using ::IsRectEmpty;
using ::OffsetRect;
using ::SetRect;
using ::SetRectEmpty;

using ::LineDDA;

}  // namespace lx::platform
