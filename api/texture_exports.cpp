// Face and Outline textures and their placement.
#include "api/process_handle.h"
#include "image/caller_memory.h"

using lx::FillSettings;
using lx::ProcessFromSlot;
using lx::RenderProcess;

namespace {

// The arguments are checked before the slot, and a refused call leaves the stored texture alone. The
// pixels must be writable as well as readable, although they are only read.
bool SetTexture(RenderHandle* slot, FillSettings RenderProcess::*layer, const void* pixels,
                const int32_t* width, const int32_t* height) {
  if (pixels == nullptr) return false;
  if (width == nullptr || *width < 1) return false;
  if (height == nullptr || *height < 1) return false;
  const uint64_t bytes = static_cast<uint64_t>(*width) * static_cast<uint64_t>(*height) * 4;
  if (!lx::ValidateCallerMemory(pixels, bytes, true)) return false;
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr) return false;
  return (process->*layer).setTexture(pixels, *width, *height);
}

// 0 and 1 are kept; every other value means the default tiling, 2.
int32_t TilingMode(int32_t mode) {
  return mode == 0 || mode == 1 ? mode : 2;
}

}  // namespace

LETTRIX_API bool LETTRIX_CALL SetTextureFace(RenderHandle* slot, void* pixels, const int32_t* width,
                                             const int32_t* height) {
  return SetTexture(slot, &RenderProcess::face, pixels, width, height);
}

LETTRIX_API bool LETTRIX_CALL SetTextureOutline(RenderHandle* slot, void* pixels, const int32_t* width,
                                                const int32_t* height) {
  return SetTexture(slot, &RenderProcess::outline, pixels, width, height);
}

LETTRIX_API void LETTRIX_CALL SetFaceTextureTiling(RenderHandle* slot, const int32_t* mode) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr || mode == nullptr) return;
  process->face.textureTiling = TilingMode(*mode);
}

LETTRIX_API void LETTRIX_CALL SetOutlineTextureTiling(RenderHandle* slot, const int32_t* mode) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr || mode == nullptr) return;
  process->outline.textureTiling = TilingMode(*mode);
}
