// Colours, gradients, colour-stop tables, gradient areas and fill types of the Face and Outline.
#include "api/process_handle.h"

using lx::FillSettings;
using lx::PackColour;
using lx::ProcessFromSlot;
using lx::RenderProcess;

namespace {

enum class Layer { kFace, kOutline };

// The layer's fill settings, or null when the slot holds no process.
FillSettings* LayerOf(RenderHandle* slot, Layer layer) {
  RenderProcess* process = ProcessFromSlot(slot);
  if (process == nullptr) return nullptr;
  return layer == Layer::kFace ? &process->face : &process->outline;
}

bool AllPresent(const uint8_t* alpha, const uint8_t* c0, const uint8_t* c1, const uint8_t* c2) {
  return alpha != nullptr && c0 != nullptr && c1 != nullptr && c2 != nullptr;
}

void SetStart(RenderHandle* slot, Layer layer, const uint8_t* alpha, const uint8_t* c0, const uint8_t* c1,
              const uint8_t* c2) {
  FillSettings* fill = LayerOf(slot, layer);
  if (fill == nullptr || !AllPresent(alpha, c0, c1, c2)) return;
  fill->setStartColour(PackColour(*c0, *c1, *c2), *alpha);
}

void SetEnd(RenderHandle* slot, Layer layer, const uint8_t* alpha, const uint8_t* c0, const uint8_t* c1,
            const uint8_t* c2) {
  FillSettings* fill = LayerOf(slot, layer);
  if (fill == nullptr || !AllPresent(alpha, c0, c1, c2)) return;
  fill->setEndColour(PackColour(*c0, *c1, *c2), *alpha);
}

// Only the parameters the type uses are read, so p1 and p2 may be dangling when it does not use them.
void SetGradient(RenderHandle* slot, Layer layer, const int32_t* type, const double* p1, const double* p2) {
  FillSettings* fill = LayerOf(slot, layer);
  if (fill == nullptr || type == nullptr) return;
  const int32_t t = *type;
  if ((t == 2 || t == 3) && p1 == nullptr) return;
  if (t == 2 && p2 == nullptr) return;
  fill->setGradient(t, p1, p2);
}

bool SetColourStops(RenderHandle* slot, Layer layer, const uint32_t* colours, const uint32_t* stops,
                    const uint8_t* count) {
  FillSettings* fill = LayerOf(slot, layer);
  if (fill == nullptr) return false;
  return fill->setGradientColours(colours, stops, count);
}

void SetFitMode(RenderHandle* slot, Layer layer, const uint8_t* mode) {
  FillSettings* fill = LayerOf(slot, layer);
  if (fill == nullptr || mode == nullptr) return;
  fill->gradientFitMode = *mode;
}

bool SetUserArea(RenderHandle* slot, Layer layer, const int32_t* left, const int32_t* top,
                 const int32_t* right, const int32_t* bottom) {
  FillSettings* fill = LayerOf(slot, layer);
  if (fill == nullptr || left == nullptr || top == nullptr || right == nullptr || bottom == nullptr) {
    return false;
  }
  return fill->setUserGradientArea(*left, *top, *right, *bottom);
}

// Any non-zero type selects the texture fill.
void SetFillType(RenderHandle* slot, Layer layer, const int32_t* type) {
  FillSettings* fill = LayerOf(slot, layer);
  if (fill == nullptr || type == nullptr) return;
  fill->fillType = *type != 0 ? 1 : 0;
}

}  // namespace

LETTRIX_API void LETTRIX_CALL SetColorFaceStart(RenderHandle* slot, const uint8_t* alpha, const uint8_t* c0,
                                                const uint8_t* c1, const uint8_t* c2) {
  SetStart(slot, Layer::kFace, alpha, c0, c1, c2);
}

LETTRIX_API void LETTRIX_CALL SetColorFaceEnd(RenderHandle* slot, const uint8_t* alpha, const uint8_t* c0,
                                              const uint8_t* c1, const uint8_t* c2) {
  SetEnd(slot, Layer::kFace, alpha, c0, c1, c2);
}

LETTRIX_API void LETTRIX_CALL SetColorOutlineStart(RenderHandle* slot, const uint8_t* alpha,
                                                   const uint8_t* c0, const uint8_t* c1, const uint8_t* c2) {
  SetStart(slot, Layer::kOutline, alpha, c0, c1, c2);
}

LETTRIX_API void LETTRIX_CALL SetColorOutlineEnd(RenderHandle* slot, const uint8_t* alpha, const uint8_t* c0,
                                                 const uint8_t* c1, const uint8_t* c2) {
  SetEnd(slot, Layer::kOutline, alpha, c0, c1, c2);
}

LETTRIX_API void LETTRIX_CALL SetGradientFace(RenderHandle* slot, const int32_t* type, const double* p1,
                                              const double* p2) {
  SetGradient(slot, Layer::kFace, type, p1, p2);
}

LETTRIX_API void LETTRIX_CALL SetGradientOutline(RenderHandle* slot, const int32_t* type, const double* p1,
                                                 const double* p2) {
  SetGradient(slot, Layer::kOutline, type, p1, p2);
}

LETTRIX_API bool LETTRIX_CALL SetFaceGradientColors(RenderHandle* slot, const uint32_t* colours,
                                                    const uint32_t* stops, const uint8_t* count) {
  return SetColourStops(slot, Layer::kFace, colours, stops, count);
}

LETTRIX_API bool LETTRIX_CALL SetOutlineGradientColors(RenderHandle* slot, const uint32_t* colours,
                                                       const uint32_t* stops, const uint8_t* count) {
  return SetColourStops(slot, Layer::kOutline, colours, stops, count);
}

LETTRIX_API void LETTRIX_CALL SetFaceGradientFitMode(RenderHandle* slot, const uint8_t* mode) {
  SetFitMode(slot, Layer::kFace, mode);
}

LETTRIX_API void LETTRIX_CALL SetOutlineGradientFitMode(RenderHandle* slot, const uint8_t* mode) {
  SetFitMode(slot, Layer::kOutline, mode);
}

LETTRIX_API bool LETTRIX_CALL SetFaceUserGradientArea(RenderHandle* slot, const int32_t* left,
                                                      const int32_t* top, const int32_t* right,
                                                      const int32_t* bottom) {
  return SetUserArea(slot, Layer::kFace, left, top, right, bottom);
}

LETTRIX_API bool LETTRIX_CALL SetOutlineUserGradientArea(RenderHandle* slot, const int32_t* left,
                                                         const int32_t* top, const int32_t* right,
                                                         const int32_t* bottom) {
  return SetUserArea(slot, Layer::kOutline, left, top, right, bottom);
}

LETTRIX_API void LETTRIX_CALL SetFaceFillType(RenderHandle* slot, const int32_t* type) {
  SetFillType(slot, Layer::kFace, type);
}

LETTRIX_API void LETTRIX_CALL SetOutlineFillType(RenderHandle* slot, const int32_t* type) {
  SetFillType(slot, Layer::kOutline, type);
}
