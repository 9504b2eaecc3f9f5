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

// The DLL's Render with a process of its own on its default settings; the buffer as drawn.
std::vector<uint32_t> Draw(HGLOBAL block, bool drawn = true) {
  HMODULE dll = LoadLibraryA("lettrix.dll");
  EXPECT_NE(dll, nullptr) << "error " << GetLastError();
  const auto symbol = [dll](const char* name) { return reinterpret_cast<void*>(GetProcAddress(dll, name)); };
  const auto create = reinterpret_cast<decltype(&CreateRenderProcess)>(symbol("CreateRenderProcess"));
  const auto destroy = reinterpret_cast<decltype(&DestroyRenderProcess)>(symbol("DestroyRenderProcess"));
  const auto render = reinterpret_cast<decltype(&Render)>(symbol("Render"));
  std::vector<uint32_t> pixels(static_cast<size_t>(kWidth) * kHeight, kGround);
  RenderHandle slot = create();
  EXPECT_EQ(render(&slot, block, &kWidth, &kHeight, pixels.data()), drawn);
  destroy(&slot);
  FreeLibrary(dll);
  return pixels;
}

TEST(MovableBlock, DrawsLikeAFixedBlockKeepsTheLockCountAndRefusesEmptyOrFreedBlocks) {
  const lx::test::TextScene scene("Hig", 40, 6, 46);
  HGLOBAL blocks[3] = {};  // fixed, movable, movable and freed
  for (int i = 0; i < 3; ++i) {
    blocks[i] = GlobalAlloc((i ? GMEM_MOVEABLE : GMEM_FIXED) | GMEM_ZEROINIT, scene.bytes().size());
    ASSERT_NE(blocks[i], nullptr);
    std::memcpy(GlobalLock(blocks[i]), scene.bytes().data(), scene.bytes().size());
    GlobalUnlock(blocks[i]);
  }
  // A movable handle is not the block's address, which is what made it unusable before.
  ASSERT_NE(static_cast<void*>(blocks[1]), GlobalLock(blocks[1]));
  GlobalUnlock(blocks[1]);
  const std::vector<uint32_t> drawn = Draw(blocks[0]), untouched(drawn.size(), kGround);
  EXPECT_NE(drawn, untouched);
  for (UINT callerLocks : {0u, 1u}) {
    if (callerLocks) GlobalLock(blocks[1]);
    EXPECT_EQ(Draw(blocks[1]), drawn);
    EXPECT_EQ(GlobalFlags(blocks[1]) & GMEM_LOCKCOUNT, callerLocks);
  }
  GlobalUnlock(blocks[1]);
  GlobalFree(blocks[2]);
  HGLOBAL empty = GlobalAlloc(GMEM_MOVEABLE, 0);  // a handle to nothing
  ASSERT_TRUE(empty && GlobalSize(empty) == 0);
  for (HGLOBAL h : {empty, blocks[2]}) EXPECT_EQ(Draw(h, false), untouched);
  for (HGLOBAL h : {empty, blocks[0], blocks[1]}) GlobalFree(h);
}
}  // namespace
