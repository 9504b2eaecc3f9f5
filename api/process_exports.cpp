// Lifetime of a render process and the settings of its glyph transform and stroke.
#include <new>

#include "api/process_handle.h"

using lx::ProcessFromSlot;
using lx::RenderProcess;

// Returns 0 when memory ran out; the constructor itself cannot fail.
LETTRIX_API RenderHandle LETTRIX_CALL CreateRenderProcess(void) {
  return reinterpret_cast<RenderHandle>(new (std::nothrow) RenderProcess);
}

// The slot is cleared even when it held no process, so a caller can destroy twice safely.
LETTRIX_API void LETTRIX_CALL DestroyRenderProcess(RenderHandle* slot) {
  delete ProcessFromSlot(slot);
  *slot = 0;
}

LETTRIX_API void LETTRIX_CALL SetOutlineThickness(RenderHandle* slot, const int32_t* thickness) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr || thickness == nullptr) return;
  process->setOutlineThickness(*thickness);
}

LETTRIX_API void LETTRIX_CALL SetTranslation(RenderHandle* slot, const int32_t* dx, const int32_t* dy) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr || dx == nullptr || dy == nullptr) return;
  process->setTranslation(*dx, *dy);
}

LETTRIX_API void LETTRIX_CALL ResetTranslation(RenderHandle* slot) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr) return;
  process->resetTranslation();
}
