// User32's rectangle helpers in portable form: built on every system so that the Windows tests can
// compare them with the real ones.
#pragma once

#include <cstdint>

namespace lx::portable {

struct Rect {
  int32_t left, top, right, bottom;
};

int SetRect(Rect* r, int left, int top, int right, int bottom);
int SetRectEmpty(Rect* r);
int CopyRect(Rect* dst, const Rect* src);
int OffsetRect(Rect* r, int dx, int dy);
int InflateRect(Rect* r, int dx, int dy);
int IsRectEmpty(const Rect* r);

}  // namespace lx::portable
