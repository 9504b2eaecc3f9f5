// Thousands of create / set / render / destroy cycles in the sanitizer build: LeakSanitizer sees any
// block, texture copy, colour table or work image that a cycle fails to give back, and the heap must
// hold the same bytes after thousands of cycles as after the first few (memory stays flat).
#include <gtest/gtest.h>
#include <sanitizer/lsan_interface.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lettrix/lettrix.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

// The sanitizer runtime's count of live heap bytes. GCC ships no header for it, but both compilers'
// runtimes export it.
extern "C" size_t __sanitizer_get_current_allocated_bytes(void);

namespace lx {
namespace {

constexpr int kWarmUpCycles = 100;
constexpr int kCycles = 3000;

// One cycle: a process with settings that depend on i (so that the cycles together own textures,
// colour tables, blurs, extrusion, emboss and bevel), a render, and the process destroyed.
void Cycle(int i, const test::TextScene& text) {
  test::Process p;
  p.face(255, static_cast<uint8_t>(i), 200, 100).outline(255, 20, 20, 20).thickness(i % 4);
  if (i % 3 == 0) p.shadow(160, 0, 0, 0).shadowOffset(i % 7 - 3, 3).blur(0, 0, static_cast<uint8_t>(i % 4));
  if (i % 5 == 0) p.extrude(1, static_cast<uint8_t>(i % 2));
  if (i % 4 == 1) p.faceStops({0xFF0000FFu, 0xFF00FF00u, 0x80FF0000u}, {1, static_cast<uint32_t>(i % 3), 2});
  if (i % 6 == 2) p.faceTexture(std::vector<uint32_t>(16, 0xFF8040C0u), 4, 4, i % 3);
  if (i % 6 == 3) p.outlineTexture(std::vector<uint32_t>(9, 0xFF30A050u), 3, 3, 2);
  if (i % 7 == 0) p.emboss(-2.0).border3D(20, 2, 0.5);
  if (i % 8 == 0) p.blur(2, 1, 0);
  // Textures and tables set twice: the second must free the first.
  if (i % 10 == 0) {
    p.faceTexture(std::vector<uint32_t>(4, 0xFFFFFFFFu), 2, 2, 1);
    p.faceStops({0xFF000000u, 0xFFFFFFFFu});
  }
  test::Image image(96, 48, 0xFF101010u);
  EXPECT_TRUE(p.render(text, image)) << "cycle " << i;
}

// The wrapper class's own cycle: Canvas, process, render, destroy.
void WrapperCycle(const test::TextScene& text) {
  CLettrix lettrix;
  ASSERT_EQ(lettrix.CreateCanvas(96, 48), 1);
  ASSERT_EQ(lettrix.CreateProcessA(), 1);
  lettrix.OutlineThickness(2);
  EXPECT_EQ(lettrix.RenderIt(text.block()), 1);
}

TEST(RenderCycles, ThousandsOfCyclesLeakNothingAndKeepMemoryFlat) {
  const test::TextScene text("Cycle", 30, 4, 38);
  ASSERT_NE(text.block(), nullptr);
  for (int i = 0; i < kWarmUpCycles; ++i) Cycle(i, text);
  const size_t warm = __sanitizer_get_current_allocated_bytes();
  for (int i = kWarmUpCycles; i < kCycles; ++i) {
    Cycle(i, text);
    if (i % 50 == 0) WrapperCycle(text);
  }
  const size_t after = __sanitizer_get_current_allocated_bytes();
  // A leak of one small object per cycle would already add some 100 KiB.
  EXPECT_LT(after, warm + 16 * 1024) << "heap bytes after warm-up " << warm << ", after " << kCycles
                                     << " cycles " << after;
  EXPECT_EQ(__lsan_do_recoverable_leak_check(), 0);
}

}  // namespace
}  // namespace lx
