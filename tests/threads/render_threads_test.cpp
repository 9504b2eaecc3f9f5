// Eight threads, each with processes of its own, draw the cross-check scenes over and over and must get
// exactly the pixels one thread gets. Under ThreadSanitizer any unordered shared state is reported too.
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <vector>
#include "lettrix/lettrix.h"
#include "tests/support/crosscheck_scenes.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {
// One scene drawn by a fresh process into a fresh buffer from the given outline block.
Image Draw(const CrossScene& scene, void* block) {
  Process process;
  scene.apply(process);
  Image image(scene.width, scene.height, scene.ground);
  EXPECT_TRUE(Render(process.slot(), block, image.width(), image.height(), image.data())) << scene.name;
  return image;
}

TEST(RenderThreads, EightThreadsWithTheirOwnProcessesDrawWhatOneThreadDraws) {
  const std::vector<CrossScene>& scenes = CrossScenes();
  std::vector<std::unique_ptr<TextScene>> texts;
  std::vector<Image> expected;
  for (const CrossScene& s : scenes) {
    texts.push_back(std::make_unique<TextScene>(s.text, s.pixelSize, 6, s.height * 0.75));
    expected.push_back(Draw(s, texts.back()->block()));
  }
  // Every scene runs beside different ones; odd rounds draw from a block of the thread's own (global
  // memory allocated and freed side by side), even rounds share the one block.
  std::vector<int> mismatches(8, 0);
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([&, t] {
      for (int round = 0; round < 24; ++round) {
        const size_t s = static_cast<size_t>(t + round) % scenes.size();
        const text::GlobalBlock own(round % 2 == 1 ? texts[s]->bytes() : std::vector<uint8_t>());
        if (Draw(scenes[s], own.handle() ? own.handle() : texts[s]->block()) != expected[s]) ++mismatches[t];
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(mismatches, std::vector<int>(8, 0));
}
}  // namespace
}  // namespace lx::test
