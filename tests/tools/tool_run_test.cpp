// The lettrix program run as a user runs it: every preset draws, and each option changes the pixels it
// is about.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/tools/tool_support.h"
#include "compose/option_table.h"

namespace lxt {
namespace {

using lx::compose::Preset;

using testing::Alpha;
using testing::Blue;
using testing::BoxOf;
using testing::CountOf;
using testing::Green;
using testing::PixelBox;
using testing::Red;
using testing::RenderImage;
using testing::TempDir;

bool Opaque(uint32_t p) {
  return Alpha(p) == 255;
}
bool Visible(uint32_t p) {
  return Alpha(p) != 0;
}
bool IsColour(uint32_t p, uint32_t rgb) {
  return Opaque(p) && (p & 0xFFFFFF) == rgb;
}
// Some colour byte differs by more than a quarter of the scale: clearly drawn, not a faint halo.
bool FarFrom(uint32_t p, uint32_t page) {
  return std::abs(Red(p) - Red(page)) > 64 || std::abs(Green(p) - Green(page)) > 64 ||
         std::abs(Blue(p) - Blue(page)) > 64;
}

// Centre of the pixels for which `keep` holds.
template <typename Keep>
std::pair<double, double> Centroid(const Image& image, Keep keep) {
  double sx = 0, sy = 0, n = 0;
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      if (keep(image.at(x, y))) {
        sx += x;
        sy += y;
        n += 1;
      }
    }
  }
  return {n ? sx / n : -1, n ? sy / n : -1};
}

class ToolRun : public ::testing::Test {
 protected:
  Image Render(std::vector<std::string> args) { return RenderImage(dir_, std::move(args)); }
  TempDir dir_;
};

TEST_F(ToolRun, EveryPresetDrawsItsBackgroundAndLetters) {
  for (const Preset& preset : lx::compose::Presets()) {
    SCOPED_TRACE(preset.name);
    const Image image = Render({"--preset", preset.name, preset.sampleText});
    ASSERT_GT(image.width, image.height) << "a line of text is wider than high";
    ASSERT_GT(image.height, 96);
    // Every preset lays its drawing on an opaque page whose colour shows in the corners.
    const uint32_t page = image.at(0, 0);
    EXPECT_EQ(Alpha(page), 255);
    EXPECT_EQ(image.at(image.width - 1, image.height - 1), page);
    const int drawn = CountOf(image, [&](uint32_t p) { return p != page; });
    const double share = double(drawn) / double(image.pixels.size());
    EXPECT_GT(share, 0.10);
    EXPECT_LT(share, 0.85);
    // Letters: some row crosses from page to drawing and back at least three times.
    int crossings = 0;
    for (int y = 0; y < image.height; ++y) {
      int row = 0;
      for (int x = 1; x < image.width; ++x)
        row += FarFrom(image.at(x, y), page) != FarFrom(image.at(x - 1, y), page);
      crossings = std::max(crossings, row);
    }
    EXPECT_GE(crossings, 6);
  }
}

TEST_F(ToolRun, FaceColourChangesTheFaceOnly) {
  const Image red = Render({"--face-color", "#FF0000", "--outline-width", "3", "--outline-color", "#00FF00",
                            "--canvas", "260x140", "H"});
  const Image blue = Render({"--face-color", "#0000FF", "--outline-width", "3", "--outline-color", "#00FF00",
                             "--canvas", "260x140", "H"});
  ASSERT_EQ(red.pixels.size(), blue.pixels.size());
  const int faceRed = CountOf(red, [](uint32_t p) { return IsColour(p, 0xFF0000); });
  EXPECT_GT(faceRed, 1500);
  EXPECT_EQ(CountOf(blue, [](uint32_t p) { return IsColour(p, 0x0000FF); }), faceRed);
  int changedOutline = 0;
  for (size_t i = 0; i < red.pixels.size(); ++i) {
    EXPECT_EQ(Alpha(red.pixels[i]), Alpha(blue.pixels[i]));
    if (IsColour(red.pixels[i], 0x00FF00)) changedOutline += red.pixels[i] != blue.pixels[i];
  }
  EXPECT_EQ(changedOutline, 0);
}

