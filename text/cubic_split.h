// Cubic Bezier curves as quadratic ones, for a block format that holds quadratic splines only.
#pragma once

#include <vector>

namespace lx::text {

struct Point {
  double x, y;
};

// One quadratic piece: its control point and end point (it starts where the previous piece ended).
struct QuadraticPiece {
  Point control, end;
};

// Appends quadratic pieces that follow the cubic from p0 through controls p1, p2 to p3 within
// `tolerance` (same units as the points) everywhere. The cubic is cut at equal parameter steps, as few
// as the bound on the error allows (at most 1024 pieces).
void SplitCubic(Point p0, Point p1, Point p2, Point p3, double tolerance, std::vector<QuadraticPiece>* out);

}  // namespace lx::text
