#include "effects/layer_drawing.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <vector>

#include "effects/gradient_fill.h"
#include "effects/texture_fill.h"
#include "effects/agg_companions.h"
#include "effects/agg_pipeline.h"

namespace lx {

namespace {

// Flattened curves stay this close to the true curve, in surface pixels.
constexpr double kFlatness = 0.25;
// Vertices are held within this range before they reach the rasterizer, so that clipping never
// computes with infinities; the rasterizer itself works inside the surface, at most this wide.
constexpr double kVertexLimit = double(1 << 24);
constexpr int32_t kMaxRasterSide = 1 << 22;

double HoldVertex(double v) {
  if (!(v >= -kVertexLimit)) return -kVertexLimit;
  if (!(v <= kVertexLimit)) return kVertexLimit;
  return v;
}

struct Box {
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  bool any = false;

  void add(double x, double y) {
    if (!any) {
      x1 = x2 = x;
      y1 = y2 = y;
      any = true;
      return;
    }
    x1 = std::min(x1, x);
    y1 = std::min(y1, y);
    x2 = std::max(x2, x);
    y2 = std::max(y2, y);
  }
  IntRect whole() const {
    return IntRect{ToInt(std::floor(x1)), ToInt(std::floor(y1)), ToInt(std::ceil(x2)), ToInt(std::ceil(y2))};
  }
  static int32_t ToInt(double v) {
    if (!(v >= -2147483648.0)) return INT32_MIN;
    if (!(v <= 2147483647.0)) return INT32_MAX;
    return static_cast<int32_t>(v);
  }
};

// Feeds a vertex source, carried through `matrix`, to the rasterizer; returns the box of what it fed.
template <class Source>
Box AddTransformed(LayerRasterizer& ras, Source& source, const agg::trans_affine& matrix) {
  Box box;
  source.rewind(0);
  double x, y;
  unsigned cmd;
  while (!agg::is_stop(cmd = source.vertex(&x, &y))) {
    if (agg::is_vertex(cmd)) {
      matrix.transform(&x, &y);
      x = HoldVertex(x);
      y = HoldVertex(y);
      box.add(x, y);
      if (agg::is_move_to(cmd)) {
        ras.move_to_d(x, y);
      } else {
        ras.line_to_d(x, y);
      }
    } else if (agg::is_end_poly(cmd)) {
      ras.close_polygon();
    }
  }
  return box;
}

PathBox BoxOfPath(const OutlinePath& path) {
  Box box;
  for (const PathVertex& v : path) box.add(v.x, v.y);
  return PathBox{box.x1, box.y1, box.x2, box.y2};
}

// The area shapes are laid out in, in target coordinates: the target itself unless it holds a part.
IntRect AreaOf(const PixelView& target, const LayerAreas& areas) {
  if (!areas.layout.empty()) return areas.layout;
  return IntRect{0, 0, target.width, target.height};
}

// Everything one draw call shares between its layers.
class LayerCanvas {
 public:
  LayerCanvas(const PixelView& target, const OutlinePath& path, const Affine& matrix, const LayerAreas& areas,
              LayerRasterizer& ras)
      : path_(path),
        glyphMatrix_(matrix),
        areas_(areas),
        buffer_(target.pixels, target.width, target.height, target.stride),
        pixels_(buffer_),
        renderer_(pixels_, -AreaOf(target, areas).left, -AreaOf(target, areas).top),
        ras_(ras),
        matrix_(ToAggAffine(matrix)) {
    const IntRect area = AreaOf(target, areas);
    ras_.clip_box(0, 0, std::min(area.right - area.left, kMaxRasterSide),
                  std::min(area.bottom - area.top, kMaxRasterSide));
    const double stretch = MaxStretch(matrix_);
    tolerance_ = kFlatness / (stretch > 1e-9 ? stretch : 1e-9);
  }

