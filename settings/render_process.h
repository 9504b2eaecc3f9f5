// The object behind a RenderHandle: every setting of the three layers, the decoded outline, the surface
// a layer is drawn into, and the effect objects the drawing uses.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "image/pixel_buffer.h"
#include "image/pixel_view.h"
#include "platform/platform.h"
#include "settings/affine.h"
#include "settings/outline_path.h"
#include "settings/texture_image.h"

namespace lx {

class BevelFilter;
class EmbossFilter;
class ChannelTint;
class BlurFilter;
class ToneTables;

constexpr double kPi = 3.141592653589793;
constexpr size_t kMaxColourStops = 256;

// Colour, gradient and texture settings of one filled layer (the Face or the Outline).
struct FillSettings {
  uint32_t startColour = 0;  // c0 | c1 << 8 | c2 << 16 | alpha << 24, c0 red
  uint32_t endColour = 0;
  std::unique_ptr<TextureImage> texture;
  int32_t gradientType = 0;   // 0..3
  int32_t fillType = 0;       // 0 colour or gradient, 1 texture (while a texture is set)
  int32_t textureTiling = 2;  // 0 centred, 1 stretched, 2 tiled
  double gradientFrom = 0.5;  // type 2 parameters, 0..1
  double gradientTo = 0.5;
  double gradientAngle = 0.0;  // type 3, radians in [-pi, pi]
  std::vector<uint32_t> gradientColours;
  std::vector<uint32_t> gradientStops;  // one weight per colour
  uint8_t gradientFitMode = 0;
  uint8_t useGradientTable = 0;  // 1 while the colour stops are in force
  platform::RECT userGradientArea{0, 0, 0, 0};
  uint8_t blurLevel = 0;

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

class RenderProcess {
 public:
  RenderProcess() noexcept;
  ~RenderProcess();
  RenderProcess(const RenderProcess&) = delete;
  RenderProcess& operator=(const RenderProcess&) = delete;

  // Copies every setting except the textures and the shadowVisible / shadowOnly flags, and rebuilds
  // this process's emboss objects from the source's. The glyph transform, stroke width, path and surface
  // are not settings and stay as they are. False when memory ran out for a colour list (left empty).
  bool copySettingsFrom(const RenderProcess& other) noexcept;

  void setShadowOffset(int32_t x, int32_t y);
  void setShadowColour(uint32_t rgb, uint8_t alpha);
  // Each factor is stored only when it is greater than 0.
  void setShadowZoom(double x, double y);
  void setShadowVisible(uint8_t on) { shadowVisible = on; }
  void setShadowOnly(uint8_t on) { shadowOnly = on; }
  // Flag setters: store the byte when the pointer is not null; return the current value.
  uint8_t setShadowExtruded(const uint8_t* on);
  uint8_t setExtrudedShadowColour(const uint8_t* value);
  uint8_t enableFaceEmbossed(const uint8_t* on);
  uint8_t enableOutline3DBorder(const uint8_t* on);
  // Width clamped to 3..60, depth to 1..60, angle to [-pi, pi].
  void setOutline3DBorder(uint8_t width, uint8_t depth, double angle);
  // Stroke width 2 * thickness, clamped to [0, 1000].
  void setOutlineThickness(int32_t thickness);
  void setTranslation(int32_t dx, int32_t dy);
  void resetTranslation();
  // Angle clamped to [-pi, pi]; the three bytes become the tint factors (byte / 255).
  void setEmbossParameters(double angle, uint8_t p, uint8_t q, uint8_t r);
  // The azimuth held by the emboss filter and the tint factors times 255, truncated. Without the
  // objects, the values stored in this process stand in.
  void readEmbossParameters(double* angle, uint8_t* p, uint8_t* q, uint8_t* r) const;

  // Text-engine part: the glyph transform and the Outline stroke.
  Affine glyphMatrix;
  double strokeWidth = 1.0;
  double halfStrokeWidth = 0.5;

  int32_t shadowOffsetX = 0;
  int32_t shadowOffsetY = 0;
  uint32_t shadowColour = 0;  // c0 | c1 << 8 | c2 << 16, bits 24-31 zero
  int32_t shadowAlpha = 0;
  FillSettings face;     // defaults: opaque white
  FillSettings outline;  // defaults: transparent black
  uint8_t faceEmbossed = 0;
  double embossLight[4] = {0.0, 0.0, 0.0, 0.0};
  double embossAngle = 0.0;
  double shadowZoomX = 1.0;
  double shadowZoomY = 1.0;
  uint8_t shadowVisible = 1;
  uint8_t shadowOnly = 0;
  uint8_t shadowExtruded = 0;
  uint8_t extrudedShadowColour = 1;
  uint8_t outline3DBorder = 0;
  double border3DAngle = 0.0;
  uint8_t shadowBlurLevel = 0;
  uint8_t border3DDepth = 1;
  uint8_t border3DWidth = 3;

  // Effect objects, in creation order; any may be null after a failed allocation.
  std::unique_ptr<BevelFilter> bevel;
  std::unique_ptr<EmbossFilter> emboss;
  std::unique_ptr<ChannelTint> tint;
  std::unique_ptr<BlurFilter> blur;
  std::unique_ptr<ToneTables> tones;
  uint8_t hasMMX = 0;

  // The outline decoded by the last Render, and the surface the layer drawing writes into.
  OutlinePath path;
  PixelView surface;
  // The area the layer drawing lays shapes out in, in the surface's coordinates, when the surface holds
  // only part of it (then its left and top are zero or negative); empty when the surface is the area.
  IntRect surfaceArea;

  // The work images of the last Render, kept for the next call while they are small, so that a process
  // drawing one line after another does not allocate and fault in fresh memory each time.
  static constexpr uint64_t kKeptScratchBytes = uint64_t{4} << 20;
  PixelBuffer scratch[2];
  // Releases the work images, and the blur's and bevel's scratch, larger than kKeptScratchBytes.
  void trimScratch();
};

}  // namespace lx
