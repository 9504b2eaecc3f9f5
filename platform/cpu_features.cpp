// The MMX flag. Each thread that finds it unset computes it and stores it; all of them store the same
// value, so no lock is needed, and the atomic keeps the unlocked store well defined.

#include <atomic>

#if defined(__i386__) || defined(__x86_64__)
#include <cpuid.h>
#endif

#include "platform/platform.h"

namespace lx::platform {

namespace {

constexpr uint32_t kProcessorIntel386 = 386;
constexpr uint32_t kProcessorIntel486 = 486;

enum : int { kUnknown = 0, kWithout = 1, kWith = 2 };
std::atomic<int> g_mmx{kUnknown};

bool DetectMMX() {
  const uint32_t type = ProcessorType();
  if (type == kProcessorIntel386 || type == kProcessorIntel486) return false;
#if defined(__i386__) || defined(__x86_64__)
  constexpr unsigned kCpuidMmxBit = 1u << 23;  // function 1, EDX
  unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
  // __get_cpuid fails on processors whose highest function is below 1.
  if (__get_cpuid(1, &eax, &ebx, &ecx, &edx) == 0) return false;
  return (edx & kCpuidMmxBit) != 0;
#else
  return false;
#endif
}

}  // namespace

bool HasMMX() {
  int known = g_mmx.load(std::memory_order_relaxed);
  if (known == kUnknown) {
    known = DetectMMX() ? kWith : kWithout;
    g_mmx.store(known, std::memory_order_relaxed);
  }
  return known == kWith;
}

}  // namespace lx::platform
