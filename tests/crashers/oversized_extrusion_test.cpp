// An extruded Shadow without a blur level of its own on an outline thousands of pixels across, drawn into
// a small buffer. Its softening scales by the densest pixel of the block, so its work image was once
// kept whole (440 MB and over two minutes in the fuzzing build for this block); now it is cut to what can
// reach the buffer whenever the cut shows the densest value the block can have.
#include <gtest/gtest.h>

#include <vector>

#include "api/process_handle.h"
#include "render/render_process.h"
#include "tests/support/contour_records.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {

// One contour, 36 bytes: a right triangle with 10500-pixel legs whose corner lies far above and to the
// left of the buffer, so that the whole buffer lies deep inside it.
std::vector<uint8_t> HugeTriangle() {
  ContourRecords r;
  r.begin(Pt(-4000, -4000)).line({Pt(6500, -4000), Pt(-4000, 6500)}).end();
  return r.bytes();
}

// Deep inside the block every pixel carries the shape itself and all three stamps, whole: an opaque
// Shadow stays opaque; a translucent one keeps its alpha when the block is one even body (colouring 0),
// and builds up to 160 -> 220 -> 242 -> 250 when the stamps build up (colouring 1). The softening leaves
// a solid body as it is. The buffer is one colour, and the process kept its work image, so none was
// sized from the outline.
TEST(OversizedExtrusion, HugeExtrudedTriangleFillsTheBufferWithTheBody) {
  struct Case {
    uint8_t alpha, colouring;
    uint32_t expected;
  };
  const Case cases[] = {
      {255, 1, 0xFF000000u},
      {255, 0, 0xFF000000u},
      {160, 0, 0xA0204060u},
      {160, 1, 0xFA204060u},
  };
  const TextScene scene(HugeTriangle());
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << int{c.alpha} << " colouring " << int{c.colouring});
    Image image(64, 48);
    Process p;
    const uint8_t red = (c.expected >> 16) & 0xFF, green = (c.expected >> 8) & 0xFF, blue = c.expected & 0xFF;
    p.shadow(c.alpha, red, green, blue)
        .shadowVisible(1)
        .shadowOnly(1)
        .extrude(1, c.colouring)
        .shadowOffset(3, 3);
    ASSERT_TRUE(p.render(scene, image));
    EXPECT_EQ(image.at(0, 0), c.expected);
    EXPECT_EQ(image.countOther(c.expected), 0u);
    const RenderProcess* process = ProcessFromSlot(p.slot());
    ASSERT_NE(process, nullptr);
    EXPECT_GT(process->scratch[0].ownedBytes(), 0u);
  }
}

// The same with the Face and a 3-pixel Outline on top: the buffer shows the opaque Face alone.
TEST(OversizedExtrusion, FaceOverAHugeExtrusionDraws) {
  const TextScene scene(HugeTriangle());
  Image image(64, 48);
  Process p;
  p.face(255, 10, 20, 30).outline(255, 200, 0, 0).thickness(3).shadow(255, 0, 0, 0).shadowVisible(1);
  p.extrude(1, 0).shadowOffset(3, 3);
  ASSERT_TRUE(p.render(scene, image));
  EXPECT_EQ(image.countOther(0xFF0A141Eu), 0u);
  const RenderProcess* process = ProcessFromSlot(p.slot());
  ASSERT_NE(process, nullptr);
  EXPECT_GT(process->scratch[0].ownedBytes(), 0u);
}

}  // namespace
}  // namespace lx::test
