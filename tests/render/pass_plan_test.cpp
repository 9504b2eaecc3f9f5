#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "render/pass_plan.h"

namespace lx {
namespace {

TEST(WorkBlurReach, WithoutOutlineTheLargerOfFaceAndShadow) {
  EXPECT_EQ(WorkBlurReach(false, 0, 0, 0, 0), 0);
  EXPECT_EQ(WorkBlurReach(false, 10, 30, 4, 0), 10);  // the Outline's reach does not count
  EXPECT_EQ(WorkBlurReach(false, 2, 30, 8, 0), 8);
}

TEST(WorkBlurReach, UnblurredFaceLeavesTheOutlineAndShadowReaches) {
  EXPECT_EQ(WorkBlurReach(true, 0, 6, 4, 2), 6);
  EXPECT_EQ(WorkBlurReach(true, 0, 2, 12, 8), 12);
}

TEST(WorkBlurReach, BlurredFaceOverUnblurredOutlineCountsOnlyPastTheStroke) {
  EXPECT_EQ(WorkBlurReach(true, 10, 0, 40, 4), 6);  // the Shadow is not considered
  EXPECT_EQ(WorkBlurReach(true, 4, 0, 40, 4), 40);  // F <= T: the Shadow's reach
  EXPECT_EQ(WorkBlurReach(true, 4, 0, 0, 6), 0);
}

TEST(WorkBlurReach, BlurredFaceOverBlurredOutline) {
  EXPECT_EQ(WorkBlurReach(true, 20, 6, 4, 8), 12);  // 6 + 8 < 20
  EXPECT_EQ(WorkBlurReach(true, 14, 6, 4, 8), 6);   // 6 + 8 = 14: not less
  EXPECT_EQ(WorkBlurReach(true, 10, 2, 30, 4), 30);
}

TEST(MeasureWork, BlurredFaceThickOutlineAndStrongShadow) {
  // Face level 5, stroke 4 wide, Outline level 0, Shadow level 20.
  const WorkGeometry g = MeasureWork({10, 20, 110, 70}, 4.0, 5, 0, 20);
  EXPECT_TRUE(g.outline);
  EXPECT_EQ(g.wholeThickness, 4);
  EXPECT_EQ(g.halfThickness, 2);
  EXPECT_EQ(g.reach, 6);
  EXPECT_EQ(g.margin, 14);
  EXPECT_EQ(g.workWidth, 114);
  EXPECT_EQ(g.workHeight, 64);
  EXPECT_EQ(g.glyphOffsetX, 2 - 10 + 5);
  EXPECT_EQ(g.glyphOffsetY, 2 - 20 + 5);
}

TEST(MeasureWork, BlurredOutlineAndShadow) {
  const WorkGeometry g = MeasureWork({0, 0, 50, 40}, 2.0, 0, 3, 2);
  EXPECT_EQ(g.reach, 6);
  EXPECT_EQ(g.margin, 2 + 6 + 4);
  EXPECT_EQ(g.glyphOffsetX, 1 + 5);
}

TEST(MeasureWork, FractionalStrokeWidth) {
  const WorkGeometry g = MeasureWork({0, 0, 10, 10}, 3.2, 0, 0, 0);
  EXPECT_EQ(g.wholeThickness, 3);
  EXPECT_EQ(g.halfThickness, 2);
  EXPECT_EQ(g.margin, 7);
  EXPECT_EQ(g.glyphOffsetX, 2 + 2);
}

TEST(MeasureWork, NoOutlineForZeroNegativeOrNaNWidth) {
  for (double w : {0.0, -3.0, std::numeric_limits<double>::quiet_NaN()}) {
    const WorkGeometry g = MeasureWork({-5, -7, 5, 3}, w, 0, 0, 0);
    EXPECT_FALSE(g.outline);
    EXPECT_EQ(g.wholeThickness, 0);
    EXPECT_EQ(g.halfThickness, 0);
    EXPECT_EQ(g.margin, 4);
    EXPECT_EQ(g.workWidth, 14);
    EXPECT_EQ(g.workHeight, 14);
    EXPECT_EQ(g.glyphOffsetX, 5 + 2);
    EXPECT_EQ(g.glyphOffsetY, 7 + 2);
  }
}

TEST(MeasureWork, BorderIsHalfTheReachAndPaddingRoundedDown) {
  // A stroke 1 wide: half of ceil(1) truncates to 0. Reach 2: border (2 + 4) >> 1 = 3.
  const WorkGeometry g = MeasureWork({0, 0, 10, 10}, 1.0, 0, 0, 1);
  EXPECT_EQ(g.reach, 2);
  EXPECT_EQ(g.halfThickness, 0);
  EXPECT_EQ(g.glyphOffsetX, 3);
  EXPECT_EQ(g.margin, 1 + 2 + 4);
  EXPECT_EQ(MeasureWork({0, 0, 10, 10}, 1.0, 0, 0, 2).glyphOffsetX, 4);  // reach 4: border 4
}

TEST(MeasureWork, HugeRectanglesDoNotOverflow) {
  const WorkGeometry g = MeasureWork({INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}, 2000.0, 255, 255, 255);
  EXPECT_EQ(g.workWidth, int64_t{UINT32_MAX} + g.margin);
  EXPECT_EQ(g.glyphOffsetX, int64_t{g.halfThickness} + (int64_t{1} << 31) + ((g.reach + 4) >> 1));
}

struct CutCase {
  const char* what;
  Box shape;
  Box image;
  int64_t dx;
  int32_t blurLevel;
  bool drawn;
  Box cut;
};

TEST(CutExtrudedShadow, KeepsWhatReachesTheBufferAndRefusesWhatStaysTooCostly) {
  const CutCase cases[] = {
      {"everyday offset: unchanged", {0, 0, 100, 100}, {0, 0, 105, 100}, 5, 0, true, {0, 0, 105, 100}},
      {"long offset: cut to the buffer plus 16",
       {0, 0, 100, 100},
       {-1000000, 0, 100, 100},
       1000000,
       0,
       true,
       {-16, 0, 100, 100}},
      {"blur 10 widens the margin to 46",
       {0, 0, 100, 100},
       {-1000000, 0, 100, 100},
       1000000,
       10,
       true,
       {-46, 0, 100, 100}},
      {"a huge shape stays too costly",
       {0, 0, 100000, 100000},
       {-100000, 0, 100000, 100000},
       100000,
       0,
       false,
       {-16, 0, 100000, 100000}},
  };
  for (const CutCase& c : cases) {
    ExtrudedShadow e{c.image, c.shape, c.dx, 0};
    EXPECT_EQ(CutExtrudedShadow(&e, 200, 100, static_cast<uint8_t>(c.blurLevel)), c.drawn) << c.what;
    EXPECT_EQ(e.image.left, c.cut.left) << c.what;
    EXPECT_EQ(e.image.top, c.cut.top) << c.what;
    EXPECT_EQ(e.image.right, c.cut.right) << c.what;
    EXPECT_EQ(e.image.bottom, c.cut.bottom) << c.what;
  }
}

TEST(ExtrudedShadow, CostCountsOnlyTheStepsThatCrossTheImage) {
  // 5 steps over a 105 x 100 image; a million steps over the same image cost as many as cross it.
  EXPECT_EQ((ExtrudedShadow{{0, 0, 105, 100}, {0, 0, 100, 100}, 5, 0}.cost()), 5.0 * 105 * 100);
  EXPECT_EQ((ExtrudedShadow{{0, 0, 105, 100}, {0, 0, 100, 100}, 1000000, 3}.cost()), 205.0 * 105 * 100);
  EXPECT_EQ((ExtrudedShadow{{0, 0, 100, 105}, {0, 0, 100, 100}, 2, -1000000}.cost()), 205.0 * 105 * 100);
}

struct ShadowCase {
  const char* what;
  int32_t offsetX, offsetY;
  double zoomX;
  bool extruded;
  Box image;
  int64_t shiftX;
  bool zoomed;
};

TEST(PlanShadow, ZoomsAboutTheCentreMovesByTheOffsetAndTakesInTheExtrusion) {
  // A 10 x 10 outline without stroke or blur: a 14 x 14 work image with the outline 2 pixels in,
  // translated to (5, 7).
  const WorkGeometry g = MeasureWork({0, 0, 10, 10}, 0.0, 0, 0, 0);
  const ShadowCase cases[] = {
      {"flat, moved by (3, 4)", 3, 4, 1.0, false, {6, 9, 20, 23}, 0, false},
      {"twice as wide about the centre", 3, 4, 2.0, false, {-1, 9, 27, 23}, 0, true},
      {"extruded towards the bottom right", 3, 4, 1.0, true, {3, 5, 20, 23}, 0, false},
      {"extruded to the left: the shape sits 3 in", -3, 0, 1.0, true, {0, 5, 17, 19}, 3, false},
  };
  for (const ShadowCase& c : cases) {
    ShadowPlacement p;
    p.translateX = 5;
    p.translateY = 7;
    p.offsetX = c.offsetX;
    p.offsetY = c.offsetY;
    p.zoomX = c.zoomX;
    p.extruded = c.extruded;
    ShadowPlan plan;
    ASSERT_TRUE(PlanShadow(g, p, 100, 100, &plan)) << c.what;
    EXPECT_EQ(plan.image.left, c.image.left) << c.what;
    EXPECT_EQ(plan.image.top, c.image.top) << c.what;
    EXPECT_EQ(plan.image.right, c.image.right) << c.what;
    EXPECT_EQ(plan.image.bottom, c.image.bottom) << c.what;
    EXPECT_EQ(plan.shiftX, c.shiftX) << c.what;
    EXPECT_EQ(plan.shiftY, 0) << c.what;
    EXPECT_EQ(plan.zoomed, c.zoomed) << c.what;
  }
}

}  // namespace
}  // namespace lx
