#include "effects/blur_filter.h"

// AGG's pod_vector trips GCC's use-after-free heuristic when the reference blur is inlined.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpragmas"
#pragma GCC diagnostic ignored "-Wuse-after-free"
#include <agg_renderer_base.h>  // agg_blur.h uses it without including it
#include <agg_blur.h>
#include <agg_pixfmt_rgba.h>
#include <agg_rendering_buffer.h>
#pragma GCC diagnostic pop
#include <gtest/gtest.h>

#include "effects/stack_blur_line.h"
#include "effects_test_image.h"

namespace lx {
namespace {

using namespace effects_test;

// One pass of the reference along rows (step 1) or columns: the colour bleed as its definition reads,
// then AGG's own stack blur, kept only in the bytes of writeMask.
void ReferencePass(TestImage& image, unsigned r, bool rows, uint32_t writeMask) {
  r = std::min(r, 254u);
  const int32_t lines = rows ? image.height : image.width, n = rows ? image.width : image.height;
  for (int32_t l = 0; l < lines && r > 0; ++l) {
    const auto at = [&](int32_t i) -> uint32_t& { return rows ? image.at(i, l) : image.at(l, i); };
    for (int32_t x = 0; x < n; ++x)
      for (int32_t k = std::max(0, x - 2 * int32_t(r)); Byte(at(x), 3) && k < std::min(n, x + 2 * int32_t(r));
           ++k)
        if (k != x && Byte(at(k), 3) == 0) at(k) = at(x) & 0x00FFFFFFu;
  }
  TestImage blurred = image;
  agg::rendering_buffer buffer(reinterpret_cast<agg::int8u*>(blurred.pixels.data()), image.width,
                               image.height, image.width * 4);
  agg::pixfmt_bgra32 format(buffer);
  agg::stack_blur_rgba32(format, rows ? r : 0, rows ? 0 : r);
  for (size_t i = 0; i < image.pixels.size(); ++i)
    image.pixels[i] = (blurred.pixels[i] & writeMask) | (image.pixels[i] & ~writeMask);
}

// Opaque images are AGG's stack blur; transparent pixels first take the colour of their neighbours. One
// object throughout: its scratch must not leak from one call into the next. Radii above 254 act as 254;
// a radius of 0 skips its pass, and empty images, no flags or no repeats change nothing.
TEST(BlurFilter, MatchesBleedThenAggStackBlur) {
  BlurFilter blur;
  const bool all[4] = {true, true, true, true}, colourOnly[4] = {true, true, true, false};
  const bool alphaOnly[4] = {false, false, false, true}, oneByte[4] = {false, true, false, false};
  const struct {
    int32_t w, h;
    unsigned rx, ry;
    double transparent;
    const bool* flags;
    uint32_t mask;
    int repeat;
  } cases[] = {{40, 30, 3, 0, 0, all, ~0u, 1},
               {7, 5, 20, 9, 0, all, ~0u, 1},
               {1, 1, 2, 2, 0, all, ~0u, 1},
               {64, 3, 100000, 255, 0, all, ~0u, 1},
               {3, 64, 2, 100, 0, all, ~0u, 1},
               {50, 40, 2, 3, 0.9, all, ~0u, 1},
               {20, 60, 0, 4, 0.97, all, ~0u, 1},
               {120, 90, 40, 12, 0.995, all, ~0u, 1},
               {70, 50, 3, 2, 0.6, colourOnly, 0x00FFFFFFu, 1},
               {70, 50, 3, 2, 0.6, alphaOnly, 0xFF000000u, 3},
               {70, 50, 3, 2, 0.6, oneByte, 0x0000FF00u, 2},
               {30, 20, 0, 0, 0.5, all, ~0u, 1},
               {30, 20, 4, 4, 0.5, all, ~0u, 0},
               {30, 20, 4, 4, 0.5, nullptr, ~0u, 1}};
  unsigned seed = 10;
  for (const auto& c : cases) {
    TestImage image = RandomImage(c.w, c.h, ++seed, c.transparent);
    for (uint32_t& p : image.pixels) p |= c.transparent == 0 ? 0x01000000u : 0;
    TestImage expected = image;
    for (int i = 0; i < c.repeat && c.flags; ++i) {
      ReferencePass(expected, c.rx, true, c.mask);
      ReferencePass(expected, c.ry, false, c.mask);
    }
    if (c.flags == all && c.repeat == 1) blur.blur(image.view(), c.rx, c.ry);
    if (c.flags != all || c.repeat != 1) blur.blurChannels(image.view(), c.rx, c.ry, c.flags, c.repeat);
    EXPECT_EQ(image.pixels, expected.pixels) << c.w << "x" << c.h << " radii " << c.rx << ", " << c.ry;
  }
  blur.blur(PixelView{}, 5, 5);
  TestImage image = RandomImage(30, 20, 3, 0.5);
  const TestImage before = image;
  PixelView flat = image.view();
  flat.height = 0;
  blur.blur(flat, 5, 5);
  EXPECT_EQ(image.pixels, before.pixels);
}

TEST(BlurFilter, WorksInsideALargerImage) {
  BlurFilter blur;
  TestImage outer = RandomImage(60, 40, 3, 0.5), inner(40, 20), expected = outer;
  for (int32_t y = 0; y < 20; ++y)
    for (int32_t x = 0; x < 40; ++x) inner.at(x, y) = outer.at(x + 10, y + 10);
  blur.blur(inner.view(), 4, 6);
  blur.blur(outer.view(10, 10, 40, 20), 4, 6);
  for (int32_t y = 0; y < 20; ++y)
    for (int32_t x = 0; x < 40; ++x) expected.at(x + 10, y + 10) = inner.at(x, y);
  EXPECT_EQ(outer.pixels, expected.pixels);
}

// The wide path of the stack-blur line must give the scalar path's pixels on random, sparse and flat
// lines, at every radius class, write mask and a stride between outputs. A line is often a run of a
// longer row or column: nothing past its n pixels is read or written.
TEST(StackBlurLine, WideAndScalarPathsAgreeAndStayWithinTheLine) {
  std::mt19937 rng(1);
  for (size_t n : {1, 2, 3, 17, 256, 1000}) {
    for (unsigned r : {1, 2, 3, 8, 31, 50, 127, 254}) {
      for (int kind = 0; kind < 3; ++kind) {
        for (uint32_t mask : {0xFFFFFFFFu, 0x00FFFFFFu, 0xFF000000u, 0x00FF00FFu}) {
          SCOPED_TRACE(testing::Message() << "length " << n << ", radius " << r << ", kind " << kind
                                          << ", mask " << std::hex << mask);
          // Random, mostly empty, or long runs; then two pixels past the end, once empty and once full.
          std::vector<uint32_t> src(n + 2, 0), out[4];
          for (size_t i = 0; i < n; ++i) {
            if (kind == 0 || (kind == 1 && rng() % 9 == 0)) src[i] = rng();
            if (kind == 2) src[i] = (i / (1 + rng() % 3) / 37) % 2 ? 0xFFFFFFFFu : 0x80204060u;
          }
          for (int k = 0; k < 4; ++k) {
            src[n] = src[n + 1] = k & 2 ? 0xFFFFFFFFu : 0;
            out[k].assign((n + 2) * 3, 0x5A5A5A5Au);
            const KernelPath path = (k & 1) && HasWideKernels() ? KernelPath::kWide : KernelPath::kScalar;
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
