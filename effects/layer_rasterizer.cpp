#include "effects/layer_rasterizer.h"

#include <algorithm>

namespace lx {

namespace {

using Conv = agg::rasterizer_sl_clip_dbl::conv_type;

constexpr int kShift = agg::poly_subpixel_shift;
constexpr int kScale = agg::poly_subpixel_scale;
constexpr int kMask = agg::poly_subpixel_mask;

// AGG's cell store takes at most 1024 blocks of 4096 cells and drops the cells past them; the grid
// counts the cells the store would take and drops the same ones.
constexpr unsigned kCellLimit = 1024u * 4096u;
// A shape whose extent holds more pixels than this goes through AGG's store instead: the grid's cost
// follows its area, the store's the shape's cells.
constexpr int64_t kGridPixels = int64_t{1} << 18;

// AGG's coverage of an accumulated area under the non-zero rule, without gamma: |area| / 512, at most 255.
unsigned CoverageOf(uint32_t area) {
  int cover = static_cast<int32_t>(area) >> (kShift * 2 + 1 - 8);
  if (cover < 0) cover = -cover;
  return cover > 255 ? 255u : static_cast<unsigned>(cover);
}

// p / d rounded down (d > 0), and the remainder, which then lies in [0, d): how AGG divides its steps.
struct FloorDivision {
  int quotient;
  int remainder;
};

FloorDivision FloorDivide(long long p, long long d) {
  FloorDivision f{static_cast<int>(p / d), static_cast<int>(p % d)};
  if (f.remainder < 0) {
    --f.quotient;
    f.remainder = static_cast<int>(f.remainder + d);
  }
  return f;
}

// The steps of a line after its first: each p / d rounded down or one more, the fraction carried from
// step to step as AGG carries it, starting from the remainder `carried` that the first step left.
class Steps {
 public:
  Steps(long long p, long long d, int carried) : d_(d), mod_(static_cast<int>(carried - d)) {
    const FloorDivision f = FloorDivide(p, d);
    lift_ = f.quotient;
    rem_ = f.remainder;
  }
  int next() {
    int delta = lift_;
    mod_ += rem_;
    if (mod_ >= 0) {
      mod_ = static_cast<int>(mod_ - d_);
      ++delta;
    }
    return delta;
  }

 private:
  long long d_;
  int mod_;
  int lift_ = 0, rem_ = 0;
};

// Adds one cell to a row of sums, and marks its column.
void AddCell(CellSum* sums, uint64_t* marks, size_t column, uint32_t cover, uint32_t area) {
  sums[column].cover += cover;
  sums[column].area += area;
  marks[column >> 6] |= uint64_t{1} << (column & 63);
}

// AGG's cell walk (rasterizer_cells_aa::line and render_hline, step for step), adding each finished cell
// to the grid instead of storing it. The current cell gathers what the walk lays into it and is added
// when the walk moves on, so the grid counts cells exactly as AGG's store does.
class GridWalk {
 public:
  GridWalk(CellSum* sums, uint64_t* marks, size_t words, int left, int top, int width)
      : sums_(sums), marks_(marks), words_(words), left_(left), top_(top), width_(width) {}

