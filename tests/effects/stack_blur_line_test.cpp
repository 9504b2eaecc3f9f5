// The wide path of the stack-blur line must give the scalar path's pixels, on random, sparse and flat
// lines, at every radius class, write mask and a stride between outputs; the blur's own tests hold it to AGG.
#include "effects/stack_blur_line.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
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

// A line is often a run of a longer row or column: what lies past its n pixels is neither read nor
// written, on either path, whether the line ends in pixels or in a transparent stretch.
TEST(StackBlurLine, ReadsAndWritesOnlyItsOwnPixels) {
  const KernelPath paths[] = {KernelPath::kScalar, KernelPath::kWide};
  unsigned seed = 100;
  for (KernelPath path : paths) {
    if (path == KernelPath::kWide && !HasWideKernels()) continue;
    for (size_t n : {1, 5, 40}) {
      for (unsigned r : {1u, 8u}) {
        for (const bool endsEmpty : {false, true}) {
          std::vector<uint32_t> line = Line(n, ++seed, 0);
          if (endsEmpty && n > 2) line[n - 1] = line[n - 2] = 0;
          std::vector<uint32_t> blurred[2];
          for (const uint32_t beyond : {0u, 0xFFFFFFFFu}) {
            std::vector<uint32_t> src(line);
            src.insert(src.end(), 2, beyond);
            std::vector<uint32_t> dst(n + 2, 0x5A5A5A5Au);
            StackBlurLine(src.data(), static_cast<ptrdiff_t>(n), r, dst.data(), 1, 0xFFFFFFFFu, path);
            blurred[beyond != 0] = dst;
          }
          const std::string where = "length " + std::to_string(n) + ", radius " + std::to_string(r) +
                                    (endsEmpty ? ", ending empty" : "");
          EXPECT_EQ(blurred[0], blurred[1]) << where;
          EXPECT_EQ(blurred[1][n], 0x5A5A5A5Au) << where;
          EXPECT_EQ(blurred[1][n + 1], 0x5A5A5A5Au) << where;
        }
      }
    }
  }
}

}  // namespace
}  // namespace lx
