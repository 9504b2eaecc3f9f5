// The pointer checks against pages whose rights are known, and ranges that cross from one kind into another.
#include <gtest/gtest.h>

#include "platform/platform.h"
#include "tests/support/guard_pages.h"

namespace lx::platform {
namespace {

using test::GuardedPages;
using Access = GuardedPages::Access;

bool Readable(const void* p, uintptr_t n) {
  return IsBadReadPtr(p, n) == 0;
}
bool Writable(void* p, uintptr_t n) {
  return IsBadWritePtr(p, n) == 0;
}

TEST(MemoryProbe, PagesAnswerByTheirRightsToTheByte) {
  // read-write | read-only | none | hole
  GuardedPages pages(4);
  pages.protect(1, Access::kRead);
  pages.protect(2, Access::kNone);
  pages.release(3);
  const size_t ps = pages.pageSize();
  uint8_t* p0 = pages.page(0);
  EXPECT_TRUE(Readable(nullptr, 0));
  EXPECT_TRUE(Writable(pages.page(2), 0));
  EXPECT_FALSE(Readable(nullptr, 1));
  EXPECT_FALSE(Writable(nullptr, 1));
  EXPECT_TRUE(Writable(p0, ps));
  EXPECT_TRUE(Writable(p0 + ps - 8, 8));
  EXPECT_FALSE(Writable(p0 + ps - 8, 9));
  EXPECT_FALSE(Writable(pages.page(1) + ps - 1, 1));
  EXPECT_TRUE(Readable(p0, 2 * ps));
  EXPECT_FALSE(Readable(p0, 2 * ps + 1));
  EXPECT_FALSE(Readable(pages.page(1) + ps - 1, 2));
  EXPECT_FALSE(Writable(pages.page(2) + ps / 2, 1));
  EXPECT_FALSE(Readable(pages.page(3) + 5, 1));
  EXPECT_FALSE(Readable(p0, 4 * ps));
}

TEST(MemoryProbe, HoleBetweenGoodPagesIsFound) {
  GuardedPages pages(3);
  pages.release(1);
  const size_t ps = pages.pageSize();
  EXPECT_TRUE(Writable(pages.page(2), ps));
  EXPECT_FALSE(Readable(pages.page(0) + ps - 1, ps + 2));
  EXPECT_FALSE(Readable(pages.page(0), 2 * ps + 1));
}

TEST(MemoryProbe, LargeBufferEndingAtAnInaccessiblePage) {
  GuardedPages pages(257);
  pages.protect(256, Access::kNone);
  const size_t bytes = 256 * pages.pageSize();
  EXPECT_TRUE(Writable(pages.page(0), bytes));
  EXPECT_FALSE(Writable(pages.page(0), bytes + 1));
  EXPECT_FALSE(Readable(pages.page(0) + 4, bytes));
}

TEST(MemoryProbe, WrappingRangesAndConstantData) {
  static const char kText[] = "constant data lives in read-only pages";
  uint8_t local[16] = {};
  EXPECT_FALSE(Readable(local, ~uintptr_t{0}));
  EXPECT_FALSE(Writable(local, ~uintptr_t{0} - 8));
  EXPECT_TRUE(Writable(local, sizeof local));
  EXPECT_TRUE(Readable(kText, sizeof kText));
  EXPECT_FALSE(Writable(const_cast<char*>(kText), sizeof kText));
}

}  // namespace
}  // namespace lx::platform
