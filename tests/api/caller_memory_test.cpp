// Caller memory that cannot be read, or cannot be written, is refused before anything is copied or drawn.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "lettrix/lettrix.h"
#include "render/render_process.h"
#include "tests/support/contour_records.h"
#include "tests/support/guard_pages.h"
#include "tests/support/scene.h"

namespace {

using lx::test::GuardedPages;

class CallerMemory : public ::testing::Test {
 protected:
  CallerMemory() {
    // Page 0 readable and writable, page 1 read-only, page 2 without access.
    pages_.protect(1, GuardedPages::Access::kRead);
    pages_.protect(2, GuardedPages::Access::kNone);
    holey_.release(1);
  }
  ~CallerMemory() override { DestroyRenderProcess(&slot_); }
  lx::RenderProcess& process() { return *reinterpret_cast<lx::RenderProcess*>(slot_); }
  // `count` 32-bit values that end `over` values into page `page`.
  uint32_t* endingAt(size_t page, size_t count, size_t over = 0) {
    return reinterpret_cast<uint32_t*>(pages_.page(page)) - count + over;
  }

  RenderHandle slot_ = CreateRenderProcess();
  GuardedPages pages_{3}, holey_{2};
};

TEST_F(CallerMemory, TexturesAndColourTablesFromMemoryThatIsNotReadableAndWritableAreRefused) {
  uint32_t good[4] = {1, 2, 3, 4};
  const int32_t two = 2;
  const uint8_t four = 4;
  // Four values running into a page without access, read-only, running from writable into read-only,
  // without any access, running into a hole in the mapping.
  uint32_t* const bad[] = {endingAt(2, 4, 1), endingAt(2, 4), endingAt(1, 4, 2), endingAt(3, 4),
                           reinterpret_cast<uint32_t*>(holey_.page(1)) - 1};
  for (uint32_t* b : bad) {
    ASSERT_TRUE(SetTextureFace(&slot_, good, &two, &two));
    ASSERT_TRUE(SetFaceGradientColors(&slot_, good, good, &four) &&
                SetOutlineGradientColors(&slot_, good, good, &four));
    EXPECT_FALSE(SetTextureFace(&slot_, b, &two, &two));
    EXPECT_FALSE(SetTextureOutline(&slot_, b, &two, &two));
    EXPECT_FALSE(SetFaceGradientColors(&slot_, b, nullptr, &four));
    EXPECT_FALSE(SetOutlineGradientColors(&slot_, good, b, &four));
    // A refused texture leaves the stored one; refused colours empty the lists and leave the flag.
    EXPECT_EQ(process().face.texture->pixels[0], 0xFF000001u);
    EXPECT_EQ(process().outline.texture, nullptr);
    for (const lx::FillSettings* f : {&process().face, &process().outline})
      EXPECT_TRUE(f->gradientColours.empty() && f->gradientStops.empty() && f->useGradientTable == 1);
  }
  // Writable up to the last byte is enough.
  std::memset(endingAt(1, 4), 0, 16);
  EXPECT_TRUE(SetTextureOutline(&slot_, endingAt(1, 4), &two, &two));
}

TEST_F(CallerMemory, RenderChecksTheBufferOverItsWholeSizeAndFollowsNoPointerEarly) {
  // A square over the whole buffer: a Render that went ahead would write every pixel.
  lx::test::ContourRecords square;
  lx::test::AddSquare(&square, -8, -8, 40);
  const lx::test::TextScene text(square.bytes());
  const int32_t four = 4, zero = 0, huge = 0x40000000, wide = 0x40000001, one = 1, big = 65536;
  uint32_t* writable = endingAt(1, 16);
  for (int i = 0; i < 16; ++i) writable[i] = 0x5A5A5A5Au;
  // A buffer whose last pixel is read-only, a wholly read-only one, sizes whose byte count wraps in 32 bits.
  EXPECT_FALSE(Render(&slot_, text.block(), &four, &four, endingAt(1, 16, 1)));
  EXPECT_FALSE(Render(&slot_, text.block(), &four, &four, endingAt(2, 16)));
  const int32_t* sizes[][2] = {{&huge, &huge}, {&huge, &four}, {&wide, &one}, {&big, &big}};
  for (const auto& s : sizes) EXPECT_FALSE(Render(&slot_, text.block(), s[0], s[1], writable));
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
