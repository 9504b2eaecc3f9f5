// Caller arrays that cannot be read, or cannot be written, are refused before anything is copied.
#include <gtest/gtest.h>

#include <cstring>

#include "lettrix/lettrix.h"
#include "render/render_process.h"
#include "tests/support/guard_pages.h"

namespace {

using lx::RenderProcess;
using lx::test::GuardedPages;
using Access = GuardedPages::Access;

class CallerMemory : public ::testing::Test {
 protected:
  void SetUp() override {
    slot_ = CreateRenderProcess();
    ASSERT_NE(slot_, 0u);
    // Page 0 readable and writable, page 1 read-only, page 2 without access.
    pages_.protect(1, Access::kRead);
    pages_.protect(2, Access::kNone);
  }
  void TearDown() override { DestroyRenderProcess(&slot_); }
  RenderProcess& process() { return *reinterpret_cast<RenderProcess*>(slot_); }

  // `count` 32-bit values ending exactly where page `page` begins.
  uint32_t* endingAt(size_t page, size_t count) {
    return reinterpret_cast<uint32_t*>(pages_.page(page)) - count;
  }
  // `count` 32-bit values that run `over` values into page `page`.
  uint32_t* runningInto(size_t page, size_t count, size_t over) { return endingAt(page, count - over); }

  RenderHandle slot_ = 0;
  GuardedPages pages_{3};
};

TEST_F(CallerMemory, TextureFromMemoryThatIsNotReadableAndWritableIsRefused) {
  uint32_t good[4] = {1, 2, 3, 4};
  int32_t two = 2;
  const struct {
    const char* what;
    void* pixels;
  } cases[] = {
      {"runs into a page without access", runningInto(2, 4, 1)},
      {"read-only", endingAt(2, 4)},
      {"runs from writable into read-only", runningInto(1, 4, 2)},
      {"no access at all", pages_.page(2)},
  };
  for (const auto& c : cases) {
    ASSERT_TRUE(SetTextureFace(&slot_, good, &two, &two));
    EXPECT_FALSE(SetTextureFace(&slot_, c.pixels, &two, &two)) << c.what;
    EXPECT_FALSE(SetTextureOutline(&slot_, c.pixels, &two, &two)) << c.what;
    ASSERT_NE(process().face.texture, nullptr) << c.what;
    EXPECT_EQ(process().face.texture->pixels[0], 0xFF000001u) << c.what;
    EXPECT_EQ(process().outline.texture, nullptr) << c.what;
  }
  // Writable up to the last byte is enough.
  uint32_t* edge = endingAt(1, 4);
  std::memset(edge, 0, 16);
  EXPECT_TRUE(SetTextureOutline(&slot_, edge, &two, &two));
  EXPECT_NE(process().outline.texture, nullptr);
}

TEST_F(CallerMemory, ColourTablesFromBadMemoryFailAndStoreNothing) {
  uint32_t colours[3] = {0xA, 0xB, 0xC};
  uint32_t stops[3] = {1, 1, 1};
  uint8_t three = 3;
  uint32_t* unreadable = runningInto(2, 3, 1);
  uint32_t* readOnly = endingAt(2, 3);
  const struct {
    const char* what;
    const uint32_t* colours;
    const uint32_t* stops;
  } cases[] = {
      {"null colours", nullptr, stops},         {"colours run into a page without access", unreadable, stops},
      {"read-only colours", readOnly, nullptr}, {"stops run into a page without access", colours, unreadable},
      {"read-only stops", colours, readOnly},
  };
  for (const auto& c : cases) {
    ASSERT_TRUE(SetFaceGradientColors(&slot_, colours, stops, &three));
    ASSERT_TRUE(SetOutlineGradientColors(&slot_, colours, stops, &three));
    EXPECT_FALSE(SetFaceGradientColors(&slot_, c.colours, c.stops, &three)) << c.what;
    EXPECT_FALSE(SetOutlineGradientColors(&slot_, c.colours, c.stops, &three)) << c.what;
    for (const lx::FillSettings* f : {&process().face, &process().outline}) {
      EXPECT_TRUE(f->gradientColours.empty()) << c.what;
      EXPECT_TRUE(f->gradientStops.empty()) << c.what;
      EXPECT_EQ(f->useGradientTable, 1) << c.what;
    }
  }
}

TEST_F(CallerMemory, ReleasedPagesAreRefusedToo) {
  GuardedPages holey(2);
  holey.release(1);
  uint32_t* straddling = reinterpret_cast<uint32_t*>(holey.page(1)) - 1;
  int32_t two = 2;
  uint8_t two8 = 2;
  EXPECT_FALSE(SetTextureFace(&slot_, straddling, &two, &two));
  EXPECT_FALSE(SetFaceGradientColors(&slot_, straddling, nullptr, &two8));
  EXPECT_EQ(process().face.texture, nullptr);
  EXPECT_TRUE(process().face.gradientColours.empty());
}

}  // namespace
