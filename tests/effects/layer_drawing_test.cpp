#include "effects/layer_drawing.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/effects/drawing_scene.h"

namespace lx {
namespace {

using test::Packed;
using test::PixelOf;
using V = std::vector<uint32_t>;

TEST(LayerDrawing, ModesChooseLayersAndOrder) {
  const uint32_t red = Packed(255, 0, 0, 255), blue = Packed(0, 0, 255, 255), r = PixelOf(red),
                 b = PixelOf(blue);
  test::DrawingScene s(80, 80, 20, 20, 60, 60);
  s.process.face.startColour = s.process.face.endColour = red;
  s.process.outline.startColour = s.process.outline.endColour = blue;
  s.process.strokeWidth = 8.0;
  s.expectDraws(kDrawFaceThenOutline, {40, 40, r, 21, 40, b, 17, 40, b});  // the stroke's inner half on top
  s.expectDraws(kDrawOutlineThenFace, {40, 40, r, 21, 40, r, 17, 40, b});
  for (int32_t mode : {4, 5, 100, -1}) {
    s.expectDraws(mode, {});
    EXPECT_EQ(s.pixels, V(80 * 80, 0u)) << mode;
  }
  s.process.strokeWidth = 0.0;  // no Outline at all
  s.expectDraws(kDrawOutline, {});
  EXPECT_EQ(s.pixels, V(80 * 80, 0u));
  s.expectDraws(kDrawFaceThenOutline, {20, 40, r, 19, 40, 0});
}

TEST(LayerDrawing, EmptySurfaceOrPathDrawsNothingAndFarShapesAreClipped) {
  test::DrawingScene s(10, 10, 0, 0, 5, 5);
  s.surface.pixels = nullptr;
  s.expectDraws(kDrawFace, {});
  s.surface.pixels = reinterpret_cast<uint8_t*>(s.pixels.data());
  s.process.path.clear();
  s.expectDraws(kDrawFace, {});
  EXPECT_EQ(s.pixels, V(10 * 10, 0u));

  test::DrawingScene far(16, 16, -30000, -30000, 30000, 30000);
  far.process.glyphMatrix.sx = far.process.glyphMatrix.sy = 1e6;
  far.process.strokeWidth = 3.0;
  far.expectDraws(kDrawFaceThenOutline, {8, 8, 0xFFFFFFFFu});
}

TEST(UniformColour, AnswersAndTheColoursWritten) {
  FillSettings f;
  const auto uniform = [&](uint8_t alphaOnly) {
    uint32_t c = 0xDEAD;
    const int answer = UniformLayerColour(f, &c, alphaOnly);
    return V{static_cast<uint32_t>(answer), c};
  };
  const uint32_t c = Packed(1, 2, 3, 255), t = Packed(10, 20, 30, 100);
  f.startColour = f.endColour = c;
  EXPECT_EQ(uniform(0), (V{1, c}));
  f.endColour = Packed(9, 9, 9, 255);
  EXPECT_EQ(uniform(0), (V{0, 0xDEAD}));
  EXPECT_EQ(uniform(1), (V{1, c}));  // same alpha
  f.endColour = Packed(1, 2, 3, 254);
  EXPECT_EQ(uniform(1), (V{0, c}));  // written even when the answer is 0
  EXPECT_EQ(LayerAlphaEquals(f, 255), 0);
  f.endColour = Packed(9, 9, 9, 255);
  EXPECT_EQ(LayerAlphaEquals(f, 255), 1);

  f.useGradientTable = 1;                  // the colour stops decide
  EXPECT_EQ(uniform(0), (V{1, 0xDEAD}));   // an empty list is uniform and writes nothing
  EXPECT_EQ(LayerAlphaEquals(f, 255), 0);  // but has no alpha
  f.gradientColours = {t, t};
  EXPECT_EQ(uniform(0), (V{1, t}));
  EXPECT_EQ(LayerAlphaEquals(f, 100), 1);
  f.gradientColours[1] = Packed(99, 20, 30, 100);  // differs in colour only
  EXPECT_EQ(uniform(0), (V{0, t}));
  EXPECT_EQ(uniform(1), (V{1, t}));
  f.gradientColours[1] = Packed(10, 20, 30, 101);  // differs in alpha
  EXPECT_EQ(uniform(1)[0], 0u);
  EXPECT_EQ(LayerAlphaEquals(f, 100), 0);

  FillSettings outline;
  f.useGradientTable = 0;
  f.endColour = outline.startColour = outline.endColour = c;
  EXPECT_EQ(SameUniformColour(f, outline), 1);
  outline.endColour = Packed(1, 2, 3, 254);
  EXPECT_EQ(SameUniformColour(f, outline), 0);
  outline.endColour = outline.startColour = Packed(1, 2, 4, 255);
  EXPECT_EQ(SameUniformColour(f, outline), 0);
  f.fillType = 1;  // a texture fill type is never uniform, texture or not
  EXPECT_EQ(SameUniformColour(f, f), 0);
  EXPECT_EQ((V{uniform(0)[0], uniform(1)[0], uint32_t(LayerAlphaEquals(f, 255))}), (V{0, 0, 0}));
}

}  // namespace
}  // namespace lx
