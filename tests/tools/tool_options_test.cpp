// The command line: option values, ranges, presets and the help text.
#include <gtest/gtest.h>

#include "tools/lettrix_cli/options.h"
#include "compose/option_table.h"
#include "tools/lettrix_cli/tool_error.h"

namespace lxt {
namespace {

using lx::compose::FindPreset;
using lx::compose::Preset;

ProgramInfo Native() {
  ProgramInfo p;
  p.name = "lettrix";
  p.defaultFont = "default.ttf";
  return p;
}

Job Parse(std::vector<std::string> args) {
  args.insert(args.begin(), {"-o", "out.png"});
  return ParseCommandLine(args, Native()).job;
}

// The message of the usage error that parsing `args` raises ("" when none is raised).
std::string UsageMessage(const std::vector<std::string>& args, const ProgramInfo& program = Native()) {
  try {
    ParseCommandLine(args, program);
  } catch (const ToolError& e) {
    EXPECT_EQ(e.exitCode(), kExitBadUsage) << e.what();
    return e.what();
  }
  return "";
}

TEST(ToolOptions, TextComesFromWordsOrTextOption) {
  EXPECT_EQ(Parse({"Hello", "big", "world"}).text, "Hello big world");
  EXPECT_EQ(Parse({"--text", "-5 degrees"}).text, "-5 degrees");
  EXPECT_EQ(Parse({"--", "--not-an-option"}).text, "--not-an-option");
  EXPECT_NE(UsageMessage({"-o", "a.png"}).find("no text given"), std::string::npos);
  EXPECT_NE(UsageMessage({"-o", "a.png", "--text", "A", "B"}).find("given twice"), std::string::npos);
  EXPECT_NE(UsageMessage({"-o", "a.png", "--text", ""}).find("empty"), std::string::npos);
}

TEST(ToolOptions, OutputMustBePngOrTga) {
  EXPECT_NE(UsageMessage({"A"}).find("no output file"), std::string::npos);
  EXPECT_NE(UsageMessage({"A", "-o", "a.jpg"}).find("must end in .png or .tga"), std::string::npos);
  EXPECT_EQ(UsageMessage({"A", "-o", "A.TGA"}), "");
  ProgramInfo tgaOnly = Native();
  tgaOnly.readsPng = false;
  EXPECT_NE(UsageMessage({"A", "-o", "a.png"}, tgaOnly).find("TGA only"), std::string::npos);
  tgaOnly.hasFontconfig = false;
  EXPECT_NE(UsageMessage({"A", "-o", "a.tga", "--family", "Sans"}, tgaOnly).find("--font"),
            std::string::npos);
}

TEST(ToolOptions, ValueFormsAndMistakes) {
  EXPECT_EQ(Parse({"A", "--size=48"}).pixelSize, 48);
  EXPECT_EQ(Parse({"A", "-s", "48"}).pixelSize, 48);
  EXPECT_EQ(Parse({"A", "-s48"}).pixelSize, 48);
  EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--bogus"}).find("unknown option '--bogus'"),
            std::string::npos);
  EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--emboss=on"}).find("takes no value"), std::string::npos);
  EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--size"}).find("needs a value"), std::string::npos);
  EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--size", "12px"}).find("not a whole number (4..1000)"),
            std::string::npos);
}

