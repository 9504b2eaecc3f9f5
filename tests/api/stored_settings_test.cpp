// What the exported setters store, read back from the process: packing, clamps, refusals that keep the
// old value, and the parameters each call must not read.
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <vector>

#include "effects/emboss_filter.h"
#include "lettrix/lettrix.h"
#include "render/render_process.h"
#include "tests/support/guard_pages.h"

namespace lx {
namespace {

template <typename... T>
std::vector<double> V(T... v) {
  return {static_cast<double>(v)...};
}

class Stored : public ::testing::Test {
 protected:
  ~Stored() override { DestroyRenderProcess(&slot_); }
  RenderProcess& process() { return *reinterpret_cast<RenderProcess*>(slot_); }

  // Calls an exported setter with the values, each passed by address as the interface takes them, and
  // returns the process to read what was stored.
  template <typename R, typename... P, typename... V>
  RenderProcess& After(R(LETTRIX_CALL* set)(RenderHandle*, const P*...), V... values) {
    const std::tuple<P...> args{static_cast<P>(values)...};
    std::apply([&](const P&... a) { set(&slot_, &a...); }, args);
    return process();
  }

  RenderHandle slot_ = CreateRenderProcess();
};

TEST_F(Stored, ColoursArePackedRedLowestWithAlphaOnTopAndTakeTheirLayersStopTableOutOfForce) {
  uint32_t colours[] = {1, 2};
  uint8_t n = 2;
  ASSERT_TRUE(SetFaceGradientColors(&slot_, colours, nullptr, &n) &&
              SetOutlineGradientColors(&slot_, colours, nullptr, &n));
  EXPECT_EQ(After(SetColorOutlineStart, 0xFF, 1, 1, 1).outline.startColour, 0xFF010101u);
  EXPECT_EQ(V(process().outline.useGradientTable, process().face.useGradientTable), V(0, 1));
  EXPECT_EQ(After(SetColorFaceEnd, 0x41, 3, 2, 1).face.endColour, 0x41010203u);
  EXPECT_EQ(process().face.useGradientTable, 0);
  EXPECT_EQ(After(SetShadowColor, 128, 1, 2, 3).shadowColour, 0x00030201u);
  EXPECT_EQ(process().shadowAlpha, 128);
}

TEST_F(Stored, ClampsAndRefusalsKeepTheirRanges) {
  // The zoom changes both factors or neither; the process itself tests them one by one.
  auto zoom = [&] { return V(process().shadowZoomX, process().shadowZoomY); };
  for (const auto& z : {std::pair{0.0, 2.0}, {2.0, -1.0}, {NAN, 2.0}, {2.0, NAN}, {-0.5, -0.5}}) {
    After(SetShadowZoom, z.first, z.second);
    EXPECT_EQ(zoom(), V(1, 1));
  }
  After(SetShadowZoom, 0.5, 3.0);
  EXPECT_EQ(zoom(), V(0.5, 3.0));
  process().setShadowZoom(-1.0, 2.0);
  EXPECT_EQ(zoom(), V(0.5, 2.0));
  // Fill type: any non-zero is the texture; tiling: 0 and 1 kept, anything else 2.
  for (const int32_t in : {0, 1, -1, 2, 7, INT32_MIN}) {
    const int fill = in != 0, tiling = in == 0 || in == 1 ? in : 2;
    EXPECT_EQ(V(After(SetFaceFillType, in).face.fillType, After(SetOutlineFillType, in).outline.fillType,
                After(SetFaceTextureTiling, in).face.textureTiling,
                After(SetOutlineTextureTiling, in).outline.textureTiling),
              V(fill, fill, tiling, tiling))
        << in;
  }
  // Thickness per side doubles into the stroke width, 0 to 1000.
  const double strokes[][2] = {{-5, 0},    {INT32_MIN, 0}, {0, 0},           {1, 2},
                               {499, 998}, {500, 1000},    {INT32_MAX, 1000}};
  for (const auto& s : strokes) {
    const RenderProcess& p = After(SetOutlineThickness, s[0]);
    EXPECT_EQ(V(p.strokeWidth, p.halfStrokeWidth), V(s[1], s[1] / 2)) << s[0];
  }
  // Border elevation 3 to 60, passes 1 to 60, angle within pi either way.
  const struct {
    uint8_t width, depth;
    double angle;
    std::vector<double> stored;
  } borders[] = {{0, 0, 4.0, {3, 1, kPi}},   {200, 200, -4.0, {60, 60, -kPi}}, {3, 1, 1.25, {3, 1, 1.25}},
                 {2, 61, 0.0, {3, 60, 0.0}}, {61, 60, -1.0, {60, 60, -1.0}},   {4, 59, 0.0, {4, 59, 0.0}}};
  for (const auto& b : borders) {
    After(SetOutline3DBorder, b.width, b.depth, b.angle);
    EXPECT_EQ(V(process().border3DWidth, process().border3DDepth, process().border3DAngle), b.stored);
  }
  // Emboss bytes are taken as angle, a, c, b; the angle is clamped, the bytes read back truncated.
  EXPECT_EQ(After(SetFaceTextureEmbossed, 0.5, 255, 0, 51).embossAngle, 0.5);
  EXPECT_EQ(V(process().embossLight[0], process().embossLight[1], process().embossLight[2]),
            V(1.0, 0.2, 0.0));
  EXPECT_EQ(After(SetFaceTextureEmbossed, 5.0, 0, 0, 0).emboss->azimuth(), kPi);
  EXPECT_EQ(After(SetFaceTextureEmbossed, -5.0, 0, 0, 0).embossAngle, -kPi);
  After(SetFaceTextureEmbossed, 1.5, 255, 33, 51);
  double angle = 0.0;
  uint8_t p = 0, q = 0, r = 0;
  process().readEmbossParameters(&angle, &p, &q, &r);
  EXPECT_EQ(V(angle, p, q, r), V(1.5, 255, 51, 32));  // 33 / 255 * 255 < 33
}

TEST_F(Stored, GradientTypesReadOnlyTheParametersTheyUse) {
  test::GuardedPages pages(2);
  pages.protect(1, test::GuardedPages::Access::kNone);
  const double* unreadable = reinterpret_cast<const double*>(pages.page(1));
  const double angle = 10.0, from = 0.2, to = 0.8;
  // Type 3 reads the angle, 2 both parameters, any other type none; an unknown type stores 0.
  const struct {
    int32_t type;
    const double *p1, *p2;
    std::vector<double> stored;  // type, parameters, angle
  } cases[] = {{3, &angle, unreadable, V(3, 0.5, 0.5, kPi)},
               {1, unreadable, unreadable, V(1, 0.5, 0.5, kPi)},
               {2, &from, &to, V(2, 0.2, 0.8, kPi)},
               {7, unreadable, unreadable, V(0, 0.2, 0.8, kPi)},
               {-1, unreadable, unreadable, V(0, 0.2, 0.8, kPi)},
               {0, unreadable, unreadable, V(0, 0.2, 0.8, kPi)}};
  for (const auto& c : cases) {
    SetGradientFace(&slot_, &c.type, c.p1, c.p2);
    SetGradientOutline(&slot_, &c.type, c.p1, c.p2);
    for (const FillSettings* f : {&process().face, &process().outline})
      EXPECT_EQ(V(f->gradientType, f->gradientFrom, f->gradientTo, f->gradientAngle), c.stored) << c.type;
  }
}

TEST_F(Stored, TranslationAddsUpAfterTheTransformFlagsTakeAnyValueAndNullChangesNothing) {
  After(SetTranslation, 3, 4);
  After(SetTranslation, 1, 1);
  EXPECT_EQ(V(process().glyphMatrix.tx, process().glyphMatrix.ty), V(4, 5));
  ResetTranslation(&slot_);
  process().glyphMatrix.sx = 2.0;
  process().glyphMatrix.sy = 3.0;
  double x = 1.0, y = 1.0;
  After(SetTranslation, 10, -5).glyphMatrix.transform(&x, &y);
  EXPECT_EQ(V(x, y), V(12, -2));  // scaled first, then moved
  After(SetShadowExtruded, 7);
  After(SetExtrudedShadowColor, 0);
  After(EnableFaceEmbossed, 7);
  After(EnableOutline3DBorder, 9);
  SetShadowExtruded(&slot_, nullptr);
  SetExtrudedShadowColor(&slot_, nullptr);
  EnableFaceEmbossed(&slot_, nullptr);
  EnableOutline3DBorder(&slot_, nullptr);
  const RenderProcess& p = process();
  EXPECT_EQ(V(p.shadowExtruded, p.extrudedShadowColour, p.faceEmbossed, p.outline3DBorder), V(7, 0, 7, 9));
  // A refused texture leaves the stored one as it was.
  uint32_t pixels[2] = {0x00123456u, 0x80FFFFFFu};
  int32_t w = 2, h = 1, zero = 0;
  ASSERT_TRUE(SetTextureFace(&slot_, pixels, &w, &h));
  EXPECT_FALSE(SetTextureFace(&slot_, pixels, &zero, &h) || SetTextureFace(&slot_, pixels, &w, &zero) ||
               SetTextureFace(&slot_, nullptr, &w, &h));
  EXPECT_EQ(process().face.texture->width, 2);
}

}  // namespace
}  // namespace lx
