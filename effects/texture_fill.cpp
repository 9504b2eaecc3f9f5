#include "effects/texture_fill.h"

#include <algorithm>
#include <cmath>

// AGG's clamping accessor compares a signed position with an unsigned length.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wsign-compare"
#include <agg_image_accessors.h>
#pragma GCC diagnostic pop
#include <agg_span_image_filter_rgba.h>

#include "image/pixel_buffer.h"
#include "render/agg_companions.h"
#include "render/compositing.h"

namespace lx {

namespace {

// Image coordinates are held within 4M pixels (in 1/256 units), where the accessors' integer
// arithmetic cannot overflow.
constexpr double kCoordLimit = double(1 << 30);
// A centring ground larger than this in either direction is not attempted.
constexpr double kMaxGroundSide = double(1 << 20);

typedef agg::image_accessor_clone<LayerPixfmt> ClampedImage;
typedef agg::image_accessor_wrap<LayerPixfmt, agg::wrap_mode_repeat, agg::wrap_mode_repeat> RepeatedImage;

// Paints the rasterised shape with `image`, whose pixel rectangle (0, 0)-(width, height) lands on the
// surface through `imageToSurface`.
template <class Accessor, template <class, class> class Filter>
void RenderImage(LayerRasterizer& ras, LayerRendererBase& renderer, const PixelView& image,
                 const agg::trans_affine& imageToSurface) {
  agg::trans_affine surfaceToImage;
  if (!InvertAffine(imageToSurface, &surfaceToImage)) return;
  agg::rendering_buffer buffer(image.pixels, image.width, image.height, image.stride);
  LayerPixfmt pixels(buffer);
  Accessor source(pixels);
  AffineSpanInterpolator interpolator(surfaceToImage, kCoordLimit);
  Filter<Accessor, AffineSpanInterpolator> spans(source, interpolator);
  RenderLayerSpans(ras, renderer, spans);
}

// The matrix that lays an image of width x height on the axis-aligned box (x1, y1)-(x2, y2) of path
// space and then follows the glyph transform.
agg::trans_affine ImageOnBox(int32_t width, int32_t height, double x1, double y1, double x2, double y2,
                             const agg::trans_affine& glyphMatrix) {
  const double parl[6] = {x1, y1, x2, y1, x2, y2};
  return MultiplyAffine(RectToParallelogram(0, 0, width, height, parl), glyphMatrix);
}

void RenderCentred(LayerRasterizer& ras, LayerRendererBase& renderer, const PixelView& texture,
                   const TexturePlacement& placement) {
  const PathBox& box = placement.pathBox;
  const double boxW = std::trunc(box.x2 - box.x1), boxH = std::trunc(box.y2 - box.y1);
  const double strokeWidth = placement.strokeWidth;
  const int32_t r =
      (strokeWidth > 0 && strokeWidth < kMaxGroundSide) ? static_cast<int32_t>(strokeWidth) >> 1 : 0;
  if (!(std::fabs(boxW) < kMaxGroundSide) || !(std::fabs(boxH) < kMaxGroundSide)) return;
  // The ground of the plain shape, and that ground grown by r on every side.
  const int32_t baseW = static_cast<int32_t>(std::fabs(boxW)) + 2;
  const int32_t baseH = static_cast<int32_t>(std::fabs(boxH)) + 2;
  PixelBuffer ground;
  if (!ground.allocate(baseW + 2 * r, baseH + 2 * r)) return;
  const PixelView view = ground.view();
  for (int32_t y = 0; y < view.height; ++y) std::fill(view.row(y), view.row(y) + view.width, 0xFFFFFFFFu);

  const int32_t left = ((baseW - texture.width) >> 1) + r;
  const int32_t top = ((baseH - texture.height) >> 1) + r;
  const PlacedView placedTexture{texture, {left, top, left + texture.width, top + texture.height}};
  BlendOver(placedTexture, ground.placed());

  const double gx = box.x1 - r - 1, gy = box.y1 - r - 1;
  RenderImage<ClampedImage, agg::span_image_filter_rgba_nn>(
      ras, renderer, view,
      ImageOnBox(view.width, view.height, gx, gy, gx + view.width, gy + view.height, placement.glyphMatrix));
}

}  // namespace

void RenderTextureFill(LayerRasterizer& ras, LayerRendererBase& renderer, const TextureImage& texture,
                       const TexturePlacement& placement) {
  if (texture.pixels == nullptr || texture.width < 1 || texture.height < 1) return;
  const PixelView image{reinterpret_cast<uint8_t*>(texture.pixels), texture.width, texture.height,
                        texture.width * 4};
  const IntRect& rect = placement.rect;
  switch (placement.tiling) {
    case kTextureCentred:
      RenderCentred(ras, renderer, image, placement);
      return;
    case kTextureStretched:
      RenderImage<ClampedImage, agg::span_image_filter_rgba_bilinear>(
          ras, renderer, image,
          ImageOnBox(image.width, image.height, rect.left, rect.top, rect.right, rect.bottom,
                     placement.glyphMatrix));
      return;
    default:
      RenderImage<RepeatedImage, agg::span_image_filter_rgba_nn>(
          ras, renderer, image,
          ImageOnBox(image.width, image.height, rect.left, rect.top, double(rect.left) + image.width,
                     double(rect.top) + image.height, placement.glyphMatrix));
      return;
  }
}

}  // namespace lx
