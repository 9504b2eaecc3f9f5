// The wide path of the stack-blur line must give the scalar path's pixels, on random, sparse and flat
// lines, at every radius class, write mask and a stride between outputs; the blur's own tests hold it to AGG.
#include "effects/stack_blur_line.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace lx {
namespace {

std::vector<uint32_t> Line(size_t n, unsigned seed, int kind) {
  std::mt19937 rng(seed);
  std::vector<uint32_t> line(n, 0);
  for (size_t i = 0; i < n; ++i) {
    if (kind == 0 || (kind == 1 && rng() % 9 == 0)) line[i] = rng();  // random, or mostly empty
    if (kind == 2) line[i] = (i / (1 + rng() % 3) / 37) % 2 ? 0xFFFFFFFFu : 0x80204060u;  // long runs
  }
  return line;
}

TEST(StackBlurLine, WideAndScalarPathsAgree) {
  if (!HasWideKernels()) GTEST_SKIP() << "this build has only the scalar path";
  const size_t lengths[] = {1, 2, 3, 17, 256, 1000};
  const unsigned radii[] = {1, 2, 3, 8, 31, 50, 127, 254};
  const uint32_t masks[] = {0xFFFFFFFFu, 0x00FFFFFFu, 0xFF000000u, 0x00FF00FFu};
  unsigned seed = 1;
  for (size_t n : lengths) {
    for (unsigned r : radii) {
      for (int kind = 0; kind < 3; ++kind) {
        for (uint32_t mask : masks) {
          const std::vector<uint32_t> src = Line(n, ++seed, kind);
          const ptrdiff_t step = 3;
          std::vector<uint32_t> scalar(n * step, 0x5A5A5A5Au), wide(n * step, 0x5A5A5A5Au);
          StackBlurLine(src.data(), static_cast<ptrdiff_t>(n), r, scalar.data(), step, mask,
                        KernelPath::kScalar);
          StackBlurLine(src.data(), static_cast<ptrdiff_t>(n), r, wide.data(), step, mask, KernelPath::kWide);
          ASSERT_EQ(wide, scalar) << "length " << n << ", radius " << r << ", kind " << kind << ", mask "
                                  << std::hex << mask;
        }
      }
    }
  }
}

}  // namespace
}  // namespace lx
