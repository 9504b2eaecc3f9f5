// The lettrix program's text: several lines and their alignment, text files and standard input, joined
// Arabic, OpenType (CFF) fonts and their features, each drawn as the composition layer draws it.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "compose/composition.h"
#include "tests/tools/tool_support.h"

namespace lxt {
namespace {

using testing::Alpha;
using testing::BoxOf;
using testing::PixelBox;
using testing::RenderImage;
using testing::RunLettrix;
using testing::TempDir;

constexpr const char* kSerifOtf = "/usr/share/fonts/opentype/freefont/FreeSerif.otf";

bool Ink(uint32_t p) {
  return (p & 0xFFFFFF) != 0xFFFFFF;  // on a white page
}

// The boxes of the bands of rows that hold ink, top to bottom.
std::vector<PixelBox> Bands(const Image& image) {
  std::vector<PixelBox> bands;
  bool open = false;
  for (int y = 0; y < image.height; ++y) {
    PixelBox row{image.width, y, 0, y + 1};
    for (int x = 0; x < image.width; ++x) {
      if (!Ink(image.at(x, y))) continue;
      row.left = std::min(row.left, x);
      row.right = std::max(row.right, x + 1);
    }
    if (row.right == 0) {
      open = false;
      continue;
    }
    if (!open) bands.push_back(row);
    PixelBox& band = bands.back();
    band.left = std::min(band.left, row.left);
    band.right = std::max(band.right, row.right);
    band.bottom = y + 1;
    open = true;
  }
  return bands;
}

class ToolText : public ::testing::Test {
 protected:
  Image Render(std::vector<std::string> args) {
    args.insert(args.end(), {"--background", "white", "--face-color", "black", "--size", "40"});
    return RenderImage(dir_, std::move(args));
  }
  TempDir dir_;
};

TEST_F(ToolText, ALineFeedStartsALineAndEachAlignmentPlacesIt) {
  struct Case {
    const char* align;
    double share;  // of the room beside the short line that lies to its left
  };
  for (const Case& c : {Case{"left", 0.0}, Case{"centre", 0.5}, Case{"right", 1.0}}) {
    const Image image = Render({"--align", c.align, "--padding", "0", "--text", "HH\nHHHHHH\nHH"});
    const std::vector<PixelBox> bands = Bands(image);
    ASSERT_EQ(bands.size(), 3u) << c.align;
    const PixelBox& wide = bands[1];
    for (size_t i : {0u, 2u}) {
      const double room = (wide.right - wide.left) - (bands[i].right - bands[i].left);
      EXPECT_NEAR(bands[i].left - wide.left, room * c.share, 2.0) << c.align << " line " << i;
    }
    EXPECT_NEAR(bands[1].top - bands[0].top, bands[2].top - bands[1].top, 1.0);
  }
  const Image spaced = Render({"--line-spacing", "2", "--text", "HH\nHH"});
  const Image single = Render({"--text", "HH\nHH"});
  const std::vector<PixelBox> wide = Bands(spaced), near = Bands(single);
  ASSERT_EQ(wide.size(), 2u);
  ASSERT_EQ(near.size(), 2u);
  EXPECT_GT(wide[1].top - wide[0].top, 1.8 * (near[1].top - near[0].top));
}

TEST_F(ToolText, WrappingBreaksAtSpaces) {
  EXPECT_EQ(Bands(Render({"--text", "one two sea"})).size(), 1u);
  EXPECT_EQ(Bands(Render({"--wrap", "120", "--text", "one two sea"})).size(), 3u);
  EXPECT_EQ(Bands(Render({"--wrap", "200", "--text", "one two sea"})).size(), 2u);
}

TEST_F(ToolText, TextComesFromAFileOrStandardInput) {
  {
    std::ofstream(dir_.path("words.txt")) << "Two\nlines\n";  // the final line feed makes no third line
  }
  const Image given = Render({"--text", "Two\nlines"});
  const Image fromFile = Render({"--text-file", dir_.path("words.txt")});
  EXPECT_EQ(fromFile.pixels, given.pixels);
  EXPECT_EQ(Bands(fromFile).size(), 2u);

  const testing::RunResult piped =
      RunLettrix({"-o", dir_.path("piped.png"), "--text-file", "-", "--background", "white", "--face-color",
                  "black", "--size", "40"},
                 dir_.path("words.txt"));
  ASSERT_EQ(piped.exitCode, 0) << piped.err;
  EXPECT_EQ(testing::LoadImage(dir_.path("piped.png")).pixels, given.pixels);

  const testing::RunResult twice =
      RunLettrix({"-o", dir_.path("x.png"), "--text-file", dir_.path("words.txt"), "Hi"});
  EXPECT_EQ(twice.exitCode, 2);
  EXPECT_NE(twice.err.find("given twice"), std::string::npos) << twice.err;
  const testing::RunResult missing =
      RunLettrix({"-o", dir_.path("x.png"), "--text-file", dir_.path("none.txt")});
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_NE(missing.err.find("cannot open text file"), std::string::npos) << missing.err;
  EXPECT_FALSE(testing::FileExists(dir_.path("x.png")));
}

TEST_F(ToolText, ArabicIsDrawnJoinedAsTheCompositionLayerLaysItOut) {
  const std::string joined = "\xD8\xA8\xD9\x8A\xD8\xAA\xD9\x83";  // بيتك
  const std::string apart = "\xD8\xA8\xE2\x80\x8C\xD9\x8A\xE2\x80\x8C\xD8\xAA\xE2\x80\x8C\xD9\x83";
  const Image image = Render({"--text", joined});
  lx::compose::Settings settings;
  for (const auto& [name, value] : std::vector<std::pair<std::string, std::string>>{
           {"background", "white"}, {"face-color", "black"}, {"size", "40"}}) {
    lx::compose::SetOption(settings, name, value);
  }
  EXPECT_EQ(lx::compose::FromRgba(lx::compose::Compose(settings, joined)).pixels, image.pixels);
  // Joined letters take their narrower connecting forms.
  EXPECT_LT(Bands(image)[0].right - Bands(image)[0].left,
            Bands(Render({"--text", apart}))[0].right - Bands(Render({"--text", apart}))[0].left);
}

TEST_F(ToolText, OpenTypeFontsDrawAndTheirFeaturesSwitch) {
  const Image ligated = Render({"--font", kSerifOtf, "--text", "office"});
  const Image separate = Render({"--font", kSerifOtf, "--features", "liga=0", "--text", "office"});
  ASSERT_GT(ligated.width, 0);
  EXPECT_GT(BoxOf(ligated, Ink).right - BoxOf(ligated, Ink).left, 60);
  EXPECT_NE(ligated.pixels, separate.pixels);
  const Image spaced = Render({"--font", kSerifOtf, "--letter-spacing", "10", "--text", "office"});
  EXPECT_EQ(spaced.width, ligated.width + 30);  // o, ffi, c, e: three gaps
}

TEST_F(ToolText, LayoutMistakesAreUsageErrors) {
  struct Case {
    std::vector<std::string> args;
    const char* message;
  };
  const Case cases[] = {
      {{"--align", "middle"}, "--align: 'middle' is not an alignment"},
      {{"--wrap", "-4"}, "--wrap: -4 is out of range (0..16384)"},
      {{"--direction", "down"}, "--direction: 'down' is not a direction"},
      {{"--features", "li ga"}, "--features: 'li ga' is not an OpenType feature setting"},
      {{"--language", "x"}, "--language: 'x' is not a language tag"},
      {{"--line-spacing", "20"}, "--line-spacing: 20 is out of range (0.1..10)"},
  };
  for (const Case& c : cases) {
    std::vector<std::string> args{"-o", dir_.path("x.png"), "Hi"};
    args.insert(args.end(), c.args.begin(), c.args.end());
    const testing::RunResult r = RunLettrix(args);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
  }
}

TEST_F(ToolText, HelpShowsEveryLayoutOptionWithItsRange) {
  const testing::RunResult help = RunLettrix({"--help"});
  ASSERT_EQ(help.exitCode, 0);
  for (const char* shown :
       {"--align left|centre|right", "[default left]", "--line-spacing FACTOR", "[0.1..10, default 1]",
        "--letter-spacing PX", "[-1000..1000, default 0]", "--wrap PX", "--direction auto|ltr|rtl",
        "--language TAG", "--features LIST", "--text-file FILE"}) {
    EXPECT_NE(help.out.find(shown), std::string::npos) << shown;
  }
}

}  // namespace
}  // namespace lxt
