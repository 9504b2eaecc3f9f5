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

using effects_test::Byte;
using effects_test::Pixel;
using effects_test::RandomImage;
using effects_test::TestImage;

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
  blur.blur(image.view(), 0, 0);
  const bool all[4] = {true, true, true, true};
  blur.blurChannels(image.view(), 0, 0, all, 3);
  blur.blurChannels(image.view(), 4, 4, all, 0);
  EXPECT_EQ(image.pixels, original.pixels);

  PixelView none;
  blur.blur(none, 5, 5);
  PixelView flat = image.view();
  flat.height = 0;
  blur.blur(flat, 5, 5);
  EXPECT_EQ(image.pixels, original.pixels);
}

TEST(BlurFilter, OpaqueImagesMatchAggStackBlur) {
  BlurFilter blur;  // one object throughout: its scratch must not leak from one call into the next
  const struct {
    int32_t w, h;
    unsigned rx, ry;
  } cases[] = {{40, 30, 1, 1},    {40, 30, 3, 0},  {40, 30, 0, 5},    {7, 5, 20, 9}, {1, 1, 2, 2},
               {64, 3, 254, 254}, {3, 64, 2, 100}, {200, 50, 31, 17}, {16, 16, 8, 8}};
  unsigned seed = 10;
  for (const auto& c : cases) {
    TestImage image = RandomImage(c.w, c.h, ++seed, 0.0);
    for (uint32_t& p : image.pixels) p |= 0x01000000u;  // no transparent pixel: nothing to bleed into
    TestImage expected = image;
    AggStackBlur(expected, c.rx, c.ry);
    blur.blur(image.view(), c.rx, c.ry);
    EXPECT_EQ(image.pixels, expected.pixels) << c.w << "x" << c.h << " radii " << c.rx << ", " << c.ry;
  }
}

TEST(BlurFilter, TransparentPixelsTakeTheColourOfTheirNeighboursFirst) {
  BlurFilter blur;
  const struct {
    int32_t w, h;
    unsigned rx, ry;
    double transparent;
  } cases[] = {{50, 40, 1, 1, 0.5},  {50, 40, 2, 3, 0.9},      {60, 20, 5, 0, 0.95},
               {20, 60, 0, 4, 0.97}, {120, 90, 40, 12, 0.995}, {9, 300, 7, 70, 0.99}};
  unsigned seed = 100;
  for (const auto& c : cases) {
    TestImage image = RandomImage(c.w, c.h, ++seed, c.transparent);
    TestImage expected = image;
    ReferenceBlur(expected, c.rx, c.ry);
    blur.blur(image.view(), c.rx, c.ry);
    EXPECT_EQ(image.pixels, expected.pixels) << c.w << "x" << c.h << " radii " << c.rx << ", " << c.ry;
  }
}

// Runs of one colour, some shorter and some longer than a window, between random and transparent
// pixels: flat stretches are written without the running sums and must come out the same.
TEST(BlurFilter, FlatStretchesMatchTheReference) {
  BlurFilter blur;
  const struct {
    int32_t w, h;
    unsigned rx, ry;
  } cases[] = {{300, 40, 1, 1},  {300, 40, 4, 2}, {90, 200, 3, 9},
               {400, 30, 20, 1}, {64, 64, 0, 7},  {500, 8, 254, 2}};
  unsigned seed = 500;
  for (const auto& c : cases) {
    TestImage image = RandomImage(c.w, c.h, ++seed, 0.3);
    std::mt19937 rng(seed);
    const uint32_t colours[] = {0xFF204080u, 0x80FFFFFFu, 0x00000000u, 0xFF000000u, 0x7F102030u};
    for (int32_t y = 0; y < c.h; ++y) {
      int32_t x = static_cast<int32_t>(rng() % 7);
      while (x < c.w) {
        const int32_t run = static_cast<int32_t>(rng() % (4 * std::max(c.rx, 1u) + 8));
        const uint32_t colour = colours[rng() % 5];
        for (int32_t k = x; k < std::min(c.w, x + run); ++k) image.at(k, y) = colour;
        x += run + static_cast<int32_t>(rng() % 5);
      }
    }
    // Whole flat rows and columns too.
    for (int32_t x = 0; x < c.w; ++x) image.at(x, c.h / 2) = 0xFF336699u;
    for (int32_t y = 0; y < c.h; ++y) image.at(c.w / 3, y) = 0xFF336699u;
    TestImage expected = image;
    ReferenceBlur(expected, c.rx, c.ry);
    blur.blur(image.view(), c.rx, c.ry);
    EXPECT_EQ(image.pixels, expected.pixels) << c.w << "x" << c.h << " radii " << c.rx << ", " << c.ry;
  }
}

