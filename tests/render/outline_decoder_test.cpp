#include "render/outline_decoder.h"
#include <gtest/gtest.h>
#include <cstdio>
#include <string>
#include "tests/support/contour_records.h"

namespace lx {
namespace {
using test::ContourRecords;
using test::Pt;

// What decoding real text cannot show in pixels: the path to 1/65536 and the rectangle of every vertex.
std::string Decode(const ContourRecords& r, OutlinePath&& path = {}) {
  const IntRect b = DecodeOutlineBlock(r.bytes().data(), r.bytes().size(), false, &path);
  std::string out;
  for (const PathVertex& v : path) {
    char text[80];
    std::snprintf(text, sizeof text, "%c%.17g,%.17g ", "SMLC?"[v.cmd < 4 ? v.cmd : 4], v.x, v.y);
    out += text;
  }
  return out + "| " + std::to_string(b.left) + "," + std::to_string(b.top) + "," + std::to_string(b.right) +
         "," + std::to_string(b.bottom);
}

TEST(OutlineDecoder, DecodesRecordsIntoAnExactPathAndItsRectangle) {
  ContourRecords half, odd, one, kinds, wide;
  // Start points round half up (10.5 is fract 0x8000, 10.49998 is 0x7FFF), line points keep their fraction.
  half.begin({10 * 65536 + 0x8000, 10 * 65536 + 0x7FFF}).line({{10 * 65536 + 0x8000, 20 * 65536}}).end();
  EXPECT_EQ(Decode(half), "M11,10 L10.5,20 L11,10 | 10,10,11,20");
  // Spline midpoints truncate: raw x 1 and -4 give -1 (1 / 65536), not -2.
  odd.begin(Pt(0, 0)).spline({{1, 7}, {-4, 0}, Pt(3, 3)}).end();
  EXPECT_EQ(Decode(odd),
            "M0,0 C1.52587890625e-05,0.0001068115234375 C-1.52587890625e-05,4.57763671875e-05 "
            "C-6.103515625e-05,0 C3,3 L0,0 | -1,0,3,3");
  // A one-point spline takes its midpoint with the bytes that follow: the line record's header and x.
  one.begin(Pt(0, 0)).spline({Pt(4, 4)}).line({Pt(8, 0), Pt(0, 0)}).end();
  EXPECT_EQ(Decode(one), "M0,0 C4,4 C3,6 L8,0 L0,0 | 0,0,8,6");
  // Cubic records are read as quadratic; unknown records are skipped.
  kinds.begin(Pt(0, 0))
      .record(2, {Pt(1, 5), Pt(6, 6)})
      .record(7, {Pt(50, 50)})
      .record(3, {Pt(1, 5), Pt(0, 4)});
  EXPECT_EQ(Decode(kinds.end()), "M0,0 C1,5 C6,6 C1,5 C0,4 L0,0 | 0,0,6,6");
  // Floor and ceiling of every vertex, control points included; contours append to what the path holds.
  wide.begin(Pt(-3, -3)).line({Pt(-0.5, -7.25), Pt(-9.0625, 9.75)}).spline({Pt(5, -20.5), Pt(3, 3)}).end();
  test::AddSquare(&wide, 20, 5, 10);
  EXPECT_EQ(Decode(wide, {{-50.0, 60.0, kPathMoveTo}}),
            "M-50,60 M-3,-3 L-0.5,-7.25 L-9.0625,9.75 C5,-20.5 C3,3 L-3,-3 M20,5 L30,5 L30,15 L20,15 L20,5 | "
            "-50,-21,30,60");
}
}  // namespace
}  // namespace lx
