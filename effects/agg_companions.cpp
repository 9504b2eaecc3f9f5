#include "effects/agg_companions.h"

#include <cmath>

namespace lx {

namespace {

// Enough segments for a curve that spans the whole 16-bit coordinate range at a quarter pixel; the cap
// keeps a hostile transform from turning one curve into millions of vertices.
constexpr unsigned kMaxCurveSegments = 1024;

bool Finite(const agg::trans_affine& m) {
  return std::isfinite(m.sx) && std::isfinite(m.shy) && std::isfinite(m.shx) && std::isfinite(m.sy) &&
         std::isfinite(m.tx) && std::isfinite(m.ty);
}

}  // namespace

agg::trans_affine ToAggAffine(const Affine& m) {
  return agg::trans_affine(m.sx, m.shy, m.shx, m.sy, m.tx, m.ty);
}

agg::trans_affine MultiplyAffine(const agg::trans_affine& a, const agg::trans_affine& b) {
  return agg::trans_affine(a.sx * b.sx + a.shy * b.shx, a.sx * b.shy + a.shy * b.sy,
                           a.shx * b.sx + a.sy * b.shx, a.shx * b.shy + a.sy * b.sy,
                           a.tx * b.sx + a.ty * b.shx + b.tx, a.tx * b.shy + a.ty * b.sy + b.ty);
}

bool InvertAffine(const agg::trans_affine& m, agg::trans_affine* inverse) {
  const double det = m.sx * m.sy - m.shy * m.shx;
  if (det == 0.0 || !std::isfinite(det) || !Finite(m)) return false;
  const double d = 1.0 / det;
  const double sx = m.sy * d;
  const double sy = m.sx * d;
  const double shy = -m.shy * d;
  const double shx = -m.shx * d;
  const agg::trans_affine r(sx, shy, shx, sy, -m.tx * sx - m.ty * shx, -m.tx * shy - m.ty * sy);
  if (!Finite(r)) return false;
  *inverse = r;
  return true;
}

agg::trans_affine RectToParallelogram(double x1, double y1, double x2, double y2, const double* parl) {
  const double w = x2 - x1;
  const double h = y2 - y1;
  if (w == 0.0 || h == 0.0) return agg::trans_affine(0, 0, 0, 0, 0, 0);
  const double sx = (parl[2] - parl[0]) / w;
  const double shy = (parl[3] - parl[1]) / w;
  const double shx = (parl[4] - parl[2]) / h;
  const double sy = (parl[5] - parl[3]) / h;
  return agg::trans_affine(sx, shy, shx, sy, parl[0] - sx * x1 - shx * y1, parl[1] - shy * x1 - sy * y1);
}

double MaxStretch(const agg::trans_affine& m) {
  // Square root of the larger eigenvalue of the matrix's transpose times itself.
  const double a = m.sx * m.sx + m.shy * m.shy;
  const double b = m.sx * m.shx + m.shy * m.sy;
  const double c = m.shx * m.shx + m.sy * m.sy;
  const double half = (a - c) * 0.5;
  return std::sqrt((a + c) * 0.5 + std::sqrt(half * half + b * b));
}

FlattenedPath::FlattenedPath(const OutlinePath& path, double tolerance)
    : path_(path), tolerance_(tolerance > 1e-9 ? tolerance : 1e-9) {}

void FlattenedPath::rewind(unsigned) {
  next_ = 0;
  steps_ = step_ = 0;
  started_ = false;
}

unsigned FlattenedPath::SegmentCount(double x0, double y0, double x1, double y1, double x2, double y2,
                                     double tolerance) {
  // On a parameter interval of length h a quadratic leaves its chord by at most |p0 - 2 p1 + p2| h^2 / 4.
  const double dx = x0 - 2.0 * x1 + x2;
  const double dy = y0 - 2.0 * y1 + y2;
  const double n = std::sqrt(std::sqrt(dx * dx + dy * dy) / (4.0 * tolerance));
  if (!(n < kMaxCurveSegments)) return kMaxCurveSegments;
  return static_cast<unsigned>(n) + 1;
}

unsigned FlattenedPath::vertex(double* x, double* y) {
  if (step_ < steps_) {
    ++step_;
    if (step_ == steps_) {
      *x = cx2_;
      *y = cy2_;
    } else {
      const double t = static_cast<double>(step_) / steps_;
      const double u = 1.0 - t;
      *x = u * u * cx0_ + 2.0 * u * t * cx1_ + t * t * cx2_;
      *y = u * u * cy0_ + 2.0 * u * t * cy1_ + t * t * cy2_;
    }
    lastX_ = *x;
    lastY_ = *y;
    return agg::path_cmd_line_to;
  }
  while (next_ < path_.size()) {
    const PathVertex& v = path_[next_++];
    if (v.cmd != kPathMoveTo && v.cmd != kPathLineTo && v.cmd != kPathCurve3) continue;
    if (!started_ || v.cmd == kPathMoveTo) {
      started_ = true;
      *x = lastX_ = v.x;
      *y = lastY_ = v.y;
      return agg::path_cmd_move_to;
    }
    if (v.cmd == kPathCurve3 && next_ < path_.size() && path_[next_].cmd == kPathCurve3) {
      const PathVertex& end = path_[next_++];
      cx0_ = lastX_;
      cy0_ = lastY_;
      cx1_ = v.x;
      cy1_ = v.y;
      cx2_ = end.x;
      cy2_ = end.y;
      steps_ = SegmentCount(cx0_, cy0_, cx1_, cy1_, cx2_, cy2_, tolerance_);
      step_ = 0;
      return vertex(x, y);
    }
    *x = lastX_ = v.x;
    *y = lastY_ = v.y;
    return agg::path_cmd_line_to;
  }
  return agg::path_cmd_stop;
}

}  // namespace lx
