// A render process for tests, set through the exported functions with plain values. Header-only, so
// that each test links it against the library it is testing (the static core or the shipped DLL).
#pragma once

#include <cstdint>
#include <vector>

#include "lettrix/lettrix.h"
#include "tests/support/scene.h"

namespace lx::test {

class Process {
 public:
  Process() : slot_(CreateRenderProcess()) {}
  ~Process() { DestroyRenderProcess(&slot_); }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  RenderHandle* slot() { return &slot_; }

  // Colours are (alpha, red, green, blue). A solid layer sets its start and end colours alike.
  Process& face(uint8_t a, uint8_t r, uint8_t g, uint8_t b) {
    return faceStart(a, r, g, b).faceEnd(a, r, g, b);
  }
  Process& faceStart(uint8_t a, uint8_t r, uint8_t g, uint8_t b) {
    return set(SetColorFaceStart, a, r, g, b);
  }
  Process& faceEnd(uint8_t a, uint8_t r, uint8_t g, uint8_t b) { return set(SetColorFaceEnd, a, r, g, b); }
  Process& outline(uint8_t a, uint8_t r, uint8_t g, uint8_t b) {
    return outlineStart(a, r, g, b).outlineEnd(a, r, g, b);
  }
  Process& outlineStart(uint8_t a, uint8_t r, uint8_t g, uint8_t b) {
    return set(SetColorOutlineStart, a, r, g, b);
  }
  Process& outlineEnd(uint8_t a, uint8_t r, uint8_t g, uint8_t b) {
    return set(SetColorOutlineEnd, a, r, g, b);
  }
  Process& thickness(int32_t t) { return set(SetOutlineThickness, t); }
  Process& shadow(uint8_t a, uint8_t r, uint8_t g, uint8_t b) { return set(SetShadowColor, a, r, g, b); }
  Process& shadowOffset(int32_t x, int32_t y) { return set(SetShadowOffset, x, y); }
  Process& shadowZoom(double x, double y) { return set(SetShadowZoom, x, y); }
  Process& shadowVisible(uint8_t on) { return set(SetShadowVisible, on); }
  Process& shadowOnly(uint8_t on) { return set(SetDrawShadowOnly, on); }
  Process& extrude(uint8_t on, uint8_t colouring = 1) {
    return set(SetShadowExtruded, on).set(SetExtrudedShadowColor, colouring);
  }
  Process& blur(uint8_t face, uint8_t outline, uint8_t shadow) {
    return set(SetFaceBlurLevel, face).set(SetOutlineBlurLevel, outline).set(SetShadowBlurLevel, shadow);
  }
  Process& faceGradient(int32_t type, double p1 = 0.5, double p2 = 0.5) {
    return set(SetGradientFace, type, p1, p2);
  }
  Process& outlineGradient(int32_t type, double p1 = 0.5, double p2 = 0.5) {
    return set(SetGradientOutline, type, p1, p2);
  }
  // Colour stops as packed colours (red lowest, alpha highest); no weights means all 1.
  bool faceStops(std::vector<uint32_t> colours, std::vector<uint32_t> weights = {}) {
    const uint8_t n = static_cast<uint8_t>(colours.size());
    return SetFaceGradientColors(&slot_, colours.data(), weights.empty() ? nullptr : weights.data(), &n);
  }
  Process& faceFit(uint8_t mode) { return set(SetFaceGradientFitMode, mode); }
  bool faceArea(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    return SetFaceUserGradientArea(&slot_, &left, &top, &right, &bottom);
  }
  // A texture of width x height pixels used as the layer's fill with the given tiling.
  bool faceTexture(std::vector<uint32_t> pixels, int32_t width, int32_t height, int32_t tiling) {
    set(SetFaceFillType, int32_t{1}).set(SetFaceTextureTiling, tiling);
    return SetTextureFace(&slot_, pixels.data(), &width, &height);
  }
  bool outlineTexture(std::vector<uint32_t> pixels, int32_t width, int32_t height, int32_t tiling) {
    set(SetOutlineFillType, int32_t{1}).set(SetOutlineTextureTiling, tiling);
    return SetTextureOutline(&slot_, pixels.data(), &width, &height);
  }
  Process& emboss(double angle, uint8_t a = 255, uint8_t b = 255, uint8_t c = 255) {
    return set(SetFaceTextureEmbossed, angle, a, b, c).set(EnableFaceEmbossed, uint8_t{1});
  }
  Process& border3D(uint8_t elevation, uint8_t passes, double angle) {
    return set(SetOutline3DBorder, elevation, passes, angle).set(EnableOutline3DBorder, uint8_t{1});
  }
  Process& translate(int32_t dx, int32_t dy) { return set(SetTranslation, dx, dy); }

  bool render(const TextScene& scene, Image& image) {
    return Render(&slot_, scene.block(), image.width(), image.height(), image.data());
  }

 private:
  // Calls an exported setter with the slot and the address of each value.
  template <typename Setter, typename... Values>
  Process& set(Setter setter, Values... values) {
    setter(&slot_, &values...);
    return *this;
  }

  RenderHandle slot_;
};

}  // namespace lx::test
