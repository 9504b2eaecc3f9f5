// Shading of a height field lit from one side; gives the Outline its bevelled 3D border.
#pragma once

#include <cstdint>
#include <vector>

#include "effects/effect_object.h"
#include "image/pixel_view.h"

namespace lx {

class BlurFilter;

class BevelFilter : public EffectObject {
 public:
  BevelFilter() = default;

  // The 3D border on an Outline layer: elevation in degrees, `passes` shading passes, azimuth in
  // radians, blur radius between passes. Does nothing for 0 passes.
  void applyBorder(const PixelView& image, double elevationDegrees, int passes, double azimuthRadians,
                   unsigned blurRadius, BlurFilter* blur);

 private:
  double azimuth_ = 0.0;
  double elevation_ = 3.0;
  double depth_ = 1.0;
  // Further settings and row buffers belong to the implementation.
  std::vector<int32_t> heights_;
  std::vector<uint32_t> rows_;
};

}  // namespace lx
