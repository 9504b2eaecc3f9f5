// An extruded Shadow fills the way from the glyphs to their offset copy along either axis alone, in both
// directions, as well as along a slant: the plain offset Shadow leaves that way open.
#include <gtest/gtest.h>

#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {

size_t ShadowPixels(const TextScene& scene, int32_t dx, int32_t dy, uint8_t extruded) {
  Image image(110, 110);
  Process p;
  p.shadow(255, 0, 0, 0).shadowVisible(1).shadowOnly(1).shadowOffset(dx, dy).extrude(extruded);
  EXPECT_TRUE(p.render(scene, image));
  return image.countOther(0);
}

TEST(ExtrusionDirections, ExtrusionFillsTheWayAlongEveryDirection) {
  const TextScene scene("I", 50, 45, 75);
  const struct { int32_t dx, dy; } offsets[] = {{0, 12}, {0, -12}, {12, 0}, {-12, 0}, {9, 9}};
  for (const auto& o : offsets) {
    SCOPED_TRACE(testing::Message() << "offset " << o.dx << ", " << o.dy);
    const size_t plain = ShadowPixels(scene, o.dx, o.dy, 0);
    const size_t extruded = ShadowPixels(scene, o.dx, o.dy, 1);
    EXPECT_GT(plain, 0u);
    // The stem's far side moves by the whole offset: at least that many more rows or columns covered.
    EXPECT_GT(extruded, plain + 5 * 10u);
  }
}

}  // namespace
}  // namespace lx::test
