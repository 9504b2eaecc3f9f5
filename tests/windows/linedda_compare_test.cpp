// The portable LineDDA (what Linux builds step the Shadow extrusion with) against gdi32's, point by
// point: both builds must put the extrusion stamps in the same places.
#include <gtest/gtest.h>

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#include <climits>
#include <utility>
#include <vector>
#include "platform/portable_linedda.h"

namespace {
using Points = std::vector<std::pair<int, int>>;

void CALLBACK CollectReal(int x, int y, LPARAM data) {
  reinterpret_cast<Points*>(data)->emplace_back(x, y);
}
void CollectPortable(int x, int y, intptr_t data) {
  reinterpret_cast<Points*>(data)->emplace_back(x, y);
}

// Every line from each start to the points of the square of half-side `reach` around it: all eight
// octants, their borders and every length from 0 to reach, up to the int32 limits.
TEST(LineDDAAgainstGdi, EveryOctantAndLengthFromSeveralStartsUpToTheInt32Limits) {
  const int starts[][3] = {{0, 0, 100},
                           {37, -11, 40},
                           {-1000, 2500, 25},
                           {INT_MAX - 30, INT_MIN + 30, 30},
                           {INT_MIN + 30, INT_MAX - 30, 30}};
  for (const auto& [x0, y0, reach] : starts) {
    for (int dy = -reach; dy <= reach; ++dy) {
      for (int dx = -reach; dx <= reach; ++dx) {
        Points real, portable;
        ASSERT_TRUE(::LineDDA(x0, y0, x0 + dx, y0 + dy, CollectReal, reinterpret_cast<LPARAM>(&real)));
        ASSERT_EQ(lx::portable::LineDDA(x0, y0, x0 + dx, y0 + dy, CollectPortable,
                                        reinterpret_cast<intptr_t>(&portable)),
                  1);
        ASSERT_EQ(portable, real) << "from (" << x0 << "," << y0 << ") by (" << dx << "," << dy << ")";
      }
    }
  }
}
}  // namespace
