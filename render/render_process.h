// The object behind a RenderHandle: every setting of the three layers, the decoded outline, and the
// effect objects and work images the drawing uses.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "image/pixel_buffer.h"
#include "image/pixel_view.h"
#include "platform/platform.h"
#include "settings/affine.h"
#include "settings/effect_settings.h"
#include "settings/fill_settings.h"
#include "settings/outline_path.h"

namespace lx {

class BevelFilter;
class EmbossFilter;
class ChannelTint;
class BlurFilter;
class ToneTables;
class LayerScratch;
struct FaceEmbossScratch;

// The effect settings are inherited so that they are copied as one plain value (copySettingsFrom). A new
// setting belongs in EffectSettings or in the layers' FillStyle: a member of its own here is not copied.
class RenderProcess : public EffectSettings {
 public:
  RenderProcess() noexcept;
  ~RenderProcess();
  RenderProcess(const RenderProcess&) = delete;
  RenderProcess& operator=(const RenderProcess&) = delete;

  // Copies every setting except the textures and the shadowVisible / shadowOnly flags, and rebuilds
  // this process's emboss objects from the source's. The glyph transform, stroke width and path
  // are not settings and stay as they are. False when memory ran out for a colour list (left empty).
  // Everything else is copied by assignment: a setting added to EffectSettings or FillStyle needs no
  // edit here.
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

  FillSettings face;     // defaults: opaque white
  FillSettings outline;  // defaults: transparent black
  uint8_t shadowVisible = 1;
  uint8_t shadowOnly = 0;

  // Effect objects, in creation order; any may be null after a failed allocation.
  std::unique_ptr<BevelFilter> bevel;
  std::unique_ptr<EmbossFilter> emboss;
  std::unique_ptr<ChannelTint> tint;
  std::unique_ptr<BlurFilter> blur;
  std::unique_ptr<ToneTables> tones;
  std::unique_ptr<LayerScratch> layers;
  std::unique_ptr<FaceEmbossScratch> embossScratch;

  // The outline decoded by the last Render.
  OutlinePath path;

  // The work images of the last Render, kept for the next call while they are small, so that a process
  // drawing one line after another does not allocate and fault in fresh memory each time.
  static constexpr uint64_t kKeptScratchBytes = uint64_t{4} << 20;
  PixelBuffer scratch[2];
  // Releases the work images, and the blur's, bevel's, emboss's and layer drawing's scratch, larger
  // than kKeptScratchBytes.
  void trimScratch();
};

}  // namespace lx
