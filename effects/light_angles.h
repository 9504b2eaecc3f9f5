// Elevations are given in degrees and reduced to whole hundredths of a degree before they become
// radians, so that the emboss and the 3D border light agree to the bit on every platform.
#pragma once

#include <cstdint>

namespace lx {

inline double ElevationRadians(double degrees) {
  const int32_t hundredths = static_cast<int32_t>(degrees * 100.0) % 36000;
  return hundredths * 0.01 * 0.017453292519943295;
}

}  // namespace lx
