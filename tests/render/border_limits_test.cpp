// The 3D border at the ends of its ranges: the lowest and highest elevation with one pass and with the
// most passes each draw a border, and a border on a hairline Outline (half thickness 0) draws none.
#include <gtest/gtest.h>

#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {

Image Draw(const TextScene& scene, int32_t thickness, bool border, uint8_t elevation, uint8_t passes) {
  Image image(120, 90, Pixel(255, 30, 30, 30));
  Process p;
  p.face(255, 230, 230, 230).outline(255, 200, 60, 20).thickness(thickness);
  if (border) p.border3D(elevation, passes, 0.8);
  EXPECT_TRUE(p.render(scene, image));
  return image;
}

TEST(BorderLimits, EveryEndOfTheRangesDrawsABorder) {
  const TextScene scene("H", 70, 20, 75);
  const Image plain = Draw(scene, 4, false, 0, 0);
  const struct { uint8_t elevation, passes; } ends[] = {{3, 1}, {3, 60}, {60, 1}, {60, 60}};
  for (const auto& e : ends) {
    SCOPED_TRACE(testing::Message() << "elevation " << int{e.elevation} << ", " << int{e.passes}
                                    << " passes");
    EXPECT_TRUE(Draw(scene, 4, true, e.elevation, e.passes) != plain);
  }
  EXPECT_TRUE(Draw(scene, 0, true, 30, 5) == Draw(scene, 0, false, 0, 0));
}

}  // namespace
}  // namespace lx::test
