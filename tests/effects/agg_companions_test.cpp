#include "effects/agg_companions.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

namespace lx {
namespace {

struct P {
  double x, y;
};

P Apply(const agg::trans_affine& m, P p) {
  m.transform(&p.x, &p.y);
  return p;
}

void ExpectMaps(const agg::trans_affine& m, P from, P to) {
  const P got = Apply(m, from);
  EXPECT_NEAR(got.x, to.x, 1e-12) << from.x << ", " << from.y;
  EXPECT_NEAR(got.y, to.y, 1e-12) << from.x << ", " << from.y;
}

TEST(AffineCompanions, MultiplyInvertAndMapRectangles) {
  const agg::trans_affine a(2.0, 0.5, -1.0, 3.0, 10.0, -4.0), b(0.0, 1.0, -1.0, 0.0, 7.0, 2.0);
  agg::trans_affine inv;
  ASSERT_TRUE(InvertAffine(a, &inv));
  for (P p : {P{0, 0}, P{1, 0}, P{0, 1}, P{-3.5, 12.25}}) {
    ExpectMaps(MultiplyAffine(a, b), p, Apply(b, Apply(a, p)));  // first a, then b
    ExpectMaps(MultiplyAffine(a, inv), p, p);
    ExpectMaps(MultiplyAffine(inv, a), p, p);
  }
  agg::trans_affine untouched(1, 2, 3, 4, 5, 6);
  EXPECT_FALSE(InvertAffine(agg::trans_affine(1.0, 2.0, 2.0, 4.0, 0, 0), &untouched));
  EXPECT_FALSE(InvertAffine(agg::trans_affine(NAN, 0, 0, 1, 0, 0), &untouched));
  EXPECT_EQ(untouched.tx, 5.0);

  const double parl[6] = {10, 20, 50, 30, 60, 90};
  const agg::trans_affine m = RectToParallelogram(0, 0, 8, 4, parl);
  ExpectMaps(m, {0, 0}, {10, 20});
  ExpectMaps(m, {8, 0}, {50, 30});
  ExpectMaps(m, {8, 4}, {60, 90});
  ExpectMaps(m, {0, 4}, {20, 80});  // the fourth corner completes the parallelogram
  const double square[6] = {3, 4, 13, 4, 13, 9};
  ExpectMaps(RectToParallelogram(-2, -1, 2, 1, square), {0, 0}, {8, 6.5});
  EXPECT_FALSE(InvertAffine(RectToParallelogram(5, 0, 5, 4, parl), &inv));
}

TEST(AffineCompanions, MaxStretchIsTheLargestSingularValue) {
  const double c = std::cos(0.7), s = std::sin(0.7);
  // A rotation after a scale by (3, 2): stretches by at most 3.
  EXPECT_NEAR(MaxStretch(agg::trans_affine(3 * c, 3 * s, -2 * s, 2 * c, 100, 100)), 3.0, 1e-12);
  EXPECT_NEAR(MaxStretch(agg::trans_affine(1, 0, 0, 1, 5, 5)), 1.0, 1e-12);
  EXPECT_NEAR(MaxStretch(agg::trans_affine(1, 0, 1, 1, 0, 0)), (1 + std::sqrt(5.0)) / 2, 1e-12);
}

std::vector<P> Flatten(const OutlinePath& path, double tolerance, std::vector<unsigned>* cmds = nullptr) {
  FlattenedPath flat(path, tolerance);
  flat.rewind(0);
  std::vector<P> out;
  double x, y;
  unsigned cmd;
  while (!agg::is_stop(cmd = flat.vertex(&x, &y))) {
    out.push_back({x, y});
    if (cmds) cmds->push_back(cmd);
  }
  return out;
}

double DistanceToSegment(P p, P a, P b) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  const double len2 = dx * dx + dy * dy;
  double t = len2 > 0 ? ((p.x - a.x) * dx + (p.y - a.y) * dy) / len2 : 0;
  t = t < 0 ? 0 : (t > 1 ? 1 : t);
  return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

TEST(FlattenedPath, QuadraticCurvesStayWithinAQuarterPixel) {
  struct Curve {
    P p0, p1, p2;
  };
  for (const Curve& c : {Curve{{0, 0}, {50, 100}, {100, 0}}, Curve{{0, 0}, {1000, 0}, {0, 3}},
                         Curve{{5, 5}, {6, 5.5}, {7, 5}}, Curve{{-300, 40}, {900, -800}, {120, 700}}}) {
    const OutlinePath path{
        {c.p0.x, c.p0.y, kPathMoveTo}, {c.p1.x, c.p1.y, kPathCurve3}, {c.p2.x, c.p2.y, kPathCurve3}};
    std::vector<unsigned> cmds;
    const std::vector<P> poly = Flatten(path, 0.25, &cmds);
    ASSERT_GE(poly.size(), 2u);
    EXPECT_EQ(cmds[0], unsigned(agg::path_cmd_move_to));
    EXPECT_EQ(poly.back().x, c.p2.x);
    EXPECT_EQ(poly.back().y, c.p2.y);
    double worst = 0;
    for (int i = 0; i <= 20000; ++i) {
      const double t = i / 20000.0, u = 1 - t;
      const P q{u * u * c.p0.x + 2 * u * t * c.p1.x + t * t * c.p2.x,
                u * u * c.p0.y + 2 * u * t * c.p1.y + t * t * c.p2.y};
      double best = 1e300;
      for (size_t k = 1; k < poly.size(); ++k)
        best = std::min(best, DistanceToSegment(q, poly[k - 1], poly[k]));
      worst = std::max(worst, best);
    }
    EXPECT_LT(worst, 0.25);
    // And not wastefully fine: within twice the count the error bound asks for.
    const double dx = c.p0.x - 2 * c.p1.x + c.p2.x, dy = c.p0.y - 2 * c.p1.y + c.p2.y;
    const double needed = std::sqrt(std::hypot(dx, dy) / 1.0);
    EXPECT_LE(poly.size() - 1, 2 * needed + 2);
  }
}

TEST(FlattenedPath, PassesLinesThroughAndRepairsMalformedPaths) {
  const OutlinePath path{
      {1, 1, kPathLineTo}, {2, 1, kPathLineTo}, {9, 9, kPathStop}, {3, 3, kPathMoveTo}, {4, 3, kPathCurve3}};
  std::vector<unsigned> cmds;
  const std::vector<P> poly = Flatten(path, 0.25, &cmds);
  ASSERT_EQ(poly.size(), 4u);
  EXPECT_EQ(cmds[0], unsigned(agg::path_cmd_move_to));  // a leading line-to starts the path
  EXPECT_EQ(cmds[1], unsigned(agg::path_cmd_line_to));
  EXPECT_EQ(cmds[2], unsigned(agg::path_cmd_move_to));  // the stop vertex was skipped
  EXPECT_EQ(cmds[3], unsigned(agg::path_cmd_line_to));  // a curve vertex without its end
  EXPECT_EQ(poly[3].x, 4);
}

// Signed area (shoelace) of each closed polygon a vertex source produces.
template <class Source>
std::vector<double> PolygonAreas(Source& src, std::vector<std::vector<P>>* polys = nullptr) {
  src.rewind(0);
  std::vector<double> areas;
  std::vector<P> cur;
  double x, y;
  unsigned cmd;
  auto flush = [&] {
    if (cur.size() >= 3) {
      double a = 0;
      for (size_t i = 0; i < cur.size(); ++i) {
        const P& p = cur[i];
        const P& q = cur[(i + 1) % cur.size()];
        a += p.x * q.y - q.x * p.y;
      }
      areas.push_back(a / 2);
      if (polys) polys->push_back(cur);
    }
    cur.clear();
  };
  while (!agg::is_stop(cmd = src.vertex(&x, &y))) {
    if (agg::is_move_to(cmd)) flush();
    if (agg::is_vertex(cmd)) cur.push_back({x, y});
    if (agg::is_end_poly(cmd)) flush();
  }
  flush();
  return areas;
}

OutlinePath Square(double x, double y, double side) {
  return {{x, y, kPathMoveTo},
          {x + side, y, kPathLineTo},
          {x + side, y + side, kPathLineTo},
          {x, y + side, kPathLineTo},
          {x, y, kPathLineTo}};
}

TEST(ClosedContourStroker, StrokeOfWidthWReachesHalfOfItToEachSide) {
  const OutlinePath path = Square(10, 10, 100);
  FlattenedPath flat(path, 0.25);
  ClosedContourStroker<FlattenedPath> stroke(flat);
  stroke.width(6.0);
  EXPECT_DOUBLE_EQ(stroke.width(), 6.0);
  std::vector<std::vector<P>> polys;
  const std::vector<double> areas = PolygonAreas(stroke, &polys);
  ASSERT_EQ(areas.size(), 2u);
  // Outer edge 106 x 106 and inner edge 94 x 94, of opposite orientation: together perimeter x width.
  EXPECT_NEAR(std::fabs(areas[0]), 106.0 * 106.0, 1e-6);
  EXPECT_NEAR(std::fabs(areas[1]), 94.0 * 94.0, 1e-6);
  EXPECT_LT(areas[0] * areas[1], 0);
  EXPECT_NEAR(std::fabs(areas[0] + areas[1]), 400.0 * 6.0, 1e-6);
  double minX = 1e9, maxX = -1e9;
  for (const P& p : polys[0]) {
    minX = std::min(minX, p.x);
    maxX = std::max(maxX, p.x);
  }
  EXPECT_NEAR(minX, 7.0, 1e-9);  // miter corners, not bevelled
  EXPECT_NEAR(maxX, 113.0, 1e-9);

  // A thin spike, its tip far sharper than the miter limit of 4 allows: bevelled within 4 half widths.
  const OutlinePath spike{
      {0, 0, kPathMoveTo}, {100, 2, kPathLineTo}, {0, 4, kPathLineTo}, {0, 0, kPathLineTo}};
  FlattenedPath spikeFlat(spike, 0.25);
  ClosedContourStroker<FlattenedPath> spikeStroke(spikeFlat);
  spikeStroke.width(4.0);
  polys.clear();
  PolygonAreas(spikeStroke, &polys);
  ASSERT_EQ(polys.size(), 2u);
  maxX = -1e9;
  for (const auto& poly : polys)
    for (const P& p : poly) maxX = std::max(maxX, p.x);
  EXPECT_LE(maxX, 100.0 + 4.0 * 2.0 + 1e-9);
  EXPECT_GT(maxX, 100.0);
}

TEST(ClosedContourStroker, DegenerateContours) {
  // Two distinct points: the rectangle around the segment. One point: nothing. Then a real square.
  OutlinePath path{{0, 0, kPathMoveTo},
                   {10, 0, kPathLineTo},
                   {0, 0, kPathLineTo},
                   {50, 50, kPathMoveTo},
                   {50, 50, kPathLineTo}};
  const OutlinePath sq = Square(100, 100, 10);
  path.insert(path.end(), sq.begin(), sq.end());
  FlattenedPath flat(path, 0.25);
  ClosedContourStroker<FlattenedPath> stroke(flat);
  stroke.width(2.0);
  const std::vector<double> areas = PolygonAreas(stroke);
  ASSERT_EQ(areas.size(), 3u);
  EXPECT_NEAR(std::fabs(areas[0]), 10.0 * 2.0, 1e-9);
  EXPECT_NEAR(std::fabs(areas[1]), 12.0 * 12.0, 1e-9);
  EXPECT_NEAR(std::fabs(areas[2]), 8.0 * 8.0, 1e-9);
  // A second pass gives the same result from the reused buffers.
  EXPECT_EQ(PolygonAreas(stroke).size(), 3u);
}

TEST(AffineSpanInterpolator, StepsAlongTheSpanAndClampsFarCoordinates) {
  AffineSpanInterpolator it(agg::trans_affine(2.0, 0.5, 0.0, 1.0, 3.0, -1.0), 1 << 20);
  it.begin(10.5, 4.5, 3);
  int x, y;
  it.coordinates(&x, &y);
  EXPECT_EQ(x, (2 * 10.5 + 3.0) * 256);
  EXPECT_EQ(y, (0.5 * 10.5 + 4.5 - 1.0) * 256);
  ++it;
  ++it;
  it.coordinates(&x, &y);
  EXPECT_EQ(x, (2 * 12.5 + 3.0) * 256);
  EXPECT_EQ(y, (0.5 * 12.5 + 4.5 - 1.0) * 256);

  AffineSpanInterpolator far(agg::trans_affine(1e9, 0, 0, -1e9, 0, 0), 1 << 20);
  far.begin(1e6, 1e6, 1);
  far.coordinates(&x, &y);
  EXPECT_EQ(x, 1 << 20);
  EXPECT_EQ(y, -(1 << 20));
}

}  // namespace
}  // namespace lx
