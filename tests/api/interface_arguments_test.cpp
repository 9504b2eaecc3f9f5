// What the exported functions take from their arguments: values clamped, parameters left unread, and
// caller memory that cannot be read and written refused before anything is copied or drawn.
#include <gtest/gtest.h>
#include <cmath>
#include <cstring>
#include <tuple>
#include <vector>
#include "effects/emboss_filter.h"
#include "lettrix/lettrix.h"
#include "render/render_process.h"
#include "tests/support/contour_records.h"
#include "tests/support/guard_pages.h"
#include "tests/support/scene.h"

namespace lx {
namespace {
using test::GuardedPages;

template <typename... T>
std::vector<double> V(T... v) {
  return {static_cast<double>(v)...};
}

class Interface : public ::testing::Test {
 protected:
  Interface() {
    // Page 0 readable and writable, page 1 read-only, page 2 without access.
    pages_.protect(1, GuardedPages::Access::kRead);
    pages_.protect(2, GuardedPages::Access::kNone);
  }
  ~Interface() override { DestroyRenderProcess(&slot_); }
  RenderProcess& process() { return *reinterpret_cast<RenderProcess*>(slot_); }
  // `count` 32-bit values that end `over` values into page `page`.
  uint32_t* endingAt(size_t page, size_t count, size_t over = 0) {
    return reinterpret_cast<uint32_t*>(pages_.page(page)) - count + over;
  }
  // Calls an exported setter with the values, each passed by address, and returns the process.
  template <typename R, typename... P, typename... T>
  RenderProcess& After(R(LETTRIX_CALL* set)(RenderHandle*, const P*...), T... values) {
    const std::tuple<P...> args{static_cast<P>(values)...};
    std::apply([&](const P&... a) { set(&slot_, &a...); }, args);
    return process();
  }

