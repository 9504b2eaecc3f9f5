// Colour, gradient and texture settings of one filled layer (the Face or the Outline): plain data the
// layer drawing reads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "image/pixel_view.h"
#include "settings/texture_image.h"

namespace lx {

constexpr double kPi = 3.141592653589793;
constexpr size_t kMaxColourStops = 256;

// Everything one filled layer (the Face or the Outline) is drawn with but its texture: plain data,
// copied by assignment.
struct FillStyle {
  uint32_t startColour = 0;  // c0 | c1 << 8 | c2 << 16 | alpha << 24, c0 red
  uint32_t endColour = 0;
  int32_t gradientType = 0;   // 0..3
  int32_t fillType = 0;       // 0 colour or gradient, 1 texture (while a texture is set)
  int32_t textureTiling = 2;  // 0 centred, 1 stretched, 2 tiled
  double gradientFrom = 0.5;  // type 2 parameters, 0..1
  double gradientTo = 0.5;
  double gradientAngle = 0.0;  // type 3, radians in [-pi, pi]
  uint8_t gradientFitMode = 0;
  uint8_t useGradientTable = 0;  // 1 while the colour stops are in force
  IntRect userGradientArea;
  uint8_t blurLevel = 0;
  // The lists come last: a copy that runs out of memory for them has taken every other value.
  std::vector<uint32_t> gradientColours;
  std::vector<uint32_t> gradientStops;  // one weight per colour
};

// A filled layer's settings with its texture, which is a copy of caller pixels owned by the layer.
struct FillSettings : FillStyle {
  std::unique_ptr<TextureImage> texture;

  bool textureInUse() const { return fillType == 1 && texture != nullptr; }

  // Start or end colour from c0 | c1 << 8 | c2 << 16 and an alpha; takes the stop table out of force.
  void setStartColour(uint32_t rgb, uint8_t alpha);
  void setEndColour(uint32_t rgb, uint8_t alpha);
  // Replaces the colour stops. Both lists are emptied whatever the outcome; false for a count of 0, a
  // null colour array or caller memory that is not readable and writable (the flag then keeps its
  // value), and when memory runs out. Weights are relative: all zero (or no stop array) counts as all 1,
  // a zero weight beside non-zero ones drops its colour. At most kMaxColourStops entries are kept.
  bool setGradientColours(const uint32_t* colours, const uint32_t* stops, const uint8_t* count) noexcept;
  // The same with the count as a number; the interface's byte count keeps the cap out of reach, this
  // form does not.
  bool setGradientColours(const uint32_t* colours, const uint32_t* stops, size_t count) noexcept;
  // Type dispatch: 0 and 1 store the type; 2 stores the clamped parameters, then the type; 3 the clamped
  // angle from p1, then the type; any other type stores 0. Parameters not needed are not read (and may
  // then be null or dangling); those that are read must be valid.
  void setGradient(int32_t type, const double* p1, const double* p2);
  // Both clamped to [0, 1]; a NaN is stored as it is.
  void setGradientParameters(double from, double to);
  // Clamped to [-pi, pi].
  void setGradientAngle(double radians);
  // Stored unchanged; true when the area is not empty.
  bool setUserGradientArea(int32_t left, int32_t top, int32_t right, int32_t bottom);
  // Copies caller pixels, made opaque. Any old texture goes first, whatever the outcome: false (and no
  // texture) for a null pointer, a size below 1, memory that is not readable and writable, or a record
  // that cannot be allocated.
  bool setTexture(const void* pixels, int32_t width, int32_t height) noexcept;
  // setTexture with another record's pixels and size; false for null, which changes nothing.
  bool takeTextureFrom(const TextureImage* other) noexcept;
  // Every setting but the texture. False when memory ran out for the colour lists, which are then empty.
  bool copySettingsFrom(const FillSettings& other) noexcept;
};

}  // namespace lx
