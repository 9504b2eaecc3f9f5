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
  EXPECT_EQ(LettrixGlobalAlloc(0, 0), nullptr);
}

TEST(GlobalMemoryStandIn, HandleIsTheAddressAndFixedBlocksCountNoLocks) {
  MemoryHandle moveable = GlobalAlloc(kGmemMoveableZeroInit, 64), fixed = GlobalAlloc(kGmemFixed, 64);
  ASSERT_TRUE(moveable && fixed);
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

}  // namespace
}  // namespace lx::platform
