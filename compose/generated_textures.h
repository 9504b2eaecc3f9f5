// Textures made on the spot, so that presets need no image files. Pure integer and IEEE arithmetic (no
// library maths), so every build makes the same pixels. All of them tile seamlessly.
#pragma once

#include <string>

#include "compose/pixel_image.h"

namespace lx::compose {

// "gen:" names a generated texture in a texture option.
constexpr const char* kGeneratedPrefix = "gen:";

// True for a known name (without the prefix).
bool IsGeneratedTexture(const std::string& name);
// The opaque texture of that name; an empty image for an unknown name.
Image GenerateTexture(const std::string& name);

}  // namespace lx::compose
