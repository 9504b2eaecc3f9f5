// A render process keeps its work images and effect rows from one Render to the next. Whatever it drew
// before, and at whatever size, the next drawing must be what a fresh process draws, and what it keeps
// must stay small.
#include <gtest/gtest.h>

#include <vector>

#include "api/process_handle.h"
#include "settings/render_process.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {

struct Step {
  const char* text;
  int32_t size;
  int32_t width, height;
  void (*set)(Process&);
};

void Plain(Process& p) {
  p.blur(0, 0, 0).thickness(0).shadowVisible(0);
}
void Everything(Process& p) {
  p.faceStart(255, 250, 220, 40).faceEnd(255, 250, 90, 20).faceGradient(1).emboss(2.0, 255, 200, 120);
  p.outline(255, 40, 20, 120).thickness(3).border3D(35, 2, -0.6);
  p.shadowVisible(1).shadow(160, 0, 0, 0).shadowOffset(8, 6).shadowZoom(1.05, 1.05).extrude(1, 1);
  p.blur(2, 2, 3);
}
void Blurred(Process& p) {
  p.extrude(0).face(255, 30, 90, 200).outline(200, 0, 0, 0).thickness(2).shadowVisible(1).blur(6, 3, 9);
}

TEST(ScratchReuse, EachRenderMatchesAFreshProcess) {
  const Step steps[] = {
      {"Big", 120, 420, 200, Everything}, {"s", 16, 40, 30, Plain},
      {"Hello", 48, 260, 90, Blurred},    {"Wide line", 200, 1400, 300, Everything},
      {"x", 24, 50, 40, Everything},      {"Hello", 48, 260, 90, Plain},
      {"Hello", 48, 260, 90, Blurred},
  };
  // The fresh process is given every setting the kept one has had, and draws only once.
  Process kept;
  const size_t count = sizeof steps / sizeof steps[0];
  for (size_t i = 0; i < count; ++i) {
    const Step& step = steps[i];
    SCOPED_TRACE(step.text);
    const TextScene scene(step.text, step.size, 10, step.size + 10);
    Image again(step.width, step.height, 0x40102030u);
    step.set(kept);
    ASSERT_TRUE(kept.render(scene, again));
    Process fresh;
    for (size_t k = 0; k <= i; ++k) steps[k].set(fresh);
    Image once(step.width, step.height, 0x40102030u);
    ASSERT_TRUE(fresh.render(scene, once));
    EXPECT_TRUE(again == once);
  }
}

TEST(ScratchReuse, LargeWorkImagesAreNotKept) {
  Process p;
  Everything(p);
  const TextScene large("Wide line", 400, 10, 420);
  Image image(3600, 560);
  ASSERT_TRUE(p.render(large, image));
  const RenderProcess* process = ProcessFromSlot(p.slot());
  ASSERT_NE(process, nullptr);
  for (const PixelBuffer& kept : process->scratch)
    EXPECT_LE(kept.ownedBytes(), RenderProcess::kKeptScratchBytes);

  const TextScene small("ab", 40, 10, 50);
  Image smallImage(120, 70);
  ASSERT_TRUE(p.render(small, smallImage));
  EXPECT_GT(process->scratch[0].ownedBytes(), 0u);
}

}  // namespace
}  // namespace lx::test
