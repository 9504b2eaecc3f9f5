// User32's rectangle helpers in portable form, kept beside the tests because the library needs none of
// them: its own rectangles are IntRect, whose emptiness is IsRectEmpty's, and it offsets, cuts and joins
// them in 64 bits or clamped, where user32 would wrap. The Windows tests compare these with the real
// ones.
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
