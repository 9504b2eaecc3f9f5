// The scenes that the native library and the Windows DLL must draw alike: each a line of text, a buffer
// and settings that exercise one fill or effect (or all of them). Header-only, like the process helper.
#pragma once

#include <cstdint>
#include <ostream>
#include <vector>

#include "tests/support/lettrix_process.h"

namespace lx::test {

struct CrossScene {
  const char* name;
  const char* text;
  int32_t pixelSize;
  int32_t width, height;
  uint32_t ground;  // the buffer's pixels before Render
  void (*apply)(Process&);
  // The effect whose light or geometry goes through the C library's sin, cos or pow, which may round the
  // last bit differently on the two systems; such a scene may differ by 1 in a byte, nothing else may.
  const char* systemMath;
};

// Test names show the scene's name.
inline void PrintTo(const CrossScene& s, std::ostream* os) { *os << s.name; }

inline std::vector<uint32_t> CrossTexture() {
  std::vector<uint32_t> t(8 * 8);
  for (uint32_t i = 0; i < t.size(); ++i) t[i] = (i * 0x2F1B07u) ^ 0x00A05010u;
  return t;
}

inline const std::vector<CrossScene>& CrossScenes() {
  static const std::vector<CrossScene> scenes = {
      {"plain", "Lettrix", 40, 200, 64, 0, [](Process&) {}, nullptr},
      {"outline_shadow", "Lettrix", 40, 200, 64, 0xFF202020,
       [](Process& p) {
         p.face(255, 240, 200, 10)
             .outline(255, 90, 20, 20)
             .thickness(2)
             .shadow(160, 0, 0, 60)
             .shadowOffset(4, 3);
       },
       nullptr},
      {"translucent_layers", "Quiz", 44, 140, 70, 0xFF8090A0,
       [](Process& p) {
         p.face(140, 255, 255, 255)
             .outline(200, 0, 0, 120)
             .thickness(3)
             .shadow(90, 0, 0, 0)
             .shadowOffset(-3, 5);
       },
       nullptr},
      {"gradient_linear", "Gradient", 40, 200, 64, 0,
       [](Process& p) { p.faceStart(255, 255, 0, 0).faceEnd(255, 0, 0, 255).faceGradient(1); }, nullptr},
      {"gradient_radial", "Gradient", 40, 200, 64, 0,
       [](Process& p) {
         p.faceStart(255, 255, 255, 0).faceEnd(200, 0, 120, 255).faceGradient(2, 0.1, 0.8).thickness(2);
         p.outlineStart(255, 0, 0, 0).outlineEnd(255, 255, 0, 0).outlineGradient(2, 0.0, 1.0);
       },
       nullptr},
      {"gradient_angle", "Gradient", 40, 200, 64, 0,
       [](Process& p) { p.faceStart(255, 0, 255, 0).faceEnd(255, 0, 0, 255).faceGradient(3, 0.7); },
       "gradient angle (sin, cos)"},
      {"colour_stops", "Stops", 48, 170, 70, 0,
       [](Process& p) {
         p.faceGradient(1).faceFit(1);
         p.faceStops({0xFF0000FF, 0xFF00FF00, 0x80FF0000, 0xFFFFFFFF}, {1, 2, 1, 3});
       },
       nullptr},
      {"texture_tiled", "Tiles", 48, 160, 70, 0,
       [](Process& p) {
         p.faceTexture(CrossTexture(), 8, 8, 2);
         p.outlineTexture(CrossTexture(), 8, 8, 2);
         p.thickness(2);
       },
       nullptr},
      {"texture_stretched", "Tiles", 48, 160, 70, 0,
       [](Process& p) { p.faceTexture(CrossTexture(), 8, 8, 1); }, nullptr},
      {"texture_centred", "Tiles", 48, 160, 70, 0, [](Process& p) { p.faceTexture(CrossTexture(), 8, 8, 0); },
       nullptr},
      {"face_blur", "Blur", 48, 150, 70, 0xFF000000,
       [](Process& p) { p.face(255, 250, 240, 90).blur(3, 0, 0); }, nullptr},
      {"outline_blur", "Blur", 48, 150, 70, 0,
       [](Process& p) { p.outline(255, 0, 200, 255).thickness(3).blur(0, 4, 0); }, nullptr},
      {"shadow_blur_zoom", "Soft", 48, 150, 80, 0xFFFFFFFF,
       [](Process& p) { p.shadow(200, 0, 0, 0).shadowOffset(5, 5).shadowZoom(1.2, 1.1).blur(0, 0, 5); },
       nullptr},
      {"emboss", "Relief", 48, 180, 70, 0, [](Process& p) { p.emboss(2.3, 255, 220, 160); },
       "emboss light (sin, cos)"},
      {"border_3d", "Bevel", 48, 170, 70, 0,
       [](Process& p) { p.outline(255, 120, 60, 200).thickness(4).border3D(40, 3, -1.2); },
       "3D border light and profile (sin, cos)"},
      {"extrusion_soft", "Deep", 48, 170, 80, 0,
       [](Process& p) { p.shadow(255, 40, 40, 90).shadowOffset(10, 7).extrude(1, 1); }, nullptr},
      {"extrusion_flat", "Deep", 48, 170, 80, 0,
       [](Process& p) { p.shadow(180, 40, 40, 90).shadowOffset(-8, 6).extrude(1, 0).thickness(1); }, nullptr},
      {"shadow_only_translated", "Move", 48, 170, 80, 0,
       [](Process& p) { p.shadow(255, 10, 20, 30).shadowOffset(2, 2).shadowOnly(1).translate(9, -4); },
       nullptr},
      {"everything", "Lettrix", 48, 230, 90, 0xFF336699,
       [](Process& p) {
         p.faceStart(255, 250, 220, 40).faceEnd(255, 250, 90, 20).faceGradient(1).emboss(2.0, 255, 200, 120);
         p.outline(255, 40, 20, 120).thickness(3).border3D(35, 2, -0.6);
         p.shadow(160, 0, 0, 0).shadowOffset(6, 5).shadowZoom(1.1, 1.1).extrude(1, 1);
         p.blur(1, 1, 0).translate(-4, 2);
       },
       "emboss and 3D border light (sin, cos)"},
  };
  return scenes;
}

}  // namespace lx::test
