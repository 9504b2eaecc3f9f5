// The pieces of AGG that live in its compiled library rather than in its headers, redone here so that
// the library links on every platform: affine composition and inversion, the rectangle-to-parallelogram
// map, flattening of quadratic curves, and a stroker for closed contours built on agg::math_stroke.
// Also a span interpolator that keeps its coordinates in a safe integer range.
#pragma once

#include <cmath>
#include <cstdint>

#include <agg_array.h>
#include <agg_basics.h>
#include <agg_math_stroke.h>
#include <agg_trans_affine.h>
#include <agg_vertex_sequence.h>

#include "settings/affine.h"
#include "settings/outline_path.h"

namespace lx {

// The glyph transform as an AGG matrix (the same six numbers).
agg::trans_affine ToAggAffine(const Affine& m);

// `first` followed by `then`: the result maps p to then(first(p)).
agg::trans_affine MultiplyAffine(const agg::trans_affine& first, const agg::trans_affine& then);

// Writes the inverse of m to *inverse. False, leaving *inverse alone, when m is singular or not finite.
bool InvertAffine(const agg::trans_affine& m, agg::trans_affine* inverse);

// The matrix that maps the rectangle (x1, y1)-(x2, y2) onto the parallelogram whose first three corners
// are parl[0..5] (x, y pairs: the images of (x1, y1), (x2, y1) and (x2, y2)). A degenerate rectangle
// gives a singular matrix.
agg::trans_affine RectToParallelogram(double x1, double y1, double x2, double y2, const double* parl);

// The largest factor by which m stretches a length (its largest singular value).
double MaxStretch(const agg::trans_affine& m);

// Reads an OutlinePath as an AGG vertex source, with every quadratic curve replaced by line segments that
// stay within `tolerance` of it. Emits move_to and line_to only; a path that does not begin with a
// move-to begins with one, and a curve vertex without its partner becomes a line-to. Generates on the
// fly: no storage, no allocation.
class FlattenedPath {
 public:
  // The path must outlive the adaptor. Tolerance in the path's own units (greater than 0).
  FlattenedPath(const OutlinePath& path, double tolerance);

  void rewind(unsigned pathId = 0);
  unsigned vertex(double* x, double* y);

  // The number of segments that keep a quadratic curve p0-p1-p2 within tolerance of its chords.
  static unsigned SegmentCount(double x0, double y0, double x1, double y1, double x2, double y2,
                               double tolerance);

 private:
  const OutlinePath& path_;
  double tolerance_;
  size_t next_ = 0;
  // The curve being walked: its three points, the step count and the step reached.
  double cx0_ = 0, cy0_ = 0, cx1_ = 0, cy1_ = 0, cx2_ = 0, cy2_ = 0;
  unsigned steps_ = 0, step_ = 0;
  double lastX_ = 0, lastY_ = 0;
  bool started_ = false;
};

// Strokes every contour of a vertex source (move_to / line_to, as FlattenedPath produces) as a closed
// contour with AGG's stroke defaults: miter joins, miter limit 4, inner miter joins. A stroke of width w
// reaches w / 2 to each side of the contour, so it is w wide. Each contour gives two closed polygons of
// opposite orientation, the outer and the inner edge; a contour of only two distinct points gives the
// rectangle around its segment (butt ends), a single point nothing. The buffers are reused from contour
// to contour and from one rewind to the next.
template <class Source>
class ClosedContourStroker {
 public:
  explicit ClosedContourStroker(Source& source) : source_(source) {}

  void width(double w) { stroke_.width(w); }
  double width() const { return stroke_.width(); }

  void rewind(unsigned pathId = 0) {
    source_.rewind(pathId);
    state_ = kReadContour;
    pendingCmd_ = agg::path_cmd_stop;
  }

  unsigned vertex(double* x, double* y) {
    for (;;) {
      switch (state_) {
        case kReadContour:
          if (!readContour()) return agg::path_cmd_stop;
          break;
        case kOuterJoin:
          if (index_ >= points_.size()) {
            state_ = kInnerStart;
            return agg::path_cmd_end_poly | agg::path_flags_close;
          }
          joinAt(index_, true);
          ++index_;
          state_ = kEmit;
          next_ = kOuterJoin;
          break;
        case kInnerStart:
          index_ = points_.size();
          first_ = true;
          state_ = kInnerJoin;
          break;
        case kInnerJoin:
          if (index_ == 0) {
            state_ = kReadContour;
            return agg::path_cmd_end_poly | agg::path_flags_close;
          }
          --index_;
          joinAt(index_, false);
          state_ = kEmit;
          next_ = kInnerJoin;
          break;
        case kSegment:
          if (out_ >= joins_.size()) {
            state_ = kReadContour;
            return agg::path_cmd_end_poly | agg::path_flags_close;
          }
          *x = joins_[out_].x;
          *y = joins_[out_].y;
          return (out_++ == 0) ? agg::path_cmd_move_to : agg::path_cmd_line_to;
        case kEmit:
          if (out_ >= joins_.size()) {
            state_ = next_;
            break;
          }
          *x = joins_[out_].x;
          *y = joins_[out_].y;
          ++out_;
          if (first_) {
            first_ = false;
            return agg::path_cmd_move_to;
          }
          return agg::path_cmd_line_to;
      }
    }
  }

