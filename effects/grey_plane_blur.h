// The 3D border's blur on a grey byte plane beside the stroke's alpha. The border shades a whitened copy
// of the Outline, whose three colour bytes stay equal wherever alpha is non-zero, so one byte per pixel
// carries what the layer blur would compute in each of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "effects/kernel_path.h"

namespace lx {

// Two byte planes of one size and stride: a grey value and the alpha it stands beside.
struct GreyPlanes {
  uint8_t* grey = nullptr;
  const uint8_t* alpha = nullptr;
  int32_t width = 0;
  int32_t height = 0;
  ptrdiff_t stride = 0;  // bytes from one row to the next, in both planes

  bool empty() const { return grey == nullptr || alpha == nullptr || width < 1 || height < 1; }
  uint8_t* greyRow(int32_t y) const { return grey + y * stride; }
  const uint8_t* alphaRow(int32_t y) const { return alpha + y * stride; }
  // The part from (left, top) to (right, bottom), which the caller keeps inside the planes.
  GreyPlanes part(int32_t left, int32_t top, int32_t right, int32_t bottom) const {
    return {greyRow(top) + left, alphaRow(top) + left, right - left, bottom - top, stride};
  }
};

// The radius of the only blur the border runs between its shadings.
constexpr unsigned kGreyBlurRadius = 2;

// The layer blur with radius 2 both ways (rows, then columns) on the grey plane, each pass after its
// colour bleed of reach 4: the grey of every pixel with non-zero alpha comes out as the layer blur
// gives each colour byte of a pixel whose colour bytes all held that grey. That result depends only on
// the grey of pixels with non-zero alpha, since every pixel in such a pixel's window is bled from one of
// them; the grey of pixels with alpha 0 comes out as anything. Alpha is read, never written. scratch is
// grown to the planes' size plus a few rows; when it cannot be, the planes are left as they are and the
// result is false.
bool BlurGreyPlanes(const GreyPlanes& planes, std::vector<uint8_t>& scratch, KernelPath path);

}  // namespace lx
