// Which layers Render draws: real text drawn two ways and compared, so that a layer skipped or drawn
// against its rule shows as a changed buffer.
#include <gtest/gtest.h>
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {
constexpr uint32_t kGround = 0xFF141414;

Image Draw(void (*set)(Process&)) {
  static const TextScene scene("Hg", 48, 20, 64);
  Image image(150, 90, kGround);
  Process p;
  set(p);
  EXPECT_TRUE(p.render(scene, image));
  return image;
}

// A translucent Face over an opaque Shadow: whatever of the Shadow shows changes the Face.
Process& Under(Process& p) {
  return p.face(128, 255, 255, 255).shadow(255, 0, 0, 200);
}

TEST(RenderRules, AShadowThatCannotShowIsSkippedUnlessDrawnAloneAndUserAreasLieOnTheBuffer) {
  // Offset 0, zoom 1 and no blur: exactly under the Face. Each of them changed, it shows.
  const Image under = Draw([](Process& p) { Under(p); });
  EXPECT_TRUE(under == Draw([](Process& p) { Under(p).shadowVisible(0); }));
  for (auto set :
       {+[](Process& p) { Under(p).blur(0, 0, 1); }, +[](Process& p) { Under(p).shadowOffset(1, 0); },
        +[](Process& p) { Under(p).shadowOffset(0, 1); }, +[](Process& p) { Under(p).shadowZoom(1.2, 1); },
        +[](Process& p) { Under(p).shadowZoom(1, 1.2); }})
    EXPECT_TRUE(Draw(set) != under);
  EXPECT_GT(Draw([](Process& p) { Under(p).shadowOnly(1); }).countOther(kGround), 1000u);
  // Hidden or transparent, it draws nothing even alone.
  EXPECT_EQ(Draw([](Process& p) { Under(p).shadowVisible(0).shadowOnly(1); }).countOther(kGround), 0u);
  EXPECT_EQ(Draw([](Process& p) { p.shadow(0, 0, 0, 200).shadowOnly(1); }).countOther(kGround), 0u);
  // A user area over the whole buffer spreads the gradient as fit mode 1 does, wherever the text lies.
  EXPECT_TRUE(Draw([](Process& p) {
                p.faceStart(255, 255, 0, 0).faceGradient(1).translate(5, -3).faceArea(0, 0, 150, 90);
              }) == Draw([](Process& p) {
                p.faceStart(255, 255, 0, 0).faceGradient(1).translate(5, -3).faceFit(1);
              }));
}
}  // namespace
}  // namespace lx::test
