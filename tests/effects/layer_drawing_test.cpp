// Drawing a layer: the AGG pieces it stands on and its gradient and uniform fills.
#include <cmath>
#include <random>
#include <vector>
#include <gtest/gtest.h>
#include "effects/agg_companions.h"
#include "effects/agg_pipeline.h"
#include "effects/gradient_fill.h"
#include "effects/layer_drawing.h"

namespace lx {
namespace {
using V = std::vector<uint32_t>;

// The reference scenes see what ordinary text needs of the AGG pieces; here are refusals and odd shapes.
TEST(AggCompanions, SingularMatricesFarCoordinatesAndStopVertices) {
  const double parl[6] = {10, 20, 50, 30, 60, 90};
  agg::trans_affine inverse(1, 2, 3, 4, 5, 6);
  EXPECT_FALSE(InvertAffine(agg::trans_affine(1.0, 2.0, 2.0, 4.0, 0, 0), &inverse));
  EXPECT_FALSE(InvertAffine(agg::trans_affine(NAN, 0, 0, 1, 0, 0), &inverse));
  EXPECT_FALSE(InvertAffine(RectToParallelogram(5, 0, 5, 4, parl), &inverse));
  EXPECT_EQ(inverse.tx, 5.0);  // left alone
  EXPECT_NEAR(MaxStretch(agg::trans_affine(1, 0, 1, 1, 0, 0)), (1 + std::sqrt(5.0)) / 2, 1e-12);
  // The span interpolator clamps far coordinates.
  AffineSpanInterpolator far(agg::trans_affine(1e9, 0, 0, -1e9, 0, 0), 1 << 20);
  far.begin(1e6, 1e6, 1);
  int x, y;
  far.coordinates(&x, &y);
  EXPECT_EQ(std::vector<int>({x, y}), std::vector<int>({1 << 20, -(1 << 20)}));
  // A vertex of no drawing command (a stop) is skipped.
  const OutlinePath path{{1, 1, kPathMoveTo}, {9, 9, kPathStop}, {2, 1, kPathLineTo}};
  FlattenedPath flat(path, 0.25);
  double px, py;
  flat.rewind(0);
  const unsigned first = flat.vertex(&px, &py), second = flat.vertex(&px, &py);
  EXPECT_EQ(std::vector<double>({double(first), double(second), px}), std::vector<double>({1, 2, 2}));
}

// Settings pack red in the low byte, pixels blue: the colours kRed and kBlue draw as r and b.
const auto Packed = [](uint32_t r, uint32_t g, uint32_t b, uint32_t a) {
  return r | g << 8 | b << 16 | a << 24;
};
const auto PixelOf = [](uint32_t c) { return (c & 0xFF00FF00u) | (c & 0xFFu) << 16 | (c >> 16 & 0xFFu); };
const uint32_t kRed = Packed(255, 0, 0, 255), kBlue = Packed(0, 0, 255, 255), r = PixelOf(kRed),
               b = PixelOf(kBlue);

// Gradient kinds and parameters at the ends of their ranges, on a 32 x 32 square from (16, 16), red to blue.
TEST(LayerDrawing, GradientsAtTheLimitsOfTheirSettings) {
  const auto expect = [&](int32_t kind, void (*set)(FillSettings&), const V& probes) {
    V pixels(64 * 64, 0u), got, want;
    OutlinePath path;
    for (const auto& [x, y] : {std::pair{16, 16}, {48, 16}, {48, 48}, {16, 48}, {16, 16}})
      path.push_back({double(x), double(y), path.empty() ? uint32_t{kPathMoveTo} : uint32_t{kPathLineTo}});
    FillSettings face;
    face.gradientType = kind, face.startColour = kRed, face.endColour = kBlue;
    set(face);
    DrawLayer({reinterpret_cast<uint8_t*>(pixels.data()), 64, 64, 256}, path, Affine{}, face, FillSettings{},
              0.0, kDrawFace, LayerAreas{});
    for (size_t i = 0; i + 2 < probes.size(); i += 3)
      got.push_back(pixels[probes[i + 1] * 64 + probes[i]]), want.push_back(probes[i + 2]);
    EXPECT_EQ(got, want) << kind;
  };
  expect(0, [](FillSettings& f) { f.useGradientTable = 1, f.gradientColours = {0xFF00FF00u}; },
         {16, 16, r, 47, 47, r});
  expect(3, [](FillSettings& f) { f.gradientAngle = NAN; }, {16, 16, r, 47, 47, r});
  // Radial fractions are held to 0 .. 1 (not a number as 0).
  expect(2, [](FillSettings& f) { f.gradientFrom = f.gradientTo = NAN; }, {32, 32, b, 16, 16, b});
  expect(2, [](FillSettings& f) { f.gradientFrom = 5, f.gradientTo = 7; }, {32, 32, r, 47, 32, r, 16, 16, b});
  // Without a caller's buffer fit mode 1 spans the shape.
  expect(1, [](FillSettings& f) { f.gradientFitMode = 1; }, {32, 16, r, 32, 47, b});
}

// A user area wins over fit mode 1, moved by the caller's buffer corner and held at the integer range; an
// empty one counts as none.
TEST(LayerDrawing, GradientArea) {
  FillSettings f;
  f.gradientFitMode = 1;
  f.userGradientArea = {10, 10, 10, 50};
  const IntRect empty = GradientArea(f, {1, 2, 3, 4}, {-5, -6, 100, 200});
  f.userGradientArea = {INT32_MAX - 1, INT32_MIN, INT32_MAX, 10};
  const IntRect held = GradientArea(f, {}, {10, -1, 20, 20});
  EXPECT_EQ((std::vector<int32_t>{empty.left, empty.bottom, held.left, held.top, held.right, held.bottom}),
            (std::vector<int32_t>{-5, 200, INT32_MAX, INT32_MIN, INT32_MAX, 9}));
}

TEST(UniformColour, AnswersAndTheColoursWritten) {
  // UniformLayerColour's answer and the colour it wrote, without and with alphaOnly, then whether the
  // layer's alpha is 255 and whether it is 100.
  FillSettings f;
  const auto answers = [&f] {
    uint32_t plain = 0, alpha = 0;
    V out{uint32_t(UniformLayerColour(f, &plain, 0)), 0,
          uint32_t(UniformLayerColour(f, &alpha, 1)), 0,
          uint32_t(LayerAlphaEquals(f, 255)),         uint32_t(LayerAlphaEquals(f, 100))};
    out[1] = plain, out[3] = alpha;
    return out;
  };
  const uint32_t c = Packed(1, 2, 3, 255), t = Packed(10, 20, 30, 100);
  f.startColour = c, f.endColour = Packed(9, 9, 9, 255);  // with alphaOnly the colour is written
  EXPECT_EQ(answers(), (V{0, 0, 1, c, 1, 0}));
  f.useGradientTable = 1;  // the colour stops decide: an empty list is uniform, but of no alpha
  EXPECT_EQ(answers(), (V{1, 0, 1, 0, 0, 0}));
  f.gradientColours = {t, Packed(10, 20, 30, 101)};
  EXPECT_EQ(answers(), (V{0, t, 0, t, 0, 0}));
  f.gradientColours = {t, Packed(99, 20, 30, 100)};
  EXPECT_EQ(answers(), (V{0, t, 1, t, 0, 1}));
  f.fillType = 1;  // a texture fill type is never uniform
  EXPECT_EQ(answers(), (V{0, 0, 0, 0, 0, 0}));
}
}  // namespace
}  // namespace lx

