// Global memory from the Lettrix library, which offers kernel32's calls under its own names here.
#include <cstring>

#include "lettrix/lettrix.h"
#include "tools/text_outline/text_outline.h"

namespace lx::text {

GlobalBlock::GlobalBlock(const std::vector<uint8_t>& bytes) {
  if (bytes.empty()) return;
  handle_ = LettrixGlobalAlloc(0 /* GMEM_FIXED */, bytes.size());
  if (handle_ == nullptr) return;
  std::memcpy(handle_, bytes.data(), bytes.size());
  size_ = bytes.size();
}

GlobalBlock::~GlobalBlock() {
  if (handle_ != nullptr) LettrixGlobalFree(handle_);
}

}  // namespace lx::text
