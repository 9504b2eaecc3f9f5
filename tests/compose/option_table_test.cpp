// The option table the command line and Python share: every setting by name, its value forms, its
// range at both ends, and the messages that refuse bad values.
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <tuple>
#include <string>

#include "compose/composition.h"

namespace lx::compose {
namespace {

// Settings from "name=value" words, applied in order.
Settings Set(const std::string& options) {
  Settings s;
  std::istringstream words(options);
  for (std::string w; words >> w;) SetOption(s, w.substr(0, w.find('=')), w.substr(w.find('=') + 1));
  return s;
}

TEST(OptionTable, NamesAreUniqueAndFound) {
  std::set<std::string> names;
  std::set<char> shorts;
  for (const OptionInfo& o : Options()) {
    EXPECT_TRUE(names.insert(o.name).second) << o.name;
    EXPECT_TRUE(!o.shortName || shorts.insert(o.shortName).second) << o.shortName;
    EXPECT_FALSE(o.section.empty() || o.help.empty()) << o.name;
    EXPECT_EQ(FindOption(o.name), &o);
  }
  EXPECT_EQ(FindOption("output"), nullptr);  // files are the command line's business
}

TEST(OptionTable, ValuesReachTheirSettings) {
  const Settings s =
      Set("face-color=#1a2B3c outline-color=#abc shadow-color=#01020304 background=Gold "
          "outline-stops=red:3,#00ff0080,blue:0 face-gradient=radial:0.25,0.75 outline-gradient=linear:-45 "
          "face-gradient-area=1,2,30,40 outline-gradient-extent=canvas face-tiling=center align=Right "
          "direction=rtl "
          "language=sr-Latn features=liga=0,+smcp,kern[2:5]=1,-calt face-blur=254 outline-width=500 size=4 "
          "wrap=16384 bevel-elevation=60 bevel-passes=1 extrude-shading=flat");
  EXPECT_EQ(s.face.colour, (Rgba{0x1a, 0x2b, 0x3c, 255}));
  EXPECT_EQ(s.outline.colour, (Rgba{0xaa, 0xbb, 0xcc, 255}));
  EXPECT_EQ(s.shadowColour, (Rgba{1, 2, 3, 4}));
  EXPECT_EQ(s.background, (Rgba{212, 175, 55, 255}));
  EXPECT_EQ(s.outline.fill, FillKind::kStops);
  ASSERT_EQ(s.outline.stops.size(), 3u);
  EXPECT_EQ(s.outline.stops[1].colour, (Rgba{0, 255, 0, 128}));
  EXPECT_EQ(std::vector<uint32_t>(
                {s.outline.stops[0].weight, s.outline.stops[1].weight, s.outline.stops[2].weight}),
            std::vector<uint32_t>({3, 1, 0}));
  EXPECT_EQ(s.face.shape, GradientShape::kRadial);
  EXPECT_EQ(std::make_pair(s.face.radialFrom, s.face.radialTo), std::make_pair(0.25, 0.75));
  EXPECT_EQ(s.outline.shape, GradientShape::kLinear);
  EXPECT_EQ(s.outline.angleDegrees, -45.0);
  EXPECT_TRUE(s.face.hasArea && s.outline.extentCanvas && !s.extrudeSmooth);
  EXPECT_EQ(std::vector<int>(s.face.area, s.face.area + 4), (std::vector<int>{1, 2, 30, 40}));
  EXPECT_EQ(s.face.tiling, TextureTiling::kCentre);
  EXPECT_EQ(s.align, Align::kRight);
  EXPECT_EQ(s.direction, Direction::kRightToLeft);
  EXPECT_EQ(s.language + " " + s.features, "sr-Latn liga=0,+smcp,kern[2:5]=1,-calt");
  EXPECT_EQ(std::vector<int>(
                {s.face.blur, s.outlineWidth, s.pixelSize, s.wrapWidth, s.bevelElevation, s.bevelPasses}),
            std::vector<int>({254, 500, 4, 16384, 60, 1}));
  // A later fill replaces an earlier one; a switch's opposite clears it.
  EXPECT_EQ(Set("face-texture=gen:wood face-color=red").face.fill, FillKind::kSolid);
  const Settings two = Set("face-color=red face-colors=#000,#fff");
  EXPECT_EQ(two.face.fill, FillKind::kTwoColour);
  EXPECT_EQ(two.face.end, (Rgba{255, 255, 255, 255}));
  EXPECT_FALSE(Set("emboss= no-emboss=").emboss);
  EXPECT_EQ(Set("background=transparent").background.a, 0);
}

TEST(OptionTable, BadValuesAreRefusedWithTheOptionsName) {
  std::string manyStops = "red";
  for (int i = 0; i < 255; ++i) manyStops += ",blue";
  struct Range {
    const char *name, *below, *above, *range;
  };
  const Range ranges[] = {
      {"size", "3", "1001", "(4..1000)"},
      {"face-blur", "-1", "255", "(0..254)"},
      {"outline-blur", "-1", "255", "(0..254)"},
      {"shadow-blur", "-1", "255", "(0..254)"},
      {"outline-width", "-1", "501", "(0..500)"},
      {"bevel-elevation", "2", "61", "(3..60)"},
      {"bevel-passes", "0", "61", "(1..60)"},
      {"padding", "-1", "4097", "(0..4096)"},
      {"emboss-angle", "-180.5", "181", "(-180..180)"},
      {"bevel-angle", "-181", "180.01", "(-180..180)"},
      {"shadow-zoom", "0.09", "10.5", "(0.1..10)"},
      {"shadow-offset", "0,-2001", "2001,0", "(-2000..2000)"},
      {"translate", "-16385,0", "0,16385", "(-16384..16384)"},
      {"canvas", "10x0", "16385x10", "(1..16384)"},
      {"line-spacing", "0.05", "11", "(0.1..10)"},
      {"letter-spacing", "-1001", "1001", "(-1000..1000)"},
      {"wrap", "-1", "16385", "(0..16384)"},
      {"face-gradient", "linear:-181", "radial:0.5,1.5", ""},
  };
  for (const Range& r : ranges) {
    for (const char* value : {r.below, r.above}) {
      Settings s;
      try {
        SetOption(s, r.name, value);
        ADD_FAILURE() << r.name << " " << value;
      } catch (const Error& e) {
        const std::string message = e.what();
        EXPECT_EQ(message.rfind("--" + std::string(r.name) + ": ", 0), 0u) << message;
        EXPECT_NE(message.find(" is out of range " + std::string(r.range)), std::string::npos) << message;
      }
    }
  }
  const std::pair<std::pair<std::string, std::string>, const char*> cases[] = {
      {{"size", "x"}, "--size: 'x' is not a whole number (4..1000)"},
      {{"size", "12px"}, "--size: '12px' is not a whole number (4..1000)"},
      {{"line-spacing", "11"}, "--line-spacing: 11 is out of range (0.1..10)"},
      {{"align", "middle"}, "--align: 'middle' is not an alignment (left, centre or right)"},
      {{"direction", "up"}, "--direction: 'up' is not a direction (auto, ltr or rtl)"},
      {{"language", "e"}, "--language: 'e' is not a language tag"},
      {{"language", "en_US"}, "--language: 'en_US' is not a language tag"},
      {{"features", "li ga"}, "--features: 'li ga' is not an OpenType feature setting"},
      {{"features", "liga="}, "--features: 'liga=' is not an OpenType feature setting"},
      {{"features", "kern,,liga"}, "--features: '' is not an OpenType feature setting"},
      {{"features", "toolong"}, "--features: 'toolong' is not an OpenType feature setting"},
      {{"face-color", "bluish"}, "--face-color: 'bluish' is not a colour"},
      {{"bevel", "yes"}, "--bevel takes no value"},
      {{"nonsense", "1"}, "unknown option '--nonsense'"},
      {{"canvas", "100"}, "WxH"},
      {{"face-colors", "red"}, "START,END"},
      {{"face-stops", manyStops}, "at most 255"},
      {{"face-gradient", "radial:0.5"}, "two fractions"},
      {{"face-gradient", "diagonal"}, "not a gradient shape"},
      {{"face-gradient-area", "10,10,10,50"}, "empty rectangle"},
      {{"face-color", "#12"}, "is not a colour"},
      {{"face-color", "#12345"}, "is not a colour"},
      {{"face-color", "#1234567"}, "is not a colour"},
      {{"face-color", "#ggg"}, "is not a colour"},
      {{"face-color", "chartreuse"}, "is not a colour"},
      {{"face-color", ""}, "is not a colour"},
  };
  for (const auto& [option, message] : cases) {
    Settings s;
    try {
      SetOption(s, option.first, option.second);
      ADD_FAILURE() << message;
    } catch (const Error& e) {
      EXPECT_EQ(e.kind(), ErrorKind::kSetting);
      EXPECT_EQ(e.exitCode(), 2);
      EXPECT_NE(std::string(e.what()).find(message), std::string::npos) << e.what();
    }
  }
}

TEST(OptionTable, AFailedSettingLeavesTheSettingsAsTheyWere) {
  Settings s;
  SetOption(s, "face-stops", "red,blue");
  EXPECT_THROW(SetOption(s, "face-stops", "red,nocolour"), Error);
  ASSERT_EQ(s.face.stops.size(), 2u);
  EXPECT_EQ(s.face.fill, FillKind::kStops);
  EXPECT_THROW(SetOption(s, "shadow-offset", "3,9999"), Error);
  EXPECT_EQ(s.shadowX, 0);
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
  EXPECT_EQ(s.face.fill, FillKind::kStops);
  EXPECT_EQ(s.outlineWidth, 3);
  EXPECT_EQ(s.background, (Rgba{0x1B, 0x1B, 0x1F, 255}));
  try {
    ApplyPreset(s, "sparkle");
    ADD_FAILURE();
  } catch (const Error& e) {
    EXPECT_STREQ(e.what(), "--preset: no preset named 'sparkle' (see --list-presets)");
  }
}

}  // namespace
}  // namespace lx::compose
