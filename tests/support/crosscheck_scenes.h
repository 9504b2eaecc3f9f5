// The scenes that the native library and the Windows DLL must draw alike: each a line of text, a buffer
// and settings that exercise one fill or effect (or all of them). Header-only, like the process helper.
#pragma once
#include <cstdint>
#include <vector>
#include "tests/support/lettrix_process.h"

namespace lx::test {
struct CrossScene {
  const char *name, *text;
  int32_t pixelSize, width, height;
  uint32_t ground;  // the buffer's pixels before Render
  // The effect whose light or geometry goes through the C library's sin, cos or pow, which may round the
  // last bit differently on the two systems; such a scene may differ by 1 in a byte, nothing else may.
  const char* systemMath;
  // FNV-1a of the native library's pixels: any change to what an ordinary render draws shows here.
  uint64_t reference;
  void (*apply)(Process&);
};

inline std::vector<uint32_t> CrossTexture() {
  std::vector<uint32_t> t(8 * 8);
  for (uint32_t i = 0; i < t.size(); ++i) t[i] = (i * 0x2F1B07u) ^ 0x00A05010u;
  return t;
}

inline const std::vector<CrossScene>& CrossScenes() {
  const char *kEmboss = "emboss light (sin, cos)", *kBorder = "3D border light and profile (sin, cos)",
             *kBoth = "emboss and 3D border light (sin, cos)", *kAngle = "gradient angle (sin, cos)";
  // clang-format off
  static const std::vector<CrossScene> scenes = {
    {"plain", "Lettrix", 40, 200, 64, 0, nullptr, 0x17643d0c36e4588e, [](Process&) {}},
    {"outline_shadow", "Lettrix", 40, 200, 64, 0xFF202020, nullptr, 0x90c739d670141a06, [](Process& p) {
      p.face(255, 240, 200, 10).outline(255, 90, 20, 20).thickness(2);
      p.shadow(160, 0, 0, 60).shadowOffset(4, 3); }},
    {"translucent_layers", "Quiz", 44, 140, 70, 0xFF8090A0, nullptr, 0xc8c430ed1e38ac67, [](Process& p) {
      p.face(140, 255, 255, 255).outline(200, 0, 0, 120).thickness(3);
      p.shadow(90, 0, 0, 0).shadowOffset(-3, 5); }},
    {"gradient_linear", "Gradient", 40, 200, 64, 0, nullptr, 0x596cca6a37861fd, [](Process& p) {
      p.faceStart(255, 255, 0, 0).faceEnd(255, 0, 0, 255).faceGradient(1); }},
    {"gradient_radial", "Gradient", 40, 200, 64, 0, nullptr, 0x6e867a3b5bad9f81, [](Process& p) {
      p.faceStart(255, 255, 255, 0).faceEnd(200, 0, 120, 255).faceGradient(2, 0.1, 0.8).thickness(2);
      p.outlineStart(255, 0, 0, 0).outlineEnd(255, 255, 0, 0).outlineGradient(2, 0.0, 1.0); }},
    {"gradient_angle", "Gradient", 40, 200, 64, 0, kAngle, 0xbb58584298ab82cf, [](Process& p) {
      p.faceStart(255, 0, 255, 0).faceEnd(255, 0, 0, 255).faceGradient(3, 0.7); }},
    {"colour_stops", "Stops", 48, 170, 70, 0, nullptr, 0x8a7db4ba7a159575, [](Process& p) {
      p.faceGradient(1).faceFit(1);
      p.faceStops({0xFF0000FF, 0xFF00FF00, 0x80FF0000, 0xFFFFFFFF}, {1, 2, 1, 3}); }},
    {"texture_tiled", "Tiles", 48, 160, 70, 0, nullptr, 0x9e3ce632baae965, [](Process& p) {
      p.faceTexture(CrossTexture(), 8, 8, 2); p.outlineTexture(CrossTexture(), 8, 8, 2); p.thickness(2); }},
    {"texture_stretched", "Tiles", 48, 160, 70, 0, nullptr, 0x1aa22e335c911ba8, [](Process& p) {
      p.faceTexture(CrossTexture(), 8, 8, 1); }},
    {"texture_centred", "Tiles", 48, 160, 70, 0, nullptr, 0x55cb52b7555fa1b4, [](Process& p) {
      p.faceTexture(CrossTexture(), 8, 8, 0); }},
    {"face_blur", "Blur", 48, 150, 70, 0xFF000000, nullptr, 0xd544a2c70c5984ec, [](Process& p) {
      p.face(255, 250, 240, 90).blur(3, 0, 0); }},
    {"outline_blur", "Blur", 48, 150, 70, 0, nullptr, 0x60047401e08b9851, [](Process& p) {
      p.outline(255, 0, 200, 255).thickness(3).blur(0, 4, 0); }},
    {"shadow_blur_zoom", "Soft", 48, 150, 80, 0xFFFFFFFF, nullptr, 0xf442fd50f5f0d0a2, [](Process& p) {
      p.shadow(200, 0, 0, 0).shadowOffset(5, 5).shadowZoom(1.2, 1.1).blur(0, 0, 5); }},
    {"emboss", "Relief", 48, 180, 70, 0, kEmboss, 0x5888a1b3d1f927e, [](Process& p) {
      p.emboss(2.3, 255, 220, 160); }},
    {"border_3d", "Bevel", 48, 170, 70, 0, kBorder, 0xbccfa7e5eedc4270, [](Process& p) {
      p.outline(255, 120, 60, 200).thickness(4).border3D(40, 3, -1.2); }},
    {"extrusion_soft", "Deep", 48, 170, 80, 0, nullptr, 0xefafdabef6589c25, [](Process& p) {
      p.shadow(255, 40, 40, 90).shadowOffset(10, 7).extrude(1, 1); }},
    {"extrusion_flat", "Deep", 48, 170, 80, 0, nullptr, 0x324c2263482254a5, [](Process& p) {
      p.shadow(180, 40, 40, 90).shadowOffset(-8, 6).extrude(1, 0).thickness(1); }},
    {"shadow_only_translated", "Move", 48, 170, 80, 0, nullptr, 0x8908f12cc0498777, [](Process& p) {
      p.shadow(255, 10, 20, 30).shadowOffset(2, 2).shadowOnly(1).translate(9, -4); }},
    {"everything", "Lettrix", 48, 230, 90, 0xFF336699, kBoth, 0x6ece59d4bfed8a13, [](Process& p) {
      p.faceStart(255, 250, 220, 40).faceEnd(255, 250, 90, 20).faceGradient(1).emboss(2.0, 255, 200, 120);
      p.outline(255, 40, 20, 120).thickness(3).border3D(35, 2, -0.6);
      p.shadow(160, 0, 0, 0).shadowOffset(6, 5).shadowZoom(1.1, 1.1).extrude(1, 1);
      p.blur(1, 1, 0).translate(-4, 2); }},
    {"off_every_edge", "Edges", 60, 90, 30, 0xFF102030, nullptr, 0xa21a5ca2ebfa98b3, [](Process& p) {
      p.outline(255, 250, 250, 0).thickness(5).shadow(200, 0, 90, 0).shadowOffset(-7, 6);
      p.blur(2, 3, 6).translate(-25, -18); }},
    {"tiny_everything", "ag", 9, 17, 11, 0x80FFFFFF, kBoth, 0x22fa607ee14239db, [](Process& p) {
      p.face(200, 255, 0, 0).outline(255, 0, 0, 255).thickness(1).border3D(255, 1, 0.3).emboss(-1.0);
      p.shadow(128, 0, 0, 0).shadowOffset(1, 1).extrude(1, 1).blur(1, 1, 1); }},
    {"one_row", "Row", 40, 120, 1, 0xFFFFFFFF, nullptr, 0xfc204e8bb5fa59bb, [](Process& p) {
      p.outline(255, 0, 0, 0).thickness(2).shadow(255, 0, 0, 0).blur(2, 0, 3).translate(0, -14); }},
    {"outline_stops_area", "Area", 48, 150, 70, 0x40000000, kAngle, 0xf68deb36924d1353, [](Process& p) {
      p.face(0, 0, 0, 0).thickness(6).outlineGradient(3, -2.2);
      const uint32_t colours[] = {0xFF00FFFF, 0x80FF00FF, 0xFF0000FF}; const uint8_t count = 3;
      SetOutlineGradientColors(p.slot(), colours, nullptr, &count);
      const int32_t l = 20, t = 10, r = 90, b = 40; SetOutlineUserGradientArea(p.slot(), &l, &t, &r, &b); }},
    {"whole_buffer_fit", "Fit", 40, 130, 60, 0, nullptr, 0x38823e0a691a04db, [](Process& p) {
      p.faceStart(255, 255, 0, 0).faceEnd(255, 0, 0, 255).faceGradient(2, 0.0, 1.0).faceFit(1);
      p.outlineStart(255, 0, 0, 0).outlineEnd(255, 255, 255, 255).outlineGradient(1).thickness(2);
      const uint8_t whole = 1; SetOutlineGradientFitMode(p.slot(), &whole); }},
    {"wide_blurs", "Haze", 40, 160, 90, 0xFF000000, nullptr, 0x49f5305d282c332e, [](Process& p) {
      p.face(255, 255, 255, 255).outline(255, 255, 0, 0).thickness(3).shadow(255, 0, 255, 0);
      p.shadowOffset(3, 9).shadowZoom(0.6, 0.8).blur(11, 27, 254); }},
    {"deep_border", "Rim", 48, 130, 70, 0, kBorder, 0xb7222c1b326e919c, [](Process& p) {
      p.face(0, 0, 0, 0).outline(160, 20, 200, 80).thickness(8).border3D(220, 9, 2.8); }},
    {"extrusion_back_hidden_shadow", "Back", 44, 160, 80, 0xFF808080, nullptr, 0x6a9618af971b2680,
     [](Process& p) { p.shadow(100, 200, 0, 0).shadowOffset(-12, -9).extrude(1, 1).translate(14, 10);
                      p.outline(255, 0, 0, 0).thickness(1); }},
    {"shadow_turned_off", "Off", 44, 120, 60, 0, nullptr, 0x1e4553eed84b1583, [](Process& p) {
      p.shadow(255, 0, 0, 0).shadowOffset(4, 4).blur(0, 0, 4).shadowVisible(0).outline(128, 0, 0, 255); }},
    {"emboss_textured", "Stone", 44, 150, 60, 0, kEmboss, 0x794a0067959e21e, [](Process& p) {
      p.faceTexture(CrossTexture(), 8, 8, 1); p.emboss(0.5, 180, 90, 255).blur(2, 0, 0); }},
    {"gradient_face_on_outline", "Seam", 44, 130, 60, 0xFFFFFFFF, nullptr, 0x722629de5377c915,
     [](Process& p) { p.faceStart(255, 255, 0, 0).faceEnd(255, 0, 0, 255).faceGradient(1);
                      p.outline(255, 0, 0, 0).thickness(2); }},
    {"face_blur_one_on_outline", "Soft", 44, 130, 60, 0xFF000000, nullptr, 0x7766176c911a62a, [](Process& p) {
      p.face(255, 255, 200, 0).outline(255, 0, 0, 128).thickness(2).blur(1, 0, 0); }},
    {"outline_blur_one_under_face", "Soft", 44, 130, 60, 0xFF000000, nullptr, 0x48baf924f1a76059,
     [](Process& p) { p.face(255, 255, 200, 0).outline(255, 0, 0, 128).thickness(2).blur(0, 1, 0); }},
  };
  // clang-format on
  return scenes;
}
}  // namespace lx::test
