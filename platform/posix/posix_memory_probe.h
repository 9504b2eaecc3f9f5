// The two ways the pointer checks can learn whether memory is accessible without touching it (and so
// without a signal handler, which a library must not install). Separate so that both can be tested.
#pragma once

#include <cstdint>

namespace lx::platform::posix {

enum class Access { kRead, kWrite };
enum class Verdict { kAccessible, kInaccessible, kUnknown };

// Reads the process's mappings from /proc/self/maps: a few tens of microseconds whatever the size of
// the range. kUnknown when the file cannot be read (no /proc) or does not parse.
Verdict ProbeByMappings(uintptr_t first, uintptr_t last, Access access);

// Lets the kernel copy one byte of every page through a pipe (and, for writing, copy it back in place),
// where a fault becomes EFAULT. Costs a few system calls per page. kUnknown when no pipe can be made.
// Like kernel32's check, the write probe rewrites each byte it tests: a byte that another thread stores
// between the two copies is lost.
Verdict ProbeByCopying(uintptr_t first, uintptr_t last, Access access);

}  // namespace lx::platform::posix
