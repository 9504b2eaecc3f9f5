// Every entry point on a slot that holds no process: nothing happens, nothing is dereferenced, and the
// functions with a result report failure.
#include <gtest/gtest.h>

#include "lettrix/lettrix.h"
#include "render/render_process.h"

namespace {

constexpr RenderHandle kAllOnes = ~RenderHandle{0};

// Calls every setter through `slot` with sensible arguments; returns how many of the functions with a
// result reported success.
int CallEverySetter(RenderHandle* slot) {
  uint8_t a = 200, c0 = 1, c1 = 2, c2 = 3, on = 1, level = 4, w = 10, d = 5, mode = 1;
  int32_t x = 3, y = 4, type = 2, tiling = 1, thickness = 2, left = 0, top = 0, right = 10, bottom = 10;
  double p1 = 0.25, p2 = 0.75, zx = 2.0, zy = 2.0, angle = 1.0;
  uint32_t colours[2] = {0xFF0000FFu, 0xFFFF0000u};
  uint32_t stops[2] = {1, 2};
  uint8_t count = 2;
  uint32_t pixels[4] = {1, 2, 3, 4};
  int32_t two = 2;

  SetColorFaceStart(slot, &a, &c0, &c1, &c2);
  SetColorFaceEnd(slot, &a, &c0, &c1, &c2);
  SetColorOutlineStart(slot, &a, &c0, &c1, &c2);
  SetColorOutlineEnd(slot, &a, &c0, &c1, &c2);
  SetShadowColor(slot, &a, &c0, &c1, &c2);
  SetShadowOffset(slot, &x, &y);
  SetShadowZoom(slot, &zx, &zy);
  SetShadowVisible(slot, &on);
  SetDrawShadowOnly(slot, &on);
  SetShadowExtruded(slot, &on);
  SetExtrudedShadowColor(slot, &on);
  SetFaceBlurLevel(slot, &level);
  SetOutlineBlurLevel(slot, &level);
  SetShadowBlurLevel(slot, &level);
  SetFaceFillType(slot, &type);
  SetOutlineFillType(slot, &type);
  SetGradientFace(slot, &type, &p1, &p2);
  SetGradientOutline(slot, &type, &p1, &p2);
  int successes = 0;
  successes += SetFaceGradientColors(slot, colours, stops, &count);
  successes += SetOutlineGradientColors(slot, colours, stops, &count);
  SetFaceGradientFitMode(slot, &mode);
  SetOutlineGradientFitMode(slot, &mode);
  successes += SetFaceUserGradientArea(slot, &left, &top, &right, &bottom);
  successes += SetOutlineUserGradientArea(slot, &left, &top, &right, &bottom);
  successes += SetTextureFace(slot, pixels, &two, &two);
  successes += SetTextureOutline(slot, pixels, &two, &two);
  SetFaceTextureTiling(slot, &tiling);
  SetOutlineTextureTiling(slot, &tiling);
  SetFaceTextureEmbossed(slot, &angle, &c0, &c1, &c2);
  EnableFaceEmbossed(slot, &on);
  EnableOutline3DBorder(slot, &on);
  SetOutline3DBorder(slot, &w, &d, &angle);
  SetOutlineThickness(slot, &thickness);
  SetTranslation(slot, &x, &y);
  ResetTranslation(slot);
  return successes;
}

TEST(HandleRule, SlotsWithoutAProcessMakeEverySetterANoOp) {
  for (RenderHandle value : {RenderHandle{0}, kAllOnes}) {
    RenderHandle slot = value;
    EXPECT_EQ(CallEverySetter(&slot), 0);
    EXPECT_EQ(slot, value);
  }
}

TEST(HandleRule, TheSameCallsOnALiveProcessSucceed) {
  RenderHandle slot = CreateRenderProcess();
  ASSERT_NE(slot, 0u);
  const RenderHandle created = slot;
  EXPECT_EQ(CallEverySetter(&slot), 6);
  EXPECT_EQ(slot, created);
  const auto* p = reinterpret_cast<const lx::RenderProcess*>(slot);
  EXPECT_EQ(p->face.startColour, 0xC8030201u);
  EXPECT_EQ(p->outline.gradientColours.size(), 2u);
  EXPECT_NE(p->outline.texture, nullptr);
  EXPECT_EQ(p->strokeWidth, 4.0);
  DestroyRenderProcess(&slot);
  EXPECT_EQ(slot, 0u);
}

TEST(HandleRule, DestroyAlwaysClearsTheSlot) {
  RenderHandle slot = kAllOnes;
  DestroyRenderProcess(&slot);
  EXPECT_EQ(slot, 0u);
  DestroyRenderProcess(&slot);
  EXPECT_EQ(slot, 0u);

  slot = CreateRenderProcess();
  uint32_t pixels[2] = {5, 6};
  int32_t w = 2, h = 1;
  ASSERT_TRUE(SetTextureFace(&slot, pixels, &w, &h));
  ASSERT_TRUE(SetTextureOutline(&slot, pixels, &w, &h));
  DestroyRenderProcess(&slot);  // textures go with the process (the sanitizer build checks the leak)
  EXPECT_EQ(slot, 0u);
}

TEST(HandleRule, RenderRefusesASlotWithoutAProcess) {
  uint32_t buffer[4] = {};
  uint8_t block[64] = {};
  int32_t w = 2, h = 2;
  for (RenderHandle value : {RenderHandle{0}, kAllOnes}) {
    RenderHandle slot = value;
    EXPECT_FALSE(Render(&slot, block, &w, &h, buffer));
  }
  for (uint32_t px : buffer) EXPECT_EQ(px, 0u);
}

TEST(HandleRule, NullFlagPointersChangeNothing) {
  RenderHandle slot = CreateRenderProcess();
  ASSERT_NE(slot, 0u);
  SetShadowExtruded(&slot, nullptr);
  SetExtrudedShadowColor(&slot, nullptr);
  EnableFaceEmbossed(&slot, nullptr);
  EnableOutline3DBorder(&slot, nullptr);
  const auto* p = reinterpret_cast<const lx::RenderProcess*>(slot);
  EXPECT_EQ(p->shadowExtruded, 0);
  EXPECT_EQ(p->extrudedShadowColour, 1);
  EXPECT_EQ(p->faceEmbossed, 0);
  EXPECT_EQ(p->outline3DBorder, 0);
  DestroyRenderProcess(&slot);
}

}  // namespace
