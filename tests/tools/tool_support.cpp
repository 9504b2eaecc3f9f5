#include "tests/tools/tool_support.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "tools/lettrix_cli/files.h"
#include "tools/lettrix_cli/png_file.h"
#include "tools/lettrix_cli/tool_error.h"

extern char** environ;

namespace lxt::testing {

TempDir::TempDir() {
  char pattern[] = "/tmp/lettrix-tools-XXXXXX";
  if (!mkdtemp(pattern)) std::abort();
  dir_ = pattern;
}

TempDir::~TempDir() {
  std::filesystem::remove_all(dir_);
}

std::vector<std::string> TempDir::files() const {
  std::vector<std::string> names;
  for (const auto& e : std::filesystem::directory_iterator(dir_)) names.push_back(e.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

RunResult RunLettrix(const std::vector<std::string>& args, const std::string& input) {
  TempDir capture;
  const std::string outPath = capture.path("stdout"), errPath = capture.path("stderr");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (!input.empty()) posix_spawn_file_actions_addopen(&actions, 0, input.c_str(), O_RDONLY, 0);
  std::vector<std::string> all{LETTRIX_CLI_PATH};
  all.insert(all.end(), args.begin(), args.end());
  std::vector<char*> argv;
  for (std::string& a : all) argv.push_back(&a[0]);
  argv.push_back(nullptr);
  RunResult result;
  pid_t pid = 0;
  if (posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ) == 0) {
    int status = 0;
    waitpid(pid, &status, 0);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  posix_spawn_file_actions_destroy(&actions);
  result.out = ReadText(outPath);
  result.err = ReadText(errPath);
  return result;
}

std::string ReadText(const std::string& path) {
  std::stringstream s;
  s << std::ifstream(path, std::ios::binary).rdbuf();
  return s.str();
}

void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

Image LoadImage(const std::string& path) {
  try {
    const std::vector<uint8_t> bytes = ReadWholeFile(path, "image");
    if (bytes.size() > 4 && bytes[1] == 'P' && bytes[2] == 'N' && bytes[3] == 'G')
      return DecodePng(bytes, path);
    return DecodeTga(bytes, path);
  } catch (const ToolError& e) {
    ADD_FAILURE() << e.what();
    return Image();
  }
}

Image RenderImage(const TempDir& dir, std::vector<std::string> args) {
  const std::string out = dir.path("render.png");
  std::filesystem::remove(out);
  args.insert(args.end(), {"-o", out});
  const RunResult r = RunLettrix(args);
  EXPECT_EQ(r.exitCode, 0) << r.err;
  return r.exitCode == 0 ? LoadImage(out) : Image();
}

}  // namespace lxt::testing
