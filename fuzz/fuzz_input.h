// Reads a fuzzer's bytes as a stream of small values. Past the end every read gives zeros, so any
// input, however short, is a complete one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace lx::fuzz {

class FuzzInput {
 public:
  FuzzInput(const uint8_t* data, size_t size) : data_(data), size_(size) {}

  uint8_t Byte() { return at_ < size_ ? data_[at_++] : 0; }

  template <typename T>
  T Value() {
    uint8_t bytes[sizeof(T)] = {};
    for (uint8_t& b : bytes) b = Byte();
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
  }

  // A value in 0..count-1.
  uint32_t Below(uint32_t count) { return count == 0 ? 0 : Byte() % count; }

  // Everything not read yet.
  std::vector<uint8_t> Rest() {
    std::vector<uint8_t> rest(data_ + at_, data_ + size_);
    at_ = size_;
    return rest;
  }

  std::vector<uint8_t> Take(size_t count) {
    const size_t n = count < size_ - at_ ? count : size_ - at_;
    std::vector<uint8_t> taken(data_ + at_, data_ + at_ + n);
    at_ += n;
    return taken;
  }

 private:
  const uint8_t* data_;
  size_t size_;
  size_t at_ = 0;
};

}  // namespace lx::fuzz
