// A 3D border of 60 shading passes with the Face embossed, on outlines far larger than a small buffer.
// Each pass once shaded the whole work image, which the border's reach makes buffer + 14 x passes
// across: seconds per call in the fuzzing build. The passes now work only on what can still reach the
// buffer, and an Outline that paints nothing skips its border altogether.
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

// The settings the fuzzer found, with the Outline either as it had it (transparent) or opaque.
void DeepBorder(Process& p, uint8_t elevation, bool outlineShows) {
  p.thickness(6).emboss(1.0, 255, 100, 200).border3D(elevation, 60, -2.3);
  if (outlineShows) p.outline(255, 200, 120, 40);
}

// Render into a window of `w` x `h` lying at (x, y) on a larger drawing.
Image Window(const TextScene& scene, uint8_t elevation, bool outlineShows, int32_t x, int32_t y, int32_t w,
             int32_t h) {
  Image image(w, h, 0x10203040u);
  Process p;
  DeepBorder(p, elevation, outlineShows);
  p.translate(-x, -y);
  EXPECT_TRUE(p.render(scene, image));
  return image;
}

// The small buffer shows exactly what the same place of a larger one shows, whatever the cut of each
// work image, and the process's work images stay sized by the buffer.
TEST(DeepBorder, SmallBufferMatchesTheLargerDrawingAndStaysSmall) {
  struct Case {
    const std::vector<uint8_t>* block;
    uint8_t elevation;
    bool outlineShows;
  };
  const Case cases[] = {
      {&kDeepBorderBlockA, 3, false},
      {&kDeepBorderBlockB, 30, false},
      {&kDeepBorderBlockC, 30, false},
      {&kDeepBorderBlockC, 30, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "elevation " << int{c.elevation} << " outline " << c.outlineShows);
    const TextScene scene(*c.block);
    const Image large = Window(scene, c.elevation, c.outlineShows, 0, 0, 96, 72);
    for (const auto& at : {std::pair<int32_t, int32_t>{0, 0}, {47, 35}}) {
      Image small(49, 37, 0x10203040u);
      Process p;
      DeepBorder(p, c.elevation, c.outlineShows);
      p.translate(-at.first, -at.second);
      ASSERT_TRUE(p.render(scene, small));
      size_t differing = 0;
      for (int32_t y = 0; y < small.h(); ++y) {
        for (int32_t x = 0; x < small.w(); ++x)
          differing += small.at(x, y) != large.at(at.first + x, at.second + y);
      }
      EXPECT_EQ(differing, 0u) << "window at " << at.first << "," << at.second;
      const RenderProcess* process = ProcessFromSlot(p.slot());
      ASSERT_NE(process, nullptr);
      EXPECT_LT(process->scratch[0].ownedBytes() + process->scratch[1].ownedBytes(), uint64_t{16} << 20);
    }
    EXPECT_GT(large.countOther(0x10203040u), 0u);
  }
}

// Real text with a deep border seen through windows that cut it on every side: each window matches the
// whole drawing.
TEST(DeepBorder, WindowsOnTextMatchTheWholeDrawing) {
  const TextScene scene("Lx", 40, 8.0, 44.0);
  for (const bool outlineShows : {true, false}) {
    SCOPED_TRACE(outlineShows);
    const Image whole = Window(scene, 30, outlineShows, 0, 0, 80, 60);
    for (const auto& at : {std::pair<int32_t, int32_t>{0, 0}, {13, 7}, {40, 30}, {55, 41}}) {
      const Image part = Window(scene, 30, outlineShows, at.first, at.second, 25, 19);
      size_t differing = 0;
      for (int32_t y = 0; y < part.h(); ++y) {
        for (int32_t x = 0; x < part.w(); ++x)
          differing += part.at(x, y) != whole.at(at.first + x, at.second + y);
      }
      EXPECT_EQ(differing, 0u) << "window at " << at.first << "," << at.second;
    }
  }
}

// An emboss azimuth that is not a number (the fuzzer's, beside a deep border) once shaded the relief
// through a conversion of NaN to an integer. It lights as an azimuth of 0 does, border or not.
TEST(DeepBorder, EmbossAzimuthThatIsNotANumberLightsAsZero) {
  const TextScene scene("Lx", 40, 8.0, 44.0);
  for (const bool border : {false, true}) {
    SCOPED_TRACE(border);
    Image lit[2] = {Image(80, 60), Image(80, 60)};
    const double azimuths[2] = {std::nan(""), 0.0};
    for (int i = 0; i < 2; ++i) {
      Process p;
      p.faceStart(255, 250, 220, 40)
          .faceEnd(255, 250, 90, 20)
          .faceGradient(1)
          .thickness(3)
          .emboss(azimuths[i], 255, 255, 100);
      if (border) p.border3D(30, 2, -2.3);
      ASSERT_TRUE(p.render(scene, lit[i]));
    }
    EXPECT_GT(lit[1].countOther(0), 0u);
    EXPECT_EQ(lit[0], lit[1]);
  }
}

}  // namespace
}  // namespace lx::test
