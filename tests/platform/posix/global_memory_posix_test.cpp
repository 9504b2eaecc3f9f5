// Where the stand-in for kernel32's global memory decides for itself: what Windows leaves open (blocks
// of no bytes) or does less carefully (locking memory that is no block), and the exported copies.
#include <gtest/gtest.h>
#include "lettrix/lettrix.h"
#include "platform/platform.h"

namespace lx::platform {
namespace {
TEST(GlobalMemoryStandIn, RefusesNoBytesOrPastTwoGigabytesHandleIsTheAddressFixedBlocksCountNoLocks) {
  EXPECT_TRUE(GlobalAlloc(kGmemFixed, 0) == nullptr && GlobalAlloc(kGmemMoveableZeroInit, 0) == nullptr &&
              GlobalAlloc(kGmemMoveableZeroInit, size_t{0x80000000u}) == nullptr &&
              LettrixGlobalAlloc(0, 0) == nullptr);
  MemoryHandle moveable = GlobalAlloc(kGmemMoveableZeroInit, 64), fixed = GlobalAlloc(kGmemFixed, 64);
  ASSERT_TRUE(moveable && fixed);
  EXPECT_TRUE(GlobalLock(moveable) == moveable && GlobalUnlock(moveable) == 0);
  EXPECT_TRUE(GlobalLock(fixed) == fixed && GlobalLock(fixed) == fixed && GlobalUnlock(fixed) == 0);
  EXPECT_EQ(GlobalSize(static_cast<uint8_t*>(fixed) + 1), 0u);  // an address inside is not the handle
  EXPECT_TRUE(GlobalFree(moveable) == nullptr && GlobalFree(fixed) == nullptr);
  EXPECT_TRUE(GlobalLock(fixed) == nullptr && GlobalSize(fixed) == 0);
  uint8_t bytes[32] = {};
  EXPECT_TRUE(GlobalLock(bytes) == nullptr && GlobalUnlock(bytes) == 0);
}
}  // namespace
}  // namespace lx::platform
