// The platform calls forwarded to kernel32 and gdi32.
#include "platform/win32/win32_calls.h"

#include "platform/platform.h"

namespace lx::platform {

MemoryHandle GlobalAlloc(unsigned flags, size_t bytes) {
  return ::GlobalAlloc(flags, bytes);
}

void* GlobalLock(MemoryHandle h) {
  return ::GlobalLock(h);
}

int GlobalUnlock(MemoryHandle h) {
  return ::GlobalUnlock(h);
}

MemoryHandle GlobalFree(MemoryHandle h) {
  return ::GlobalFree(h);
}

size_t GlobalSize(MemoryHandle h) {
  return ::GlobalSize(h);
}

int IsBadReadPtr(const void* p, uintptr_t n) {
  return ::IsBadReadPtr(p, n);
}

int IsBadWritePtr(void* p, uintptr_t n) {
  return ::IsBadWritePtr(p, n);
}

namespace {

// gdi32 calls back with its own calling convention; this carries the caller's callback across.
struct LineDDAForward {
  LineDDAProc proc;
  intptr_t data;
};

void CALLBACK ForwardPoint(int x, int y, LPARAM forward) {
  const auto* f = reinterpret_cast<const LineDDAForward*>(forward);
  f->proc(x, y, f->data);
}

}  // namespace

int LineDDA(int x1, int y1, int x2, int y2, LineDDAProc proc, intptr_t data) {
  if (proc == nullptr) return 0;
  LineDDAForward forward{proc, data};
  return ::LineDDA(x1, y1, x2, y2, ForwardPoint, reinterpret_cast<LPARAM>(&forward));
}

}  // namespace lx::platform
