// Small TGA files written by the tests themselves, and a record that frees its block.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "image/tga_reader.h"

namespace lx::test {

using Bytes = std::vector<uint8_t>;

// The 18 header bytes of a file with no ID field, no colour map and origin (0, 0).
inline Bytes TgaHeader(uint8_t type, uint16_t width, uint16_t height, uint8_t bits, uint8_t descriptor = 0) {
  return {0,
          0,
          type,
          0,
          0,
          0,
          0,
          0,
          0,
          0,
          0,
          0,
          static_cast<uint8_t>(width),
          static_cast<uint8_t>(width >> 8),
          static_cast<uint8_t>(height),
          static_cast<uint8_t>(height >> 8),
          bits,
          descriptor};
}

inline Bytes Concat(Bytes a, const Bytes& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// A path in the test's temporary folder; `name` must be unique across the test programs.
inline std::string TempPath(const std::string& name) {
  return ::testing::TempDir() + "lx_" + name;
}

inline std::string WriteTempFile(const std::string& name, const Bytes& bytes) {
  const std::string path = TempPath(name);
  std::FILE* f = std::fopen(path.c_str(), "wb");
  EXPECT_NE(f, nullptr) << path;
  if (f != nullptr) {
    const size_t written = bytes.empty() ? 0 : std::fwrite(bytes.data(), 1, bytes.size(), f);
    EXPECT_EQ(written, bytes.size());
    std::fclose(f);
  }
  return path;
}

inline Bytes ReadWholeFile(const std::string& path) {
  Bytes bytes;
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (f == nullptr) return bytes;
  for (int c; (c = std::fgetc(f)) != EOF;) bytes.push_back(static_cast<uint8_t>(c));
  std::fclose(f);
  return bytes;
}

// A record that gives its block back when the test ends.
struct OwnedTga : TgaImage {
  OwnedTga() = default;
  OwnedTga(const OwnedTga&) = delete;
  OwnedTga& operator=(const OwnedTga&) = delete;
  ~OwnedTga() { ReleaseTGA(this); }
  Bytes bytes(size_t count) const { return pixels ? Bytes(pixels, pixels + count) : Bytes(); }
};

}  // namespace lx::test
