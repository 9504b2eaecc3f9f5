// The pointer checks as kernel32 answers them (the Windows build runs these against the real calls); ranges
// over pages of each kind of rights are checked through ValidateCallerMemory and, per probe, on Linux.
#include <gtest/gtest.h>
#include "platform/platform.h"
#include "tests/support/guard_pages.h"

namespace lx::platform {
namespace {
using A = test::GuardedPages::Access;

TEST(MemoryProbe, EmptyLargeWrappingAndConstantRanges) {
  test::GuardedPages pages(257);
  pages.protect(256, A::kNone);
  const size_t bytes = 256 * pages.pageSize();
  // No bytes are always fine, even at no address or on a page without access; one byte at null is not.
  EXPECT_TRUE(!IsBadReadPtr(nullptr, 0) && !IsBadWritePtr(pages.page(256), 0));
  EXPECT_TRUE(IsBadReadPtr(nullptr, 1) && IsBadWritePtr(nullptr, 1));
  EXPECT_FALSE(IsBadWritePtr(pages.page(0), bytes));
  EXPECT_TRUE(IsBadWritePtr(pages.page(0), bytes + 1));
  EXPECT_TRUE(IsBadReadPtr(pages.page(0) + 4, bytes));
  static const char kText[] = "constant data lives in read-only pages";
  uint8_t local[16] = {};
  EXPECT_TRUE(IsBadReadPtr(local, ~uintptr_t{0}));
  EXPECT_TRUE(IsBadWritePtr(local, ~uintptr_t{0} - 8));
  EXPECT_FALSE(IsBadWritePtr(local, sizeof local));
  EXPECT_FALSE(IsBadReadPtr(kText, sizeof kText));
  EXPECT_TRUE(IsBadWritePtr(const_cast<char*>(kText), sizeof kText));
}
}  // namespace
}  // namespace lx::platform
