#include <gtest/gtest.h>

#include <cstdint>

#include "render/pass_plan.h"

namespace lx {
namespace {

// A work image 100 x 60 whose outline sits 7 right and 5 down of its corner.
WorkGeometry Work() {
  WorkGeometry g;
  g.workWidth = 100;
  g.workHeight = 60;
  g.glyphOffsetX = 7;
  g.glyphOffsetY = 5;
  return g;
}

struct MainCase {
  const char* name;
  MainPassEffects effects;
  Box image;
  int64_t reach;
};

TEST(PlanMainPass, PlacesTheImageAndKeepsRoomForEveryEffect) {
  const MainCase cases[] = {
      {"plain", {0, 0, false, false, 0, 0, 0}, {-7, -5, 93, 55}, 2},
      {"translated", {40, -30, false, false, 0, 0, 0}, {33, -35, 133, 25}, 2},
      // The emboss bleeds 2 and reads 2 further.
      {"embossed", {0, 0, true, false, 0, 0, 0}, {-7, -5, 93, 55}, 4 + 2},
      // A blur of level r reaches 3r.
      {"face blur", {0, 0, false, false, 0, 5, 0}, {-7, -5, 93, 55}, 15 + 2},
      {"embossed and blurred", {0, 0, true, false, 0, 5, 0}, {-7, -5, 93, 55}, 4 + 15 + 2},
      // The border blurs (6) and then each of its passes reaches 7.
      {"border, 3 passes", {0, 0, false, true, 3, 0, 0}, {-7, -5, 93, 55}, 6 + 21 + 2},
      {"border and outline blur", {0, 0, false, true, 1, 0, 4}, {-7, -5, 93, 55}, 6 + 7 + 12 + 2},
      // Passes count only when the border is drawn.
      {"passes without border", {0, 0, false, false, 60, 0, 0}, {-7, -5, 93, 55}, 2},
      // The larger of the two layers' reaches, not their sum.
      {"face wider than outline", {0, 0, true, false, 0, 10, 2}, {-7, -5, 93, 55}, 4 + 30 + 2},
      {"outline wider than face", {0, 0, true, true, 2, 1, 0}, {-7, -5, 93, 55}, 6 + 14 + 2},
      {"far translation",
       {INT64_C(3000000000), 0, false, false, 0, 0, 0},
       {2999999993, -5, 3000000093, 55},
       2},
  };
  for (const MainCase& c : cases) {
    SCOPED_TRACE(c.name);
    const MainPlan plan = PlanMainPass(Work(), c.effects);
    EXPECT_EQ(plan.image.left, c.image.left);
    EXPECT_EQ(plan.image.top, c.image.top);
    EXPECT_EQ(plan.image.right, c.image.right);
    EXPECT_EQ(plan.image.bottom, c.image.bottom);
    EXPECT_EQ(plan.reach, c.reach);
  }
}

struct BorderCase {
  bool on;
  int32_t half;
  uint8_t elevation, passes;
  bool drawn;
};

TEST(BorderDrawn, NeedsTheSwitchAStrokeAndShadingItCanMake) {
  const BorderCase cases[] = {
      {true, 1, 3, 1, true},   {true, 5, 60, 60, true},  {false, 5, 10, 3, false},
      {true, 0, 10, 3, false}, {true, -1, 10, 3, false}, {true, 5, 2, 3, false},
      {true, 5, 61, 3, false}, {true, 5, 10, 0, false},  {true, 5, 10, 61, false},
  };
  for (const BorderCase& c : cases) {
    EXPECT_EQ(BorderDrawn(c.on, c.half, c.elevation, c.passes), c.drawn)
        << c.on << " " << c.half << " " << int{c.elevation} << " " << int{c.passes};
  }
}

void ExpectRect(const IntRect& got, const IntRect& want) {
  EXPECT_EQ(got.left, want.left);
  EXPECT_EQ(got.top, want.top);
  EXPECT_EQ(got.right, want.right);
  EXPECT_EQ(got.bottom, want.bottom);
}

struct KeepCase {
  const char* name;
  Box layout;
  int64_t reach;
  bool made;
  IntRect kept, layoutInKept, callerBuffer;
};

// An output of 200 x 100 pixels.
TEST(PlanWorkImage, KeepsWhatCanReachTheOutput) {
  const KeepCase cases[] = {
      {"inside: the whole image, no layout",
       {10, 20, 110, 80},
       5,
       true,
       {10, 20, 110, 80},
       {},
       {-10, -20, 190, 80}},
      {"past every edge: cut to the reach",
       {-50, -40, 300, 150},
       5,
       true,
       {-5, -5, 205, 105},
       {-45, -35, 305, 155},
       {50, 40, 250, 140}},
      {"negative reach keeps all",
       {-50, -40, 300, 150},
       -1,
       true,
       {-50, -40, 300, 150},
       {},
       {50, 40, 250, 140}},
      {"cut on the left only",
       {-30, 10, 50, 20},
       0,
       true,
       {0, 10, 50, 20},
       {-30, 0, 50, 10},
       {30, -10, 230, 90}},
      {"touching the last column",
       {199, 99, 260, 160},
       2,
       true,
       {199, 99, 202, 102},
       {0, 0, 61, 61},
       {-199, -99, 1, 1}},
      {"right of the output", {200, 0, 210, 10}, 50, false, {}, {}, {}},
      {"below the output", {0, 100, 10, 110}, 50, false, {}, {}, {}},
      {"ends at the left edge", {-10, 0, 0, 10}, 50, false, {}, {}, {}},
      {"ends at the top edge", {0, -10, 10, 0}, 50, false, {}, {}, {}},
      {"empty", {5, 5, 5, 50}, 5, false, {}, {}, {}},
      {"wider than 32 bits", {-INT64_C(3000000000), 0, 100, 10}, 5, false, {}, {}, {}},
      {"taller than 32 bits", {0, -INT64_C(3000000000), 10, 10}, 5, false, {}, {}, {}},
      {"right edge beyond 32 bits", {10, 0, INT64_C(2147483648), 10}, 5, false, {}, {}, {}},
      // The output seen from a far layout is held within 32 bits.
      {"caller buffer clamped",
       {-INT64_C(2147483500), 0, 100, 10},
       0,
       true,
       {0, 0, 100, 10},
       {-2147483500, 0, 100, 10},
       {2147483500, 0, INT32_MAX, 100}},
  };
  for (const KeepCase& c : cases) {
    SCOPED_TRACE(c.name);
    WorkImagePlan plan;
    plan.layout = {1, 1, 2, 2};  // left over from an earlier image
    ASSERT_EQ(PlanWorkImage(c.layout, c.reach, 200, 100, &plan), c.made);
    if (!c.made) continue;
    ExpectRect(plan.kept, c.kept);
    ExpectRect(plan.layout, c.layoutInKept);
    ExpectRect(plan.callerBuffer, c.callerBuffer);
  }
}

struct ShadowReachCase {
  const char* name;
  int32_t ox, oy;
  bool extruded;
  uint8_t blur;
  bool stamped, softened;
  int64_t stampReach, reach;
};

TEST(PlanShadow, ReachFollowsTheStampsAndTheSoftening) {
  const ShadowReachCase cases[] = {
      {"flat", 8, 3, false, 0, false, false, 0, 2},
      {"flat blurred", 8, 3, false, 4, false, false, 0, 12 + 2},
      // Extruded by nothing: no stamps, no softening.
      {"extruded in place", 0, 0, true, 0, false, false, 0, 2},
      {"extruded, softened", 8, -3, true, 0, true, true, 8, 9 + 8 + 2},
      {"extruded up the longer axis", -2, -11, true, 0, true, true, 11, 9 + 11 + 2},
      {"extruded and blurred", 5, 6, true, 3, true, false, 6, 9 + 6 + 2},
      {"extruded by the most negative offset", INT32_MIN, 0, true, 1, true, false, INT64_C(2147483648),
       3 + INT64_C(2147483648) + 2},
  };
  for (const ShadowReachCase& c : cases) {
    SCOPED_TRACE(c.name);
    ShadowPlacement p;
    p.offsetX = c.ox;
    p.offsetY = c.oy;
    p.extruded = c.extruded;
    p.blurLevel = c.blur;
    ShadowPlan plan;
    PlanShadow(Work(), p, 200, 100, &plan);
    EXPECT_EQ(plan.stamped, c.stamped);
    EXPECT_EQ(plan.softened, c.softened);
    EXPECT_EQ(plan.stampReach, c.stampReach);
    EXPECT_EQ(plan.reach, c.reach);
  }
}

TEST(PlanShadow, ScalesTheShapeOnlyWhenTheZoomChangesTheSize) {
  struct {
    double zx, zy, scaleX, scaleY;
  } const cases[] = {
      {1.0, 1.0, 1.0, 1.0},
      {2.0, 1.0, 2.0, 1.0},
      {1.0, 0.5, 1.0, 0.5},
      // 100 x 1.001 and 60 x 1.001 truncate back to the same size: drawn unscaled.
      {1.001, 1.001, 1.0, 1.0},
      // One side changed: both factors apply.
      {1.001, 1.5, 1.001, 1.5},
  };
  for (const auto& c : cases) {
    ShadowPlacement p;
    p.zoomX = c.zx;
    p.zoomY = c.zy;
    ShadowPlan plan;
    ASSERT_TRUE(PlanShadow(Work(), p, 200, 100, &plan));
    EXPECT_EQ(plan.scaleX, c.scaleX) << c.zx << " " << c.zy;
    EXPECT_EQ(plan.scaleY, c.scaleY) << c.zx << " " << c.zy;
  }
}

}  // namespace
}  // namespace lx
