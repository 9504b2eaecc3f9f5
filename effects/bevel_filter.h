// Shading of a height field lit from one side; gives the Outline its bevelled 3D border.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "effects/effect_object.h"
#include "effects/grey_plane_blur.h"
#include "effects/kernel_path.h"
#include "image/pixel_view.h"

namespace lx {

class BlurFilter;

// How luminance becomes height.
enum class BevelProfile : int32_t { kLinear = 0, kRound = 1, kSCurve = 2 };

// How the 3D border is worked: on a grey byte plane beside the stroke's alpha, or on the pixels
// themselves. The whitened stroke keeps its three colour bytes equal wherever alpha is non-zero, and
// nothing else reaches the result, so both give the same image; the planes take a quarter of the
// memory traffic. They need no blur or one of radius kGreyBlurRadius; other radii work on the pixels.
enum class BorderWork { kGreyPlanes, kPixels };

// The shading parameters, set together.
struct BevelSettings {
  double azimuth = 0.0;    // radians, clamped to [-pi, pi]
  double elevation = 3.0;  // degrees, clamped to [3, 60]
  double depth = 1.0;      // clamped to [1, 60]; the flat-surface normal is 1530 / depth
  int32_t offsetX = 0;     // shift of the pattern in pixels (wrap-around use)
  int32_t offsetY = 0;
  int32_t heightOffset = 0;       // 0..255: the luminance that transparency pulls heights towards
  int32_t highlightStrength = 0;  // 0..255: lifts lit slopes towards full light; also the unlit shade
  int32_t profile = 1;            // 1 round, 2 S-curve, anything else linear
  uint8_t wrap = 0;               // 1: neighbours wrap around rows and columns (seamless textures)
  uint8_t reserved = 0;           // kept with the block, not used by the shading
};

class BevelFilter : public EffectObject {
 public:
  BevelFilter();

  // Clamps and stores the settings and derives the light from them.
  void configure(const BevelSettings& settings);
  const BevelSettings& settings() const { return settings_; }

  // One shading pass in place: each pixel's colour bytes are scaled by the light falling on the height
  // field (luminance weighted by alpha, through the profile) at that pixel; alpha stays. Rows are shaded
  // top to bottom, each from heights read before it was changed.
  void shade(const PixelView& image);

  // The 3D border on an Outline layer. elevationDegrees (3..60) is the light's elevation, `passes` the
  // number of shading passes, azimuthRadians the light's direction, blurRadius the radius of the
  // colour-only blur run before and after each pass (the pipeline passes 2). The outline keeps its own
  // colours and alpha, lightened where the bevel faces the light and darkened where it faces away.
  // Does nothing for passes < 1 or an empty view; without a blur object the blur steps are skipped.
  // `keep` is the part of the image whose pixels must come out right (empty: the whole image); pixels
  // outside it may be left as anything, which lets the passes skip what cannot reach it. `work` and
  // `path` choose the method and kernels (the same image either way).
  void applyBorder(const PixelView& image, double elevationDegrees, int passes, double azimuthRadians,
                   unsigned blurRadius, BlurFilter* blur, const IntRect& keep = IntRect{},
                   BorderWork work = BorderWork::kGreyPlanes, KernelPath path = KernelPath::kWide);

  // Gives back the kept planes or copy of the last image when they hold more than maxBytes.
  void trimScratch(size_t maxBytes);

  // The height profile in use (256 entries).
  const uint8_t* profile() const { return profile_; }

 private:
  bool reserveRows(int32_t width);
  // The light on a pixel whose height field slopes by nx across and ny down.
  int32_t lightAt(int32_t nx, int32_t ny) const;
  void readHeights(const PixelView& image, int32_t row, int32_t* heights) const;
  // The profile's height for a pixel of luminance lum and alpha `alpha`.
  int32_t heightOf(int32_t lum, uint32_t alpha) const;
  // The border's steps on the planes, or on the pixels. The planes' steps refuse (false, the image
  // untouched) when their memory cannot be had.
  bool applyGreyBorder(const PixelView& image, int passes, bool blurred, const IntRect& keep,
                       KernelPath path);
  void applyPixelBorder(const PixelView& image, int passes, unsigned blurRadius, BlurFilter* blur,
                        const IntRect& keep);
  // shade() on the grey plane, for the border's settings (no offsets, no wrap); `wide` lights the
  // slopes four at a time.
  void shadeGrey(const GreyPlanes& planes, bool wide);
  // lightAt for count slopes, given as (nx, ny) pairs, into lights.
  void lightSlopes(const int16_t* slopes, int32_t count, int32_t* lights, bool wide) const;
  void readGreyHeights(const GreyPlanes& planes, int32_t row, int32_t* heights) const;

  BevelSettings settings_;
  int32_t lx_ = 0, ly_ = 0, lz_ = 0, nz_ = 0, nz2_ = 0, nzlz_ = 0;
  double sine_ = 1.0;
  double fullLight_ = 255.0;  // F = 255 * sine
  double highlight_ = 0.0;    // H = strength / 255
  int32_t unlitShade_ = 0;    // S = strength * sine
  uint8_t profile_[256] = {};
  // The grey shading's tables: the height of a clear pixel and of an opaque one of each grey, and the
  // factor each shade scales the grey by.
  static constexpr int32_t kShadeFactors = 512;
  int32_t clearHeight_ = 0;
  int32_t opaqueHeights_[256] = {};
  double shadeFactors_[kShadeFactors] = {};

  // Row buffers kept between passes and calls: three height rows.
  std::vector<int32_t> heightRows_[3];
  // The column sums and falls of the middle height row, and the shade of each of its pixels.
  std::vector<int32_t> columnRows_[3];
  // The grey shading's lights of one row's pixels with alpha, and their slopes as pairs of 16 bits.
  std::vector<int32_t> lightRow_;
  std::vector<int16_t> slopeRow_;
  // The Outline as it was before the border, re-tinted at the end (worked on the pixels); or the grey
  // plane, the alpha plane and the blur's scratch (worked on the planes).
  std::vector<uint32_t> original_;
  std::vector<uint8_t> planes_;
  std::vector<uint8_t> planeScratch_;
};

}  // namespace lx