TEST_F(ToolRun, ShadowOffsetMovesTheShadow) {
  auto shadowShift = [&](const std::string& offset) {
    const Image image = Render({"--face-color", "#FFFFFF", "--shadow-color", "#FF0000", "--shadow-offset",
                                offset, "--canvas", "300x200", "--background", "#000000", "I"});
    const auto face = Centroid(image, [](uint32_t p) { return IsColour(p, 0xFFFFFF); });
    // Where the face hides the shadow the centroid would shift; "I" is narrower than the offsets below.
    const auto shadow = Centroid(image, [](uint32_t p) { return Red(p) > 128 && Green(p) < 64; });
    return std::make_pair(shadow.first - face.first, shadow.second - face.second);
  };
  const auto right = shadowShift("30,0");
  EXPECT_NEAR(right.first, 30.0, 1.0);
  EXPECT_NEAR(right.second, 0.0, 1.0);
  const auto upLeft = shadowShift("-40,-25");
  EXPECT_NEAR(upLeft.first, -40.0, 1.0);
  EXPECT_NEAR(upLeft.second, -25.0, 1.0);
}

TEST_F(ToolRun, OutlineWidthGrowsTheDrawingOnEverySide) {
  const Image thin = Render({"--padding", "0", "--outline-width", "2", "O"});
  const Image thick = Render({"--padding", "0", "--outline-width", "12", "O"});
  EXPECT_NEAR(thick.width - thin.width, 20, 2);
  EXPECT_NEAR(thick.height - thin.height, 20, 2);
  const int outline = CountOf(thick, [](uint32_t p) { return IsColour(p, 0x000000); });
  EXPECT_GT(outline, 3 * CountOf(thin, [](uint32_t p) { return IsColour(p, 0x000000); }));
}

TEST_F(ToolRun, FittedCanvasLeavesExactlyThePadding) {
  const Image image = Render({"--padding", "23", "--shadow-offset", "7,9", "--shadow-blur", "3", "Fit"});
  const PixelBox box = BoxOf(image, Visible);
  EXPECT_EQ(box.left, 23);
  EXPECT_EQ(box.top, 23);
  EXPECT_EQ(image.width - box.right, 23);
  EXPECT_EQ(image.height - box.bottom, 23);
}

TEST_F(ToolRun, FixedCanvasCentresAndTranslateMoves) {
  const Image centred = Render({"--canvas", "333x177", "Mid"});
  ASSERT_EQ(centred.width, 333);
  ASSERT_EQ(centred.height, 177);
  const PixelBox box = BoxOf(centred, Visible);
  EXPECT_LE(std::abs(box.left - (centred.width - box.right)), 1);
  EXPECT_LE(std::abs(box.top - (centred.height - box.bottom)), 1);
  const Image moved = Render({"--canvas", "333x177", "--translate", "-11,6", "Mid"});
  for (int y = 0; y < 177; ++y) {
    for (int x = 0; x < 333; ++x) {
      const int sx = x + 11, sy = y - 6;
      const uint32_t expected = sx < 333 && sy >= 0 ? centred.at(sx, sy) : 0;
      ASSERT_EQ(moved.at(x, y), expected) << x << "," << y;
    }
  }
}

TEST_F(ToolRun, BackgroundFillsTheCanvas) {
  const Image image = Render({"--background", "#336699", "--face-color", "white", "Bg"});
  EXPECT_EQ(image.at(0, 0), 0xFF336699u);
  EXPECT_EQ(CountOf(image, Opaque), int(image.pixels.size()));
  const Image clear = Render({"Bg"});
  EXPECT_EQ(clear.at(0, 0), 0u);
}

