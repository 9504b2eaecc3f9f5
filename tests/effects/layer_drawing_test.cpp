#include "effects/layer_drawing.h"

#include <cmath>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "effects/gradient_fill.h"
#include "effects/texture_fill.h"

namespace lx {
namespace {

using V = std::vector<uint32_t>;

// Packed colour setting (red in the low byte), and the pixel value (blue in the low byte) it becomes.
uint32_t Packed(uint32_t r, uint32_t g, uint32_t b, uint32_t a) {
  return r | g << 8 | b << 16 | a << 24;
}
uint32_t PixelOf(uint32_t packed) {
  return (packed & 0xFF00FF00u) | (packed & 0xFFu) << 16 | (packed >> 16 & 0xFFu);
}

// A zeroed surface of its own and a rectangle from (x1, y1) to (x2, y2) to draw.
struct Scene {
  Scene(int32_t w, int32_t h, double x1, double y1, double x2, double y2) : pixels(size_t(w) * h) {
    surface = {reinterpret_cast<uint8_t*>(pixels.data()), w, h, w * 4};
    for (const auto& [x, y] : {std::pair{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}, {x1, y1}})
      path.push_back({x, y, path.empty() ? uint32_t{kPathMoveTo} : uint32_t{kPathLineTo}});
  }
  // Draws afresh and checks the pixels named by (x, y, pixel) triples.
  void expectDraws(int32_t mode, const V& probes, const LayerAreas& areas = LayerAreas{}) {
    std::fill(pixels.begin(), pixels.end(), 0u);
    DrawLayer(surface, path, matrix, face, outline, stroke, mode, areas);
    V got, want;
    for (size_t i = 0; i + 2 < probes.size(); i += 3) {
      got.push_back(pixels[probes[i + 1] * size_t(surface.width) + probes[i]]);
      want.push_back(probes[i + 2]);
    }
    EXPECT_EQ(got, want);
  }
  // Gives a layer a texture that wraps test-owned pixels.
  void setTexture(FillSettings* layer, const V& pixels, int32_t w, int32_t h) {
    texels = pixels;
    layer->texture = std::make_unique<TextureImage>();
    layer->texture->pixels = texels.data();
    layer->texture->width = w, layer->texture->height = h, layer->texture->bounds = {0, 0, w, h};
    layer->fillType = 1;
  }

