// Render refuses bad arguments before it reads or writes anything of the caller's.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "lettrix/lettrix.h"
#include "platform/platform.h"
#include "tests/support/guard_pages.h"

namespace {

using lx::test::GuardedPages;

constexpr uint32_t kPattern = 0x5A5A5A5Au;

class RenderArguments : public ::testing::Test {
 protected:
  void SetUp() override {
    slot_ = CreateRenderProcess();
    ASSERT_NE(slot_, 0u);
    block_ = lx::platform::GlobalAlloc(lx::platform::kGmemFixed | lx::platform::kGmemZeroInit, 64);
    ASSERT_NE(block_, nullptr);
  }
  void TearDown() override {
    lx::platform::GlobalFree(block_);
    DestroyRenderProcess(&slot_);
  }

  RenderHandle slot_ = 0;
  lx::platform::MemoryHandle block_ = nullptr;
};

TEST_F(RenderArguments, EachEarlyCheckRefusesWithTheBufferUntouched) {
  std::vector<uint32_t> buffer(16, kPattern);
  const int32_t four = 4, zero = 0, minus = -4;
  RenderHandle none = 0, allOnes = ~RenderHandle{0};
  EXPECT_FALSE(Render(&none, block_, &four, &four, buffer.data()));
  EXPECT_FALSE(Render(&allOnes, block_, &four, &four, buffer.data()));
  EXPECT_FALSE(Render(&slot_, nullptr, &four, &four, buffer.data()));
  EXPECT_FALSE(Render(&slot_, block_, &zero, &four, buffer.data()));
  EXPECT_FALSE(Render(&slot_, block_, &minus, &four, buffer.data()));
  EXPECT_FALSE(Render(&slot_, block_, &four, &zero, buffer.data()));
  EXPECT_FALSE(Render(&slot_, block_, &four, &minus, buffer.data()));
  EXPECT_FALSE(Render(&slot_, block_, &four, &four, nullptr));
  EXPECT_FALSE(Render(&slot_, block_, nullptr, &four, buffer.data()));
  EXPECT_FALSE(Render(&slot_, block_, &four, nullptr, buffer.data()));
  for (uint32_t px : buffer) EXPECT_EQ(px, kPattern);
}

TEST_F(RenderArguments, CheapChecksComeBeforeAnyPointerIsFollowed) {
  // With a bad slot, neither the sizes nor the block are read: both point at a page without access.
  GuardedPages pages(1);
  pages.protect(0, GuardedPages::Access::kNone);
  RenderHandle none = 0;
  const auto* unreadable = reinterpret_cast<const int32_t*>(pages.page(0));
  EXPECT_FALSE(Render(&none, pages.page(0), unreadable, unreadable, pages.page(0)));
  // A bad width stops the call before the height is read.
  const int32_t zero = 0;
  uint32_t px = kPattern;
  EXPECT_FALSE(Render(&slot_, block_, &zero, unreadable, &px));
  EXPECT_EQ(px, kPattern);
}

TEST_F(RenderArguments, BufferMustBeReadableAndWritableOverItsWholeSize) {
  GuardedPages pages(3);
  pages.protect(1, GuardedPages::Access::kRead);
  pages.protect(2, GuardedPages::Access::kNone);
  const int32_t four = 4;
  // 16 pixels that end one pixel into the page without access, and 16 in the read-only page.
  auto* overrun = reinterpret_cast<uint32_t*>(pages.page(2)) - 15;
  auto* readOnly = reinterpret_cast<uint32_t*>(pages.page(2)) - 16;
  auto* writable = reinterpret_cast<uint32_t*>(pages.page(1)) - 16;
  for (int i = 0; i < 16; ++i) writable[i] = kPattern;
  EXPECT_FALSE(Render(&slot_, block_, &four, &four, overrun));
  EXPECT_FALSE(Render(&slot_, block_, &four, &four, readOnly));
  // Sizes whose byte count does not fit the address space are refused, not wrapped.
  const int32_t huge = 0x40000000;
  EXPECT_FALSE(Render(&slot_, block_, &huge, &huge, writable));
  EXPECT_FALSE(Render(&slot_, block_, &huge, &four, writable));
  for (int i = 0; i < 16; ++i) EXPECT_EQ(writable[i], kPattern);
}

TEST_F(RenderArguments, BlockMustHaveASize) {
  // A zero-size block, and a pointer the allocator never handed out, have no size to read.
  uint32_t px = kPattern;
  const int32_t one = 1;
  uint8_t notABlock[64] = {};
  EXPECT_EQ(lx::platform::GlobalSize(notABlock), 0u);
  EXPECT_FALSE(Render(&slot_, notABlock, &one, &one, &px));
  EXPECT_EQ(px, kPattern);
}

}  // namespace
