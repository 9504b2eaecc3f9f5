// Outlines thousands of pixels across drawn into small buffers. Work images once followed the outline's
// size (half a gigabyte and seconds for the sliver and the triangle; 440 MB and over two minutes in the
// fuzzing build for the triangle's extruded Shadow, whose softening scales by the densest pixel of the
// block); now they follow what can reach the buffer. Each must draw what the shape puts there, and the
// process must still keep its work image afterwards: none was sized from the outline.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "api/process_handle.h"
#include "render/render_process.h"
#include "tests/support/contour_records.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {

// 44 bytes: a sliver of a triangle from (10, 60) up to (4106, -15300) and back down the right-hand side,
// closed by hand, of which the buffer sees only its lower-left tip.
std::vector<uint8_t> TallSliver() {
  ContourRecords r;
  r.begin(Pt(10, 60)).line({Pt(4106, -15300), Pt(4106, 60), Pt(10, 60)}).end();
  return r.bytes();
}

// 36 bytes: a right triangle with 10500-pixel legs whose corner lies far above and to the left of the
// buffer, so that the whole buffer lies deep inside it, more than a full blur's reach from every edge.
std::vector<uint8_t> HugeTriangle() {
  ContourRecords r;
  r.begin(Pt(-4000, -4000)).line({Pt(6500, -4000), Pt(-4000, 6500)}).end();
  return r.bytes();
}

// A 45-degree band 0.4 pixels across (horizontally) from (-30, -30) to `length` pixels further down
// and right. A shift by one pixel each way maps it onto itself, so every pixel along it that it crosses
// whole is covered alike, and none is covered fully.
std::vector<uint8_t> ThinDiagonalBand(double length) {
  ContourRecords r;
  const double a = -30.0, b = a + length;
  r.begin(Pt(a, a)).line({Pt(b, b), Pt(b + 0.4, b), Pt(a + 0.4, a), Pt(a, a)}).end();
  return r.bytes();
}

// An outline block the fuzzer found: contours thousands of pixels across whose part near the 64 x 44
// buffer holds no pixel at the Shadow's full alpha.
const std::vector<uint8_t> kThinNearTheBuffer = {
    0x4c, 0x00, 0x00, 0x00, 0x18, 0x00, 0x00, 0x00, 0x00, 0xd4, 0x0c, 0x00, 0x00, 0xd0, 0x14, 0x00,
    0x00, 0x4b, 0x07, 0x00, 0x00, 0xc4, 0x05, 0x00, 0x00, 0xd0, 0x14, 0x00, 0x00, 0xa8, 0x00, 0x18,
    0x00, 0xfb, 0x62, 0x69, 0x00, 0x00, 0x1e, 0x70, 0x00, 0x00, 0x18, 0x00, 0x00, 0x98, 0x06, 0x00,
    0x00, 0x80, 0x06, 0x00, 0x00, 0xfc, 0x0b, 0x04, 0x00, 0x80, 0xfb, 0x69, 0x1e, 0x00, 0x70, 0x62,
    0x00, 0x00, 0xe9, 0xff, 0xfa, 0x13, 0x0d, 0x00, 0x00, 0x00, 0x18, 0x00, 0x24, 0x00, 0x00, 0x00,
    0x18, 0x00, 0x00, 0x00, 0x02, 0xe4, 0x06, 0x00, 0x00, 0x90, 0x00, 0x11, 0x01, 0x00, 0x02, 0x00,
    0x00, 0xb0, 0x00, 0x18, 0x00, 0x0a, 0x00, 0x4c, 0x00, 0x00, 0x00, 0x18, 0x00, 0x9c, 0x0a, 0x00};

void ExpectWorkImageKept(Process& p) {
  const RenderProcess* process = ProcessFromSlot(p.slot());
  ASSERT_NE(process, nullptr);
  EXPECT_GT(process->scratch[0].ownedBytes(), 0u);
}

