#include "image/caller_memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "tests/support/guard_pages.h"

namespace lx {
namespace {

using Access = test::GuardedPages::Access;

TEST(ValidateCallerMemory, NullOrEmptyIsRefused) {
  int local = 0;
  EXPECT_FALSE(ValidateCallerMemory(nullptr, 4, false));
  EXPECT_FALSE(ValidateCallerMemory(nullptr, 0, false));
  EXPECT_FALSE(ValidateCallerMemory(&local, 0, false));
  EXPECT_FALSE(ValidateCallerMemory(&local, 0, true));
  EXPECT_TRUE(ValidateCallerMemory(&local, sizeof local, true));
}

TEST(ValidateCallerMemory, ReadOnlyPagesPassOnlyWithoutWrite) {
  test::GuardedPages pages(2);
  pages.protect(1, Access::kRead);
  const uint64_t size = pages.pageSize();
  EXPECT_TRUE(ValidateCallerMemory(pages.page(0), 2 * size, false));
  EXPECT_FALSE(ValidateCallerMemory(pages.page(0), 2 * size, true));
  EXPECT_TRUE(ValidateCallerMemory(pages.page(0), size, true));
  EXPECT_FALSE(ValidateCallerMemory(pages.page(0) + size - 1, 2, true));  // the last byte is read-only
}

TEST(ValidateCallerMemory, RangesRunningIntoInaccessiblePagesAreRefused) {
  test::GuardedPages pages(3);
  pages.protect(1, Access::kNone);
  pages.release(2);
  const uint64_t size = pages.pageSize();
  EXPECT_TRUE(ValidateCallerMemory(pages.page(0), size, true));
  EXPECT_FALSE(ValidateCallerMemory(pages.page(0), size + 1, false));
  EXPECT_FALSE(ValidateCallerMemory(pages.page(1), 1, false));
  EXPECT_FALSE(ValidateCallerMemory(pages.page(2), 1, false));
  EXPECT_FALSE(ValidateCallerMemory(pages.page(0), 3 * size, false));
}

TEST(ValidateCallerMemory, CountsPastTheAddressSpaceAreRefused) {
  test::GuardedPages pages(1);
  const uint64_t addressSpace = uint64_t{std::numeric_limits<uintptr_t>::max()};
  EXPECT_FALSE(ValidateCallerMemory(pages.page(0), std::numeric_limits<uint64_t>::max(), false));
  EXPECT_FALSE(ValidateCallerMemory(pages.page(0), addressSpace, false));
  // On a 32-bit system 2^32 + 4 must not be taken for 4.
  EXPECT_FALSE(ValidateCallerMemory(pages.page(0), (uint64_t{1} << 32) + 4, false));
  // A range that would wrap past the last address.
  const auto* nearTop = reinterpret_cast<const void*>(std::numeric_limits<uintptr_t>::max() - 15);
  EXPECT_FALSE(ValidateCallerMemory(nearTop, 32, false));
}

}  // namespace
}  // namespace lx
