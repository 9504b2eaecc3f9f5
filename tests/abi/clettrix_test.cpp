// The wrapper class through the shipped library: its Canvas, its refusals and its forwarding.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "lettrix/lettrix.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {

// Forgets what the object holds without freeing it (for objects that share another's process).
void Forget(CLettrix& c) {
  c.slot = 0;
  c.canvasMemory = nullptr;
  c.canvasPixels = nullptr;
}

bool AllZero(const CLettrix& c) {
  const size_t n = static_cast<size_t>(c.canvasWidth) * c.canvasHeight;
  for (size_t i = 0; i < n; ++i) {
    if (c.canvasPixels[i] != 0) return false;
  }
  return true;
}

TEST(CLettrixCanvas, StartsEmptyAndIsMadeZeroFilled) {
  CLettrix c;
  EXPECT_EQ(c.slot, 0u);
  EXPECT_EQ(c.canvasMemory, nullptr);
  EXPECT_EQ(c.canvasPixels, nullptr);
  EXPECT_EQ(c.canvasWidth, 0);
  EXPECT_EQ(c.canvasHeight, 0);
  EXPECT_EQ(c.CreateCanvas(120, 50), 1);
  ASSERT_NE(c.canvasPixels, nullptr);
  EXPECT_NE(c.canvasMemory, nullptr);
  EXPECT_EQ(c.canvasWidth, 120);
  EXPECT_EQ(c.canvasHeight, 50);
  EXPECT_TRUE(AllZero(c));
  c.canvasPixels[120 * 50 - 1] = 0xFFFFFFFF;  // the whole size is ours
  EXPECT_EQ(c.CreateCanvas(30, 20), 1);
  EXPECT_TRUE(AllZero(c));
}

TEST(CLettrixCanvas, ZeroSizeFreesTheOldCanvasAndFails) {
  CLettrix c;
  ASSERT_EQ(c.CreateCanvas(40, 40), 1);
  EXPECT_EQ(c.CreateCanvas(0, 100), 0);
  EXPECT_EQ(c.canvasPixels, nullptr);
  EXPECT_EQ(c.canvasMemory, nullptr);
  EXPECT_EQ(c.canvasWidth, 0);
  EXPECT_EQ(c.canvasHeight, 100);
}

TEST(CLettrixCanvas, MinusOneByMinusOneMakesFourBytesThatCannotBeRendered) {
  TextScene scene("A", 20, 2, 20);
  CLettrix c;
  ASSERT_EQ(c.CreateProcessA(), 1);
  EXPECT_EQ(c.CreateCanvas(-1, -1), 1);
  EXPECT_NE(c.canvasPixels, nullptr);
  EXPECT_EQ(c.canvasWidth, -1);
  EXPECT_EQ(c.canvasHeight, -1);
  EXPECT_EQ(c.RenderIt(scene.block()), 0);
}

TEST(CLettrixCanvas, WrappedSizeMakesACanvasThatIsNeverRenderedInto) {
  TextScene scene("A", 20, 2, 20);
  CLettrix c;
  ASSERT_EQ(c.CreateProcessA(), 1);
  // 0x40000001 x 1 x 4 wraps to 4 bytes in 32 bits.
  EXPECT_EQ(c.CreateCanvas(0x40000001, 1), 1);
  EXPECT_EQ(c.RenderIt(scene.block()), 0);
  // 65536 x 65536 x 4 wraps to 0: nothing is allocated.
  EXPECT_EQ(c.CreateCanvas(65536, 65536), 0);
  EXPECT_EQ(c.canvasPixels, nullptr);
}

TEST(CLettrixRender, RefusesInOrderWithoutDrawing) {
  TextScene scene("Ab", 32, 4, 40);
  CLettrix c;
  EXPECT_EQ(c.RenderIt(scene.block()), 0);  // no canvas, no process
  ASSERT_EQ(c.CreateCanvas(100, 50), 1);
  EXPECT_EQ(c.RenderIt(scene.block()), 0);  // no process
  ASSERT_EQ(c.CreateProcessA(), 1);
  EXPECT_EQ(c.RenderIt(nullptr), 0);
  EXPECT_TRUE(AllZero(c));
  EXPECT_EQ(c.RenderIt(scene.block()), 1);
  EXPECT_FALSE(AllZero(c));
}

