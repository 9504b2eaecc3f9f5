#include "effects/short_column_blur.h"
#include <gtest/gtest.h>
#include <random>
#include <vector>
#include "effects/blur_filter.h"
#include "effects/stack_blur_line.h"
#include "effects_test_image.h"

namespace lx {
namespace {
using namespace effects_test;

// The vertical pass as it reads: down each column, every transparent pixel takes the colour bytes of
// the last opaque pixel from 2r - 1 above to 2r below it, then the column goes through the stack blur.
void ReferenceColumns(TestImage& image, const PixelView& view, unsigned r, uint32_t mask) {
  const int32_t reach = 2 * static_cast<int32_t>(r);
  std::vector<uint32_t> column(static_cast<size_t>(view.height));
  for (int32_t x = 0; x < view.width; ++x) {
    for (int32_t y = 0; y < view.height; ++y) {
      uint32_t v = view.row(y)[x];
      if ((v >> 24) == 0) {
        for (int32_t q = std::max(0, y - reach + 1); q <= std::min(view.height - 1, y + reach); ++q) {
          if (view.row(q)[x] >> 24) v = view.row(q)[x] & 0x00FFFFFFu;
        }
      }
      column[static_cast<size_t>(y)] = v;
    }
    StackBlurLine(column.data(), view.height, r, view.row(0) + x, image.width, mask, KernelPath::kScalar);
  }
}

// Random pixels, or opaque black beside transparent pixels that still carry a colour: the bleed turns
// those to zero, which decides where the stack blur starts and stops writing.
TestImage Scene(int32_t w, int32_t h, unsigned seed, int kind) {
  if (kind < 3) return RandomImage(w, h, seed, kind == 0 ? 0.0 : kind == 1 ? 0.6 : 0.95);
  TestImage image(w, h, 0x00FFFFFFu);
  std::mt19937 rng(seed);
  for (uint32_t& p : image.pixels) {
    if (rng() % 7 == 0) p = 0xFF000000u;
  }
  return image;
}

// Both paths give the column-by-column result at both radii, for each write mask, over images narrower
// and wider than a block (blocks of 216 columns at a height of 300, then a part of 87 that ends in
// three lone columns), and inside a larger image, whose pixels around the view stay as they were.
TEST(ShortColumnBlur, GivesTheColumnByColumnResult) {
  struct Case {
    int32_t w, h;
  };
  for (const Case c :
       {Case{1, 1}, Case{3, 1}, Case{1, 6}, Case{5, 2}, Case{17, 9}, Case{70, 50}, Case{303, 300}}) {
    for (unsigned r : {1u, 2u}) {
      for (int kind = 0; kind < 4; ++kind) {
        for (uint32_t mask : {0xFFFFFFFFu, 0x00FFFFFFu, 0xFF000000u}) {
          SCOPED_TRACE(testing::Message() << c.w << "x" << c.h << ", radius " << r << ", kind " << kind
                                          << ", mask " << std::hex << mask);
          TestImage want = Scene(c.w + 6, c.h + 4, static_cast<unsigned>(c.w * 31 + c.h + kind), kind);
          ReferenceColumns(want, want.view(3, 2, c.w, c.h), r, mask);
          for (KernelPath path : {KernelPath::kScalar, KernelPath::kWide}) {
            TestImage got = Scene(c.w + 6, c.h + 4, static_cast<unsigned>(c.w * 31 + c.h + kind), kind);
            std::vector<uint32_t> scratch;
            ASSERT_TRUE(ShortColumnBlur(got.view(3, 2, c.w, c.h), r, mask, scratch, path));
            ASSERT_EQ(got.pixels, want.pixels) << (path == KernelPath::kWide ? "wide" : "scalar");
          }
        }
      }
    }
  }
}

// Other radii are refused untouched; an empty view is done at once. The layer blur's vertical pass
// gives the column-by-column result on either side of the radius where it changes method.
TEST(ShortColumnBlur, RadiiItTakesAndTheLayerBlurAroundIt) {
  TestImage image = RandomImage(40, 30, 5, 0.5);
  const TestImage original = image;
  std::vector<uint32_t> scratch;
  EXPECT_FALSE(ShortColumnBlur(image.view(), 0, ~0u, scratch, KernelPath::kWide));
  EXPECT_FALSE(ShortColumnBlur(image.view(), 3, ~0u, scratch, KernelPath::kWide));
  EXPECT_TRUE(ShortColumnBlur(PixelView{}, 1, ~0u, scratch, KernelPath::kWide));
  EXPECT_EQ(image.pixels, original.pixels);

  const bool colour[4] = {true, true, true, false};
  for (unsigned r : {1u, 2u, 3u, 6u}) {
    TestImage want = Scene(90, 60, r, 1 + r % 3), got = want;
    ReferenceColumns(want, want.view(), r, 0x00FFFFFFu);
    BlurFilter blur;
    blur.blurChannels(got.view(), 0, r, colour, 1);
    EXPECT_EQ(got.pixels, want.pixels) << "radius " << r;
  }
}
}  // namespace
}  // namespace lx
