// Speed of the layer effects on a 1000 x 200 layer with a text-like shape: blur at small, medium and the
// largest radius (the time per pass must not grow with the radius), extrusion, emboss and 3D border.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "effects/blur_filter.h"
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

void BM_Blur(benchmark::State& state) {
  const std::vector<uint32_t> layer = TextLikeLayer();
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
BENCHMARK(BM_Blur)->Arg(2)->Arg(50)->Arg(254)->Unit(benchmark::kMillisecond);

}  // namespace