  RenderHandle slot_ = CreateRenderProcess();
  GuardedPages pages_{3};
};

TEST_F(Interface, ValuesAreStoredWithinTheirRanges) {
  // The zoom changes both factors or neither; the process itself tests them one by one.
  const RenderProcess& s = process();
  After(SetShadowZoom, 0.5, 3.0);
  for (const auto& z : {std::pair{0.0, 2.0}, {2.0, -1.0}, {NAN, 2.0}, {2.0, NAN}, {-0.5, -0.5}})
    After(SetShadowZoom, z.first, z.second);
  process().setShadowZoom(-1.0, 2.0);
  EXPECT_EQ(V(s.shadowZoomX, s.shadowZoomY), V(0.5, 2.0));
  // Fill type: any non-zero is the texture; tiling: 0 and 1 kept, anything else 2.
  const int32_t types[][3] = {{0, 0, 0}, {1, 1, 1}, {-1, 1, 2}, {2, 1, 2}, {7, 1, 2}, {INT32_MIN, 1, 2}};
  for (const auto& t : types) {
    for (auto set : {SetFaceFillType, SetOutlineFillType, SetFaceTextureTiling, SetOutlineTextureTiling})
      set(&slot_, &t[0]);
    EXPECT_EQ(V(s.face.fillType, s.outline.fillType, s.face.textureTiling, s.outline.textureTiling),
              V(t[1], t[1], t[2], t[2]))
        << t[0];
  }
  // Thickness per side doubles into the stroke width, 0 to 1000.
  const double strokes[][2] = {{-5, 0},    {INT32_MIN, 0}, {0, 0},           {1, 2},
                               {499, 998}, {500, 1000},    {INT32_MAX, 1000}};
  for (const auto& t : strokes) {
    After(SetOutlineThickness, t[0]);
    EXPECT_EQ(V(s.strokeWidth, s.halfStrokeWidth), V(t[1], t[1] / 2)) << t[0];
  }
  // Border elevation 3 to 60, passes 1 to 60, angle within pi either way.
  const double borders[][6] = {{0, 0, 4.0, 3, 1, kPi},       {200, 200, -4.0, 60, 60, -kPi},
                               {3, 1, 1.25, 3, 1, 1.25},     {2, 61, 0.0, 3, 60, 0.0},
                               {61, 60, -1.0, 60, 60, -1.0}, {4, 59, 0.0, 4, 59, 0.0}};
  for (const auto& b : borders) {
    After(SetOutline3DBorder, b[0], b[1], b[2]);
    EXPECT_EQ(V(s.border3DWidth, s.border3DDepth, s.border3DAngle), V(b[3], b[4], b[5]))
        << b[0] << " " << b[1];
  }
  // Emboss bytes come as angle, a, c, b; the angle is clamped, the bytes read back truncated.
  EXPECT_EQ(After(SetFaceTextureEmbossed, 5.0, 0, 0, 0).emboss->azimuth(), kPi);
  EXPECT_EQ(After(SetFaceTextureEmbossed, -5.0, 0, 0, 0).embossAngle, -kPi);
  EXPECT_EQ(After(SetFaceTextureEmbossed, NAN, 0, 0, 0).emboss->azimuth(), 0.0);  // lit as from 0
  After(SetFaceTextureEmbossed, 1.5, 255, 33, 51);
  double angle = 0.0;  // the bytes as they read back
  uint8_t p = 0, q = 0, r = 0;
  process().readEmbossParameters(&angle, &p, &q, &r);
  EXPECT_EQ(V(angle, p, q, r, s.embossLight[1]), V(1.5, 255, 51, 32, 0.2));  // 33 / 255 * 255 < 33
  // Translations add up; flags keep any value, and null leaves them as they were.
  After(SetTranslation, 3, 4);
  After(SetTranslation, 1, 1);
  EXPECT_EQ(V(s.glyphMatrix.tx, s.glyphMatrix.ty), V(4, 5));
  const uint8_t flags[] = {7, 0, 7, 9};
  int i = 0;
  for (auto set : {SetShadowExtruded, SetExtrudedShadowColor, EnableFaceEmbossed, EnableOutline3DBorder}) {
    set(&slot_, &flags[i++]);
    set(&slot_, nullptr);
  }
  EXPECT_EQ(V(s.shadowExtruded, s.extrudedShadowColour, s.faceEmbossed, s.outline3DBorder), V(7, 0, 7, 9));
}

// A setter of several values given a null pointer for any one of them stores none of them.
TEST_F(Interface, ASetterMissingAnyOneValueStoresNone) {
  const RenderProcess& s = process();
  const auto settings = [&] {
    return V(s.border3DWidth, s.border3DDepth, s.border3DAngle, s.shadowColour, s.shadowAlpha,
             s.shadowOffsetX, s.shadowOffsetY, s.shadowZoomX, s.shadowZoomY, s.glyphMatrix.tx,
             s.glyphMatrix.ty, s.embossAngle, s.embossLight[0], s.face.startColour, s.face.endColour,
             s.outline.startColour, s.outline.endColour);
  };
  const std::vector<double> before = settings();
  const uint8_t b = 9;
  const int32_t n = 9;
  const double d = 0.5;
  for (int missing = 0; missing < 4; ++missing) {
    const auto u8 = [&](int i) { return i == missing ? nullptr : &b; };
    const auto i32 = [&](int i) { return i == missing ? nullptr : &n; };
    const auto f64 = [&](int i) { return i == missing ? nullptr : &d; };
    if (missing < 3) SetOutline3DBorder(&slot_, u8(0), u8(1), f64(2));
    SetFaceTextureEmbossed(&slot_, f64(0), u8(1), u8(2), u8(3));
    for (auto set :
         {SetShadowColor, SetColorFaceStart, SetColorFaceEnd, SetColorOutlineStart, SetColorOutlineEnd})
      set(&slot_, u8(0), u8(1), u8(2), u8(3));
    if (missing < 2) {
      SetShadowOffset(&slot_, i32(0), i32(1));
      SetTranslation(&slot_, i32(0), i32(1));
      SetShadowZoom(&slot_, f64(0), f64(1));
    }
    EXPECT_EQ(settings(), before) << "argument " << missing << " missing";
  }
}

TEST_F(Interface, GradientTypesReadOnlyTheParametersTheyUse) {
  const double* u = reinterpret_cast<const double*>(pages_.page(2));  // unreadable
  const double angle = 10.0, from = -0.2, to = 1.8, inside = 0.3;
  // Type 3 reads the angle, 2 both parameters (clamped to 0..1), any other type none; unknown types store 0.
  const struct {
    int32_t type;
    const double *p1, *p2;
    std::vector<double> stored;  // type, parameters, angle
  } cases[] = {{3, &angle, u, V(3, 0.5, 0.5, kPi)},        {1, u, u, V(1, 0.5, 0.5, kPi)},
               {2, &from, &to, V(2, 0, 1, kPi)},           {7, u, u, V(0, 0, 1, kPi)},
               {2, &inside, &inside, V(2, 0.3, 0.3, kPi)}, {0, u, u, V(0, 0.3, 0.3, kPi)}};
  for (const auto& c : cases) {
    SetGradientFace(&slot_, &c.type, c.p1, c.p2);
    SetGradientOutline(&slot_, &c.type, c.p1, c.p2);
    for (const FillSettings* f : {&process().face, &process().outline})
      EXPECT_EQ(V(f->gradientType, f->gradientFrom, f->gradientTo, f->gradientAngle), c.stored) << c.type;
  }
}

TEST_F(Interface, TexturesAndColourTablesFromBadMemoryOrOfBadSizesAreRefused) {
  uint32_t good[4] = {1, 2, 3, 4};
  const int32_t two = 2;
  const uint8_t four = 4;
  // Four values running into a page without access, read-only, running from writable into read-only,
  // without any access, running into a hole in the mapping.
  GuardedPages holey(2);
  holey.release(1);
  uint32_t* const bad[] = {endingAt(2, 4, 1), endingAt(2, 4), endingAt(1, 4, 2), endingAt(3, 4),
                           reinterpret_cast<uint32_t*>(holey.page(1)) - 1};
  for (uint32_t* b : bad) {
    ASSERT_TRUE(SetTextureFace(&slot_, good, &two, &two));
    ASSERT_TRUE(SetFaceGradientColors(&slot_, good, good, &four) &&
                SetOutlineGradientColors(&slot_, good, good, &four));
    EXPECT_FALSE(SetTextureFace(&slot_, b, &two, &two) || SetTextureOutline(&slot_, b, &two, &two));
    EXPECT_FALSE(SetFaceGradientColors(&slot_, b, nullptr, &four) ||
                 SetOutlineGradientColors(&slot_, good, b, &four));
    // A refused texture leaves the stored one; refused colours empty the lists and leave the flag.
    EXPECT_TRUE(process().face.texture->pixels[0] == 0xFF000001u && process().outline.texture == nullptr);
    for (const FillSettings* f : {&process().face, &process().outline})
      EXPECT_TRUE(f->gradientColours.empty() && f->gradientStops.empty() && f->useGradientTable == 1);
  }
  // Null pixels, sizes below 1 and sizes whose bytes reach 2^32 and more.
  const int32_t sizes[][2] = {{2, 2},        {0, 2}, {2, 0}, {-1, 2}, {2, -3}, {0x7FFFFFFF, 0x7FFFFFFF},
                              {65536, 16384}};
  for (const auto& s : sizes)
    EXPECT_FALSE(SetTextureFace(&slot_, s[0] == 2 && s[1] == 2 ? nullptr : good, &s[0], &s[1]));
  EXPECT_EQ(process().face.texture->width, 2);
  // Writable up to the last byte is enough.
  std::memset(endingAt(1, 4), 0, 16);
  EXPECT_TRUE(SetTextureOutline(&slot_, endingAt(1, 4), &two, &two));
}

TEST_F(Interface, RenderChecksTheBufferOverItsWholeSizeAndFollowsNoPointerEarly) {
  // A square over the whole buffer: a Render that went ahead would write every pixel.
  test::ContourRecords square;
  test::AddSquare(&square, -8, -8, 40);
  const test::TextScene text(square.bytes());
  const int32_t four = 4, zero = 0;
  uint32_t* writable = endingAt(1, 16);
  std::memset(writable, 0x5A, 64);
  // A buffer whose last pixel is read-only, a wholly read-only one, sizes whose byte count wraps in 32 bits.
  EXPECT_FALSE(Render(&slot_, text.block(), &four, &four, endingAt(1, 16, 1)));
  EXPECT_FALSE(Render(&slot_, text.block(), &four, &four, endingAt(2, 16)));
  const int32_t sizes[][2] = {{0x40000000, 0x40000000}, {0x40000000, 4}, {0x40000001, 1}, {65536, 65536}};
  for (const auto& s : sizes) EXPECT_FALSE(Render(&slot_, text.block(), &s[0], &s[1], writable));
  // With a bad slot neither the sizes nor the block are read; a bad width stops before the height; a
  // pointer the allocator never handed out has no size.
  RenderHandle none = 0;
  const auto* unreadable = reinterpret_cast<const int32_t*>(pages_.page(2));
  EXPECT_FALSE(Render(&none, pages_.page(2), unreadable, unreadable, pages_.page(2)));
  EXPECT_FALSE(Render(&slot_, text.block(), &zero, unreadable, writable));
  uint8_t notABlock[64] = {};
  EXPECT_FALSE(Render(&slot_, notABlock, &four, &four, writable));
  EXPECT_EQ(std::vector<uint32_t>(writable, writable + 16), std::vector<uint32_t>(16, 0x5A5A5A5Au));
  EXPECT_TRUE(Render(&slot_, text.block(), &four, &four, writable));
}
}  // namespace
}  // namespace lx
