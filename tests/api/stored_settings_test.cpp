// What the exported setters store, read back from the process: packing, clamps, refusals that keep the
// old value, and the parameters each call must not read.
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <vector>

#include "effects/channel_tint.h"
#include "effects/emboss_filter.h"
#include "lettrix/lettrix.h"
#include "render/render_process.h"
#include "tests/support/guard_pages.h"

namespace lx {
namespace {

using test::GuardedPages;

class Stored : public ::testing::Test {
 protected:
  ~Stored() override { DestroyRenderProcess(&slot_); }
  RenderProcess& process() { return *reinterpret_cast<RenderProcess*>(slot_); }

  // Calls an exported setter with the given values, each passed by address as the interface takes
  // them, and returns the process to read what was stored.
  template <typename R, typename... P, typename... V>
  RenderProcess& After(R(LETTRIX_CALL* set)(RenderHandle*, const P*...), V... values) {
    const std::tuple<P...> args{static_cast<P>(values)...};
    std::apply([&](const P&... a) { set(&slot_, &a...); }, args);
    return process();
  }

  RenderHandle slot_ = CreateRenderProcess();
};

TEST_F(Stored, ColoursArePackedRedLowestWithAlphaOnTop) {
  EXPECT_EQ(After(SetShadowColor, 128, 1, 2, 3).shadowColour, 0x00030201u);
  EXPECT_EQ(process().shadowAlpha, 128);
  EXPECT_EQ(After(SetColorFaceStart, 0x40, 1, 2, 3).face.startColour, 0x40030201u);
  EXPECT_EQ(After(SetColorFaceEnd, 0x41, 3, 2, 1).face.endColour, 0x41010203u);
  EXPECT_EQ(After(SetColorOutlineStart, 0xFF, 1, 1, 1).outline.startColour, 0xFF010101u);
  EXPECT_EQ(After(SetColorOutlineEnd, 0, 3, 3, 3).outline.endColour, 0x00030303u);
  process().setShadowColour(0xAB030201u, 7);
  EXPECT_EQ(process().shadowColour, 0x00030201u);
}

TEST_F(Stored, AColourTakesOnlyItsOwnLayersStopTableOutOfForce) {
  uint32_t colours[] = {1, 2};
  uint8_t n = 2;
  ASSERT_TRUE(SetFaceGradientColors(&slot_, colours, nullptr, &n));
  ASSERT_TRUE(SetOutlineGradientColors(&slot_, colours, nullptr, &n));
  EXPECT_EQ(After(SetColorOutlineStart, 1, 2, 2, 2).outline.useGradientTable, 0);
  EXPECT_EQ(process().face.useGradientTable, 1);
  EXPECT_EQ(After(SetColorFaceEnd, 1, 2, 2, 2).face.useGradientTable, 0);
  EXPECT_EQ(process().face.gradientColours.size(), 2u);
}

TEST_F(Stored, ShadowZoomChangesBothFactorsOrNeither) {
  for (const auto& z : {std::pair{0.0, 2.0}, {2.0, -1.0}, {NAN, 2.0}, {2.0, NAN}, {-0.5, -0.5}}) {
    EXPECT_EQ(After(SetShadowZoom, z.first, z.second).shadowZoomX, 1.0);
    EXPECT_EQ(process().shadowZoomY, 1.0);
  }
  EXPECT_EQ(After(SetShadowZoom, 0.5, 3.0).shadowZoomX, 0.5);
  EXPECT_EQ(process().shadowZoomY, 3.0);
  // The process itself tests the factors one by one.
  process().setShadowZoom(-1.0, 2.0);
  EXPECT_EQ(process().shadowZoomX, 0.5);
  EXPECT_EQ(process().shadowZoomY, 2.0);
}

TEST_F(Stored, FillTypeAndTilingAreMapped) {
  const struct {
    int32_t in, fill, tiling;
  } cases[] = {{0, 0, 0}, {1, 1, 1}, {-1, 1, 2}, {2, 1, 2}, {7, 1, 2}, {INT32_MIN, 1, 2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.in);
    EXPECT_EQ(After(SetFaceFillType, c.in).face.fillType, c.fill);
    EXPECT_EQ(After(SetOutlineFillType, c.in).outline.fillType, c.fill);
    EXPECT_EQ(After(SetFaceTextureTiling, c.in).face.textureTiling, c.tiling);
    EXPECT_EQ(After(SetOutlineTextureTiling, c.in).outline.textureTiling, c.tiling);
  }
}

TEST_F(Stored, GradientTypesReadOnlyTheParametersTheyUse) {
  GuardedPages pages(2);
  pages.protect(1, GuardedPages::Access::kNone);
  const double* unreadable = reinterpret_cast<const double*>(pages.page(1));
  const int32_t zero = 0, one = 1, two = 2, three = 3, seven = 7, minusOne = -1;
  const double angle = 10.0, from = 0.2, to = 0.8;
  SetGradientFace(&slot_, &three, &angle, unreadable);
  EXPECT_EQ(process().face.gradientType, 3);
  EXPECT_EQ(process().face.gradientAngle, kPi);
  SetGradientFace(&slot_, &one, unreadable, unreadable);
  EXPECT_EQ(process().face.gradientType, 1);
  // An unknown type stores 0 and keeps the parameters.
  SetGradientFace(&slot_, &two, &from, &to);
  SetGradientFace(&slot_, &seven, unreadable, unreadable);
  EXPECT_EQ(process().face.gradientType, 0);
  EXPECT_EQ(process().face.gradientFrom, 0.2);
  EXPECT_EQ(process().face.gradientTo, 0.8);
  SetGradientOutline(&slot_, &three, &angle, unreadable);
  SetGradientOutline(&slot_, &minusOne, unreadable, unreadable);
  EXPECT_EQ(process().outline.gradientType, 0);
  SetGradientOutline(&slot_, &two, &from, &to);
  EXPECT_EQ(process().outline.gradientType, 2);
  SetGradientOutline(&slot_, &zero, unreadable, unreadable);
  EXPECT_EQ(process().outline.gradientType, 0);
  EXPECT_EQ(process().outline.gradientAngle, kPi);
  EXPECT_EQ(process().outline.gradientTo, 0.8);
}

TEST_F(Stored, EmbossTakesItsBytesAsAngleACBClampedAndReadsBackTruncated) {
  EXPECT_EQ(After(SetFaceTextureEmbossed, 0.5, 255, 0, 51).embossAngle, 0.5);
  EXPECT_EQ(std::vector<double>(process().embossLight, process().embossLight + 4),
            (std::vector<double>{1.0, 0.2, 0.0, 0.0}));
  EXPECT_EQ(process().tint->factor(1), 0.2);
  EXPECT_EQ(After(SetFaceTextureEmbossed, 5.0, 0, 0, 0).emboss->azimuth(), kPi);
  EXPECT_EQ(After(SetFaceTextureEmbossed, -5.0, 0, 0, 0).embossAngle, -kPi);
  After(SetFaceTextureEmbossed, 1.5, 255, 33, 51);
  double angle = 0.0;
  uint8_t p = 0, q = 0, r = 0;
  process().readEmbossParameters(&angle, &p, &q, &r);
  EXPECT_EQ(angle, 1.5);
  EXPECT_EQ(std::vector<int>({p, q, r}), std::vector<int>({255, 51, 32}));  // 33 / 255 * 255 < 33
  // Without the tint, the factors it would hold are not stored either.
  process().tint.reset();
  EXPECT_EQ(After(SetFaceTextureEmbossed, 1.0, 0, 0, 0).embossLight[0], 1.0);
  EXPECT_EQ(process().embossAngle, 1.0);
}

TEST_F(Stored, StrokeAndBorderFollowTheirClamps) {
  const std::pair<int32_t, double> strokes[] = {{-5, 0.0},     {3, 6.0},         {499, 998.0},
                                                {500, 1000.0}, {600, 1000.0},    {INT32_MAX, 1000.0},
                                                {0, 0.0},      {INT32_MIN, 0.0}, {1, 2.0}};
  for (const auto& s : strokes) {
    EXPECT_EQ(After(SetOutlineThickness, s.first).strokeWidth, s.second) << s.first;
    EXPECT_EQ(process().halfStrokeWidth, s.second / 2) << s.first;
  }
  const struct {
    uint8_t width, depth;
    double angle;
    int storedWidth, storedDepth;
    double storedAngle;
  } borders[] = {{0, 0, 4.0, 3, 1, kPi},    {200, 200, -4.0, 60, 60, -kPi}, {3, 1, 1.25, 3, 1, 1.25},
                 {2, 61, 0.0, 3, 60, 0.0},  {60, 2, 0.0, 60, 2, 0.0},       {61, 60, 0.0, 60, 60, 0.0},
                 {4, 59, -1.0, 4, 59, -1.0}};
  for (const auto& b : borders) {
    After(SetOutline3DBorder, b.width, b.depth, b.angle);
    EXPECT_EQ(process().border3DWidth, b.storedWidth) << int{b.width};
    EXPECT_EQ(process().border3DDepth, b.storedDepth) << int{b.depth};
    EXPECT_EQ(process().border3DAngle, b.storedAngle);
  }
}

TEST_F(Stored, TranslationAddsUpAfterTheTransformAndResets) {
  After(SetTranslation, 3, 4);
  EXPECT_EQ(After(SetTranslation, 1, 1).glyphMatrix.tx, 4.0);
  EXPECT_EQ(process().glyphMatrix.ty, 5.0);
  ResetTranslation(&slot_);
  EXPECT_EQ(process().glyphMatrix.tx, 0.0);
  EXPECT_EQ(process().glyphMatrix.ty, 0.0);
  process().glyphMatrix.sx = 2.0;
  process().glyphMatrix.sy = 3.0;
  double x = 1.0, y = 1.0;
  After(SetTranslation, 10, -5).glyphMatrix.transform(&x, &y);
  EXPECT_EQ(x, 12.0);  // scaled first, then moved
  EXPECT_EQ(y, -2.0);
}

TEST_F(Stored, PlainValuesAreStoredAsGivenAndNullFlagsChangeNothing) {
  EXPECT_EQ(After(SetShadowOffset, -7, 70000).shadowOffsetX, -7);
  EXPECT_EQ(process().shadowOffsetY, 70000);
  EXPECT_EQ(After(SetShadowVisible, 0).shadowVisible, 0);
  EXPECT_EQ(After(SetDrawShadowOnly, 7).shadowOnly, 7);
  EXPECT_EQ(After(SetShadowExtruded, 7).shadowExtruded, 7);
  EXPECT_EQ(After(SetExtrudedShadowColor, 0).extrudedShadowColour, 0);
  EXPECT_EQ(After(EnableFaceEmbossed, 7).faceEmbossed, 7);
  EXPECT_EQ(After(EnableOutline3DBorder, 9).outline3DBorder, 9);
  SetShadowExtruded(&slot_, nullptr);
  SetExtrudedShadowColor(&slot_, nullptr);
  EnableFaceEmbossed(&slot_, nullptr);
  EnableOutline3DBorder(&slot_, nullptr);
  EXPECT_EQ(std::vector<int>({process().shadowExtruded, process().extrudedShadowColour,
                              process().faceEmbossed, process().outline3DBorder}),
            std::vector<int>({7, 0, 7, 9}));
  EXPECT_EQ(After(SetFaceBlurLevel, 255).face.blurLevel, 255);
  EXPECT_EQ(After(SetOutlineBlurLevel, 9).outline.blurLevel, 9);
  EXPECT_EQ(After(SetShadowBlurLevel, 1).shadowBlurLevel, 1);
  EXPECT_EQ(After(SetFaceGradientFitMode, 200).face.gradientFitMode, 200);
  EXPECT_EQ(After(SetOutlineGradientFitMode, 7).outline.gradientFitMode, 7);
  const int32_t l = 10, t = 10, r = 10, b = 50;
  EXPECT_FALSE(SetFaceUserGradientArea(&slot_, &l, &t, &r, &b));
  EXPECT_EQ(process().face.userGradientArea.bottom, 50);
  EXPECT_TRUE(SetOutlineUserGradientArea(&slot_, &l, &t, &b, &b));
  EXPECT_EQ(process().outline.userGradientArea.right, 50);
}

TEST_F(Stored, ColourStopsKeepTheWeightRules) {
  uint32_t colours[] = {0xA, 0xB, 0xC}, stops[] = {5, 0, 5};
  uint8_t n = 3, zero = 0;
  EXPECT_TRUE(SetFaceGradientColors(&slot_, colours, stops, &n));
  EXPECT_EQ(process().face.gradientColours, std::vector<uint32_t>({0xA, 0xC}));
  EXPECT_EQ(process().face.gradientStops, std::vector<uint32_t>({5, 5}));
  EXPECT_FALSE(SetFaceGradientColors(&slot_, colours, stops, &zero));
  EXPECT_TRUE(process().face.gradientColours.empty());
  EXPECT_EQ(process().face.useGradientTable, 1);
}

TEST_F(Stored, TexturesAreMadeOpaqueAndRefusedBeforeTheStoredOneIsTouched) {
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
}  // namespace lx
