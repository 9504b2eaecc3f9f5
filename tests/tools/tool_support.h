// Running the lettrix program as a user does, and looking at what it wrote.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/lettrix_cli/image.h"

namespace lxt::testing {

struct RunResult {
  int exitCode = -1;
  std::string out, err;
};

// Runs the lettrix program with `args`; its standard input is the file `input` when not empty.
RunResult RunLettrix(const std::vector<std::string>& args, const std::string& input = "");

// A fresh folder, removed with everything in it when the object goes.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  std::string path(const std::string& name) const { return dir_ + "/" + name; }
  std::vector<std::string> files() const;  // sorted

 private:
  std::string dir_;
};

std::string ReadText(const std::string& path);
void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes);
// PNG or TGA by the file's first bytes; fails the test (and gives an empty image) when unreadable.
Image LoadImage(const std::string& path);
// Renders `args` to a PNG in `dir` and loads it; fails the test when the program fails.
Image RenderImage(const TempDir& dir, std::vector<std::string> args);

inline int Alpha(uint32_t p) {
  return p >> 24;
}
inline int Red(uint32_t p) {
  return p >> 16 & 0xFF;
}
inline int Green(uint32_t p) {
  return p >> 8 & 0xFF;
}
inline int Blue(uint32_t p) {
  return p & 0xFF;
}

// The box (right and bottom outside) of the pixels for which `keep` holds.
struct PixelBox {
  int left, top, right, bottom;
};
template <typename Keep>
PixelBox BoxOf(const Image& image, Keep keep) {
  PixelBox box{image.width, image.height, 0, 0};
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      if (!keep(image.at(x, y))) continue;
      box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
             std::max(box.bottom, y + 1)};
    }
  }
  return box;
}
template <typename Keep>
int CountOf(const Image& image, Keep keep) {
  int n = 0;
  for (uint32_t p : image.pixels) n += keep(p) ? 1 : 0;
  return n;
}

}  // namespace lxt::testing
