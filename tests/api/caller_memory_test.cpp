// Caller memory that cannot be read, or cannot be written, is refused before anything is copied or drawn.
#include <gtest/gtest.h>

#include <cstring>

#include "lettrix/lettrix.h"
#include "render/render_process.h"
#include "tests/support/contour_records.h"
#include "tests/support/guard_pages.h"
#include "tests/support/scene.h"

namespace {

using lx::RenderProcess;
using lx::test::GuardedPages;
using Access = GuardedPages::Access;

class CallerMemory : public ::testing::Test {
 protected:
  CallerMemory() {
    // Page 0 readable and writable, page 1 read-only, page 2 without access.
    pages_.protect(1, Access::kRead);
    pages_.protect(2, Access::kNone);
  }
  ~CallerMemory() override { DestroyRenderProcess(&slot_); }
  RenderProcess& process() { return *reinterpret_cast<RenderProcess*>(slot_); }

  // `count` 32-bit values that end `over` values into page `page`.
  uint32_t* endingAt(size_t page, size_t count, size_t over = 0) {
    return reinterpret_cast<uint32_t*>(pages_.page(page)) - count + over;
  }

  RenderHandle slot_ = CreateRenderProcess();
  GuardedPages pages_{3};
};

TEST_F(CallerMemory, TextureFromMemoryThatIsNotReadableAndWritableIsRefused) {
  uint32_t good[4] = {1, 2, 3, 4};
  int32_t two = 2;
  const struct {
    const char* what;
    void* pixels;
  } cases[] = {
      {"runs into a page without access", endingAt(2, 4, 1)},
      {"read-only", endingAt(2, 4)},
      {"runs from writable into read-only", endingAt(1, 4, 2)},
      {"no access at all", pages_.page(2)},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    ASSERT_TRUE(SetTextureFace(&slot_, good, &two, &two));
    EXPECT_FALSE(SetTextureFace(&slot_, c.pixels, &two, &two));
    EXPECT_FALSE(SetTextureOutline(&slot_, c.pixels, &two, &two));
    ASSERT_NE(process().face.texture, nullptr);
    EXPECT_EQ(process().face.texture->pixels[0], 0xFF000001u);
    EXPECT_EQ(process().outline.texture, nullptr);
  }
  // Writable up to the last byte is enough.
  std::memset(endingAt(1, 4), 0, 16);
  EXPECT_TRUE(SetTextureOutline(&slot_, endingAt(1, 4), &two, &two));
  EXPECT_NE(process().outline.texture, nullptr);
}

TEST_F(CallerMemory, ColourTablesFromBadMemoryFailAndStoreNothing) {
  uint32_t colours[3] = {0xA, 0xB, 0xC}, stops[3] = {1, 1, 1};
  uint8_t three = 3;
  const struct {
    const char* what;
    const uint32_t* colours;
    const uint32_t* stops;
  } cases[] = {
      {"null colours", nullptr, stops},
      {"colours run into a page without access", endingAt(2, 3, 1), stops},
      {"read-only colours", endingAt(2, 3), nullptr},
      {"stops run into a page without access", colours, endingAt(2, 3, 1)},
      {"read-only stops", colours, endingAt(2, 3)},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    ASSERT_TRUE(SetFaceGradientColors(&slot_, colours, stops, &three));
    ASSERT_TRUE(SetOutlineGradientColors(&slot_, colours, stops, &three));
    EXPECT_FALSE(SetFaceGradientColors(&slot_, c.colours, c.stops, &three));
    EXPECT_FALSE(SetOutlineGradientColors(&slot_, c.colours, c.stops, &three));
    for (const lx::FillSettings* f : {&process().face, &process().outline}) {
      EXPECT_TRUE(f->gradientColours.empty());
      EXPECT_TRUE(f->gradientStops.empty());
      EXPECT_EQ(f->useGradientTable, 1);
    }
  }
  // A range that runs into a hole in the mapping is refused as well.
  GuardedPages holey(2);
  holey.release(1);
  auto* straddling = reinterpret_cast<uint32_t*>(holey.page(1)) - 1;
  int32_t two = 2;
  EXPECT_FALSE(SetTextureFace(&slot_, straddling, &two, &two));
  EXPECT_FALSE(SetFaceGradientColors(&slot_, straddling, nullptr, &three));
  EXPECT_EQ(process().face.texture, nullptr);
}

TEST_F(CallerMemory, RenderChecksTheBufferOverItsWholeSizeAndFollowsNoPointerEarly) {
  // A square over the whole buffer: a Render that went ahead would write every pixel.
  lx::test::ContourRecords square;
  lx::test::AddSquare(&square, -8, -8, 40);
  const lx::test::TextScene text(square.bytes());
  const int32_t four = 4, zero = 0, huge = 0x40000000, wide = 0x40000001, one = 1, big = 65536;
  uint32_t* writable = endingAt(1, 16);
  for (int i = 0; i < 16; ++i) writable[i] = 0x5A5A5A5Au;
  // A buffer whose last pixel is read-only, a wholly read-only one, and sizes whose byte count wraps in 32
  // bits.
  EXPECT_FALSE(Render(&slot_, text.block(), &four, &four, endingAt(1, 16, 1)));
  EXPECT_FALSE(Render(&slot_, text.block(), &four, &four, endingAt(2, 16)));
  EXPECT_FALSE(Render(&slot_, text.block(), &huge, &huge, writable));
  EXPECT_FALSE(Render(&slot_, text.block(), &huge, &four, writable));
  EXPECT_FALSE(Render(&slot_, text.block(), &wide, &one, writable));
  EXPECT_FALSE(Render(&slot_, text.block(), &big, &big, writable));
  // With a bad slot neither the sizes nor the block are read; a bad width stops before the height.
  RenderHandle none = 0;
  const auto* unreadable = reinterpret_cast<const int32_t*>(pages_.page(2));
  EXPECT_FALSE(Render(&none, pages_.page(2), unreadable, unreadable, pages_.page(2)));
  EXPECT_FALSE(Render(&slot_, text.block(), &zero, unreadable, writable));
  // A pointer the allocator never handed out has no size.
  uint8_t notABlock[64] = {};
  EXPECT_FALSE(Render(&slot_, notABlock, &four, &four, writable));
  for (int i = 0; i < 16; ++i) ASSERT_EQ(writable[i], 0x5A5A5A5Au);
  EXPECT_TRUE(Render(&slot_, text.block(), &four, &four, writable));
}

}  // namespace
