// LineDDA as the Shadow extrusion walks it (gdi32 on Windows).
#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>
#include <vector>

#include "platform/platform.h"

namespace lx::platform {
namespace {

using Points = std::vector<std::pair<int, int>>;

Points Walk(int x1, int y1, int x2, int y2) {
  Points points;
  const auto collect = [](int x, int y, intptr_t data) {
    reinterpret_cast<Points*>(data)->emplace_back(x, y);
  };
  EXPECT_NE(LineDDA(x1, y1, x2, y2, collect, reinterpret_cast<intptr_t>(&points)), 0);
  return points;
}

TEST(LineDDA, PointsStopBeforeTheEnd) {
  EXPECT_EQ(Walk(0, 0, 5, 0), (Points{{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}}));
  EXPECT_EQ(Walk(0, 0, 0, -3), (Points{{0, 0}, {0, -1}, {0, -2}}));
  EXPECT_EQ(Walk(-5, -5, 0, 0), (Points{{-5, -5}, {-4, -4}, {-3, -3}, {-2, -2}, {-1, -1}}));
  EXPECT_EQ(Walk(0, 0, 4, 2), (Points{{0, 0}, {1, 0}, {2, 1}, {3, 1}}));
  EXPECT_EQ(Walk(4, 2, 0, 0), (Points{{4, 2}, {3, 2}, {2, 1}, {1, 1}}));
  EXPECT_EQ(Walk(3, -7, 0, 0), (Points{{3, -7}, {3, -6}, {2, -5}, {2, -4}, {1, -3}, {1, -2}, {0, -1}}));
  EXPECT_EQ(Walk(0, 0, -3, 7), (Points{{0, 0}, {0, 1}, {-1, 2}, {-1, 3}, {-2, 4}, {-2, 5}, {-3, 6}}));
}

TEST(LineDDA, EveryLineIsAConnectedWalkOfTheLongerExtent) {
  for (int dx = -12; dx <= 12; ++dx) {
    for (int dy = -12; dy <= 12; ++dy) {
      const Points p = Walk(3, -2, 3 + dx, -2 + dy);
      ASSERT_EQ(p.size(), static_cast<size_t>(std::max(std::abs(dx), std::abs(dy)))) << dx << "," << dy;
      if (p.empty()) continue;
      EXPECT_EQ(p.front(), std::make_pair(3, -2));
      EXPECT_LE(std::abs(3 + dx - p.back().first), 1);
      EXPECT_LE(std::abs(-2 + dy - p.back().second), 1);
      for (size_t i = 1; i < p.size(); ++i) {
        const int sx = p[i].first - p[i - 1].first, sy = p[i].second - p[i - 1].second;
        EXPECT_TRUE(std::max(std::abs(sx), std::abs(sy)) == 1 && sx * dx >= 0 && sy * dy >= 0)
            << dx << "," << dy << " step " << i;
      }
    }
  }
}

}  // namespace
}  // namespace lx::platform
