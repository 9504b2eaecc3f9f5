#include "tests/support/scene.h"
#include <gtest/gtest.h>
#include <cstring>

namespace lx::test {
TextScene::TextScene(const std::string& text, int32_t pixelSize, double originX, double baselineY) {
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

std::vector<uint8_t> PaddedOutlineBlock(const std::vector<uint8_t>& bytes, size_t size) {
  std::vector<uint8_t> padded(bytes);
  if (bytes.size() < 16 || size < bytes.size() + 16) return padded;
  padded.resize(size, 0);
  const uint32_t cb = static_cast<uint32_t>(size - bytes.size()), type = 24;
  std::memcpy(&padded[bytes.size()], &cb, 4);
  std::memcpy(&padded[bytes.size() + 4], &type, 4);
  std::memcpy(&padded[bytes.size() + 8], &bytes[8], 8);
  return padded;
}
}  // namespace lx::test
