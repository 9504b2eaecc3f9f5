#include "image/placement.h"

#include <algorithm>

namespace lx {

namespace {

// One axis: the source starts `offset` pixels after the target's origin (64-bit, since the difference
// of two hostile 32-bit coordinates need not fit in 32 bits).
bool ClipAxis(int64_t offset, int64_t sourceExtent, int64_t targetExtent, int32_t* sourceStart,
              int32_t* targetStart, int32_t* extent) {
  int64_t from = 0, to = 0, length = 0;
  if (offset < 0) {
    from = -offset;
    length = std::min(sourceExtent + offset, targetExtent);
  } else {
    to = offset;
    length = sourceExtent;
    if (offset + length > targetExtent) length = targetExtent - offset;
  }
  if (length < 1) return false;
  *sourceStart = static_cast<int32_t>(from);
  *targetStart = static_cast<int32_t>(to);
  *extent = static_cast<int32_t>(length);
  return true;
}

}  // namespace

bool ClipPlacement(const PlacedView& source, const PlacedView& target, Overlap* overlap) {
  if (source.view.empty() || target.view.empty()) return false;
  const IntRect& s = source.rect;
  const IntRect& t = target.rect;
  if (s.left > t.right || s.right < t.left || s.top > t.bottom || s.bottom < t.top) return false;

  Overlap o;
  const int64_t dx = int64_t{s.left} - t.left;
  const int64_t dy = int64_t{s.top} - t.top;
  if (!ClipAxis(dx, source.view.width, target.view.width, &o.sourceX, &o.targetX, &o.width)) return false;
  if (!ClipAxis(dy, source.view.height, target.view.height, &o.sourceY, &o.targetY, &o.height)) return false;
  *overlap = o;
  return true;
}

}  // namespace lx
