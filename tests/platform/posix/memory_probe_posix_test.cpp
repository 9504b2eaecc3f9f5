// Every way of learning a range's rights must agree with the pages' real rights: asking the kernel about
// single mappings is what the checks normally use, the whole mapping list what they fall back on with
// an older kernel, copying through a pipe what they fall back on without /proc.
#include <gtest/gtest.h>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/platform.h"
#include "platform/posix/posix_memory_probe.h"
#include "tests/support/guard_pages.h"

namespace lx::platform::posix {
namespace {

using test::GuardedPages;

struct Layout {
  GuardedPages pages{5};
  Layout() {
    // read-write | read-only | none | hole | read-write
    pages.protect(1, GuardedPages::Access::kRead);
    pages.protect(2, GuardedPages::Access::kNone);
    pages.release(3);
  }
  uintptr_t at(size_t page, size_t offset = 0) const {
    return reinterpret_cast<uintptr_t>(pages.page(page)) + offset;
  }
  size_t ps() const { return pages.pageSize(); }
};

using Probe = Verdict (*)(uintptr_t, uintptr_t, Access);

class BothProbes : public ::testing::TestWithParam<Probe> {};

// A kernel that does not answer single-mapping requests leaves that probe nothing to test.
bool Answers(Probe probe) {
  GuardedPages one(1);
  const auto at = reinterpret_cast<uintptr_t>(one.page(0));
  return probe(at, at, Access::kRead) != Verdict::kUnknown;
}

TEST_P(BothProbes, AgreeWithThePagesRights) {
  const Probe probe = GetParam();
  if (!Answers(probe)) GTEST_SKIP() << "this kernel does not answer PROCMAP_QUERY";
  Layout l;
  const size_t ps = l.ps();
  EXPECT_EQ(probe(l.at(0), l.at(0, ps - 1), Access::kWrite), Verdict::kAccessible);
  EXPECT_EQ(probe(l.at(0, 7), l.at(1, ps - 1), Access::kRead), Verdict::kAccessible);
  EXPECT_EQ(probe(l.at(0, 7), l.at(1, 0), Access::kWrite), Verdict::kInaccessible);
  EXPECT_EQ(probe(l.at(1, 3), l.at(1, 3), Access::kWrite), Verdict::kInaccessible);
  EXPECT_EQ(probe(l.at(1), l.at(2, 0), Access::kRead), Verdict::kInaccessible);
  EXPECT_EQ(probe(l.at(2, 100), l.at(2, 100), Access::kRead), Verdict::kInaccessible);
  EXPECT_EQ(probe(l.at(3, 5), l.at(3, 6), Access::kRead), Verdict::kInaccessible);
  EXPECT_EQ(probe(l.at(4), l.at(4, ps - 1), Access::kWrite), Verdict::kAccessible);
  EXPECT_EQ(probe(l.at(0), l.at(4, ps - 1), Access::kRead), Verdict::kInaccessible);
  // Asking about writing must not write.
  l.pages.page(0)[0] = 0x11;
  EXPECT_EQ(probe(l.at(0), l.at(0, ps - 1), Access::kWrite), Verdict::kAccessible);
  EXPECT_EQ(l.pages.page(0)[0], 0x11);
}

INSTANTIATE_TEST_SUITE_P(MemoryProbe, BothProbes,
                         ::testing::Values(&ProbeByQuery, &ProbeByMappings, &ProbeByCopying),
                         [](const ::testing::TestParamInfo<Probe>& info) {
                           if (info.param == &ProbeByQuery) return std::string("Query");
                           return info.param == &ProbeByMappings ? std::string("Mappings")
                                                                 : std::string("Copying");
                         });

// Memory that was fine at one check and was unmapped or protected before the next: the next check must
// see it as it is now, through the public checks as Render makes them.
TEST(MemoryProbeChanges, UnmappedOrProtectedSinceTheLastCheckIsBad) {
  GuardedPages pages(4);
  const size_t ps = pages.pageSize();
  for (int round = 0; round < 2; ++round) {
    EXPECT_FALSE(platform::IsBadReadPtr(pages.page(0), 4 * ps));
    EXPECT_FALSE(platform::IsBadWritePtr(pages.page(0), 4 * ps));
  }
  pages.protect(2, GuardedPages::Access::kRead);
  EXPECT_FALSE(platform::IsBadReadPtr(pages.page(0), 4 * ps));
  EXPECT_TRUE(platform::IsBadWritePtr(pages.page(0), 4 * ps));
  EXPECT_FALSE(platform::IsBadWritePtr(pages.page(3), ps));
  pages.protect(3, GuardedPages::Access::kNone);
  EXPECT_TRUE(platform::IsBadReadPtr(pages.page(3) + 10, 1));
  pages.release(1);
  EXPECT_TRUE(platform::IsBadReadPtr(pages.page(0), 2 * ps));
  EXPECT_TRUE(platform::IsBadReadPtr(pages.page(1) + 100, 1));
  EXPECT_FALSE(platform::IsBadWritePtr(pages.page(0), ps));
}

// A child made by fork has mappings of its own: what it unmaps is bad for it, not for its parent.
TEST(MemoryProbeChanges, ForkedChildChecksItsOwnMappings) {
  GuardedPages pages(2);
  const size_t ps = pages.pageSize();
  ASSERT_FALSE(platform::IsBadWritePtr(pages.page(0), 2 * ps));  // the parent has asked before the fork
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    munmap(pages.page(1), ps);
    const bool right =
        platform::IsBadReadPtr(pages.page(0), 2 * ps) && !platform::IsBadWritePtr(pages.page(0), ps);
    _exit(right ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_FALSE(platform::IsBadReadPtr(pages.page(0), 2 * ps));
}

TEST(MemoryProbeMappings, SplitMappingsAreJoined) {
  // Alternating rights split one mapping into several lines of /proc/self/maps; a range across all of
  // them is still covered.
  GuardedPages pages(6);
  for (size_t i = 0; i < 6; i += 2) pages.protect(i, GuardedPages::Access::kRead);
  const auto first = reinterpret_cast<uintptr_t>(pages.page(0));
  const auto last = reinterpret_cast<uintptr_t>(pages.page(6)) - 1;
  EXPECT_EQ(ProbeByMappings(first, last, Access::kRead), Verdict::kAccessible);
  EXPECT_EQ(ProbeByMappings(first, last, Access::kWrite), Verdict::kInaccessible);
  EXPECT_EQ(ProbeByMappings(first + pages.pageSize(), first + 2 * pages.pageSize() - 1, Access::kWrite),
            Verdict::kAccessible);
}

}  // namespace
}  // namespace lx::platform::posix
