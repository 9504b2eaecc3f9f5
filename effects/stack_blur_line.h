// One line of AGG's stack blur over 32-bit pixels, the kernel of the layer blur, with a portable path
// and one that works on all four bytes of a pixel at once (SSE2, where the build targets it).
#pragma once

#include <cstddef>
#include <cstdint>

#include "effects/kernel_path.h"

namespace lx {

// AGG's stack blur of src[0..n) with radius r (1..254), edge pixels repeated: each output is the sum of
// the window weighted 1, 2, ..., r + 1, ..., 2, 1, times AGG's table multiplier for r, shifted by its
// table shift. Results go to dst[0], dst[step], ..., which must not overlap src; bytes outside writeMask
// keep src's value. The cost per pixel does not depend on r.
// Outputs whose window holds only zero pixels are zero, as their own pixel already is: the stretches
// before the first and after the last non-zero pixel are left as they are.
void StackBlurLine(const uint32_t* src, ptrdiff_t n, unsigned r, uint32_t* dst, ptrdiff_t step,
                   uint32_t writeMask, KernelPath path);

}  // namespace lx
