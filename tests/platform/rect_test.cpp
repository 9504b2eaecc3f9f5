// The portable stand-ins for user32's rectangle helpers.
#include <gtest/gtest.h>

#include <array>
#include <climits>

#include "tests/support/portable_rect.h"

namespace lx::portable {
namespace {

std::array<int, 4> Of(const Rect& r) {
  return {r.left, r.top, r.right, r.bottom};
}

TEST(Rect, HelpersStoreAsGivenAndWrapAtTheLimits) {
  Rect r, copy{};
  EXPECT_NE(SetRect(&r, 9, 8, -7, -6), 0);  // not normalised
  EXPECT_NE(CopyRect(&copy, &r), 0);
  EXPECT_EQ(Of(copy), (std::array<int, 4>{9, 8, -7, -6}));
  EXPECT_NE(SetRectEmpty(&copy), 0);
  EXPECT_EQ(Of(copy), (std::array<int, 4>{0, 0, 0, 0}));
  SetRect(&r, 10, 20, 30, 40);
  EXPECT_NE(OffsetRect(&r, -15, 5), 0);
  EXPECT_EQ(Of(r), (std::array<int, 4>{-5, 25, 15, 45}));
  EXPECT_NE(InflateRect(&r, 3, 4), 0);
  EXPECT_EQ(Of(r), (std::array<int, 4>{-8, 21, 18, 49}));
  EXPECT_NE(InflateRect(&r, -20, -1), 0);
  EXPECT_EQ(Of(r), (std::array<int, 4>{12, 22, -2, 48}));
  SetRect(&r, INT_MAX, INT_MIN, INT_MAX, INT_MIN);
  OffsetRect(&r, 1, -1);
  EXPECT_EQ(Of(r), (std::array<int, 4>{INT_MIN, INT_MAX, INT_MIN, INT_MAX}));
  InflateRect(&r, 1, 1);
  EXPECT_EQ(Of(r), (std::array<int, 4>{INT_MAX, INT_MAX - 1, INT_MIN + 1, INT_MIN}));
}

TEST(Rect, EmptyMeansNoWidthOrNoHeightAndNullFails) {
  const struct {
    int l, t, r, b;
    bool empty;
  } cases[] = {{0, 0, 1, 1, false}, {5, 0, 5, 10, true}, {0, 5, 10, 5, true},
               {6, 0, 5, 10, true}, {0, 6, 10, 5, true}, {-10, -10, -9, -9, false}};
  for (const auto& c : cases) {
    Rect r{c.l, c.t, c.r, c.b};
    EXPECT_EQ(IsRectEmpty(&r) != 0, c.empty) << c.l << "," << c.t << "," << c.r << "," << c.b;
  }
  Rect r{1, 2, 3, 4};
  EXPECT_NE(IsRectEmpty(nullptr), 0);
  EXPECT_EQ(SetRect(nullptr, 1, 2, 3, 4), 0);
  EXPECT_EQ(SetRectEmpty(nullptr), 0);
  EXPECT_EQ(CopyRect(nullptr, &r), 0);
  EXPECT_EQ(CopyRect(&r, nullptr), 0);
  EXPECT_EQ(OffsetRect(nullptr, 1, 1), 0);
  EXPECT_EQ(InflateRect(nullptr, 1, 1), 0);
  EXPECT_EQ(Of(r), (std::array<int, 4>{1, 2, 3, 4}));
}

}  // namespace
}  // namespace lx::portable
