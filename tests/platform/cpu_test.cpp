#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "platform/platform.h"

namespace lx::platform {
namespace {

TEST(Cpu, ProcessorTypeIsAnX86Type) {
#if defined(__i386__) || defined(__x86_64__)
  // 586 for 32-bit programs on any Pentium or later, 8664 for 64-bit ones.
  const uint32_t type = ProcessorType();
  EXPECT_TRUE(type == 586 || type == 8664) << type;
#else
  GTEST_SKIP() << "not an x86 processor";
#endif
}

TEST(Cpu, EveryPentiumClassProcessorHasMMX) {
  if (ProcessorType() == 586 || ProcessorType() == 8664) {
    EXPECT_TRUE(HasMMX());
  } else {
    EXPECT_FALSE(HasMMX());
  }
}

TEST(Cpu, HasMMXIsTheSameForEveryThreadAndCall) {
  const bool first = HasMMX();
  std::atomic<int> differing{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 1000; ++i) {
        if (HasMMX() != first) ++differing;
      }
    });
  }
  for (auto& th : threads) th.join();
  EXPECT_EQ(differing.load(), 0);
}

}  // namespace
}  // namespace lx::platform
