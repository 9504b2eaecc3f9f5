// The layer rasterizer against AGG's own scanline rasterizer on the same polygons: every scanline, span
// and coverage must match, across clipping, overlaps, long edges and reuse.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <agg_rasterizer_scanline_aa.h>

#include "effects/layer_rasterizer.h"

namespace {

using AggRasterizer = agg::rasterizer_scanline_aa<agg::rasterizer_sl_clip_dbl>;

struct Point {
  double x, y;
};
using Contour = std::vector<Point>;

// Every scanline a rasterizer sweeps from `first` on (or from its top), as text: "y: x+len[covers] ...".
template <class Rasterizer>
std::string Sweep(Rasterizer& ras, int first) {
  std::ostringstream out;
  if (first == INT32_MIN ? !ras.rewind_scanlines() : !ras.navigate_scanline(first)) return "nothing";
  agg::scanline_u8 sl;
  sl.reset(ras.min_x(), ras.max_x());
  out << ras.min_x() << ".." << ras.max_x() << " x " << ras.min_y() << ".." << ras.max_y() << "\n";
  while (ras.sweep_scanline(sl)) {
    out << sl.y() << ":";
    auto span = sl.begin();
    for (unsigned n = sl.num_spans(); n > 0; --n, ++span) {
      out << " " << span->x << "+" << span->len << "[";
      for (int i = 0; i < span->len; ++i) out << int(span->covers[i]) << (i + 1 < span->len ? "," : "");
      out << "]";
    }
    out << "\n";
  }
  return out.str();
}

template <class Rasterizer>
void Feed(Rasterizer& ras, const std::vector<Contour>& shape, bool close) {
  for (const Contour& c : shape) {
    ras.move_to_d(c[0].x, c[0].y);
    for (size_t i = 1; i < c.size(); ++i) ras.line_to_d(c[i].x, c[i].y);
    if (close) ras.close_polygon();
  }
}

struct Case {
  const char* what;
  double clipW, clipH;   // clip box from (0, 0)
  double lo, hi;         // vertex range across
  double yLo, yHi;       // and down
  int contours, points;  // per shape
  bool close;            // explicit close_polygon (else left to the sweep)
  int navigateTo;        // INT32_MIN: sweep from the top
};

std::vector<Contour> RandomShape(const Case& c, std::mt19937& random) {
  std::uniform_real_distribution<double> across(c.lo, c.hi), down(c.yLo, c.yHi);
  std::vector<Contour> shape(c.contours);
  for (Contour& contour : shape) {
    for (int i = 0; i < c.points; ++i) contour.push_back({across(random), down(random)});
  }
  return shape;
}

TEST(LayerRasterizer, SweepsEveryScanlineAsAggDoes) {
  // Shapes whose extent holds up to 2^18 pixels are summed on a grid, larger ones through AGG's store.
  const Case cases[] = {
      {"small shapes inside", 64, 64, 2, 60, 2, 60, 1, 5, true, INT32_MIN},
      {"many overlapping contours", 64, 48, 0, 48, 0, 48, 12, 7, false, INT32_MIN},
      {"crossing every side of the clip", 40, 30, -30, 70, -30, 70, 3, 9, true, INT32_MIN},
      {"sub-pixel slivers", 16, 16, 7.9, 8.3, 7.9, 8.3, 2, 4, true, INT32_MIN},
      {"far off and huge", 200, 100, -1e7, 1e7, -1e7, 1e7, 2, 6, false, INT32_MIN},
      {"dense, 300 edges", 128, 128, -5, 133, -5, 133, 1, 300, true, INT32_MIN},
      {"started part-way down", 64, 64, 0, 64, 0, 64, 3, 8, true, 30},
      {"wider rows than one mark word", 500, 20, -20, 520, -5, 25, 4, 40, false, INT32_MIN},
      {"too large for the grid", 700, 500, -50, 750, -50, 750, 3, 12, false, INT32_MIN},
      {"too large for the grid, started part-way down", 700, 500, -50, 750, -50, 750, 3, 12, true, 250},
  };

  std::mt19937 random(5);
  for (const Case& c : cases) {
    lx::LayerRasterizer ours;
    AggRasterizer theirs;
    ours.clip_box(0, 0, c.clipW, c.clipH);
    theirs.clip_box(0, 0, c.clipW, c.clipH);
    // Several shapes through the same rasterizers: what one sweep leaves behind must not reach the next.
    for (int round = 0; round < 6; ++round) {
      const std::vector<Contour> shape = RandomShape(c, random);
      // Now and then the memory is given back, as a render process does after a large call.
      if (round % 3 == 2) ours.trim(0);
      ours.reset();
      theirs.reset();
      Feed(ours, shape, c.close);
      Feed(theirs, shape, c.close);
      const std::string expected = Sweep(theirs, c.navigateTo);
      ASSERT_EQ(Sweep(ours, c.navigateTo), expected) << c.what << ", round " << round;
    }
  }
}

// AGG halves an edge longer than 16384 pixels across, then walks it whole as well: a sloped band that
// long, once on the grid and once too large for it.
TEST(LayerRasterizer, SweepsEdgesLongerThanAggHalvesAsAggDoes) {
  for (double width : {16500.0, 40000.0}) {
    const std::vector<Contour> band = {{{5, 1}, {width - 5, 12.5}, {width - 5, 13}, {5, 3}}};
    lx::LayerRasterizer ours;
    AggRasterizer theirs;
    ours.clip_box(0, 0, width, 14);
    theirs.clip_box(0, 0, width, 14);
    Feed(ours, band, true);
    Feed(theirs, band, true);
    EXPECT_EQ(Sweep(ours, INT32_MIN), Sweep(theirs, INT32_MIN)) << width;
  }
}

TEST(LayerRasterizer, DrawsNothingForAnEmptyOrFlatShapeOrAScanlineOutside) {
  lx::LayerRasterizer ras;
  ras.clip_box(0, 0, 32, 32);
  EXPECT_FALSE(ras.rewind_scanlines());
  ras.reset();
  ras.move_to_d(4, 4);
  ras.line_to_d(20, 4);  // a horizontal line encloses nothing
  EXPECT_FALSE(ras.rewind_scanlines());
  ras.reset();
  Feed(ras, {{{2, 2}, {10, 2}, {10, 10}, {2, 10}}}, true);
  EXPECT_FALSE(ras.navigate_scanline(11));
  EXPECT_FALSE(ras.navigate_scanline(1));
  ASSERT_TRUE(ras.navigate_scanline(9));
  agg::scanline_u8 sl;
  sl.reset(ras.min_x(), ras.max_x());
  ASSERT_TRUE(ras.sweep_scanline(sl));
  EXPECT_EQ(sl.y(), 9);
  ASSERT_EQ(sl.num_spans(), 1u);
  EXPECT_EQ(sl.begin()->x, 2);
  EXPECT_EQ(sl.begin()->len, 8);
  EXPECT_EQ(sl.begin()->covers[0], 255);
  EXPECT_FALSE(ras.sweep_scanline(sl));
}

}  // namespace
