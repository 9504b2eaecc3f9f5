#include "effects/emboss_filter.h"
#include <gtest/gtest.h>
#include <vector>
#include "effects_test_image.h"

namespace lx {
namespace {
using namespace effects_test;

// Both paths give the same relief: random pixels (steep, facing every way, some facing away) and flat
// runs (the background's grey), with transparent pixels, at several lights and sizes down to three rows.
TEST(EmbossFilter, WidePathGivesThePortableRelief) {
  for (const auto& [w, h] : {std::pair{1, 3}, {5, 3}, {33, 17}, {64, 40}}) {
    for (double azimuth : {0.0, 2.3, -1.1}) {
      TestImage image = RandomImage(w, h, static_cast<unsigned>(w * h), 0.3);
      for (int32_t x = 0; x < w / 2; ++x) image.at(x, h / 2) = 0xFF808080u;
      TestImage wide = image, portable = image;
      EmbossFilter emboss;
      emboss.setAzimuth(azimuth);
      std::vector<uint32_t> scratch;
      emboss.apply(wide.view(), scratch, KernelPath::kWide);
      emboss.apply(portable.view(), scratch, KernelPath::kScalar);
      EXPECT_EQ(wide.pixels, portable.pixels) << w << "x" << h << ", azimuth " << azimuth;
      EXPECT_NE(wide.pixels, image.pixels);
    }
  }
}

}  // namespace
}  // namespace lx
