#include "effects/shadow_extrusion.h"

#include <algorithm>
#include <cstring>

#include "effects/alpha_plane.h"
#include "effects/blur_filter.h"
#include "image/pixel_ops.h"
#include "platform/platform.h"
#include "effects/compositing.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace lx {

namespace {

// The softening blurs with radius 1 this many times over.
constexpr int kSofteningRepeats = 3;

// Lines longer than this along their major axis are not walked point by point (see Walk).
constexpr int64_t kLongestWalk = int64_t{1} << 22;

// The layer and its untouched copy: as pixels, or (when every pixel with alpha holds one colour) as
// alpha planes.
struct StampContext {
  bool planes = false;
  PlacedView copy;   // the untouched copy, placed at (0, 0)
  PlacedView layer;  // the layer, placed at the current stamp point
  AlphaPlane copyAlpha, layerAlpha;
};

// One stamp per point of the line. A point more than the layer's size away cannot overlap it: it is
// skipped before any rectangle is formed, so no coordinate can overflow.
void StampAt(int x, int y, intptr_t data) {
  StampContext& c = *reinterpret_cast<StampContext*>(data);
  const int32_t width = c.copy.view.width;
  const int32_t height = c.copy.view.height;
  if (x == 0 && y == 0) return;
  if (x <= -width || x >= width || y <= -height || y >= height) return;
  if (c.planes) {
    // The layer's pixel (i - x, j - y) takes the copy's (i, j), as BlendOver of the copy at (0, 0) onto
    // the layer placed at (x, y) lays it.
    BlendAlphaOver(c.copyAlpha, c.layerAlpha, -x, -y);
    return;
  }
  c.layer.rect = {x, y, x + width, y + height};
  BlendOver(c.copy, c.layer);
}

int64_t Gcd(int64_t a, int64_t b) {
  while (b != 0) {
    const int64_t t = a % b;
    a = b;
    b = t;
  }
  return a;
}

// The walk from (-dx, -dy) to (0, 0). Only its last points can reach the layer: those less than the
// layer's extent along the line's major axis from the end. A short line is walked with LineDDA as it
// is. A long one repeats with the period (dx, dy) / gcd(dx, dy): started one whole period further on,
// LineDDA reports exactly the remaining points of the full walk, so the whole periods that lie out of
// reach are dropped first. Only a long line with a long period (its extents share no large divisor)
// is left; its reachable points are computed directly by the rule LineDDA follows (Bresenham along the
// major axis, error 2 * minor - major to start, a minor step only while the error is positive, equal
// extents counting as steep), as the same points the full walk would report.
void Walk(StampContext& context, int32_t dx, int32_t dy) {
  const int64_t ax = dx < 0 ? -int64_t{dx} : dx;
  const int64_t ay = dy < 0 ? -int64_t{dy} : dy;
  const bool steep = ax <= ay;
  const int64_t major = steep ? ay : ax;
  const int64_t minor = steep ? ax : ay;
  const int64_t extent = steep ? context.copy.view.height : context.copy.view.width;
  const int64_t g = Gcd(ax, ay);
  const int64_t period = major / g;
  const int64_t skipped = major > extent ? (major - extent) / period : 0;
  const int64_t kept = g - skipped;
  if (kept * period <= kLongestWalk) {
    const int startX = static_cast<int>(-(dx / g) * kept);
    const int startY = static_cast<int>(-(dy / g) * kept);
    platform::LineDDA(startX, startY, 0, 0, StampAt, reinterpret_cast<intptr_t>(&context));
    return;
  }

  const int64_t majorSign = (steep ? dy : dx) < 0 ? 1 : -1;  // the start is at minus the offset
  const int64_t minorSign = (steep ? dx : dy) < 0 ? 1 : -1;
  const uint64_t twiceMinor = 2 * static_cast<uint64_t>(minor);
  const uint64_t twiceMajor = 2 * static_cast<uint64_t>(major);
  for (int64_t i = std::max<int64_t>(0, major - extent + 1); i < major; ++i) {
    // Minor steps taken before point i: ceil((2 * minor * i - major) / (2 * major)), at least 0.
    const uint64_t reach = twiceMinor * static_cast<uint64_t>(i);
    const uint64_t u = static_cast<uint64_t>(major);
    const int64_t steps = reach > u ? static_cast<int64_t>((reach - u + twiceMajor - 1) / twiceMajor) : 0;
    const int64_t along = majorSign * (major - i);
    const int64_t across = minorSign * (minor - steps);
    const int64_t x = steep ? across : along;
    const int64_t y = steep ? along : across;
    if (x <= -context.copy.view.width || x >= context.copy.view.width) continue;
    if (y <= -context.copy.view.height || y >= context.copy.view.height) continue;
    StampAt(static_cast<int>(x), static_cast<int>(y), reinterpret_cast<intptr_t>(&context));
  }
}

// The stamping of `image` as two alpha planes in `block` (twice its pixels in bytes): the layer's alpha,
// then the untouched copy's.
void TakePlanes(StampContext& context, const PixelView& image, uint8_t* block) {
  const size_t count = static_cast<size_t>(image.width) * static_cast<size_t>(image.height);
  context.planes = true;
  context.copy.view = {block, image.width, image.height, image.width * 4};  // its size bounds the stamps
  context.layerAlpha = {block, image.width, image.height, image.width};
  context.copyAlpha = {block + count, image.width, image.height, image.width};
  TakeAlpha(image, context.layerAlpha);
  std::memcpy(context.copyAlpha.alpha, context.layerAlpha.alpha, count);
}

// The softening's edge step: with A the block's highest alpha, a becomes 2a - A/2 held to [0, A]. The
// blur leaves a ramp some six pixels wide across the outline; twice as steep about half the body's alpha,
// it keeps the smoothed course of the outline at about two pixels' width, where it was.
inline uint32_t SoftenedAlpha(uint32_t alpha, int32_t body) {
  return static_cast<uint32_t>(std::clamp(2 * static_cast<int32_t>(alpha) - body / 2, 0, body));
}

// The softening on an alpha plane; rows holds 2 * width + 2 bytes of scratch.
void SoftenPlane(const AlphaPlane& plane, int32_t body, uint8_t* rows, KernelPath path) {
  BlurAlphaRadiusOne(plane, kSofteningRepeats, rows, path);
  [[maybe_unused]] const bool wide = path == KernelPath::kWide && HasWideKernels();
  for (int32_t y = 0; y < plane.height; ++y) {
    uint8_t* row = plane.row(y);
    int32_t x = 0;
#if defined(__SSE2__)
    if (wide) {
      // 2a - A/2 in 16-bit lanes, held to [0, A] (A is at most 255).
      const __m128i zero = _mm_setzero_si128(), half = _mm_set1_epi16(static_cast<short>(body / 2));
      const __m128i most = _mm_set1_epi16(static_cast<short>(std::clamp(body, 0, 255)));
      const auto step = [&](__m128i a) {
        return _mm_min_epi16(_mm_max_epi16(_mm_sub_epi16(_mm_add_epi16(a, a), half), zero), most);
      };
      for (; x + 16 <= plane.width; x += 16) {
        const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(row + x));
        _mm_storeu_si128(
            reinterpret_cast<__m128i*>(row + x),
            _mm_packus_epi16(step(_mm_unpacklo_epi8(a, zero)), step(_mm_unpackhi_epi8(a, zero))));
      }
    }
#endif
    for (; x < plane.width; ++x) row[x] = static_cast<uint8_t>(SoftenedAlpha(row[x], body));
  }
}

}  // namespace

