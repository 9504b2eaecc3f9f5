#include "platform/platform.h"

namespace lx::platform {

// What GetSystemInfo would tell a process of the same width on the same processor: x86-64 for 64-bit
// code, a Pentium for 32-bit code (as 32-bit Windows programs are told on any later processor), and 0
// (no x86 processor, no MMX) elsewhere.
uint32_t ProcessorType() {
#if defined(__x86_64__)
  return 8664;
#elif defined(__i386__)
  return 586;
#else
  return 0;
#endif
}

}  // namespace lx::platform
