// The rasterizer of the layer shapes: AGG's scanline rasterizer with its cells and clipping, but swept
// without sorting a scanline's cells. AGG orders each scanline's cells by x and merges equal ones as it
// sweeps; here each scanline's cells are summed into one dense row, and the row is walked left to right.
// The sums are the same integers in another order, so every scanline comes out exactly as AGG's would,
// with its default non-zero rule and no gamma: same spans, same coverages.
#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include <agg_rasterizer_cells_aa.h>
#include <agg_rasterizer_sl_clip.h>
#include <agg_scanline_u.h>

namespace lx {

// One cell of the rasterizer's store, as AGG's own cell; a type of its own so that its scanlines are
// left unsorted.
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

  // The scanlines' extent, valid once rewind_scanlines() or navigate_scanline() has run.
  int min_x() const { return outline_.min_x(); }
  int min_y() const { return outline_.min_y(); }
  int max_x() const { return outline_.max_x(); }
  int max_y() const { return outline_.max_y(); }

  // Closes the shape and starts the sweep at its first scanline; false when nothing was drawn.
  bool rewind_scanlines();
  // As rewind_scanlines(), but the sweep starts at scanline y; false when y lies outside the shape.
  bool navigate_scanline(int y);
  // The next scanline with anything on it, into `sl`, which the caller has reset to min_x()..max_x();
  // false past the last.
  bool sweep_scanline(agg::scanline_u8& sl);

 private:
  enum class Status { kInitial, kMoveTo, kLineTo, kClosed };

  // One x of the dense row: the sums of the cells there, modulo 2^32 as AGG's ints would wrap.
  struct RowSum {
    uint32_t cover;
    uint32_t area;
  };

  bool prepare();
  void sweepRow(const LayerCell* const* cells, unsigned count, agg::scanline_u8& sl);

  agg::rasterizer_cells_aa<LayerCell> outline_;
  agg::rasterizer_sl_clip_dbl clipper_;
  double startX_ = 0, startY_ = 0;
  Status status_ = Status::kInitial;
  int scanY_ = 0;
  // The dense row over min_x()..max_x() and one bit per x marking where cells fell; both are left zero
  // after every scanline.
  std::vector<RowSum> row_;
  std::vector<uint64_t> marked_;
};

}  // namespace lx
