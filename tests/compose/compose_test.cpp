// The composition layer the command line and Python share: options by name to exact settings, refusals
// with the program's messages, and pictures that show the canvas, padding and Shadow.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "compose/composition.h"
#include "tests/support/refusal.h"

namespace lx::compose {
namespace {

// Settings from "name=value" (or "switch") words, applied in order.
Settings Set(const std::string& options) {
  Settings s;
  std::istringstream words(options);
  for (std::string w; words >> w;)
    SetOption(s, w.substr(0, w.find('=')), w.find('=') > w.size() ? "" : w.substr(w.find('=') + 1));
  return s;
}

using test::Refusal;

std::ostream& operator<<(std::ostream& o, const Rgba& c) {
  char hex[9];
  std::snprintf(hex, sizeof hex, "%02x%02x%02x%02x", c.r, c.g, c.b, c.a);
  return o << hex;
}
// The values, each followed by a space.
template <typename... T>
std::string Line(const T&... values) {
  std::ostringstream o;
  ((o << values << ' '), ...);
  return o.str();
}

Image Draw(const std::string& options, const std::string& text, const ImageReader& reader = {}) {
  return FromRgba(Compose(Set(options), text, reader));
}
// Left, top, right, bottom (outside) of the pixels equal to `pixel`, or with any alpha when it is 0.
std::vector<int> Box(const Image& im, uint32_t pixel = 0) {
  std::vector<int> b{im.width, im.height, 0, 0};
  for (int y = 0; y < im.height; ++y)
    for (int x = 0; x < im.width; ++x)
      if (pixel ? im.at(x, y) == pixel : im.at(x, y) >> 24)
        b = {std::min(b[0], x), std::min(b[1], y), std::max(b[2], x + 1), y + 1};
  return b;
}

TEST(OptionTable, ValuesReachTheirSettingsAtTheEndsOfTheirRanges) {
  const Settings s =
      Set("face-color=#1a2B3c outline-color=#abc shadow-color=#01020304 background=Gold "
          "outline-stops=red:3,#00ff0080,blue:0 face-gradient=radial:0.25,0.75 outline-gradient=linear:-45 "
          "face-gradient-area=1,2,30,40 outline-gradient-extent=canvas face-tiling=center align=Right "
          "direction=rtl language=sr-Latn features=liga=0,+smcp,kern[2:5]=1,-calt face-blur=254 "
          "outline-width=500 size=4 wrap=16384 bevel-elevation=60 bevel-passes=1 extrude-shading=flat "
          "shadow-offset=-2000,2000 shadow-zoom=0.1,10 translate=16384,-16384 canvas=16384x1 padding=4096");
  ASSERT_EQ(s.outline.stops.size(), 3u);
  EXPECT_EQ(Line(s.face.colour, s.outline.colour, s.shadowColour, s.background, s.outline.stops[1].colour,
                 s.language, s.features),
            "1a2b3cff aabbccff 01020304 d4af37ff 00ff0080 sr-Latn liga=0,+smcp,kern[2:5]=1,-calt ");
  EXPECT_EQ(Line(int(s.outline.fill), s.outline.stops[0].weight, s.outline.stops[1].weight,
                 s.outline.stops[2].weight, s.face.radialFrom, s.face.radialTo, s.outline.angleDegrees,
                 s.shadowZoomX, s.shadowZoomY, int(s.face.shape), int(s.outline.shape), int(s.face.tiling),
                 int(s.align), int(s.direction)),
            Line(int(FillKind::kStops), 3, 1, 0, 0.25, 0.75, -45, 0.1, 10, int(GradientShape::kRadial),
                 int(GradientShape::kLinear), int(TextureTiling::kCentre), int(Align::kRight),
                 int(Direction::kRightToLeft)));
  EXPECT_EQ(Line(s.face.hasArea, s.outline.extentCanvas, s.extrudeSmooth, s.fixedCanvas, s.face.area[0],
                 s.face.area[1], s.face.area[2], s.face.area[3], s.face.blur, s.outlineWidth, s.pixelSize,
                 s.wrapWidth, s.bevelElevation, s.bevelPasses, s.shadowX, s.shadowY, s.translateX,
                 s.translateY, s.canvasWidth, s.canvasHeight, s.padding),
            "1 1 0 1 1 2 30 40 254 500 4 16384 60 1 -2000 2000 16384 -16384 16384 1 4096 ");
  // A later fill replaces an earlier one; a switch's opposite clears it; a preset leaves what it does not
  // name.
  const Settings two = Set("face-texture=gen:wood face-color=red face-colors=#000,#fff emboss no-emboss");
  EXPECT_EQ(Line(int(two.face.fill), two.face.end, two.emboss),
            Line(int(FillKind::kTwoColour), "ffffffff", 0));
  Settings gold = Set("size=40");
  ApplyPreset(gold, "gold");
  EXPECT_EQ(Line(gold.pixelSize, int(gold.face.fill), gold.outlineWidth, gold.background),
            Line(40, int(FillKind::kStops), 3, "1b1b1fff"));
}

// Ends of the numeric ranges, malformed values the Python keywords share and unknown options are refused by
// Python's and the program's tests with the program's messages; these are the rest.
TEST(OptionTable, MalformedValuesAreRefusedWithTheOptionsNameAndLeaveTheSettingsAlone) {
  const std::pair<std::string, const char*> cases[] = {
      {"size=12px", "--size: '12px' is not a whole number (4..1000)"},
      {"bevel=yes", "--bevel takes no value"},
      {"canvas=100", "WxH"},
      {"face-color=#12", "--face-color: '#12' is not a colour (#RGB"},
  };
  for (const auto& [option, message] : cases)
    EXPECT_NE(Refusal([&] { Set(option); }, 2).find(message), std::string::npos);
  Settings s = Set("face-stops=red,blue");
  EXPECT_NE(
      Refusal([&] { ApplyPreset(s, "sparkle"); }, 2).find("no preset named 'sparkle' (see --list-presets)"),
      std::string::npos);
  EXPECT_THROW(SetOption(s, "face-stops", "red,nocolour"), Error);
  EXPECT_THROW(SetOption(s, "shadow-offset", "3,9999"), Error);
  EXPECT_EQ(s.face.stops.size() + s.shadowX, 2u);
}

// Missing fonts, bad text and the coordinate range: refused in the text library's, program's and Python's
// tests.
TEST(Composition, FailuresCarryTheCommandLinesMessages) {
  const ImageReader tooFewBytes = [](const std::string&) { return RgbaImage{4, 4, {0, 0}}; };
  const std::tuple<std::string, std::string, int, const char*> cases[] = {
      {"family=Nonexistent", "a", 1, "no installed font of family 'Nonexistent'"},
      {"face-texture=gen:plaid", "a", 2, "no generated texture named 'plaid'"},
      {"face-texture=wood.tga", "a", 1, "cannot read texture file 'wood.tga'"},
      {"face-texture=t.png", "reader", 1, "fewer than its size"},
  };
  for (const auto& [options, text, exitCode, message] : cases) {
    const std::string refusal =
        Refusal([&] { Draw(options, text, text == "reader" ? tooFewBytes : nullptr); }, exitCode);
    EXPECT_NE(refusal.find(message), std::string::npos) << message;
  }
}

TEST(Composition, TheCanvasPaddingAndShadowReachThePicture) {
  const Image page = Draw("background=#336699 canvas=260x140", "Bg"),
              fitted = Draw("padding=23 shadow-offset=7,9 shadow-blur=3", "Fit");
  EXPECT_EQ(std::make_tuple(page.width, page.height, page.at(0, 0), page.at(259, 139)),
            std::make_tuple(260, 140, 0xFF336699u, 0xFF336699u));
  EXPECT_EQ(Box(fitted), (std::vector<int>{23, 23, fitted.width - 23, fitted.height - 23}));
  // The Shadow goes exactly where its offset says, and shows alone or not at all.
  const std::string shadow = "shadow-color=#FF0000 canvas=300x200 background=#000000 shadow-offset=-40,-25 ";
  const Image shown = Draw(shadow, "I");
  const std::vector<int> face = Box(shown, 0xFFFFFFFF), offset = Box(shown, 0xFFFF0000);
  EXPECT_EQ(std::make_pair(offset[0] - face[0], offset[1] - face[1]), std::make_pair(-40, -25));
  EXPECT_EQ(
      Box(Draw(shadow + "no-shadow", "I"), 0xFFFF0000)[2] + Box(Draw(shadow + "shadow-only", "I"), ~0u)[2],
      0);
}

}  // namespace
}  // namespace lx::compose
