#include "render/render_process.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "effects/channel_tint.h"
#include "effects/emboss_filter.h"

namespace lx {
namespace {

TEST(RenderProcessDefaults, FreshProcessHoldsTheDocumentedDefaults) {
  RenderProcess p;
  EXPECT_EQ(p.face.startColour, 0xFFFFFFFFu);
  EXPECT_EQ(p.face.endColour, 0xFFFFFFFFu);
  EXPECT_EQ(p.outline.startColour, 0u);
  EXPECT_EQ(p.outline.endColour, 0u);
  EXPECT_EQ(p.shadowVisible, 1);
  EXPECT_EQ(p.shadowOnly, 0);
  EXPECT_EQ(p.shadowOffsetX, 0);
  EXPECT_EQ(p.shadowOffsetY, 0);
  EXPECT_EQ(p.shadowZoomX, 1.0);
  EXPECT_EQ(p.shadowZoomY, 1.0);
  EXPECT_EQ(p.shadowColour, 0u);
  EXPECT_EQ(p.shadowAlpha, 0);
  EXPECT_EQ(p.shadowExtruded, 0);
  EXPECT_EQ(p.extrudedShadowColour, 1);
  EXPECT_EQ(p.outline3DBorder, 0);
  EXPECT_EQ(p.faceEmbossed, 0);
  EXPECT_EQ(p.border3DWidth, 3);
  EXPECT_EQ(p.border3DDepth, 1);
  EXPECT_EQ(p.border3DAngle, 0.0);
  EXPECT_EQ(p.strokeWidth, 1.0);
  EXPECT_EQ(p.halfStrokeWidth, 0.5);
  EXPECT_EQ(p.embossAngle, 0.0);
  for (double v : p.embossLight) EXPECT_EQ(v, 0.0);
  EXPECT_EQ(p.shadowBlurLevel, 0);
  for (const FillSettings* f : {&p.face, &p.outline}) {
    EXPECT_EQ(f->texture, nullptr);
    EXPECT_EQ(f->textureTiling, 2);
    EXPECT_EQ(f->gradientType, 0);
    EXPECT_EQ(f->fillType, 0);
    EXPECT_EQ(f->gradientFrom, 0.5);
    EXPECT_EQ(f->gradientTo, 0.5);
    EXPECT_EQ(f->gradientAngle, 0.0);
    EXPECT_TRUE(f->gradientColours.empty());
    EXPECT_TRUE(f->gradientStops.empty());
    EXPECT_EQ(f->gradientFitMode, 0);
    EXPECT_EQ(f->useGradientTable, 0);
    EXPECT_TRUE(f->userGradientArea.empty());
    EXPECT_EQ(f->userGradientArea.left, 0);
    EXPECT_EQ(f->userGradientArea.bottom, 0);
    EXPECT_EQ(f->blurLevel, 0);
  }
  double x = 2.0, y = 3.0;
  p.glyphMatrix.transform(&x, &y);
  EXPECT_EQ(x, 2.0);
  EXPECT_EQ(y, 3.0);
}

TEST(RenderProcessDefaults, OwnsItsEffectObjects) {
  RenderProcess p;
  EXPECT_NE(p.bevel, nullptr);
  ASSERT_NE(p.emboss, nullptr);
  ASSERT_NE(p.tint, nullptr);
  EXPECT_NE(p.blur, nullptr);
  EXPECT_NE(p.tones, nullptr);
  // Until the emboss setter is called the light keeps its own azimuth; the tint starts from the
  // process's light factors.
  EXPECT_EQ(p.emboss->azimuth(), 135.0);
  EXPECT_EQ(p.emboss->elevation(), 60.0);
  EXPECT_EQ(p.emboss->depth(), 3);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(p.tint->factor(i), 0.0);
}

TEST(RenderProcessShadow, ZoomFactorsAreTestedOneByOne) {
  RenderProcess p;
  p.setShadowZoom(0.0, 2.0);
  EXPECT_EQ(p.shadowZoomX, 1.0);
  EXPECT_EQ(p.shadowZoomY, 2.0);
  p.setShadowZoom(3.0, -1.0);
  EXPECT_EQ(p.shadowZoomX, 3.0);
  EXPECT_EQ(p.shadowZoomY, 2.0);
  p.setShadowZoom(std::nan(""), std::nan(""));
  EXPECT_EQ(p.shadowZoomX, 3.0);
  EXPECT_EQ(p.shadowZoomY, 2.0);
}

TEST(RenderProcessShadow, ColourKeepsOnlyTheColourBytesAndOffsetIsUnclamped) {
  RenderProcess p;
  p.setShadowColour(0xAB030201u, 128);
  EXPECT_EQ(p.shadowColour, 0x00030201u);
  EXPECT_EQ(p.shadowAlpha, 128);
  p.setShadowOffset(-100000, 7);
  EXPECT_EQ(p.shadowOffsetX, -100000);
  EXPECT_EQ(p.shadowOffsetY, 7);
}

TEST(RenderProcessFlags, PointerSettersStoreTheByteAsGivenAndIgnoreNull) {
  RenderProcess p;
  using Setter = uint8_t (RenderProcess::*)(const uint8_t*);
  struct Case {
    Setter set;
    uint8_t RenderProcess::*field;
  };
  const Case cases[] = {{&RenderProcess::setShadowExtruded, &RenderProcess::shadowExtruded},
                        {&RenderProcess::setExtrudedShadowColour, &RenderProcess::extrudedShadowColour},
                        {&RenderProcess::enableFaceEmbossed, &RenderProcess::faceEmbossed},
                        {&RenderProcess::enableOutline3DBorder, &RenderProcess::outline3DBorder}};
  for (const Case& c : cases) {
    const uint8_t seven = 7;
    EXPECT_EQ((p.*c.set)(&seven), 7);
    EXPECT_EQ(p.*c.field, 7);
    EXPECT_EQ((p.*c.set)(nullptr), 7);
    EXPECT_EQ(p.*c.field, 7);
  }
  p.setShadowVisible(7);
  p.setShadowOnly(9);
  EXPECT_EQ(p.shadowVisible, 7);
  EXPECT_EQ(p.shadowOnly, 9);
}

TEST(RenderProcessOutline, ThicknessIsDoubledAndClamped) {
  RenderProcess p;
  p.setOutlineThickness(-5);
  EXPECT_EQ(p.strokeWidth, 0.0);
  EXPECT_EQ(p.halfStrokeWidth, 0.0);
  p.setOutlineThickness(600);
  EXPECT_EQ(p.strokeWidth, 1000.0);
  EXPECT_EQ(p.halfStrokeWidth, 500.0);
  p.setOutlineThickness(3);
  EXPECT_EQ(p.strokeWidth, 6.0);
  EXPECT_EQ(p.halfStrokeWidth, 3.0);
  p.setOutlineThickness(500);
  EXPECT_EQ(p.strokeWidth, 1000.0);
  // Doubling must not overflow before the clamp.
  p.setOutlineThickness(std::numeric_limits<int32_t>::max());
  EXPECT_EQ(p.strokeWidth, 1000.0);
  p.setOutlineThickness(std::numeric_limits<int32_t>::min());
  EXPECT_EQ(p.strokeWidth, 0.0);
}

TEST(RenderProcessOutline, BorderParametersAreClampedIndependently) {
  RenderProcess p;
  p.setOutline3DBorder(0, 0, 4.0);
  EXPECT_EQ(p.border3DWidth, 3);
  EXPECT_EQ(p.border3DDepth, 1);
  EXPECT_EQ(p.border3DAngle, kPi);
  p.setOutline3DBorder(200, 200, -4.0);
  EXPECT_EQ(p.border3DWidth, 60);
  EXPECT_EQ(p.border3DDepth, 60);
  EXPECT_EQ(p.border3DAngle, -kPi);
  p.setOutline3DBorder(3, 1, 1.25);
  EXPECT_EQ(p.border3DWidth, 3);
  EXPECT_EQ(p.border3DDepth, 1);
  EXPECT_EQ(p.border3DAngle, 1.25);
  p.setOutline3DBorder(2, 61, 0.0);
  EXPECT_EQ(p.border3DWidth, 3);
  EXPECT_EQ(p.border3DDepth, 60);
  p.setOutline3DBorder(60, 2, 0.0);
  EXPECT_EQ(p.border3DWidth, 60);
  EXPECT_EQ(p.border3DDepth, 2);
}

TEST(RenderProcessTranslation, AccumulatesAndResets) {
  RenderProcess p;
  p.setTranslation(3, 4);
  p.setTranslation(1, 1);
  double x = 0.0, y = 0.0;
  p.glyphMatrix.transform(&x, &y);
  EXPECT_EQ(x, 4.0);
  EXPECT_EQ(y, 5.0);
  p.resetTranslation();
  x = 0.0;
  y = 0.0;
  p.glyphMatrix.transform(&x, &y);
  EXPECT_EQ(x, 0.0);
  EXPECT_EQ(y, 0.0);
}

TEST(RenderProcessTranslation, FollowsAnExistingTransform) {
  RenderProcess p;
  p.glyphMatrix.sx = 2.0;
  p.glyphMatrix.sy = 3.0;
  p.setTranslation(10, -5);
  double x = 1.0, y = 1.0;
  p.glyphMatrix.transform(&x, &y);
  EXPECT_EQ(x, 12.0);  // scaled first, then moved
  EXPECT_EQ(y, -2.0);
}

TEST(RenderProcessEmboss, BytesBecomeTintFactorsAndAngleIsClamped) {
  RenderProcess p;
  p.setEmbossParameters(5.0, 255, 51, 0);
  EXPECT_EQ(p.embossAngle, kPi);
  EXPECT_EQ(p.emboss->azimuth(), kPi);
  EXPECT_EQ(p.embossLight[0], 1.0);
  EXPECT_EQ(p.embossLight[1], 0.2);
  EXPECT_EQ(p.embossLight[2], 0.0);
  EXPECT_EQ(p.embossLight[3], 0.0);
  EXPECT_EQ(p.tint->factor(0), 1.0);
  EXPECT_EQ(p.tint->factor(1), 0.2);
  EXPECT_EQ(p.tint->factor(2), 0.0);
  p.setEmbossParameters(-5.0, 0, 0, 0);
  EXPECT_EQ(p.embossAngle, -kPi);
  EXPECT_EQ(p.emboss->azimuth(), -kPi);
  p.setEmbossParameters(0.5, 10, 20, 30);
  EXPECT_EQ(p.emboss->azimuth(), 0.5);
}

TEST(RenderProcessEmboss, ReadBackTruncatesTheFactors) {
  RenderProcess p;
  p.setEmbossParameters(1.5, 255, 51, 33);
  double angle = 0.0;
  uint8_t a = 0, b = 0, c = 0;
  p.readEmbossParameters(&angle, &a, &b, &c);
  EXPECT_EQ(angle, 1.5);
  EXPECT_EQ(a, 255);
  EXPECT_EQ(b, 51);
  // 33 / 255 times 255 lands just below 33.
  EXPECT_EQ(c, 32);
}

TEST(RenderProcessEmboss, WithoutTheTintTheStoredFactorsStay) {
  RenderProcess p;
  p.tint.reset();
  p.setEmbossParameters(1.0, 255, 255, 255);
  EXPECT_EQ(p.embossAngle, 1.0);
  EXPECT_EQ(p.embossLight[0], 0.0);
  EXPECT_EQ(p.embossLight[1], 0.0);
  EXPECT_EQ(p.embossLight[2], 0.0);
}

}  // namespace
}  // namespace lx