TEST_F(ToolRun, GradientsRunAlongTheirShape) {
  const Image vertical = Render({"--face-colors", "#FF0000,#0000FF", "--padding", "0", "I"});
  const PixelBox box = BoxOf(vertical, Opaque);
  const uint32_t top = vertical.at((box.left + box.right) / 2, box.top + 2);
  const uint32_t bottom = vertical.at((box.left + box.right) / 2, box.bottom - 3);
  EXPECT_GT(Red(top), 200);
  EXPECT_LT(Blue(top), 60);
  EXPECT_GT(Blue(bottom), 200);
  EXPECT_LT(Red(bottom), 60);

  const Image sideways = Render({"--face-colors", "#FF0000,#0000FF", "--face-gradient", "linear:0",
                                 "--padding", "0", "--size", "60", "MMMM"});
  const PixelBox wide = BoxOf(sideways, Opaque);
  auto redAt = [&](int x) {
    for (int y = wide.top; y < wide.bottom; ++y) {
      if (Opaque(sideways.at(x, y))) return int(Red(sideways.at(x, y)));
    }
    return -1;
  };
  EXPECT_GT(redAt(wide.left + 1), redAt(wide.right - 2) + 150);

  // Weights are shares of the ramp: a heavy last stop pulls the ramp's middle towards the top, so its
  // colour leads over more of the height than with equal weights.
  auto blueRows = [&](const std::string& stops) {
    const Image image = Render({"--face-stops", stops, "--padding", "0", "I"});
    const PixelBox box = BoxOf(image, Opaque);
    int blue = 0;
    for (int y = box.top; y < box.bottom; ++y) {
      const uint32_t p = image.at((box.left + box.right) / 2, y);
      blue += Blue(p) > Red(p) && Blue(p) > Green(p);
    }
    return blue;
  };
  EXPECT_GT(blueRows("#FF0000,#00FF00,#0000FF:6"), blueRows("#FF0000,#00FF00,#0000FF") * 3 / 2);
}

TEST_F(ToolRun, TexturesFromFilesAndGenerators) {
  // A 2 x 1 texture of pure red and pure blue, tiled: the Face shows only those two colours.
  const std::vector<uint8_t> tga = {0, 0, 2,   0,   0,  0,    0, 0, 0, 0, 0, 0,  // uncompressed true colour
                                    2, 0, 1,   0,   24, 0x20,  // 2 x 1, 24 bits, top row first
                                    0, 0, 255, 255, 0,  0};    // red, blue (stored B, G, R)
  testing::WriteBytes(dir_.path("stripes.tga"), tga);
  const Image striped = Render({"--face-texture", dir_.path("stripes.tga"), "--size", "120", "H"});
  const int red = CountOf(striped, [](uint32_t p) { return IsColour(p, 0xFF0000); });
  const int blue = CountOf(striped, [](uint32_t p) { return IsColour(p, 0x0000FF); });
  const int face = CountOf(striped, Opaque);
  EXPECT_GT(red, face / 3);
  EXPECT_GT(blue, face / 3);
  EXPECT_EQ(red + blue, face);

  const Image wood = Render({"--face-texture", "gen:checker", "--size", "160", "W"});
  EXPECT_GT(CountOf(wood, [](uint32_t p) { return IsColour(p, 0xE6E6EC); }), 500);
  EXPECT_GT(CountOf(wood, [](uint32_t p) { return IsColour(p, 0x282830); }), 500);
}

TEST_F(ToolRun, BlurSoftensTheEdges) {
  auto partial = [](const Image& image) {
    return CountOf(image, [](uint32_t p) { return Alpha(p) > 0 && Alpha(p) < 255; });
  };
  const Image sharp = Render({"--canvas", "200x150", "X"});
  const Image soft = Render({"--canvas", "200x150", "--face-blur", "6", "X"});
  EXPECT_GT(partial(soft), 4 * partial(sharp));
}

