#include "render/outline_decoder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/support/contour_records.h"

namespace lx {
namespace {

using test::ContourRecords;
using test::Fx;
using test::Pt;

// The decoded path as "M x,y L x,y C x,y ..." with exact coordinates; the rectangle goes to *rect.
std::string Decode(const ContourRecords& r, bool flipY = false, IntRect* rect = nullptr) {
  OutlinePath path;
  const IntRect box = DecodeOutlineBlock(r.bytes().data(), r.bytes().size(), flipY, &path);
  if (rect != nullptr) *rect = box;
  std::string out;
  for (const PathVertex& v : path) {
    char text[80];
    const char cmd = v.cmd == kPathMoveTo   ? 'M'
                     : v.cmd == kPathLineTo ? 'L'
                     : v.cmd == kPathCurve3 ? 'C'
                                            : '?';
    std::snprintf(text, sizeof text, "%s%c%.17g,%.17g", out.empty() ? "" : " ", cmd, v.x, v.y);
    out += text;
  }
  return out;
}

TEST(OutlineDecoder, StartPointsRoundHalfUpLinePointsKeepTheirFractionAndContoursCloseWhenOpen) {
  ContourRecords half, negative, open, closed;
  // 10.5 is fract 0x8000; 10.49998 is fract 0x7FFF. The closing line goes to the rounded start.
  half.begin({10 * 65536 + 0x8000, 10 * 65536 + 0x7FFF}).line({{10 * 65536 + 0x8000, 20 * 65536}}).end();
  EXPECT_EQ(Decode(half), "M11,10 L10.5,20 L11,10");
  negative.begin({Fx(-10.5), Fx(-2.75)}).line({Pt(5, 5)}).end();
  EXPECT_EQ(Decode(negative), "M-10,-3 L5,5 L-10,-3");
  open.begin(Pt(1, 1)).line({Pt(5, 1), Pt(5, 4.25), Pt(2, 4)}).end();
  EXPECT_EQ(Decode(open), "M1,1 L5,1 L5,4.25 L2,4 L1,1");
  closed.begin(Pt(1, 1)).line({Pt(5, 1), Pt(5, 4), Pt(1, 1)}).end();
  EXPECT_EQ(Decode(closed), "M1,1 L5,1 L5,4 L1,1");
}

TEST(OutlineDecoder, SplinesChainQuadraticCurvesThroughTruncatedMidpoints) {
  ContourRecords two, three, four;
  two.begin(Pt(0, 0)).spline({Pt(4, 0.5), Pt(8, 8)}).end();
  EXPECT_EQ(Decode(two), "M0,0 C4,0.5 C8,8 L0,0");
  four.begin(Pt(0, 0)).spline({Pt(2, 0), Pt(4, 2), Pt(4, 6), Pt(0, 8)}).end();
  EXPECT_EQ(Decode(four), "M0,0 C2,0 C3,1 C4,2 C4,4 C4,6 C0,8 L0,0");
  // Raw x values 1 and -4: (1 + -4) / 2 truncates to -1 (a floor would give -2); y: 7 and 0 give 3.
  three.begin(Pt(0, 0)).spline({{1, 7}, {-4, 0}, Pt(3, 3)}).end();
  const std::string unit = "1.52587890625e-05";  // 1 / 65536
  EXPECT_EQ(Decode(three), "M0,0 C" + unit + ",0.0001068115234375 C-" + unit +
                               ",4.57763671875e-05 C-6.103515625e-05,0 C3,3 L0,0");
}

TEST(OutlineDecoder, CubicRecordsAreReadAsQuadraticAndUnknownTypesAreSkipped) {
  ContourRecords two, three;
  two.begin(Pt(0, 0)).record(2, {Pt(1, 5), Pt(2, 3), Pt(6, 6)}).record(7, {Pt(50, 50)}).end();
  three.begin(Pt(0, 0)).record(3, {Pt(1, 5), Pt(2, 3), Pt(6, 6)}).record(1, {}).end();
  IntRect a, b;
  EXPECT_EQ(Decode(two, false, &a), Decode(three, false, &b));
  EXPECT_EQ(a.right, 6);  // the unknown record's point (50, 50) never entered the path
  EXPECT_EQ(b.right, 6);
}

TEST(OutlineDecoder, OnePointSplineTakesItsMidpointWithTheBytesThatFollow) {
  // After the one-point record come the line record's header (type 1, count 2) and its first x:
  // raw x 0x00020001 and raw y 8 << 16, so the midpoint is (3, 6).
  ContourRecords r;
  r.begin(Pt(0, 0)).spline({Pt(4, 4)}).line({Pt(8, 0), Pt(0, 0)}).end();
  EXPECT_EQ(Decode(r), "M0,0 C4,4 C3,6 L8,0 L0,0");
}

TEST(OutlineDecoder, FlipNegatesOnlyTheStartPoint) {
  ContourRecords r;
  r.begin(Pt(2, 3)).line({Pt(4, 5)}).spline({Pt(6, 7), Pt(8, 9)}).end();
  EXPECT_EQ(Decode(r, true), "M2,-3 L4,5 C6,7 C8,9 L2,-3");
}

TEST(OutlineDecoder, RectangleIsFloorAndCeilingOfEveryVertexControlPointsIncluded) {
  const struct {
    ContourRecords records;
    IntRect expected;
  } cases[] = {
      {ContourRecords().begin(Pt(1, 1)).line({Pt(0.2, 9.7), Pt(9.7, 0.2)}).spline({Pt(5, 5), Pt(3, 3)}).end(),
       {0, 0, 10, 10}},
      {ContourRecords().begin(Pt(-3, -3)).line({Pt(-0.5, -7.25), Pt(-9.01, -0.99)}).end(), {-10, -8, 0, 0}},
      {ContourRecords().begin(Pt(0, 0)).spline({Pt(5, -20.5), Pt(10, 0)}).end(), {0, -21, 10, 0}},
      {ContourRecords().begin(Pt(0, 4)).line({Pt(10, 4), Pt(3, 4)}).end(), {0, 4, 10, 4}},
  };
  for (const auto& c : cases) {
    IntRect r;
    EXPECT_FALSE(Decode(c.records, false, &r).empty());
    EXPECT_EQ(r.left, c.expected.left);
    EXPECT_EQ(r.top, c.expected.top);
    EXPECT_EQ(r.right, c.expected.right);
    EXPECT_EQ(r.bottom, c.expected.bottom);
  }
}

TEST(OutlineDecoder, ContoursAppendToThePathWhichIsMeasuredWhole) {
  ContourRecords r;
  test::AddSquare(&r, 0, 0, 10);
  test::AddSquare(&r, 20, 5, 10);
  OutlinePath path{{-50.0, -50.0, kPathMoveTo}};
  const IntRect rect = DecodeOutlineBlock(r.bytes().data(), r.bytes().size(), false, &path);
  ASSERT_EQ(path.size(), 1u + 5u + 5u);
  EXPECT_EQ(path[6].x, 20);
  EXPECT_EQ(path[6].cmd, kPathMoveTo);
  EXPECT_EQ(rect.left, -50);
  EXPECT_EQ(rect.right, 30);
  EXPECT_EQ(rect.bottom, 15);
  // Missing arguments give the empty rectangle and an empty path.
  EXPECT_EQ(DecodeOutlineBlock(nullptr, 40, false, &path).right, 0);
  EXPECT_TRUE(path.empty());
  EXPECT_EQ(DecodeOutlineBlock(r.bytes().data(), 0, false, &path).right, 0);
  EXPECT_EQ(DecodeOutlineBlock(r.bytes().data(), r.bytes().size(), false, nullptr).right, 0);
}

}  // namespace
}  // namespace lx
