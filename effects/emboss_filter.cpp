#include "effects/emboss_filter.h"

#include <cmath>

#include "effects/light_angles.h"

namespace lx {

namespace {
constexpr double kPixelScale = 255.9;
}

void EmbossFilter::updateLight() {
  const double el = ElevationRadians(elevation_);
  lx_ = std::cos(azimuth_) * std::cos(el) * kPixelScale;
  ly_ = std::sin(azimuth_) * std::cos(el) * kPixelScale;
  lz_ = std::sin(el) * kPixelScale;
  // A depth of 0 acts as a depth of 1.
  nz_ = depth_ != 0 ? 1530.0 / depth_ : 1530.0;
  nz2_ = nz_ * nz_;
  nzlz_ = nz_ * lz_;
  background_ = lz_;
}

}  // namespace lx
