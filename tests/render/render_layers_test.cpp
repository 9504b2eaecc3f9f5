// Render on real text: the three layers, their fills and effects, and where they land in the buffer.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {

constexpr int32_t kWidth = 200, kHeight = 130;
constexpr uint32_t kGround = 0xFF141414;  // opaque dark grey

class RenderScene : public ::testing::Test {
 protected:
  // "Hg": thick strokes, a bowl and a descender, well inside the buffer.
  TextScene scene_{"Hg", 64, 30, 90};

  void SetUp() override {
    faceMask_ = FaceMask();
    face_ = DeepInside(faceMask_, 1);
    ASSERT_GT(face_.size(), 300u);
    strokeOuter_ = Both(DeepInside(StrokeMask(4), 1), FarOutside(faceMask_, 1));
    ASSERT_GT(strokeOuter_.size(), 150u);
  }
  Image Draw(Process& p, uint32_t fill = 0) {
    Image image(kWidth, kHeight, fill);
    EXPECT_TRUE(p.render(scene_, image));
    return image;
  }
  // The Face alone, opaque white, on a transparent buffer.
  Image FaceMask() {
    Process p;
    p.shadowVisible(0);
    return Draw(p);
  }
  // The whole stroke of the given thickness, opaque, without the Face.
  Image StrokeMask(int32_t thickness) {
    Process p;
    p.shadowVisible(0).face(0, 0, 0, 0).outline(255, 0, 0, 0).thickness(thickness);
    return Draw(p);
  }
  static std::set<uint32_t> Colours(const Image& image, const std::vector<Point>& at) {
    std::set<uint32_t> out;
    for (const Point& q : at) out.insert(image.at(q));
    return out;
  }
  // Partly transparent pixels: the anti-aliased or blurred fringe.
  static size_t Fringe(const Image& image) {
    return static_cast<size_t>(std::count_if(image.pixels().begin(), image.pixels().end(),
                                             [](uint32_t p) { return Alpha(p) != 0 && Alpha(p) != 255; }));
  }

  Image faceMask_{1, 1};
  std::vector<Point> face_, strokeOuter_;
};

TEST_F(RenderScene, ShadowLiesUnderOutlineWhichLiesUnderFace) {
  Process p;
  p.face(255, 200, 0, 0).outline(255, 0, 200, 0).thickness(4).shadow(255, 0, 0, 200).shadowOffset(9, 6);
  const Image out = Draw(p, kGround);

  Process shadowOnly;
  shadowOnly.shadow(255, 0, 0, 0).shadowOffset(9, 6).thickness(4).shadowOnly(1);
  const Image shadowMask = Draw(shadowOnly);
  const Image strokeMask = StrokeMask(4);

  const auto face = DeepInside(faceMask_, 1);
  const auto stroke = Both(DeepInside(strokeMask, 1), FarOutside(faceMask_, 1));
  const auto clear = Both(FarOutside(strokeMask, 1), FarOutside(faceMask_, 1));
  const auto shadow = Both(DeepInside(shadowMask, 1), clear);
  const auto ground = Both(FarOutside(shadowMask, 1), clear);
  ASSERT_GT(face.size(), 300u);
  ASSERT_GT(stroke.size(), 100u);
  ASSERT_GT(shadow.size(), 100u);
  ASSERT_GT(ground.size(), 5000u);
  // The Face covers the inner half of the stroke as well.
  ASSERT_GT(Both(face, DeepInside(strokeMask, 1)).size(), 50u);

  for (const Point& q : face) ASSERT_EQ(out.at(q), Pixel(255, 200, 0, 0)) << q.x << "," << q.y;
  for (const Point& q : stroke) ASSERT_EQ(out.at(q), Pixel(255, 0, 200, 0)) << q.x << "," << q.y;
  for (const Point& q : shadow) ASSERT_EQ(out.at(q), Pixel(255, 0, 0, 200)) << q.x << "," << q.y;
  for (const Point& q : ground) ASSERT_EQ(out.at(q), kGround) << q.x << "," << q.y;
}

