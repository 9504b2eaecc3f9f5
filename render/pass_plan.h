// The arithmetic that plans a layer pass before anything is drawn: how large the work images are, where
// the outline sits in them, and how far an extruded Shadow may reach. Pure functions of their arguments.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "image/pixel_view.h"

namespace lx {

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

// An extrusion lays the whole Shadow image over itself once per step of the offset, so its cost is the
// reachable steps times the image's pixels. A hostile offset makes both huge. Past the budget the image
// is cut down to the part that can still reach the buffer (with room for the blur), keeping the shape,
// which every step copies; if even that costs more than the limit, the Shadow counts as too large to
// draw. Offsets of everyday size never come near the budget, and the cut changes no pixel of the buffer
// (except, for a translucent block that builds up, how dense its smoothed edge is).
constexpr double kExtrusionBudget = 4294967296.0;  // 2^32 pixel blends
constexpr double kExtrusionLimit = 17179869184.0;  // 2^34

// The smoothing of an unblurred extrusion scales by the densest pixel of the whole Shadow image. When
// the part kept for the buffer cannot show that it holds the densest value the stamps allow, the whole
// image is drawn to find it, but only within these bounds; past them the kept part stands in for the
// whole, so that a huge, hostile outline costs no more than the buffer it is drawn into.
constexpr double kWholeSofteningPixels = 4194304.0;   // 2^22 pixels
constexpr double kWholeSofteningBudget = 67108864.0;  // 2^26 pixel blends

struct Box {
  int64_t left, top, right, bottom;
  int64_t width() const { return right - left; }
  int64_t height() const { return bottom - top; }
  bool empty() const { return right <= left || bottom <= top; }
};

// An extruded Shadow in the output's coordinates: its image, the shape inside it, and its extrusion.
struct ExtrudedShadow {
  Box image;
  Box shape;
  int64_t dx, dy;

  // Each step moves the stamp one pixel along the offset's longer axis: only the steps that bring the
  // shape over the image cost anything.
  double cost() const {
    const bool alongX = std::llabs(dx) >= std::llabs(dy);
    const int64_t steps = std::max(std::llabs(dx), std::llabs(dy));
    const int64_t span = alongX ? image.width() + shape.width() : image.height() + shape.height();
    return static_cast<double>(std::min(steps, span)) * static_cast<double>(image.width()) *
           static_cast<double>(image.height());
  }
};

// Cuts a costly extruded Shadow down to what can reach an output of outputWidth x outputHeight pixels
// (with room for a blur of blurLevel); false when it stays too costly to draw.
bool CutExtrudedShadow(ExtrudedShadow* e, int32_t outputWidth, int32_t outputHeight, uint8_t blurLevel);

// How far the effects after the drawing carry a pixel sideways, so how far beyond the caller's buffer a
// work image must reach for every pixel that lands on the buffer to come out as over the whole image.
// A blur of radius r averages r pixels each way of colours bled 2r further (3r); the emboss bleeds 2 and
// reads 2 columns away; the 3D border blurs with radius 2 (6) before its passes and after each shading,
// which reads one neighbour (7 a pass).
constexpr int32_t kEmbossBleed = 2;
constexpr unsigned kBorderBlurRadius = 2;
constexpr int64_t kEmbossReach = kEmbossBleed + 2;
constexpr int64_t kBorderBlurReach = 3 * kBorderBlurRadius;
constexpr int64_t kBorderPassReach = kBorderBlurReach + 1;
constexpr int64_t kReachSlack = 2;
// The softening of an extrusion blurs its alpha with radius 1 three times over.
constexpr int64_t kSoftenReach = 3 * 3;

inline int64_t BlurReach(uint8_t level) {
  return 3 * int64_t{level};
}

// Where a work image is made: the part of its whole layout (a box on the output) that lies within
// `reach` of an output of outputWidth x outputHeight pixels, since the rest cannot change a pixel of the
// output. A negative reach keeps the whole layout.
struct WorkImagePlan {
  IntRect kept;          // the part that is made, on the output
  IntRect layout;        // the whole layout in the kept part's coordinates; empty when it is the kept part
  IntRect callerBuffer;  // the output in the whole layout's coordinates, held within 32 bits
};

// False when nothing is to be made: the layout is empty, does not touch the output, or does not fit
// 32-bit coordinates as a rectangle or as seen from the kept part.
bool PlanWorkImage(const Box& layout, int64_t reach, int32_t outputWidth, int32_t outputHeight,
                   WorkImagePlan* plan);

// Whether the Outline's 3D border is drawn: switched on, a stroke that reaches past the contour, and
// an elevation and pass count the shading can make.
bool BorderDrawn(bool switchedOn, int32_t halfThickness, uint8_t elevation, uint8_t passes);

// What sizes the main pass: the call's translation and the effects that follow the Face and Outline
// drawing.
struct MainPassEffects {
  int64_t translateX = 0, translateY = 0;
  bool embossed = false;     // the Face emboss
  bool border = false;       // the Outline's 3D border, as BorderDrawn decides it
  uint8_t borderPasses = 0;  // its shading passes
  uint8_t faceBlurLevel = 0, outlineBlurLevel = 0;
};

// The main pass's work image on the output: the outline at its place under the translation, and how
// far beyond the output the image must be kept for the Face's and the Outline's effects.
struct MainPlan {
  Box image{0, 0, 0, 0};
  int64_t reach = 0;
};

MainPlan PlanMainPass(const WorkGeometry& g, const MainPassEffects& e);

// A double truncated toward zero to a whole number, held far inside the 64-bit range (a position that
// large lies off any buffer anyway); NaN gives 0.
int64_t TruncatePosition(double v);

// What places the Shadow: the call's translation, the Shadow offset and zoom factors, the extrusion
// switch and the Shadow blur level.
struct ShadowPlacement {
  int64_t translateX = 0, translateY = 0;
  int32_t offsetX = 0, offsetY = 0;
  double zoomX = 1.0, zoomY = 1.0;
  bool extruded = false;
  uint8_t blurLevel = 0;
};

// Where the Shadow's work image lies in the output and where its shape lies inside that image.
struct ShadowPlan {
  Box image{0, 0, 0, 0};
  int64_t shiftX = 0, shiftY = 0;     // the shape's corner inside the image
  bool zoomed = false;                // the zoom changed the work image's size
  double scaleX = 1.0, scaleY = 1.0;  // the shape's scale: the zoom, when it changed the size
  bool stamped = false;               // extruded by a non-zero offset: stamps are laid
  bool softened = false;              // stamped without blur: the extrusion's edge is softened instead
  int64_t stampReach = 0;             // how many pixels the stamps reach along the longer axis
  int64_t reach = 0;                  // how far beyond the output the image is kept (see PlanWorkImage)
  bool densestOverWhole = false;      // softened, and the whole image is cheap enough to draw for its
                                      // densest pixel when the kept part cannot show it
};

// The Shadow is the work image zoomed about its centre (each side truncated) and moved by the offset.
// An extruded Shadow reaches from the glyphs' own place to the offset: its shape sits at the glyphs'
// place and the image grows to take in the copy at the offset, cut as CutExtrudedShadow cuts it. False
// when that extrusion stays too costly to draw.
bool PlanShadow(const WorkGeometry& g, const ShadowPlacement& p, int32_t outputWidth, int32_t outputHeight,
                ShadowPlan* plan);

}  // namespace lx
