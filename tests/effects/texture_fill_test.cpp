#include "effects/texture_fill.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/effects/drawing_scene.h"

namespace lx {
namespace {

// A 2 x 2 checker of four distinct opaque pixels: A B on the first row, C D on the second.
constexpr uint32_t kA = 0xFF102030u, kB = 0xFF405060u, kC = 0xFF708090u, kD = 0xFFA0B0C0u, kWhite = ~0u;
enum Texels { kChecker, kNumbered, kNoTexture, kNoPixels, kNotChosen };

// Where each tiling lays the texture on a 40 x 40 square at (x, y) of a 60 x 60 surface.
TEST(TextureFill, PlacementOfEachTiling) {
  const uint32_t colour = test::Packed(1, 2, 3, 255), painted = test::PixelOf(colour);
  struct Case {
    Case(const char* n, int32_t t, double x, double y, double s, IntRect r, Texels k, std::vector<uint32_t> p)
        : name(n), tiling(t), x(x), y(y), stroke(s), rect(r), texels(k), probes(std::move(p)) {}
    const char* name;
    int32_t tiling;
    double x, y, stroke;
    IntRect rect;
    Texels texels;
    std::vector<uint32_t> probes;  // x, y, pixel
  };
  const Case cases[] = {
      // Repeated from the rectangle's corner at the texture's own size; an unknown tiling repeats, and an
      // empty rectangle is the shape's box.
      Case("repeated", kTextureRepeated, 0, 0, 0, {11, 10, 31, 30}, kChecker,
           {11, 10, kA, 12, 10, kB, 11, 11, kC, 10, 9, kD, 39, 39, kC}),
      Case("unknown tiling", 7, 15, 11, 0, {}, kChecker,
           {15, 11, kA, 16, 11, kB, 15, 12, kC, 54, 50, kD, 14, 11, 0}),
      // Stretched: each texel 10 x 10 pixels, the edge texels continuing beyond the rectangle.
      Case("stretched", kTextureStretched, 0, 0, 0, {10, 10, 30, 30}, kChecker,
           {12, 12, kA, 27, 12, kB, 12, 27, kC, 27, 27, kD, 0, 0, kA, 39, 39, kD}),
      // Centred once on white; the stroke width moves the ground, not the texture's place on the shape.
      Case("centred", kTextureCentred, 0, 0, 5, {}, kChecker,
           {19, 19, kA, 20, 19, kB, 19, 20, kC, 20, 20, kD, 18, 19, kWhite, 39, 39, kWhite}),
      // A larger texture is cropped symmetrically: the ground is 42 wide from one pixel left of the shape,
      // the texture starts (42 - 100) / 2 = -29 into it, so shape pixel x shows texel x + 30.
      Case("centred larger", kTextureCentred, 0, 0, 0, {}, kNumbered,
           {0, 0, 0xFF001E1Eu, 39, 0, 0xFF00451Eu, 0, 39, 0xFF001E45u}),
      // Without pixels, or not chosen, the layer paints its colour.
      Case("no texture", 0, 0, 0, 0, {}, kNoTexture, {10, 10, painted}),
      Case("no pixels", 0, 0, 0, 0, {}, kNoPixels, {10, 10, painted}),
      Case("not chosen", 0, 0, 0, 0, {}, kNotChosen, {10, 10, painted}),
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    test::DrawingScene s(60, 60, c.x, c.y, c.x + 40, c.y + 40);
    std::vector<uint32_t> numbered(100 * 100);  // each texel naming its own place
    for (uint32_t i = 0; i < numbered.size(); ++i) numbered[i] = 0xFF000000u | (i % 100) << 8 | i / 100;
    if (c.texels == kNumbered) s.setTexture(&s.process.face, numbered, 100, 100);
    if (c.texels != kNumbered) s.setTexture(&s.process.face, {kA, kB, kC, kD}, 2, 2);
    if (c.texels == kNoTexture) s.process.face.texture.reset();
    if (c.texels == kNoPixels) s.process.face.texture->pixels = nullptr;
    if (c.texels == kNotChosen) s.process.face.fillType = 0;
    s.process.face.startColour = s.process.face.endColour = colour;
    s.process.face.textureTiling = c.tiling;
    s.process.strokeWidth = c.stroke;
    LayerAreas areas;
    areas.faceTexture = c.rect;
    s.expectDraws(kDrawFace, c.probes, areas);
  }
  // The Outline's centred ground covers the stroke band [7, 13]; the texture sits in the middle, where
  // the stroke is not.
  test::DrawingScene s(60, 60, 10, 10, 50, 50);
  s.setTexture(&s.process.outline, std::vector<uint32_t>(16 * 16, kB), 16, 16);
  s.process.outline.textureTiling = kTextureCentred;
  s.process.strokeWidth = 6.0;
  s.expectDraws(kDrawOutline, {8, 30, kWhite, 51, 30, kWhite, 30, 30, 0});
}

}  // namespace
}  // namespace lx
