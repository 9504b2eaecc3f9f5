// Render of one line of twelve glyphs at 64 pixels: the plain Face, and every layer and effect at once.
#include <benchmark/benchmark.h>

#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace {

using lx::test::Image;
using lx::test::Process;
using lx::test::TextScene;

constexpr int32_t kWidth = 640, kHeight = 110;

void RenderLine(benchmark::State& state, Process& p) {
  const TextScene scene("LettrixWorks", 64, 20, 80);
  Image image(kWidth, kHeight);
  for (auto _ : state) {
    if (!p.render(scene, image)) state.SkipWithError("Render refused the line");
    benchmark::DoNotOptimize(image.data());
  }
  state.SetItemsProcessed(state.iterations() * kWidth * kHeight);
}

void BM_RenderPlain(benchmark::State& state) {
  Process p;
  RenderLine(state, p);
}
BENCHMARK(BM_RenderPlain)->Unit(benchmark::kMicrosecond);

void BM_RenderEveryEffect(benchmark::State& state) {
  Process p;
  p.faceStart(255, 250, 220, 40).faceEnd(255, 250, 90, 20).faceGradient(1).emboss(2.0, 255, 200, 120);
  p.outline(255, 40, 20, 120).thickness(3).border3D(35, 2, -0.6);
  p.shadow(160, 0, 0, 0).shadowOffset(8, 6).shadowZoom(1.05, 1.05).extrude(1, 1);
  p.blur(2, 2, 0);
  RenderLine(state, p);
}
BENCHMARK(BM_RenderEveryEffect)->Unit(benchmark::kMicrosecond);

void BM_RenderBlurredShadow(benchmark::State& state) {
  Process p;
  p.outline(255, 0, 0, 0)
      .thickness(2)
      .shadow(200, 0, 0, 0)
      .shadowOffset(6, 6)
      .blur(0, 0, static_cast<uint8_t>(state.range(0)));
  RenderLine(state, p);
}
BENCHMARK(BM_RenderBlurredShadow)->Arg(2)->Arg(20)->Unit(benchmark::kMicrosecond);

}  // namespace
