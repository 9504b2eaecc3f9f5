// Everything one run of the programs is asked to do: the text, how it is laid out on the canvas, and
// every setting the library offers for the Face, Outline and Shadow layers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lxt {

// A straight (not premultiplied) colour.
struct Rgba {
  uint8_t r = 0, g = 0, b = 0, a = 255;
  bool operator==(const Rgba& o) const { return r == o.r && g == o.g && b == o.b && a == o.a; }
  bool operator!=(const Rgba& o) const { return !(*this == o); }
};

struct ColourStop {
  Rgba colour;
  uint32_t weight = 1;  // relative share of the ramp; the library drops a 0 beside non-zero ones
};

enum class FillKind {
  kSolid,      // one colour
  kTwoColour,  // a gradient from a start to an end colour
  kStops,      // a gradient through a table of weighted colour stops
  kTexture,    // an image, from a file or generated
};

enum class GradientShape {
  kDefault,   // vertical for a gradient fill
  kVertical,  // top to bottom
  kRadial,    // from the centre outwards, between two fractions of the radius
  kLinear,    // along an angle
};

enum class TextureTiling { kCentre = 0, kStretch = 1, kTile = 2 };

struct LayerSettings {
  FillKind fill = FillKind::kSolid;
  Rgba colour;                    // kSolid
  Rgba start, end;                // kTwoColour
  std::vector<ColourStop> stops;  // kStops
  GradientShape shape = GradientShape::kDefault;
  double radialFrom = 0.0, radialTo = 1.0;  // fractions of the radius, 0..1
  double angleDegrees = 0.0;                // kLinear, -180..180
  bool extentCanvas = false;                // gradient spans the whole canvas rather than the text
  bool hasArea = false;                     // an explicit gradient rectangle in canvas pixels
  int32_t area[4] = {0, 0, 0, 0};           // left, top, right, bottom
  std::string texture;                      // kTexture: a file, or gen:NAME
  TextureTiling tiling = TextureTiling::kTile;
  int blur = 0;  // 0..254
};

struct Job {
  // Text and font.
  std::string text;
  bool hasText = false;
  std::string fontFile;    // empty: the family, or the default font
  std::string fontFamily;  // a fontconfig pattern (native program only)
  int pixelSize = 96;

  // Canvas.
  bool fixedCanvas = false;
  int32_t canvasWidth = 0, canvasHeight = 0;
  int32_t padding = 16;
  Rgba background{0, 0, 0, 0};
  int32_t translateX = 0, translateY = 0;

  // Layers.
  LayerSettings face;
  LayerSettings outline;
  int32_t outlineWidth = 0;  // pixels on each side of the contour, 0..500

  bool emboss = false;
  double embossAngleDegrees = -135.0;
  Rgba embossTint{255, 255, 255, 255};

  bool bevel = false;
  int bevelElevation = 30;  // degrees, 3..60
  int bevelPasses = 2;      // 1..60
  double bevelAngleDegrees = -135.0;

  Rgba shadowColour{0, 0, 0, 160};  // its alpha is the Shadow's opacity
  int32_t shadowX = 0, shadowY = 0;
  double shadowZoomX = 1.0, shadowZoomY = 1.0;
  int shadowBlur = 0;
  bool extrude = false;
  bool extrudeSmooth = true;
  bool shadowVisible = true;
  bool shadowOnly = false;

  // Files.
  std::string output;        // .png or .tga
  std::string dumpOutline;   // write the outline block here
  std::string outlineBlock;  // render this block file instead of text

  Job() {
    face.colour = {255, 255, 255, 255};
    face.start = face.colour;
    face.end = face.colour;
    outline.colour = {0, 0, 0, 255};
    outline.start = outline.colour;
    outline.end = outline.colour;
  }
};

}  // namespace lxt
