#include "effects/layer_rasterizer.h"

#include <algorithm>

namespace lx {

namespace {

using Conv = agg::rasterizer_sl_clip_dbl::conv_type;

// AGG's coverage of an accumulated area under the non-zero rule, without gamma: |area| / 512, at most 255.
unsigned CoverageOf(uint32_t area) {
  int cover = static_cast<int32_t>(area) >> (agg::poly_subpixel_shift * 2 + 1 - 8);
  if (cover < 0) cover = -cover;
  return cover > 255 ? 255u : static_cast<unsigned>(cover);
}

}  // namespace

void LayerRasterizer::reset() {
  outline_.reset();
  status_ = Status::kInitial;
}

void LayerRasterizer::clip_box(double x1, double y1, double x2, double y2) {
  reset();
  clipper_.clip_box(Conv::upscale(x1), Conv::upscale(y1), Conv::upscale(x2), Conv::upscale(y2));
}

void LayerRasterizer::close_polygon() {
  if (status_ == Status::kLineTo) {
    clipper_.line_to(outline_, startX_, startY_);
    status_ = Status::kClosed;
  }
}

void LayerRasterizer::move_to_d(double x, double y) {
  if (outline_.sorted()) reset();
  close_polygon();
  clipper_.move_to(startX_ = Conv::upscale(x), startY_ = Conv::upscale(y));
  status_ = Status::kMoveTo;
}

void LayerRasterizer::line_to_d(double x, double y) {
  clipper_.line_to(outline_, Conv::upscale(x), Conv::upscale(y));
  status_ = Status::kLineTo;
}

bool LayerRasterizer::prepare() {
  close_polygon();
  outline_.sort_cells();
  if (outline_.total_cells() == 0) return false;
  const size_t width = static_cast<size_t>(static_cast<int64_t>(max_x()) - min_x() + 1);
  if (row_.size() < width) {
    row_.assign(width, RowSum{0, 0});
    marked_.assign((width + 63) / 64, 0);
  }
  return true;
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
    const unsigned count = outline_.scanline_num_cells(scanY_);
    if (count != 0) sweepRow(outline_.scanline_cells(scanY_), count, sl);
    if (sl.num_spans() != 0) break;
    ++scanY_;
  }
  sl.finalize(scanY_);
  ++scanY_;
  return true;
}

// AGG's sweep, over the x where cells fell in increasing order: a cell with area gets its own coverage
// and the run up to the next cell the coverage of the cover summed so far; nothing follows the last.
void LayerRasterizer::sweepRow(const LayerCell* const* cells, unsigned count, agg::scanline_u8& sl) {
  const int origin = min_x();
  size_t first = row_.size(), last = 0;
  for (unsigned i = 0; i < count; ++i) {
    const LayerCell& cell = *cells[i];
    const size_t at = static_cast<size_t>(cell.x - origin);
    row_[at].cover += static_cast<uint32_t>(cell.cover);
    row_[at].area += static_cast<uint32_t>(cell.area);
    marked_[at >> 6] |= uint64_t{1} << (at & 63);
    first = std::min(first, at);
    last = std::max(last, at);
  }
  uint32_t cover = 0;
  size_t runStart = first;  // where the run after the previous cell starts
  for (size_t word = first >> 6; word <= last >> 6; ++word) {
    uint64_t bits = marked_[word];
    marked_[word] = 0;
    while (bits != 0) {
      const size_t at = word * 64 + static_cast<size_t>(__builtin_ctzll(bits));
      bits &= bits - 1;
      if (at > runStart) {
        const unsigned alpha = CoverageOf(cover << (agg::poly_subpixel_shift + 1));
        if (alpha != 0)
          sl.add_span(origin + static_cast<int>(runStart), static_cast<unsigned>(at - runStart), alpha);
      }
      RowSum& sum = row_[at];
      cover += sum.cover;
      runStart = at;
      if (sum.area != 0) {
        const unsigned alpha = CoverageOf((cover << (agg::poly_subpixel_shift + 1)) - sum.area);
        if (alpha != 0) sl.add_cell(origin + static_cast<int>(at), alpha);
        runStart = at + 1;
      }
      sum = RowSum{0, 0};
    }
  }
}

}  // namespace lx
