// The composition layer the command line and Python share: options by name to exact settings, refusals
// with the program's messages, and pictures that show each setting reaching the library.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <set>
#include <sstream>
#include <thread>

#include "compose/composition.h"

namespace lx::compose {
namespace {

// Settings from "name=value" (or "switch") words, applied in order.
Settings Set(const std::string& options) {
  Settings s;
  std::istringstream words(options);
  for (std::string w; words >> w;) {
    const size_t at = w.find('=');
    SetOption(s, w.substr(0, at), at == std::string::npos ? "" : w.substr(at + 1));
  }
  return s;
}

// The message of the Error `f` throws ("" when none), whose kind must be `kind`.
std::string Refusal(const std::function<void()>& f, ErrorKind kind = ErrorKind::kSetting) {
  try {
    f();
  } catch (const Error& e) {
    EXPECT_EQ(e.exitCode(), kind == ErrorKind::kSetting ? 2 : 1) << e.what();
    return e.kind() == kind ? e.what() : "wrong kind: " + std::string(e.what());
  }
  return "";
}

int Count(const Image& image, const std::function<bool(uint32_t)>& keep) {
  return static_cast<int>(std::count_if(image.pixels.begin(), image.pixels.end(), keep));
}

// Left, top, right, bottom (outside) of the pixels `keep` holds for.
std::vector<int> Box(
    const Image& im, const std::function<bool(uint32_t)>& keep = [](uint32_t p) { return p >> 24; }) {
  std::vector<int> b{im.width, im.height, 0, 0};
  for (int y = 0; y < im.height; ++y) {
    for (int x = 0; x < im.width; ++x) {
      if (keep(im.at(x, y))) b = {std::min(b[0], x), std::min(b[1], y), std::max(b[2], x + 1), y + 1};
    }
  }
  return b;
}

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

TEST(OptionTable, NamesAreUniqueAndFound) {
  std::set<std::string> names;
  std::set<char> shorts;
  for (const OptionInfo& o : Options()) {
    EXPECT_TRUE(names.insert(o.name).second && (!o.shortName || shorts.insert(o.shortName).second)) << o.name;
    EXPECT_EQ(FindOption(o.name), &o);
  }
  EXPECT_EQ(FindOption("output"), nullptr);  // files are the command line's business
}

TEST(OptionTable, ValuesReachTheirSettings) {
  const Settings s =
      Set("face-color=#1a2B3c outline-color=#abc shadow-color=#01020304 background=Gold "
          "outline-stops=red:3,#00ff0080,blue:0 face-gradient=radial:0.25,0.75 outline-gradient=linear:-45 "
          "face-gradient-area=1,2,30,40 outline-gradient-extent=canvas face-tiling=center align=Right "
          "direction=rtl language=sr-Latn features=liga=0,+smcp,kern[2:5]=1,-calt face-blur=254 "
          "outline-width=500 size=4 wrap=16384 bevel-elevation=60 bevel-passes=1 extrude-shading=flat "
          "shadow-offset=-2000,2000 shadow-zoom=0.1,10 translate=16384,-16384 canvas=16384x1 padding=4096");
  ASSERT_EQ(s.outline.stops.size(), 3u);
  EXPECT_EQ(Line(s.face.colour, s.outline.colour, s.shadowColour, s.background, s.outline.stops[1].colour),
            "1a2b3cff aabbccff 01020304 d4af37ff 00ff0080 ");
  EXPECT_EQ(Line(int(s.outline.fill), s.outline.stops[0].weight, s.outline.stops[1].weight,
                 s.outline.stops[2].weight, s.face.radialFrom, s.face.radialTo, s.outline.angleDegrees,
                 s.shadowZoomX, s.shadowZoomY, int(s.face.shape), int(s.outline.shape), int(s.face.tiling),
                 int(s.align), int(s.direction), s.face.hasArea, s.outline.extentCanvas, s.extrudeSmooth,
                 s.fixedCanvas, s.face.area[0], s.face.area[1], s.face.area[2], s.face.area[3]),
            Line(int(FillKind::kStops), 3, 1, 0, 0.25, 0.75, -45, 0.1, 10, int(GradientShape::kRadial),
                 int(GradientShape::kLinear), int(TextureTiling::kCentre), int(Align::kRight),
                 int(Direction::kRightToLeft), 1, 1, 0, 1, 1, 2, 30, 40));
  EXPECT_EQ(Line(s.face.blur, s.outlineWidth, s.pixelSize, s.wrapWidth, s.bevelElevation, s.bevelPasses,
                 s.shadowX, s.shadowY, s.translateX, s.translateY, s.canvasWidth, s.canvasHeight, s.padding),
            "254 500 4 16384 60 1 -2000 2000 16384 -16384 16384 1 4096 ");
  EXPECT_EQ(s.language + " " + s.features, "sr-Latn liga=0,+smcp,kern[2:5]=1,-calt");
  // A later fill replaces an earlier one; a switch's opposite clears it.
  EXPECT_EQ(Set("face-texture=gen:wood face-color=red").face.fill, FillKind::kSolid);
  const Settings two = Set("face-color=red face-colors=#000,#fff");
  EXPECT_EQ(std::make_pair(two.face.fill, two.face.end),
            std::make_pair(FillKind::kTwoColour, Rgba{255, 255, 255, 255}));
  EXPECT_FALSE(Set("emboss no-emboss").emboss);
  EXPECT_EQ(Set("background=transparent").background.a, 0);
}

// Each numeric option's range at both ends is checked, against the program, by the Python package's tests.
TEST(OptionTable, MalformedValuesAreRefusedWithTheOptionsName) {
  std::string manyStops = "face-stops=red";
  for (int i = 0; i < 255; ++i) manyStops += ",blue";
  const std::pair<std::string, const char*> cases[] = {
      {"size=12px", "--size: '12px' is not a whole number (4..1000)"},
      {"shadow-offset=3,9999", "--shadow-offset: 9999 is out of range (-2000..2000)"},
      {"align=middle", "--align: 'middle' is not an alignment (left, centre or right)"},
      {"direction=up", "--direction: 'up' is not a direction (auto, ltr or rtl)"},
      {"language=en_US", "--language: 'en_US' is not a language tag"},
      {"features=liga=", "--features: 'liga=' is not an OpenType feature setting"},
      {"features=kern,,liga", "--features: '' is not an OpenType feature setting"},
      {"features=toolong", "--features: 'toolong' is not an OpenType feature setting"},
      {"bevel=yes", "--bevel takes no value"},
      {"nonsense=1", "unknown option '--nonsense'"},
      {"canvas=100", "WxH"},
      {"face-colors=red", "START,END"},
      {manyStops, "at most 255"},
      {"face-gradient=radial:0.5", "two fractions"},
      {"face-gradient=diagonal", "not a gradient shape"},
      {"face-gradient-area=10,10,10,50", "empty rectangle"},
  };
  for (const auto& [option, message] : cases) {
    EXPECT_NE(Refusal([&] { Set(option); }).find(message), std::string::npos) << message;
  }
  for (const char* colour : {"#12", "#12345", "#1234567", "#ggg", "chartreuse", ""}) {
    const std::string message = Refusal([&] { Set(std::string("face-color=") + colour); });
    EXPECT_EQ(message.rfind("--face-color: '" + std::string(colour) + "' is not a colour (#RGB", 0), 0u)
        << message;
  }
  // A failed setting leaves the settings as they were.
  Settings s = Set("face-stops=red,blue");
  EXPECT_THROW(SetOption(s, "face-stops", "red,nocolour"), Error);
  EXPECT_THROW(SetOption(s, "shadow-offset", "3,9999"), Error);
  EXPECT_EQ(s.face.stops.size() + s.shadowX, 2u);
}

TEST(OptionTable, PresetsApplyTheirOptionsOverWhatIsSet) {
  for (const Preset& p : Presets()) {
    Settings s;
    EXPECT_NO_THROW(ApplyPreset(s, p.name));
    EXPECT_FALSE(p.sampleText.empty() || p.description.empty()) << p.name;
  }
  Settings s = Set("size=40");
  ApplyPreset(s, "gold");
  EXPECT_EQ(s.pixelSize, 40);  // the preset leaves what it does not name
  EXPECT_EQ(std::make_pair(s.face.fill, s.outlineWidth), std::make_pair(FillKind::kStops, 3));
  EXPECT_EQ(s.background, (Rgba{0x1B, 0x1B, 0x1F, 255}));
  EXPECT_EQ(Refusal([&] { ApplyPreset(s, "sparkle"); }),
            "--preset: no preset named 'sparkle' (see --list-presets)");
}

TEST(Composition, FailuresCarryTheCommandLinesMessages) {
  const std::tuple<std::string, std::string, ErrorKind, const char*> cases[] = {
      {"font=/nonexistent.ttf", "a", ErrorKind::kJob, "cannot open font file '/nonexistent.ttf'"},
      {"family=Nonexistent", "a", ErrorKind::kJob, "no installed font of family 'Nonexistent'"},
      {"size=40", "ab\xff", ErrorKind::kJob, "not valid UTF-8"},
      {"size=40", "   ", ErrorKind::kJob, "nothing to draw"},
      {"face-texture=gen:plaid", "a", ErrorKind::kSetting, "no generated texture named 'plaid'"},
      {"face-texture=wood.tga", "a", ErrorKind::kJob, "cannot read texture file 'wood.tga'"},
      {"letter-spacing=1000", std::string(40, 'i'), ErrorKind::kJob, "16.16 coordinate range"},
  };
  for (const auto& [options, text, kind, message] : cases) {
    EXPECT_NE(Refusal([&] { Draw(options, text); }, kind).find(message), std::string::npos) << message;
  }
  const ImageReader short4x4 = [](const std::string&) { return RgbaImage{4, 4, {0, 0}}; };
  EXPECT_NE(Refusal([&] { Draw("face-texture=t.png", "H", short4x4); }, ErrorKind::kJob)
                .find("fewer than its size"),
            std::string::npos);
}

TEST(Composition, TheCanvasAndEachSettingReachThePicture) {
  const auto rgb = [](uint32_t colour) {
    return [colour](uint32_t p) { return p == (0xFF000000 | colour); };
  };
  const Image page = Draw("background=#336699 canvas=260x140", "Bg");
  EXPECT_EQ(std::make_tuple(page.width, page.height, page.at(0, 0), page.at(259, 139)),
            std::make_tuple(260, 140, 0xFF336699u, 0xFF336699u));
  EXPECT_EQ(Draw("size=40", "Bg").at(0, 0), 0u);
  const Image fitted = Draw("padding=23 shadow-offset=7,9 shadow-blur=3", "Fit");
  EXPECT_EQ(Box(fitted), (std::vector<int>{23, 23, fitted.width - 23, fitted.height - 23}));
  // On a fixed canvas the drawing is centred, and a translation moves it by exactly its amount.
  const Image centred = Draw("canvas=333x177", "Mid"), moved = Draw("canvas=333x177 translate=-11,6", "Mid");
  const std::vector<int> mid = Box(centred);
  EXPECT_LE(std::abs(mid[0] - (333 - mid[2])) + std::abs(mid[1] - (177 - mid[3])), 2);
  for (int y = 0; y < 177; ++y) {
    for (int x = 0; x < 333; ++x) {
      ASSERT_EQ(moved.at(x, y), x + 11 < 333 && y >= 6 ? centred.at(x + 11, y - 6) : 0u) << x << "," << y;
    }
  }
  // A 2 x 1 texture of pure red and pure blue from the caller's reader: the Face shows only those.
  std::string asked;
  const Image striped = Draw("face-texture=s.png size=120", "H", [&](const std::string& path) {
    asked = path;
    return RgbaImage{2, 1, {255, 0, 0, 255, 0, 0, 255, 255}};
  });
  const int reds = Count(striped, rgb(0xFF0000)), blues = Count(striped, rgb(0x0000FF));
  EXPECT_EQ(asked, "s.png");
  EXPECT_GT(std::min(reds, blues), 1000);
  EXPECT_EQ(reds + blues, Count(striped, [](uint32_t p) { return p >> 24 == 255; }));
  // The Shadow goes where its offset says, and shows alone or not at all.
  const std::string shadow = "shadow-color=#FF0000 canvas=300x200 background=#000000 shadow-offset=-40,-25 ";
  const std::vector<int> face = Box(Draw(shadow, "I"), rgb(0xFFFFFF)),
                         offset = Box(Draw(shadow, "I"), rgb(0xFF0000));
  EXPECT_EQ(std::make_pair(offset[0] - face[0], offset[1] - face[1]), std::make_pair(-40, -25));
  EXPECT_EQ(Count(Draw(shadow + "no-shadow", "I"), rgb(0xFF0000)) +
                Count(Draw(shadow + "shadow-only", "I"), rgb(0xFFFFFF)),
            0);
  // Each drawing setting changes the picture; what it draws is the library's own business.
  const std::pair<const char*, const char*> differ[] = {
      {"", "face-color=#FF0000"},
      {"", "outline-color=#00FF00"},
      {"", "outline-width=3"},
      {"", "shadow-color=red"},
      {"", "emboss"},
      {"face-texture=gen:checker emboss", "face-texture=gen:checker emboss emboss-angle=45"},
      {"face-texture=gen:checker emboss", "face-texture=gen:checker emboss emboss-tint=red"},
      {"", "bevel"},
      {"bevel", "bevel bevel-elevation=10"},
      {"bevel", "bevel bevel-passes=5"},
      {"bevel", "bevel bevel-angle=45"},
      {"", "extrude"},
      {"extrude", "extrude extrude-shading=flat"},
      {"", "shadow-zoom=1.5"},
      {"", "face-blur=3"},
      {"", "outline-blur=3"},
      {"", "shadow-blur=3"},
      {"", "face-colors=red,blue"},
      {"", "outline-colors=red,blue"},
      {"", "face-stops=red,blue:3"},
      {"face-colors=red,blue", "face-colors=red,blue face-gradient=linear:30"},
      {"face-colors=red,blue", "face-colors=red,blue face-gradient-extent=canvas"},
      {"face-colors=red,blue", "face-colors=red,blue face-gradient-area=0,0,50,50"},
      {"", "face-texture=gen:wood"},
      {"", "outline-texture=gen:wood"},
      {"face-texture=gen:wood", "face-texture=gen:wood face-tiling=stretch"},
  };
  const std::string base = "outline-width=6 shadow-offset=9,9 canvas=240x160 ";
  for (const auto& [one, other] : differ) {
    EXPECT_NE(Draw(base + one, "Ag").pixels, Draw(base + other, "Ag").pixels) << other;
  }
}

TEST(Composition, SeparateCallsOnSeparateThreadsDrawAlike) {
  Settings s = Set("size=40");
  ApplyPreset(s, "neon");
  const std::string text =
      "Tag \xD8\xA8\xD9\x8A\xD8\xAA \xE0\xA4\x95\xE0\xA4\xBF";  // Latin, Arabic, Devanagari
  const RgbaImage alone = Compose(s, text);
  std::vector<RgbaImage> results(4);
  std::vector<std::thread> threads;
  for (RgbaImage& r : results) threads.emplace_back([&s, &text, &r] { r = Compose(s, text); });
  for (std::thread& t : threads) t.join();
  for (const RgbaImage& r : results) EXPECT_EQ(r.pixels, alone.pixels);
}

}  // namespace
}  // namespace lx::compose
