// Inputs that once broke something, kept as files under tests/crashers/data.
#pragma once
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace lx::test {
// The whole file at `path`; empty when it cannot be read.
inline std::vector<uint8_t> ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline std::vector<uint8_t> CrasherFile(const std::string& name) {
  return ReadBytes(std::string(LETTRIX_CRASHER_DIR) + "/" + name);
}
}  // namespace lx::test
