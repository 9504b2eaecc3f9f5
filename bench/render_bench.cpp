// Render of one line of twelve glyphs at 64 pixels: the plain Face, and every layer and effect at once;
// and outlines far larger than the buffer they are drawn into.
#include <benchmark/benchmark.h>

#include "tests/support/contour_records.h"
#include "tests/support/deep_border_blocks.h"
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

// The two outlines found by fuzzing that once took seconds and half a gigabyte: a 44-byte sliver
// 4096 x 15360 pixels into an 89 x 228 buffer, and a 36-byte triangle with 10500-pixel legs, a 2-pixel
// Outline and both layers blurred at level 254, into 300 x 300 (the same blocks as the crasher tests).
void BM_RenderOversizedSliver(benchmark::State& state) {
  lx::test::ContourRecords r;
  r.begin(lx::test::Pt(10, 60))
      .line({lx::test::Pt(4106, -15300), lx::test::Pt(4106, 60), lx::test::Pt(10, 60)})
      .end();
  const TextScene scene(r.bytes());
  Image image(89, 228);
  Process p;
  for (auto _ : state) {
    if (!p.render(scene, image)) state.SkipWithError("Render refused the sliver");
    benchmark::DoNotOptimize(image.data());
  }
}
BENCHMARK(BM_RenderOversizedSliver)->Unit(benchmark::kMillisecond);

void BM_RenderOversizedBlurredTriangle(benchmark::State& state) {
  lx::test::ContourRecords r;
  r.begin(lx::test::Pt(-4000, -4000)).line({lx::test::Pt(6500, -4000), lx::test::Pt(-4000, 6500)}).end();
  const TextScene scene(r.bytes());
  Image image(300, 300);
  Process p;
  p.face(255, 240, 200, 40).outline(255, 0, 0, 0).thickness(2).blur(254, 254, 0);
  for (auto _ : state) {
    if (!p.render(scene, image)) state.SkipWithError("Render refused the triangle");
    benchmark::DoNotOptimize(image.data());
  }
}
BENCHMARK(BM_RenderOversizedBlurredTriangle)->Unit(benchmark::kMillisecond);

// A fuzzer's block with 60 border passes and the Face embossed into a 64 x 48 buffer: the Outline
// transparent as found (0) and opaque (1), so that the border itself runs.
void BM_RenderDeepBorder(benchmark::State& state) {
  const TextScene scene(lx::test::kDeepBorderBlockC);
  Image image(64, 48);
  Process p;
  p.thickness(6).emboss(1.0, 255, 100, 200).border3D(30, 60, -2.3);
  if (state.range(0) == 1) p.outline(255, 200, 120, 40);
  for (auto _ : state) {
    if (!p.render(scene, image)) state.SkipWithError("Render refused the block");
    benchmark::DoNotOptimize(image.data());
  }
}
BENCHMARK(BM_RenderDeepBorder)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
