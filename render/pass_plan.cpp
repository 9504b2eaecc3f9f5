#include "render/pass_plan.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace lx {

int32_t WorkBlurReach(bool outline, int32_t faceReach, int32_t outlineReach, int32_t shadowReach,
                      int32_t wholeThickness) {
  const int32_t f = faceReach, o = outlineReach, s = shadowReach, t = wholeThickness;
  if (!outline) return std::max(f, s);
  if (f == 0) return std::max(o, s);
  // A blurred Face spreads inside the stroke first; only what passes the stroke width needs room.
  if (o == 0) return f <= t ? s : f - t;  // the Shadow's reach is then deliberately not considered
  const int32_t m = std::max(o, s);
  return m + t < f ? f - t : m;
}

WorkGeometry MeasureWork(const IntRect& glyphRect, double strokeWidth, uint8_t faceBlurLevel,
                         uint8_t outlineBlurLevel, uint8_t shadowBlurLevel) {
  WorkGeometry g;
  g.outline = strokeWidth > 0.0;  // NaN draws no Outline either
  if (g.outline) {
    // The setter keeps the width within 1000; the cap only keeps the conversions defined.
    const double w = std::min(strokeWidth, 1.0e6);
    g.wholeThickness = static_cast<int32_t>(w);
    g.halfThickness = static_cast<int32_t>(std::ceil(w) * 0.5);
  }
  g.reach = WorkBlurReach(g.outline, 2 * faceBlurLevel, 2 * outlineBlurLevel, 2 * shadowBlurLevel,
                          g.wholeThickness);
  g.margin = g.wholeThickness + g.reach + 4;
  g.workWidth = std::llabs(int64_t{glyphRect.right} - glyphRect.left) + g.margin;
  g.workHeight = std::llabs(int64_t{glyphRect.bottom} - glyphRect.top) + g.margin;
  const int32_t border = (g.reach + 4) >> 1;
  g.glyphOffsetX = int64_t{g.halfThickness} - glyphRect.left + border;
  g.glyphOffsetY = int64_t{g.halfThickness} - glyphRect.top + border;
  return g;
}

bool CutExtrudedShadow(ExtrudedShadow* e, int32_t outputWidth, int32_t outputHeight, uint8_t blurLevel) {
  if (e->cost() <= kExtrusionBudget) return true;
  // The blur (or the softening) reads up to three radii around a pixel: its colour bleed reaches two.
  const int64_t margin = 3 * int64_t{std::min<uint8_t>(blurLevel, 254)} + 16;
  Box keep{std::max(e->image.left, -margin), std::max(e->image.top, -margin),
           std::min(e->image.right, int64_t{outputWidth} + margin),
           std::min(e->image.bottom, int64_t{outputHeight} + margin)};
  if (keep.empty()) keep = e->shape;
  e->image = {std::min(keep.left, e->shape.left), std::min(keep.top, e->shape.top),
              std::max(keep.right, e->shape.right), std::max(keep.bottom, e->shape.bottom)};
  return e->cost() <= kExtrusionLimit;
}

}  // namespace lx
