// Global memory as the library and its callers see it. These expectations hold for kernel32 itself (the
// Windows build runs them against the real calls) and for the stand-in used elsewhere.
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

#include "platform/platform.h"

namespace lx::platform {
namespace {

HGLOBAL AllOnes() {
  return reinterpret_cast<HGLOBAL>(~uintptr_t{0});
}

bool AllZero(const void* p, size_t n) {
  const auto* b = static_cast<const uint8_t*>(p);
  for (size_t i = 0; i < n; ++i) {
    if (b[i] != 0) return false;
  }
  return true;
}

TEST(GlobalMemory, FixedZeroInitBlockIsItsOwnAddress) {
  HGLOBAL h = GlobalAlloc(kGmemFixed | kGmemZeroInit, 1000);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(GlobalSize(h), 1000u);
  EXPECT_EQ(GlobalLock(h), h);
  EXPECT_TRUE(AllZero(h, 1000));
  std::memset(h, 0xAB, 1000);
  EXPECT_EQ(GlobalFree(h), nullptr);
}

TEST(GlobalMemory, MovableBlockCountsLocks) {
  HGLOBAL h = GlobalAlloc(kGmemMoveableZeroInit, 4096);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(GlobalSize(h), 4096u);
  void* p = GlobalLock(h);
  ASSERT_NE(p, nullptr);
  EXPECT_TRUE(AllZero(p, 4096));
  std::memset(p, 0x5A, 4096);
  EXPECT_EQ(GlobalLock(h), p);    // a second lock, same memory
  EXPECT_NE(GlobalUnlock(h), 0);  // still locked once
  EXPECT_EQ(GlobalUnlock(h), 0);  // now unlocked
  EXPECT_EQ(GlobalUnlock(h), 0);  // was not locked
  // The contents survive unlocking and relocking.
  void* again = GlobalLock(h);
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(static_cast<uint8_t*>(again)[4095], 0x5A);
  // A locked block may be freed.
  EXPECT_EQ(GlobalFree(h), nullptr);
}

TEST(GlobalMemory, LockCountStopsAt255) {
  HGLOBAL h = GlobalAlloc(kGmemMoveableZeroInit, 16);
  ASSERT_NE(h, nullptr);
  for (int i = 0; i < 300; ++i) ASSERT_NE(GlobalLock(h), nullptr);
  for (int i = 0; i < 254; ++i) ASSERT_NE(GlobalUnlock(h), 0) << i;
  EXPECT_EQ(GlobalUnlock(h), 0);
  EXPECT_EQ(GlobalFree(h), nullptr);
}

TEST(GlobalMemory, NoBlockHandlesAreRefused) {
  for (HGLOBAL h : {HGLOBAL{nullptr}, AllOnes()}) {
    EXPECT_TRUE(IsNoBlock(h));
    EXPECT_EQ(GlobalSize(h), 0u);
    EXPECT_EQ(GlobalLock(h), nullptr);
    EXPECT_EQ(GlobalUnlock(h), 0);
    EXPECT_EQ(GlobalFree(h), h);  // failure returns the handle
  }
}

TEST(GlobalMemory, MemoryThatIsNoBlockIsRefused) {
  static uint8_t staticBytes[64];
  uint8_t stackBytes[64] = {};
  for (void* p : {static_cast<void*>(staticBytes), static_cast<void*>(stackBytes)}) {
    EXPECT_FALSE(IsNoBlock(p));
    EXPECT_EQ(GlobalSize(p), 0u);
    EXPECT_EQ(GlobalFree(p), p);
  }
}

TEST(GlobalMemory, FreedHandleIsRefused) {
  HGLOBAL h = GlobalAlloc(kGmemFixed, 32);
  ASSERT_NE(h, nullptr);
  ASSERT_EQ(GlobalFree(h), nullptr);
  EXPECT_EQ(GlobalFree(h), h);
}

TEST(GlobalMemory, ImpossibleSizesGiveNoBlock) {
  // Beyond what any address space can give, 32-bit or 64-bit.
  EXPECT_EQ(GlobalAlloc(kGmemMoveableZeroInit, ~size_t{0} - 0xFFFF), nullptr);
  EXPECT_EQ(GlobalAlloc(kGmemFixed, ~size_t{0}), nullptr);
  // Whatever a request for no bytes gives, it has no size.
  HGLOBAL empty = GlobalAlloc(kGmemMoveableZeroInit, 0);
  EXPECT_EQ(GlobalSize(empty), 0u);
  EXPECT_EQ(GlobalFree(empty), nullptr);
}

TEST(GlobalMemory, ThreadsAllocateLockAndFreeIndependently) {
  std::atomic<int> failures{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t, &failures] {
      for (int i = 0; i < 500; ++i) {
        const size_t bytes = 1 + static_cast<size_t>((i * 37 + t * 11) % 700);
        HGLOBAL h = GlobalAlloc(kGmemMoveableZeroInit, bytes);
        auto* p = static_cast<uint8_t*>(GlobalLock(h));
        if (p == nullptr || GlobalSize(h) != bytes || !AllZero(p, bytes)) {
          ++failures;
          continue;
        }
        std::memset(p, t + 1, bytes);
        if (p[bytes - 1] != t + 1 || GlobalUnlock(h) != 0 || GlobalFree(h) != nullptr) ++failures;
      }
    });
  }
  for (auto& th : threads) th.join();
  EXPECT_EQ(failures.load(), 0);
}

}  // namespace
}  // namespace lx::platform
