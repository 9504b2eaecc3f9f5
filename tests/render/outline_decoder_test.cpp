#include "render/outline_decoder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/support/contour_records.h"

namespace lx {
namespace {

using test::ContourRecords;
using test::Pt;

// The path as "M x,y L x,y C x,y ..." with exact coordinates, then the rectangle.
std::string Decode(const ContourRecords& r, bool flipY = false, OutlinePath&& path = {}) {
  const IntRect b = DecodeOutlineBlock(r.bytes().data(), r.bytes().size(), flipY, &path);
  std::string out;
  for (const PathVertex& v : path) {
    char text[80];
    std::snprintf(text, sizeof text, "%c%.17g,%.17g ", "SMLC?"[v.cmd < 4 ? v.cmd : 4], v.x, v.y);
    out += text;
  }
  return out + "| " + std::to_string(b.left) + "," + std::to_string(b.top) + "," + std::to_string(b.right) +
         "," + std::to_string(b.bottom);
}

ContourRecords From(test::FxPoint start) {
  ContourRecords r;
  r.begin(start);
  return r;
}

TEST(OutlineDecoder, DecodesRecordsIntoAnExactPathAndItsRectangle) {
  const std::string unit = "1.52587890625e-05";  // 1 / 65536
  // Start points round half up (10.5 is fract 0x8000, 10.49998 is 0x7FFF), line points keep their fraction,
  // open contours close on the rounded start. Spline midpoints truncate: raw x 1 and -4 give -1, not -2.
  // A one-point spline takes its midpoint with the bytes that follow (the next record's header and x).
  // Cubic records are read as quadratic; unknown records are skipped. Only the start point is flipped.
  // The rectangle is the floor and ceiling of every vertex, control points included.
  const struct {
    ContourRecords records;
    bool flip;
    std::string decoded;
  } cases[] = {
      {From({10 * 65536 + 0x8000, 10 * 65536 + 0x7FFF}).line({{10 * 65536 + 0x8000, 20 * 65536}}).end(),
       false, "M11,10 L10.5,20 L11,10 | 10,10,11,20"},
      {From(Pt(-10.5, -2.75)).line({Pt(5, 4.25)}).end(), false, "M-10,-3 L5,4.25 L-10,-3 | -10,-3,5,5"},
      {From(Pt(0, 0)).spline({Pt(2, 0), Pt(4, 2), Pt(4, 6), Pt(0, 8)}).end(), false,
       "M0,0 C2,0 C3,1 C4,2 C4,4 C4,6 C0,8 L0,0 | 0,0,4,8"},
      {From(Pt(0, 0)).spline({{1, 7}, {-4, 0}, Pt(3, 3)}).end(), false,
       "M0,0 C" + unit + ",0.0001068115234375 C-" + unit +
           ",4.57763671875e-05 C-6.103515625e-05,0 C3,3 L0,0 | -1,0,3,3"},
      {From(Pt(0, 0)).spline({Pt(4, 4)}).line({Pt(8, 0), Pt(0, 0)}).end(), false,
       "M0,0 C4,4 C3,6 L8,0 L0,0 | 0,0,8,6"},
      {From(Pt(2, 3)).line({Pt(4, 5)}).spline({Pt(6, 7), Pt(8, 9)}).end(), true,
       "M2,-3 L4,5 C6,7 C8,9 L2,-3 | 2,-3,8,9"},
      {From(Pt(0, 0)).record(2, {Pt(1, 5), Pt(2, 3), Pt(6, 6)}).record(7, {Pt(50, 50)}).end(), false,
       "M0,0 C1,5 C1.5,4 C2,3 C6,6 L0,0 | 0,0,6,6"},
      {From(Pt(0, 0)).record(3, {Pt(1, 5), Pt(2, 3), Pt(6, 6)}).record(1, {}).end(), false,
       "M0,0 C1,5 C1.5,4 C2,3 C6,6 L0,0 | 0,0,6,6"},
      {From(Pt(-3, -3)).line({Pt(-0.5, -7.25), Pt(-9.0625, 9.75)}).spline({Pt(5, -20.5), Pt(3, 3)}).end(),
       false, "M-3,-3 L-0.5,-7.25 L-9.0625,9.75 C5,-20.5 C3,3 L-3,-3 | -10,-21,5,10"},
  };
  for (const auto& c : cases) EXPECT_EQ(Decode(c.records, c.flip), c.decoded);
}

TEST(OutlineDecoder, ContoursAppendToThePathWhichIsMeasuredWholeAndMissingArgumentsGiveNothing) {
  ContourRecords r;
  test::AddSquare(&r, 0, 0, 10);
  test::AddSquare(&r, 20, 5, 10);
  EXPECT_EQ(Decode(r, false, {{-50.0, -50.0, kPathMoveTo}}),
            "M-50,-50 M0,0 L10,0 L10,10 L0,10 L0,0 M20,5 L30,5 L30,15 L20,15 L20,5 | -50,-50,30,15");
  OutlinePath path{{-50.0, -50.0, kPathMoveTo}};
  EXPECT_EQ(DecodeOutlineBlock(nullptr, 40, false, &path).right, 0);
  EXPECT_TRUE(path.empty());
  EXPECT_EQ(DecodeOutlineBlock(r.bytes().data(), 0, false, &path).right, 0);
  EXPECT_EQ(DecodeOutlineBlock(r.bytes().data(), r.bytes().size(), false, nullptr).right, 0);
}

}  // namespace
}  // namespace lx
