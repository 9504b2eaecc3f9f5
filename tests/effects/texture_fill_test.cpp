#include "effects/texture_fill.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/effects/drawing_scene.h"

namespace lx {
namespace {

using test::Channel;
using test::DrawingScene;
using test::Packed;
using test::PixelOf;

// A 2 x 2 checker of four distinct opaque pixels: A B on the first row, C D on the second.
constexpr uint32_t kA = 0xFF102030u, kB = 0xFF405060u, kC = 0xFF708090u, kD = 0xFFA0B0C0u;
const std::vector<uint32_t> kChecker = {kA, kB, kC, kD};
constexpr uint32_t kWhitePixel = 0xFFFFFFFFu;

void Square(DrawingScene* s, double x, double y, double side) {
  test::ContourRecords r;
  test::AddSquare(&r, x, y, side);
  s->setPath(r);
}

uint32_t CheckerAt(int tx, int ty) {
  const int x = ((tx % 2) + 2) % 2, y = ((ty % 2) + 2) % 2;
  return kChecker[y * 2 + x];
}

TEST(TextureFill, RepeatedFromTheRectanglesCornerAtItsOwnSize) {
  DrawingScene s(40, 40);
  Square(&s, 0, 0, 40);
  s.setTexture(&s.process.face, kChecker, 2, 2);
  s.process.face.textureTiling = kTextureRepeated;
  LayerAreas areas;
  areas.faceTexture = {11, 10, 31, 30};  // only its top-left corner counts
  s.draw(kDrawFace, areas);
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 40; ++x) ASSERT_EQ(s.at(x, y), CheckerAt(x - 11, y - 10)) << x << "," << y;
  }
}

TEST(TextureFill, EmptyRectangleMeansTheShapesBoxUnderTheGlyphMatrix) {
  // An unknown tiling repeats; the box of a shape at (5, 6) moved by (10, 5) starts at (15, 11).
  DrawingScene s(50, 50);
  Square(&s, 5, 6, 30);
  s.process.glyphMatrix.translate(10, 5);
  s.setTexture(&s.process.face, kChecker, 2, 2);
  s.process.face.textureTiling = 7;
  s.draw(kDrawFace);
  const struct {
    int x, y;
    uint32_t want;
  } probes[] = {{15, 11, kA}, {16, 11, kB}, {15, 12, kC}, {44, 40, kD}, {14, 11, 0u}, {15, 10, 0u}};
  for (const auto& p : probes) EXPECT_EQ(s.at(p.x, p.y), p.want) << p.x << "," << p.y;

  // A rectangle of the caller's is under the glyph matrix too.
  s.clear();
  s.process.face.textureTiling = kTextureRepeated;
  LayerAreas areas;
  areas.faceTexture = {0, 0, 2, 2};
  s.draw(kDrawFace, areas);
  EXPECT_EQ((std::vector<uint32_t>{s.at(16, 11), s.at(17, 11), s.at(16, 12)}),
            (std::vector<uint32_t>{kA, kB, kC}));
}

TEST(TextureFill, StretchedIsFilteredBilinearlyWithClampedEdges) {
  DrawingScene s(40, 40);
  Square(&s, 0, 0, 40);
  s.setTexture(&s.process.face, kChecker, 2, 2);
  s.process.face.textureTiling = kTextureStretched;
  LayerAreas areas;
  areas.faceTexture = {10, 10, 30, 30};  // each texel becomes 10 x 10 pixels
  s.draw(kDrawFace, areas);
  // Towards the outer edge of each quadrant only one texel contributes.
  EXPECT_EQ((std::vector<uint32_t>{s.at(12, 12), s.at(27, 12), s.at(12, 27), s.at(27, 27)}), kChecker);
  // Between texel centres the colours are mixed: every byte strictly between A's and B's.
  const uint32_t mid = s.at(20, 12);
  for (int sh = 0; sh < 24; sh += 8) {
    EXPECT_GT(Channel(mid, sh), Channel(kA, sh));
    EXPECT_LT(Channel(mid, sh), Channel(kB, sh));
  }
  // Beyond the rectangle the edge texels continue.
  EXPECT_EQ((std::vector<uint32_t>{s.at(0, 0), s.at(37, 12), s.at(2, 37), s.at(39, 39)}), kChecker);
}

