// Render: the argument checks that guard the caller's memory, in their fixed order, then the drawing.
#include "api/process_handle.h"
#include "image/caller_memory.h"
#include "render/render_pipeline.h"

using lx::ProcessFromSlot;
using lx::RenderProcess;

namespace {

// The process to draw with, or null when any argument is refused. Nothing is read through a pointer
// before the cheap checks have passed, and the buffer is neither read nor written here.
RenderProcess* CheckedProcess(RenderHandle* slot, void* block, const int32_t* width, const int32_t* height,
                              void* buffer, size_t* blockSize) {
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
  *blockSize = blockBytes;
  return process;
}

}  // namespace

LETTRIX_API bool LETTRIX_CALL Render(RenderHandle* slot, void* block, const int32_t* width,
                                     const int32_t* height, void* buffer) {
  size_t blockSize = 0;
  RenderProcess* process = CheckedProcess(slot, block, width, height, buffer, &blockSize);
  if (process == nullptr) return false;
  return lx::RenderOutlineBlock(*process, block, blockSize, buffer, *width, *height);
}
