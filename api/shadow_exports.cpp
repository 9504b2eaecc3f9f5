// The Shadow layer: colour, offset, zoom, visibility and extrusion.
#include "api/process_handle.h"

using lx::PackColour;
using lx::ProcessFromSlot;
using lx::RenderProcess;

LETTRIX_API void LETTRIX_CALL SetShadowColor(RenderHandle* slot, const uint8_t* alpha, const uint8_t* c0,
                                             const uint8_t* c1, const uint8_t* c2) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr || alpha == nullptr || c0 == nullptr || c1 == nullptr || c2 == nullptr) return;
  process->setShadowColour(PackColour(*c0, *c1, *c2), *alpha);
}

LETTRIX_API void LETTRIX_CALL SetShadowOffset(RenderHandle* slot, const int32_t* x, const int32_t* y) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr || x == nullptr || y == nullptr) return;
  process->setShadowOffset(*x, *y);
}

// Both factors are tested before either is stored, so they change together or not at all (a NaN fails
// the test like zero and negative values do).
LETTRIX_API void LETTRIX_CALL SetShadowZoom(RenderHandle* slot, const double* x, const double* y) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr || x == nullptr || y == nullptr) return;
  if (*x > 0.0 && *y > 0.0) process->setShadowZoom(*x, *y);
}

LETTRIX_API void LETTRIX_CALL SetShadowVisible(RenderHandle* slot, const uint8_t* on) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr || on == nullptr) return;
  process->setShadowVisible(*on);
}

LETTRIX_API void LETTRIX_CALL SetDrawShadowOnly(RenderHandle* slot, const uint8_t* on) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr || on == nullptr) return;
  process->setShadowOnly(*on);
}

LETTRIX_API void LETTRIX_CALL SetShadowExtruded(RenderHandle* slot, const uint8_t* on) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr) return;
  process->setShadowExtruded(on);
}

LETTRIX_API void LETTRIX_CALL SetExtrudedShadowColor(RenderHandle* slot, const uint8_t* value) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr) return;
  process->setExtrudedShadowColour(value);
}
