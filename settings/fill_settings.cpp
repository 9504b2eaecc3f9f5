#include "settings/fill_settings.h"

#include <cstdint>
#include <new>

#include "image/caller_memory.h"

namespace lx {

namespace {

constexpr uint32_t kRgbMask = 0x00FFFFFFu;

// The alpha byte replaces the top byte of a colour whose low 24 bits are already in place.
uint32_t WithAlpha(uint32_t colour, uint8_t alpha) {
  return (colour & kRgbMask) | (static_cast<uint32_t>(alpha) << 24);
}

double Clamp(double v, double lo, double hi) {
  if (v < lo) return lo;
  if (v > hi) return hi;
  return v;  // NaN passes through unchanged
}

}  // namespace

void FillSettings::setStartColour(uint32_t rgb, uint8_t alpha) {
  startColour = (startColour & ~kRgbMask) | (rgb & kRgbMask);
  useGradientTable = 0;
  startColour = WithAlpha(startColour, alpha);
}

void FillSettings::setEndColour(uint32_t rgb, uint8_t alpha) {
  endColour = (endColour & ~kRgbMask) | (rgb & kRgbMask);
  useGradientTable = 0;
  endColour = WithAlpha(endColour, alpha);
}

bool FillSettings::setGradientColours(const uint32_t* colours, const uint32_t* stops,
                                      const uint8_t* count) noexcept {
  return setGradientColours(colours, stops, static_cast<size_t>(count != nullptr ? *count : 0));
}

bool FillSettings::setGradientColours(const uint32_t* colours, const uint32_t* stops, size_t n) noexcept {
  const uint64_t bytes = static_cast<uint64_t>(n) * 4;

  bool ok = n != 0 && ValidateCallerMemory(colours, bytes, true);
  uint32_t weightSum = 0;  // wraps like the caller's unsigned arithmetic would
  if (ok && stops != nullptr) {
    ok = ValidateCallerMemory(stops, bytes, true);
    if (ok) {
      for (size_t i = 0; i < n; ++i) weightSum += stops[i];
    }
  }

  // A failed call still clears the table; the use flag keeps whatever it was.
  gradientColours.clear();
  gradientStops.clear();
  if (!ok) return false;

  const bool uniform = stops == nullptr || weightSum == 0;
  try {
    const size_t room = n < kMaxColourStops ? n : kMaxColourStops;
    gradientColours.reserve(room);
    gradientStops.reserve(room);
  } catch (const std::bad_alloc&) {
    return false;
  }
  // With the room reserved, push_back below cannot allocate.
  for (size_t i = 0; i < n; ++i) {
    const uint32_t weight = uniform ? 1u : stops[i];
    if (weight == 0) continue;  // a zero weight beside non-zero ones drops its colour
    gradientStops.push_back(weight);
    gradientColours.push_back(colours[i]);
    if (gradientColours.size() == kMaxColourStops) break;
  }
  useGradientTable = 1;
  return true;
}

void FillSettings::setGradient(int32_t type, const double* p1, const double* p2) {
  switch (type) {
    case 0:
    case 1:
      gradientType = type;
      break;
    case 2:
      setGradientParameters(*p1, *p2);
      gradientType = 2;
      break;
    case 3:
      setGradientAngle(*p1);
      gradientType = 3;
      break;
    default:
      gradientType = 0;
      break;
  }
}

void FillSettings::setGradientParameters(double from, double to) {
  gradientFrom = Clamp(from, 0.0, 1.0);
  gradientTo = Clamp(to, 0.0, 1.0);
}

void FillSettings::setGradientAngle(double radians) {
  gradientAngle = Clamp(radians, -kPi, kPi);
}

bool FillSettings::setUserGradientArea(int32_t left, int32_t top, int32_t right, int32_t bottom) {
  userGradientArea = {left, top, right, bottom};
  return !userGradientArea.empty();
}

bool FillSettings::setTexture(const void* pixels, int32_t width, int32_t height) noexcept {
  // Whatever happens next, the old texture is gone: a bad call leaves the layer untextured.
  texture.reset();
  if (pixels == nullptr || width < 1 || height < 1) return false;
  const uint64_t bytes = static_cast<uint64_t>(width) * static_cast<uint64_t>(height) * 4;
  if (bytes > SIZE_MAX || !ValidateCallerMemory(pixels, bytes, true)) return false;
  texture = TextureImage::CopyOpaque(static_cast<const uint32_t*>(pixels), width, height);
  return texture != nullptr;
}

bool FillSettings::takeTextureFrom(const TextureImage* other) noexcept {
  if (other == nullptr) return false;
  return setTexture(other->pixels, other->width, other->height);
}

bool FillSettings::copySettingsFrom(const FillSettings& other) noexcept {
  if (this == &other) return true;
  try {
    static_cast<FillStyle&>(*this) = other;
  } catch (const std::bad_alloc&) {
    gradientColours.clear();
    gradientStops.clear();
    return false;
  }
  return true;
}

}  // namespace lx
