#include "effects/layer_drawing.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/effects/drawing_scene.h"

namespace lx {
namespace {

using test::DrawingScene;
using test::Packed;
using test::PixelOf;

constexpr double kPi = 3.141592653589793;

// The area of AddRoundContour's shape: n chord triangles plus n parabolic segments (2/3 of the triangle
// each parabola spans with its control point).
double RoundContourArea(double r, int n) {
  const double half = kPi / n;
  const double triangles = n * 0.5 * r * r * std::sin(2 * half);
  const double chord = 2 * r * std::sin(half);
  const double height = r / std::cos(half) - r * std::cos(half);
  return triangles + n * (2.0 / 3.0) * 0.5 * chord * height;
}

TEST(LayerDrawing, FilledShapesCoverTheirArea) {
  DrawingScene square(80, 80);
  test::ContourRecords r;
  r.begin(test::Pt(10, 10))
      .line({test::Pt(60.5, 10), test::Pt(60.5, 60.5), test::Pt(10, 60.5), test::Pt(10, 10)})
      .end();
  square.setPath(r);
  square.draw(kDrawFace);
  EXPECT_NEAR(square.coverage(), 50.5 * 50.5, 50.5 * 50.5 * 0.01);
  EXPECT_EQ(square.at(30, 30), 0xFFFFFFFFu);  // the default Face: opaque white
  EXPECT_EQ(square.at(5, 5), 0u);

  DrawingScene circle(120, 120);
  test::ContourRecords c;
  test::AddRoundContour(&c, 60, 60, 45, 8);
  circle.setPath(c);
  circle.draw(kDrawFace);
  EXPECT_NEAR(circle.coverage(), RoundContourArea(45, 8), RoundContourArea(45, 8) * 0.01);
  // Curves, not the polygon of their control points, which reaches 48.7 from the centre at 22.5 degrees
  // where the curve reaches 45.1.
  EXPECT_EQ(circle.at(103, 77), 0u);
  EXPECT_EQ(circle.at(102, 60), 0xFFFFFFFFu);
}

TEST(LayerDrawing, StrokeOfWidthWCoversItsLengthTimesW) {
  const uint32_t blue = Packed(0, 0, 255, 255);
  for (double w : {1.0, 2.0, 4.0, 6.0, 9.5}) {
    DrawingScene s(120, 120);
    test::ContourRecords r;
    const bool round = w == 4.0;  // a curve that is nearly the circle of radius 40
    if (round) {
      test::AddRoundContour(&r, 60, 60, 40, 12);
    } else {
      test::AddSquare(&r, 30, 30, 60);
    }
    s.setPath(r);
    s.process.strokeWidth = w;
    s.process.outline.startColour = s.process.outline.endColour = blue;
    s.draw(kDrawOutline);
    const double band = (round ? 2 * kPi * 40 : 240) * w;
    EXPECT_NEAR(s.coverage(), band, band * 0.02) << w;
    EXPECT_EQ(s.at(60, 60), 0u);  // the inside stays empty
    if (w >= 2) {
      EXPECT_EQ(s.at(round ? 100 : 30, 60), PixelOf(blue)) << w;
    }
  }
}

TEST(LayerDrawing, ModesChooseLayersAndOrder) {
  test::ContourRecords r;
  test::AddSquare(&r, 20, 20, 40);
  const uint32_t red = Packed(255, 0, 0, 255), blue = Packed(0, 0, 255, 255);
  DrawingScene s(80, 80);
  s.setPath(r);
  s.process.face.startColour = s.process.face.endColour = red;
  s.process.outline.startColour = s.process.outline.endColour = blue;
  s.process.strokeWidth = 8.0;

  s.draw(kDrawFaceThenOutline);
  EXPECT_EQ(s.at(40, 40), PixelOf(red));
  EXPECT_EQ(s.at(21, 40), PixelOf(blue));  // the inner half of the stroke covers the Face
  EXPECT_EQ(s.at(17, 40), PixelOf(blue));

  s.clear();
  s.draw(kDrawOutlineThenFace);
  EXPECT_EQ(s.at(21, 40), PixelOf(red));  // the Face covers the inner half
  EXPECT_EQ(s.at(17, 40), PixelOf(blue));

  for (int32_t mode : {4, 5, 100, -1}) {
    s.clear();
    s.draw(mode);
    EXPECT_EQ(s.coverage(), 0.0) << mode;
  }

  s.process.strokeWidth = 0.0;
  s.clear();
  s.draw(kDrawOutline);
  EXPECT_EQ(s.coverage(), 0.0);
  s.draw(kDrawFaceThenOutline);
  EXPECT_EQ(s.at(20, 40), PixelOf(red));
  EXPECT_EQ(s.at(19, 40), 0u);
}

TEST(LayerDrawing, VerticesGoThroughTheGlyphMatrix) {
  test::ContourRecords r;
  test::AddSquare(&r, 0, 0, 10);
  DrawingScene s(60, 60);
  s.setPath(r);
  s.process.glyphMatrix.translate(30, 5);
  s.process.glyphMatrix.sx = 2.0;  // x' = 2x + 30
  s.draw(kDrawFace);
  EXPECT_NEAR(s.coverage(), 200.0, 1e-6);
  EXPECT_EQ(s.at(30, 5), 0xFFFFFFFFu);
  EXPECT_EQ(s.at(49, 14), 0xFFFFFFFFu);
  EXPECT_EQ(s.at(50, 14), 0u);
  EXPECT_EQ(s.at(29, 5), 0u);
}

TEST(LayerDrawing, TranslucentLayerKeepsItsColourBytesAtTheEdges) {
  test::ContourRecords r;
  test::AddRoundContour(&r, 20, 20, 15, 8);
  DrawingScene s(40, 40);
  s.setPath(r);
  s.process.face.startColour = s.process.face.endColour = Packed(200, 100, 50, 128);
  s.draw(kDrawFace);
  int partial = 0;
  for (uint32_t p : s.pixels()) {
    if (p == 0) continue;
    EXPECT_EQ(p & 0xFFFFFFu, 0xC86432u);  // red 200, green 100, blue 50, never scaled by coverage
    EXPECT_LE(p >> 24, 128u);
    if ((p >> 24) < 128) ++partial;
  }
  EXPECT_GT(partial, 20);
  EXPECT_EQ(s.at(20, 20) >> 24, 128u);
}

TEST(LayerDrawing, EmptySurfaceOrPathDrawsNothingAndFarShapesAreClipped) {
  DrawingScene s(10, 10);
  s.draw(kDrawFace);  // no path
  EXPECT_EQ(s.coverage(), 0.0);
  test::ContourRecords r;
  test::AddSquare(&r, 0, 0, 5);
  s.setPath(r);
  s.surface.pixels = nullptr;
  s.draw(kDrawFace);
  EXPECT_EQ(s.coverage(), 0.0);

  // Shapes far outside the surface are clipped.
  test::ContourRecords huge;
  test::AddSquare(&huge, -30000, -30000, 60000);
  DrawingScene far(16, 16);
  far.setPath(huge);
  far.process.glyphMatrix.sx = far.process.glyphMatrix.sy = 1e6;
  far.process.strokeWidth = 3.0;
  far.draw(kDrawFaceThenOutline);
  EXPECT_EQ(far.at(8, 8), 0xFFFFFFFFu);
}

TEST(UniformColour, StartAndEndColours) {
  FillSettings f;
  f.startColour = f.endColour = Packed(1, 2, 3, 255);
  uint32_t c = 0;
  EXPECT_EQ(UniformLayerColour(f, &c, 0), 1);
  EXPECT_EQ(c, Packed(1, 2, 3, 255));

  f.endColour = Packed(9, 9, 9, 255);
  c = 0xDEAD;
  EXPECT_EQ(UniformLayerColour(f, &c, 0), 0);
  EXPECT_EQ(c, 0xDEADu);
  EXPECT_EQ(UniformLayerColour(f, &c, 1), 1);  // same alpha
  EXPECT_EQ(c, Packed(1, 2, 3, 255));
  f.endColour = Packed(1, 2, 3, 254);
  EXPECT_EQ(UniformLayerColour(f, &c, 1), 0);
  EXPECT_EQ(c, Packed(1, 2, 3, 255));  // written even when the answer is 0

  f.fillType = 1;  // a texture fill type is never uniform, texture or not
  f.endColour = f.startColour;
  EXPECT_EQ(UniformLayerColour(f, &c, 0), 0);
  EXPECT_EQ(UniformLayerColour(f, &c, 1), 0);
}

TEST(UniformColour, ColourStops) {
  FillSettings f;
  f.startColour = f.endColour = Packed(0, 0, 0, 255);
  f.useGradientTable = 1;
  f.gradientColours = {Packed(10, 20, 30, 100), Packed(10, 20, 30, 100)};
  f.gradientStops = {1, 1};
  uint32_t c = 0;
  EXPECT_EQ(UniformLayerColour(f, &c, 0), 1);
  EXPECT_EQ(c, Packed(10, 20, 30, 100));

  f.gradientColours[1] = Packed(99, 20, 30, 100);  // differs in colour only
  EXPECT_EQ(UniformLayerColour(f, &c, 0), 0);
  EXPECT_EQ(UniformLayerColour(f, &c, 1), 1);
  f.gradientColours[1] = Packed(10, 20, 30, 101);  // differs in alpha
  EXPECT_EQ(UniformLayerColour(f, &c, 1), 0);

  f.gradientColours.clear();
  c = 7;
  EXPECT_EQ(UniformLayerColour(f, &c, 0), 1);  // empty list: uniform, nothing written
  EXPECT_EQ(c, 7u);

  f.useGradientTable = 0;  // the lists no longer count
  f.gradientColours = {Packed(1, 1, 1, 1), Packed(2, 2, 2, 2)};
  EXPECT_EQ(UniformLayerColour(f, &c, 0), 1);
  EXPECT_EQ(c, Packed(0, 0, 0, 255));
}

TEST(UniformColour, SameColourOfFaceAndOutline) {
  DrawingScene s(1, 1);
  s.process.face.startColour = s.process.face.endColour = Packed(5, 6, 7, 255);
  s.process.outline.startColour = s.process.outline.endColour = Packed(5, 6, 7, 255);
  EXPECT_EQ(SameUniformColour(s.process.face, s.process.outline), 1);
  s.process.outline.endColour = Packed(5, 6, 7, 254);
  EXPECT_EQ(SameUniformColour(s.process.face, s.process.outline), 0);
  s.process.outline.endColour = s.process.outline.startColour = Packed(5, 6, 8, 255);
  EXPECT_EQ(SameUniformColour(s.process.face, s.process.outline), 0);
  s.process.outline.startColour = s.process.outline.endColour = Packed(5, 6, 7, 255);
  s.process.face.fillType = 1;
  EXPECT_EQ(SameUniformColour(s.process.face, s.process.outline), 0);
}

TEST(UniformColour, LayerAlphaEquals) {
  FillSettings f;
  f.startColour = f.endColour = Packed(1, 2, 3, 200);
  EXPECT_EQ(LayerAlphaEquals(f, 200), 1);
  EXPECT_EQ(LayerAlphaEquals(f, 255), 0);
  f.endColour = Packed(9, 9, 9, 200);
  EXPECT_EQ(LayerAlphaEquals(f, 200), 1);
  f.endColour = Packed(1, 2, 3, 100);
  EXPECT_EQ(LayerAlphaEquals(f, 200), 0);
  EXPECT_EQ(LayerAlphaEquals(f, 100), 0);

  f.useGradientTable = 1;
  EXPECT_EQ(LayerAlphaEquals(f, 200), 0);  // empty list: the opposite of the uniform test
  f.gradientColours = {Packed(0, 0, 0, 50), Packed(255, 255, 255, 50)};
  EXPECT_EQ(LayerAlphaEquals(f, 50), 1);
  f.gradientColours.push_back(Packed(0, 0, 0, 51));
  EXPECT_EQ(LayerAlphaEquals(f, 50), 0);

  f.useGradientTable = 0;
  f.endColour = f.startColour;
  f.fillType = 1;
  EXPECT_EQ(LayerAlphaEquals(f, 200), 0);
}

}  // namespace
}  // namespace lx
