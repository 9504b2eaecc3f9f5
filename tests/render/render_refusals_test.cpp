// Outlines Render cannot draw, and hostile settings, leave the caller's buffer byte for byte as it was
// and cost no more than the buffer.
#include <gtest/gtest.h>

#include <vector>

#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"
#include "tools/text_outline/block_writer.h"

namespace lx::test {
namespace {

using text::detail::ContourPoint;
using text::detail::PointKind;

constexpr uint32_t kPattern = 0xA55A3CC3;

// A block of one contour through the given whole-pixel points.
TextScene Block(const std::vector<std::pair<int32_t, int32_t>>& points) {
  std::vector<ContourPoint> contour;
  for (const auto& p : points) contour.push_back({p.first * 65536, p.second * 65536, PointKind::kOn});
  std::vector<uint8_t> bytes;
  EXPECT_TRUE(text::detail::AppendContour(contour, &bytes));
  return TextScene(bytes);
}

TEST(RenderRefusals, OutlinesWithoutAreaOrMalformedAreRefused) {
  const TextScene text("Refused", 32, 4, 40);
  std::vector<uint8_t> overrun = text.bytes(), foreign = text.bytes();
  overrun[0] = overrun[1] = 0xFF;  // a contour whose length runs past the block
  foreign[4] = 25;                 // a foreign contour type
  const TextScene blocks[] = {Block({{10, 20}, {60, 20}, {30, 20}}), TextScene(overrun), TextScene(foreign),
                              TextScene(std::vector<uint8_t>(64, 0))};
  Process p;
  p.outline(255, 0, 0, 0).thickness(2).shadow(255, 0, 0, 0).shadowOffset(3, 3).blur(1, 1, 1);
  Image image(160, 60, kPattern);
  for (const TextScene& block : blocks) EXPECT_FALSE(p.render(block, image));
  EXPECT_EQ(image.countOther(kPattern), 0u);
  EXPECT_TRUE(p.render(text, image));
  EXPECT_GT(image.countOther(kPattern), 500u);
}

TEST(RenderRefusals, HostileSizesZoomsAndOffsetsDrawNothingOffTheBuffer) {
  const TextScene text("Refused", 32, 4, 40);
  Image image(160, 60, kPattern);
  // A square 64000 pixels wide: its work image would take 16 GB.
  Process plain;
  EXPECT_TRUE(
      plain.render(Block({{-32000, -32000}, {32000, -32000}, {32000, 32000}, {-32000, 32000}}), image));
  Process p;
  p.face(0, 0, 0, 0).shadow(255, 0, 0, 0).shadowZoom(1.0e9, 1.0e-9);
  EXPECT_TRUE(p.render(text, image));
  p.shadowZoom(1.0, 1.0).shadowOffset(INT32_MAX, INT32_MIN);
  EXPECT_TRUE(p.render(text, image));
  p.translate(INT32_MAX, INT32_MAX).translate(INT32_MAX, INT32_MAX).shadowOffset(0, 0).face(255, 1, 2, 3);
  EXPECT_TRUE(p.render(text, image));
  EXPECT_EQ(image.countOther(kPattern), 0u);
}

TEST(RenderRefusals, HugeExtrusionDrawsWhatAnyLongOneDrawsOnTheBuffer) {
  // Reaching 100000 pixels to the left, the block covers the buffer left of the glyphs just as one that
  // reaches 1000 pixels does; the far part costs nothing.
  const TextScene text("Refused", 32, 4, 40);
  auto draw = [&](int32_t dx, int32_t dy, uint8_t blur, int32_t translate = 0) {
    Process p;
    p.face(0, 0, 0, 0).shadow(255, 30, 30, 90).shadowOffset(dx, dy).extrude(1, 1).blur(0, 0, blur);
    p.translate(translate, 0);
    Image out(160, 60, kPattern);
    EXPECT_TRUE(p.render(text, out));
    return out;
  };
  const Image far = draw(-100000, 0, 0);
  EXPECT_EQ(far, draw(-1000, 0, 0));
  EXPECT_EQ(draw(-100000, 0, 2), draw(-1000, 0, 2));
  EXPECT_EQ(draw(0, 70000, 0), draw(0, 700, 0));
  EXPECT_GT(far.countOther(kPattern), 2000u);
  // A block whose shape lies 50000 pixels off the buffer and which crosses it on its way to the offset
  // would take every one of its steps over an image that long: it counts as too large and is not drawn.
  EXPECT_EQ(draw(100000, 0, 0, -50000).countOther(kPattern), 0u);
}

}  // namespace
}  // namespace lx::test
