// Outline blocks as Windows callers allocate them: lettrix.dll, loaded by name, draws a block given as a
// movable handle exactly as the same bytes given as a fixed one, leaves the handle's lock count as it
// found it, and refuses a movable block of no bytes or freed without touching the buffer.
#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <vector>

#include "lettrix/lettrix.h"
#include "tests/support/scene.h"

namespace {

constexpr int32_t kWidth = 160, kHeight = 64;
constexpr uint32_t kGround = 0x11223344u;

// A global block of `size` bytes (flags as GlobalAlloc takes them) starting with `bytes`.
HGLOBAL Block(UINT flags, const std::vector<uint8_t>& bytes, size_t size) {
  HGLOBAL h = GlobalAlloc(flags | GMEM_ZEROINIT, size);
  void* p = h ? GlobalLock(h) : nullptr;
  if (p != nullptr) std::memcpy(p, lx::test::PaddedOutlineBlock(bytes, size).data(), size);
  GlobalUnlock(h);
  return h;
}

// The DLL's Render with a process of its own on its default settings; the buffer as drawn.
std::vector<uint32_t> Draw(HGLOBAL block, bool drawn = true) {
  HMODULE dll = LoadLibraryA("lettrix.dll");
  EXPECT_NE(dll, nullptr) << "error " << GetLastError();
  const auto create = reinterpret_cast<decltype(&CreateRenderProcess)>(
      reinterpret_cast<void*>(GetProcAddress(dll, "CreateRenderProcess")));
  const auto destroy = reinterpret_cast<decltype(&DestroyRenderProcess)>(
      reinterpret_cast<void*>(GetProcAddress(dll, "DestroyRenderProcess")));
  const auto render =
      reinterpret_cast<decltype(&Render)>(reinterpret_cast<void*>(GetProcAddress(dll, "Render")));
  std::vector<uint32_t> pixels(static_cast<size_t>(kWidth) * kHeight, kGround);
  RenderHandle slot = create();
  EXPECT_EQ(render(&slot, block, &kWidth, &kHeight, pixels.data()), drawn);
  destroy(&slot);
  FreeLibrary(dll);
  return pixels;
}

TEST(MovableBlock, DrawsLikeAFixedBlockAndLeavesTheLockCountAsItWas) {
  const lx::test::TextScene scene("Hig", 40, 6, 46);
  const std::vector<uint8_t>& bytes = scene.bytes();
  HGLOBAL fixed = Block(GMEM_FIXED, bytes, bytes.size()), movable = Block(GMEM_MOVEABLE, bytes, bytes.size());
  ASSERT_TRUE(fixed && movable);
  // A movable handle is not the block's address, which is what made it unusable before.
  ASSERT_NE(static_cast<void*>(movable), GlobalLock(movable));
  GlobalUnlock(movable);
  const std::vector<uint32_t> drawn = Draw(fixed);
  EXPECT_NE(drawn, std::vector<uint32_t>(drawn.size(), kGround));
  for (UINT callerLocks : {0u, 1u}) {
    if (callerLocks) GlobalLock(movable);
    EXPECT_EQ(Draw(movable), drawn);
    EXPECT_EQ(GlobalFlags(movable) & GMEM_LOCKCOUNT, callerLocks);
  }
  GlobalUnlock(movable);
  GlobalFree(fixed);
  GlobalFree(movable);
}

// A movable block of no bytes (GlobalAlloc gives a handle to nothing), and a freed one. (Blocks the DLL
// cannot read are refused by the same page checks the platform tests run against kernel32.)
TEST(MovableBlock, EmptyOrFreedMovableBlocksAreRefusedWithTheBufferUntouched) {
  const lx::test::TextScene scene("Hig", 40, 6, 46);
  HGLOBAL empty = GlobalAlloc(GMEM_MOVEABLE, 0),
          freed = Block(GMEM_MOVEABLE, scene.bytes(), scene.bytes().size());
  ASSERT_TRUE(empty && freed && GlobalSize(empty) == 0);
  GlobalFree(freed);
  for (HGLOBAL h : {empty, freed})
    EXPECT_EQ(Draw(h, false), std::vector<uint32_t>(static_cast<size_t>(kWidth) * kHeight, kGround));
  GlobalFree(empty);
}

}  // namespace
