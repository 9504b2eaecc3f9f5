// The settings of the Shadow, the 3D border and the emboss: plain data, copied by assignment, so that a
// setting added to one of these groups is copied with the rest without another edit.
#pragma once

#include <cstdint>

namespace lx {

// The Shadow's settings, but for its two switches (whether it is drawn, and whether it alone is), which
// belong to the process that draws rather than to the look it copies.
struct ShadowSettings {
  int32_t shadowOffsetX = 0;
  int32_t shadowOffsetY = 0;
  uint32_t shadowColour = 0;  // c0 | c1 << 8 | c2 << 16, bits 24-31 zero
  int32_t shadowAlpha = 0;
  double shadowZoomX = 1.0;
  double shadowZoomY = 1.0;
  uint8_t shadowExtruded = 0;
  uint8_t extrudedShadowColour = 1;
  uint8_t shadowBlurLevel = 0;
};

// The Outline's bevelled 3D border.
struct Border3DSettings {
  uint8_t outline3DBorder = 0;
  double border3DAngle = 0.0;
  uint8_t border3DDepth = 1;
  uint8_t border3DWidth = 3;
};

// The Face emboss: the switch, and the light as last stored (the emboss objects, when they exist, hold
// the values in force).
struct EmbossSettings {
  uint8_t faceEmbossed = 0;
  double embossLight[4] = {0.0, 0.0, 0.0, 0.0};
  double embossAngle = 0.0;
};

// Every effect setting that one process copies from another in a single assignment.
struct EffectSettings : ShadowSettings, Border3DSettings, EmbossSettings {};

}  // namespace lx