TEST_F(RenderScene, DefaultsDrawAnOpaqueWhiteFaceAndNothingElse) {
  Process p;
  const Image out = Draw(p, kGround);

  for (const Point& q : DeepInside(faceMask_, 0)) ASSERT_EQ(out.at(q), 0xFFFFFFFFu);
  for (const Point& q : FarOutside(faceMask_, 0)) ASSERT_EQ(out.at(q), kGround);
  // The Face's edge is anti-aliased: partly covered pixels mix white into the ground.
  size_t mixed = 0;
  for (uint32_t px : out.pixels()) mixed += px != kGround && px != 0xFFFFFFFFu;
  EXPECT_GT(mixed, 100u);
}

TEST_F(RenderScene, TranslucentFaceShowsTheStrokeBeneathItsInnerHalf) {
  Process p;
  p.face(128, 255, 255, 255).outline(255, 0, 0, 0).thickness(3).shadowVisible(0);
  const Image out = Draw(p, kGround);
  const auto strokeUnderFace = Both(face_, DeepInside(StrokeMask(3), 1));
  const auto faceOnly = Both(face_, FarOutside(StrokeMask(3), 0));
  ASSERT_GT(strokeUnderFace.size(), 50u);
  ASSERT_GT(faceOnly.size(), 50u);
  // Over the black stroke the white Face is darker than over the grey ground.
  for (const Point& q : strokeUnderFace) ASSERT_LT(Red(out.at(q)), Red(out.at(faceOnly[0])));
}

TEST_F(RenderScene, TransparentOutlineLeavesTheFaceAsItIsWithoutOne) {
  Process none;
  none.face(200, 250, 120, 20).shadowVisible(0);
  Process clear;
  clear.face(200, 250, 120, 20).outline(0, 0, 255, 0).thickness(5).shadowVisible(0);
  EXPECT_EQ(Draw(clear, kGround), Draw(none, kGround));
}

TEST_F(RenderScene, ShadowOnlyDrawsTheShadowAndNothingElseUnlessItIsHidden) {
  Process p;
  p.face(255, 200, 0, 0).outline(255, 0, 200, 0).thickness(2).shadow(255, 0, 0, 200).shadowOffset(5, 5);
  p.shadowOnly(1);
  const Image out = Draw(p, kGround);
  // The Shadow has no red or green: any would come from the Face or the Outline.
  for (uint32_t px : out.pixels()) {
    ASSERT_LE(Red(px), Red(kGround)) << "no Face";
    ASSERT_LE(Green(px), Green(kGround)) << "no Outline";
  }
  EXPECT_GT(out.countOther(kGround), 800u);
  // Invisible or transparent, it draws nothing even alone.
  Process hidden;
  hidden.shadow(255, 0, 0, 200).shadowOffset(5, 5).shadowVisible(0).shadowOnly(1);
  EXPECT_EQ(Draw(hidden, kGround).countOther(kGround), 0u);
  Process clear;
  clear.shadow(0, 0, 0, 200).shadowOffset(5, 5).shadowOnly(1);
  EXPECT_EQ(Draw(clear, kGround).countOther(kGround), 0u);
}

TEST_F(RenderScene, ShadowThatCouldNotShowIsSkippedUnlessDrawnAlone) {
  // Offset 0, zoom 1, no blur: the Shadow would lie exactly under the Face.
  Process under;
  under.face(128, 255, 255, 255).shadow(255, 0, 0, 200);
  Process none;
  none.face(128, 255, 255, 255).shadowVisible(0);
  EXPECT_EQ(Draw(under, kGround), Draw(none, kGround));
  under.blur(0, 0, 1);  // blurred, its edges show
  EXPECT_NE(Draw(under, kGround), Draw(none, kGround));

  Process alone;
  alone.shadow(255, 0, 0, 200).shadowOnly(1);
  const Image out = Draw(alone, kGround);
  for (const Point& q : DeepInside(faceMask_, 0)) ASSERT_EQ(out.at(q), Pixel(255, 0, 0, 200));
}