TEST(ToolOptions, RangesAreEnforcedAtBothEnds) {
  struct Case {
    const char* option;
    const char* low;
    const char* high;
    const char* range;
  } cases[] = {
      {"--size", "3", "1001", "(4..1000)"},
      {"--face-blur", "-1", "255", "(0..254)"},
      {"--outline-blur", "-1", "255", "(0..254)"},
      {"--shadow-blur", "-1", "255", "(0..254)"},
      {"--outline-width", "-1", "501", "(0..500)"},
      {"--bevel-elevation", "2", "61", "(3..60)"},
      {"--bevel-passes", "0", "61", "(1..60)"},
      {"--padding", "-1", "4097", "(0..4096)"},
      {"--emboss-angle", "-180.5", "181", "(-180..180)"},
      {"--bevel-angle", "-181", "180.01", "(-180..180)"},
      {"--shadow-zoom", "0.09", "10.5", "(0.1..10)"},
  };
  for (const Case& c : cases) {
    for (const char* bad : {c.low, c.high}) {
      const std::string message = UsageMessage({"A", "-o", "a.png", c.option, bad});
      EXPECT_NE(message.find("out of range " + std::string(c.range)), std::string::npos)
          << c.option << " " << bad << ": " << message;
    }
  }
  EXPECT_EQ(Parse({"A", "--face-blur", "254"}).face.blur, 254);
  EXPECT_EQ(Parse({"A", "--outline-width", "500"}).outlineWidth, 500);
  EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--shadow-offset", "2001,0"}).find("out of range"),
            std::string::npos);
  EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--canvas", "16385x10"}).find("out of range"),
            std::string::npos);
  EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--canvas", "100"}).find("WxH"), std::string::npos);
}

TEST(ToolOptions, Colours) {
  const Job j = Parse({"A", "--face-color", "#1a2B3c", "--outline-color", "#abc", "--shadow-color",
                       "#01020304", "--background", "Gold"});
  EXPECT_EQ(j.face.colour, (Rgba{0x1a, 0x2b, 0x3c, 255}));
  EXPECT_EQ(j.outline.colour, (Rgba{0xaa, 0xbb, 0xcc, 255}));
  EXPECT_EQ(j.shadowColour, (Rgba{1, 2, 3, 4}));
  EXPECT_EQ(j.background, (Rgba{212, 175, 55, 255}));
  EXPECT_EQ(Parse({"A", "--background", "transparent"}).background.a, 0);
  for (const char* bad : {"#12", "#12345", "#1234567", "#ggg", "chartreuse", ""}) {
    EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--face-color", bad}).find("is not a colour"),
              std::string::npos)
        << bad;
  }
}

TEST(ToolOptions, FillsReplaceEachOther) {
  Job j = Parse({"A", "--face-texture", "gen:wood", "--face-color", "red"});
  EXPECT_EQ(j.face.fill, FillKind::kSolid);
  j = Parse({"A", "--face-color", "red", "--face-colors", "#000,#fff"});
  EXPECT_EQ(j.face.fill, FillKind::kTwoColour);
  EXPECT_EQ(j.face.start, (Rgba{0, 0, 0, 255}));
  EXPECT_EQ(j.face.end, (Rgba{255, 255, 255, 255}));
  j = Parse({"A", "--outline-stops", "red:3,#00ff0080,blue:0"});
  EXPECT_EQ(j.outline.fill, FillKind::kStops);
  ASSERT_EQ(j.outline.stops.size(), 3u);
  EXPECT_EQ(j.outline.stops[0].weight, 3u);
  EXPECT_EQ(j.outline.stops[1].colour, (Rgba{0, 255, 0, 128}));
  EXPECT_EQ(j.outline.stops[1].weight, 1u);
  EXPECT_EQ(j.outline.stops[2].weight, 0u);
  j = Parse({"A", "--outline-texture", "wall.tga", "--outline-tiling", "stretch"});
  EXPECT_EQ(j.outline.fill, FillKind::kTexture);
  EXPECT_EQ(j.outline.texture, "wall.tga");
  EXPECT_EQ(j.outline.tiling, TextureTiling::kStretch);
  EXPECT_EQ(Parse({"A", "--face-tiling", "center"}).face.tiling, TextureTiling::kCentre);
  EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--face-colors", "red"}).find("START,END"), std::string::npos);
  std::string many = "red";
  for (int i = 0; i < 255; ++i) many += ",blue";
  EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--face-stops", many}).find("at most 255"), std::string::npos);
}

