// Render's drawing: decode the outline, size the work images, then the Shadow pass and the main pass.
// Every work image and temporary process lives in a scope of its pass, so each is released on every way
// out of it.
#include "render/render_pipeline.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <new>

#include "effects/bevel_filter.h"
#include "effects/blur_filter.h"
#include "effects/face_emboss.h"
#include "effects/layer_drawing.h"
#include "effects/shadow_extrusion.h"
#include "image/pixel_buffer.h"
#include "image/pixel_ops.h"
#include "effects/compositing.h"
#include "render/outline_decoder.h"
#include "render/pass_plan.h"
#include "render/render_process.h"

namespace lx {
namespace {

// Bleed distance of the Face emboss and blur radius of the 3D border between its shading passes.
constexpr int32_t kEmbossBleed = 2;
constexpr unsigned kBorderBlurRadius = 2;

// What one call reads from the caller's process before it draws.
struct CallSettings {
  WorkGeometry geometry;
  bool border = false;  // the Outline's 3D border, after the checks of this call
  int64_t translateX = 0, translateY = 0;
};

// How far the effects after the drawing carry a pixel sideways, so how far beyond the caller's buffer a
// work image must reach for every pixel that lands on the buffer to come out as over the whole image.
// A blur of radius r averages r pixels each way of colours bled 2r further (3r); the emboss bleeds 2 and
// reads 2 columns away; the 3D border blurs with radius 2 (6) before its passes and after each shading,
// which reads one neighbour (7 a pass).
constexpr int64_t kEmbossReach = 4;
constexpr int64_t kBorderBlurReach = 3 * kBorderBlurRadius;
constexpr int64_t kBorderPassReach = kBorderBlurReach + 1;
constexpr int64_t kReachSlack = 2;
// The softening of an extrusion blurs its alpha with radius 1 three times over.
constexpr int64_t kSoftenReach = 3 * 3;

int64_t BlurReach(uint8_t level) {
  return 3 * int64_t{level};
}

// A work image: the box it covers on the output (its whole layout), and the part of it that is kept.
struct WorkImage {
  explicit WorkImage(PixelBuffer& image) : pixels(image) {}
  PixelBuffer& pixels;        // the kept part, placed where it lies on the output
  IntRect area;               // the whole layout in the kept part's coordinates (empty: the same)
  int64_t left = 0, top = 0;  // the whole layout's top-left corner on the output
};

// Makes the part of a work image of width x height, placed with its top-left corner at (left, top) on
// the output, that lies within `reach` of the output: the rest cannot change a pixel of the output. A
// negative reach keeps the whole image. Nothing is made when the image would not touch the output, when
// its box does not fit the coordinates, or when the part cannot be had.
bool MakeWorkImage(WorkImage* image, int64_t width, int64_t height, int64_t left, int64_t top, int64_t reach,
                   const PixelBuffer& output) {
  if (width < 1 || height < 1 || width > INT32_MAX || height > INT32_MAX) return false;
  if (left + width > INT32_MAX || top + height > INT32_MAX) return false;  // its rectangle must fit
  if (left >= output.width() || top >= output.height() || left + width <= 0 || top + height <= 0)
    return false;
  int64_t keepLeft = left, keepTop = top, keepRight = left + width, keepBottom = top + height;
  if (reach >= 0) {
    keepLeft = std::max(keepLeft, -reach);
    keepTop = std::max(keepTop, -reach);
    keepRight = std::min(keepRight, int64_t{output.width()} + reach);
    keepBottom = std::min(keepBottom, int64_t{output.height()} + reach);
  }
  // The layout is addressed from the kept part's corner: both offsets must stay 32-bit.
  if (left - keepLeft < INT32_MIN || top - keepTop < INT32_MIN) return false;
  if (!image->pixels.reuse(static_cast<int32_t>(keepRight - keepLeft),
                           static_cast<int32_t>(keepBottom - keepTop)))
    return false;
  image->pixels.placeAt(static_cast<int32_t>(keepLeft), static_cast<int32_t>(keepTop));
  image->left = left;
  image->top = top;
  if (keepLeft != left || keepTop != top || keepRight != left + width || keepBottom != top + height) {
    const auto x = static_cast<int32_t>(left - keepLeft), y = static_cast<int32_t>(top - keepTop);
    image->area = {x, y, static_cast<int32_t>(x + width), static_cast<int32_t>(y + height)};
  }
  return true;
}

// A temporary process with the caller's path and stroke, which supplies a pass's layer drawing with its
// settings. Null when memory ran out.
std::unique_ptr<RenderProcess> MakeTemporaryProcess(const RenderProcess& caller) {
  std::unique_ptr<RenderProcess> temp(new (std::nothrow) RenderProcess());
  if (!temp) return nullptr;
  try {
    temp->path = caller.path;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
  temp->strokeWidth = caller.strokeWidth;
  temp->halfStrokeWidth = caller.halfStrokeWidth;
  return temp;
}

// Draws the layers `mode` names with the settings of `process` into `target`.
void Draw(const RenderProcess& process, const PixelView& target, int32_t mode, const LayerAreas& areas) {
  DrawLayer(target, process.path, process.glyphMatrix, process.face, process.outline, process.strokeWidth,
            mode, areas);
}

// The caller's buffer as seen from a work image's layout: where fit mode 1 spreads a gradient and where
// user gradient areas are measured from. Texture areas are left empty: the shape's own box.
LayerAreas AreasFor(const WorkImage& work, const PixelBuffer& output) {
  auto fit = [](int64_t v) {
    return static_cast<int32_t>(std::max<int64_t>(INT32_MIN, std::min<int64_t>(INT32_MAX, v)));
  };
  const int64_t left = work.left, top = work.top;
  LayerAreas areas;
  areas.layout = work.area;
  areas.callerBuffer = {fit(-left), fit(-top), fit(output.width() - left), fit(output.height() - top)};
  return areas;
}

// The blur and the bevel have no settings that outlive a call, only scratch rows: the caller's own
// objects serve every pass, so their rows are kept from one call to the next.
void Blur(RenderProcess& process, const PixelBuffer& image, uint8_t level) {
  if (level > 0 && process.blur) process.blur->blur(image.view(), level, level);
}

// Draws the Shadow's shape into `image`: both layers solid in the Shadow colour and alpha, untextured,
// unembossed, scaled by (scaleX, scaleY) and moved by (shiftX, shiftY) inside the image. False when
// memory ran out.
bool DrawShadowShape(RenderProcess& caller, const WorkGeometry& g, const WorkImage& image, double scaleX,
                     double scaleY, int64_t shiftX, int64_t shiftY) {
  std::unique_ptr<RenderProcess> temp = MakeTemporaryProcess(caller);
  if (!temp) return false;
  LayerAreas layout;
  layout.layout = image.area;
  const uint8_t alpha = static_cast<uint8_t>(caller.shadowAlpha);
  temp->face.setStartColour(caller.shadowColour, alpha);
  temp->face.setEndColour(caller.shadowColour, alpha);
  temp->outline.setStartColour(caller.shadowColour, alpha);
  temp->outline.setEndColour(caller.shadowColour, alpha);

  Affine& m = temp->glyphMatrix;
  m.sx = scaleX;
  m.sy = scaleY;
  m.tx = static_cast<double>(g.glyphOffsetX) * scaleX + static_cast<double>(shiftX);
  m.ty = static_cast<double>(g.glyphOffsetY) * scaleY + static_cast<double>(shiftY);

  PixelBuffer& work = image.pixels;
  if (!g.outline) {
    Draw(*temp, work.view(), kDrawFace, layout);
    return true;
  }
  // Face and stroke overlap by half the stroke: the Face is laid on the stroke with its alpha held at
  // the Shadow's, so the overlap is no denser than the rest.
  PixelBuffer& faceImage = caller.scratch[1];
  if (!faceImage.reuse(work.width(), work.height())) return false;
  faceImage.placeAt(work.rect().left, work.rect().top);
  Draw(*temp, faceImage.view(), kDrawFace, layout);
  Draw(*temp, work.view(), kDrawOutline, layout);
  const uint32_t bound = uint32_t{alpha} << 24;
  BlendOverClamped(faceImage.placed(), work.placed(), bound, bound);
  return true;
}

// The Shadow: the shape (the Face with the Outline's stroke) in the Shadow colour and alpha, zoomed about
// its centre, extruded or blurred, laid at the Shadow offset under everything else.
void ShadowPass(RenderProcess& caller, const CallSettings& s, PixelBuffer& output) {
  const WorkGeometry& g = s.geometry;
  const int32_t ox = caller.shadowOffsetX, oy = caller.shadowOffsetY;
  const double zx = caller.shadowZoomX, zy = caller.shadowZoomY;
  const bool extruded = caller.shadowExtruded == 1;
  const ShadowPlacement placement{s.translateX, s.translateY, ox,       oy,
                                  zx,           zy,           extruded, caller.shadowBlurLevel};
  ShadowPlan plan;
  if (!PlanShadow(g, placement, output.width(), output.height(), &plan)) return;
  const double scaleX = plan.zoomed ? zx : 1.0, scaleY = plan.zoomed ? zy : 1.0;

  // The smoothing of an extrusion without blur scales by the densest pixel of the whole image, which
  // may lie anywhere in it. It is drawn cut all the same: when the cut already holds the densest value
  // that the shape's alpha and the number of stamps allow, the whole image has it too. Only when it
  // does not is the whole image drawn.
  const bool stamped = extruded && (ox != 0 || oy != 0);
  const bool softened = stamped && caller.shadowBlurLevel == 0;
  const int64_t stampReach = stamped ? std::max(std::llabs(int64_t{ox}), std::llabs(int64_t{oy})) : 0;
  const int64_t reach =
      (softened ? kSoftenReach : BlurReach(caller.shadowBlurLevel)) + stampReach + kReachSlack;
  const uint8_t alpha = static_cast<uint8_t>(caller.shadowAlpha);
  WorkImage image(caller.scratch[0]);
  auto draw = [&](int64_t keep) {
    image.area = IntRect{};
    return MakeWorkImage(&image, plan.image.width(), plan.image.height(), plan.image.left, plan.image.top,
                         keep, output) &&
           DrawShadowShape(caller, g, image, scaleX, scaleY, plan.shiftX, plan.shiftY);
  };
  if (!draw(reach)) return;
  PixelBuffer& work = image.pixels;

  if (softened) {
    int32_t densest = -1;
    if (!image.area.empty()) {
      // A cut image: the body before stamping is at most the Shadow's alpha, after stamping at most the
      // stack of every stamp and the shape itself.
      const bool even = caller.extrudedShadowColour != 1;
      if (!even || HighestAlpha(work.view()) == alpha) {
        ExtrudeShadow(work.view(), ox, oy, caller.extrudedShadowColour, alpha);
        const uint8_t most = even ? alpha : StackedAlpha(alpha, stampReach + 1);
        if (HighestAlpha(work.view()) == most) densest = most;
      }
      if (densest < 0) {
        if (!draw(-1)) return;
        ExtrudeShadow(work.view(), ox, oy, caller.extrudedShadowColour);
      }
    } else {
      ExtrudeShadow(work.view(), ox, oy, caller.extrudedShadowColour);
    }
    SoftenExtrusion(work.view(), caller.blur.get(), densest);
    BlendOver(work.placed(), output.placed());
    return;
  }
  if (stamped) ExtrudeShadow(work.view(), ox, oy, caller.extrudedShadowColour);
  Blur(caller, work, caller.shadowBlurLevel);
  BlendOver(work.placed(), output.placed());
}

// Face, then Outline, then the Face laid back over the Outline, and the result onto the output.
void MainPass(RenderProcess& caller, const CallSettings& s, PixelBuffer& output) {
  const WorkGeometry& g = s.geometry;
  const int64_t faceReach = (caller.faceEmbossed == 1 ? kEmbossReach : 0) + BlurReach(caller.face.blurLevel);
  const int64_t outlineReach = (s.border ? kBorderBlurReach + kBorderPassReach * caller.border3DDepth : 0) +
                               BlurReach(caller.outline.blurLevel);
  WorkImage image(caller.scratch[0]);
  if (!MakeWorkImage(&image, g.workWidth, g.workHeight, s.translateX - g.glyphOffsetX,
                     s.translateY - g.glyphOffsetY, std::max(faceReach, outlineReach) + kReachSlack,
                     output)) {
    return;
  }
  PixelBuffer& work = image.pixels;
  std::unique_ptr<RenderProcess> temp = MakeTemporaryProcess(caller);
  if (!temp || !temp->copySettingsFrom(caller)) return;
  if (caller.face.textureInUse()) temp->face.takeTextureFrom(caller.face.texture.get());
  if (caller.outline.textureInUse()) temp->outline.takeTextureFrom(caller.outline.texture.get());
  temp->glyphMatrix = Affine{};
  temp->glyphMatrix.translate(static_cast<double>(g.glyphOffsetX), static_cast<double>(g.glyphOffsetY));

  const LayerAreas areas = AreasFor(image, output);

  Draw(*temp, work.view(), kDrawFace, areas);
  if (caller.faceEmbossed == 1) FaceEmboss(work.view(), kEmbossBleed, temp->emboss.get(), temp->tint.get());
  Blur(caller, work, caller.face.blurLevel);
  // An Outline that paints nothing would be replaced by the Face at the end: its drawing, border and
  // blur are skipped.
  const bool outlineShows = LayerAlphaEquals(temp->outline, 0) != 1;
  if (!g.outline || !outlineShows) {
    BlendOver(work.placed(), output.placed());
    return;
  }

  // The Face is set aside while the Outline is drawn where it was.
  PixelBuffer& face = caller.scratch[1];
  if (!face.reuse(work.width(), work.height())) return;
  face.placeAt(work.rect().left, work.rect().top);
  const size_t count = static_cast<size_t>(work.width()) * static_cast<size_t>(work.height());
  CopyPixels(reinterpret_cast<uint32_t*>(face.pixels()), reinterpret_cast<const uint32_t*>(work.pixels()),
             count);
  ClearPixels(reinterpret_cast<uint32_t*>(work.pixels()), count);

  Draw(*temp, work.view(), kDrawOutline, areas);
  if (s.border && caller.bevel) {
    // Only what the Outline's blur can still carry onto the buffer must come out of the border right.
    const int64_t grow = BlurReach(caller.outline.blurLevel) + kReachSlack;
    const IntRect& at = work.rect();
    const IntRect keep{
        static_cast<int32_t>(std::max<int64_t>(-grow - at.left, 0)),
        static_cast<int32_t>(std::max<int64_t>(-grow - at.top, 0)),
        static_cast<int32_t>(std::min<int64_t>(output.width() + grow - at.left, work.width())),
        static_cast<int32_t>(std::min<int64_t>(output.height() + grow - at.top, work.height()))};
    caller.bevel->applyBorder(work.view(), temp->border3DWidth, temp->border3DDepth, temp->border3DAngle,
                              kBorderBlurRadius, caller.blur.get(), keep);
  }
  Blur(caller, work, caller.outline.blurLevel);

  // Two flat layers: the alpha where they meet stays between theirs, so an opaque Face on an opaque
  // Outline leaves no seam.
  uint32_t faceColour = temp->face.startColour, outlineColour = temp->outline.startColour;
  const bool faceUniform = UniformLayerColour(temp->face, &faceColour, 0) == 1;
  const bool outlineUniform = UniformLayerColour(temp->outline, &outlineColour, 0) == 1;
  const bool blurred = caller.face.blurLevel > 0 || caller.outline.blurLevel > 0;
  if (faceUniform && outlineUniform && !blurred) {
    BlendOverClamped(face.placed(), work.placed(), faceColour, outlineColour);
  } else {
    BlendOver(face.placed(), work.placed());
  }
  BlendOver(work.placed(), output.placed());
}

}  // namespace

bool RenderOutlineBlock(RenderProcess& process, const void* block, size_t size, void* buffer, int32_t width,
                        int32_t height) {
  process.path.clear();
  const double thickness = process.strokeWidth;
  const IntRect glyphRect = DecodeOutlineBlock(block, size, false, &process.path);
  if (glyphRect.empty() || process.path.empty()) return false;

  CallSettings s;
  s.geometry = MeasureWork(glyphRect, thickness, process.face.blurLevel, process.outline.blurLevel,
                           process.shadowBlurLevel);
  if (process.outline3DBorder == 1) {
    const uint8_t elevation = process.border3DWidth, passes = process.border3DDepth;
    s.border =
        s.geometry.halfThickness > 0 && elevation >= 3 && elevation <= 60 && passes >= 1 && passes <= 60;
  }
  double tx = 0.0, ty = 0.0;
  process.glyphMatrix.transform(&tx, &ty);
  s.translateX = TruncatePosition(tx);
  s.translateY = TruncatePosition(ty);

  PixelBuffer output;
  output.wrap(buffer, width, height);

  if (process.shadowVisible == 1 && process.shadowAlpha != 0) {
    const bool couldShow = process.shadowBlurLevel != 0 || process.shadowOffsetX != 0 ||
                           process.shadowOffsetY != 0 || process.shadowZoomX != 1.0 ||
                           process.shadowZoomY != 1.0;
    if (couldShow || process.shadowOnly == 1) ShadowPass(process, s, output);
  }
  if (process.shadowOnly != 1) MainPass(process, s, output);
  process.trimScratch();
  return true;
}

}  // namespace lx
