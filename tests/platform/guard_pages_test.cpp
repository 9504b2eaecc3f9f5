// The helper every memory-check test relies on: if it handed out ordinary memory, they would check nothing.
#include <gtest/gtest.h>

#include "tests/support/guard_pages.h"

namespace lx::test {
namespace {

TEST(GuardedPages, ContiguousZeroedPagesKeepContentsAcrossProtectionChanges) {
  GuardedPages pages(3);
  ASSERT_GE(pages.pageSize(), 4096u);
  EXPECT_EQ(pages.page(3), pages.page(0) + 3 * pages.pageSize());
  for (size_t i = 0; i < 3 * pages.pageSize(); ++i) ASSERT_EQ(pages.page(0)[i], 0) << i;
  pages.page(0)[5] = 42;
  pages.protect(0, GuardedPages::Access::kNone);
  pages.protect(0, GuardedPages::Access::kRead);
  EXPECT_EQ(pages.page(0)[5], 42);
  pages.protect(0, GuardedPages::Access::kReadWrite);
  pages.page(0)[5] = 43;
  EXPECT_EQ(pages.page(0)[5], 43);
  pages.release(1);
}

}  // namespace
}  // namespace lx::test
