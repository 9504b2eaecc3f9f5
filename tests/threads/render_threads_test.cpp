// Separate render processes on separate threads: eight threads, each with processes of its own, draw
// different scenes over and over and must get exactly the pixels one thread gets. Built under
// ThreadSanitizer as well, where any shared state the library touches without order (the global-memory
// stand-in, caches, module-wide flags) is reported even when the pixels come out right.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "lettrix/lettrix.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx {
namespace {

using test::Image;
using test::Process;
using test::TextScene;

constexpr int kThreads = 8;
constexpr int kRounds = 24;
constexpr int32_t kWidth = 150, kHeight = 64;
constexpr uint32_t kBackground = 0xFF204060;

struct Scene {
  const char* name;
  std::function<void(Process&)> settings;
};

std::vector<uint32_t> Checkerboard() {
  std::vector<uint32_t> pixels(8 * 8);
  for (int i = 0; i < 64; ++i) pixels[i] = ((i / 8 + i % 8) % 2) ? 0xFFE0C020 : 0xFF2040A0;
  return pixels;
}

// Eight scenes that between them take every pass: plain layers, blur on each layer, extrusion, emboss
// and bevel, colour stops, textures, a zoomed Shadow, and the Shadow alone.
const std::vector<Scene>& Scenes() {
  static const std::vector<Scene> scenes = {
      {"plain", [](Process& p) { p.face(255, 250, 250, 250).outline(255, 10, 10, 10).thickness(2); }},
      {"blurred",
       [](Process& p) {
         p.face(255, 255, 200, 0).outline(200, 200, 0, 0).thickness(3).shadow(180, 0, 0, 0);
         p.shadowOffset(3, 4).blur(1, 2, 3);
       }},
      {"extruded",
       [](Process& p) { p.face(255, 0, 160, 255).shadow(255, 0, 40, 90).shadowOffset(6, 5).extrude(1); }},
      {"emboss and bevel",
       [](Process& p) {
         p.face(255, 200, 200, 210).outline(255, 60, 60, 70).thickness(4).emboss(-2.3).border3D(25, 3, -0.8);
       }},
      {"colour stops",
       [](Process& p) {
         p.faceStops({0xFF0000FFu, 0xFF00FF00u, 0xFFFF0000u}, {1, 2, 1});
         p.faceGradient(3, 0.6).outline(255, 255, 255, 255).thickness(1);
       }},
      {"textures",
       [](Process& p) {
         p.faceTexture(Checkerboard(), 8, 8, 2);
         p.outlineTexture(Checkerboard(), 8, 8, 1);
         p.thickness(3);
       }},
      {"radial and zoomed shadow",
       [](Process& p) {
         p.faceStart(255, 255, 255, 0).faceEnd(255, 255, 0, 0).faceGradient(2, 0.1, 0.9);
         p.shadow(150, 0, 0, 0).shadowZoom(1.2, 0.9).shadowOffset(-2, 2);
       }},
      {"shadow only",
       [](Process& p) {
         p.shadow(220, 90, 0, 90).shadowOffset(2, 2).blur(0, 0, 2).shadowOnly(1).translate(4, -2);
       }},
  };
  return scenes;
}

const TextScene& Text() {
  static const TextScene text("Wavy Ok", 36, 6, 46);
  return text;
}

// One scene drawn by a fresh process into a fresh buffer; `block` is the outline block to draw.
Image Draw(const Scene& scene, void* block) {
  Process process;
  scene.settings(process);
  Image image(kWidth, kHeight, kBackground);
  EXPECT_TRUE(Render(process.slot(), block, image.width(), image.height(), image.data())) << scene.name;
  return image;
}

TEST(RenderThreads, EightThreadsWithTheirOwnProcessesDrawWhatOneThreadDraws) {
  const std::vector<Scene>& scenes = Scenes();
  ASSERT_EQ(scenes.size(), static_cast<size_t>(kThreads));
  ASSERT_NE(Text().block(), nullptr);

  std::vector<Image> expected;
  for (const Scene& scene : scenes) expected.push_back(Draw(scene, Text().block()));
  for (size_t i = 1; i < expected.size(); ++i) {
    EXPECT_NE(expected[i], expected[i - 1]) << "scenes " << i - 1 << " and " << i << " draw alike";
  }

  // Thread t draws scene (t + round) % 8 in each round, so every scene runs beside different ones.
  // Odd rounds draw from a block of the thread's own, so the threads also allocate and free global
  // memory side by side; even rounds share the one block.
  const std::vector<uint8_t>& bytes = Text().bytes();
  std::vector<int> mismatches(kThreads, 0);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      for (int round = 0; round < kRounds; ++round) {
        const size_t s = static_cast<size_t>(t + round) % scenes.size();
        std::unique_ptr<text::GlobalBlock> own;
        if (round % 2 == 1) {
          own = std::make_unique<text::GlobalBlock>(bytes);
          if (own->handle() == nullptr) {
            ++mismatches[t];
            continue;
          }
        }
        if (Draw(scenes[s], own ? own->handle() : Text().block()) != expected[s]) ++mismatches[t];
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (int t = 0; t < kThreads; ++t) EXPECT_EQ(mismatches[t], 0) << "thread " << t;
}

}  // namespace
}  // namespace lx
