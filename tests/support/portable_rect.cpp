#include "tests/support/portable_rect.h"

namespace lx::portable {

namespace {
// User32 adds in 32-bit registers: sums that leave the int32 range wrap instead of saturating.
int32_t WrapAdd(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}
int32_t WrapSub(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}
}  // namespace

int SetRect(Rect* r, int left, int top, int right, int bottom) {
  if (r == nullptr) return 0;
  // Stored as given: an inverted rectangle stays inverted (and counts as empty).
  *r = Rect{left, top, right, bottom};
  return 1;
}

int SetRectEmpty(Rect* r) {
  if (r == nullptr) return 0;
  *r = Rect{0, 0, 0, 0};
  return 1;
}

int CopyRect(Rect* dst, const Rect* src) {
  if (dst == nullptr || src == nullptr) return 0;
  *dst = *src;
  return 1;
}

int OffsetRect(Rect* r, int dx, int dy) {
  if (r == nullptr) return 0;
  r->left = WrapAdd(r->left, dx);
  r->right = WrapAdd(r->right, dx);
  r->top = WrapAdd(r->top, dy);
  r->bottom = WrapAdd(r->bottom, dy);
  return 1;
}

int InflateRect(Rect* r, int dx, int dy) {
  if (r == nullptr) return 0;
  r->left = WrapSub(r->left, dx);
  r->right = WrapAdd(r->right, dx);
  r->top = WrapSub(r->top, dy);
  r->bottom = WrapAdd(r->bottom, dy);
  return 1;
}

int IsRectEmpty(const Rect* r) {
  // No rectangle at all is as empty as one can be: user32 answers TRUE here, not FALSE.
  if (r == nullptr) return 1;
  return r->right <= r->left || r->bottom <= r->top ? 1 : 0;
}

}  // namespace lx::portable
