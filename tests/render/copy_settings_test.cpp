#include <gtest/gtest.h>

#include <vector>

#include "effects/channel_tint.h"
#include "effects/emboss_filter.h"
#include "render/render_process.h"

namespace lx {
namespace {

// A source with every setting moved away from its default.
void Customise(RenderProcess& p) {
  p.setShadowOffset(-3, 9);
  p.setShadowColour(0x030201u, 77);
  p.setShadowZoom(1.5, 0.5);
  p.setShadowVisible(0);
  p.setShadowOnly(1);
  const uint8_t on = 1, off = 0, seven = 7;
  p.setShadowExtruded(&on);
  p.setExtrudedShadowColour(&off);
  p.enableFaceEmbossed(&seven);
  p.enableOutline3DBorder(&on);
  p.setOutline3DBorder(45, 12, -1.0);
  p.setEmbossParameters(2.0, 255, 51, 102);
  p.shadowBlurLevel = 4;
  p.face.blurLevel = 5;
  p.outline.blurLevel = 6;
  p.face.setStartColour(0x112233u, 200);
  p.outline.setEndColour(0x445566u, 100);
  uint32_t colours[] = {0xFF0000FFu, 0xFF00FF00u};
  uint32_t stops[] = {1, 3};
  uint8_t n = 2;
  p.outline.setGradientColours(colours, stops, &n);
  const double angle = 0.5;
  p.face.setGradient(3, &angle, nullptr);
  p.outline.textureTiling = 1;
  p.face.fillType = 1;
  p.face.setUserGradientArea(0, 0, 40, 30);
  uint32_t pixels[4] = {1, 2, 3, 4};
  p.face.setTexture(pixels, 2, 2);
  p.outline.setTexture(pixels, 4, 1);
  p.setOutlineThickness(4);
  p.setTranslation(10, 20);
}

TEST(CopySettings, TakesEverythingButTexturesAndTheTwoShadowSwitches) {
  RenderProcess src;
  Customise(src);
  RenderProcess dst;
  EXPECT_TRUE(dst.copySettingsFrom(src));

  EXPECT_EQ(dst.face.texture, nullptr);
  EXPECT_EQ(dst.outline.texture, nullptr);
  EXPECT_EQ(dst.shadowVisible, 1);
  EXPECT_EQ(dst.shadowOnly, 0);

  EXPECT_EQ(dst.shadowOffsetX, -3);
  EXPECT_EQ(dst.shadowOffsetY, 9);
  EXPECT_EQ(dst.shadowColour, 0x030201u);
  EXPECT_EQ(dst.shadowAlpha, 77);
  EXPECT_EQ(dst.shadowZoomX, 1.5);
  EXPECT_EQ(dst.shadowZoomY, 0.5);
  EXPECT_EQ(dst.shadowExtruded, 1);
  EXPECT_EQ(dst.extrudedShadowColour, 0);
  EXPECT_EQ(dst.faceEmbossed, 7);
  EXPECT_EQ(dst.outline3DBorder, 1);
  EXPECT_EQ(dst.border3DWidth, 45);
  EXPECT_EQ(dst.border3DDepth, 12);
  EXPECT_EQ(dst.border3DAngle, -1.0);
  EXPECT_EQ(dst.shadowBlurLevel, 4);
  EXPECT_EQ(dst.face.blurLevel, 5);
  EXPECT_EQ(dst.outline.blurLevel, 6);
  EXPECT_EQ(dst.face.startColour, 0xC8112233u);
  EXPECT_EQ(dst.face.useGradientTable, 0);
  EXPECT_EQ(dst.outline.endColour, 0x64445566u);
  EXPECT_EQ(dst.outline.useGradientTable, 1);
  EXPECT_EQ(dst.outline.gradientColours, std::vector<uint32_t>({0xFF0000FFu, 0xFF00FF00u}));
  EXPECT_EQ(dst.outline.gradientStops, std::vector<uint32_t>({1, 3}));
  EXPECT_EQ(dst.face.gradientType, 3);
  EXPECT_EQ(dst.face.gradientAngle, 0.5);
  EXPECT_EQ(dst.outline.textureTiling, 1);
  EXPECT_EQ(dst.face.fillType, 1);
  EXPECT_EQ(dst.face.userGradientArea.right, 40);
  EXPECT_EQ(dst.face.userGradientArea.bottom, 30);

  // The emboss objects are rebuilt through the setter from what the source's objects hold.
  EXPECT_EQ(dst.embossAngle, 2.0);
  EXPECT_EQ(dst.emboss->azimuth(), 2.0);
  EXPECT_EQ(dst.embossLight[0], 1.0);
  EXPECT_EQ(dst.embossLight[1], 0.2);
  EXPECT_EQ(dst.embossLight[2], 102 * 0.00392156862745098);
  EXPECT_EQ(dst.tint->factor(2), 102 * 0.00392156862745098);

  // The glyph transform and the stroke belong to the text engine, not to the settings.
  EXPECT_EQ(dst.strokeWidth, 1.0);
  double x = 0.0, y = 0.0;
  dst.glyphMatrix.transform(&x, &y);
  EXPECT_EQ(x, 0.0);
  EXPECT_EQ(y, 0.0);
}

TEST(CopySettings, TargetKeepsItsOwnShadowSwitchesAndTextures) {
  RenderProcess src;
  Customise(src);
  RenderProcess dst;
  dst.setShadowVisible(0);
  dst.setShadowOnly(1);
  uint32_t pixel = 0x00FF00FFu;
  ASSERT_TRUE(dst.face.setTexture(&pixel, 1, 1));
  src.setShadowVisible(1);
  src.setShadowOnly(0);
  dst.copySettingsFrom(src);
  EXPECT_EQ(dst.shadowVisible, 0);
  EXPECT_EQ(dst.shadowOnly, 1);
  ASSERT_NE(dst.face.texture, nullptr);
  EXPECT_EQ(dst.face.texture->pixels[0], 0xFFFF00FFu);
}

TEST(CopySettings, EmbossOfAFreshSourceArrivesClamped) {
  // A fresh source's light still holds its own azimuth of 135 (radians); read back and set again it is
  // clamped like any caller angle.
  RenderProcess src, dst;
  dst.copySettingsFrom(src);
  EXPECT_EQ(dst.embossAngle, kPi);
  EXPECT_EQ(dst.emboss->azimuth(), kPi);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(dst.tint->factor(i), 0.0);
}

TEST(CopySettings, CopyingAProcessOntoItselfChangesNothing) {
  RenderProcess p;
  Customise(p);
  EXPECT_TRUE(p.copySettingsFrom(p));
  EXPECT_NE(p.face.texture, nullptr);
  EXPECT_EQ(p.outline.gradientColours.size(), 2u);
  EXPECT_EQ(p.emboss->azimuth(), 2.0);
}

}  // namespace
}  // namespace lx
