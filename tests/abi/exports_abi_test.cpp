// The shipped library through its public header only: every export links, takes arguments by address and
// does nothing on a slot without a process; the wrapper class's Canvas, refusals and forwarding.
#include <gtest/gtest.h>
#include <algorithm>
#include <vector>
#include "lettrix/lettrix.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

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

std::vector<uint32_t> Canvas(const CLettrix& c) {
  return std::vector<uint32_t>(c.canvasPixels, c.canvasPixels + c.canvasWidth * c.canvasHeight);
}

TEST(CLettrixCanvas, IsMadeZeroFilledAndRefusedWhenItsSizeIsUnusable) {
  const TextScene scene("A", 20, 2, 20);
  CLettrix c;
  EXPECT_TRUE(c.slot == 0 && c.canvasPixels == nullptr);
  ASSERT_EQ(c.CreateProcessA() + c.CreateCanvas(120, 50), 2);
  EXPECT_EQ(Canvas(c), std::vector<uint32_t>(120 * 50, 0));
  c.canvasPixels[120 * 50 - 1] = 0xFFFFFFFF;  // the whole size is ours
  EXPECT_EQ(c.CreateCanvas(30, 20), 1);
  EXPECT_EQ(Canvas(c), std::vector<uint32_t>(30 * 20, 0));
  // Zero frees the old Canvas and fails; -1 x -1 makes four bytes that cannot be rendered into, and so
  // does a size whose 32-bit byte count wraps to 4; one that wraps to 0 allocates nothing.
  EXPECT_EQ(c.CreateCanvas(0, 100), 0);
  EXPECT_TRUE(c.canvasPixels == nullptr && c.canvasMemory == nullptr && c.canvasHeight == 100);
  const std::vector<int> results({c.CreateCanvas(-1, -1), c.canvasWidth, c.RenderIt(scene.block()),
                                  c.CreateCanvas(0x40000001, 1), c.RenderIt(scene.block()),
                                  c.CreateCanvas(65536, 65536)});
  EXPECT_EQ(results, std::vector<int>({1, -1, 0, 1, 0, 0}));
  EXPECT_EQ(c.canvasPixels, nullptr);
}

TEST(CLettrixRender, RefusesInOrderAndDrawsWhatTheFunctionsDraw) {
  const TextScene scene("Wrap", 40, 6, 50);
  CLettrix c;
  // Without canvas and process, without process, without block.
  const std::vector<int> refusals({c.RenderIt(scene.block()), c.CreateCanvas(140, 70),
                                   c.RenderIt(scene.block()), c.CreateProcessA(), c.RenderIt(nullptr)});
  ASSERT_EQ(refusals, std::vector<int>({0, 1, 0, 1, 0}));
  EXPECT_EQ(Canvas(c), std::vector<uint32_t>(140 * 70, 0));
  const std::vector<int> results({c.FaceStartColor(255, 200, 30, 10), c.FaceEndColor(255, 20, 30, 210),
                                  c.FaceGradient(1, 0.0, 0.0), c.OutlineStartColor(255, 0, 0, 0),
                                  c.OutlineEndColor(255, 0, 0, 0), c.OutlineThickness(2),
                                  c.ShadowColor(128, 0, 0, 0), c.ShadowOffset(3, 4), c.TranslateGlyph(2, -1),
                                  c.ShadowVisible(256), c.BlurShadow(2), c.RenderIt(scene.block())});
  ASSERT_EQ(results, std::vector<int>({1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 1}));
  Process p;
  p.faceStart(255, 200, 30, 10).faceEnd(255, 20, 30, 210).faceGradient(1, 0.0, 0.0).outline(255, 0, 0, 0);
  p.thickness(2).shadow(128, 0, 0, 0).shadowOffset(3, 4).blur(0, 0, 2).translate(2, -1);
  p.shadowVisible(0);  // int flags hand on their lowest byte
  Image image(140, 70);
  ASSERT_TRUE(p.render(scene, image));
  EXPECT_EQ(image.pixels(), Canvas(c));
}

