#include "effects/agg_companions.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

namespace lx {
namespace {

// What ordinary text needs of these pieces the reference scenes see; here are the refusals and the
// shapes no glyph has.
TEST(AffineCompanions, SingularOrNotFiniteMatricesAreNotInverted) {
  const double parl[6] = {10, 20, 50, 30, 60, 90};
  agg::trans_affine inverse(1, 2, 3, 4, 5, 6);
  EXPECT_FALSE(InvertAffine(agg::trans_affine(1.0, 2.0, 2.0, 4.0, 0, 0), &inverse));
  EXPECT_FALSE(InvertAffine(agg::trans_affine(NAN, 0, 0, 1, 0, 0), &inverse));
  EXPECT_FALSE(InvertAffine(RectToParallelogram(5, 0, 5, 4, parl), &inverse));
  EXPECT_EQ(inverse.tx, 5.0);  // left alone
  EXPECT_NEAR(MaxStretch(agg::trans_affine(1, 0, 1, 1, 0, 0)), (1 + std::sqrt(5.0)) / 2, 1e-12);
}

// The area (shoelace) and largest x of each closed polygon of a stroke.
std::vector<double> Polygons(ClosedContourStroker<FlattenedPath>& src) {
  src.rewind(0);
  std::vector<double> out;
  double x, y, area = 0, maxX = -1e300, firstX = 0, firstY = 0, lastX = 0, lastY = 0;
  for (unsigned cmd; !agg::is_stop(cmd = src.vertex(&x, &y));) {
    if (agg::is_end_poly(cmd)) {
      out.insert(out.end(), {std::fabs(area + lastX * firstY - firstX * lastY) / 2, maxX});
      area = 0, maxX = -1e300;
      continue;
    }
    if (agg::is_move_to(cmd)) firstX = x, firstY = y;
    if (!agg::is_move_to(cmd)) area += lastX * y - x * lastY;
    lastX = x, lastY = y, maxX = std::max(maxX, x);
  }
  return out;
}

TEST(ClosedContourStroker, SpikesAndDegenerateContours) {
  // Two distinct points: the rectangle around the segment. One point: nothing. Then a 10 x 10 square
  // (outer 12 x 12, inner 8 x 8), and a tip far sharper than the miter limit of 4 allows: bevelled
  // within 4 half widths.
  const OutlinePath path{{0, 0, kPathMoveTo},     {10, 0, kPathLineTo},    {0, 0, kPathLineTo},
                         {50, 50, kPathMoveTo},   {50, 50, kPathLineTo},   {100, 100, kPathMoveTo},
                         {110, 100, kPathLineTo}, {110, 110, kPathLineTo}, {100, 110, kPathLineTo},
                         {0, 200, kPathMoveTo},   {100, 202, kPathLineTo}, {0, 204, kPathLineTo}};
  FlattenedPath flat(path, 0.25);
  ClosedContourStroker<FlattenedPath> stroke(flat);
  stroke.width(2.0);
  const std::vector<double> polygons = Polygons(stroke);
  ASSERT_EQ(polygons.size(), 10u);
  EXPECT_NEAR(polygons[0], 10.0 * 2.0, 1e-9);
  EXPECT_NEAR(polygons[2], 12.0 * 12.0, 1e-9);
  EXPECT_NEAR(polygons[4], 8.0 * 8.0, 1e-9);
  EXPECT_GT(std::max(polygons[7], polygons[9]), 100.0);
  EXPECT_LE(std::max(polygons[7], polygons[9]), 100.0 + 4.0 * 1.0 + 1e-9);
  EXPECT_EQ(Polygons(stroke), polygons);  // the buffers are reused from one rewind to the next
}

TEST(AffineSpanInterpolator, ClampsFarCoordinates) {
  AffineSpanInterpolator far(agg::trans_affine(1e9, 0, 0, -1e9, 0, 0), 1 << 20);
  far.begin(1e6, 1e6, 1);
  int x, y;
  far.coordinates(&x, &y);
  EXPECT_EQ(std::vector<int>({x, y}), std::vector<int>({1 << 20, -(1 << 20)}));
}

}  // namespace
}  // namespace lx
