#include "effects/alpha_plane.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <random>
#include <vector>
#include "effects/blur_filter.h"
#include "effects/compositing.h"
#include "effects/shadow_extrusion.h"
#include "platform/platform.h"
#include "effects_test_image.h"

namespace lx {
namespace {
using namespace effects_test;

// A block in one colour with soft edges, as the Shadow's shape is drawn: clear runs, opaque runs and
// a translucent pixel at each end; the clear pixels carry random colour bytes (the colour is `colour`).
TestImage OneColourImage(int32_t w, int32_t h, unsigned seed, uint32_t colour) {
  TestImage image(w, h);
  std::mt19937 rng(seed);
  for (int32_t y = 0; y < h; ++y) {
    for (int32_t x = 0; x < w; ++x) {
      const unsigned kind = rng() % 8;
      image.at(x, y) = kind < 3   ? rng() & 0x00FFFFFFu
                       : kind < 6 ? 0xFF000000u | colour
                                  : (1 + rng() % 254) << 24 | colour;
    }
  }
  return image;
}

TEST(AlphaPlane, OneColourTellsTheColourOfEveryPixelWithAlpha) {
  TestImage image = OneColourImage(23, 7, 1, 0x123456u);
  uint32_t colour = 0;
  EXPECT_TRUE(OneColour(image.view(), &colour));
  EXPECT_EQ(colour, 0x123456u);
  image.at(22, 6) = 0x01123457u;  // the last pixel of all, past the four-pixel groups
  EXPECT_FALSE(OneColour(image.view(), &colour));
  image.at(22, 6) = 0x00123457u;  // clear: its colour does not count
  EXPECT_TRUE(OneColour(image.view(), &colour));
  image.at(4, 2) = 0x80123457u;
  EXPECT_FALSE(OneColour(image.view(), &colour));
  TestImage clear(9, 3, 0x00ABCDEFu);
  colour = 1;
  EXPECT_TRUE(OneColour(clear.view(), &colour));
  EXPECT_EQ(colour, 0u);
}

// Stamping the plane gives the alpha BlendOver gives the pixels at every place, both paths; the colour
// of a pixel left clear stays.
TEST(AlphaPlane, BlendAlphaOverIsBlendOverForOneColour) {
  const TestImage source = OneColourImage(37, 9, 2, 0x00FF8040u);
  const TestImage base = OneColourImage(41, 12, 3, 0x00FF8040u);
  for (const auto& [x, y] : {std::pair{0, 0}, {5, 2}, {-7, -3}, {20, 8}, {-36, 11}, {40, -8}, {41, 0}}) {
    TestImage want = base;
    TestImage copy = source;
    BlendOver({copy.view(), {x, y, x + 37, y + 9}}, {want.view(), {0, 0, 41, 12}});
    for (KernelPath path : {KernelPath::kScalar, KernelPath::kWide}) {
      TestImage got = base;
      std::vector<uint8_t> s(37 * 9), d(41 * 12);
      const AlphaPlane from{s.data(), 37, 9, 37}, onto{d.data(), 41, 12, 41};
      TakeAlpha(copy.view(), from, path);
      TakeAlpha(got.view(), onto, path);
      BlendAlphaOver(from, onto, x, y, path);
      PutAlpha(onto, 0x00FF8040u, got.view(), path);
      EXPECT_EQ(got.pixels, want.pixels)
          << x << ", " << y << (path == KernelPath::kWide ? " wide" : " scalar");
    }
  }
}

// The radius-one plane blur gives the layer blur's alpha, once or three times over, both paths.
TEST(AlphaPlane, RadiusOneBlurIsTheLayerBlursAlpha) {
  for (const auto& [w, h] : {std::pair{1, 1}, {15, 2}, {16, 1}, {40, 23}, {3, 50}}) {
    for (int repeat : {1, 3}) {
      TestImage image = RandomImage(w, h, static_cast<unsigned>(w * h + repeat), 0.4);
      BlurFilter blur;
      const bool alphaOnly[4] = {false, false, false, true};
      TestImage want = image;
      blur.blurChannels(want.view(), 1, 1, alphaOnly, repeat);
      for (KernelPath path : {KernelPath::kScalar, KernelPath::kWide}) {
        std::vector<uint8_t> plane(static_cast<size_t>(w) * h), rows(2 * static_cast<size_t>(w) + 2);
        const AlphaPlane p{plane.data(), w, h, w};
        TakeAlpha(image.view(), p);
        BlurAlphaRadiusOne(p, repeat, rows.data(), path);
        for (size_t i = 0; i < plane.size(); ++i)
          ASSERT_EQ(plane[i], want.pixels[i] >> 24)
              << w << "x" << h << " pixel " << i << " repeat " << repeat;
      }
    }
  }
}

// The extrusion and its softening on a block in one colour, worked on its alpha, give what they do
// worked on the pixels, taken literally: every LineDDA point lays the untouched copy with BlendOver;
// the softening blurs alpha with radius 1 three times and steps it to 2a - A/2 within [0, A]. The
// extrusion matches everywhere, the softening's alpha everywhere and its colour wherever alpha is left.
TEST(AlphaPlane, ExtrusionAndSofteningOfOneColourAsOnThePixels) {
  for (const auto& [dx, dy] : {std::pair{8, 6}, {-3, 11}, {30, -2}, {1, 1}}) {
    const TestImage block = OneColourImage(44, 31, static_cast<unsigned>(dx + 100 * dy), 0x00406080u);
    TestImage want = block, copy = block;
    PlacedView walk[2] = {{copy.view(), {0, 0, 44, 31}}, {want.view(), {}}};
    const auto stamp = [](int x, int y, intptr_t data) {
      PlacedView* w = reinterpret_cast<PlacedView*>(data);
      w[1].rect = {x, y, x + w[1].view.width, y + w[1].view.height};
      BlendOver(w[0], w[1]);
    };
    platform::LineDDA(-dx, -dy, 0, 0, stamp, reinterpret_cast<intptr_t>(walk));
    TestImage got = block;
    Extrude(got.view(), dx, dy);
    ASSERT_EQ(got.pixels, want.pixels) << dx << ", " << dy;

    BlurFilter blur;
    SoftenExtrusion(got.view(), &blur, -1);
    const int32_t body = HighestAlpha(want.view());
    const bool alphaOnly[4] = {false, false, false, true};
    blur.blurChannels(want.view(), 1, 1, alphaOnly, 3);
    for (uint32_t& p : want.pixels) {
      const int32_t alpha = std::clamp(2 * static_cast<int32_t>(p >> 24) - body / 2, 0, body);
      p = (p & 0x00FFFFFFu) | static_cast<uint32_t>(alpha) << 24;
    }
    for (size_t i = 0; i < got.pixels.size(); ++i) {
      ASSERT_EQ(got.pixels[i] >> 24, want.pixels[i] >> 24) << "pixel " << i;
      if (got.pixels[i] >> 24) {
        ASSERT_EQ(got.pixels[i], want.pixels[i]) << "pixel " << i;
      }
    }
  }
}

// The extrusion and softening in one go give what the two steps give one after the other, for a block
// in one colour (on its plane) and one in two (on the pixels), building up or even.
TEST(AlphaPlane, ExtrudeAndSoftenIsTheTwoStepsInTurn) {
  for (bool oneColour : {true, false}) {
    for (uint8_t extrudedShadowColour : {uint8_t{1}, uint8_t{0}}) {
      TestImage block = OneColourImage(37, 26, extrudedShadowColour + 7u, 0x00102030u);
      if (!oneColour) block.at(20, 13) = 0xFF102031u;
      TestImage want = block;
      BlurFilter blur;
      ExtrudeShadow(want.view(), 6, -4, extrudedShadowColour);
      SoftenExtrusion(want.view(), &blur);
      ExtrudeAndSoften(block.view(), 6, -4, extrudedShadowColour, &blur);
      EXPECT_EQ(block.pixels, want.pixels)
          << (oneColour ? "one colour" : "two colours") << ", even " << (extrudedShadowColour != 1);
    }
  }
}

}  // namespace
}  // namespace lx