TEST(ToolOptions, GradientShapesAndExtent) {
  Job j = Parse({"A", "--face-gradient", "radial:0.25,0.75", "--outline-gradient", "linear:-45"});
  EXPECT_EQ(j.face.shape, GradientShape::kRadial);
  EXPECT_DOUBLE_EQ(j.face.radialFrom, 0.25);
  EXPECT_DOUBLE_EQ(j.face.radialTo, 0.75);
  EXPECT_EQ(j.outline.shape, GradientShape::kLinear);
  EXPECT_DOUBLE_EQ(j.outline.angleDegrees, -45.0);
  j = Parse({"A", "--face-gradient-area", "1,2,30,40", "--outline-gradient-extent", "canvas"});
  EXPECT_TRUE(j.face.hasArea);
  EXPECT_EQ(j.face.area[2], 30);
  EXPECT_TRUE(j.outline.extentCanvas);
  EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--face-gradient", "radial:0.5"}).find("two fractions"),
            std::string::npos);
  EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--face-gradient", "radial:0.5,1.5"}).find("out of range"),
            std::string::npos);
  EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--face-gradient", "diagonal"}).find("not a gradient shape"),
            std::string::npos);
  EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--face-gradient-area", "10,10,10,50"}).find("empty rectangle"),
            std::string::npos);
}

TEST(ToolOptions, ShadowEmbossAndBevel) {
  const Job j = Parse({"A",         "--shadow-offset",   "-4,9",    "--shadow-zoom", "1.5",
                       "--extrude", "--extrude-shading", "flat",    "--no-shadow",   "--shadow-only",
                       "--emboss",  "--emboss-tint",     "#102030", "--bevel",       "--bevel-elevation",
                       "45",        "--bevel-passes",    "7",       "--translate",   "-3,5"});
  EXPECT_EQ(j.shadowX, -4);
  EXPECT_EQ(j.shadowY, 9);
  EXPECT_DOUBLE_EQ(j.shadowZoomX, 1.5);
  EXPECT_DOUBLE_EQ(j.shadowZoomY, 1.5);
  EXPECT_TRUE(j.extrude);
  EXPECT_FALSE(j.extrudeSmooth);
  EXPECT_FALSE(j.shadowVisible);
  EXPECT_TRUE(j.shadowOnly);
  EXPECT_TRUE(j.emboss);
  EXPECT_EQ(j.embossTint, (Rgba{0x10, 0x20, 0x30, 255}));
  EXPECT_TRUE(j.bevel);
  EXPECT_EQ(j.bevelElevation, 45);
  EXPECT_EQ(j.bevelPasses, 7);
  EXPECT_EQ(j.translateX, -3);
  EXPECT_EQ(j.translateY, 5);
  EXPECT_DOUBLE_EQ(Parse({"A", "--shadow-zoom", "2,0.5"}).shadowZoomY, 0.5);
  EXPECT_FALSE(Parse({"A", "--emboss", "--no-emboss"}).emboss);
}

TEST(ToolOptions, PresetsLayDownSettingsThatLaterOptionsOverride) {
  const Preset* glow = FindPreset("glow");
  ASSERT_NE(glow, nullptr);
  const Job plain = Parse({"A", "--preset", "glow"});
  EXPECT_GT(plain.shadowBlur, 0);
  const Job overridden = Parse({"A", "--preset", "glow", "--shadow-blur", "3", "--face-color", "red"});
  EXPECT_EQ(overridden.shadowBlur, 3);
  EXPECT_EQ(overridden.face.colour, (Rgba{220, 30, 30, 255}));
  // Options before the preset are overridden by it.
  EXPECT_EQ(Parse({"A", "--shadow-blur", "3", "--preset", "glow"}).shadowBlur, plain.shadowBlur);
  EXPECT_NE(UsageMessage({"A", "-o", "a.png", "--preset", "nope"}).find("no preset named 'nope'"),
            std::string::npos);
  // Without a text, the last preset's sample words are drawn.
  EXPECT_EQ(ParseCommandLine({"-o", "a.png", "--preset", "neon"}, Native()).job.text,
            FindPreset("neon")->sampleText);
  EXPECT_EQ(ParseCommandLine({"-o", "a.png", "--preset", "neon", "Own"}, Native()).job.text, "Own");
}

