// What a piece of code costs in memory, measured where a test can bound it: the resident pages it
// touches, and a cap on the address space it may claim. Meant for gtest's EXPECT_EXIT children, so a
// cap never limits the test program itself.
#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>

namespace lx::test {

// The process's current virtual size and resident size in bytes, from /proc/self/statm; 0 when unknown.
struct MemoryUse {
  uint64_t virtualBytes = 0, residentBytes = 0;
};

inline MemoryUse CurrentMemoryUse() {
  unsigned long long pages[2] = {0, 0};
  if (std::FILE* f = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(f, "%llu %llu", &pages[0], &pages[1]) != 2) pages[0] = pages[1] = 0;
    std::fclose(f);
  }
  const auto page = static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
  return {pages[0] * page, pages[1] * page};
}

// Lets the process map at most `extraBytes` more than it has mapped now: a larger allocation fails
// (or stops a sanitizer build) instead of taking the machine's memory. False when no cap could be set.
inline bool CapAddressSpaceGrowth(uint64_t extraBytes) {
  const uint64_t now = CurrentMemoryUse().virtualBytes;
  rlimit limit{};
  if (now == 0 || getrlimit(RLIMIT_AS, &limit) != 0) return false;
  limit.rlim_cur = static_cast<rlim_t>(now + extraBytes);
  return setrlimit(RLIMIT_AS, &limit) == 0;
}

}  // namespace lx::test
