// Outlines thousands of pixels across drawn into small buffers. Work images once followed the outline's
// size (half a gigabyte and seconds for these two blocks); now they follow what can reach the buffer.
// Each must draw, and draw what the shape puts there.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "api/process_handle.h"
#include "settings/render_process.h"
#include "tests/support/contour_records.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {

// One contour, 44 bytes: a sliver of a triangle from (10, 60) up to (4106, -15300) and back down the
// right-hand side and closed by hand, of which the buffer sees only its lower-left tip.
std::vector<uint8_t> TallSliver() {
  ContourRecords r;
  r.begin(Pt(10, 60)).line({Pt(4106, -15300), Pt(4106, 60), Pt(10, 60)}).end();
  return r.bytes();
}

// One contour, 36 bytes: a right triangle with 10500-pixel legs whose corner lies far above and to the
// left of the buffer, so that the whole buffer lies deep inside it, more than a full blur's reach from
// every edge.
std::vector<uint8_t> HugeTriangle() {
  ContourRecords r;
  r.begin(Pt(-4000, -4000)).line({Pt(6500, -4000), Pt(-4000, 6500)}).end();
  return r.bytes();
}

TEST(OversizedOutline, BlocksHaveTheSizesFound) {
  EXPECT_EQ(TallSliver().size(), 44u);
  EXPECT_EQ(HugeTriangle().size(), 36u);
}

// The sliver's edges in the buffer: the slanted side from (10, 60) to (4106, -15300) and the bottom
// y = 60. A pixel whose centre lies more than 1.5 pixels from both is wholly inside or outside.
TEST(OversizedOutline, TallSliverDrawsItsTipInASmallBuffer) {
  const TextScene scene(TallSliver());
  Image image(89, 228);
  Process p;
  ASSERT_TRUE(p.render(scene, image));

  const double dx = 4106.0 - 10.0, dy = -15300.0 - 60.0, length = std::hypot(dx, dy);
  size_t inside = 0, outside = 0;
  for (int32_t y = 0; y < image.h(); ++y) {
    for (int32_t x = 0; x < image.w(); ++x) {
      const double cx = x + 0.5, cy = y + 0.5;
      // Positive on the side of the slanted edge that the triangle lies on.
      const double fromSlant = (dx * (cy - 60.0) - dy * (cx - 10.0)) / length;
      const double fromBottom = 60.0 - cy;
      if (std::abs(fromSlant) < 1.5 || std::abs(fromBottom) < 1.5) continue;
      const bool in = fromSlant > 0 && fromBottom > 0;
      ASSERT_EQ(image.at(x, y), in ? 0xFFFFFFFFu : 0u) << "at " << x << ", " << y;
      ++(in ? inside : outside);
    }
  }
  EXPECT_GT(inside, 3000u);
  EXPECT_GT(outside, 10000u);
}

// Face and a 2-pixel Outline, both blurred at the largest level: deep inside a uniform shape the blur
// has nothing to soften, so the buffer comes out as one opaque Face colour.
TEST(OversizedOutline, HugeBlurredTriangleFillsTheBufferEvenly) {
  const TextScene scene(HugeTriangle());
  Image image(300, 300);
  Process p;
  p.face(255, 240, 200, 40).outline(255, 0, 0, 0).thickness(2).blur(254, 254, 0);
  ASSERT_TRUE(p.render(scene, image));

  const uint32_t first = image.at(0, 0);
  EXPECT_GE(Alpha(first), 250);
  EXPECT_NEAR(Red(first), 240, 2);
  EXPECT_NEAR(Green(first), 200, 2);
  EXPECT_NEAR(Blue(first), 40, 2);
  EXPECT_EQ(image.countOther(first), 0u);
}

// Memory follows the buffer: a process keeps its work images only while they are small, so a kept image
// after each of these draws shows none was sized from the outline (the sliver's own box alone would take
// 250 MB, the triangle's 440 MB). The triangle is drawn with its Outline but unblurred here: at level 254
// the blur's reach alone takes the work image past what a process keeps.
TEST(OversizedOutline, WorkImagesStaySmall) {
  struct Case {
    std::vector<uint8_t> block;
    int32_t width, height;
    bool outlined;
  };
  const Case cases[] = {{TallSliver(), 89, 228, false}, {HugeTriangle(), 300, 300, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.width);
    const TextScene scene(c.block);
    Image image(c.width, c.height);
    Process p;
    if (c.outlined) p.face(255, 240, 200, 40).outline(255, 0, 0, 0).thickness(2);
    ASSERT_TRUE(p.render(scene, image));
    const RenderProcess* process = ProcessFromSlot(p.slot());
    ASSERT_NE(process, nullptr);
    EXPECT_GT(process->scratch[0].ownedBytes(), 0u);
  }
}

}  // namespace
}  // namespace lx::test
