// The portable rectangle helpers (used on Linux) against user32's, including null pointers, inverted
// rectangles and sums that leave the int32 range.
#include <gtest/gtest.h>

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <climits>
#include <vector>

#include "tests/support/portable_rect.h"

namespace {

using lx::portable::Rect;

Rect ToPortable(const RECT& r) {
  return Rect{static_cast<int32_t>(r.left), static_cast<int32_t>(r.top), static_cast<int32_t>(r.right),
              static_cast<int32_t>(r.bottom)};
}

void ExpectSame(const RECT& real, const Rect& p) {
  EXPECT_EQ((std::vector<LONG>{p.left, p.top, p.right, p.bottom}),
            (std::vector<LONG>{real.left, real.top, real.right, real.bottom}));
}

const std::vector<int> kValues = {INT_MIN, INT_MIN + 1, -100000, -7,     -1,          0,
                                  1,       2,           7,       100000, INT_MAX - 1, INT_MAX};

TEST(RectAgainstUser32, SetCopyOffsetInflateClearAndEmptinessWrapAlike) {
  for (int a : kValues) {
    for (int b : kValues) {
      RECT real, realCopy;
      Rect portable, portableCopy;
      EXPECT_EQ(lx::portable::SetRect(&portable, a, b, b, a), ::SetRect(&real, a, b, b, a));
      ExpectSame(real, portable);
      EXPECT_EQ(lx::portable::IsRectEmpty(&portable), ::IsRectEmpty(&real)) << a << " " << b;
      EXPECT_EQ(lx::portable::CopyRect(&portableCopy, &portable), ::CopyRect(&realCopy, &real));
      ExpectSame(realCopy, portableCopy);
      EXPECT_EQ(lx::portable::SetRectEmpty(&portableCopy), ::SetRectEmpty(&realCopy));
      ExpectSame(realCopy, portableCopy);
      EXPECT_EQ(lx::portable::IsRectEmpty(&portableCopy), ::IsRectEmpty(&realCopy));
      ::SetRect(&real, a, -a, b, a);
      portable = ToPortable(real);
      EXPECT_EQ(lx::portable::OffsetRect(&portable, b, a), ::OffsetRect(&real, b, a));
      ExpectSame(real, portable);
      EXPECT_EQ(lx::portable::InflateRect(&portable, a, b), ::InflateRect(&real, a, b));
      ExpectSame(real, portable);
      EXPECT_EQ(lx::portable::IsRectEmpty(&portable), ::IsRectEmpty(&real));
    }
  }
}

TEST(RectAgainstUser32, NullPointers) {
  RECT real{1, 2, 3, 4};
  Rect portable{1, 2, 3, 4};
  EXPECT_EQ(lx::portable::SetRect(nullptr, 1, 2, 3, 4), ::SetRect(nullptr, 1, 2, 3, 4));
  EXPECT_EQ(lx::portable::SetRectEmpty(nullptr), ::SetRectEmpty(nullptr));
  EXPECT_EQ(lx::portable::CopyRect(nullptr, &portable), ::CopyRect(nullptr, &real));
  EXPECT_EQ(lx::portable::CopyRect(&portable, nullptr), ::CopyRect(&real, nullptr));
  ExpectSame(real, portable);
  EXPECT_EQ(lx::portable::OffsetRect(nullptr, 1, 1), ::OffsetRect(nullptr, 1, 1));
  EXPECT_EQ(lx::portable::InflateRect(nullptr, 1, 1), ::InflateRect(nullptr, 1, 1));
  EXPECT_EQ(lx::portable::IsRectEmpty(nullptr), ::IsRectEmpty(nullptr));
}

}  // namespace