TEST_F(RenderScene, TranslucentShadowIsEvenlyTranslucentOverFaceAndStroke) {
  Process p;
  p.thickness(3).shadow(100, 0, 0, 250).shadowOffset(0, 40).shadowOnly(1);
  const Image out = Draw(p);
  const Image strokeMask = StrokeMask(3);
  size_t seen = 0;
  for (const Point& q : DeepInside(strokeMask, 1)) {
    if (q.y + 40 >= kHeight) continue;
    ASSERT_EQ(out.at(q.x, q.y + 40), Pixel(100, 0, 0, 250));
    ++seen;
  }
  EXPECT_GT(seen, 200u);
}

TEST_F(RenderScene, ZoomedShadowStaysCentredOnTheUnzoomedOne) {
  auto shadow = [&](double zoom) {
    Process p;
    p.shadow(255, 0, 0, 0).shadowOnly(1).shadowZoom(zoom, zoom);
    return Draw(p);
  };
  const Image plain = shadow(1.0), zoomed = shadow(1.4);
  double px, py, zx, zy;
  plain.alphaCentre(128, &px, &py);
  zoomed.alphaCentre(128, &zx, &zy);
  EXPECT_NEAR(zx, px, 1.5);
  EXPECT_NEAR(zy, py, 1.5);
  const text::InkBox a = plain.alphaBounds(128), b = zoomed.alphaBounds(128);
  EXPECT_NEAR(b.width(), a.width() * 1.4, 3.0);
  EXPECT_NEAR(b.height(), a.height() * 1.4, 3.0);
}

TEST_F(RenderScene, TranslationMovesTheWholeDrawing) {
  Process a;
  a.outline(255, 0, 90, 0).thickness(2).shadow(200, 0, 0, 90).shadowOffset(4, 3).blur(0, 0, 2);
  Process b;
  b.outline(255, 0, 90, 0).thickness(2).shadow(200, 0, 0, 90).shadowOffset(4, 3).blur(0, 0, 2);
  b.translate(10, -3).translate(3, -4);  // adds up to (13, -7)
  const Image at = Draw(a, kGround), moved = Draw(b, kGround);
  for (int32_t y = 0; y < kHeight; ++y) {
    for (int32_t x = 0; x < kWidth; ++x) {
      const int32_t sx = x - 13, sy = y + 7;
      const uint32_t expected = sx >= 0 && sy < kHeight ? at.at(sx, sy) : kGround;
      ASSERT_EQ(moved.at(x, y), expected) << x << "," << y;
    }
  }
}

TEST_F(RenderScene, GradientAreasAreMeasuredOnTheCallersBuffer) {
  // Fit mode 1 spreads the gradient over the whole buffer, wherever the work image lies on it.
  for (int32_t dy : {0, 9}) {
    Process p;
    p.shadowVisible(0).faceStart(255, 255, 0, 0).faceEnd(255, 0, 0, 255).faceGradient(1).faceFit(1);
    p.translate(0, dy);
    const Image out = Draw(p);
    for (const Point& q : face_) {
      if (q.y + dy >= kHeight) continue;
      const double expected = 255.0 * (1.0 - (q.y + dy + 0.5) / kHeight);
      ASSERT_NEAR(Red(out.at(q.x, q.y + dy)), expected, 3.0) << q.x << "," << q.y + dy;
    }
  }
  // A user area from row 50 to row 80 of the buffer: start colour above, end colour below.
  Process p;
  p.shadowVisible(0).faceStart(255, 255, 0, 0).faceEnd(255, 0, 0, 255).faceGradient(1);
  ASSERT_TRUE(p.faceArea(0, 50, kWidth, 80));
  const Image out = Draw(p);
  size_t above = 0, below = 0;
  for (const Point& q : face_) {
    if (q.y < 50) {
      ASSERT_EQ(out.at(q), Pixel(255, 255, 0, 0));
      ++above;
    } else if (q.y >= 80) {
      ASSERT_EQ(out.at(q), Pixel(255, 0, 0, 255));
      ++below;
    }
  }
  EXPECT_GT(above, 50u);
  EXPECT_GT(below, 50u);
}

