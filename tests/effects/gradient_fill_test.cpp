#include "effects/gradient_fill.h"

#include <cmath>
#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

#include "tests/effects/drawing_scene.h"

namespace lx {
namespace {

using test::Channel;
using test::DrawingScene;
using test::Packed;
using test::PixelOf;

constexpr double kPi = 3.141592653589793;
const uint32_t kRed = Packed(255, 0, 0, 255);
const uint32_t kBlue = Packed(0, 0, 255, 255);
const uint32_t kBlack = Packed(0, 0, 0, 255);
const uint32_t kWhite = Packed(255, 255, 255, 255);

// The largest difference of any byte between two pixels.
int Distance(uint32_t a, uint32_t b) {
  int d = 0;
  for (int s = 0; s < 32; s += 8) d = std::max(d, std::abs(Channel(a, s) - Channel(b, s)));
  return d;
}

void Rectangle(DrawingScene* s, double x1, double y1, double x2, double y2) {
  test::ContourRecords r;
  r.begin(test::Pt(x1, y1))
      .line({test::Pt(x2, y1), test::Pt(x2, y2), test::Pt(x1, y2), test::Pt(x1, y1)})
      .end();
  s->setPath(r);
}

void FaceGradient(DrawingScene* s, int32_t kind, uint32_t start, uint32_t end) {
  s->process.face.gradientType = kind;
  s->process.face.startColour = start;
  s->process.face.endColour = end;
}

TEST(GradientFill, TopToBottomFirstAndLastRowsCarryTheEndColours) {
  DrawingScene s(80, 80);
  Rectangle(&s, 10, 10, 70, 70);
  FaceGradient(&s, kGradientTopToBottom, kRed, kBlue);
  s.draw(kDrawFace);
  for (int x = 10; x < 70; x += 7) {
    EXPECT_EQ(s.at(x, 10), PixelOf(kRed));
    EXPECT_EQ(s.at(x, 69), PixelOf(kBlue));
  }
  for (int y = 11; y < 70; ++y) {
    EXPECT_LE(Channel(s.at(40, y), 16), Channel(s.at(40, y - 1), 16));  // red fades row by row
    EXPECT_EQ(s.at(12, y), s.at(60, y));                                // rows are uniform
  }
}

TEST(GradientFill, TallGradientsShowNoStepWiderThanOneLevel) {
  DrawingScene s(4, 3000);
  Rectangle(&s, 0, 0, 4, 3000);
  FaceGradient(&s, kGradientTopToBottom, kBlack, kWhite);
  s.draw(kDrawFace);
  EXPECT_EQ(s.at(1, 0), PixelOf(kBlack));
  EXPECT_EQ(s.at(1, 2999), PixelOf(kWhite));
  for (int y = 1; y < 3000; ++y) ASSERT_LE(Distance(s.at(1, y), s.at(1, y - 1)), 1) << y;

  // Three colour stops: each half of the area still moves by at most one level per row.
  s.clear();
  s.process.face.useGradientTable = 1;
  s.process.face.gradientColours = {kBlack, kWhite, kBlack};
  s.process.face.gradientStops = {1, 1, 1};
  s.draw(kDrawFace);
  EXPECT_EQ(s.at(1, 1500), PixelOf(kWhite));
  for (int y = 1; y < 3000; ++y) ASSERT_LE(Distance(s.at(1, y), s.at(1, y - 1)), 1) << y;
}

TEST(GradientFill, KindZeroAndUnknownKindsPaintTheStartColour) {
  for (int32_t kind : {0, 4, -1, 1000}) {
    DrawingScene s(20, 20);
    Rectangle(&s, 0, 0, 20, 20);
    FaceGradient(&s, kind, kRed, kBlue);
    s.process.face.useGradientTable = 1;
    s.process.face.gradientColours = {kWhite, kBlack};
    s.draw(kDrawFace);
    EXPECT_EQ(s.at(0, 0), PixelOf(kRed)) << kind;
    EXPECT_EQ(s.at(19, 19), PixelOf(kRed)) << kind;
  }
}

TEST(GradientFill, RadialRampRunsBetweenTheTwoFractionsOfTheRadius) {
  // A 64 x 64 area: radius 32, centre (32, 32). Pixel (32 + i, 32) has its centre i + 0.5 out.
  DrawingScene s(64, 64);
  Rectangle(&s, 0, 0, 64, 64);
  FaceGradient(&s, kGradientRadial, kBlack, kWhite);
  s.process.face.gradientFrom = 0.25;  // the ramp from 8 to 24 pixels out
  s.process.face.gradientTo = 0.75;
  s.draw(kDrawFace);
  EXPECT_EQ(s.at(32 + 7, 32), PixelOf(kBlack));
  EXPECT_EQ(s.at(32 - 8, 32), PixelOf(kBlack));
  EXPECT_EQ(s.at(32 + 24, 32), PixelOf(kWhite));
  EXPECT_EQ(s.at(32, 32 - 25), PixelOf(kWhite));
  EXPECT_EQ(s.at(0, 0), PixelOf(kWhite));
  EXPECT_NEAR(Channel(s.at(32 + 16, 32), 0), (16.5 - 8) / 16 * 255, 2);
  for (int i = 9; i < 24; ++i) EXPECT_LT(Channel(s.at(32 + i - 1, 32), 0), Channel(s.at(32 + i, 32), 0));
  // Symmetric about the centre.
  EXPECT_LE(Distance(s.at(32 + 12, 32), s.at(31 - 12, 32)), 1);
  EXPECT_LE(Distance(s.at(32 + 12, 32), s.at(32, 31 - 12)), 1);

  // 0.49 is 7.84 sixteenths: truncated to 7, the step lies at 7 / 16 of the 32-pixel radius, 14 pixels.
  s.clear();
  s.process.face.gradientFrom = s.process.face.gradientTo = 0.49;
  s.draw(kDrawFace);
  EXPECT_EQ(
      (std::vector<uint32_t>{s.at(32 + 13, 32), s.at(32 + 14, 32), s.at(31 - 13, 32), s.at(31 - 14, 32)}),
      (std::vector<uint32_t>{PixelOf(kBlack), PixelOf(kWhite), PixelOf(kBlack), PixelOf(kWhite)}));
}

TEST(GradientFill, RadialOnAWideAreaIsAnEllipse) {
  DrawingScene s(128, 32);
  Rectangle(&s, 0, 0, 128, 32);
  FaceGradient(&s, kGradientRadial, kBlack, kWhite);
  s.process.face.gradientFrom = 0.0;
  s.process.face.gradientTo = 1.0;
  s.draw(kDrawFace);
  // Half way out along either axis gives the same grey.
  EXPECT_LE(Distance(s.at(64 + 32, 16), s.at(64, 16 + 8)), 8);
  EXPECT_NEAR(Channel(s.at(64 + 32, 16), 0), 128, 4);
}

TEST(GradientFill, AngledGradientSpansTheAreaAlongItsDirection) {
  DrawingScene s(50, 40);
  Rectangle(&s, 0, 0, 50, 40);
  FaceGradient(&s, kGradientAngled, kRed, kBlue);
  s.process.face.gradientAngle = 0.0;  // left to right
  s.draw(kDrawFace);
  EXPECT_EQ(s.at(0, 5), PixelOf(kRed));
  EXPECT_EQ(s.at(49, 5), PixelOf(kBlue));
  EXPECT_EQ(s.at(20, 0), s.at(20, 39));

  s.clear();
  s.process.face.gradientAngle = kPi;  // right to left
  s.draw(kDrawFace);
  EXPECT_EQ(s.at(0, 5), PixelOf(kBlue));
  EXPECT_EQ(s.at(49, 5), PixelOf(kRed));

  DrawingScene q(40, 40);
  Rectangle(&q, 0, 0, 40, 40);
  FaceGradient(&q, kGradientAngled, kRed, kBlue);
  q.process.face.gradientAngle = kPi / 4;  // top-left corner to bottom-right corner
  q.draw(kDrawFace);
  EXPECT_EQ(q.at(0, 0), PixelOf(kRed));
  EXPECT_EQ(q.at(39, 39), PixelOf(kBlue));
  EXPECT_LE(Distance(q.at(39, 0), q.at(0, 39)), 1);  // the other two corners half way
  EXPECT_NEAR(Channel(q.at(39, 0), 0), 128, 2);

  // Half pi runs as top to bottom does.
  DrawingScene a(30, 70), b(30, 70);
  Rectangle(&a, 0, 0, 30, 70);
  Rectangle(&b, 0, 0, 30, 70);
  FaceGradient(&a, kGradientAngled, kRed, kBlue);
  a.process.face.gradientAngle = kPi / 2;
  FaceGradient(&b, kGradientTopToBottom, kRed, kBlue);
  a.draw(kDrawFace);
  b.draw(kDrawFace);
  for (size_t i = 0; i < a.pixels().size(); ++i) ASSERT_LE(Distance(a.pixels()[i], b.pixels()[i]), 1);
}

TEST(GradientFill, FitModeOneSpansTheCallersBuffer) {
  DrawingScene s(100, 100);
  Rectangle(&s, 40, 40, 60, 60);
  FaceGradient(&s, kGradientTopToBottom, kBlack, kWhite);
  s.process.face.gradientFitMode = 1;
  LayerAreas areas;
  areas.callerBuffer = {0, 0, 100, 100};
  s.draw(kDrawFace, areas);
  EXPECT_NEAR(Channel(s.at(50, 40), 0), 40.0 / 99 * 255, 1);
  EXPECT_NEAR(Channel(s.at(50, 59), 0), 59.0 / 99 * 255, 1);

  // Without a caller's buffer, fit mode 1 falls back to the shape; so do unknown modes.
  for (uint8_t mode : {uint8_t{1}, uint8_t{2}, uint8_t{255}}) {
    s.clear();
    s.process.face.gradientFitMode = mode;
    s.draw(kDrawFace);
    EXPECT_EQ(s.at(50, 40), PixelOf(kBlack));
    EXPECT_EQ(s.at(50, 59), PixelOf(kWhite));
  }
}

TEST(GradientFill, UserAreaWinsAndIsInTheCallersCoordinates) {
  DrawingScene s(100, 100);
  Rectangle(&s, 40, 40, 60, 60);
  FaceGradient(&s, kGradientTopToBottom, kBlack, kWhite);
  s.process.face.gradientFitMode = 1;
  s.process.face.userGradientArea = {0, 0, 10, 200};
  LayerAreas areas;
  areas.callerBuffer = {5, -20, 105, 80};  // the caller's (0, 0) lies at surface (5, -20)
  s.draw(kDrawFace, areas);
  // Area rows -20 .. 179 in the surface: row 40 is 60 rows down from the first of 200.
  EXPECT_NEAR(Channel(s.at(50, 40), 0), 60.0 / 199 * 255, 1);

  // An empty user area counts as none.
  s.clear();
  s.process.face.userGradientArea = {10, 10, 10, 50};
  s.process.face.gradientFitMode = 0;
  s.draw(kDrawFace, areas);
  EXPECT_EQ(s.at(50, 40), PixelOf(kBlack));
}

TEST(GradientFill, OutlineGradientSpansTheStroke) {
  DrawingScene s(80, 80);
  Rectangle(&s, 20, 20, 60, 60);
  s.process.strokeWidth = 10.0;
  s.process.outline.gradientType = kGradientTopToBottom;
  s.process.outline.startColour = kRed;
  s.process.outline.endColour = kBlue;
  s.draw(kDrawOutline);
  EXPECT_EQ(s.at(40, 15), PixelOf(kRed));
  EXPECT_EQ(s.at(40, 64), PixelOf(kBlue));
}

// Expected ramp entry: piecewise linear between (position, colour) stops.
uint32_t Expected(const std::vector<std::pair<double, uint32_t>>& stops, double t) {
  size_t i = 0;
  while (i + 2 < stops.size() && t > stops[i + 1].first) ++i;
  const double f = (t - stops[i].first) / (stops[i + 1].first - stops[i].first);
  uint32_t out = 0;
  for (int sh = 0; sh < 32; sh += 8) {
    const double a = Channel(stops[i].second, sh), b = Channel(stops[i + 1].second, sh);
    out |= static_cast<uint32_t>(std::lround(a + (b - a) * f)) << sh;
  }
  return PixelOf(out);
}

void ExpectRamp(const FillSettings& f, const std::vector<std::pair<double, uint32_t>>& stops) {
  uint32_t ramp[256];
  BuildGradientRamp(f, ramp, 256);
  for (int k = 0; k < 256; ++k) ASSERT_LE(Distance(ramp[k], Expected(stops, k / 255.0)), 1) << k;
  EXPECT_EQ(ramp[0], PixelOf(stops.front().second));
  EXPECT_EQ(ramp[255], PixelOf(stops.back().second));
}

TEST(GradientRamp, WeightsPlaceTheColourCentres) {
  const uint32_t a = Packed(255, 0, 0, 255), b = Packed(0, 255, 0, 128), c = Packed(0, 0, 255, 0);
  const uint32_t start = Packed(0, 0, 0, 255), end = Packed(255, 255, 255, 255);
  const struct {
    int32_t useTable;
    std::vector<uint32_t> colours, weights;
    std::vector<std::pair<double, uint32_t>> stops;
  } cases[] = {
      // Centres at 1/6, 1/2 and 5/6; the outer two stretched to the ends.
      {1, {a, b, c}, {1, 1, 1}, {{0.0, a}, {0.5, b}, {1.0, c}}},
      {1, {a, b, c}, {7, 7, 7}, {{0.0, a}, {0.5, b}, {1.0, c}}},
      {1, {a, b, c}, {5, 0, 5}, {{0.0, a}, {1.0, c}}},
      // Shares [0, 1/2), [1/2, 3/4), [3/4, 1]: centres 1/4, 5/8, 7/8; the first and last moved to the ends.
      {1, {a, b, c}, {2, 1, 1}, {{0.0, a}, {0.625, b}, {1.0, c}}},
      {1, {a, b, a}, {0, 0, 0}, {{0.0, a}, {0.5, b}, {1.0, a}}},
      {1, {a, b, a}, {}, {{0.0, a}, {0.5, b}, {1.0, a}}},
      {1, {b}, {9}, {{0.0, b}, {1.0, b}}},
      {1, {}, {}, {{0.0, start}, {1.0, end}}},          // a table in force but empty
      {0, {a, b}, {1, 1}, {{0.0, start}, {1.0, end}}},  // a table out of force
  };
  for (const auto& k : cases) {
    SCOPED_TRACE(&k - cases);
    FillSettings f;
    f.startColour = start;
    f.endColour = end;
    f.useGradientTable = k.useTable;
    f.gradientColours = k.colours;
    f.gradientStops = k.weights;
    ExpectRamp(f, k.stops);
  }
  FillSettings f;  // no trace of a colour whose weight is 0; one colour is solid
  f.useGradientTable = 1;
  f.gradientColours = {a, b, c};
  f.gradientStops = {5, 0, 5};
  uint32_t ramp[256];
  BuildGradientRamp(f, ramp, 256);
  for (uint32_t p : ramp) EXPECT_EQ(Channel(p, 8), 0);
  f.gradientColours = {b};
  BuildGradientRamp(f, ramp, 256);
  for (uint32_t p : ramp) EXPECT_EQ(p, PixelOf(b));
}

TEST(GradientArea, UserAreaThenFitModeThenShape) {
  FillSettings f;
  const IntRect shape{1, 2, 3, 4}, buffer{-5, -6, 100, 200};
  const auto area = [&] {
    const IntRect r = GradientArea(f, shape, buffer);
    return std::vector<int32_t>{r.left, r.top, r.right, r.bottom};
  };
  EXPECT_EQ(area(), (std::vector<int32_t>{1, 2, 3, 4}));
  f.gradientFitMode = 1;
  EXPECT_EQ(area(), (std::vector<int32_t>{-5, -6, 100, 200}));
  f.userGradientArea = {10, 20, 30, 40};
  EXPECT_EQ(area(), (std::vector<int32_t>{5, 14, 25, 34}));
  f.userGradientArea = {INT32_MAX - 1, 0, INT32_MAX, 10};
  EXPECT_EQ(GradientArea(f, shape, IntRect{10, 0, 20, 20}).left, INT32_MAX);  // held at the integer range
}

}  // namespace
}  // namespace lx
