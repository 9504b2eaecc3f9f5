// The two paths of the stack-blur line give the same pixels: lines of random, sparse and flat content, at
// small, odd and the largest radii, every write mask and a stride between outputs.
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
    switch (kind) {
      case 0:  // every byte random
        line[i] = rng();
        break;
      case 1:  // mostly empty, a few pixels
        if (rng() % 9 == 0) line[i] = rng();
        break;
      default:  // runs of a few colours, some longer than any window
        line[i] = (i / (1 + rng() % 3) / 37) % 2 ? 0xFFFFFFFFu : 0x80204060u;
        break;
    }
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

// A flat line blurs to itself up to the tables' rounding, whatever the path: the sums of a full window
// of one value are that value times the window's weight.
TEST(StackBlurLine, FlatLineKeepsItsValueNearly) {
  for (KernelPath path : {KernelPath::kScalar, KernelPath::kWide}) {
    const std::vector<uint32_t> src(600, 0xC8643219u);
    std::vector<uint32_t> dst(600, 0);
    StackBlurLine(src.data(), 600, 20, dst.data(), 1, 0xFFFFFFFFu, path);
    for (uint32_t p : dst) {
      for (int c = 0; c < 4; ++c) {
        const int want = (0xC8643219u >> (8 * c)) & 0xFF, got = (p >> (8 * c)) & 0xFF;
        EXPECT_LE(want - got, 1);
        EXPECT_GE(want - got, 0);
      }
    }
  }
}

}  // namespace
}  // namespace lx
