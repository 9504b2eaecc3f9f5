// Small TGA files written by the tests themselves, and a record that frees its block.
#pragma once

#include <gtest/gtest.h>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>
#include "image/tga_reader.h"

namespace lx::test {
using Bytes = std::vector<uint8_t>;

// The 18 header bytes of a file with no ID field, no colour map and origin (0, 0), then `pixels`.
inline Bytes TgaHeader(uint8_t type, uint16_t width, uint16_t height, uint8_t bits, uint8_t descriptor = 0,
                       const Bytes& pixels = {}) {
  Bytes b(pixels);
  b.insert(b.begin(), 18, 0);
  b[2] = type, b[12] = width & 0xFF, b[13] = width >> 8, b[14] = height & 0xFF, b[15] = height >> 8;
  b[16] = bits, b[17] = descriptor;
  return b;
}

// A path in the test's temporary folder; `name` must be unique across the test programs.
inline std::string TempPath(const std::string& name) {
  return ::testing::TempDir() + "lx_" + name;
}

inline std::string WriteTempFile(const std::string& name, const Bytes& bytes) {
  const std::string path = TempPath(name);
  std::ofstream out(path, std::ios::binary);
  EXPECT_TRUE(out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()))) << path;
  return path;
}

// A record that gives its block back when the test ends.
struct OwnedTga : TgaImage {
  OwnedTga() = default;
  OwnedTga(const OwnedTga&) = delete;
  OwnedTga& operator=(const OwnedTga&) = delete;
  ~OwnedTga() { ReleaseTGA(this); }
  Bytes bytes(size_t count) const { return pixels ? Bytes(pixels, pixels + count) : Bytes(); }
};

// Loads `bytes` from a file through LoadTGA.
inline bool LoadBytes(OwnedTga* image, const Bytes& bytes) {
  const std::string path = WriteTempFile("load.tga", bytes);
  const bool ok = LoadTGA(image, path.c_str());
  std::remove(path.c_str());
  return ok;
}
}  // namespace lx::test