  void draw(const FillSettings& fill, bool face, double strokeWidth) {
    if (!face && !(strokeWidth > 0)) return;
    ras_.reset();
    FlattenedPath flat(path_, tolerance_);
    Box shape;
    if (face) {
      shape = AddTransformed(ras_, flat, matrix_);
    } else {
      ClosedContourStroker<FlattenedPath> stroke(flat);
      stroke.width(strokeWidth);
      shape = AddTransformed(ras_, stroke, matrix_);
    }
    if (!shape.any) return;

    if (fill.textureInUse() && fill.texture->pixels != nullptr) {
      TexturePlacement placement;
      placement.tiling = fill.textureTiling;
      placement.glyphMatrix = glyphMatrix_;
      placement.pathBox = BoxOfPath(path_);
      placement.strokeWidth = strokeWidth;
      placement.rect = face ? areas_.faceTexture : areas_.outlineTexture;
      if (placement.rect.empty()) {
        const double grow = face ? 0.0 : strokeWidth * 0.5;
        const PathBox& b = placement.pathBox;
        placement.rect = Box{b.x1 - grow, b.y1 - grow, b.x2 + grow, b.y2 + grow, true}.whole();
      }
      RenderTextureFill(ras_, renderer_, *fill.texture, placement);
      return;
    }
    RenderColourFill(ras_, renderer_, fill, GradientArea(fill, shape.whole(), areas_.callerBuffer));
  }

 private:
  const OutlinePath& path_;
  const Affine& glyphMatrix_;
  const LayerAreas& areas_;
  agg::rendering_buffer buffer_;
  LayerPixfmt pixels_;
  LayerRendererBase renderer_;
  LayerRasterizer& ras_;
  agg::trans_affine matrix_;
  double tolerance_ = kFlatness;
};

uint8_t AlphaOf(uint32_t packed) {
  return static_cast<uint8_t>(packed >> 24);
}

}  // namespace

LayerScratch::LayerScratch() noexcept = default;

LayerScratch::~LayerScratch() = default;

LayerRasterizer* LayerScratch::rasterizer() {
  if (!rasterizer_) rasterizer_.reset(new (std::nothrow) LayerRasterizer);
  return rasterizer_.get();
}

void LayerScratch::trim(size_t maxBytes) {
  if (rasterizer_) rasterizer_->trim(maxBytes);
}

void DrawLayer(const PixelView& target, const OutlinePath& path, const Affine& matrix,
               const FillSettings& face, const FillSettings& outline, double strokeWidth, int32_t mode,
               const LayerAreas& areas, LayerScratch* scratch) {
  if (target.empty() || path.empty()) return;
  if (mode < kDrawFace || mode > kDrawOutlineThenFace) return;
  std::unique_ptr<LayerRasterizer> own;
  LayerRasterizer* ras = scratch != nullptr ? scratch->rasterizer() : nullptr;
  if (ras == nullptr) {
    own = std::make_unique<LayerRasterizer>();
    ras = own.get();
  }
  LayerCanvas canvas(target, path, matrix, areas, *ras);
  if (mode == kDrawFace || mode == kDrawFaceThenOutline) canvas.draw(face, true, strokeWidth);
  if (mode != kDrawFace) canvas.draw(outline, false, strokeWidth);
  if (mode == kDrawOutlineThenFace) canvas.draw(face, true, strokeWidth);
}

int UniformLayerColour(const FillSettings& layer, uint32_t* colour, uint8_t alphaOnly) {
  if (layer.fillType == 1) return 0;
  if (layer.useGradientTable == 1) {
    const std::vector<uint32_t>& stops = layer.gradientColours;
    if (stops.empty()) return 1;
    const uint32_t first = stops.front();
    *colour = first;
    const uint32_t mask = alphaOnly == 1 ? 0xFF000000u : 0xFFFFFFFFu;
    for (uint32_t c : stops) {
      if ((c & mask) != (first & mask)) return 0;
    }
    return 1;
  }
  if (alphaOnly != 1) {
    if (layer.startColour != layer.endColour) return 0;
    *colour = layer.startColour;
    return 1;
  }
  *colour = layer.startColour;
  return AlphaOf(layer.startColour) == AlphaOf(layer.endColour) ? 1 : 0;
}

int SameUniformColour(const FillSettings& face, const FillSettings& outline) {
  uint32_t faceColour = 0, outlineColour = 0;
  if (UniformLayerColour(face, &faceColour, 0) != 1) return 0;
  if (UniformLayerColour(outline, &outlineColour, 0) != 1) return 0;
  return faceColour == outlineColour ? 1 : 0;
}

int LayerAlphaEquals(const FillSettings& layer, uint8_t alpha) {
  if (layer.fillType == 1) return 0;
  if (layer.useGradientTable == 1) {
    if (layer.gradientColours.empty()) return 0;
    for (uint32_t c : layer.gradientColours) {
      if (AlphaOf(c) != alpha) return 0;
    }
    return 1;
  }
  if (AlphaOf(layer.startColour) != alpha) return 0;
  return layer.startColour == layer.endColour || AlphaOf(layer.endColour) == alpha ? 1 : 0;
}

}  // namespace lx
