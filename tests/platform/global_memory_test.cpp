// Global memory as the library and its callers see it. These expectations hold for kernel32 itself (the
// Windows build runs them against the real calls) and for the stand-in used elsewhere.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "platform/platform.h"

namespace lx::platform {
namespace {

TEST(GlobalMemory, FixedZeroInitBlockIsItsOwnAddressAndFreesOnce) {
  MemoryHandle h = GlobalAlloc(kGmemFixed | kGmemZeroInit, 1000);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(GlobalSize(h), 1000u);
  EXPECT_EQ(GlobalLock(h), h);
  EXPECT_EQ(std::vector<uint8_t>(static_cast<uint8_t*>(h), static_cast<uint8_t*>(h) + 1000),
            std::vector<uint8_t>(1000, 0));
  EXPECT_EQ(GlobalFree(h), nullptr);
  MemoryHandle freed = GlobalAlloc(kGmemFixed, 32);
  ASSERT_EQ(GlobalFree(freed), nullptr);
  EXPECT_EQ(GlobalFree(freed), freed);
}

TEST(GlobalMemory, MovableBlockCountsLocksUpTo255) {
  MemoryHandle h = GlobalAlloc(kGmemMoveableZeroInit, 4096);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(GlobalSize(h), 4096u);
  auto* p = static_cast<uint8_t*>(GlobalLock(h));
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(std::vector<uint8_t>(p, p + 4096), std::vector<uint8_t>(4096, 0));
  p[4095] = 0x5A;
  EXPECT_EQ(GlobalLock(h), p);
  EXPECT_EQ((std::vector<int>{GlobalUnlock(h) != 0, GlobalUnlock(h), GlobalUnlock(h)}),
            (std::vector<int>{1, 0, 0}));
  EXPECT_EQ(static_cast<uint8_t*>(GlobalLock(h))[4095], 0x5A);
  for (int i = 0; i < 300; ++i) ASSERT_NE(GlobalLock(h), nullptr);
  for (int i = 0; i < 254; ++i) ASSERT_NE(GlobalUnlock(h), 0) << i;
  EXPECT_EQ(GlobalUnlock(h), 0);
  EXPECT_EQ(GlobalFree(h), nullptr);
}

TEST(GlobalMemory, WhatIsNoBlockIsRefused) {
  static uint8_t staticBytes[64];
  uint8_t stackBytes[64] = {};
  for (MemoryHandle h : {MemoryHandle{nullptr}, reinterpret_cast<MemoryHandle>(~uintptr_t{0})}) {
    EXPECT_TRUE(IsNoBlock(h));
    EXPECT_EQ(GlobalSize(h), 0u);
    EXPECT_EQ(GlobalLock(h), nullptr);
    EXPECT_EQ(GlobalUnlock(h), 0);
    EXPECT_EQ(GlobalFree(h), h);
  }
  for (void* p : {static_cast<void*>(staticBytes), static_cast<void*>(stackBytes)}) {
    EXPECT_FALSE(IsNoBlock(p));
    EXPECT_EQ(GlobalSize(p), 0u);
    EXPECT_EQ(GlobalFree(p), p);
  }
  EXPECT_EQ(GlobalAlloc(kGmemMoveableZeroInit, ~size_t{0} - 0xFFFF), nullptr);
  EXPECT_EQ(GlobalAlloc(kGmemFixed, ~size_t{0}), nullptr);
  MemoryHandle empty = GlobalAlloc(kGmemMoveableZeroInit, 0);
  EXPECT_EQ(GlobalSize(empty), 0u);
  EXPECT_EQ(GlobalFree(empty), nullptr);
}

}  // namespace
}  // namespace lx::platform
