// Tint of the emboss grey: each colour byte becomes the pixel's luminance scaled by its own factor.
#pragma once

#include <cstdint>

#include "effects/effect_object.h"
#include "image/pixel_view.h"

namespace lx {

class ChannelTint : public EffectObject {
 public:
  ChannelTint() { setFactors(1.0, 1.0, 1.0); }

  // The factors c0, c1, c2 (0..1); c2 scales byte 0 and c0 byte 2. Rebuilds the tables.
  void setFactors(double c0, double c1, double c2);
  double factor(int i) const { return c_[i]; }
  // All three factors exactly 1.0: applying would change nothing worth the pass.
  bool isIdentity() const { return c_[0] == 1.0 && c_[1] == 1.0 && c_[2] == 1.0; }

  void apply(const PixelView& image) const;

 private:
  double c_[3] = {1.0, 1.0, 1.0};
  uint8_t a_[256], b_[256], c_lum_[256], t0_[256], t1_[256], t2_[256];
};

}  // namespace lx
