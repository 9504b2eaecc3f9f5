// Both ways of learning a range's rights must agree with the pages' real rights: the mapping list is
// what the checks normally use, copying through a pipe is what they fall back on without /proc.
#include <gtest/gtest.h>

#include <sys/mman.h>

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

TEST_P(BothProbes, AgreeWithThePagesRights) {
  const Probe probe = GetParam();
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
}

TEST_P(BothProbes, WriteProbeLeavesContentsAlone) {
  Layout l;
  l.pages.page(0)[0] = 0x11;
  l.pages.page(4)[l.ps() - 1] = 0x33;
  EXPECT_EQ(GetParam()(l.at(4, 0), l.at(4, l.ps() - 1), Access::kWrite), Verdict::kAccessible);
  EXPECT_EQ(GetParam()(l.at(0, 0), l.at(0, l.ps() - 1), Access::kWrite), Verdict::kAccessible);
  EXPECT_EQ(l.pages.page(0)[0], 0x11);
  EXPECT_EQ(l.pages.page(4)[l.ps() - 1], 0x33);
}

INSTANTIATE_TEST_SUITE_P(MemoryProbe, BothProbes, ::testing::Values(&ProbeByMappings, &ProbeByCopying),
                         [](const ::testing::TestParamInfo<Probe>& info) {
                           return info.param == &ProbeByMappings ? std::string("Mappings")
                                                                 : std::string("Copying");
                         });

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
