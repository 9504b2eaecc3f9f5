// The colour and gradient fill of a layer: where its gradient lies, the ramp of its colours, and the
// span generation that paints a rasterised shape with it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixel_view.h"
#include "effects/agg_pipeline.h"
#include "settings/fill_settings.h"

namespace lx {

// FillSettings::gradientType. Kind 1 runs from the top of the gradient area to its bottom; kind 2 from
// the area's centre outwards, the ramp starting at gradientFrom and ending at gradientTo (fractions of
// the area's half width and half height, an ellipse for a non-square area, each quantised down to a
// sixteenth); kind 3 along the direction gradientAngle (radians, 0 pointing right and pi / 2 down, as
// the buffer's rows run), through the area's centre, spanning the area's extent in that direction.
// Any other kind paints the layer's start colour.
enum GradientKind : int32_t {
  kGradientSolid = 0,
  kGradientTopToBottom = 1,
  kGradientRadial = 2,
  kGradientAngled = 3,
};

// The number of colours of the lookup that the gradient spans read: long enough that neighbouring
// entries never differ by more than one 8-bit step, however far apart the colours are.
constexpr size_t kGradientLookupSize = 4096;

// A packed colour setting (red in the low byte, alpha on top) as the drawing pipeline's colour.
LayerColour ColourFromPacked(uint32_t packed);

// The area that a layer's gradient spans, in surface coordinates. A user gradient area that is not
// empty wins; it is in the caller's buffer coordinates and is moved by callerBuffer's top-left corner.
// Otherwise fit mode 1 takes callerBuffer (the caller's whole buffer, when it is not empty), and fit
// mode 0 or any other value the box of the layer's drawn shape (for the Outline, the stroke's box).
IntRect GradientArea(const FillSettings& layer, const IntRect& shapeBox, const IntRect& callerBuffer);

// Writes `count` pixel values (blue in the low byte) spaced evenly from the start of the layer's ramp to
// its end. Without a colour-stop table in force (or with an empty one) the ramp runs from the start
// colour to the end colour. With a table, each colour owns a share of the ramp proportional to its
// weight, the ramp runs linearly from the centre of one share to the centre of the next, and the first
// and last centres are moved out to the two ends; one colour gives a solid ramp. Weights follow the
// table setter's rule: all zero (or missing) count as 1 each, a zero among others drops its colour.
void BuildGradientRamp(const FillSettings& layer, uint32_t* ramp, size_t count);

// Paints the shape held by `rasterizer` with the layer's gradient over `area`, or with its start colour
// for kind 0 and unknown kinds. The rasterizer's content is consumed.
void RenderColourFill(LayerRasterizer& rasterizer, LayerRendererBase& renderer, const FillSettings& layer,
                      const IntRect& area);

}  // namespace lx
