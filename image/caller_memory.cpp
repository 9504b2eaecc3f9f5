#include "image/caller_memory.h"

#include <limits>

#include "platform/platform.h"

namespace lx {

bool ValidateCallerMemory(const void* p, uint64_t bytes, bool needWrite) {
  if (p == nullptr || bytes == 0) return false;
  // A count that the address space cannot hold, or a range that would wrap past its end, can never
  // be valid; on a 32-bit build this is also what keeps a 64-bit count from being cut short.
  constexpr uint64_t kAddressSpace = std::numeric_limits<uintptr_t>::max();
  const uint64_t start = reinterpret_cast<uintptr_t>(p);
  if (bytes - 1 > kAddressSpace - start) return false;
  const auto n = static_cast<uintptr_t>(bytes);
  if (platform::IsBadReadPtr(p, n)) return false;
  if (needWrite && platform::IsBadWritePtr(const_cast<void*>(p), n)) return false;
  return true;
}

}  // namespace lx
