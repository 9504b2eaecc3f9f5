// The lettrix program run as a user runs it: every preset draws, each option changes the pixels it is
// about, and text comes in lines, from files, joined and shaped as the composition layer draws it.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <set>

#include "compose/composition.h"
#include "compose/option_table.h"
#include "tests/tools/tool_support.h"

namespace lxt {
namespace {

using namespace testing;
using Args = std::vector<std::string>;

constexpr const char* kSerifOtf = "/usr/share/fonts/opentype/freefont/FreeSerif.otf";

bool Opaque(uint32_t p) {
  return Alpha(p) == 255;
}
bool Visible(uint32_t p) {
  return Alpha(p) != 0;
}
int Count(const Image& image, uint32_t rgb) {
  return CountOf(image, [rgb](uint32_t p) { return Opaque(p) && (p & 0xFFFFFF) == rgb; });
}
int Width(const PixelBox& b) {
  return b.right - b.left;
}
Args Join(Args a, const Args& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

template <typename Keep>
std::pair<double, double> Centroid(const Image& image, Keep keep) {
  double sx = 0, sy = 0, n = 0;
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      if (keep(image.at(x, y))) sx += x, sy += y, n += 1;
    }
  }
  return {sx / n, sy / n};
}

// The boxes of the bands of rows that hold ink on a white page, top to bottom.
std::vector<PixelBox> Bands(const Image& image) {
  std::vector<PixelBox> bands;
  for (int y = 0; y < image.height; ++y) {
    PixelBox ink{image.width, y, 0, y + 1};
    for (int x = 0; x < image.width; ++x) {
      if ((image.at(x, y) & 0xFFFFFF) != 0xFFFFFF) ink = {std::min(ink.left, x), y, x + 1, y + 1};
    }
    if (ink.right == 0) continue;
    if (bands.empty() || bands.back().bottom != y) bands.push_back(ink);
    bands.back() = {std::min(bands.back().left, ink.left), bands.back().top,
                    std::max(bands.back().right, ink.right), y + 1};
  }
  return bands;
}

class ToolRun : public ::testing::Test {
 protected:
  Image Render(const Args& args) { return RenderImage(dir_, args); }
  // Black text of 40 pixels on white.
  Image Text(const Args& args) {
    return Render(Join(args, {"--background", "white", "--face-color", "black", "--size", "40"}));
  }
  TempDir dir_;
};

TEST_F(ToolRun, EveryPresetDrawsItsBackgroundAndLetters) {
  for (const lx::compose::Preset& preset : lx::compose::Presets()) {
    SCOPED_TRACE(preset.name);
    const Image image = Render({"--preset", preset.name, preset.sampleText});
    ASSERT_GT(image.width, image.height);
    ASSERT_GT(image.height, 96);
    const uint32_t page = image.at(0, 0);
    EXPECT_EQ(Alpha(page), 255);
    EXPECT_EQ(image.at(image.width - 1, image.height - 1), page);
    const double share = double(CountOf(image, [&](uint32_t p) { return p != page; })) / image.pixels.size();
    EXPECT_TRUE(share > 0.10 && share < 0.85) << share;
    // Letters: some row crosses from page to clear drawing and back at least three times.
    auto far = [&](uint32_t p) {
      return std::abs(Red(p) - Red(page)) > 64 || std::abs(Green(p) - Green(page)) > 64 ||
             std::abs(Blue(p) - Blue(page)) > 64;
    };
    int crossings = 0;
    for (int y = 0; y < image.height; ++y) {
      int row = 0;
      for (int x = 1; x < image.width; ++x) row += far(image.at(x, y)) != far(image.at(x - 1, y));
      crossings = std::max(crossings, row);
    }
    EXPECT_GE(crossings, 6);
  }
}

TEST_F(ToolRun, ColoursAndBackground) {
  const Args rest = {"--outline-width", "3", "--outline-color", "#00FF00", "--canvas", "260x140", "H"};
  const Image red = Render(Join({"--face-color", "#FF0000"}, rest)),
              blue = Render(Join({"--face-color", "#0000FF"}, rest));
  ASSERT_EQ(red.pixels.size(), blue.pixels.size());
  EXPECT_GT(Count(red, 0xFF0000), 1500);
  EXPECT_EQ(Count(blue, 0x0000FF), Count(red, 0xFF0000));
  for (size_t i = 0; i < red.pixels.size(); ++i) {
    EXPECT_EQ(Alpha(red.pixels[i]), Alpha(blue.pixels[i]));
    if (red.pixels[i] == 0xFF00FF00u) {
      EXPECT_EQ(blue.pixels[i], red.pixels[i]);  // the Outline stays
    }
  }
  const Image page = Render({"--background", "#336699", "--face-color", "white", "Bg"});
  EXPECT_EQ(CountOf(page, Opaque), int(page.pixels.size()));
  EXPECT_EQ(page.at(0, 0), 0xFF336699u);
  EXPECT_EQ(Render({"Bg"}).at(0, 0), 0u);
}

TEST_F(ToolRun, CanvasFitsWithExactPaddingOrCentresAndTranslateMoves) {
  const Image fitted = Render({"--padding", "23", "--shadow-offset", "7,9", "--shadow-blur", "3", "Fit"});
  const PixelBox box = BoxOf(fitted, Visible);
  EXPECT_EQ(std::vector<int>({box.left, box.top, fitted.width - box.right, fitted.height - box.bottom}),
            std::vector<int>(4, 23));
  const Image centred = Render({"--canvas", "333x177", "Mid"});
  ASSERT_EQ(std::make_pair(centred.width, centred.height), std::make_pair(333, 177));
  const PixelBox mid = BoxOf(centred, Visible);
  EXPECT_LE(std::abs(mid.left - (centred.width - mid.right)), 1);
  EXPECT_LE(std::abs(mid.top - (centred.height - mid.bottom)), 1);
  const Image moved = Render({"--canvas", "333x177", "--translate", "-11,6", "Mid"});
  for (int y = 0; y < 177; ++y) {
    for (int x = 0; x < 333; ++x) {
      ASSERT_EQ(moved.at(x, y), x + 11 < 333 && y >= 6 ? centred.at(x + 11, y - 6) : 0u) << x << "," << y;
    }
  }
}

TEST_F(ToolRun, GradientsRunAlongTheirShape) {
  const Image vertical = Render({"--face-colors", "#FF0000,#0000FF", "--padding", "0", "I"});
  const PixelBox box = BoxOf(vertical, Opaque);
  const uint32_t top = vertical.at(Width(box) / 2 + box.left, box.top + 2);
  const uint32_t bottom = vertical.at(Width(box) / 2 + box.left, box.bottom - 3);
  EXPECT_TRUE(Red(top) > 200 && Blue(top) < 60 && Blue(bottom) > 200 && Red(bottom) < 60);
  const Image sideways = Render({"--face-colors", "#FF0000,#0000FF", "--face-gradient", "linear:0",
                                 "--padding", "0", "--size", "60", "MMMM"});
  const PixelBox wide = BoxOf(sideways, Opaque);
  auto redAt = [&](int x) {
    for (int y = wide.top; y < wide.bottom; ++y) {
      if (Opaque(sideways.at(x, y))) return Red(sideways.at(x, y));
    }
    return -1;
  };
  EXPECT_GT(redAt(wide.left + 1), redAt(wide.right - 2) + 150);
  // A heavy last stop takes a larger share of the ramp, so its colour leads over more of the height.
  auto blueRows = [&](const std::string& stops) {
    const Image image = Render({"--face-stops", stops, "--padding", "0", "I"});
    const PixelBox b = BoxOf(image, Opaque);
    int blue = 0;
    for (int y = b.top; y < b.bottom; ++y) {
      const uint32_t p = image.at(Width(b) / 2 + b.left, y);
      blue += Blue(p) > Red(p) && Blue(p) > Green(p);
    }
    return blue;
  };
  EXPECT_GT(blueRows("#FF0000,#00FF00,#0000FF:6"), blueRows("#FF0000,#00FF00,#0000FF") * 3 / 2);
}

TEST_F(ToolRun, TexturesEmbossAndBlur) {
  // A 2 x 1 texture of pure red and pure blue (24 bits, top row first), tiled: the Face shows only those.
  WriteBytes(dir_.path("stripes.tga"),
             {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 0, 1, 0, 24, 0x20, 0, 0, 255, 255, 0, 0});
  const Image striped = Render({"--face-texture", dir_.path("stripes.tga"), "--size", "120", "H"});
  const int face = CountOf(striped, Opaque);
  EXPECT_GT(std::min(Count(striped, 0xFF0000), Count(striped, 0x0000FF)), face / 3);
  EXPECT_EQ(Count(striped, 0xFF0000) + Count(striped, 0x0000FF), face);

  // The relief comes from the Face's own shading: the squares of a checker texture stand out.
  const Args checker = {"--face-texture", "gen:checker", "--size", "160", "W"};
  const Image flat = Render(checker), relief = Render(Join(checker, {"--emboss"}));
  const Image red = Render(Join(checker, {"--emboss", "--emboss-tint", "#FF0000"}));
  EXPECT_GT(std::min(Count(flat, 0xE6E6EC), Count(flat, 0x282830)), 500);
  ASSERT_EQ(relief.pixels.size(), flat.pixels.size());
  int grey = 0, changed = 0, reddish = 0, drawn = CountOf(relief, Opaque);
  std::set<int> levels;
  for (size_t i = 0; i < relief.pixels.size(); ++i) {
    const uint32_t p = relief.pixels[i], q = red.pixels[i];
    if (Opaque(p))
      grey += Red(p) == Green(p) && Green(p) == Blue(p), changed += p != flat.pixels[i],
          levels.insert(Red(p));
    if (Opaque(q)) reddish += Red(q) > 0;
    if (Opaque(q)) {
      EXPECT_EQ(q & 0x00FFFF, 0u) << std::hex << q;  // a red tint keeps only the red
    }
  }
  EXPECT_GT(drawn, 3000);
  EXPECT_GT(std::min({grey, changed, reddish}), drawn * 9 / 10);
  EXPECT_GE(levels.size(), 3u);

  auto partial = [](const Image& image) {
    return CountOf(image, [](uint32_t p) { return Alpha(p) % 255 != 0; });
  };
  EXPECT_GT(partial(Render({"--canvas", "200x150", "--face-blur", "6", "X"})),
            4 * partial(Render({"--canvas", "200x150", "X"})));
}

TEST_F(ToolRun, OutlineWidthAndBevel) {
  const Image thin = Render({"--padding", "0", "--outline-width", "2", "O"});
  const Image thick = Render({"--padding", "0", "--outline-width", "12", "O"});
  EXPECT_NEAR(thick.width - thin.width, 20, 2);
  EXPECT_NEAR(thick.height - thin.height, 20, 2);
  EXPECT_GT(Count(thick, 0), 3 * Count(thin, 0));
  // The bevel lightens the side facing the light and darkens the other, keeping the grey.
  const Args grey = {"--outline-width", "8", "--outline-color", "#404040", "--size", "120", "O"};
  const Image flat = Render(grey), bevel = Render(Join({"--bevel"}, grey));
  ASSERT_EQ(flat.pixels.size(), bevel.pixels.size());
  int outline = 0, lighter = 0, darker = 0;
  for (size_t i = 0; i < flat.pixels.size(); ++i) {
    if (flat.pixels[i] != 0xFF404040u) continue;
    const uint32_t p = bevel.pixels[i];
    ++outline;
    EXPECT_TRUE(Opaque(p) && Red(p) == Green(p) && Green(p) == Blue(p)) << std::hex << p;
    lighter += Red(p) > 0x50;
    darker += Red(p) < 0x30;
  }
  EXPECT_GT(outline, 2000);
  EXPECT_GT(lighter, outline / 5);
  EXPECT_GT(darker, outline / 50);
}

TEST_F(ToolRun, ShadowOffsetSwitchesExtrusionAndZoom) {
  for (const auto& [offset, dx, dy] :
       {std::make_tuple("30,0", 30.0, 0.0), std::make_tuple("-40,-25", -40.0, -25.0)}) {
    const Image image = Render({"--face-color", "#FFFFFF", "--shadow-color", "#FF0000", "--shadow-offset",
                                offset, "--canvas", "300x200", "--background", "#000000", "I"});
    const auto face = Centroid(image, [](uint32_t p) { return p == 0xFFFFFFFFu; });
    const auto shadow = Centroid(image, [](uint32_t p) { return Red(p) > 128 && Green(p) < 64; });
    EXPECT_NEAR(shadow.first - face.first, dx, 1.0) << offset;
    EXPECT_NEAR(shadow.second - face.second, dy, 1.0) << offset;
  }
  const Args base = {"--face-color", "#FFFFFF", "--shadow-color", "#FF0000", "--shadow-offset", "6,6", "Sw"};
  const Image both = Render(base), noShadow = Render(Join(base, {"--no-shadow"}));
  const Image shadowOnly = Render(Join(base, {"--shadow-only"}));
  EXPECT_GT(std::min(Count(both, 0xFF0000), Count(both, 0xFFFFFF)), 300);
  EXPECT_EQ(Count(noShadow, 0xFF0000) + Count(shadowOnly, 0xFFFFFF), 0);
  EXPECT_GT(Count(shadowOnly, 0xFF0000), Count(both, 0xFF0000));
  // The block joins the letters to their offset copy: far more Shadow than the copy alone.
  const Args copy = {"--shadow-color", "#FF0000", "--shadow-only", "--canvas", "400x300", "T"};
  EXPECT_GT(CountOf(Render(Join(copy, {"--shadow-offset", "20,20", "--extrude"})), Visible),
            CountOf(Render(Join(copy, {"--shadow-offset", "20,20"})), Visible) * 3 / 2);
  const PixelBox zoomed = BoxOf(Render(Join(copy, {"--shadow-zoom", "1.6"})), Visible);
  const PixelBox plain = BoxOf(Render(Join(copy, {"--shadow-offset", "1,0"})), Visible);
  EXPECT_NEAR(double(Width(zoomed)) / Width(plain), 1.6, 0.2);
}

TEST_F(ToolRun, FontsFilesAndBlocks) {
  const Image byFile = Render({"--font", "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf", "Aa"});
  EXPECT_EQ(Render({"--family", "DejaVu Sans:bold", "Aa"}).pixels, byFile.pixels);
  EXPECT_LT(CountOf(Render({"--family", "DejaVu Sans", "Aa"}), Opaque), CountOf(byFile, Opaque));
  ASSERT_EQ(RunLettrix({"-o", dir_.path("same.tga"), "Aa"}).exitCode, 0);
  EXPECT_EQ(LoadImage(dir_.path("same.tga")).pixels, byFile.pixels);
  const Image gold = Render({"--preset", "gold", "--dump-outline", dir_.path("gold.block"), "Au"});
  EXPECT_EQ(Render({"--preset", "gold", "--outline-block", dir_.path("gold.block")}).pixels, gold.pixels);
  // Letters beyond ASCII are drawn, not dropped: each adds width like its plain twin.
  const Image plainText = Render({"--padding", "0", "AOU"});
  const Image accented = Render({"--padding", "0", "\xC3\x84\xC3\x96\xC3\x9C"});  // ÄÖÜ
  EXPECT_NEAR(accented.width, plainText.width, 3);
  EXPECT_GT(accented.height, plainText.height);
  const RunResult help = RunLettrix({"--help"}), list = RunLettrix({"--list-presets"});
  EXPECT_EQ(help.exitCode + list.exitCode, 0);
  EXPECT_TRUE(help.err.empty() && help.out.find("--shadow-offset X,Y") != std::string::npos);
  for (const lx::compose::Preset& p : lx::compose::Presets())
    EXPECT_NE(list.out.find(p.name), std::string::npos);
  EXPECT_EQ(RunLettrix({"--version"}).out.rfind("lettrix (Lettrix) ", 0), 0u);
}

TEST_F(ToolRun, LinesAlignSpaceAndWrap) {
  for (const auto& [align, share] :
       {std::make_pair("left", 0.0), std::make_pair("centre", 0.5), std::make_pair("right", 1.0)}) {
    const std::vector<PixelBox> bands =
        Bands(Text({"--align", align, "--padding", "0", "--text", "HH\nHHHHHH\nHH"}));
    ASSERT_EQ(bands.size(), 3u) << align;
    for (size_t i : {0u, 2u}) {
      EXPECT_NEAR(bands[i].left - bands[1].left, (Width(bands[1]) - Width(bands[i])) * share, 2.0)
          << align << i;
    }
    EXPECT_NEAR(bands[1].top - bands[0].top, bands[2].top - bands[1].top, 1.0);
  }
  const std::vector<PixelBox> wide = Bands(Text({"--line-spacing", "2", "--text", "HH\nHH"}));
  const std::vector<PixelBox> near = Bands(Text({"--text", "HH\nHH"}));
  ASSERT_EQ(wide.size() + near.size(), 4u);
  EXPECT_GT(wide[1].top - wide[0].top, 1.8 * (near[1].top - near[0].top));
  for (const auto& [wrap, lines] :
       {std::make_pair("0", 1u), std::make_pair("120", 3u), std::make_pair("200", 2u)})
    EXPECT_EQ(Bands(Text({"--wrap", wrap, "--text", "one two sea"})).size(), lines) << wrap;
  // From a file or standard input; the final line feed makes no third line.
  std::ofstream(dir_.path("words.txt")) << "Two\nlines\n";
  const Image given = Text({"--text", "Two\nlines"});
  EXPECT_EQ(Text({"--text-file", dir_.path("words.txt")}).pixels, given.pixels);
  const RunResult piped = RunLettrix({"-o", dir_.path("piped.png"), "--text-file", "-", "--background",
                                      "white", "--face-color", "black", "--size", "40"},
                                     dir_.path("words.txt"));
  ASSERT_EQ(piped.exitCode, 0) << piped.err;
  EXPECT_EQ(LoadImage(dir_.path("piped.png")).pixels, given.pixels);
}

TEST_F(ToolRun, ArabicAndOpenTypeAreDrawnAsTheCompositionLayerLaysThemOut) {
  const std::string joined = "\xD8\xA8\xD9\x8A\xD8\xAA\xD9\x83";  // بيتك
  const std::string apart = "\xD8\xA8\xE2\x80\x8C\xD9\x8A\xE2\x80\x8C\xD8\xAA\xE2\x80\x8C\xD9\x83";
  const Image image = Text({"--text", joined});
  lx::compose::Settings settings;
  for (const auto& [name, value] : {std::make_pair("background", "white"),
                                    std::make_pair("face-color", "black"), std::make_pair("size", "40")})
    lx::compose::SetOption(settings, name, value);
  EXPECT_EQ(lx::compose::FromRgba(lx::compose::Compose(settings, joined)).pixels, image.pixels);
  // Joined letters take their narrower connecting forms.
  EXPECT_LT(Width(Bands(image)[0]), Width(Bands(Text({"--text", apart}))[0]));
  const Image ligated = Text({"--font", kSerifOtf, "--text", "office"});
  EXPECT_GT(Width(Bands(ligated)[0]), 60);
  EXPECT_NE(Text({"--font", kSerifOtf, "--features", "liga=0", "--text", "office"}).pixels, ligated.pixels);
  // o, ffi, c, e: three gaps.
  EXPECT_EQ(Text({"--font", kSerifOtf, "--letter-spacing", "10", "--text", "office"}).width,
            ligated.width + 30);
}

}  // namespace
}  // namespace lxt
