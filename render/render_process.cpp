#include "render/render_process.h"

#include <new>

#include "effects/bevel_filter.h"
#include "effects/blur_filter.h"
#include "effects/channel_tint.h"
#include "effects/emboss_filter.h"
#include "effects/face_emboss.h"
#include "effects/layer_drawing.h"
#include "effects/tone_tables.h"

namespace lx {

namespace {

constexpr double kByteToUnit = 0.00392156862745098;  // 1 / 255 as the tint tables expect it
constexpr double kMaxStrokeWidth = 1000.0;

double ClampAngle(double radians) {
  if (radians < -kPi) return -kPi;
  if (radians > kPi) return kPi;
  return radians;
}

uint8_t FlagSetter(uint8_t* field, const uint8_t* value) {
  if (value != nullptr) *field = *value;
  return *field;
}

}  // namespace

RenderProcess::RenderProcess() noexcept {
  face.startColour = 0xFFFFFFFFu;
  face.endColour = 0xFFFFFFFFu;

  // Released in this same order by the destructor. A failed allocation leaves its pointer null, which
  // every user tests for: the process itself stays usable.
  bevel.reset(new (std::nothrow) BevelFilter);
  emboss.reset(new (std::nothrow) EmbossFilter);
  tint.reset(new (std::nothrow) ChannelTint);
  if (tint) tint->setFactors(embossLight[0], embossLight[1], embossLight[2]);
  blur.reset(new (std::nothrow) BlurFilter);
  tones.reset(new (std::nothrow) ToneTables);
  layers.reset(new (std::nothrow) LayerScratch);
  embossScratch.reset(new (std::nothrow) FaceEmbossScratch);
}

RenderProcess::~RenderProcess() {
  face.texture.reset();
  outline.texture.reset();
  bevel.reset();
  emboss.reset();
  tint.reset();
  blur.reset();
  tones.reset();
  layers.reset();
  embossScratch.reset();
}

void RenderProcess::trimScratch() {
  for (PixelBuffer& image : scratch) {
    if (image.ownedBytes() > kKeptScratchBytes) image.release();
  }
  if (blur) blur->trimScratch(kKeptScratchBytes);
  if (bevel) bevel->trimScratch(kKeptScratchBytes);
  if (layers) layers->trim(kKeptScratchBytes);
  if (embossScratch) embossScratch->trim(kKeptScratchBytes);
}

bool RenderProcess::copySettingsFrom(const RenderProcess& other) noexcept {
  if (this == &other) return true;
  static_cast<EffectSettings&>(*this) = other;
  const bool faceListsCopied = face.copySettingsFrom(other.face);
  const bool outlineListsCopied = outline.copySettingsFrom(other.outline);
  // The emboss objects are rebuilt from what the source's objects hold, not from its stored values.
  double angle = 0.0;
  uint8_t p = 0, q = 0, r = 0;
  other.readEmbossParameters(&angle, &p, &q, &r);
  setEmbossParameters(angle, p, q, r);
  return faceListsCopied && outlineListsCopied;
}

void RenderProcess::setShadowOffset(int32_t x, int32_t y) {
  shadowOffsetX = x;
  shadowOffsetY = y;
}

void RenderProcess::setShadowColour(uint32_t rgb, uint8_t alpha) {
  shadowColour = rgb & 0x00FFFFFFu;
  shadowAlpha = alpha;
}

void RenderProcess::setShadowZoom(double x, double y) {
  if (x > 0.0) shadowZoomX = x;
  if (y > 0.0) shadowZoomY = y;
}

uint8_t RenderProcess::setShadowExtruded(const uint8_t* on) {
  return FlagSetter(&shadowExtruded, on);
}

uint8_t RenderProcess::setExtrudedShadowColour(const uint8_t* value) {
  return FlagSetter(&extrudedShadowColour, value);
}

uint8_t RenderProcess::enableFaceEmbossed(const uint8_t* on) {
  return FlagSetter(&faceEmbossed, on);
}

uint8_t RenderProcess::enableOutline3DBorder(const uint8_t* on) {
  return FlagSetter(&outline3DBorder, on);
}

void RenderProcess::setOutline3DBorder(uint8_t width, uint8_t depth, double angle) {
  border3DWidth = width < 3 ? 3 : (width > 60 ? 60 : width);
  border3DDepth = depth == 0 ? 1 : (depth > 60 ? 60 : depth);
  border3DAngle = ClampAngle(angle);
}

void RenderProcess::setOutlineThickness(int32_t thickness) {
  // The stroke is centred on the contour, so a thickness per side doubles into the full width.
  double w = static_cast<double>(thickness) * 2.0;
  if (w < 0.0) {
    w = 0.0;
  } else if (w > kMaxStrokeWidth) {
    w = kMaxStrokeWidth;
  }
  strokeWidth = w;
  halfStrokeWidth = w / 2.0;
}

void RenderProcess::setTranslation(int32_t dx, int32_t dy) {
  glyphMatrix.translate(static_cast<double>(dx), static_cast<double>(dy));
}

void RenderProcess::resetTranslation() {
  glyphMatrix = Affine{};
}

void RenderProcess::setEmbossParameters(double angle, uint8_t p, uint8_t q, uint8_t r) {
  embossAngle = ClampAngle(angle);
  if (emboss) emboss->setAzimuth(embossAngle);
  if (tint) {
    embossLight[0] = p * kByteToUnit;
    embossLight[1] = q * kByteToUnit;
    embossLight[2] = r * kByteToUnit;
    tint->setFactors(embossLight[0], embossLight[1], embossLight[2]);
  }
}

void RenderProcess::readEmbossParameters(double* angle, uint8_t* p, uint8_t* q, uint8_t* r) const {
  const auto toByte = [](double factor) { return static_cast<uint8_t>(static_cast<int>(factor * 255.0)); };
  if (angle != nullptr) *angle = emboss ? emboss->azimuth() : embossAngle;
  const double f0 = tint ? tint->factor(0) : embossLight[0];
  const double f1 = tint ? tint->factor(1) : embossLight[1];
  const double f2 = tint ? tint->factor(2) : embossLight[2];
  if (p != nullptr) *p = toByte(f0);
  if (q != nullptr) *q = toByte(f1);
  if (r != nullptr) *r = toByte(f2);
}

}  // namespace lx
