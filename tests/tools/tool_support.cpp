#include "tests/tools/tool_support.h"

#include <dirent.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
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
  const char* made = mkdtemp(pattern);
  if (!made) std::abort();
  dir_ = made;
}

TempDir::~TempDir() {
  for (const std::string& name : files()) std::remove(path(name).c_str());
  rmdir(dir_.c_str());
}

std::vector<std::string> TempDir::files() const {
  std::vector<std::string> names;
  if (DIR* d = opendir(dir_.c_str())) {
    while (dirent* e = readdir(d)) {
      const std::string name = e->d_name;
      if (name != "." && name != "..") names.push_back(name);
    }
    closedir(d);
  }
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

bool FileExists(const std::string& path) {
  struct stat st;
  return stat(path.c_str(), &st) == 0;
}

std::string ReadText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
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
  std::remove(out.c_str());
  args.push_back("-o");
  args.push_back(out);
  const RunResult r = RunLettrix(args);
  EXPECT_EQ(r.exitCode, 0) << r.err;
  if (r.exitCode != 0) return Image();
  return LoadImage(out);
}

uint8_t Alpha(uint32_t p) {
  return static_cast<uint8_t>(p >> 24);
}
uint8_t Red(uint32_t p) {
  return static_cast<uint8_t>(p >> 16);
}
uint8_t Green(uint32_t p) {
  return static_cast<uint8_t>(p >> 8);
}
uint8_t Blue(uint32_t p) {
  return static_cast<uint8_t>(p);
}

}  // namespace lxt::testing