  void line(int x1, int y1, int x2, int y2) {
    constexpr long long kLimit = 16384LL << kShift;
    long long dx = static_cast<long long>(x2) - x1;
    // AGG halves a very long line and, in this version, then walks the whole of it as well.
    if (dx >= kLimit || dx <= -kLimit) {
      const int cx = static_cast<int>((static_cast<long long>(x1) + x2) >> 1);
      const int cy = static_cast<int>((static_cast<long long>(y1) + y2) >> 1);
      line(x1, y1, cx, cy);
      line(cx, cy, x2, y2);
    }
    long long dy = static_cast<long long>(y2) - y1;
    const int ex1 = x1 >> kShift;
    int ey1 = y1 >> kShift;
    const int ey2 = y2 >> kShift;
    const int fy1 = y1 & kMask;
    const int fy2 = y2 & kMask;
    setCell(ex1, ey1);
    if (ey1 == ey2) {
      hline(ey1, x1, fy1, x2, fy2);
      return;
    }
    int incr = 1;
    if (dx == 0) {
      const int twoFx = (x1 & kMask) << 1;
      int first = kScale;
      if (dy < 0) {
        first = 0;
        incr = -1;
      }
      int delta = first - fy1;
      add(delta, twoFx * delta);
      ey1 += incr;
      setCell(ex1, ey1);
      delta = first + first - kScale;
      const int area = twoFx * delta;
      while (ey1 != ey2) {
        cover_ = static_cast<uint32_t>(delta);
        area_ = static_cast<uint32_t>(area);
        ey1 += incr;
        setCell(ex1, ey1);
      }
      delta = fy2 - kScale + first;
      add(delta, twoFx * delta);
      return;
    }
    long long p = (kScale - fy1) * dx;
    int first = kScale;
    if (dy < 0) {
      p = fy1 * dx;
      first = 0;
      incr = -1;
      dy = -dy;
    }
    const FloorDivision start = FloorDivide(p, dy);
    int xFrom = x1 + start.quotient;
    hline(ey1, x1, fy1, xFrom, first);
    ey1 += incr;
    setCell(xFrom >> kShift, ey1);
    if (ey1 != ey2) {
      Steps steps(kScale * dx, dy, start.remainder);
      while (ey1 != ey2) {
        const int xTo = xFrom + steps.next();
        hline(ey1, xFrom, kScale - first, xTo, first);
        xFrom = xTo;
        ey1 += incr;
        setCell(xFrom >> kShift, ey1);
      }
    }
    hline(ey1, xFrom, kScale - first, x2, fy2);
  }

  // Adds the last cell; returns how many cells the walk added in all.
  unsigned finish() {
    flush();
    return stored_;
  }

 private:
  void hline(int ey, int x1, int y1, int x2, int y2) {
    int ex1 = x1 >> kShift;
    const int ex2 = x2 >> kShift;
    const int fx1 = x1 & kMask;
    const int fx2 = x2 & kMask;
    if (y1 == y2) {
      setCell(ex2, ey);
      return;
    }
    if (ex1 == ex2) {
      const int delta = y2 - y1;
      add(delta, (fx1 + fx2) * delta);
      return;
    }
    int p = (kScale - fx1) * (y2 - y1);
    int first = kScale;
    int incr = 1;
    long long dx = static_cast<long long>(x2) - x1;
    if (dx < 0) {
      p = fx1 * (y2 - y1);
      first = 0;
      incr = -1;
      dx = -dx;
    }
    const FloorDivision start = FloorDivide(p, dx);
    int delta = start.quotient;
    add(delta, (fx1 + first) * delta);
    ex1 += incr;
    setCell(ex1, ey);
    y1 += delta;
    if (ex1 != ex2) {
      Steps steps(kScale * (y2 - y1 + delta), dx, start.remainder);
      while (ex1 != ex2) {
        delta = steps.next();
        add(delta, kScale * delta);
        y1 += delta;
        ex1 += incr;
        setCell(ex1, ey);
      }
    }
    delta = y2 - y1;
    add(delta, (fx2 + kScale - first) * delta);
  }

  void add(int cover, int area) {
    cover_ += static_cast<uint32_t>(cover);
    area_ += static_cast<uint32_t>(area);
  }

  void setCell(int x, int y) {
    if (x == x_ && y == y_) return;
    flush();
    x_ = x;
    y_ = y;
    cover_ = 0;
    area_ = 0;
  }

  void flush() {
    if ((cover_ | area_) == 0 || stored_ >= kCellLimit) return;
    ++stored_;
    const size_t row = static_cast<size_t>(y_ - top_);
    AddCell(sums_ + row * static_cast<size_t>(width_), marks_ + row * words_, static_cast<size_t>(x_ - left_),
            cover_, area_);
  }

