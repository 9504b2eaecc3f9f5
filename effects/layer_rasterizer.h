// The rasterizer of the layer shapes: AGG's scanline rasterizer with its clipping and its cells, but
// summed instead of sorted. AGG stores every cell, orders each scanline's cells by x and merges equal
// ones as it sweeps. Here a shape of modest extent is walked straight onto a dense grid of cell sums,
// and a larger one goes through AGG's cell store, each scanline summed into one dense row. Either way
// the sums are the same integers in another order, so every scanline comes out as AGG's would with its
// default non-zero rule and no gamma: the same spans with the same coverages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include <agg_rasterizer_cells_aa.h>
#include <agg_rasterizer_sl_clip.h>
#include <agg_scanline_u.h>

namespace lx {

// One cell of AGG's store, as AGG's own cell; a type of its own so that its scanlines are left
// unsorted.
struct LayerCell {
  int x;
  int y;
  int cover;
  int area;

  void initial() {
    x = std::numeric_limits<int>::max();
    y = std::numeric_limits<int>::max();
    cover = 0;
    area = 0;
  }
  void style(const LayerCell&) {}
  int not_equal(int ex, int ey, const LayerCell&) const {
    return static_cast<int>((static_cast<unsigned>(ex) - static_cast<unsigned>(x)) |
                            (static_cast<unsigned>(ey) - static_cast<unsigned>(y)));
  }
};

// The sums of the cells at one pixel, modulo 2^32 as AGG's ints would wrap.
struct CellSum {
  uint32_t cover;
  uint32_t area;
};

}  // namespace lx

namespace agg {

// The sweep sums a scanline's cells by x itself, so the store's per-scanline sort is not needed.
template <>
inline void qsort_cells<lx::LayerCell>(lx::LayerCell**, unsigned) {}

}  // namespace agg

namespace lx {

// Drop-in for agg::rasterizer_scanline_aa<agg::rasterizer_sl_clip_dbl> as the layer renderers use it:
// vertices in pixels (doubles), polygons closed automatically, and clipping in double precision, so
// that far-off or huge coordinates are cut to the image before they turn into 24.8 fixed point.
class LayerRasterizer {
 public:
  LayerRasterizer() = default;
  LayerRasterizer(const LayerRasterizer&) = delete;
  LayerRasterizer& operator=(const LayerRasterizer&) = delete;

  void reset();
  void clip_box(double x1, double y1, double x2, double y2);
  void move_to_d(double x, double y);
  void line_to_d(double x, double y);
  void close_polygon();

  // The scanlines' extent in pixels, valid once rewind_scanlines() or navigate_scanline() has run.
  int min_x() const { return lines_.minX; }
  int min_y() const { return lines_.minY; }
  int max_x() const { return lines_.maxX; }
  int max_y() const { return lines_.maxY; }

  // Closes the shape and starts the sweep at its first scanline; false when nothing was drawn.
  bool rewind_scanlines();
  // As rewind_scanlines(), but the sweep starts at scanline y; false when y lies outside the shape.
  bool navigate_scanline(int y);
  // The next scanline with anything on it, into `sl`, which the caller has reset to min_x()..max_x();
  // false past the last.
  bool sweep_scanline(agg::scanline_u8& sl);

  // Gives back the memory held beyond maxBytes, and forgets the shape.
  void trim(size_t maxBytes);

 private:
  enum class Status { kInitial, kMoveTo, kLineTo, kClosed };

  struct Segment {
    int x1, y1, x2, y2;
  };
  // Where the clipper sends its lines (24.8 fixed point): kept until the sweep, with the extent of their
  // cells as AGG's store tracks it.
  struct Lines {
    std::vector<Segment> segments;
    int minX, minY, maxX, maxY;

    void clear();
    void line(int x1, int y1, int x2, int y2);
  };

  bool prepare();
  void clearGrid();
  template <bool kClear>
  void sweepRow(CellSum* sums, uint64_t* marks, size_t words, agg::scanline_u8& sl);

  Lines lines_;
  agg::rasterizer_sl_clip_dbl clipper_;
  // Only for shapes whose grid would be too large, made on the first; `storeCells_` is the most cells it
  // has held, as AGG keeps their blocks until it goes.
  std::unique_ptr<agg::rasterizer_cells_aa<LayerCell>> store_;
  size_t storeCells_ = 0;
  double startX_ = 0, startY_ = 0;
  Status status_ = Status::kInitial;
  bool prepared_ = false;
  bool onGrid_ = false;     // the cells were summed onto the grid
  bool gridDirty_ = false;  // the grid holds sums a reset must clear
  unsigned cells_ = 0;      // the cells AGG would have stored
  int scanY_ = 0;
  // The grid: one CellSum per pixel of the extent, row after row (or, for a larger shape, one row reused
  // for each scanline), and a bit per pixel marking where cells fell, `words_` words to a row.
  int gridWidth_ = 0;
  size_t gridRows_ = 0;
  size_t words_ = 0;
  std::vector<CellSum> sums_;
  std::vector<uint64_t> marks_;
};

}  // namespace lx
