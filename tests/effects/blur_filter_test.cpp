#include "effects/blur_filter.h"
#include <agg_renderer_base.h>  // agg_blur.h uses it without including it
#include <agg_blur.h>
#include <gtest/gtest.h>
#include <algorithm>
#include <cstdlib>
#include <utility>
#include "effects/stack_blur_line.h"
#include "effects_test_image.h"

namespace lx {
namespace {
using namespace effects_test;

// A radius of 0 skips its pass; empty images, no flags or no repeats change nothing; radii above 254 act
// as 254; a lone pixel is its own neighbourhood.
TEST(BlurFilter, LimitsOfRadiiFlagsAndImages) {
  BlurFilter blur;
  const bool all[4] = {true, true, true, true};
  TestImage image = RandomImage(70, 50, 21, 0.5), single(1, 1, 0x80336699u);
  const TestImage original = image;
  blur.blur(image.view(), 0, 0);
  blur.blurChannels(image.view(), 4, 4, all, 0);
  blur.blurChannels(image.view(), 4, 4, nullptr, 1);
  blur.blur(PixelView{}, 5, 5);
  blur.blur(single.view(), 3, 3);
  EXPECT_EQ(image.pixels, original.pixels);
  EXPECT_EQ(single.pixels, std::vector<uint32_t>{0x80336699u});

  TestImage a = RandomImage(300, 280, 7, 0.98), b = a;
  blur.blur(a.view(), 100000, 255);
  blur.blur(b.view(), 254, 254);
  EXPECT_EQ(a.pixels, b.pixels);
}

// AGG's stack blur written out for output x of src[0..n): each byte of the window x - r .. x + r (edge
// pixels repeated) weighted 1 .. r + 1 .. 1, times the table multiplier, shifted.
uint32_t WindowSum(const std::vector<uint32_t>& src, ptrdiff_t n, unsigned r, ptrdiff_t x) {
  using Tables = agg::stack_blur_tables<int>;
  uint32_t out = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    uint64_t sum = 0;
    for (ptrdiff_t k = -ptrdiff_t{r}; k <= ptrdiff_t{r}; ++k) {
      const uint32_t byte = (src[std::clamp<ptrdiff_t>(x + k, 0, n - 1)] >> shift) & 0xFFu;
      sum += uint64_t{byte} * (r + 1 - static_cast<unsigned>(std::abs(k)));
    }
    out |= static_cast<uint32_t>((sum * Tables::g_stack_blur8_mul[r]) >> Tables::g_stack_blur8_shr[r])
           << shift;
  }
  return out;
}

// The wide path must give the scalar path's pixels at every radius class, write mask and output step;
// nothing past the line's n pixels is read or written.
TEST(StackBlurLine, WideAndScalarPathsAgreeAndStayWithinTheLine) {
  std::mt19937 rng(1);
  for (size_t n : {1, 2, 3, 17, 256, 1000}) {
    for (unsigned r : {1, 2, 3, 8, 31, 50, 127, 254}) {
      for (int kind = 0; kind < 3; ++kind) {
        for (const auto& [mask, step] : {std::pair<uint32_t, ptrdiff_t>{0xFFFFFFFFu, 1},
                                         {0xFFFFFFFFu, 3},
                                         {0x00FFFFFFu, 3},
                                         {0xFF000000u, 1},
                                         {0x00FF00FFu, 3}}) {
          SCOPED_TRACE(testing::Message() << "length " << n << ", radius " << r << ", kind " << kind
                                          << ", step " << step << ", mask " << std::hex << mask);
          // Random, mostly empty, or long runs; then two pixels past the end, once empty and once full.
          std::vector<uint32_t> src(n + 2, 0), out[4];
          for (size_t i = 0; i < n; ++i) {
            if (kind == 0 || (kind == 1 && rng() % 9 == 0)) src[i] = rng();
            if (kind == 2) src[i] = (i / (1 + rng() % 3) / 37) % 2 ? 0xFFFFFFFFu : 0x80204060u;
          }
          for (int k = 0; k < 4; ++k) {
            src[n] = src[n + 1] = k & 2 ? 0xFFFFFFFFu : 0;
            out[k].assign((n + 2) * static_cast<size_t>(step), 0x5A5A5A5Au);
            const KernelPath path = (k & 1) && HasWideKernels() ? KernelPath::kWide : KernelPath::kScalar;
            StackBlurLine(src.data(), static_cast<ptrdiff_t>(n), r, out[k].data(), step, mask, path);
          }
          for (int k = 1; k < 4; ++k) ASSERT_EQ(out[k], out[0]) << (k & 1 ? "wide" : "scalar");
          ASSERT_EQ(out[0][n * static_cast<size_t>(step)], 0x5A5A5A5Au);
          // Both against the window written out; outputs in the empty stretches at the ends may stay.
          for (size_t x = 0; x < n; ++x) {
            const uint32_t want = (WindowSum(src, ptrdiff_t(n), r, ptrdiff_t(x)) & mask) | (src[x] & ~mask);
            const uint32_t got = out[0][static_cast<size_t>(step) * x];
            ASSERT_TRUE(got == want || (want == 0 && got == 0x5A5A5A5Au)) << x;
          }
        }
      }
    }
  }
}
}  // namespace
}  // namespace lx
