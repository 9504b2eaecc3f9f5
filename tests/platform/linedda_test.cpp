// LineDDA as the Shadow extrusion walks it (gdi32 on Windows), and the processor the blends are chosen by.
#include <gtest/gtest.h>
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

TEST(LineDDA, PointsStopBeforeTheEndInEveryKindOfOctant) {
  EXPECT_EQ(Walk(2, 2, 2, 2), Points{});
  EXPECT_EQ(Walk(0, 0, 5, 0), (Points{{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}}));
  EXPECT_EQ(Walk(0, 0, 0, -3), (Points{{0, 0}, {0, -1}, {0, -2}}));
  EXPECT_EQ(Walk(-5, -5, 0, 0), (Points{{-5, -5}, {-4, -4}, {-3, -3}, {-2, -2}, {-1, -1}}));
  EXPECT_EQ(Walk(0, 0, 4, 2), (Points{{0, 0}, {1, 0}, {2, 1}, {3, 1}}));
  EXPECT_EQ(Walk(4, 2, 0, 0), (Points{{4, 2}, {3, 2}, {2, 1}, {1, 1}}));
  EXPECT_EQ(Walk(3, -7, 0, 0), (Points{{3, -7}, {3, -6}, {2, -5}, {2, -4}, {1, -3}, {1, -2}, {0, -1}}));
  EXPECT_EQ(Walk(0, 0, -3, 7), (Points{{0, 0}, {0, 1}, {-1, 2}, {-1, 3}, {-2, 4}, {-2, 5}, {-3, 6}}));
}

TEST(Cpu, ProcessorTypeIsAnX86TypeWithMMX) {
#if defined(__i386__) || defined(__x86_64__)
  // 586 for 32-bit programs on any Pentium or later, 8664 for 64-bit ones; all of them have MMX.
  EXPECT_EQ(ProcessorType(), sizeof(void*) == 4 ? 586u : 8664u);
  EXPECT_TRUE(HasMMX());
#else
  EXPECT_FALSE(HasMMX());
#endif
}
}  // namespace
}  // namespace lx::platform
