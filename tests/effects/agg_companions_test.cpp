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

TEST(AffineCompanions, MultiplyInvertMapRectanglesAndStretch) {
  const agg::trans_affine a(2.0, 0.5, -1.0, 3.0, 10.0, -4.0), b(0.0, 1.0, -1.0, 0.0, 7.0, 2.0);
  agg::trans_affine inv;
  ASSERT_TRUE(InvertAffine(a, &inv));
  for (P p : {P{0, 0}, P{1, 0}, P{-3.5, 12.25}}) {
    ExpectMaps(MultiplyAffine(a, b), p, Apply(b, Apply(a, p)));  // first a, then b
    ExpectMaps(MultiplyAffine(a, inv), p, p);
  }
  agg::trans_affine untouched(1, 2, 3, 4, 5, 6);
  EXPECT_FALSE(InvertAffine(agg::trans_affine(1.0, 2.0, 2.0, 4.0, 0, 0), &untouched));
  EXPECT_FALSE(InvertAffine(agg::trans_affine(NAN, 0, 0, 1, 0, 0), &untouched));
  EXPECT_EQ(untouched.tx, 5.0);

  const double parl[6] = {10, 20, 50, 30, 60, 90};
  const agg::trans_affine m = RectToParallelogram(0, 0, 8, 4, parl);
  ExpectMaps(m, {8, 4}, {60, 90});
  ExpectMaps(m, {0, 4}, {20, 80});  // the fourth corner completes the parallelogram
  const double square[6] = {3, 4, 13, 4, 13, 9};
  ExpectMaps(RectToParallelogram(-2, -1, 2, 1, square), {0, 0}, {8, 6.5});
  EXPECT_FALSE(InvertAffine(RectToParallelogram(5, 0, 5, 4, parl), &inv));

  EXPECT_NEAR(MaxStretch(agg::trans_affine(1, 0, 1, 1, 0, 0)), (1 + std::sqrt(5.0)) / 2, 1e-12);
}

template <class Source>
std::vector<P> Vertices(Source& src, std::vector<unsigned>* cmds) {
  src.rewind(0);
  std::vector<P> out;
  double x, y;
  unsigned cmd;
  while (!agg::is_stop(cmd = src.vertex(&x, &y))) {
    out.push_back({x, y});
    cmds->push_back(cmd);
  }
  return out;
}

TEST(FlattenedPath, RepairsMalformedPaths) {
  const OutlinePath path{
      {1, 1, kPathLineTo}, {2, 1, kPathLineTo}, {9, 9, kPathStop}, {3, 3, kPathMoveTo}, {4, 3, kPathCurve3}};
  FlattenedPath flat(path, 0.25);
  std::vector<unsigned> cmds;
  const std::vector<P> poly = Vertices(flat, &cmds);
  // A leading line-to starts the path, the stop vertex is skipped, a curve vertex without its end is a line.
  const unsigned move = agg::path_cmd_move_to, line = agg::path_cmd_line_to;
  EXPECT_EQ(cmds, (std::vector<unsigned>{move, line, move, line}));
  EXPECT_EQ(poly[3].x, 4);
}

// Signed area (shoelace) of each closed polygon of a stroke, and the largest x reached.
std::vector<double> StrokeAreas(const OutlinePath& path, double width, double* maxX) {
  FlattenedPath flat(path, 0.25);
  ClosedContourStroker<FlattenedPath> stroke(flat);
  stroke.width(width);
  std::vector<unsigned> cmds;
  const std::vector<P> v = Vertices(stroke, &cmds);
  std::vector<double> areas;
  double a = 0;
  size_t first = 0;
  *maxX = -1e300;
  for (size_t i = 0; i < v.size(); ++i) {
    if (agg::is_end_poly(cmds[i])) {
      areas.push_back(a / 2);
      a = 0;
      first = i + 1;
      continue;
    }
    *maxX = std::max(*maxX, v[i].x);
    const bool last = i + 1 == v.size() || agg::is_end_poly(cmds[i + 1]);
    const P& q = last ? v[first] : v[i + 1];
    a += v[i].x * q.y - q.x * v[i].y;
  }
  return areas;
}

TEST(ClosedContourStroker, BevelledSpikesAndDegenerateContours) {
  double maxX;
  // A tip far sharper than the miter limit of 4 allows: bevelled within 4 half widths.
  StrokeAreas({{0, 0, kPathMoveTo}, {100, 2, kPathLineTo}, {0, 4, kPathLineTo}, {0, 0, kPathLineTo}}, 4.0,
              &maxX);
  EXPECT_LE(maxX, 100.0 + 4.0 * 2.0 + 1e-9);
  EXPECT_GT(maxX, 100.0);

  // Two distinct points: the rectangle around the segment. One point: nothing. Then a real square.
  const OutlinePath path{{0, 0, kPathMoveTo},     {10, 0, kPathLineTo},    {0, 0, kPathLineTo},
                         {50, 50, kPathMoveTo},   {50, 50, kPathLineTo},   {100, 100, kPathMoveTo},
                         {110, 100, kPathLineTo}, {110, 110, kPathLineTo}, {100, 110, kPathLineTo},
                         {100, 100, kPathLineTo}};
  const std::vector<double> areas = StrokeAreas(path, 2.0, &maxX);
  ASSERT_EQ(areas.size(), 3u);
  EXPECT_NEAR(std::fabs(areas[0]), 10.0 * 2.0, 1e-9);
  EXPECT_NEAR(std::fabs(areas[1]), 12.0 * 12.0, 1e-9);
  EXPECT_NEAR(std::fabs(areas[2]), 8.0 * 8.0, 1e-9);
}

TEST(AffineSpanInterpolator, StepsAlongTheSpanAndClampsFarCoordinates) {
  AffineSpanInterpolator it(agg::trans_affine(2.0, 0.5, 0.0, 1.0, 3.0, -1.0), 1 << 20);
  it.begin(10.5, 4.5, 3);
  int x, y;
  ++it;
  ++it;
  it.coordinates(&x, &y);
  EXPECT_EQ(x, (2 * 12.5 + 3.0) * 256);
  EXPECT_EQ(y, (0.5 * 12.5 + 4.5 - 1.0) * 256);

  AffineSpanInterpolator far(agg::trans_affine(1e9, 0, 0, -1e9, 0, 0), 1 << 20);
  far.begin(1e6, 1e6, 1);
  far.coordinates(&x, &y);
  EXPECT_EQ(std::vector<int>({x, y}), std::vector<int>({1 << 20, -(1 << 20)}));
}

}  // namespace
}  // namespace lx