TEST(TextureFill, CentredOnceOnWhite) {
  DrawingScene s(40, 40);
  Square(&s, 0, 0, 40);
  s.setTexture(&s.process.face, kChecker, 2, 2);
  s.process.face.textureTiling = kTextureCentred;
  for (double stroke : {0.0, 5.0, 12.0}) {
    s.clear();
    s.process.strokeWidth = stroke;  // moves the ground, not the texture's place on the shape
    s.draw(kDrawFace);
    for (int y = 0; y < 40; ++y) {
      for (int x = 0; x < 40; ++x) {
        uint32_t want = kWhitePixel;
        if (x >= 19 && x <= 20 && y >= 19 && y <= 20) want = CheckerAt(x - 19, y - 19);
        ASSERT_EQ(s.at(x, y), want) << x << "," << y << " stroke " << stroke;
      }
    }
  }
}

TEST(TextureFill, LargerTextureIsCroppedSymmetricallyAndShowsNoWhite) {
  std::vector<uint32_t> big(100 * 100);
  for (int y = 0; y < 100; ++y) {
    for (int x = 0; x < 100; ++x) big[y * 100 + x] = 0xFF000000u | uint32_t(x) << 8 | uint32_t(y);
  }
  DrawingScene s(40, 40);
  Square(&s, 0, 0, 40);
  s.setTexture(&s.process.face, big, 100, 100);
  s.process.face.textureTiling = kTextureCentred;
  s.draw(kDrawFace);
  // The ground is 42 wide and starts one pixel left of the shape; the texture starts (42 - 100) / 2 = -29
  // into it, so shape pixel x shows texel x + 30: texels 30..69 of 0..99, the middle of the texture.
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 40; ++x) {
      ASSERT_EQ(s.at(x, y), 0xFF000000u | uint32_t(x + 30) << 8 | uint32_t(y + 30)) << x << "," << y;
    }
  }
}

TEST(TextureFill, CentredOutlineGroundCoversTheStroke) {
  DrawingScene s(60, 60);
  Square(&s, 10, 10, 40);
  s.setTexture(&s.process.outline, std::vector<uint32_t>(16 * 16, kB), 16, 16);
  s.process.outline.textureTiling = kTextureCentred;
  s.process.strokeWidth = 6.0;
  s.draw(kDrawOutline);
  // The stroke band [7, 13] is white; the texture sits in the middle, where there is no stroke.
  EXPECT_EQ(s.at(8, 30), kWhitePixel);
  EXPECT_EQ(s.at(51, 30), kWhitePixel);
  EXPECT_EQ(s.at(30, 30), 0u);

  // A wide stroke passes over the middle of the shape, where the texture lies, centred on the shape.
  DrawingScene c(60, 60);
  Square(&c, 20, 20, 20);
  c.setTexture(&c.process.outline, std::vector<uint32_t>(10 * 10, kB), 10, 10);
  c.process.outline.textureTiling = kTextureCentred;
  c.process.strokeWidth = 14.0;
  c.draw(kDrawOutline);
  EXPECT_EQ((std::vector<uint32_t>{c.at(25, 30), c.at(34, 30), c.at(30, 25), c.at(24, 30), c.at(35, 30)}),
            (std::vector<uint32_t>{kB, kB, kB, kWhitePixel, kWhitePixel}));
}

TEST(TextureFill, WithoutPixelsTheLayerFallsBackToItsColour) {
  DrawingScene s(20, 20);
  Square(&s, 0, 0, 20);
  s.process.face.fillType = 1;  // texture fill type, no texture
  s.process.face.startColour = s.process.face.endColour = Packed(1, 2, 3, 255);
  s.draw(kDrawFace);
  EXPECT_EQ(s.at(10, 10), PixelOf(Packed(1, 2, 3, 255)));

  s.setTexture(&s.process.face, kChecker, 2, 2);
  s.process.face.texture->pixels = nullptr;  // a texture whose allocation failed
  s.clear();
  s.draw(kDrawFace);
  EXPECT_EQ(s.at(10, 10), PixelOf(Packed(1, 2, 3, 255)));

  s.process.face.texture->pixels = const_cast<uint32_t*>(kChecker.data());
  s.process.face.fillType = 0;  // a texture that is stored but not chosen
  s.clear();
  s.draw(kDrawFace);
  EXPECT_EQ(s.at(10, 10), PixelOf(Packed(1, 2, 3, 255)));
}

TEST(TextureFill, EachLayerChoosesItsOwnFill) {
  DrawingScene s(60, 60);
  Square(&s, 10, 10, 40);
  s.process.strokeWidth = 4.0;
  s.process.outline.startColour = s.process.outline.endColour = Packed(0, 255, 0, 255);
  s.setTexture(&s.process.face, kChecker, 2, 2);
  s.draw(kDrawFaceThenOutline);
  EXPECT_EQ(s.at(30, 30), CheckerAt(30 - 10, 30 - 10));
  EXPECT_EQ(s.at(9, 30), PixelOf(Packed(0, 255, 0, 255)));
}

}  // namespace
}  // namespace lx
