// The option table the command line and Python share: every setting by name, with its form, range and
// the messages that refuse bad values.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "compose/composition.h"

namespace lx::compose {
namespace {

std::string Refusal(const std::string& name, const std::string& value) {
  Settings s;
  try {
    SetOption(s, name, value);
  } catch (const Error& e) {
    EXPECT_EQ(e.kind(), ErrorKind::kSetting);
    EXPECT_EQ(e.exitCode(), 2);
    return e.what();
  }
  return "";
}

TEST(OptionTable, NamesAreUniqueAndEveryValueOptionShowsItsForm) {
  std::set<std::string> names;
  std::set<char> shorts;
  for (const OptionInfo& o : Options()) {
    EXPECT_TRUE(names.insert(o.name).second) << o.name;
    if (o.shortName) {
      EXPECT_TRUE(shorts.insert(o.shortName).second) << o.shortName;
    }
    EXPECT_FALSE(o.section.empty()) << o.name;
    EXPECT_FALSE(o.help.empty()) << o.name;
    EXPECT_EQ(FindOption(o.name), &o);
  }
  for (const char* wanted : {"font", "family", "size", "align", "line-spacing", "letter-spacing", "wrap",
                             "direction", "language", "features", "canvas", "padding", "background",
                             "face-color", "outline-width", "shadow-offset", "bevel", "emboss"}) {
    EXPECT_NE(FindOption(wanted), nullptr) << wanted;
  }
  EXPECT_EQ(FindOption("output"), nullptr);  // files are the command line's business
}

TEST(OptionTable, LayoutOptionsSetTheirSettings) {
  Settings s;
  SetOption(s, "align", "centre");
  EXPECT_EQ(s.align, Align::kCentre);
  SetOption(s, "align", "Right");
  EXPECT_EQ(s.align, Align::kRight);
  SetOption(s, "line-spacing", "1.5");
  EXPECT_DOUBLE_EQ(s.lineSpacing, 1.5);
  SetOption(s, "letter-spacing", "-2.5");
  EXPECT_DOUBLE_EQ(s.letterSpacing, -2.5);
  SetOption(s, "wrap", "300");
  EXPECT_EQ(s.wrapWidth, 300);
  SetOption(s, "direction", "rtl");
  EXPECT_EQ(s.direction, Direction::kRightToLeft);
  SetOption(s, "language", "sr-Latn");
  EXPECT_EQ(s.language, "sr-Latn");
  SetOption(s, "features", "liga=0,+smcp,kern[2:5]=1,-calt,ss01=on");
  EXPECT_EQ(s.features, "liga=0,+smcp,kern[2:5]=1,-calt,ss01=on");
  SetOption(s, "emboss", "");
  EXPECT_TRUE(s.emboss);
}

TEST(OptionTable, BadValuesAreRefusedWithTheOptionsName) {
  struct Case {
    const char* name;
    const char* value;
    const char* message;
  };
  const Case cases[] = {
      {"size", "3", "--size: 3 is out of range (4..1000)"},
      {"size", "x", "--size: 'x' is not a whole number (4..1000)"},
      {"line-spacing", "0.05", "--line-spacing: 0.05 is out of range (0.1..10)"},
      {"line-spacing", "11", "--line-spacing: 11 is out of range (0.1..10)"},
      {"letter-spacing", "1001", "--letter-spacing: 1001 is out of range (-1000..1000)"},
      {"wrap", "-1", "--wrap: -1 is out of range (0..16384)"},
      {"wrap", "16385", "--wrap: 16385 is out of range (0..16384)"},
      {"align", "middle", "--align: 'middle' is not an alignment (left, centre or right)"},
      {"direction", "up", "--direction: 'up' is not a direction (auto, ltr or rtl)"},
      {"language", "e", "--language: 'e' is not a language tag"},
      {"language", "en_US", "--language: 'en_US' is not a language tag"},
      {"features", "li ga", "--features: 'li ga' is not an OpenType feature setting"},
      {"features", "liga=", "--features: 'liga=' is not an OpenType feature setting"},
      {"features", "kern,,liga", "--features: '' is not an OpenType feature setting"},
      {"features", "toolong", "--features: 'toolong' is not an OpenType feature setting"},
      {"face-color", "bluish", "--face-color: 'bluish' is not a colour"},
      {"bevel", "yes", "--bevel takes no value"},
      {"nonsense", "1", "unknown option '--nonsense'"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Refusal(c.name, c.value).rfind(c.message, 0), 0u)
        << c.name << " " << c.value << ": " << Refusal(c.name, c.value);
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

TEST(OptionTable, PresetsApplyTheirOptionsInOrder) {
  ASSERT_FALSE(Presets().empty());
  for (const Preset& p : Presets()) {
    Settings s;
    ApplyPreset(s, p.name);
    EXPECT_FALSE(p.sampleText.empty()) << p.name;
  }
  Settings s;
  SetOption(s, "size", "40");
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
