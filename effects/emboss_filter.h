// Grey relief of the Face: bump shading of a 3x3 neighbourhood lit from (azimuth, elevation).
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "effects/effect_object.h"
#include "effects/kernel_path.h"
#include "image/pixel_view.h"

namespace lx {

class EmbossFilter : public EffectObject {
 public:
  EmbossFilter() { updateLight(); }

  // Azimuth in radians, used as given, except that one that is not a number counts as 0 (as the 3D
  // border's does): a light direction of NaN would leave every slope's shade undefined. The light is
  // recomputed.
  void setAzimuth(double radians) {
    azimuth_ = std::isnan(radians) ? 0.0 : radians;
    updateLight();
  }
  double azimuth() const { return azimuth_; }
  double elevation() const { return elevation_; }
  int32_t depth() const { return depth_; }

  // Replaces the colours of an image of 3 rows or more by the shaded grey; alpha stays. scratch is
  // grown to the image's pixels plus nine rows (when it cannot be, the image is left as it is).
  // `path` chooses the kernels (the same image either way).
  void apply(const PixelView& image, std::vector<uint32_t>& scratch,
             KernelPath path = KernelPath::kWide) const;

 private:
  void updateLight();
  // The grey of count pixels with slopes (nx[i], ny[i]) and squared slope lengths lengths[i].
  void shadeSlopes(const int32_t* nx, const int32_t* ny, const int32_t* lengths, int32_t count,
                   uint32_t* greys, bool wide) const;

  double azimuth_ = 135.0;
  double elevation_ = 60.0;
  int32_t depth_ = 3;
  double lx_ = 0, ly_ = 0, lz_ = 0, nz_ = 0, nz2_ = 0, nzlz_ = 0, background_ = 0;
};

}  // namespace lx
