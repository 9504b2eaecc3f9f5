// Files in a fresh folder, and the lettrix program run as a user runs it.
#pragma once

#include <sys/wait.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace lxt::testing {

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

inline std::string ReadText(const std::string& path) {
  std::stringstream s;
  s << std::ifstream(path, std::ios::binary).rdbuf();
  return s.str();
}

inline void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

struct RunResult {
  int exitCode;
  std::string out, err;
};

// Runs the lettrix program with `args`; its standard input is the file `input`, or empty.
inline RunResult RunLettrix(const std::vector<std::string>& args, const std::string& input = "/dev/null") {
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

}  // namespace lxt::testing