// The sliver's edges in the buffer: the slanted side and the bottom y = 60. A pixel whose centre lies
// more than 1.5 pixels from both is wholly inside or outside.
TEST(OversizedOutline, TallSliverDrawsItsTipInASmallBuffer) {
  ASSERT_EQ(TallSliver().size(), 44u);
  const TextScene scene(TallSliver());
  Image image(89, 228);
  Process p;
  ASSERT_TRUE(p.render(scene, image));
  const double dx = 4106.0 - 10.0, dy = -15300.0 - 60.0, length = std::hypot(dx, dy);
  size_t inside = 0, outside = 0;
  for (int32_t y = 0; y < image.h(); ++y) {
    for (int32_t x = 0; x < image.w(); ++x) {
      const double fromSlant = (dx * (y + 0.5 - 60.0) - dy * (x + 0.5 - 10.0)) / length,
                   fromBottom = 59.5 - y;
      if (std::abs(fromSlant) < 1.5 || std::abs(fromBottom) < 1.5) continue;
      const bool in = fromSlant > 0 && fromBottom > 0;
      ASSERT_EQ(image.at(x, y), in ? 0xFFFFFFFFu : 0u) << "at " << x << ", " << y;
      ++(in ? inside : outside);
    }
  }
  EXPECT_GT(inside, 3000u);
  EXPECT_GT(outside, 10000u);
  ExpectWorkImageKept(p);
}

// Deep inside a uniform shape a blur has nothing to soften: Face and a 2-pixel Outline blurred at the
// largest level come out as one opaque Face colour.
TEST(OversizedOutline, HugeBlurredTriangleFillsTheBufferEvenly) {
  ASSERT_EQ(HugeTriangle().size(), 36u);
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
  // Unblurred (at level 254 the blur's reach alone takes the work image past what a process keeps).
  p.blur(0, 0, 0);
  ASSERT_TRUE(p.render(scene, image));
  ExpectWorkImageKept(p);
}

// Every pixel carries the shape and all three stamps, whole: an opaque Shadow stays opaque; a
// translucent one keeps its alpha as one even body (colouring 0) and builds up 160 -> 220 -> 242 -> 250
// with the stamps (colouring 1). With the Face on top the buffer shows the opaque Face alone.
TEST(OversizedOutline, HugeExtrudedTriangleFillsTheBufferWithTheBody) {
  const struct {
    uint8_t alpha, colouring, face;
    uint32_t expected;
  } cases[] = {{255, 1, 0, 0xFF000000u},
               {255, 0, 0, 0xFF000000u},
               {160, 0, 0, 0xA0204060u},
               {160, 1, 0, 0xFA204060u},
               {255, 0, 255, 0xFF0A141Eu}};
  const TextScene scene(HugeTriangle());
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << int{c.alpha} << " colouring " << int{c.colouring});
    Image image(64, 48);
    Process p;
    p.shadow(c.alpha, 0x20, 0x40, 0x60).shadowOnly(c.face == 0).extrude(1, c.colouring).shadowOffset(3, 3);
    if (c.alpha == 255) p.shadow(255, 0, 0, 0);
    if (c.face != 0) p.face(255, 10, 20, 30).outline(255, 200, 0, 0).thickness(3);
    ASSERT_TRUE(p.render(scene, image));
    EXPECT_EQ(image.countOther(c.expected), 0u);
    ExpectWorkImageKept(p);
  }
}

// An unblurred extrusion smooths by the densest pixel of the whole Shadow image. When the part near the
// buffer does not hold the densest value the stamps allow, the whole image used to be drawn to find it:
// 13 s at -O2 for the fuzzer's input, whose image was 6144 x 19455. Past a bounded size the part near
// the buffer now stands in. Along a thin 45-degree band it holds the same densest pixel as the whole, so
// a band 9000 pixels long gives exactly what a band 200 long, still measured whole, gives.
TEST(OversizedOutline, HugeThinExtrudedBandSmoothsByThePartNearTheBuffer) {
  const TextScene shortBand(ThinDiagonalBand(200)), longBand(ThinDiagonalBand(9000));
  for (const uint8_t colouring : {0, 1}) {
    SCOPED_TRACE(testing::Message() << "colouring " << int{colouring});
    Image measured(48, 48), cut(48, 48);
    Process whole, near;
    for (Process* p : {&whole, &near}) {
      p->shadow(160, 0x20, 0x40, 0x60).shadowOnly(1).thickness(0).extrude(1, colouring).shadowOffset(3, 3);
    }
    ASSERT_TRUE(whole.render(shortBand, measured));
    ASSERT_TRUE(near.render(longBand, cut));
    EXPECT_GT(measured.countOther(0), 40u);
    EXPECT_EQ(cut, measured);
    ExpectWorkImageKept(near);
  }

  const TextScene found(kThinNearTheBuffer);
  Image image(64, 44);
  Process p;
  p.shadow(160, 0, 0, 0).extrude(1, 0).shadowOffset(1, 3);
  ASSERT_TRUE(p.render(found, image));
  ExpectWorkImageKept(p);
}

}  // namespace
}  // namespace lx::test
