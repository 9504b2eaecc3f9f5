#include "render/outline_decoder.h"

#include <gtest/gtest.h>

#include "tests/support/contour_records.h"

namespace lx {
namespace {

using test::ContourRecords;
using test::Fx;
using test::FxPoint;
using test::Pt;

IntRect Decode(const ContourRecords& r, OutlinePath* path, bool flipY = false) {
  return DecodeOutlineBlock(r.bytes().data(), r.bytes().size(), flipY, path);
}

void ExpectVertex(const PathVertex& v, double x, double y, uint32_t cmd) {
  EXPECT_DOUBLE_EQ(v.x, x);
  EXPECT_DOUBLE_EQ(v.y, y);
  EXPECT_EQ(v.cmd, cmd);
}

TEST(OutlineDecoder, StartPointRoundsHalfUpWhileLinePointsKeepTheirFraction) {
  // 10.5 is fract 0x8000; 10.49998 is fract 0x7FFF.
  ContourRecords r;
  r.begin({10 * 65536 + 0x8000, 10 * 65536 + 0x7FFF}).line({{10 * 65536 + 0x8000, 20 * 65536}}).end();
  OutlinePath path;
  Decode(r, &path);
  ASSERT_EQ(path.size(), 3u);
  ExpectVertex(path[0], 11.0, 10.0, kPathMoveTo);
  ExpectVertex(path[1], 10.5, 20.0, kPathLineTo);
  ExpectVertex(path[2], 11.0, 10.0, kPathLineTo);  // the closing line goes to the rounded start
}

TEST(OutlineDecoder, NegativeStartPointsRoundHalfUpToo) {
  ContourRecords r;
  r.begin({Fx(-10.5), Fx(-2.75)}).line({Pt(5, 5)}).end();
  OutlinePath path;
  Decode(r, &path);
  ASSERT_FALSE(path.empty());
  ExpectVertex(path[0], -10.0, -3.0, kPathMoveTo);
}

TEST(OutlineDecoder, LineRecordGivesLineTosAndClosesOnlyWhenNeeded) {
  ContourRecords open;
  open.begin(Pt(1, 1)).line({Pt(5, 1), Pt(5, 4.25), Pt(2, 4)}).end();
  OutlinePath path;
  Decode(open, &path);
  ASSERT_EQ(path.size(), 5u);
  ExpectVertex(path[0], 1, 1, kPathMoveTo);
  ExpectVertex(path[1], 5, 1, kPathLineTo);
  ExpectVertex(path[2], 5, 4.25, kPathLineTo);
  ExpectVertex(path[3], 2, 4, kPathLineTo);
  ExpectVertex(path[4], 1, 1, kPathLineTo);

  ContourRecords closed;
  closed.begin(Pt(1, 1)).line({Pt(5, 1), Pt(5, 4), Pt(1, 1)}).end();
  path.clear();
  Decode(closed, &path);
  EXPECT_EQ(path.size(), 4u);
}

TEST(OutlineDecoder, TwoPointSplineIsOneQuadraticCurve) {
  ContourRecords r;
  r.begin(Pt(0, 0)).spline({Pt(4, 0.5), Pt(8, 8)}).end();
  OutlinePath path;
  Decode(r, &path);
  ASSERT_EQ(path.size(), 4u);
  ExpectVertex(path[1], 4, 0.5, kPathCurve3);
  ExpectVertex(path[2], 8, 8, kPathCurve3);
  ExpectVertex(path[3], 0, 0, kPathLineTo);
}

TEST(OutlineDecoder, ThreePointSplineEndsItsFirstCurveAtTheTruncatedMidpoint) {
  // Raw x values 1 and -4: (1 + -4) / 2 truncates to -1 (a floor would give -2); y: 7 and 0 -> 3.
  ContourRecords r;
  r.begin(Pt(0, 0)).spline({{1, 7}, {-4, 0}, Pt(3, 3)}).end();
  OutlinePath path;
  Decode(r, &path);
  ASSERT_EQ(path.size(), 6u);
  ExpectVertex(path[1], 1 / 65536.0, 7 / 65536.0, kPathCurve3);
  ExpectVertex(path[2], -1 / 65536.0, 3 / 65536.0, kPathCurve3);
  ExpectVertex(path[3], -4 / 65536.0, 0, kPathCurve3);
  ExpectVertex(path[4], 3, 3, kPathCurve3);
  ExpectVertex(path[5], 0, 0, kPathLineTo);
}

TEST(OutlineDecoder, FourPointSplineChainsMidpoints) {
  ContourRecords r;
  r.begin(Pt(0, 0)).spline({Pt(2, 0), Pt(4, 2), Pt(4, 6), Pt(0, 8)}).end();
  OutlinePath path;
  Decode(r, &path);
  ASSERT_EQ(path.size(), 8u);
  ExpectVertex(path[1], 2, 0, kPathCurve3);
  ExpectVertex(path[2], 3, 1, kPathCurve3);
  ExpectVertex(path[3], 4, 2, kPathCurve3);
  ExpectVertex(path[4], 4, 4, kPathCurve3);
  ExpectVertex(path[5], 4, 6, kPathCurve3);
  ExpectVertex(path[6], 0, 8, kPathCurve3);
}

TEST(OutlineDecoder, CubicTypeIsReadAsQuadraticAndUnknownTypesAreSkipped) {
  ContourRecords two, three;
  two.begin(Pt(0, 0)).record(2, {Pt(1, 5), Pt(2, 3), Pt(6, 6)}).record(7, {Pt(50, 50)}).end();
  three.begin(Pt(0, 0)).record(3, {Pt(1, 5), Pt(2, 3), Pt(6, 6)}).record(1, {}).end();
  OutlinePath a, b;
  const IntRect ra = Decode(two, &a);
  const IntRect rb = Decode(three, &b);
  ASSERT_EQ(a.size(), b.size());
  for (size_t i = 0; i < a.size(); ++i) ExpectVertex(b[i], a[i].x, a[i].y, a[i].cmd);
  EXPECT_EQ(ra.right, 6);  // the unknown record's point (50, 50) never entered the path
  EXPECT_EQ(rb.right, 6);
}

TEST(OutlineDecoder, OnePointSplineTakesItsMidpointWithTheNextPoint) {
  ContourRecords r;
  r.begin(Pt(0, 0)).spline({Pt(4, 4)}).line({Pt(8, 0), Pt(0, 0)}).end();
  OutlinePath path;
  Decode(r, &path);
  // The 8 bytes after the one-point record are the line record's header (type 1, count 2) and its
  // first x: raw x = 0x00020001, raw y = 8 << 16.
  ASSERT_GE(path.size(), 3u);
  ExpectVertex(path[1], 4, 4, kPathCurve3);
  EXPECT_EQ(path[2].cmd, kPathCurve3);
  EXPECT_DOUBLE_EQ(path[2].x, ((4 << 16) + 0x00020001) / 2 / 65536.0);
  EXPECT_DOUBLE_EQ(path[2].y, ((4 << 16) + (8 << 16)) / 2 / 65536.0);
}

TEST(OutlineDecoder, FlipNegatesOnlyTheStartPoint) {
  ContourRecords r;
  r.begin(Pt(2, 3)).line({Pt(4, 5)}).spline({Pt(6, 7), Pt(8, 9)}).end();
  OutlinePath path;
  Decode(r, &path, true);
  ASSERT_EQ(path.size(), 5u);
  ExpectVertex(path[0], 2, -3, kPathMoveTo);
  ExpectVertex(path[1], 4, 5, kPathLineTo);
  ExpectVertex(path[3], 8, 9, kPathCurve3);
  ExpectVertex(path[4], 2, -3, kPathLineTo);
}

TEST(OutlineDecoder, RectangleIsFloorAndCeilingOfEveryVertex) {
  ContourRecords r;
  r.begin(Pt(1, 1)).line({Pt(0.2, 9.7), Pt(9.7, 0.2)}).spline({Pt(5, 5), Pt(3, 3)}).end();
  OutlinePath path;
  const IntRect rect = Decode(r, &path);
  EXPECT_EQ(rect.left, 0);
  EXPECT_EQ(rect.top, 0);
  EXPECT_EQ(rect.right, 10);
  EXPECT_EQ(rect.bottom, 10);

  ContourRecords negative;
  negative.begin(Pt(-3, -3)).line({Pt(-0.5, -7.25), Pt(-9.01, -0.99)}).end();
  path.clear();
  const IntRect n = Decode(negative, &path);
  EXPECT_EQ(n.left, -10);
  EXPECT_EQ(n.top, -8);
  EXPECT_EQ(n.right, 0);
  EXPECT_EQ(n.bottom, 0);
}

TEST(OutlineDecoder, RectangleCountsControlPoints) {
  ContourRecords r;
  r.begin(Pt(0, 0)).spline({Pt(5, -20.5), Pt(10, 0)}).end();
  OutlinePath path;
  const IntRect rect = Decode(r, &path);
  EXPECT_EQ(rect.top, -21);
  EXPECT_EQ(rect.bottom, 0);
}

TEST(OutlineDecoder, ContoursFollowOneAnotherAndAppendToThePath) {
  ContourRecords r;
  test::AddSquare(&r, 0, 0, 10);
  test::AddSquare(&r, 20, 5, 10);
  OutlinePath path{{-50.0, -50.0, kPathMoveTo}};
  const IntRect rect = Decode(r, &path);
  ASSERT_EQ(path.size(), 1u + 5u + 5u);
  ExpectVertex(path[1], 0, 0, kPathMoveTo);
  ExpectVertex(path[6], 20, 5, kPathMoveTo);
  EXPECT_EQ(rect.left, -50);  // the whole path is measured
  EXPECT_EQ(rect.right, 30);
  EXPECT_EQ(rect.bottom, 15);
}

TEST(OutlineDecoder, PointsOnOneLineGiveAnEmptyRectangle) {
  ContourRecords r;
  r.begin(Pt(0, 4)).line({Pt(10, 4), Pt(3, 4)}).end();
  OutlinePath path;
  const IntRect rect = Decode(r, &path);
  EXPECT_EQ(rect.top, rect.bottom);
  EXPECT_FALSE(path.empty());
}

TEST(OutlineDecoder, MissingArgumentsGiveTheEmptyRectangle) {
  ContourRecords r;
  test::AddSquare(&r, 1, 1, 5);
  OutlinePath path{{1.0, 2.0, kPathMoveTo}};
  IntRect rect = DecodeOutlineBlock(nullptr, 40, false, &path);
  EXPECT_EQ(rect.right, 0);
  EXPECT_TRUE(path.empty());
  rect = DecodeOutlineBlock(r.bytes().data(), 0, false, &path);
  EXPECT_EQ(rect.right, 0);
  rect = DecodeOutlineBlock(r.bytes().data(), r.bytes().size(), false, nullptr);
  EXPECT_EQ(rect.left, 0);
  EXPECT_EQ(rect.right, 0);
}

}  // namespace
}  // namespace lx
