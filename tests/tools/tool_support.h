// Running the lettrix program as a user does, and looking at what it wrote.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/lettrix_cli/image.h"

namespace lxt::testing {

struct RunResult {
  int exitCode = -1;
  std::string out;  // stdout
  std::string err;  // stderr
};

// Runs the lettrix program with `args` and waits for it; its standard input is `input` when not empty.
RunResult RunLettrix(const std::vector<std::string>& args, const std::string& input = "");

// A fresh folder that is removed with everything in it when the object goes.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  std::string path(const std::string& name) const { return dir_ + "/" + name; }
  // The names of the files in the folder, sorted.
  std::vector<std::string> files() const;

 private:
  std::string dir_;
};

bool FileExists(const std::string& path);
std::string ReadText(const std::string& path);
void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes);

// PNG or TGA by the file's first bytes; fails the test (and returns an empty image) when unreadable.
Image LoadImage(const std::string& path);

// Renders `args` to a PNG in `dir` and loads it; fails the test when the program fails.
Image RenderImage(const TempDir& dir, std::vector<std::string> args);

uint8_t Alpha(uint32_t p);
uint8_t Red(uint32_t p);
uint8_t Green(uint32_t p);
uint8_t Blue(uint32_t p);

// The box of pixels for which `keep` holds (right and bottom outside); empty when none do.
struct PixelBox {
  int left = 0, top = 0, right = 0, bottom = 0;
  bool empty() const { return right <= left || bottom <= top; }
};
template <typename Keep>
PixelBox BoxOf(const Image& image, Keep keep) {
  PixelBox box{image.width, image.height, 0, 0};
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      if (!keep(image.at(x, y))) continue;
      if (x < box.left) box.left = x;
      if (y < box.top) box.top = y;
      if (x + 1 > box.right) box.right = x + 1;
      if (y + 1 > box.bottom) box.bottom = y + 1;
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