 private:
  enum State { kReadContour, kOuterJoin, kInnerStart, kInnerJoin, kSegment, kEmit };
  using Joins = agg::pod_bvector<agg::point_d, 6>;

  // Gathers the next contour with at least two distinct points; false at the end of the source.
  bool readContour() {
    for (;;) {
      points_.remove_all();
      double vx, vy;
      unsigned cmd = pendingCmd_;
      if (agg::is_move_to(cmd)) {
        points_.add(agg::vertex_dist(pendingX_, pendingY_));
      }
      pendingCmd_ = agg::path_cmd_stop;
      for (;;) {
        cmd = source_.vertex(&vx, &vy);
        if (agg::is_stop(cmd)) break;
        if (agg::is_move_to(cmd)) {
          if (points_.size() > 0) {
            pendingCmd_ = cmd;
            pendingX_ = vx;
            pendingY_ = vy;
            break;
          }
          points_.add(agg::vertex_dist(vx, vy));
        } else if (agg::is_vertex(cmd)) {
          points_.add(agg::vertex_dist(vx, vy));
        }
      }
      const bool more = agg::is_move_to(pendingCmd_);
      points_.close(true);
      if (points_.size() >= 3) {
        index_ = 0;
        out_ = 0;
        joins_.remove_all();
        first_ = true;
        state_ = kOuterJoin;
        return true;
      }
      if (points_.size() == 2) {
        // Only two distinct points: close(true) measured the way back, so both distances are set.
        joins_.remove_all();
        stroke_.calc_cap(caps_, points_[0], points_[1], points_[0].dist);
        for (unsigned i = 0; i < caps_.size(); ++i) joins_.add(caps_[i]);
        stroke_.calc_cap(caps_, points_[1], points_[0], points_[0].dist);
        for (unsigned i = 0; i < caps_.size(); ++i) joins_.add(caps_[i]);
        out_ = 0;
        state_ = kSegment;
        return true;
      }
      if (!more) return false;
    }
  }

  // The join at contour vertex i, for the outer edge (walking forward) or the inner one (backward).
  void joinAt(unsigned i, bool forward) {
    const agg::vertex_dist& prev = points_.prev(i);
    const agg::vertex_dist& curr = points_.curr(i);
    const agg::vertex_dist& next = points_.next(i);
    if (forward) {
      stroke_.calc_join(joins_, prev, curr, next, prev.dist, curr.dist);
    } else {
      stroke_.calc_join(joins_, next, curr, prev, curr.dist, prev.dist);
    }
    out_ = 0;
  }

  Source& source_;
  agg::math_stroke<Joins> stroke_;
  agg::vertex_sequence<agg::vertex_dist, 6> points_;
  Joins joins_;
  Joins caps_;
  State state_ = kReadContour;
  State next_ = kReadContour;
  unsigned index_ = 0;
  unsigned out_ = 0;
  bool first_ = true;
  unsigned pendingCmd_ = agg::path_cmd_stop;
  double pendingX_ = 0, pendingY_ = 0;
};

// A linear span interpolator over an affine matrix, as agg::span_interpolator_linear, that works in
// double precision and clamps each coordinate to +-limit (in 1/256 units) before it becomes an integer,
// so that far-off pixels never overflow the span generators' integer arithmetic.
class AffineSpanInterpolator {
 public:
  enum { subpixel_shift = 8, subpixel_scale = 1 << subpixel_shift };

  AffineSpanInterpolator(const agg::trans_affine& m, double limit) : m_(m), limit_(limit) {}

  void begin(double x, double y, unsigned) {
    x0_ = x * m_.sx + y * m_.shx + m_.tx;
    y0_ = x * m_.shy + y * m_.sy + m_.ty;
    i_ = 0;
  }
  void operator++() { ++i_; }
  void coordinates(int* x, int* y) const {
    *x = Clamp((x0_ + m_.sx * i_) * subpixel_scale);
    *y = Clamp((y0_ + m_.shy * i_) * subpixel_scale);
  }

 private:
  int Clamp(double v) const {
    if (!(v >= -limit_)) return static_cast<int>(-limit_);
    if (!(v <= limit_)) return static_cast<int>(limit_);
    return agg::iround(v);
  }

  agg::trans_affine m_;
  double limit_;
  double x0_ = 0, y0_ = 0;
  double i_ = 0;
};

}  // namespace lx
