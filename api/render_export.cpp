// Render: the argument checks that guard the caller's memory, in their fixed order.
#include "api/process_handle.h"
#include "image/caller_memory.h"

using lx::ProcessFromSlot;
using lx::RenderProcess;

namespace {

// The process to draw with, or null when any argument is refused. Nothing is read through a pointer
// before the cheap checks have passed, and the buffer is neither read nor written here.
RenderProcess* CheckedProcess(RenderHandle* slot, void* block, const int32_t* width, const int32_t* height,
                              void* buffer) {
  if (ProcessFromSlot(slot) == nullptr) return nullptr;
  if (block == nullptr) return nullptr;
  if (width == nullptr || *width <= 0) return nullptr;
  if (height == nullptr || *height <= 0) return nullptr;
  if (buffer == nullptr) return nullptr;

  // The block's handle is its address, as GlobalAlloc gives it for fixed blocks.
  const size_t blockBytes = lx::platform::GlobalSize(static_cast<lx::platform::HGLOBAL>(block));
  if (blockBytes == 0) return nullptr;
  if (!lx::ValidateCallerMemory(block, blockBytes, false)) return nullptr;
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr) return nullptr;
  const uint64_t bufferBytes = static_cast<uint64_t>(*width) * static_cast<uint64_t>(*height) * 4;
  if (!lx::ValidateCallerMemory(buffer, bufferBytes, true)) return nullptr;
  return process;
}

}  // namespace

LETTRIX_API bool LETTRIX_CALL Render(RenderHandle* slot, void* block, const int32_t* width,
                                     const int32_t* height, void* buffer) {
  if (CheckedProcess(slot, block, width, height, buffer) == nullptr) return false;
  // The drawing passes are not connected yet: a call with good arguments draws nothing and says so.
  return false;
}