TEST(BlurFilter, LonePixelSpreadsOverThreeByThreeInItsOwnColour) {
  BlurFilter blur;
  TestImage image(9, 9);
  const uint32_t colour = Pixel(40, 200, 120, 255);
  image.at(4, 4) = colour;
  blur.blur(image.view(), 1, 1);

  for (int32_t y = 0; y < 9; ++y) {
    for (int32_t x = 0; x < 9; ++x) {
      const uint32_t p = image.at(x, y);
      const bool inside = x >= 3 && x <= 5 && y >= 3 && y <= 5;
      if (!inside) {
        EXPECT_EQ(Byte(p, 3), 0) << x << ", " << y;
        continue;
      }
      EXPECT_GT(Byte(p, 3), 0) << x << ", " << y;
      for (int i = 0; i < 3; ++i) {
        // The bleed reaches one pixel less to the right and below, so the last column and row mix in a
        // quarter of the transparent field's colour at most once per direction.
        const int own = Byte(colour, i);
        const int lowest = (x == 5 ? 3 * own / 4 : own) * (y == 5 ? 3 : 4) / 4;
        EXPECT_GE(Byte(p, i), lowest - 1) << x << ", " << y << " byte " << i;
        EXPECT_LE(Byte(p, i), own) << x << ", " << y << " byte " << i;
      }
      if (x < 5 && y < 5) {
        EXPECT_EQ(p & 0x00FFFFFFu, colour & 0x00FFFFFFu) << x << ", " << y;
      }
    }
  }
  EXPECT_EQ(Byte(image.at(4, 4), 3), 63);  // 255 * 2/4 * 2/4, through the tables' multiply and shift
}

TEST(BlurFilter, RadiiAboveTheTableLimitActAs254) {
  BlurFilter blur;
  TestImage a = RandomImage(300, 280, 7, 0.98);
  TestImage b = a;
  TestImage c = a;
  blur.blur(a.view(), 255, 255);
  blur.blur(b.view(), 254, 254);
  blur.blur(c.view(), 100000, 254);
  EXPECT_EQ(a.pixels, b.pixels);
  EXPECT_EQ(c.pixels, b.pixels);
}

TEST(BlurFilter, ChannelSelectiveBlurStoresOnlyFlaggedBytes) {
  BlurFilter blur;
  const bool colourOnly[4] = {true, true, true, false};
  const bool alphaOnly[4] = {false, false, false, true};
  const bool oneByte[4] = {false, true, false, false};

  // Alpha is never written when it is not flagged.
  const TestImage original = RandomImage(70, 50, 21, 0.6);
  TestImage colours = original;
  blur.blurChannels(colours.view(), 3, 2, colourOnly, 1);
  for (size_t i = 0; i < original.pixels.size(); ++i)
    ASSERT_EQ(colours.pixels[i] >> 24, original.pixels[i] >> 24);

  // Where no pixel is or becomes transparent there is nothing to bleed, so unflagged colour bytes stay.
  TestImage visible = RandomImage(40, 30, 22, 0.0);
  for (uint32_t& p : visible.pixels) p |= 0x80000000u;
  const TestImage visibleBefore = visible;
  blur.blurChannels(visible.view(), 5, 5, alphaOnly, 2);
  for (size_t i = 0; i < visible.pixels.size(); ++i)
    ASSERT_EQ(visible.pixels[i] & 0x00FFFFFFu, visibleBefore.pixels[i] & 0x00FFFFFFu);

  // Exactly the full passes with only the flagged bytes stored; the bleed still colours transparent pixels.
  const struct {
    const bool* flags;
    uint32_t mask;
  } cases[] = {{colourOnly, 0x00FFFFFFu}, {alphaOnly, 0xFF000000u}, {oneByte, 0x0000FF00u}};
  for (const auto& c : cases) {
    TestImage image = original;
    TestImage expected = original;
    blur.blurChannels(image.view(), 3, 2, c.flags, 1);
    ReferenceBlur(expected, 3, 2, c.mask);
    EXPECT_EQ(image.pixels, expected.pixels) << std::hex << c.mask;
  }
}

TEST(BlurFilter, RepeatRunsThePassesAgain) {
  BlurFilter blur;
  const bool flags[4] = {true, false, true, true};
  TestImage once = RandomImage(45, 33, 5, 0.7);
  TestImage thrice = once;
  blur.blurChannels(thrice.view(), 2, 1, flags, 3);
  for (int i = 0; i < 3; ++i) blur.blurChannels(once.view(), 2, 1, flags, 1);
  EXPECT_EQ(thrice.pixels, once.pixels);
}

TEST(BlurFilter, WorksInsideALargerImage) {
  // A view of the middle of an image: rows further apart than its width. Nothing outside may change.
  BlurFilter blur;
  TestImage outer = RandomImage(60, 40, 3, 0.5);
  TestImage inner(40, 20);
  for (int32_t y = 0; y < 20; ++y)
    for (int32_t x = 0; x < 40; ++x) inner.at(x, y) = outer.at(x + 10, y + 10);
  const TestImage before = outer;

  blur.blur(inner.view(), 4, 6);
  PixelView middle = outer.view();
  middle.pixels += (10 * 60 + 10) * 4;
  middle.width = 40;
  middle.height = 20;
  blur.blur(middle, 4, 6);

  for (int32_t y = 0; y < 40; ++y) {
    for (int32_t x = 0; x < 60; ++x) {
      const bool inside = x >= 10 && x < 50 && y >= 10 && y < 30;
      const uint32_t expected = inside ? inner.at(x - 10, y - 10) : before.at(x, y);
      ASSERT_EQ(outer.at(x, y), expected) << x << ", " << y;
    }
  }
}

}  // namespace
}  // namespace lx
