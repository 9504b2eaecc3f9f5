// Render on real text: the three layers, their fills and effects, where they land in the buffer.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {

constexpr int32_t kWidth = 200, kHeight = 130;
constexpr uint32_t kGround = 0xFF141414;  // opaque dark grey

class RenderLayers : public ::testing::Test {
 protected:
  // "Hg": thick strokes, a bowl and a descender, well inside the buffer.
  TextScene scene_{"Hg", 64, 30, 90};

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
};

TEST_F(RenderLayers, ShadowLiesUnderOutlineWhichLiesUnderFace) {
  Process p;
  p.face(255, 200, 0, 0).outline(255, 0, 200, 0).thickness(4).shadow(255, 0, 0, 200).shadowOffset(9, 6);
  const Image out = Draw(p, kGround);

  Process shadowOnly;
  shadowOnly.shadow(255, 0, 0, 0).shadowOffset(9, 6).thickness(4).shadowOnly(1);
  const Image shadowMask = Draw(shadowOnly);
  const Image faceMask = FaceMask(), strokeMask = StrokeMask(4);

  const auto face = DeepInside(faceMask, 1);
  const auto stroke = Both(DeepInside(strokeMask, 1), FarOutside(faceMask, 1));
  const auto clear = Both(FarOutside(strokeMask, 1), FarOutside(faceMask, 1));
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

TEST_F(RenderLayers, DefaultsDrawAnOpaqueWhiteFaceAndNothingElse) {
  Process p;
  const Image out = Draw(p, kGround);
  const Image faceMask = FaceMask();
  for (const Point& q : DeepInside(faceMask, 0)) ASSERT_EQ(out.at(q), 0xFFFFFFFFu);
  for (const Point& q : FarOutside(faceMask, 0)) ASSERT_EQ(out.at(q), kGround);
  // The Face's edge is anti-aliased: partly covered pixels mix white into the ground.
  size_t mixed = 0;
  for (uint32_t px : out.pixels()) mixed += px != kGround && px != 0xFFFFFFFFu;
  EXPECT_GT(mixed, 100u);
}

TEST_F(RenderLayers, TranslucentFaceShowsTheStrokeBeneathItsInnerHalf) {
  Process p;
  p.face(128, 255, 255, 255).outline(255, 0, 0, 0).thickness(3).shadowVisible(0);
  const Image out = Draw(p, kGround);
  const auto face = DeepInside(FaceMask(), 1);
  const auto strokeUnderFace = Both(face, DeepInside(StrokeMask(3), 1));
  const auto faceOnly = Both(face, FarOutside(StrokeMask(3), 0));
  ASSERT_GT(strokeUnderFace.size(), 50u);
  ASSERT_GT(faceOnly.size(), 50u);
  // Over the black stroke the white Face is darker than over the grey ground.
  for (const Point& q : strokeUnderFace) ASSERT_LT(Red(out.at(q)), Red(out.at(faceOnly[0])));
}

TEST_F(RenderLayers, TransparentOutlineLeavesTheFaceAsItIsWithoutOne) {
  Process none;
  none.face(200, 250, 120, 20).shadowVisible(0);
  Process clear;
  clear.face(200, 250, 120, 20).outline(0, 0, 255, 0).thickness(5).shadowVisible(0);
  EXPECT_EQ(Draw(clear, kGround), Draw(none, kGround));
}

TEST_F(RenderLayers, ShadowOnlyDrawsTheShadowAndNothingElse) {
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
}

TEST_F(RenderLayers, InvisibleOrTransparentShadowDrawsNothingEvenAlone) {
  Process hidden;
  hidden.shadow(255, 0, 0, 200).shadowOffset(5, 5).shadowVisible(0).shadowOnly(1);
  EXPECT_EQ(Draw(hidden, kGround).countOther(kGround), 0u);
  Process clear;
  clear.shadow(0, 0, 0, 200).shadowOffset(5, 5).shadowOnly(1);
  EXPECT_EQ(Draw(clear, kGround).countOther(kGround), 0u);
}

TEST_F(RenderLayers, ShadowThatCouldNotShowIsSkippedUnlessDrawnAlone) {
  // Offset 0, zoom 1, no blur: the Shadow would lie exactly under the Face.
  Process under;
  under.face(128, 255, 255, 255).shadow(255, 0, 0, 200);
  Process none;
  none.face(128, 255, 255, 255).shadowVisible(0);
  EXPECT_EQ(Draw(under, kGround), Draw(none, kGround));

  Process alone;
  alone.shadow(255, 0, 0, 200).shadowOnly(1);
  const Image out = Draw(alone, kGround);
  for (const Point& q : DeepInside(FaceMask(), 0)) ASSERT_EQ(out.at(q), Pixel(255, 0, 0, 200));
}

TEST_F(RenderLayers, TranslucentShadowIsEvenlyTranslucentOverFaceAndStroke) {
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

TEST_F(RenderLayers, ZoomedShadowStaysCentredOnTheUnzoomedOne) {
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

TEST_F(RenderLayers, TranslationMovesTheWholeDrawing) {
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

TEST_F(RenderLayers, DrawingIsDeterministicAndLeavesTheProcessReusable) {
  Process p;
  p.face(255, 10, 200, 30).outline(255, 0, 0, 0).thickness(2).shadow(150, 0, 0, 0).shadowOffset(3, 3);
  p.blur(1, 1, 2).emboss(0.7).border3D(30, 2, 1.0);
  const Image first = Draw(p, kGround);
  EXPECT_EQ(Draw(p, kGround), first);
}

}  // namespace
}  // namespace lx::test
