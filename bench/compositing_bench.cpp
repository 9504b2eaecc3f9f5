// Laying a work image onto an output the size of a text line, and the whole-image copy.
#include <benchmark/benchmark.h>

#include <vector>

#include "image/pixel_ops.h"
#include "effects/compositing.h"

namespace {

// A layer with the usual mix: transparent gaps, opaque interior and anti-aliased edges.
std::vector<uint32_t> MakeLayer(int32_t width, int32_t height) {
  std::vector<uint32_t> pixels(static_cast<size_t>(width) * height);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      const uint32_t alpha = (x + y) % 7 == 0 ? 0u : ((x * 37 + y * 11) % 5 == 0 ? 0x80u : 0xFFu);
      pixels[static_cast<size_t>(y) * width + x] = (alpha << 24) | 0x00306090u;
    }
  }
  return pixels;
}

lx::PlacedView Place(std::vector<uint32_t>& pixels, int32_t width, int32_t height) {
  return {{reinterpret_cast<uint8_t*>(pixels.data()), width, height, width * 4}, {0, 0, width, height}};
}

void BM_BlendOver(benchmark::State& state) {
  const auto width = static_cast<int32_t>(state.range(0));
  const int32_t height = 128;
  std::vector<uint32_t> layer = MakeLayer(width, height);
  std::vector<uint32_t> output(layer.size(), 0xC0808080u);
  for (auto _ : state) {
    lx::BlendOver(Place(layer, width, height), Place(output, width, height));
    benchmark::DoNotOptimize(output.data());
  }
  state.SetItemsProcessed(state.iterations() * width * height);
}
BENCHMARK(BM_BlendOver)->Arg(256)->Arg(1024);

void BM_BlendOverClamped(benchmark::State& state) {
  const auto width = static_cast<int32_t>(state.range(0));
  const int32_t height = 128;
  std::vector<uint32_t> layer = MakeLayer(width, height);
  std::vector<uint32_t> output(layer.size(), 0xC0808080u);
  for (auto _ : state) {
    lx::BlendOverClamped(Place(layer, width, height), Place(output, width, height), 0x40000000u, 0xFF000000u);
    benchmark::DoNotOptimize(output.data());
  }
  state.SetItemsProcessed(state.iterations() * width * height);
}
BENCHMARK(BM_BlendOverClamped)->Arg(256)->Arg(1024);

void BM_CopyPixels(benchmark::State& state) {
  const auto count = static_cast<size_t>(state.range(0));
  std::vector<uint32_t> source(count, 0x12345678u), destination(count);
  for (auto _ : state) {
    lx::CopyPixels(destination.data(), source.data(), count);
    benchmark::DoNotOptimize(destination.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(count) * 4);
}
BENCHMARK(BM_CopyPixels)->Arg(1 << 18);

}  // namespace
