#include <gtest/gtest.h>

#include "platform/platform.h"

namespace lx::platform {
namespace {

TEST(Cpu, ProcessorTypeIsAnX86TypeWithMMX) {
#if defined(__i386__) || defined(__x86_64__)
  // 586 for 32-bit programs on any Pentium or later, 8664 for 64-bit ones; all of them have MMX.
  const uint32_t type = ProcessorType();
  EXPECT_TRUE(type == 586 || type == 8664) << type;
  EXPECT_TRUE(HasMMX());
#else
  EXPECT_FALSE(HasMMX());
#endif
}

}  // namespace
}  // namespace lx::platform
