// Outline blocks from the library's own global-memory calls, as a Linux caller allocates them: a
// movable block draws exactly what a fixed one draws and is left unlocked; a movable block the library
// cannot read is refused with the buffer untouched.
#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "lettrix/lettrix.h"
#include "tests/support/lettrix_process.h"
#include "tests/support/scene.h"

namespace lx::test {
namespace {

constexpr unsigned kFixed = 0x0, kMoveable = 0x2, kZeroInit = 0x40;
constexpr int32_t kWidth = 160, kHeight = 64;
constexpr uint32_t kGround = 0x11223344u;

void* Block(unsigned flags, const std::vector<uint8_t>& bytes, size_t size) {
  void* h = LettrixGlobalAlloc(flags | kZeroInit, size);
  if (h == nullptr) return nullptr;
  void* p = LettrixGlobalLock(h);
  if (p == nullptr) {
    LettrixGlobalFree(h);
    return nullptr;
  }
  const std::vector<uint8_t> padded = lx::test::PaddedOutlineBlock(bytes, size);
  std::memcpy(p, padded.data(), padded.size());
  LettrixGlobalUnlock(h);
  return h;
}

bool Draw(Process& p, void* block, std::vector<uint32_t>* pixels) {
  pixels->assign(static_cast<size_t>(kWidth) * kHeight, kGround);
  return Render(p.slot(), block, &kWidth, &kHeight, pixels->data());
}

TEST(MovableBlock, DrawsLikeAFixedBlockThroughFunctionsAndClassAndIsLeftUnlocked) {
  const TextScene scene("Hig", 40, 6, 46);
  Process p;
  p.thickness(2).outline(255, 200, 10, 10);
  void* blocks[2] = {Block(kFixed, scene.bytes(), scene.bytes().size()),
                     Block(kMoveable, scene.bytes(), scene.bytes().size())};
  ASSERT_NE(blocks[0], nullptr);
  ASSERT_NE(blocks[1], nullptr);
  std::vector<uint32_t> drawn[2], canvases[2];
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(Draw(p, blocks[i], &drawn[i]));
    CLettrix lettrix;
    ASSERT_EQ(lettrix.CreateProcessA(), 1);
    ASSERT_EQ(lettrix.CreateCanvas(kWidth, kHeight), 1);
    ASSERT_EQ(lettrix.RenderIt(blocks[i]), 1);
    canvases[i].assign(lettrix.canvasPixels, lettrix.canvasPixels + kWidth * kHeight);
  }
  EXPECT_EQ(drawn[0], drawn[1]);
  EXPECT_EQ(canvases[0], canvases[1]);
  EXPECT_GT(drawn[0].size() - std::count(drawn[0].begin(), drawn[0].end(), kGround), 500u);
  // One lock of the caller's own: Render's lock and unlock leave exactly that one.
  ASSERT_NE(LettrixGlobalLock(blocks[1]), nullptr);
  ASSERT_TRUE(Draw(p, blocks[1], &drawn[1]));
  EXPECT_EQ(LettrixGlobalUnlock(blocks[1]), 0) << "a lock count other than the caller's one was left";
  for (void* block : blocks) LettrixGlobalFree(block);
}

TEST(MovableBlock, UnreadableMovableBlockIsRefusedWithTheBufferUntouched) {
  const TextScene scene("Hig", 40, 6, 46);
  Process p;
  const size_t size = 1 << 20;  // large enough to have whole pages past the records
  void* block = Block(kMoveable, scene.bytes(), size);
  ASSERT_NE(block, nullptr);
  auto* first = static_cast<uint8_t*>(LettrixGlobalLock(block));
  LettrixGlobalUnlock(block);
  const uintptr_t page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
  const uintptr_t from = (reinterpret_cast<uintptr_t>(first) + scene.bytes().size() + page - 1) & ~(page - 1);
  const uintptr_t to = reinterpret_cast<uintptr_t>(first + size) & ~(page - 1);
  ASSERT_LT(from, to);
  ASSERT_EQ(mprotect(reinterpret_cast<void*>(from), to - from, PROT_NONE), 0);
  std::vector<uint32_t> pixels;
  EXPECT_FALSE(Draw(p, block, &pixels));
  EXPECT_EQ(pixels, std::vector<uint32_t>(static_cast<size_t>(kWidth) * kHeight, kGround));
  ASSERT_EQ(mprotect(reinterpret_cast<void*>(from), to - from, PROT_READ | PROT_WRITE), 0);
  // Readable again, the same block draws what its records alone draw.
  void* records = Block(kFixed, scene.bytes(), scene.bytes().size());
  std::vector<uint32_t> expected;
  ASSERT_TRUE(Draw(p, records, &expected));
  EXPECT_TRUE(Draw(p, block, &pixels));
  EXPECT_EQ(pixels, expected);
  LettrixGlobalFree(records);
  LettrixGlobalFree(block);
}

}  // namespace
}  // namespace lx::test