TEST(CLettrixRender, DrawsWhatTheFunctionsDrawWithTheSameSettings) {
  TextScene scene("Wrap", 40, 6, 50);
  CLettrix c;
  ASSERT_EQ(c.CreateProcessA(), 1);
  ASSERT_EQ(c.CreateCanvas(140, 70), 1);
  EXPECT_EQ(c.FaceStartColor(255, 200, 30, 10), 1);
  EXPECT_EQ(c.FaceEndColor(255, 20, 30, 210), 1);
  EXPECT_EQ(c.FaceGradient(1, 0.0, 0.0), 1);
  EXPECT_EQ(c.OutlineStartColor(255, 0, 0, 0), 1);
  EXPECT_EQ(c.OutlineEndColor(255, 0, 0, 0), 1);
  EXPECT_EQ(c.OutlineThickness(2), 1);
  EXPECT_EQ(c.ShadowColor(128, 0, 0, 0), 1);
  EXPECT_EQ(c.ShadowOffset(3, 4), 1);
  EXPECT_EQ(c.BlurShadow(2), 0);
  EXPECT_EQ(c.TranslateGlyph(2, -1), 1);
  ASSERT_EQ(c.RenderIt(scene.block()), 1);

  Process p;
  p.faceStart(255, 200, 30, 10).faceEnd(255, 20, 30, 210).faceGradient(1, 0.0, 0.0);
  p.outline(255, 0, 0, 0).thickness(2).shadow(128, 0, 0, 0).shadowOffset(3, 4).blur(0, 0, 2).translate(2, -1);
  Image image(140, 70);
  ASSERT_TRUE(p.render(scene, image));
  EXPECT_EQ(std::memcmp(image.pixels().data(), c.canvasPixels, 140 * 70 * 4), 0);
}

TEST(CLettrixForwarding, ResultsFollowTheirFunctions) {
  CLettrix c;
  const uint8_t level = 3;
  // Without a process every method answers 0.
  EXPECT_EQ(c.FaceStartColor(255, 1, 2, 3), 0);
  EXPECT_EQ(c.ShadowZoom(2.0, 2.0), 0);
  EXPECT_EQ(c.TranslationOff(), 0);
  EXPECT_EQ(c.BlurFace(level), 0);

  ASSERT_EQ(c.CreateProcessA(), 1);
  EXPECT_EQ(c.BlurFace(level), 0);  // the blur methods answer 0 even when they store the level
  EXPECT_EQ(c.BlurOutline(level), 0);
  EXPECT_EQ(c.BlurShadow(level), 0);
  EXPECT_EQ(c.ShadowZoom(0.0, 2.0), 1);  // refused by the function, still 1
  EXPECT_EQ(c.TranslationOff(), 1);
  EXPECT_EQ(c.EmbossFaceTexture(0.5, 10, 20, 30), 1);
  EXPECT_EQ(c.EnableFaceEmbossed(1), 1);
  EXPECT_EQ(c.EnableOutline3DBorder(0), 1);
  EXPECT_EQ(c.ExtrudeShadow(0), 1);
  EXPECT_EQ(c.Outline3DBorder(10, 2, 1.0), 1);
  EXPECT_EQ(c.FaceFillType(0), 1);
  EXPECT_EQ(c.OutlineFillType(0), 1);
  EXPECT_EQ(c.FaceTextureTiling(2), 1);
  EXPECT_EQ(c.OutlineTextureTiling(2), 1);
  EXPECT_EQ(c.FaceGradientFitMode(0), 1);
  EXPECT_EQ(c.OutlineGradientFitMode(0), 1);
  EXPECT_EQ(c.OutlineGradient(2, 0.1, 0.9), 1);
  EXPECT_EQ(c.ShadowOnly(0), 1);
  EXPECT_EQ(c.ShadowVisible(1), 1);

  // The truth-valued ones pass their function's answer on.
  const LettrixColorWord colours[2] = {0xFF0000FFu, 0xFFFF0000u};
  const unsigned int stops[2] = {1, 1};
  EXPECT_EQ(c.FaceGradientColors(colours, stops, 2), 1);
  EXPECT_EQ(c.FaceGradientColors(colours, stops, 0), 0);
  EXPECT_EQ(c.OutlineGradientColors(colours, nullptr, 2), 1);
  EXPECT_EQ(c.OutlineGradientColors(nullptr, nullptr, 2), 0);
  EXPECT_EQ(c.FaceUserGradientArea(0, 0, 10, 10), 1);
  EXPECT_EQ(c.FaceUserGradientArea(10, 10, 10, 50), 0);
  EXPECT_EQ(c.OutlineUserGradientArea(-5, -5, 5, 5), 1);
  EXPECT_EQ(c.OutlineUserGradientArea(5, 5, -5, -5), 0);
  std::vector<uint32_t> texture(4 * 4, 0x00112233);
  EXPECT_EQ(c.FaceTexture(texture.data(), 4, 4), 1);
  EXPECT_EQ(c.FaceTexture(texture.data(), 0, 4), 0);
  EXPECT_EQ(c.OutlineTexture(texture.data(), 4, 4), 1);
  EXPECT_EQ(c.OutlineTexture(nullptr, 4, 4), 0);
}

