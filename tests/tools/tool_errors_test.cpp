// Mistakes get one clear line on stderr, the documented exit status, and no file.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/tools/tool_support.h"

namespace lxt {
namespace {

TEST(ToolErrors, EachMistakeGetsOneLineItsStatusAndNoFile) {
  testing::TempDir dir;
  const std::string out = dir.path("out.png"), none = dir.path("none"), bad = dir.path("bad");
  testing::WriteBytes(bad + ".png", {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n', 0, 0, 0, 0});
  testing::WriteBytes(bad + ".tga", {0, 0, 2, 0});
  // A contour whose length runs past the end of the file, and one of a foreign type.
  testing::WriteBytes(bad + ".long", {200, 0, 0, 0, 24, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0});
  testing::WriteBytes(bad + ".type", {16, 0, 0, 0, 25, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0});
  testing::WriteBytes(bad + ".ttf", {'n', 'o', 't', ' ', 'a', ' ', 'f', 'o', 'n', 't'});
  std::ofstream(bad + ".txt") << "words";
  struct Case {
    std::vector<std::string> args;
    int exitCode;
    std::string message;
  };
  const Case cases[] = {
      {{"--bogus", "Hi"}, 2, "unknown option '--bogus'"},
      {{"--face-blur", "300", "Hi"}, 2, "--face-blur: 300 is out of range (0..254)"},
      {{}, 2, "no text given"},
      {{"--preset", "sparkle", "Hi"}, 2, "no preset named 'sparkle'"},
      {{"--face-texture", "gen:plaid", "Hi"}, 2, "no generated texture named 'plaid'"},
      {{"--size"}, 2, "--size needs a value"},
      {{"Hi", "--align", "middle"}, 2, "--align: 'middle' is not an alignment"},
      {{"--text-file", bad + ".txt", "Hi"}, 2, "given twice"},
      {{"--text-file", none + ".txt"}, 1, "cannot open text file"},
      {{"--font", none + ".ttf", "Hi"},
       1,
       "cannot open font file '" + none + ".ttf': No such file or directory"},
      {{"--family", "Nonexistent Typeface Sans", "Hi"},
       1,
       "no installed font of family 'Nonexistent Typeface Sans'"},
      {{"--face-texture", none + ".png", "Hi"}, 1, "cannot open texture file '" + none + ".png'"},
      {{"--outline-block", none + ".block"}, 1, "cannot open outline block"},
      {{"--face-texture", bad + ".png", "Hi"}, 1, "cannot read PNG file '" + bad + ".png'"},
      {{"--outline-texture", bad + ".tga", "--outline-width", "2", "Hi"},
       1,
       "cannot read TGA file '" + bad + ".tga'"},
      {{"--outline-block", bad + ".long"}, 1, "is not an outline block"},
      {{"--outline-block", bad + ".type"}, 1, "is not an outline block"},
      {{"--font", bad + ".ttf", "Hi"}, 1, bad + ".ttf"},
      {{"   "}, 1, "nothing to draw"},
      {{"ab\xff\xfe"}, 1, "not valid UTF-8"},
  };
  const std::vector<std::string> before = dir.files();
  auto expectFailure = [&](std::vector<std::string> args, int exitCode, const std::string& message) {
    const testing::RunResult r = testing::RunLettrix(args);
    EXPECT_EQ(r.exitCode, exitCode) << r.err;
    EXPECT_NE(r.err.find(message), std::string::npos) << "stderr: " << r.err;
    EXPECT_EQ(r.err.rfind("lettrix: ", 0), 0u) << r.err;
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << "one line: " << r.err;
    EXPECT_TRUE(r.out.empty()) << r.out;
    EXPECT_EQ(dir.files(), before);
  };
  for (const Case& c : cases) {
    std::vector<std::string> args{"-o", out};
    args.insert(args.end(), c.args.begin(), c.args.end());
    expectFailure(args, c.exitCode, c.message);
  }
  expectFailure({"Hi"}, 2, "no output file given");
  expectFailure({"-o", dir.path("out.jpg"), "Hi"}, 2, "must end in .png or .tga");
  expectFailure({"-o", dir.path("no/such/folder/out.png"), "Hi"}, 1, "cannot write");
}

TEST(ToolErrors, AFailedRunLeavesAnOldOutputAlone) {
  testing::TempDir dir;
  const std::string out = dir.path("out.png");
  std::ofstream(out) << "old picture";
  EXPECT_EQ(testing::RunLettrix({"-o", out, "--font", dir.path("none.ttf"), "Hi"}).exitCode, 1);
  EXPECT_EQ(testing::ReadText(out), "old picture");
  EXPECT_EQ(testing::RunLettrix({"-o", out, "Hi"}).exitCode, 0);
  EXPECT_EQ(dir.files(), std::vector<std::string>{"out.png"});
  EXPECT_EQ(testing::ReadText(out).substr(1, 3), "PNG");
}

}  // namespace
}  // namespace lxt
