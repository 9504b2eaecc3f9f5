// The command line: option values, ranges, presets and the help text.
#include <gtest/gtest.h>

#include "compose/option_table.h"
#include "tools/lettrix_cli/options.h"
#include "tools/lettrix_cli/tool_error.h"

namespace lxt {
namespace {

using lx::compose::FindPreset;

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

TEST(ToolOptions, MistakesAreUsageErrors) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"-o", "a.png", "--text", "A", "B"}, "given twice"},
      {{"-o", "a.png", "--text", ""}, "empty"},
  };
  for (const auto& [args, message] : cases) {
    EXPECT_NE(UsageMessage(args).find(message), std::string::npos) << message;
  }
  EXPECT_EQ(UsageMessage({"A", "-o", "A.TGA"}), "");
  ProgramInfo tgaOnly = Native();
  tgaOnly.readsPng = false;
  EXPECT_NE(UsageMessage({"A", "-o", "a.png"}, tgaOnly).find("TGA only"), std::string::npos);
  tgaOnly.hasFontconfig = false;
  EXPECT_NE(UsageMessage({"A", "-o", "a.tga", "--family", "Sans"}, tgaOnly).find("--font"),
            std::string::npos);
}

TEST(ToolOptions, TextComesFromWordsOrTheTextOption) {
  EXPECT_EQ(Parse({"Hello", "big", "world"}).text, "Hello big world");
  EXPECT_EQ(Parse({"--text", "-5 degrees"}).text, "-5 degrees");
  EXPECT_EQ(Parse({"--", "--not-an-option"}).text, "--not-an-option");
  for (const char* form : {"--size=48", "-s48"}) EXPECT_EQ(Parse({"A", form}).pixelSize, 48);
  EXPECT_EQ(Parse({"A", "-s", "48", "--face-blur", "254"}).face.blur, 254);
}

TEST(ToolOptions, PresetsLayDownSettingsThatLaterOptionsOverride) {
  const int glowBlur = Parse({"A", "--preset", "glow"}).shadowBlur;
  EXPECT_GT(glowBlur, 0);
  EXPECT_EQ(Parse({"A", "--preset", "glow", "--shadow-blur", "3"}).shadowBlur, 3);
  EXPECT_EQ(Parse({"A", "--shadow-blur", "3", "--preset", "glow"}).shadowBlur, glowBlur);
  // Without a text, the last preset's sample words are drawn.
  EXPECT_EQ(ParseCommandLine({"-o", "a.png", "--preset", "neon"}, Native()).job.text,
            FindPreset("neon")->sampleText);
  EXPECT_EQ(ParseCommandLine({"-o", "a.png", "--preset", "neon", "Own"}, Native()).job.text, "Own");
  for (const char* name :
       {"drop-shadow", "glow", "neon", "gold", "chrome-emboss", "3d-bevel", "extruded", "textured"})
    EXPECT_NE(FindPreset(name), nullptr) << name;
  const std::string list = PresetListText();
  for (const lx::compose::Preset& p : lx::compose::Presets()) {
    EXPECT_NO_THROW(Parse({"A", "--preset", p.name})) << p.name;
    EXPECT_NE(list.find("  " + p.name + " "), std::string::npos) << p.name;
  }
}

TEST(ToolOptions, HelpNamesEveryOptionWithItsRange) {
  const std::string help = HelpText(Native());
  // Long ranges may wrap onto the next line of the help.
  auto flat = [](std::string text) {
    for (char& c : text) c = c == '\n' ? ' ' : c;
    for (size_t at; (at = text.find("  ")) != std::string::npos;) text.erase(at, 1);
    return text;
  };
  for (const lx::compose::OptionInfo& o : lx::compose::Options()) {
    const size_t at = help.find("--" + o.name + (o.value.empty() ? "" : " " + o.value));
    ASSERT_NE(at, std::string::npos) << o.name;
    EXPECT_NE(flat(help.substr(at, help.find("\n  -", at) - at)).find(flat(o.range)), std::string::npos)
        << o.name;
  }
  for (const char* own : {"--output FILE", "--preset NAME", "--font FILE", "--outline-block FILE",
                          "--dump-outline FILE", "--text-file FILE", "Exit status"})
    EXPECT_NE(help.find(own), std::string::npos) << own;
  ProgramInfo demo = Native();
  demo.hasFontconfig = false;
  EXPECT_EQ(HelpText(demo).find("--family"), std::string::npos);
}

}  // namespace
}  // namespace lxt
