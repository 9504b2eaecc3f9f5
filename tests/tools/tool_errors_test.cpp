// Mistakes get one clear line on stderr, the documented exit status, and no file.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/tools/tool_support.h"

namespace lxt {
namespace {

using testing::RunLettrix;
using testing::TempDir;

constexpr int kFailed = 1;
constexpr int kBadUsage = 2;

class ToolErrors : public ::testing::Test {
 protected:
  // Runs the program, expects `exitCode` and a single stderr line containing `message`, and checks that
  // the folder holds exactly what it held before.
  void ExpectFailure(const std::vector<std::string>& args, int exitCode, const std::string& message) {
    const std::vector<std::string> before = dir_.files();
    const testing::RunResult r = RunLettrix(args);
    EXPECT_EQ(r.exitCode, exitCode) << r.err;
    EXPECT_NE(r.err.find(message), std::string::npos) << "stderr: " << r.err;
    EXPECT_EQ(r.err.rfind("lettrix: ", 0), 0u) << r.err;
    ASSERT_FALSE(r.err.empty());
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << "one line: " << r.err;
    EXPECT_TRUE(r.out.empty()) << r.out;
    EXPECT_EQ(dir_.files(), before);
  }
  std::string Out() const { return dir_.path("out.png"); }
  TempDir dir_;
};

TEST_F(ToolErrors, CommandLineMistakes) {
  ExpectFailure({"-o", Out(), "--bogus", "Hi"}, kBadUsage, "unknown option '--bogus'");
  ExpectFailure({"-o", Out(), "--face-blur", "300", "Hi"}, kBadUsage,
                "--face-blur: 300 is out of range (0..254)");
  ExpectFailure({"-o", Out(), "--face-color", "bluish", "Hi"}, kBadUsage, "'bluish' is not a colour");
  ExpectFailure({"-o", Out()}, kBadUsage, "no text given");
  ExpectFailure({"Hi"}, kBadUsage, "no output file given");
  ExpectFailure({"-o", dir_.path("out.jpg"), "Hi"}, kBadUsage, "must end in .png or .tga");
  ExpectFailure({"-o", Out(), "--preset", "sparkle", "Hi"}, kBadUsage, "no preset named 'sparkle'");
  ExpectFailure({"-o", Out(), "--face-texture", "gen:plaid", "Hi"}, kBadUsage,
                "no generated texture named 'plaid'");
  ExpectFailure({"-o", Out(), "--size"}, kBadUsage, "--size needs a value");
}

TEST_F(ToolErrors, MissingFontsAndFiles) {
  ExpectFailure({"-o", Out(), "--font", dir_.path("none.ttf"), "Hi"}, kFailed,
                "cannot open font file '" + dir_.path("none.ttf") + "': No such file or directory");
  ExpectFailure({"-o", Out(), "--family", "Nonexistent Typeface Sans", "Hi"}, kFailed,
                "no installed font of family 'Nonexistent Typeface Sans'");
  ExpectFailure({"-o", Out(), "--face-texture", dir_.path("none.png"), "Hi"}, kFailed,
                "cannot open texture file '" + dir_.path("none.png") + "'");
  ExpectFailure({"-o", Out(), "--outline-block", dir_.path("none.block")}, kFailed,
                "cannot open outline block");
  ExpectFailure({"-o", dir_.path("no/such/folder/out.png"), "Hi"}, kFailed, "cannot write");
}

TEST_F(ToolErrors, DamagedInputFiles) {
  testing::WriteBytes(dir_.path("bad.png"), {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n', 0, 0, 0, 0});
  ExpectFailure({"-o", Out(), "--face-texture", dir_.path("bad.png"), "Hi"}, kFailed,
                "cannot read PNG file '" + dir_.path("bad.png") + "'");
  testing::WriteBytes(dir_.path("bad.tga"), {0, 0, 2, 0});
  ExpectFailure({"-o", Out(), "--outline-texture", dir_.path("bad.tga"), "--outline-width", "2", "Hi"},
                kFailed, "cannot read TGA file '" + dir_.path("bad.tga") + "'");
  // A contour header whose length runs past the end of the file, and one of a foreign type.
  testing::WriteBytes(dir_.path("long.block"), {200, 0, 0, 0, 24, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0});
  ExpectFailure({"-o", Out(), "--outline-block", dir_.path("long.block")}, kFailed,
                "is not an outline block");
  testing::WriteBytes(dir_.path("type.block"), {16, 0, 0, 0, 25, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0});
  ExpectFailure({"-o", Out(), "--outline-block", dir_.path("type.block")}, kFailed,
                "is not an outline block");
  testing::WriteBytes(dir_.path("fake.ttf"), {'n', 'o', 't', ' ', 'a', ' ', 'f', 'o', 'n', 't'});
  ExpectFailure({"-o", Out(), "--font", dir_.path("fake.ttf"), "Hi"}, kFailed, dir_.path("fake.ttf"));
}

TEST_F(ToolErrors, NothingToDrawAndBrokenText) {
  ExpectFailure({"-o", Out(), "   "}, kFailed, "nothing to draw");
  ExpectFailure({"-o", Out(), "ab\xff\xfe"}, kFailed, "not valid UTF-8");
}

TEST_F(ToolErrors, AFailedRunLeavesAnOldOutputAlone) {
  { std::ofstream(Out()) << "old picture"; }
  ExpectFailure({"-o", Out(), "--font", dir_.path("none.ttf"), "Hi"}, kFailed, "cannot open font file");
  EXPECT_EQ(testing::ReadText(Out()), "old picture");
  const testing::RunResult ok = RunLettrix({"-o", Out(), "Hi"});
  EXPECT_EQ(ok.exitCode, 0) << ok.err;
  EXPECT_EQ(dir_.files(), std::vector<std::string>{"out.png"});
  EXPECT_EQ(testing::ReadText(Out()).substr(1, 3), "PNG");
}

}  // namespace
}  // namespace lxt
