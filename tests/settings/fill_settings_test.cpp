#include "settings/fill_settings.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <new>
#include <vector>

#include "tests/support/guard_pages.h"

namespace lx {
namespace {

using Colours = std::vector<uint32_t>;

TEST(FillSettings, ColoursPackAlphaOnTopAndTakeTheStopTableOutOfForceButKeepIt) {
  FillSettings f;
  const uint32_t colours[] = {0x11223344u, 0x55667788u};
  ASSERT_TRUE(f.setGradientColours(colours, nullptr, size_t{2}));
  f.setEndColour(0x0A0B0Cu, 0x00);
  ASSERT_TRUE(f.setGradientColours(colours, nullptr, size_t{2}));
  f.setStartColour(0xFF123456u, 0x7F);  // bits above the colour bytes are ignored
  EXPECT_EQ((Colours{f.startColour, f.endColour, f.useGradientTable}),
            (Colours{0x7F123456u, 0x000A0B0Cu, 0}));
  EXPECT_EQ(f.gradientColours, Colours(colours, colours + 2));
}

TEST(FillSettings, ColourStopsDropZeroWeightsCountNoWeightsAsOneAndKeepTheFirst256) {
  const struct {
    Colours stops, kept, weights;  // no stops: none given
  } cases[] = {
      {{5, 0, 5}, {0xA, 0xC}, {5, 5}},
      {{0, 0, 0}, {0xA, 0xB, 0xC}, {1, 1, 1}},
      {{3, 9, 1}, {0xA, 0xB, 0xC}, {3, 9, 1}},
      {{}, {0xA, 0xB, 0xC}, {1, 1, 1}},
      {{0x80000000u, 0x80000000u, 0}, {0xA, 0xB, 0xC}, {1, 1, 1}},  // the sum wraps to 0: no weights
  };
  const uint32_t colours[] = {0xA, 0xB, 0xC};
  for (const auto& c : cases) {
    FillSettings f;
    EXPECT_TRUE(f.setGradientColours(colours, c.stops.empty() ? nullptr : c.stops.data(), size_t{3}));
    EXPECT_EQ(f.gradientColours, c.kept);
    EXPECT_EQ(f.gradientStops, c.weights);
    EXPECT_EQ(f.useGradientTable, 1);
  }
  // Of 300 entries the first 256 are kept, a dropped one not counting; through the byte count at most 255.
  FillSettings f;
  Colours many(300), stops(300, 2), kept;
  for (uint32_t i = 0; i < 300; ++i) many[i] = i;
  stops[10] = 0;
  for (uint32_t i = 0; kept.size() < 256; ++i) {
    if (i != 10) kept.push_back(i);
  }
  EXPECT_TRUE(f.setGradientColours(many.data(), stops.data(), many.size()));
  EXPECT_EQ(f.gradientColours, kept);
  EXPECT_EQ(f.gradientStops, Colours(256, 2));
  EXPECT_TRUE(f.setGradientColours(many.data(), nullptr, many.size()));
  EXPECT_EQ(f.gradientColours, Colours(many.begin(), many.begin() + 256));
  const uint8_t n = 255;
  EXPECT_TRUE(f.setGradientColours(many.data(), nullptr, &n));
  EXPECT_EQ(f.gradientColours, Colours(many.begin(), many.begin() + 255));
  // A failed call empties the lists and leaves the flag as it was.
  const uint8_t zero = 0;
  EXPECT_FALSE(f.setGradientColours(many.data(), nullptr, &zero));
  EXPECT_TRUE(f.gradientColours.empty() && f.gradientStops.empty());
  EXPECT_EQ(f.useGradientTable, 1);
  ASSERT_TRUE(f.setGradientColours(many.data(), nullptr, &n));
  f.setStartColour(0, 0);
  EXPECT_FALSE(f.setGradientColours(nullptr, nullptr, &n));
  EXPECT_FALSE(f.setGradientColours(many.data(), nullptr, nullptr));
  EXPECT_TRUE(f.gradientColours.empty());
  EXPECT_EQ(f.useGradientTable, 0);
}

TEST(FillSettings, GradientsAndAreasAreStoredClamped) {
  // type, p1, p2 -> type, from, to, angle stored; an unknown type stores 0 and keeps the parameters.
  const double cases[][7] = {
      {2, -0.5, 2.0, 2, 0, 1, 0},        {3, -10, 0, 3, 0, 1, -kPi},           {1, 0, 0, 1, 0, 1, -kPi},
      {7, 0, 0, 0, 0, 1, -kPi},          {2, 0.25, 0.75, 2, 0.25, 0.75, -kPi}, {3, 10, 0, 3, 0.25, 0.75, kPi},
      {3, 0.75, 0, 3, 0.25, 0.75, 0.75}, {-1, 0, 0, 0, 0.25, 0.75, 0.75}};
  FillSettings f;
  for (const auto& c : cases) {
    f.setGradient(static_cast<int32_t>(c[0]), &c[1], &c[2]);
    EXPECT_EQ((std::vector<double>{double(f.gradientType), f.gradientFrom, f.gradientTo, f.gradientAngle}),
              (std::vector<double>{c[3], c[4], c[5], c[6]}))
        << c[0] << " " << c[1] << " " << c[2];
  }
  f.setGradientParameters(std::nan(""), 0.25);
  EXPECT_TRUE(std::isnan(f.gradientFrom));
  // The area is stored even when empty, which the result tells.
  EXPECT_FALSE(f.setUserGradientArea(10, 10, 10, 50));
  const IntRect& a = f.userGradientArea;
  EXPECT_EQ((std::vector<int32_t>{a.left, a.top, a.right, a.bottom}), (std::vector<int32_t>{10, 10, 10, 50}));
  EXPECT_TRUE(f.setUserGradientArea(-5, 2, 20, 3));
  EXPECT_FALSE(f.setUserGradientArea(20, 0, 10, 10));
}

TEST(FillSettings, TextureIsAnOpaqueCopyAndBadArgumentsRemoveIt) {
  FillSettings f;
  Colours pixels = {0x00123456u, 0x80FFFFFFu, 0x01000000u, 0xFF000001u, 0u, 0x7F7F7F7Fu};
  ASSERT_TRUE(f.setTexture(pixels.data(), 3, 2));
  pixels.assign(pixels.size(), 0xDEADBEEFu);
  const TextureImage& t = *f.texture;
  EXPECT_EQ(
      (std::vector<int32_t>{t.width, t.height, t.bounds.left, t.bounds.top, t.bounds.right, t.bounds.bottom}),
      (std::vector<int32_t>{3, 2, 0, 0, 3, 2}));
  EXPECT_FALSE(platform::IsNoBlock(t.handle));
  EXPECT_EQ(Colours(t.pixels, t.pixels + 6),
            (Colours{0xFF123456u, 0xFFFFFFFFu, 0xFF000000u, 0xFF000001u, 0xFF000000u, 0xFF7F7F7Fu}));
  // A null pointer, sizes below 1, and sizes whose bytes reach 2^32 and more.
  const int32_t bad[][2] = {{2, 2},        {0, 2}, {2, 0}, {-1, 2}, {2, -3}, {0x7FFFFFFF, 0x7FFFFFFF},
                            {65536, 16384}};
  for (const auto& b : bad) {
    ASSERT_TRUE(f.setTexture(pixels.data(), 2, 2));
    EXPECT_FALSE(f.setTexture(b[0] == 2 && b[1] == 2 ? nullptr : pixels.data(), b[0], b[1]));
    EXPECT_EQ(f.texture, nullptr) << b[0] << " x " << b[1];
  }
}

TEST(FillSettings, TextureWithoutAPixelBlockKeepsItsSize) {
  // A caller buffer just over what one global block may hold: readable and writable, but the copy
  // cannot be allocated. The mapping is never touched, so it costs address space only.
  const int32_t width = 32768, height = 16385;
  const uint64_t bytes = uint64_t{width} * height * 4;
  // 64-bit Windows gives such a block (the limit is that of 32-bit processes and of the stand-in).
  if (platform::MemoryHandle probe =
          platform::GlobalAlloc(platform::kGmemMoveable, static_cast<size_t>(bytes))) {
    platform::GlobalFree(probe);
    GTEST_SKIP() << "this system allocates a block of " << bytes << " bytes; the failure cannot be made";
  }
  std::unique_ptr<test::GuardedPages> pages;
  try {
    pages = std::make_unique<test::GuardedPages>(static_cast<size_t>(bytes / 4096 + 1));
  } catch (const std::bad_alloc&) {
    GTEST_SKIP() << "this address space cannot map a buffer of " << bytes << " bytes";
  }
  FillSettings f;
  ASSERT_TRUE(f.setTexture(pages->page(0), width, height));
  EXPECT_EQ(f.texture->pixels, nullptr);
  EXPECT_TRUE(platform::IsNoBlock(f.texture->handle));
  EXPECT_EQ((std::vector<int32_t>{f.texture->width, f.texture->height}),
            (std::vector<int32_t>{width, height}));
}

}  // namespace
}  // namespace lx
