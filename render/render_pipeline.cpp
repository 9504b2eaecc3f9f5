// Render's drawing: decode the outline, size the work images, then the Shadow pass and the main pass.
// Every work image and temporary process lives in a scope of its pass, so each is released on every way
// out of it.
#include "render/render_pipeline.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include "effects/bevel_filter.h"
#include "effects/blur_filter.h"
#include "effects/compositing.h"
#include "effects/face_emboss.h"
#include "effects/layer_drawing.h"
#include "effects/shadow_extrusion.h"
#include "image/pixel_buffer.h"
#include "render/outline_decoder.h"
#include "render/pass_plan.h"
#include "render/render_process.h"

namespace lx {
namespace {

// What one call reads from the caller's process before it draws.
struct CallSettings {
  WorkGeometry geometry;
  bool border = false;  // the Outline's 3D border, after the checks of this call
  int64_t translateX = 0, translateY = 0;
};

// A work image: the part of its whole layout that is kept, and where that layout lies.
struct WorkImage {
  explicit WorkImage(PixelBuffer& image) : pixels(image) {}
  PixelBuffer& pixels;  // the kept part, placed where it lies on the output
  WorkImagePlan plan;
};

// Makes the work image whose whole layout is `layout` on the output, kept within `reach` of it (see
// PlanWorkImage). False when nothing is to be made or the kept part cannot be had.
bool MakeWorkImage(WorkImage* image, const Box& layout, int64_t reach, const PixelBuffer& output) {
  WorkImagePlan& plan = image->plan;
  if (!PlanWorkImage(layout, reach, output.width(), output.height(), &plan)) return false;
  if (!image->pixels.reuse(plan.kept.right - plan.kept.left, plan.kept.bottom - plan.kept.top)) return false;
  image->pixels.placeAt(plan.kept.left, plan.kept.top);
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

// Draws the layers `mode` names with the settings of `process` into `target`, with the layer drawing
// memory that `caller` keeps between calls.
void Draw(const RenderProcess& process, const RenderProcess& caller, const PixelView& target, int32_t mode,
          const LayerAreas& areas) {
  DrawLayer(target, process.path, process.glyphMatrix, process.face, process.outline, process.strokeWidth,
            mode, areas, caller.layers.get());
}

// The caller's buffer as seen from a work image's layout: where fit mode 1 spreads a gradient and where
// user gradient areas are measured from. Texture areas are left empty: the shape's own box.
LayerAreas AreasFor(const WorkImage& work) {
  LayerAreas areas;
  areas.layout = work.plan.layout;
  areas.callerBuffer = work.plan.callerBuffer;
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
  layout.layout = image.plan.layout;
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
    Draw(*temp, caller, work.view(), kDrawFace, layout);
    return true;
  }
  // Face and stroke overlap by half the stroke: the Face is laid on the stroke with its alpha held at
  // the Shadow's, so the overlap is no denser than the rest.
  PixelBuffer& faceImage = caller.scratch[1];
  if (!faceImage.reuse(work.width(), work.height())) return false;
  faceImage.placeAt(work.rect().left, work.rect().top);
  Draw(*temp, caller, faceImage.view(), kDrawFace, layout);
  Draw(*temp, caller, work.view(), kDrawOutline, layout);
  const uint32_t bound = uint32_t{alpha} << 24;
  BlendOverClamped(faceImage.placed(), work.placed(), bound, bound);
  return true;
}

// The Shadow: the shape (the Face with the Outline's stroke) in the Shadow colour and alpha, zoomed about
// its centre, extruded or blurred, laid at the Shadow offset under everything else.
void ShadowPass(RenderProcess& caller, const CallSettings& s, PixelBuffer& output) {
  const WorkGeometry& g = s.geometry;
  const int32_t ox = caller.shadowOffsetX, oy = caller.shadowOffsetY;
  const ShadowPlacement placement{s.translateX,
                                  s.translateY,
                                  ox,
                                  oy,
                                  caller.shadowZoomX,
                                  caller.shadowZoomY,
                                  caller.shadowExtruded == 1,
                                  caller.shadowBlurLevel};
  ShadowPlan plan;
  if (!PlanShadow(g, placement, output.width(), output.height(), &plan)) return;

  // The smoothing of an extrusion without blur scales by the densest pixel of the whole image, which
  // may lie anywhere in it. It is drawn cut all the same: when the cut already holds the densest value
  // that the shape's alpha and the number of stamps allow, the whole image has it too. Only when it
  // does not is the whole image drawn, and only while that stays cheap; otherwise the cut stands in.
  const uint8_t alpha = static_cast<uint8_t>(caller.shadowAlpha);
  WorkImage image(caller.scratch[0]);
  auto draw = [&](int64_t keep) {
    return MakeWorkImage(&image, plan.image, keep, output) &&
           DrawShadowShape(caller, g, image, plan.scaleX, plan.scaleY, plan.shiftX, plan.shiftY);
  };
  if (!draw(plan.reach)) return;
  PixelBuffer& work = image.pixels;

  if (plan.softened) {
    if (!image.plan.layout.empty() && plan.densestOverWhole) {
      int32_t densest = -1;
      // A cut image: the body before stamping is at most the Shadow's alpha, after stamping at most the
      // stack of every stamp and the shape itself.
      const bool even = caller.extrudedShadowColour != 1;
      if (!even || HighestAlpha(work.view()) == alpha) {
        ExtrudeShadow(work.view(), ox, oy, caller.extrudedShadowColour, alpha);
        const uint8_t most = even ? alpha : StackedAlpha(alpha, plan.stampReach + 1);
        if (HighestAlpha(work.view()) == most) densest = most;
      }
      if (densest < 0) {
        if (!draw(-1)) return;
        ExtrudeShadow(work.view(), ox, oy, caller.extrudedShadowColour);
      }
      SoftenExtrusion(work.view(), caller.blur.get(), densest);
    } else {
      ExtrudeAndSoften(work.view(), ox, oy, caller.extrudedShadowColour, caller.blur.get());
    }
    BlendOver(work.placed(), output.placed());
    return;
  }
  if (plan.stamped) ExtrudeShadow(work.view(), ox, oy, caller.extrudedShadowColour);
  Blur(caller, work, caller.shadowBlurLevel);
  BlendOver(work.placed(), output.placed());
}

// The main pass's work image and how far it is kept: the outline at its place, with room for the
// effects that the caller's settings switch on.
MainPlan PlanMain(const RenderProcess& caller, const CallSettings& s) {
  MainPassEffects effects;
  effects.translateX = s.translateX;
  effects.translateY = s.translateY;
  effects.embossed = caller.faceEmbossed == 1;
  effects.border = s.border;
  effects.borderPasses = caller.border3DDepth;
  effects.faceBlurLevel = caller.face.blurLevel;
  effects.outlineBlurLevel = caller.outline.blurLevel;
  return PlanMainPass(s.geometry, effects);
}

// A temporary process with every setting and texture of the caller's, the outline moved to its place
// in the work image. Null when memory ran out.
std::unique_ptr<RenderProcess> MainPassProcess(const RenderProcess& caller, const WorkGeometry& g) {
  std::unique_ptr<RenderProcess> temp = MakeTemporaryProcess(caller);
  if (!temp || !temp->copySettingsFrom(caller)) return nullptr;
  if (caller.face.textureInUse()) temp->face.takeTextureFrom(caller.face.texture.get());
  if (caller.outline.textureInUse()) temp->outline.takeTextureFrom(caller.outline.texture.get());
  temp->glyphMatrix = Affine{};
  temp->glyphMatrix.translate(static_cast<double>(g.glyphOffsetX), static_cast<double>(g.glyphOffsetY));
  return temp;
}

// Lays the Face (in `face`) back over the Outline (in `outline`), and the result onto the output. Two
// flat layers: the alpha where they meet stays between theirs, so an opaque Face on an opaque Outline
// leaves no seam. (An Outline that paints nothing never gets here: the Face alone is the result.)
void LayFaceOverOutline(const RenderProcess& settings, const PixelBuffer& face, const PixelBuffer& outline,
                        const PixelBuffer& output) {
  uint32_t faceColour = settings.face.startColour, outlineColour = settings.outline.startColour;
  const bool faceUniform = UniformLayerColour(settings.face, &faceColour, 0) == 1;
  const bool outlineUniform = UniformLayerColour(settings.outline, &outlineColour, 0) == 1;
  const bool blurred = settings.face.blurLevel > 0 || settings.outline.blurLevel > 0;
  if (faceUniform && outlineUniform && !blurred) {
    BlendOverClampedThrough(face.placed(), outline.placed(), output.placed(), faceColour, outlineColour);
  } else {
    BlendOverThrough(face.placed(), outline.placed(), output.placed());
  }
}

// Face, then Outline, then the Face laid back over the Outline, and the result onto the output.
void MainPass(RenderProcess& caller, const CallSettings& s, PixelBuffer& output) {
  const WorkGeometry& g = s.geometry;
  const MainPlan plan = PlanMain(caller, s);
  WorkImage image(caller.scratch[0]);
  if (!MakeWorkImage(&image, plan.image, plan.reach, output)) return;
  std::unique_ptr<RenderProcess> temp = MainPassProcess(caller, g);
  if (!temp) return;
  const LayerAreas areas = AreasFor(image);
  PixelBuffer& work = image.pixels;

  Draw(*temp, caller, work.view(), kDrawFace, areas);
  if (caller.faceEmbossed == 1) {
    FaceEmbossScratch spare;  // only when the caller's could not be made
    FaceEmboss(work.view(), kEmbossBleed, temp->emboss.get(), temp->tint.get(),
               caller.embossScratch ? *caller.embossScratch : spare);
  }
  Blur(caller, work, caller.face.blurLevel);
  // An Outline that paints nothing would be replaced by the Face at the end: its drawing, border and
  // blur are skipped.
  const bool outlineShows = LayerAlphaEquals(temp->outline, 0) != 1;
  if (!g.outline || !outlineShows) {
    BlendOver(work.placed(), output.placed());
    return;
  }

  // The Outline is drawn on an image of its own, lying where the Face's does.
  PixelBuffer& outline = caller.scratch[1];
  if (!outline.reuse(work.width(), work.height())) return;
  outline.placeAt(work.rect().left, work.rect().top);
  Draw(*temp, caller, outline.view(), kDrawOutline, areas);
  if (s.border && caller.bevel) {
    // Only what the Outline's blur can still carry onto the buffer must come out of the border right.
    const int64_t grow = BlurReach(caller.outline.blurLevel) + kReachSlack;
    const IntRect& at = outline.rect();
    const IntRect keep{
        static_cast<int32_t>(std::max<int64_t>(-grow - at.left, 0)),
        static_cast<int32_t>(std::max<int64_t>(-grow - at.top, 0)),
        static_cast<int32_t>(std::min<int64_t>(output.width() + grow - at.left, outline.width())),
        static_cast<int32_t>(std::min<int64_t>(output.height() + grow - at.top, outline.height()))};
    caller.bevel->applyBorder(outline.view(), temp->border3DWidth, temp->border3DDepth, temp->border3DAngle,
                              kBorderBlurRadius, caller.blur.get(), keep);
  }
  Blur(caller, outline, caller.outline.blurLevel);
  LayFaceOverOutline(*temp, work, outline, output);
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
  s.border = BorderDrawn(process.outline3DBorder == 1, s.geometry.halfThickness, process.border3DWidth,
                         process.border3DDepth);
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
