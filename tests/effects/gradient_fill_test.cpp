#include "effects/gradient_fill.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "tests/effects/drawing_scene.h"

namespace lx {
namespace {

using test::Packed;
using test::PixelOf;

const uint32_t kRed = Packed(255, 0, 0, 255), kBlue = Packed(0, 0, 255, 255);

// Gradient kinds, parameters and fit modes at the ends of their ranges, on a 64 x 64 surface: a
// rectangle from (x, y) to (64 - x, 64 - y) painted from red to blue.
TEST(GradientFill, KindsParametersAndFitModesAtTheirLimits) {
  const uint32_t r = PixelOf(kRed), b = PixelOf(kBlue);
  struct Case {
    Case(const char* n, int32_t k, double x, void (*s)(FillSettings&), std::vector<uint32_t> p)
        : name(n), kind(k), inset(x), set(s), probes(std::move(p)) {}
    const char* name;
    int32_t kind;
    double inset;
    void (*set)(FillSettings&);
    std::vector<uint32_t> probes;  // x, y, pixel
  };
  const Case cases[] = {
      Case("solid", 0, 0, [](FillSettings& f) { f.useGradientTable = 1, f.gradientColours = {kBlue}; },
           {0, 0, r, 63, 63, r}),
      Case("unknown kind", 4, 0, [](FillSettings&) {}, {0, 0, r, 63, 63, r}),
      Case("negative kind", -1, 0, [](FillSettings&) {}, {0, 0, r, 63, 63, r}),
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
    test::DrawingScene s(64, 64, c.inset, c.inset, 64 - c.inset, 64 - c.inset);
    FillSettings& f = s.process.face;
    f.gradientType = c.kind;
    f.startColour = kRed;
    f.endColour = kBlue;
    c.set(f);
    s.expectDraws(kDrawFace, c.probes);
  }
}

int Channel(uint32_t pixel, int shift) {
  return static_cast<int>((pixel >> shift) & 0xFF);
}

TEST(GradientRamp, WeightsPlaceTheColourCentres) {
  const uint32_t a = Packed(255, 0, 0, 255), b = Packed(0, 255, 0, 128), c = Packed(0, 0, 255, 0);
  const uint32_t start = Packed(0, 0, 0, 255), end = Packed(255, 255, 255, 255);
  const struct {
    int32_t useTable;
    std::vector<uint32_t> colours, weights;
    std::vector<std::pair<double, uint32_t>> stops;  // the ramp runs linearly between them
  } cases[] = {
      // Centres at 1/6, 1/2 and 5/6; the outer two stretched to the ends.
      {1, {a, b, c}, {7, 7, 7}, {{0.0, a}, {0.5, b}, {1.0, c}}},
      {1, {a, b, c}, {5, 0, 5}, {{0.0, a}, {1.0, c}}},  // no trace of a colour whose weight is 0
      // Shares [0, 1/2), [1/2, 3/4), [3/4, 1]: centres 1/4, 5/8, 7/8; the first and last moved to the ends.
      {1, {a, b, c}, {2, 1, 1}, {{0.0, a}, {0.625, b}, {1.0, c}}},
      {1, {a, b, a}, {0, 0, 0}, {{0.0, a}, {0.5, b}, {1.0, a}}},
      {1, {a, b, a}, {}, {{0.0, a}, {0.5, b}, {1.0, a}}},
      {1, {b}, {9}, {{0.0, b}, {1.0, b}}},
      {1, {}, {}, {{0.0, start}, {1.0, end}}},          // a table in force but empty
      {0, {a, b}, {1, 1}, {{0.0, start}, {1.0, end}}},  // a table out of force
  };
  for (const auto& k : cases) {
    SCOPED_TRACE(&k - cases);
    FillSettings f;
    f.startColour = start;
    f.endColour = end;
    f.useGradientTable = k.useTable;
    f.gradientColours = k.colours;
    f.gradientStops = k.weights;
    uint32_t ramp[256];
    BuildGradientRamp(f, ramp, 256);
    EXPECT_EQ(ramp[0], PixelOf(k.stops.front().second));
    EXPECT_EQ(ramp[255], PixelOf(k.stops.back().second));
    for (int i = 0; i < 256; ++i) {
      const double t = i / 255.0;
      size_t s = 0;
      while (s + 2 < k.stops.size() && t > k.stops[s + 1].first) ++s;
      const double w = (t - k.stops[s].first) / (k.stops[s + 1].first - k.stops[s].first);
      for (int sh = 0; sh < 32; sh += 8) {
        const double from = Channel(PixelOf(k.stops[s].second), sh),
                     to = Channel(PixelOf(k.stops[s + 1].second), sh);
        ASSERT_NEAR(Channel(ramp[i], sh), from + (to - from) * w, 1.5) << i;
      }
    }
  }
}

TEST(GradientArea, UserAreaThenFitModeThenShape) {
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
  f.userGradientArea = {10, 20, 30, 40};
  EXPECT_EQ(area(buffer), (std::vector<int32_t>{5, 14, 25, 34}));
  f.userGradientArea = {INT32_MAX - 1, 0, INT32_MAX, 10};  // held at the integer range
  EXPECT_EQ(area(IntRect{10, 0, 20, 20}), (std::vector<int32_t>{INT32_MAX, 0, INT32_MAX, 10}));
  f.userGradientArea = {10, 10, 10, 50};  // empty: counts as none
  EXPECT_EQ(area(buffer), (std::vector<int32_t>{-5, -6, 100, 200}));
}

}  // namespace
}  // namespace lx
