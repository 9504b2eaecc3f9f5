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

#include <random>

#include "effects_test_image.h"

namespace lx {
namespace {

using namespace effects_test;

// AGG's own stack blur, the reference for the averaging part of each pass.
void AggStackBlur(TestImage& image, unsigned rx, unsigned ry) {
  agg::rendering_buffer buffer(reinterpret_cast<agg::int8u*>(image.pixels.data()), image.width, image.height,
                               image.width * 4);
  agg::pixfmt_bgra32 format(buffer);
  agg::stack_blur_rgba32(format, rx, ry);
}

// The colour bleed as the naive walk over the opaque pixels of a line, `step` pixels apart.
void NaiveBleed(uint32_t* line, int32_t n, int32_t step, int32_t r) {
  for (int32_t x = 0; x < n; ++x) {
    const uint32_t source = line[x * step];
    if (Byte(source, 3) == 0) continue;
    for (int32_t k = x - 2 * r; k <= x + 2 * r - 1; ++k) {
      if (k < 0 || k >= n || k == x) continue;
      uint32_t& target = line[k * step];
      if (Byte(target, 3) == 0) target = source & 0x00FFFFFFu;
    }
  }
}

// Bleed and AGG blur, row by row and then column by column; the blurred values are kept only in the
// bytes of writeMask.
void ReferenceBlur(TestImage& image, unsigned rx, unsigned ry, uint32_t writeMask = 0xFFFFFFFFu) {
  rx = std::min(rx, 254u);
  ry = std::min(ry, 254u);
  const auto keep = [&](const TestImage& blurred) {
    for (size_t i = 0; i < image.pixels.size(); ++i)
      image.pixels[i] = (blurred.pixels[i] & writeMask) | (image.pixels[i] & ~writeMask);
  };
  if (rx > 0) {
    for (int32_t y = 0; y < image.height; ++y) NaiveBleed(&image.at(0, y), image.width, 1, rx);
    TestImage blurred = image;
    AggStackBlur(blurred, rx, 0);
    keep(blurred);
  }
  if (ry > 0) {
    for (int32_t x = 0; x < image.width; ++x) NaiveBleed(&image.at(x, 0), image.height, image.width, ry);
    TestImage blurred = image;
    AggStackBlur(blurred, 0, ry);
    keep(blurred);
  }
}

TEST(BlurFilter, RadiusZeroAndEmptyImagesChangeNothing) {
  BlurFilter blur;
  TestImage image = RandomImage(37, 23, 1, 0.3);
  const TestImage original = image;
  const bool all[4] = {true, true, true, true};
  blur.blur(image.view(), 0, 0);
  blur.blurChannels(image.view(), 4, 4, all, 0);
  blur.blurChannels(image.view(), 4, 4, nullptr, 1);
  blur.blur(PixelView{}, 5, 5);
  PixelView flat = image.view();
  flat.height = 0;
  blur.blur(flat, 5, 5);
  EXPECT_EQ(image.pixels, original.pixels);
}

// Opaque images are AGG's stack blur; transparent pixels first take the colour of their neighbours.
// Runs of one colour, shorter and longer than a window, are written without the running sums and must
// come out the same. One object throughout: its scratch must not leak from one call into the next.
TEST(BlurFilter, MatchesBleedThenAggStackBlur) {
  BlurFilter blur;
  const struct {
    int32_t w, h;
    unsigned rx, ry;
    double transparent;
    bool runs;
  } cases[] = {{40, 30, 3, 0, 0, false},    {7, 5, 20, 9, 0, false},         {1, 1, 2, 2, 0, false},
               {64, 3, 254, 254, 0, false}, {3, 64, 2, 100, 0, false},       {50, 40, 2, 3, 0.9, false},
               {20, 60, 0, 4, 0.97, false}, {120, 90, 40, 12, 0.995, false}, {300, 40, 1, 1, 0.3, true},
               {90, 200, 3, 9, 0.3, true},  {500, 8, 254, 2, 0.3, true}};
  unsigned seed = 10;
  for (const auto& c : cases) {
    TestImage image = RandomImage(c.w, c.h, ++seed, c.transparent);
    if (c.transparent == 0)
      for (uint32_t& p : image.pixels) p |= 0x01000000u;
    if (c.runs) {
      std::mt19937 rng(seed);
      const uint32_t colours[] = {0xFF204080u, 0x80FFFFFFu, 0x00000000u, 0xFF000000u, 0x7F102030u};
      for (int32_t y = 0; y < c.h; ++y) {
        for (int32_t x = static_cast<int32_t>(rng() % 7); x < c.w;) {
          const int32_t run = static_cast<int32_t>(rng() % (4 * std::max(c.rx, 1u) + 8));
          image.fillRect(x, y, std::min(c.w, x + run), y + 1, colours[rng() % 5]);
          x += run + static_cast<int32_t>(rng() % 5);
        }
      }
    }
    TestImage expected = image;
    ReferenceBlur(expected, c.rx, c.ry);
    blur.blur(image.view(), c.rx, c.ry);
    EXPECT_EQ(image.pixels, expected.pixels) << c.w << "x" << c.h << " radii " << c.rx << ", " << c.ry;
  }
  // Radii above the tables' limit act as 254.
  TestImage a = RandomImage(300, 280, 7, 0.98), b = a;
  blur.blur(a.view(), 100000, 255);
  blur.blur(b.view(), 254, 254);
  EXPECT_EQ(a.pixels, b.pixels);
}

TEST(BlurFilter, ChannelSelectiveBlurStoresOnlyFlaggedBytesAndRepeats) {
  BlurFilter blur;
  const bool colourOnly[4] = {true, true, true, false}, alphaOnly[4] = {false, false, false, true};
  const bool oneByte[4] = {false, true, false, false};
  const TestImage original = RandomImage(70, 50, 21, 0.6);
  // Exactly the full passes with only the flagged bytes stored; the bleed still colours transparent pixels.
  const std::pair<const bool*, uint32_t> cases[] = {
      {colourOnly, 0x00FFFFFFu}, {alphaOnly, 0xFF000000u}, {oneByte, 0x0000FF00u}};
  for (const auto& [flags, mask] : cases) {
    TestImage image = original, expected = original;
    blur.blurChannels(image.view(), 3, 2, flags, 1);
    ReferenceBlur(expected, 3, 2, mask);
    EXPECT_EQ(image.pixels, expected.pixels) << std::hex << mask;
  }
  TestImage once = original, thrice = original;
  blur.blurChannels(thrice.view(), 2, 1, colourOnly, 3);
  for (int i = 0; i < 3; ++i) blur.blurChannels(once.view(), 2, 1, colourOnly, 1);
  EXPECT_EQ(thrice.pixels, once.pixels);
}

TEST(BlurFilter, WorksInsideALargerImage) {
  BlurFilter blur;
  TestImage outer = RandomImage(60, 40, 3, 0.5), inner(40, 20);
  for (int32_t y = 0; y < 20; ++y)
    for (int32_t x = 0; x < 40; ++x) inner.at(x, y) = outer.at(x + 10, y + 10);
  const TestImage before = outer;
  blur.blur(inner.view(), 4, 6);
  blur.blur(Middle(outer, 10, 10, 40, 20), 4, 6);
  EXPECT_TRUE(UnchangedOutside(outer, before, 10, 10, 50, 30));
  for (int32_t y = 0; y < 20; ++y)
    for (int32_t x = 0; x < 40; ++x) ASSERT_EQ(outer.at(x + 10, y + 10), inner.at(x, y)) << x << ", " << y;
}

}  // namespace
}  // namespace lx