TEST(ToolOptions, EveryPresetParsesAndIsListed) {
  const std::vector<std::string> wanted = {"drop-shadow",   "glow",     "neon",     "gold",
                                           "chrome-emboss", "3d-bevel", "extruded", "textured"};
  for (const std::string& name : wanted) EXPECT_NE(FindPreset(name), nullptr) << name;
  const std::string list = PresetListText();
  for (const Preset& p : lx::compose::Presets()) {
    EXPECT_NO_THROW(Parse({"A", "--preset", p.name})) << p.name;
    EXPECT_FALSE(p.description.empty());
    EXPECT_FALSE(p.sampleText.empty());
    EXPECT_NE(list.find("  " + p.name + " "), std::string::npos) << p.name;
  }
}

TEST(ToolOptions, HelpNamesEveryOptionWithItsRange) {
  const std::string help = HelpText(Native());
  // One option per setting of the library, with the range the help must state.
  const std::vector<std::pair<std::string, std::string>> options = {
      {"--output FILE", ""},
      {"--preset NAME", ""},
      {"--font FILE", "default.ttf"},
      {"--family PATTERN", ""},
      {"--size PX", "4..1000"},
      {"--canvas WxH|fit", "1..16384"},
      {"--padding PX", "0..4096"},
      {"--background COLOUR", ""},
      {"--translate DX,DY", "-16384..16384"},
      {"--face-color COLOUR", ""},
      {"--face-colors START,END", ""},
      {"--face-stops", "0..1000000"},
      {"--face-gradient SHAPE", "-180..180"},
      {"--face-gradient-extent", ""},
      {"--face-gradient-area", ""},
      {"--face-texture FILE|gen:NAME", "gen:wood"},
      {"--face-tiling", ""},
      {"--face-blur PX", "0..254"},
      {"--emboss", ""},
      {"--emboss-angle DEGREES", "-180..180"},
      {"--emboss-tint COLOUR", ""},
      {"--outline-width PX", "0..500"},
      {"--outline-color COLOUR", ""},
      {"--outline-colors START,END", ""},
      {"--outline-stops", ""},
      {"--outline-gradient SHAPE", ""},
      {"--outline-gradient-extent", ""},
      {"--outline-gradient-area", ""},
      {"--outline-texture", ""},
      {"--outline-tiling", ""},
      {"--outline-blur PX", "0..254"},
      {"--bevel", ""},
      {"--bevel-elevation DEGREES", "3..60"},
      {"--bevel-passes N", "1..60"},
      {"--bevel-angle DEGREES", ""},
      {"--shadow-color COLOUR", ""},
      {"--shadow-offset X,Y", "-2000..2000"},
      {"--shadow-zoom X[,Y]", "0.1..10"},
      {"--shadow-blur PX", ""},
      {"--extrude", ""},
      {"--extrude-shading smooth|flat", ""},
      {"--no-shadow", ""},
      {"--shadow-only", ""},
      {"--outline-block FILE", ""},
      {"--dump-outline FILE", ""},
  };
  for (const auto& [option, range] : options) {
    const size_t at = help.find("--" + option.substr(2));
    ASSERT_NE(at, std::string::npos) << option;
    const size_t lineEnd = help.find("\n  -", at);
    EXPECT_NE(help.substr(at, lineEnd - at).find(range), std::string::npos) << option << " lacks " << range;
  }
  EXPECT_NE(help.find("Exit status"), std::string::npos);
  ProgramInfo demo = Native();
  demo.hasFontconfig = false;
  EXPECT_EQ(HelpText(demo).find("--family"), std::string::npos);
}

}  // namespace
}  // namespace lxt
