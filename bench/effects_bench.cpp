// Speed of the layer effects on a 1000 x 200 layer with a text-like shape: blur at small, medium and the
// largest radius (the time per pass must not grow with the radius), extrusion, emboss and 3D border.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "effects/bevel_filter.h"
#include "effects/blur_filter.h"
#include "effects/channel_tint.h"
#include "effects/emboss_filter.h"
#include "effects/face_emboss.h"
#include "effects/shadow_extrusion.h"
#include "image/pixel_view.h"

namespace {

constexpr int32_t kWidth = 1000;
constexpr int32_t kHeight = 200;

// Opaque strokes and blobs over a transparent field, roughly the coverage of a line of bold text.
std::vector<uint32_t> TextLikeLayer() {
  std::vector<uint32_t> pixels(static_cast<size_t>(kWidth) * kHeight, 0);
  for (int32_t y = 40; y < 160; ++y) {
    for (int32_t x = 20; x < 980; ++x) {
      const int32_t cell = x % 90;
      const bool stem = cell < 18 || (cell > 50 && cell < 64);
      const bool bar = (y > 90 && y < 108) && cell < 64;
      if (stem || bar) pixels[static_cast<size_t>(y) * kWidth + x] = 0xFF3366CCu;
    }
  }
  return pixels;
}

lx::PixelView View(std::vector<uint32_t>& pixels) {
  return {reinterpret_cast<uint8_t*>(pixels.data()), kWidth, kHeight, kWidth * 4};
}

// Blurs a fresh copy of `layer` at the benchmark's radius on every iteration.
void RunBlur(benchmark::State& state, const std::vector<uint32_t>& layer) {
  std::vector<uint32_t> work = layer;
  lx::BlurFilter blur;
  const unsigned radius = static_cast<unsigned>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    work = layer;
    state.ResumeTiming();
    blur.blur(View(work), radius, radius);
    benchmark::DoNotOptimize(work.data());
  }
  state.SetItemsProcessed(state.iterations() * kWidth * kHeight);
}

void BM_Blur(benchmark::State& state) {
  RunBlur(state, TextLikeLayer());
}
BENCHMARK(BM_Blur)->Arg(2)->Arg(8)->Arg(50)->Arg(254)->Unit(benchmark::kMillisecond);

// A layer with no empty stretch to skip: every pixel of every line goes through the running sums, so
// the three radii must take the same time.
void BM_BlurDense(benchmark::State& state) {
  std::vector<uint32_t> layer(static_cast<size_t>(kWidth) * kHeight);
  uint32_t seed = 12345;
  for (uint32_t& p : layer) {
    seed = seed * 1664525u + 1013904223u;
    p = seed | 0x01000000u;
  }
  RunBlur(state, layer);
}
BENCHMARK(BM_BlurDense)->Arg(2)->Arg(8)->Arg(50)->Arg(254)->Unit(benchmark::kMillisecond);

// The extrusion costs one clipped blend of the layer per step of the offset.
void BM_Extrude(benchmark::State& state) {
  const std::vector<uint32_t> layer = TextLikeLayer();
  std::vector<uint32_t> work = layer;
  const int32_t offset = static_cast<int32_t>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    work = layer;
    state.ResumeTiming();
    lx::ExtrudeShadow(View(work), offset, offset / 2, 1);
    benchmark::DoNotOptimize(work.data());
  }
  state.SetItemsProcessed(state.iterations() * kWidth * kHeight);
}
BENCHMARK(BM_Extrude)->Arg(5)->Arg(40)->Unit(benchmark::kMillisecond);

void BM_SoftenExtrusion(benchmark::State& state) {
  const std::vector<uint32_t> layer = TextLikeLayer();
  std::vector<uint32_t> work = layer;
  lx::BlurFilter blur;
  for (auto _ : state) {
    state.PauseTiming();
    work = layer;
    state.ResumeTiming();
    lx::SoftenExtrusion(View(work), &blur);
    benchmark::DoNotOptimize(work.data());
  }
  state.SetItemsProcessed(state.iterations() * kWidth * kHeight);
}
BENCHMARK(BM_SoftenExtrusion)->Unit(benchmark::kMillisecond);

// Bleed, relief and tint, as the Face gets them.
void BM_FaceEmboss(benchmark::State& state) {
  const std::vector<uint32_t> layer = TextLikeLayer();
  std::vector<uint32_t> work = layer;
  lx::EmbossFilter emboss;
  lx::ChannelTint tint;
  lx::FaceEmbossScratch scratch;
  tint.setFactors(1.0, 0.5, 0.2);
  for (auto _ : state) {
    state.PauseTiming();
    work = layer;
    state.ResumeTiming();
    lx::FaceEmboss(View(work), 2, &emboss, &tint, scratch);
    benchmark::DoNotOptimize(work.data());
  }
  state.SetItemsProcessed(state.iterations() * kWidth * kHeight);
}
BENCHMARK(BM_FaceEmboss)->Unit(benchmark::kMillisecond);

// The 3D border with the passes given (each pass is a shading and a radius-2 colour blur).
void BM_Border3D(benchmark::State& state) {
  const std::vector<uint32_t> layer = TextLikeLayer();
  std::vector<uint32_t> work = layer;
  lx::BevelFilter bevel;
  lx::BlurFilter blur;
  const int passes = static_cast<int>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    work = layer;
    state.ResumeTiming();
    bevel.applyBorder(View(work), 45.0, passes, 0.8, 2, &blur);
    benchmark::DoNotOptimize(work.data());
  }
  state.SetItemsProcessed(state.iterations() * kWidth * kHeight);
}
BENCHMARK(BM_Border3D)->Arg(1)->Arg(4)->Unit(benchmark::kMillisecond);

}  // namespace
