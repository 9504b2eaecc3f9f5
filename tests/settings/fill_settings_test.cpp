#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <new>
#include <vector>

#include "render/render_process.h"
#include "tests/support/guard_pages.h"

namespace lx {
namespace {

using Colours = std::vector<uint32_t>;

TEST(FillColours, StartAndEndColoursPackAlphaOnTopAndClearOnlyTheirLayersTable) {
  RenderProcess p;
  uint32_t colours[] = {0x11223344u, 0x55667788u};
  uint8_t n = 2;
  ASSERT_TRUE(p.face.setGradientColours(colours, nullptr, &n));
  ASSERT_TRUE(p.outline.setGradientColours(colours, nullptr, &n));

  p.outline.setStartColour(0x030201u, 0x80);
  EXPECT_EQ(p.outline.startColour, 0x80030201u);
  EXPECT_EQ(p.outline.useGradientTable, 0);
  EXPECT_EQ(p.face.useGradientTable, 1);

  p.face.setEndColour(0x0A0B0Cu, 0x00);
  EXPECT_EQ(p.face.endColour, 0x000A0B0Cu);
  EXPECT_EQ(p.face.useGradientTable, 0);
  EXPECT_EQ(p.face.startColour, 0xFFFFFFFFu);  // untouched by the end colour
  // The lists stay for when the table is put back in force.
  EXPECT_EQ(p.face.gradientColours, Colours({0x11223344u, 0x55667788u}));

  p.face.setStartColour(0xFF123456u, 0x7F);  // bits above the colour bytes are ignored
  EXPECT_EQ(p.face.startColour, 0x7F123456u);
}

TEST(FillColourStops, ZeroWeightsDropTheirColourAndNoWeightsCountAsOne) {
  const struct {
    std::vector<uint32_t> stops;  // empty: none given
    Colours colours, kept;
  } cases[] = {
      {{5, 0, 5}, {0xA, 0xC}, {5, 5}},
      {{0, 0, 0}, {0xA, 0xB, 0xC}, {1, 1, 1}},
      {{3, 9, 1}, {0xA, 0xB, 0xC}, {3, 9, 1}},
      {{}, {0xA, 0xB, 0xC}, {1, 1, 1}},
      {{0x80000000u, 0x80000000u, 0}, {0xA, 0xB, 0xC}, {1, 1, 1}},  // the sum wraps to 0: no weights
  };
  uint32_t colours[] = {0xA, 0xB, 0xC};
  for (const auto& c : cases) {
    FillSettings f;
    uint8_t n = 3;
    EXPECT_TRUE(f.setGradientColours(colours, c.stops.empty() ? nullptr : c.stops.data(), &n));
    EXPECT_EQ(f.gradientColours, c.colours);
    EXPECT_EQ(f.gradientStops, c.kept);
    EXPECT_EQ(f.useGradientTable, 1);
  }
}

TEST(FillColourStops, KeepsTheFirst256InTheCallersOrder) {
  FillSettings f;
  std::vector<uint32_t> colours(300), stops(300, 2);
  for (uint32_t i = 0; i < 300; ++i) colours[i] = 0xFF000000u + i;
  EXPECT_TRUE(f.setGradientColours(colours.data(), nullptr, colours.size()));
  ASSERT_EQ(f.gradientColours.size(), 256u);
  EXPECT_EQ(f.gradientColours.front(), 0xFF000000u);
  EXPECT_EQ(f.gradientColours.back(), 0xFF0000FFu);
  EXPECT_EQ(f.gradientStops, Colours(256, 1));

  // A dropped entry does not count towards the cap.
  stops[10] = 0;
  EXPECT_TRUE(f.setGradientColours(colours.data(), stops.data(), colours.size()));
  ASSERT_EQ(f.gradientColours.size(), 256u);
  EXPECT_EQ(f.gradientColours[9], 0xFF000009u);
  EXPECT_EQ(f.gradientColours[10], 0xFF00000Bu);
  EXPECT_EQ(f.gradientColours.back(), 0xFF000100u);
  EXPECT_EQ(f.gradientStops, Colours(256, 2));

  // Through the byte count the most is 255.
  uint8_t n = 255;
  EXPECT_TRUE(f.setGradientColours(colours.data(), nullptr, &n));
  EXPECT_EQ(f.gradientColours.size(), 255u);
}

TEST(FillColourStops, FailedCallEmptiesTheListsButKeepsTheFlag) {
  FillSettings f;
  uint32_t colours[] = {0xA, 0xB};
  uint8_t two = 2, zero = 0;
  ASSERT_TRUE(f.setGradientColours(colours, nullptr, &two));
  EXPECT_FALSE(f.setGradientColours(colours, nullptr, &zero));
  EXPECT_TRUE(f.gradientColours.empty());
  EXPECT_TRUE(f.gradientStops.empty());
  EXPECT_EQ(f.useGradientTable, 1);

  f.setStartColour(0, 0);
  ASSERT_TRUE(f.setGradientColours(colours, nullptr, &two));
  f.setStartColour(0, 0);
  EXPECT_FALSE(f.setGradientColours(nullptr, nullptr, &two));
  EXPECT_TRUE(f.gradientColours.empty());
  EXPECT_EQ(f.useGradientTable, 0);
  EXPECT_FALSE(f.setGradientColours(colours, nullptr, nullptr));
}

TEST(FillGradient, TypeDispatchReadsOnlyWhatTheTypeUses) {
  FillSettings f;
  const double from = -0.5, to = 2.0;
  f.setGradient(2, &from, &to);
  EXPECT_EQ(f.gradientType, 2);
  EXPECT_EQ(f.gradientFrom, 0.0);
  EXPECT_EQ(f.gradientTo, 1.0);

  const double angle = -10.0;
  f.setGradient(3, &angle, nullptr);
  EXPECT_EQ(f.gradientType, 3);
  EXPECT_EQ(f.gradientAngle, -kPi);
  EXPECT_EQ(f.gradientFrom, 0.0);

  f.setGradient(1, nullptr, nullptr);
  EXPECT_EQ(f.gradientType, 1);
  f.setGradient(7, nullptr, nullptr);
  EXPECT_EQ(f.gradientType, 0);
  EXPECT_EQ(f.gradientTo, 1.0);
  EXPECT_EQ(f.gradientAngle, -kPi);
  f.setGradient(-1, nullptr, nullptr);
  EXPECT_EQ(f.gradientType, 0);
  f.setGradientParameters(std::nan(""), 0.25);
  EXPECT_TRUE(std::isnan(f.gradientFrom));
  EXPECT_EQ(f.gradientTo, 0.25);
  f.setGradientAngle(kPi);
  EXPECT_EQ(f.gradientAngle, kPi);
  f.setGradientAngle(0.75);
  EXPECT_EQ(f.gradientAngle, 0.75);
}

TEST(FillGradient, UserAreaIsStoredEvenWhenEmpty) {
  FillSettings f;
  EXPECT_FALSE(f.setUserGradientArea(10, 10, 10, 50));
  const IntRect& a = f.userGradientArea;
  EXPECT_EQ((std::vector<int32_t>{a.left, a.top, a.right, a.bottom}), (std::vector<int32_t>{10, 10, 10, 50}));
  EXPECT_TRUE(f.setUserGradientArea(-5, 2, 20, 3));
  EXPECT_EQ(f.userGradientArea.left, -5);
  EXPECT_FALSE(f.setUserGradientArea(20, 0, 10, 10));
  EXPECT_EQ(f.userGradientArea.right, 10);
}

TEST(FillTexture, CopyIsOpaqueAndIndependentOfTheCallersBuffer) {
  FillSettings f;
  std::vector<uint32_t> pixels = {0x00123456u, 0x80FFFFFFu, 0x01000000u, 0xFF000001u, 0u, 0x7F7F7F7Fu};
  ASSERT_TRUE(f.setTexture(pixels.data(), 3, 2));
  ASSERT_NE(f.texture, nullptr);
  const TextureImage& t = *f.texture;
  EXPECT_EQ(
      (std::vector<int32_t>{t.width, t.height, t.bounds.left, t.bounds.top, t.bounds.right, t.bounds.bottom}),
      (std::vector<int32_t>{3, 2, 0, 0, 3, 2}));
  EXPECT_FALSE(platform::IsNoBlock(t.handle));
  pixels.assign(pixels.size(), 0xDEADBEEFu);
  pixels.clear();
  pixels.shrink_to_fit();
  ASSERT_NE(t.pixels, nullptr);
  const uint32_t expected[] = {0xFF123456u, 0xFFFFFFFFu, 0xFF000000u, 0xFF000001u, 0xFF000000u, 0xFF7F7F7Fu};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(t.pixels[i], expected[i]) << i;
}

TEST(FillTexture, BadArgumentsRemoveTheTexture) {
  FillSettings f;
  uint32_t pixels[4] = {1, 2, 3, 4};
  const struct {
    const void* p;
    int32_t w, h;
  } bad[] = {{nullptr, 2, 2},       {pixels, 0, 2},  {pixels, 2, 0},
             {pixels, -1, 2},       {pixels, 2, -3}, {pixels, 0x7FFFFFFF, 0x7FFFFFFF},
             {pixels, 65536, 16384}};  // the last is exactly 2^32 bytes
  for (const auto& b : bad) {
    ASSERT_TRUE(f.setTexture(pixels, 2, 2));
    EXPECT_FALSE(f.setTexture(b.p, b.w, b.h));
    EXPECT_EQ(f.texture, nullptr);
  }
}

TEST(FillTexture, RecordWithoutAPixelBlockKeepsItsSize) {
  // A caller buffer just over what one global block may hold: readable and writable, but the copy
  // cannot be allocated. The mapping is never touched, so it costs address space only.
  const int32_t width = 32768, height = 16385;
  const uint64_t bytes = uint64_t{width} * height * 4;
  // 64-bit Windows gives such a block (the limit is that of 32-bit processes and of the stand-in).
  if (platform::MemoryHandle probe =
          platform::GlobalAlloc(platform::kGmemMoveable, static_cast<size_t>(bytes))) {
    platform::GlobalFree(probe);
    GTEST_SKIP() << "this system allocates a block of " << bytes << " bytes; the failure cannot be made";
  }
  std::unique_ptr<test::GuardedPages> pages;
  try {
    pages = std::make_unique<test::GuardedPages>(static_cast<size_t>(bytes / 4096 + 1));
  } catch (const std::bad_alloc&) {
    GTEST_SKIP() << "this address space cannot map a buffer of " << bytes << " bytes";
  }
  FillSettings f;
  ASSERT_TRUE(f.setTexture(pages->page(0), width, height));
  ASSERT_NE(f.texture, nullptr);
  EXPECT_EQ(f.texture->pixels, nullptr);
  EXPECT_TRUE(platform::IsNoBlock(f.texture->handle));
  EXPECT_EQ(f.texture->width, width);
  EXPECT_EQ(f.texture->height, height);
}

TEST(FillTexture, TakingFromAnotherRecordCopiesItsPixels) {
  FillSettings a, b;
  uint32_t pixels[2] = {0x00ABCDEFu, 0x12000000u};
  ASSERT_TRUE(a.setTexture(pixels, 1, 2));
  ASSERT_TRUE(b.takeTextureFrom(a.texture.get()));
  ASSERT_NE(b.texture, nullptr);
  EXPECT_NE(b.texture->pixels, a.texture->pixels);
  EXPECT_EQ(b.texture->pixels[0], 0xFFABCDEFu);
  EXPECT_EQ(b.texture->pixels[1], 0xFF000000u);
  EXPECT_FALSE(b.takeTextureFrom(nullptr));
  EXPECT_NE(b.texture, nullptr);
}

TEST(FillCopy, CopiesEverythingButTheTexture) {
  FillSettings a, b;
  uint32_t colours[] = {1, 2, 3};
  uint32_t stops[] = {4, 5, 6};
  uint8_t n = 3;
  ASSERT_TRUE(a.setGradientColours(colours, stops, &n));
  a.setStartColour(0x010203u, 4);
  a.setEndColour(0x050607u, 8);
  ASSERT_TRUE(a.setGradientColours(colours, stops, &n));
  const double from = 0.1, to = 0.9;
  a.setGradient(2, &from, &to);
  a.setGradientAngle(1.0);
  a.fillType = 1;
  a.textureTiling = 0;
  a.gradientFitMode = 9;
  a.setUserGradientArea(1, 2, 3, 4);
  a.blurLevel = 17;
  uint32_t pixel = 0;
  ASSERT_TRUE(a.setTexture(&pixel, 1, 1));

  EXPECT_TRUE(b.copySettingsFrom(a));
  EXPECT_EQ(b.texture, nullptr);
  EXPECT_EQ(b.gradientColours, Colours({1, 2, 3}));
  EXPECT_EQ(b.gradientStops, Colours({4, 5, 6}));
  EXPECT_EQ((std::vector<double>{double(b.startColour), double(b.endColour), double(b.useGradientTable),
                                 double(b.gradientType), b.gradientFrom, b.gradientTo, b.gradientAngle,
                                 double(b.fillType), double(b.textureTiling), double(b.gradientFitMode),
                                 double(b.userGradientArea.right), double(b.userGradientArea.bottom),
                                 double(b.blurLevel)}),
            (std::vector<double>{0x04010203u, 0x08050607u, 1, 2, 0.1, 0.9, 1.0, 1, 0, 9, 3, 4, 17}));
  EXPECT_FALSE(b.textureInUse());
  EXPECT_TRUE(a.textureInUse());
}

}  // namespace
}  // namespace lx
