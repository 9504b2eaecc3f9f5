#include "settings/fill_settings.h"
#include <gtest/gtest.h>
#include <vector>

namespace lx {
namespace {
using Colours = std::vector<uint32_t>;

TEST(FillSettings, ColourStopsKeepTheirWeightRulesAndCapAndColoursTakeThemOutOfForce) {
  const struct {
    Colours stops, kept, weights;  // no stops: none given
  } cases[] = {
      {{5, 0, 5}, {0xA, 0xC}, {5, 5}},
      {{0, 0, 0}, {0xA, 0xB, 0xC}, {1, 1, 1}},
      {{3, 9, 1}, {0xA, 0xB, 0xC}, {3, 9, 1}},
      {{}, {0xA, 0xB, 0xC}, {1, 1, 1}},
      {{0x80000000u, 0x80000000u, 0}, {0xA, 0xB, 0xC}, {1, 1, 1}}};  // the sum wraps to 0: no weights
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
  Colours many(300), stops(300, 2);
  for (uint32_t i = 0; i < 300; ++i) many[i] = i;
  stops[10] = 0;
  Colours kept(many.begin(), many.begin() + 257);
  kept.erase(kept.begin() + 10);
  EXPECT_TRUE(f.setGradientColours(many.data(), stops.data(), many.size()));
  EXPECT_EQ(f.gradientColours, kept);
  EXPECT_EQ(f.gradientStops, Colours(256, 2));
  EXPECT_TRUE(f.setGradientColours(many.data(), nullptr, many.size()));
  EXPECT_EQ(f.gradientColours, Colours(many.begin(), many.begin() + 256));
  const uint8_t n = 255;
  EXPECT_TRUE(f.setGradientColours(many.data(), nullptr, &n));
  EXPECT_EQ(f.gradientColours, Colours(many.begin(), many.begin() + 255));
  // A failed call (a count of 0, no count, no colours) empties the lists and leaves the flag as it was;
  // either colour takes the table out of force.
  const uint8_t zero = 0;
  EXPECT_FALSE(f.setGradientColours(many.data(), nullptr, &zero) ||
               f.setGradientColours(many.data(), nullptr, nullptr));
  EXPECT_TRUE(f.gradientColours.empty() && f.gradientStops.empty() && f.useGradientTable == 1);
  f.setEndColour(0x0A0B0Cu, 0);
  EXPECT_EQ(f.useGradientTable, 0);
  ASSERT_TRUE(f.setGradientColours(many.data(), nullptr, &n));
  f.setStartColour(0x0A0B0Cu, 0);
  EXPECT_FALSE(f.setGradientColours(nullptr, nullptr, &n));
  EXPECT_EQ(f.useGradientTable, 0);
}
}  // namespace
}  // namespace lx
