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

int64_t TruncatePosition(double v) {
  if (!(v == v)) return 0;
  return static_cast<int64_t>(std::max(-1.0e15, std::min(1.0e15, v)));
}

bool PlanWorkImage(const Box& layout, int64_t reach, int32_t outputWidth, int32_t outputHeight,
                   WorkImagePlan* plan) {
  const int64_t width = layout.width(), height = layout.height();
  if (width < 1 || height < 1 || width > INT32_MAX || height > INT32_MAX) return false;
  if (layout.right > INT32_MAX || layout.bottom > INT32_MAX) return false;  // its rectangle must fit
  if (layout.left >= outputWidth || layout.top >= outputHeight || layout.right <= 0 || layout.bottom <= 0)
    return false;
  Box keep = layout;
  if (reach >= 0) {
    keep.left = std::max(keep.left, -reach);
    keep.top = std::max(keep.top, -reach);
    keep.right = std::min(keep.right, int64_t{outputWidth} + reach);
    keep.bottom = std::min(keep.bottom, int64_t{outputHeight} + reach);
  }
  // The layout is addressed from the kept part's corner: both offsets must stay 32-bit.
  if (layout.left - keep.left < INT32_MIN || layout.top - keep.top < INT32_MIN) return false;
  plan->kept = {static_cast<int32_t>(keep.left), static_cast<int32_t>(keep.top),
                static_cast<int32_t>(keep.right), static_cast<int32_t>(keep.bottom)};
  plan->layout = IntRect{};
  if (keep.left != layout.left || keep.top != layout.top || keep.right != layout.right ||
      keep.bottom != layout.bottom) {
    const auto x = static_cast<int32_t>(layout.left - keep.left);
    const auto y = static_cast<int32_t>(layout.top - keep.top);
    plan->layout = {x, y, static_cast<int32_t>(x + width), static_cast<int32_t>(y + height)};
  }
  auto fit = [](int64_t v) {
    return static_cast<int32_t>(std::max<int64_t>(INT32_MIN, std::min<int64_t>(INT32_MAX, v)));
  };
  plan->callerBuffer = {fit(-layout.left), fit(-layout.top), fit(outputWidth - layout.left),
                        fit(outputHeight - layout.top)};
  return true;
}

bool BorderDrawn(bool switchedOn, int32_t halfThickness, uint8_t elevation, uint8_t passes) {
  return switchedOn && halfThickness > 0 && elevation >= 3 && elevation <= 60 && passes >= 1 && passes <= 60;
}

MainPlan PlanMainPass(const WorkGeometry& g, const MainPassEffects& e) {
  const int64_t faceReach = (e.embossed ? kEmbossReach : 0) + BlurReach(e.faceBlurLevel);
  const int64_t outlineReach =
      (e.border ? kBorderBlurReach + kBorderPassReach * e.borderPasses : 0) + BlurReach(e.outlineBlurLevel);
  MainPlan plan;
  const int64_t left = e.translateX - g.glyphOffsetX, top = e.translateY - g.glyphOffsetY;
  plan.image = {left, top, left + g.workWidth, top + g.workHeight};
  plan.reach = std::max(faceReach, outlineReach) + kReachSlack;
  return plan;
}

bool PlanShadow(const WorkGeometry& g, const ShadowPlacement& p, int32_t outputWidth, int32_t outputHeight,
                ShadowPlan* plan) {
  int64_t width = g.workWidth, height = g.workHeight;
  if (p.zoomX != 1.0) width = TruncatePosition(static_cast<double>(g.workWidth) * p.zoomX);
  if (p.zoomY != 1.0) height = TruncatePosition(static_cast<double>(g.workHeight) * p.zoomY);
  plan->zoomed = width != g.workWidth || height != g.workHeight;
  plan->scaleX = plan->zoomed ? p.zoomX : 1.0;
  plan->scaleY = plan->zoomed ? p.zoomY : 1.0;
  // The smoothing of an extrusion without blur reads around each pixel as a blur would; the stamps
  // carry a pixel as far as the offset reaches.
  plan->stamped = p.extruded && (p.offsetX != 0 || p.offsetY != 0);
  plan->softened = plan->stamped && p.blurLevel == 0;
  plan->stampReach =
      plan->stamped ? std::max(std::llabs(int64_t{p.offsetX}), std::llabs(int64_t{p.offsetY})) : 0;
  plan->reach = (plan->softened ? kSoftenReach : BlurReach(p.blurLevel)) + plan->stampReach + kReachSlack;
  const int64_t left = p.translateX - g.glyphOffsetX + p.offsetX + ((g.workWidth - width) >> 1);
  const int64_t top = p.translateY - g.glyphOffsetY + p.offsetY + ((g.workHeight - height) >> 1);
  plan->image = {left, top, left + width, top + height};
  plan->shiftX = plan->shiftY = 0;
  if (!p.extruded) return true;
  const int64_t dx = p.offsetX, dy = p.offsetY;
  ExtrudedShadow e;
  e.shape = {left - dx, top - dy, left - dx + width, top - dy + height};
  e.image = {std::min(e.shape.left, left), std::min(e.shape.top, top), std::max(e.shape.right, left + width),
             std::max(e.shape.bottom, top + height)};
  e.dx = dx;
  e.dy = dy;
  if (!CutExtrudedShadow(&e, outputWidth, outputHeight, p.blurLevel)) return false;
  plan->image = e.image;
  plan->shiftX = e.shape.left - e.image.left;
  plan->shiftY = e.shape.top - e.image.top;
  const double pixels = static_cast<double>(e.image.width()) * static_cast<double>(e.image.height());
  plan->densestOverWhole = plan->softened && pixels <= kWholeSofteningPixels &&
                           pixels * static_cast<double>(plan->stampReach + 1) <= kWholeSofteningBudget;
  return true;
}

}  // namespace lx
