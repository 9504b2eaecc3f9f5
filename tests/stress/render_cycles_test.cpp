// Thousands of create / set / render / destroy cycles in the sanitizer build: LeakSanitizer sees any
// block, texture copy, colour table or work image that a cycle fails to give back, and the heap must
// hold the same bytes after thousands of cycles as after the first few (memory stays flat).
#include <gtest/gtest.h>
#include <sanitizer/lsan_interface.h>

#include <cstddef>
#include <vector>

#include "lettrix/lettrix.h"
#include "tests/support/crosscheck_scenes.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

// The sanitizer runtime's count of live heap bytes. GCC ships no header for it, but both compilers'
// runtimes export it.
extern "C" size_t __sanitizer_get_current_allocated_bytes(void);

namespace lx::test {
namespace {

// One cycle: a process with the settings of one cross-check scene (so that the cycles together own
// textures, colour tables, blurs, extrusion, emboss and bevel), a render, and the process destroyed.
// Every tenth sets a texture and a colour table twice: the second must free the first. Every fiftieth
// runs the wrapper class's own cycle: Canvas, process, render, destroy.
void Cycle(int i, const TextScene& text) {
  Process p;
  CrossScenes()[static_cast<size_t>(i) % CrossScenes().size()].apply(p);
  for (uint32_t colour : {0xFF8040C0u, 0xFFFFFFFFu}) {
    if (i % 10 != 0) break;
    p.faceTexture(std::vector<uint32_t>(4, colour), 2, 2, 1);
    p.faceStops({colour, 0xFF000000u});
  }
  Image image(96, 48, 0xFF101010u);
  EXPECT_TRUE(p.render(text, image)) << "cycle " << i;
  if (i % 50 != 0) return;
  CLettrix lettrix;
  ASSERT_EQ(lettrix.CreateCanvas(96, 48), 1);
  ASSERT_EQ(lettrix.CreateProcessA(), 1);
  EXPECT_EQ(lettrix.RenderIt(text.block()), 1);
}

TEST(RenderCycles, ThousandsOfCyclesLeakNothingAndKeepMemoryFlat) {
  const TextScene text("Cycle", 30, 4, 38);
  for (int i = 0; i < 100; ++i) Cycle(i, text);
  const size_t warm = __sanitizer_get_current_allocated_bytes();
  for (int i = 100; i < 3000; ++i) Cycle(i, text);
  const size_t after = __sanitizer_get_current_allocated_bytes();
  // A leak of one small object per cycle would already add some 100 KiB.
  EXPECT_LT(after, warm + 16 * 1024) << "heap bytes after warm-up " << warm << ", after 3000 cycles "
                                     << after;
  EXPECT_EQ(__lsan_do_recoverable_leak_check(), 0);
}

}  // namespace
}  // namespace lx::test
