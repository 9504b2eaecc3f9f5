// The programs' pieces on their own (the command line, image files, safe writing, textures), and the lettrix
// program run as a user runs it: mistakes get one line, their status and no file; the picture is the
// composition layer's, from words, files, standard input or an outline block.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "compose/composition.h"
#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/options.h"
#include "tools/lettrix_cli/png_file.h"
#include "tools/lettrix_cli/texture_file.h"
#include "tools/lettrix_cli/tool_error.h"
#include "tests/support/refusal.h"

namespace lxt {
namespace {

// A fresh folder, removed with everything in it when the object goes.
class TempDir {
 public:
  TempDir() : dir_(std::filesystem::temp_directory_path() / "lettrix-tools-XXXXXX") {
    if (!mkdtemp(&dir_[0])) std::abort();
  }
  ~TempDir() { std::filesystem::remove_all(dir_); }
  std::string path(const std::string& name) const { return dir_ + "/" + name; }
  size_t count() const { return std::distance(std::filesystem::directory_iterator(dir_), {}); }

 private:
  std::string dir_;
};

std::string ReadText(const std::string& path) {
  std::stringstream s;
  s << std::ifstream(path, std::ios::binary).rdbuf();
  return s.str();
}

void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

struct RunResult {
  int exitCode;
  std::string out, err;
};

// Runs the lettrix program with `args`; its standard input is the file `input`, or empty.
RunResult RunLettrix(const std::vector<std::string>& args, const std::string& input = "/dev/null") {
  const auto quote = [](const std::string& s) {
    std::string q = "'";
    for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
  };
  TempDir capture;
  std::string command = quote(LETTRIX_CLI_PATH);
  for (const std::string& a : args) command += " " + quote(a);
  const int status = std::system((command + " >" + capture.path("out") + " 2>" + capture.path("err") + " <" +
                                  quote(input.empty() ? "/dev/null" : input))
                                     .c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadText(capture.path("out")),
          ReadText(capture.path("err"))};
}

ProgramInfo Native(bool png = true, bool fontconfig = true) {
  ProgramInfo p;
  p.name = "lettrix";
  p.readsPng = png;
  p.hasFontconfig = fontconfig;
  return p;
}

Job Parse(std::vector<std::string> args) {
  args.insert(args.begin(), {"-o", "out.png"});
  return ParseCommandLine(args, Native()).job;
}

using lx::test::Refusal;

// A TGA file with no ID field and no colour map.
std::vector<uint8_t> Tga(uint8_t type, uint8_t width, uint8_t height, uint8_t bits, uint8_t descriptor,
                         std::vector<uint8_t> data = {}) {
  data.insert(data.begin(), {0, 0, type, 0, 0, 0, 0, 0, 0, 0, 0, 0, width, 0, height, 0, bits, descriptor});
  return data;
}

TEST(ToolOptions, TextOptionFormsAndPresetsAreParsedInOrder) {
  EXPECT_EQ(Parse({"Hello", "big", "world"}).text + Parse({"--text", "-5 degrees"}).text +
                Parse({"--", "--not-an-option"}).text,
            "Hello big world-5 degrees--not-an-option");
  EXPECT_EQ(Parse({"A", "--size=48"}).pixelSize + Parse({"A", "-s48"}).pixelSize, 96);
  EXPECT_EQ(Parse({"A", "-s", "48", "--face-blur", "254"}).face.blur, 254);
  // A preset lays down its settings where it stands; without a text its sample words are drawn.
  const int glowBlur = Parse({"A", "--preset", "glow"}).shadowBlur;
  EXPECT_GT(glowBlur, 3);
  EXPECT_EQ(Parse({"A", "--preset", "glow", "--shadow-blur", "3"}).shadowBlur, 3);
  EXPECT_EQ(Parse({"A", "--shadow-blur", "3", "--preset", "glow"}).shadowBlur, glowBlur);
  EXPECT_EQ(Parse({"--preset", "neon"}).text, lx::compose::FindPreset("neon")->sampleText);
  const std::pair<std::vector<std::string>, const char*> mistakes[] = {
      {{"-o", "a.tga", "--text", "A", "B"}, "given twice"},
      {{"-o", "a.tga", "--text", ""}, "empty"},
      {{"A", "-o", "a.png"}, "TGA only"},  // a program without PNG and fontconfig
      {{"A", "-o", "a.tga", "--family", "Sans"}, "--font"},
  };
  for (const auto& [args, message] : mistakes) {
    EXPECT_NE(Refusal([&] { ParseCommandLine(args, Native(false, false)); }, kExitBadUsage).find(message),
              std::string::npos)
        << message;
  }
  EXPECT_EQ(ParseCommandLine({"A", "-o", "A.TGA"}, Native()).job.output, "A.TGA");
}

TEST(ToolOptions, HelpNamesEveryOptionWithItsRangeAndListsThePresets) {
  const std::string help = HelpText(Native());
  for (const lx::compose::OptionInfo& o : lx::compose::Options()) {
    const size_t at = help.find("--" + o.name + (o.value.empty() ? "" : " " + o.value));
    ASSERT_NE(at, std::string::npos) << o.name;
    std::string entry = help.substr(at, help.find("\n  -", at) - at);  // long ranges wrap onto the next line
    for (size_t cut; (cut = entry.find('\n')) != std::string::npos;)
      entry.replace(cut, entry.find_first_not_of(' ', cut + 1) - cut, " ");
    EXPECT_NE(entry.find(o.range), std::string::npos) << o.name;
  }
  EXPECT_NE(help.find("--output FILE"), std::string::npos);
  EXPECT_EQ(HelpText(Native(true, false)).find("--family"), std::string::npos);
  for (const lx::compose::Preset& p : lx::compose::Presets())
    EXPECT_NE(PresetListText().find("  " + p.name + " "), std::string::npos) << p.name;
}

TEST(ToolFiles, ImagesRoundTripAndDamagedOnesAreRefusedWithTheirName) {
  Image image(3, 2);
  image.pixels = {0xFF102030, 0x80FFFFFF, 0x00000000, 0x12345678, 0xFFFF0000, 0x7F00FF00};
  const std::vector<uint8_t> tga = EncodeTga(image);
  EXPECT_EQ(tga, Tga(2, 3, 2, 32, 0x28, std::vector<uint8_t>(tga.begin() + 18, tga.end())));
  EXPECT_EQ(tga.size(), 18u + 6 * 4);
  EXPECT_EQ(DecodeTga(tga, "x.tga").pixels, image.pixels);
  EXPECT_EQ(DecodePng(EncodePng(image), "x.png").pixels, image.pixels);
  // 2 x 2, bottom row first, run-length encoded: a run of two reds then two raw pixels.
  EXPECT_EQ(DecodeTga(Tga(10, 2, 2, 24, 0, {0x81, 0, 0, 255, 0x01, 255, 0, 0, 0, 255, 0}), "x.tga").pixels,
            (std::vector<uint32_t>{0xFF0000FFu, 0xFF00FF00u, 0xFFFF0000u, 0xFFFF0000u}));
  for (const auto& bytes :
       {std::vector<uint8_t>{1, 2, 3}, Tga(1, 2, 2, 32, 0x20), Tga(2, 2, 2, 16, 0x20), Tga(2, 0, 2, 32, 0x20),
        Tga(2, 2, 2, 32, 0x20, std::vector<uint8_t>(15)), Tga(10, 1, 1, 32, 0x20, {0x81, 1, 2, 3, 4})}) {
    EXPECT_NE(Refusal([&] { DecodeTga(bytes, "x.tga"); }, kExitFailed).find("'x.tga'"), std::string::npos);
  }
  const auto badPng = [] { DecodePng({0x89, 'P', 'N', 'G', 0, 0}, "x.png"); };
  EXPECT_NE(Refusal(badPng, kExitFailed).find("'x.png'"), std::string::npos);
  // Writing replaces the whole file, or leaves nothing behind.
  TempDir dir;
  WriteFileAtomically(dir.path("out.bin"), {1, 2, 3, 4, 5});
  WriteFileAtomically(dir.path("out.bin"), {9});
  EXPECT_EQ(ReadText(dir.path("out.bin")), "\x09");
  EXPECT_NE(Refusal([&] { WriteFileAtomically(dir.path("missing/out.bin"), {1}); }, kExitFailed), "");
  EXPECT_EQ(dir.count(), 1u);
  EXPECT_EQ(Refusal([&] { ReadWholeFile(dir.path("absent.ttf"), "font file"); }, kExitFailed),
            "cannot open font file '" + dir.path("absent.ttf") + "': No such file or directory");
}

TEST(ToolFiles, TextureFilesComeOutTopRowFirstAsRgbaAndPngNeedsADecoder) {
  TempDir dir;
  // 1 x 2, 24 bits, first row stored at the bottom: blue below, red on top.
  WriteBytes(dir.path("t.tga"), Tga(2, 1, 2, 24, 0, {255, 0, 0, 0, 0, 255}));
  EXPECT_EQ(ReadTextureFile("t.tga", dir.path("t.tga"), nullptr, "x").pixels,
            (std::vector<uint8_t>{255, 0, 0, 255, 0, 0, 255, 255}));
  WriteBytes(dir.path("p.png"), {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A});
  const PngDecoder onePixel = [](const std::vector<uint8_t>&, const std::string&) {
    return Image(1, 1, PackPixel(1, 2, 3, 4));
  };
  EXPECT_EQ(ReadTextureFile("p.png", dir.path("p.png"), onePixel, "x").pixels,
            (std::vector<uint8_t>{1, 2, 3, 4}));
  EXPECT_EQ(
      Refusal([&] { ReadTextureFile("p.png", dir.path("p.png"), nullptr, "lettrix-demo"); }, kExitFailed),
      "'p.png' is a PNG file; lettrix-demo reads TGA textures only");
  // Shorter than PNG's signature: read as TGA, and too short for that.
  WriteBytes(dir.path("short"), {0x89, 'P', 'N', 'G'});
  EXPECT_EQ(Refusal([&] { ReadTextureFile("short.tga", dir.path("short"), onePixel, "x"); }, kExitFailed),
            "cannot read TGA file 'short.tga': too short for a TGA header");
}

TEST(ToolRun, EachMistakeGetsOneLineItsStatusAndNoFile) {
  TempDir dir;
  const std::string out = dir.path("out.png"), none = dir.path("none"), bad = dir.path("bad");
  WriteBytes(bad + ".png", {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n', 0, 0, 0, 0});
  WriteBytes(bad + ".tga", {0, 0, 2, 0});
  // A contour whose length runs past the end of the file.
  WriteBytes(bad + ".long", {200, 0, 0, 0, 24, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0});
  WriteBytes(bad + ".ttf", {'n', 'o', 't', ' ', 'a', ' ', 'f', 'o', 'n', 't'});
  WriteBytes(bad + ".txt", {'w'});
  struct Case {
    std::vector<std::string> args;
    int exitCode;
    std::string message;
  };
  // Setting mistakes are the composition layer's and refused by it; these are the program's own.
  const Case cases[] = {
      {{"-o", out, "--bogus", "Hi"}, 2, "unknown option '--bogus'"},
      {{"-o", out, "--face-blur", "300", "Hi"}, 2, "--face-blur: 300 is out of range (0..254)"},
      {{"-o", out}, 2, "no text given"},
      {{"-o", out, "--text-file", bad + ".txt", "Hi"}, 2, "given twice"},
      {{"Hi"}, 2, "no output file given"},
      {{"-o", dir.path("out.jpg"), "Hi"}, 2, "must end in .png or .tga"},
      {{"-o", dir.path("no/such/folder/out.png"), "Hi"}, 1, "cannot write"},
      {{"-o", out, "--text-file", none + ".txt"}, 1, "cannot open text file"},
      {{"-o", out, "--font", none + ".ttf", "Hi"},
       1,
       "cannot open font file '" + none + ".ttf': No such file"},
      {{"-o", out, "--face-texture", none + ".png", "Hi"}, 1, "cannot open texture file '" + none + ".png'"},
      {{"-o", out, "--outline-block", none + ".block"}, 1, "cannot open outline block"},
      {{"-o", out, "--face-texture", bad + ".png", "Hi"}, 1, "cannot read PNG file '" + bad + ".png'"},
      {{"-o", out, "--outline-texture", bad + ".tga", "--outline-width", "2", "Hi"},
       1,
       "cannot read TGA file"},
      {{"-o", out, "--outline-block", bad + ".long"}, 1, "is not an outline block"},
      {{"-o", out, "--font", bad + ".ttf", "Hi"}, 1, bad + ".ttf"},
      {{"-o", out, "ab\xff\xfe"}, 1, "not valid UTF-8"},
  };
  for (const Case& c : cases) {
    const RunResult r = RunLettrix(c.args);
    EXPECT_EQ(r.exitCode, c.exitCode) << r.err;
    EXPECT_EQ(r.err.rfind("lettrix: ", 0), 0u) << r.err;
    EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << "one line: " << r.err;
    EXPECT_EQ(r.out + std::to_string(dir.count()), "5") << c.message;  // no output, no file
  }
  // A failed run leaves an old picture alone; a good one replaces it.
  WriteBytes(out, {'o', 'l', 'd'});
  EXPECT_EQ(RunLettrix({"-o", out, "--font", none + ".ttf", "Hi"}).exitCode, 1);
  EXPECT_EQ(ReadText(out), "old");
  EXPECT_EQ(RunLettrix({"-o", out, "Hi"}).exitCode, 0);
  EXPECT_EQ(ReadText(out).substr(1, 3), "PNG");
  EXPECT_EQ(dir.count(), 6u);
}

// The pixels of the picture the program wrote for `args` to `file` (PNG or TGA by its name).
std::vector<uint32_t> Picture(const TempDir& dir, std::vector<std::string> args,
                              const std::string& file = "out.png", const std::string& input = "") {
  args.insert(args.end(), {"-o", dir.path(file)});
  const RunResult r = RunLettrix(args, input);
  EXPECT_EQ(r.exitCode, 0) << r.err;
  const std::vector<uint8_t> bytes = ReadWholeFile(dir.path(file), "picture");
  return (file.back() == 'a' ? DecodeTga(bytes, file) : DecodePng(bytes, file)).pixels;
}

// What the composition layer draws for the settings and text of `args`.
std::vector<uint32_t> Composed(std::vector<std::string> args) {
  args.insert(args.end(), {"-o", "x.png"});
  const Job job = ParseCommandLine(args, ProgramInfo()).job;
  return lx::compose::FromRgba(lx::compose::Compose(job, job.text)).pixels;
}

TEST(ToolRun, ThePictureIsTheCompositionLayersFromEverySource) {
  TempDir dir;
  const std::vector<std::string> options = {"--preset", "gold",    "--size", "40",     "--shadow-offset",
                                            "3,-4",     "--align", "right",  "--text", "Two\nlines"};
  const std::vector<uint32_t> composed = Composed(options);
  EXPECT_EQ(Picture(dir, options), composed);
  EXPECT_EQ(Picture(dir, options, "out.tga"), composed);
  // From a file or standard input; the final line feed makes no third line.
  WriteBytes(dir.path("words.txt"), {'T', 'w', 'o', '\n', 'l', 'i', 'n', 'e', 's', '\n'});
  std::vector<std::string> fromFile(options.begin(), options.end() - 2);
  fromFile.insert(fromFile.end(), {"--text-file", dir.path("words.txt")});
  EXPECT_EQ(Picture(dir, fromFile), composed);
  fromFile.back() = "-";
  EXPECT_EQ(Picture(dir, fromFile, "out.png", dir.path("words.txt")), composed);
  // Shaped text: joined Arabic as the composition layer lays it out.
  const std::string arabic = "\xD8\xA8\xD9\x8A\xD8\xAA\xD9\x83";
  EXPECT_EQ(Picture(dir, {"--size", "40", arabic}), Composed({"--size", "40", arabic}));
  // The default font, by file and by family; an outline block dumped and drawn again.
  const std::vector<uint32_t> bold =
      Picture(dir, {"--font", "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf", "Aa"});
  EXPECT_EQ(Picture(dir, {"Aa"}), bold);
  EXPECT_EQ(Picture(dir, {"--family", "DejaVu Sans:bold", "Aa"}), bold);
  EXPECT_NE(Picture(dir, {"--family", "DejaVu Sans", "Aa"}), bold);
  const std::vector<uint32_t> gold =
      Picture(dir, {"--preset", "gold", "--dump-outline", dir.path("au.block"), "Au"});
  EXPECT_EQ(Picture(dir, {"--preset", "gold", "--outline-block", dir.path("au.block")}), gold);
  // Help and the presets go to standard output (their texts are the piece tests').
  const RunResult help = RunLettrix({"--help"}), list = RunLettrix({"--list-presets"});
  EXPECT_EQ(std::make_tuple(help.exitCode, help.out.find("--shadow-offset X,Y") < help.out.size(), help.err),
            std::make_tuple(0, true, ""));
  EXPECT_EQ(std::make_tuple(list.exitCode, list.out, list.err), std::make_tuple(0, PresetListText(), ""));
}

}  // namespace
}  // namespace lxt
