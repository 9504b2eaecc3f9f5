// Outlines thousands of pixels across drawn into small buffers. Work images once followed the outline
// (half a gigabyte, or minutes for an extruded Shadow or a 60-pass 3D border); now they follow what can
// reach the buffer, so each draws what the shape puts there and the process still keeps its work image.
#include <gtest/gtest.h>
#include <functional>
#include <tuple>
#include <vector>
#include "api/process_handle.h"
#include "render/render_process.h"
#include "tests/support/contour_records.h"
#include "tests/support/deep_border_blocks.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {
TextScene Contour(const std::vector<FxPoint>& points) {
  ContourRecords r;
  r.begin(points.front()).line(std::vector<FxPoint>(points.begin() + 1, points.end())).end();
  return TextScene(r.bytes());
}

// Draws into a w x h buffer of `ground`; the process must keep its work image afterwards (or not, for a
// reach past what it keeps), and never more than 16 MiB of them.
Image Draw(const TextScene& scene, int32_t w, int32_t h, const std::function<void(Process&)>& apply,
           bool kept = true, uint32_t ground = 0) {
  Image image(w, h, ground);
  Process p;
  apply(p);
  EXPECT_TRUE(p.render(scene, image));
  const RenderProcess* process = ProcessFromSlot(p.slot());
  EXPECT_EQ(process->scratch[0].ownedBytes() > 0, kept);
  EXPECT_LT(process->scratch[0].ownedBytes() + process->scratch[1].ownedBytes(), uint64_t{16} << 20);
  return image;
}

Process& FaceOutline(Process& p) {
  return p.face(255, 240, 200, 40).outline(255, 0, 0, 0).thickness(2);
}
// An extruded Shadow alone, offset by (3, 3), opaque black or translucent.
Process& Extruded(Process& p, bool translucent, uint8_t colouring) {
  (translucent ? p.shadow(160, 32, 64, 96) : p.shadow(255, 0, 0, 0)).shadowOnly(1);
  return p.extrude(1, colouring).shadowOffset(3, 3);
}

// A triangle with 10500-pixel legs around the buffer, past a full blur's reach from every edge. Blurred at
// the largest level (a reach past what a process keeps) Face and Outline come out as the Face colour; an
// extruded translucent Shadow keeps its alpha (colouring 0) or builds 160 -> 220 -> 242 -> 250 (1).
TEST(OversizedOutline, HugeTriangleFillsTheBufferWithOneColour) {
  const std::tuple<void (*)(Process&), bool, uint32_t> cases[] = {
      {[](Process& p) { FaceOutline(p).blur(254, 254, 0); }, false, 0xFFF0C828u},
      {[](Process& p) { FaceOutline(p); }, true, 0xFFF0C828u},
      {[](Process& p) { Extruded(p, false, 1); }, true, 0xFF000000u},
      {[](Process& p) { Extruded(p, false, 0); }, true, 0xFF000000u},
      {[](Process& p) { Extruded(p, true, 0); }, true, 0xA0204060u},
      {[](Process& p) { Extruded(p, true, 1); }, true, 0xFA204060u},
      {[](Process& p) {
         Extruded(p, false, 0).shadowOnly(0).face(255, 10, 20, 30).outline(255, 200, 0, 0).thickness(3);
       },
       true, 0xFF0A141Eu},
  };
  const TextScene triangle = Contour({Pt(-4000, -4000), Pt(6500, -4000), Pt(-4000, 6500)});
  for (const auto& [apply, kept, colour] : cases)
    EXPECT_EQ(Draw(triangle, 64, 48, apply, kept).pixels(), std::vector<uint32_t>(64 * 48, colour)) << colour;
}

// A sliver from (10, 60) up to (4106, -15300) and back down, of which the buffer sees its lower-left tip:
// white inside, nothing outside, anti-aliased only along its two edges (checked so when recorded).
TEST(OversizedOutline, TallSliverDrawsItsTipInASmallBuffer) {
  const Image image =
      Draw(Contour({Pt(10, 60), Pt(4106, -15300), Pt(4106, 60), Pt(10, 60)}), 89, 228, [](Process&) {});
  EXPECT_EQ(image.checksum(), 0x33a481b0ebf1f445u) << std::hex << "0x" << image.checksum();
}

// An unblurred extrusion smooths by the densest pixel of the Shadow image; past a bounded size the part
// near the buffer stands in (13 s at -O2 for the fuzzer's block, with no full-alpha pixel near the buffer).
// A thin 45-degree band holds the same densest pixel everywhere: 9000 pixels long, it draws what 200 do.
TEST(OversizedOutline, HugeThinExtrudedBandSmoothsByThePartNearTheBuffer) {
  const auto band = [](double length) {
    const double a = -30.0, b = a + length;
    return Contour({Pt(a, a), Pt(b, b), Pt(b + 0.4, b), Pt(a + 0.4, a), Pt(a, a)});
  };
  for (uint8_t colouring : {0, 1}) {
    const auto apply = [&](Process& p) { Extruded(p, true, colouring).thickness(0); };
    const Image measured = Draw(band(200), 48, 48, apply);
    EXPECT_GT(measured.countOther(0), 40u);
    EXPECT_EQ(Draw(band(9000), 48, 48, apply), measured);
  }
  Draw(TextScene(CrasherFile("thin_near_the_buffer.block")), 64, 44,
       [](Process& p) { p.shadow(160, 0, 0, 0).extrude(1, 0).shadowOffset(1, 3); });
}

// The fuzzer's blocks (contours of a few points thousands of pixels apart) and text cut on every side,
// drawn with a deep border and the Face embossed, the Outline painted or (transparent) skipping its border.
TEST(OversizedOutline, DeepBorderWindowsShowWhatTheLargerDrawingShows) {
  const TextScene a(kDeepBorderBlockA), b(kDeepBorderBlockB), c(kDeepBorderBlockC), text("Lx", 40, 8.0, 44.0);
  const struct {
    const TextScene* scene;
    uint8_t elevation;
    bool outlineShows;
  } cases[] = {{&a, 3, false}, {&b, 30, false},   {&c, 30, false},
               {&c, 30, true}, {&text, 30, true}, {&text, 30, false}};
  for (const auto& k : cases) {
    SCOPED_TRACE(testing::Message() << "case " << (&k - cases));
    const auto window = [&](int32_t x, int32_t y, int32_t w, int32_t h) {
      const auto apply = [&](Process& p) {
        p.thickness(6).emboss(1.0, 255, 100, 200).border3D(k.elevation, 60, -2.3).translate(-x, -y);
        if (k.outlineShows) p.outline(255, 200, 120, 40);
      };
      return Draw(*k.scene, w, h, apply, true, 0x10203040u).pixels();
    };
    const std::vector<uint32_t> whole = window(0, 0, 96, 72);
    EXPECT_NE(whole, std::vector<uint32_t>(whole.size(), 0x10203040u));
    for (const auto& [x, y] : {std::pair<int32_t, int32_t>{0, 0}, {13, 7}, {40, 30}, {47, 35}}) {
      std::vector<uint32_t> cut;
      for (int32_t row = y; row < y + 37; ++row)
        cut.insert(cut.end(), &whole[row * 96 + x], &whole[row * 96 + x + 49]);
      EXPECT_EQ(window(x, y, 49, 37), cut) << "window at " << x << "," << y;
    }
  }
}
}  // namespace
}  // namespace lx::test
