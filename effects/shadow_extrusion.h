// The extruded Shadow: the shadow shape stamped along the line from its offset back to the glyphs, so
// that it becomes one solid block joining the two, and the softening that follows.
#pragma once

#include <cstdint>

#include "effects/alpha_plane.h"
#include "effects/kernel_path.h"
#include "image/pixel_view.h"

namespace lx {

class BlurFilter;

// Stamps a copy of the layer over itself at every point that GDI's LineDDA reports on the line from
// (-dx, -dy) to (0, 0), the end point excluded: the copy's pixel (i, j) is laid with BlendOver onto the
// layer's pixel (i - x, j - y), so the first stamp sits at the full offset (dx, dy) and the last one step
// from the layer's own place, each over the ones before. Every stamp draws the one copy taken before
// the first, never an already stamped result. Stamps that cannot reach the layer are skipped without
// drawing or reading anything, so the time follows the stamps that can, not the length of the offset.
// The copy comes from movable global memory and is freed before returning; when it cannot be had, the
// layer is left as it is. Nothing happens for an empty view or (0, 0).
void Extrude(const PixelView& image, int32_t dx, int32_t dy);

// The extrusion as the Shadow pass applies it. With extrudedShadowColour 1 (the default setting) the
// overlapping stamps build up, as stamps composited over each other do, and a translucent block grows
// denser towards the glyphs. With any other value the block is one even body: no pixel ends more opaque
// than the most opaque pixel of the shape before stamping, so a translucent Shadow keeps its alpha all
// along the block. `densest` is the shape's highest alpha before stamping when the caller knows it (its
// image may be only a part of the shape's); -1 measures it in `image`.
void ExtrudeShadow(const PixelView& image, int32_t dx, int32_t dy, uint8_t extrudedShadowColour,
                   int32_t densest = -1);

// Smooths the outline of an extruded block, whose sides the stamps leave stepped (the pipeline calls it
// after an extrusion with a non-zero offset when the Shadow has no blur level of its own). Alpha only:
// `blur`'s channel blur with radius 1 in both directions, three times over, rounds the steps off; its
// colour bleed gives the pixels it makes visible the colour of the block beside them. Then the edge
// step: with A the highest alpha of the layer before the blur, each alpha a becomes 2a - A/2 held to
// [0, A], so the body is solid again up to its outline and the outline is a smooth ramp of about two
// pixels that stays where the unsmoothed one was. Colour bytes of visible pixels are kept. Does nothing
// for an empty view or a null blur. `densest` is A when the caller knows it (its image may be only a
// part of the block); -1 measures it in `image`. When every pixel with alpha holds one colour the blur
// runs on the alpha bytes alone, in `blur`'s byte scratch, with the kernels `path` names: pixels left
// transparent then keep their colour bytes instead of taking the bleed's (which no blend shows).
void SoftenExtrusion(const PixelView& image, BlurFilter* blur, int32_t densest = -1,
                     KernelPath path = KernelPath::kWide);

// ExtrudeShadow and then SoftenExtrusion (measuring the block's densest pixel itself), as the Shadow pass
// applies them to an extrusion without blur; when every pixel with alpha holds one colour, the block is
// an alpha plane from the first stamp to the end of the softening.
void ExtrudeAndSoften(const PixelView& image, int32_t dx, int32_t dy, uint8_t extrudedShadowColour,
                      BlurFilter* blur);

// The highest alpha in `image`, or in a plane; 0 for an empty one.
uint8_t HighestAlpha(const PixelView& image);
uint8_t HighestAlpha(const AlphaPlane& plane);

// The alpha where `layers` copies of a shape drawn with alpha `alpha` are laid with BlendOver over
// one another on a pixel they all cover whole. BlendOver never makes a pixel less opaque and grows with
// both alphas, so no pixel of an extrusion of that many layers can be denser.
uint8_t StackedAlpha(uint8_t alpha, int64_t layers);

}  // namespace lx
