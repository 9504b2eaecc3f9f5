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
    SetColorFaceStart(&slot_, &a, &r, &g, &b);
    return *this;
  }
  Process& faceEnd(uint8_t a, uint8_t r, uint8_t g, uint8_t b) {
    SetColorFaceEnd(&slot_, &a, &r, &g, &b);
    return *this;
  }
  Process& outline(uint8_t a, uint8_t r, uint8_t g, uint8_t b) {
    return outlineStart(a, r, g, b).outlineEnd(a, r, g, b);
  }
  Process& outlineStart(uint8_t a, uint8_t r, uint8_t g, uint8_t b) {
    SetColorOutlineStart(&slot_, &a, &r, &g, &b);
    return *this;
  }
  Process& outlineEnd(uint8_t a, uint8_t r, uint8_t g, uint8_t b) {
    SetColorOutlineEnd(&slot_, &a, &r, &g, &b);
    return *this;
  }
  Process& thickness(int32_t t) {
    SetOutlineThickness(&slot_, &t);
    return *this;
  }
  Process& shadow(uint8_t a, uint8_t r, uint8_t g, uint8_t b) {
    SetShadowColor(&slot_, &a, &r, &g, &b);
    return *this;
  }
  Process& shadowOffset(int32_t x, int32_t y) {
    SetShadowOffset(&slot_, &x, &y);
    return *this;
  }
  Process& shadowZoom(double x, double y) {
    SetShadowZoom(&slot_, &x, &y);
    return *this;
  }
  Process& shadowVisible(uint8_t on) {
    SetShadowVisible(&slot_, &on);
    return *this;
  }
  Process& shadowOnly(uint8_t on) {
    SetDrawShadowOnly(&slot_, &on);
    return *this;
  }
  Process& extrude(uint8_t on, uint8_t colouring = 1) {
    SetShadowExtruded(&slot_, &on);
    SetExtrudedShadowColor(&slot_, &colouring);
    return *this;
  }
  Process& blur(uint8_t faceLevel, uint8_t outlineLevel, uint8_t shadowLevel) {
    SetFaceBlurLevel(&slot_, &faceLevel);
    SetOutlineBlurLevel(&slot_, &outlineLevel);
    SetShadowBlurLevel(&slot_, &shadowLevel);
    return *this;
  }
  Process& faceGradient(int32_t type, double p1 = 0.5, double p2 = 0.5) {
    SetGradientFace(&slot_, &type, &p1, &p2);
    return *this;
  }
  Process& outlineGradient(int32_t type, double p1 = 0.5, double p2 = 0.5) {
    SetGradientOutline(&slot_, &type, &p1, &p2);
    return *this;
  }
  // Colour stops as packed colours (red lowest, alpha highest); no weights means all 1.
  bool faceStops(const std::vector<uint32_t>& colours, std::vector<uint32_t> weights = {}) {
    std::vector<uint32_t> c = colours;
    const uint8_t n = static_cast<uint8_t>(c.size());
    return SetFaceGradientColors(&slot_, c.data(), weights.empty() ? nullptr : weights.data(), &n);
  }
  Process& faceFit(uint8_t mode) {
    SetFaceGradientFitMode(&slot_, &mode);
    return *this;
  }
  bool faceArea(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    return SetFaceUserGradientArea(&slot_, &left, &top, &right, &bottom);
  }
  // A texture of width x height pixels used as the layer's fill with the given tiling.
  bool faceTexture(std::vector<uint32_t> pixels, int32_t width, int32_t height, int32_t tiling) {
    const int32_t one = 1;
    SetFaceFillType(&slot_, &one);
    SetFaceTextureTiling(&slot_, &tiling);
    return SetTextureFace(&slot_, pixels.data(), &width, &height);
  }
  bool outlineTexture(std::vector<uint32_t> pixels, int32_t width, int32_t height, int32_t tiling) {
    const int32_t one = 1;
    SetOutlineFillType(&slot_, &one);
    SetOutlineTextureTiling(&slot_, &tiling);
    return SetTextureOutline(&slot_, pixels.data(), &width, &height);
  }
  Process& emboss(double angle, uint8_t a = 255, uint8_t b = 255, uint8_t c = 255) {
    const uint8_t on = 1;
    SetFaceTextureEmbossed(&slot_, &angle, &a, &b, &c);
    EnableFaceEmbossed(&slot_, &on);
    return *this;
  }
  Process& border3D(uint8_t elevation, uint8_t passes, double angle) {
    const uint8_t on = 1;
    SetOutline3DBorder(&slot_, &elevation, &passes, &angle);
    EnableOutline3DBorder(&slot_, &on);
    return *this;
  }
  Process& translate(int32_t dx, int32_t dy) {
    SetTranslation(&slot_, &dx, &dy);
    return *this;
  }

  bool render(const TextScene& scene, Image& image) {
    return Render(&slot_, scene.block(), image.width(), image.height(), image.data());
  }

 private:
  RenderHandle slot_;
};

}  // namespace lx::test
