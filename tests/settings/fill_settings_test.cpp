#include "settings/fill_settings.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <vector>

#include "tests/support/guard_pages.h"

namespace lx {
namespace {

using Colours = std::vector<uint32_t>;

TEST(FillSettings, ColoursPackAlphaOnTopAndTakeTheStopTableOutOfForce) {
  FillSettings f;
  uint32_t one = 1;  // caller colours must be writable
  ASSERT_TRUE(f.setGradientColours(&one, nullptr, size_t{1}));
  f.setEndColour(0xFF0A0B0Cu, 0x00);  // bits above the colour bytes are ignored
  EXPECT_EQ((Colours{f.endColour, f.useGradientTable}), (Colours{0x000A0B0Cu, 0}));
  ASSERT_TRUE(f.setGradientColours(&one, nullptr, size_t{1}));
  f.setStartColour(0x123456u, 0x7F);
  EXPECT_EQ((Colours{f.startColour, f.endColour, f.useGradientTable}),
            (Colours{0x7F123456u, 0x000A0B0Cu, 0}));
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
  // A failed call (a count of 0, no count, no colours) empties the lists and leaves the flag as it was.
  const uint8_t zero = 0;
  EXPECT_FALSE(f.setGradientColours(many.data(), nullptr, &zero) ||
               f.setGradientColours(many.data(), nullptr, nullptr));
  EXPECT_TRUE(f.gradientColours.empty() && f.gradientStops.empty() && f.useGradientTable == 1);
  f.setStartColour(0, 0);
  EXPECT_FALSE(f.setGradientColours(nullptr, nullptr, &n));
  EXPECT_EQ(f.useGradientTable, 0);
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