TEST_F(ToolRun, EmbossTurnsTheFaceIntoATintedRelief) {
  // The relief comes from the Face's own shading: the squares of a checker texture stand out.
  const std::vector<std::string> base = {"--face-texture", "gen:checker", "--size", "160", "W"};
  std::vector<std::string> embossed = base, tinted = base;
  embossed.push_back("--emboss");
  tinted.insert(tinted.end(), {"--emboss", "--emboss-tint", "#FF0000"});
  const Image flat = Render(base), relief = Render(embossed), red = Render(tinted);
  ASSERT_EQ(relief.pixels.size(), flat.pixels.size());
  int grey = 0, changed = 0, levels[256] = {};
  for (size_t i = 0; i < relief.pixels.size(); ++i) {
    const uint32_t p = relief.pixels[i];
    if (!Opaque(p)) continue;
    grey += Red(p) == Green(p) && Green(p) == Blue(p);
    changed += p != flat.pixels[i];
    levels[Red(p)] = 1;
  }
  int distinct = 0;
  for (int v : levels) distinct += v;
  const int face = CountOf(relief, Opaque);
  EXPECT_GT(face, 3000);
  EXPECT_GT(grey, face * 9 / 10);
  EXPECT_GT(changed, face * 9 / 10);
  EXPECT_GE(distinct, 3);
  // A red tint keeps only the red channel of the relief.
  int reddish = 0;
  for (uint32_t p : red.pixels) {
    if (!Opaque(p)) continue;
    EXPECT_EQ(p & 0x00FFFF, 0u) << std::hex << p;
    reddish += Red(p) > 0;
  }
  EXPECT_GT(reddish, face * 9 / 10);
}

TEST_F(ToolRun, BevelShadesTheOutline) {
  const std::vector<std::string> base = {
      "--outline-width", "8", "--outline-color", "#404040", "--size", "120", "O"};
  std::vector<std::string> bevelled = base;
  bevelled.insert(bevelled.begin(), "--bevel");
  const Image flat = Render(base), bevel = Render(bevelled);
  ASSERT_EQ(flat.pixels.size(), bevel.pixels.size());
  // Where the flat Outline shows its colour, the bevel lightens the side facing the light and darkens
  // the other, keeping the grey.
  int outline = 0, lighter = 0, darker = 0;
  for (size_t i = 0; i < flat.pixels.size(); ++i) {
    if (flat.pixels[i] != 0xFF404040u) continue;
    const uint32_t p = bevel.pixels[i];
    ++outline;
    EXPECT_EQ(Alpha(p), 255);
    EXPECT_TRUE(Red(p) == Green(p) && Green(p) == Blue(p)) << std::hex << p;
    lighter += Red(p) > 0x50;
    darker += Red(p) < 0x30;
  }
  EXPECT_GT(outline, 2000);
  EXPECT_GT(lighter, outline / 5);
  EXPECT_GT(darker, outline / 50);
}

TEST_F(ToolRun, ExtrusionFillsTheGapAndZoomGrowsTheShadow) {
  const std::vector<std::string> base = {"--shadow-color", "#FF0000",  "--shadow-offset", "20,20",
                                         "--shadow-only",  "--canvas", "300x220",         "T"};
  std::vector<std::string> extruded = base;
  extruded.push_back("--extrude");
  // The block joins the letters to their offset copy: far more Shadow than the copy alone.
  EXPECT_GT(CountOf(Render(extruded), Visible), CountOf(Render(base), Visible) * 3 / 2);

  const Image zoomed = Render(
      {"--shadow-color", "#FF0000", "--shadow-zoom", "1.6", "--shadow-only", "--canvas", "400x300", "T"});
  const Image plain = Render(
      {"--shadow-color", "#FF0000", "--shadow-offset", "1,0", "--shadow-only", "--canvas", "400x300", "T"});
  const PixelBox big = BoxOf(zoomed, Visible), small = BoxOf(plain, Visible);
  EXPECT_NEAR(double(big.right - big.left) / double(small.right - small.left), 1.6, 0.2);
}

