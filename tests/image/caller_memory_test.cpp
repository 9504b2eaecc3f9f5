#include "image/caller_memory.h"
#include <gtest/gtest.h>
#include <cstdint>
#include <limits>
#include "tests/support/guard_pages.h"

namespace lx {
namespace {
TEST(ValidateCallerMemory, AcceptsOnlyWholeRangesWithTheRightsAskedAndNoWrap) {
  int local = 0;
  EXPECT_FALSE(ValidateCallerMemory(nullptr, 4, false));
  EXPECT_FALSE(ValidateCallerMemory(&local, 0, true));
  EXPECT_TRUE(ValidateCallerMemory(&local, sizeof local, true));
  using A = test::GuardedPages::Access;
  test::GuardedPages pages({A::kReadWrite, A::kRead, A::kNone, A::kHole});
  const uint64_t size = pages.pageSize();
  EXPECT_TRUE(ValidateCallerMemory(pages.page(0), 2 * size, false));
  EXPECT_FALSE(ValidateCallerMemory(pages.page(0), 2 * size, true));
  EXPECT_TRUE(ValidateCallerMemory(pages.page(0), size, true));
  EXPECT_FALSE(ValidateCallerMemory(pages.page(0) + size - 1, 2, true));
  EXPECT_FALSE(ValidateCallerMemory(pages.page(0), 2 * size + 1, false));
  EXPECT_FALSE(ValidateCallerMemory(pages.page(3), 1, false));
  EXPECT_FALSE(ValidateCallerMemory(pages.page(0), std::numeric_limits<uint64_t>::max(), false));
  EXPECT_FALSE(ValidateCallerMemory(pages.page(0), uint64_t{std::numeric_limits<uintptr_t>::max()}, false));
  // On a 32-bit system 2^32 + 4 must not be taken for 4.
  EXPECT_FALSE(ValidateCallerMemory(pages.page(0), (uint64_t{1} << 32) + 4, false));
  const auto* nearTop = reinterpret_cast<const void*>(std::numeric_limits<uintptr_t>::max() - 15);
  EXPECT_FALSE(ValidateCallerMemory(nearTop, 32, false));
}
}  // namespace
}  // namespace lx
