// Scenes for image tests: a line of DejaVu Sans Bold or a block read from a file as an outline block in
// global memory, the caller's buffer as an image that counts the pixels a drawing changed.
#pragma once
#include <gtest/gtest.h>
#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>
#include "tools/text_outline/text_outline.h"

namespace lx::test {
// One line of text laid out by the text-to-outline library, copied into global memory as Render takes it.
class TextScene {
 public:
  // DejaVu Sans Bold at pixelSize, pen starting at (originX, baselineY). Fails the running test (and
  // holds no block) when the text cannot be laid out.
  TextScene(const std::string& text, int32_t pixelSize, double originX, double baselineY) {
    text::TextLine line;
    line.text = text, line.pixelSize = pixelSize, line.originX = originX, line.baselineY = baselineY;
    text::OutlineBlock out;
    std::string error;
    if (!text::BuildOutlineBlock(line, &out, &error)) {
      ADD_FAILURE() << "cannot lay out \"" << text << "\": " << error;
      return;
    }
    bytes_ = std::move(out.bytes);
    ink_ = out.ink;
    global_ = std::make_unique<text::GlobalBlock>(bytes_);
    if (!bytes_.empty() && global_->handle() == nullptr) ADD_FAILURE() << "no global memory for the block";
  }
  // A block made elsewhere (written by another run, or built by hand).
  explicit TextScene(const std::vector<uint8_t>& bytes)
      : bytes_(bytes),
        ink_(text::MeasureOutlineBlock(bytes_.data(), bytes_.size())),
        global_(std::make_unique<text::GlobalBlock>(bytes_)) {}

  void* block() const { return global_ ? global_->handle() : nullptr; }
  const std::vector<uint8_t>& bytes() const { return bytes_; }
  // The whole-pixel box Render measures for the block.
  const text::InkBox& ink() const { return ink_; }

 private:
  std::vector<uint8_t> bytes_;
  text::InkBox ink_;
  std::unique_ptr<text::GlobalBlock> global_;
};

// The whole file at `path`, or of tests/crashers/data/`name` (inputs that once broke something); empty
// when it cannot be read.
inline std::vector<uint8_t> ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}
inline std::vector<uint8_t> CrasherFile(const std::string& name) {
  return ReadBytes(std::string(LETTRIX_CRASHER_DIR) + "/" + name);
}

// `bytes` grown to `size` by one more contour that draws nothing (the first one's start, records of no
// points), so that Render decodes all of a block larger than its outline, as a caller's spare room.
inline std::vector<uint8_t> PaddedOutlineBlock(const std::vector<uint8_t>& bytes, size_t size) {
  std::vector<uint8_t> padded(bytes);
  if (bytes.size() < 16 || size < bytes.size() + 16) return padded;
  padded.resize(size, 0);
  const uint32_t cb = static_cast<uint32_t>(size - bytes.size()), type = 24;
  std::memcpy(&padded[bytes.size()], &cb, 4);
  std::memcpy(&padded[bytes.size() + 4], &type, 4);
  std::memcpy(&padded[bytes.size() + 8], &bytes[8], 8);
  return padded;
}

// The caller's buffer: width x height pixels, rows without padding.
class Image {
 public:
  Image(int32_t width, int32_t height, uint32_t fill = 0)
      : width_(width), height_(height), pixels_(static_cast<size_t>(width) * height, fill) {}

  // Width and height as Render reads them, by address; pixels row by row.
  const int32_t* width() const { return &width_; }
  const int32_t* height() const { return &height_; }
  void* data() { return pixels_.data(); }
  const std::vector<uint32_t>& pixels() const { return pixels_; }
  uint32_t at(int32_t x, int32_t y) const { return pixels_[static_cast<size_t>(y) * width_ + x]; }
  void set(int32_t x, int32_t y, uint32_t v) { pixels_[static_cast<size_t>(y) * width_ + x] = v; }

  bool operator==(const Image& o) const {
    return width_ == o.width_ && height_ == o.height_ && pixels_ == o.pixels_;
  }
  bool operator!=(const Image& o) const { return !(*this == o); }
  // FNV-1a of the pixels' bytes, lowest first: a drawing's fingerprint, the same on every system.
  uint64_t checksum() const {
    uint64_t h = 0xCBF29CE484222325u;
    for (uint32_t p : pixels_) {
      for (int i = 0; i < 32; i += 8) h = (h ^ ((p >> i) & 0xFF)) * 0x100000001B3u;
    }
    return h;
  }
  // Pixels that differ from `fill` (the background the buffer was made with).
  size_t countOther(uint32_t fill) const {
    return pixels_.size() - static_cast<size_t>(std::count(pixels_.begin(), pixels_.end(), fill));
  }

 private:
  int32_t width_, height_;
  std::vector<uint32_t> pixels_;
};
}  // namespace lx::test
