// Render: the argument checks that guard the caller's memory, in their fixed order, then the drawing.
#include "api/process_handle.h"
#include "image/caller_memory.h"
#include "render/render_pipeline.h"

using lx::ProcessFromSlot;
using lx::RenderProcess;

namespace {

// Keeps the caller's outline block locked while it is read: GlobalLock gives the first byte of fixed
// and movable blocks alike, and every way out of Render unlocks it again.
class LockedBlock {
 public:
  explicit LockedBlock(void* handle) : handle_(static_cast<lx::platform::HGLOBAL>(handle)) {
    bytes_ = lx::platform::GlobalLock(handle_);
  }
  ~LockedBlock() {
    if (bytes_ != nullptr) lx::platform::GlobalUnlock(handle_);
  }
  LockedBlock(const LockedBlock&) = delete;
  LockedBlock& operator=(const LockedBlock&) = delete;

  const void* bytes() const { return bytes_; }

 private:
  lx::platform::HGLOBAL handle_;
  void* bytes_ = nullptr;
};

// The process to draw with, or null when any argument is refused. Nothing is read through a pointer
// before the cheap checks have passed, and the buffer is neither read nor written here. The block's
// size and readability are those of its locked bytes.
RenderProcess* CheckedProcess(RenderHandle* slot, const LockedBlock& block, size_t blockBytes,
                              const int32_t* width, const int32_t* height, void* buffer) {
  if (blockBytes == 0 || block.bytes() == nullptr) return nullptr;
  if (!lx::ValidateCallerMemory(block.bytes(), blockBytes, false)) return nullptr;
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr) return nullptr;
  const uint64_t bufferBytes = static_cast<uint64_t>(*width) * static_cast<uint64_t>(*height) * 4;
  if (!lx::ValidateCallerMemory(buffer, bufferBytes, true)) return nullptr;
  return process;
}

}  // namespace

LETTRIX_API bool LETTRIX_CALL Render(RenderHandle* slot, void* block, const int32_t* width,
                                     const int32_t* height, void* buffer) {
  if (ProcessFromSlot(slot) == nullptr) return false;
  if (block == nullptr) return false;
  if (width == nullptr || *width <= 0) return false;
  if (height == nullptr || *height <= 0) return false;
  if (buffer == nullptr) return false;

  const size_t blockBytes = lx::platform::GlobalSize(static_cast<lx::platform::HGLOBAL>(block));
  if (blockBytes == 0) return false;
  const LockedBlock locked(block);
  RenderProcess* process = CheckedProcess(slot, locked, blockBytes, width, height, buffer);
  if (process == nullptr) return false;
  return lx::RenderOutlineBlock(*process, locked.bytes(), blockBytes, buffer, *width, *height);
}
