// The pointer checks against memory whose rights are known: readable and writable pages, read-only
// pages, pages without access, holes, and ranges that cross from one kind into another.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

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

TEST(MemoryProbe, EmptyRangeIsNeverBadAndNullNeverGood) {
  GuardedPages pages(1);
  pages.protect(0, Access::kNone);
  EXPECT_TRUE(Readable(nullptr, 0));
  EXPECT_TRUE(Writable(nullptr, 0));
  EXPECT_TRUE(Readable(pages.page(0), 0));
  EXPECT_TRUE(Writable(pages.page(0), 0));
  EXPECT_FALSE(Readable(nullptr, 1));
  EXPECT_FALSE(Writable(nullptr, 1));
}

TEST(MemoryProbe, PagesAnswerByTheirRights) {
  GuardedPages pages(3);
  pages.protect(1, Access::kRead);
  pages.protect(2, Access::kNone);
  const size_t ps = pages.pageSize();
  EXPECT_TRUE(Readable(pages.page(0), ps));
  EXPECT_TRUE(Writable(pages.page(0), ps));
  EXPECT_TRUE(Readable(pages.page(1), ps));
  EXPECT_FALSE(Writable(pages.page(1), ps));
  EXPECT_FALSE(Writable(pages.page(1) + ps - 1, 1));
  EXPECT_FALSE(Readable(pages.page(2), 1));
  EXPECT_FALSE(Writable(pages.page(2) + ps / 2, 1));
}

TEST(MemoryProbe, RangesThatCrossIntoWorsePagesAreBad) {
  GuardedPages pages(3);
  pages.protect(1, Access::kRead);
  pages.protect(2, Access::kNone);
  const size_t ps = pages.pageSize();
  uint8_t* endOf0 = pages.page(1);
  // Up to the boundary is fine, one byte past it is not.
  EXPECT_TRUE(Writable(endOf0 - 8, 8));
  EXPECT_FALSE(Writable(endOf0 - 8, 9));
  EXPECT_TRUE(Readable(endOf0 - 8, 9));
  EXPECT_TRUE(Readable(pages.page(0), 2 * ps));
  EXPECT_FALSE(Readable(pages.page(0), 2 * ps + 1));
  EXPECT_FALSE(Readable(pages.page(1) + ps - 1, 2));
  // A bad page in the middle of a long range is found.
  EXPECT_FALSE(Readable(pages.page(0), 3 * ps));
}

TEST(MemoryProbe, HoleBetweenGoodPagesIsFound) {
  GuardedPages pages(3);
  pages.release(1);
  const size_t ps = pages.pageSize();
  EXPECT_TRUE(Writable(pages.page(0), ps));
  EXPECT_TRUE(Writable(pages.page(2), ps));
  EXPECT_FALSE(Readable(pages.page(0), 2 * ps + 1));
  EXPECT_FALSE(Readable(pages.page(0) + ps - 1, ps + 2));
  EXPECT_FALSE(Writable(pages.page(1), 1));
}

TEST(MemoryProbe, LargeBufferEndingAtAnInaccessiblePage) {
  // The shape of Render's check: a whole image whose very last byte is the last accessible one.
  GuardedPages pages(257);
  pages.protect(256, Access::kNone);
  const size_t bytes = 256 * pages.pageSize();
  EXPECT_TRUE(Writable(pages.page(0), bytes));
  EXPECT_FALSE(Writable(pages.page(0), bytes + 1));
  EXPECT_FALSE(Readable(pages.page(0) + 4, bytes));
}

TEST(MemoryProbe, RangeWrappingPastTheTopOfMemoryIsBad) {
  uint8_t local[16] = {};
  EXPECT_FALSE(Readable(local, ~uintptr_t{0}));
  EXPECT_FALSE(Writable(local, ~uintptr_t{0} - 8));
  EXPECT_TRUE(Writable(local, sizeof local));
}

TEST(MemoryProbe, ConstantDataCanBeReadButNotWritten) {
  static const char kText[] = "constant data lives in read-only pages";
  EXPECT_TRUE(Readable(kText, sizeof kText));
  EXPECT_FALSE(Writable(const_cast<char*>(kText), sizeof kText));
}

TEST(MemoryProbe, ThreadsGetTheSameAnswers) {
  GuardedPages pages(2);
  pages.protect(1, Access::kRead);
  const size_t ps = pages.pageSize();
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 50; ++i) {
        if (!Readable(pages.page(0), 2 * ps) || Writable(pages.page(0), ps + 1) ||
            !Writable(pages.page(0), ps))
          ++wrong;
      }
    });
  }
  for (auto& th : threads) th.join();
  EXPECT_EQ(wrong.load(), 0);
}

}  // namespace
}  // namespace lx::platform