// Without a process every method answers 0; with one the blur methods still answer 0 (though they store
// the level), the others 1, and the truth-valued ones pass their function's answer on.
TEST(CLettrixForwarding, ResultsFollowTheirFunctions) {
  CLettrix c;
  const LettrixColorWord colours[2] = {0xFF0000FFu, 0xFFFF0000u};
  const unsigned int stops[2] = {1, 1};
  std::vector<uint32_t> texture(4 * 4, 0x00112233);
  auto all = [&] {
    std::vector<int> r({c.FaceStartColor(255, 1, 2, 3), c.BlurFace(3), c.BlurOutline(3), c.BlurShadow(3),
                        c.ShadowZoom(0.0, 2.0), c.TranslationOff(), c.EmbossFaceTexture(0.5, 10, 20, 30),
                        c.EnableFaceEmbossed(1)});
    r.insert(r.end(), {c.EnableOutline3DBorder(0), c.ExtrudeShadow(0), c.Outline3DBorder(10, 2, 1.0),
                       c.FaceFillType(0), c.OutlineFillType(0), c.FaceTextureTiling(2),
                       c.OutlineTextureTiling(2), c.FaceGradientFitMode(0)});
    r.insert(r.end(), {c.OutlineGradientFitMode(0), c.OutlineGradient(2, 0.1, 0.9), c.ShadowOnly(0),
                       c.ShadowVisible(1), c.FaceGradientColors(colours, stops, 2),
                       c.FaceGradientColors(colours, stops, 0), c.OutlineGradientColors(colours, nullptr, 2),
                       c.OutlineGradientColors(nullptr, nullptr, 2)});
    r.insert(r.end(), {c.FaceUserGradientArea(0, 0, 10, 10), c.FaceUserGradientArea(10, 10, 10, 50),
                       c.OutlineUserGradientArea(-5, -5, 5, 5), c.OutlineUserGradientArea(5, 5, -5, -5),
                       c.FaceTexture(texture.data(), 4, 4), c.FaceTexture(texture.data(), 0, 4),
                       c.OutlineTexture(texture.data(), 4, 4), c.OutlineTexture(nullptr, 4, 4)});
    return r;
  };
  EXPECT_EQ(all(), std::vector<int>(32, 0));
  ASSERT_EQ(c.CreateProcessA(), 1);
  EXPECT_EQ(all(), std::vector<int>({1, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
                                     1, 1, 1, 1, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0}));
}

TEST(CLettrixAssignment, SharesTheProcessAndCanvasUntilOneDestroysThem) {
  const TextScene scene("Hg", 40, 4, 44);
  CLettrix a, b;
  ASSERT_EQ(b.CreateProcessA() + b.CreateCanvas(100, 70), 2);
  EXPECT_EQ(&(a = b), &a);
  EXPECT_TRUE(a.slot == b.slot && a.canvasMemory == b.canvasMemory && a.canvasPixels == b.canvasPixels);
  EXPECT_EQ(a.canvasWidth * 1000 + a.canvasHeight, 100070);
  // A setting made through one object is drawn by the other.
  ASSERT_EQ(a.FaceStartColor(255, 0, 255, 0) + a.FaceEndColor(255, 0, 255, 0), 2);
  ASSERT_EQ(b.RenderIt(scene.block()), 1);
  const auto drawn = Canvas(a);
  EXPECT_NE(std::find(drawn.begin(), drawn.end(), 0xFF00FF00u), drawn.end());
  // Destroying frees process and Canvas but keeps the size; it can be repeated, and b, left holding
  // freed values, is forgotten rather than destroyed.
  a.DestroyProcess();
  EXPECT_TRUE(a.slot == 0 && a.canvasMemory == nullptr && a.canvasPixels == nullptr && a.canvasWidth == 100);
  EXPECT_EQ(a.RenderIt(scene.block()), 0);
  a.DestroyProcess();
  a.slot = ~RenderHandle{0};  // all ones: no process, nothing to destroy
  EXPECT_EQ(a.FaceFillType(1), 0);
  b.slot = 0, b.canvasMemory = nullptr, b.canvasPixels = nullptr;
}
}  // namespace
}  // namespace lx::test
