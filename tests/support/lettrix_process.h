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
  using U8 = uint8_t;
  using I32 = int32_t;
  Process() : slot_(CreateRenderProcess()) {}
  ~Process() { DestroyRenderProcess(&slot_); }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  RenderHandle* slot() { return &slot_; }

  // Colours are (alpha, red, green, blue). A solid layer sets its start and end colours alike.
  Process& faceStart(U8 a, U8 r, U8 g, U8 b) { return set(SetColorFaceStart, a, r, g, b); }
  Process& faceEnd(U8 a, U8 r, U8 g, U8 b) { return set(SetColorFaceEnd, a, r, g, b); }
  Process& face(U8 a, U8 r, U8 g, U8 b) { return faceStart(a, r, g, b).faceEnd(a, r, g, b); }
  Process& outlineStart(U8 a, U8 r, U8 g, U8 b) { return set(SetColorOutlineStart, a, r, g, b); }
  Process& outlineEnd(U8 a, U8 r, U8 g, U8 b) { return set(SetColorOutlineEnd, a, r, g, b); }
  Process& outline(U8 a, U8 r, U8 g, U8 b) { return outlineStart(a, r, g, b).outlineEnd(a, r, g, b); }
  Process& thickness(int32_t t) { return set(SetOutlineThickness, t); }
  Process& shadow(U8 a, U8 r, U8 g, U8 b) { return set(SetShadowColor, a, r, g, b); }
  Process& shadowOffset(int32_t x, int32_t y) { return set(SetShadowOffset, x, y); }
  Process& shadowZoom(double x, double y) { return set(SetShadowZoom, x, y); }
  Process& shadowVisible(U8 on) { return set(SetShadowVisible, on); }
  Process& shadowOnly(U8 on) { return set(SetDrawShadowOnly, on); }
  Process& extrude(U8 on, U8 c = 1) { return set(SetShadowExtruded, on).set(SetExtrudedShadowColor, c); }
  Process& blur(U8 face, U8 outline, U8 shadow) {
    return set(SetFaceBlurLevel, face).set(SetOutlineBlurLevel, outline).set(SetShadowBlurLevel, shadow);
  }
  Process& faceGradient(I32 t, double p = 0.5, double q = 0.5) { return set(SetGradientFace, t, p, q); }
  Process& outlineGradient(I32 t, double p = 0.5, double q = 0.5) { return set(SetGradientOutline, t, p, q); }
  // Colour stops as packed colours (red lowest, alpha highest); no weights means all 1.
  bool faceStops(std::vector<uint32_t> colours, std::vector<uint32_t> weights = {}) {
    const U8 n = static_cast<U8>(colours.size());
    return SetFaceGradientColors(&slot_, colours.data(), weights.empty() ? nullptr : weights.data(), &n);
  }
  Process& faceFit(U8 mode) { return set(SetFaceGradientFitMode, mode); }
  bool faceArea(I32 l, I32 t, I32 r, I32 b) { return SetFaceUserGradientArea(&slot_, &l, &t, &r, &b); }
  // A texture of width x height pixels used as the layer's fill with the given tiling.
  bool faceTexture(std::vector<uint32_t> pixels, int32_t width, int32_t height, int32_t tiling) {
    set(SetFaceFillType, int32_t{1}).set(SetFaceTextureTiling, tiling);
    return SetTextureFace(&slot_, pixels.data(), &width, &height);
  }
  bool outlineTexture(std::vector<uint32_t> pixels, int32_t width, int32_t height, int32_t tiling) {
    set(SetOutlineFillType, int32_t{1}).set(SetOutlineTextureTiling, tiling);
    return SetTextureOutline(&slot_, pixels.data(), &width, &height);
  }
  Process& emboss(double angle, U8 a = 255, U8 b = 255, U8 c = 255) {
    return set(SetFaceTextureEmbossed, angle, a, b, c).set(EnableFaceEmbossed, U8{1});
  }
  Process& border3D(U8 elevation, U8 passes, double angle) {
    return set(SetOutline3DBorder, elevation, passes, angle).set(EnableOutline3DBorder, U8{1});
  }
  Process& translate(int32_t dx, int32_t dy) { return set(SetTranslation, dx, dy); }

  bool render(const TextScene& s, Image& i) {
    return Render(&slot_, s.block(), i.width(), i.height(), i.data());
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
