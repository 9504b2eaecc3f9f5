// The outline decoder on any block. Beyond not reading outside the block (the fuzzer hands over a copy
// of exactly `size` bytes, so the sanitizer sees every overread), the result must be what callers rely
// on: a refusal leaves an empty path and an empty rectangle; a decoded block is appended to what the
// path held, and every vertex lies inside the rectangle reported.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "render/outline_decoder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const bool flipY = (data[0] & 1) != 0;
  // Blocks come from GlobalAlloc, so they start aligned: a copy of exactly the block's bytes keeps
  // that and still ends where an overread is caught.
  const size_t blockSize = size - 1;
  std::unique_ptr<uint8_t[]> copy(new uint8_t[blockSize > 0 ? blockSize : 1]);
  std::memcpy(copy.get(), data + 1, blockSize);
  const uint8_t* block = copy.get();

  lx::OutlinePath path{{3.0, 4.0, lx::kPathMoveTo}};
  const lx::IntRect r = lx::DecodeOutlineBlock(block, blockSize, flipY, &path);
  if (path.empty()) {
    if (r.left != 0 || r.top != 0 || r.right != 0 || r.bottom != 0) std::abort();
    return 0;
  }
  if (path[0].x != 3.0 || path[0].y != 4.0) std::abort();
  if (r.left > r.right || r.top > r.bottom) std::abort();
  for (const lx::PathVertex& v : path) {
    if (!std::isfinite(v.x) || !std::isfinite(v.y)) std::abort();
    if (v.x < r.left || v.x > r.right || v.y < r.top || v.y > r.bottom) std::abort();
    if (v.cmd != lx::kPathMoveTo && v.cmd != lx::kPathLineTo && v.cmd != lx::kPathCurve3) std::abort();
  }
  return 0;
}
