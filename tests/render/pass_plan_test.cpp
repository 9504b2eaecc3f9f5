#include "render/pass_plan.h"
#include <gtest/gtest.h>
#include <cmath>
#include <sstream>
#include <string>

namespace lx {
namespace {
// Values joined by spaces; rectangles as "left,top,right,bottom".
template <typename... T>
std::string Join(const T&... v) {
  std::ostringstream out;
  ((out << v << ' '), ...);
  return out.str();
}
template <typename Rect>
std::string Text(const Rect& b) {
  return std::to_string(b.left) + "," + std::to_string(b.top) + "," + std::to_string(b.right) + "," +
         std::to_string(b.bottom);
}

std::string Text(const WorkGeometry& g) {
  return Join(g.outline, g.wholeThickness, g.halfThickness, g.reach, g.margin, g.workWidth, g.workHeight,
              g.glyphOffsetX, g.glyphOffsetY);
}

TEST(MeasureWork, MarginsBordersAndOffsetsFollowStrokeAndBlur) {
  // Outline drawn, whole and half thickness, reach, margin, size, offset. A stroke 1 wide: half of
  // ceil(1) truncates to 0; the border is half of reach + 4, rounded down.
  const struct {
    IntRect glyphs;
    double stroke;
    uint8_t face, outline, shadow;
    const char* expected;
  } cases[] = {{{10, 20, 110, 70}, 4.0, 5, 0, 20, "1 4 2 6 14 114 64 -3 -13 "},
               {{0, 0, 50, 40}, 2.0, 0, 3, 2, "1 2 1 6 12 62 52 6 6 "},
               {{0, 0, 10, 10}, 3.2, 0, 0, 0, "1 3 2 0 7 17 17 4 4 "},
               {{0, 0, 10, 10}, 1.0, 0, 0, 1, "1 1 0 2 7 17 17 3 3 "},
               {{0, 0, 10, 10}, 1.0, 0, 0, 2, "1 1 0 4 9 19 19 4 4 "},
               {{-5, -7, 5, 3}, 0.0, 0, 0, 0, "0 0 0 0 4 14 14 7 9 "},
               {{-5, -7, 5, 3}, -3.0, 0, 0, 0, "0 0 0 0 4 14 14 7 9 "},
               {{-5, -7, 5, 3}, NAN, 0, 0, 0, "0 0 0 0 4 14 14 7 9 "}};
  for (const auto& c : cases)
    EXPECT_EQ(Text(MeasureWork(c.glyphs, c.stroke, c.face, c.outline, c.shadow)), c.expected);
  EXPECT_EQ(Text(MeasureWork({INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}, 2000.0, 255, 255, 255)),
            "1 2000 1000 510 2514 4294969809 4294969809 2147484905 2147484905 ");
}

TEST(CutExtrudedShadow, KeepsWhatReachesTheBufferAndRefusesWhatStaysTooCostly) {
  // On a 200 x 100 buffer: cut to the buffer plus 16, plus 46 with blur 10; a huge shape stays too costly.
  const struct {
    Box shape, image;
    int64_t dx;
    uint8_t blurLevel;
    bool drawn;
    const char* cut;
  } cases[] = {
      {{0, 0, 100, 100}, {0, 0, 105, 100}, 5, 0, true, "0,0,105,100"},
      {{0, 0, 100, 100}, {-1000000, 0, 100, 100}, 1000000, 0, true, "-16,0,100,100"},
      {{0, 0, 100, 100}, {-1000000, 0, 100, 100}, 1000000, 10, true, "-46,0,100,100"},
      {{0, 0, 100000, 100000}, {-100000, 0, 100000, 100000}, 100000, 0, false, "-16,0,100000,100000"}};
  for (const auto& c : cases) {
    ExtrudedShadow e{c.image, c.shape, c.dx, 0};
    EXPECT_EQ(CutExtrudedShadow(&e, 200, 100, c.blurLevel), c.drawn) << c.cut;
    EXPECT_EQ(Text(e.image), c.cut);
  }
  // Only the steps that bring the shape over the image cost anything.
  EXPECT_EQ((ExtrudedShadow{{0, 0, 105, 100}, {0, 0, 100, 100}, 5, 0}.cost()), 5.0 * 105 * 100);
  EXPECT_EQ((ExtrudedShadow{{0, 0, 105, 100}, {0, 0, 100, 100}, 1000000, 3}.cost()), 205.0 * 105 * 100);
  EXPECT_EQ((ExtrudedShadow{{0, 0, 100, 105}, {0, 0, 100, 100}, 2, -1000000}.cost()), 205.0 * 105 * 100);
}

// The whole extruded image may be drawn for the smoothing's densest pixel up to 2^22 pixels and 2^26
// pixel blends (its pixels times the stamps and the shape). Zoom about the centre; a size the zoom leaves
// as it was is drawn unscaled; softening reaches 9, a blur of level r 3r.
TEST(PlanShadow, PlacesScalesAndReachesAsTheZoomOffsetExtrusionAndBlurAsk) {
  // On a 100 x 100 buffer, an outline of w x h: made, image, shape's corner in it, zoomed, scale,
  // stamped, softened, stamp reach, reach, densest pixel over the whole image.
  const struct {
    int32_t w, h;
    ShadowPlacement p;  // translation, offset, zoom, extruded, blur level
    const char* plan;
  } cases[] = {
      {10, 10, {5, 7, 3, 4, 1.0, 1.0, false, 0}, "1 6,9,20,23 0 0 0 1 1 0 0 0 2 0 "},
      {10, 10, {5, 7, 3, 4, 2.0, 1.0, false, 0}, "1 -1,9,27,23 0 0 1 2 1 0 0 0 2 0 "},
      {10, 10, {5, 7, 3, 4, 1.0, 1.0, true, 0}, "1 3,5,20,23 0 0 0 1 1 1 1 4 15 1 "},
      {10, 10, {5, 7, -3, 0, 1.0, 1.0, true, 0}, "1 0,5,17,19 3 0 0 1 1 1 1 3 14 1 "},
      {96, 56, {0, 0, 0, 0, 1.001, 1.001, false, 0}, "1 -2,-2,98,58 0 0 0 1 1 0 0 0 2 0 "},
      {96, 56, {0, 0, 0, 0, 1.001, 1.5, false, 0}, "1 -2,-17,98,73 0 0 1 1.001 1.5 0 0 0 2 0 "},
      {96, 56, {0, 0, 8, 3, 1.0, 1.0, false, 4}, "1 2,-3,110,65 0 0 0 1 1 0 0 0 14 0 "},
      {96, 56, {0, 0, 0, 0, 1.0, 1.0, true, 0}, "1 -2,-2,98,58 0 0 0 1 1 0 0 0 2 0 "},
      {96, 56, {0, 0, 8, -3, 1.0, 1.0, true, 0}, "1 -2,-5,106,58 0 3 0 1 1 1 1 8 19 1 "},
      {96, 56, {0, 0, -2, -11, 1.0, 1.0, true, 0}, "1 -4,-13,98,58 2 11 0 1 1 1 1 11 22 1 "},
      {96, 56, {0, 0, 5, 6, 1.0, 1.0, true, 3}, "1 -5,-5,106,67 0 0 0 1 1 1 0 6 17 0 "},
      {96,
       56,
       {0, 0, INT32_MIN, 0, 1.0, 1.0, true, 1},
       "1 -19,-3,99,59 16 0 0 1 1 1 0 2147483648 2147483653 0 "},
      {2043, 2044, {0, 0, 1, 0, 1.0, 1.0, true, 0}, "1 -2,-2,2046,2046 0 0 0 1 1 1 1 1 12 1 "},
      {2044, 2044, {0, 0, 1, 0, 1.0, 1.0, true, 0}, "1 -2,-2,2047,2046 0 0 0 1 1 1 1 1 12 0 "},
      {957, 1020, {0, 0, 63, 0, 1.0, 1.0, true, 0}, "1 -2,-2,1022,1022 0 0 0 1 1 1 1 63 74 1 "},
      {956, 1020, {0, 0, 64, 0, 1.0, 1.0, true, 0}, "1 -2,-2,1022,1022 0 0 0 1 1 1 1 64 75 0 "},
  };
  for (const auto& c : cases) {
    ShadowPlan s;
    const bool made = PlanShadow(MeasureWork({0, 0, c.w, c.h}, 0.0, 0, 0, c.p.blurLevel), c.p, 100, 100, &s);
    EXPECT_EQ(Join(made, Text(s.image), s.shiftX, s.shiftY, s.zoomed, s.scaleX, s.scaleY, s.stamped,
                   s.softened, s.stampReach, s.reach, s.densestOverWhole),
              c.plan)
        << c.w << "x" << c.h << " offset " << c.p.offsetX << "," << c.p.offsetY;
  }
}

// On an output of 200 x 100 pixels; the layout left from an earlier image must be replaced. The main pass
// places its image (100 x 60, the outline 7 right and 5 down of its corner) by the translation.
TEST(PlanWorkImage, KeepsWhatCanReachTheOutputAndTheMainPassPlacesItsImage) {
  const WorkGeometry kWork{false, 0, 0, 0, 0, 100, 60, 7, 5};
  EXPECT_EQ(Text(PlanMainPass(kWork, {40, -30, false, false, 0, 0, 0}).image), "33,-35,133,25");
  EXPECT_EQ(Text(PlanMainPass(kWork, {INT64_C(3000000000), 0}).image), "2999999993,-5,3000000093,55");
  // kept; layout in the kept part (empty when it is the kept part); the output seen from the layout,
  // held within 32 bits.
  const struct {
    Box layout;
    int64_t reach;
    const char* expected;
  } cases[] = {
      {{10, 20, 110, 80}, 5, "10,20,110,80 0,0,0,0 -10,-20,190,80"},
      {{-50, -40, 300, 150}, 5, "-5,-5,205,105 -45,-35,305,155 50,40,250,140"},
      {{-50, -40, 300, 150}, -1, "-50,-40,300,150 0,0,0,0 50,40,250,140"},
      {{-30, 10, 50, 20}, 0, "0,10,50,20 -30,0,50,10 30,-10,230,90"},
      {{199, 99, 260, 160}, 2, "199,99,202,102 0,0,61,61 -199,-99,1,1"},
      {{-INT64_C(2147483500), 0, 100, 10}, 0, "0,0,100,10 -2147483500,0,100,10 2147483500,0,2147483647,100"}};
  WorkImagePlan plan;
  for (const auto& c : cases) {
    plan.layout = {1, 1, 2, 2};
    ASSERT_TRUE(PlanWorkImage(c.layout, c.reach, 200, 100, &plan)) << c.expected;
    EXPECT_EQ(Text(plan.kept) + " " + Text(plan.layout) + " " + Text(plan.callerBuffer), c.expected);
  }
  // Nothing is made off each edge of the output, for an empty layout, or past 32 bits.
  for (const Box& layout : {Box{200, 0, 210, 10}, Box{0, 100, 10, 110}, Box{-10, 0, 0, 10},
                            Box{0, -10, 10, 0}, Box{5, 5, 5, 50}, Box{-INT64_C(3000000000), 0, 100, 10},
                            Box{0, -INT64_C(3000000000), 10, 10}, Box{10, 0, INT64_C(2147483648), 10}})
    EXPECT_FALSE(PlanWorkImage(layout, 50, 200, 100, &plan)) << Text(layout);
}
}  // namespace
}  // namespace lx
