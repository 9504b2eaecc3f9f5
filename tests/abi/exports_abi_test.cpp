// The shipped library through its public header only: every export links, takes its arguments by
// address and does nothing on a slot without a process.
#include <gtest/gtest.h>
#include <vector>
#include "lettrix/lettrix.h"
#include "tests/support/lettrix_process.h"

namespace lx::test {
namespace {
constexpr RenderHandle kAllOnes = ~RenderHandle{0};

// Every setter once on whatever slot `p` holds; the results of those that have one, in call order.
std::vector<bool> CallEverySetter(Process& p) {
  p.face(255, 10, 20, 30).outlineStart(255, 20, 20, 20).outlineEnd(255, 10, 10, 10).thickness(2);
  p.shadow(3, 10, 20, 30).shadowOffset(5, -5).shadowZoom(1.25, 0.75).shadowVisible(1).shadowOnly(0);
  p.extrude(1, 1).blur(3, 3, 3).faceGradient(3, 0.5, 0.25).outlineGradient(3, 0.5, 0.25).faceFit(0);
  p.emboss(-1.0, 255, 20, 30).border3D(20, 3, -1.0).translate(5, -5);
  const uint32_t colours[3] = {0xFF0000FFu, 0xFF00FF00u, 0xFFFF0000u}, pixels[4] = {0xFF0000u, 0xFF00u, 0xFF};
  const uint8_t count = 3, mode = 0;
  const int32_t zero = 0, forty = 40;
  SetOutlineGradientFitMode(p.slot(), &mode);
  ResetTranslation(p.slot());
  // The outline's user area (0, 0, 0, 40) is empty: stored, but reported as false.
  return {p.faceStops({colours, colours + 3}, {1, 2, 1}),
          SetOutlineGradientColors(p.slot(), colours, nullptr, &count) != 0,
          p.faceArea(0, 0, 100, 40),
          SetOutlineUserGradientArea(p.slot(), &zero, &zero, &zero, &forty) != 0,
          p.faceTexture({pixels, pixels + 4}, 2, 2, 0),
          p.outlineTexture({pixels, pixels + 4}, 2, 2, 0)};
}

// 32 processes side by side, then slots without a process (0 and all ones): each setter answers for its
// slot and leaves it as it was; destroying clears the slot, and repeats harmlessly.
TEST(ExportsAbi, SettersAnswerForTheirSlotAndDestroyClearsIt) {
  std::vector<RenderHandle> slots(32);
  for (RenderHandle& s : slots) s = CreateRenderProcess();
  slots.insert(slots.end(), {0, kAllOnes});
  std::vector<uint32_t> buffer(64, 0x12345678u);
  uint8_t block[16] = {};
  const int32_t eight = 8, zero = 0, minus = -1;
  for (size_t i = 0; i < slots.size(); ++i) {
    Process p;
    DestroyRenderProcess(p.slot());
    *p.slot() = slots[i];
    const bool live = i < 32;
    ASSERT_TRUE(!live || (slots[i] != 0 && slots[i] != kAllOnes));
    EXPECT_EQ(CallEverySetter(p),
              live ? std::vector<bool>({true, true, true, false, true, true}) : std::vector<bool>(6));
    EXPECT_EQ(*p.slot(), slots[i]);
    EXPECT_TRUE(live || !Render(p.slot(), block, &eight, &eight, buffer.data()));
    for (int twice = 0; twice < 2; ++twice) {
      DestroyRenderProcess(p.slot());
      EXPECT_EQ(*p.slot(), 0u);
    }
  }
  Process p;
  const struct {
    void* block;
    const int32_t *width, *height;
    uint32_t* pixels;
  } refused[] = {{nullptr, &eight, &eight, buffer.data()}, {block, &zero, &eight, buffer.data()},
                 {block, &minus, &eight, buffer.data()},   {block, &eight, &zero, buffer.data()},
                 {block, &eight, &minus, buffer.data()},   {block, nullptr, &eight, buffer.data()},
                 {block, &eight, nullptr, buffer.data()},  {block, &eight, &eight, nullptr}};
  for (const auto& r : refused)
    EXPECT_FALSE(Render(p.slot(), r.block, r.width, r.height, r.pixels)) << (&r - refused);
  EXPECT_EQ(buffer, std::vector<uint32_t>(64, 0x12345678u));
}
}  // namespace
}  // namespace lx::test