uint8_t HighestAlpha(const PixelView& image) {
  uint32_t highest = 0;
  for (int32_t y = 0; y < image.height; ++y) {
    const uint32_t* row = image.row(y);
    for (int32_t x = 0; x < image.width; ++x) highest = std::max(highest, row[x] >> 24);
  }
  return static_cast<uint8_t>(highest);
}

uint8_t StackedAlpha(uint8_t alpha, int64_t layers) {
  if (layers < 1) return 0;
  uint32_t stacked = alpha;
  // Each layer adds at least one unit until the sum stops growing, so this ends within 255 layers.
  for (int64_t i = 1; i < layers; ++i) {
    const uint32_t next = ((256u - alpha) * stacked + 256u * alpha) >> 8;
    if (next == stacked) break;
    stacked = next;
  }
  return static_cast<uint8_t>(stacked);
}

void Extrude(const PixelView& image, int32_t dx, int32_t dy) {
  if (image.empty() || (dx == 0 && dy == 0)) return;
  const uint64_t count = static_cast<uint64_t>(image.width) * static_cast<uint64_t>(image.height);
  if (count > SIZE_MAX / 4) return;
  // A layer in one colour is stamped as two alpha planes, the layer's and the copy's, in the same block.
  uint32_t colour = 0;
  StampContext context;
  context.planes = OneColour(image, &colour);
  platform::MemoryHandle handle = nullptr;
  void* block = platform::AllocateLockedBlock(static_cast<size_t>(count * (context.planes ? 2 : 4)), &handle);
  if (block == nullptr) return;

  if (context.planes) {
    TakePlanes(context, image, static_cast<uint8_t*>(block));
    Walk(context, dx, dy);
    // BlendOver never lowers alpha: a pixel still transparent was never stamped and keeps its colour.
    PutAlpha(context.layerAlpha, colour, image);
  } else {
    auto* copy = static_cast<uint32_t*>(block);
    context.copy.view = {static_cast<uint8_t*>(block), image.width, image.height, image.width * 4};
    context.copy.rect = {0, 0, image.width, image.height};
    context.layer.view = image;
    const size_t width = static_cast<size_t>(image.width);
    if (static_cast<size_t>(image.stride) == width * 4) {
      CopyPixels(copy, image.row(0), static_cast<size_t>(count));
    } else {
      for (int32_t y = 0; y < image.height; ++y) CopyPixels(copy + y * width, image.row(y), width);
    }
    Walk(context, dx, dy);
  }
  platform::ReleaseLockedBlock(handle);
}

