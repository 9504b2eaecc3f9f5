// The check every entry point applies to caller memory before it reads or writes it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lx {

// False for a null pointer, a count of 0, a range that cannot be read, or (with needWrite) written.
bool ValidateCallerMemory(const void* p, uint64_t bytes, bool needWrite);

}  // namespace lx
