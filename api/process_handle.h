// How an exported function finds the process behind the caller's slot.
#pragma once

#include "lettrix/lettrix.h"
#include "render/render_process.h"

namespace lx {

// The process in *slot, or null when the slot holds 0 or all ones (both mean "no process"). The slot
// pointer itself must be valid: it is the caller's own variable.
inline RenderProcess* ProcessFromSlot(const RenderHandle* slot) {
  const RenderHandle value = *slot;
  if (value == 0 || value == ~RenderHandle{0}) return nullptr;
  return reinterpret_cast<RenderProcess*>(value);
}

// The colour bytes as the settings store them: c0 (red) lowest, then c1 and c2.
inline uint32_t PackColour(uint8_t c0, uint8_t c1, uint8_t c2) {
  return static_cast<uint32_t>(c0) | static_cast<uint32_t>(c1) << 8 | static_cast<uint32_t>(c2) << 16;
}

}  // namespace lx
