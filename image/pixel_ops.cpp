#include "image/pixel_ops.h"

#include <algorithm>
#include <cstring>

#include "image/placement.h"

namespace lx {

namespace {

constexpr uint32_t kLanes = 0x00FF00FFu;
constexpr uint32_t kLaneRound = 0x00800080u;

// Two bytes of a pixel (the 0x00FF00FF lanes) scaled by a / 256 with rounding; neither lane can carry
// into the other since 255 * 255 + 128 < 65536.
inline uint32_t ScaleLanes(uint32_t lanes, uint32_t a) {
  return ((lanes * a + kLaneRound) >> 8) & kLanes;
}

}  // namespace

uint32_t BlendPixel(uint32_t source, uint32_t destination) {
  if (source == 0) return destination;
  // An empty destination is blended as mid grey, so a faint source over nothing is not darkened to black.
  if (destination == 0) destination = 0x00808080u;
  if (source >= 0xFF000000u) return source;
  const uint32_t a = source >> 24;
  if (a == 0) return destination;

  const uint32_t inverse = 255 - a;
  const uint32_t blueRed = ScaleLanes(source & kLanes, a) + ScaleLanes(destination & kLanes, inverse);
  const uint32_t green =
      ScaleLanes((source >> 8) & kLanes, a) + ScaleLanes((destination >> 8) & kLanes, inverse);
  const uint32_t colour = (blueRed | (green << 8)) & 0x00FFFFFFu;
  const uint32_t alpha = std::max(a, destination >> 24);
  return colour | (alpha << 24);
}

bool FlipVertically(void* pixels, int32_t width, int32_t height) {
  // The block is the library's own or was checked where it came in: only its shape is tested here.
  if (pixels == nullptr || width < 1 || height < 1) return false;
  const size_t rowPixels = static_cast<size_t>(width);
  auto* first = static_cast<uint32_t*>(pixels);
  for (int32_t top = 0, bottom = height - 1; top < bottom; ++top, --bottom) {
    uint32_t* a = first + static_cast<size_t>(top) * rowPixels;
    uint32_t* b = first + static_cast<size_t>(bottom) * rowPixels;
    std::swap_ranges(a, a + rowPixels, b);
  }
  return true;
}

bool CopyRectangle(const PlacedView& source, const PlacedView& destination, CopyMode mode) {
  Overlap o;
  if (!ClipPlacement(source, destination, &o)) return false;
  for (int32_t y = o.height - 1; y >= 0; --y) {
    const uint32_t* from = source.view.row(o.sourceY + y) + o.sourceX;
    uint32_t* to = destination.view.row(o.targetY + y) + o.targetX;
    switch (mode) {
      case CopyMode::kCopy:
        std::memmove(to, from, static_cast<size_t>(o.width) * 4u);
        break;
      case CopyMode::kAlphaMask:
        for (int32_t x = 0; x < o.width; ++x) {
          const uint32_t alpha = from[x] & 0xFF000000u;
          if (alpha != 0) to[x] = (to[x] & 0x00FFFFFFu) | alpha;
        }
        break;
      case CopyMode::kBlend:
        for (int32_t x = 0; x < o.width; ++x) to[x] = BlendPixel(from[x], to[x]);
        break;
    }
  }
  return true;
}

void CopyPixels(uint32_t* destination, const uint32_t* source, size_t count) {
  if (destination == nullptr || source == nullptr || count == 0) return;
  std::memcpy(destination, source, count * sizeof(uint32_t));
}

}  // namespace lx
