// Global memory from kernel32, as any Windows caller makes it.
#include <windows.h>

#include <cstring>

#include "tools/text_outline/text_outline.h"

namespace lx::text {

GlobalBlock::GlobalBlock(const std::vector<uint8_t>& bytes) {
  if (bytes.empty()) return;
  handle_ = GlobalAlloc(GMEM_FIXED, bytes.size());
  if (handle_ == nullptr) return;
  std::memcpy(handle_, bytes.data(), bytes.size());
  size_ = bytes.size();
}

GlobalBlock::~GlobalBlock() {
  if (handle_ != nullptr) GlobalFree(handle_);
}

}  // namespace lx::text
