// The portable stand-ins for user32's rectangle helpers.
#include <gtest/gtest.h>

#include <climits>

#include "tests/support/portable_rect.h"

namespace lx::portable {
namespace {

void ExpectRect(const Rect& r, int left, int top, int right, int bottom) {
  EXPECT_EQ(r.left, left);
  EXPECT_EQ(r.top, top);
  EXPECT_EQ(r.right, right);
  EXPECT_EQ(r.bottom, bottom);
}

TEST(Rect, SetCopyAndClear) {
  Rect r;
  EXPECT_NE(SetRect(&r, 1, 2, 30, 40), 0);
  ExpectRect(r, 1, 2, 30, 40);
  // Stored as given, not normalised.
  EXPECT_NE(SetRect(&r, 9, 8, -7, -6), 0);
  ExpectRect(r, 9, 8, -7, -6);
  Rect copy{};
  EXPECT_NE(CopyRect(&copy, &r), 0);
  ExpectRect(copy, 9, 8, -7, -6);
  EXPECT_NE(SetRectEmpty(&copy), 0);
  ExpectRect(copy, 0, 0, 0, 0);
}

TEST(Rect, OffsetAndInflate) {
  Rect r;
  SetRect(&r, 10, 20, 30, 40);
  EXPECT_NE(OffsetRect(&r, -15, 5), 0);
  ExpectRect(r, -5, 25, 15, 45);
  EXPECT_NE(InflateRect(&r, 3, 4), 0);
  ExpectRect(r, -8, 21, 18, 49);
  EXPECT_NE(InflateRect(&r, -20, -1), 0);  // shrinking past the middle inverts it
  ExpectRect(r, 12, 22, -2, 48);
  EXPECT_NE(IsRectEmpty(&r), 0);
}

TEST(Rect, ArithmeticWrapsAtTheInt32Limits) {
  Rect r;
  SetRect(&r, INT_MAX, INT_MIN, INT_MAX, INT_MIN);
  OffsetRect(&r, 1, -1);
  ExpectRect(r, INT_MIN, INT_MAX, INT_MIN, INT_MAX);
  InflateRect(&r, 1, 1);
  ExpectRect(r, INT_MAX, INT_MAX - 1, INT_MIN + 1, INT_MIN);
}

TEST(Rect, EmptyMeansNoWidthOrNoHeight) {
  Rect r;
  SetRect(&r, 0, 0, 1, 1);
  EXPECT_EQ(IsRectEmpty(&r), 0);
  SetRect(&r, 5, 0, 5, 10);
  EXPECT_NE(IsRectEmpty(&r), 0);
  SetRect(&r, 0, 5, 10, 5);
  EXPECT_NE(IsRectEmpty(&r), 0);
  SetRect(&r, 6, 0, 5, 10);
  EXPECT_NE(IsRectEmpty(&r), 0);
  SetRect(&r, -10, -10, -9, -9);
  EXPECT_EQ(IsRectEmpty(&r), 0);
  EXPECT_NE(IsRectEmpty(nullptr), 0);
}

TEST(Rect, NullRectanglesFail) {
  Rect r{1, 2, 3, 4};
  EXPECT_EQ(SetRect(nullptr, 1, 2, 3, 4), 0);
  EXPECT_EQ(SetRectEmpty(nullptr), 0);
  EXPECT_EQ(CopyRect(nullptr, &r), 0);
  EXPECT_EQ(CopyRect(&r, nullptr), 0);
  ExpectRect(r, 1, 2, 3, 4);
  EXPECT_EQ(OffsetRect(nullptr, 1, 1), 0);
  EXPECT_EQ(InflateRect(nullptr, 1, 1), 0);
}

}  // namespace
}  // namespace lx::portable