// A 4 x 4 checker of two colours in cells of 2 pixels (as stored: blue lowest), alpha left 0 on purpose.
std::vector<uint32_t> Checker(uint32_t a, uint32_t b) {
  return {b, b, a, a, b, b, a, a, a, a, b, b, a, a, b, b};
}

TEST_F(RenderScene, TiledTextureShowsOnlyItsOwnColoursMadeOpaque) {
  Process p;
  p.shadowVisible(0);
  ASSERT_TRUE(p.faceTexture(Checker(0x00C01020, 0x002080F0), 4, 4, 2));
  const auto colours = Colours(Draw(p), face_);
  EXPECT_EQ(colours, (std::set<uint32_t>{0xFFC01020, 0xFF2080F0}));
}

TEST_F(RenderScene, OutlineTextureFillsTheStroke) {
  Process p;
  p.shadowVisible(0).thickness(4);
  ASSERT_TRUE(p.outlineTexture(Checker(0x0000FF00, 0x00FF0000), 4, 4, 2));
  const auto colours = Colours(Draw(p), strokeOuter_);
  EXPECT_EQ(colours, (std::set<uint32_t>{0xFF00FF00, 0xFFFF0000}));
}

TEST_F(RenderScene, FaceBlurSoftensTheEdgeAndKeepsTheColour) {
  Process plain;
  plain.shadowVisible(0).face(255, 40, 90, 200);
  Process blurred;
  blurred.shadowVisible(0).face(255, 40, 90, 200).blur(3, 0, 0);
  const Image a = Draw(plain), b = Draw(blurred);
  EXPECT_GT(Fringe(b), 2 * Fringe(a));
  // Colour bleed: the blurred edge keeps the Face's colour, it does not darken towards black.
  for (uint32_t px : b.pixels()) {
    if (Alpha(px) >= 64) {
      ASSERT_GE(Blue(px), 190);
    } else if (Alpha(px) > 0) {
      ASSERT_GE(Blue(px), 180);  // even the faintest pixels keep most of it
    }
  }
  for (const Point& q : DeepInside(faceMask_, 4)) ASSERT_EQ(b.at(q), Pixel(255, 40, 90, 200));
  // It reaches past the unblurred shape.
  size_t beyond = 0;
  for (const Point& q : Without(FarOutside(faceMask_, 0), FarOutside(faceMask_, 2)))
    beyond += Alpha(b.at(q)) > 0;
  EXPECT_GT(beyond, 100u);
}

TEST_F(RenderScene, OutlineAndShadowBlurSoftenTheirLayers) {
  Process plain;
  plain.shadowVisible(0).thickness(3).outline(255, 0, 0, 0).face(0, 0, 0, 0);
  Process blurred;
  blurred.shadowVisible(0).thickness(3).outline(255, 0, 0, 0).face(0, 0, 0, 0).blur(0, 2, 0);
  EXPECT_GT(Fringe(Draw(blurred)), 2 * Fringe(Draw(plain)));

  Process sharp;
  sharp.shadow(255, 0, 0, 0).shadowOffset(4, 4).shadowOnly(1);
  Process soft;
  soft.shadow(255, 0, 0, 0).shadowOffset(4, 4).shadowOnly(1).blur(0, 0, 4);
  const text::InkBox a = Draw(sharp).alphaBounds(), b = Draw(soft).alphaBounds();
  EXPECT_LE(b.left, a.left - 2);
  EXPECT_GE(b.right, a.right + 2);
  EXPECT_LE(b.top, a.top - 2);
}

