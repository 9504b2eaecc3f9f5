// Outline blocks as Windows callers allocate them: lettrix.dll, loaded by name, draws a block given as a
// movable handle exactly as the same bytes given as a fixed one, leaves the handle unlocked, and refuses
// a movable block it cannot read or that has no bytes, without touching the buffer.
#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <vector>

#include "lettrix/lettrix.h"
#include "tests/support/scene.h"

namespace {

constexpr int32_t kWidth = 160, kHeight = 64;
constexpr uint32_t kGround = 0x11223344u;

// The export `name`, typed like the header's declaration `fn`.
template <typename Fn>
Fn* Export(HMODULE dll, Fn*, const char* name) {
  return reinterpret_cast<Fn*>(reinterpret_cast<void*>(GetProcAddress(dll, name)));
}

class MovableBlock : public ::testing::Test {
 protected:
  void SetUp() override {
    dll_ = LoadLibraryA("lettrix.dll");
    ASSERT_NE(dll_, nullptr) << "error " << GetLastError();
    create_ = Export(dll_, &CreateRenderProcess, "CreateRenderProcess");
    destroy_ = Export(dll_, &DestroyRenderProcess, "DestroyRenderProcess");
    render_ = Export(dll_, &Render, "Render");
    auto thickness = Export(dll_, &SetOutlineThickness, "SetOutlineThickness");
    auto outline = Export(dll_, &SetColorOutlineStart, "SetColorOutlineStart");
    ASSERT_TRUE(create_ && destroy_ && render_ && thickness && outline);
    slot_ = create_();
    ASSERT_NE(slot_, 0u);
    const int32_t two = 2;
    const uint8_t a = 255, r = 200, g = 10, b = 10;
    thickness(&slot_, &two);
    outline(&slot_, &a, &r, &g, &b);
  }
  void TearDown() override {
    if (destroy_ != nullptr) destroy_(&slot_);
    if (dll_ != nullptr) FreeLibrary(dll_);
  }

  // A global block of `size` bytes (flags as GlobalAlloc takes them) starting with `bytes`.
  static HGLOBAL Block(UINT flags, const std::vector<uint8_t>& bytes, size_t size) {
    HGLOBAL h = GlobalAlloc(flags | GMEM_ZEROINIT, size);
    void* p = h ? GlobalLock(h) : nullptr;
    if (p == nullptr) return nullptr;
    const std::vector<uint8_t> padded = lx::test::PaddedOutlineBlock(bytes, size);
    std::memcpy(p, padded.data(), padded.size());
    GlobalUnlock(h);
    return h;
  }

  bool draw(HGLOBAL block, std::vector<uint32_t>* pixels) {
    pixels->assign(static_cast<size_t>(kWidth) * kHeight, kGround);
    return render_(&slot_, block, &kWidth, &kHeight, pixels->data());
  }