namespace lx {
namespace {

// A solid span gives what LayerBlender gives pixel by pixel: over transparent pixels that still carry
// colour bytes (four at a time where the build can), over translucent and opaque ones, with coverages
// that make alpha 0, in colours translucent and opaque, for spans whose length is not a multiple of four.
TEST(LayerDrawing, SolidSpanIsTheBlendersRulePixelByPixel) {
  std::mt19937 rng(11);
  for (int round = 0; round < 200; ++round) {
    const int len = 1 + static_cast<int>(rng() % 23);
    std::vector<uint32_t> target(static_cast<size_t>(len));
    std::vector<uint8_t> covers(static_cast<size_t>(len));
    for (int i = 0; i < len; ++i) {
      const unsigned kind = rng() % 4;
      target[static_cast<size_t>(i)] = kind < 2    ? rng() & 0x00FFFFFFu
                                       : kind == 2 ? rng()
                                                   : 0xFF000000u | rng();
      if (round % 2 == 0) target[static_cast<size_t>(i)] &= 0x00FFFFFFu;  // a fresh layer
      covers[static_cast<size_t>(i)] = static_cast<uint8_t>(rng() % 3 == 0   ? 255
                                                            : rng() % 4 == 0 ? 0
                                                                             : rng());
    }
    const LayerColour colour(static_cast<uint8_t>(rng()), static_cast<uint8_t>(rng()),
                             static_cast<uint8_t>(rng()),
                             static_cast<uint8_t>(round % 3 == 0 ? 255 : 1 + rng() % 254));
    std::vector<uint32_t> want = target;
    for (int i = 0; i < len; ++i) {
      LayerBlender::blend_pix(reinterpret_cast<agg::int8u*>(&want[static_cast<size_t>(i)]), colour.r,
                              colour.g, colour.b, colour.a, covers[static_cast<size_t>(i)]);
    }
    BlendSolidSpan(reinterpret_cast<agg::int8u*>(target.data()), len, colour, covers.data());
    ASSERT_EQ(target, want) << "round " << round;
  }
}

}  // namespace
}  // namespace lx
