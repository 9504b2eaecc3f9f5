// A 3D border of 60 shading passes with the Face embossed, on outlines far larger than a small buffer
// (the fuzzer's blocks) and on text cut by windows on every side. Each pass once shaded the whole work
// image, which the border's reach makes buffer + 14 x passes across: seconds per call in the fuzzing
// build. A window must show what the same place of a larger drawing shows, with work images sized by
// the window, whether the Outline paints (or, transparent, skips its border).
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "api/process_handle.h"
#include "render/render_process.h"
#include "tests/support/deep_border_blocks.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {

constexpr uint32_t kGround = 0x10203040u;

// The pixels of a w x h window at (x, y) on the drawing; the process's work images stay small.
std::vector<uint32_t> Window(const TextScene& scene, uint8_t elevation, bool outlineShows, int32_t x,
                             int32_t y, int32_t w, int32_t h) {
  Image image(w, h, kGround);
  Process p;
  p.thickness(6).emboss(1.0, 255, 100, 200).border3D(elevation, 60, -2.3).translate(-x, -y);
  if (outlineShows) p.outline(255, 200, 120, 40);
  EXPECT_TRUE(p.render(scene, image));
  const RenderProcess* process = ProcessFromSlot(p.slot());
  EXPECT_LT(process->scratch[0].ownedBytes() + process->scratch[1].ownedBytes(), uint64_t{16} << 20);
  return image.pixels();
}

TEST(DeepBorder, WindowsShowWhatTheLargerDrawingShows) {
  const TextScene a(kDeepBorderBlockA), b(kDeepBorderBlockB), c(kDeepBorderBlockC), text("Lx", 40, 8.0, 44.0);
  const struct {
    const TextScene* scene;
    uint8_t elevation;
    bool outlineShows;
  } cases[] = {{&a, 3, false}, {&b, 30, false},   {&c, 30, false},
               {&c, 30, true}, {&text, 30, true}, {&text, 30, false}};
  for (const auto& k : cases) {
    SCOPED_TRACE(testing::Message() << "case " << (&k - cases));
    const std::vector<uint32_t> whole = Window(*k.scene, k.elevation, k.outlineShows, 0, 0, 96, 72);
    EXPECT_NE(whole, std::vector<uint32_t>(whole.size(), kGround));
    for (const auto& [x, y] : {std::pair<int32_t, int32_t>{0, 0}, {13, 7}, {40, 30}, {47, 35}}) {
      std::vector<uint32_t> cut;
      for (int32_t row = y; row < y + 37; ++row)
        cut.insert(cut.end(), &whole[row * 96 + x], &whole[row * 96 + x + 49]);
      EXPECT_EQ(Window(*k.scene, k.elevation, k.outlineShows, x, y, 49, 37), cut)
          << "window at " << x << "," << y;
    }
  }
}

// An emboss azimuth that is not a number (the fuzzer's, beside a deep border) once shaded the relief
// through a conversion of NaN to an integer. It lights as an azimuth of 0 does, border or not.
TEST(DeepBorder, EmbossAzimuthThatIsNotANumberLightsAsZero) {
  const TextScene scene("Lx", 40, 8.0, 44.0);
  for (const bool border : {false, true}) {
    Image lit[2] = {Image(80, 60), Image(80, 60)};
    for (int i = 0; i < 2; ++i) {
      Process p;
      p.faceStart(255, 250, 220, 40).faceEnd(255, 250, 90, 20).faceGradient(1).thickness(3);
      p.emboss(i == 0 ? std::nan("") : 0.0, 255, 255, 100);
      if (border) p.border3D(30, 2, -2.3);
      ASSERT_TRUE(p.render(scene, lit[i]));
    }
    EXPECT_GT(lit[1].countOther(0), 0u);
    EXPECT_EQ(lit[0], lit[1]) << "border " << border;
  }
}

}  // namespace
}  // namespace lx::test
