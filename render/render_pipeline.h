// The drawing half of Render: from a checked outline block to the finished buffer, Shadow first, then
// the Outline with the Face laid over it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixel_view.h"

namespace lx {

class RenderProcess;

// How large the work images of one call are and where the outline sits in them. Each layer pass draws
// into an image of workWidth x workHeight pixels with the outline moved by the glyph offset, so that
// the stroke and the blur have room on every side.
struct WorkGeometry {
  bool outline = false;        // the Outline is drawn (stroke width above 0)
  int32_t wholeThickness = 0;  // the stroke width truncated to whole pixels
  int32_t halfThickness = 0;   // how far the stroke reaches past the contour, in whole pixels
  int32_t reach = 0;           // the blur reach the margin allows for
  int32_t margin = 0;          // added to the outline's width and height
  int64_t workWidth = 0;
  int64_t workHeight = 0;
  int64_t glyphOffsetX = 0;  // where the outline's coordinates sit in a work image
  int64_t glyphOffsetY = 0;
};

// The blur reach that the work images leave room for. faceReach, outlineReach and shadowReach are
// twice the layers' blur levels; wholeThickness is the stroke width in whole pixels. Without an
// Outline the larger of the Face and Shadow reaches; with one, the Face's reach counts only as far as it
// passes the stroke width (and then alone when the Outline is not blurred).
int32_t WorkBlurReach(bool outline, int32_t faceReach, int32_t outlineReach, int32_t shadowReach,
                      int32_t wholeThickness);

// The work-image geometry for an outline whose whole-pixel rectangle is glyphRect, stroked strokeWidth
// wide (no Outline when it is not above 0), with the three layers' blur levels.
WorkGeometry MeasureWork(const IntRect& glyphRect, double strokeWidth, uint8_t faceBlurLevel,
                         uint8_t outlineBlurLevel, uint8_t shadowBlurLevel);

// Decodes `block` (size bytes, already checked readable) into the process's path and draws its Shadow,
// Outline and Face onto `buffer` (width x height pixels, already checked readable and writable).
// Returns false, leaving the buffer untouched, when the outline has no area or no vertex. A pass whose
// work image cannot be had (too large, or out of memory) draws nothing and the call goes on.
bool RenderOutlineBlock(RenderProcess& process, const void* block, size_t size, void* buffer, int32_t width,
                        int32_t height);

}  // namespace lx
