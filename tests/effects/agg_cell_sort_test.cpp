// The scanline cell order on every path it takes: compared, counted one to three bytes deep, and through
// the pointers for long or wide scanlines.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "effects/agg_cell_sort.h"

namespace {

TEST(CellSort, OrdersEveryScanlineByXKeepingItsCells) {
  struct Case {
    unsigned num;
    int least, span;
  };
  const Case cases[] = {{2, 0, 1},       {8, -5, 3},    {9, 0, 40},        {63, -40, 300},
                        {64, 5, 0},      {64, -3, 255}, {300, 0, 256},     {1000, -7, 70000},
                        {1024, 0, 4000}, {1025, 0, 50}, {50, -9, 1 << 22}, {200, -2000000000, 2000000000}};
  std::mt19937 random(11);
  for (const Case& c : cases) {
    std::uniform_int_distribution<int> x(c.least, c.least + c.span);
    std::vector<agg::cell_aa> cells(c.num);
    std::vector<agg::cell_aa*> order;
    for (agg::cell_aa& cell : cells) {
      cell.x = x(random);
      order.push_back(&cell);
    }
    // Descending runs, as edges walked leftwards leave them, over a random start.
    std::sort(order.begin(), order.begin() + c.num / 3,
              [](const agg::cell_aa* a, const agg::cell_aa* b) { return a->x > b->x; });
    cells[0].x = c.least;
    cells[c.num - 1].x = c.least + c.span;
    std::vector<agg::cell_aa*> sorted = order;
    agg::qsort_cells(sorted.data(), c.num);
    EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end(),
                               [](const agg::cell_aa* a, const agg::cell_aa* b) { return a->x < b->x; }))
        << c.num << " cells over " << c.span;
    std::sort(order.begin(), order.end());
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted, order) << c.num << " cells over " << c.span;
  }
}

}  // namespace
