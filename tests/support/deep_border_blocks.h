// Outline blocks found by fuzzing a deep 3D border with the Face embossed: contours of a few points
// thousands of pixels apart, drawn into a buffer of a few dozen pixels.
#pragma once
#include "tests/support/scene.h"

namespace lx::test {
inline const std::vector<uint8_t> kDeepBorderBlockA = CrasherFile("deep_border_a.block"),
                                  kDeepBorderBlockB = CrasherFile("deep_border_b.block"),
                                  kDeepBorderBlockC = CrasherFile("deep_border_c.block");
}  // namespace lx::test
