// Drawing a layer shape (the filled path, the stroked path, or both) into a target view, with the
// layer's colour, gradient or texture; and the small tests on the fill settings
// with which the pipeline chooses how to lay one layer onto another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "image/pixel_view.h"
#include "settings/affine.h"
#include "settings/fill_settings.h"
#include "settings/outline_path.h"

namespace lx {

class LayerRasterizer;

// What layer drawing keeps from one draw to the next: the rasterizer with its cell grid, so that a
// process drawing line after line neither allocates nor faults in fresh memory for each. One must not
// serve two threads at once.
class LayerScratch {
 public:
  LayerScratch() noexcept;
  ~LayerScratch();
  LayerScratch(const LayerScratch&) = delete;
  LayerScratch& operator=(const LayerScratch&) = delete;

  // Made on first use, so that a process that never draws holds none; null when that allocation failed,
  // and drawing then uses a rasterizer of its own.
  LayerRasterizer* rasterizer();
  // Gives back the memory held beyond maxBytes.
  void trim(size_t maxBytes);

 private:
  std::unique_ptr<LayerRasterizer> rasterizer_;
};

// The drawing modes of DrawLayer. Values of 4 or more, and negative values, draw nothing.
enum LayerDrawMode : int32_t {
  kDrawFace = 0,             // the path filled, in the Face's fill
  kDrawOutline = 1,          // the path stroked with strokeWidth, in the Outline's fill
  kDrawFaceThenOutline = 2,  // both, the Outline drawn over the Face
  kDrawOutlineThenFace = 3,  // both, the Face drawn over the Outline (the order of the finished image)
};

// The rectangles a draw call lays its fills over.
struct LayerAreas {
  // Where a texture is stretched (tiling 1) or starts repeating (tiling 2), in path coordinates (before
  // the glyph transform). An empty rectangle stands for the whole-pixel box of the layer's shape: the
  // path's box, grown by half the stroke width for the Outline.
  IntRect faceTexture;
  IntRect outlineTexture;
  // The caller's whole buffer in surface coordinates: the gradient area of fit mode 1 and the origin of
  // the user gradient areas, which are given in the caller's buffer coordinates. May be empty: fit mode
  // 1 then falls back to the shape's box, and user areas are taken as surface coordinates.
  IntRect callerBuffer;
  // The area shapes are laid out in, in the target's coordinates, when the target holds only part of it
  // (its left and top are then zero or negative); empty when the target is the whole area.
  IntRect layout;
};

// Draws `path`, carried through `matrix`, into `target` (laid out over areas.layout when that is set, of
// which the target keeps its own part). Each layer that the mode names is rasterised (the Outline only
// when strokeWidth is greater than 0: a stroke of that full width centred on the path, miter joins) and
// painted with its fill's texture when its fill type is 1 and it has a texture with pixels, otherwise
// with its gradient or solid start colour. Curves are flattened to within a quarter pixel of the target.
// An empty target or path draws nothing. `scratch`, when given, lends its memory.
void DrawLayer(const PixelView& target, const OutlinePath& path, const Affine& matrix,
               const FillSettings& face, const FillSettings& outline, double strokeWidth, int32_t mode,
               const LayerAreas& areas, LayerScratch* scratch = nullptr);

// 1 when the layer paints one colour (alphaOnly != 1) or one alpha (alphaOnly == 1), else 0; a texture
// fill type answers 0. With its colour stops in force the first stop is written to *colour and every
// stop must match it (an empty list answers 1 and writes nothing). Otherwise, without alphaOnly, the
// answer is start == end colour and the start colour is written when it is 1; with alphaOnly the start
// colour is always written and the answer is whether the two colours' alpha bytes agree. Colours are
// packed (red in the low byte). `colour` must not be null.
int UniformLayerColour(const FillSettings& layer, uint32_t* colour, uint8_t alphaOnly);

// 1 when the Face and the Outline are both uniform (alphaOnly not set) in the same colour.
int SameUniformColour(const FillSettings& face, const FillSettings& outline);

// 1 when every colour the layer paints has the given alpha: every stop's alpha with the colour stops in
// force (an empty list answers 0), otherwise the start colour's and, when it differs from the start,
// the end colour's. A texture fill type answers 0.
int LayerAlphaEquals(const FillSettings& layer, uint8_t alpha);

}  // namespace lx
