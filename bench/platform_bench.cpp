// The pointer checks run once per Render over the whole caller buffer; their cost must not grow with it.
#include <benchmark/benchmark.h>

#include <vector>

#include "platform/platform.h"

namespace {

void BM_IsBadWritePtr(benchmark::State& state) {
  std::vector<uint8_t> buffer(static_cast<size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(lx::platform::IsBadWritePtr(buffer.data(), buffer.size()));
}
// A 64 x 64 image and a 4K screen.
BENCHMARK(BM_IsBadWritePtr)->Arg(64 * 64 * 4)->Arg(3840 * 2160 * 4);

void BM_GlobalAllocLockFree(benchmark::State& state) {
  for (auto _ : state) {
    auto h = lx::platform::GlobalAlloc(lx::platform::kGmemMoveableZeroInit, 4096);
    benchmark::DoNotOptimize(lx::platform::GlobalLock(h));
    lx::platform::GlobalUnlock(h);
    lx::platform::GlobalFree(h);
  }
}
BENCHMARK(BM_GlobalAllocLockFree);

}  // namespace
