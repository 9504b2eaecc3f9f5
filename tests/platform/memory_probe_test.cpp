// The pointer checks against pages whose rights are known, and ranges that cross from one kind into another.
#include <gtest/gtest.h>

#include "platform/platform.h"
#include "tests/support/guard_pages.h"

namespace lx::platform {
namespace {

using A = test::GuardedPages::Access;

TEST(MemoryProbe, PagesAnswerByTheirRightsToTheByte) {
  test::GuardedPages pages({A::kReadWrite, A::kRead, A::kNone, A::kHole, A::kReadWrite});
  const size_t ps = pages.pageSize();
  uint8_t* p0 = pages.page(0);
  const struct {
    const void* at;
    uintptr_t size;
    bool write, good;
  } cases[] = {
      {nullptr, 0, false, true},
      {pages.page(2), 0, true, true},
      {nullptr, 1, false, false},
      {nullptr, 1, true, false},
      {p0, ps, true, true},
      {p0 + ps - 8, 8, true, true},
      {p0 + ps - 8, 9, true, false},
      {pages.page(1) + ps - 1, 1, true, false},
      {p0, 2 * ps, false, true},
      {p0, 2 * ps + 1, false, false},
      {pages.page(1) + ps - 1, 2, false, false},
      {pages.page(2) + ps / 2, 1, true, false},
      {pages.page(3) + 5, 1, false, false},
      {pages.page(4), ps, true, true},  // past the hole
      {pages.page(2) + ps - 1, ps + 2, false, false},
      {p0, 5 * ps, false, false},
  };
  for (const auto& c : cases) {
    const uintptr_t offset = reinterpret_cast<uintptr_t>(c.at) - reinterpret_cast<uintptr_t>(p0);
    EXPECT_EQ(c.write ? IsBadWritePtr(const_cast<void*>(c.at), c.size) == 0 : IsBadReadPtr(c.at, c.size) == 0,
              c.good)
        << "offset " << offset << " size " << c.size << (c.write ? " write" : " read");
  }
}

TEST(MemoryProbe, LargeRangesWrappingRangesAndConstantData) {
  test::GuardedPages pages(257);
  pages.protect(256, A::kNone);
  const size_t bytes = 256 * pages.pageSize();
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
