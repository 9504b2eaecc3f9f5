#include "render/pass_plan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace lx {
namespace {

std::string Text(const Box& b) {
  return std::to_string(b.left) + "," + std::to_string(b.top) + "," + std::to_string(b.right) + "," +
         std::to_string(b.bottom);
}

std::string Text(const WorkGeometry& g) {
  return "outline " + std::to_string(g.outline) + " whole " + std::to_string(g.wholeThickness) + " half " +
         std::to_string(g.halfThickness) + " reach " + std::to_string(g.reach) + " margin " +
         std::to_string(g.margin) + " size " + std::to_string(g.workWidth) + "x" +
         std::to_string(g.workHeight) + " offset " + std::to_string(g.glyphOffsetX) + "," +
         std::to_string(g.glyphOffsetY);
}

TEST(WorkBlurReach, FollowsWhichLayersAreBlurredAndTheStroke) {
  const struct {
    bool outline;
    int32_t face, outlineReach, shadow, thickness, expected;
  } cases[] = {
      {false, 0, 0, 0, 0, 0},
      {false, 10, 30, 4, 0, 10},  // without an Outline its reach does not count
      {false, 2, 30, 8, 0, 8},
      {true, 0, 6, 4, 2, 6},
      {true, 0, 2, 12, 8, 12},
      // A blurred Face over an unblurred Outline: only what passes the stroke, the Shadow left out.
      {true, 10, 0, 40, 4, 6},
      {true, 4, 0, 40, 4, 40},
      {true, 4, 0, 0, 6, 0},
      // Over a blurred Outline.
      {true, 20, 6, 4, 8, 12},
      {true, 14, 6, 4, 8, 6},
      {true, 10, 2, 30, 4, 30},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(WorkBlurReach(c.outline, c.face, c.outlineReach, c.shadow, c.thickness), c.expected)
        << c.outline << " " << c.face << " " << c.outlineReach << " " << c.shadow << " " << c.thickness;
  }
}

TEST(MeasureWork, MarginsBordersAndOffsetsFollowStrokeAndBlur) {
  const struct {
    IntRect glyphs;
    double stroke;
    uint8_t face, outline, shadow;
    const char* expected;
  } cases[] = {
      {{10, 20, 110, 70},
       4.0,
       5,
       0,
       20,
       "outline 1 whole 4 half 2 reach 6 margin 14 size 114x64 offset -3,-13"},
      {{0, 0, 50, 40}, 2.0, 0, 3, 2, "outline 1 whole 2 half 1 reach 6 margin 12 size 62x52 offset 6,6"},
      {{0, 0, 10, 10}, 3.2, 0, 0, 0, "outline 1 whole 3 half 2 reach 0 margin 7 size 17x17 offset 4,4"},
      // A stroke 1 wide: half of ceil(1) truncates to 0; the border is half of reach + 4, rounded down.
      {{0, 0, 10, 10}, 1.0, 0, 0, 1, "outline 1 whole 1 half 0 reach 2 margin 7 size 17x17 offset 3,3"},
      {{0, 0, 10, 10}, 1.0, 0, 0, 2, "outline 1 whole 1 half 0 reach 4 margin 9 size 19x19 offset 4,4"},
      {{-5, -7, 5, 3}, 0.0, 0, 0, 0, "outline 0 whole 0 half 0 reach 0 margin 4 size 14x14 offset 7,9"},
      {{-5, -7, 5, 3}, -3.0, 0, 0, 0, "outline 0 whole 0 half 0 reach 0 margin 4 size 14x14 offset 7,9"},
      {{-5, -7, 5, 3}, NAN, 0, 0, 0, "outline 0 whole 0 half 0 reach 0 margin 4 size 14x14 offset 7,9"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Text(MeasureWork(c.glyphs, c.stroke, c.face, c.outline, c.shadow)), c.expected);
  }
  const WorkGeometry g = MeasureWork({INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}, 2000.0, 255, 255, 255);
  EXPECT_EQ(g.workWidth, int64_t{UINT32_MAX} + g.margin);
  EXPECT_EQ(g.glyphOffsetX, int64_t{g.halfThickness} + (int64_t{1} << 31) + ((g.reach + 4) >> 1));
}

TEST(CutExtrudedShadow, KeepsWhatReachesTheBufferAndRefusesWhatStaysTooCostly) {
  const struct {
    const char* what;
    Box shape, image;
    int64_t dx;
    uint8_t blurLevel;
    bool drawn;
    const char* cut;
  } cases[] = {
      {"everyday offset: unchanged", {0, 0, 100, 100}, {0, 0, 105, 100}, 5, 0, true, "0,0,105,100"},
      {"cut to the buffer plus 16",
       {0, 0, 100, 100},
       {-1000000, 0, 100, 100},
       1000000,
       0,
       true,
       "-16,0,100,100"},
      {"blur 10: plus 46", {0, 0, 100, 100}, {-1000000, 0, 100, 100}, 1000000, 10, true, "-46,0,100,100"},
      {"a huge shape stays too costly",
       {0, 0, 100000, 100000},
       {-100000, 0, 100000, 100000},
       100000,
       0,
       false,
       "-16,0,100000,100000"},
  };
  for (const auto& c : cases) {
    ExtrudedShadow e{c.image, c.shape, c.dx, 0};
    EXPECT_EQ(CutExtrudedShadow(&e, 200, 100, c.blurLevel), c.drawn) << c.what;
    EXPECT_EQ(Text(e.image), c.cut) << c.what;
  }
  // Only the steps that bring the shape over the image cost anything.
  EXPECT_EQ((ExtrudedShadow{{0, 0, 105, 100}, {0, 0, 100, 100}, 5, 0}.cost()), 5.0 * 105 * 100);
  EXPECT_EQ((ExtrudedShadow{{0, 0, 105, 100}, {0, 0, 100, 100}, 1000000, 3}.cost()), 205.0 * 105 * 100);
  EXPECT_EQ((ExtrudedShadow{{0, 0, 100, 105}, {0, 0, 100, 100}, 2, -1000000}.cost()), 205.0 * 105 * 100);
}

TEST(PlanShadow, ZoomsAboutTheCentreMovesByTheOffsetAndTakesInTheExtrusion) {
  // A 10 x 10 outline without stroke or blur: a 14 x 14 work image with the outline 2 pixels in,
  // translated to (5, 7).
  const WorkGeometry g = MeasureWork({0, 0, 10, 10}, 0.0, 0, 0, 0);
  const struct {
    const char* what;
    int32_t offsetX, offsetY;
    double zoomX;
    bool extruded;
    const char* image;
    int64_t shiftX;
    bool zoomed;
  } cases[] = {
      {"flat, moved by (3, 4)", 3, 4, 1.0, false, "6,9,20,23", 0, false},
      {"twice as wide about the centre", 3, 4, 2.0, false, "-1,9,27,23", 0, true},
      {"extruded towards the bottom right", 3, 4, 1.0, true, "3,5,20,23", 0, false},
      {"extruded to the left: the shape sits 3 in", -3, 0, 1.0, true, "0,5,17,19", 3, false},
  };
  for (const auto& c : cases) {
    ShadowPlacement p;
    p.translateX = 5;
    p.translateY = 7;
    p.offsetX = c.offsetX;
    p.offsetY = c.offsetY;
    p.zoomX = c.zoomX;
    p.extruded = c.extruded;
    ShadowPlan plan;
    ASSERT_TRUE(PlanShadow(g, p, 100, 100, &plan)) << c.what;
    EXPECT_EQ(Text(plan.image), c.image) << c.what;
    EXPECT_EQ(plan.shiftX, c.shiftX) << c.what;
    EXPECT_EQ(plan.shiftY, 0) << c.what;
    EXPECT_EQ(plan.zoomed, c.zoomed) << c.what;
  }
}

// The whole extruded image may be drawn for the smoothing's densest pixel up to 2^22 pixels and 2^26
// pixel blends (its pixels times the stamps and the shape); a blurred or flat Shadow is not smoothed.
TEST(PlanShadow, MeasuresTheDensestPixelOverTheWholeImageOnlyWhileItIsCheap) {
  const struct {
    const char* what;
    int64_t width, height;  // the outline's; its work image is 4 larger each way, plus the offset
    int32_t offsetX;
    bool extruded;
    uint8_t blurLevel;
    bool whole;
  } cases[] = {
      {"everyday text", 600, 90, 5, true, 0, true},
      {"blurred instead of smoothed", 600, 90, 5, true, 2, false},
      {"not extruded", 600, 90, 5, false, 0, false},
      {"2048 x 2048: 2^22 pixels", 2043, 2044, 1, true, 0, true},
      {"2049 x 2048", 2044, 2044, 1, true, 0, false},
      {"1024 x 1024 and 63 stamps: 2^26 blends", 957, 1020, 63, true, 0, true},
      {"1024 x 1024 and 64 stamps", 956, 1020, 64, true, 0, false},
  };
  for (const auto& c : cases) {
    const WorkGeometry g = MeasureWork({0, 0, static_cast<int32_t>(c.width), static_cast<int32_t>(c.height)},
                                       0.0, 0, 0, c.blurLevel);
    ShadowPlacement p;
    p.offsetX = c.offsetX;
    p.extruded = c.extruded;
    p.blurLevel = c.blurLevel;
    ShadowPlan plan;
    ASSERT_TRUE(PlanShadow(g, p, 100, 100, &plan)) << c.what;
    EXPECT_EQ(plan.densestOverWhole, c.whole) << c.what << ": image " << Text(plan.image);
  }
}

}  // namespace
}  // namespace lx