void ExtrudeShadow(const PixelView& image, int32_t dx, int32_t dy, uint8_t extrudedShadowColour,
                   int32_t densest) {
  if (image.empty() || (dx == 0 && dy == 0)) return;
  if (extrudedShadowColour == 1) {
    Extrude(image, dx, dy);
    return;
  }
  const uint32_t body = uint32_t{densest < 0 ? HighestAlpha(image) : static_cast<uint8_t>(densest)} << 24;
  Extrude(image, dx, dy);
  for (int32_t y = 0; y < image.height; ++y) {
    uint32_t* row = image.row(y);
    for (int32_t x = 0; x < image.width; ++x) {
      if ((row[x] & 0xFF000000u) > body) row[x] = (row[x] & 0x00FFFFFFu) | body;
    }
  }
}

void SoftenExtrusion(const PixelView& image, BlurFilter* blur, int32_t densest, KernelPath path) {
  if (image.empty() || blur == nullptr) return;
  const int32_t body = densest < 0 ? HighestAlpha(image) : std::min(densest, 255);
  // A block in one colour is blurred as its alpha plane. Each pixel the blur leaves with alpha takes
  // that colour, as the colour bleed gives it on the pixels; those left transparent keep theirs.
  uint32_t colour = 0;
  const size_t width = static_cast<size_t>(image.width), height = static_cast<size_t>(image.height);
  uint8_t* bytes = width <= (SIZE_MAX - 2 * width - 2) / height && OneColour(image, &colour)
                       ? blur->byteScratch(width * height + 2 * width + 2)
                       : nullptr;
  if (bytes != nullptr) {
    const AlphaPlane plane{bytes, image.width, image.height, image.width};
    TakeAlpha(image, plane);
    SoftenPlane(plane, body, bytes + width * height, path);
    PutAlpha(plane, colour, image);
    return;
  }
  const bool alphaOnly[4] = {false, false, false, true};
  blur->blurChannels(image, 1, 1, alphaOnly, kSofteningRepeats);
  for (int32_t y = 0; y < image.height; ++y) {
    uint32_t* row = image.row(y);
    for (int32_t x = 0; x < image.width; ++x)
      row[x] = (row[x] & 0x00FFFFFFu) | SoftenedAlpha(row[x] >> 24, body) << 24;
  }
}

void ExtrudeAndSoften(const PixelView& image, int32_t dx, int32_t dy, uint8_t extrudedShadowColour,
                      BlurFilter* blur) {
  uint32_t colour = 0;
  const uint64_t count = static_cast<uint64_t>(image.width) * static_cast<uint64_t>(image.height);
  const bool planes = !image.empty() && blur != nullptr && (dx != 0 || dy != 0) && count <= SIZE_MAX / 4 &&
                      OneColour(image, &colour);
  platform::MemoryHandle handle = nullptr;
  void* block = planes ? platform::AllocateLockedBlock(static_cast<size_t>(2 * count), &handle) : nullptr;
  uint8_t* rows = block != nullptr ? blur->byteScratch(2 * static_cast<size_t>(image.width) + 2) : nullptr;
  if (rows == nullptr) {
    platform::ReleaseLockedBlock(handle);
    ExtrudeShadow(image, dx, dy, extrudedShadowColour);
    SoftenExtrusion(image, blur);
    return;
  }
  // The block stays an alpha plane from the first stamp to the end of the softening.
  StampContext context;
  TakePlanes(context, image, static_cast<uint8_t*>(block));
  const AlphaPlane& layer = context.layerAlpha;
  uint8_t* bytes = layer.alpha;
  const bool even = extrudedShadowColour != 1;
  const uint8_t body = even ? HighestAlpha(layer) : 0;
  Walk(context, dx, dy);
  if (even) {
    for (uint64_t i = 0; i < count; ++i) bytes[i] = std::min(bytes[i], body);
  }
  SoftenPlane(layer, HighestAlpha(layer), rows, KernelPath::kWide);
  PutAlpha(layer, colour, image);
  platform::ReleaseLockedBlock(handle);
}

uint8_t HighestAlpha(const AlphaPlane& plane) {
  uint8_t highest = 0;
  for (int32_t y = 0; y < plane.height; ++y) {
    const uint8_t* row = plane.row(y);
    int32_t x = 0;
#if defined(__SSE2__)
    __m128i most = _mm_setzero_si128();
    for (; x + 16 <= plane.width; x += 16)
      most = _mm_max_epu8(most, _mm_loadu_si128(reinterpret_cast<const __m128i*>(row + x)));
    alignas(16) uint8_t lanes[16];
    _mm_store_si128(reinterpret_cast<__m128i*>(lanes), most);
    for (uint8_t v : lanes) highest = std::max(highest, v);
#endif
    for (; x < plane.width; ++x) highest = std::max(highest, row[x]);
  }
  return highest;
}

}  // namespace lx
