// Every way of learning a range's rights must agree with the pages' real rights: the kernel's answer about
// single mappings, and the fallbacks (the whole mapping list, copying through a pipe).
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include "platform/platform.h"
#include "platform/posix/posix_memory_probe.h"
#include "tests/support/guard_pages.h"

namespace lx::platform::posix {
namespace {
using A = test::GuardedPages::Access;
using Probe = Verdict (*)(uintptr_t, uintptr_t, Access);

class BothProbes : public ::testing::TestWithParam<Probe> {};

TEST_P(BothProbes, AgreeWithThePagesRights) {
  const Probe probe = GetParam();
  // Alternating rights split one mapping into several lines of /proc/self/maps.
  test::GuardedPages pages(
      {A::kReadWrite, A::kRead, A::kNone, A::kHole, A::kReadWrite, A::kRead, A::kReadWrite});
  const size_t ps = pages.pageSize();
  const auto at = [&](size_t page, size_t offset = 0) {
    return reinterpret_cast<uintptr_t>(pages.page(page)) + offset;
  };
  // A kernel that does not answer single-mapping requests leaves that probe nothing to test.
  if (probe(at(0), at(0), Access::kRead) == Verdict::kUnknown) GTEST_SKIP() << "no answer from this kernel";
  const struct {
    uintptr_t first, last;
    Access access;
    Verdict verdict;
  } cases[] = {
      {at(0), at(0, ps - 1), Access::kWrite, Verdict::kAccessible},
      {at(0, 7), at(1, ps - 1), Access::kRead, Verdict::kAccessible},
      {at(0, 7), at(1, 0), Access::kWrite, Verdict::kInaccessible},
      {at(1, 3), at(1, 3), Access::kWrite, Verdict::kInaccessible},
      {at(1), at(2, 0), Access::kRead, Verdict::kInaccessible},
      {at(2, 100), at(2, 100), Access::kRead, Verdict::kInaccessible},
      {at(3, 5), at(3, 6), Access::kRead, Verdict::kInaccessible},
      {at(4), at(6, ps - 1), Access::kRead, Verdict::kAccessible},
      {at(4), at(6, ps - 1), Access::kWrite, Verdict::kInaccessible},
      {at(6), at(6, ps - 1), Access::kWrite, Verdict::kAccessible},
      {at(0), at(6, ps - 1), Access::kRead, Verdict::kInaccessible},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(probe(c.first, c.last, c.access), c.verdict)
        << (c.first - at(0)) << ".." << (c.last - at(0)) << (c.access == Access::kWrite ? " write" : " read");
  }
  // Asking about writing must not write.
  pages.page(0)[0] = 0x11;
  EXPECT_EQ(probe(at(0), at(0, ps - 1), Access::kWrite), Verdict::kAccessible);
  EXPECT_EQ(pages.page(0)[0], 0x11);
}

INSTANTIATE_TEST_SUITE_P(
    MemoryProbe, BothProbes, ::testing::Values(&ProbeByQuery, &ProbeByMappings, &ProbeByCopying),
    [](const ::testing::TestParamInfo<Probe>& info) {
      return std::string(info.index == 0 ? "Query" : info.index == 1 ? "Mappings" : "Copying");
    });

// Memory unmapped or protected since the last check (also in a child made by fork, whose mappings are its
// own): the next check must see it as it is now.
TEST(MemoryProbeChanges, UnmappedOrProtectedSinceTheLastCheckIsBad) {
  test::GuardedPages pages(4);
  const size_t ps = pages.pageSize();
  EXPECT_FALSE(platform::IsBadWritePtr(pages.page(0), 4 * ps));
  pages.protect(2, A::kRead);
  EXPECT_TRUE(!platform::IsBadReadPtr(pages.page(0), 4 * ps) &&
              platform::IsBadWritePtr(pages.page(0), 4 * ps));
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    munmap(pages.page(1), ps);
    _exit(platform::IsBadReadPtr(pages.page(0), 2 * ps) && !platform::IsBadWritePtr(pages.page(0), ps) ? 0
                                                                                                       : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_FALSE(platform::IsBadReadPtr(pages.page(0), 2 * ps));
  pages.release(1);
  EXPECT_TRUE(platform::IsBadReadPtr(pages.page(0), 2 * ps) &&
              platform::IsBadReadPtr(pages.page(1) + 100, 1));
}
}  // namespace
}  // namespace lx::platform::posix
