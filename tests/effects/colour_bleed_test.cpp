// The colour bleed before the emboss: every giving pixel, in row order, paints the clear pixels of its
// square (a literal reading of the rule, on random images).
#include <gtest/gtest.h>
#include <vector>
#include "effects/colour_bleed.h"
#include "effects_test_image.h"

namespace lx {
namespace {
using namespace effects_test;

// Below 1, or without room for a giver (2d at least a side), nothing changes.
TEST(SquareColourBleed, EveryGiverInRowOrderPaintsItsSquare) {
  for (int32_t d : {1, 3, 0, 20, INT32_MAX}) {
    TestImage image = RandomImage(41, 29, d, 0.9), expected = image;
    for (int32_t y = d; y < 29 - d; ++y)
      for (int32_t x = d; x < 41 - d; ++x)
        for (int32_t v = y - d; (expected.at(x, y) >> 24) && v <= y + d; ++v)
          for (int32_t u = x - d; u <= x + d; ++u)
            if ((expected.at(u, v) >> 24) == 0) expected.at(u, v) = expected.at(x, y) & 0x00FFFFFFu;
    std::vector<int32_t> scratch;
    SquareColourBleed(image.view(), d, scratch);
    EXPECT_EQ(image.pixels, expected.pixels) << d;
  }
}
}  // namespace
}  // namespace lx
