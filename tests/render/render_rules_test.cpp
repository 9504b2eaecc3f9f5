// Which layers Render draws, and at the ends of the ranges: each case draws real text two ways and
// compares them, so that a layer skipped or drawn against its rule shows as a changed buffer.
#include <gtest/gtest.h>

#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {

constexpr uint32_t kGround = 0xFF141414;
enum Relation { kSame, kDiffers, kCoversMore };  // kCoversMore: at least 50 more pixels than the ground

// nullptr draws nothing: the buffer as it was.
Image Draw(void (*set)(Process&)) {
  static const TextScene scene("Hg", 48, 20, 64);
  Image image(150, 90, kGround);
  Process p;
  if (set != nullptr) set(p);
  EXPECT_TRUE(set == nullptr || p.render(scene, image));
  return image;
}

// A translucent Face over an opaque Shadow: whatever of the Shadow shows changes the Face.
Process& Under(Process& p) {
  return p.face(128, 255, 255, 255).shadow(255, 0, 0, 200);
}
Process& Stroke(Process& p) {
  return p.face(0, 0, 0, 0).outline(255, 100, 100, 100).thickness(4);
}
Process& Extruded(Process& p) {
  return p.shadow(255, 0, 0, 0).shadowOnly(1).extrude(1, 0);
}

TEST(RenderRules, LayersDrawAsTheirSwitchesAndRangesSay) {
  const struct {
    const char* name;
    void (*a)(Process&);
    void (*b)(Process&);
    Relation relation;
  } cases[] = {
      {"a Shadow exactly under the Face is skipped", [](Process& p) { Under(p); },
       [](Process& p) { Under(p).shadowVisible(0); }, kSame},
      {"blurred, it shows", [](Process& p) { Under(p).blur(0, 0, 1); }, [](Process& p) { Under(p); },
       kDiffers},
      {"moved across", [](Process& p) { Under(p).shadowOffset(1, 0); }, [](Process& p) { Under(p); },
       kDiffers},
      {"moved down", [](Process& p) { Under(p).shadowOffset(0, 1); }, [](Process& p) { Under(p); }, kDiffers},
      {"zoomed across", [](Process& p) { Under(p).shadowZoom(1.2, 1); }, [](Process& p) { Under(p); },
       kDiffers},
      {"zoomed down", [](Process& p) { Under(p).shadowZoom(1, 1.2); }, [](Process& p) { Under(p); },
       kDiffers},
      {"drawn alone it shows", [](Process& p) { Under(p).shadowOnly(1); }, nullptr, kCoversMore},
      {"alone it hides the Face", [](Process& p) { Under(p).shadowOffset(5, 5).shadowOnly(1); },
       [](Process& p) { Under(p).face(0, 0, 0, 0).shadowOffset(5, 5); }, kSame},
      {"hidden, even alone", [](Process& p) { Under(p).shadowVisible(0).shadowOnly(1); }, nullptr, kSame},
      {"transparent, even alone", [](Process& p) { p.shadow(0, 0, 0, 200).shadowOnly(1); }, nullptr, kSame},
      {"a transparent Outline leaves the Face as it is",
       [](Process& p) { p.face(200, 250, 120, 20).outline(0, 0, 255, 0).thickness(5); },
       [](Process& p) { p.face(200, 250, 120, 20); }, kSame},
      {"a user area over the whole buffer is the buffer's gradient",
       [](Process& p) {
         p.faceStart(255, 255, 0, 0).faceGradient(1).translate(5, -3).faceArea(0, 0, 150, 90);
       },
       [](Process& p) { p.faceStart(255, 255, 0, 0).faceGradient(1).translate(5, -3).faceFit(1); }, kSame},
      {"no border on a hairline", [](Process& p) { p.thickness(0).border3D(30, 5, 0.8); },
       [](Process& p) { p.thickness(0); }, kSame},
      {"lowest elevation, one pass", [](Process& p) { Stroke(p).border3D(3, 1, 0.8); },
       [](Process& p) { Stroke(p); }, kDiffers},
      {"lowest elevation, most passes", [](Process& p) { Stroke(p).border3D(3, 60, 0.8); },
       [](Process& p) { Stroke(p); }, kDiffers},
      {"highest elevation, one pass", [](Process& p) { Stroke(p).border3D(60, 1, 0.8); },
       [](Process& p) { Stroke(p); }, kDiffers},
      {"highest elevation, most passes", [](Process& p) { Stroke(p).border3D(60, 60, 0.8); },
       [](Process& p) { Stroke(p); }, kDiffers},
      // The stem's far side moves by the whole offset: many more pixels covered than without extrusion.
      {"extruded down", [](Process& p) { Extruded(p).shadowOffset(0, 12); },
       [](Process& p) { Extruded(p).shadowOffset(0, 12).extrude(0); }, kCoversMore},
      {"extruded up", [](Process& p) { Extruded(p).shadowOffset(0, -12); },
       [](Process& p) { Extruded(p).shadowOffset(0, -12).extrude(0); }, kCoversMore},
      {"extruded right", [](Process& p) { Extruded(p).shadowOffset(12, 0); },
       [](Process& p) { Extruded(p).shadowOffset(12, 0).extrude(0); }, kCoversMore},
      {"extruded left", [](Process& p) { Extruded(p).shadowOffset(-12, 0); },
       [](Process& p) { Extruded(p).shadowOffset(-12, 0).extrude(0); }, kCoversMore},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const Image a = Draw(c.a), b = Draw(c.b);
    if (c.relation == kSame) {
      EXPECT_TRUE(a == b);
    } else if (c.relation == kDiffers) {
      EXPECT_TRUE(a != b);
    } else {
      EXPECT_GE(a.countOther(kGround), b.countOther(kGround) + 50);
    }
  }
}

}  // namespace
}  // namespace lx::test