  FillSettings face, outline;
  Affine matrix;
  double stroke = 0;
  OutlinePath path;
  V pixels, texels;
  PixelView surface;
};

TEST(LayerDrawing, ModesChooseLayersAndOrder) {
  const uint32_t red = Packed(255, 0, 0, 255), blue = Packed(0, 0, 255, 255), r = PixelOf(red),
                 b = PixelOf(blue);
  Scene s(80, 80, 20, 20, 60, 60);
  s.face.startColour = s.face.endColour = red;
  s.outline.startColour = s.outline.endColour = blue;
  s.stroke = 8.0;
  s.expectDraws(kDrawFaceThenOutline, {40, 40, r, 21, 40, b, 17, 40, b});  // the stroke's inner half on top
  s.expectDraws(kDrawOutlineThenFace, {40, 40, r, 21, 40, r, 17, 40, b});
  for (int32_t mode : {4, 5, 100, -1}) {
    s.expectDraws(mode, {});
    EXPECT_EQ(s.pixels, V(80 * 80, 0u)) << mode;
  }
  s.stroke = 0.0;  // no Outline at all
  s.expectDraws(kDrawOutline, {});
  EXPECT_EQ(s.pixels, V(80 * 80, 0u));
  s.expectDraws(kDrawFaceThenOutline, {20, 40, r, 19, 40, 0});
  s.surface.pixels = nullptr;  // nothing to draw into, or nothing to draw
  s.expectDraws(kDrawFace, {});
  s.surface.pixels = reinterpret_cast<uint8_t*>(s.pixels.data());
  s.path.clear();
  s.expectDraws(kDrawFace, {});
  EXPECT_EQ(s.pixels, V(80 * 80, 0u));

  Scene far(16, 16, -30000, -30000, 30000, 30000);  // clipped, however far out
  far.face.startColour = far.face.endColour = red;
  far.matrix.sx = far.matrix.sy = 1e6;
  far.stroke = 3.0;
  far.expectDraws(kDrawFaceThenOutline, {8, 8, r});
}

// Gradient kinds, parameters and fit modes at the ends of their ranges: a rectangle inset by `inset` on a
// 64 x 64 surface, painted from red to blue.
TEST(LayerDrawing, GradientsAtTheLimitsOfTheirSettings) {
  const uint32_t red = Packed(255, 0, 0, 255), blue = Packed(0, 0, 255, 255), r = PixelOf(red),
                 b = PixelOf(blue);
  struct Case {
    Case(const char* n, int32_t k, double x, void (*s)(FillSettings&), V p)
        : name(n), kind(k), inset(x), set(s), probes(std::move(p)) {}
    const char* name;
    int32_t kind;
    double inset;
    void (*set)(FillSettings&);
    V probes;  // x, y, pixel
  };
  const Case cases[] = {
      Case("solid", 0, 0, [](FillSettings& f) { f.useGradientTable = 1, f.gradientColours = {0xFF00FF00u}; },
           {0, 0, r, 63, 63, r}),
      Case("unknown kind", 4, 0, [](FillSettings&) {}, {0, 0, r, 63, 63, r}),
      Case("angle not a number", 3, 0, [](FillSettings& f) { f.gradientAngle = NAN; }, {0, 0, r, 63, 63, r}),
      Case("infinite angle", 3, 0, [](FillSettings& f) { f.gradientAngle = INFINITY; }, {0, 0, r, 63, 63, r}),
      // 0.49 is 7.84 sixteenths: truncated to 7, the step lies at 7 / 16 of the 32-pixel radius, 14 pixels.
      Case("radial step", 2, 0, [](FillSettings& f) { f.gradientFrom = f.gradientTo = 0.49; },
           {45, 32, r, 46, 32, b, 18, 32, r, 17, 32, b, 32, 18, r, 32, 17, b}),
      Case("radial not a number", 2, 0, [](FillSettings& f) { f.gradientFrom = f.gradientTo = NAN; },
           {32, 32, b, 0, 0, b}),
      Case("radial beyond 1", 2, 0, [](FillSettings& f) { f.gradientFrom = 5, f.gradientTo = 7; },
           {32, 32, r, 63, 32, r, 0, 0, b}),
      // Without a caller's buffer fit mode 1 spans the shape, as unknown modes do.
      Case("fit mode 1", 1, 16, [](FillSettings& f) { f.gradientFitMode = 1; }, {32, 16, r, 32, 47, b}),
      Case("fit mode 255", 1, 16, [](FillSettings& f) { f.gradientFitMode = 255; }, {32, 16, r, 32, 47, b}),
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Scene s(64, 64, c.inset, c.inset, 64 - c.inset, 64 - c.inset);
    s.face.gradientType = c.kind;
    s.face.startColour = red;
    s.face.endColour = blue;
    c.set(s.face);
    s.expectDraws(kDrawFace, c.probes);
  }
}

TEST(LayerDrawing, GradientRampAndArea) {
  const uint32_t a = Packed(255, 0, 0, 255), b = Packed(0, 255, 0, 128), c = Packed(0, 0, 255, 0);
  const uint32_t start = Packed(0, 0, 0, 255), end = Packed(255, 255, 255, 255),
                 mid = Packed(128, 128, 128, 255);
  // Each colour owns a share as wide as its weight; the ramp runs through the shares' centres, the first
  // and last moved to the ends. Nine entries fall at eighths: where the centres lie.
  const struct {
    int32_t useTable;
    V colours, weights, ramp;  // entries 0, 4, 5 and 8
  } cases[] = {
      {1, {a, b, c}, {7, 7, 7}, {a, b, 0, c}},
      {1, {a, b, c}, {2, 1, 1}, {a, 0, b, c}},
      {1, {a, b, a}, {0, 0, 0}, {a, b, 0, a}},
      {1, {a, b, a}, {}, {a, b, 0, a}},
      {1, {b}, {9}, {b, b, b, b}},
      {1, {}, {}, {start, mid, 0, end}},
      {0, {a, b}, {1, 1}, {start, mid, 0, end}},
      {1, {a, b, c}, {5, 0, 5}, {a, Packed(128, 0, 128, 128), 0, c}},
  };
  for (const auto& k : cases) {
    FillSettings f;
    f.startColour = start;
    f.endColour = end;
    f.useGradientTable = k.useTable;
    f.gradientColours = k.colours;
    f.gradientStops = k.weights;
    uint32_t ramp[9];
    BuildGradientRamp(f, ramp, 9);
    V got{ramp[0], ramp[4], ramp[5], ramp[8]}, want;
    for (size_t i = 0; i < 4; ++i) want.push_back(k.ramp[i] ? PixelOf(k.ramp[i]) : got[i]);
    EXPECT_EQ(got, want) << &k - cases;
  }

  // A user area wins, moved by the caller's buffer corner and held at the integer range; then fit mode 1
  // takes the caller's buffer when there is one; else the shape's box.
  FillSettings f;
  const IntRect shape{1, 2, 3, 4}, buffer{-5, -6, 100, 200};
  const auto area = [&](const IntRect& callerBuffer) {
    const IntRect r = GradientArea(f, shape, callerBuffer);
    return std::vector<int32_t>{r.left, r.top, r.right, r.bottom};
  };
  EXPECT_EQ(area(buffer), (std::vector<int32_t>{1, 2, 3, 4}));
  f.gradientFitMode = 1;
  EXPECT_EQ(area(buffer), (std::vector<int32_t>{-5, -6, 100, 200}));
  EXPECT_EQ(area(IntRect{}), (std::vector<int32_t>{1, 2, 3, 4}));
  f.userGradientArea = {10, 10, 10, 50};  // empty: counts as none
  EXPECT_EQ(area(buffer), (std::vector<int32_t>{-5, -6, 100, 200}));
  f.userGradientArea = {10, 20, 30, 40};
  EXPECT_EQ(area(buffer), (std::vector<int32_t>{5, 14, 25, 34}));
  f.userGradientArea = {INT32_MAX - 1, 0, INT32_MAX, 10};
  EXPECT_EQ(area(IntRect{10, 0, 20, 20}), (std::vector<int32_t>{INT32_MAX, 0, INT32_MAX, 10}));
}

// Where each tiling lays the texture on a 40 x 40 square at (x, y) of a 60 x 60 surface. The checker
// has four distinct opaque pixels: A B on its first row, C D on the second.
TEST(LayerDrawing, TexturePlacementOfEachTiling) {
  constexpr uint32_t kA = 0xFF102030u, kB = 0xFF405060u, kC = 0xFF708090u, kD = 0xFFA0B0C0u, kWhite = ~0u;
  enum Texels { kChecker, kNumbered, kNoTexture, kNoPixels, kNotChosen };
  const uint32_t colour = Packed(1, 2, 3, 255), painted = PixelOf(colour);
  struct Case {
    Case(const char* n, int32_t t, double x, double y, double s, IntRect r, Texels k, V p)
        : name(n), tiling(t), x(x), y(y), stroke(s), rect(r), texels(k), probes(std::move(p)) {}
    const char* name;
    int32_t tiling;
    double x, y, stroke;
    IntRect rect;
    Texels texels;
    V probes;  // x, y, pixel
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
  V numbered(100 * 100);  // each texel naming its own place
  for (uint32_t i = 0; i < numbered.size(); ++i) numbered[i] = 0xFF000000u | (i % 100) << 8 | i / 100;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Scene s(60, 60, c.x, c.y, c.x + 40, c.y + 40);
    if (c.texels == kNumbered) s.setTexture(&s.face, numbered, 100, 100);
    if (c.texels != kNumbered) s.setTexture(&s.face, {kA, kB, kC, kD}, 2, 2);
    if (c.texels == kNoTexture) s.face.texture.reset();
    if (c.texels == kNoPixels) s.face.texture->pixels = nullptr;
    if (c.texels == kNotChosen) s.face.fillType = 0;
    s.face.startColour = s.face.endColour = colour;
    s.face.textureTiling = c.tiling;
    s.stroke = c.stroke;
    LayerAreas areas;
    areas.faceTexture = c.rect;
    s.expectDraws(kDrawFace, c.probes, areas);
  }
  // The Outline's centred ground covers the stroke band [7, 13]; the texture sits in the middle, where
  // the stroke is not.
  Scene s(60, 60, 10, 10, 50, 50);
  s.setTexture(&s.outline, V(16 * 16, kB), 16, 16);
  s.outline.textureTiling = kTextureCentred;
  s.stroke = 6.0;
  s.expectDraws(kDrawOutline, {8, 30, kWhite, 51, 30, kWhite, 30, 30, 0});
}
TEST(UniformColour, AnswersAndTheColoursWritten) {
  // Per setting: UniformLayerColour's answer and the colour it wrote, without and with alphaOnly, then
  // LayerAlphaEquals for 255 and for 100.
  FillSettings f;
  const uint32_t c = Packed(1, 2, 3, 255), t = Packed(10, 20, 30, 100), none = 0xDEAD;
  const auto answers = [&f] {
    V out;
    for (uint8_t alphaOnly : {0, 1}) {
      uint32_t colour = 0xDEAD;
      out.push_back(UniformLayerColour(f, &colour, alphaOnly));
      out.push_back(colour);
    }
    out.insert(out.end(), {uint32_t(LayerAlphaEquals(f, 255)), uint32_t(LayerAlphaEquals(f, 100))});
    return out;
  };
  f.startColour = f.endColour = c;
  EXPECT_EQ(answers(), (V{1, c, 1, c, 1, 0}));
  f.endColour = Packed(9, 9, 9, 255);
  EXPECT_EQ(answers(), (V{0, none, 1, c, 1, 0}));
  f.endColour = Packed(1, 2, 3, 254);  // with alphaOnly the colour is written even when the answer is 0
  EXPECT_EQ(answers(), (V{0, none, 0, c, 0, 0}));
  f.useGradientTable = 1;  // the colour stops decide: an empty list is uniform, but of no alpha
  EXPECT_EQ(answers(), (V{1, none, 1, none, 0, 0}));
  f.gradientColours = {t, t};
  EXPECT_EQ(answers(), (V{1, t, 1, t, 0, 1}));
  f.gradientColours[1] = Packed(99, 20, 30, 100);
  EXPECT_EQ(answers(), (V{0, t, 1, t, 0, 1}));
  f.gradientColours[1] = Packed(10, 20, 30, 101);
  EXPECT_EQ(answers(), (V{0, t, 0, t, 0, 0}));

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
  EXPECT_EQ(answers(), (V{0, none, 0, none, 0, 0}));
}

}  // namespace
}  // namespace lx