// Renders "Hg" with a visible Shadow through the class, switching the Shadow with ShadowVisible(v).
std::vector<uint32_t> ShadowScene(int visible) {
  TextScene scene("Hg", 40, 4, 44);
  CLettrix c;
  EXPECT_EQ(c.CreateProcessA(), 1);
  EXPECT_EQ(c.CreateCanvas(100, 70), 1);
  c.ShadowColor(255, 0, 0, 255);
  c.ShadowOffset(6, 6);
  c.ShadowVisible(visible);
  EXPECT_EQ(c.RenderIt(scene.block()), 1);
  return std::vector<uint32_t>(c.canvasPixels, c.canvasPixels + 100 * 70);
}

TEST(CLettrixForwarding, IntFlagsHandOnTheirLowestByte) {
  const auto on = ShadowScene(1), off = ShadowScene(0);
  ASSERT_NE(on, off);
  EXPECT_EQ(ShadowScene(256), off);  // 256 stores 0
  EXPECT_EQ(ShadowScene(257), on);   // 257 stores 1
}

TEST(CLettrixAssignment, SharesTheProcessAndCanvas) {
  TextScene scene("Hg", 40, 4, 44);
  CLettrix a, b;
  ASSERT_EQ(b.CreateProcessA(), 1);
  ASSERT_EQ(b.CreateCanvas(100, 70), 1);
  CLettrix& result = (a = b);
  EXPECT_EQ(&result, &a);
  EXPECT_EQ(a.slot, b.slot);
  EXPECT_EQ(a.canvasMemory, b.canvasMemory);
  EXPECT_EQ(a.canvasPixels, b.canvasPixels);
  EXPECT_EQ(a.canvasWidth, 100);
  EXPECT_EQ(a.canvasHeight, 70);

  // A setting made through one object is drawn by the other.
  ASSERT_EQ(a.FaceStartColor(255, 0, 255, 0), 1);
  ASSERT_EQ(a.FaceEndColor(255, 0, 255, 0), 1);
  ASSERT_EQ(b.RenderIt(scene.block()), 1);
  bool green = false;
  for (int i = 0; i < 100 * 70; ++i) green = green || a.canvasPixels[i] == 0xFF00FF00u;
  EXPECT_TRUE(green);

  // Destroying through one leaves the other holding freed values: it must be forgotten, not destroyed.
  a.DestroyProcess();
  EXPECT_EQ(a.slot, 0u);
  EXPECT_EQ(a.canvasPixels, nullptr);
  EXPECT_EQ(a.canvasWidth, 100);  // width and height stay
  EXPECT_EQ(a.RenderIt(scene.block()), 0);
  EXPECT_NE(b.slot, 0u);
  Forget(b);
}

TEST(CLettrixProcess, CreatingTwiceLeavesTheFirstProcessAlive) {
  TextScene scene("A", 20, 2, 20);
  CLettrix c;
  ASSERT_EQ(c.CreateProcessA(), 1);
  RenderHandle first = c.slot;
  ASSERT_EQ(c.CreateProcessA(), 1);
  EXPECT_NE(c.slot, first);
  Image image(40, 30);
  EXPECT_TRUE(Render(&first, scene.block(), image.width(), image.height(), image.data()));
  DestroyRenderProcess(&first);
  EXPECT_EQ(first, 0u);
}

TEST(CLettrixProcess, DestroyFreesProcessAndCanvasAndCanBeRepeated) {
  CLettrix c;
  ASSERT_EQ(c.CreateProcessA(), 1);
  ASSERT_EQ(c.CreateCanvas(10, 10), 1);
  c.DestroyProcess();
  EXPECT_EQ(c.slot, 0u);
  EXPECT_EQ(c.canvasMemory, nullptr);
  EXPECT_EQ(c.canvasPixels, nullptr);
  EXPECT_EQ(c.canvasWidth, 10);
  c.DestroyProcess();
  c.slot = ~RenderHandle{0};  // all ones: no process, nothing to destroy
  EXPECT_EQ(c.FaceFillType(1), 0);
  EXPECT_EQ(c.CreateProcessA(), 1);
}

}  // namespace
}  // namespace lx::test
