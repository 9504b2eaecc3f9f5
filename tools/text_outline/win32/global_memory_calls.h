// Global memory from kernel32, as any Windows caller makes it (GMEM_FIXED: the handle is the address).
#pragma once

#include <cstddef>

namespace lx::text::detail {

void* AllocateGlobal(size_t bytes);
void FreeGlobal(void* handle);

}  // namespace lx::text::detail
