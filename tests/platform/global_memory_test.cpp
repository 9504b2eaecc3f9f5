// Global memory as the library and its callers see it. These expectations hold for kernel32 itself (the
// Windows build runs them against the real calls) and for the stand-in used elsewhere.
#include <gtest/gtest.h>
#include <vector>
#include "platform/platform.h"

namespace lx::platform {
namespace {
TEST(GlobalMemory, BlocksStartZeroedAndFreeOnceAndMovableOnesCountLocksUpTo255) {
  MemoryHandle fixed = GlobalAlloc(kGmemFixed | kGmemZeroInit, 1000),
               h = GlobalAlloc(kGmemMoveableZeroInit, 4096);
  ASSERT_TRUE(fixed && h);
  EXPECT_EQ(GlobalLock(fixed), fixed);  // a fixed block is its own address
  auto* p = static_cast<uint8_t*>(GlobalLock(h));
  ASSERT_NE(p, nullptr);
  EXPECT_EQ((std::vector<size_t>{GlobalSize(fixed), GlobalSize(h)}), (std::vector<size_t>{1000, 4096}));
  EXPECT_EQ(std::vector<uint8_t>(static_cast<uint8_t*>(fixed), static_cast<uint8_t*>(fixed) + 1000),
            std::vector<uint8_t>(1000, 0));
  EXPECT_EQ(std::vector<uint8_t>(p, p + 4096), std::vector<uint8_t>(4096, 0));
  p[4095] = 0x5A;
  EXPECT_EQ(GlobalLock(h), p);
  EXPECT_EQ((std::vector<int>{GlobalUnlock(h) != 0, GlobalUnlock(h), GlobalUnlock(h)}),
            (std::vector<int>{1, 0, 0}));
  EXPECT_EQ(static_cast<uint8_t*>(GlobalLock(h))[4095], 0x5A);
  for (int i = 0; i < 300; ++i) ASSERT_NE(GlobalLock(h), nullptr);
  for (int i = 0; i < 254; ++i) ASSERT_NE(GlobalUnlock(h), 0) << i;
  EXPECT_EQ(GlobalUnlock(h), 0);
  EXPECT_EQ((std::vector<MemoryHandle>{GlobalFree(h), GlobalFree(fixed), GlobalFree(fixed)}),
            (std::vector<MemoryHandle>{nullptr, nullptr, fixed}));
}

TEST(GlobalMemory, WhatIsNoBlockIsRefused) {
  static uint8_t staticBytes[64];
  uint8_t stackBytes[64] = {};
  for (MemoryHandle h : {MemoryHandle{nullptr}, reinterpret_cast<MemoryHandle>(~uintptr_t{0})}) {
    EXPECT_TRUE(IsNoBlock(h));
    EXPECT_TRUE(GlobalSize(h) == 0 && GlobalLock(h) == nullptr && GlobalUnlock(h) == 0 && GlobalFree(h) == h);
  }
  for (void* p : {static_cast<void*>(staticBytes), static_cast<void*>(stackBytes)})
    EXPECT_TRUE(!IsNoBlock(p) && GlobalSize(p) == 0 && GlobalFree(p) == p);
  EXPECT_EQ(GlobalAlloc(kGmemMoveableZeroInit, ~size_t{0} - 0xFFFF), nullptr);
  EXPECT_EQ(GlobalAlloc(kGmemFixed, ~size_t{0}), nullptr);
  MemoryHandle empty = GlobalAlloc(kGmemMoveableZeroInit, 0);
  EXPECT_EQ(GlobalSize(empty), 0u);
  EXPECT_EQ(GlobalFree(empty), nullptr);
}
}  // namespace
}  // namespace lx::platform
