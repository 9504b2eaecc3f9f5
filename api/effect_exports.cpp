// Blur levels, the Face emboss and the Outline 3D border.
#include "api/process_handle.h"

using lx::ProcessFromSlot;
using lx::RenderProcess;

LETTRIX_API void LETTRIX_CALL SetFaceBlurLevel(RenderHandle* slot, const uint8_t* level) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr || level == nullptr) return;
  process->face.blurLevel = *level;
}

LETTRIX_API void LETTRIX_CALL SetOutlineBlurLevel(RenderHandle* slot, const uint8_t* level) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr || level == nullptr) return;
  process->outline.blurLevel = *level;
}

LETTRIX_API void LETTRIX_CALL SetShadowBlurLevel(RenderHandle* slot, const uint8_t* level) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr || level == nullptr) return;
  process->shadowBlurLevel = *level;
}

// The last two tint bytes reach the setter exchanged: (angle, a, c, b). Callers depend on this order,
// which makes a scale red, c green and b blue.
LETTRIX_API void LETTRIX_CALL SetFaceTextureEmbossed(RenderHandle* slot, const double* angle,
                                                     const uint8_t* a, const uint8_t* b, const uint8_t* c) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr || angle == nullptr || a == nullptr || b == nullptr || c == nullptr) return;
  process->setEmbossParameters(*angle, *a, *c, *b);
}

LETTRIX_API void LETTRIX_CALL EnableFaceEmbossed(RenderHandle* slot, const uint8_t* on) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr) return;
  process->enableFaceEmbossed(on);
}

LETTRIX_API void LETTRIX_CALL EnableOutline3DBorder(RenderHandle* slot, const uint8_t* on) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr) return;
  process->enableOutline3DBorder(on);
}

LETTRIX_API void LETTRIX_CALL SetOutline3DBorder(RenderHandle* slot, const uint8_t* width,
                                                 const uint8_t* depth, const double* angle) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr || width == nullptr || depth == nullptr || angle == nullptr) return;
  process->setOutline3DBorder(*width, *depth, *angle);
}
