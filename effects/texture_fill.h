// The texture fill of a layer: the rasterised shape painted with the layer's texture, centred once,
// stretched over a rectangle, or repeated.
#pragma once

#include <cstdint>

#include "image/pixel_view.h"
#include "effects/agg_pipeline.h"
#include "settings/affine.h"
#include "settings/texture_image.h"

namespace lx {

// FillSettings::textureTiling.
enum TextureTiling : int32_t {
  kTextureCentred = 0,    // once, centred on the shape, on an opaque white ground; unfiltered
  kTextureStretched = 1,  // stretched over the rectangle, bilinear, edges clamped
  kTextureRepeated = 2,   // repeated at its own size from the rectangle's top-left corner; unfiltered
};

// A box in path coordinates (before the glyph transform).
struct PathBox {
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
};

// What a texture fill needs beyond the texture: all in path coordinates, which `glyphMatrix` carries to
// the surface.
struct TexturePlacement {
  int32_t tiling = kTextureRepeated;  // any value but 0 and 1 repeats
  Affine glyphMatrix;
  IntRect rect;            // where tiling 1 stretches the texture and tiling 2 starts repeating it
  PathBox pathBox;         // the box of the layer's path, control points included (tiling 0)
  double strokeWidth = 0;  // the Outline's stroke width; its truncated half moves the centred texture
};

// Paints the shape held by `rasterizer` with `texture`. Tiling 0 lays the texture centred on a white
// ground the size of the path's box plus 2 pixels, grown by r = trunc(strokeWidth) >> 1 on every side
// (strokeWidth > 0, else r = 0), so that it is cropped symmetrically when it is the larger, and
// samples that ground with clamped edges. Nothing is drawn for a texture without pixels, a ground that
// cannot be allocated, or a transform that cannot be inverted. The rasterizer's content is consumed.
void RenderTextureFill(LayerRasterizer& rasterizer, LayerRendererBase& renderer, const TextureImage& texture,
                       const TexturePlacement& placement);

}  // namespace lx
