// The two ways the pointer checks can learn whether memory is accessible without touching it (and so
// without a signal handler, which a library must not install). Separate so that both can be tested.
#pragma once

#include <cstdint>

namespace lx::platform::posix {

enum class Access { kRead, kWrite };
enum class Verdict { kAccessible, kInaccessible, kUnknown };

// Asks the kernel for the mappings that hold the range, one PROCMAP_QUERY request on /proc/self/maps
// per mapping (Linux 6.11 on): a system call or two, whatever the size of the range, and always the
// rights of this moment, so a mapping that was unmapped or protected since an earlier check is seen.
// kUnknown when the kernel does not answer such requests.
Verdict ProbeByQuery(uintptr_t first, uintptr_t last, Access access);

// Reads the process's mappings from /proc/self/maps: a few tens of microseconds whatever the size of
// the range. kUnknown when the file cannot be read (no /proc) or does not parse.
Verdict ProbeByMappings(uintptr_t first, uintptr_t last, Access access);

// Lets the kernel copy one byte of every page through a pipe (and, for writing, copy it back in place),
// where a fault becomes EFAULT. Costs a few system calls per page. kUnknown when no pipe can be made.
// Like kernel32's check, the write probe rewrites each byte it tests: a byte that another thread stores
// between the two copies is lost.
Verdict ProbeByCopying(uintptr_t first, uintptr_t last, Access access);

}  // namespace lx::platform::posix