  HMODULE dll_ = nullptr;
  RenderHandle slot_ = 0;
  decltype(&CreateRenderProcess) create_ = nullptr;
  decltype(&DestroyRenderProcess) destroy_ = nullptr;
  decltype(&Render) render_ = nullptr;
  const lx::test::TextScene scene_{"Hig", 40, 6, 46};
};

TEST_F(MovableBlock, DrawsTheSamePixelsAsAFixedBlockAndIsLeftUnlocked) {
  const std::vector<uint8_t>& bytes = scene_.bytes();
  ASSERT_FALSE(bytes.empty());
  HGLOBAL fixed = Block(GMEM_FIXED, bytes, bytes.size());
  HGLOBAL movable = Block(GMEM_MOVEABLE, bytes, bytes.size());
  ASSERT_TRUE(fixed && movable);
  // A movable handle is not the block's address, which is what made it unusable before.
  ASSERT_NE(static_cast<void*>(movable), GlobalLock(movable));
  GlobalUnlock(movable);

  std::vector<uint32_t> fromFixed, fromMovable;
  ASSERT_TRUE(draw(fixed, &fromFixed));
  ASSERT_TRUE(draw(movable, &fromMovable));
  size_t drawn = 0;
  for (uint32_t p : fromFixed) drawn += p != kGround;
  EXPECT_GT(drawn, 500u);
  EXPECT_EQ(fromFixed, fromMovable);
  EXPECT_EQ(GlobalFlags(movable) & GMEM_LOCKCOUNT, 0u) << "Render left the block locked";

  // A block the caller holds locked stays locked once, as it was.
  ASSERT_NE(GlobalLock(movable), nullptr);
  ASSERT_TRUE(draw(movable, &fromMovable));
  EXPECT_EQ(GlobalFlags(movable) & GMEM_LOCKCOUNT, 1u);
  GlobalUnlock(movable);
  EXPECT_EQ(fromFixed, fromMovable);

  // The wrapper class draws it alike, too.
  std::vector<uint32_t> canvases[2];
  for (int i = 0; i < 2; ++i) {
    CLettrix lettrix;
    ASSERT_EQ(lettrix.CreateProcessA(), 1);
    ASSERT_EQ(lettrix.CreateCanvas(kWidth, kHeight), 1);
    ASSERT_EQ(lettrix.RenderIt(i ? movable : fixed), 1);
    canvases[i].assign(lettrix.canvasPixels, lettrix.canvasPixels + kWidth * kHeight);
  }
  EXPECT_EQ(canvases[0], canvases[1]);
  EXPECT_EQ(GlobalFlags(movable) & GMEM_LOCKCOUNT, 0u);
  GlobalFree(fixed);
  GlobalFree(movable);
}

TEST_F(MovableBlock, UnreadableOrEmptyMovableBlocksAreRefusedWithTheBufferUntouched) {
  const std::vector<uint8_t>& bytes = scene_.bytes();
  ASSERT_FALSE(bytes.empty());
  std::vector<uint32_t> pixels;
  const std::vector<uint32_t> untouched(static_cast<size_t>(kWidth) * kHeight, kGround);

  // Large enough to have pages of its own past the outline records; those pages lose all access.
  const size_t size = 1 << 20;
  HGLOBAL unreadable = Block(GMEM_MOVEABLE, bytes, size);
  ASSERT_NE(unreadable, nullptr);
  auto* first = static_cast<uint8_t*>(GlobalLock(unreadable));
  ASSERT_NE(first, nullptr);
  const uintptr_t page = 4096;
  auto* from = reinterpret_cast<uint8_t*>((reinterpret_cast<uintptr_t>(first) + bytes.size() + page - 1) &
                                          ~(page - 1));
  auto* to = reinterpret_cast<uint8_t*>(reinterpret_cast<uintptr_t>(first + size) & ~(page - 1));
  ASSERT_LT(from, to);
  DWORD before = 0;
  ASSERT_TRUE(VirtualProtect(from, static_cast<SIZE_T>(to - from), PAGE_NOACCESS, &before));
  GlobalUnlock(unreadable);
  EXPECT_FALSE(draw(unreadable, &pixels));
  EXPECT_EQ(pixels, untouched);
  EXPECT_EQ(GlobalFlags(unreadable) & GMEM_LOCKCOUNT, 0u);
  DWORD ignored = 0;
  ASSERT_TRUE(VirtualProtect(from, static_cast<SIZE_T>(to - from), before, &ignored));
  // Readable again, the same block draws what its records alone draw.
  HGLOBAL records = Block(GMEM_FIXED, bytes, bytes.size());
  std::vector<uint32_t> expected;
  ASSERT_TRUE(draw(records, &expected));
  EXPECT_TRUE(draw(unreadable, &pixels));
  EXPECT_EQ(pixels, expected);
  GlobalFree(records);
  GlobalFree(unreadable);

  // A movable block of no bytes (GlobalAlloc gives a handle to nothing).
  // A movable block of no bytes (GlobalAlloc gives a handle to nothing), and a freed one.
  HGLOBAL empty = GlobalAlloc(GMEM_MOVEABLE, 0), freed = Block(GMEM_MOVEABLE, bytes, bytes.size());
  ASSERT_TRUE(empty && freed && GlobalSize(empty) == 0);
  GlobalFree(freed);
  for (HGLOBAL h : {empty, freed}) {
    EXPECT_FALSE(draw(h, &pixels));
    EXPECT_EQ(pixels, untouched);
  }
  GlobalFree(empty);
}

}  // namespace
