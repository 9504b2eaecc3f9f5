// Blocks from the library's own global-memory calls, as a Linux caller makes them: a movable block draws
// what a fixed one draws and keeps no lock; one the library cannot read is refused, the buffer untouched.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>
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
  auto* p = static_cast<uint8_t*>(LettrixGlobalLock(h));
  EXPECT_TRUE(p != nullptr && LettrixGlobalSize(h) == size);
  if (p != nullptr) std::memcpy(p, PaddedOutlineBlock(bytes, size).data(), size);
  LettrixGlobalUnlock(h);
  return h;
}

std::vector<uint32_t> Draw(void* block, bool drawn = true) {
  Process p;
  p.thickness(2).outline(255, 200, 10, 10);
  std::vector<uint32_t> pixels(static_cast<size_t>(kWidth) * kHeight, kGround);
  EXPECT_EQ(Render(p.slot(), block, &kWidth, &kHeight, pixels.data()), drawn);
  return pixels;
}

TEST(MovableBlock, DrawsLikeAFixedBlockAndIsLeftWithTheCallersLocks) {
  const std::vector<uint8_t> bytes = TextScene("Hig", 40, 6, 46).bytes();
  void* blocks[2] = {Block(kFixed, bytes, bytes.size()), Block(kMoveable, bytes, bytes.size())};
  const std::vector<uint32_t> drawn = Draw(blocks[0]);
  EXPECT_NE(drawn, std::vector<uint32_t>(drawn.size(), kGround));
  EXPECT_EQ(Draw(blocks[1]), drawn);
  LettrixGlobalLock(blocks[1]);
  EXPECT_EQ(LettrixGlobalUnlock(blocks[1]), 0) << "Render left its lock";
  for (void* block : blocks) EXPECT_EQ(LettrixGlobalFree(block), nullptr);
}

TEST(MovableBlock, UnreadableMovableBlockIsRefusedWithTheBufferUntouched) {
  const std::vector<uint8_t> bytes = TextScene("Hig", 40, 6, 46).bytes();
  const size_t size = 1 << 20;  // large enough to have whole pages past the records
  void* block = Block(kMoveable, bytes, size);
  const auto first = reinterpret_cast<uintptr_t>(LettrixGlobalLock(block));
  LettrixGlobalUnlock(block);
  const uintptr_t page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
  auto* from = reinterpret_cast<void*>((first + bytes.size() + page - 1) & ~(page - 1));
  const size_t length = ((first + size) & ~(page - 1)) - reinterpret_cast<uintptr_t>(from);
  ASSERT_EQ(mprotect(from, length, PROT_NONE), 0);
  EXPECT_EQ(Draw(block, false), std::vector<uint32_t>(static_cast<size_t>(kWidth) * kHeight, kGround));
  ASSERT_EQ(mprotect(from, length, PROT_READ | PROT_WRITE), 0);
  // Readable again, the same block draws what its records alone draw.
  void* records = Block(kFixed, bytes, bytes.size());
  EXPECT_EQ(Draw(block), Draw(records));
  LettrixGlobalFree(records);
  LettrixGlobalFree(block);
}
}  // namespace
}  // namespace lx::test
