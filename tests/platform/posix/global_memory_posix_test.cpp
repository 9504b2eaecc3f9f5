// Where the stand-in for kernel32's global memory decides for itself: what Windows leaves open (blocks
// of no bytes) or does less carefully (locking memory that is no block), and the exported copies.
#include <gtest/gtest.h>

#include "lettrix/lettrix.h"
#include "platform/platform.h"

namespace lx::platform {
namespace {

TEST(GlobalMemoryStandIn, RefusesNoBytesAndMoreThanTwoGigabytes) {
  EXPECT_EQ(GlobalAlloc(kGmemFixed, 0), nullptr);
  EXPECT_EQ(GlobalAlloc(kGmemMoveableZeroInit, 0), nullptr);
  EXPECT_EQ(GlobalAlloc(kGmemMoveableZeroInit, size_t{0x80000000u}), nullptr);
}

TEST(GlobalMemoryStandIn, HandleIsTheAddressAndFixedBlocksCountNoLocks) {
  MemoryHandle moveable = GlobalAlloc(kGmemMoveableZeroInit, 64), fixed = GlobalAlloc(kGmemFixed, 64);
  ASSERT_NE(moveable, nullptr);
  ASSERT_NE(fixed, nullptr);
  EXPECT_EQ(GlobalLock(moveable), moveable);
  EXPECT_EQ(GlobalUnlock(moveable), 0);
  EXPECT_EQ(GlobalLock(fixed), fixed);
  EXPECT_EQ(GlobalLock(fixed), fixed);
  EXPECT_EQ(GlobalUnlock(fixed), 0);
  EXPECT_EQ(GlobalSize(static_cast<uint8_t*>(fixed) + 1), 0u);  // an address inside is not the handle
  EXPECT_EQ(GlobalFree(moveable), nullptr);
  EXPECT_EQ(GlobalFree(fixed), nullptr);
  EXPECT_EQ(GlobalLock(fixed), nullptr);
  EXPECT_EQ(GlobalSize(fixed), 0u);
  uint8_t bytes[32] = {};
  EXPECT_EQ(GlobalLock(bytes), nullptr);
  EXPECT_EQ(GlobalUnlock(bytes), 0);
}

TEST(GlobalMemoryStandIn, ExportedCallsShareTheBlocks) {
  void* h = LettrixGlobalAlloc(0x42, 100);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(LettrixGlobalSize(h), 100u);
  EXPECT_EQ(GlobalSize(h), 100u);
  auto* p = static_cast<uint8_t*>(LettrixGlobalLock(h));
  ASSERT_EQ(p, h);
  EXPECT_EQ(p[99], 0);
  EXPECT_NE(LettrixGlobalLock(h), nullptr);
  EXPECT_NE(LettrixGlobalUnlock(h), 0);
  EXPECT_EQ(LettrixGlobalUnlock(h), 0);
  EXPECT_EQ(LettrixGlobalFree(h), nullptr);
  EXPECT_EQ(LettrixGlobalFree(h), h);
  EXPECT_EQ(LettrixGlobalSize(h), 0u);
  void* ones = reinterpret_cast<void*>(~uintptr_t{0});
  EXPECT_EQ(LettrixGlobalLock(ones), nullptr);
  EXPECT_EQ(LettrixGlobalFree(ones), ones);
  EXPECT_EQ(LettrixGlobalAlloc(0, 0), nullptr);
}

}  // namespace
}  // namespace lx::platform
