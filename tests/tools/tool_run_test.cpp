// The lettrix program run as a user runs it: mistakes get one line, their exit status and no file; the
// picture is the composition layer's, from words, files, standard input or an outline block.
#include <gtest/gtest.h>

#include "compose/composition.h"
#include "tests/tools/tool_support.h"
#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/options.h"
#include "tools/lettrix_cli/png_file.h"

namespace lxt {
namespace {

using testing::RunLettrix;

TEST(ToolRun, EachMistakeGetsOneLineItsStatusAndNoFile) {
  testing::TempDir dir;
  const std::string out = dir.path("out.png"), none = dir.path("none"), bad = dir.path("bad");
  testing::WriteBytes(bad + ".png", {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n', 0, 0, 0, 0});
  testing::WriteBytes(bad + ".tga", {0, 0, 2, 0});
  // A contour whose length runs past the end of the file.
  testing::WriteBytes(bad + ".long", {200, 0, 0, 0, 24, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0});
  testing::WriteBytes(bad + ".ttf", {'n', 'o', 't', ' ', 'a', ' ', 'f', 'o', 'n', 't'});
  testing::WriteBytes(bad + ".txt", {'w'});
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
    const testing::RunResult r = RunLettrix(c.args);
    EXPECT_EQ(r.exitCode, c.exitCode) << r.err;
    EXPECT_EQ(r.err.rfind("lettrix: ", 0), 0u) << r.err;
    EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << "one line: " << r.err;
    EXPECT_EQ(r.out + std::to_string(dir.count()), "5") << c.message;  // no output, no file
  }
  // A failed run leaves an old picture alone; a good one replaces it.
  testing::WriteBytes(out, {'o', 'l', 'd'});
  EXPECT_EQ(RunLettrix({"-o", out, "--font", none + ".ttf", "Hi"}).exitCode, 1);
  EXPECT_EQ(testing::ReadText(out), "old");
  EXPECT_EQ(RunLettrix({"-o", out, "Hi"}).exitCode, 0);
  EXPECT_EQ(testing::ReadText(out).substr(1, 3), "PNG");
  EXPECT_EQ(dir.count(), 6u);
}

// The pixels of the picture the program wrote for `args` to `file` (PNG or TGA by its name).
std::vector<uint32_t> Picture(const testing::TempDir& dir, std::vector<std::string> args,
                              const std::string& file = "out.png", const std::string& input = "") {
  args.insert(args.end(), {"-o", dir.path(file)});
  const testing::RunResult r = RunLettrix(args, input);
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
  testing::TempDir dir;
  const std::vector<std::string> options = {"--preset", "gold",    "--size", "40",     "--shadow-offset",
                                            "3,-4",     "--align", "right",  "--text", "Two\nlines"};
  const std::vector<uint32_t> composed = Composed(options);
  EXPECT_EQ(Picture(dir, options), composed);
  EXPECT_EQ(Picture(dir, options, "out.tga"), composed);
  // From a file or standard input; the final line feed makes no third line.
  testing::WriteBytes(dir.path("words.txt"), {'T', 'w', 'o', '\n', 'l', 'i', 'n', 'e', 's', '\n'});
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
  // Help and the presets go to standard output (their texts are the parts tests').
  const testing::RunResult help = RunLettrix({"--help"}), list = RunLettrix({"--list-presets"});
  EXPECT_EQ(std::make_tuple(help.exitCode, help.out.find("--shadow-offset X,Y") < help.out.size(), help.err),
            std::make_tuple(0, true, ""));
  EXPECT_EQ(std::make_tuple(list.exitCode, list.out, list.err), std::make_tuple(0, PresetListText(), ""));
}

}  // namespace
}  // namespace lxt
