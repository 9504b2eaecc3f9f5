// The wide path of the stack-blur line must give the scalar path's pixels, on random, sparse and flat
// lines, at every radius class, write mask and a stride between outputs; the blur's own tests hold it to
// AGG. A line is often a run of a longer row or column: nothing past its n pixels is read or written.
#include "effects/stack_blur_line.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace lx {
namespace {

TEST(StackBlurLine, WideAndScalarPathsAgreeAndStayWithinTheLine) {
  const bool wide = HasWideKernels();
  std::mt19937 rng(1);
  for (size_t n : {1, 2, 3, 17, 256, 1000}) {
    for (unsigned r : {1, 2, 3, 8, 31, 50, 127, 254}) {
      for (int kind = 0; kind < 3; ++kind) {
        for (uint32_t mask : {0xFFFFFFFFu, 0x00FFFFFFu, 0xFF000000u, 0x00FF00FFu}) {
          SCOPED_TRACE(testing::Message() << "length " << n << ", radius " << r << ", kind " << kind
                                          << ", mask " << std::hex << mask);
          // Random, mostly empty, or long runs; then two pixels past the end, once empty and once full.
          std::vector<uint32_t> src(n + 2, 0);
          for (size_t i = 0; i < n; ++i) {
            if (kind == 0 || (kind == 1 && rng() % 9 == 0)) src[i] = rng();
            if (kind == 2) src[i] = (i / (1 + rng() % 3) / 37) % 2 ? 0xFFFFFFFFu : 0x80204060u;
          }
          std::vector<uint32_t> out[4];
          for (int k = 0; k < 4; ++k) {
            src[n] = src[n + 1] = k & 2 ? 0xFFFFFFFFu : 0;
            out[k].assign((n + 2) * 3, 0x5A5A5A5Au);
            const KernelPath path = (k & 1) && wide ? KernelPath::kWide : KernelPath::kScalar;
            StackBlurLine(src.data(), static_cast<ptrdiff_t>(n), r, out[k].data(), 3, mask, path);
          }
          for (int k = 1; k < 4; ++k) ASSERT_EQ(out[k], out[0]) << (k & 1 ? "wide" : "scalar");
          ASSERT_EQ(out[0][n * 3], 0x5A5A5A5Au);
        }
      }
    }
  }
}

}  // namespace
}  // namespace lx
