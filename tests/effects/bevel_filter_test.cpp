#include "effects/bevel_filter.h"
#include <gtest/gtest.h>
#include <random>
#include <vector>
#include "effects/blur_filter.h"
#include "effects/grey_plane_blur.h"
#include "effects_test_image.h"

namespace lx {
namespace {
using namespace effects_test;

// Strokes with soft edges on a clear ground, as a drawn Outline is: runs of opaque pixels, a few
// translucent ones at their ends, and (for `stray`) transparent pixels that still carry some colour,
// and opaque black ones, which the bleed hands on.
TestImage StrokeImage(int32_t w, int32_t h, unsigned seed, bool stray) {
  TestImage image(w, h);
  std::mt19937 rng(seed);
  const uint32_t colour = rng() & 0x00FFFFFFu;
  for (int32_t y = 0; y < h; ++y) {
    for (int32_t x = 0; x < w;) {
      const int32_t gap = static_cast<int32_t>(rng() % 9), run = static_cast<int32_t>(rng() % 7);
      x += gap;
      for (int32_t k = 0; k < run && x < w; ++k, ++x) {
        const uint32_t alpha = k == 0 || k + 1 == run ? 1 + rng() % 254 : 255;
        image.at(x, y) = alpha << 24 | colour;
      }
    }
  }
  if (stray) {
    for (uint32_t& p : image.pixels) {
      if (rng() % 11 == 0) p = p >> 24 ? 0xFF000000u : rng() & 0x00FFFFFFu;
    }
  }
  return image;
}

// The border on the grey planes gives the image the pixels give, with every number of passes, light,
// part kept and kernel path, with and without the blur, on random pixels and on strokes, inside a larger
// image whose pixels around the view stay as they were.
TEST(BevelFilter, BorderOnGreyPlanesGivesThePixelsResult) {
  std::mt19937 rng(7);
  for (int round = 0; round < 48; ++round) {
    const int32_t w = 1 + static_cast<int32_t>(rng() % 70), h = 1 + static_cast<int32_t>(rng() % 40);
    const int kind = round % 3;
    const unsigned seed = rng();
    const auto make = [&] {
      return kind == 0 ? RandomImage(w + 4, h + 3, seed, 0.5) : StrokeImage(w + 4, h + 3, seed, kind == 2);
    };
    const int passes = 1 + static_cast<int>(rng() % 4);
    const double elevation = 3.0 + static_cast<double>(rng() % 5800) / 100.0;
    const double azimuth = static_cast<double>(rng() % 628) / 100.0 - 3.14;
    IntRect keep;
    if (round % 4 != 0) {
      keep.left = static_cast<int32_t>(rng() % static_cast<unsigned>(w));
      keep.top = static_cast<int32_t>(rng() % static_cast<unsigned>(h));
      keep.right = keep.left + 1 + static_cast<int32_t>(rng() % static_cast<unsigned>(w - keep.left));
      keep.bottom = keep.top + 1 + static_cast<int32_t>(rng() % static_cast<unsigned>(h - keep.top));
    }
    const bool blurred = round % 5 != 1;
    SCOPED_TRACE(testing::Message() << "round " << round << ": " << w << "x" << h << ", kind " << kind
                                    << ", passes " << passes << ", blurred " << blurred);
    TestImage want = make();
    BevelFilter pixels;
    BlurFilter blur;
    pixels.applyBorder(want.view(2, 1, w, h), elevation, passes, azimuth, 2, blurred ? &blur : nullptr, keep,
                       BorderWork::kPixels);
    for (KernelPath path : {KernelPath::kScalar, KernelPath::kWide}) {
      TestImage got = make();
      BevelFilter planes;
      planes.applyBorder(got.view(2, 1, w, h), elevation, passes, azimuth, 2, blurred ? &blur : nullptr, keep,
                         BorderWork::kGreyPlanes, path);
      ASSERT_EQ(got.pixels, want.pixels) << (path == KernelPath::kWide ? "wide" : "scalar");
    }
  }
}

// Radii other than the planes' go to the pixels: the same image either way asked.
TEST(BevelFilter, OtherBlurRadiiWorkOnThePixels) {
  for (unsigned radius : {1u, 3u}) {
    TestImage want = StrokeImage(40, 30, radius, true), got = want;
    BevelFilter bevel;
    BlurFilter blur;
    bevel.applyBorder(want.view(), 30.0, 2, 0.5, radius, &blur, IntRect{}, BorderWork::kPixels);
    bevel.applyBorder(got.view(), 30.0, 2, 0.5, radius, &blur, IntRect{}, BorderWork::kGreyPlanes);
    EXPECT_EQ(got.pixels, want.pixels) << "radius " << radius;
  }
}

// The plane blur gives the grey of every pixel with alpha as the layer blur gives each colour byte of a
// pixel whose colour bytes all hold that grey, whatever the transparent pixels carry; alpha is not
// written.
TEST(GreyPlaneBlur, GivesTheLayerBlursGreyWhereAlphaIsSet) {
  std::mt19937 rng(3);
  for (int round = 0; round < 40; ++round) {
    const int32_t w = 1 + static_cast<int32_t>(rng() % 60), h = 1 + static_cast<int32_t>(rng() % 50);
    SCOPED_TRACE(testing::Message() << "round " << round << ": " << w << "x" << h);
    TestImage layer = StrokeImage(w, h, rng(), round % 2 == 0);
    std::vector<uint8_t> grey(static_cast<size_t>(w) * h), alpha(grey.size());
    for (size_t i = 0; i < grey.size(); ++i) {
      const uint32_t g = rng() & 0xFF;
      alpha[i] = static_cast<uint8_t>(layer.pixels[i] >> 24);
      grey[i] = static_cast<uint8_t>(g);
      if (alpha[i] != 0) layer.pixels[i] = (layer.pixels[i] & 0xFF000000u) | g * 0x010101u;
    }
    const std::vector<uint8_t> alphaBefore = alpha;
    BlurFilter blur;
    const bool colourOnly[4] = {true, true, true, false};
    blur.blurChannels(layer.view(), 2, 2, colourOnly, 1);
    for (KernelPath path : {KernelPath::kScalar, KernelPath::kWide}) {
      std::vector<uint8_t> got = grey, scratch;
      ASSERT_TRUE(BlurGreyPlanes({got.data(), alpha.data(), w, h, w}, scratch, path));
      for (size_t i = 0; i < got.size(); ++i) {
        if (alpha[i] == 0) continue;
        ASSERT_EQ(got[i] * 0x010101u, layer.pixels[i] & 0x00FFFFFFu)
            << "pixel " << i << ", path " << int(path);
      }
    }
    EXPECT_EQ(alpha, alphaBefore);
  }
}

}  // namespace
}  // namespace lx
