#include "text/cubic_split.h"

#include <algorithm>
#include <cmath>

namespace lx::text {
namespace {

Point At(const Point& p0, const Point& p1, const Point& p2, const Point& p3, double t) {
  const double u = 1.0 - t;
  const double a = u * u * u, b = 3 * u * u * t, c = 3 * u * t * t, d = t * t * t;
  return {a * p0.x + b * p1.x + c * p2.x + d * p3.x, a * p0.y + b * p1.y + c * p2.y + d * p3.y};
}

Point Slope(const Point& p0, const Point& p1, const Point& p2, const Point& p3, double t) {
  const double u = 1.0 - t;
  const double a = 3 * u * u, b = 6 * u * t, c = 3 * t * t;
  return {a * (p1.x - p0.x) + b * (p2.x - p1.x) + c * (p3.x - p2.x),
          a * (p1.y - p0.y) + b * (p2.y - p1.y) + c * (p3.y - p2.y)};
}

}  // namespace

void SplitCubic(Point p0, Point p1, Point p2, Point p3, double tolerance, std::vector<QuadraticPiece>* out) {
  // The quadratic with control (3 (c1 + c2) - s - e) / 4 strays from the cubic (s, c1, c2, e) by at
  // most sqrt(3) / 36 times the length of its third difference e - 3 c2 + 3 c1 - s; cutting the cubic
  // into n equal parameter steps divides that difference by n cubed.
  const double dx = p3.x - 3 * p2.x + 3 * p1.x - p0.x, dy = p3.y - 3 * p2.y + 3 * p1.y - p0.y;
  const double error = std::sqrt(3.0) / 36.0 * std::hypot(dx, dy);
  const double steps = std::ceil(std::cbrt(error / tolerance));
  const int n = std::isfinite(steps) ? static_cast<int>(std::clamp(steps, 1.0, 1024.0)) : 1024;
  Point start = p0;
  for (int i = 0; i < n; ++i) {
    const double t0 = static_cast<double>(i) / n, t1 = static_cast<double>(i + 1) / n, third = (t1 - t0) / 3;
    const Point end = i + 1 == n ? p3 : At(p0, p1, p2, p3, t1);
    const Point s0 = Slope(p0, p1, p2, p3, t0), s1 = Slope(p0, p1, p2, p3, t1);
    const Point c1{start.x + s0.x * third, start.y + s0.y * third};
    const Point c2{end.x - s1.x * third, end.y - s1.y * third};
    const Point control{(3 * (c1.x + c2.x) - start.x - end.x) / 4, (3 * (c1.y + c2.y) - start.y - end.y) / 4};
    out->push_back({control, end});
    start = end;
  }
}

}  // namespace lx::text
