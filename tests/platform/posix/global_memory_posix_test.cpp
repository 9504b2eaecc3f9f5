// Where the stand-in for kernel32's global memory decides for itself: what Windows leaves open (blocks
// of no bytes) or does less carefully (locking memory that is no block), and the exported copies.
#include <gtest/gtest.h>

#include <cstring>

#include "lettrix/lettrix.h"
#include "platform/platform.h"

namespace lx::platform {
namespace {

TEST(GlobalMemoryStandIn, NoBytesGiveNoBlock) {
  EXPECT_EQ(GlobalAlloc(kGmemFixed, 0), nullptr);
  EXPECT_EQ(GlobalAlloc(kGmemMoveableZeroInit, 0), nullptr);
}

TEST(GlobalMemoryStandIn, RequestsBeyondTwoGigabytesAreRefused) {
  EXPECT_EQ(GlobalAlloc(kGmemMoveableZeroInit, size_t{0x80000000u}), nullptr);
}

TEST(GlobalMemoryStandIn, MovableHandleIsTheAddressToo) {
  MemoryHandle h = GlobalAlloc(kGmemMoveableZeroInit, 64);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(GlobalLock(h), h);
  EXPECT_EQ(GlobalUnlock(h), 0);
  EXPECT_EQ(GlobalFree(h), nullptr);
}

TEST(GlobalMemoryStandIn, FixedBlocksCountNoLocks) {
  MemoryHandle h = GlobalAlloc(kGmemFixed, 64);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(GlobalLock(h), h);
  EXPECT_EQ(GlobalLock(h), h);
  EXPECT_EQ(GlobalUnlock(h), 0);
  EXPECT_EQ(GlobalFree(h), nullptr);
}

TEST(GlobalMemoryStandIn, MemoryThatIsNoBlockCannotBeLocked) {
  uint8_t bytes[32] = {};
  EXPECT_EQ(GlobalLock(bytes), nullptr);
  EXPECT_EQ(GlobalUnlock(bytes), 0);
  MemoryHandle h = GlobalAlloc(kGmemFixed, 32);
  ASSERT_EQ(GlobalFree(h), nullptr);
  EXPECT_EQ(GlobalLock(h), nullptr);
  EXPECT_EQ(GlobalSize(h), 0u);
  // An address inside a live block is not its handle.
  MemoryHandle live = GlobalAlloc(kGmemFixed, 32);
  ASSERT_NE(live, nullptr);
  EXPECT_EQ(GlobalSize(static_cast<uint8_t*>(live) + 1), 0u);
  EXPECT_EQ(GlobalFree(live), nullptr);
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
