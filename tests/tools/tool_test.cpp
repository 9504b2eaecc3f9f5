// The programs' pieces (command line, image files, safe writing, textures) and the lettrix program run as a
// user runs it: a mistake gets one line, its status and no file; the picture is the composition layer's.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>

#include "compose/composition.h"
#include "tests/image/tga_test_files.h"
#include "tests/support/refusal.h"
#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/options.h"
#include "tools/lettrix_cli/png_file.h"
#include "tools/lettrix_cli/texture_file.h"
#include "tools/lettrix_cli/tool_error.h"

namespace lxt {
namespace {
using lx::test::TgaHeader;

// A fresh folder, removed with everything in it when the object goes.
struct TempDir {
  std::string dir = std::filesystem::temp_directory_path() / "lettrix-tools-XXXXXX";
  TempDir() { EXPECT_TRUE(mkdtemp(&dir[0])); }
  ~TempDir() { std::filesystem::remove_all(dir); }
  std::string path(const std::string& name) const { return dir + "/" + name; }
  size_t count() const { return std::distance(std::filesystem::directory_iterator(dir), {}); }
};

std::string ReadText(const std::string& path) {
  const std::vector<uint8_t> bytes = ReadWholeFile(path, "file");
  return std::string(bytes.begin(), bytes.end());
}
void ExpectRefused(const std::function<void()>& f, int exitCode, const std::string& message) {
  EXPECT_NE(lx::test::Refusal(f, exitCode).find(message), std::string::npos) << message;
}

// The lettrix program's exit status and what it wrote to standard output and error, for `args`.
std::pair<int, std::string> RunLettrix(const std::vector<std::string>& args,
                                       const std::string& input = "/dev/null") {
  const auto quote = [](const std::string& s) { return "'" + s + "'"; };  // no argument holds a quote
  std::string command = quote(LETTRIX_CLI_PATH), output;
  for (const std::string& a : args) command += " " + quote(a);
  FILE* program = popen((command + " 2>&1 <" + quote(input)).c_str(), "r");
  if (program == nullptr) return {-1, "cannot start " + command};
  for (int c; (c = std::fgetc(program)) != EOF;) output += char(c);
  const int status = pclose(program);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

ProgramInfo Native(bool png = true, bool fontconfig = true) {
  return {"lettrix", "", fontconfig, png, true, ""};
}
Job Parse(std::vector<std::string> args) {
  args.insert(args.begin(), {"-o", "out.png"});
  return ParseCommandLine(args, Native()).job;
}

TEST(ToolOptions, PresetSampleWordsAndTheProgramsOwnLimits) {
  EXPECT_EQ(Parse({"--preset", "neon"}).text, lx::compose::FindPreset("neon")->sampleText);  // no text given
  // A program without PNG and fontconfig (the Windows demo).
  for (const auto& [args, message] :
       {std::make_pair(std::vector<std::string>{"A", "-o", "a.png"}, "TGA only"),
        std::make_pair(std::vector<std::string>{"A", "-o", "a.tga", "--family", "S"}, "--font")})
    ExpectRefused([&] { ParseCommandLine(args, Native(false, false)); }, kExitBadUsage, message);
  EXPECT_EQ(HelpText(Native(true, false)).find("--family"), std::string::npos);
  for (const lx::compose::Preset& p : lx::compose::Presets())
    EXPECT_NE(PresetListText().find("  " + p.name + " "), std::string::npos) << p.name;
}

TEST(ToolFiles, ImagesRoundTripAndDamagedOnesAreRefusedByName) {
  Image image(3, 2);
  image.pixels = {0xFF102030, 0x80FFFFFF, 0x00000000, 0x12345678, 0xFFFF0000, 0x7F00FF00};
  const std::vector<uint8_t> tga = EncodeTga(image);
  EXPECT_EQ(tga, TgaHeader(2, 3, 2, 32, 0x28, std::vector<uint8_t>(tga.begin() + 18, tga.end())));
  EXPECT_EQ(tga.size(), 18u + 6 * 4);
  EXPECT_EQ(DecodeTga(tga, "x.tga").pixels, image.pixels);
  EXPECT_EQ(DecodePng(EncodePng(image), "x.png").pixels, image.pixels);
  // 2 x 2, bottom row first, run-length encoded: a run of two reds then two raw pixels.
  EXPECT_EQ(
      DecodeTga(TgaHeader(10, 2, 2, 24, 0, {0x81, 0, 0, 255, 0x01, 255, 0, 0, 0, 255, 0}), "x.tga").pixels,
      (std::vector<uint32_t>{0xFF0000FFu, 0xFF00FF00u, 0xFFFF0000u, 0xFFFF0000u}));
  for (const auto& bytes :
       {std::vector<uint8_t>{1, 2, 3}, TgaHeader(1, 2, 2, 32, 0x20), TgaHeader(2, 2, 2, 16, 0x20),
        TgaHeader(2, 0, 2, 32, 0x20), TgaHeader(2, 2, 2, 32, 0x20, std::vector<uint8_t>(15)),
        TgaHeader(10, 1, 1, 32, 0x20, {0x81, 1, 2, 3, 4})})
    ExpectRefused([&] { DecodeTga(bytes, "x.tga"); }, kExitFailed, "'x.tga'");
  ExpectRefused([] { DecodePng({0x89, 'P', 'N', 'G', 0, 0}, "x.png"); }, kExitFailed, "'x.png'");
  TempDir dir;
  // Textures come out top row first as RGBA: 1 x 2, 24 bits, blue stored below red.
  WriteFileAtomically(dir.path("t.tga"), TgaHeader(2, 1, 2, 24, 0, {255, 0, 0, 0, 0, 255}));
  EXPECT_EQ(ReadTextureFile("t.tga", dir.path("t.tga"), nullptr, "x").pixels,
            (std::vector<uint8_t>{255, 0, 0, 255, 0, 0, 255, 255}));
  WriteFileAtomically(dir.path("p.png"), {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A});
  EXPECT_EQ(
      lx::test::Refusal([&] { ReadTextureFile("p.png", dir.path("p.png"), nullptr, "demo"); }, kExitFailed),
      "'p.png' is a PNG file; demo reads TGA textures only");
}

TEST(ToolRun, EachMistakeGetsOneLineItsStatusAndNoFile) {
  TempDir dir;
  const std::string out = dir.path("out.png"), none = dir.path("none"), bad = dir.path("bad");
  WriteFileAtomically(bad + ".png", {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n', 0, 0, 0, 0});
  WriteFileAtomically(bad + ".tga", {0, 0, 2, 0});
  // Outline blocks whose contour runs past the end, is not of type 24, or has a size of 0 (never advancing).
  for (const auto& [name, size, type] :
       {std::make_tuple(".long", 200, 24), {".type", 16, 25}, {".zero", 0, 24}})
    WriteFileAtomically(bad + name, {uint8_t(size), 0, 0, 0, uint8_t(type), 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0});
  WriteFileAtomically(bad + ".ttf", {'n', 'o', 't', ' ', 'a', ' ', 'f', 'o', 'n', 't'});
  // Setting mistakes are the composition layer's and refused by it; these are the program's own.
  const std::tuple<std::vector<std::string>, int, std::string> cases[] = {
      {{"-o", out, "--bogus", "Hi"}, 2, "unknown option '--bogus'"},
      {{"-o", out, "--text", ""}, 2, "empty"},
      {{"-o", out}, 2, "no text given"},
      {{"-o", out, "--text-file", bad + ".png", "Hi"}, 2, "given twice"},
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
      {{"-o", out, "--outline-texture", bad + ".tga", "--outline-width=2", "Hi"}, 1, "cannot read TGA file"},
      {{"-o", out, "--outline-block", bad + ".long"}, 1, "is not an outline block"},
      {{"-o", out, "--outline-block", bad + ".type"}, 1, "is not an outline block"},
      {{"-o", out, "--outline-block", bad + ".zero"}, 1, "is not an outline block"},
      {{"-o", out, "--font", bad + ".ttf", "Hi"}, 1, bad + ".ttf"},
      {{"-o", out, "ab\xff\xfe"}, 1, "not valid UTF-8"},
  };
  for (const auto& [args, exitCode, message] : cases) {
    const auto [status, err] = RunLettrix(args);
    EXPECT_EQ(status, exitCode) << err;
    EXPECT_EQ(err.rfind("lettrix: ", 0) + err.find('\n') + 1, err.size())
        << "one line, starting 'lettrix: ': " << err;
    EXPECT_NE(err.find(message), std::string::npos) << err;
    EXPECT_EQ(dir.count(), 6u) << message;  // no file
  }
  // A failed run leaves an old picture alone; a good one replaces it.
  WriteFileAtomically(out, {'o', 'l', 'd'});
  EXPECT_EQ(RunLettrix({"-o", out, "--font", none + ".ttf", "Hi"}).first, 1);
  EXPECT_EQ(ReadText(out), "old");
  EXPECT_EQ(RunLettrix({"-o", out, "Hi"}), std::make_pair(0, std::string()));
  EXPECT_EQ(ReadText(out).substr(1, 3) + std::to_string(dir.count()), "PNG7");
}

TEST(ToolRun, ThePictureIsTheCompositionLayersFromEverySource) {
  TempDir dir;
  const auto picture = [&](std::vector<std::string> args, const std::string& file = "out.png",
                           const std::string& input = "/dev/null") {
    args.insert(args.end(), {"-o", dir.path(file)});
    EXPECT_EQ(RunLettrix(args, input), std::make_pair(0, std::string()));
    const std::vector<uint8_t> bytes = ReadWholeFile(dir.path(file), "picture");
    return (file.back() == 'a' ? DecodeTga(bytes, file) : DecodePng(bytes, file)).pixels;
  };
  std::vector<std::string> options = {"--preset", "gold",    "--size", "40",     "--shadow-offset",
                                      "3,-4",     "--align", "right",  "--text", "Two\nlines"};
  const Job job = Parse(options);
  const std::vector<uint32_t> composed = lx::compose::FromRgba(lx::compose::Compose(job, job.text)).pixels;
  EXPECT_EQ(picture(options), composed);
  EXPECT_EQ(picture(options, "out.tga"), composed);
  // From a file or standard input; the final line feed makes no third line.
  WriteFileAtomically(dir.path("words.txt"), {'T', 'w', 'o', '\n', 'l', 'i', 'n', 'e', 's', '\n'});
  options.end()[-2] = "--text-file", options.back() = dir.path("words.txt");
  EXPECT_EQ(picture(options), composed);
  options.back() = "-";
  EXPECT_EQ(picture(options, "out.png", dir.path("words.txt")), composed);
  // An outline block dumped and drawn again; help and the presets go to standard output.
  const std::vector<uint32_t> gold =
      picture({"--preset", "gold", "--dump-outline", dir.path("au.block"), "Au"});
  EXPECT_EQ(picture({"--preset", "gold", "--outline-block", dir.path("au.block")}), gold);
  const auto [helpStatus, help] = RunLettrix({"--help"});
  EXPECT_TRUE(helpStatus == 0 && help.find("--output FILE") < help.size() &&
              help.find("--shadow-offset X,Y") < help.size());
  EXPECT_EQ(RunLettrix({"--list-presets"}), std::make_pair(0, PresetListText()));
}

}  // namespace
}  // namespace lxt
