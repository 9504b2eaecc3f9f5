#include <gtest/gtest.h>

#include <vector>

#include "effects/channel_tint.h"
#include "effects/emboss_filter.h"
#include "render/render_process.h"

namespace lx {
namespace {

// A source with every setting moved away from its default.
void Customise(RenderProcess& p) {
  const uint8_t on = 1, off = 0, seven = 7, n = 2;
  p.setShadowOffset(-3, 9);
  p.setShadowColour(0x030201u, 77);
  p.setShadowZoom(1.5, 0.5);
  p.setShadowVisible(0);
  p.setShadowOnly(1);
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
  uint32_t colours[] = {0xFF0000FFu, 0xFF00FF00u}, stops[] = {1, 3}, pixels[4] = {1, 2, 3, 4};
  p.outline.setGradientColours(colours, stops, &n);
  const double angle = 0.5;
  p.face.setGradient(3, &angle, nullptr);
  p.outline.textureTiling = 1;
  p.face.fillType = 1;
  p.face.setUserGradientArea(0, 0, 40, 30);
  p.face.setTexture(pixels, 2, 2);
  p.outline.setTexture(pixels, 4, 1);
  p.setOutlineThickness(4);
  p.setTranslation(10, 20);
}

// The settings a copy takes, the emboss objects' state included.
std::vector<double> Copied(const RenderProcess& p) {
  std::vector<double> v({double(p.shadowOffsetX), double(p.shadowOffsetY), double(p.shadowColour),
                         double(p.shadowAlpha), p.shadowZoomX, p.shadowZoomY, double(p.shadowExtruded),
                         double(p.extrudedShadowColour), double(p.faceEmbossed)});
  v.insert(v.end(), {double(p.outline3DBorder), double(p.border3DWidth), double(p.border3DDepth),
                     p.border3DAngle, double(p.shadowBlurLevel), double(p.face.blurLevel),
                     double(p.outline.blurLevel), double(p.face.startColour)});
  v.insert(v.end(), {double(p.outline.endColour), double(p.outline.useGradientTable),
                     double(p.outline.gradientColours.size()), double(p.face.gradientType),
                     p.face.gradientAngle, double(p.outline.textureTiling), double(p.face.fillType),
                     double(p.face.userGradientArea.right), double(p.face.userGradientArea.bottom)});
  v.insert(v.end(), {p.embossAngle, p.emboss->azimuth(), p.embossLight[0], p.embossLight[1], p.embossLight[2],
                     p.tint->factor(0), p.tint->factor(1), p.tint->factor(2)});
  return v;
}

TEST(CopySettings, TakesEverythingButTexturesShadowSwitchesTransformAndStroke) {
  RenderProcess fresh, src, dst;
  Customise(src);
  const std::vector<double> before = Copied(fresh), wanted = Copied(src);
  for (size_t i = 0; i < wanted.size(); ++i) ASSERT_NE(before[i], wanted[i]) << "setting " << i;
  dst.setShadowOnly(1);
  uint32_t pixel = 0x00FF00FFu;
  ASSERT_TRUE(dst.face.setTexture(&pixel, 1, 1));
  EXPECT_TRUE(dst.copySettingsFrom(src));
  EXPECT_EQ(Copied(dst), wanted);
  EXPECT_EQ(dst.outline.gradientColours, src.outline.gradientColours);
  EXPECT_EQ(dst.outline.gradientStops, std::vector<uint32_t>({1, 3}));
  // The target keeps its own switches and textures; the glyph transform and the stroke belong to the
  // text engine, not to the settings.
  EXPECT_EQ(dst.shadowVisible, 1);
  EXPECT_EQ(dst.shadowOnly, 1);
  ASSERT_NE(dst.face.texture, nullptr);
  EXPECT_EQ(dst.face.texture->pixels[0], 0xFFFF00FFu);
  EXPECT_EQ(dst.outline.texture, nullptr);
  EXPECT_EQ(dst.strokeWidth, 1.0);
  EXPECT_EQ(dst.glyphMatrix.tx, 0.0);
  // Onto itself nothing changes.
  EXPECT_TRUE(src.copySettingsFrom(src));
  EXPECT_EQ(Copied(src), wanted);
  EXPECT_NE(src.face.texture, nullptr);
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

}  // namespace
}  // namespace lx
