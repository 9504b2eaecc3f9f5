// The shipped library through its public header only: every export links, takes its arguments by
// address and does nothing on a slot without a process.
#include <gtest/gtest.h>

#include <vector>

#include "lettrix/lettrix.h"

namespace {

constexpr RenderHandle kAllOnes = ~RenderHandle{0};

// Every setter once; returns the results of the functions that have one, in call order.
std::vector<bool> CallEverySetter(RenderHandle* slot) {
  uint8_t a = 255, c0 = 10, c1 = 20, c2 = 30, on = 1, off = 0, level = 3, w = 20, d = 3, mode = 0, count = 3;
  int32_t x = 5, y = -5, gradient = 3, fill = 1, tiling = 0, thickness = 2;
  int32_t left = 0, top = 0, right = 100, bottom = 40, width = 2, height = 2;
  double p1 = 0.5, p2 = 0.25, zx = 1.25, zy = 0.75, angle = -1.0;
  uint32_t colours[3] = {0xFF0000FFu, 0xFF00FF00u, 0xFFFF0000u}, stops[3] = {1, 2, 1};
  uint32_t pixels[4] = {0x00FF0000u, 0x0000FF00u, 0x000000FFu, 0x00FFFFFFu};
  std::vector<bool> results;

  SetColorFaceStart(slot, &a, &c0, &c1, &c2);
  SetColorFaceEnd(slot, &a, &c2, &c1, &c0);
  SetColorOutlineStart(slot, &a, &c1, &c1, &c1);
  SetColorOutlineEnd(slot, &a, &c0, &c0, &c0);
  SetShadowColor(slot, &level, &c0, &c1, &c2);
  SetShadowOffset(slot, &x, &y);
  SetShadowZoom(slot, &zx, &zy);
  SetShadowVisible(slot, &on);
  SetDrawShadowOnly(slot, &off);
  SetShadowExtruded(slot, &on);
  SetExtrudedShadowColor(slot, &on);
  SetFaceBlurLevel(slot, &level);
  SetOutlineBlurLevel(slot, &level);
  SetShadowBlurLevel(slot, &level);
  SetFaceFillType(slot, &fill);
  SetOutlineFillType(slot, &fill);
  SetGradientFace(slot, &gradient, &p1, &p2);
  SetGradientOutline(slot, &gradient, &p1, &p2);
  results.push_back(SetFaceGradientColors(slot, colours, stops, &count));
  results.push_back(SetOutlineGradientColors(slot, colours, nullptr, &count));
  SetFaceGradientFitMode(slot, &mode);
  SetOutlineGradientFitMode(slot, &mode);
  results.push_back(SetFaceUserGradientArea(slot, &left, &top, &right, &bottom));
  results.push_back(SetOutlineUserGradientArea(slot, &left, &top, &left, &bottom));
  results.push_back(SetTextureFace(slot, pixels, &width, &height));
  results.push_back(SetTextureOutline(slot, pixels, &width, &height));
  SetFaceTextureTiling(slot, &tiling);
  SetOutlineTextureTiling(slot, &tiling);
  SetFaceTextureEmbossed(slot, &angle, &a, &c1, &c2);
  EnableFaceEmbossed(slot, &on);
  EnableOutline3DBorder(slot, &on);
  SetOutline3DBorder(slot, &w, &d, &angle);
  SetOutlineThickness(slot, &thickness);
  SetTranslation(slot, &x, &y);
  ResetTranslation(slot);
  return results;
}

TEST(ExportsAbi, ProcessesTakeEverySettingSideBySideAndDestroyClearsTheirSlots) {
  std::vector<RenderHandle> slots(32);
  for (RenderHandle& s : slots) {
    s = CreateRenderProcess();
    ASSERT_TRUE(s != 0 && s != kAllOnes);
  }
  for (RenderHandle& s : slots) {
    const RenderHandle kept = s;
    // The outline's user area (0, 0, 0, 40) is empty: stored, but reported as false.
    EXPECT_EQ(CallEverySetter(&s), std::vector<bool>({true, true, true, false, true, true}));
    EXPECT_EQ(s, kept);
  }
  for (RenderHandle& s : slots) DestroyRenderProcess(&s);
  EXPECT_EQ(slots, std::vector<RenderHandle>(32, 0));
}

TEST(ExportsAbi, BadSlotsAndRenderArgumentsAreRefusedWithTheBufferUntouched) {
  std::vector<uint32_t> buffer(64, 0x12345678u);
  uint8_t block[16] = {};
  const int32_t eight = 8, zero = 0, minus = -1;
  for (RenderHandle value : {RenderHandle{0}, kAllOnes}) {
    RenderHandle slot = value;
    EXPECT_EQ(CallEverySetter(&slot), std::vector<bool>(6, false));
    EXPECT_EQ(slot, value);
    EXPECT_FALSE(Render(&slot, block, &eight, &eight, buffer.data()));
    for (int twice = 0; twice < 2; ++twice) {
      DestroyRenderProcess(&slot);
      EXPECT_EQ(slot, 0u);
    }
  }
  RenderHandle slot = CreateRenderProcess();
  const struct {
    void* block;
    const int32_t *width, *height;
    uint32_t* pixels;
  } refused[] = {{nullptr, &eight, &eight, buffer.data()}, {block, &zero, &eight, buffer.data()},
                 {block, &minus, &eight, buffer.data()},   {block, &eight, &zero, buffer.data()},
                 {block, &eight, &minus, buffer.data()},   {block, nullptr, &eight, buffer.data()},
                 {block, &eight, nullptr, buffer.data()},  {block, &eight, &eight, nullptr}};
  for (const auto& r : refused)
    EXPECT_FALSE(Render(&slot, r.block, r.width, r.height, r.pixels)) << (&r - refused);
  EXPECT_EQ(buffer, std::vector<uint32_t>(64, 0x12345678u));
  DestroyRenderProcess(&slot);
}

}  // namespace