  CellSum* sums_;
  uint64_t* marks_;
  size_t words_;
  int left_, top_, width_;
  int x_ = std::numeric_limits<int>::max();
  int y_ = std::numeric_limits<int>::max();
  uint32_t cover_ = 0, area_ = 0;
  unsigned stored_ = 0;
};

}  // namespace

void LayerRasterizer::Lines::clear() {
  segments.clear();
  minX = minY = std::numeric_limits<int>::max();
  maxX = maxY = std::numeric_limits<int>::min();
}

void LayerRasterizer::Lines::line(int x1, int y1, int x2, int y2) {
  segments.push_back(Segment{x1, y1, x2, y2});
  minX = std::min({minX, x1 >> kShift, x2 >> kShift});
  maxX = std::max({maxX, x1 >> kShift, x2 >> kShift});
  minY = std::min({minY, y1 >> kShift, y2 >> kShift});
  maxY = std::max({maxY, y1 >> kShift, y2 >> kShift});
}

void LayerRasterizer::reset() {
  lines_.clear();
  if (store_) store_->reset();
  clearGrid();
  status_ = Status::kInitial;
  prepared_ = false;
  cells_ = 0;
}

void LayerRasterizer::clip_box(double x1, double y1, double x2, double y2) {
  reset();
  clipper_.clip_box(Conv::upscale(x1), Conv::upscale(y1), Conv::upscale(x2), Conv::upscale(y2));
}

void LayerRasterizer::close_polygon() {
  if (status_ == Status::kLineTo) {
    clipper_.line_to(lines_, startX_, startY_);
    status_ = Status::kClosed;
  }
}

void LayerRasterizer::move_to_d(double x, double y) {
  if (prepared_) reset();
  close_polygon();
  clipper_.move_to(startX_ = Conv::upscale(x), startY_ = Conv::upscale(y));
  status_ = Status::kMoveTo;
}

void LayerRasterizer::line_to_d(double x, double y) {
  clipper_.line_to(lines_, Conv::upscale(x), Conv::upscale(y));
  status_ = Status::kLineTo;
}

// Zeroes the sums the last grid walk left, found through their marks.
void LayerRasterizer::clearGrid() {
  if (!gridDirty_) return;
  for (size_t row = 0; row < gridRows_; ++row) {
    uint64_t* marks = marks_.data() + row * words_;
    CellSum* sums = sums_.data() + row * static_cast<size_t>(gridWidth_);
    for (size_t word = 0; word < words_; ++word) {
      for (uint64_t bits = marks[word]; bits != 0; bits &= bits - 1) {
        sums[word * 64 + static_cast<size_t>(__builtin_ctzll(bits))] = CellSum{0, 0};
      }
      marks[word] = 0;
    }
  }
  gridDirty_ = false;
}

bool LayerRasterizer::prepare() {
  if (prepared_) return cells_ != 0;
  close_polygon();
  prepared_ = true;
  if (lines_.segments.empty()) return false;
  const int64_t width = static_cast<int64_t>(lines_.maxX) - lines_.minX + 1;
  const int64_t height = static_cast<int64_t>(lines_.maxY) - lines_.minY + 1;
  gridWidth_ = static_cast<int>(width);
  words_ = static_cast<size_t>((width + 63) / 64);
  onGrid_ = width * height <= kGridPixels;
  const size_t rows = onGrid_ ? static_cast<size_t>(height) : 1;
  gridRows_ = rows;
  if (sums_.size() < static_cast<size_t>(width) * rows) sums_.resize(static_cast<size_t>(width) * rows);
  if (marks_.size() < words_ * rows) marks_.resize(words_ * rows);
  if (onGrid_) {
    GridWalk walk(sums_.data(), marks_.data(), words_, lines_.minX, lines_.minY, gridWidth_);
    for (const Segment& s : lines_.segments) walk.line(s.x1, s.y1, s.x2, s.y2);
    cells_ = walk.finish();
    gridDirty_ = true;
  } else {
    if (!store_) store_ = std::make_unique<agg::rasterizer_cells_aa<LayerCell>>();
    for (const Segment& s : lines_.segments) store_->line(s.x1, s.y1, s.x2, s.y2);
    store_->sort_cells();
    cells_ = store_->total_cells();
    storeCells_ = std::max<size_t>(storeCells_, cells_);
  }
  return cells_ != 0;
}

void LayerRasterizer::trim(size_t maxBytes) {
  reset();
  if ((sums_.capacity() * sizeof(CellSum) + marks_.capacity() * sizeof(uint64_t)) > maxBytes) {
    std::vector<CellSum>().swap(sums_);
    std::vector<uint64_t>().swap(marks_);
  }
  if (lines_.segments.capacity() * sizeof(Segment) > maxBytes) std::vector<Segment>().swap(lines_.segments);
  // A stored cell takes 16 bytes in its block and 8 in the scanline index.
  if (storeCells_ * 24 > maxBytes) {
    store_.reset();
    storeCells_ = 0;
  }
}

bool LayerRasterizer::rewind_scanlines() {
  if (!prepare()) return false;
  scanY_ = min_y();
  return true;
}

bool LayerRasterizer::navigate_scanline(int y) {
  if (!prepare() || y < min_y() || y > max_y()) return false;
  scanY_ = y;
  return true;
}

bool LayerRasterizer::sweep_scanline(agg::scanline_u8& sl) {
  for (;;) {
    if (scanY_ > max_y()) return false;
    sl.reset_spans();
    if (onGrid_) {
      const size_t row = static_cast<size_t>(scanY_ - min_y());
      sweepRow<false>(sums_.data() + row * static_cast<size_t>(gridWidth_), marks_.data() + row * words_,
                      words_, sl);
    } else if (const unsigned count = store_->scanline_num_cells(scanY_); count != 0) {
      // The scanline's cells, summed into the one reused row and cleared again by the sweep.
      const LayerCell* const* cells = store_->scanline_cells(scanY_);
      for (unsigned i = 0; i < count; ++i) {
        AddCell(sums_.data(), marks_.data(), static_cast<size_t>(cells[i]->x - min_x()),
                static_cast<uint32_t>(cells[i]->cover), static_cast<uint32_t>(cells[i]->area));
      }
      sweepRow<true>(sums_.data(), marks_.data(), words_, sl);
    }
    if (sl.num_spans() != 0) break;
    ++scanY_;
  }
  sl.finalize(scanY_);
  ++scanY_;
  return true;
}

// AGG's sweep over the x where cells fell, in increasing order: a cell with area gets its own coverage,
// and the run up to the next cell the coverage of the cover summed so far; nothing follows the last.
template <bool kClear>
void LayerRasterizer::sweepRow(CellSum* sums, uint64_t* marks, size_t words, agg::scanline_u8& sl) {
  const int origin = min_x();
  uint32_t cover = 0;
  bool started = false;
  size_t runStart = 0;  // where the run after the previous cell starts
  for (size_t word = 0; word < words; ++word) {
    uint64_t bits = marks[word];
    if (kClear) marks[word] = 0;
    for (; bits != 0; bits &= bits - 1) {
      const size_t at = word * 64 + static_cast<size_t>(__builtin_ctzll(bits));
      if (started && at > runStart) {
        const unsigned alpha = CoverageOf(cover << (kShift + 1));
        if (alpha != 0) {
          sl.add_span(origin + static_cast<int>(runStart), static_cast<unsigned>(at - runStart), alpha);
        }
      }
      started = true;
      CellSum& sum = sums[at];
      cover += sum.cover;
      runStart = at;
      if (sum.area != 0) {
        const unsigned alpha = CoverageOf((cover << (kShift + 1)) - sum.area);
        if (alpha != 0) sl.add_cell(origin + static_cast<int>(at), alpha);
        runStart = at + 1;
      }
      if (kClear) sum = CellSum{0, 0};
    }
  }
}

}  // namespace lx
