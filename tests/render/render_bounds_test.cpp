// What Render draws is bound to the caller's buffer: refused outlines and hostile settings leave it as it
// was, and far-reaching text is cut to it without changing a pixel on it.
#include <gtest/gtest.h>
#include <iterator>
#include <vector>
#include "api/process_handle.h"
#include "render/render_process.h"
#include "tests/support/contour_records.h"
#include "tests/support/crosscheck_scenes.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {
constexpr uint32_t kPattern = 0xA55A3CC3;

TEST(RenderBounds, RefusedOutlinesAndHostileSettingsLeaveTheBufferAsItWas) {
  const TextScene text("Refused", 32, 4, 40);
  Process p;
  p.outline(255, 0, 0, 0).thickness(2).shadow(255, 0, 0, 0).shadowOffset(3, 3).blur(1, 1, 1);
  Image image(160, 60, kPattern);
  // Without area, or not decodable: refused.
  EXPECT_FALSE(p.render(
      TextScene(ContourRecords().begin(Pt(10, 20)).line({Pt(60, 20), Pt(30, 20)}).end().bytes()), image));
  EXPECT_FALSE(p.render(TextScene(std::vector<uint8_t>(64, 0)), image));
  // A square 64000 pixels wide (a work image of 16 GB), zooms and offsets at the ends of their types.
  ContourRecords square;
  AddSquare(&square, -32000, -32000, 64000);
  Process plain, far;
  EXPECT_TRUE(plain.render(TextScene(square.bytes()), image));
  EXPECT_TRUE(far.face(0, 0, 0, 0).shadow(255, 0, 0, 0).shadowZoom(1.0e9, 1.0e-9).render(text, image));
  EXPECT_TRUE(far.shadowZoom(1.0, 1.0).shadowOffset(INT32_MAX, INT32_MIN).render(text, image));
  far.translate(INT32_MAX, INT32_MAX).translate(INT32_MAX, INT32_MAX).shadowOffset(0, 0).face(255, 1, 2, 3);
  EXPECT_TRUE(far.render(text, image));
  EXPECT_EQ(image.countOther(kPattern), 0u);
  EXPECT_TRUE(p.render(text, image));
  EXPECT_GT(image.countOther(kPattern), 500u);
}

// Effects that reach far past the text each their own way.
void (*const kFarEffects[])(Process&) = {
    [](Process& p) {
      p.faceStart(255, 250, 220, 40).faceEnd(200, 250, 90, 20).faceGradient(1).emboss(2.0, 255, 200, 120);
      p.outlineTexture(CrossTexture(), 8, 8, 2);
      p.thickness(5).border3D(35, 3, -0.6).shadow(160, 10, 0, 40).shadowOffset(9, 7).shadowZoom(1.1, 0.95);
      p.extrude(1, 1).blur(3, 2, 4);
    },
    [](Process& p) {
      p.faceTexture(CrossTexture(), 8, 8, 0);
      p.outlineTexture(CrossTexture(), 8, 8, 1);
      p.thickness(3).shadow(200, 0, 0, 0).shadowOffset(-12, 15).shadowZoom(1.3, 1.2).blur(5, 6, 9);
    },
    [](Process& p) {
      p.faceGradient(3, 0.7).faceStart(255, 255, 255, 0).faceEnd(255, 0, 128, 255).outline(255, 0, 0, 0);
      p.thickness(1).shadow(140, 90, 0, 0).shadowOffset(-14, -11).extrude(1, 0);
    },
};

// Text far past a 90 x 60 buffer, moved by (-x, -y), shows the window at (x, y) of a large buffer (varying
// ground: every blend counts). One process draws all as fresh ones do, keeping no large work image.
TEST(RenderBounds, SmallBufferMatchesThePartOfALargeOneAndNothingCarriesOver) {
  const TextScene scene("Wgj", 420, 260, 400);
  auto ground = [](int32_t w, int32_t h, int32_t x0, int32_t y0) {
    Image image(w, h);
    for (int32_t i = 0; i < w * h; ++i)
      image.set(i % w, i / w, uint32_t(x0 + i % w) * 2654435761u ^ uint32_t(y0 + i / w) * 40503u);
    return image;
  };
  const int32_t l = scene.ink().left, r = scene.ink().right, t = scene.ink().top, b = scene.ink().bottom;
  ASSERT_TRUE(l > 100 && r < 1400 && t > 40 && b < 520);
  const int32_t mx = (l + r) / 2, my = (t + b) / 2;
  // Off every edge of the text, across it, inside a stem and wholly away from it.
  const int32_t xs[] = {l - 60, r - 30, mx, mx, l - 40, r - 50, l + 20, mx - 45, l + 300, 10};
  const int32_t ys[] = {my, my, t - 40, b - 20, t - 30, b - 30, t + 60, my - 30, t + 140, 10};
  Process kept;
  const RenderProcess* process = ProcessFromSlot(kept.slot());
  const TextScene wide("Wide line", 640, 10, 660);
  Image wideImage(3600, 860);
  ASSERT_TRUE(kept.render(wide, wideImage));
  const text::InkBox& ink = wide.ink();  // a work image above what may be kept
  ASSERT_GT(int64_t{ink.right - ink.left} * (ink.bottom - ink.top) * 4,
            int64_t{RenderProcess::kKeptScratchBytes});
  for (const PixelBuffer& scratch : process->scratch)
    EXPECT_LE(scratch.ownedBytes(), RenderProcess::kKeptScratchBytes);
  for (size_t e = 0; e < std::size(kFarEffects); ++e) {
    Process fresh;
    for (size_t k = 0; k <= e; ++k) kFarEffects[k](fresh);
    kFarEffects[e](kept);
    ResetTranslation(kept.slot());
    Image large = ground(1500, 560, 0, 0), again = large;
    ASSERT_TRUE(fresh.render(scene, large) && kept.render(scene, again));
    EXPECT_TRUE(again == large) << "effects " << e;
    for (size_t w = 0; w < std::size(xs); ++w) {
      Image small = ground(90, 60, xs[w], ys[w]);
      ResetTranslation(kept.slot());
      ASSERT_TRUE(kept.translate(-xs[w], -ys[w]).render(scene, small));
      size_t differing = 0;
      for (int32_t j = 0; j < 60; ++j) {
        for (int32_t i = 0; i < 90; ++i) differing += small.at(i, j) != large.at(xs[w] + i, ys[w] + j);
      }
      EXPECT_EQ(differing, 0u) << "effects " << e << ", window at " << xs[w] << ", " << ys[w];
    }
  }
  EXPECT_GT(process->scratch[0].ownedBytes(), 0u);
}
}  // namespace
}  // namespace lx::test