TEST_F(ToolRun, ShadowSwitches) {
  const std::vector<std::string> base = {
      "--face-color", "#FFFFFF", "--shadow-color", "#FF0000", "--shadow-offset", "6,6", "Sw"};
  auto count = [](const Image& image, uint32_t rgb) {
    return CountOf(image, [rgb](uint32_t p) { return IsColour(p, rgb); });
  };
  std::vector<std::string> hidden = base, only = base;
  hidden.push_back("--no-shadow");
  only.push_back("--shadow-only");
  const Image both = Render(base), noShadow = Render(hidden), shadowOnly = Render(only);
  EXPECT_GT(count(both, 0xFF0000), 300);
  EXPECT_GT(count(both, 0xFFFFFF), 300);
  EXPECT_EQ(count(noShadow, 0xFF0000), 0);
  EXPECT_EQ(count(shadowOnly, 0xFFFFFF), 0);
  EXPECT_GT(count(shadowOnly, 0xFF0000), count(both, 0xFF0000));
}

TEST_F(ToolRun, FontsByFileAndFamilyAndTgaOutput) {
  const Image byFile = Render({"--font", "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf", "Aa"});
  const Image byFamily = Render({"--family", "DejaVu Sans:bold", "Aa"});
  EXPECT_EQ(byFile.pixels, byFamily.pixels);
  const Image regular = Render({"--family", "DejaVu Sans", "Aa"});
  EXPECT_LT(CountOf(regular, Opaque), CountOf(byFile, Opaque));

  const testing::RunResult r = testing::RunLettrix({"-o", dir_.path("same.tga"), "Aa"});
  ASSERT_EQ(r.exitCode, 0) << r.err;
  EXPECT_EQ(testing::LoadImage(dir_.path("same.tga")).pixels, byFile.pixels);
}

TEST_F(ToolRun, TextIsUtf8) {
  // Letters beyond ASCII are drawn, not dropped: each adds width like its plain twin.
  const Image plain = Render({"--padding", "0", "AOU"});
  const Image accented = Render({"--padding", "0", "\xC3\x84\xC3\x96\xC3\x9C"});  // ÄÖÜ
  EXPECT_NEAR(accented.width, plain.width, 3);
  EXPECT_GT(accented.height, plain.height);  // the dots reach above the capitals
}

TEST_F(ToolRun, DumpedOutlineBlockRendersTheSameImage) {
  const std::vector<std::string> look = {"--preset", "gold"};
  std::vector<std::string> fromText = look;
  fromText.insert(fromText.end(), {"--dump-outline", dir_.path("gold.block"), "Au"});
  const Image text = Render(fromText);
  ASSERT_TRUE(testing::FileExists(dir_.path("gold.block")));
  std::vector<std::string> fromBlock = look;
  fromBlock.insert(fromBlock.end(), {"--outline-block", dir_.path("gold.block")});
  EXPECT_EQ(Render(fromBlock).pixels, text.pixels);
}

TEST_F(ToolRun, HelpListAndVersion) {
  const testing::RunResult help = testing::RunLettrix({"--help"});
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_NE(help.out.find("--shadow-offset X,Y"), std::string::npos);
  EXPECT_TRUE(help.err.empty());
  const testing::RunResult list = testing::RunLettrix({"--list-presets"});
  EXPECT_EQ(list.exitCode, 0);
  for (const Preset& p : lx::compose::Presets()) EXPECT_NE(list.out.find(p.name), std::string::npos);
  const testing::RunResult version = testing::RunLettrix({"--version"});
  EXPECT_EQ(version.exitCode, 0);
  EXPECT_EQ(version.out.rfind("lettrix (Lettrix) ", 0), 0u);
}

}  // namespace
}  // namespace lxt