TEST_F(RenderScene, EmbossShadesAFlatFaceEvenly) {
  // A one-colour Face has no relief: the colour bleed keeps its edges flat too. The flat shade of the
  // 60 degree light is 255.9 * sin(60) = 221.
  Process p;
  p.shadowVisible(0).face(255, 30, 160, 90).emboss(0.8);
  const Image out = Draw(p);
  for (const Point& q : face_) ASSERT_EQ(out.at(q), Pixel(255, 221, 221, 221));
  for (const Point& q : FarOutside(faceMask_, 0)) ASSERT_EQ(out.at(q), 0u);
}

TEST_F(RenderScene, BorderLightsOneSideOfTheStrokeAndShadesTheOther) {
  Process flat;
  flat.shadowVisible(0).thickness(4).outline(255, 100, 100, 100).face(0, 0, 0, 0);
  Process lit;
  lit.shadowVisible(0).thickness(4).outline(255, 100, 100, 100).face(0, 0, 0, 0).border3D(45, 3, 2.0);
  const Image a = Draw(flat), b = Draw(lit);
  size_t lighter = 0, darker = 0;
  for (size_t i = 0; i < a.pixels().size(); ++i) {
    ASSERT_EQ(Alpha(b.pixels()[i]), Alpha(a.pixels()[i]));
    if (Alpha(a.pixels()[i]) != 255) continue;
    const uint32_t px = b.pixels()[i];
    ASSERT_TRUE(Red(px) == Green(px) && Green(px) == Blue(px));
    lighter += Red(px) > 100;
    darker += Red(px) < 100;
  }
  EXPECT_GT(lighter, 200u);
  EXPECT_GT(darker, 200u);
  lit.border3D(60, 1, 2.0);  // the highest elevation still bevels
  EXPECT_NE(Draw(lit), a);

  // Under an opaque Face only the outer half of the bevel shows; the Face stays as it is.
  Process withFace;
  withFace.shadowVisible(0).thickness(4).outline(255, 100, 100, 100).border3D(45, 3, 2.0);
  const Image c = Draw(withFace);
  for (const Point& q : face_) ASSERT_EQ(c.at(q), 0xFFFFFFFFu);
}

TEST_F(RenderScene, ExtrusionJoinsTheShadowCopyToTheGlyphs) {
  Process flat;
  flat.shadow(255, 0, 0, 0).shadowOffset(12, 8).shadowOnly(1);
  Process solid;
  solid.shadow(255, 0, 0, 0).shadowOffset(12, 8).shadowOnly(1).extrude(1, 0);
  const Image a = Draw(flat), b = Draw(solid);
  size_t atGlyphs = 0, halfway = 0, atOffset = 0;
  for (const Point& q : DeepInside(faceMask_, 2)) {
    atGlyphs += Alpha(b.at(q)) > 200;
    halfway += Alpha(b.at(q.x + 6, q.y + 4)) > 200;
    atOffset += Alpha(b.at(q.x + 12, q.y + 8)) > 200;
  }
  const size_t n = DeepInside(faceMask_, 2).size();
  EXPECT_EQ(atOffset, n);
  EXPECT_EQ(halfway, n);
  EXPECT_EQ(atGlyphs, n);
  EXPECT_GT(b.countOther(0), a.countOther(0) + 1000);
  // Towards the upper left alike.
  Process back;
  back.shadow(255, 0, 0, 0).shadowOffset(-10, -6).shadowOnly(1).extrude(1, 0);
  const Image c = Draw(back);
  for (const Point& q : DeepInside(faceMask_, 2))
    ASSERT_TRUE(Alpha(c.at(q)) > 200 && Alpha(c.at(q.x - 10, q.y - 6)) > 200);
  // The colour-softened variant covers the same ground.
  Process softened;
  softened.shadow(255, 0, 0, 0).shadowOffset(12, 8).shadowOnly(1).extrude(1, 1);
  EXPECT_GT(Draw(softened).countOther(0), a.countOther(0) + 1000);
}

}  // namespace
}  // namespace lx::test
