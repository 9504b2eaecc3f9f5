// What the exported functions make of their arguments before the settings see them.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "effects/channel_tint.h"
#include "lettrix/lettrix.h"
#include "render/render_process.h"
#include "tests/support/guard_pages.h"

namespace {

using lx::RenderProcess;
using lx::test::GuardedPages;

class Exports : public ::testing::Test {
 protected:
  void SetUp() override {
    slot_ = CreateRenderProcess();
    ASSERT_NE(slot_, 0u);
  }
  void TearDown() override { DestroyRenderProcess(&slot_); }
  RenderProcess& process() { return *reinterpret_cast<RenderProcess*>(slot_); }

  RenderHandle slot_ = 0;
};

TEST_F(Exports, ColourBytesArePackedRedLowestWithAlphaOnTop) {
  uint8_t a = 128, c0 = 1, c1 = 2, c2 = 3;
  SetShadowColor(&slot_, &a, &c0, &c1, &c2);
  EXPECT_EQ(process().shadowColour, 0x00030201u);
  EXPECT_EQ(process().shadowAlpha, 128);

  a = 0x40;
  SetColorFaceStart(&slot_, &a, &c0, &c1, &c2);
  EXPECT_EQ(process().face.startColour, 0x40030201u);
  a = 0x41;
  SetColorFaceEnd(&slot_, &a, &c2, &c1, &c0);
  EXPECT_EQ(process().face.endColour, 0x41010203u);
  a = 0xFF;
  SetColorOutlineStart(&slot_, &a, &c0, &c0, &c0);
  EXPECT_EQ(process().outline.startColour, 0xFF010101u);
  a = 0x00;
  SetColorOutlineEnd(&slot_, &a, &c2, &c2, &c2);
  EXPECT_EQ(process().outline.endColour, 0x00030303u);
}

TEST_F(Exports, EndColourClearsOnlyItsOwnLayersTable) {
  uint32_t colours[] = {1, 2};
  uint8_t n = 2, a = 1, c = 2;
  ASSERT_TRUE(SetFaceGradientColors(&slot_, colours, nullptr, &n));
  ASSERT_TRUE(SetOutlineGradientColors(&slot_, colours, nullptr, &n));
  SetColorOutlineStart(&slot_, &a, &c, &c, &c);
  EXPECT_EQ(process().face.useGradientTable, 1);
  EXPECT_EQ(process().outline.useGradientTable, 0);
  SetColorFaceEnd(&slot_, &a, &c, &c, &c);
  EXPECT_EQ(process().face.useGradientTable, 0);
  EXPECT_EQ(process().face.gradientColours.size(), 2u);
}

TEST_F(Exports, ShadowZoomChangesBothFactorsOrNeither) {
  const double cases[][2] = {{0.0, 2.0}, {2.0, -1.0}, {NAN, 2.0}, {2.0, NAN}, {-0.5, -0.5}};
  for (const auto& c : cases) {
    SetShadowZoom(&slot_, &c[0], &c[1]);
    EXPECT_EQ(process().shadowZoomX, 1.0);
    EXPECT_EQ(process().shadowZoomY, 1.0);
  }
  const double x = 0.5, y = 3.0;
  SetShadowZoom(&slot_, &x, &y);
  EXPECT_EQ(process().shadowZoomX, 0.5);
  EXPECT_EQ(process().shadowZoomY, 3.0);
}

TEST_F(Exports, FillTypeAndTilingAreMapped) {
  const struct {
    int32_t in, fill, tiling;
  } cases[] = {{0, 0, 0}, {1, 1, 1}, {-1, 1, 2}, {2, 1, 2}, {7, 1, 2}, {INT32_MIN, 1, 2}};
  for (const auto& c : cases) {
    SetFaceFillType(&slot_, &c.in);
    SetOutlineFillType(&slot_, &c.in);
    SetFaceTextureTiling(&slot_, &c.in);
    SetOutlineTextureTiling(&slot_, &c.in);
    EXPECT_EQ(process().face.fillType, c.fill) << c.in;
    EXPECT_EQ(process().outline.fillType, c.fill) << c.in;
    EXPECT_EQ(process().face.textureTiling, c.tiling) << c.in;
    EXPECT_EQ(process().outline.textureTiling, c.tiling) << c.in;
  }
}

TEST_F(Exports, UnknownGradientTypeStoresZeroAndKeepsTheParameters) {
  const int32_t two = 2, seven = 7;
  const double from = 0.2, to = 0.8, junk = 0.6;
  SetGradientFace(&slot_, &two, &from, &to);
  SetGradientFace(&slot_, &seven, &junk, &junk);
  EXPECT_EQ(process().face.gradientType, 0);
  EXPECT_EQ(process().face.gradientFrom, 0.2);
  EXPECT_EQ(process().face.gradientTo, 0.8);

  SetGradientOutline(&slot_, &two, &from, &to);
  const int32_t minusOne = -1;
  SetGradientOutline(&slot_, &minusOne, &junk, &junk);
  EXPECT_EQ(process().outline.gradientType, 0);
  EXPECT_EQ(process().outline.gradientFrom, 0.2);
}

TEST_F(Exports, GradientTypesReadOnlyTheParametersTheyUse) {
  GuardedPages pages(2);
  pages.protect(1, GuardedPages::Access::kNone);
  const double* unreadable = reinterpret_cast<const double*>(pages.page(1));

  const int32_t three = 3, zero = 0, one = 1;
  const double angle = 10.0;
  SetGradientFace(&slot_, &three, &angle, unreadable);
  EXPECT_EQ(process().face.gradientType, 3);
  EXPECT_EQ(process().face.gradientAngle, lx::kPi);
  SetGradientOutline(&slot_, &three, &angle, unreadable);
  EXPECT_EQ(process().outline.gradientType, 3);

  SetGradientFace(&slot_, &one, unreadable, unreadable);
  EXPECT_EQ(process().face.gradientType, 1);
  SetGradientOutline(&slot_, &zero, unreadable, unreadable);
  EXPECT_EQ(process().outline.gradientType, 0);
  EXPECT_EQ(process().outline.gradientAngle, lx::kPi);
}

TEST_F(Exports, EmbossBytesReachTheSetterAsAngleACB) {
  const double angle = 0.5;
  uint8_t a = 255, b = 0, c = 51;
  SetFaceTextureEmbossed(&slot_, &angle, &a, &b, &c);
  EXPECT_EQ(process().embossAngle, 0.5);
  EXPECT_EQ(process().embossLight[0], 1.0);
  EXPECT_EQ(process().embossLight[1], 0.2);
  EXPECT_EQ(process().embossLight[2], 0.0);
  EXPECT_EQ(process().embossLight[3], 0.0);

  a = 10;
  b = 20;
  c = 30;
  SetFaceTextureEmbossed(&slot_, &angle, &a, &b, &c);
  double readAngle = 0.0;
  uint8_t p = 0, q = 0, r = 0;
  process().readEmbossParameters(&readAngle, &p, &q, &r);
  EXPECT_EQ(p, 10);
  EXPECT_EQ(q, 30);
  EXPECT_EQ(r, 20);
}

TEST_F(Exports, StrokeBorderAndTranslationFollowTheirClamps) {
  const int32_t thickness[] = {-5, 600, 3};
  const double expected[] = {0.0, 1000.0, 6.0};
  for (int i = 0; i < 3; ++i) {
    SetOutlineThickness(&slot_, &thickness[i]);
    EXPECT_EQ(process().strokeWidth, expected[i]);
  }

  uint8_t w = 0, d = 0;
  double angle = 4.0;
  SetOutline3DBorder(&slot_, &w, &d, &angle);
  EXPECT_EQ(process().border3DWidth, 3);
  EXPECT_EQ(process().border3DDepth, 1);
  EXPECT_EQ(process().border3DAngle, lx::kPi);

  const int32_t x1 = 3, y1 = 4, x2 = 1, y2 = 1;
  SetTranslation(&slot_, &x1, &y1);
  SetTranslation(&slot_, &x2, &y2);
  EXPECT_EQ(process().glyphMatrix.tx, 4.0);
  EXPECT_EQ(process().glyphMatrix.ty, 5.0);
  ResetTranslation(&slot_);
  EXPECT_EQ(process().glyphMatrix.tx, 0.0);
  EXPECT_EQ(process().glyphMatrix.ty, 0.0);
}

TEST_F(Exports, PlainValuesAreStoredAsGiven) {
  const int32_t x = -7, y = 70000;
  SetShadowOffset(&slot_, &x, &y);
  EXPECT_EQ(process().shadowOffsetX, -7);
  EXPECT_EQ(process().shadowOffsetY, 70000);
  const uint8_t seven = 7, zero = 0, mode = 200;
  SetShadowVisible(&slot_, &zero);
  SetDrawShadowOnly(&slot_, &seven);
  SetShadowExtruded(&slot_, &seven);
  SetExtrudedShadowColor(&slot_, &zero);
  EnableFaceEmbossed(&slot_, &seven);
  EnableOutline3DBorder(&slot_, &seven);
  EXPECT_EQ(process().shadowVisible, 0);
  EXPECT_EQ(process().shadowOnly, 7);
  EXPECT_EQ(process().shadowExtruded, 7);
  EXPECT_EQ(process().extrudedShadowColour, 0);
  EXPECT_EQ(process().faceEmbossed, 7);
  EXPECT_EQ(process().outline3DBorder, 7);

  const uint8_t face = 255, outline = 9, shadow = 1;
  SetFaceBlurLevel(&slot_, &face);
  SetOutlineBlurLevel(&slot_, &outline);
  SetShadowBlurLevel(&slot_, &shadow);
  EXPECT_EQ(process().face.blurLevel, 255);
  EXPECT_EQ(process().outline.blurLevel, 9);
  EXPECT_EQ(process().shadowBlurLevel, 1);

  SetFaceGradientFitMode(&slot_, &mode);
  SetOutlineGradientFitMode(&slot_, &seven);
  EXPECT_EQ(process().face.gradientFitMode, 200);
  EXPECT_EQ(process().outline.gradientFitMode, 7);

  const int32_t l = 10, t = 10, r = 10, b = 50;
  EXPECT_FALSE(SetFaceUserGradientArea(&slot_, &l, &t, &r, &b));
  EXPECT_EQ(process().face.userGradientArea.bottom, 50);
  EXPECT_TRUE(SetOutlineUserGradientArea(&slot_, &l, &t, &b, &b));
  EXPECT_EQ(process().outline.userGradientArea.right, 50);
}

TEST_F(Exports, ColourStopTablesKeepTheWeightRules) {
  uint32_t colours[] = {0xA, 0xB, 0xC};
  uint32_t stops[] = {5, 0, 5};
  uint8_t n = 3;
  EXPECT_TRUE(SetFaceGradientColors(&slot_, colours, stops, &n));
  EXPECT_EQ(process().face.gradientColours, std::vector<uint32_t>({0xA, 0xC}));
  EXPECT_EQ(process().face.gradientStops, std::vector<uint32_t>({5, 5}));
  uint8_t zero = 0;
  EXPECT_FALSE(SetFaceGradientColors(&slot_, colours, stops, &zero));
  EXPECT_TRUE(process().face.gradientColours.empty());
  EXPECT_EQ(process().face.useGradientTable, 1);
}

TEST_F(Exports, TextureArgumentsAreCheckedBeforeTheStoredTextureIsTouched) {
  uint32_t pixels[2] = {0x00123456u, 0x80FFFFFFu};
  int32_t w = 2, h = 1, zero = 0;
  ASSERT_TRUE(SetTextureFace(&slot_, pixels, &w, &h));
  ASSERT_NE(process().face.texture, nullptr);
  EXPECT_EQ(process().face.texture->pixels[0], 0xFF123456u);
  EXPECT_EQ(process().face.texture->pixels[1], 0xFFFFFFFFu);

  EXPECT_FALSE(SetTextureFace(&slot_, pixels, &zero, &h));
  EXPECT_FALSE(SetTextureFace(&slot_, pixels, &w, &zero));
  EXPECT_FALSE(SetTextureFace(&slot_, nullptr, &w, &h));
  ASSERT_NE(process().face.texture, nullptr);
  EXPECT_EQ(process().face.texture->width, 2);
}

}  // namespace
