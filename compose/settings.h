// Everything one picture is made from, apart from its text: the font and how the text is laid out, the
// canvas, and every setting the library offers for the Face, Outline and Shadow layers. A default-made
// Settings draws white letters in DejaVu Sans Bold, 96 pixels, on a transparent canvas that fits them.
// Plain data: copy it freely, and use one copy per thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lx::compose {

// A straight (not premultiplied) colour.
struct Rgba {
  uint8_t r = 0, g = 0, b = 0, a = 255;
  bool operator==(const Rgba& o) const { return r == o.r && g == o.g && b == o.b && a == o.a; }
  bool operator!=(const Rgba& o) const { return !(*this == o); }
};

struct ColourStop {
  Rgba colour;
  uint32_t weight = 1;  // relative share of the ramp, 0..1000000; the library drops a 0 beside non-zero ones
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

// The fill of the Face or the Outline.
struct LayerSettings {
  FillKind fill = FillKind::kSolid;
  Rgba colour;                    // kSolid
  Rgba start, end;                // kTwoColour
  std::vector<ColourStop> stops;  // kStops, 1..255 of them
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

enum class Align { kLeft, kCentre, kRight };
enum class Direction { kAuto, kLeftToRight, kRightToLeft };

struct Settings {
  // Font.
  std::string fontFile;    // a font file; empty: the family, or the default font
  std::string fontFamily;  // a fontconfig pattern such as "DejaVu Serif:bold"
  int pixelSize = 96;      // em size in pixels, 4..1000

  // Text layout.
  Align align = Align::kLeft;              // of each line within the widest one
  double lineSpacing = 1.0;                // factor of the font's line height, 0.1..10
  double letterSpacing = 0.0;              // pixels added after every character, -1000..1000
  int32_t wrapWidth = 0;                   // pixels, 0..16384; 0 breaks lines only at line feeds
  Direction direction = Direction::kAuto;  // of each paragraph; auto takes its first strong letter
  std::string language;                    // BCP 47 tag ("ar", "hi", "tr"); empty: none
  std::string features;                    // OpenType features, "liga=0,kern,+smcp"; empty: the font's own

  // Canvas.
  bool fixedCanvas = false;                   // false: the canvas fits the drawing plus the padding
  int32_t canvasWidth = 0, canvasHeight = 0;  // with a fixed canvas, 1..16384; the drawing is centred
  int32_t padding = 16;                       // 0..4096, with a fitted canvas
  Rgba background{0, 0, 0, 0};
  int32_t translateX = 0, translateY = 0;  // -16384..16384, after placing

  // Layers.
  LayerSettings face;
  LayerSettings outline;
  int32_t outlineWidth = 0;  // pixels on each side of the contour, 0..500

  bool emboss = false;
  double embossAngleDegrees = -135.0;  // -180..180
  Rgba embossTint{255, 255, 255, 255};

  bool bevel = false;
  int bevelElevation = 30;            // degrees, 3..60
  int bevelPasses = 2;                // 1..60
  double bevelAngleDegrees = -135.0;  // -180..180

  Rgba shadowColour{0, 0, 0, 160};              // its alpha is the Shadow's opacity
  int32_t shadowX = 0, shadowY = 0;             // -2000..2000
  double shadowZoomX = 1.0, shadowZoomY = 1.0;  // 0.1..10
  int shadowBlur = 0;                           // 0..254
  bool extrude = false;
  bool extrudeSmooth = true;
  bool shadowVisible = true;
  bool shadowOnly = false;

  Settings() {
    face.colour = {255, 255, 255, 255};
    face.start = face.colour;
    face.end = face.colour;
    outline.colour = {0, 0, 0, 255};
    outline.start = outline.colour;
    outline.end = outline.colour;
  }
};

}  // namespace lx::compose
